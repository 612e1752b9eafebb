// SPDX-License-Identifier: GPL-3.0-or-later
// Least squares of the closed cohort: Leslie's regression, and the start that it gives to the searches.
#include "base/NumberText.h"
#include "core/SingleCohortBench.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace
{
using namespace single_cohort;

/// Weighted least squares of y on x1 and x2 through the origin by the normal equations.
std::array<long double, 2> NormalEquations(const std::vector<long double>& x1,
                                           const std::vector<long double>& x2,
                                           const std::vector<long double>& y,
                                           const std::vector<long double>& w)
{
    long double a = 0, b = 0, c = 0, d = 0, e = 0;
    for (std::size_t i = 0; i < y.size(); ++i) {
        a += w[i] * x1[i] * x1[i];
        b += w[i] * x1[i] * x2[i];
        c += w[i] * x2[i] * x2[i];
        d += w[i] * x1[i] * y[i];
        e += w[i] * x2[i] * y[i];
    }
    const long double det = a * c - b * b;
    return {(d * c - e * b) / det, (a * e - b * d) / det};
}

/// Leslie's regression: catch on effort and on effort times the catch taken before, half of the period's own
/// included. \return N1 and q
std::array<double, 2> Leslie(const std::vector<double>& effort, const std::vector<double>& catches,
                             const std::vector<double>& variance = {})
{
    std::vector<long double> x1, x2, y, w;
    long double before = 0;
    for (std::size_t i = 0; i < effort.size(); ++i) {
        x1.push_back(effort[i]);
        x2.push_back(effort[i] * (before + catches[i] / 2.0L));
        y.push_back(catches[i]);
        w.push_back(variance.empty() ? 1.0L : 1.0L / variance[i]);
        before += catches[i];
    }
    const auto [b1, b2] = NormalEquations(x1, x2, y, w);
    return {static_cast<double>(b1 / -b2), static_cast<double>(-b2)};
}

const std::vector<double> kEffort{12, 15, 9, 14, 20, 11};
const std::vector<double> kCatches{120, 131, 66, 97, 104, 47};
const std::vector<double> kVariance{4, 1, 2, 8, 1, 2};
} // namespace

// The last period is out of the fit and takes 1e35 fish, more than 99 doublings of a few hundred can reach
// (2^99 = 6.3e29). The doublings used to stay in the start, and the box for starting values stood at 1e32.
TEST(clsSingleCohort, DoublingsThatFailLeaveTheStartThatTheRegressionGave)
{
    std::vector<double> effort = kEffort;
    std::vector<double> fleet = kCatches;
    std::vector<double> total = kCatches;
    effort.push_back(1);
    fleet.push_back(1);
    total.push_back(1e35);
    const TableBuilder table = TableBuilder().Effort(effort).CatchNums(fleet).TotalNums(total).ToggleOut(7);
    const auto [n1, q] = Leslie(kEffort, kCatches);
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        SingleBench bench(table);
        EXPECT_FALSE(bench.Start(fitOp, 0.0));
        EXPECT_EQ(bench.model.Excuse(), excuse::kNoStart);
        const std::vector<NamedValue> start = bench.model.Details().initEsts;
        EXPECT_NEAR(start.at(0).value / n1, 1.0, 1e-5); // sums of catches are floats
        EXPECT_NEAR(start.at(1).value / q, 1.0, 1e-5);

        EXPECT_FALSE(bench.model.InputStartingEsts()); // Cancel
        EXPECT_EQ(bench.user.suggested, std::vector<std::string>{number_text::Plain(start.at(0).value)});
    }
}

TEST(clsSingleCohort, WithoutMortalityLeastSquaresIsTheRegressionOfLeslie)
{
    SingleBench bench(Table(kEffort, kCatches));

    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.0);

    ASSERT_EQ(fit.size(), 3U);
    const auto [n1, q] = Leslie(kEffort, kCatches);
    EXPECT_NEAR(fit[0] / n1, 1.0,
                1e-10); // whole catches: every sum is exact, the normal equations lose 1e4 eps
    EXPECT_NEAR(fit[1] / q, 1.0, 1e-10);
    EXPECT_NEAR(fit[2], n1 - 565.0, 1e-4); // the catch summed, a float near 800
    EXPECT_EQ(bench.model.Q(), fit[1]);
    EXPECT_FALSE(bench.model.Details().objective.has_value());
}

