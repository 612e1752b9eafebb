// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/GraphTitles.h"
#include "graphs/VELT_ContourPlot.h"
#include "views/ContourPainter.h"
#include "views/PlotWindow.h"

#include <QPointer>
#include <QTimer>

#include <functional>

/// The window of one likelihood surface with the path of the minimiser. It stays until it is closed, then it
/// deletes itself.
class frmGraph : public PlotWindow
{
    Q_OBJECT

public:
    explicit frmGraph(QWidget* parent = nullptr);

    /// False from the moment the user closes the window.
    bool IsOpen() const { return m_open; }
    void Surface(const ContourSurface& surface);
    void Mark(const ContourMarkAt& mark);
    void Step(const ContourStep& step);
    void Redraw() override;

protected:
    QString ValueAt(const QPointF& position) const override;
    GraphTitles& Titles() override { return m_titles; }
    bool IsSurface() const override { return true; }
    void closeEvent(QCloseEvent* event) override;

private:
    void AfterPainting();
    void DrawSoon(bool wholePlot);
    void DrawNow();

    ContourPainter m_painter;
    ContourSurface m_surface;
    GraphTitles m_titles;
    QCPRange m_drawnX; ///< as the painter left it
    QCPRange m_drawnY;
    QTimer m_draw; ///< gathers the steps of one moment into one drawing
    bool m_wholePlot = true;
    bool m_open = true;
};

/// What a fit draws on: opens its window when there is a surface to show. The window may be closed in the
/// middle of a fit, and stays for the reader when the fit has finished and this object is gone.
class ContourWindowPlot : public VELT_ContourPlot
{
public:
    using Opened = std::function<void(frmGraph&)>;

    /// \param parent  parent of the window, or null
    /// \param opened  called with each new window before it shows, for its place on the screen; may be empty
    explicit ContourWindowPlot(QWidget* parent = nullptr, Opened opened = {});

    void Show(const ContourSurface& surface) override;
    bool PlotPoint(ContourMark kind, double x, double y) override;
    bool PlotStep(double fromX, double fromY, double toX, double toY) override;

    /// Null before the first Show and after the window has gone.
    frmGraph* Window() const { return m_window; }

private:
    bool IsOpen() const { return m_window != nullptr && m_window->IsOpen(); }

    QPointer<QWidget> m_parent;
    QPointer<frmGraph> m_window;
    Opened m_opened;
};
