// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotLook.h"

#include "graphs/GraphTitles.h"
#include "views/PlotStyle.h"

#include <qcustomplot.h>

#include <algorithm>

using namespace plot_style;

namespace
{
constexpr const char* kCompanionProperty = "veltCompanion";
constexpr double kUsualSymbol = 6.5; // points
constexpr double kUsualLine = 2.0;

bool IsCompanion(const QCPAbstractPlottable& piece)
{
    return piece.property(kCompanionProperty).toBool();
}

/// So that a band still shows what lies below.
QColor AsOpaqueAs(const QColor& was, QColor colour)
{
    colour.setAlpha(was.alpha());
    return colour;
}

void Recolour(QPen& pen, const QColor& colour)
{
    pen.setColor(AsOpaqueAs(pen.color(), colour));
}

void Recolour(QBrush& brush, const QColor& colour)
{
    if (brush.style() != Qt::NoBrush && brush.color() != Qt::white)
        brush.setColor(AsOpaqueAs(brush.color(), colour));
}

template <typename Piece>
void RecolourPen(Piece& piece, const QColor& colour)
{
    QPen pen = piece.pen();
    if (pen.style() != Qt::NoPen)
        Recolour(pen, colour);
    piece.setPen(pen);
}

template <typename Piece>
void RecolourBrush(Piece& piece, const QColor& colour)
{
    QBrush brush = piece.brush();
    Recolour(brush, colour);
    piece.setBrush(brush);
}

bool HasLine(const QCPGraph& graph)
{
    return graph.lineStyle() != QCPGraph::lsNone && graph.pen().style() != Qt::NoPen;
}

QColor ColourOf(const QCPAbstractPlottable& piece)
{
    if (const auto* bars = qobject_cast<const QCPBars*>(&piece))
        return bars->brush().color();
    const auto* graph = qobject_cast<const QCPGraph*>(&piece);
    return graph != nullptr && !HasLine(*graph) ? graph->scatterStyle().pen().color() : piece.pen().color();
}

void SetColour(QCPAbstractPlottable& piece, const QColor& colour)
{
    RecolourPen(piece, colour);
    RecolourBrush(piece, colour);
    if (auto* graph = qobject_cast<QCPGraph*>(&piece)) {
        QCPScatterStyle symbol = graph->scatterStyle();
        if (symbol.isPenDefined())
            RecolourPen(symbol, colour);
        RecolourBrush(symbol, colour);
        graph->setScatterStyle(symbol);
    }
}

QCPScatterStyle::ScatterShape ShapeOf(SymbolShape symbol)
{
    switch (symbol) {
    case SymbolShape::Circle:
    case SymbolShape::FilledCircle:
        return QCPScatterStyle::ssCircle;
    case SymbolShape::Square:
    case SymbolShape::FilledSquare:
        return QCPScatterStyle::ssSquare;
    case SymbolShape::Triangle:
    case SymbolShape::FilledTriangle:
        return QCPScatterStyle::ssTriangle;
    case SymbolShape::Diamond:
    case SymbolShape::FilledDiamond:
        return QCPScatterStyle::ssDiamond;
    case SymbolShape::Cross:
        return QCPScatterStyle::ssCross;
    case SymbolShape::Plus:
        return QCPScatterStyle::ssPlus;
    case SymbolShape::None:
        break;
    }
    return QCPScatterStyle::ssNone;
}

bool IsFilled(SymbolShape symbol)
{
    return symbol == SymbolShape::FilledCircle || symbol == SymbolShape::FilledSquare ||
           symbol == SymbolShape::FilledTriangle || symbol == SymbolShape::FilledDiamond;
}

void SetSymbol(QCPGraph& graph, SymbolShape symbol)
{
    const QCPScatterStyle was = graph.scatterStyle();
    const QColor colour = ColourOf(graph);
    graph.setScatterStyle({ShapeOf(symbol), Pen(colour, 1.3),
                           QBrush(IsFilled(symbol) ? colour : QColor(Qt::white)),
                           was.isNone() ? Pixels(kUsualSymbol) : was.size()});
}

Qt::PenStyle StyleOf(LineKind line)
{
    switch (line) {
    case LineKind::Dashed:
        return Qt::DashLine;
    case LineKind::Dotted:
        return Qt::DotLine;
    case LineKind::DashDot:
        return Qt::DashDotLine;
    case LineKind::None:
    case LineKind::Solid:
        break;
    }
    return Qt::SolidLine;
}

void SetLine(QCPGraph& graph, LineKind line)
{
    const QColor colour = ColourOf(graph);
    if (line == LineKind::None) {
        graph.setLineStyle(QCPGraph::lsNone);
        return;
    }
    QPen pen = Pen(colour, kUsualLine, StyleOf(line));
    if (HasLine(graph))
        pen.setWidthF(graph.pen().widthF());
    graph.setLineStyle(QCPGraph::lsLine);
    graph.setPen(pen);
}

void Restyle(QCPAbstractPlottable& piece, const SeriesLook& look)
{
    if (look.colour)
        SetColour(piece, QColor::fromRgb(*look.colour));
    auto* graph = qobject_cast<QCPGraph*>(&piece);
    if (graph == nullptr)
        return;
    if (look.symbol && !IsCompanion(piece))
        SetSymbol(*graph, *look.symbol);
    if (look.line && (HasLine(*graph) || !IsCompanion(piece)))
        SetLine(*graph, *look.line);
}

void SetRange(QCPAxis& axis, const std::optional<AxisSpan>& span)
{
    if (span && QCPRange::validRange(span->low, span->high))
        axis.setRange(span->low, span->high);
}
} // namespace

