// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/WriteJson.h"

#include <nlohmann/json.hpp>

namespace
{
using Json = nlohmann::ordered_json; // keys in the order written

template <typename T>
Json OrNull(const std::optional<T>& value)
{
    return value ? Json(static_cast<double>(*value)) : Json(nullptr);
}

Json Named(const std::vector<NamedValue>& values)
{
    Json object = Json::object();
    for (const auto& [name, value] : values)
        object[name] = value;
    return object;
}

Json PeriodObject(const FitTables::Period& period)
{
    return {{"Time", period.time},
            {"Included", period.included},
            {"ToggledIn", period.toggledIn},
            {"Effort", OrNull(period.effort)},
            {"ObsCPUE", OrNull(period.obsCPUE)},
            {"ExpCPUE", OrNull(period.expCPUE)},
            {"ObsCatch", OrNull(period.obsCatch)},
            {"ExpCatch", OrNull(period.expCatch)},
            {"Nt", OrNull(period.nt)},
            {"FittedVec", OrNull(period.fittedVec)},
            {"ResidVec", OrNull(period.residVec)}};
}

Json Series(const FitTables& tables)
{
    Json series = Json::array();
    for (const FitTables::Period& period : tables.series)
        series.push_back(PeriodObject(period));
    FitTables::Period behind;
    behind.time = tables.timeAfter;
    behind.nt = tables.ntAfter;
    Json after = PeriodObject(behind);
    after["Included"] = nullptr; // the population behind the last period; there is no such row
    after["ToggledIn"] = nullptr;
    series.push_back(std::move(after));
    return series;
}

Json Intervals(const FitTables& tables)
{
    if (tables.intervals.empty())
        return nullptr;
    Json object = Json::object();
    for (const auto& [name, low, high] : tables.intervals)
        object[name] = Json::array({low, high});
    return object;
}

Json Projections(const FitTables& tables)
{
    if (tables.projections.empty())
        return nullptr;
    Json array = Json::array();
    for (const FitTables::Projection& projection : tables.projections) {
        Json series = Json::array();
        for (const FitTables::ProjectedPoint& point : projection.series) {
            Json entry{{"Time", point.time}, {"Population", point.population}};
            if (point.low) {
                entry["Low"] = OrNull(point.low);
                entry["High"] = OrNull(point.high);
            }
            series.push_back(std::move(entry));
        }
        Json object{{"Scenario", projection.scenario}};
        if (projection.units)
            object["Units"] = *projection.units;
        object["Series"] = std::move(series);
        array.push_back(std::move(object));
    }
    return array;
}

Json Remarks(const std::vector<Remark>& remarks)
{
    Json array = Json::array();
    for (const auto& [code, text] : remarks)
        array.push_back({{"Code", code}, {"Text", text}});
    return array;
}

std::string Text(const Json& object)
{
    return object.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}
} // namespace

std::string JsonOf(const FitTables& tables)
{
    return Text({{"Status", "ok"},
                 {"Model", tables.model},
                 {"ErrorModel", tables.errorModel},
                 {"Inputs",
                  {{"M", tables.M},
                   {"InitialProportion", tables.InitialProportion},
                   {"LAG", tables.LAG},
                   {"Z", tables.Z}}},
                 {"InitEsts", Named(tables.details.initEsts)},
                 {"Estimates", Named(tables.estimates)},
                 {"Var", tables.details.var},
                 {"RSqr", tables.rSqr},
                 {"Objective", OrNull(tables.details.objective)},
                 {"Evaluations", tables.details.evaluations},
                 {"Series", Series(tables)},
                 {"ConfidenceIntervals", Intervals(tables)},
                 {"Projections", Projections(tables)},
                 {"Remarks", Remarks(tables.remarks)}});
}

std::string JsonOf(const BatchFailure& failure)
{
    return Text({{"Status", "failed"},
                 {"Excuse", failure.excuse},
                 {"Message", failure.message},
                 {"Remarks", Remarks(failure.remarks)}});
}
