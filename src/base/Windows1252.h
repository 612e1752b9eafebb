// SPDX-License-Identifier: GPL-3.0-or-later
// Text in files is one byte a character, in the code page Windows-1252; text in memory is UTF-8.
#pragma once

#include <string>
#include <string_view>

/// `bytes` of the code page as UTF-8. The five bytes that the page leaves open become the control characters
/// of the same number.
std::string FromWindows1252(std::string_view bytes);

/// `text` (UTF-8) in the code page; a character that it lacks, and a byte that is no UTF-8, becomes a "?".
std::string ToWindows1252(std::string_view text);

/// Whether the code page has every character of `text`.
bool FitsWindows1252(std::string_view text);

/// Whether `text` is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool IsUtf8(std::string_view text);

/// Text of unknown making as UTF-8: as it stands where it is well-formed as such, else from the code page.
std::string ToUtf8(std::string_view bytes);
