// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/GammaFit.h"
#include "models/ModelState.h"

#include <functional>
#include <string>

/// A period toggled in, drawn at random, each with the same chance. \throws VeltError 5 when there is none
int GetValidPtNo(const ModelState& m);

/// Runs replicates 1 to NumBootStraps under the meter. A replicate that answers false is drawn again, without
/// limit: only Cancel ends a run whose replicates never succeed. Deliberate.
/// \return how many were drawn again, which the state keeps \throws VeltError 2263 with `source` when the
/// user cancels
int RunReplicates(ModelState& m, const std::string& source, const std::function<bool(int)>& replicate);

/// Which periods a lognormal resampling gives a new catch.
enum class Resample { EveryPeriod, ToggledIn };

/// C(i) = exp(residual of a drawn period + fitted value of i).
void ResampleLogCatch(ModelState& m, Resample which);

/// C(i) of every period = the catch that stands in its distribution where a drawn period stands in its own;
/// 0 for a period out of the fit.
void ResampleGammaCatch(ModelState& m, const GammaCatchMatrix& matrix);

/// Warns the user when more than 10 % of the replicates had to be drawn again.
void WarnOfFailures(const ModelState& m, int failures);
