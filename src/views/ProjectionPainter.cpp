// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ProjectionPainter.h"

#include "graphs/ProjGraph.h"
#include "views/PlotLook.h"
#include "views/PlotPicture.h"
#include "views/PlotRanges.h"
#include "views/PlotStyle.h"

#include <array>

using namespace plot_style;

namespace
{
constexpr double kLinePoints = 2.0;
constexpr int kManyPoints = 60; // symbols would run into one another

constexpr std::array<QColor, 5> kScenarios{QColor(0x00, 0x72, 0xB2), QColor(0x00, 0x9E, 0x73),
                                           QColor(0xCC, 0x79, 0xA7), QColor(0xE6, 0x9F, 0x00),
                                           QColor(0x56, 0xB4, 0xE9)};

/// How a line looks. Scenarios cycle through five colours; the dashes shift by one from cycle to cycle, so
/// that 25 of them differ, and five also on paper without colour.
struct Look {
    QPen pen;
    QCPScatterStyle symbol;
};

/// Lengths of dashes and gaps, in widths of the line; none is a solid line.
QList<qreal> DashesOf(int number)
{
    switch (number % 5) {
    case 1:
        return {5.0, 3.0};
    case 2:
        return {1.5, 2.5};
    case 3:
        return {6.0, 2.5, 1.5, 2.5};
    case 4:
        return {10.0, 4.0};
    default:
        return {};
    }
}

QCPScatterStyle::ScatterShape SymbolOf(int number)
{
    constexpr std::array kShapes{QCPScatterStyle::ssCircle, QCPScatterStyle::ssSquare,
                                 QCPScatterStyle::ssTriangle, QCPScatterStyle::ssDiamond,
                                 QCPScatterStyle::ssTriangleInverted};
    return kShapes.at(static_cast<std::size_t>(number) % kShapes.size());
}

Look LookOf(const ProjGraph& graph, int line)
{
    if (graph.IsFit(line))
        return {Pen(kExpected, kLinePoints), QCPScatterStyle(QCPScatterStyle::ssNone)};
    const int number = line - 1;
    const int colours = static_cast<int>(kScenarios.size());
    const QColor& colour = kScenarios.at(static_cast<std::size_t>(number % colours));
    const int style = number + number / colours;
    QPen pen = Pen(colour, kLinePoints);
    if (const QList<qreal> dashes = DashesOf(style); !dashes.isEmpty()) {
        pen.setDashPattern(dashes);
        pen.setCapStyle(Qt::FlatCap);
    }
    if (graph.NumPoints() > kManyPoints)
        return {pen, QCPScatterStyle(QCPScatterStyle::ssNone)};
    return {pen, QCPScatterStyle(SymbolOf(style), Pen(colour, 1.2), QBrush(Qt::white), Pixels(5.0))};
}

/// The points of one line that show, with their limits.
struct Shown {
    QVector<double> x, y, low, high;
};

Shown ShownOf(const ProjGraph& graph, int line)
{
    Shown shown;
    for (int i = 1; i <= graph.NumPoints(); ++i) {
        if (!graph.Drawn(line, i))
            continue;
        shown.x += static_cast<double>(graph.XData(i));
        shown.y += static_cast<double>(graph.ProjData(line, i));
        shown.low += static_cast<double>(graph.ErrorMinus(i));
        shown.high += static_cast<double>(graph.ErrorPlus(i));
    }
    return shown;
}

QColor Thinned(QColor colour, int alpha)
{
    colour.setAlpha(alpha);
    return colour;
}

void AddBand(QCustomPlot& plot, const Shown& shown, const QColor& colour, const QString& name)
{
    constexpr int kBandAlpha = 45;
    const auto edge = [&](const QVector<double>& y) {
        auto* graph = new SeriesGraph(plot.xAxis, plot.yAxis);
        graph->setPen(Qt::NoPen);
        plot_look::Accompany(*graph, name);
        graph->setData(shown.x, y, true);
        return graph;
    };
    QCPGraph* lower = edge(shown.low);
    QCPGraph* upper = edge(shown.high);
    upper->setBrush(Thinned(colour, kBandAlpha));
    upper->setChannelFillGraph(lower);
}

/// Offsets from the line, which need not lie between its limits.
void AddWhiskers(QCustomPlot& plot, QCPGraph& line, const Shown& shown, const QColor& colour)
{
    constexpr int kWhiskerAlpha = 150;
    QVector<double> down, up;
    for (qsizetype i = 0; i < shown.x.size(); ++i) {
        down += shown.y[i] - shown.low[i];
        up += shown.high[i] - shown.y[i];
    }
    auto* bars = new QCPErrorBars(plot.xAxis, plot.yAxis);
    plot_look::Accompany(*bars, line.name());
    bars->setDataPlottable(&line);
    bars->setData(down, up);
    bars->setPen(Pen(Thinned(colour, kWhiskerAlpha), 0.8));
    bars->setWhiskerWidth(Pixels(4.0));
    bars->setSymbolGap(0.0);
}

/// A quiet line where the data end.
void MarkStart(QCustomPlot& plot, double time)
{
    auto* line = new QCPItemStraightLine(&plot);
    line->point1->setCoords(time, 0.0);
    line->point2->setCoords(time, 1.0);
    line->setPen(Pen(kLimits, 0.7, Qt::DotLine));
    line->setSelectable(false);
}

void AddLine(QCustomPlot& plot, const ProjGraph& graph, int line, plot_ranges::Extent& extent)
{
    const Shown shown = ShownOf(graph, line);
    const Look look = LookOf(graph, line);
    auto* series = new SeriesGraph(plot.xAxis, plot.yAxis);
    series->setPen(look.pen);
    series->setScatterStyle(look.symbol);
    series->setData(shown.x, shown.y, true);
    AddToLegend(*series, QString::fromStdString(graph.LegendText(line)));
    for (const double y : shown.y)
        extent.Add(y);
    if (!graph.WithCI())
        return;
    AddBand(plot, shown, look.pen.color(), series->name());
    AddWhiskers(plot, *series, shown, look.pen.color());
    for (const auto* limits : {&shown.low, &shown.high})
        for (const double y : *limits)
            extent.Add(y);
}
} // namespace

void PaintProjection(QCustomPlot& plot, const ProjGraph& graph)
{
    Prepare(plot);
    plot_ranges::Extent extent;
    for (int line = 1; line <= graph.NumLines(); ++line)
        AddLine(plot, graph, line, extent);
    MarkStart(plot, static_cast<double>(graph.XData(graph.ProjStart())));
    const int first = graph.WithFit() ? 1 : graph.ProjStart();
    plot_ranges::SetPeriodAxis(*plot.xAxis, static_cast<double>(graph.XData(first)),
                               static_cast<double>(graph.XData(graph.NumPoints())));
    SetTicks(*plot.yAxis, NumberKind::Real);
    plot.yAxis->setRange(plot_ranges::QuantityRange(extent));
    plot_look::Apply(plot, graph);
    FitLegend(plot, plot.width());
}

QByteArray DrawProjectionPicture(const ProjGraph& graph, const QString& ending)
{
    QCustomPlot plot;
    PaintProjection(plot, graph);
    return DrawPlot(plot, ending);
}
