// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/BatchWindow.h"
#include "batch/FitTables.h"

#include <string>

/// Makes the directory and those above it. \throws BatchFailure BadUsage when that is not possible
void MakeDirectory(const std::string& option, const std::string& directory);

/// Writes estimates.csv and series.csv and, with bootstraps, intervals.csv and replicates.csv into
/// `directory`. Empty cells are values that do not exist. \throws BatchFailure BadUsage for a file that
/// cannot be written
void WriteCsv(const FitTables& tables, const std::string& directory);

/// Writes contours.csv, one row a point of the grid, and contour_path.csv, the marks and the walk of the
/// minimiser. A point at which the model cannot be evaluated has an empty cell.
void WriteContourCsv(const ContourRecord& contours, const std::string& directory);
