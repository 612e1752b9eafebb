// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitRequest.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

/// The command line of velt-batch, without the program's name, as a job.
/// \return nothing when only help or the version was asked for; it has then been written to `out`
/// \throws BatchFailure BadUsage with a sentence that names the option
std::optional<FitRequest> ParseCommandLine(std::vector<std::string> arguments, std::ostream& out);
