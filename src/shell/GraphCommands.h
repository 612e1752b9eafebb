// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/OpenProject.h"

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

private:
    OpenProject& m_project;
    GraphWindows& m_graphs;
};