TEST(clsSingleCohort, WeightedLeastSquaresWeighsByTheInverseVariance)
{
    SingleBench bench(Table(kEffort, kCatches).Variance(kVariance));

    const auto fit = bench.Fit(fit_op::kWeightedLeastSquares, 0.0);

    const auto [n1, q] = Leslie(kEffort, kCatches, kVariance);
    EXPECT_NEAR(fit.at(0) / n1, 1.0, 1e-10);
    EXPECT_NEAR(fit.at(1) / q, 1.0, 1e-10);
    // Residuals carry the root of the weight: period 1 has weight 1/4.
    const double fitted = q * 12.0 * (n1 - 60.0);
    EXPECT_NEAR(bench.model.m.ResidVec(1), 0.5 * (120.0 - fitted), 1e-4);
}

TEST(clsSingleCohort, WithoutAVarianceColumnWeightedLeastSquaresIsTheUnweightedOne)
{
    SingleBench plain(Table(kEffort, kCatches));
    SingleBench weighted(Table(kEffort, kCatches));

    EXPECT_EQ(weighted.Fit(fit_op::kWeightedLeastSquares, 0.1), plain.Fit(fit_op::kLeastSquares, 0.1));
}

TEST(clsSingleCohort, AZeroVarianceIsReportedAsADivisionByZero)
{
    Bench bench;
    clsVeltData data = Table(kEffort, kCatches).Variance({4, 1, 0, 8, 1, 2}).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kWeightedLeastSquares, 0.2F);

    manager.FitNewModel(false);

    EXPECT_TRUE(bench.user.Saw("Division by zero"));
    EXPECT_TRUE(bench.user.Saw("IMethod_CalcInitEstimates"));
    EXPECT_FALSE(manager.MethDefined());
}

// C - q X over two periods and over one. Deliberate: the terms are not squared.
TEST(clsSingleCohort, WhatLeastSquaresStoresAsVarianceIsTheMeanResidual)
{
    StateBench bench({2.0, 3.0}, {11.0, 10.0});
    bench.m.QValue = 4.0;
    EXPECT_DOUBLE_EQ(LSQVariance(bench.m), (3.0 - 2.0) / 2.0);

    bench.data.ToggledIn(2, false);
    EXPECT_EQ(LSQVariance(bench.m), 0.0);

    SingleBench fitted(Table(kEffort, kCatches));
    const auto fit = fitted.Fit(fit_op::kLeastSquares, 0.0);
    double sum = 0.0;
    for (int i = 1; i <= 6; ++i)
        sum += kCatches[static_cast<std::size_t>(i) - 1] - fit[1] * fitted.model.m.EffMidPop(i);
    EXPECT_NEAR(fitted.model.Details().var, sum / 6.0, 1e-12);
}

// Equal efforts and a catch that rises: the slope on the catch before is positive, the intercept too, so q
// and N1 are negative.
TEST(clsSingleCohort, ANegativeN1EndsLeastSquaresButOnlyMovesTheStartOfTheOthers)
{
    const TableBuilder rising = Table({1, 1, 1, 1}, {10, 20, 30, 40});
    SingleBench leastSquares(rising);
    EXPECT_FALSE(leastSquares.Start(fit_op::kLeastSquares, 0.0));
    EXPECT_EQ(leastSquares.model.Excuse(), excuse::kPopulationUnderflow);

    SingleBench log(rising);
    EXPECT_TRUE(log.Start(fit_op::kLog, 0.0));
    // The total catch of 100 leaves exactly nothing; doubled once it survives.
    EXPECT_EQ(log.model.Details().initEsts.at(0).value, 200.0);
    EXPECT_GT(log.model.Details().initEsts.at(1).value, 0.0);
    EXPECT_EQ(log.model.m.StartEstKind, 3);
}

