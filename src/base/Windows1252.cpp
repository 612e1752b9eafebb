// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Windows1252.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace
{
// What the code page holds at 0x80 to 0x9F; everywhere else byte and code point agree.
constexpr std::array<char16_t, 32> kHighBlock{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                              0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                              0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                              0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void Append(std::string& text, char16_t point)
{
    const auto put = [&text](unsigned bits) { text += static_cast<char>(bits); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0U | (point >> 6U));
        put(0x80U | (point & 0x3FU));
    } else {
        put(0xE0U | (point >> 12U));
        put(0x80U | ((point >> 6U) & 0x3FU));
        put(0x80U | (point & 0x3FU));
    }
}

/// Length and least code point of the sequence that `lead` begins; length 0 when it begins none.
struct Sequence {
    std::size_t length;
    std::uint32_t least;
    std::uint32_t bits;
};

Sequence SequenceOf(unsigned char lead)
{
    if (lead < 0x80)
        return {1, 0, lead};
    if (lead >= 0xC0 && lead < 0xE0)
        return {2, 0x80, lead & 0x1FU};
    if (lead >= 0xE0 && lead < 0xF0)
        return {3, 0x800, lead & 0x0FU};
    if (lead >= 0xF0 && lead < 0xF8)
        return {4, 0x10000, lead & 0x07U};
    return {0, 0, 0};
}

/// Takes the first code point off the front of `text`; nothing, and `text` as it was, where none stands
/// there.
std::optional<std::uint32_t> TakePoint(std::string_view& text)
{
    const Sequence sequence = SequenceOf(static_cast<unsigned char>(text.front()));
    if (sequence.length == 0 || sequence.length > text.size())
        return std::nullopt;
    std::uint32_t point = sequence.bits;
    for (std::size_t i = 1; i < sequence.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U)
            return std::nullopt;
        point = (point << 6U) | (byte & 0x3FU);
    }
    const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
    if (point < sequence.least || point > 0x10FFFF || surrogate)
        return std::nullopt;
    text.remove_prefix(sequence.length);
    return point;
}

std::optional<char> ByteOf(std::uint32_t point)
{
    if (point < 0x80 || (point >= 0xA0 && point <= 0xFF))
        return static_cast<char>(point);
    const auto at = std::find(kHighBlock.begin(), kHighBlock.end(), static_cast<char16_t>(point));
    if (point > 0xFFFF || at == kHighBlock.end())
        return std::nullopt;
    return static_cast<char>(0x80 + (at - kHighBlock.begin()));
}
} // namespace

std::string FromWindows1252(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        Append(text, byte >= 0x80 && byte <= 0x9F ? kHighBlock[byte - 0x80U] : char16_t{byte});
    }
    return text;
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty())
        if (!TakePoint(text))
            return false;
    return true;
}

std::string ToWindows1252(std::string_view text)
{
    std::string bytes;
    while (!text.empty()) {
        const auto point = TakePoint(text);
        if (!point)
            text.remove_prefix(1);
        bytes += point ? ByteOf(*point).value_or('?') : '?';
    }
    return bytes;
}

bool FitsWindows1252(std::string_view text)
{
    while (!text.empty()) {
        const auto point = TakePoint(text);
        if (!point || !ByteOf(*point))
            return false;
    }
    return true;
}

std::string ToUtf8(std::string_view bytes)
{
    return IsUtf8(bytes) ? std::string(bytes) : FromWindows1252(bytes);
}
