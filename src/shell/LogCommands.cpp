// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/LogCommands.h"

#include "base/FileType.h"
#include "base/StringTable.h"
#include "base/Text.h"

namespace
{
constexpr int kUnableToLoad = 507;
constexpr int kUnableToDelete = 508;
constexpr int kUnableToSave = 509;
constexpr int kReplacesFit = 1937;
constexpr int kDeletesForGood = 1938;

const clsFit* FindFit(const clsVeltData& data, const std::string& name)
{
    for (std::int32_t i = 1; i <= data.NumLoggedFits(); ++i)
        if (Trim(data.LoggedFit(i).FitName()) == name)
            return &data.LoggedFit(i);
    return nullptr;
}
} // namespace

/// Runs `work`; when it fails the user is told what could not be done, and then why.
void LogCommands::Tell(int messageId, const char* source, const std::function<void()>& work)
{
    try {
        work();
    } catch (const VeltError& error) {
        TheRun().window.HourglassOff();
        TheRun().reporter.Show({.text = LoadResString(messageId), .icon = Icon::Critical});
        TheRun().reporter.HandleError(error, source, FileCommands::AdviceOn(error));
    }
    TheRun().window.StatusText(TheRun().globals.Ready);
    TheRun().window.EnableControls();
}

void LogCommands::Add()
{
    Tell(kUnableToSave, "frmFitManager_cmdAdd_Click", [this] {
        if (!IsProjectName(m_project.Data().DSFName()) && !m_files.SaveAs())
            return;
        if (!m_project.MayReplaceOnDisk())
            return;
        m_project.Fits().LogCurrentFit();
        m_project.View().ShowCaption();
    });
}

void LogCommands::Load(const std::string& name)
{
    const clsFit* const fit = FindFit(m_project.Data(), name);
    const Message question{
        .text = LoadResString(kReplacesFit), .icon = Icon::Exclamation, .buttons = Buttons::YesNo};
    if (fit == nullptr || (m_project.Fits().MethDefined() && TheRun().reporter.Show(question) != Answer::Yes))
        return;
    Tell(kUnableToLoad, "frmFitManager_cmdLoad_Click", [&] {
        TheRun().window.ClearGraphs(false);
        m_project.Fits().ReLoadFit(*fit);
        m_project.Fits().DisplayParameters(true);
        TheRun().FitReloaded = true;
        m_project.View().KeepResultsInSight();
    });
}

void LogCommands::Delete(std::int32_t place)
{
    // Not by the name as it is shown: two names may differ by a blank in front alone.
    const std::string name = m_project.Data().LoggedFit(place).FitName();
    if (TheRun().reporter.Show({.text = LoadResString(kDeletesForGood) + Trim(name),
                                .icon = Icon::Question,
                                .buttons = Buttons::YesNoCancel}) != Answer::Yes ||
        !m_project.MayReplaceOnDisk())
        return;
    Tell(kUnableToDelete, "frmFitManager_cmdDelete_Click", [&] {
        clsVeltData& data = m_project.Data();
        const clsVeltData::LoggedFits before = data.Fits();
        const bool wasDirty = data.IsDirty();
        data.DeleteLoggedFit(name);
        try {
            m_project.Fits().SaveAsVELT3();
        } catch (...) {
            data.Fits(before); // it still stands in the project on disk
            if (!wasDirty)
                data.MarkSaved();
            throw;
        }
        m_project.View().ShowCaption();
    });
}
