// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ImportText.h"

#include "base/Checked.h"
#include "base/NumberText.h"
#include "data/NumberFormat.h"
#include "data/clsVeltData.h"
#include "files/AsciiWizard.h"
#include "files/CsvText.h"
#include "files/ReadWholeFile.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace
{
static_assert(AsciiText::kMissing == double{clsVeltData::kMissing});

constexpr const char* kSource = "clsVeltDATA_IMportASCIIFile";

void EndUnless(bool goesOn)
{
    if (!goesOn)
        throw UserCancelled(kSource);
}

AsciiWizard NewWizard(const Run& run, const std::string& path, AsciiText table)
{
    std::array<std::string, AsciiWizard::kUserColumns> titles;
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        titles[static_cast<std::size_t>(column - 1)] = run.globals.ColumnDisplayNames(column);
    return {path, std::move(table), std::move(titles)};
}

std::string PeriodsOf(const clsVeltData& data)
{
    return "The time labels " + std::to_string(data.MinTimeP()) + " to " + std::to_string(data.MaxTimeP()) +
           " make " + std::to_string(data.TimeInts()) + " periods";
}

[[noreturn]] void RefuseRow(const std::string& sentence, std::size_t line = 0)
{
    throw ImportError(errors::kSubscript, "Subscript out of range", sentence, line);
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
        RefuseRow("The last time label, " + std::to_string(data.MaxTimeP()) + " in line " +
                      std::to_string(wizard.lines.back()) + ", is below the first, " +
                      std::to_string(data.MinTimeP()) + " in line " + std::to_string(wizard.lines.front()) +
                      ".",
                  wizard.lines.back());
    if (data.TimeInts() > clsVeltData::kRows)
        RefuseRow(PeriodsOf(data) + "; a table has room for " + std::to_string(clsVeltData::kRows) + ".");
}

/// Row r of the text goes to row r of the table, whatever the labels between the first and the last say.
void TakeColumn(clsVeltData& data, int column, const std::vector<double>& values,
                const std::vector<std::size_t>& lines)
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
            const std::size_t line = lines[index];
            throw ImportError(error.number, error.description,
                              "(line " + std::to_string(line) + ": a value is too large for a cell)", line);
        }
    }
}

void TakeAssignedColumns(clsVeltData& data, const AsciiWizard& wizard)
{
    for (int textColumn = 1; textColumn <= wizard.TextColumns(); ++textColumn) {
        const int column = wizard.enuUserColRef(textColumn);
        if (column == AsciiWizard::kNone)
            continue;
        const auto index = static_cast<std::size_t>(textColumn - 1);
        TakeColumn(data, column, wizard.collFlexData[index], wizard.lines);
        data.ColFormat(column, FixedFormat(wizard.decimals.at(index)));
    }
    for (int row = 1; row <= data.NAPoints(); ++row) {
        data.Included(row, true);
        data.ToggledIn(row, true);
    }
}

void CheckLabels(const AsciiWizard& wizard, IImportQuestions& questions)
{
    const auto timing = static_cast<std::size_t>(wizard.timingColumn - 1);
    if (const auto uneven = FindUnevenLabels(wizard.collFlexData.at(timing), wizard.lines))
        EndUnless(questions.TakesAsConsecutive(*uneven));
}

/// The steps behind the description.
void TakeTable(clsVeltData& data, const std::string& path, AsciiText table, IImportQuestions& questions)
{
    clsVeltData built(data.TheRun());
    built.DSDesc(std::move(table.description));
    built.DSFName(path);
    AsciiWizard wizard = NewWizard(data.TheRun(), path, std::move(table));
    EndUnless(questions.Assigns(wizard) && wizard.OK);
    TakePeriods(built, wizard); // what no answer could mend is refused before the question about the labels
    CheckLabels(wizard, questions);
    TakeAssignedColumns(built, wizard);
    built.DoColumnConversions();
    data = std::move(built);
}
} // namespace

std::string UnevenLabels::Sentence() const
{
    return "The time labels do not rise by one from row to row: in line " + std::to_string(line) + ", " +
           number_text::Plain(label) + " follows " + number_text::Plain(before) + ".";
}

std::optional<UnevenLabels> FindUnevenLabels(std::span<const double> labels,
                                             std::span<const std::size_t> lines)
{
    for (std::size_t row = 1; row < labels.size(); ++row) {
        if (std::nearbyint(labels[row]) != std::nearbyint(labels[row - 1]) + 1.0)
            return UnevenLabels{lines[row], labels[row - 1], labels[row]};
    }
    return {};
}

void ImportText(clsVeltData& data, const std::string& path, std::span<const std::uint8_t> bytes,
                IImportQuestions& questions)
{
    data = clsVeltData(data.TheRun());
    if (ReadAsciiDescription(bytes).empty())
        EndUnless(questions.GoesOnWithoutDescription());
    TakeTable(data, path, ReadAsciiText(bytes), questions);
}

void ImportCsv(clsVeltData& data, const std::string& path, std::span<const std::uint8_t> bytes,
               IImportQuestions& questions)
{
    data = clsVeltData(data.TheRun());
    ImportTable(data, path, ReadCsvText(bytes, path), questions);
}

void ImportTable(clsVeltData& data, const std::string& path, AsciiText table, IImportQuestions& questions)
{
    data = clsVeltData(data.TheRun());
    if (table.MissingDescription())
        EndUnless(questions.GoesOnWithoutDescription());
    TakeTable(data, path, std::move(table), questions);
}

void clsVeltData::ImportASCIIFile(const std::string& path, IImportQuestions& questions)
{
    *this = clsVeltData(m_run);
    ImportText(*this, path, ReadWholeFile(path, CheckTextSize), questions);
}

void clsVeltData::ImportCSVFile(const std::string& path, IImportQuestions& questions)
{
    *this = clsVeltData(m_run);
    ImportCsv(*this, path, ReadWholeFile(path, CheckTextSize), questions);
}
