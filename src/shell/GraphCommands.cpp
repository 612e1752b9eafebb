// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/GraphCommands.h"

#include "base/Paths.h"
#include "base/Text.h"
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

Overview GraphCommands::Now() const
{
    const clsVeltData& data = m_project.Data();
    const clsMethManager& fits = m_project.Fits();
    Overview page;
    page.dataSet = data.DSFName().empty() ? std::string("Untitled") : GetFileName(data.DSFName());
    if (const std::string description = Trim(data.DSDesc()); !description.empty())
        page.dataSet += " - " + description;
    if (fits.MethDefined())
        page.report = ParameterReport::Of(fits);
    page.graphs = m_graphs.Graphs();
    return page;
}

void GraphCommands::ShowOverview()
{
    m_overview.Show(Now());
}

void GraphCommands::Follow()
{
    CloseWithoutGraphs();
    if (m_overview.isVisible())
        m_overview.Follow(Now());
}

void GraphCommands::CloseWithoutGraphs()
{
    if (m_overview.isVisible() && m_graphs.Empty())
        m_overview.hide();
}
