// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/GraphPainter.h"

#include "graphs/ModelGraph.h"
#include "toolkit/Words.h"
#include "views/PlotLook.h"
#include "views/PlotPicture.h"
#include "views/PlotRanges.h"
#include "views/PlotStyle.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

using namespace plot_style;
using namespace plot_ranges;

namespace
{

constexpr int kExpectedText = 1201;
constexpr int kHighlightedText = 1202;
constexpr int kExcludedText = 1203;
constexpr int kIncludedText = 1204;
constexpr int kManyPoints = 60; // from here on smaller symbols keep points apart
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

QString LimitsText()
{
    return QStringLiteral("Limits");
}

bool Drawn(double value)
{
    return ModelGraph::Shown(value) && std::isfinite(value);
}

struct Points {
    QVector<double> x, y;
};

/// The points of a series that show.
Points ShownPoints(const ModelGraph& graph, const std::vector<double>& values)
{
    Points points;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (Drawn(graph.XData()[i]) && Drawn(values[i])) {
            points.x += graph.XData()[i];
            points.y += values[i];
        }
    return points;
}

double SymbolSize(const ModelGraph& graph)
{
    return Pixels(graph.NumPoints() > kManyPoints ? 4.5 : 6.5);
}

QCPGraph* AddSymbols(QCustomPlot& plot, const Points& points, const QCPScatterStyle& symbol)
{
    if (points.x.isEmpty())
        return nullptr;
    auto* series = new SeriesGraph(plot.xAxis, plot.yAxis);
    series->setLineStyle(QCPGraph::lsNone);
    series->setScatterStyle(symbol);
    series->setData(points.x, points.y);
    return series;
}

/// A ring around the point that is lit up, above all others.
void AddHighlight(QCustomPlot& plot, const ModelGraph& graph)
{
    if (!graph.Highlighted())
        return;
    const auto [point, value] = *graph.Highlighted();
    const double x = graph.XData()[static_cast<std::size_t>(point - 1)];
    if (!Drawn(x) || !Drawn(value))
        return;
    const QCPScatterStyle ring(QCPScatterStyle::ssCircle, Pen(kHighlighted, 2.2), Qt::NoBrush,
                               1.6 * SymbolSize(graph));
    AddToLegend(*AddSymbols(plot, {{x}, {value}}, ring), Words(kHighlightedText));
}

/// Points in and out of the fit, drawn over what the plot holds and named before it in the legend.
void AddObserved(QCustomPlot& plot, const ModelGraph& graph)
{
    const double size = SymbolSize(graph);
    const QCPScatterStyle hollow(QCPScatterStyle::ssCircle, Pen(kExcluded, 1.3), QBrush(Qt::white), size);
    const QCPScatterStyle filled(QCPScatterStyle::ssCircle, Pen(kIncluded, 0.8), QBrush(kIncluded), size);
    QCPGraph* excluded = AddSymbols(plot, ShownPoints(graph, graph.YData2()), hollow);
    QCPGraph* included = AddSymbols(plot, ShownPoints(graph, graph.YData()), filled);
    if (included != nullptr)
        AddToLegend(*included, Words(kIncludedText));
    if (excluded != nullptr)
        AddToLegend(*excluded, Words(kExcludedText));
    AddHighlight(plot, graph);
}

/// A line with a gap where a value does not show; a value between two gaps shows as a dot.
QCPGraph* AddLine(QCustomPlot& plot, const ModelGraph& graph, const std::vector<double>& values,
                  const QColor& colour, const QString& name)
{
    constexpr double kLinePoints = 2.0;
    QVector<double> x, y;
    Points lonely;
    const auto shown = [&](std::size_t i) { return i < values.size() && Drawn(values[i]); };
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!Drawn(graph.XData()[i]))
            continue;
        x += graph.XData()[i];
        y += shown(i) ? values[i] : kNaN;
        if (shown(i) && !shown(i + 1) && (i == 0 || !shown(i - 1))) {
            lonely.x += x.back();
            lonely.y += y.back();
        }
    }
    auto* line = new SeriesGraph(plot.xAxis, plot.yAxis);
    line->setName(name);
    line->setPen(Pen(colour, kLinePoints));
    line->setData(x, y);
    if (!lonely.x.isEmpty()) {
        auto* dots = new SeriesGraph(plot.xAxis, plot.yAxis);
        dots->setLineStyle(QCPGraph::lsNone);
        dots->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, Pen(colour, 0.5), Qt::NoBrush,
                                              Pixels(2.0 * kLinePoints)));
        dots->setData(lonely.x, lonely.y);
        plot_look::Accompany(*dots, name);
    }
    return line;
}

/// Whole numbers, each one more than the one before: periods or years.
bool ArePeriods(const std::vector<double>& x)
{
    for (std::size_t i = 0; i < x.size(); ++i)
        if (!Drawn(x[i]) || x[i] != std::round(x[i]) || (i > 0 && x[i] != x[i - 1] + 1.0))
            return false;
    return !x.empty();
}

