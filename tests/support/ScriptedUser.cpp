// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ScriptedUser.h"

#include "data/CellFont.h"
#include "data/NewDataSet.h"
#include "data/NumberFormat.h"
#include "files/AsciiWizard.h"

#include <algorithm>
#include <utility>

namespace
{
/// A plot that nobody looks at and nobody closes.
class RecordingPlot : public VELT_ContourPlot
{
public:
    explicit RecordingPlot(std::vector<std::string>& events) : m_events(events) {}
    void Show(const ContourSurface& surface) override { m_events.push_back("ContourPlot " + surface.title); }
    bool PlotPoint(ContourMark, double, double) override
    {
        m_events.emplace_back("PlotPoint");
        return true;
    }
    bool PlotStep(double, double, double, double) override
    {
        m_events.emplace_back("PlotStep");
        return true;
    }

private:
    std::vector<std::string>& m_events;
};

/// The button that goes on; of Retry and Cancel it is Cancel, so that nothing is retried for ever.
Answer Unscripted(Buttons buttons)
{
    switch (buttons) {
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
        return Answer::Yes;
    case Buttons::RetryCancel:
        return Answer::Cancel;
    default:
        return Answer::Ok;
    }
}

template <typename T>
T TakeFirst(std::deque<T>& script)
{
    T first = std::move(script.front());
    script.pop_front();
    return first;
}

/// Plays the scripted part of a dialog on a copy; Cancel leaves the record as it was.
template <typename Record>
bool Play(const std::function<bool(Record&)>& script, Record& record)
{
    if (!script)
        return false;
    Record copy = record;
    if (!script(copy))
        return false;
    record = std::move(copy);
    return true;
}
} // namespace

void ScriptedUser::Picks(const std::string& text)
{
    onSelection = [text](Selection& selection) {
        const auto found = std::find_if(selection.items.begin(), selection.items.end(),
                                        [&](const std::string& item) { return item.starts_with(text); });
        if (found == selection.items.end())
            return false;
        selection.chosen = static_cast<std::size_t>(found - selection.items.begin()) + 1;
        return true;
    };
}

void ScriptedUser::ChoosesFit(const std::string& title, std::int32_t fitOp)
{
    Picks(title);
    onInputParams = [fitOp](InputParams& params) {
        params.FitOp = fitOp;
        return true;
    };
}

void ScriptedUser::Selects(const std::vector<std::string>& texts)
{
    onListPicker = [texts](ListPicker& picker) {
        for (ListPicker::Item& item : picker.items)
            item.selected = std::find(texts.begin(), texts.end(), item.text) != texts.end();
        return true;
    };
}

bool ScriptedUser::Saw(const std::string& text) const
{
    return std::any_of(messages.begin(), messages.end(),
                       [&](const Message& message) { return message.text.find(text) != std::string::npos; });
}

Answer ScriptedUser::Show(const Message& message)
{
    messages.push_back(message);
    if (onShow)
        onShow();
    return answers.empty() ? Unscripted(message.buttons) : TakeFirst(answers);
}

std::optional<std::string> ScriptedUser::InputBox(const std::string& prompt, const std::string&,
                                                  const std::string& suggestion)
{
    asked.push_back("input box: " + prompt);
    suggested.push_back(suggestion);
    return inputs.empty() ? std::nullopt : TakeFirst(inputs);
}

std::optional<std::string> ScriptedUser::AskFileToOpen(const FileQuestion& question)
{
    asked.push_back("file to open");
    openQuestions.push_back(question);
    return files.empty() ? std::nullopt : std::optional(TakeFirst(files));
}

std::optional<std::string> ScriptedUser::AskFileToSave(const FileQuestion& question)
{
    asked.push_back("file to save");
    saveQuestions.push_back(question);
    return filesToSave.empty() ? std::nullopt : std::optional(TakeFirst(filesToSave));
}

