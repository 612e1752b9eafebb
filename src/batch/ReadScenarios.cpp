// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ReadScenarios.h"

#include "base/FileErrors.h"
#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "base/Windows1252.h"
#include "batch/BatchFailure.h"
#include "data/ImportText.h"
#include "data/ProjectData.h"
#include "data/ScenarioSheet.h"
#include "data/clsVeltData.h"
#include "files/CsvReader.h"
#include "files/ReadWholeFile.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace
{
const std::vector<std::string> kHeadings{"Scenario", "Units", "Time", "Value"};

[[noreturn]] void Refuse(std::size_t line, const std::string& sentence)
{
    throw BatchFailure(ExitStatus::BadData, "Line " + std::to_string(line) + ": " + sentence);
}

std::int32_t VecTypeOf(const CsvCell& cell)
{
    const std::vector<std::string> units = ScenarioSheet::Units();
    const auto found = std::find(units.begin(), units.end(), cell.text);
    if (found == units.end())
        Refuse(cell.line,
               "the units \"" + Quotable(cell.text) +
                   "\" are none of \"Effort\", \"Total Catch Weight\" and \"Total Catch Numbers\".");
    return static_cast<std::int32_t>(found - units.begin());
}

std::int32_t TimeOf(const CsvCell& cell)
{
    const auto time = number_text::Parse(cell.text);
    if (!time || *time != std::nearbyint(*time) ||
        std::fabs(*time) > static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        Refuse(cell.line, "the time \"" + Quotable(cell.text) + "\" is no whole number.");
    return static_cast<std::int32_t>(*time);
}

double ValueOf(const CsvCell& cell)
{
    const auto value = number_text::Parse(cell.text);
    if (!value)
        Refuse(cell.line, "the value \"" + Quotable(cell.text) + "\" is not a number.");
    if (*value < 0.0)
        Refuse(cell.line, "the value " + cell.text + " is negative.");
    if (std::nearbyint(*value) > static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        Refuse(cell.line,
               "the value " + cell.text + " is too large: scenarios hold whole numbers up to 2147483647.");
    return *value;
}

void CheckTitle(const CsvCell& cell, const std::vector<ScenarioFile::Scenario>& earlier)
{
    if (cell.text.empty())
        Refuse(cell.line, "the scenario has no name.");
    if (cell.text == "Fit")
        Refuse(cell.line, "a scenario cannot be named \"Fit\": that is the fitted line.");
    if (Trim(PadString(cell.text, clsProjScenario::kTitleWidth)) != cell.text)
        Refuse(cell.line, "the name \"" + Quotable(cell.text) + "\" is longer than " +
                              std::to_string(clsProjScenario::kTitleWidth) + " characters.");
    if (const auto refusal = RefusalOfName(cell.text))
        Refuse(cell.line, *refusal);
    for (const ScenarioFile::Scenario& scenario : earlier)
        if (scenario.title == cell.text)
            Refuse(cell.line, "the rows of scenario \"" + Quotable(cell.text) +
                                  "\" stand apart; it began in line " + std::to_string(scenario.line) + ".");
}

void Begin(ScenarioFile& file, const CsvRow& row)
{
    CheckTitle(row.cells[0], file.scenarios);
    if (file.scenarios.size() == static_cast<std::size_t>(ScenarioSheet::kMostScenarios))
        Refuse(row.line, "there can be " + std::to_string(ScenarioSheet::kMostScenarios) + " scenarios.");
    file.scenarios.push_back({.title = row.cells[0].text,
                              .vecType = VecTypeOf(row.cells[1]),
                              .firstTime = TimeOf(row.cells[2]),
                              .line = row.line,
                              .values = {}});
}

void Add(ScenarioFile& file, const CsvRow& row)
{
    if (file.scenarios.empty() || file.scenarios.back().title != row.cells[0].text)
        Begin(file, row);
    ScenarioFile::Scenario& scenario = file.scenarios.back();
    if (VecTypeOf(row.cells[1]) != scenario.vecType)
        Refuse(row.line, "scenario \"" + Quotable(scenario.title) + "\" changes its units.");
    const std::int64_t due =
        std::int64_t{scenario.firstTime} + static_cast<std::int64_t>(scenario.values.size());
    if (TimeOf(row.cells[2]) != due)
        Refuse(row.line,
               "the time " + row.cells[2].text + " is out of order; " + std::to_string(due) + " is due.");
    scenario.values.push_back(ValueOf(row.cells[3]));
}

void CheckLengths(const std::vector<ScenarioFile::Scenario>& scenarios)
{
    const ScenarioFile::Scenario& first = scenarios.front();
    for (const ScenarioFile::Scenario& other : scenarios)
        if (other.values.size() != first.values.size())
            Refuse(other.line, "scenario \"" + Quotable(other.title) + "\" has " +
                                   std::to_string(other.values.size()) + " periods and \"" +
                                   Quotable(first.title) + "\" " + std::to_string(first.values.size()) +
                                   "; all have as many.");
}

ScenarioFile Parsed(std::string_view text)
{
    CsvReader reader(text);
    if (reader.Headings() != kHeadings)
        Refuse(1, "the headings are not Scenario,Units,Time,Value.");
    ScenarioFile file;
    CsvRow row;
    while (reader.Next(row))
        Add(file, row);
    CheckLengths(file.scenarios);
    return file;
}
} // namespace

ScenarioFile ReadScenarios(std::string_view text, const std::string& path)
{
    try {
        ScenarioFile file = Parsed(text);
        file.path = path;
        return file;
    } catch (const BatchFailure& failure) {
        throw BatchFailure(failure.status, Quotable(path) + ": " + failure.message);
    } catch (const ImportError& error) { // the reader's own sentence, with the line
        throw BatchFailure(ExitStatus::BadData, Quotable(path) + ": " + error.place);
    }
}

ScenarioFile ReadScenarioFile(const std::string& path)
{
    try {
        const std::vector<std::uint8_t> bytes = ReadWholeFile(path, CheckTextSize);
        return ReadScenarios({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, path);
    } catch (const FileError& error) {
        throw BatchFailure(ExitStatus::BadData, Quotable(path) + ": " + error.description +
                                                    (error.reason.empty() ? "" : "\n" + error.reason));
    } catch (const VeltError& error) {
        throw BatchFailure(ExitStatus::BadData, Quotable(path) + ": " + error.description);
    }
}

void TakeScenarios(clsVeltData& data, const ScenarioFile& file)
{
    const auto refuse = [&](std::size_t line, const std::string& sentence) {
        throw BatchFailure(ExitStatus::BadData,
                           Quotable(file.path) + ": Line " + std::to_string(line) + ": " + sentence);
    };
    const std::int64_t due = std::int64_t{data.MinTimeP()} + data.NAPoints();
    const std::size_t periods = file.scenarios.front().values.size();
    if (static_cast<std::size_t>(data.NAPoints()) + periods > clsProjScenario::kMostPeriods)
        refuse(file.scenarios.front().line, std::to_string(data.NAPoints()) + " periods of data and " +
                                                std::to_string(periods) +
                                                " future periods are too many; together they can be " +
                                                std::to_string(clsProjScenario::kMostPeriods) + ".");
    data.ProjScens() = {};
    data.NumPts(static_cast<std::int32_t>(periods));
    for (const ScenarioFile::Scenario& from : file.scenarios) {
        if (from.firstTime != due)
            refuse(from.line, "scenario \"" + Quotable(from.title) + "\" begins at " +
                                  std::to_string(from.firstTime) + "; the period behind the data is " +
                                  std::to_string(due) + ".");
        clsProjScenario scenario;
        scenario.Title(from.title);
        scenario.VecType(from.vecType);
        for (std::size_t k = 0; k < periods; ++k)
            scenario.Vector(data.NAPoints() + static_cast<int>(k) + 1, from.values[k]);
        data.AddProjScenario(std::move(scenario), from.title);
    }
}
