// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/CsvReader.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A comma-separated table read whole, for tests that look at it.
struct CsvTable {
    struct Row {
        std::size_t line = 0;
        std::vector<std::string> cells;
    };
    std::vector<std::string> headings;
    std::vector<Row> rows;
};

inline CsvTable ReadCsvTable(std::string_view text)
{
    CsvReader reader(text);
    CsvTable table{reader.Headings(), {}};
    CsvRow row;
    while (reader.Next(row)) {
        table.rows.push_back({row.line, {}});
        for (CsvCell& cell : row.cells)
            table.rows.back().cells.push_back(std::move(cell.text));
    }
    return table;
}
