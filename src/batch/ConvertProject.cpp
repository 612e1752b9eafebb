// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ConvertProject.h"

#include "base/FileErrors.h"
#include "base/ForeignText.h"
#include "base/SignalHold.h"
#include "base/StringTable.h"
#include "batch/BatchDesk.h"
#include "batch/BatchFailure.h"
#include "batch/InspectProject.h"
#include "batch/NewFile.h"
#include "batch/ProjectBytes.h"
#include "data/clsVeltData.h"
#include "files/ScratchFolder.h"
#include "fit/ProjectFile.h"

#include <filesystem>

namespace
{
void Import(clsVeltData& data, const std::string& path)
{
    try {
        data.ImportVELT2File(path);
    } catch (const FileError& error) {
        RefuseFile(path, error.description + (error.reason.empty() ? "" : "\n" + error.reason));
    } catch (const VeltError& error) {
        RefuseFile(path, LoadResString(1301) + "\n" + error.description);
    }
}

void Save(clsVeltData& data, const std::string& path)
{
    if (ScratchFolder::IsOpenElsewhere(path))
        RefuseFile(path, "another VELT on this computer has this project open.");
    const SignalHold hold; // a working copy must not be left behind
    try {
        data.DSFName(std::filesystem::absolute(path).string());
        ProjectFile(data).Save();
    } catch (const VeltError& error) {
        throw BatchFailure(ExitStatus::BadUsage, error.description);
    }
}
} // namespace

std::string ConvertProject(const FitRequest& request, std::ostream& err)
{
    const FitRequest::Making& making = *request.conversion;
    CheckNewFile(making);
    BatchDesk desk(request);
    clsVeltData data(desk.run);
    Import(data, making.from);
    Save(data, making.to);
    if (data.NumLoggedRuns() > 0)
        err << "velt-batch: " << Printable(Quotable(making.from)) << ": its logged runs ("
            << data.NumLoggedRuns() << ") are not taken over.\n";
    return InfoOf(making.to);
}
