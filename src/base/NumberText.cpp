// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace number_text
{
namespace
{
constexpr int kFloatDigits = 7;
constexpr int kDoubleDigits = 15;

std::string UpperExponent(std::string text)
{
    std::replace(text.begin(), text.end(), 'e', 'E');
    return text;
}

template <typename... Format>
std::string Chars(Format... format)
{
    std::array<char, 512> buffer{}; // room for the largest double written out in full
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), format...).ptr;
    return {buffer.data(), end};
}

std::string General(double value, int digits)
{
    if (value == 0.0)
        return "0"; // no minus sign on a zero
    return UpperExponent(Chars(value, std::chars_format::general, digits));
}

std::size_t SkipDigits(std::string_view text, std::size_t at)
{
    while (at < text.size() && text[at] >= '0' && text[at] <= '9')
        ++at;
    return at;
}

std::size_t SkipSign(std::string_view text, std::size_t at)
{
    return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
}

bool HasNumberForm(std::string_view text)
{
    const std::size_t first = SkipSign(text, 0);
    std::size_t at = SkipDigits(text, first);
    std::size_t digits = at - first;
    if (at < text.size() && text[at] == '.') {
        const std::size_t fraction = at + 1;
        at = SkipDigits(text, fraction);
        digits += at - fraction;
    }
    if (digits == 0)
        return false;
    if (at < text.size() && (text[at] == 'E' || text[at] == 'e')) {
        const std::size_t exponent = SkipSign(text, at + 1);
        at = SkipDigits(text, exponent);
        if (at == exponent)
            return false;
    }
    return at == text.size();
}

/// For a text of HasNumberForm whose value is far from 1: on which side it lies.
bool IsBelowOne(std::string_view text)
{
    const std::size_t end = std::min(text.find_first_of("eE"), text.size());
    const std::string_view mantissa = text.substr(0, end);
    const std::size_t lead = mantissa.find_first_of("123456789");
    if (lead == std::string_view::npos)
        return true;
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    // The mantissa lies between 10^(order - 1) and 10^order.
    const auto order = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(lead) + (lead > point);
    std::int64_t exponent = 0;
    if (end < text.size()) {
        const std::string_view digits = text.substr(end + (text[end + 1] == '+' ? 2 : 1));
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        if (result.ec != std::errc())
            return digits.front() == '-'; // no mantissa is as long as such an exponent
    }
    return order + exponent <= 0;
}
} // namespace

std::string Plain(float value)
{
    return General(static_cast<double>(value), kFloatDigits);
}

std::string Plain(double value)
{
    return General(value, kDoubleDigits);
}

std::string Shortest(float value)
{
    return UpperExponent(Chars(value));
}

std::string Fixed(double value, int decimals)
{
    return Chars(value, std::chars_format::fixed, decimals);
}

std::optional<double> Parse(std::string_view text)
{
    if (!HasNumberForm(text))
        return std::nullopt;
    if (text.front() == '+')
        text.remove_prefix(1); // from_chars knows no plus sign
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    // Too small to tell from zero is a zero; too large is no value of ours.
    if (result.ec == std::errc::result_out_of_range)
        return IsBelowOne(text) ? std::optional<double>(0.0) : std::nullopt;
    return result.ec == std::errc() ? std::optional<double>(value) : std::nullopt;
}

int Decimals(std::string_view text)
{
    const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
    const std::string_view digits = text.substr(0, mark);
    const std::size_t point = digits.find('.');
    int decimals = point == std::string_view::npos ? 0 : static_cast<int>(digits.size() - point) - 1;
    std::string_view power = text.substr(std::min(mark + 1, text.size()));
    if (power.starts_with('+'))
        power.remove_prefix(1);
    int exponent = 0; // one too large for this stands behind a value of 0 or one that no cell takes
    std::from_chars(power.data(), power.data() + power.size(), exponent);
    constexpr int kFar = 1000;
    return std::max(0, decimals - std::clamp(exponent, -kFar, kFar));
}

std::optional<double> ParseTyped(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return std::nullopt;
    const auto last = text.find_last_not_of(" \t");
    return Parse(text.substr(first, last - first + 1));
}

} // namespace number_text
