// SPDX-License-Identifier: GPL-3.0-or-later
// A text file of periods becomes a data set with the help of the import wizard.
#include "base/Checked.h"
#include "base/FileErrors.h"
#include "base/StringTable.h"
#include "data/clsVeltData.h"
#include "files/AsciiText.h"
#include "files/AsciiWizard.h"
#include "files/ReadWholeFile.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr const char* kSource = "clsVeltDATA_IMportASCIIFile";

Message ImportBox(std::string text, Buttons buttons)
{
    return {.text = std::move(text), .buttons = buttons, .title = LoadResString(1302)};
}

/// The description of the file; every answer but Yes to a missing one ends the import.
std::string DescriptionOrQuestion(Run& run, std::span<const std::uint8_t> bytes)
{
    std::string description = ReadAsciiDescription(bytes);
    if (description.empty() &&
        run.reporter.Show(ImportBox("The File contains no file description, do you wish to continue?",
                                    Buttons::YesNoCancel)) != Answer::Yes)
        throw UserCancelled(kSource);
    return description;
}

AsciiWizard NewWizard(const Run& run, const std::string& path, AsciiText text)
{
    std::array<std::string, AsciiWizard::kUserColumns> titles;
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        titles[static_cast<std::size_t>(column - 1)] = run.globals.ColumnDisplayNames(column);
    return {path, std::move(text.headings), std::move(text.columns), std::move(titles)};
}

std::string PeriodsOf(const clsVeltData& data)
{
    return "The time labels " + std::to_string(data.MinTimeP()) + " to " + std::to_string(data.MaxTimeP()) +
           " make " + std::to_string(data.TimeInts()) + " periods";
}

[[noreturn]] void RefuseRow(const std::string& sentence)
{
    throw ImportError(errors::kSubscript, "Subscript out of range", sentence);
}

/// The labels of the timing column become the range of periods.
void TakePeriods(clsVeltData& data, const AsciiWizard& wizard)
{
    data.MinTimeP(wizard.intMinTimeP);
    data.MaxTimeP(wizard.intMaxTimeP);
    data.TimeInts(data.MaxTimeP() - data.MinTimeP() + 1);
    data.NAPoints(data.TimeInts());
    data.OrigNAPoints(data.TimeInts());
    data.NDPoints(data.NAPoints() + 1);
    if (data.TimeInts() < 1)
        RefuseRow("The last time label, " + std::to_string(data.MaxTimeP()) + ", is below the first, " +
                  std::to_string(data.MinTimeP()) + ".");
    if (data.TimeInts() > clsVeltData::kRows)
        RefuseRow(PeriodsOf(data) + "; a table has room for " + std::to_string(clsVeltData::kRows) + ".");
}

/// Row r of the text goes to row r of the table, whatever the labels between the first and the last say.
void TakeColumn(clsVeltData& data, int column, const std::vector<double>& values)
{
    data.ColPresent(column, true);
    for (int row = 1; row <= data.TimeInts(); ++row) {
        const auto index = static_cast<std::size_t>(row - 1);
        if (index >= values.size())
            RefuseRow(PeriodsOf(data) + ", but the file holds " + std::to_string(values.size()) +
                      " rows of values.");
        try {
            data.DB(column, row, checked::ToFloat(values[index]));
        } catch (const VeltError& error) {
            const std::size_t line = index + 3; // behind the description and the headings
            throw ImportError(error.number, error.description,
                              "(line " + std::to_string(line) + ": a value is too large for a cell)", line);
        }
    }
}

void TakeAssignedColumns(clsVeltData& data, const AsciiWizard& wizard)
{
    for (int textColumn = 1; textColumn <= wizard.TextColumns(); ++textColumn) {
        const int column = wizard.enuUserColRef(textColumn);
        if (column != AsciiWizard::kNone)
            TakeColumn(data, column, wizard.collFlexData[static_cast<std::size_t>(textColumn - 1)]);
    }
    for (int row = 1; row <= data.NAPoints(); ++row) {
        data.Included(row, true);
        data.ToggledIn(row, true);
    }
}

/// The import into `data`, a new data set. \throws VeltError when it cannot be done
void Import(clsVeltData& data, const std::string& path)
{
    Run& run = data.TheRun();
    const std::vector<std::uint8_t> bytes = ReadWholeFile(path, CheckTextSize);
    data.DSDesc(DescriptionOrQuestion(run, bytes));
    data.DSFName(path);
    AsciiWizard wizard = NewWizard(run, path, ReadAsciiText(bytes));
    if (!run.user.AskAsciiWizard(wizard) || !wizard.OK)
        throw UserCancelled(kSource);
    TakePeriods(data, wizard);
    TakeAssignedColumns(data, wizard);
    data.DoColumnConversions();
}

/// Tells the user what went wrong. \return whether to try the import again
bool RetryAfter(Run& run, const VeltError& error, const std::string& path)
{
    if (error.IsUserCancel()) {
        run.reporter.HandleError(error, kSource);
        return false;
    }
    const auto* const placed = dynamic_cast<const ImportError*>(&error);
    const std::string place = placed != nullptr ? placed->place : std::string();
    // The unknown numbers of the file errors would only hear of "an unidentified error".
    if (FindFileError(error.number) != nullptr)
        return FileErrors(error.number, run.reporter, placed != nullptr ? place : path) ==
               FileErrorDecision::Retry;
    run.reporter.Show(ImportBox(error.description + (place.empty() ? "" : "\n" + place), Buttons::Ok));
    return false;
}
} // namespace

bool clsVeltData::ImportASCIIFile(const std::string& path)
{
    Run& run = m_run;
    for (;;) {
        clsVeltData built(run);
        try {
            Import(built, path);
            *this = std::move(built);
            return true;
        } catch (const VeltError& error) {
            *this = clsVeltData(run);
            if (!RetryAfter(run, error, path))
                return false;
        }
    }
}
