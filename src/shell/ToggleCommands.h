// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/OpenProject.h"

class DataGridView;
class GraphWindows;
class TableSheet;

/// The ways in which a period is taken into the fit or out of it. A fit goes with that, after a question.
class ToggleCommands
{
public:
    /// All must outlive this object.
    ToggleCommands(OpenProject& project, GraphWindows& graphs, DataGridView& grid, TableSheet& sheet)
        : m_project(project), m_graphs(graphs), m_grid(grid), m_sheet(sheet)
    {
    }

    /// The box of this row was clicked; it can be, so the row is Included and Edit Mode is off.
    void ToggleInGrid(int row);
    /// The point of this period was clicked in a graph.
    void ToggleInGraph(int row);

private:
    Run& TheRun() const { return m_project.TheRun(); }
    bool MayDropFit() const;
    void Flip(int row);

    OpenProject& m_project;
    GraphWindows& m_graphs;
    DataGridView& m_grid;
    TableSheet& m_sheet;
};
