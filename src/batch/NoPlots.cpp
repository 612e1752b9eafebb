// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchFailure.h"
#include "batch/WritePlots.h"

bool CanDraw()
{
    return false;
}

std::vector<ResultFile> PicturesOf(const BatchWindow& /*window*/)
{
    throw BatchFailure(ExitStatus::BadUsage,
                       "--plots: this velt-batch was built without the desktop and cannot draw pictures.");
}
