// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/TypedOptions.h"

#include "base/ForeignText.h"
#include "batch/BatchFailure.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <utility>

namespace
{
void DefineOptions(CLI::App& fit, TypedOptions& typed)
{
    fit.add_option("--data", typed.data,
                   "Text file: description, headings, one row a period; or a project (.vl3)")
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
    fit.add_option("--scenarios", typed.scenarios,
                   "Projects under these scenarios: Scenario,Units,Time,Value, one row a future period")
        ->type_name("FILE");
    fit.add_option("--project-ci", typed.projectCi,
                   "Projects this scenario with limits, at the levels of --ci (0.05,0.95)")
        ->type_name("NAME");
    fit.add_option("--format", typed.format, "text or json")->capture_default_str();
    fit.add_option("--csv", typed.csvDir, "Writes tables into this directory")->type_name("DIR");
    fit.add_option("--plots", typed.plotsDir, "Writes graphs as PNG and SVG into this directory")
        ->type_name("DIR");
    fit.add_option("--contours", typed.contours, "Likelihood surface with 2 to 200 points along each axis");
    fit.add_option("--log-as", typed.logAs, "Logs the fit under this name in a project");
    fit.add_option("--project", typed.project,
                   "The project to log in (the one of --data); made if it is not there")
        ->type_name("FILE");
}

void DefineConvert(CLI::App& app, TypedOptions& typed)
{
    CLI::App* convert = app.add_subcommand("convert", "Makes a project out of one of version 2.0");
    convert->add_option("old", typed.convert, "Project of version 2.0 (.vl2)")->required();
    convert->add_option("new", typed.convertTo, "Project to write (.vl3)")->required();
    convert->add_flag("--force", typed.force, "Replaces a project of that name");
}

void DefineExport(CLI::App& app, TypedOptions& typed)
{
    CLI::App* exporting = app.add_subcommand("export", "Writes the table of a project as text");
    exporting->add_option("file", typed.exported, "Project (.vl3)")->required();
    exporting->add_option("--text", typed.text, "Text file to write (.txt)")->type_name("FILE")->required();
    exporting->add_flag("--force", typed.force, "Replaces a file of that name");
}

/// An empty text stands for an option that was not given; one that was given as such is a slip, as of a
/// script whose variable is not set.
void RefuseEmptyValues(const CLI::App& command)
{
    for (const CLI::Option* option : command.get_options())
        for (const std::string& value : option->results())
            if (value.find_first_not_of(" \t\r\n") == std::string::npos)
                throw BatchFailure(ExitStatus::BadUsage, option->get_name() + ": the value is empty.");
}
} // namespace

std::optional<TypedOptions> ReadOptions(std::vector<std::string> arguments, std::ostream& out)
{
    TypedOptions typed;
    CLI::App app{"VELT 3.0 without a screen: stock sizes from catch, effort and abundance", "velt-batch"};
    app.set_version_flag("--version", "velt-batch 3.0.0");
    app.require_subcommand(1);
    CLI::App* fit = app.add_subcommand("fit", "Fits one model to a table of periods");
    DefineOptions(*fit, typed);
    CLI::App* info = app.add_subcommand("info", "Says what a project holds");
    info->add_option("file", typed.info, "Project (.vl3)")->required();
    CLI::App* dump = app.add_subcommand("dump", "Writes all that a project holds");
    dump->add_option("file", typed.dump, "Project (.vl3)")->required();
    dump->add_flag("--json", typed.dumpJson, "as one JSON object")->required();
    DefineConvert(app, typed);
    DefineExport(app, typed);
    std::reverse(arguments.begin(), arguments.end()); // the library takes them from the back
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::Success& wish) { // --help, --version
        app.exit(wish, out, out);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw BatchFailure(ExitStatus::BadUsage, Quotable(error.what()) + "\nTry velt-batch fit --help.");
    }
    for (const CLI::App* command : app.get_subcommands())
        RefuseEmptyValues(*command);
    return typed;
}
