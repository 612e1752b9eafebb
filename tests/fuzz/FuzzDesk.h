// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Run.h"
#include "batch/BatchUser.h"
#include "batch/BatchWindow.h"
#include "engines/RandomSource.h"

/// The ports of a run; nobody is at the desk.
struct Desk {
    FitRequest request;
    BatchUser user{request};
    BatchWindow window;
    BatchMeter meter;
    RandomSource random{7};
    Run run{user, window, meter, random};
};
