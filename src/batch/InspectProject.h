// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// What a project file holds, without opening it in the program.

/// A page to read: description, periods, columns, scenarios, logged fits.
/// \throws BatchFailure BadData with the reason, and the byte where the file is damaged
std::string InfoOf(const std::string& path);

/// All of it as one JSON object whose keys are the names of the file's fields, the bodies of the fits
/// included. A body that is damaged stands as its message. \throws BatchFailure as above
std::string DumpOf(const std::string& path);
