// SPDX-License-Identifier: GPL-3.0-or-later
#include "Table.h"

#include "fit/Projections.h"
#include "support/Scenarios.h"

namespace
{
/// A log fit with replicates, and an effort scenario of `future` periods.
struct ProjectionBench : BenchModel {
    ProjectionBench(int whichMeth, int periods, int future, int replicates)
        : BenchModel(whichMeth, fit_op::kLog, periods)
    {
        Fit();
        method->CalcCPUEVectors();
        bench.run.globals.settings.NumBootStraps = replicates;
        method->CalcBootStraps();
        AddScenario(
            data, "Effort", vec_type::kEffort,
            std::vector<double>(static_cast<std::size_t>(future), static_cast<double>(data.Effort(periods))));
    }
    void Project()
    {
        projections::ProjectWithLimits(*method, data, "Effort",
                                       projections::PositionsOf(method->NumBootStraps(), 0.05F, 0.95F));
    }
};

void DoProjCI(benchmark::State& state)
{
    ProjectionBench bench(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                          static_cast<int>(state.range(2)), static_cast<int>(state.range(3)));
    for (auto _ : state)
        bench.Project();
}
BENCHMARK(DoProjCI)
    ->ArgNames({"model", "periods", "future", "replicates"})
    ->ArgsProduct({{1, 3, 5, 6}, {30}, {50}, {500}})
    ->ArgsProduct({{1, 3, 5, 6}, {49}, {150}, {1000}})
    ->ArgsProduct({{5}, {30}, {25, 100}, {500}})
    ->ArgsProduct({{5}, {30}, {50}, {250, 1000}})
    ->Unit(benchmark::kMillisecond);

/// From the start to a Cancel that stands from the start on: no look at the meter comes later than that.
void CancelDoProjCI(benchmark::State& state)
{
    ProjectionBench bench(static_cast<int>(state.range(0)), 49, 150, 1000);
    bench.bench.meter.cancelAfter = 0;
    for (auto _ : state) {
        bench.bench.meter.looks = 0;
        try {
            bench.Project();
            state.SkipWithError("was not cancelled");
        } catch (const VeltError& error) {
            benchmark::DoNotOptimize(error.number);
        }
    }
}
BENCHMARK(CancelDoProjCI)->ArgName("model")->Arg(1)->Arg(6)->Unit(benchmark::kMillisecond);
} // namespace
