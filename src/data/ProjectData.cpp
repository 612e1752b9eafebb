// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ProjectData.h"

#include "base/Checked.h"
#include "base/ForeignText.h"
#include "base/Text.h"
#include "base/Windows1252.h"
#include "data/ColumnConversions.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>

namespace
{
using namespace project_file;

/// The columns of a record into the table, without marking anything as changed. Those that do not follow in
/// the file are absent; their cells stay as they are.
void TakeColumns(DataTable& table, const DataRecord& record)
{
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        const auto& stored = record.columns[static_cast<std::size_t>(column - 1)];
        table.present(column) = stored.has_value();
        if (!stored)
            continue;
        table.format(column) = PadString(stored->ColFormat, clsVeltData::kFormatWidth);
        table.db(column) = stored->values;
    }
}

/// `error`, with what of the file brought it about.
VeltError Because(const VeltError& error, const std::string& what)
{
    return {error.number, error.description + ": " + what, "clsVeltData_Read"};
}

ScenarioRecord RecordOf(const clsProjScenario& scenario)
{
    ScenarioRecord record{.Title = scenario.Title(), .Vector = {}, .VecType = scenario.VecType()};
    for (int i = 1; i <= kVectorLength; ++i)
        record.Vector.push_back(
            {scenario.IsShort(i) ? kInt16 : kInt32, static_cast<double>(scenario.Vector(i))});
    return record;
}

clsProjScenario ScenarioOf(const ScenarioRecord& record)
{
    clsProjScenario scenario;
    scenario.Title(record.Title);
    scenario.VecType(record.VecType);
    for (int i = 1; i <= kVectorLength; ++i) {
        const TaggedNumber& element = record.Vector[static_cast<std::size_t>(i - 1)];
        try {
            scenario.Stored(i, element.value, element.tag == kInt16 || element.tag == kEmpty);
        } catch (const VeltError& error) {
            throw Because(error, "value " + std::to_string(i) + " of the scenario \"" +
                                     Quotable(record.Title) + "\" does not fit 32 bits.");
        }
    }
    return scenario;
}

FitIndexRecord RecordOf(const clsFit& fit)
{
    return {.Deleted = fit.Deleted(),
            .MethType = fit.MethType(),
            .FitOp = fit.FitOp(),
            .FitName = fit.FitName(),
            .TheDate = fit.TheDate(),
            .TheTime = fit.TheTime(),
            .Start = fit.Start(),
            .TheEnd = fit.TheEnd()};
}

clsFit FitOf(const FitIndexRecord& record)
{
    clsFit fit;
    fit.StoredDeleted(record.Deleted);
    fit.FitName(record.FitName);
    fit.MethType(record.MethType);
    fit.FitOp(record.FitOp);
    fit.TheDate(record.TheDate);
    fit.TheTime(record.TheTime);
    fit.Start(record.Start);
    fit.TheEnd(record.TheEnd);
    return fit;
}

/// `text` without the blanks behind it.
std::string WithoutPadding(const std::string& text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// Tells equal names apart. Each name goes on counting where it stopped, so that thousands of equal ones are
/// no work.
class Numbering
{
public:
    explicit Numbering(std::size_t width) : m_width(width) {}

    /// `name`, or `name` with the first number behind it that `taken` does not know, within the width.
    template <typename Taken>
    std::string Free(const std::string& name, const Taken& taken)
    {
        std::string free = name;
        for (int& number = m_next.try_emplace(Marked(name, 2), 2).first->second; taken(free); ++number)
            free = Marked(name, number);
        return free;
    }

private:
    std::string Marked(const std::string& name, int number) const
    {
        const std::string mark = "(" + std::to_string(number) + ")";
        const std::string kept = WithoutPadding(PadString(name, m_width - mark.size() - 1));
        return kept.empty() ? mark : kept + " " + mark;
    }

    std::size_t m_width;
    std::unordered_map<std::string, int> m_next; ///< by the name as it is numbered first
};

void TakeFits(clsVeltData& data, const std::vector<FitIndexRecord>& records)
{
    Numbering numbering(clsFit::kNameWidth);
    for (const FitIndexRecord& record : records) {
        clsFit fit = FitOf(record);
        const std::string name =
            numbering.Free(fit.FitName(), [&](const std::string& n) { return data.HasLoggedFit(n); });
        if (name != fit.FitName())
            data.MarkChanged();
        fit.FitName(name);
        data.AddLoggedFit(std::move(fit));
    }
}

/// Periods of the range and one more, as far as they can be counted in 32 bits.
void CountPeriods(DataTable& table)
{
    const std::int32_t steps = checked::ToInt32(static_cast<double>(table.maxTimeP) - table.minTimeP);
    const std::int32_t periods = checked::ToInt32(steps + 1.0);
    table.timeInts = table.naPoints = table.nntPoints = table.origNAPoints = periods;
    table.ndPoints = checked::ToInt32(periods + 1.0);
}

/// All rows of the range are in use and toggled in.
void TakeRange(DataTable& table, const Header& header)
{
    table.minTimeP = header.MinTimeP;
    table.maxTimeP = header.MaxTimeP;
    try {
        CountPeriods(table);
    } catch (const VeltError& error) {
        throw Because(error, "the time periods " + std::to_string(header.MinTimeP) + " to " +
                                 std::to_string(header.MaxTimeP) + " are too many.");
    }
    for (int row = 1; row <= table.ShownRows(); ++row)
        table.included(row) = table.toggledIn(row) = true;
}

/// Equality of the bits: a NaN in a file is a value like any other here.
bool SameValues(const DataTable::Series& a, const DataTable::Series& b)
{
    return std::memcmp(a.All().data(), b.All().data(), sizeof(float) * a.All().size()) == 0;
}

bool UserColumnsDiffer(const DataTable& a, const DataTable& b)
{
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        if (a.present(column) != b.present(column) ||
            (a.present(column) &&
             (Trim(a.format(column)) != Trim(b.format(column)) || !SameValues(a.db(column), b.db(column)))))
            return true;
    return false;
}
} // namespace

