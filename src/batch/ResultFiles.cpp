// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ResultFiles.h"

#include "base/ForeignText.h"
#include "base/VeltError.h"
#include "batch/BatchFailure.h"
#include "batch/ResultNames.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace
{
/// `inner` as seen from `outer`: empty for the same folder; nothing when it lies elsewhere.
std::optional<fs::path> Within(const fs::path& outer, const fs::path& inner)
{
    if (std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first != outer.end())
        return std::nullopt;
    return outer == inner ? fs::path() : inner.lexically_relative(outer);
}

bool IsSameFile(int stream, const std::string& file)
{
    struct stat opened {
    };
    struct stat named {
    };
    return ::fstat(stream, &opened) == 0 && ::stat(file.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// The first file of results in `folder`, by its name, that is the file `input` under whatever name.
std::optional<fs::path> ResultThatIs(const fs::path& folder, const std::string& input)
{
    std::error_code failed;
    for (fs::directory_iterator at(folder, failed); !failed && at != fs::directory_iterator();
         at.increment(failed)) {
        std::error_code apart;
        if (AllResults().byName(at->path().filename().string()) && fs::equivalent(at->path(), input, apart))
            return at->path();
    }
    return std::nullopt;
}

std::vector<fs::path> TableNames(const FitRequest& request, const fs::path& within)
{
    std::vector<fs::path> names;
    const auto add = [&](bool wanted, const std::vector<std::string>& more) {
        for (const std::string& name : more)
            if (wanted)
                names.push_back(within / name);
    };
    add(request.csvDir.has_value(), FitTableNames());
    add(request.csvDir && request.bootstraps, BootstrapTableNames());
    add(request.csvDir && (request.scenarios || request.projectCi), ProjectionTableNames());
    add(request.contours.has_value(), ContourTableNames());
    return names;
}
} // namespace

ResultFiles::ResultFiles(const FitRequest& request)
{
    if (request.csvDir)
        m_directories.push_back({"--csv", {*request.csvDir, AllResults()}});
    else if (request.contours)
        m_directories.push_back({"--contours", {".", ContourResults()}});
    if (!request.plotsDir)
        return;
    Directory pictures{"--plots", {*request.plotsDir, AllResults()}};
    if (!m_directories.empty()) {
        const fs::path tables = m_directories.front().set.Folder();
        const std::optional<fs::path> in = Within(tables, pictures.set.Folder());
        const std::optional<fs::path> around = Within(pictures.set.Folder(), tables);
        // The working directory cannot be swapped; one within it that can goes better by itself.
        if (around && (around->empty() || !HoldsWorkingFolder(pictures.set.Folder()))) {
            m_tables.within = *around;
            m_directories.clear();
        } else if (in && !HoldsWorkingFolder(tables)) {
            m_pictures.within = *in;
            return;
        }
    }
    m_pictures.directory = m_directories.size();
    m_directories.push_back(std::move(pictures));
}

void ResultFiles::Add(const Place& place, std::vector<ResultFile> files)
{
    for (ResultFile& file : files)
        m_directories.at(place.directory).set.Add(place.within / file.name, std::move(file.bytes));
}

void ResultFiles::RefuseToReplace(const std::string& input, const std::string& kind) const
{
    for (const auto& [option, set] : m_directories)
        for (const fs::path& within : {fs::path(), m_tables.within, m_pictures.within})
            if (const auto result = ResultThatIs(set.Folder() / within, input))
                throw BatchFailure(ExitStatus::BadUsage, (option + ": the results would replace ")
                                                             .append(Quotable(result->string()))
                                                             .append(", which is the ")
                                                             .append(kind)
                                                             .append(" file. Name another directory."));
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        if (IsSameFile(stream, input))
            throw BatchFailure(ExitStatus::BadUsage, "The output goes into " + Quotable(input) +
                                                         ", which is the " + kind + " file.");
}

void ResultFiles::Check(const FitRequest& request) const
{
    RefuseToReplace(request.file, "data");
    if (request.scenarios)
        RefuseToReplace(*request.scenarios, "scenario");
    for (std::size_t i = 0; i < m_directories.size(); ++i)
        try {
            const bool hasTables = m_tables.directory == i;
            m_directories[i].set.Check(hasTables ? TableNames(request, m_tables.within)
                                                 : std::vector<fs::path>{});
        } catch (const VeltError& error) {
            throw BatchFailure(ExitStatus::BadUsage, m_directories[i].option + ": " + error.description);
        }
}

void ResultFiles::Publish() const
{
    for (const auto& [option, set] : m_directories)
        try {
            set.Publish();
        } catch (const VeltError& error) {
            throw BatchFailure(ExitStatus::BadUsage, option + ": " + error.description);
        }
}
