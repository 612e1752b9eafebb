// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchFailure.h"
#include "batch/WritePlots.h"

bool CanDraw()
{
    return false;
}

void WritePlots(const BatchWindow& /*window*/, const std::string& /*directory*/)
{
    throw BatchFailure(ExitStatus::BadUsage,
                       "--plots: this velt-batch was built without the desktop and cannot draw pictures.");
}
