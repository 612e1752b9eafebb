// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/CommandLine.h"

#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "base/modVeltGlobals.h"
#include "batch/BatchFailure.h"
#include "fit/InputParams.h"
#include "models/ContourRange.h"
#include "models/ModelTable.h"
#include "models/StartVals.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace
{
/// The options as typed; an option that was not given stays empty.
struct Typed {
    std::string data, csvData, timeColumn, columns, model, error = "ls";
    std::string mort, initialProportion, lag, z, exclude, start, fix;
    std::string maxIts, fTol, xTol, convergeOn = "both";
    std::string bootstraps, seed, ci, scenarios, projectCi;
    std::string format = "text", csvDir, plotsDir, contours;
};

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
    Refuse(std::string(option) + " is one of " + all + ", not \"" + typed + "\".");
}

/// The dialogs' sentences for fields of 16 bits do not say where these end.
void RefuseAbove16Bits(const char* option, const std::string& typed)
{
    constexpr double kMost = 32767.0;
    if (number_text::ParseTyped(typed).value_or(0.0) > kMost)
        Refuse(std::string(option) + " is at most 32767, not " + typed + ".");
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
            Refuse(std::string(option) + ": an item of the list \"" + typed + "\" is empty.");
        from = comma + 1;
    }
    return parts;
}

std::pair<std::string, std::string> SplitPair(const char* option, const std::string& item)
{
    const std::size_t equals = item.rfind('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == item.size())
        Refuse(std::string(option) + " takes NAME=VALUE, not \"" + item + "\".");
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
    Refuse(std::string(option) + ": this model starts from " + all + ", not from \"" + name + "\".");
}

void TakeColumns(const Typed& typed, FitRequest& request)
{
    request.timeColumn = typed.timeColumn;
    for (const std::string& item : SplitColumns(typed.columns)) {
        auto [heading, title] = SplitPair("--columns", item);
        request.columns.push_back({std::move(heading), std::move(title)});
    }
}

void TakeData(const Typed& typed, FitRequest& request)
{
    if (typed.data.empty() == typed.csvData.empty())
        Refuse("The data come through exactly one of --data and --csv-data.");
    request.commaSeparated = typed.data.empty();
    request.file = request.commaSeparated ? typed.csvData : typed.data;
    const bool project =
        request.file.size() >= 4 && ToUpper(request.file.substr(request.file.size() - 4)) == ".VL3";
    if (project)
        Refuse("--data with a project file (.vl3) is not built yet; export the table as text.");
    if (typed.timeColumn.empty())
        Refuse("--time-column names the column that holds the time periods; it is missing.");
    if (typed.columns.empty())
        Refuse("--columns assigns the columns of the file to those of the data set; it is missing.");
    TakeColumns(typed, request);
}

void TakeExclusions(const Typed& typed, FitRequest& request)
{
    for (const std::string& item : SplitList("--exclude", typed.exclude)) {
        std::int32_t label = 0;
        const auto [end, error] = std::from_chars(item.data(), item.data() + item.size(), label);
        if (error != std::errc{} || end != item.data() + item.size())
            Refuse("--exclude takes time labels, not \"" + item + "\".");
        request.exclude.push_back(label);
    }
}

void TakeStart(const Typed& typed, FitRequest& request)
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

void TakeModel(const Typed& typed, FitRequest& request)
{
    if (typed.model.empty())
        Refuse("--model names the model to fit; it is missing.");
    request.model = NumberOf("--model", ModelNames(), typed.model);
    request.errorModel = NumberOf("--error", ErrorModelNames(), typed.error);
    request.mort = TakeIfTyped<float>("--m", typed.mort, ReadNaturalMortality);
    request.initialProportion =
        TakeIfTyped<float>("--init-proportion", typed.initialProportion, ReadInitialProportion);
    RefuseAbove16Bits("--lag", typed.lag);
    request.lag = TakeIfTyped<std::int16_t>("--lag", typed.lag, ReadTimeLag);
    request.z = TakeIfTyped<float>("--z", typed.z, ReadZShape);
    TakeExclusions(typed, request);
    TakeStart(typed, request);
}

void TakeMinimiser(const Typed& typed, FitRequest& request)
{
    MinimiserOptions& options = request.minimiser;
    RefuseAbove16Bits("--max-its", typed.maxIts);
    options.intMaxIts =
        TakeIfTyped<std::int16_t>("--max-its", typed.maxIts, ReadMaxIterations).value_or(options.intMaxIts);
    options.sngFTOL = TakeIfTyped<float>("--ftol", typed.fTol, ReadTolerance).value_or(options.sngFTOL);
    options.sngXTOL = TakeIfTyped<float>("--xtol", typed.xTol, ReadTolerance).value_or(options.sngXTOL);
    options.ConvergeOn = NumberOf("--converge-on", {"both", "either"}, typed.convergeOn) == 1
                             ? modVeltGlobals::kConvergeOnBoth
                             : modVeltGlobals::kConvergeOnEither;
}

void TakeBootstraps(const Typed& typed, FitRequest& request)
{
    const auto count = TakeIfTyped<std::int16_t>("--bootstraps", typed.bootstraps, ReadBootstraps);
    request.bootstraps = count.has_value();
    request.minimiser.BS = count.value_or(request.minimiser.BS);
    if (!typed.seed.empty()) {
        std::uint64_t seed = 0;
        const char* last = typed.seed.data() + typed.seed.size();
        const auto [end, error] = std::from_chars(typed.seed.data(), last, seed);
        if (error != std::errc{} || end != last)
            Refuse("--seed takes a whole number of at least 0, not \"" + typed.seed + "\".");
        request.seed = seed;
    }
}

bool IsLevel(const std::optional<double>& level)
{
    return level && *level >= 0.0 && *level <= 1.0;
}

void TakeLevels(const Typed& typed, FitRequest& request)
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
        Refuse("--ci takes two levels such as 0.025,0.975, not \"" + typed.ci + "\".");
    // The dialog's rule lets a low level above 1 and a high one below 0 pass, where no replicate stands.
    if (!IsLevel(request.ciLow) || !IsLevel(request.ciHigh))
        Refuse("--ci: " + LoadResString(1946) + ", not " + typed.ci + ".");
}

