// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ToggleCommands.h"

#include "base/StringTable.h"
#include "data/TableSheet.h"
#include "shell/GraphWindows.h"
#include "views/DataGridView.h"
#include "views/GridWidget.h"

#include <algorithm>

namespace
{
constexpr int kTogglingClearsFit = 1902;
constexpr int kCannotToggle = 1903;
} // namespace

bool ToggleCommands::MayDropFit() const
{
    return !m_project.Fits().MethDefined() ||
           TheRun().reporter.Show({.text = LoadResString(kTogglingClearsFit),
                                   .icon = Icon::Question,
                                   .buttons = Buttons::YesNo}) == Answer::Yes;
}

/// The graphs of the former fit stay open, deliberately; its columns do not, they are no longer anybody's.
void ToggleCommands::ToggleInGrid(int row)
{
    if (!MayDropFit())
        return;
    if (m_project.Fits().MethDefined()) {
        m_project.Fits().Create(m_project.Data());
        m_sheet.Arrange();
        m_grid.Refresh();
        TheRun().window.EnableControls();
    }
    Flip(row);
}

/// Unlike a toggle in the table it resets the manager, and the table is set up anew. Deliberate.
void ToggleCommands::ToggleInGraph(int row)
{
    if (!MayDropFit())
        return;
    if (m_project.Fits().MethDefined()) {
        m_project.Fits().Reset();
        TheRun().window.EnableControls();
        TheRun().window.SetUpDataGrid();
    }
    if (m_grid.Model().BoxEnabled(row))
        Flip(row);
    else
        TheRun().reporter.Show({.text = LoadResString(kCannotToggle), .icon = Icon::Information});
}

void ToggleCommands::Flip(int row)
{
    m_project.Data().Toggle(row);
    m_graphs.TogglePoint(row);
    const int col = std::max(m_grid.Grid().Selected().col, TableSheet::FirstDataCol);
    m_grid.Grid().Select(GridSelection::At(row, col));
    m_grid.Refresh();
    TheRun().window.EnableControls(); // a projection has gone from the list of graphs
}
