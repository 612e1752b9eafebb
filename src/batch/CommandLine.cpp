// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/CommandLine.h"

#include "base/FileType.h"
#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "base/modVeltGlobals.h"
#include "batch/BatchFailure.h"
#include "batch/TypedOptions.h"
#include "data/ProjectData.h"
#include "fit/InputParams.h"
#include "models/ContourRange.h"
#include "models/IMethod.h"
#include "models/ModelTable.h"
#include "models/StartVals.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <tuple>
#include <utility>

namespace
{
std::string Quoted(const std::string& typed)
{
    return "\"" + Quotable(typed) + "\"";
}

[[noreturn]] void Refuse(const std::string& sentence)
{
    throw BatchFailure(ExitStatus::BadUsage, sentence);
}

/// Position of `typed` among the words that the option takes, counted from 1.
std::int32_t NumberOf(const char* option, const std::vector<std::string>& names, const std::string& typed)
{
    const auto found = std::find(names.begin(), names.end(), typed);
    if (found != names.end())
        return static_cast<std::int32_t>(found - names.begin()) + 1;
    std::string all;
    for (const std::string& name : names)
        all += (all.empty() ? "" : ", ") + name;
    Refuse(std::string(option) + " is one of " + all + ", not " + Quoted(typed) + ".");
}

/// The dialogs round what is typed into a field of 16 bits, and their sentences do not say where it ends.
/// Nobody who asks a command for 10.5 replicates means 10.
void RefuseUnlessCount(const char* option, const std::string& typed)
{
    constexpr double kMost = 32767.0;
    const double value = number_text::ParseTyped(typed).value_or(0.0);
    if (value != std::nearbyint(value))
        Refuse(std::string(option) + " takes a whole number, not " + Quotable(typed) + ".");
    if (value > kMost)
        Refuse(std::string(option) + " is at most 32767, not " + Quotable(typed) + ".");
}

/// The value of a field by the rule that the dialogs use.
template <typename T>
T Take(const char* option, Reading<T> reading)
{
    if (const auto* sentence = std::get_if<std::string>(&reading))
        Refuse(std::string(option) + ": " + *sentence);
    return std::get<T>(reading);
}

template <typename T, typename Rule>
std::optional<T> TakeIfTyped(const char* option, const std::string& typed, Rule rule)
{
    if (typed.empty())
        return std::nullopt;
    return Take<T>(option, rule(typed));
}

std::vector<std::string> SplitList(const char* option, const std::string& typed)
{
    std::vector<std::string> parts;
    if (typed.empty())
        return parts;
    for (std::size_t from = 0; from <= typed.size();) {
        const std::size_t comma = std::min(typed.find(',', from), typed.size());
        parts.push_back(Trim(typed.substr(from, comma - from)));
        if (parts.back().empty())
            Refuse(std::string(option) + ": an item of the list " + Quoted(typed) + " is empty.");
        from = comma + 1;
    }
    return parts;
}

std::pair<std::string, std::string> SplitPair(const char* option, const std::string& item)
{
    const std::size_t equals = item.rfind('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == item.size())
        Refuse(std::string(option) + " takes NAME=VALUE, not " + Quoted(item) + ".");
    return {Trim(item.substr(0, equals)), Trim(item.substr(equals + 1))};
}

/// The items of --columns. A heading may hold commas, so a comma ends an item only behind an equals sign.
std::vector<std::string> SplitColumns(const std::string& typed)
{
    std::vector<std::string> items;
    std::string item;
    for (std::size_t from = 0; from <= typed.size();) {
        const std::size_t comma = std::min(typed.find(',', from), typed.size());
        item += (item.empty() ? "" : ",") + typed.substr(from, comma - from);
        if (item.find('=') != std::string::npos || comma == typed.size()) {
            items.push_back(Trim(item));
            item.clear();
        }
        from = comma + 1;
    }
    return items;
}

/// The parameter of `model` that `name` means, in any case of letters.
std::string ParameterNamed(const char* option, const std::string& name, std::int32_t model)
{
    std::string all;
    for (const std::string& parameter : StartingParameters(model)) {
        if (ToUpper(parameter) == ToUpper(name))
            return parameter;
        all += (all.empty() ? "" : " and ") + parameter;
    }
    Refuse(std::string(option) + ": this model starts from " + all + ", not from " + Quoted(name) + ".");
}

void TakeColumns(const TypedOptions& typed, FitRequest& request)
{
    request.timeColumn = typed.timeColumn;
    for (const std::string& item : SplitColumns(typed.columns)) {
        auto [heading, title] = SplitPair("--columns", item);
        request.columns.push_back({std::move(heading), std::move(title)});
    }
}

void TakeData(const TypedOptions& typed, FitRequest& request)
{
    if (typed.data.empty() == typed.csvData.empty())
        Refuse("The data come through exactly one of --data and --csv-data.");
    request.commaSeparated = typed.data.empty();
    request.file = request.commaSeparated ? typed.csvData : typed.data;
    if (IsLegacyName(request.file))
        Refuse(
            "A project of version 2.0 is fitted once velt-batch convert has made one of this version of it.");
    request.isProject = !request.commaSeparated && IsProjectName(request.file);
    if (request.isProject) {
        if (!typed.timeColumn.empty() || !typed.columns.empty())
            Refuse("A project knows its columns: --time-column and --columns are for tables.");
        return;
    }
    if (typed.timeColumn.empty())
        Refuse("--time-column names the column that holds the time periods; it is missing.");
    if (typed.columns.empty())
        Refuse("--columns assigns the columns of the file to those of the data set; it is missing.");
    TakeColumns(typed, request);
}

void TakeExclusions(const TypedOptions& typed, FitRequest& request)
{
    for (const std::string& item : SplitList("--exclude", typed.exclude)) {
        std::int32_t label = 0;
        const auto [end, error] = std::from_chars(item.data(), item.data() + item.size(), label);
        if (error != std::errc{} || end != item.data() + item.size())
            Refuse("--exclude takes time labels, not " + Quoted(item) + ".");
        request.exclude.push_back(label);
    }
}

void TakeStart(const TypedOptions& typed, FitRequest& request)
{
    for (const std::string& item : SplitList("--start", typed.start)) {
        const auto [name, value] = SplitPair("--start", item);
        const std::string parameter = ParameterNamed("--start", name, request.model);
        for (const FitRequest::StartingValue& earlier : request.start)
            if (earlier.parameter == parameter)
                Refuse("--start gives " + parameter + " two values.");
        request.start.push_back({parameter, Take<double>("--start", ReadStartingValue(value))});
    }
    for (const std::string& name : SplitList("--fix", typed.fix))
        request.fix.push_back(ParameterNamed("--fix", name, request.model));
    if (request.SetsStart() && UsesRegression(request.errorModel, request.model))
        Refuse("--start and --fix: a least-squares fit of this model is a regression and takes no starting "
               "values.");
    if (!request.fix.empty() && StartingParameters(request.model).size() < 2)
        Refuse("--fix: this model searches one parameter only, which cannot be held fixed.");
}

/// An input that the model does not have changes nothing, and would be believed to have. It is no refusal: a
/// script gives the inputs of all models to each, most of them at their defaults.
void NoteForeignInputs(FitRequest& request)
{
    using model_table::Input;
    const model_table::Model& model = model_table::Of(request.model);
    const FitInputs defaults;
    const auto differs = [](const auto& given, auto usual) { return given && *given != usual; };
    const std::tuple<Input, const char*, bool> inputs[] = {
        {Input::Mort, "--m", differs(request.mort, defaults.Mort)},
        {Input::InitDep, "--init-proportion", differs(request.initialProportion, defaults.InitProp)},
        {Input::Lag, "--lag", differs(request.lag, defaults.TimeLag)},
        {Input::Z, "--z", differs(request.z, defaults.Z)}};
    std::string taken;
    for (const auto& [input, option, given] : inputs)
        if (model.Asks(input))
            taken += (taken.empty() ? "" : ", ") + std::string(option);
    for (const auto& [input, option, given] : inputs)
        if (given && !model.Asks(input))
            request.notes.push_back(std::string(option) + " has no meaning for the model " +
                                    std::string(model.word) + ", which takes " + taken +
                                    "; it was not used.");
}

void TakeModel(const TypedOptions& typed, FitRequest& request)
{
    if (typed.model.empty())
        Refuse("--model names the model to fit; it is missing.");
    request.model = NumberOf("--model", ModelNames(), typed.model);
    request.errorModel = NumberOf("--error", ErrorModelNames(), typed.error);
    request.mort = TakeIfTyped<float>("--m", typed.mort, ReadNaturalMortality);
    request.initialProportion =
        TakeIfTyped<float>("--init-proportion", typed.initialProportion, ReadInitialProportion);
    RefuseUnlessCount("--lag", typed.lag);
    request.lag = TakeIfTyped<std::int16_t>("--lag", typed.lag, ReadTimeLag);
    request.z = TakeIfTyped<float>("--z", typed.z, ReadZShape);
    NoteForeignInputs(request);
    TakeExclusions(typed, request);
    TakeStart(typed, request);
}

void TakeMinimiser(const TypedOptions& typed, FitRequest& request)
{
    MinimiserOptions& options = request.minimiser;
    RefuseUnlessCount("--max-its", typed.maxIts);
    options.intMaxIts =
        TakeIfTyped<std::int16_t>("--max-its", typed.maxIts, ReadMaxIterations).value_or(options.intMaxIts);
    options.sngFTOL = TakeIfTyped<float>("--ftol", typed.fTol, ReadTolerance).value_or(options.sngFTOL);
    options.sngXTOL = TakeIfTyped<float>("--xtol", typed.xTol, ReadTolerance).value_or(options.sngXTOL);
    options.ConvergeOn = NumberOf("--converge-on", {"both", "either"}, typed.convergeOn) == 1
                             ? modVeltGlobals::kConvergeOnBoth
                             : modVeltGlobals::kConvergeOnEither;
}

void TakeBootstraps(const TypedOptions& typed, FitRequest& request)
{
    RefuseUnlessCount("--bootstraps", typed.bootstraps);
    const auto count = TakeIfTyped<std::int16_t>("--bootstraps", typed.bootstraps, ReadBootstraps);
    request.bootstraps = count.has_value();
    request.minimiser.BS = count.value_or(request.minimiser.BS);
    if (!typed.seed.empty()) {
        std::uint64_t seed = 0;
        const char* last = typed.seed.data() + typed.seed.size();
        const auto [end, error] = std::from_chars(typed.seed.data(), last, seed);
        if (error != std::errc{} || end != last)
            Refuse("--seed takes a whole number of at least 0, not " + Quoted(typed.seed) + ".");
        request.seed = seed;
    }
}

bool IsLevel(const std::optional<double>& level)
{
    return level && *level >= 0.0 && *level <= 1.0;
}

void TakeLevels(const TypedOptions& typed, FitRequest& request)
{
    if (typed.ci.empty())
        return;
    if (!request.bootstraps)
        Refuse("--ci: limits come from bootstraps; ask for some with --bootstraps.");
    const std::vector<std::string> levels = SplitList("--ci", typed.ci);
    if (levels.size() == 2) {
        request.ciLow = number_text::Parse(levels[0]);
        request.ciHigh = number_text::Parse(levels[1]);
    }
    if (!request.ciLow || !request.ciHigh)
        Refuse("--ci takes two levels such as 0.025,0.975, not " + Quoted(typed.ci) + ".");
    // The dialog's rule lets a low level above 1 and a high one below 0 pass, where no replicate stands.
    if (!IsLevel(request.ciLow) || !IsLevel(request.ciHigh))
        Refuse("--ci: " + LoadResString(1946) + ", not " + Quotable(typed.ci) + ".");
    if (*request.ciLow >= *request.ciHigh)
        Refuse("--ci: the low level stands first and is below the high one, not " + Quotable(typed.ci) + ".");
}

void TakeOutput(const TypedOptions& typed, FitRequest& request)
{
    request.json = NumberOf("--format", {"text", "json"}, typed.format) == 2;
    if (!typed.csvDir.empty())
        request.csvDir = typed.csvDir;
    if (!typed.plotsDir.empty())
        request.plotsDir = typed.plotsDir;
    if (typed.contours.empty())
        return;
    RefuseUnlessCount("--contours", typed.contours);
    request.contours = Take<std::int16_t>("--contours", ReadContourPoints(typed.contours));
    if (request.contours == 1)
        Refuse("--contours: a surface has at least 2 points along each axis.");
    InputParams params;
    params.WhichMeth = request.model;
    params.FitOp = request.errorModel;
    const InputFields fields = FieldsOf(params);
    if (!fields.viewMinShown || !fields.viewMinEnabled)
        Refuse("--contours: this model under this error model searches no two parameters, so it has no "
               "surface.");
}

void TakeProjections(const TypedOptions& typed, FitRequest& request)
{
    if (typed.scenarios.empty() && typed.projectCi.empty())
        return;
    const char* option = typed.scenarios.empty() ? "--project-ci" : "--scenarios";
    if (request.model == models::kRecruitmentIndex)
        Refuse(std::string(option) + ": the recruitment index model cannot be projected, as it knows no "
                                     "recruitment of future periods.");
    if (!typed.scenarios.empty())
        request.scenarios = typed.scenarios;
    if (typed.projectCi.empty())
        return;
    if (!request.bootstraps)
        Refuse("--project-ci: limits come from bootstraps; ask for some with --bootstraps.");
    if (typed.scenarios.empty() && !request.isProject)
        Refuse("--project-ci: a table has no scenarios; give some with --scenarios.");
    request.projectCi = typed.projectCi;
}

void RefuseUnlessProject(const char* what, const std::string& path)
{
    if (!IsProjectName(path))
        Refuse(std::string(what) + " ends in .vl3, unlike " + Quoted(path) + ".");
}

void TakeLog(const TypedOptions& typed, FitRequest& request)
{
    if (typed.logAs.empty()) {
        if (!typed.project.empty())
            Refuse("--project is where a fit is logged; --log-as, its name, is missing.");
        return;
    }
    if (const auto refusal = RefusalOfName(typed.logAs))
        Refuse("--log-as: " + *refusal);
    if (typed.project.empty() && !request.isProject)
        Refuse("--log-as needs --project, the project (.vl3) to log the fit in.");
    request.project = typed.project.empty() ? request.file : typed.project;
    RefuseUnlessProject("--project", request.project);
    request.logAs = typed.logAs;
}

/// The commands that make a file out of another.
bool TakeMaking(const TypedOptions& typed, FitRequest& request)
{
    if (!typed.convert.empty()) {
        RefuseUnlessProject("convert: the project to write", typed.convertTo);
        request.conversion = FitRequest::Making{typed.convert, typed.convertTo, typed.force};
    }
    if (!typed.exported.empty()) {
        if (!ToUpper(typed.text).ends_with(".TXT")) // under another name it could not be opened again
            Refuse("--text ends in .txt, unlike " + Quoted(typed.text) + ".");
        request.textExport = FitRequest::Making{typed.exported, typed.text, typed.force};
    }
    return request.conversion || request.textExport;
}

FitRequest RequestOf(const TypedOptions& typed)
{
    FitRequest request;
    if (TakeMaking(typed, request))
        return request;
    if (!typed.info.empty() || !typed.dump.empty()) {
        request.inspection =
            FitRequest::Inspection{typed.info.empty() ? typed.dump : typed.info, typed.dumpJson};
        request.json = typed.dumpJson;
        return request;
    }
    TakeData(typed, request);
    TakeModel(typed, request);
    TakeMinimiser(typed, request);
    TakeBootstraps(typed, request);
    TakeLevels(typed, request);
    TakeProjections(typed, request);
    TakeOutput(typed, request);
    TakeLog(typed, request);
    return request;
}
} // namespace

std::vector<std::string> ModelNames()
{
    std::vector<std::string> names;
    for (const model_table::Model& model : model_table::All())
        names.emplace_back(model.word);
    return names;
}

const std::vector<std::string>& ErrorModelNames()
{
    static const std::vector<std::string> kNames{"ls", "log", "gamma", "wls"};
    return kNames;
}

std::vector<std::string> StartingParameters(std::int32_t model)
{
    std::vector<std::string> names;
    for (const model_table::Quantity quantity : model_table::Of(model).searched)
        names.emplace_back(model_table::InfoOf(quantity).key);
    return names;
}

std::optional<FitRequest> ParseCommandLine(std::vector<std::string> arguments, std::ostream& out)
{
    const std::optional<TypedOptions> typed = ReadOptions(std::move(arguments), out);
    if (!typed)
        return std::nullopt;
    return RequestOf(*typed);
}
