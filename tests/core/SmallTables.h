// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/TableBuilder.h"

#include <vector>

// Tables of efforts and catches in numbers, the total catch being that of the fleet.
namespace small_tables
{
inline TableBuilder Table(const std::vector<double>& effort, const std::vector<double>& catches)
{
    return TableBuilder().Effort(effort).Catch(catches);
}

inline TableBuilder ThreePeriods()
{
    return Table({2, 3, 4}, {10, 20, 30});
}
} // namespace small_tables
