// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ModelGraphs.h"

#include "base/Checked.h"
#include "base/NumberText.h"
#include "graphs/ModelGraph.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

using checked::Div;
using checked::Ln;
using checked::Sqrt;
using checked::ToFloat;

namespace
{
using Values = std::vector<double>;

Values Times(const ModelState& m, int periods)
{
    Values times;
    for (int i = 1; i <= periods; ++i)
        times.push_back(m.TimeLabel(i));
    return times;
}

Values ExpectedCatch(const ModelState& m)
{
    const auto series = m.ExpCatchVec.All().first(static_cast<std::size_t>(m.NAPoints()));
    return {series.begin(), series.end()};
}

/// Observed values split into those in the fit and those out of it; gaps where a period is not Included.
struct SplitPoints {
    explicit SplitPoints(int periods)
        : inFit(static_cast<std::size_t>(periods), ModelGraph::InvalidData), outOfFit(inFit), line(inFit)
    {
    }
    void Put(const ModelState& m, int i, double value)
    {
        (m.ToggledIn(i) ? inFit : outOfFit)[static_cast<std::size_t>(i) - 1] = value;
    }
    Values inFit;
    Values outOfFit;
    Values line;
};

std::shared_ptr<ModelGraph> NewGraph(GraphType type, const std::string& title, const std::string& xTitle,
                                     const std::string& yTitle, const Values& x)
{
    auto graph = std::make_shared<ModelGraph>();
    graph->Create(static_cast<int>(x.size()));
    graph->Title(title);
    graph->XTitle(xTitle);
    graph->YTitle(yTitle);
    graph->Type(type);
    graph->WithToggs(type == GraphType::PointsAndLine || type == GraphType::Residuals);
    graph->XData(x);
    return graph;
}

/// The catch that the fit takes, in numbers or in weight.
int CatchColumn(const ModelState& m)
{
    return m.UsingNosFlag ? columns::CatchNums : columns::CatchWt;
}

void AddObservedAndExpected(const ModelState& m, const std::string& title, const std::string& yTitle,
                            AxisMeasure measure, const std::function<double(int)>& observed,
                            const std::function<double(int)>& expected)
{
    const modVeltGlobals::Globals& texts = m.run->globals;
    SplitPoints points(m.NAPoints());
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.Included(i))
            continue;
        points.Put(m, i, observed(i));
        points.line[static_cast<std::size_t>(i) - 1] = expected(i);
    }
    auto graph = NewGraph(GraphType::PointsAndLine, title, texts.TimeTitle, yTitle, Times(m, m.NAPoints()));
    graph->XMeasure({.column = AxisMeasure::kTime});
    graph->YMeasure(measure);
    graph->YData(points.inFit);
    graph->YData2(points.outOfFit);
    graph->OverlayLine(points.line);
    m.run->window.AddModelGraph(std::move(graph));
}

/// The residual as the graphs show it: never weighted, whatever the error model.
double ShownResidual(const ModelState& m, int i)
{
    if (m.FitOp == fit_op::kLog)
        return Ln(m.CatchVector(i)) - Ln(m.ExpCatchVec(i));
    if (m.FitOp == fit_op::kGamma)
        return m.ResidVec(i);
    return ToFloat(static_cast<double>(m.CatchVector(i)) - m.ExpCatchVec(i));
}

struct Residuals {
    SplitPoints points;
    float upper = 0.975F; // the limits of percentiles
    float lower = 0.025F;
};

Residuals ShownResiduals(const ModelState& m)
{
    Residuals residuals{SplitPoints(m.NAPoints())};
    double sumSq = 0.0;
    int n = 0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.Included(i))
            continue;
        const double r = ShownResidual(m, i);
        residuals.points.Put(m, i, r);
        if (m.ToggledIn(i)) {
            sumSq += r * r;
            ++n;
        }
    }
    if (m.FitOp != fit_op::kGamma) {
        residuals.upper = ToFloat(2.0 * Sqrt(Div(sumSq, n)));
        residuals.lower = -residuals.upper;
    }
    return residuals;
}

void AddResiduals(const ModelState& m)
{
    const modVeltGlobals::Globals& texts = m.run->globals;
    const Residuals residuals = ShownResiduals(m);
    // The title goes by the number of the error model, so a log fit is titled "Residual Catches" and a
    // weighted fit "ln Residual Catches". Deliberate.
    const std::string& what = texts.ResidTitles(m.FitOp);
    const auto add = [&](const std::string& title, const std::string& xTitle, const std::string& yTitle,
                         AxisMeasure along, const Values& x) {
        auto graph = NewGraph(GraphType::Residuals, title, xTitle, yTitle, x);
        graph->YData(residuals.points.inFit);
        graph->YData2(residuals.points.outOfFit);
        graph->XMeasure(along);
        if (m.FitOp == fit_op::kLog) // the title, which goes by another rule, does not say so
            graph->YUnit("ln");
        else if (m.FitOp != fit_op::kGamma) // whose residuals are percentiles
            graph->YMeasure({.column = CatchColumn(m)});
        graph->UCI(residuals.upper);
        graph->LCI(residuals.lower);
        m.run->window.AddModelGraph(std::move(graph));
    };
    add(what + texts.GraphTitles(3), texts.TimeTitle, "Residual Catches", {.column = AxisMeasure::kTime},
        Times(m, m.NAPoints()));
    add(what + texts.GraphTitles(4), "Expected Catch", "Observed Residuals", {.column = CatchColumn(m)},
        ExpectedCatch(m));
}

