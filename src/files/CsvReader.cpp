// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/CsvReader.h"

#include "base/Text.h"
#include "files/AsciiText.h"

#include <algorithm>
#include <utility>

namespace
{
std::string LinePlace(std::size_t line, const std::string& sentence)
{
    return "Line " + std::to_string(line) + ": " + sentence;
}

[[noreturn]] void Refuse(std::size_t line, const std::string& sentence)
{
    throw BadData(LinePlace(line, sentence), line);
}

[[noreturn]] void RefuseColumns(std::size_t line, const std::string& sentence)
{
    throw BadColumns(LinePlace(line, sentence), line);
}

/// How many lines end in `text`; CR LF is one end.
std::size_t LineEnds(std::string_view text)
{
    std::size_t ends = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool halfOfOne = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        ends += (text[at] == '\n' || text[at] == '\r') && !halfOfOne ? 1U : 0U;
    }
    return ends;
}

/// `text` without a byte order mark at its start and without lines of blanks at its end.
std::string_view Stripped(std::string_view text)
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    for (;;) {
        const std::size_t end = text.find_last_of("\r\n");
        const std::string_view last = end == std::string_view::npos ? text : text.substr(end + 1);
        if (last.find_first_not_of(" \t") != std::string_view::npos)
            return text;
        if (end == std::string_view::npos)
            return {};
        text = text.substr(0, end);
    }
}

/// A spreadsheet whose numbers have decimal commas puts semicolons between the cells.
void RefuseOtherSeparators(const std::vector<std::string>& headings)
{
    if (headings.size() != 1)
        return;
    for (const auto& [separator, name] : {std::pair(';', "semicolons"), {'\t', "tabs"}})
        if (headings.front().find(separator) != std::string::npos)
            RefuseColumns(1, std::string(name) + " stand between the headings. Save the table with commas "
                                                 "between the cells and points in the numbers.");
}
} // namespace

CsvReader::CsvReader(std::string_view text) : m_text(Stripped(text))
{
    if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos)
        Refuse(1 + LineEnds(text.substr(0, zero)),
               "a zero byte; this is not plain text. Save the table as CSV in UTF-8.");
    CsvRow row;
    const std::size_t count = ReadRow(row);
    if (count > kMaxTextColumns)
        RefuseColumns(1, std::to_string(count) + " headings; at most " + std::to_string(kMaxTextColumns) +
                             " columns can be read.");
    if (std::all_of(row.cells.begin(), row.cells.end(), [](const CsvCell& c) { return c.text.empty(); }))
        RefuseColumns(1, "there are no headings.");
    for (CsvCell& cell : row.cells)
        m_headings.push_back(std::move(cell.text));
    RefuseOtherSeparators(m_headings);
}

bool CsvReader::Next(CsvRow& row)
{
    if (AtEnd() && !m_anyRow)
        Refuse(m_line, "the table has no rows of values.");
    if (AtEnd())
        return false;
    m_anyRow = true;
    const std::size_t count = ReadRow(row);
    if (count != m_headings.size())
        RefuseColumns(row.line, std::to_string(count) + " cells stand under " +
                                    std::to_string(m_headings.size()) + " headings.");
    return true;
}

/// \return how many cells the row has; those behind kMaxTextColumns are only counted.
std::size_t CsvReader::ReadRow(CsvRow& row)
{
    row.line = m_line;
    row.cells.clear();
    std::size_t count = 0;
    do {
        const std::size_t line = m_line;
        std::string text = Cell();
        if (++count <= kMaxTextColumns)
            row.cells.push_back({std::move(text), line});
    } while (TakeIf(','));
    TakeIf('\r');
    TakeIf('\n');
    ++m_line;
    return count;
}

bool CsvReader::TakeIf(char wanted)
{
    if (AtEnd() || m_text[m_at] != wanted)
        return false;
    ++m_at;
    return true;
}

std::string CsvReader::Cell()
{
    while (TakeIf(' ') || TakeIf('\t')) {
    }
    if (TakeIf('"'))
        return QuotedCell();
    const std::size_t end = std::min(m_text.find_first_of(",\r\n", m_at), m_text.size());
    std::string cell = Trim(m_text.substr(m_at, end - m_at));
    m_at = end;
    return cell;
}

std::string CsvReader::QuotedCell()
{
    const std::size_t opened = m_at;
    std::string cell;
    for (;; ++m_at) {
        if (AtEnd())
            Refuse(m_line, "a quote is opened and never closed.");
        const char c = m_text[m_at];
        if (c == '"' && (m_at + 1 >= m_text.size() || m_text[m_at + 1] != '"'))
            break;
        m_at += c == '"' ? 1U : 0U; // of a doubled quote one stands
        cell += c;
    }
    m_line += LineEnds(m_text.substr(opened, m_at - opened));
    ++m_at;
    const std::size_t end = std::min(m_text.find_first_of(",\r\n", m_at), m_text.size());
    if (!Trim(m_text.substr(m_at, end - m_at)).empty())
        Refuse(m_line, "text follows the closing quote of a cell.");
    m_at = end;
    return Trim(cell);
}

bool IsMissing(std::string_view cell)
{
    return cell.empty() || cell == "NA";
}
