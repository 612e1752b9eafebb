// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the bytes, a comma-separated table is read in rows as long as its headings or refused with the
// line; and a table that was read reads the same again when it is written with every cell in quotes.
#include "files/AsciiText.h"
#include "files/CsvReader.h"
#include "files/CsvText.h"
#include "fuzz/FuzzChecks.h"

#include <vector>

namespace
{
using Rows = std::vector<std::vector<std::string>>;

std::vector<std::string> TextsOf(const CsvRow& row, std::size_t& line)
{
    Demand(row.line > line, "a row begins below the one before");
    line = row.line;
    std::vector<std::string> texts;
    for (const CsvCell& cell : row.cells) {
        Demand(cell.line >= line, "a cell begins no earlier than the one before");
        line = cell.line;
        texts.push_back(cell.text);
    }
    return texts;
}

/// Headings and rows. \throws ImportError as the reader
Rows Read(std::string_view text)
{
    CsvReader reader(text);
    Demand(!reader.Headings().empty() && reader.Headings().size() <= kMaxTextColumns, "1 to 256 headings");
    Rows rows{reader.Headings()};
    CsvRow row;
    for (std::size_t line = 1; reader.Next(row);) {
        rows.push_back(TextsOf(row, line));
        Demand(rows.back().size() == rows.front().size(), "a cell a heading");
    }
    Demand(rows.size() > 1 && !reader.Next(row), "a table has rows and ends");
    return rows;
}

std::string Quoted(const std::string& cell)
{
    std::string quoted = "\"";
    for (const char c : cell)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + "\"";
}

std::string Written(const Rows& rows)
{
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        for (const std::string& cell : row)
            text += Quoted(cell) + ",";
        text.back() = '\n';
    }
    return text;
}
} // namespace

namespace
{
/// The table that the import wizard gets of it is one, or the refusal names the line.
void CheckTable(Bytes bytes)
{
    try {
        const AsciiText table = ReadCsvText(bytes, "table.csv");
        Demand(!table.headings.empty() && table.columns.size() == table.headings.size(),
               "a column a heading");
        for (const std::vector<double>& column : table.columns)
            Demand(column.size() == table.lines.size(), "a value a row");
        for (const std::string& heading : table.headings)
            Demand(IsUtf8(heading), "headings are UTF-8", heading);
    } catch (const ImportError& error) {
        Demand(error.place.starts_with("Line "), "a refusal begins with its place", error.place);
        DemandSentence(error.place);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CheckTable({data, size});
    Rows rows;
    try {
        rows = Read(TextOf({data, size}));
    } catch (const ImportError& error) {
        Demand(error.place.starts_with("Line " + std::to_string(error.line) + ": "),
               "a refusal begins with its place", error.place);
        DemandSentence(error.place);
        return 0;
    }
    Demand(Read(Written(rows)) == rows, "what was read is what is written"); // and raises nothing
    return 0;
}
