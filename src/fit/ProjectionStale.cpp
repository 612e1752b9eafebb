// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ProjectionStale.h"

#include "fit/FitReading.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Some hundred roundings to 32 bits; a hundred-thousandth of the stock is nobody's decision.
constexpr double kRounding = 1e-5;
constexpr std::size_t kMostPeriods = 3;
constexpr std::size_t kMostScenarios = 3;

/// Populations with the catch C = q E B of each period taken from its own mean stock B.
std::vector<double> OwnPeriods(const EffortProjection& projection)
{
    const double period = std::exp(-static_cast<double>(projection.mort));
    const double half = std::exp(-static_cast<double>(projection.mort) / 2.0);
    std::vector<double> population{static_cast<double>(projection.population.front())};
    for (const float effort : projection.effort) {
        const double qE = projection.q * static_cast<double>(effort);
        const double taken = qE * population.back() * half / (1.0 + qE / 2.0);
        population.push_back(std::max(0.0, period * population.back() - half * taken));
    }
    return population;
}

/// "730 in 5, not 597.3; 730 in 6, not 488.7"; empty where nothing is moved.
std::string Moved(const EffortProjection& projection)
{
    using remark_text::Short;
    const std::vector<double> own = OwnPeriods(projection);
    std::string text;
    std::size_t told = 0;
    for (std::size_t i = 1; i < own.size() && told < kMostPeriods; ++i) {
        const auto given = static_cast<double>(projection.population[i]);
        if (std::fabs(given - own[i]) <= kRounding * std::fabs(own.front()))
            continue;
        text += (told++ > 0 ? "; " : "") + Short(given) + " in " +
                std::to_string(projection.firstTime + static_cast<std::int64_t>(i)) + ", not " +
                Short(own[i]);
    }
    return text;
}
} // namespace

std::optional<Remark> ProjectionStale(std::span<const EffortProjection> projections)
{
    std::string scenarios;
    std::size_t told = 0;
    std::size_t more = 0;
    for (const EffortProjection& projection : projections) {
        const std::string moved = Moved(projection);
        if (moved.empty())
            continue;
        if (told < kMostScenarios) {
            scenarios += " \"" + projection.title + "\": " + moved + ".";
            ++told;
        } else {
            ++more;
        }
    }
    if (told == 0)
        return std::nullopt;
    if (more > 0)
        scenarios += " The same holds for " + std::to_string(more) + " more.";
    return Remark{
        "ProjectionStale",
        "Under an effort scenario this model makes each future catch from what the trajectory "
        "before left behind, and takes it one period late; the first one is what stood in an empty "
        "cell or was left by another scenario. Population projected, and with each catch taken from "
        "the stock of its own period:" +
            scenarios + " A scenario of total catch is not concerned."};
}