void plot_look::Accompany(QCPAbstractPlottable& piece, const QString& series)
{
    piece.setName(series);
    piece.setProperty(kCompanionProperty, true);
}

std::vector<plot_look::Series> plot_look::SeriesOf(QCustomPlot& plot)
{
    std::vector<Series> all;
    for (int i = 0; i < plot.plottableCount(); ++i) {
        const QCPAbstractPlottable& piece = *plot.plottable(i);
        const auto listed = [&](const Series& series) { return series.name == piece.name(); };
        if (piece.name().isEmpty() || IsCompanion(piece) || std::ranges::any_of(all, listed))
            continue;
        const bool graph = qobject_cast<const QCPGraph*>(&piece) != nullptr;
        all.push_back(
            {.name = piece.name(), .colour = ColourOf(piece), .takesSymbol = graph, .takesLine = graph});
    }
    return all;
}

QString plot_look::PlainXTitle(const GraphTitles& titles)
{
    return AxisTitle(titles.XTitle(), titles.XUnit());
}

QString plot_look::PlainYTitle(const GraphTitles& titles)
{
    return AxisTitle(titles.YTitle(), titles.YUnit());
}

void plot_look::ApplyTitlesAndRanges(QCustomPlot& plot, const GraphTitles& titles)
{
    const GraphLook& look = titles.Look();
    Entitle(plot, QString::fromStdString(titles.UserTitle()),
            look.xTitle ? QString::fromStdString(*look.xTitle) : PlainXTitle(titles),
            look.yTitle ? QString::fromStdString(*look.yTitle) : PlainYTitle(titles));
    SetRange(*plot.xAxis, look.x);
    SetRange(*plot.yAxis, look.y);
}

void plot_look::Apply(QCustomPlot& plot, const GraphTitles& titles)
{
    ApplyTitlesAndRanges(plot, titles);
    const GraphLook& look = titles.Look();
    for (QCPAxis* axis : {plot.xAxis, plot.yAxis})
        axis->grid()->setVisible(look.grid && axis->ticks());
    for (int i = 0; i < plot.plottableCount(); ++i)
        if (const auto found = look.series.find(plot.plottable(i)->name().toStdString());
            found != look.series.end())
            Restyle(*plot.plottable(i), found->second);
    if (!look.legend)
        plot.legend->clearItems();
}
