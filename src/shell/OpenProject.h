// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"
#include "fit/ProjectFile.h"
#include "fit/clsMethManager.h"

#include <memory>

/// What of the main window follows the open data set.
class IProjectView
{
public:
    virtual ~IProjectView() = default;
    /// The data set and its manager are about to go; nothing may hold on to them.
    virtual void LetGoOfProject() = 0;
    /// A new pair stands in their place, and no data set is open.
    virtual void ShowNoProject() = 0;
    /// The focus comes back to the main window, but what was asked for stays in sight.
    virtual void KeepResultsInSight() = 0;
    /// The data set that has just come is to be filled.
    virtual void EnterEditMode() = 0;
    /// The title of the window follows the name and the description of the data set.
    virtual void ShowCaption() = 0;
    /// A file was opened or saved: the list of recent ones, and what is kept beside a file, follow.
    virtual void NoteOpened(const std::string& path) = 0;
    virtual void NoteSaved(const std::string& path) = 0;
    /// Stores what an open cell of the table holds. \return false when it is refused
    virtual bool MayLeaveTable() = 0;
};

/// The one data set of the run with its file and its fit manager, always made and replaced together, and what
/// is remembered about them between commands.
class OpenProject
{
public:
    /// Both must outlive this object. The first pair is made by InitObjects.
    OpenProject(Run& run, IProjectView& view) : m_run(run), m_view(view) {}

    Run& TheRun() const { return m_run; }
    IProjectView& View() const { return m_view; }
    clsVeltData& Data() const { return *m_data; }
    clsMethManager& Fits() const { return *m_fits; }
    ProjectFile& File() const { return *m_file; }

    /// A new data set and a new manager.
    void InitObjects();

    bool FileOpen() const { return m_fileOpen; }
    void FileOpen(bool open) { m_fileOpen = open; }
    /// A New Fit has run on this data set, or a logged fit was loaded in this run.
    bool FitEverMade() const { return m_fitEverMade || m_run.FitReloaded; }
    void NoteFit() { m_fitEverMade = true; }

    /// Whether the current fit may go: true when there is none, else the user is asked.
    bool MayClearFit() const;
    /// Whether the project on disk may be replaced: true unless somebody else has changed it, then the user
    /// is asked.
    bool MayReplaceOnDisk() const;

private:
    Run& m_run;
    IProjectView& m_view;
    std::unique_ptr<clsVeltData> m_data;
    std::unique_ptr<ProjectFile> m_file;
    std::unique_ptr<clsMethManager> m_fits; // behind both: to its end it speaks to them
    bool m_fileOpen = false;
    bool m_fitEverMade = false;
};
