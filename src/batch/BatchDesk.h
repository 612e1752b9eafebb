// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Run.h"
#include "batch/BatchUser.h"
#include "batch/BatchWindow.h"
#include "engines/RandomSource.h"

/// The ports of a run for a command that fits nothing.
struct BatchDesk {
    explicit BatchDesk(const FitRequest& request) : user(request) {}

    BatchUser user;
    BatchWindow window;
    BatchMeter meter;
    RandomSource random;
    Run run{user, window, meter, random};
};
