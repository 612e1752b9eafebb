// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/ParameterLimits.h"
#include "fit/Remark.h"

#include <cstdint>
#include <optional>
#include <span>

class IMethod;
class clsVeltData;

/// Rules that look at the limits of a bootstrap run.
namespace limit_remarks
{
using Said = std::optional<Remark>;

/// The mean position of the catches in their gamma distributions, over the periods in the fit. In the models
/// whose replicates are drawn from positions at the start of a period, not its mean, it lies away from 0.5,
/// and every replicate with it. Nothing for other models and error models, and without a period in the fit.
std::optional<double> ShiftedMeanPosition(const IMethod& method, const clsVeltData& data);

/// How often 90 % limits of a scheme held the truth of simulated data sets: docs/coverage.csv, which the
/// numbers here follow.
struct MeasuredLimits {
    int dataSets = 0;
    double meanPosition = 0.0; ///< of the catches there
    const char* stock = "";    ///< N1 or K
    int stockHeld = 0;         ///< per cent of the data sets
    int qHeld = 0;             ///< per cent of the data sets
};

/// What was measured for the gamma replicates of a model that ShiftedMeanPosition speaks of; nothing for
/// others.
std::optional<MeasuredLimits> MeasuredUnderGamma(std::int32_t whichMeth);

/// \param meanPosition  of ShiftedMeanPosition \param measured  told beside it
Said LimitsShifted(std::optional<double> meanPosition, std::span<const ParameterLimits> limits,
                   const std::optional<MeasuredLimits>& measured = {});
Said LimitsWide(std::span<const ParameterLimits> limits); ///< a limit far from its estimate
/// \param drawnAgain  refits that failed \param replicates  those that went well
Said ReplicatesFailed(int drawnAgain, int replicates);
} // namespace limit_remarks
