// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever the bytes, a project file is read whole or refused in one sentence, and what was read and is
// written again reads the same: data set, places of the bodies, and every body that can be read.
#include "data/ProjectData.h"
#include "data/clsVeltData.h"
#include "files/ProjectRecords.h"
#include "fuzz/FuzzChecks.h"
#include "fuzz/FuzzDesk.h"

#include <optional>
#include <utility>
#include <vector>

namespace
{
using namespace project_file;

/// Runs `read`; nothing when the file is refused, which must be told in a sentence.
template <typename Read>
auto ReadOrRefusal(const Read& read) -> std::optional<decltype(read())>
{
    try {
        return read();
    } catch (const VeltError& error) {
        DemandSentence(error.description);
        return std::nullopt;
    }
}

void CheckTable(const DataTable& table)
{
    Demand(table.ndPoints == table.timeInts + 1, "a trajectory ends behind the last period");
    Demand(table.timeInts > 0 || table.ShownRows() == 0, "a range without periods has no rows");
    int toggledIn = 0;
    for (int row = 1; row <= DataTable::kRows; ++row) {
        Demand(table.included(row) || !table.toggledIn(row), "who is toggled in is included");
        toggledIn += table.toggledIn(row) ? 1 : 0;
    }
    Demand(table.nntPoints == toggledIn, "rows toggled in are counted");
}

void CheckData(const OpenedProject& opened)
{
    const clsVeltData& data = opened.data;
    Demand(IsUtf8(data.DSDesc()), "the description is UTF-8", data.DSDesc());
    Demand(data.NumLoggedFits() == data.V2KLoggedFits(), "as many fits as announced");
    Demand(data.NumProjScenarios() == data.V2kProjScens(), "as many scenarios as announced");
    if (opened.failedConversion)
        DemandSentence(opened.failedConversion->description);
    else
        CheckTable(data.Table());
    for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i)
        Demand(data.ProjScenario(i)->Title().size() <= 3 * clsProjScenario::kTitleWidth, "titles are short");
}

/// A body that can be read is written in a form that reads and writes the same.
void CheckBody(const Body& body, std::string_view bytes, std::int32_t model)
{
    Demand(body.bootStraps.size() == std::size_t{8} * 1000, "8 times 1000 replicates");
    Demand(body.model.NumBootStraps >= 0 && body.model.NumBootStraps <= kReplicates, "0 to 1000 replicates");
    const std::string written = WriteBody(body, model);
    const bool same = written == bytes; // then it reads as it did
    Demand(same || WriteBody(ReadBody(written, model), model) == written, "a body reads as it was written");
}

/// The bodies whose places are within the file, as a save would carry them; an empty one for the others.
std::vector<std::string_view> CheckedBodies(const Project& project, std::string_view file)
{
    constexpr std::size_t kMostRead = 4; // fits may share one body, which is slow to read again and again
    std::vector<std::string_view> bodies;
    for (const FitIndexRecord& fit : project.fits) {
        const auto body = ReadOrRefusal([&] { return BodyOf(fit, file); });
        bodies.push_back(body.value_or(std::string_view()));
        if (!body || bodies.size() > kMostRead)
            continue;
        const auto start = static_cast<std::size_t>(fit.Start);
        if (const auto read = ReadOrRefusal([&] { return ReadBody(*body, fit.MethType, start); }))
            CheckBody(*read, *body, fit.MethType);
    }
    return bodies;
}

/// Fits that share the bytes of a small file could ask for very much of it.
bool IsModest(const std::vector<std::string_view>& bodies)
{
    constexpr std::size_t kMostBytes = 1U << 20U;
    std::size_t bytes = 0;
    for (const std::string_view body : bodies)
        bytes += body.size();
    return bytes <= kMostBytes;
}

void CheckWrittenAgain(Project project, std::string_view file, const std::vector<std::string_view>& bodies,
                       Run& run)
{
    const std::string written = WriteProject(project, bodies);
    if (written == file)
        return; // it reads as it did
    const OpenedProject again = ReadProjectData(written, run);
    Demand(!again.data.IsDirty(), "a project that was written opens without a change");
    Project projectAgain = ProjectOf(again.data);
    projectAgain.data = project.data; // a second conversion may derive what the first made possible
    std::vector<std::string_view> bodiesAgain;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        bodiesAgain.push_back(BodyOf(projectAgain.fits[i], written));
        Demand(bodiesAgain.back() == bodies[i], "a body is where its index record says");
    }
    Demand(WriteProject(projectAgain, bodiesAgain) == written, "a project reads as it was written");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static Desk desk; // its texts are read once
    const std::string_view file = TextOf({bytes, size});
    const auto opened = ReadOrRefusal([&] { return ReadProjectData(file, desk.run); });
    if (!opened)
        return 0;
    CheckData(*opened);
    Project project = ProjectOf(opened->data);
    const auto bodies = CheckedBodies(project, file);
    if (IsModest(bodies))
        CheckWrittenAgain(std::move(project), file, bodies, desk.run);
    Demand(desk.user.messages.empty(), "a reader shows nothing");
    return 0;
}
