// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/InspectProject.h"

#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "base/modVeltGlobals.h"
#include "batch/ProjectBytes.h"
#include "data/Columns.h"
#include "files/ProjectRecords.h"
#include "models/ModelTable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace
{
using Json = nlohmann::ordered_json;
using namespace project_file;

struct Opened {
    std::string bytes;
    Project project;
};

Opened Open(const std::string& path)
{
    Opened opened{ProjectBytes(path), {}};
    try {
        opened.project = ReadProject(opened.bytes);
    } catch (const RecordError& error) {
        RefuseFile(path, error.description);
    }
    return opened;
}

const modVeltGlobals::Globals& Texts()
{
    static const modVeltGlobals::Globals kTexts = [] {
        modVeltGlobals::Globals texts;
        modVeltGlobals::CacheStrings(texts);
        return texts;
    }();
    return kTexts;
}

std::string ModelWord(std::int32_t number)
{
    const bool known = number >= 1 && number <= static_cast<std::int32_t>(model_table::All().size());
    return known ? std::string(model_table::Of(number).word) : "model " + std::to_string(number);
}

std::string ErrorWord(std::int32_t number)
{
    static constexpr std::array<const char*, 4> kWords{"ls", "log", "gamma", "wls"};
    return number >= 1 && number <= 4 ? kWords.at(static_cast<std::size_t>(number - 1))
                                      : "error model " + std::to_string(number);
}

std::string UnitsWord(std::int32_t vecType)
{
    static constexpr std::array<const char*, 3> kWords{"Effort", "Total Catch Weight", "Total Catch Numbers"};
    return vecType >= 0 && vecType <= 2 ? kWords.at(static_cast<std::size_t>(vecType))
                                        : "units " + std::to_string(vecType);
}

/// A date in days since 1899-12-30 and its time as "2026-11-21 10:30"; empty for an impossible one.
std::string MomentText(double date, double time)
{
    constexpr double kUnixDay = 25569.0;
    constexpr double kMostDays = 2958465.0;
    if (!(date >= 0.0 && date <= kMostDays) || !std::isfinite(time))
        return {};
    const double seconds = (std::floor(date) - kUnixDay + (time - std::floor(time))) * 86400.0;
    const auto moment = static_cast<std::time_t>(std::llround(seconds));
    std::tm parts{};
    gmtime_r(&moment, &parts); // the days are local already
    std::array<char, 40> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts)};
}

