// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/DataTable.h"

#include <algorithm>

int DataTable::ShownRows() const
{
    return std::clamp(static_cast<int>(timeInts), 0, kRows);
}

void DataTable::Include(int row, bool usable)
{
    included(row) = usable;
    toggledIn(row) = toggledIn(row) && usable;
}

void DataTable::Toggle(int row)
{
    if (!included(row))
        return;
    toggledIn(row) = !toggledIn(row);
    nntPoints += toggledIn(row) ? 1 : -1;
}

void DataTable::ToggleOut(int row)
{
    if (toggledIn(row))
        Toggle(row);
}
