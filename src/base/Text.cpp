// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Text.h"

#include <algorithm>

namespace
{
bool IsSeparator(char c)
{
    return c == ' ' || c == '\t' || c == ',';
}

bool ContinuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

template <typename Take>
void ForEachToken(std::string_view line, const Take& take)
{
    auto at = line.begin();
    while (at != line.end()) {
        const auto first = std::find_if_not(at, line.end(), IsSeparator);
        at = std::find_if(first, line.end(), IsSeparator);
        if (first != at)
            take(first, at);
    }
}
} // namespace

std::string PadString(std::string_view text, std::size_t width)
{
    std::size_t characters = 0;
    std::size_t end = 0;
    while (end < text.size() && characters < width) {
        ++characters;
        do
            ++end;
        while (end < text.size() && ContinuesCharacter(text[end]));
    }
    return std::string(text.substr(0, end)) + std::string(width - characters, ' ');
}

std::string Trim(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string ToUpper(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::vector<std::string> ParseLine(std::string_view line)
{
    std::vector<std::string> tokens;
    ForEachToken(line, [&](auto first, auto last) { tokens.emplace_back(first, last); });
    return tokens;
}

std::size_t CountTokens(std::string_view line)
{
    std::size_t count = 0;
    ForEachToken(line, [&](auto, auto) { ++count; });
    return count;
}
