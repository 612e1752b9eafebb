// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SmallTables.h"
#include "models/clsConstRecruit.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <cmath>

namespace const_recruit
{
using small_tables::Table;
using small_tables::ThreePeriods;
using ConstBench = ModelBench<clsConstRecruit>;

inline const double kLn4 = std::log(4.0); // exp(M) = 4, exp(-M) = 1/4, exp(-M/2) = 1/2, recruits 3 K

/// A stock of K = 8000 with M = 0.2, at `initDep` K at the start.
inline SimulatedStock Truth(double initDep)
{
    SimulatedStock stock;
    stock.n1 = initDep * 8000.0;
    stock.recruits = 8000.0 * (std::exp(stock.mort) - 1.0);
    return stock;
}

inline TableBuilder Simulated(double scatter = 0.0, double initDep = 1.0)
{
    const SimulatedStock stock = Truth(initDep);
    return Table(stock.effort, stock.Catches(scatter));
}
} // namespace const_recruit
