// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ReadData.h"

#include "base/FileErrors.h"
#include "base/ForeignText.h"
#include "batch/BatchFailure.h"
#include "batch/ReadTable.h"
#include "data/clsVeltData.h"
#include "files/ScratchFolder.h"
#include "fit/ProjectFile.h"

#include <filesystem>
#include <memory>

namespace
{
[[noreturn]] void RefuseProject(const std::string& path, const std::string& why)
{
    throw BatchFailure(ExitStatus::BadData, Quotable(path) + ": " + why);
}

void OpenProjectAt(const std::string& path, ProjectFile& project)
{
    try {
        const auto failedConversion = project.Open(std::filesystem::absolute(path).string());
        if (failedConversion)
            RefuseProject(path, failedConversion->description);
    } catch (const FileError& error) {
        RefuseProject(path, error.description + (error.reason.empty() ? "" : "\n" + error.reason));
    } catch (const VeltError& error) {
        RefuseProject(path, error.description);
    }
}

/// Whether two tables hold the same periods and the same user columns.
bool HoldSameData(const DataTable& a, const DataTable& b)
{
    if (a.minTimeP != b.minTimeP || a.maxTimeP != b.maxTimeP)
        return false;
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
        if (a.present(column) != b.present(column) || (a.present(column) && !(a.db(column) == b.db(column))))
            return false;
    return true;
}

/// The project to log in, where it exists, in place of the data that were read: they must be its own.
void TakeProject(clsVeltData& data, ProjectFile& project, const FitRequest& request)
{
    if (!request.logAs)
        return;
    std::error_code error;
    const bool sameFile =
        request.isProject && std::filesystem::equivalent(request.file, request.project, error);
    if (!sameFile && std::filesystem::exists(request.project, error)) {
        const auto read = std::make_unique<DataTable>(data.Table()); // opening puts another in its place
        OpenProjectAt(request.project, project);
        if (!HoldSameData(*read, data.Table()))
            RefuseProject(request.project, "this project holds other data than " + Quotable(request.file) +
                                               "; a fit of those cannot be logged in it.");
    }
    if (data.HasLoggedFit(*request.logAs))
        throw BatchFailure(ExitStatus::BadUsage, "--log-as: the project has a fit of the name \"" +
                                                     Quotable(*request.logAs) + "\" already.");
}
} // namespace

void ReadData(clsVeltData& data, ProjectFile& project, BatchUser& user, const FitRequest& request)
{
    if (request.logAs && ScratchFolder::IsOpenElsewhere(request.project)) // asked before it is open here
        RefuseProject(request.project, "another VELT on this computer has this project open.");
    if (request.isProject)
        OpenProjectAt(request.file, project);
    else
        ReadTable(data, user, request);
    TakeProject(data, project, request);
    ExcludePeriods(data, request);
}
