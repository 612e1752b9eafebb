// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ErrorReporter.h"
#include "base/Ports.h"
#include "base/modVeltGlobals.h"

/// What one run of the program holds once, passed by reference to whoever needs it. Two runs can live side by
/// side. The ports must outlive it.
struct Run {
    Run(IUser& user, IMainWindow& window, IProgressMeter& meter, IRandomSource& random)
        : user(user), window(window), meter(meter), random(random), reporter(user)
    {
        modVeltGlobals::CacheStrings(globals);
    }

    modVeltGlobals::Globals globals;
    IUser& user;
    IMainWindow& window;
    IProgressMeter& meter;
    IRandomSource& random;
    ErrorReporter reporter;
    /// Set when a logged fit is loaded and never cleared: "New Input Parameters" then stays available for
    /// the rest of the run, also on other data sets. Deliberate.
    bool FitReloaded = false;
};
