// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/Remark.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class IMethod;
class ProjGraph;
class clsProjScenario;
class clsVeltData;

/// A fit run forward through the future periods of the data set's scenarios. Each projection leaves the fit,
/// its series and the counters of the data set to the bit as they were, however it ends.
///
/// Populations are those at the start of a period: numbers, or biomass in a production model. Point 1 is
/// period 1; the fit ends and the scenarios begin at the point behind the last period of the data.
namespace projections
{
/// Why no scenario at all can carry this fit forward, in words for the user; nothing when one can.
std::optional<std::string> RefusalOfFit(const IMethod& method, const clsVeltData& data);
/// The same under the future periods that the data set has now.
std::optional<std::string> Refusal(const IMethod& method, const clsVeltData& data);

/// Titles of the scenarios that suit the model, in their order: effort suits all models, a total catch those
/// that count in its unit.
std::vector<std::string> SuitableTitles(const IMethod& method, const clsVeltData& data);

/// What a projection gives: the graph and, seldom, something to say about its numbers.
struct Projected {
    std::shared_ptr<ProjGraph> graph;
    std::optional<Remark> remark;
};

/// One line for each scenario and, if wanted, the fit. Each scenario keeps its trajectory.
/// \pre Refusal gives nothing
/// \throws VeltError 5 a title that no scenario has; 5, 6, 11 a trajectory that cannot be computed
Projected Project(IMethod& method, clsVeltData& data, const std::vector<std::string>& titles, bool withFit);

/// Where the limits stand among the sorted replicates, from 1.
struct LimitPositions {
    std::int32_t low = 1;
    std::int32_t high = 1;
};
/// B low + 1 and B high, rounded, ties to even; one below 1 is 1. The one is on the low side alone, unlike
/// with the limits of a parameter. Deliberate. \param low, high levels, from 0 to 1
/// \throws VeltError 9 for one above the number of replicates
LimitPositions PositionsOf(std::int32_t replicates, float low, float high);

/// The scenario's line, the fit, and for every point the replicates at the two positions.
/// \pre Refusal gives nothing, and the model has its replicates
/// \throws VeltError 2263 the user cancelled; otherwise as Project
Projected ProjectWithLimits(IMethod& method, clsVeltData& data, std::string_view title,
                            const LimitPositions& positions);
} // namespace projections
