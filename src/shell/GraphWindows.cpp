// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/GraphWindows.h"

#include "graphs/ModelGraph.h"
#include "graphs/ProjGraph.h"
#include "shell/TileWindows.h"
#include "views/frmGraph.h"
#include "views/frmModelGraph.h"
#include "views/frmProjGraph.h"

#include <QScreen>
#include <algorithm>

namespace
{
/// With title bar and borders, as far as the system has told of them.
QSize FrameOf(const QWidget& window)
{
    return window.frameGeometry().size() - window.size();
}

bool Shows(const QWidget& window)
{
    return window.isVisible() && !window.isMinimized();
}
} // namespace

GraphWindows::GraphWindows(QWidget& main, const QWidget& report) : m_main(main), m_report(report) {}

GraphWindows::~GraphWindows()
{
    Clear(false);
}

void GraphWindows::Add(std::shared_ptr<ModelGraph> graph)
{
    auto window = std::make_unique<frmModelGraph>(graph);
    frmModelGraph* const model = window.get();
    QObject::connect(model, &frmModelGraph::UserToggle, [this](int point) { m_hands.toggle(point); });
    QObject::connect(model, &frmModelGraph::UserInterrogate,
                     [this, model](int set, int point) { HighlightPoint(*model, set, point); });
    QObject::connect(model, &frmModelGraph::StopHighlight, [this] { StopHighlight(); });
    GraphTitles* const titles = graph.get();
    Put({.window = std::move(window), .graph = std::move(graph), .model = model, .titles = titles});
}

void GraphWindows::Add(std::shared_ptr<ProjGraph> graph)
{
    auto window = std::make_unique<frmProjGraph>(graph);
    GraphTitles* const titles = graph.get();
    Put({.window = std::move(window), .graph = std::move(graph), .titles = titles});
}

void GraphWindows::Put(Entry entry)
{
    std::erase_if(m_entries,
                  [&](const Entry& other) { return other.titles->Title() == entry.titles->Title(); });
    PlotWindow& window = *m_entries.emplace_back(std::move(entry)).window;
    QObject::connect(&window, &PlotWindow::Edited, [this] { m_hands.edited(); });
    PlaceNew(window);
    window.show();
}

std::vector<frmModelGraph*> GraphWindows::Models() const
{
    std::vector<frmModelGraph*> models;
    for (const Entry& entry : m_entries)
        if (entry.model)
            models.push_back(entry.model);
    return models;
}

void GraphWindows::TogglePoint(int point)
{
    std::erase_if(m_entries, [](const Entry& entry) { return !entry.model; });
    for (frmModelGraph* window : Models()) {
        if (point > window->Graph().NumPoints() || !window->Graph().TakesClicks())
            continue;
        window->Graph().TogglePoint(point);
        window->Refresh();
    }
}

/// All graphs follow the one that was clicked, so that none stays lit up alone when it came later.
void GraphWindows::HighlightPoint(const frmModelGraph& source, int set, int point)
{
    const auto& lit = source.Graph().Highlighted();
    if (lit && lit->point == point) {
        StopHighlight();
        return;
    }
    for (frmModelGraph* window : Models()) {
        window->Graph().StopInterrogate();
        if (point <= window->Graph().NumPoints())
            window->Graph().HighlightPoint(set, point);
        window->Refresh();
    }
    m_hands.highlight(point);
}

void GraphWindows::StopHighlight()
{
    for (frmModelGraph* window : Models()) {
        if (!window->Graph().Highlighted())
            continue;
        window->Graph().StopInterrogate();
        window->Refresh();
    }
    m_hands.highlight(0);
}

void GraphWindows::Clear(bool histogramsOnly)
{
    if (histogramsOnly) {
        std::erase_if(m_entries, [](const Entry& entry) {
            return entry.model && entry.model->Graph().Type() == GraphType::Histogram;
        });
        m_placed = static_cast<int>(m_entries.size()); // new ones take the places of the old
        return;
    }
    m_entries.clear();
    if (m_hands.highlight)
        m_hands.highlight(0);
    for (const QPointer<frmGraph>& surface : m_surfaces) {
        if (surface)
            surface->close();
    }
    m_surfaces.clear();
    m_placed = 0;
}

std::unique_ptr<VELT_ContourPlot> GraphWindows::NewContourPlot()
{
    return std::make_unique<ContourWindowPlot>(nullptr, [this](frmGraph& surface) {
        std::erase_if(m_surfaces, [](const QPointer<frmGraph>& old) { return old.isNull(); });
        m_surfaces.emplace_back(&surface);
        PlaceNew(surface);
    });
}

void GraphWindows::BringForward(std::size_t position)
{
    PlotWindow& window = *m_entries.at(position).window;
    if (window.isMinimized())
        window.showNormal();
    window.show();
    window.raise();
    window.activateWindow();
}

