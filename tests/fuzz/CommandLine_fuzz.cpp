// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the words, a command line is a job within the bounds of every option, a wish for help, or refused
// in a sentence. A line feed or a zero byte of the input ends a word.
#include "base/FileType.h"
#include "batch/BatchFailure.h"
#include "batch/CommandLine.h"
#include "fuzz/FuzzChecks.h"

#include <cmath>
#include <optional>
#include <sstream>
#include <vector>

namespace
{
std::vector<std::string> WordsOf(std::string_view text)
{
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(std::string_view("\n\0", 2)), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

bool IsFraction(double value)
{
    return value >= 0.0 && value <= 1.0;
}

void CheckInputs(const FitRequest& request)
{
    Demand(request.model >= 1 && request.model <= 6, "models are 1 to 6");
    Demand(request.errorModel >= 1 && request.errorModel <= 4, "error models are 1 to 4");
    Demand(std::isfinite(request.mort.value_or(0.0F)), "M is a number");
    Demand(IsFraction(static_cast<double>(request.initialProportion.value_or(0.0F))),
           "a proportion is at most 1");
    Demand(std::isfinite(request.z.value_or(1.0F)), "Z is a number");
    Demand(request.lag.value_or(0) >= 0, "a lag is not negative");
    Demand(request.start.size() <= 2, "no model starts from more than two values");
    for (const FitRequest::StartingValue& start : request.start)
        Demand(std::isfinite(start.value) && !start.parameter.empty(), "starting values are numbers");
}

void CheckSearch(const FitRequest& request)
{
    const MinimiserOptions& options = request.minimiser;
    Demand(options.intMaxIts > 0, "a search takes a step");
    Demand(options.sngFTOL > 0.0F && std::isfinite(options.sngFTOL), "a tolerance is above 0");
    Demand(options.sngXTOL > 0.0F && std::isfinite(options.sngXTOL), "a tolerance is above 0");
    Demand(options.BS >= 1 && options.BS <= 1000, "1 to 1000 replicates");
    Demand(request.ciLow.has_value() == request.ciHigh.has_value(), "levels come in pairs");
    if (request.ciLow)
        Demand(IsFraction(*request.ciLow) && IsFraction(*request.ciHigh) && *request.ciLow < *request.ciHigh,
               "levels rise within 0 and 1");
    Demand(request.contours.value_or(2) >= 2 && request.contours.value_or(2) <= 200, "2 to 200 points");
}

/// A command that makes no fit.
bool IsCheckedAsOther(const FitRequest& request)
{
    if (request.inspection)
        Demand(!request.inspection->file.empty(), "a project to look into has a name");
    if (request.conversion)
        Demand(!request.conversion->from.empty() && IsProjectName(request.conversion->to),
               "a project is made under a project's name");
    if (request.textExport)
        Demand(!request.textExport->from.empty() && GetFileType(request.textExport->to) == FileType::Text,
               "text is exported under a text file's name");
    return request.inspection || request.conversion || request.textExport;
}

void Check(const FitRequest& request)
{
    if (IsCheckedAsOther(request))
        return;
    Demand(!request.file.empty(), "a job has a file");
    Demand(request.isProject || (!request.timeColumn.empty() && !request.columns.empty()),
           "a job has a table, or a project that knows its columns");
    for (const FitRequest::Assignment& assignment : request.columns)
        Demand(!assignment.heading.empty() || !assignment.gridTitle.empty(), "an assignment says something");
    CheckInputs(request);
    CheckSearch(request);
    for (const std::string& note : request.notes)
        DemandSentence(note);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::ostringstream out;
    try {
        const std::optional<FitRequest> request = ParseCommandLine(WordsOf(TextOf({data, size})), out);
        Demand(request.has_value() == out.str().empty(), "only a wish for help is answered at once");
        if (request)
            Check(*request);
        else
            DemandShowable(out.str());
    } catch (const BatchFailure& failure) {
        Demand(failure.status == ExitStatus::BadUsage, "what cannot be asked is bad usage");
        DemandSentence(failure.message);
    }
    return 0;
}
