// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// `text` (UTF-8) filled with blanks on the right, or cut, to `width` characters.
std::string PadString(std::string_view text, std::size_t width);

/// `text` without blanks at either end.
std::string Trim(std::string_view text);

/// `text` with the letters A to Z in place of a to z; other characters stay.
std::string ToUpper(std::string_view text);

/// The tokens of an import line. Blanks, tabs and commas separate, any run of them counts as one, so two
/// commas do not mean an empty field.
std::vector<std::string> ParseLine(std::string_view line);

/// How many tokens ParseLine gives, without the memory for them.
std::size_t CountTokens(std::string_view line);
