// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ProjectBytes.h"

#include "base/FileErrors.h"
#include "base/FileType.h"
#include "base/ForeignText.h"
#include "batch/BatchFailure.h"
#include "files/ReadWholeFile.h"

#include <limits>

void RefuseFile(const std::string& path, const std::string& why)
{
    throw BatchFailure(ExitStatus::BadData, Quotable(path) + ": " + why);
}

std::string ProjectBytes(const std::string& path)
{
    const auto checkSize = [&path](std::uintmax_t size) {
        if (size > static_cast<std::uintmax_t>(std::numeric_limits<std::int32_t>::max()))
            RefuseFile(path, "no project is that large.");
    };
    std::vector<std::uint8_t> bytes;
    try {
        bytes = ReadWholeFile(path, checkSize);
    } catch (const FileError& error) {
        RefuseFile(path, error.description + (error.reason.empty() ? "" : "\n" + error.reason));
    }
    const FileType type = GetFileType(path);
    if (type == FileType::Velt2)
        RefuseFile(path,
                   "this is a project of version 2.0; velt-batch convert makes one of this version of it.");
    if (type != FileType::Velt3)
        RefuseFile(path, "this is no project of version 3.0.");
    return {bytes.begin(), bytes.end()};
}
