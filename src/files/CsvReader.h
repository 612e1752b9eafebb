// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct CsvCell {
    std::string text;
    std::size_t line = 0; ///< in the file, counted from 1
};

struct CsvRow {
    std::size_t line = 0; ///< that it begins in
    std::vector<CsvCell> cells;
};

/// Takes a comma-separated table apart, as a spreadsheet or a statistics package writes it: one line of
/// headings, then row after row. Cells are texts; what they mean is the caller's business. It keeps no row,
/// so that a file of line ends costs no memory.
///
/// Lines end with CR LF, LF or CR; a cell may stand in double quotes, which then may hold commas, line ends
/// and doubled quotes; blanks around a cell do not count; a byte order mark and empty lines at the end are
/// skipped.
class CsvReader
{
public:
    /// Reads the headings. \param text  must outlive the reader
    /// \throws ImportError 2256 for no headings, more than kMaxTextColumns and other separators; 2257 for a
    ///         zero byte anywhere and a quote that is never closed. The place is a sentence with the line
    explicit CsvReader(std::string_view text);

    const std::vector<std::string>& Headings() const { return m_headings; }

    /// The next row, of as many cells as there are headings. \return false behind the last one
    /// \throws ImportError 2256 for a row with another number of cells; 2257 for a quote that is never
    /// closed,
    ///         text behind a quote, and a table without rows. The place is a sentence with the line
    bool Next(CsvRow& row);

private:
    std::size_t ReadRow(CsvRow& row);
    bool AtEnd() const { return m_at >= m_text.size(); }
    bool TakeIf(char wanted);
    std::string Cell();
    std::string QuotedCell();

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
    std::vector<std::string> m_headings;
    bool m_anyRow = false;
};

/// An empty cell, or NA as statistics packages write it.
bool IsMissing(std::string_view cell);
