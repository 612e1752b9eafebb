// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// A comma-separated table with one heading line, as a spreadsheet or a statistics package writes it. Cells
/// are texts; what they mean is the reader's business.
struct CsvTable {
    struct Row {
        std::size_t line = 0; ///< in the file, counted from 1
        std::vector<std::string> cells;
    };
    std::vector<std::string> headings;
    std::vector<Row> rows;
};

/// Takes `text` apart. Lines end with CR LF, LF or CR; a cell may stand in double quotes, which then may hold
/// commas, line ends and doubled quotes; blanks around a cell do not count; a byte order mark and empty lines
/// at the end are skipped.
/// \throws BatchFailure BadData with the line, for a row with another number of cells than there are
///         headings, a quote that is never closed, a zero byte, other separators, and a table without rows
CsvTable ReadCsvTable(std::string_view text);

/// An empty cell, or NA as statistics packages write it.
bool IsMissing(std::string_view cell);
