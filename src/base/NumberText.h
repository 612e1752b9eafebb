// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers as text and back, with a decimal point whatever the system's locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace number_text
{

/// At most 7 significant digits, no trailing zeros, an exponent of at least two digits when one is needed:
/// 0.025, 1E-07, 1.234568E+08.
std::string Plain(float value);

/// The same with at most 15 significant digits.
std::string Plain(double value);

/// The shortest text that reads back as the same 32-bit float.
std::string Shortest(float value);

/// `value` with exactly `decimals` digits behind the point ("0.500").
std::string Fixed(double value, int decimals);

/// A number as files and entries hold it: optional sign, digits with at most one point, optional exponent
/// with E or e, nothing else ("nan", "inf" and hexadecimal are no numbers). Empty for anything else, and for
/// a value beyond 64 bits.
std::optional<double> Parse(std::string_view text);

/// How many digits behind the point it takes to write the number in `text` without an exponent: 2 for "0.71",
/// 3 for "7.1E-2", 0 for "12" and for "1.5E3". \pre Parse takes the text
int Decimals(std::string_view text);

/// As Parse, with blanks around the number allowed, as a person types it.
std::optional<double> ParseTyped(std::string_view text);

} // namespace number_text
