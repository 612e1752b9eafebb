// SPDX-License-Identifier: GPL-3.0-or-later
// How the core reaches the outside. Each interface is implemented by the desktop and by a scripted user.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class ModelGraph;
class ParameterReport;
class ProjGraph;
class VELT_ContourPlot;
struct AsciiWizard;
struct CellFont;
struct ContourRange;
struct InputParams;
struct MinimiserOptions;
struct NewDataSet;
struct NumberFormatChoice;
struct StartVals;

enum class Icon { None, Information, Question, Exclamation, Critical };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class Answer { Ok, Cancel, Yes, No, Retry };

struct Message {
    std::string text;
    Icon icon = Icon::Exclamation;
    Buttons buttons = Buttons::Ok;
    std::string title = "VELT 3.0";
    /// Not empty: the box has a Help button that opens this topic (base/HelpTopics.h) and leaves the box as
    /// it is.
    std::string helpTopic = {};
};

/// One choice out of a list; `chosen` counts from 1 and is 0 before the user has chosen.
struct Selection {
    std::string caption;
    std::string prompt;
    std::vector<std::string> items = {};
    std::size_t chosen = 0;
};

/// Any number of choices out of a list, as two lists side by side.
struct ListPicker {
    struct Item {
        std::string text;
        bool selected = false;
    };
    std::string caption;
    std::string prompt;
    std::string leftCaption; ///< of those that are not selected
    std::string rightCaption;
    std::vector<Item> items = {};
};

/// Two levels with their labels.
struct RangeQuestion {
    std::string caption;
    std::string prompt;
    std::string lowLabel;
    std::string highLabel;
    double low = 0.0;
    double high = 0.0;
};

/// A file to be chosen.
struct FileQuestion {
    std::string filter; ///< as "Text (*.txt)", several parted by ";;"
    // For a file to be written:
    std::string title = {};
    std::string suggestion = {}; ///< name or path
    std::string ending = {};     ///< put behind a name without one, "vl3"
};

/// Questions to the person at the desk. A dialog is record in, record out: the operation fills its form from
/// the record, answers true for OK with the record changed, and false for Cancel with the record untouched.
class IUser
{
public:
    virtual ~IUser() = default;
    virtual Answer Show(const Message& message) = 0;
    /// The text typed; nothing for Cancel.
    virtual std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                                const std::string& suggestion) = 0;
    /// The full path of an existing file; nothing for Cancel.
    virtual std::optional<std::string> AskFileToOpen(const FileQuestion& question) = 0;
    /// The full path of a file to write, which the user has agreed to replace if it exists; nothing for
    /// Cancel.
    virtual std::optional<std::string> AskFileToSave(const FileQuestion& question) = 0;
    virtual bool AskSelection(Selection& selection) = 0;
    virtual bool AskRange(RangeQuestion& question) = 0;
    virtual bool AskInputParams(InputParams& params) = 0;
    virtual bool AskStartVals(StartVals& starts) = 0;
    virtual bool AskContourRange(ContourRange& range) = 0;
    virtual bool AskOptions(MinimiserOptions& options) = 0;
    virtual bool AskAsciiWizard(AsciiWizard& wizard) = 0;
    virtual bool AskListPicker(ListPicker& picker) = 0;
    virtual bool AskNumberFormat(NumberFormatChoice& choice) = 0;
    virtual bool AskFont(CellFont& font) = 0;
    virtual bool AskNewDataSet(NewDataSet& wanted) = 0;
    /// Opens the manual at a topic. Whatever is on the screen stays, and is not waited for.
    virtual void ShowHelp(const std::string& topic) = 0;
};

/// The manual on the screen.
class IHelpViewer
{
public:
    /// A window with a property of this name opens that topic on F1; others are known by their names.
    static constexpr const char* kTopicProperty = "helpTopic";

