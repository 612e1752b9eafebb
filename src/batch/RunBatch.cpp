// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/RunBatch.h"

#include "base/ForeignText.h"
#include "base/Run.h"
#include "base/SignalHold.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "base/VeltError.h"
#include "batch/BatchFailure.h"
#include "batch/BatchProjections.h"
#include "batch/BatchUser.h"
#include "batch/BatchWindow.h"
#include "batch/CommandLine.h"
#include "batch/ConvertProject.h"
#include "batch/ExportProject.h"
#include "batch/FitTables.h"
#include "batch/InspectProject.h"
#include "batch/ReadData.h"
#include "batch/ResultFiles.h"
#include "batch/WriteCsv.h"
#include "batch/WriteJson.h"
#include "batch/WritePlots.h"
#include "batch/WriteProjections.h"
#include "data/clsVeltData.h"
#include "engines/RandomSource.h"
#include "fit/ParameterReport.h"
#include "fit/ProjectFile.h"
#include "fit/clsMethManager.h"

#include <cerrno>
#include <system_error>

namespace
{
/// One job: the ports of a run and what the workflow needs, as the desktop has them.
struct Job {
    explicit Job(const FitRequest& asked)
        : request(asked), user(asked), random(asked.seed ? RandomSource(*asked.seed) : RandomSource()),
          run(user, window, meter, random), data(run), project(data), manager(run)
    {
        manager.LogsInto(project);
    }
    const FitRequest& request;
    BatchUser user;
    BatchWindow window;
    BatchMeter meter;
    RandomSource random;
    Run run;
    clsVeltData data;
    ProjectFile project;
    clsMethManager manager;
};

/// What the user would have read, with the one hint that a screen gives by asking.
std::string Messages(const Job& job)
{
    std::string text = job.user.AllMessages("The fit ended without a message.");
    // The tests of a search may all succeed on values that mean nothing; the outcome stands first then.
    if (job.manager.LastExcuse() == excuse::kNotConverged)
        text = job.run.globals.ExcuseTexts(excuse::kNotConverged) + ".\n" + text;
    if (job.user.startMissing)
        text += " (--start " + StartingParameters(job.request.model).front() + "=...)";
    return text;
}

/// The grid titles of the columns that the model needs, derived ones included.
std::string NeededColumns(const Job& job)
{
    std::string all;
    for (const int column : model_table::Of(job.request.model).columns)
        all += (all.empty() ? "\"" : ", \"") + job.run.globals.ColumnDisplayNames(column) + "\"";
    return all;
}

[[noreturn]] void RefuseData(const Job& job)
{
    std::string available;
    for (const std::string& title : job.user.available)
        available += "\n  " + title;
    throw BatchFailure(
        ExitStatus::BadData,
        "This model needs the columns " + NeededColumns(job) +
            ", given or derived from others; the table lacks some of them." +
            (available.empty() ? " No model is available for it." : " It allows:" + available));
}

void Fit(Job& job)
{
    job.manager.Create(job.data);
    job.manager.MinimisationOptions();
    job.manager.FitNewModel(false);
    if (job.manager.MethDefined())
        return;
    if (job.user.modelMissing || job.user.Said(LoadResString(1909)))
        RefuseData(job);
    const bool fewPoints = job.user.Said(LoadResString(1908));
    throw BatchFailure(fewPoints ? ExitStatus::BadData : ExitStatus::FitFailed, Messages(job),
                       job.manager.LastExcuse(), job.manager.Remarks());
}

void Bootstrap(Job& job, FitTables& tables)
{
    job.manager.GenerateBootStraps();
    if (job.meter.GaveUp())
        throw BatchFailure(ExitStatus::FitFailed,
                           "--bootstraps: " + std::to_string(BatchMeter::kPatience) +
                               " refits in a row failed to converge at replicate " +
                               std::to_string(job.meter.Furthest()) + " of " +
                               std::to_string(job.manager.Method()->NumBootStraps()) +
                               ". Raise --max-its, or loosen --ftol or --xtol.",
                           excuse::kNotConverged, job.manager.Remarks());
    if (!job.manager.IsBSDone())
        throw BatchFailure(ExitStatus::FitFailed, "--bootstraps: " + Messages(job),
                           job.manager.Method()->Excuse(), job.manager.Remarks());
    if (!job.manager.GetUserConfidenceIntervals())
        throw BatchFailure(ExitStatus::BadUsage, "--ci: " + Messages(job));
    job.manager.DisplayBootStrapHistograms();
    AddBootstraps(tables, job.manager);
}

/// Scenarios are projected straight after the fit, one with limits behind the bootstraps that these need.
void Project(Job& job, const std::optional<ScenarioFile>& scenarios, FitTables& tables)
{
    BatchProjections projections(job.manager, job.data, job.window.projections);
    if (scenarios)
        projections.Project(*scenarios, tables);
    if (job.request.bootstraps)
        Bootstrap(job, tables);
    if (job.request.projectCi)
        projections.ProjectWithLimits(*job.request.projectCi, tables);
    tables.remarks = projections.Remarks();
}

void AddFiles(ResultFiles& files, const Job& job, const FitTables& tables)
{
    if (job.request.csvDir)
        files.AddTables(CsvFilesOf(tables));
    if (job.request.contours && job.window.contours)
        files.AddTables(CsvFilesOf(*job.window.contours));
    if (job.request.plotsDir)
        files.AddPictures(PicturesOf(job.window));
}

void Read(Job& job)
{
    const SignalHold hold; // a working copy must not be left behind
    ReadData(job.data, job.project, job.user, job.request);
}

/// Logs the fit; the project on disk is then the old one or the new one, whole.
void Log(Job& job)
{
    if (!job.request.logAs)
        return;
    const SignalHold hold;
    try {
        job.data.DSFName(job.request.project);
        job.manager.LogCurrentFit(*job.request.logAs);
    } catch (const VeltError& error) {
        throw BatchFailure(ExitStatus::BadUsage, "--log-as: " + error.description);
    }
}

void TellRemarks(const std::vector<Remark>& remarks, std::ostream& err)
{
    for (const Remark& remark : remarks)
        err << "velt-batch: remark: " << Printable(remark.text) << "\n";
}

/// Warnings and remarks of a job that went well.
void Warn(const Job& job, const FitTables& tables, std::ostream& err)
{
    for (const std::string& message : job.user.messages)
        err << "velt-batch: " << Printable(Trim(message)) << "\n";
    TellRemarks(tables.remarks, err);
}

/// A full disk and a closed output are noticed only when the text leaves the program.
void Print(const std::string& text, std::ostream& out)
{
    errno = 0;
    out << text;
    if (out.flush())
        return;
    const std::string reason = errno != 0 ? ": " + std::generic_category().message(errno) : "";
    throw BatchFailure(ExitStatus::BadUsage,
                       "The results cannot be written to standard output" + reason + ".");
}

void DoJob(const FitRequest& request, std::ostream& out, std::ostream& err)
{
    if (request.plotsDir && !CanDraw())
        PicturesOf({}); // refuses, before a fit is made in vain
    ResultFiles files(request);
    files.Check(request);
    for (const std::string& note : request.notes)
        err << "velt-batch: " << note << "\n";
    const std::optional<ScenarioFile> scenarios = ScenariosOf(request);
    Job job(request);
    Read(job);
    Fit(job);
    FitTables tables = TablesOf(job.manager, job.data);
    Project(job, scenarios, tables);
    AddFiles(files, job, tables);
    Log(job);
    files.Publish();
    Warn(job, tables, err);
    Print(request.json ? JsonOf(tables)
                       : ParameterReport::Of(job.manager).AsText() + ProjectionsAsText(tables),
          out);
}

void Do(const FitRequest& request, std::ostream& out, std::ostream& err)
{
    if (request.conversion)
        Print(ConvertProject(request, err), out);
    else if (request.textExport)
        Print(ExportProject(request, err), out);
    else if (request.inspection)
        Print(request.inspection->asJson ? DumpOf(request.inspection->file)
                                         : InfoOf(request.inspection->file),
              out);
    else
        DoJob(request, out, err);
}

int Tell(const BatchFailure& failure, bool json, std::ostream& out, std::ostream& err)
{
    err << "velt-batch: " << Printable(failure.message) << "\n";
    TellRemarks(failure.remarks, err);
    if (json && failure.status == ExitStatus::FitFailed)
        out << JsonOf(failure) << std::flush;
    return static_cast<int>(failure.status);
}
} // namespace

int RunBatch(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    bool json = false;
    try {
        const std::optional<FitRequest> request = ParseCommandLine(arguments, out);
        json = request && request->json;
        if (request)
            Do(*request, out, err);
        else
            Print({}, out); // help and version stand there already
        return static_cast<int>(ExitStatus::Done);
    } catch (const BatchFailure& failure) {
        return Tell(failure, json, out, err);
    } catch (const VeltError& error) {
        return Tell({ExitStatus::FitFailed, error.description}, json, out, err);
    } catch (const std::exception& error) { // out of memory and the like
        return Tell({ExitStatus::FitFailed, error.what()}, json, out, err);
    }
}
