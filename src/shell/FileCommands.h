// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileType.h"
#include "shell/OpenProject.h"

#include <string>

/// The commands of the File menu: when a data set comes and goes. Each asks before work would be lost; what
/// fails is raised or told.
class FileCommands
{
public:
    explicit FileCommands(OpenProject& project) : m_project(project) {}

    /// A data set as the user describes it, saved under a name that is asked for, to be filled in Edit Mode.
    /// \throws VeltError "User Cancelled." when the description is cancelled
    void New();
    void Open();
    /// Closes what is open and opens the file at `path`, relative to the working folder.
    void Open(const std::string& path);
    /// Writes the project; one that has no project file yet goes through SaveAs. \return whether it is saved
    bool Save();
    bool SaveAs();
    void Close();
    /// Writes the table as a text file under a name that is asked for.
    void TextExport();
    /// Whether the program may end: changes are saved, or the user lets them go.
    bool MayExit() { return MayLose(); }
    /// What the user may do about a failed command; empty when nothing is known.
    static std::string AdviceOn(const VeltError& error);
    /// Offers what a crash left behind. Yes opens it, No removes it, Cancel leaves it for the next start.
    void OfferLeftovers();

private:
    bool MayLose();
    void Write();
    Answer QuerySaveChanges() const;
    void Drop();
    void Load(const std::string& path);
    void OpenVelt3(const std::string& path);
    void Import(const std::string& path, FileType type);
    void ShowProject(const std::optional<VeltError>& failedConversion);
    bool Says(const std::string& question) const;
    Run& TheRun() const { return m_project.TheRun(); }

    OpenProject& m_project;
};
