// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/UnitCommands.h"

#include "base/FileType.h"
#include "dialogs/frmColumnUnits.h"
#include "shell/GraphWindows.h"

void UnitCommands::Ask()
{
    const clsVeltData& data = m_project.Data();
    const modVeltGlobals::Globals& texts = m_project.TheRun().globals;
    std::vector<ColumnUnit> rows{
        {.column = AxisMeasure::kTime, .title = texts.TimeTitle, .unit = m_units.Typed(AxisMeasure::kTime)}};
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        if (data.ColPresent(column))
            rows.push_back(
                {.column = column, .title = texts.ColumnDisplayNames(column), .unit = m_units.Typed(column)});
    if (!frmColumnUnits::Ask(m_project.TheRun().user, rows, &m_over))
        return;
    for (const ColumnUnit& row : rows)
        m_units.Typed(row.column, row.unit);
    if (IsProjectName(data.DSFName())) // else they go with the first save
        m_units.Store(data.DSFName());
    m_graphs.ForEach([this](GraphTitles& graph) { m_units.Apply(graph); });
}
