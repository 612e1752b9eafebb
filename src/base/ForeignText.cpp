// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ForeignText.h"

#include "base/Windows1252.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>

namespace
{
/// The well-formed character that `text` begins with, or its first byte.
std::string_view FirstOf(std::string_view text)
{
    const auto ones = static_cast<std::size_t>(std::countl_one(static_cast<unsigned char>(text.front())));
    const std::string_view character = text.substr(0, std::max<std::size_t>(ones, 1));
    return IsUtf8(character) ? character : text.substr(0, 1);
}

std::string Hexadecimal(const char* format, unsigned value)
{
    char escape[8];
    std::snprintf(escape, sizeof escape, format, value);
    return escape;
}

std::string EscapeOfByte(unsigned char byte)
{
    switch (byte) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return Hexadecimal("\\x%02x", byte);
    }
}

/// Controls of one byte beyond ASCII, breaks of lines and paragraphs, and what turns the direction of
/// writing: a file name could hide its ending behind those. All have two or three bytes.
bool IsHidden(std::uint32_t point)
{
    return (point >= 0x80 && point < 0xA0) || (point >= 0x200E && point <= 0x200F) ||
           (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069) || point == 0xFEFF;
}

std::uint32_t PointOf(std::string_view character)
{
    std::uint32_t point = static_cast<unsigned char>(character.front()) & (0xFFU >> (character.size() + 1));
    for (const char c : character.substr(1))
        point = (point << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
    return point;
}

std::string Shown(std::string_view character)
{
    const auto lead = static_cast<unsigned char>(character.front());
    if (character.size() == 1)
        return lead >= 0x20 && lead < 0x7F ? std::string(character) : EscapeOfByte(lead);
    const std::uint32_t point = PointOf(character);
    return IsHidden(point) ? Hexadecimal("\\u%04x", point) : std::string(character);
}

std::size_t Characters(const std::string& shown)
{
    return shown.front() == '\\' ? shown.size() : 1; // an escape is as many as one sees
}
} // namespace

std::string Quotable(std::string_view text, std::size_t most)
{
    std::string quotable;
    for (std::size_t count = 0; !text.empty();) {
        const std::string_view character = FirstOf(text);
        const std::string shown = Shown(character);
        count += Characters(shown);
        if (count > most)
            return quotable + "...";
        quotable += shown;
        text.remove_prefix(character.size());
    }
    return quotable;
}

std::string Printable(std::string_view message)
{
    std::string printable;
    while (!message.empty()) {
        const std::string_view character = FirstOf(message);
        printable += character == "\n" ? "\n" : Shown(character);
        message.remove_prefix(character.size());
    }
    return printable;
}