    virtual ~IHelpViewer() = default;
    /// Opens the page of a topic (base/HelpTopics.h), beside and not in place of a dialog that is open; says
    /// why when there is no manual.
    virtual void ShowTopic(const std::string& topic) = 0;
};

/// The text that programs hand to one another.
class IClipboard
{
public:
    virtual ~IClipboard() = default;
    virtual bool HasText() const = 0;
    /// What a grid put there comes back with its exact values, other text as it stands.
    virtual std::string Text() const = 0;
    virtual void Text(const std::string& text) = 0;
    /// A block of cells (parted by tabs, each row ended by CR LF): as displayed, which is what other programs
    /// see as text, and beside it with the exact values.
    virtual void Block(const std::string& displayed, const std::string& exact) = 0;
};

/// What the fit workflow asks of the main window.
class IMainWindow
{
public:
    virtual ~IMainWindow() = default;
    /// Writes the status line and lets pending window events run.
    virtual void StatusText(const std::string& text) = 0;
    virtual void HourglassOn() = 0;
    virtual void HourglassOff() = 0;
    /// Accepts a progress value; the status line has no bar, callers may call it freely.
    virtual void UpDatePBar(double value) = 0;
    virtual void AddModelGraph(std::shared_ptr<ModelGraph> graph) = 0;
    virtual void AddProjGraph(std::shared_ptr<ProjGraph> graph) = 0;
    virtual void ClearGraphs(bool histogramsOnly) = 0;
    virtual void SetUpDataGrid() = 0;
    virtual void EnableControls() = 0;
    /// Shows the report with this content, or hides it when there is none.
    virtual void ShowParameterReport(const ParameterReport* report) = 0;
    /// A window for one likelihood surface; it lives until the user closes it or the graphs are cleared.
    virtual std::unique_ptr<VELT_ContourPlot> NewContourPlot() = 0;
    /// Gives the event queue its turn, so that Cancel and the closing of windows take effect.
    virtual void YieldToEvents() = 0;
};

/// The meter of long work. The loops call Start once, Value after each step, and look at Cancelled.
class IProgressMeter
{
public:
    virtual ~IProgressMeter() = default;
    virtual void Start(const std::string& title, int maximum) = 0;
    virtual void Value(int value) = 0;
    virtual bool Cancelled() = 0;
    virtual void Finish() = 0;
};

/// A document on its way to the printer, in lines of a font whose characters are all equally wide. Every
/// operation raises PrinterFault when the printer refuses; a document that is let go without End is dropped.
class IPrintout
{
public:
    /// A tab in a line goes on at the next multiple of so many characters, which is behind every label of the
    /// report.
    static constexpr std::size_t kTabStop = 24;

    virtual ~IPrintout() = default;
    /// Widths are in units of the printer's own.
    virtual double TextWidth(const std::string& line) const = 0;
    virtual double PrintableWidth() const = 0; ///< between the margins
    /// Where the next line begins, from the left margin on; the lines behind it begin at the margin again.
    virtual void CurrentX(double x) = 0;
    virtual void Bold(bool on) = 0; ///< of the lines to come; off at first. It changes no width.
    /// Prints `line` and goes to the next. On a page that has no room left it stands on the next page.
    virtual void Print(const std::string& line) = 0;
    virtual void NewPage() = 0;
    virtual void End() = 0; ///< the document is complete; the last operation
};

/// The printer that the user chooses for a document.
class IPrinter
{
public:
    virtual ~IPrinter() = default;
    /// A new document, which must not outlive the printer. Null when the user thinks better of it.
    /// \throws PrinterFault there is none to print on
    virtual std::unique_ptr<IPrintout> Open(const std::string& title) = 0;
};

/// Uniform numbers on [0, 1).
class IRandomSource
{
public:
    virtual ~IRandomSource() = default;
    virtual void Randomize() = 0; ///< a new seed from the clock, unless the source was given a fixed one
    virtual double Next() = 0;
};
