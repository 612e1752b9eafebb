// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/ModelState.h"

/// Geometric mean of C(i) / X(i) over the periods toggled in: the best q of a lognormal catch for the current
/// trajectory. 0 when the product of the ratios is not above 0, as after an underflow.
double LnFitComputeQ(const ModelState& m);

/// Variance of ln(C(i) / X(i)) over the periods toggled in with X(i) > 0: the concentrated likelihood of the
/// log fit. Summed in 64 bits and answered as a float: with 32-bit sums the surface was rough by up to 3 %
/// near a good fit, and estimates hung on the start and on the units of the catch. \throws VeltError 5 for a
/// catch that is not above 0, 11 when no period has X(i) > 0
float LnVarForMinimisation(const ModelState& m);

/// The same for an evaluation of a search, which also sets `CatchUnexpected` when a period in the fit had to
/// be left out: the variance says nothing of that period and q would be 0, so no search may stay there.
float LnVarOfEvaluation(ModelState& m);

/// FittedVec = ln q + ln E + ln of `meanPop(i)` and ResidVec = ln C - FittedVec for the periods Included.
/// \throws VeltError 5 where one of them is not above 0
void FillLogResiduals(ModelState& m, double q, const std::function<double(int)>& meanPop);
