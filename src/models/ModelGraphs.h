// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/ModelState.h"
#include "models/clsBootStrap.h"

/// Hands the main window the graphs of a fit: catch rate, catch, residuals against time and against expected
/// catch, and population numbers and weight where their columns exist. Needs the expected series written.
/// \throws VeltError 11 when no period is toggled in, 5 for a zero catch under the log model; graphs already
/// handed over stay
void AddModelGraphs(const ModelState& m);

/// Hands the main window one histogram of 50 classes for each bootstrapped parameter, over the sorted values
/// between the two levels.
void AddBootStrapHistos(const ModelState& m, const clsBootStrap& boot, float low, float high);
