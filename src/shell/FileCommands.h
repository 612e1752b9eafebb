// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/OpenProject.h"

#include <string>

/// The commands of the File menu. Each asks before it takes a fit away; what fails is raised or told.
class FileCommands
{
public:
    explicit FileCommands(OpenProject& project) : m_project(project) {}

    /// A data set as the user describes it, to be filled in Edit Mode.
    /// \throws VeltError "User Cancelled." when the description is cancelled
    void New();
    void Open();
    /// Closes what is open and opens the file at `path`.
    void Open(const std::string& path);
    void Close();
    /// Whether the program may end.
    bool MayExit() const { return MayLose(); }

private:
    bool MayLose() const;
    void Drop();
    void Load(const std::string& path);

    OpenProject& m_project;
};
