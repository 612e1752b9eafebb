// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/PlotWindow.h"

#include <memory>

class ProjGraph;

/// The window of one projection. It needs no model: the graph has numbers of its own. Its close box hides it;
/// whoever keeps the list of windows deletes it. What there is to say about the numbers stands below the
/// plot.
class frmProjGraph : public PlotWindow
{
    Q_OBJECT

public:
    explicit frmProjGraph(std::shared_ptr<ProjGraph> graph, QWidget* parent = nullptr);

    const ProjGraph& Graph() const { return *m_graph; }
    void Redraw() override;

public slots:
    /// Shows or hides the fitted line; its numbers stay. The zoom starts afresh.
    void WithFit(bool on);

protected:
    QString ValueAt(const QPointF& position) const override;
    GraphTitles& Titles() override;

private:
    void AddButtons();
    void ShowRemark();

    std::shared_ptr<ProjGraph> m_graph;
};
