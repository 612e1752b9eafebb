// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/WriteCsv.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace
{
/// The shortest text that reads back as the same value; nothing for one that is not finite.
template <typename T>
std::string Cell(T value)
{
    if (!std::isfinite(value))
        return {};
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

template <typename T>
std::string Cell(const std::optional<T>& value)
{
    return value ? Cell(*value) : std::string();
}

std::string EstimatesTable(const FitTables& tables)
{
    std::string text = "parameter,value\n";
    for (const auto& [name, value] : tables.estimates)
        text += name + "," + Cell(static_cast<float>(value)) + "\n"; // the report's values are floats
    text += "Var," + Cell(tables.details.var) + "\nRSqr," + Cell(tables.rSqr) + "\n";
    return text + "Objective," + Cell(tables.details.objective) + "\n";
}

std::string SeriesTable(const FitTables& tables)
{
    std::string text =
        "Time,Included,ToggledIn,Effort,ObsCPUE,ExpCPUE,ObsCatch,ExpCatch,Nt,FittedVec,ResidVec\n";
    for (const FitTables::Period& p : tables.series) {
        text += std::to_string(p.time) + (p.included ? ",1" : ",0") + (p.toggledIn ? ",1" : ",0");
        for (const auto& value :
             {p.effort, p.obsCPUE, p.expCPUE, p.obsCatch, p.expCatch, p.nt, p.fittedVec, p.residVec})
            text += "," + Cell(value);
        text += "\n";
    }
    return text + std::to_string(tables.timeAfter) + ",,,,,,,," + Cell(tables.ntAfter) + ",,\n";
}

std::string IntervalsTable(const FitTables& tables)
{
    std::string text = "parameter,low,high\n";
    for (const auto& [name, low, high] : tables.intervals)
        text += name + "," + Cell(low) + "," + Cell(high) + "\n";
    return text;
}

std::string ReplicatesTable(const FitTables& tables)
{
    std::string text = "replicate";
    for (const FitTables::Replicates& parameter : tables.replicates)
        text += "," + parameter.name;
    text += "\n";
    for (std::size_t n = 0; n < tables.replicates.front().values.size(); ++n) {
        text += std::to_string(n + 1);
        for (const FitTables::Replicates& parameter : tables.replicates)
            text += "," + Cell(parameter.values[n]);
        text += "\n";
    }
    return text;
}

/// A text as a cell; one that could be mistaken stands in double quotes.
std::string TextCell(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

std::string ProjectionsTable(const FitTables& tables)
{
    std::string text = "Scenario,Units,Time,Population,Low,High\n";
    for (const FitTables::Projection& projection : tables.projections)
        for (const FitTables::ProjectedPoint& point : projection.series)
            text += TextCell(projection.scenario) + "," + projection.units.value_or("") + "," +
                    std::to_string(point.time) + "," + Cell(point.population) + "," + Cell(point.low) + "," +
                    Cell(point.high) + "\n";
    return text;
}

const char* NameOf(ContourMark mark)
{
    switch (mark) {
    case ContourMark::Start1:
        return "start1";
    case ContourMark::Start2:
        return "start2";
    case ContourMark::Start3:
        return "start3";
    case ContourMark::Final:
        return "final";
    }
    return "";
}
} // namespace

std::vector<ResultFile> CsvFilesOf(const FitTables& tables)
{
    std::vector<ResultFile> files{{"estimates.csv", EstimatesTable(tables)},
                                  {"series.csv", SeriesTable(tables)}};
    if (!tables.intervals.empty()) {
        files.push_back({"intervals.csv", IntervalsTable(tables)});
        files.push_back({"replicates.csv", ReplicatesTable(tables)});
    }
    if (!tables.projections.empty())
        files.push_back({"projections.csv", ProjectionsTable(tables)});
    return files;
}

std::vector<ResultFile> CsvFilesOf(const ContourRecord& contours)
{
    const ContourSurface& surface = contours.surface;
    std::string grid = surface.xName + "," + surface.yName + ",Objective\n";
    for (std::size_t i = 0; i < surface.x.size(); ++i)
        for (std::size_t j = 0; j < surface.y.size(); ++j) {
            const double z = surface.z[i][j];
            const bool valid = z <= surface.zMax;
            grid += Cell(surface.x[i]) + "," + Cell(surface.y[j]) + "," + (valid ? Cell(z) : "") + "\n";
        }
    std::string path = "kind," + surface.xName + "," + surface.yName + "\n";
    for (const ContourRecord::Mark& mark : contours.marks)
        path += std::string(NameOf(mark.kind)) + "," + Cell(mark.x) + "," + Cell(mark.y) + "\n";
    for (const ContourRecord::Step& step : contours.path)
        path += "step," + Cell(step.toX) + "," + Cell(step.toY) + "\n";
    return {{"contours.csv", std::move(grid)}, {"contour_path.csv", std::move(path)}};
}
