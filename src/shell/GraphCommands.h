// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/OpenProject.h"
#include "views/frmOverview.h"

class GraphWindows;

/// The commands of the Graph menu behind the list of windows.
class GraphCommands
{
public:
    /// Both must outlive this object.
    GraphCommands(OpenProject& project, GraphWindows& graphs) : m_project(project), m_graphs(graphs) {}

    void Tile();
    void Cascade();
    void CloseAll();
    void ShowOverview();

    /// Brings the overview, while it shows, into step with the graphs and the fit; without graphs it closes.
    /// To be called while no command runs, when a fit is whole.
    void Follow();
    /// What `Follow` does when the graphs have gone, also while a command runs.
    void CloseWithoutGraphs();

private:
    Overview Now() const;

    OpenProject& m_project;
    GraphWindows& m_graphs;
    frmOverview m_overview;
};
