// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FileCommands.h"

#include "base/FileType.h"
#include "base/StringTable.h"

void FileCommands::Open()
{
    if (!m_project.MayClearFit())
        return;
    Drop();
    const auto path = m_project.TheRun().user.AskFileToOpen({.filter = "Text (*.txt)"});
    if (path)
        Load(*path);
}

void FileCommands::Open(const std::string& path)
{
    if (!m_project.MayClearFit())
        return;
    Drop();
    Load(path);
}

void FileCommands::Close()
{
    if (m_project.MayClearFit())
        Drop();
}

void FileCommands::Drop()
{
    m_project.Fits().DisplayParameters(false);
    m_project.TheRun().window.ClearGraphs(false);
    m_project.Renew();
    m_project.TheRun().window.EnableControls();
}

/// Loads `path` in place of nothing: the former data set has been closed.
void FileCommands::Load(const std::string& path)
{
    Run& run = m_project.TheRun();
    run.window.StatusText(LoadResString(61));
    FileType type = GetFileType(path);
    if (!CheckFileAccess(path, FileAccess::Read, run.reporter))
        type = FileType::NotRecognised;
    if (type == FileType::Text) {
        // A failed import leaves an empty data set, which is shown as it is: it explains itself.
        m_project.Fits().ImportASCIIFile(path);
        run.window.SetUpDataGrid();
    } else if (type == FileType::Velt3 || type == FileType::Velt2) {
        run.reporter.Show(
            {.text = "This version cannot open projects yet. Open a text file (*.txt) instead."});
    } else {
        run.reporter.Show({.text = LoadResString(60)});
    }
    run.window.StatusText(run.globals.Ready);
    run.window.EnableControls();
}
