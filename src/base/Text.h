// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// `text` (UTF-8) filled with blanks on the right, or cut, to `width` characters.
std::string PadString(std::string_view text, std::size_t width);

/// `text` parted at blanks into lines for each of which `fits` holds; all but the first begin with `hanging`.
/// A word that fits no line is parted between characters, each line takes one at least. Blanks at a parting
/// go, all others stay. \return one line at least
std::vector<std::string> WrapText(std::string_view text, const std::string& hanging,
                                  const std::function<bool(const std::string&)>& fits);

/// `text` without blanks at either end.
std::string Trim(std::string_view text);

/// `text` with the letters A to Z in place of a to z; other characters stay.
std::string ToUpper(std::string_view text);

/// The tokens of an import line. Blanks, tabs and commas separate, any run of them counts as one, so two
/// commas do not mean an empty field.
std::vector<std::string> ParseLine(std::string_view line);

/// How many tokens ParseLine gives, without the memory for them.
std::size_t CountTokens(std::string_view line);
