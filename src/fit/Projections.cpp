// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/Projections.h"

#include "base/Checked.h"
#include "base/MeterScope.h"
#include "base/StringTable.h"
#include "data/clsVeltData.h"
#include "engines/VariantSorter.h"
#include "fit/ProjectionStale.h"
#include "graphs/ProjGraph.h"
#include "models/FuturePeriods.h"
#include "models/IMethod.h"

#include <algorithm>
#include <span>
#include <utility>

namespace
{
constexpr int kNoSuchScenario = 1306;
constexpr int kFitTitle = 1868;
constexpr int kPopulation = 1872;
constexpr int kTime = 1877;

std::int16_t Short(int i)
{
    return static_cast<std::int16_t>(i);
}

clsProjScenario& ScenarioOf(clsVeltData& data, std::string_view title)
{
    clsProjScenario* scenario = data.ProjScenario(title);
    if (!scenario)
        throw VeltError(errors::kInvalidArgument, LoadResString(kNoSuchScenario) + ": " + std::string(title),
                        "");
    return *scenario;
}

bool TakesEffort(const clsProjScenario& scenario)
{
    return scenario.VecType() == vec_type::kEffort;
}

/// Puts the efforts or the catches of a scenario where the trajectory reads them.
void ApplyScenario(const clsProjScenario& scenario, IMethod& method, clsVeltData& data)
{
    for (int t = 1; t <= data.NumPts(); ++t) {
        const int row = data.OrigNAPoints() + t;
        const auto value = static_cast<float>(scenario.Vector(row));
        if (TakesEffort(scenario)) {
            data.Effort(row, value);
        } else {
            method.ObsTCatchRef(Short(row), value);
            method.ObsCatchRef(Short(row), value);
        }
    }
}

/// The total catches behind the data go back to 0 when a projection ends.
class CatchesBehindData
{
public:
    CatchesBehindData(IMethod& method, const clsVeltData& data) : m_method(method), m_data(data) {}
    ~CatchesBehindData()
    {
        for (int i = m_data.NDPoints(); i <= clsVeltData::kRows; ++i)
            m_method.ObsTCatchRef(Short(i), 0.0F);
    }
    CatchesBehindData(const CatchesBehindData&) = delete;
    CatchesBehindData& operator=(const CatchesBehindData&) = delete;

private:
    IMethod& m_method;
    const clsVeltData& m_data;
};

/// A graph for so many scenarios over all points of the lengthened data set.
std::shared_ptr<ProjGraph> NewGraph(const IMethod& method, const clsVeltData& data, std::size_t scenarios,
                                    bool withFit, bool withCI)
{
    auto graph = std::make_shared<ProjGraph>();
    graph->Create(static_cast<int>(scenarios), data.NDPoints(), withFit, data.OrigNAPoints() + 1, withCI);
    graph->XTitle(LoadResString(kTime));
    graph->YTitle(LoadResString(kPopulation));
    graph->XMeasure({.column = AxisMeasure::kTime});
    graph->YMeasure({.column = method.UsingNos() ? columns::PopNums : columns::PopWt});
    for (int i = 1; i <= data.NDPoints(); ++i)
        graph->XData(i, static_cast<float>(std::int64_t{data.MinTimeP()} + i - 1));
    return graph;
}

/// The last trajectory, period 1 first.
std::vector<float> PopulationOf(const IMethod& method, const clsVeltData& data)
{
    std::vector<float> population;
    for (int i = 1; i <= data.NDPoints(); ++i)
        population.push_back(method.Nt(Short(i)));
    return population;
}

/// The projection of an effort scenario as the remark looks at it; nothing for one of catches, or in a model
/// that takes each catch from its own period.
std::optional<EffortProjection> EffortProjectionOf(const clsProjScenario& scenario, const IMethod& method,
                                                   const clsVeltData& data)
{
    if (!TakesEffort(scenario) || method.WhichMeth() != models::kNoRecruitment)
        return std::nullopt;
    EffortProjection projection{.title = scenario.Title(),
                                .q = method.Q(),
                                .mort = method.Mort(),
                                .firstTime = std::int64_t{data.MinTimeP()} + data.OrigNAPoints()};
    for (int i = data.OrigNAPoints() + 1; i <= data.NDPoints(); ++i) {
        projection.population.push_back(method.Nt(Short(i)));
        if (i < data.NDPoints())
            projection.effort.push_back(data.Effort(i));
    }
    return projection;
}
} // namespace

