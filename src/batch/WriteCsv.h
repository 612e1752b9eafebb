// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/BatchWindow.h"
#include "batch/FitTables.h"
#include "batch/ResultFiles.h"

#include <vector>

/// estimates.csv and series.csv and, with bootstraps, intervals.csv and replicates.csv, with scenarios
/// projections.csv. Empty cells are
/// values that do not exist.
std::vector<ResultFile> CsvFilesOf(const FitTables& tables);

/// contours.csv, one row a point of the grid, and contour_path.csv, the marks and the walk of the minimiser.
/// A point at which the model cannot be evaluated has an empty cell.
std::vector<ResultFile> CsvFilesOf(const ContourRecord& contours);
