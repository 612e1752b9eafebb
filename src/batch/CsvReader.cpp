// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/CsvTable.h"

#include "base/Text.h"
#include "batch/BatchFailure.h"

#include <algorithm>
#include <utility>

namespace
{
[[noreturn]] void Refuse(std::size_t line, const std::string& sentence)
{
    throw BatchFailure(ExitStatus::BadData, "Line " + std::to_string(line) + ": " + sentence);
}

/// Hands out the rows of a table one after the other.
class CellReader
{
public:
    explicit CellReader(std::string_view text) : m_text(text)
    {
        if (m_text.starts_with("\xEF\xBB\xBF"))
            m_text.remove_prefix(3);
    }

    bool AtEnd() const { return m_at >= m_text.size(); }

    CsvTable::Row Next()
    {
        CsvTable::Row row{m_line, {}};
        do
            row.cells.push_back(Cell());
        while (TakeIf(','));
        TakeIf('\r');
        TakeIf('\n');
        ++m_line;
        return row;
    }

private:
    bool TakeIf(char wanted)
    {
        if (AtEnd() || m_text[m_at] != wanted)
            return false;
        ++m_at;
        return true;
    }

    std::string Cell()
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

    std::string QuotedCell()
    {
        const std::size_t opened = m_line;
        std::string cell;
        for (;; ++m_at) {
            if (AtEnd())
                Refuse(opened, "a quote is opened and never closed.");
            const char c = m_text[m_at];
            if (c == '"' && (m_at + 1 >= m_text.size() || m_text[m_at + 1] != '"'))
                break;
            m_at += c == '"' ? 1U : 0U; // of a doubled quote one stands
            m_line += c == '\n' ? 1U : 0U;
            cell += c;
        }
        ++m_at;
        const std::size_t end = std::min(m_text.find_first_of(",\r\n", m_at), m_text.size());
        if (!Trim(m_text.substr(m_at, end - m_at)).empty())
            Refuse(m_line, "text follows the closing quote of a cell.");
        m_at = end;
        return Trim(cell);
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
};

bool IsEmptyLine(const CsvTable::Row& row)
{
    return row.cells.size() == 1 && row.cells.front().empty();
}
std::size_t LineOf(std::string_view text, std::size_t position)
{
    const std::string_view before = text.substr(0, position);
    return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

/// A spreadsheet whose numbers have decimal commas puts semicolons between the cells.
void RefuseOtherSeparators(const std::vector<std::string>& headings)
{
    if (headings.size() != 1)
        return;
    for (const auto& [separator, name] : {std::pair(';', "semicolons"), {'\t', "tabs"}})
        if (headings.front().find(separator) != std::string::npos)
            Refuse(1, std::string(name) + " stand between the headings. Save the table with commas between "
                                          "the cells and points in the numbers.");
}
} // namespace

CsvTable ReadCsvTable(std::string_view text)
{
    if (text.find('\0') != std::string_view::npos)
        Refuse(LineOf(text, text.find('\0')),
               "a zero byte; this is not plain text. Save the table as CSV in UTF-8.");
    CellReader reader(text);
    CsvTable table;
    if (!reader.AtEnd())
        table.headings = reader.Next().cells;
    while (!reader.AtEnd())
        table.rows.push_back(reader.Next());
    while (!table.rows.empty() && IsEmptyLine(table.rows.back()))
        table.rows.pop_back();
    if (table.rows.empty())
        Refuse(2, "the table has no rows of values.");
    RefuseOtherSeparators(table.headings);
    for (const CsvTable::Row& row : table.rows)
        if (row.cells.size() != table.headings.size())
            Refuse(row.line, std::to_string(row.cells.size()) + " cells stand under " +
                                 std::to_string(table.headings.size()) + " headings.");
    return table;
}

bool IsMissing(std::string_view cell)
{
    return cell.empty() || cell == "NA";
}
