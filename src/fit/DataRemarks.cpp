// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/DataRemarks.h"

#include "base/NumberText.h"
#include "fit/RankCorrelation.h"

#include <algorithm>
#include <cmath>

namespace data_remarks
{
using number_text::Fixed;
using remark_text::Labels;
using remark_text::Short;

namespace
{
/// From here on the order of the periods all but gives the order of the catch rates: a series without the
/// contrast that tells a large slow stock from a small fast one (Hilborn and Walters 1992, "one-way trip").
constexpr double kOneWay = 0.9;

/// A stock below this share of its start yields nothing any more; fisheries close far above it.
constexpr double kGone = 0.01;

/// Degrees of freedom below which the residuals say next to nothing about their own spread.
constexpr int kFewestDegrees = 5;

/// Rounding of the 32-bit yield is 1e-7; a per cent is a difference that a manager would see.
constexpr double kOtherYield = 0.01;

/// 32-bit division and the user's own rounding.
constexpr double kSameValue = 1e-5;
} // namespace

Said OneWayTrip(const FitReading& fit)
{
    if (!fit.IsProduction())
        return {};
    std::vector<double> rates;
    for (int t = 1; t <= fit.Periods(); ++t) {
        const double effort = static_cast<double>(fit.data.Effort(t));
        if (fit.InFit(t) && effort > 0.0)
            rates.push_back(static_cast<double>(fit.Catch(t)) / effort);
    }
    const double rho = RankCorrelationWithOrder(rates);
    if (std::fabs(rho) <= kOneWay)
        return {};
    return Remark{"OneWayTrip", std::string("The catch rate (or index) only ") +
                                    (rho < 0.0 ? "falls" : "rises") +
                                    " over the series: its rank correlation with time is " + Fixed(rho, 2) +
                                    ". Stock size and growth can hardly be told apart."};
}

Said WorseThanMean(const FitReading& fit)
{
    if (!(fit.method.RSqr() < 0.0F))
        return {};
    return Remark{"WorseThanMean", "R squared is " + Short(static_cast<double>(fit.method.RSqr())) +
                                       ": the model explains less than a constant would."};
}

Said StartRepaired(const FitReading& fit)
{
    const auto regression = fit.method.ReplacedStart();
    if (!fit_op::IsLeastSquares(fit.fitOp) || !regression)
        return {};
    const std::string& name = fit.StockName();
    return Remark{"StartRepaired", "The regression gave " + name + " = " + Short(*regression) +
                                       ", a stock that could not have yielded the catches. The " + name +
                                       " shown, " + Short(fit.stock) +
                                       ", is that value doubled until the stock survives, and no fit."};
}

Said StockGone(const FitReading& fit)
{
    if (!(fit.finalStock < kGone * fit.firstStock) && fit.finalStock > 0.0)
        return {};
    const double percent = fit.firstStock > 0.0 ? 100.0 * fit.finalStock / fit.firstStock : 0.0;
    const std::string left = fit.finalStock > 0.0 ? "ends at " + Short(percent) + " % of where it began"
                                                  : std::string("ends at ") + Short(fit.finalStock);
    return Remark{"StockGone", "The stock " + left +
                                   ": the model says that it is gone. Check the units of the catch" +
                                   (fit.IsProduction() ? "." : ", and M.")};
}

Said FewPeriods(int periodsInFit, int parameters)
{
    const int left = periodsInFit - parameters;
    if (left >= kFewestDegrees)
        return {};
    return Remark{"FewPeriods", std::to_string(periodsInFit) + " periods are in the fit and " +
                                    std::to_string(parameters) +
                                    " parameters (q counted) are estimated: " + std::to_string(left) +
                                    " to spare, fewer than " + std::to_string(kFewestDegrees) +
                                    ", say little about how good the estimates are."};
}

Said GapInCatch(const FitReading& fit)
{
    std::vector<int> gaps;
    std::vector<int> empty; // since the last total catch; behind the end of the series they are no gap
    int last = 0;
    for (int row = 1; row <= fit.data.ShownRows(); ++row) {
        if (fit.TotalCatch(row) == clsVeltData::kMissing) {
            empty.push_back(row);
            continue;
        }
        gaps.insert(gaps.end(), empty.begin(), empty.end());
        empty.clear();
        last = row;
    }
    if (gaps.empty())
        return {};
    std::vector<int> lost;
    for (int row = fit.Periods() + 1; row <= last; ++row)
        lost.push_back(row);
    return Remark{
        "GapInCatch",
        Labels(gaps, fit.data) + (gaps.size() == 1 ? " has" : " have") +
            " no total catch. Periods are counted by their total catches, so the fit ends too early: " +
            Labels(lost, fit.data) + (lost.size() == 1 ? " plays" : " play") +
            " no part, and an empty catch inside the series is taken as -1. Fill the gap."};
}

namespace
{
bool Same(double a, double b)
{
    return std::fabs(a - b) <= kSameValue * std::max(std::fabs(a), std::fabs(b));
}

/// The fitted catch is the index, as it stands or turned into numbers by the mean weight.
bool IsTheIndex(const FitReading& fit, int t)
{
    const double index = static_cast<double>(fit.data.AbundIndex(t));
    const double weight = static_cast<double>(fit.data.MeanWt(t));
    const double fitted = static_cast<double>(fit.Catch(t));
    return Same(fitted, index) || (fit.data.ColPresent(columns::MeanWt) && Same(fitted * weight, index));
}
} // namespace

Said IndexUnused(const FitReading& fit)
{
    if (!fit.method.UsingNos() || !fit.data.ColPresent(columns::AbundIndex))
        return {};
    bool used = true;
    bool isTotal = true;
    for (int t = 1; t <= fit.Periods(); ++t) {
        if (!fit.InFit(t))
            continue;
        used = used && IsTheIndex(fit, t);
        isTotal = isTotal && fit.Catch(t) == fit.TotalCatch(t);
    }
    if (used)
        return {};
    const modVeltGlobals::Globals& texts = fit.data.TheRun().globals;
    const auto title = [&](int column) { return "\"" + texts.ColumnDisplayNames(column) + "\""; };
    const bool fromWeight = isTotal && !fit.data.ColPresent(columns::MeanWt);
    return Remark{"IndexUnused",
                  "This model fits the catch in numbers and the effort; the " + title(columns::AbundIndex) +
                      " column played no part. " +
                      (fromWeight ? "A column " + title(columns::MeanWt) +
                                        " would turn the index into the numbers that are fitted."
                                  : "To fit the index, give it as " + title(columns::CatchNums) + ".")};
}

Said PellaYield(const FitReading& fit)
{
    if (fit.model != models::kPellaTomlinson)
        return {};
    // r B (1 - (B / K)^z) is highest at (B / K)^z = 1 / (z + 1), where it is r B z / (z + 1).
    const double z = static_cast<double>(fit.method.Z());
    const double top = fit.second * fit.stock * std::pow(z + 1.0, -1.0 / z) * z / (z + 1.0);
    if (std::fabs(fit.msy - top) <= kOtherYield * top)
        return {};
    return Remark{"PellaYield", "M.S.Y. is " + Short(fit.msy) +
                                    ", but the highest point of the yield curve is " + Short(top) +
                                    ". The formula of M.S.Y. agrees with the curve at a Z of 1 only: "
                                    "read the yield from the curve."};
}

std::vector<int> PeriodsWithoutLogarithm(const IMethod& method, const clsVeltData& data)
{
    std::vector<int> rows;
    if (method.FitOp() != fit_op::kLog)
        return rows;
    const FitReading fit{.method = method, .data = data};
    // Also those toggled out: their residuals are worked out with the others, so they end the fit too.
    for (int t = 1; t <= fit.Periods(); ++t) {
        if (data.Included(t) && !(fit.Catch(t) > 0.0F))
            rows.push_back(t);
    }
    return rows;
}

Said ZeroCatch(const IMethod& method, const clsVeltData& data)
{
    const std::vector<int> rows = PeriodsWithoutLogarithm(method, data);
    if (rows.empty())
        return {};
    const bool index = !method.UsingNos() && data.ColPresent(columns::AbundIndex);
    const bool one = rows.size() == 1;
    return Remark{"ZeroCatch", std::string("The log error model needs the logarithm of every ") +
                                   (index ? "index" : "catch") + ", and " + (one ? "period " : "periods ") +
                                   Labels(rows, data) + (one ? " has" : " have") + " none above 0. Exclude " +
                                   (one ? "this period by leaving its " : "these periods by leaving their ") +
                                   (index ? "index" : "effort") + " empty; to toggle " +
                                   (one ? "it" : "them") + " out is not enough."};
}
} // namespace data_remarks