std::vector<std::string> GraphWindows::UserTitles() const
{
    std::vector<std::string> titles;
    titles.reserve(m_entries.size());
    for (const Entry& entry : m_entries)
        titles.push_back(entry.titles->UserTitle());
    return titles;
}

std::vector<AnyGraph> GraphWindows::Graphs() const
{
    std::vector<AnyGraph> graphs;
    graphs.reserve(m_entries.size());
    for (const Entry& entry : m_entries)
        graphs.push_back(entry.graph);
    return graphs;
}

void GraphWindows::ForEach(const std::function<void(GraphTitles&)>& change)
{
    for (const Entry& entry : m_entries) {
        change(*entry.titles);
        entry.window->Redraw();
    }
}

void GraphWindows::RaiseHistograms()
{
    for (frmModelGraph* window : Models()) {
        if (window->Graph().Type() == GraphType::Histogram && window->isVisible())
            window->raise();
    }
}

void GraphWindows::PlaceNew(QWidget& window)
{
    m_usual = window.size();
    Place(window);
    m_new.push_back({.window = &window, .place = window.pos()});
}

/// In the order of the list, then the surfaces.
std::vector<QWidget*> GraphWindows::Showing() const
{
    std::vector<QWidget*> windows;
    for (const Entry& entry : m_entries)
        if (Shows(*entry.window))
            windows.push_back(entry.window.get());
    for (const QPointer<frmGraph>& surface : m_surfaces)
        if (surface && Shows(*surface))
            windows.push_back(surface);
    return windows;
}

void GraphWindows::SettleNew()
{
    const int step = m_main.fontMetrics().height() * 2;
    const auto isNew = [&](const QWidget* window) {
        return std::ranges::any_of(m_new, [&](const NewWindow& each) {
            // Some systems put a window a title bar beside the place it asks for.
            return each.window == window && (window->pos() - each.place).manhattanLength() <= step;
        });
    };
    std::vector<QWidget*> windows = Showing();
    std::erase_if(windows, [&](const QWidget* window) { return !isNew(window); });
    m_new.clear();
    if (SideBySide(windows))
        m_placed = std::max(0, m_placed - static_cast<int>(windows.size())); // the cascade did not need them
}

bool GraphWindows::Tile()
{
    m_new.clear();
    if (SideBySide(Showing()))
        return true;
    Cascade();
    return false;
}

void GraphWindows::Cascade()
{
    m_new.clear();
    m_placed = 0;
    for (QWidget* window : Showing()) {
        window->showNormal();
        window->resize(m_usual);
        Place(*window);
        window->raise();
    }
}

/// \return false when there is no room for them, and nothing has changed
bool GraphWindows::SideBySide(const std::vector<QWidget*>& windows)
{
    ScreenSpace space{.screen = m_main.screen()->availableGeometry(), .taken = {}};
    for (const QWidget* window : {static_cast<const QWidget*>(&m_main), &m_report})
        if (Shows(*window))
            space.taken.push_back(window->frameGeometry());
    QSize least(1, 1);
    QSize frame(0, 0);
    for (const QWidget* window : windows) {
        least = least.expandedTo(window->minimumSizeHint());
        frame = frame.expandedTo(FrameOf(*window));
    }
    for (const QWidget* window : Showing())
        if (std::ranges::find(windows, window) == windows.end())
            space.taken.push_back(window->frameGeometry());
    const std::vector<QRect> places = TileWindows(space, static_cast<int>(windows.size()), least + frame,
                                                  m_usual.expandedTo(least) + frame);
    for (std::size_t i = 0; i < places.size(); ++i) {
        windows[i]->showNormal();
        windows[i]->move(places[i].topLeft());
        windows[i]->resize(places[i].size() - frame);
    }
    return !places.empty();
}

/// Each window a title bar lower and further right than the one before, starting anew at the screen's edge.
/// Where the screen is too small for that, the window is moved into it.
void GraphWindows::Place(QWidget& window)
{
    const QRect screen = m_main.screen()->availableGeometry();
    const int step = m_main.fontMetrics().height() * 2;
    const QPoint start = m_main.frameGeometry().topLeft() + QPoint(4 * step, 3 * step);
    const QSize size = window.size() + QSize(step / 2, step); // with borders and title bar
    const int roomDown = (screen.bottom() - start.y() - size.height()) / step;
    const int inOneRun = std::clamp(roomDown, 3, 12);
    const QPoint wanted =
        start + QPoint(step, step) * (m_placed % inOneRun) + QPoint(2 * step, 0) * (m_placed / inOneRun);
    const int mostRight = std::max(screen.left(), screen.right() - size.width());
    const int mostDown = std::max(screen.top(), screen.bottom() - size.height());
    window.move(std::clamp(wanted.x(), screen.left(), mostRight),
                std::clamp(wanted.y(), screen.top(), mostDown));
    ++m_placed;
}
