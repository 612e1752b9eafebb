// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A text from the clipboard, taken apart: cells parted by tabs, rows by CR LF, LF or CR. A cell in double
/// quotes, as spreadsheets write one that could be mistaken, is what stands between them ("" is one ").
struct PasteBlock {
    std::vector<std::vector<std::string>> rows; ///< each has a cell at least; a last line end makes no row
    bool endsInLineEnd = false;                 ///< the last row has its line end

    bool IsOneValue() const { return rows.size() <= 1 && (rows.empty() || rows.front().size() == 1); }
};

/// Reads 100,000 cells at most: far more than any table has, and little enough for any clipboard.
PasteBlock ReadPasteBlock(std::string_view text);
