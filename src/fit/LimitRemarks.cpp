// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/LimitRemarks.h"

#include "base/NumberText.h"
#include "data/clsVeltData.h"
#include "fit/FitReading.h"
#include "models/IMethod.h"

#include <algorithm>
#include <cmath>

namespace limit_remarks
{
using number_text::Fixed;
using remark_text::Listed;

namespace
{
/// A refit finds its parameters to about 1e-4; replicates of a fit without residuals lie that far beside it.
constexpr double kRefitTolerance = 1e-3;

/// An estimate that is known no better than to a factor of ten is not known.
constexpr double kWide = 10.0;

/// A few per cent of resampled series have no fit of their own; more of them bias what is left.
constexpr double kWorthTelling = 5.0; // per cent

bool LiesOutside(const ParameterLimits& p)
{
    const double slack = kRefitTolerance * std::fabs(p.estimate);
    const auto [low, high] = std::minmax(p.low, p.high); // levels may be given either way round
    return p.estimate < static_cast<double>(low) - slack || p.estimate > static_cast<double>(high) + slack;
}

bool IsWide(const ParameterLimits& p)
{
    if (!(p.estimate > 0.0)) // a replacement yield may be negative, and has no tenth then
        return false;
    const auto [low, high] = std::minmax(p.low, p.high);
    return static_cast<double>(low) <= p.estimate / kWide || static_cast<double>(high) >= p.estimate * kWide;
}

std::vector<std::string> NamesOf(std::span<const ParameterLimits> limits,
                                 bool (*chosen)(const ParameterLimits&))
{
    std::vector<std::string> names;
    for (const ParameterLimits& p : limits) {
        if (chosen(p))
            names.push_back(p.name);
    }
    return names;
}
} // namespace

std::optional<double> ShiftedMeanPosition(const IMethod& method, const clsVeltData& data)
{
    const bool fromStart =
        method.WhichMeth() == models::kNoRecruitment || method.WhichMeth() == models::kConstantRecruitment;
    if (!fromStart || method.FitOp() != fit_op::kGamma)
        return {};
    const std::vector<float> positions = method.Details().resid;
    double sum = 0.0;
    int n = 0;
    for (int t = 1; t <= static_cast<int>(positions.size()); ++t) {
        if (!data.Included(t) || !data.ToggledIn(t))
            continue;
        sum += static_cast<double>(positions[static_cast<std::size_t>(t - 1)]);
        ++n;
    }
    if (n == 0)
        return {};
    return sum / n;
}

std::optional<MeasuredLimits> MeasuredUnderGamma(std::int32_t whichMeth)
{
    if (whichMeth == models::kNoRecruitment)
        return MeasuredLimits{200, 0.41, "N1", 85, 89};
    if (whichMeth == models::kConstantRecruitment)
        return MeasuredLimits{200, 0.83, "K", 93, 28};
    return {};
}

namespace
{
std::string TellOf(double meanPosition)
{
    return "The replicates of this model under the gamma error model are shifted: the catches stand at a "
           "mean position of " +
           Fixed(meanPosition, 2) + " in their distributions, " + Fixed(std::fabs(meanPosition - 0.5), 2) +
           (meanPosition < 0.5 ? " below" : " above") + " the 0.5 of a fit. ";
}

std::string TellOf(const MeasuredLimits& measured)
{
    return "In " + std::to_string(measured.dataSets) + " simulated data sets with a mean position of " +
           Fixed(measured.meanPosition, 2) + ", 90 % limits of " + measured.stock + " held the truth in " +
           std::to_string(measured.stockHeld) + " % and those of q in " + std::to_string(measured.qHeld) +
           " %. ";
}
} // namespace

Said LimitsShifted(std::optional<double> meanPosition, std::span<const ParameterLimits> limits,
                   const std::optional<MeasuredLimits>& measured)
{
    const std::vector<std::string> outside = NamesOf(limits, LiesOutside);
    if (!meanPosition && outside.empty())
        return {};
    std::string text;
    if (meanPosition)
        text = TellOf(*meanPosition);
    if (meanPosition && measured)
        text += TellOf(*measured);
    if (!outside.empty())
        text += Listed(outside) + (outside.size() == 1 ? " lies outside its" : " lie outside their") +
                " own limits. ";
    return Remark{"LimitsShifted", text + "Do not use the limits."};
}

Said LimitsWide(std::span<const ParameterLimits> limits)
{
    const std::vector<std::string> wide = NamesOf(limits, IsWide);
    if (wide.empty())
        return {};
    return Remark{"LimitsWide",
                  "The limits of " + Listed(wide) +
                      " reach ten times the estimate, or a tenth of it: the data hardly determine " +
                      (wide.size() == 1 ? "it." : "them.")};
}

Said ReplicatesFailed(int drawnAgain, int replicates)
{
    const double percent = 100.0 * drawnAgain / std::max(1, drawnAgain + replicates);
    if (!(percent > kWorthTelling))
        return {};
    return Remark{"ReplicatesFailed",
                  std::to_string(drawnAgain) + " of " + std::to_string(drawnAgain + replicates) +
                      " refits (" + Fixed(percent, 0) +
                      " %) failed and were drawn again: the limits know only the series that "
                      "could be fitted, and are likely too narrow."};
}
} // namespace limit_remarks
