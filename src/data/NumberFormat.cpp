// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/NumberFormat.h"

#include "base/NumberText.h"
#include "base/VeltError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace
{
using Category = NumberCategory;

struct Pattern {
    Category category = Category::Fixed;
    int decimals = 0;
};

/// The pattern behind a format text, or nothing when the text is none of ours.
std::optional<Pattern> PatternOf(std::string_view format)
{
    Pattern pattern;
    if (format.starts_with("#,")) {
        pattern.category = Category::Standard;
        format.remove_prefix(2);
    } else if (format.ends_with("E+")) {
        pattern.category = Category::Scientific;
        format.remove_suffix(2);
    }
    if (format == "0")
        return pattern;
    if (!format.starts_with("0.") || format.size() == 2 ||
        format.find_first_not_of('0', 2) != std::string_view::npos)
        return std::nullopt;
    pattern.decimals = static_cast<int>(format.size() - 2);
    return pattern;
}

std::string Scientific(float value, int decimals)
{
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), static_cast<double>(value),
                                   std::chars_format::scientific, decimals)
                         .ptr;
    std::string text(buffer.data(), end);
    text[text.find('e')] = 'E';
    return text;
}

void SetThousandsApart(std::string& text)
{
    const std::size_t first = text.front() == '-' ? 1 : 0;
    const std::size_t point = text.find('.');
    for (std::size_t at = point == std::string::npos ? text.size() : point; at > first + 3; at -= 3)
        text.insert(at - 3, 1, ',');
}

/// A value that rounds to nothing has no sign.
void DropSignOfZero(std::string& text)
{
    const std::string_view digits = std::string_view(text).substr(0, text.find('E'));
    if (text.front() == '-' && digits.find_first_of("123456789") == std::string_view::npos)
        text.erase(0, 1);
}
} // namespace

std::string FormatNumber(float value, std::string_view format)
{
    const auto pattern = PatternOf(format);
    if (!pattern || !std::isfinite(value))
        return number_text::Shortest(value);
    std::string text = pattern->category == Category::Scientific
                           ? Scientific(value, pattern->decimals)
                           : number_text::Fixed(static_cast<double>(value), pattern->decimals);
    DropSignOfZero(text);
    if (pattern->category == Category::Standard)
        SetThousandsApart(text);
    return text;
}

std::string FormatText(NumberCategory category, int decPlaces)
{
    if (category == NumberCategory::None || decPlaces < 0 || decPlaces > kMostDecPlaces)
        throw ProgramError(errors::kNumberFormat, "Invalid Number Format", "_frmNumberFormat");
    const std::string digits =
        (decPlaces < 1 ? "0" : "0.") + std::string(static_cast<std::size_t>(decPlaces), '0');
    if (category == NumberCategory::Standard)
        return "#," + digits;
    return category == NumberCategory::Scientific ? digits + "E+" : digits;
}

NumberFormatChoice ChoiceOf(std::string_view format)
{
    NumberFormatChoice choice{.category = NumberCategory::Fixed, .decPlaces = 0};
    const std::size_t exponent = format.find('E');
    if (exponent != std::string_view::npos)
        choice.category = NumberCategory::Scientific;
    else if (format.find(',') != std::string_view::npos)
        choice.category = NumberCategory::Standard;
    if (const std::size_t point = format.find('.'); point < std::min(exponent, format.size()))
        choice.decPlaces =
            std::min(static_cast<int>(std::min(exponent, format.size()) - point) - 1, kMostDecPlaces);
    return choice;
}

std::string FixedFormat(int decimals)
{
    const int shown = std::clamp(decimals, 0, kMostDecimals);
    return shown == 0 ? "0" : "0." + std::string(static_cast<std::size_t>(shown), '0');
}