bool HoldsAll(const ModelGraph::TimeAxis& axis, const std::vector<double>& x)
{
    return std::all_of(x.begin(), x.end(),
                       [&](double value) { return value >= axis.minimum && value <= axis.maximum; });
}

Extent ExtentOf(const Points& points)
{
    Extent extent;
    for (const double value : points.x)
        extent.Add(value);
    return extent;
}

void SetTimeOrQuantityAxis(QCPAxis& axis, const ModelGraph& graph)
{
    const std::vector<double>& x = graph.XData();
    // A quantity that happens to start between 1900 and 1999 must not lose points to the axis of years.
    if (const auto years = graph.YearAxis(); years && HoldsAll(*years, x)) {
        SetTicks(axis, NumberKind::Period)->FixedStep(years->minimum, years->step);
        axis.setRange(years->minimum, years->maximum);
        return;
    }
    if (ArePeriods(x)) {
        SetPeriodAxis(axis, x.front(), x.back());
        return;
    }
    Extent extent = ExtentOf(ShownPoints(graph, graph.YData()));
    const Extent excluded = ExtentOf(ShownPoints(graph, graph.YData2()));
    extent.Add(excluded.low);
    extent.Add(excluded.high);
    SetTicks(axis, NumberKind::Real);
    axis.setRange(QuantityRange(extent));
}

void SetQuantityAxis(QCPAxis& axis, const ModelGraph& graph)
{
    Extent extent;
    for (const auto* series : {&graph.YData(), &graph.YData2(), &graph.OverlayLine()})
        for (const double value : ShownPoints(graph, *series).y)
            extent.Add(value);
    SetTicks(axis, NumberKind::Real);
    axis.setRange(QuantityRange(extent));
}

bool ArePercentiles(const ModelGraph& graph)
{
    return graph.LCI() == 0.025F && graph.UCI() == 0.975F;
}

/// Two dashed lines. \return the one that stands for both in the legend
QCPGraph* AddLimits(QCustomPlot& plot, const Points& upper, const Points& lower)
{
    const auto add = [&](const Points& points) {
        auto* line = new SeriesGraph(plot.xAxis, plot.yAxis);
        line->setPen(Pen(kLimits, 1.2, Qt::DashLine));
        line->setData(points.x, points.y);
        return line;
    };
    QCPGraph* first = add(upper);
    plot_look::Accompany(*add(lower), LimitsText());
    return first;
}

void PaintPointsAndLine(QCustomPlot& plot, const ModelGraph& graph)
{
    SetTimeOrQuantityAxis(*plot.xAxis, graph);
    SetQuantityAxis(*plot.yAxis, graph);
    QCPGraph* expected = nullptr;
    if (!ShownPoints(graph, graph.OverlayLine()).x.isEmpty())
        expected = AddLine(plot, graph, graph.OverlayLine(), kExpected, Words(kExpectedText));
    AddObserved(plot, graph);
    if (expected != nullptr)
        AddToLegend(*expected, Words(kExpectedText));
}

bool HasLimits(const ModelGraph& graph)
{
    return std::isfinite(graph.UCI()) && std::isfinite(graph.LCI()) && graph.UCI() > graph.LCI();
}

/// As far below zero as above it, so that the eye sees a bias.
QCPRange ResidualRange(const ModelGraph& graph)
{
    double reach = HasLimits(graph) ? std::max(std::abs(graph.UCI()), std::abs(graph.LCI())) : 0.0;
    for (const auto* series : {&graph.YData(), &graph.YData2()})
        for (const double value : ShownPoints(graph, *series).y)
            reach = std::max(reach, std::abs(value));
    if (reach == 0.0)
        return {-1.0, 1.0};
    reach *= 1.0 + 2.0 * kHeadroom;
    return {-reach, reach};
}

void PaintResiduals(QCustomPlot& plot, const ModelGraph& graph)
{
    SetTimeOrQuantityAxis(*plot.xAxis, graph);
    SetTicks(*plot.yAxis, NumberKind::Real);
    const bool percentiles = ArePercentiles(graph);
    plot.yAxis->setRange(percentiles ? QCPRange(0.0, 1.0) : ResidualRange(graph));
    // Half of all percentiles lie below 0.5, as half of all residuals below 0.
    AddLevel(plot, percentiles ? 0.5 : 0.0, Pen(kInk, 0.9));
    QCPGraph* limits = nullptr;
    if (HasLimits(graph)) {
        const double upper = graph.UCI();
        const double lower = graph.LCI();
        const QCPRange x = plot.xAxis->range();
        const double far = 50.0 * x.size(); // still there when the reader drags the picture aside
        const QVector<double> ends{x.lower - far, x.upper + far};
        limits = AddLimits(plot, {ends, {upper, upper}}, {ends, {lower, lower}});
    }
    AddObserved(plot, graph);
    if (limits != nullptr)
        AddToLegend(*limits, LimitsText());
}

void PaintLine(QCustomPlot& plot, const ModelGraph& graph)
{
    SetTimeOrQuantityAxis(*plot.xAxis, graph);
    SetQuantityAxis(*plot.yAxis, graph);
    if (!ShownPoints(graph, graph.YData()).x.isEmpty())
        AddLine(plot, graph, graph.YData(), kIncluded, QString::fromStdString(graph.YTitle()));
}

