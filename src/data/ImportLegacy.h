// SPDX-License-Identifier: GPL-3.0-or-later
// The road of a project of version 2.0 into a data set. It shows nothing: what goes wrong it raises.
#pragma once

#include <functional>
#include <string>
#include <string_view>

class clsVeltData;

/// Makes `data` the columns and scenarios of a project of version 2.0. Logged runs are not read; conversions
/// are not run, which the end of Edit Mode does.
///
/// \param path    of the file, for DSFName
/// \param goesOn  asked when the file has no description; false cancels the import
/// \throws VeltError 2258 the bytes are no project of version 2.0 or damaged, with the byte; 2263 cancelled;
///                        both with the program's base. 6, 5 a value of a scenario that does not fit 32 bits
///                        or is no number. `data` is as new after every failure.
void ImportLegacy(clsVeltData& data, const std::string& path, std::string_view bytes,
                  const std::function<bool()>& goesOn);
