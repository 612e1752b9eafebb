// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/CsvText.h"

#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "base/Windows1252.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

namespace
{
double NumberIn(const CsvCell& cell, const std::string& heading)
{
    const std::optional<double> value = number_text::Parse(cell.text);
    if (!value)
        throw BadData("Line " + std::to_string(cell.line) + ", column \"" + Quotable(heading) + "\": \"" +
                          Quotable(cell.text) + "\" is not a number.",
                      cell.line);
    return *value;
}

/// The columns that hold a number in at least one row.
std::vector<std::size_t> NumberColumns(std::string_view text)
{
    CsvReader reader(text);
    std::vector<bool> holdsNumber(reader.Headings().size());
    for (CsvRow row; reader.Next(row);)
        for (std::size_t i = 0; i < holdsNumber.size(); ++i)
            holdsNumber[i] = holdsNumber[i] || number_text::Parse(row.cells[i].text);
    std::vector<std::size_t> columns;
    for (std::size_t i = 0; i < holdsNumber.size(); ++i)
        if (holdsNumber[i])
            columns.push_back(i);
    return columns;
}
} // namespace

AsciiText TakeColumns(CsvReader& reader, const std::vector<std::size_t>& used,
                      std::optional<std::size_t> time)
{
    AsciiText table;
    for (const std::size_t column : used)
        table.headings.push_back(reader.Headings()[column]);
    table.columns.resize(used.size());
    for (CsvRow row; reader.Next(row);) {
        table.lines.push_back(row.line);
        for (std::size_t i = 0; i < used.size(); ++i) {
            const CsvCell& cell = row.cells[used[i]];
            if (IsMissing(cell.text) && used[i] != time)
                table.AddMissing(i, cell.line);
            else
                table.Add(i, NumberIn(cell, table.headings[i]), cell.text);
        }
    }
    return table;
}

AsciiText ReadCsvText(std::span<const std::uint8_t> bytes, const std::string& path)
{
    CheckTextSize(bytes.size());
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::vector<std::size_t> columns = NumberColumns(text);
    if (columns.empty())
        throw BadData("Line 2: none of the columns holds a number.", 2);
    CsvReader reader(text);
    AsciiText table = TakeColumns(reader, columns);
    table.description = DescriptionFromName(path);
    std::transform(table.headings.begin(), table.headings.end(), table.headings.begin(), ToUtf8);
    return table;
}

std::string DescriptionFromName(const std::string& path)
{
    return Trim(ToUtf8(std::filesystem::path(path).filename().string()));
}
