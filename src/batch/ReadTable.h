// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/BatchUser.h"
#include "batch/FitRequest.h"

class clsVeltData;

/// Fills a new data set from the request's file through the program's own text import, with the wizard
/// answered by `user`, and takes the excluded periods out of the fit.
/// \throws BatchFailure BadUsage for a heading, grid title or time label that does not exist, BadData with
///         the place for a file that cannot be read and for time labels that do not rise by one
void ReadTable(clsVeltData& data, BatchUser& user, const FitRequest& request);

/// Takes the excluded periods out of the fit. \throws BatchFailure BadUsage for a label that does not exist
void ExcludePeriods(clsVeltData& data, const FitRequest& request);
