// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/NewFile.h"

#include "base/ForeignText.h"
#include "batch/BatchFailure.h"

#include <filesystem>

void CheckNewFile(const FitRequest::Making& making)
{
    std::error_code error;
    if (std::filesystem::equivalent(making.from, making.to, error))
        throw BatchFailure(ExitStatus::BadUsage,
                           Quotable(making.to) + " is the file that is read; give the new one another name.");
    if (!making.replaces && std::filesystem::exists(making.to, error))
        throw BatchFailure(ExitStatus::BadUsage,
                           Quotable(making.to) + " exists already; --force replaces it.");
}
