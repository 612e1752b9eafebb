// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitRequest.h"

#include <ostream>
#include <string>

/// Exports the table of a project as a text file; what stood under its name stays until the new file is
/// whole. A conversion of columns that failed is told to `err`, and the columns are those of the file.
/// \return the sentence that it was exported \throws BatchFailure BadData when the project cannot be read or
/// a value cannot be written as text, BadUsage
///         when the file cannot be written or is there already and not to be replaced
std::string ExportProject(const FitRequest& request, std::ostream& err);
