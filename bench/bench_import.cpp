// SPDX-License-Identifier: GPL-3.0-or-later
#include "Table.h"

#include "fit/clsMethManager.h"
#include "support/FillWizard.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace
{
void Import200Rows(benchmark::State& state)
{
    const auto path = std::filesystem::temp_directory_path() / "velt_bench_import.txt";
    std::ofstream(path) << ImportText(200);
    Bench bench;
    bench.user.onAsciiWizard = FillWizard;
    clsVeltData data(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    for (auto _ : state) {
        if (!manager.ImportASCIIFile(path.string()))
            state.SkipWithError("the import failed");
    }
    std::filesystem::remove(path);
}
BENCHMARK(Import200Rows)->Unit(benchmark::kMicrosecond);
} // namespace
