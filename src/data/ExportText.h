// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

class clsVeltData;

/// The table as a text file that the import reads: the description, "Time" and the file names of the columns
/// that are present, system columns among them, then one line a period that exists. Every word ends with a
/// tab but the description, every line with CR LF; a value is the shortest text that reads back as the same
/// 32-bit float, a missing one -1. Windows-1252; control characters of the description, which would break its
/// line, become blanks.
///
/// \throws VeltError 5 a value is infinite or no number, which no text file holds; it names the place
std::string TextOf(const clsVeltData& data);
