// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/DesktopClipboard.h"
#include "shell/OpenProject.h"
#include "views/frmProjections.h"

/// The Projections menu and the window in which scenarios are set up.
class ProjectionCommands
{
public:
    /// Both must outlive this object. \param main the window that the editor belongs to
    ProjectionCommands(OpenProject& project, QWidget& main);

    void SetUpScenarios();
    void Project();
    void ProjectWithCI();

    frmProjections& Editor() { return m_editor; }
    /// The data set goes.
    void LetGo();
    /// Scenarios can be set up now, or not; the data may have become longer. What is typed stays.
    void Follow(bool available);

private:
    OpenProject& m_project;
    DesktopClipboard m_clipboard;
    frmProjections m_editor;
};
