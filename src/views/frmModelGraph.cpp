// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmModelGraph.h"

#include "graphs/ModelGraph.h"
#include "views/GraphPainter.h"
#include "views/NumberTicker.h"
#include "views/PlotStyle.h"

#include <QApplication>
#include <QKeyEvent>

#include <cmath>
#include <utility>

namespace
{
constexpr double kHandPoints = 6.0; // a hand's precision with a mouse, in points
}

frmModelGraph::frmModelGraph(std::shared_ptr<ModelGraph> graph, QWidget* parent)
    : PlotWindow(QStringLiteral("mgphPlot"), parent), m_graph(std::move(graph))
{
    setObjectName(QStringLiteral("frmModelGraph"));
    AddCopyData([this] { return m_graph->CopiedText(); }, QMessageBox::Information);
    if (m_graph->TakesClicks())
        ListenToClicks();
    frmModelGraph::Redraw();
}

void frmModelGraph::ListenToClicks()
{
    Plot().setToolTip(
        tr("Click on a point: takes the period into the fit or out of it.\n"
           "Shift+click or middle button: highlights the period in all graphs and in the table.\n"
           "Click beside the points: ends the highlight.\n"
           "Keys: arrows move the highlight, Space toggles its period, Esc ends it."));
    connect(&Plot(), &QCustomPlot::mousePress, this, [this](const QMouseEvent* event) {
        m_press = event->position();
        m_clicks = true;
    });
    connect(&Plot(), &QCustomPlot::mouseDoubleClick, this, [this] { m_clicks = false; });
    connect(&Plot(), &QCustomPlot::mouseRelease, this,
            [this](const QMouseEvent* event) { OnRelease(*event); });
}

void frmModelGraph::OnRelease(const QMouseEvent& event)
{
    const QPointF moved = event.position() - m_press;
    const bool dragged = std::hypot(moved.x(), moved.y()) >= QApplication::startDragDistance();
    const bool middle = event.button() == Qt::MiddleButton;
    if (!std::exchange(m_clicks, false) || dragged || (event.button() != Qt::LeftButton && !middle))
        return;
    const int point = PointAt(event.position());
    if (point == 0)
        emit StopHighlight();
    else if (middle || (event.modifiers() & Qt::ShiftModifier))
        emit UserInterrogate(m_graph->SetOf(point), point);
    else
        emit UserToggle(point);
}

/// The drawn point nearest to `position` that a hand with a mouse can mean; 0 when there is none.
int frmModelGraph::PointAt(const QPointF& position) const
{
    double nearest = plot_style::Pixels(kHandPoints);
    int found = 0;
    for (int point = 1; point <= m_graph->NumPoints(); ++point) {
        const int set = m_graph->SetOf(point);
        if (set == 0)
            continue;
        const auto index = static_cast<std::size_t>(point - 1);
        const double value = (set == ModelGraph::kIncluded ? m_graph->YData() : m_graph->YData2())[index];
        const QPointF at(Plot().xAxis->coordToPixel(m_graph->XData()[index]),
                         Plot().yAxis->coordToPixel(value));
        const double distance = std::hypot(at.x() - position.x(), at.y() - position.y());
        if (distance < nearest) {
            nearest = distance;
            found = point;
        }
    }
    return found;
}

/// To the next drawn point in the order of the periods; the first or the last one when none is lit up.
void frmModelGraph::MoveHighlight(int step)
{
    const auto& lit = m_graph->Highlighted();
    const int most = m_graph->NumPoints();
    for (int point = lit        ? lit->point + step
                     : step > 0 ? 1
                                : most;
         point >= 1 && point <= most; point += step) {
        if (const int set = m_graph->SetOf(point); set != 0) {
            emit UserInterrogate(set, point);
            return;
        }
    }
}

void frmModelGraph::keyPressEvent(QKeyEvent* event)
{
    const auto& lit = m_graph->Highlighted();
    const bool ours = m_graph->TakesClicks() && event->modifiers() == Qt::NoModifier;
    if (ours && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right))
        MoveHighlight(event->key() == Qt::Key_Left ? -1 : 1);
    else if (ours && event->key() == Qt::Key_Space && lit)
        emit UserToggle(lit->point);
    else if (ours && event->key() == Qt::Key_Escape && lit)
        emit StopHighlight();
    else
        PlotWindow::keyPressEvent(event);
}

void frmModelGraph::Refresh()
{
    const QCPRange x = Plot().xAxis->range();
    const QCPRange y = Plot().yAxis->range();
    PaintGraph(Plot(), *m_graph);
    RememberRanges();
    Plot().xAxis->setRange(x);
    Plot().yAxis->setRange(y);
    Plot().replot(QCustomPlot::rpQueuedReplot);
}

GraphTitles& frmModelGraph::Titles()
{
    return *m_graph;
}

void frmModelGraph::Redraw()
{
    setWindowTitle(QString::fromStdString(m_graph->UserTitle()));
    PaintGraph(Plot(), *m_graph);
    RememberRanges();
    Plot().replot(QCustomPlot::rpQueuedReplot);
}

QString frmModelGraph::ValueAt(const QPointF& position) const
{
    const double x = Plot().xAxis->pixelToCoord(position.x());
    const double y = Plot().yAxis->pixelToCoord(position.y());
    if (m_graph->Type() == GraphType::Histogram)
        return ClassAt(x);
    if (QString point = NearestPoint(position); !point.isEmpty())
        return point;
    return QStringLiteral("%1 %2,  %3 %4")
        .arg(QString::fromStdString(m_graph->XTitle()), NumberAsText(x),
             QString::fromStdString(m_graph->YTitle()), NumberAsText(y));
}

QString frmModelGraph::ClassAt(double x) const
{
    const auto* bars = Plot().plottableCount() > 0 ? qobject_cast<QCPBars*>(Plot().plottable(0)) : nullptr;
    if (bars == nullptr)
        return {};
    for (const QCPBarsData& bar : *bars->data())
        if (std::abs(x - bar.key) <= bars->width() / 2.0)
            return QStringLiteral("%1 %2 to %3:  %4")
                .arg(QString::fromStdString(m_graph->XTitle()), NumberAsText(bar.key - bars->width() / 2.0),
                     NumberAsText(bar.key + bars->width() / 2.0), NumberAsText(bar.value));
    return {};
}

QString frmModelGraph::NearestPoint(const QPointF& position) const
{
    double nearest = plot_style::Pixels(kHandPoints);
    QString text;
    for (int g = 0; g < Plot().graphCount(); ++g) {
        const QCPGraph& series = *Plot().graph(g);
        if (series.scatterStyle().isNone())
            continue;
        for (const QCPGraphData& point : *series.data()) {
            const QPointF at(Plot().xAxis->coordToPixel(point.key), Plot().yAxis->coordToPixel(point.value));
            const double distance = std::hypot(at.x() - position.x(), at.y() - position.y());
            if (distance >= nearest)
                continue;
            nearest = distance;
            text = QStringLiteral("%1%2 %3,  %4 %5")
                       .arg(series.name().isEmpty() ? QString() : series.name() + QStringLiteral(":  "),
                            QString::fromStdString(m_graph->XTitle()), NumberAsText(point.key),
                            QString::fromStdString(m_graph->YTitle()), NumberAsText(point.value));
        }
    }
    return text;
}
