// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

/// `value` through a column's number format: fixed "0", "0.00"; with thousands set apart "#,0", "#,0.0";
/// scientific "0E+", "0.00E+" (exponent with a sign and at least two digits). The decimals are the zeros
/// behind the point; a half is rounded to the even digit. Any other text shows the number in full.
std::string FormatNumber(float value, std::string_view format);

/// Decimals beyond these make a table unreadable.
inline constexpr int kMostDecimals = 6;

/// The fixed format with so many decimals, from 0 to kMostDecimals: "0", "0.00".
std::string FixedFormat(int decimals);
