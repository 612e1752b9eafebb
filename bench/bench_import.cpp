// SPDX-License-Identifier: GPL-3.0-or-later
#include "Table.h"

#include "files/AsciiWizard.h"
#include "fit/clsMethManager.h"

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
    bench.user.onAsciiWizard = [](AsciiWizard& wizard) {
        wizard.ChooseTiming(1);
        wizard.Next();
        wizard.Assign(2, columns::Effort);
        wizard.Assign(3, columns::CatchNums);
        wizard.Assign(4, columns::TotCatchNums);
        wizard.Finish();
        return true;
    };
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
