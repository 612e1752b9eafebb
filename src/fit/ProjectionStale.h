// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/Remark.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// An effort scenario run forward by the model without recruitment.
struct EffortProjection {
    std::string title;
    double q = 0.0;                     ///< catchability
    float mort = 0.0F;                  ///< natural mortality per period
    std::int64_t firstTime = 0;         ///< label of the first future period
    std::vector<float> effort = {};     ///< of the future periods
    std::vector<float> population = {}; ///< at their starts, and one more behind the last
};

/// The model makes the catch of a projected effort from what the trajectory before it left, and takes it one
/// period late. Said where that moves a projected number by more than its rounding, with the numbers that
/// catches from each period's own stock would leave (Pope 1972).
std::optional<Remark> ProjectionStale(std::span<const EffortProjection> projections);