DataRecord DataRecordOf(const clsVeltData& data, bool ofFit)
{
    DataRecord record;
    for (int column = columns::kFirst; column <= columns::kLast; ++column)
        if (data.ColPresent(column) && (ofFit || !clsVeltData::DBSysOnly(column)))
            record.columns[static_cast<std::size_t>(column - 1)] =
                ColumnRecord{data.ColFormat(column), data.Column(column)};
    if (ofFit)
        record.ToggledIn = data.ToggledIn();
    record.loggedFits = data.NumLoggedFits();
    record.scenarios = data.NumProjScenarios();
    return record;
}

Project ProjectOf(const clsVeltData& data)
{
    Project project{.header = {.NumLoggedRuns = data.NumLoggedRuns(),
                               .NumScens = data.NumProjScenarios(),
                               .NumPts = data.NumPts(),
                               .DSDesc = Trim(data.DSDesc()),
                               .MinTimeP = data.MinTimeP(),
                               .MaxTimeP = data.MaxTimeP()},
                    .data = DataRecordOf(data, false),
                    .scenarios = {},
                    .fits = {}};
    for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i)
        project.scenarios.push_back(RecordOf(*data.ProjScenario(i)));
    for (std::int32_t i = 1; i <= data.NumLoggedFits(); ++i)
        project.fits.push_back(RecordOf(data.LoggedFit(i)));
    return project;
}

OpenedProject ReadProjectData(std::string_view file, Run& run)
{
    const Project project = ReadProject(file);
    OpenedProject opened{clsVeltData(run), std::nullopt};
    clsVeltData& data = opened.data;
    DataTable table;
    TakeRange(table, project.header);
    TakeColumns(table, project.data);
    data.DSDesc(project.header.DSDesc);
    data.NumPts(project.header.NumPts);
    data.NumScens(project.header.NumScens);
    data.Stored({.numLoggedRuns = project.header.NumLoggedRuns,
                 .loggedFits = project.data.loggedFits,
                 .projScens = project.data.scenarios});
    data.Table(std::move(table));
    data.MarkSaved();
    try {
        data.DoColumnConversions();
    } catch (const VeltError& error) {
        opened.failedConversion = error;
    }
    TakeScenarios(data, project.scenarios);
    TakeFits(data, project.fits);
    return opened;
}

void TakeScenarios(clsVeltData& data, const std::vector<ScenarioRecord>& records)
{
    Numbering numbering(clsProjScenario::kTitleWidth);
    for (const ScenarioRecord& record : records) {
        clsProjScenario scenario = ScenarioOf(record);
        const std::string title =
            numbering.Free(record.Title, [&](const std::string& t) { return data.ProjScens().Has(t); });
        if (title != record.Title)
            data.MarkChanged();
        scenario.Title(title);
        data.AddProjScenario(std::move(scenario), title);
    }
}

void TakeDataOfFit(clsVeltData& data, const DataRecord& record)
{
    DataTable table = data.Table();
    TakeColumns(table, record);
    const bool differs = UserColumnsDiffer(table, data.Table());
    ConvertColumns(table);
    if (record.ToggledIn)
        table.toggledIn = *record.ToggledIn;
    data.Table(std::move(table));
    data.Stored({.numLoggedRuns = data.NumLoggedRuns(),
                 .loggedFits = record.loggedFits,
                 .projScens = record.scenarios});
    if (differs)
        data.MarkChanged();
}

std::optional<std::string> RefusalOfName(std::string_view name)
{
    if (FitsWindows1252(name))
        return std::nullopt;
    return "A project can keep only the letters of Western European languages in a name. Please choose "
           "another one.";
}
