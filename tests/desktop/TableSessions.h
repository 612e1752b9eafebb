// SPDX-License-Identifier: GPL-3.0-or-later
// The main window with a table in Edit Mode or with an imported one, and the hands at it.
#pragma once

#include "Session.h"

#include <QLineEdit>

constexpr int kA = 2; ///< grid columns of the data
constexpr int kB = 3;

/// A new data set in Edit Mode: four periods of Tot. Catch Nums, Effort and Catch Nums.
struct Editing : Session {
    Editing() : Editing(4, {columns::TotCatchNums, columns::Effort, columns::CatchNums}) {}
    Editing(int rows, const std::vector<int>& present)
    {
        New(rows, present);
        Activate();
    }
    QLineEdit* Box() { return window.findChild<DataGridView*>()->findChild<QLineEdit*>("txtEdit"); }
    QPoint Middle(int row, int col)
    {
        return Grid().visualRect(Grid().model()->index(row - 1, col)).center();
    }
    void Put(int row, int col, const QString& text)
    {
        Go(row, col);
        Type(text);
        Press(Qt::Key_Return);
    }
};

/// Two fits' worth of data: the imported sample in the working state.
struct Working : Session {
    Working()
    {
        Open();
        Activate();
    }
    ModelGraph& GraphAt(std::size_t position) { return window.Graphs().At(position)->Graph(); }
    std::size_t Toggling()
    {
        std::size_t count = 0;
        for (std::size_t i = 0; i < window.Graphs().UserTitles().size(); ++i)
            count += GraphAt(i).TakesClicks() ? 1 : 0;
        return count;
    }
    /// Where a point of a graph stands on its plot.
    QPoint Spot(std::size_t position, int point)
    {
        QCustomPlot& plot = window.Graphs().At(position)->Plot();
        const ModelGraph& graph = GraphAt(position);
        const auto i = static_cast<std::size_t>(point - 1);
        const double value =
            graph.SetOf(point) == ModelGraph::kIncluded ? graph.YData()[i] : graph.YData2()[i];
        return QPointF(plot.xAxis->coordToPixel(graph.XData()[i]), plot.yAxis->coordToPixel(value)).toPoint();
    }
    void ClickPoint(std::size_t position, int point, Qt::KeyboardModifiers keys = Qt::NoModifier,
                    Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(&window.Graphs().At(position)->Plot(), button, keys, Spot(position, point));
    }
};
