// SPDX-License-Identifier: GPL-3.0-or-later
// Rows and columns of the table come and go. Functions on the value, so that a caller can try them aside.
#pragma once

#include "data/DataTable.h"

#include <optional>
#include <string>
#include <vector>

/// Moves the rows from `start` on by `amount`: above 0 it opens so many rows at `start`, below 0 it closes
/// them; 0 does nothing. All 15 columns move, present or not, and ToggledIn with them. A row that comes from
/// nowhere holds no value, is not Included and is toggled out, also when data are typed into it later, until
/// the user ticks it. What is pushed past row 200 is lost. Included does not move: the conversions at the end
/// of Edit Mode put it right.
/// \throws VeltError 9 for a start outside 1 to 200
void ShiftData(DataTable& table, int amount, int start = 1);

/// Sets every present column of the periods `first` to `last` (labels) to 0 and takes their rows out of the
/// fit. Nothing when first is above last. \throws VeltError 9 for a period without a row; nothing is changed
void EmptyData(DataTable& table, int first, int last);

/// The column becomes present, or absent; its 200 rows hold no value.
void AddColumn(DataTable& table, int column);
void EraseColumn(DataTable& table, int column);

/// Opens `count` periods above row `top`, closes the rows `top` to `top + count - 1`, or adds `count` periods
/// behind the last one. The label of the last period follows, that of the first never changes.
/// \pre RefusalOfRows took the count (except for DeleteRows, which may leave a table without rows)
void InsertRows(DataTable& table, int top, int count);
void DeleteRows(DataTable& table, int top, int count);
void AddRows(DataTable& table, int count);

/// Why `count` more periods do not go into the table, as a sentence for the user; nothing when they do.
std::optional<std::string> RefusalOfRows(const DataTable& table, int count);

/// User columns (1 to 9) in their order: those that could be added, and those that stand in the table.
std::vector<int> AvailableColumns(const DataTable& table);
std::vector<int> PresentColumns(const DataTable& table);

/// Whether erasing `chosen` would leave no column. It counts the present ones among 1 to 14, so that
/// column 15 counts as none. Deliberate.
bool ErasesAll(const DataTable& table, const std::vector<int>& chosen);
