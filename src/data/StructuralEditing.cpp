// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/StructuralEditing.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace
{
constexpr int kRows = DataTable::kRows;

/// The row whose content `row` takes when the rows from `start` on move by `amount`; 0 when there is none.
int SourceOf(int row, int amount, int start)
{
    const int source = row - amount;
    return source < start || source > kRows ? 0 : source;
}

/// The last label moves by `count`. A table without rows counts as an empty range, whatever its labels say (a
/// file may hold a range that ends before it begins, a failed import leaves 0 to 0), so that what is added
/// can be seen.
void ChangeLength(DataTable& table, int count)
{
    const std::int64_t empty = std::int64_t{table.minTimeP} - 1;
    const std::int64_t last = (table.timeInts > 0 ? std::int64_t{table.maxTimeP} : empty) + count;
    table.timeInts = static_cast<std::int32_t>(last - empty);
    table.maxTimeP = static_cast<std::int32_t>(last);
}

std::vector<int> UserColumns(const DataTable& table, bool present)
{
    std::vector<int> found;
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        if (table.present(column) == present)
            found.push_back(column);
    return found;
}

void SetPresence(DataTable& table, int column, bool present)
{
    table.present(column) = present;
    table.db(column).Fill(DataTable::kMissing);
}
} // namespace

void ShiftData(DataTable& table, int amount, int start)
{
    if (start < 1 || start > kRows)
        RaiseSubscript();
    if (amount == 0)
        return;
    const DataTable before = table;
    for (int row = start; row <= kRows; ++row) {
        const int source = SourceOf(row, amount, start);
        for (int column = columns::kFirst; column <= columns::kLast; ++column)
            table.db(column)(row) = source != 0 ? before.db(column)(source) : DataTable::kMissing;
        table.toggledIn(row) = source != 0 && before.toggledIn(source);
        if (source == 0)
            table.included(row) = false;
    }
}

void EmptyData(DataTable& table, int first, int last)
{
    if (first > last)
        return;
    const int top = first - table.minTimeP + 1;
    const int bottom = last - table.minTimeP + 1;
    if (top < 1 || bottom > kRows)
        RaiseSubscript();
    for (int row = top; row <= bottom; ++row) {
        for (int column = columns::kFirst; column <= columns::kLast; ++column)
            if (table.present(column))
                table.db(column)(row) = 0.0F;
        table.toggledIn(row) = table.included(row) = false;
    }
}

void AddColumn(DataTable& table, int column)
{
    SetPresence(table, column, true);
}

void EraseColumn(DataTable& table, int column)
{
    SetPresence(table, column, false);
}

void InsertRows(DataTable& table, int top, int count)
{
    ShiftData(table, count, top);
    ChangeLength(table, count);
}

void DeleteRows(DataTable& table, int top, int count)
{
    ShiftData(table, -count, top);
    ChangeLength(table, -count);
}

void AddRows(DataTable& table, int count)
{
    // The shift begins behind the first new row, which so keeps its flags from before. Deliberate. Its values
    // could be left from a projection, and would come into view as data.
    const int first = table.ShownRows() + 1;
    for (int column = columns::kFirst; column <= columns::kLast; ++column)
        table.db(column)(first) = DataTable::kMissing;
    if (first < kRows)
        ShiftData(table, count, first + 1);
    ChangeLength(table, count);
}

std::optional<std::string> RefusalOfRows(const DataTable& table, int count)
{
    const int room = kRows - table.ShownRows();
    if (count > room)
        return "The table has room for " + std::to_string(kRows) + " time periods. " +
               (room == 0 ? std::string("No more can be added.")
                          : "It has " + std::to_string(table.ShownRows()) + " now: " + std::to_string(count) +
                                " more do not fit, at most " + std::to_string(room) + " do.");
    if (table.maxTimeP > std::numeric_limits<std::int32_t>::max() - count)
        return "The labels of the time periods cannot go beyond 2147483647.";
    return std::nullopt;
}

std::vector<int> AvailableColumns(const DataTable& table)
{
    return UserColumns(table, false);
}

std::vector<int> PresentColumns(const DataTable& table)
{
    return UserColumns(table, true);
}

bool ErasesAll(const DataTable& table, const std::vector<int>& chosen)
{
    int present = 0;
    for (int column = columns::kFirst; column < columns::kLast; ++column)
        present += table.present(column) ? 1 : 0;
    return present == static_cast<int>(chosen.size());
}
