// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/ColumnUnits.h"
#include "shell/OpenProject.h"

class GraphWindows;
class QWidget;

/// The units of the columns: asked for, kept, and put on the axes.
class UnitCommands
{
public:
    /// `over`: the window the form stands over. All must outlive this object.
    UnitCommands(OpenProject& project, GraphWindows& graphs, QWidget& over)
        : m_project(project), m_graphs(graphs), m_over(over)
    {
    }

    /// Asks for the units of the columns that the data set has, and shows them on all open graphs.
    void Ask();

    const ColumnUnits& Units() const { return m_units; }
    void Forget() { m_units.Clear(); }
    void Opened(const std::string& path) { m_units.Load(path); }
    void Saved(const std::string& path) { m_units.Store(path); }

private:
    OpenProject& m_project;
    GraphWindows& m_graphs;
    QWidget& m_over;
    ColumnUnits m_units;
};
