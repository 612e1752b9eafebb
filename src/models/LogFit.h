// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/ModelState.h"

/// Geometric mean of C(i) / X(i) over the periods toggled in: the best q of a lognormal catch for the current
/// trajectory. 0 when the product of the ratios is not above 0, as after an underflow.
double LnFitComputeQ(const ModelState& m);

/// Variance of ln(C(i) / X(i)) over the periods toggled in with X(i) > 0: the concentrated likelihood of the
/// log fit. The sums of C, X and l are 32-bit floats, which makes it rough at the 1e-5 level. Deliberate.
/// \throws VeltError 5 for a catch that is not above 0, 11 when no period has X(i) > 0
float LnVarForMinimisation(const ModelState& m);

/// FittedVec = ln q + ln E + ln of `meanPop(i)` and ResidVec = ln C - FittedVec for the periods Included.
/// \throws VeltError 5 where one of them is not above 0
void FillLogResiduals(ModelState& m, double q, const std::function<double(int)>& meanPop);
