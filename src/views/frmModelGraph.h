// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/PlotWindow.h"

#include <memory>

class ModelGraph;

/// The window of one graph. Its close box hides it; whoever keeps the list of windows deletes it.
class frmModelGraph : public PlotWindow
{
    Q_OBJECT

public:
    explicit frmModelGraph(std::shared_ptr<ModelGraph> graph, QWidget* parent = nullptr);

    const ModelGraph& Graph() const { return *m_graph; }

public slots:
    /// Draws the graph anew, after it has changed. The zoom starts afresh.
    void Redraw();
    /// Puts the numbers on the clipboard, for a spreadsheet.
    void CopyData();

protected:
    QString ValueAt(const QPointF& position) const override;

private:
    QString ClassAt(double x) const;
    QString NearestPoint(const QPointF& position) const;

    std::shared_ptr<ModelGraph> m_graph;
};