std::optional<std::string> projections::RefusalOfFit(const IMethod& method, const clsVeltData& data)
{
    if (method.WhichMeth() == models::kRecruitmentIndex)
        return "The recruitment index model cannot be projected: it knows no recruitment of future periods.";
    const clsVeltData::Series& totals = method.UsingNos() ? data.TotCatchNums() : data.TotCatchWt();
    for (int row = 1; row <= data.NAPoints(); ++row)
        if (totals(row) == clsVeltData::kMissing)
            return "The period " + std::to_string(std::int64_t{data.MinTimeP()} + row - 1) +
                   " has no total catch. A projection begins behind the last period with a total catch, and "
                   "would write over data here. Fill the gap and fit anew.";
    return std::nullopt;
}

std::optional<std::string> projections::Refusal(const IMethod& method, const clsVeltData& data)
{
    if (auto refusal = RefusalOfFit(method, data))
        return refusal;
    if (data.NumPts() < 1)
        return "The scenarios have no future periods. Add rows in Set Up Scenarios.";
    const std::int64_t together = std::int64_t{data.NAPoints()} + data.NumPts();
    if (together > clsProjScenario::kMostPeriods)
        return std::to_string(data.NAPoints()) + " periods of data and " + std::to_string(data.NumPts()) +
               " future periods are " + std::to_string(together) + "; together they can be " +
               std::to_string(clsProjScenario::kMostPeriods) + ". Delete rows in Set Up Scenarios.";
    return std::nullopt;
}

std::vector<std::string> projections::SuitableTitles(const IMethod& method, const clsVeltData& data)
{
    const std::int32_t ownUnit = method.UsingNos() ? vec_type::kTotCatchNums : vec_type::kTotCatchWt;
    std::vector<std::string> titles;
    for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i) {
        const clsProjScenario& scenario = *data.ProjScenario(i);
        if (TakesEffort(scenario) || scenario.VecType() == ownUnit)
            titles.push_back(scenario.Title());
    }
    return titles;
}

projections::Projected projections::Project(IMethod& method, clsVeltData& data,
                                            const std::vector<std::string>& titles, bool withFit)
{
    std::vector<EffortProjection> efforts;
    const CatchesBehindData cleared(method, data);
    const auto lengthened = method.Lengthen(data.NumPts());
    auto graph = NewGraph(method, data, titles.size(), withFit, false);
    for (int i = 1; i <= data.OrigNAPoints(); ++i) // what the trajectory removes is what was fished
        method.CatchVector(Short(i), method.ObsTCatchRef(Short(i)));
    method.CopyFinalToWorkEsts();
    int line = 0;
    for (const std::string& title : titles) {
        clsProjScenario& scenario = ScenarioOf(data, title);
        ApplyScenario(scenario, method, data);
        method.DIYTCatch(TakesEffort(scenario));
        method.CalcDiscCatches();
        method.CalcPopTraj();
        scenario.CalcPopTraj(PopulationOf(method, data));
        graph->LegendText(++line, scenario.Title());
        for (int i = data.OrigNAPoints() + 1; i <= data.NDPoints(); ++i)
            graph->ProjData(line, i, method.Nt(Short(i)));
        if (auto effort = EffortProjectionOf(scenario, method, data))
            efforts.push_back(std::move(*effort));
    }
    if (withFit) { // of the last trajectory: up to here all scenarios agree with the fit
        graph->LegendText(++line, LoadResString(kFitTitle));
        for (int i = 1; i <= data.OrigNAPoints() + 1; ++i)
            graph->ProjData(line, i, method.Nt(Short(i)));
    }
    return {std::move(graph), ProjectionStale(efforts)};
}

projections::LimitPositions projections::PositionsOf(std::int32_t replicates, float low, float high)
{
    const auto position = [replicates](double at) {
        const std::int32_t rounded = checked::ToInt32(at);
        if (rounded > replicates)
            RaiseSubscript();
        return std::max(rounded, 1);
    };
    return {.low = position(replicates * static_cast<double>(low) + 1.0),
            .high = position(replicates * static_cast<double>(high))};
}

