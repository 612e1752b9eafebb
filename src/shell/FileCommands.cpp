// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FileCommands.h"

#include "base/HelpTopics.h"
#include "base/Paths.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "data/NewDataSet.h"
#include "fit/ExportToASCIIFile.h"

#include <filesystem>

namespace
{
constexpr const char* kProjectEnding = ".VL3";
constexpr const char* kTextEnding = ".txt";

/// The name with this ending that is offered for what is written of a data set that came from `path`.
std::string SuggestionFor(const std::string& path, const char* ending)
{
    if (path.empty())
        return {};
    const std::string name = GetBaseName(path) + ending;
    return (std::filesystem::path(path).parent_path() / name).string();
}
} // namespace

bool FileCommands::Says(const std::string& question) const
{
    return TheRun().reporter.Show({.text = question, .buttons = Buttons::YesNo}) == Answer::Yes;
}

Answer FileCommands::QuerySaveChanges() const
{
    if (!m_project.FileOpen() || !m_project.Data().IsDirty())
        return Answer::No;
    return TheRun().reporter.Show({.text = LoadResString(1926), .buttons = Buttons::YesNoCancel});
}

/// Whether the data set and its fit may go. A save that was abandoned keeps them.
bool FileCommands::MayLose()
{
    switch (QuerySaveChanges()) {
    case Answer::Yes:
        return Save() && m_project.MayClearFit();
    case Answer::No:
        return m_project.MayClearFit();
    default:
        return false;
    }
}

void FileCommands::New()
{
    if (!MayLose())
        return;
    Drop();
    NewDataSet wanted;
    if (!TheRun().user.AskNewDataSet(wanted))
        throw UserCancelled("frmVelt3_mnuNew_Click");
    Begin(m_project.Data(), wanted);
    m_project.FileOpen(true);
    m_project.View().EnterEditMode();
    if (m_project.Data().TimeInts() > m_project.Data().ShownRows())
        TheRun().reporter.Show({.text = "This range has " + std::to_string(m_project.Data().TimeInts()) +
                                        " time periods, and a table has room for " +
                                        std::to_string(clsVeltData::kRows) +
                                        ". The last one cannot hold data.",
                                .icon = Icon::Information});
    Save(); // last: one that fails leaves the new table to be typed in and saved elsewhere
}

void FileCommands::Open()
{
    if (!MayLose())
        return;
    Drop();
    const auto path = TheRun().user.AskFileToOpen(
        {.filter = "Projects and tables (*.vl3 *.vl2 *.txt *.csv);;Velt 3.0 (*.vl3);;Velt 2.0 (*.vl2);;"
                   "Text (*.txt);;Comma-separated (*.csv)"});
    if (path)
        Load(*path);
}

void FileCommands::Open(const std::string& path)
{
    if (!MayLose())
        return;
    Drop();
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(path, error);
    Load(error ? path : whole.string());
}

void FileCommands::Close()
{
    if (MayLose())
        Drop();
}

void FileCommands::Drop()
{
    m_project.Fits().DisplayParameters(false);
    TheRun().window.ClearGraphs(false);
    m_project.InitObjects();
    TheRun().window.EnableControls();
}

/// Loads `path` in place of nothing: the former data set has been closed.
void FileCommands::Load(const std::string& path)
{
    TheRun().window.StatusText(LoadResString(61));
    FileType type = GetFileType(path);
    if (!CheckFileAccess(path, FileAccess::Read, TheRun().reporter))
        type = FileType::NotRecognised;
    if (type == FileType::Text || type == FileType::CommaSeparated || type == FileType::Velt2)
        Import(path, type);
    else if (type == FileType::Velt3)
        OpenVelt3(path);
    else
        TheRun().reporter.Show({.text = LoadResString(60), .helpTopic = help_topics::kFileType});
    TheRun().window.StatusText(TheRun().globals.Ready);
    TheRun().window.EnableControls();
}

/// A failed import leaves an empty data set, which is shown as it is: it explains itself. One that succeeded
/// becomes a project before work begins.
void FileCommands::Import(const std::string& path, FileType type)
{
    clsMethManager& manager = m_project.Fits();
    const bool imported =
        type == FileType::Velt2 ? manager.ImportVELT2File(path) : manager.ImportASCIIFile(path);
    TheRun().window.SetUpDataGrid();
    if (!imported)
        return;
    m_project.View().NoteOpened(path);
    m_project.File().KeepCopy();
    SaveAs();
}

