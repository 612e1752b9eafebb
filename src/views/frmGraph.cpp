// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmGraph.h"

#include "views/NumberTicker.h"
#include "views/PlotLook.h"
#include "views/PlotStyle.h"

#include <QCloseEvent>

namespace
{
constexpr int kMillisecondsBetweenDrawings = 30;
}

frmGraph::frmGraph(QWidget* parent) : PlotWindow(QStringLiteral("plotContour"), parent), m_painter(Plot())
{
    setObjectName(QStringLiteral("frmGraph"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_draw.setSingleShot(true);
    connect(&m_draw, &QTimer::timeout, this, &frmGraph::DrawNow);
}

void frmGraph::Surface(const ContourSurface& surface)
{
    m_surface = surface;
    m_titles = {};
    m_titles.Title(surface.title);
    m_titles.XTitle(surface.xName);
    m_titles.YTitle(surface.yName);
    m_painter.Surface(surface);
    AfterPainting();
    DrawSoon(true);
}

/// The painter may have given the axes other ranges.
void frmGraph::AfterPainting()
{
    m_drawnX = Plot().xAxis->range();
    m_drawnY = Plot().yAxis->range();
    Redraw();
}

void frmGraph::Redraw()
{
    setWindowTitle(QString::fromStdString(m_titles.UserTitle()));
    Plot().xAxis->setRange(m_drawnX);
    Plot().yAxis->setRange(m_drawnY);
    plot_look::ApplyTitlesAndRanges(Plot(), m_titles);
    plot_style::FitLegend(Plot(), Plot().width());
    RememberRanges();
    DrawSoon(true);
}

void frmGraph::Mark(const ContourMarkAt& mark)
{
    const QCPRange x = Plot().xAxis->range();
    const QCPRange y = Plot().yAxis->range();
    const bool whole = m_painter.Mark(mark);
    if (Plot().xAxis->range() != x || Plot().yAxis->range() != y)
        AfterPainting();
    DrawSoon(whole);
}

void frmGraph::Step(const ContourStep& step)
{
    DrawSoon(m_painter.Step(step));
}

void frmGraph::DrawSoon(bool wholePlot)
{
    m_wholePlot = m_wholePlot || wholePlot;
    if (!m_draw.isActive())
        m_draw.start(kMillisecondsBetweenDrawings);
}

void frmGraph::DrawNow()
{
    if (m_wholePlot)
        Plot().replot(QCustomPlot::rpQueuedReplot);
    else
        Plot().layer(ContourPainter::PathLayer())->replot(); // the surface below stays as it is
    m_wholePlot = false;
}

QString frmGraph::ValueAt(const QPointF& position) const
{
    const double x = Plot().xAxis->pixelToCoord(position.x());
    const double y = Plot().yAxis->pixelToCoord(position.y());
    const QString where = QStringLiteral("%1 %2,  %3 %4")
                              .arg(QString::fromStdString(m_surface.xName), NumberAsText(x),
                                   QString::fromStdString(m_surface.yName), NumberAsText(y));
    if (const auto height = ObjectiveAt(m_surface, x, y))
        return QStringLiteral("%1,  %2 %3")
            .arg(where, QString::fromStdString(m_surface.zName), NumberAsText(*height));
    const bool inside = !m_surface.x.empty() && x >= m_surface.x.front() && x <= m_surface.x.back() &&
                        y >= m_surface.y.front() && y <= m_surface.y.back();
    return inside ? where + tr(",  invalid parameters") : where;
}

void frmGraph::closeEvent(QCloseEvent* event)
{
    m_open = false;
    m_draw.stop();
    PlotWindow::closeEvent(event);
}

ContourWindowPlot::ContourWindowPlot(QWidget* parent, Opened opened)
    : m_parent(parent), m_opened(std::move(opened))
{
}

void ContourWindowPlot::Show(const ContourSurface& surface)
{
    if (!IsOpen()) {
        m_window = new frmGraph(m_parent); // deletes itself when closed, or goes with its parent
        if (m_opened)
            m_opened(*m_window);
    }
    m_window->Surface(surface);
    m_window->show();
}

bool ContourWindowPlot::PlotPoint(ContourMark kind, double x, double y)
{
    if (!IsOpen())
        return false;
    m_window->Mark({.kind = kind, .x = x, .y = y});
    return true;
}

bool ContourWindowPlot::PlotStep(double fromX, double fromY, double toX, double toY)
{
    if (!IsOpen())
        return false;
    m_window->Step({.fromX = fromX, .fromY = fromY, .toX = toX, .toY = toY});
    return true;
}
