// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ContourPainter.h"

#include "views/ContourLines.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace plot_style;

namespace
{

constexpr QColor kInvalid{0xD0, 0xD0, 0xD0};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kPixelsAcross =
    240; // of the colour image; finer than a grid of 20, coarse enough to redraw fast

/// Light where the objective is low: the fit is best there, and lines and marks stand out. One hue, so that
/// colour-blind readers and grey printers see the same order.
QCPColorGradient Gradient()
{
    QCPColorGradient gradient;
    gradient.clearColorStops();
    gradient.setColorInterpolation(QCPColorGradient::ciRGB);
    gradient.setColorStopAt(0.0, QColor(0xF7, 0xFB, 0xFF));
    gradient.setColorStopAt(0.25, QColor(0xC6, 0xDB, 0xEF));
    gradient.setColorStopAt(0.5, QColor(0x85, 0xBC, 0xDB));
    gradient.setColorStopAt(0.75, QColor(0x3E, 0x8D, 0xC3));
    gradient.setColorStopAt(1.0, QColor(0x08, 0x45, 0x94));
    gradient.setNanHandling(QCPColorGradient::nhNanColor);
    gradient.setNanColor(kInvalid);
    return gradient;
}

bool Valid(const ContourSurface& surface, std::size_t i, std::size_t j)
{
    // With a single valid height the plateau has that same height, so the largest valid value decides.
    return std::isfinite(surface.z[i][j]) && surface.z[i][j] <= surface.zMax;
}

/// The span of an axis; a grid of one point, or of equal ones, still gets some width.
QCPRange SpanOf(const std::vector<double>& positions)
{
    if (positions.empty())
        return {0.0, 1.0};
    if (positions.back() > positions.front())
        return {positions.front(), positions.back()};
    const double around = positions.front() != 0.0 ? 0.05 * std::abs(positions.front()) : 0.5;
    return {positions.front() - around, positions.front() + around};
}

/// The position of one of the pixels across a span.
double At(const QCPRange& span, int pixel)
{
    const double position = span.lower + span.size() * pixel / (kPixelsAcross - 1);
    return std::min(position, span.upper); // the last one may miss the end by a rounding error
}

/// Where a value lies between two grid points.
struct Place {
    std::size_t index = 0;
    double part = 0.0;
};

std::optional<Place> PlaceOf(const std::vector<double>& positions, double value)
{
    const QCPRange span = SpanOf(positions);
    if (positions.empty() || !(value >= span.lower && value <= span.upper))
        return std::nullopt;
    if (positions.size() == 1 || !(positions.back() > positions.front()))
        return Place{};
    const auto above = std::upper_bound(positions.begin(), positions.end() - 1, value);
    const auto index = static_cast<std::size_t>(above - positions.begin()) - 1;
    const std::size_t at = std::min(index, positions.size() - 2);
    return Place{at, (value - positions[at]) / (positions[at + 1] - positions[at])};
}

QCPScatterStyle SymbolOf(ContourMark kind)
{
    const QPen edge = Pen(Qt::black, 1.0);
    const QBrush fill(kHighlighted);
    switch (kind) {
    case ContourMark::Start1:
        return {QCPScatterStyle::ssCircle, edge, fill, Pixels(7.5)};
    case ContourMark::Start2:
        return {QCPScatterStyle::ssSquare, edge, fill, Pixels(7.0)};
    case ContourMark::Start3:
        return {QCPScatterStyle::ssTriangle, edge, fill, Pixels(8.5)};
    case ContourMark::Final:
        break;
    }
    return {QCPScatterStyle::ssDiamond, Pen(Qt::white, 1.2), QBrush(Qt::black), Pixels(11.0)};
}

QString NameOf(ContourMark kind)
{
    if (kind == ContourMark::Final)
        return QStringLiteral("Final");
    return QStringLiteral("Start %1").arg(static_cast<int>(kind));
}

} // namespace

std::optional<double> ObjectiveAt(const ContourSurface& surface, double x, double y)
{
    const std::optional<Place> across = PlaceOf(surface.x, x);
    const std::optional<Place> up = PlaceOf(surface.y, y);
    if (!across || !up)
        return std::nullopt;
    const std::size_t nearI = across->index + (across->part > 0.5 ? 1 : 0);
    const std::size_t nearJ = up->index + (up->part > 0.5 ? 1 : 0);
    if (!Valid(surface, nearI, nearJ))
        return std::nullopt;
    double sum = 0.0;
    double weights = 0.0;
    for (const std::size_t i : {0U, 1U})
        for (const std::size_t j : {0U, 1U}) {
            const double weight =
                (i == 1 ? across->part : 1.0 - across->part) * (j == 1 ? up->part : 1.0 - up->part);
            if (weight <= 0.0 || !Valid(surface, across->index + i, up->index + j))
                continue; // beside the plateau the valid corners decide alone
            sum += weight * surface.z[across->index + i][up->index + j];
            weights += weight;
        }
    return sum / weights;
}