void TakeOutput(const Typed& typed, FitRequest& request)
{
    request.json = NumberOf("--format", {"text", "json"}, typed.format) == 2;
    if (!typed.csvDir.empty())
        request.csvDir = typed.csvDir;
    if (!typed.plotsDir.empty())
        request.plotsDir = typed.plotsDir;
    if (typed.contours.empty())
        return;
    request.contours = Take<std::int16_t>("--contours", ReadContourPoints(typed.contours));
    if (request.contours == 1)
        Refuse("--contours: a surface has at least 2 points along each axis.");
    const InputFields fields =
        FieldsOf({.WhichMeth = request.model, .modelTitle = {}, .FitOp = request.errorModel});
    if (!fields.viewMinShown || !fields.viewMinEnabled)
        Refuse("--contours: this model under this error model searches no two parameters, so it has no "
               "surface.");
}

void RefuseWhatIsNotBuilt(const Typed& typed)
{
    if (!typed.scenarios.empty())
        Refuse("--scenarios is not built yet: velt-batch makes no projections.");
    if (!typed.projectCi.empty())
        Refuse("--project-ci is not built yet: velt-batch makes no projections.");
}

void DefineOptions(CLI::App& fit, Typed& typed)
{
    fit.add_option("--data", typed.data, "Text file: description, headings, one row a period")
        ->type_name("FILE");
    fit.add_option("--csv-data", typed.csvData, "Comma-separated file with one heading line")
        ->type_name("FILE");
    fit.add_option("--time-column", typed.timeColumn, "Heading of the column of time periods");
    fit.add_option("--columns", typed.columns,
                   "Assignments such as \"Catch=Tot. Catch Wt,CPUE=Abundance Index\"");
    fit.add_option(
        "--model", typed.model,
        "no-recruitment, recruitment-index, constant-recruitment, fox, schaefer or pella-tomlinson");
    fit.add_option("--error", typed.error, "ls, log, gamma or wls")->capture_default_str();
    fit.add_option("--m", typed.mort, "Natural mortality per period (0.2)");
    fit.add_option("--init-proportion", typed.initialProportion,
                   "Initial proportion of the stock, 0 to 1 (1)");
    fit.add_option("--lag", typed.lag, "Time lag in periods (0)");
    fit.add_option("--z", typed.z, "Z shape of the Pella-Tomlinson model (1)");
    fit.add_option("--exclude", typed.exclude, "Time labels to leave out of the fit, with commas");
    fit.add_option("--start", typed.start, "Starting values such as K=5000,R=0.3");
    fit.add_option("--fix", typed.fix, "Parameters to hold at their starting values");
    fit.add_option("--max-its", typed.maxIts, "Steps of the minimiser (500)");
    fit.add_option("--ftol", typed.fTol, "Relative tolerance of the function (1e-7)");
    fit.add_option("--xtol", typed.xTol, "Relative tolerance of the parameters (1e-4)");
    fit.add_option("--converge-on", typed.convergeOn, "both tests or either")->capture_default_str();
    fit.add_option("--bootstraps", typed.bootstraps, "Number of bootstrap replicates, 1 to 1000");
    fit.add_option("--seed", typed.seed, "Makes the bootstraps repeatable");
    fit.add_option("--ci", typed.ci, "Levels of the limits (0.025,0.975)");
    fit.add_option("--scenarios", typed.scenarios, "Not built yet");
    fit.add_option("--project-ci", typed.projectCi, "Not built yet");
    fit.add_option("--format", typed.format, "text or json")->capture_default_str();
    fit.add_option("--csv", typed.csvDir, "Writes tables into this directory")->type_name("DIR");
    fit.add_option("--plots", typed.plotsDir, "Writes graphs as PNG and SVG into this directory")
        ->type_name("DIR");
    fit.add_option("--contours", typed.contours, "Likelihood surface with 2 to 200 points along each axis");
}

FitRequest RequestOf(const Typed& typed)
{
    FitRequest request;
    RefuseWhatIsNotBuilt(typed);
    TakeData(typed, request);
    TakeModel(typed, request);
    TakeMinimiser(typed, request);
    TakeBootstraps(typed, request);
    TakeLevels(typed, request);
    TakeOutput(typed, request);
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
    Typed typed;
    CLI::App app{"VELT 3.0 without a screen: stock sizes from catch, effort and abundance", "velt-batch"};
    app.set_version_flag("--version", "velt-batch 3.0.0");
    app.require_subcommand(1);
    CLI::App* fit = app.add_subcommand("fit", "Fits one model to a table of periods");
    DefineOptions(*fit, typed);
    std::reverse(arguments.begin(), arguments.end()); // the library takes them from the back
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::Success& wish) { // --help, --version
        app.exit(wish, out, out);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        Refuse(std::string(error.what()) + "\nTry velt-batch fit --help.");
    }
    return RequestOf(typed);
}