/// The bars of a histogram: their middles, heights and width.
struct Bars {
    QVector<double> middles, heights;
    double width = 1.0;
    double low = 0.0;
    double high = 1.0;
};

/// The X data are the lower ends of the classes. A spread that 32-bit rounding makes is none: one bar then
/// holds all.
Bars BarsOf(const Points& classes)
{
    constexpr double kRounding = 1e-5; // of the value; a few dozen neighbours among 32-bit numbers
    constexpr double kOneBar = 0.02;
    Bars bars;
    const double first = classes.x.front();
    const double step =
        classes.x.size() > 1 ? (classes.x.back() - first) / static_cast<double>(classes.x.size() - 1) : 1.0;
    bars.low = std::min(first, classes.x.back() + step); // levels may have been given the wrong way round
    bars.high = std::max(first, classes.x.back() + step);
    bars.width = std::abs(step);
    bars.middles = classes.x;
    for (double& x : bars.middles)
        x += step / 2.0;
    bars.heights = classes.y;
    if (bars.high - bars.low >= kRounding * std::abs(first))
        return bars;
    bars.width = kOneBar * std::abs(first);
    bars.middles = {first};
    bars.heights = {std::accumulate(classes.y.begin(), classes.y.end(), 0.0)};
    bars.low = first - bars.width;
    bars.high = first + bars.width;
    return bars;
}

void PaintHistogram(QCustomPlot& plot, const ModelGraph& graph)
{
    const Points classes = ShownPoints(graph, graph.YData());
    SetTicks(*plot.xAxis, NumberKind::Real);
    SetTicks(*plot.yAxis, NumberKind::Count);
    if (classes.x.isEmpty()) {
        plot.xAxis->setRange(0.0, 1.0);
        plot.yAxis->setRange(0.0, 1.0);
        return;
    }
    const Bars of = BarsOf(classes);
    auto* bars = new QCPBars(plot.xAxis, plot.yAxis);
    bars->setName(QString::fromStdString(graph.YTitle()));
    bars->setWidthType(QCPBars::wtPlotCoords);
    bars->setWidth(of.width);
    bars->setPen(Pen(kIncluded, 0.6));
    bars->setBrush(kHistogram);
    bars->setData(of.middles, of.heights);
    const double most = std::max(1.0, *std::max_element(of.heights.begin(), of.heights.end()));
    // Those of the report, where the graph knows them.
    const double low = HasLimits(graph) ? static_cast<double>(graph.LCI()) : of.low;
    const double high = HasLimits(graph) ? static_cast<double>(graph.UCI()) : of.high;
    const QVector<double> heights{0.0, most * 100.0};
    AddToLegend(*AddLimits(plot, {{low, low}, heights}, {{high, high}, heights}), LimitsText());
    const double left = std::min(low, of.low);
    const double right = std::max(high, of.high);
    const double room = 0.05 * (right - left);
    plot.xAxis->setRange(left - room, right + room);
    plot.yAxis->setRange(0.0, most * (1.0 + 2.0 * kHeadroom));
}

void SayNothingToShow(QCustomPlot& plot)
{
    auto* text = new QCPItemText(&plot);
    text->position->setType(QCPItemPosition::ptAxisRectRatio);
    text->position->setCoords(0.5, 0.5);
    text->setText(QStringLiteral("No points to show"));
    text->setFont(Font());
    text->setColor(kLimits);
    text->setSelectable(false);
    for (QCPAxis* axis : {plot.xAxis, plot.yAxis}) { // numbers along it would mean nothing
        axis->setTicks(false);
        axis->setTickLabels(false);
        axis->grid()->setVisible(false);
    }
}

bool AnyPoint(const ModelGraph& graph)
{
    return !ShownPoints(graph, graph.YData()).x.isEmpty() ||
           !ShownPoints(graph, graph.YData2()).x.isEmpty() ||
           !ShownPoints(graph, graph.OverlayLine()).x.isEmpty();
}

} // namespace

void PaintGraph(QCustomPlot& plot, const ModelGraph& graph)
{
    Prepare(plot);
    switch (graph.Type()) {
    case GraphType::PointsAndLine:
        PaintPointsAndLine(plot, graph);
        break;
    case GraphType::Residuals:
        PaintResiduals(plot, graph);
        break;
    case GraphType::Line:
        PaintLine(plot, graph);
        break;
    case GraphType::Histogram:
        PaintHistogram(plot, graph);
        break;
    }
    if (!AnyPoint(graph))
        SayNothingToShow(plot);
    plot_look::Apply(plot, graph);
    FitLegend(plot, plot.width());
}

QByteArray DrawGraphPicture(const ModelGraph& graph, const QString& ending)
{
    QCustomPlot plot;
    PaintGraph(plot, graph);
    return DrawPlot(plot, ending);
}

bool SaveGraphPicture(const ModelGraph& graph, const QString& path)
{
    QCustomPlot plot;
    PaintGraph(plot, graph);
    return SavePlot(plot, path);
}