void AddPopulation(const ModelState& m, int column, const std::string& title, const std::string& yTitle)
{
    if (!m.data->ColPresent(column))
        return;
    const auto series = m.data->Column(column).All().first(static_cast<std::size_t>(m.NDPoints()));
    auto graph = NewGraph(GraphType::Line, title, m.run->globals.TimeTitle, yTitle, Times(m, m.NDPoints()));
    graph->XMeasure({.column = AxisMeasure::kTime});
    graph->YMeasure({.column = column});
    graph->YData(Values(series.begin(), series.end()));
    m.run->window.AddModelGraph(std::move(graph));
}
} // namespace

void AddModelGraphs(const ModelState& m)
{
    const modVeltGlobals::Globals& texts = m.run->globals;
    const clsVeltData& data = *m.data;
    AddObservedAndExpected(
        m, texts.GraphTitles(1), texts.CPUETitle, {.column = CatchColumn(m), .per = columns::Effort},
        [&data](int i) { return data.ObsCPUE(i); }, [&data](int i) { return data.ExpCPUE(i); });
    AddObservedAndExpected(
        m, texts.GraphTitles(2), "Catch", {.column = CatchColumn(m)},
        [&m](int i) { return m.CatchVector(i); }, [&m](int i) { return m.ExpCatchVec(i); });
    AddResiduals(m);
    AddPopulation(m, columns::PopNums, texts.GraphTitles(5), "Population Numbers");
    AddPopulation(m, columns::PopWt, texts.GraphTitles(6), "Population Weight");
}

namespace
{
constexpr int kClasses = 50;

/// Positions among the sorted values that the levels cut off; plain cuts towards zero of the 64-bit products
/// of the 32-bit levels. \throws VeltError 9 for a level that is no number
std::pair<int, int> CountedPositions(float low, float high, int replicates)
{
    if (std::isnan(low) || std::isnan(high))
        RaiseSubscript();
    const auto cut = [replicates](float level, double least) { // bounded before it becomes a whole number
        const double whole = std::trunc(static_cast<double>(level) * replicates);
        return std::clamp(whole, least, static_cast<double>(replicates));
    };
    const int a = std::min(static_cast<int>(cut(low, 0.0)) + 1, replicates);
    return {a, static_cast<int>(cut(high, a))};
}

/// Position of a limit among the replicates as the report has it; a histogram counts from other ones.
int LimitPosition(float level, int replicates)
{
    const double position = std::nearbyint(static_cast<double>(level) * replicates);
    return static_cast<int>(std::clamp(position, 1.0, static_cast<double>(replicates)));
}

/// The column whose unit a parameter has; none for rates.
int ColumnOf(const ModelState& m, int parameter)
{
    switch (parameter) {
    case bs_param::kK: // of constant recruitment a number of animals
    case bs_param::kN1:
        return m.UsingNosFlag ? columns::PopNums : columns::PopWt;
    case bs_param::kMSY:
    case bs_param::kRYield:
        return m.UsingNosFlag ? columns::TotCatchNums : columns::TotCatchWt;
    default:
        return AxisMeasure::kNone;
    }
}

struct Levels {
    float low;
    float high;
};

std::shared_ptr<ModelGraph> Histogram(const ModelState& m, const clsBootStrap& boot, int parameter,
                                      const Levels& levels, const std::string& title)
{
    const auto [a, b] = CountedPositions(levels.low, levels.high, m.NumBootStraps);
    const modVeltGlobals::Globals& texts = m.run->globals;
    const auto value = [&](int n) { return static_cast<double>(boot.SortedBS(parameter, n).value_or(0.0F)); };
    const double lo = value(a);
    double width = (value(b) - lo) / kClasses;
    if (width == 0.0)
        width = 1.0;
    width += width * 1e-5; // so that the top value falls inside the last class
    Values x;
    Values counts(kClasses, 0.0);
    for (int j = 0; j < kClasses; ++j)
        x.push_back(lo + j * width);
    for (int n = a; n <= b; ++n) {
        const auto at = static_cast<std::size_t>((value(n) - lo) / width);
        counts[std::min<std::size_t>(at, kClasses - 1)] += 1.0;
    }
    auto graph = NewGraph(GraphType::Histogram, title, texts.ParamNames(parameter), texts.CountTitle, x);
    graph->XMeasure({.column = ColumnOf(m, parameter)});
    graph->YData(counts);
    graph->LCI(static_cast<float>(value(LimitPosition(levels.low, m.NumBootStraps))));
    graph->UCI(static_cast<float>(value(LimitPosition(levels.high, m.NumBootStraps))));
    return graph;
}
} // namespace

void AddBootStrapHistos(const ModelState& m, const clsBootStrap& boot, float low, float high)
{
    if (m.NumBootStraps < 1)
        RaiseSubscript();
    CountedPositions(low, high, m.NumBootStraps); // before any window opens
    const std::string range = "(" + number_text::Plain(low) + ".." + number_text::Plain(high) +
                              "), n = " + std::to_string(m.NumBootStraps);
    for (int parameter = 1; parameter <= bs_param::kCount; ++parameter) {
        if (!m.BSFilled(parameter))
            continue;
        const std::string title = m.run->globals.ParamNames(parameter) + range;
        m.run->window.AddModelGraph(Histogram(m, boot, parameter, {low, high}, title));
    }
}
