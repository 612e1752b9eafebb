// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// System error of a path in none of the forms that the path routines accept.
inline constexpr int kBadPathname = 161;

/// Raises `code` + 0x80047148 with the system's message text for the code, cut to 256 characters, and the
/// source "VELT 3.0.Windows".
[[noreturn]] void RaiseWindowsError(int code);

/// RaiseWindowsError unless `code` is 0.
void RaiseIfFailed(int code);

/// Below 1001: raises that number, source "VELT 3.0.VBError". From 1001 up: description the text of `number`,
/// source "VELT 3.0." and the text of the number rounded down to a multiple of 10.
[[noreturn]] void RaiseError(int number);