ContourPainter::ContourPainter(QCustomPlot& plot) : m_plot(plot)
{
    m_plot.addLayer(PathLayer(), m_plot.layer(QStringLiteral("main")));
    m_plot.layer(PathLayer())->setMode(QCPLayer::lmBuffered);
}

QString ContourPainter::PathLayer()
{
    return QStringLiteral("path");
}

void ContourPainter::Surface(const ContourSurface& surface)
{
    m_marks.clear();
    m_last.reset();
    m_pathPoints = 0;
    Prepare(m_plot, QString::fromStdString(surface.title), QString::fromStdString(surface.xName),
            QString::fromStdString(surface.yName));
    SetTicks(*m_plot.xAxis, NumberKind::Real);
    SetTicks(*m_plot.yAxis, NumberKind::Real);
    m_plot.xAxis->setRange(SpanOf(surface.x));
    m_plot.yAxis->setRange(SpanOf(surface.y));
    for (QCPAxis* axis : {m_plot.xAxis, m_plot.yAxis})
        axis->grid()->setVisible(false); // the contours are lines enough
    AddColours(surface);
    AddContours(surface);
    NameInvalid(surface);
    AddPath();
    FitLegend(m_plot, m_plot.width());
}

void ContourPainter::AddColours(const ContourSurface& surface)
{
    QCPLayoutGrid& rows = *m_plot.plotLayout();
    if (rows.columnCount() > 1 && rows.hasElement(2, 1)) {
        rows.remove(rows.element(2, 1));
        rows.simplify();
    }
    const QCPRange x = SpanOf(surface.x);
    const QCPRange y = SpanOf(surface.y);
    auto* map = new QCPColorMap(m_plot.xAxis, m_plot.yAxis);
    map->setLayer(QStringLiteral("background"));
    map->data()->setSize(kPixelsAcross, kPixelsAcross);
    map->data()->setRange(x, y);
    for (int i = 0; i < kPixelsAcross; ++i)
        for (int j = 0; j < kPixelsAcross; ++j)
            map->data()->setCell(i, j, ObjectiveAt(surface, At(x, i), At(y, j)).value_or(kNaN));
    map->setInterpolate(false);
    auto* scale = new QCPColorScale(&m_plot);
    scale->setType(QCPAxis::atRight);
    StyleAxis(*scale->axis(), QString::fromStdString(surface.zName));
    SetTicks(*scale->axis(), NumberKind::Real);
    scale->setBarWidth(static_cast<int>(Pixels(11.0)));
    rows.addElement(2, 1, scale);
    map->setColorScale(scale);
    map->setGradient(Gradient());
    const double flat = surface.zMax > surface.zMin ? 0.0 : std::max(0.5, 0.05 * std::abs(surface.zMin));
    map->setDataRange({surface.zMin - flat, surface.zMax + flat});
    auto* margins = new QCPMarginGroup(&m_plot);
    m_plot.axisRect()->setMarginGroup(QCP::msBottom | QCP::msTop, margins);
    scale->setMarginGroup(QCP::msBottom | QCP::msTop, margins);
}

void ContourPainter::AddContours(const ContourSurface& surface) const
{
    std::vector<std::vector<double>> z = surface.z;
    for (std::size_t i = 0; i < z.size(); ++i)
        for (std::size_t j = 0; j < z[i].size(); ++j)
            if (!Valid(surface, i, j))
                z[i][j] = kNaN; // no line climbs the plateau: its height means nothing
    for (const double level : contour_lines::Levels(surface.zMin, surface.zMax, surface.levels)) {
        auto* curve = new QCPCurve(m_plot.xAxis, m_plot.yAxis);
        curve->setPen(Pen(QColor(0x22, 0x22, 0x22, 150), 0.6));
        QVector<double> x, y;
        for (const contour_lines::Line& line : contour_lines::Trace(surface.x, surface.y, z, level)) {
            for (const contour_lines::Point& point : line) {
                x += point.x;
                y += point.y;
            }
            x += kNaN; // lifts the pen between two lines
            y += kNaN;
        }
        curve->setData(x, y);
    }
}

