// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/FitLog.h"

#include "base/HelpTopics.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "data/ProjectData.h"
#include "data/clsVeltData.h"
#include "fit/ProjectFile.h"
#include "fit/Remarks.h"
#include "fit/clsMethManager.h"

#include <utility>

namespace
{
/// The name as typed, once no fit has it; empty when the user gave none.
std::string AskFitName(const clsVeltData& data, std::string name)
{
    IUser& user = data.TheRun().user;
    const Message taken{.text = LoadResString(1925), .helpTopic = help_topics::kFitManager};
    for (;;) {
        if (Trim(name).empty())
            name = user.InputBox(LoadResString(1942), taken.title, "").value_or("");
        if (Trim(name).empty())
            return {};
        const auto refusal = RefusalOfName(name);
        if (!refusal && !data.HasLoggedFit(name))
            return name;
        user.Show(refusal ? Message{.text = *refusal} : taken);
        name.clear();
    }
}
} // namespace

clsFit* GetANewLog(clsVeltData& data, std::int32_t whichMeth, std::int32_t fitOp, std::string name,
                   const MomentSource& now)
{
    const std::string given = AskFitName(data, std::move(name));
    return given.empty() ? nullptr : &data.NewLoggedFit(whichMeth, fitOp, given, now());
}

void clsMethManager::SaveAsVELT3()
{
    m_project->Save();
}

bool clsMethManager::LogCurrentFit(const std::string& name)
{
    const bool wasDirty = m_data->IsDirty();
    m_data->LogOrReload(true);
    clsFit* const fit = GetANewLog(*m_data, m_method->WhichMeth(), m_method->FitOp(), name);
    if (fit == nullptr)
        return false;
    const auto takeBack = [&] { // what is not on disk is not logged
        m_data->DeleteLoggedFit(fit->FitName());
        if (!wasDirty)
            m_data->MarkSaved();
    };
    try {
        m_project->Append(*fit, project_file::WriteBody(m_method->SaveAsVELT3(), m_method->WhichMeth()));
        m_project->Save();
    } catch (VeltError& error) {
        takeBack();
        error.source = "VELT 3.0_LogCurrentFit";
        throw;
    } catch (...) { // no memory for the body, for one
        takeBack();
        throw;
    }
    m_fitLogged = true;
    return true;
}

void clsMethManager::TakeStoredFit(const clsFit& fit)
{
    m_currMethType = fit.MethType();
    m_method = NewMethod(m_currMethType);
    m_method->Create(*m_data);
    m_method->WhichMeth(m_currMethType);
    m_inputs.FitOp = fit.FitOp();
    m_methDefined = true;
    m_data->LogOrReload(true);
    const std::string body = m_project->BodyOf(fit); // which refuses a place outside the copy
    m_method->OpenAsVELT3(
        project_file::ReadBody(body, m_currMethType, static_cast<std::size_t>(fit.Start())));
    m_method->SetColumnRefs();
    m_method->CalcDiscCatches();
    PullResults();
    m_method->CopyFinalToWorkEsts();
    m_method->CalcPopTraj();
    m_fitRemarks = RemarksOfFit(*m_method, *m_data);
}

void clsMethManager::ReLoadFit(const clsFit& fit)
{
    Reset();
    const DataTable before = m_data->Table();
    const bool wasDirty = m_data->IsDirty();
    const std::int32_t former = m_currMethType;
    try {
        TakeStoredFit(fit);
        m_run.window.SetUpDataGrid();
        m_method->BuildModelGraphs();
        PullResults();
        if (m_method->IsBSDone()) {
            NumBootStraps(m_method->NumBootStraps());
            m_method->CalcBootStrapHistos(m_ciLow, m_ciHigh);
        }
    } catch (...) {
        m_data->Table(before);
        if (!wasDirty)
            m_data->MarkSaved();
        m_currMethType = former;
        Reset();
        m_run.window.ClearGraphs(false);
        m_run.window.SetUpDataGrid();
        throw;
    }
}
