// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <ostream>
#include <string>
#include <vector>

/// velt-batch as a function: the command line without the program's name, results to `out`, messages to
/// `err`. It reads and writes only the files that the command line names, and raises nothing.
/// \return the exit status: 0 a fit, 2 bad usage, 3 bad data, 4 the fit failed
int RunBatch(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
