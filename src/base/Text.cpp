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

/// Where the character that begins at `at` ends.
std::size_t NextCharacter(std::string_view text, std::size_t at)
{
    do
        ++at;
    while (at < text.size() && ContinuesCharacter(text[at]));
    return at;
}

/// How much of `text` stands on a line behind `before`. Grown by characters, so that its cost is that of the
/// line, however long the text is.
std::size_t LineEnd(std::string_view text, const std::string& before,
                    const std::function<bool(const std::string&)>& fits)
{
    std::size_t end = std::min(NextCharacter(text, 0), text.size());
    while (end < text.size()) {
        const std::size_t next = NextCharacter(text, end);
        if (!fits(before + std::string(text.substr(0, next))))
            break;
        end = next;
    }
    if (end >= text.size())
        return text.size();
    const std::size_t blank = text.rfind(' ', end);
    const std::size_t word = text.find_first_not_of(' ');
    if (blank == std::string_view::npos || blank < word)
        return end; // one word alone is too long
    return text.find_last_not_of(' ', blank) + 1;
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
        end = NextCharacter(text, end);
    }
    return std::string(text.substr(0, end)) + std::string(width - characters, ' ');
}

std::vector<std::string> WrapText(std::string_view text, const std::string& hanging,
                                  const std::function<bool(const std::string&)>& fits)
{
    std::vector<std::string> lines;
    std::string before;
    do {
        const std::size_t end = LineEnd(text, before, fits);
        lines.push_back(before + std::string(text.substr(0, end)));
        text.remove_prefix(std::min(text.find_first_not_of(' ', end), text.size()));
        before = hanging;
    } while (!text.empty());
    return lines;
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
