// SPDX-License-Identifier: GPL-3.0-or-later
// The projections of the fit manager: what is asked and told around them.
#include "base/StringTable.h"
#include "fit/ParameterLimits.h"
#include "fit/clsMethManager.h"
#include "graphs/ProjGraph.h"

#include <utility>

namespace
{
constexpr int kCaption = 1501;
constexpr int kPrompt = 1502;
constexpr int kNumbered = 1503;
constexpr int kAvailable = 1507;
constexpr int kSelected = 1508;
constexpr int kNoneSuitable = 1939;
} // namespace

/// Whether the fit can be projected now; tells the user why not.
bool clsMethManager::MayProject()
{
    const auto refusal = projections::Refusal(*m_method, *m_data);
    if (refusal)
        Say(*refusal);
    return !refusal;
}

std::vector<std::string> clsMethManager::SelectProjections()
{
    if (m_data->NumProjScenarios() == 0)
        return {};
    const std::vector<std::string> titles = projections::SuitableTitles(*m_method, *m_data);
    if (titles.empty()) {
        Say(LoadResString(kNoneSuitable));
        return {};
    }
    if (!MayProject())
        return {};
    ListPicker picker{.caption = LoadResString(kCaption),
                      .prompt = LoadResString(kPrompt),
                      .leftCaption = LoadResString(kAvailable),
                      .rightCaption = LoadResString(kSelected)};
    for (const std::string& title : titles)
        picker.items.push_back({title});
    if (!m_run.user.AskListPicker(picker))
        return {};
    std::vector<std::string> chosen;
    for (const ListPicker::Item& item : picker.items)
        if (item.selected)
            chosen.push_back(item.text);
    return chosen;
}

std::string clsMethManager::SelectProjection()
{
    Selection selection{.caption = "Projection Scenarios", .prompt = "Select scenario to Project"};
    selection.items = projections::SuitableTitles(*m_method, *m_data);
    if (selection.items.empty()) {
        Say(LoadResString(kNoneSuitable), Icon::Exclamation, Buttons::OkCancel);
        return {};
    }
    if (!MayProject() || !m_run.user.AskSelection(selection) || selection.chosen == 0)
        return {};
    return selection.items.at(selection.chosen - 1);
}

void clsMethManager::Project(const std::vector<std::string>& titles)
{
    if (!MayProject())
        return;
    ++m_projCount;
    ShowProjection(projections::Project(*m_method, *m_data, titles, m_projWithFit));
}

void clsMethManager::DoProjCI(const std::string& title)
{
    if (!MayProject())
        return;
    RangeQuestion question{.caption = "Confidence Interval Range",
                           .prompt = "Enter High and Low Confidence Intervals",
                           .lowLabel = "Low",
                           .highLabel = "High",
                           .low = 0.05,
                           .high = 0.95};
    if (!m_run.user.AskRange(question))
        return;
    const float low = LevelOf(question.low);
    const float high = LevelOf(question.high);
    ++m_projCount;
    ShowProjection(projections::ProjectWithLimits(
        *m_method, *m_data, title, projections::PositionsOf(m_method->NumBootStraps(), low, high)));
}

void clsMethManager::ShowProjection(projections::Projected projected)
{
    projected.graph->Title(LoadResString(kNumbered) + std::to_string(m_projCount));
    m_projectionRemark = std::move(projected.remark);
    if (m_projectionRemark)
        projected.graph->Remark(m_projectionRemark->text);
    m_run.window.AddProjGraph(std::move(projected.graph));
}
