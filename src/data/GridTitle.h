// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/StringTable.h"
#include "data/Columns.h"

#include <string>

/// The title of column 1 to 15 in tables, pickers and messages.
inline std::string GridTitle(int column)
{
    constexpr int kFirst = 1845; // "Tot. Catch Wt"
    return LoadResString(kFirst + column - columns::kFirst);
}
