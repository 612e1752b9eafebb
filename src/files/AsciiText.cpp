// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/AsciiText.h"

#include "base/FileErrors.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "base/Windows1252.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string LinePlace(std::size_t line, const std::string& what = {})
{
    return "(line " + std::to_string(line) + (what.empty() ? "" : ": " + what) + ")";
}

/// Hands out the lines of a text one after the other.
class LineReader
{
public:
    explicit LineReader(std::span<const std::uint8_t> bytes)
        : m_left(reinterpret_cast<const char*>(bytes.data()), bytes.size())
    {
        if (m_left.starts_with(kByteOrderMark))
            m_left.remove_prefix(kByteOrderMark.size());
    }

    bool AtEnd() const { return m_left.empty(); }
    std::size_t Number() const { return m_number; } ///< of the line handed out last

    /// \throws ImportError 62 at the end of the file, 2257 for a line with a zero byte
    std::string_view Next()
    {
        ++m_number;
        if (AtEnd())
            throw ImportError(kEndOfFile, std::string(FindFileError(kEndOfFile)->text),
                              LinePlace(m_number, "the file ends before it"), m_number);
        const std::size_t end = std::min(m_left.find_first_of("\r\n"), m_left.size());
        const std::string_view line = m_left.substr(0, end);
        m_left.remove_prefix(end);
        if (!m_left.empty())
            m_left.remove_prefix(m_left.starts_with("\r\n") ? 2 : 1);
        if (line.find('\0') != std::string_view::npos)
            throw BadData(LinePlace(m_number, "a zero byte, this is not plain text"), m_number);
        return line;
    }

private:
    std::string_view m_left;
    std::size_t m_number = 0;
};

std::string Description(LineReader& lines)
{
    const std::string_view line = lines.Next();
    const auto first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return ToUtf8(line.substr(first, line.find_last_not_of(" \t") - first + 1));
}

std::vector<std::string> Headings(LineReader& lines)
{
    const std::string_view line = lines.Next();
    const std::size_t count = CountTokens(line); // before any of them takes memory
    if (count == 0 || count > kMaxTextColumns)
        throw BadColumns(LinePlace(lines.Number(), std::to_string(count) + " headings, 1 to " +
                                                       std::to_string(kMaxTextColumns) + " are possible"),
                         lines.Number());
    std::vector<std::string> headings = ParseLine(line);
    std::transform(headings.begin(), headings.end(), headings.begin(), ToUtf8);
    return headings;
}

void ReadRow(LineReader& lines, AsciiText& text)
{
    const std::string_view row = lines.Next();
    const std::size_t line = lines.Number();
    if (CountTokens(row) != text.columns.size())
        throw BadColumns(LinePlace(line), line);
    const std::vector<std::string> words = ParseLine(row);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto value = number_text::Parse(words[i]);
        if (!value)
            throw BadData(LinePlace(line), line);
        text.Add(i, *value, words[i]);
    }
    text.lines.push_back(line);
}
} // namespace

ImportError BadColumns(std::string place, std::size_t line)
{
    return {kProgramErrorBase + errors::kImportColumns,
            "Bad number of data columns. Please correct and reload file.", std::move(place), line};
}

ImportError BadData(std::string place, std::size_t line)
{
    return {kProgramErrorBase + errors::kImportData,
            "Invalid or missing data. Please correct and reload file.", std::move(place), line};
}

void AsciiText::Add(std::size_t column, double value, std::string_view text)
{
    decimals.resize(columns.size());
    columns[column].push_back(value);
    decimals[column] = std::max(decimals[column], number_text::Decimals(text));
}

void AsciiText::AddMissing(std::size_t column, std::size_t line)
{
    missing.resize(columns.size());
    columns[column].push_back(kMissing);
    if (missing[column] == 0)
        missing[column] = line;
}

void CheckTextSize(std::uintmax_t size)
{
    if (size > kMaxTextBytes)
        throw BadData("(the file has " + std::to_string(size) + " bytes; at most " +
                          std::to_string(kMaxTextBytes) + " can be imported)",
                      0);
}

std::string ReadAsciiDescription(std::span<const std::uint8_t> bytes)
{
    CheckTextSize(bytes.size());
    LineReader lines(bytes);
    return Description(lines);
}

AsciiText ReadAsciiText(std::span<const std::uint8_t> bytes)
{
    CheckTextSize(bytes.size());
    LineReader lines(bytes);
    AsciiText text;
    text.description = Description(lines);
    text.headings = Headings(lines);
    text.columns.resize(text.headings.size());
    while (!lines.AtEnd())
        ReadRow(lines, text);
    if (text.Rows() == 0)
        throw BadData(LinePlace(lines.Number() + 1, "there is no row of values"), lines.Number() + 1);
    return text;
}
