// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class GraphTitles;
class ModelGraph;
class PlotWindow;
class ProjGraph;
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
    };

    /// `main`: the window the others cascade from; it must outlive this object.
    explicit GraphWindows(QWidget& main);
    void Listen(Hands hands) { m_hands = std::move(hands); }
    ~GraphWindows();
    GraphWindows(const GraphWindows&) = delete;
    GraphWindows& operator=(const GraphWindows&) = delete;

    /// Shows a window for `graph`; one of the same title goes.
    void Add(std::shared_ptr<ModelGraph> graph);
    void Add(std::shared_ptr<ProjGraph> graph);

    /// Closes all windows and surfaces, or the histograms alone.
    void Clear(bool histogramsOnly);

    std::unique_ptr<VELT_ContourPlot> NewContourPlot();

    /// Shows the window at `position` (from 0), also after its close box has hidden it.
    void BringForward(std::size_t position);

    /// Takes the point into the fit or out of it in every graph that has it. Projections are closed: they are
    /// of the fit that goes with it.
    void TogglePoint(int point);
    /// Lights the point up in all graphs, or puts it out where it is lit up in the graph at `source`.
    void HighlightPoint(const frmModelGraph& source, int set, int point);
    void StopHighlight();

    /// Brings the histograms that are shown above the other windows; the focus stays where it is.
    void RaiseHistograms();

    bool Empty() const { return m_entries.empty(); }
    /// The titles as the user may have edited them, in order.
    std::vector<std::string> UserTitles() const;
    PlotWindow* WindowAt(std::size_t position) const { return m_entries.at(position).window.get(); }
    /// The same where it shows a ModelGraph, else null.
    frmModelGraph* At(std::size_t position) const { return m_entries.at(position).model; }

private:
    struct Entry {
        std::unique_ptr<PlotWindow> window;
        std::shared_ptr<const GraphTitles> titles;
        frmModelGraph* model = nullptr; ///< the window, where it shows a ModelGraph
    };
    void Put(Entry entry);
    std::vector<frmModelGraph*> Models() const;
    void Place(QWidget& window);

    QWidget& m_main;
    Hands m_hands;
    std::vector<Entry> m_entries;
    std::vector<QPointer<frmGraph>> m_surfaces; ///< a surface deletes itself when it is closed
    int m_placed = 0;
};
