// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ContourPainter.h"

#include "views/ContourHeights.h"
#include "views/ContourLines.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"

#include <qcustomplot.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

using namespace contour_heights;
using namespace plot_style;

namespace
{

constexpr QColor kInvalid{0xD0, 0xD0, 0xD0};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kPixelsAcross = 400; // of the colour image: smooth on paper, coarse enough to redraw fast

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

/// The position of one of the pixels across a span.
double At(const QCPRange& span, int pixel)
{
    const double position = span.lower + span.size() * pixel / (kPixelsAcross - 1);
    return std::min(position, span.upper); // the last one may miss the end by a rounding error
}

/// The tone of a start, for its mark and its path. All stand out from the blue of the surface.
QColor ToneOf(int start)
{
    constexpr std::array kTones{kExpected, QColor(0xCC, 0x79, 0xA7), QColor(0x00, 0x9E, 0x73)};
    return kTones.at(static_cast<std::size_t>(std::clamp(start, 1, 3) - 1));
}

QCPScatterStyle SymbolOf(ContourMark kind)
{
    const QPen edge = Pen(Qt::black, 1.0);
    const QBrush fill(ToneOf(static_cast<int>(kind)));
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

/// Writes the heights of some levels on their lines, each once, where it stands clear of the others.
class LevelLabels
{
public:
    LevelLabels(QCustomPlot& plot, const QCPRange& x, const QCPRange& y) : m_plot(plot), m_x(x), m_y(y) {}

    void Put(const contour_lines::Line& line, double level)
    {
        // From the middle outwards, so that a label seldom stands at the rim.
        const std::size_t middle = line.size() / 2;
        for (std::size_t k = 0; k < line.size(); ++k) {
            const std::size_t at = k % 2 == 0 ? middle + k / 2 : middle - (k + 1) / 2;
            if (at < line.size() && TryAt(line[at], level))
                return;
        }
    }

private:
    bool TryAt(const contour_lines::Point& point, double level)
    {
        constexpr double kRim = 0.05;
        constexpr double kApartX = 0.12;
        constexpr double kApartY = 0.06;
        const QPointF place((point.x - m_x.lower) / m_x.size(), (point.y - m_y.lower) / m_y.size());
        if (std::min({place.x(), place.y(), 1.0 - place.x(), 1.0 - place.y()}) < kRim)
            return false;
        for (const QPointF& other : m_taken)
            if (std::abs(other.x() - place.x()) < kApartX && std::abs(other.y() - place.y()) < kApartY)
                return false;
        m_taken.push_back(place);
        auto* text = new QCPItemText(&m_plot);
        text->position->setCoords(point.x, point.y);
        text->setText(Heights::HeightText(level));
        text->setFont(Font(0.8));
        text->setColor(kInk);
        text->setBrush(QColor(255, 255, 255, 190));
        text->setPadding(QMargins(2, 0, 2, 0));
        text->setSelectable(false);
        return true;
    }

    QCustomPlot& m_plot;
    QCPRange m_x, m_y;
    std::vector<QPointF> m_taken;
};

/// The region of invalid parameters, filled.
class InvalidRegion : public QCPAbstractItem
{
public:
    /// \param outlines  in numbers of grid points
    InvalidRegion(QCustomPlot& plot, const ContourSurface& surface,
                  const std::vector<contour_lines::Line>& outlines)
        : QCPAbstractItem(&plot)
    {
        const auto scale = [](const QCPRange& span, double at, std::size_t points) {
            return points < 2 ? span.center() + at * span.size()
                              : span.lower + at * span.size() / static_cast<double>(points - 1);
        };
        const QCPRange x = SpanOf(surface.x);
        const QCPRange y = SpanOf(surface.y);
        for (const contour_lines::Line& outline : outlines) {
            QPolygonF& polygon = m_outlines.emplace_back();
            for (const contour_lines::Point& point : outline)
                polygon << QPointF(scale(x, point.x, surface.x.size()), scale(y, point.y, surface.y.size()));
        }
        setSelectable(false);
    }

    double selectTest(const QPointF&, bool, QVariant*) const override { return -1.0; }

protected:
    void draw(QCPPainter* painter) override
    {
        const QCPAxis& x = *parentPlot()->xAxis;
        const QCPAxis& y = *parentPlot()->yAxis;
        QPainterPath path; // odd and even: an island of valid parameters stays open
        for (const QPolygonF& outline : m_outlines) {
            QPolygonF pixels;
            for (const QPointF& point : outline)
                pixels << QPointF(x.coordToPixel(point.x()), y.coordToPixel(point.y()));
            path.addPolygon(pixels);
        }
        painter->setPen(Pen(kLimits, 1.0));
        painter->setBrush(kInvalid);
        painter->drawPath(path);
    }

private:
    std::vector<QPolygonF> m_outlines; ///< in the numbers of the axes
};

void AddCurve(QCustomPlot& plot, const std::vector<contour_lines::Line>& lines, const QPen& pen)
{
    auto* curve = new QCPCurve(plot.xAxis, plot.yAxis);
    curve->setPen(pen);
    QVector<double> x, y;
    for (const contour_lines::Line& line : lines) {
        for (const contour_lines::Point& point : line) {
            x += point.x;
            y += point.y;
        }
        x += kNaN; // lifts the pen between two lines
        y += kNaN;
    }
    curve->setData(x, y);
}

constexpr double kAnyCorner = 1e-9; ///< the region of invalid parameters covers what lies behind the edge

} // namespace

std::optional<double> ObjectiveAt(const ContourSurface& surface, double x, double y)
{
    return Nearby(surface, x, y, 0.5);
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
    Prepare(m_plot);
    Entitle(m_plot, QString::fromStdString(surface.title), QString::fromStdString(surface.xName),
            QString::fromStdString(surface.yName));
    SetTicks(*m_plot.xAxis, NumberKind::Real);
    SetTicks(*m_plot.yAxis, NumberKind::Real);
    m_plot.xAxis->setRange(SpanOf(surface.x));
    m_plot.yAxis->setRange(SpanOf(surface.y));
    for (QCPAxis* axis : {m_plot.xAxis, m_plot.yAxis})
        axis->grid()->setVisible(false); // the contours are lines enough
    m_path = nullptr;
    AddColours(surface);
    AddContours(surface);
    FitLegend(m_plot, m_plot.width());
}

void ContourPainter::AddColours(const ContourSurface& surface)
{
    QCPLayoutGrid& rows = *m_plot.plotLayout();
    if (rows.columnCount() > 1 && rows.hasElement(2, 1)) {
        rows.remove(rows.element(2, 1));
        rows.simplify();
    }
    const Heights heights(surface);
    const QCPRange x = SpanOf(surface.x);
    const QCPRange y = SpanOf(surface.y);
    auto* map = new QCPColorMap(m_plot.xAxis, m_plot.yAxis);
    map->setLayer(QStringLiteral("background"));
    map->data()->setSize(kPixelsAcross, kPixelsAcross);
    map->data()->setRange(x, y);
    for (int i = 0; i < kPixelsAcross; ++i)
        for (int j = 0; j < kPixelsAcross; ++j)
            map->data()->setCell(i, j, heights.Shade(Nearby(surface, At(x, i), At(y, j), kAnyCorner)));
    map->setInterpolate(false);
    auto* scale = new QCPColorScale(&m_plot);
    StyleAxis(*scale->axis());
    scale->axis()->setLabel(QString::fromStdString(surface.zName));
    scale->axis()->setTicker(heights.Ticks());
    scale->axis()->setSubTicks(false);
    scale->setBarWidth(static_cast<int>(Pixels(11.0)));
    rows.addElement(2, 1, scale);
    map->setColorScale(scale);
    map->setGradient(Gradient());
    map->setDataRange({0.0, 1.0});
    auto* margins = new QCPMarginGroup(&m_plot);
    m_plot.axisRect()->setMarginGroup(QCP::msBottom | QCP::msTop, margins);
    scale->setMarginGroup(QCP::msBottom | QCP::msTop, margins);
}

/// Under the labels, over the contour lines, which end in the last whole cells.
void ContourPainter::AddContours(const ContourSurface& surface) const
{
    std::vector<std::vector<double>> z = surface.z;
    for (std::size_t i = 0; i < z.size(); ++i)
        for (std::size_t j = 0; j < z[i].size(); ++j)
            if (!Valid(surface, i, j))
                z[i][j] = kNaN; // no line climbs the plateau: its height means nothing
    constexpr std::size_t kLabelEvery = 3;
    const Heights heights(surface);
    std::vector<std::pair<contour_lines::Line, double>> labelled;
    for (std::size_t k = 0; k < heights.Levels().size(); ++k) {
        const auto lines = contour_lines::Trace(surface.x, surface.y, z, heights.Levels()[k]);
        AddCurve(m_plot, lines, Pen(QColor(0x22, 0x22, 0x22, 150), 0.6));
        const auto longest = std::ranges::max_element(lines, {}, &contour_lines::Line::size);
        if (k % kLabelEvery == kLabelEvery - 1 && longest != lines.end())
            labelled.emplace_back(*longest, heights.Levels()[k]);
    }
    AddInvalid(surface);
    LevelLabels labels(m_plot, SpanOf(surface.x), SpanOf(surface.y));
    for (const auto& [line, level] : labelled)
        labels.Put(line, level);
}

/// The region of invalid parameters and its name.
void ContourPainter::AddInvalid(const ContourSurface& surface) const
{
    bool any = false;
    std::vector<std::vector<bool>> valid(surface.z.size());
    for (std::size_t i = 0; i < surface.z.size(); ++i)
        for (std::size_t j = 0; j < surface.z[i].size(); ++j) {
            valid[i].push_back(Valid(surface, i, j));
            any = any || !valid[i][j];
        }
    if (!any)
        return;
    new InvalidRegion(m_plot, surface, contour_lines::SmoothOutlines(valid)); // the plot owns it
    auto* patch = new SeriesGraph(m_plot.xAxis, m_plot.yAxis); // only its symbol in the legend shows
    patch->setLineStyle(QCPGraph::lsNone);
    patch->setScatterStyle({QCPScatterStyle::ssSquare, Pen(kLimits, 0.5), QBrush(kInvalid), Pixels(7.0)});
    AddToLegend(*patch, QStringLiteral("Invalid parameters"));
}

/// Thin and a little transparent, so that the optimum shows through the steps that gather there.
void ContourPainter::BeginPath(int start)
{
    constexpr int kAlpha = 170;
    QColor tone = ToneOf(start);
    tone.setAlpha(kAlpha);
    m_path = new QCPCurve(m_plot.xAxis, m_plot.yAxis);
    m_path->setPen(Pen(tone, 0.8));
    m_path->setLayer(PathLayer());
    m_pathPoints = 0;
    m_last.reset();
    m_pen.reset();
}

/// To where the pen goes next; across a leap it is lifted.
void ContourPainter::LineTo(const QPointF& place)
{
    constexpr double kFar = 0.3; // of an axis
    const bool leap = m_pen && (std::abs(place.x() - m_pen->x()) > kFar * m_plot.xAxis->range().size() ||
                                std::abs(place.y() - m_pen->y()) > kFar * m_plot.yAxis->range().size());
    if (leap)
        m_path->addData(m_pathPoints++, kNaN, kNaN);
    m_path->addData(m_pathPoints++, place.x(), place.y());
    m_pen = place;
}

bool ContourPainter::Step(const ContourStep& step)
{
    if (!std::isfinite(step.fromX + step.fromY + step.toX + step.toY))
        return false;
    if (!m_path) { // a path without a mark at its start
        BeginPath(1);
        LineTo({step.fromX, step.fromY});
    } else if (m_last && (m_last->toX != step.fromX || m_last->toY != step.fromY)) {
        m_path->addData(m_pathPoints++, kNaN, kNaN); // it goes on elsewhere
        m_pen.reset();
        LineTo({step.fromX, step.fromY});
    }
    LineTo({step.toX, step.toY});
    m_last = step;
    return false;
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
    if (mark.kind != ContourMark::Final) { // the first step of a path comes from where the one before ended
        BeginPath(static_cast<int>(mark.kind));
        LineTo({mark.x, mark.y});
    }
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
    auto mark = marks.begin();
    for (std::size_t steps = 0; steps <= path.size(); ++steps) {
        for (; mark != marks.end() && mark->after <= steps; ++mark)
            painter.Mark(*mark);
        if (steps < path.size())
            painter.Step(path[steps]);
    }
    for (; mark != marks.end(); ++mark)
        painter.Mark(*mark);
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