void FileCommands::OpenVelt3(const std::string& path)
{
    if (ScratchFolder::IsOpenElsewhere(path) &&
        !Says(
            "Another VELT on this computer has this project open:\n" + path +
            "\n\nWhat one of them saves, the other does not see, and would replace with its own. Open it all "
            "the same?"))
        return;
    const auto failedConversion = m_project.File().Open(path);
    m_project.View().NoteOpened(path);
    ShowProject(failedConversion);
}

void FileCommands::ShowProject(const std::optional<VeltError>& failedConversion)
{
    TheRun().window.SetUpDataGrid();
    if (failedConversion)
        TheRun().reporter.HandleError(
            *failedConversion, "frmVelt3_mnuOpen_Click",
            "The project is open with its columns as they stand in the file. Mend the "
            "data in Edit Mode before you fit them.");
}

bool FileCommands::Save()
{
    if (!IsProjectName(m_project.Data().DSFName()))
        return SaveAs();
    if (!m_project.MayReplaceOnDisk())
        return false;
    Write();
    return true;
}

/// What fails here ends the command, which puts the pointer back.
void FileCommands::Write()
{
    IMainWindow& window = TheRun().window;
    window.StatusText(TheRun().globals.SavingFile);
    window.HourglassOn();
    m_project.Fits().SaveAsVELT3();
    window.HourglassOff();
    m_project.View().ShowCaption();
    m_project.View().NoteSaved(m_project.Data().DSFName());
    window.StatusText(TheRun().globals.Ready);
}

std::string FileCommands::AdviceOn(const VeltError& error)
{
    if (dynamic_cast<const ProjectNotWritten*>(&error) == nullptr)
        return {};
    return "What is open here stays open and unsaved. Save As keeps it under another name or in another "
           "folder.";
}

bool FileCommands::SaveAs()
{
    const std::string before = m_project.Data().DSFName();
    auto path = TheRun().user.AskFileToSave({.filter = "VELT3 (*.vl3)",
                                             .title = "Save As",
                                             .suggestion = SuggestionFor(before, kProjectEnding),
                                             .ending = "vl3"});
    if (!path)
        return false;
    if (!IsProjectName(*path)) { // the dialog has asked about another name
        *path += ".vl3";
        if (!CheckFileAccess(*path, FileAccess::Write, TheRun().reporter))
            return false;
    }
    if (*path != before && ScratchFolder::IsOpenElsewhere(*path) &&
        !Says("Another VELT on this computer has this project open:\n" + *path +
              "\n\nReplace it all the same?"))
        return false;
    m_project.Data().DSFName(*path);
    try {
        Write(); // the user has agreed to replace what stands there
        return true;
    } catch (...) {
        m_project.Data().DSFName(before);
        throw;
    }
}

void FileCommands::TextExport()
{
    auto path =
        TheRun().user.AskFileToSave({.filter = "ASCII Text (*.txt)",
                                     .title = "Text Export",
                                     .suggestion = SuggestionFor(m_project.Data().DSFName(), kTextEnding),
                                     .ending = "txt"});
    if (!path)
        return;
    if (GetFileType(*path) != FileType::Text) { // under another name it could not be opened again
        *path += kTextEnding;
        if (!CheckFileAccess(*path, FileAccess::Write, TheRun().reporter))
            return;
    }
    ExportToASCIIFile(m_project.Data(), *path);
}

void FileCommands::OfferLeftovers()
{
    for (const ScratchFolder::Leftover& leftover : ScratchFolder::Leftovers()) {
        const std::string name =
            leftover.origin.empty() ? "a data set that was not saved yet" : leftover.origin;
        const Answer answer = TheRun().reporter.Show(
            {.text =
                 "VELT ended unexpectedly while this was open:\n" + name +
                 "\n\nIts working copy was found. Open it as a project with unsaved changes? No removes the "
                 "copy, Cancel leaves it for the next start.",
             .icon = Icon::Question,
             .buttons = Buttons::YesNoCancel});
        if (answer == Answer::No)
            ScratchFolder::Discard(leftover);
        if (answer != Answer::Yes)
            continue;
        if (!MayLose())
            return;
        Drop();
        const auto failedConversion = m_project.File().OpenLeftover(leftover);
        if (!leftover.origin.empty())
            m_project.View().NoteOpened(leftover.origin);
        ShowProject(failedConversion);
        ScratchFolder::Discard(leftover);
        return;
    }
}