TEST(clsSingleCohort, ANegativeN1ShowsItsReasonAndAsksForAnotherModel)
{
    Bench bench;
    clsVeltData data = Table({1, 1, 1, 1}, {10, 20, 30, 40}).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLeastSquares, 0.0F);

    manager.FitNewModel(false);

    EXPECT_TRUE(bench.user.Saw("Estimated Parameters Caused Population Underflow"));
    EXPECT_TRUE(bench.user.Saw("Please try another model."));
    EXPECT_FALSE(manager.MethDefined());
}

// The fleet's catch rises faster than the total catch before: slope positive, intercept negative, so q < 0
// and N1 > 0.
TEST(clsSingleCohort, ANegativeQWithAPositiveN1IsReplacedAndReachesTheFinalEstimates)
{
    SingleBench bench(
        TableBuilder().Effort({1, 1, 1, 1}).CatchNums({0.1, 1, 20, 40}).TotalNums({10, 10, 10, 10}));

    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.0);

    ASSERT_EQ(fit.size(), 3U);
    EXPECT_GT(fit[0], 40.0);
    // The geometric mean of C / X with X = N1 - 5, N1 - 15, N1 - 25, N1 - 35; floats of C leave 1e-7.
    const double n1 = fit[0];
    const double mean = std::pow(80.0 / ((n1 - 5) * (n1 - 15) * (n1 - 25) * (n1 - 35)), 0.25);
    EXPECT_NEAR(fit[1] / mean, 1.0, 1e-6);
}

TEST(clsSingleCohort, ARegressionWithoutSolutionGivesNoStart)
{
    for (const int onlyOne : {0, 1}) {
        TableBuilder table = Table(kEffort, std::vector<double>(6, 0.0)); // second column all zero
        if (onlyOne == 1)
            table = Table(kEffort, kCatches).OnlyToggledIn(3); // one point, two columns
        SingleBench bench(table);
        EXPECT_FALSE(bench.Start(fit_op::kLeastSquares, 0.2));
        EXPECT_EQ(bench.model.Excuse(), excuse::kNoStart);
    }
}

TEST(clsSingleCohort, AllPeriodsButOneToggledOutAreTooFew)
{
    Bench bench;
    clsVeltData data = Table(kEffort, kCatches).OnlyToggledIn(3).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLeastSquares, 0.2F);

    manager.FitNewModel(false);

    EXPECT_TRUE(bench.user.Saw("Not Enough Data Points for this model"));
    EXPECT_FALSE(manager.MethDefined());
}

// Catches as floats leave 6e-8. Log: the tolerance of the search, as the objective is 0 but for those floats.
TEST(clsSingleCohort, DataWithoutNoiseGiveBackTheTrueParameters)
{
    const SimulatedStock truth;
    for (const auto& [fitOp, tolerance] : {std::pair{fit_op::kLeastSquares, 1e-3},
                                           std::pair{fit_op::kGamma, 1e-3}, std::pair{fit_op::kLog, 1e-4}}) {
        SingleBench bench(Simulated());
        const auto fit = bench.Fit(fitOp, truth.mort);
        ASSERT_EQ(fit.size(), 3U) << fitOp;
        EXPECT_NEAR(fit[0] / truth.n1, 1.0, tolerance) << fitOp;
        EXPECT_NEAR(fit[1] / truth.q, 1.0, tolerance) << fitOp;
        EXPECT_GT(bench.model.RSqr(), 0.999F) << fitOp;
    }
}

TEST(clsSingleCohort, APeriodToggledOutDoesNotMoveTheEstimates)
{
    const SimulatedStock truth;
    std::vector<double> fleet = truth.Catches();
    fleet[4] *= 5.0;
    SingleBench bench(
        TableBuilder().Effort(truth.effort).CatchNums(fleet).TotalNums(truth.Catches()).ToggleOut(5));

    const auto fit = bench.Fit(fit_op::kLeastSquares, truth.mort);

    EXPECT_NEAR(fit.at(0) / truth.n1, 1.0, 1e-3);
}
