// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

class clsMethManager;

/// A parameter that bootstraps give limits to.
struct ParameterLimits {
    std::string name; ///< as the report names it
    double estimate = 0.0;
    float low = 0.0F;
    float high = 0.0F;
};

/// The parameters of the current model that have limits, at the manager's levels, in the order of the report:
/// in a production model the replacement yield stands before r here and after MSY among the estimates.
/// Deliberate. \pre bootstraps are done \throws VeltError 9 for a level outside the replicates
std::vector<ParameterLimits> LimitsOf(const clsMethManager& manager);

/// A level as it is kept. \throws VeltError 9 for one that is no number or too large: it has no position
float LevelOf(double entered);
