// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/ParameterLimits.h"
#include "fit/Remark.h"

#include <span>
#include <vector>

class IMethod;
class clsVeltData;
struct VeltError;

/// What the program says about its own answer: one or two sentences beside the numbers where a fit means less
/// than its digits promise. A remark changes no estimate, asks nothing and stops nothing; a rule whose
/// arithmetic fails says nothing. Most fits deserve none.

/// On a fit that has just been made. The model and the data set are afterwards to the bit as they were.
/// \param method  holds the fit, with the catches it was made on and its R squared
std::vector<Remark> RemarksOfFit(IMethod& method, clsVeltData& data);

/// On the limits of a bootstrap run. \param limits at the levels in force
std::vector<Remark> RemarksOfLimits(const IMethod& method, const clsVeltData& data,
                                    std::span<const ParameterLimits> limits);

/// On a fit that ended with `error`, where the cause is known. \param method null when there was none yet
std::vector<Remark> RemarksOfFailure(const VeltError& error, const IMethod* method, const clsVeltData& data);
