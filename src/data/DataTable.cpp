// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/DataTable.h"

#include "base/Text.h"
#include "data/NumberFormat.h"

#include <algorithm>
#include <cmath>

void DataTable::FormatFilled(int column)
{
    constexpr int kFigures = 3;
    if (Trim(format(column)) != "0")
        return;
    double smallest = 0.0;
    for (int row = 1; row <= ShownRows(); ++row) {
        const double size = std::fabs(static_cast<double>(db(column)(row)));
        const bool counts = db(column)(row) != kMissing && size > 0.0 && std::isfinite(size);
        if (counts && (smallest == 0.0 || size < smallest))
            smallest = size;
    }
    if (smallest > 0.0)
        format(column) = FixedFormat(kFigures - 1 - static_cast<int>(std::floor(std::log10(smallest))));
}

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
