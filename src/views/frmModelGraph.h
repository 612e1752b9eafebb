// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/PlotWindow.h"

#include <memory>

class ModelGraph;

/// The window of one graph. Its close box hides it; whoever keeps the list of windows deletes it.
///
/// In a graph with toggling a click on a point asks to take its period into the fit or out of it; with Shift,
/// or the middle button, it asks to light the period up; beside all points it asks to put the light out. The
/// arrow keys move the light, space toggles the point under it, Escape puts it out.
class frmModelGraph : public PlotWindow
{
    Q_OBJECT

public:
    explicit frmModelGraph(std::shared_ptr<ModelGraph> graph, QWidget* parent = nullptr);

    ModelGraph& Graph() { return *m_graph; }
    const ModelGraph& Graph() const { return *m_graph; }
    /// Draws the graph anew where its points have changed; the zoom stays.
    void Refresh();
    void Redraw() override;

signals:
    // Points count from 1, sets are those of ModelGraph.
    void UserToggle(int point);
    void UserInterrogate(int set, int point);
    /// A click beside the points, or Escape, puts out what is lit up, which nothing else would. Deliberate.
    void StopHighlight();

protected:
    QString ValueAt(const QPointF& position) const override;
    GraphTitles& Titles() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString ClassAt(double x) const;
    QString NearestPoint(const QPointF& position) const;
    void ListenToClicks();
    void OnRelease(const QMouseEvent& event);
    int PointAt(const QPointF& position) const;
    void MoveHighlight(int step);

    QPointF m_press;       ///< where the button went down
    bool m_clicks = false; ///< it has not come up yet, and no double click came in between
    std::shared_ptr<ModelGraph> m_graph;
};
