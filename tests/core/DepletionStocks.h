// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ConstRecruitBench.h"
#include "core/RecruitIndexBench.h"
#include "models/clsConstRecruit.h"
#include "models/clsRecruitINdex.h"
#include "models/clsSingleCohort.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>
#include <vector>

/// What the three depletion models are tested on together: each on a stock of its own kind.
namespace depletion
{
template <typename Model>
TableBuilder DataFor(double scatter = 0.05)
{
    SimulatedStock stock;
    if constexpr (std::is_same_v<Model, clsConstRecruit>)
        stock = const_recruit::Truth(1.0);
    else if constexpr (std::is_same_v<Model, clsRecruitINdex>)
        stock = recruit_index::Truth();
    return TableBuilder().Effort(stock.effort).Catch(stock.Catches(scatter)).Recruits(stock.index);
}

/// A fitted model that is asked for `replicates`.
template <typename Model>
struct Fitted : ModelBench<Model> {
    Fitted(std::int32_t fitOp, int replicates, const TableBuilder& table = DataFor<Model>())
        : ModelBench<Model>(table)
    {
        this->run.globals.settings.NumBootStraps = replicates;
        estimates = this->Fit(fitOp, 0.2);
    }
    std::vector<double> estimates;
};

using ThreeModels = testing::Types<clsSingleCohort, clsConstRecruit, clsRecruitINdex>;

inline constexpr std::int32_t kErrorModels[] = {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma};
} // namespace depletion