namespace
{
/// The population of every replicate at every point.
///
/// A trajectory of the no recruitment model depends on what the one before it left behind the data, so each
/// point has a pass of its own over all replicates. A pass is made of nothing but the state it starts from:
/// once it ends in that same state, every later one gives the same numbers to the bit and is not run again.
class ReplicatePasses
{
public:
    ReplicatePasses(IMethod& method, const clsVeltData& data)
        : m_method(method), m_data(data), m_replicates(static_cast<std::size_t>(method.NumBootStraps())),
          m_populations(static_cast<std::size_t>(data.NDPoints()) * m_replicates)
    {
    }

    /// Point t (from 1) of all replicates, in the pass that is its own. To be asked in the order of the
    /// points.
    std::span<float> At(int t)
    {
        if (!m_settled)
            Run();
        return std::span(m_populations).subspan(static_cast<std::size_t>(t - 1) * m_replicates, m_replicates);
    }

private:
    /// What a trajectory can find of an earlier one.
    std::vector<float> Left() const
    {
        std::vector<float> left;
        for (int i = 1; i <= clsVeltData::kRows; ++i) {
            left.push_back(m_method.Nt(Short(i)));
            left.push_back(m_method.ObsTCatchRef(Short(i)));
        }
        return left;
    }
    void Run()
    {
        const std::vector<float> before = Left();
        const int points = m_data.NDPoints();
        for (std::size_t b = 0; b < m_replicates; ++b) {
            m_method.CopyBStrapsToWorkEsts(Short(static_cast<int>(b) + 1));
            m_method.CalcPopTraj();
            for (int i = 1; i <= points; ++i)
                m_populations[static_cast<std::size_t>(i - 1) * m_replicates + b] = m_method.Nt(Short(i));
        }
        m_settled = Left() == before;
    }

    IMethod& m_method;
    const clsVeltData& m_data;
    std::size_t m_replicates;
    std::vector<float> m_populations; ///< by point, then by replicate
    bool m_settled = false;
};

void FillLimits(ProjGraph& graph, IMethod& method, const clsVeltData& data,
                const projections::LimitPositions& positions)
{
    Run& run = data.TheRun();
    MeterScope meter(run.meter, run.globals.GeneratingConfInts, data.NDPoints());
    ReplicatePasses passes(method, data);
    for (int t = 1; t <= data.NDPoints(); ++t) {
        const std::span<float> populations = passes.At(t);
        VariantSorter().Sort(populations);
        graph.ErrorMinus(t, populations[static_cast<std::size_t>(positions.low - 1)]);
        graph.ErrorPlus(t, populations[static_cast<std::size_t>(positions.high - 1)]);
        meter.Done(t, "clsMethManager_DoProjCI");
    }
}
} // namespace

projections::Projected projections::ProjectWithLimits(IMethod& method, clsVeltData& data,
                                                      std::string_view title, const LimitPositions& positions)
{
    const clsProjScenario& scenario = ScenarioOf(data, title);
    const auto lengthened = method.Lengthen(data.NumPts());
    // Not CatchVector, as in a projection without limits. Deliberate, though nothing reads it here.
    for (int i = 1; i <= data.OrigNAPoints(); ++i)
        method.CatchRef(Short(i), method.ObsTCatchRef(Short(i)));
    method.DIYTCatch(TakesEffort(scenario));
    ApplyScenario(scenario, method, data);
    auto graph = NewGraph(method, data, 1, true, true);
    FillLimits(*graph, method, data, positions);
    method.CopyQANDFinalToWorkEsts();
    method.CalcPopTraj();
    graph->LegendText(1, scenario.Title());
    graph->LegendText(2, LoadResString(kFitTitle));
    for (int i = 1; i <= data.NDPoints(); ++i) {
        graph->ProjData(1, i, method.Nt(Short(i)));
        graph->ProjData(2, i, method.Nt(Short(i)));
    }
    const auto effort = EffortProjectionOf(scenario, method, data);
    return {std::move(graph), effort ? ProjectionStale({&*effort, 1}) : std::nullopt};
}
