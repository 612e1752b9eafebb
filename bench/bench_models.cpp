// SPDX-License-Identifier: GPL-3.0-or-later
#include "Table.h"

#include "fit/Remarks.h"
#include "models/clsProduction.h"

namespace
{
void CalcPopTraj(benchmark::State& state)
{
    const auto periods = static_cast<int>(state.range(1));
    BenchModel model(static_cast<int>(state.range(0)), fit_op::kLeastSquares, periods);
    model.Fit();
    model.method->CopyFinalToWorkEsts();
    for (auto _ : state)
        model.method->CalcPopTraj();
    state.counters["per_period"] =
        benchmark::Counter(static_cast<double>(periods),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(CalcPopTraj)->ArgNames({"model", "periods"})->ArgsProduct({{1, 2, 3, 5}, {30, 199}});

void WholeFit(benchmark::State& state)
{
    BenchModel model(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                     static_cast<int>(state.range(2)));
    for (auto _ : state)
        model.Fit();
    state.counters["evaluations"] = model.method->Details().evaluations;
}
BENCHMARK(WholeFit)
    ->ArgNames({"model", "error", "periods"})
    ->ArgsProduct({{1, 2, 3, 5}, {1, 2, 3}, {30}})
    ->Unit(benchmark::kMicrosecond);

/// What the program says about a fit costs less than the fit: to be held beside WholeFit.
void Remarks(benchmark::State& state)
{
    BenchModel model(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                     static_cast<int>(state.range(2)));
    model.Fit();
    model.method->CalcCPUEVectors();
    model.method->SetRSquared();
    std::size_t remarks = 0;
    for (auto _ : state)
        remarks = RemarksOfFit(*model.method, model.data).size();
    state.counters["remarks"] = static_cast<double>(remarks);
}
BENCHMARK(Remarks)
    ->ArgNames({"model", "error", "periods"})
    ->ArgsProduct({{1, 2, 3, 5}, {1, 2, 3}, {30}})
    ->Unit(benchmark::kMicrosecond);

void SchaeferLogObjective(benchmark::State& state)
{
    BenchModel model(models::kSchaefer, fit_op::kLog, static_cast<int>(state.range(0)));
    auto& production = dynamic_cast<clsProduction&>(*model.method);
    float k = 11000.0F;
    for (auto _ : state) {
        benchmark::DoNotOptimize(production.MinLogFunction(k, 0.4F));
        k = k == 11000.0F ? 11001.0F : 11000.0F;
    }
}
BENCHMARK(SchaeferLogObjective)->ArgName("periods")->Arg(30)->Arg(199);

void ContourGrid20(benchmark::State& state)
{
    BenchModel model(models::kSchaefer, fit_op::kLog, 30);
    model.method->CalcInitEstimates();
    for (auto _ : state)
        model.method->PlotInitContours();
}
BENCHMARK(ContourGrid20)->Unit(benchmark::kMillisecond);
} // namespace
