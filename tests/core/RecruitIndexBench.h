// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/clsRecruitINdex.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <cstdint>

namespace recruit_index
{
using IndexBench = ModelBench<clsRecruitINdex>;

inline SimulatedStock Truth()
{
    SimulatedStock stock;
    stock.n1 = 6000.0;
    stock.lambda = 1500.0;
    stock.q = 0.008; // three parameters need a stronger fishery than two
    return stock;
}

inline TableBuilder Simulated(double scatter = 0.0)
{
    const SimulatedStock stock = Truth();
    return TableBuilder().Effort(stock.effort).Catch(stock.Catches(scatter)).Recruits(stock.index);
}

inline void Chooses(Bench& bench, std::int32_t fitOp)
{
    bench.user.ChoosesFit(bench.run.globals.ModelTitles(models::kRecruitmentIndex), fitOp);
}
} // namespace recruit_index
