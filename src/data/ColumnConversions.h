// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/DataTable.h"

/// Derives the columns that can be derived from what is present and decides which rows are usable.
/// \throws VeltError 11, 6 when a derivation fails, with the column and the row; `table` is then half done
void ConvertColumns(DataTable& table);
