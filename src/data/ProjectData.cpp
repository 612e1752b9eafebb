// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ProjectData.h"

#include "base/Checked.h"
#include "base/Text.h"
#include "base/Windows1252.h"
#include "data/ColumnConversions.h"

#include <algorithm>
#include <cstring>
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
        scenario.Stored(i, element.value, element.tag == kInt16 || element.tag == kEmpty);
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
    fit.FitName(record.FitName);
    fit.MethType(record.MethType);
    fit.FitOp(record.FitOp);
    fit.TheDate(record.TheDate);
    fit.TheTime(record.TheTime);
    fit.Start(record.Start);
    fit.TheEnd(record.TheEnd);
    return fit;
}

/// `name`, or `name` with the first number behind it that `taken` does not know, within `width` characters.
template <typename Taken>
std::string Numbered(const std::string& name, std::size_t width, const Taken& taken)
{
    std::string free = name;
    for (int number = 2; taken(free); ++number) {
        const std::string mark = " (" + std::to_string(number) + ")";
        free = Trim(PadString(name, width - mark.size())) + mark;
    }
    return free;
}

void TakeScenarios(clsVeltData& data, const std::vector<ScenarioRecord>& records)
{
    for (const ScenarioRecord& record : records) {
        clsProjScenario scenario = ScenarioOf(record);
        const std::string title =
            Numbered(record.Title, clsProjScenario::kTitleWidth,
                     [&](const std::string& t) { return data.ProjScenario(t) != nullptr; });
        if (title != record.Title)
            data.MarkChanged();
        scenario.Title(title);
        data.AddProjScenario(std::move(scenario), title);
    }
}

void TakeFits(clsVeltData& data, const std::vector<FitIndexRecord>& records)
{
    for (const FitIndexRecord& record : records) {
        clsFit fit = FitOf(record);
        const std::string name = Numbered(fit.FitName(), clsFit::kNameWidth,
                                          [&](const std::string& n) { return data.HasLoggedFit(n); });
        if (name != fit.FitName())
            data.MarkChanged();
        fit.FitName(name);
        data.AddLoggedFit(std::move(fit));
    }
}

/// All rows of the range are in use and toggled in.
void TakeRange(DataTable& table, const Header& header)
{
    const std::int32_t periods =
        checked::ToInt32(static_cast<double>(header.MaxTimeP) - header.MinTimeP + 1.0);
    table.minTimeP = header.MinTimeP;
    table.maxTimeP = header.MaxTimeP;
    table.timeInts = table.naPoints = table.nntPoints = table.origNAPoints = periods;
    table.ndPoints = checked::ToInt32(static_cast<double>(periods) + 1.0);
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
             (a.format(column) != b.format(column) || !SameValues(a.db(column), b.db(column)))))
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
           "another "
           "one.";
}
