// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

/// `value` through a column's number format: fixed "0", "0.00"; with thousands set apart "#,0", "#,0.0";
/// scientific "0E+", "0.00E+" (exponent with a sign and at least two digits). The decimals are the zeros
/// behind the point; a half is rounded to the even digit. Any other text shows the number in full.
std::string FormatNumber(float value, std::string_view format);

/// What a number format is chosen from.
enum class NumberCategory : int { None = 0, Fixed = 1, Standard = 2, Scientific = 3 };

inline constexpr int kMostDecPlaces =
    15; ///< offered for a column; the text still fits a column's 20 characters

/// A number format as the user sees it: category and decimal places, with a value to show it on.
struct NumberFormatChoice {
    NumberCategory category = NumberCategory::None; ///< None: nothing chosen
    int decPlaces = -1;                             ///< 0 to 15; -1: nothing chosen
    float sample = 0.0F;
};

/// The text of a format: "0.00", "#,0.00", "0.00E+" (it ends there).
/// \throws VeltError 2352 with the program's base when category or decimal places are not chosen
std::string FormatText(NumberCategory category, int decPlaces);

/// What a column's format text stands for: with an "E" scientific, else with a "," standard, else fixed; the
/// decimal places are the characters behind the point, up to the "E". At most 15 of them count.
NumberFormatChoice ChoiceOf(std::string_view format);

/// Decimals beyond these make a table unreadable.
inline constexpr int kMostDecimals = 6;

/// The fixed format with so many decimals, from 0 to kMostDecimals: "0", "0.00".
std::string FixedFormat(int decimals);
