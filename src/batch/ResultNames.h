// SPDX-License-Identifier: GPL-3.0-or-later
// The names of the files that velt-batch writes, by which those of an older run are known again.
#pragma once

#include "files/ResultSet.h"

#include <string>
#include <vector>

/// The tables that a fit has in any case, with bootstraps, with projections and with contours.
const std::vector<std::string>& FitTableNames();
const std::vector<std::string>& BootstrapTableNames();
const std::vector<std::string>& ProjectionTableNames();
const std::vector<std::string>& ContourTableNames();

/// Every table, and the pictures: "01-words.png" or .svg that name this program near their beginning, so that
/// a photograph of somebody's is none.
ResultNames AllResults();

/// The tables of contours alone: a job that names no directory writes these into the working one and owns
/// nothing else there.
ResultNames ContourResults();
