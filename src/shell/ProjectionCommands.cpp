// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ProjectionCommands.h"

ProjectionCommands::ProjectionCommands(OpenProject& project, QWidget& main)
    : m_project(project), m_editor(project.TheRun().user, m_clipboard, &main)
{
}

void ProjectionCommands::SetUpScenarios()
{
    if (!m_editor.MayLeaveCell())
        return;
    m_editor.SetData(&m_project.Data());
    if (!m_editor.testAttribute(Qt::WA_Moved)) // later where the user left it
        m_editor.move(m_editor.parentWidget()->frameGeometry().center() - m_editor.rect().center());
    if (m_editor.isMinimized())
        m_editor.showNormal();
    m_editor.show();
    m_editor.raise();
    m_editor.activateWindow();
    m_project.TheRun().window.EnableControls(); // an empty data set has a scenario now
}

void ProjectionCommands::Project()
{
    if (!m_editor.MayLeaveCell())
        return;
    clsMethManager& fits = m_project.Fits();
    const std::vector<std::string> titles = fits.SelectProjections();
    if (titles.empty())
        return;
    fits.ProjWithFit(true);
    fits.Project(titles);
    m_project.TheRun().window.EnableControls();
}

void ProjectionCommands::ProjectWithCI()
{
    if (!m_editor.MayLeaveCell())
        return;
    clsMethManager& fits = m_project.Fits();
    const std::string title = fits.SelectProjection();
    if (!title.empty())
        fits.DoProjCI(title);
}

void ProjectionCommands::LetGo()
{
    m_editor.hide();
    m_editor.SetData(nullptr);
}

void ProjectionCommands::Follow(bool available)
{
    m_editor.Follow(available);
}
