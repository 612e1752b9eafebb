// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/FittedModels.h"
#include "fit/Projections.h"
#include "graphs/ProjGraph.h"
#include "support/Scenarios.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace projection_bench
{
using Values = std::vector<double>;

/// The projected populations of a line, from the point where the data end.
inline Values LineOf(const ProjGraph& graph, int line)
{
    Values values;
    for (int i = graph.ProjStart(); i <= graph.NumPoints(); ++i)
        values.push_back(static_cast<double>(graph.ProjData(line, i)));
    return values;
}

inline void ExpectNear(const Values& ours, const Values& theirs, double share = 1e-6)
{
    ASSERT_EQ(ours.size(), theirs.size());
    for (std::size_t i = 0; i < ours.size(); ++i)
        EXPECT_NEAR(ours[i], theirs[i], share * std::fabs(theirs[i])) << "point " << i;
}

/// A model that holds these estimates, as if a fit had found them, on the data of `table`.
template <typename Model>
struct Given : ModelBench<Model> {
    Given(const TableBuilder& table, std::int32_t whichMeth, const Estimates& estimates)
        : ModelBench<Model>(table)
    {
        this->model.WhichMeth(whichMeth);
        this->model.m.FinalEsts = estimates;
        this->model.m.QValue = estimates.Q;
    }
    std::shared_ptr<ProjGraph> Project(const std::vector<std::string>& titles, bool withFit = false)
    {
        return projections::Project(this->model, this->data, titles, withFit).graph;
    }
};

/// A stock of a thousand tonnes after one catch of 100, and three future periods of 200 units of effort that
/// catch a fifth of it each (q 0.001).
struct Production : Given<clsProduction> {
    Production(std::int32_t whichMeth, double r)
        : Given(TableBuilder().Effort({100}).Yield({100}), whichMeth, {.K = 1000.0, .Q = 0.001, .R = r})
    {
        AddScenario(data, "Effort", vec_type::kEffort, {200, 200, 200});
    }
};

/// Effort as before and twice as much, catches as before, over six future periods.
template <typename Bench>
std::vector<std::string> AddThreeScenarios(Bench& bench)
{
    const double effort = static_cast<double>(bench.data.Effort(bench.data.NAPoints()));
    const double caught =
        static_cast<double>(bench.model.ObsTCatchRef(static_cast<std::int16_t>(bench.data.NAPoints())));
    AddScenario(bench.data, "As before", vec_type::kEffort, Values(6, effort));
    AddScenario(bench.data, "Catch", bench.model.UsingNos() ? vec_type::kTotCatchNums : vec_type::kTotCatchWt,
                Values(6, caught));
    AddScenario(bench.data, "Twice", vec_type::kEffort, Values(6, 2.0 * effort));
    return {"As before", "Catch", "Twice"};
}

inline constexpr int kReplicates = 12;

template <typename Bench>
void MakeReplicates(Bench& bench)
{
    bench.run.globals.settings.NumBootStraps = kReplicates;
    bench.model.CalcBootStraps();
}
} // namespace projection_bench
