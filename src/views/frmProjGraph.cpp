// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmProjGraph.h"

#include "graphs/ProjGraph.h"
#include "toolkit/Words.h"
#include "views/NumberTicker.h"
#include "views/PlotStyle.h"
#include "views/ProjectionPainter.h"

#include <QAction>
#include <QLabel>
#include <QVBoxLayout>

#include <cmath>
#include <utility>

namespace
{
constexpr int kIncludeFit = 1005;
constexpr int kIncludeFitTip = 1954;
constexpr double kHandPoints = 8.0; // a hand's precision with a mouse, in points
} // namespace

frmProjGraph::frmProjGraph(std::shared_ptr<ProjGraph> graph, QWidget* parent)
    : PlotWindow(QStringLiteral("gphProj"), parent), m_graph(std::move(graph))
{
    setObjectName(QStringLiteral("frmProjGraph"));
    AddButtons();
    // A projection is known by the title that the user gave it; a model's graph by its own. Deliberate.
    connect(this, &PlotWindow::Edited, this, [this] { m_graph->Title(m_graph->UserTitle()); });
    ShowRemark();
    frmProjGraph::Redraw();
}

void frmProjGraph::AddButtons()
{
    // An exclamation, where a model's graph has an information. Deliberate.
    AddCopyData([this] { return m_graph->CopiedText(); }, QMessageBox::Warning);
    QAction* fit = AddButton("WithFit", Words(kIncludeFit), kIncludeFitTip);
    fit->setCheckable(true);
    fit->setChecked(m_graph->WithFit());
    fit->setEnabled(m_graph->HasFit());
    connect(fit, &QAction::toggled, this, &frmProjGraph::WithFit);
}

void frmProjGraph::ShowRemark()
{
    if (m_graph->Remark().empty())
        return;
    auto* remark = new QLabel(QString::fromStdString(m_graph->Remark()));
    remark->setObjectName(QStringLiteral("lblRemark"));
    remark->setTextFormat(Qt::PlainText);
    remark->setWordWrap(true);
    remark->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const int em = fontMetrics().height();
    remark->setContentsMargins(em / 2, em / 4, em / 2, em / 4);
    auto* column = qobject_cast<QVBoxLayout*>(layout());
    column->insertWidget(column->indexOf(&Plot()) + 1, remark);
}

void frmProjGraph::Redraw()
{
    setWindowTitle(QString::fromStdString(m_graph->UserTitle()));
    PaintProjection(Plot(), *m_graph);
    RememberRanges();
    Plot().replot(QCustomPlot::rpQueuedReplot);
}

void frmProjGraph::WithFit(bool on)
{
    m_graph->WithFit(on);
    Redraw();
}

GraphTitles& frmProjGraph::Titles()
{
    return *m_graph;
}

QString frmProjGraph::ValueAt(const QPointF& position) const
{
    double nearest = plot_style::Pixels(kHandPoints);
    QString text;
    for (int line = 1; line <= m_graph->NumLines(); ++line)
        for (int i = 1; i <= m_graph->NumPoints(); ++i) {
            if (!m_graph->Drawn(line, i))
                continue;
            const double time = static_cast<double>(m_graph->XData(i));
            const double value = static_cast<double>(m_graph->ProjData(line, i));
            const double distance = std::hypot(Plot().xAxis->coordToPixel(time) - position.x(),
                                               Plot().yAxis->coordToPixel(value) - position.y());
            if (distance >= nearest)
                continue;
            nearest = distance;
            text = QStringLiteral("%1:  %2 %3,  %4 %5")
                       .arg(QString::fromStdString(m_graph->LegendText(line)),
                            QString::fromStdString(m_graph->XTitle()), NumberAsText(time),
                            QString::fromStdString(m_graph->YTitle()), NumberAsText(value));
            if (m_graph->WithCI())
                text += tr(",  limits %1 to %2")
                            .arg(NumberAsText(static_cast<double>(m_graph->ErrorMinus(i))),
                                 NumberAsText(static_cast<double>(m_graph->ErrorPlus(i))));
        }
    return text;
}
