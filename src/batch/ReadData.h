// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/BatchUser.h"
#include "batch/FitRequest.h"

class ProjectFile;
class clsVeltData;

/// Fills the data set from the request's file, a table or a project, and opens the project in which the fit
/// is to be logged, which must hold the same data. \throws BatchFailure as ReadTable, and BadData for a
/// project that cannot be read, holds other data or is open in another program, BadUsage for a name that is
/// taken
void ReadData(clsVeltData& data, ProjectFile& project, BatchUser& user, const FitRequest& request);