Json Number(double value)
{
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

template <typename Values>
Json Numbers(const Values& values)
{
    Json array = Json::array();
    for (const auto value : values)
        array.push_back(Number(static_cast<double>(value)));
    return array;
}

Json Open(const TaggedNumber& number)
{
    if (number.tag == kEmpty)
        return nullptr;
    return number.tag == kInt16 || number.tag == kInt32 ? Json(static_cast<std::int64_t>(number.value))
                                                        : Number(number.value);
}

Json Open(const TaggedArray& array)
{
    Json values = Json::array();
    for (const TaggedNumber& number : array)
        values.push_back(Open(number));
    return values;
}

Json Open(const std::optional<TaggedArray>& array)
{
    return array ? Open(*array) : Json(nullptr);
}

Json JsonOf(const DataRecord& data)
{
    Json columns = Json::object();
    for (int column = 1; column <= kColumns; ++column)
        if (const auto& stored = data.columns.at(static_cast<std::size_t>(column - 1)))
            columns[Texts().ColumnFileNames(column)] = {{"ColFormat", stored->ColFormat},
                                                        {"Values", Numbers(stored->values)}};
    Json json{{"Columns", std::move(columns)}};
    if (data.ToggledIn) {
        Json toggles = Json::array();
        for (const bool in : *data.ToggledIn)
            toggles.push_back(in);
        json["ToggledIn"] = std::move(toggles);
    }
    return json;
}

Json JsonOf(const ModelRecord& model, std::int32_t number)
{
    Json estimates = Json::array();
    for (const double value : model.FinalEsts)
        estimates.push_back(Number(value));
    if (number == 1 || number == 3)
        estimates.erase(3);
    return {{"FinalEsts", std::move(estimates)},
            {"InitDep", Number(model.InitDep)},
            {"Mort", Number(model.Mort)},
            {"LAG", model.LAG},
            {"RSqr", Number(model.RSqr)},
            {"Z", Open(model.Z)},
            {"IsBSDone", model.IsBSDone},
            {"GammaBeta", Number(model.GammaBeta)},
            {"GammaNu", Number(model.GammaNu)},
            {"FitOp", model.FitOp},
            {"QValue", Number(model.QValue)},
            {"Fixed1", model.Fixed1},
            {"Fixed2", model.Fixed2},
            {"PlotEvaluations", model.PlotEvaluations},
            {"SetStartingEsts", model.SetStartingEsts},
            {"StartEstKind", model.StartEstKind},
            {"UsingNosFlag", model.UsingNosFlag},
            {"StartEstKind2", model.StartEstKind2},
            {"NumBootStraps", model.NumBootStraps},
            {"ResidVec", Numbers(model.ResidVec)},
            {number >= 4 ? "WeightVec" : "InitWeight", Open(model.weights)},
            {"FittedVec", Numbers(model.FittedVec)},
            {number >= 4 ? "TimeIdx" : "InitX2", Open(model.times)}};
}

/// By parameter, each up to its last filled replicate.
Json JsonOf(const BootStrapRecord& replicates)
{
    Json parameters = Json::object();
    for (int parameter = 0; parameter < kParameters; ++parameter) {
        const auto first = replicates.begin() + static_cast<std::ptrdiff_t>(parameter) * kReplicates;
        const auto last = first + kReplicates;
        const auto end = std::find_if(std::make_reverse_iterator(last), std::make_reverse_iterator(first),
                                      [](const auto& estimate) { return estimate.has_value(); })
                             .base();
        if (end == first)
            continue;
        Json values = Json::array();
        for (auto at = first; at != end; ++at)
            values.push_back(*at ? Number(static_cast<double>(**at)) : Json(nullptr));
        parameters[std::to_string(parameter + 1)] = std::move(values);
    }
    return parameters;
}

Body BodyIn(const std::string& file, const FitIndexRecord& fit)
{
    const std::string_view bytes = BodyOf(fit, file); // which refuses a place outside the file
    return ReadBody(bytes, fit.MethType, static_cast<std::size_t>(fit.Start));
}

Json JsonOf(const FitIndexRecord& fit, const std::string& file)
{
    Json json{{"FitName", Trim(fit.FitName)},
              {"Deleted", fit.Deleted},
              {"MethType", fit.MethType},
              {"Model", ModelWord(fit.MethType)},
              {"FitOp", fit.FitOp},
              {"ErrorModel", ErrorWord(fit.FitOp)},
              {"TheDate", Number(fit.TheDate)},
              {"TheTime", Number(fit.TheTime)},
              {"Start", fit.Start},
              {"TheEnd", fit.TheEnd}};
    try {
        const Body body = BodyIn(file, fit);
        json["Body"] = {{"Model", JsonOf(body.model, fit.MethType)},
                        {"Data", JsonOf(body.data)},
                        {"BS", JsonOf(body.bootStraps)}};
    } catch (const RecordError& error) {
        json["Damage"] = error.description;
    }
    return json;
}

std::string ColumnLine(int column, const ColumnRecord& stored, int periods)
{
    const auto rows = std::clamp(periods, 0, kRows);
    const auto empty = std::count(stored.values.begin(), stored.values.begin() + rows, -1.0F);
    std::string line =
        "  " + PadString(Texts().ColumnDisplayNames(column), 20) + std::to_string(rows - empty) + " values";
    return empty > 0 ? line + ", " + std::to_string(empty) + " missing" : line;
}

std::string FitLine(const FitIndexRecord& fit, const std::string& file)
{
    std::string line =
        "  " + Printable(Trim(fit.FitName)) + ": " + ModelWord(fit.MethType) + ", " + ErrorWord(fit.FitOp);
    if (const std::string moment = MomentText(fit.TheDate, fit.TheTime); !moment.empty())
        line += ", " + moment;
    try {
        const Body body = BodyIn(file, fit);
        line += ", R squared " + number_text::Fixed(static_cast<double>(body.model.RSqr), 3);
        if (body.model.IsBSDone)
            line += ", " + std::to_string(body.model.NumBootStraps) + " replicates";
    } catch (const RecordError& error) {
        line += ", damaged: " + Quotable(error.description);
    }
    return line;
}
} // namespace

std::string InfoOf(const std::string& path)
{
    const auto [bytes, project] = Open(path);
    const std::int64_t periods = std::int64_t{project.header.MaxTimeP} - project.header.MinTimeP + 1;
    std::string text = "Project " + Quotable(path) + ", " + std::to_string(bytes.size()) + " bytes\n" +
                       Printable(project.header.DSDesc) + "\nPeriods " +
                       std::to_string(project.header.MinTimeP) + " to " +
                       std::to_string(project.header.MaxTimeP) + "\n\nColumns\n";
    for (int column = 1; column <= kColumns; ++column)
        if (const auto& stored = project.data.columns.at(static_cast<std::size_t>(column - 1)))
            text +=
                ColumnLine(column, *stored, static_cast<int>(std::clamp<std::int64_t>(periods, 0, kRows))) +
                "\n";
    text += "\nScenarios: " + std::to_string(project.scenarios.size()) + "\n";
    for (const ScenarioRecord& scenario : project.scenarios)
        text += "  " + Printable(scenario.Title) + ": " + UnitsWord(scenario.VecType) + "\n";
    text += "\nLogged fits: " + std::to_string(project.fits.size()) + "\n";
    for (const FitIndexRecord& fit : project.fits)
        text += FitLine(fit, bytes) + "\n";
    return text;
}

std::string DumpOf(const std::string& path)
{
    const auto [bytes, project] = Open(path);
    Json scenarios = Json::array();
    for (const ScenarioRecord& scenario : project.scenarios)
        scenarios.push_back({{"Title", scenario.Title},
                             {"VecType", scenario.VecType},
                             {"Units", UnitsWord(scenario.VecType)},
                             {"Vector", Open(scenario.Vector)}});
    Json fits = Json::array();
    for (const FitIndexRecord& fit : project.fits)
        fits.push_back(JsonOf(fit, bytes));
    const Json json{{"Version", 3},
                    {"NumLoggedRuns", project.header.NumLoggedRuns},
                    {"NumScens", project.header.NumScens},
                    {"NumPts", project.header.NumPts},
                    {"DSDesc", project.header.DSDesc},
                    {"MinTimeP", project.header.MinTimeP},
                    {"MaxTimeP", project.header.MaxTimeP},
                    {"Data", JsonOf(project.data)},
                    {"Scenarios", std::move(scenarios)},
                    {"Fits", std::move(fits)}};
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}
