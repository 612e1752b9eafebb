// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ExportProject.h"

#include "base/ForeignText.h"
#include "base/SignalHold.h"
#include "base/StringTable.h"
#include "batch/BatchDesk.h"
#include "batch/BatchFailure.h"
#include "batch/NewFile.h"
#include "batch/ProjectBytes.h"
#include "data/ProjectData.h"
#include "files/WholeFile.h"

namespace
{
OpenedProject Open(const std::string& path, Run& run)
{
    try {
        return ReadProjectData(ProjectBytes(path), run);
    } catch (const VeltError& error) {
        RefuseFile(path, error.description);
    }
}

void Export(const clsVeltData& data, const FitRequest::Making& making)
{
    const SignalHold hold; // a file that is half written must not be left behind
    try {
        data.ExportToASCIIFile(making.to);
    } catch (const WriteError& error) {
        throw BatchFailure(ExitStatus::BadUsage, error.description);
    } catch (const VeltError& error) {
        RefuseFile(making.from, error.description);
    }
}
} // namespace

std::string ExportProject(const FitRequest& request, std::ostream& err)
{
    const FitRequest::Making& making = *request.textExport;
    CheckNewFile(making);
    BatchDesk desk(request);
    const OpenedProject opened = Open(making.from, desk.run);
    if (opened.failedConversion)
        err << "velt-batch: " << Quotable(making.from) << ": "
            << Printable(opened.failedConversion->description)
            << "\nThe columns are exported as they stand in the project.\n";
    Export(opened.data, making);
    return LoadResString(1312) + Quotable(making.to) + "\n";
}
