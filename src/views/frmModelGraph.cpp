// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmModelGraph.h"

#include "graphs/ModelGraph.h"
#include "views/GraphPainter.h"
#include "views/NumberTicker.h"
#include "views/PlotStyle.h"

#include <QClipboard>
#include <QGuiApplication>

#include <cmath>

frmModelGraph::frmModelGraph(std::shared_ptr<ModelGraph> graph, QWidget* parent)
    : PlotWindow(QStringLiteral("mgphPlot"), parent), m_graph(std::move(graph))
{
    setObjectName(QStringLiteral("frmModelGraph"));
    connect(AddCommand("actCopyData", tr("Copy &Data")), &QAction::triggered, this, &frmModelGraph::CopyData);
    Redraw();
}

void frmModelGraph::CopyData()
{
    constexpr int kDataCopied = 1948;
    QGuiApplication::clipboard()->setText(QString::fromStdString(m_graph->CopiedText()));
    Tell(kDataCopied);
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
    double nearest = plot_style::Pixels(6.0); // a hand's precision with a mouse
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
