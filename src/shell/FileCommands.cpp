// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FileCommands.h"

#include "base/FileType.h"
#include "base/StringTable.h"
#include "data/NewDataSet.h"

/// Whether the data set and its fit may go: what was typed cannot be saved in this version.
bool FileCommands::MayLose() const
{
    const bool typed = m_project.FileOpen() && m_project.Typed();
    return (!typed ||
            m_project.TheRun().reporter.Show(
                {.text = "This version cannot save data sets yet. What was changed in this one will "
                         "be lost. Continue?",
                 .buttons = Buttons::YesNo}) == Answer::Yes) &&
           m_project.MayClearFit();
}

void FileCommands::New()
{
    if (!MayLose())
        return;
    Drop();
    NewDataSet wanted;
    if (!m_project.TheRun().user.AskNewDataSet(wanted))
        throw UserCancelled("frmVelt3_mnuNew_Click");
    Begin(m_project.Data(), wanted);
    m_project.NoteTyping();
    m_project.View().EnterEditMode();
    if (m_project.Data().TimeInts() > m_project.Data().ShownRows())
        m_project.TheRun().reporter.Show(
            {.text = "This range has " + std::to_string(m_project.Data().TimeInts()) +
                     " time periods, and a table has room for " + std::to_string(clsVeltData::kRows) +
                     ". The last one cannot hold data.",
             .icon = Icon::Information});
}

void FileCommands::Open()
{
    if (!MayLose())
        return;
    Drop();
    const auto path = m_project.TheRun().user.AskFileToOpen({.filter = "Text (*.txt)"});
    if (path)
        Load(*path);
}

void FileCommands::Open(const std::string& path)
{
    if (!MayLose())
        return;
    Drop();
    Load(path);
}

void FileCommands::Close()
{
    if (MayLose())
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
