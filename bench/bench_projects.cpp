// SPDX-License-Identifier: GPL-3.0-or-later
// A project with 50 logged fits of 1000 replicates each, opened and saved.
#include "Table.h"

#include "files/ProjectRecords.h"
#include "fit/ProjectFile.h"

#include <filesystem>
#include <memory>

namespace
{
constexpr int kFits = 50;
constexpr int kReplicates = 1000;

/// The project on disk, made once: one bootstrapped fit, logged under 50 names.
class LargeProject
{
public:
    LargeProject() : m_path(std::filesystem::temp_directory_path() / "velt_bench_project.vl3")
    {
        BenchModel model(models::kSchaefer, fit_op::kLog, 30);
        model.bench.run.globals.settings.NumBootStraps = kReplicates;
        model.Fit();
        model.method->CalcBootStraps();
        const std::string body =
            project_file::WriteBody(model.method->SaveAsVELT3(), model.method->WhichMeth());
        ProjectFile file(model.data);
        for (int i = 1; i <= kFits; ++i)
            file.Append(
                model.data.NewLoggedFit(models::kSchaefer, fit_op::kLog, "fit " + std::to_string(i), 46000.5),
                body);
        model.data.DSFName(m_path.string());
        file.Save();
    }
    ~LargeProject() { std::filesystem::remove(m_path); }
    LargeProject(const LargeProject&) = delete;
    LargeProject& operator=(const LargeProject&) = delete;
    std::string Path() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};

const LargeProject& Large()
{
    static const LargeProject kLarge;
    return kLarge;
}

void OpenProject50x1000(benchmark::State& state)
{
    const std::string path = Large().Path();
    for (auto _ : state) {
        Bench bench;
        clsVeltData data(bench.run);
        ProjectFile file(data);
        file.Open(path);
        benchmark::DoNotOptimize(data.NumLoggedFits());
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(path));
}

void SaveProject50x1000(benchmark::State& state)
{
    Bench bench;
    clsVeltData data(bench.run);
    ProjectFile file(data);
    file.Open(Large().Path());
    for (auto _ : state)
        file.Save();
}
} // namespace

BENCHMARK(OpenProject50x1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveProject50x1000)->Unit(benchmark::kMillisecond)->UseRealTime();
