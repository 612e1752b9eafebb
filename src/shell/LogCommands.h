// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/FileCommands.h"
#include "shell/OpenProject.h"

#include <cstdint>
#include <functional>
#include <string>

/// What the Fit Manager window does: logged fits are added, loaded and deleted. Each tells its own failure.
class LogCommands
{
public:
    LogCommands(OpenProject& project, FileCommands& files) : m_project(project), m_files(files) {}

    /// Logs the current fit; a data set that is no project yet is saved as one first.
    void Add();
    /// Loads the first fit whose name, without the blanks around it, is `name`.
    void Load(const std::string& name);
    /// Deletes the fit at `place`, from 1, for good, after a question, and writes the project.
    void Delete(std::int32_t place);

private:
    void Tell(int messageId, const char* source, const std::function<void()>& work);
    Run& TheRun() const { return m_project.TheRun(); }

    OpenProject& m_project;
    FileCommands& m_files;
};
