// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/SheetBench.h"

namespace three_columns
{
inline constexpr int kA = 2; ///< grid columns of the data
inline constexpr int kB = 3;
inline constexpr int kC = 4;

/// Four periods with Tot. Catch Wt, Effort and Catch Wt in the grid columns A, B and C.
struct Sheet : SheetBench {
    Sheet() : SheetBench(4, {columns::TotCatchWt, columns::Effort, columns::CatchWt}) {}
    void Set(int row, int col, double value)
    {
        data.DB(sheet.DataColOf(col), row, static_cast<float>(value));
        data.MarkSaved();
    }
};
} // namespace three_columns
