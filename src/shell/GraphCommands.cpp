// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/GraphCommands.h"

#include "shell/GraphWindows.h"

void GraphCommands::Tile()
{
    Run& run = m_project.TheRun();
    run.window.StatusText(m_graphs.Tile() ? run.globals.Ready
                                          : "The graphs stand as a cascade: the screen has no room for them "
                                            "side by side. Make the main window smaller, or close some.");
}

void GraphCommands::Cascade()
{
    m_graphs.Cascade();
    m_project.TheRun().window.StatusText(m_project.TheRun().globals.Ready);
}

void GraphCommands::CloseAll()
{
    m_project.TheRun().window.ClearGraphs(false);
    m_project.TheRun().window.EnableControls();
}
