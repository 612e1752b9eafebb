// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "base/Run.h"
#include "engines/RandomSource.h"
#include "fit/InputParams.h"
#include "fit/MinimiserOptions.h"
#include "graphs/ModelGraph.h"
#include "graphs/ProjGraph.h"
#include "graphs/VELT_ContourPlot.h"
#include "models/ContourRange.h"
#include "models/StartVals.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// A person at the desk who answers from a script and remembers what was asked, so that a test reads like a
/// session at the screen. Without a script a box is answered OK (or Yes), a dialog with Cancel.
class ScriptedUser : public IUser
{
public:
    // The script: what each dialog does with its record; false from the function is Cancel.
    std::function<bool(Selection&)> onSelection;
    std::function<bool(RangeQuestion&)> onRange;
    std::function<bool(InputParams&)> onInputParams;
    std::function<bool(StartVals&)> onStartVals;
    std::function<bool(ContourRange&)> onContourRange;
    std::function<bool(MinimiserOptions&)> onOptions;
    std::function<bool(AsciiWizard&)> onAsciiWizard;
    std::function<bool(ListPicker&)> onListPicker;
    std::function<bool(NumberFormatChoice&)> onNumberFormat;
    std::function<bool(CellFont&)> onFont;
    std::function<bool(NewDataSet&)> onNewDataSet;
    std::function<void()> onShow;                  ///< what a box does to the screen while it stands
    std::deque<Answer> answers;                    ///< for boxes, in order
    std::deque<std::optional<std::string>> inputs; ///< for input boxes, in order; empty: Cancel

    /// Picks the item that begins with `text`.
    void Picks(const std::string& text);
    /// Picks the model of this title, and this error model with the inputs as they are offered.
    void ChoosesFit(const std::string& title, std::int32_t fitOp);
    /// Selects these items of a list picker and no other.
    void Selects(const std::vector<std::string>& texts);

    std::deque<std::string> files;       ///< chosen in file dialogs, in order; empty: Cancel
    std::deque<std::string> filesToSave; ///< the same for files to write
    std::vector<FileQuestion> openQuestions, saveQuestions;

    // What happened.
    std::vector<Message> messages;
    std::vector<std::string> asked;          ///< "selection", "input params", "start values", ... in order
    std::vector<std::string> helpShown;      ///< topics of the manual, in order
    std::vector<std::string> suggested;      ///< what input boxes stood at when they opened
    bool Saw(const std::string& text) const; ///< a box whose text contains `text`

    Answer Show(const Message& message) override;
    std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                        const std::string& suggestion) override;
    std::optional<std::string> AskFileToOpen(const FileQuestion& question) override;
    std::optional<std::string> AskFileToSave(const FileQuestion& question) override;
    bool AskSelection(Selection& selection) override;
    bool AskRange(RangeQuestion& question) override;
    bool AskInputParams(InputParams& params) override;
    bool AskStartVals(StartVals& starts) override;
    bool AskContourRange(ContourRange& range) override;
    bool AskOptions(MinimiserOptions& options) override;
    bool AskAsciiWizard(AsciiWizard& wizard) override;
    bool AskListPicker(ListPicker& picker) override;
    bool AskNumberFormat(NumberFormatChoice& choice) override;
    bool AskFont(CellFont& font) override;
    bool AskNewDataSet(NewDataSet& wanted) override;
    void ShowHelp(const std::string& topic) override { helpShown.push_back(topic); }
};

/// A clipboard of the test's own.
class PlainClipboard : public IClipboard
{
public:
    std::string text;  ///< what other programs would see
    std::string exact; ///< the exact values beside a block of cells; empty for other text

    /// Another program copied `copied`.
    void Put(const std::string& copied) { Text(copied); }

    bool HasText() const override { return !text.empty(); }
    std::string Text() const override { return exact.empty() ? text : exact; }
    void Text(const std::string& copied) override
    {
        text = copied;
        exact.clear();
    }
    void Block(const std::string& displayed, const std::string& values) override
    {
        text = displayed;
        exact = values;
    }
};

/// A main window without a screen: it keeps what it is given.
class RecordingWindow : public IMainWindow
{
public:
    std::vector<std::string> status;
    std::vector<std::shared_ptr<ModelGraph>> graphs;
    std::vector<std::shared_ptr<ProjGraph>> projections;
    bool hourglass = false;
    bool reportShown = false;
    std::vector<std::string> events; ///< "ShowParameterReport", "AddModelGraph", ... in order
    std::vector<std::string> yields;
    std::unique_ptr<VELT_ContourPlot>
        nextPlot; ///< handed out by NewContourPlot; a plot that records otherwise

    void StatusText(const std::string& text) override;
    void HourglassOn() override;
    void HourglassOff() override;
    void UpDatePBar(double value) override;
    void AddModelGraph(std::shared_ptr<ModelGraph> graph) override;
    void AddProjGraph(std::shared_ptr<ProjGraph> graph) override;
    void ClearGraphs(bool histogramsOnly) override;
    void SetUpDataGrid() override;
    void EnableControls() override;
    void ShowParameterReport(const ParameterReport* report) override;
    std::unique_ptr<VELT_ContourPlot> NewContourPlot() override;
    void YieldToEvents() override;
};

/// A meter that is cancelled after a given number of steps (never without one).
class RecordingMeter : public IProgressMeter
{
public:
    std::vector<std::string> titles;
    int maximum = 0;
    int value = 0;
    std::optional<int> cancelAfter; ///< counts calls of Cancelled
    int looks = 0;

    void Start(const std::string& title, int maximum) override;
    void Value(int value) override;
    bool Cancelled() override;
    void Finish() override;
};

/// All the ports of one run, for a test.
struct Bench {
    ScriptedUser user;
    RecordingWindow window;
    RecordingMeter meter;
    RandomSource random{20261121};
    Run run{user, window, meter, random};
};
