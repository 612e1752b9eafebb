// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchProjections.h"

#include "base/ForeignText.h"
#include "base/StringTable.h"
#include "batch/BatchFailure.h"
#include "data/ScenarioSheet.h"
#include "fit/Projections.h"
#include "fit/clsMethManager.h"
#include "graphs/ProjGraph.h"

#include <algorithm>

namespace
{
constexpr int kNoSuchScenario = 1306;
constexpr const char* kRemark = "ProjectionStale";

/// The entry of this name, made when it is not there yet.
FitTables::Projection& EntryOf(FitTables& tables, const std::string& title)
{
    const auto found = std::find_if(tables.projections.begin(), tables.projections.end(),
                                    [&](const auto& projection) { return projection.scenario == title; });
    if (found != tables.projections.end())
        return *found;
    return tables.projections.emplace_back(FitTables::Projection{title, {}, {}});
}

/// The remark on a projection among all, or nothing.
std::optional<Remark> OnProjection(const std::vector<Remark>& remarks)
{
    const auto found =
        std::find_if(remarks.begin(), remarks.end(), [](const Remark& r) { return r.code == kRemark; });
    return found == remarks.end() ? std::nullopt : std::optional(*found);
}
} // namespace

std::optional<ScenarioFile> ScenariosOf(const FitRequest& request)
{
    if (!request.scenarios)
        return std::nullopt;
    ScenarioFile file = ReadScenarioFile(*request.scenarios);
    const bool countsFish = !models::IsProduction(request.model);
    const std::int32_t foreign = countsFish ? vec_type::kTotCatchWt : vec_type::kTotCatchNums;
    for (const ScenarioFile::Scenario& scenario : file.scenarios)
        if (scenario.vecType == foreign)
            throw BatchFailure(ExitStatus::BadData,
                               Quotable(file.path) + ": Line " + std::to_string(scenario.line) +
                                   ": scenario \"" + Quotable(scenario.title) + "\" has the units \"" +
                                   ScenarioSheet::Units()[static_cast<std::size_t>(foreign)] +
                                   "\", but this model counts " +
                                   (countsFish ? "in numbers." : "in weight."));
    return file;
}

BatchProjections::BatchProjections(clsMethManager& manager, clsVeltData& data,
                                   const std::vector<std::shared_ptr<ProjGraph>>& graphs)
    : m_manager(manager), m_data(data), m_graphs(graphs), m_ownScenarios(data.ProjScens()),
      m_ownPoints(data.NumPts())
{
}

BatchProjections::~BatchProjections()
{
    m_data.ProjScens() = std::move(m_ownScenarios);
    m_data.NumPts(m_ownPoints);
}

void BatchProjections::Project(const ScenarioFile& file, FitTables& tables)
{
    if (const auto refusal = projections::RefusalOfFit(*m_manager.Method(), m_data))
        throw BatchFailure(ExitStatus::BadData, "--scenarios: " + *refusal);
    TakeScenarios(m_data, file);
    std::vector<std::string> titles;
    for (const ScenarioFile::Scenario& scenario : file.scenarios)
        titles.push_back(scenario.title);
    m_manager.ProjWithFit(true);
    m_manager.Project(titles);
    m_remark = OnProjection(m_manager.Remarks());
    TakeGraph(tables);
}

void BatchProjections::ProjectWithLimits(const std::string& title, FitTables& tables)
{
    const IMethod& method = *m_manager.Method();
    if (const auto refusal = projections::Refusal(method, m_data))
        throw BatchFailure(ExitStatus::BadData, "--project-ci: " + *refusal);
    const std::vector<std::string> suitable = projections::SuitableTitles(method, m_data);
    if (std::find(suitable.begin(), suitable.end(), title) == suitable.end()) {
        std::string all;
        for (const std::string& one : suitable)
            all += (all.empty() ? " There are " : ", ") + ('"' + Quotable(one) + '"');
        throw BatchFailure(ExitStatus::BadUsage, "--project-ci: " + LoadResString(kNoSuchScenario) + ": \"" +
                                                     Quotable(title) + "\"." +
                                                     (all.empty() ? " None suits this model." : all + "."));
    }
    try {
        m_manager.DoProjCI(title);
    } catch (const VeltError& error) {
        if (error.number != errors::kSubscript)
            throw;
        throw BatchFailure(ExitStatus::BadUsage,
                           "--project-ci: with " + std::to_string(method.NumBootStraps()) +
                               " replicates none stands at a level of --ci. The low level takes the position "
                               "behind its share of them, so 1 has none.");
    }
    TakeGraph(tables);
}

/// The lines of the last graph, each from where it begins to where it ends.
void BatchProjections::TakeGraph(FitTables& tables) const
{
    const ProjGraph& graph = *m_graphs.back();
    for (int line = 1; line <= graph.NumLines(); ++line) {
        FitTables::Projection& entry = EntryOf(tables, graph.LegendText(line));
        if (!graph.IsFit(line))
            entry.units = ScenarioSheet::Units()[static_cast<std::size_t>(
                m_data.ProjScenario(graph.LegendText(line))->VecType())];
        const bool known = !entry.series.empty();
        std::size_t at = 0;
        for (int i = 1; i <= graph.NumPoints(); ++i) {
            if (!graph.Drawn(line, i))
                continue;
            if (!known)
                entry.series.push_back({m_data.MinTimeP() + i - 1, graph.ProjData(line, i), {}, {}});
            FitTables::ProjectedPoint& point = entry.series.at(at++);
            if (graph.WithCI()) {
                point.low = graph.ErrorMinus(i);
                point.high = graph.ErrorPlus(i);
            }
        }
    }
}

std::vector<Remark> BatchProjections::Remarks() const
{
    std::vector<Remark> all = m_manager.Remarks();
    if (!m_remark)
        return all;
    std::erase_if(all, [](const Remark& remark) { return remark.code == kRemark; });
    all.push_back(*m_remark);
    return all;
}
