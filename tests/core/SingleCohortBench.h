// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SmallTables.h"
#include "models/clsSingleCohort.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <cstdint>

namespace single_cohort
{
using small_tables::Table;
using small_tables::ThreePeriods;
using SingleBench = ModelBench<clsSingleCohort>;

inline TableBuilder Simulated(double scatter = 0.0)
{
    const SimulatedStock stock;
    return Table(stock.effort, stock.Catches(scatter));
}

/// Runs the trajectory from N1 with natural mortality `mort`.
inline void Walk(SingleBench& bench, double n1, double mort = 0.0, double q = 0.1)
{
    bench.model.Mort(static_cast<float>(mort));
    bench.model.Work({.N1 = n1, .Q = q});
    bench.model.CalcPopTraj();
}

/// A user who takes the no-recruitment model with this error model and mortality.
inline void Chooses(Bench& bench, std::int32_t fitOp, float mort)
{
    bench.user.Picks(bench.run.globals.ModelTitles(models::kNoRecruitment));
    bench.user.onInputParams = [fitOp, mort](InputParams& params) {
        params.FitOp = fitOp;
        params.Mort = mort;
        return true;
    };
}
} // namespace single_cohort
