// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/OverviewPage.h"

#include <QPoint>
#include <QPointer>
#include <QSize>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class GraphTitles;
class PlotWindow;
class QWidget;
class VELT_ContourPlot;
class frmGraph;
class frmModelGraph;

/// The open graph windows in the order they came, no two of one title, and the likelihood surfaces, which
/// have no place in the list. It decides where on the screen a new one appears.
class GraphWindows
{
public:
    /// What the user does in one graph and the rest of the program has to follow; points count from 1.
    struct Hands {
        std::function<void(int point)> toggle;
        std::function<void(int point)> highlight; ///< 0: no point any more
        std::function<void()> edited;             ///< a title or the look of a graph
    };

    /// `main`: the window the others cascade from. Neither it nor `report`, while it shows, is covered by
    /// windows that stand side by side. Both must outlive this object.
    GraphWindows(QWidget& main, const QWidget& report);
    void Listen(Hands hands) { m_hands = std::move(hands); }
    ~GraphWindows();
    GraphWindows(const GraphWindows&) = delete;
    GraphWindows& operator=(const GraphWindows&) = delete;

    /// Shows a window for `graph`, in the cascade; one of the same title goes.
    void Add(std::shared_ptr<ModelGraph> graph);
    void Add(std::shared_ptr<ProjGraph> graph);

    /// Closes all windows and surfaces, or the histograms alone.
    void Clear(bool histogramsOnly);

    std::unique_ptr<VELT_ContourPlot> NewContourPlot();

    /// Whether windows have come since they were last put side by side.
    bool AnyNew() const { return !m_new.empty(); }
    /// Puts the windows that have come since the last time side by side, where there is room for all of them
    /// beside the windows that were there before; otherwise they stay in the cascade. One that the user has
    /// moved stays where it is.
    void SettleNew();

    /// Puts all windows that show side by side. \return false when there is no room for them: they stand as
    /// a cascade then
    bool Tile();
    void Cascade();

    /// Shows the window at `position` (from 0), also after its close box has hidden it.
    void BringForward(std::size_t position);

    /// Takes the point into the fit or out of it in every graph that has it. Projections are closed: they are
    /// of the fit that goes with it.
    void TogglePoint(int point);
    /// Lights the point up in all graphs, or puts it out where it is lit up in the graph at `source`.
    void HighlightPoint(const frmModelGraph& source, int set, int point);
    void StopHighlight();

    /// Calls `change` with the words of each graph and draws it anew.
    void ForEach(const std::function<void(GraphTitles&)>& change);

    /// Brings the histograms that are shown above the other windows; the focus stays where it is.
    void RaiseHistograms();

    bool Empty() const { return m_entries.empty(); }
    /// The titles as the user may have edited them, in order.
    std::vector<std::string> UserTitles() const;
    /// The graphs themselves, in order.
    std::vector<AnyGraph> Graphs() const;
    PlotWindow* WindowAt(std::size_t position) const { return m_entries.at(position).window.get(); }
    /// The same where it shows a ModelGraph, else null.
    frmModelGraph* At(std::size_t position) const { return m_entries.at(position).model; }

private:
    struct Entry {
        std::unique_ptr<PlotWindow> window;
        AnyGraph graph;
        frmModelGraph* model = nullptr; ///< the window, where it shows a ModelGraph
        GraphTitles* titles = nullptr;  ///< those of the graph
    };
    /// A window that has just come and the place in the cascade that it was given.
    struct NewWindow {
        QPointer<QWidget> window;
        QPoint place;
    };
    void Put(Entry entry);
    std::vector<frmModelGraph*> Models() const;
    void PlaceNew(QWidget& window);
    void Place(QWidget& window);
    std::vector<QWidget*> Showing() const;
    bool SideBySide(const std::vector<QWidget*>& windows);

    QWidget& m_main;
    const QWidget& m_report;
    Hands m_hands;
    std::vector<Entry> m_entries;
    std::vector<QPointer<frmGraph>> m_surfaces; ///< a surface deletes itself when it is closed
    std::vector<NewWindow> m_new;
    QSize m_usual; ///< of a window as it comes, without its frame
    int m_placed = 0;
};
