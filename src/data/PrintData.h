// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

class IPrintout;
class clsVeltData;

/// Columns of the table that stand beside one another on a page of the listing, behind the time.
struct ColumnGroup {
    int first;
    int last; ///< its limit; the last group's is the last column of all, present or not

    bool operator==(const ColumnGroup&) const = default;
};

/// The present columns of `data` in groups as wide as the page of `printout`.
/// \return one group at least \throws VeltError 2251 a page has no room for a column beside the time
std::vector<ColumnGroup> GroupColumns(const clsVeltData& data, const IPrintout& printout);