void ContourPainter::NameInvalid(const ContourSurface& surface) const
{
    bool any = false;
    for (std::size_t i = 0; i < surface.z.size(); ++i)
        for (std::size_t j = 0; j < surface.z[i].size(); ++j)
            any = any || !Valid(surface, i, j);
    if (!any)
        return;
    auto* patch = new SeriesGraph(m_plot.xAxis, m_plot.yAxis); // only its symbol in the legend shows
    patch->setLineStyle(QCPGraph::lsNone);
    patch->setScatterStyle({QCPScatterStyle::ssSquare, Pen(kLimits, 0.5), QBrush(kInvalid), Pixels(7.0)});
    AddToLegend(*patch, QStringLiteral("Invalid parameters"));
}

void ContourPainter::AddPath()
{
    const auto curve = [&](const QPen& pen) {
        auto* made = new QCPCurve(m_plot.xAxis, m_plot.yAxis);
        made->setPen(pen);
        made->setLayer(PathLayer());
        return made;
    };
    m_casing = curve(Pen(Qt::white, 3.0));
    m_path = curve(Pen(kExpected, 1.6));
}

bool ContourPainter::Step(const ContourStep& step)
{
    if (!std::isfinite(step.fromX + step.fromY + step.toX + step.toY))
        return false;
    const bool first = m_pathPoints == 0;
    const auto add = [&](double x, double y) {
        m_casing->addData(m_pathPoints, x, y);
        m_path->addData(m_pathPoints, x, y);
        ++m_pathPoints;
    };
    if (!m_last || m_last->toX != step.fromX || m_last->toY != step.fromY) {
        if (!first)
            add(kNaN, kNaN); // a new start: no line leads there
        add(step.fromX, step.fromY);
    }
    add(step.toX, step.toY);
    m_last = step;
    if (first) {
        AddToLegend(*m_path, QStringLiteral("Path of the minimiser"));
        FitLegend(m_plot, m_plot.width());
    }
    return first;
}

QCPGraph& ContourPainter::SeriesOf(ContourMark kind)
{
    QCPGraph*& series = m_marks[kind];
    if (series == nullptr) {
        series = new SeriesGraph(m_plot.xAxis, m_plot.yAxis);
        series->setLineStyle(QCPGraph::lsNone);
        series->setScatterStyle(SymbolOf(kind));
        series->setLayer(PathLayer());
        AddToLegend(*series, NameOf(kind));
        FitLegend(m_plot, m_plot.width());
    }
    return *series;
}

bool ContourPainter::Mark(const ContourMarkAt& mark)
{
    if (!std::isfinite(mark.x + mark.y))
        return false;
    const bool isNew = !m_marks.contains(mark.kind);
    SeriesOf(mark.kind).addData(mark.x, mark.y);
    return Reach(mark.x, mark.y) || isNew;
}

// A mark a little outside the grid is worth a wider picture; one far away would squeeze the surface to a dot.
bool ContourPainter::Reach(double x, double y) const
{
    bool wider = false;
    const auto widen = [&](QCPAxis& axis, double value) {
        QCPRange range = axis.range();
        const double span = range.size();
        if (range.contains(value) || value < range.lower - span || value > range.upper + span)
            return;
        range.expand(value < range.lower ? value - 0.05 * span : value + 0.05 * span);
        axis.setRange(range);
        wider = true;
    };
    widen(*m_plot.xAxis, x);
    widen(*m_plot.yAxis, y);
    return wider;
}

namespace
{
void PaintContours(QCustomPlot& plot, const ContourSurface& surface, const std::vector<ContourStep>& path,
                   const std::vector<ContourMarkAt>& marks)
{
    ContourPainter painter(plot);
    painter.Surface(surface);
    for (const ContourStep& step : path)
        painter.Step(step);
    for (const ContourMarkAt& mark : marks)
        painter.Mark(mark);
}
} // namespace

QByteArray DrawContourPicture(const ContourSurface& surface, const std::vector<ContourStep>& path,
                              const std::vector<ContourMarkAt>& marks, const QString& ending)
{
    QCustomPlot plot;
    PaintContours(plot, surface, path, marks);
    return DrawPlot(plot, ending);
}

bool SaveContourPicture(const ContourSurface& surface, const std::vector<ContourStep>& path,
                        const std::vector<ContourMarkAt>& marks, const QString& file)
{
    QCustomPlot plot;
    PaintContours(plot, surface, path, marks);
    return SavePlot(plot, file);
}
