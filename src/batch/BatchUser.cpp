// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchUser.h"

#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "batch/BatchFailure.h"
#include "files/AsciiWizard.h"
#include "fit/InputParams.h"
#include "models/ContourRange.h"
#include "models/ModelTable.h"
#include "models/StartVals.h"

#include <algorithm>
#include <utility>

namespace
{
/// `texts` as a list in a sentence; foreign ones may be long and many.
template <typename Texts>
std::string Quoted(const Texts& texts)
{
    std::string all;
    for (const auto& text : texts) {
        if (all.size() > kMostQuoted)
            return all + ", ...";
        all += (all.empty() ? "\"" : ", \"") + Quotable(text) + "\"";
    }
    return all;
}

int DataColumn(const AsciiWizard& wizard, const std::string& gridTitle)
{
    const auto& titles = wizard.columnTitles;
    const auto found = std::find(titles.begin(), titles.end(), gridTitle);
    if (found == titles.end())
        throw BatchFailure(ExitStatus::BadUsage, "--columns: there is no column \"" + Quotable(gridTitle) +
                                                     "\" to fill; there are " + Quoted(titles) + ".");
    return static_cast<int>(found - titles.begin()) + 1;
}

/// A column that fills two columns of the data set stands twice in the wizard, as it would in a file made by
/// hand: the wizard gives each text column one place only.
void CopyRepeated(AsciiWizard& wizard, std::vector<int>& textColumns)
{
    for (auto column = textColumns.begin(); column != textColumns.end(); ++column)
        if (std::find(textColumns.begin(), column, *column) != column)
            *column = wizard.CopyColumn(*column);
}

void Assign(AsciiWizard& wizard, int textColumn, const FitRequest::Assignment& assignment)
{
    const int dataColumn = DataColumn(wizard, assignment.gridTitle);
    if (wizard.timingColumn == textColumn)
        throw BatchFailure(ExitStatus::BadUsage, "--columns: \"" + Quotable(assignment.heading) +
                                                     "\" holds the time periods already.");
    if (wizard.blnVELTColSel(dataColumn))
        throw BatchFailure(ExitStatus::BadUsage,
                           "--columns fills \"" + Quotable(assignment.gridTitle) + "\" twice.");
    wizard.Assign(textColumn, dataColumn);
}
} // namespace

int TextColumn(const std::vector<std::string>& headings, const std::string& heading)
{
    const auto found = std::find(headings.begin(), headings.end(), heading);
    if (found == headings.end())
        throw BatchFailure(ExitStatus::BadUsage, "The file has no column \"" + Quotable(heading) +
                                                     "\"; it has " + Quoted(headings) + ".");
    if (std::count(headings.begin(), headings.end(), heading) > 1)
        throw BatchFailure(ExitStatus::BadUsage, "The file has the column \"" + Quotable(heading) +
                                                     "\" more than once, so the name says nothing. Rename "
                                                     "one of them in the file.");
    return static_cast<int>(found - headings.begin()) + 1;
}

bool BatchUser::Said(const std::string& text) const
{
    return std::ranges::any_of(messages, [&](const std::string& said) { return said.starts_with(text); });
}

std::string BatchUser::AllMessages(const std::string& otherwise) const
{
    std::string all;
    for (const std::string& message : messages)
        all += (all.empty() ? "" : "\n") + Trim(message);
    return all.empty() ? otherwise : all;
}

Answer BatchUser::Show(const Message& message)
{
    if (message.buttons == Buttons::YesNo || message.buttons == Buttons::YesNoCancel)
        return Answer::Yes; // a missing description is no reason to stop
    messages.push_back(message.text);
    return message.buttons == Buttons::Ok ? Answer::Ok : Answer::Cancel;
}

std::optional<std::string> BatchUser::InputBox(const std::string& prompt, const std::string& /*title*/,
                                               const std::string& /*suggestion*/)
{
    const bool forStart = prompt == LoadResString(1602) || prompt == LoadResString(1603);
    if (!forStart || m_request.start.empty()) {
        startMissing = startMissing || forStart;
        return std::nullopt;
    }
    if (m_startTyped) // asked again: the value was refused, and there is no other
        return std::nullopt;
    m_startTyped = true;
    return number_text::Plain(m_request.start.back().value);
}

bool BatchUser::AskSelection(Selection& selection)
{
    available = selection.items;
    const std::string wanted = LoadResString(model_table::Of(m_request.model).titleId);
    const auto found = std::find(selection.items.begin(), selection.items.end(), wanted);
    modelMissing = found == selection.items.end();
    if (modelMissing)
        return false;
    selection.chosen = static_cast<std::size_t>(found - selection.items.begin()) + 1;
    return true;
}

bool BatchUser::AskRange(RangeQuestion& question)
{
    question.low = m_request.ciLow.value_or(question.low);
    question.high = m_request.ciHigh.value_or(question.high);
    return true;
}

bool BatchUser::AskInputParams(InputParams& params)
{
    params.FitOp = m_request.errorModel;
    params.Mort = m_request.mort.value_or(params.Mort);
    params.InitProp = m_request.initialProportion.value_or(params.InitProp);
    params.TimeLag = m_request.lag.value_or(params.TimeLag);
    params.Z = m_request.z.value_or(params.Z);
    params.SetStartingEstimates = m_request.SetsStart();
    params.PlotEvaluations = m_request.contours.has_value();
    return true;
}

bool BatchUser::AskStartVals(StartVals& starts)
{
    startMissing = !m_request.SetsStart();
    if (startMissing)
        return false;
    const std::vector<std::string> names = StartingParameters(m_request.model);
    for (const auto& [parameter, value] : m_request.start)
        (parameter == names.front() ? starts.param1 : starts.param2) = value;
    for (const std::string& parameter : m_request.fix)
        (parameter == names.front() ? starts.Fixed1 : starts.Fixed2) = true;
    return true;
}

bool BatchUser::AskContourRange(ContourRange& range)
{
    range.ContEvals = m_request.contours.value_or(range.ContEvals);
    return true;
}

bool BatchUser::AskOptions(MinimiserOptions& options)
{
    options = m_request.minimiser;
    return true;
}

bool BatchUser::AskAsciiWizard(AsciiWizard& wizard)
{
    try {
        const int timing = TextColumn(wizard.collFlexHeadings, m_request.timeColumn);
        std::vector<int> textColumns;
        for (const FitRequest::Assignment& assignment : m_request.columns)
            textColumns.push_back(TextColumn(wizard.collFlexHeadings, assignment.heading));
        CopyRepeated(wizard, textColumns);
        wizard.ChooseTiming(timing);
        wizard.Next();
        for (std::size_t i = 0; i < textColumns.size(); ++i)
            Assign(wizard, textColumns[i], m_request.columns[i]);
        wizard.Finish();
        return true;
    } catch (const BatchFailure& failure) { // the import knows only Cancel
        usageError = failure.message;
        return false;
    }
}