bool ScriptedUser::AskSelection(Selection& selection)
{
    asked.emplace_back("selection");
    return Play(onSelection, selection);
}

bool ScriptedUser::AskRange(RangeQuestion& question)
{
    asked.emplace_back("range");
    return Play(onRange, question);
}

bool ScriptedUser::AskInputParams(InputParams& params)
{
    asked.emplace_back("input params");
    return Play(onInputParams, params);
}

bool ScriptedUser::AskStartVals(StartVals& starts)
{
    asked.emplace_back("start values");
    return Play(onStartVals, starts);
}

bool ScriptedUser::AskContourRange(ContourRange& range)
{
    asked.emplace_back("contour range");
    return Play(onContourRange, range);
}

bool ScriptedUser::AskOptions(MinimiserOptions& options)
{
    asked.emplace_back("options");
    return Play(onOptions, options);
}

bool ScriptedUser::AskAsciiWizard(AsciiWizard& wizard)
{
    asked.emplace_back("ascii wizard");
    return Play(onAsciiWizard, wizard);
}

bool ScriptedUser::AskListPicker(ListPicker& picker)
{
    asked.emplace_back("list picker");
    return Play(onListPicker, picker);
}

bool ScriptedUser::AskNumberFormat(NumberFormatChoice& choice)
{
    asked.emplace_back("number format");
    return Play(onNumberFormat, choice);
}

bool ScriptedUser::AskFont(CellFont& font)
{
    asked.emplace_back("font");
    return Play(onFont, font);
}

bool ScriptedUser::AskNewDataSet(NewDataSet& wanted)
{
    asked.emplace_back("new data set");
    return Play(onNewDataSet, wanted);
}

void RecordingWindow::StatusText(const std::string& text)
{
    status.push_back(text);
}

void RecordingWindow::HourglassOn()
{
    hourglass = true;
}

void RecordingWindow::HourglassOff()
{
    hourglass = false;
}

void RecordingWindow::UpDatePBar(double) {}

void RecordingWindow::AddModelGraph(std::shared_ptr<ModelGraph> graph)
{
    events.emplace_back("AddModelGraph");
    graphs.push_back(std::move(graph));
}

void RecordingWindow::AddProjGraph(std::shared_ptr<ProjGraph> graph)
{
    events.emplace_back("AddProjGraph");
    projections.push_back(std::move(graph));
}

void RecordingWindow::ClearGraphs(bool histogramsOnly)
{
    events.emplace_back(histogramsOnly ? "ClearGraphs histograms" : "ClearGraphs");
    if (!histogramsOnly)
        projections.clear();
    std::erase_if(graphs, [histogramsOnly](const std::shared_ptr<ModelGraph>& graph) {
        return !histogramsOnly || graph->Type() == GraphType::Histogram;
    });
}

void RecordingWindow::SetUpDataGrid()
{
    events.emplace_back("SetUpDataGrid");
}

void RecordingWindow::EnableControls()
{
    events.emplace_back("EnableControls");
}

void RecordingWindow::ShowParameterReport(const ParameterReport* report)
{
    events.emplace_back(report != nullptr ? "ShowParameterReport" : "HideParameterReport");
    reportShown = report != nullptr;
}

std::unique_ptr<VELT_ContourPlot> RecordingWindow::NewContourPlot()
{
    events.emplace_back("NewContourPlot");
    if (nextPlot)
        return std::move(nextPlot);
    return std::make_unique<RecordingPlot>(events);
}

void RecordingWindow::YieldToEvents()
{
    yields.emplace_back("YieldToEvents");
}

void RecordingMeter::Start(const std::string& title, int most)
{
    titles.push_back(title);
    maximum = most;
    value = 0;
}

void RecordingMeter::Value(int now)
{
    value = now;
}

bool RecordingMeter::Cancelled()
{
    ++looks;
    return cancelAfter && looks > *cancelAfter;
}

void RecordingMeter::Finish() {}
