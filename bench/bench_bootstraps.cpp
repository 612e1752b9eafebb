// SPDX-License-Identifier: GPL-3.0-or-later
#include "Table.h"

namespace
{
/// 500 replicates with their sorting; under the gamma model with its matrix of catches.
void Bootstraps(benchmark::State& state)
{
    BenchModel model(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                     static_cast<int>(state.range(2)));
    model.Fit();
    model.method->CalcCPUEVectors();
    for (auto _ : state)
        model.method->CalcBootStraps();
}
BENCHMARK(Bootstraps)
    ->ArgNames({"model", "error", "periods"})
    ->ArgsProduct({{1, 2, 3, 5}, {1, 2, 3}, {30, 100}})
    ->Args({models::kSchaefer, fit_op::kLog, 199})
    ->Unit(benchmark::kMillisecond);
} // namespace
