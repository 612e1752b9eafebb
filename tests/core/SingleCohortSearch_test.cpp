// SPDX-License-Identifier: GPL-3.0-or-later
// The log and gamma fits of the closed cohort.
#include "core/LimitOfSearch.h"
#include "core/SingleCohortBench.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace
{
using namespace single_cohort;

/// Variance of ln(C / (E (N - C / 2))) without mortality, N what is left of N1: what a log fit minimises.
/// Infinite where a period has nothing to catch from.
double VarianceOfLogs(double n1, const std::vector<double>& effort, const std::vector<double>& catches)
{
    double sum = 0.0;
    double sumSq = 0.0;
    double left = n1;
    for (std::size_t i = 0; i < catches.size(); ++i) {
        const double mean = left - catches[i] / 2.0;
        if (!(mean > 0.0))
            return std::numeric_limits<double>::infinity();
        const double l = std::log(catches[i] / (effort[i] * mean));
        sum += l;
        sumSq += l * l;
        left -= catches[i];
    }
    const auto n = static_cast<double>(catches.size());
    return sumSq / n - sum / n * (sum / n);
}

/// The lowest point between `low` and `high` by golden section (Kiefer 1953).
double GoldenSection(double low, double high, const std::function<double(double)>& f)
{
    const double golden = (std::sqrt(5.0) - 1.0) / 2.0;
    while (high - low > 1e-7 * high) {
        const double a = high - golden * (high - low);
        const double b = low + golden * (high - low);
        (f(a) < f(b) ? high : low) = f(a) < f(b) ? b : a;
    }
    return (low + high) / 2.0;
}
} // namespace

// Four weeks, the last with so much effort that it takes 320 of about 290 fish that are left. The middle of
// that week still has something to catch from, so the objective has its optimum there, below the 1030 that
// were caught in all. It is a fit, and the stock is gone.
TEST(clsSingleCohort, ALogFitWhoseLastCatchTakesMoreThanWasLeftIsFittedAtItsOptimum)
{
    const std::vector<double> effort{30, 40, 50, 300};
    const std::vector<double> catches{270, 240, 200, 320};
    const auto objective = [&](double n1) { return VarianceOfLogs(n1, effort, catches); };
    const double n1 = GoldenSection(710.0 + 160.0, 10300.0, objective); // the last middle is empty below
    ASSERT_LT(n1, 1030.0 - 20.0);
    for (double other = 871.0; other < 1e5; other *= 1.001)
        ASSERT_GE(objective(other), objective(n1)) << "a golden section sees one bowl only";
    double product = 1.0;
    double left = n1;
    for (std::size_t i = 0; i < 4; ++i) {
        product *= catches[i] / (effort[i] * (left - catches[i] / 2.0));
        left -= catches[i];
    }

    SingleBench bench(Table(effort, catches));
    const auto fit = bench.Fit(fit_op::kLog, 0.0);

    ASSERT_EQ(fit.size(), 3U);
    EXPECT_NEAR(fit[0] / n1, 1.0, 1e-4);                      // the tolerance of the search
    EXPECT_NEAR(fit[1] / std::pow(product, 0.25), 1.0, 5e-4); // q falls five times as fast as N1 grows
    EXPECT_EQ(fit[2], 0.0);
    EXPECT_TRUE(bench.model.PopUnderflow());
    EXPECT_FALSE(bench.model.Details().atBorder);
    EXPECT_NEAR(bench.model.Details().objective.value() / objective(n1), 1.0, 1e-6); // a float
}

TEST(clsSingleCohort, LogResidualsBelongToTheOptimumAndAverageToNothing)
{
    SingleBench bench(Simulated(0.1));

    const auto fit = bench.Fit(fit_op::kLog, 0.2);

    double sum = 0.0;
    for (int i = 1; i <= 12; ++i) {
        const double fitted = std::log(fit[1] * bench.model.m.Effort(i) * bench.model.m.MidPop(i));
        EXPECT_NEAR(bench.model.m.FittedVec(i), fitted, 1e-6) << i; // floats near 7
        sum += bench.model.m.ResidVec(i);
    }
    EXPECT_NEAR(sum, 0.0, 1e-5); // q is the geometric mean; 12 floats of 5e-7
    EXPECT_EQ(bench.model.Details().evaluations, bench.run.globals.settings.LastEvaluations);
    EXPECT_GT(bench.model.Details().evaluations, 0);
}

TEST(clsSingleCohort, TheGammaRateIsTheVarianceAndTheShapeGivesQ)
{
    SingleBench bench(Simulated(0.1));

    const auto fit = bench.Fit(fit_op::kGamma, 0.2);

    const ModelState& m = bench.model.m;
    EXPECT_EQ(fit.at(1), m.GammaNu / m.GammaBeta);
    EXPECT_EQ(bench.model.Details().var, 1.0 / m.GammaBeta);
    EXPECT_NEAR(fit[1] * m.EffMidPopSum / m.CatchSum, 1.0, 1e-6); // expected and observed catch agree
    for (int i = 1; i <= 12; ++i) {
        EXPECT_GT(m.ResidVec(i), 0.0F);
        EXPECT_LT(m.ResidVec(i), 1.0F);
    }
}

// P(E nu N, C beta) from the stock at the start of the period, deliberately not from its mean; outside the
// fit 1 or 0. P itself is checked on its own; here only where its arguments come from.
TEST(clsSingleCohort, GammaPositionsUseTheStockAtTheStartOfThePeriod)
{
    const SimulatedStock truth;
    std::vector<double> fleet = truth.Catches(0.1);
    fleet[2] *= 3.0;
    fleet[6] *= 0.3;
    SingleBench bench(TableBuilder()
                          .Effort(truth.effort)
                          .CatchNums(fleet)
                          .TotalNums(truth.Catches())
                          .ToggleOut(3)
                          .ToggleOut(7));

    ASSERT_FALSE(bench.Fit(fit_op::kGamma, 0.2).empty());

    const ModelState& m = bench.model.m;
    EXPECT_EQ(m.ResidVec(3), 1.0F);
    EXPECT_EQ(m.ResidVec(7), 0.0F);
    // The mean stock of a period lies well below its start, so most catches look small in this scale.
    for (const int i : {1, 2, 4, 5, 6}) {
        const double a = m.Effort(i) * m.GammaNu * m.Nt(static_cast<int>(i));
        const double z =
            (std::cbrt(m.CatchVector(i) * m.GammaBeta / a) - 1.0 + 1.0 / (9.0 * a)) * 3.0 * std::sqrt(a);
        EXPECT_NEAR(m.ResidVec(i), 0.5 * std::erfc(-z / std::sqrt(2.0)), 5e-3)
            << i; // Wilson and Hilferty 1931
    }
}

TEST(clsSingleCohort, BeyondTheLimitTheObjectiveIsThePenaltyOfExactlyTheseBits)
{
    limit_of_search::ExpectThePenaltyBeyond<clsSingleCohort>(Simulated(0.1));
}

TEST(clsSingleCohort, TheLimitItselfIsInsideAndTheNextFloatIsNot)
{
    limit_of_search::ExpectTheLimitInside<clsSingleCohort>(Simulated(0.1));
}

// Deliberate asymmetry: gamma turns a start below MinPop away without a trajectory, log computes the variance
// of the trajectory, underflow or not.
TEST(clsSingleCohort, AStartBelowMinPopIsAPenaltyUnderGammaButNotUnderLog)
{
    SingleBench bench(Simulated(0.1));
    ASSERT_TRUE(bench.Start(fit_op::kGamma, 0.2));
    const double below = 0.9 * bench.model.MinPop();
    const float before = bench.model.Nt(1);
    const auto penalty = static_cast<float>(bench.model.Objective(std::array{below}));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(penalty), 0x60AD78ECU);
    EXPECT_EQ(bench.model.Nt(1), before);

    ASSERT_TRUE(bench.Start(fit_op::kLog, 0.2));
    const double variance = bench.model.Objective(std::array{below});
    EXPECT_TRUE(bench.model.PopUnderflow());
    EXPECT_GT(variance, 0.0);
    EXPECT_LT(variance, 100.0);
}

TEST(clsSingleCohort, LeastSquaresHasNothingToMinimise)
{
    SingleBench bench(Simulated(0.1));
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kWeightedLeastSquares}) {
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        EXPECT_EQ(bench.model.Objective(std::array{12345.0}), 0.0);
    }
}

TEST(clsSingleCohort, WithAZeroCatchUnderLogEveryStockThatLastsHasThePenalty)
{
    const SimulatedStock truth;
    std::vector<double> catches = truth.Catches(0.1);
    catches[5] = 0.0;
    SingleBench bench(Table(truth.effort, catches));
    ASSERT_TRUE(bench.Start(fit_op::kLog, 0.2));

    for (const double n1 : {1e5, 1e6})
        EXPECT_GE(bench.model.INelMead_MinFunc(std::array{n1}), 1e20) << n1;
}

TEST(clsSingleCohort, AZeroCatchFailsTheLogFitHonestlyAndAFurtherFitWorks)
{
    const SimulatedStock truth;
    std::vector<double> catches = truth.Catches(0.1);
    catches[5] = 0.0;
    Bench bench;
    clsVeltData data = Table(truth.effort, catches).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLog, 0.2F);

    manager.FitNewModel(false);

    EXPECT_EQ(manager.LastExcuse(), excuse::kNotConverged);
    EXPECT_TRUE(bench.user.Saw("Minimisation"));
    EXPECT_TRUE(bench.user.Saw("clsSingleCohort_CalcLnFinalEstimates"));
    EXPECT_FALSE(manager.MethDefined());
    EXPECT_EQ(manager.Method(), nullptr);
    EXPECT_FALSE(bench.window.hourglass);

    Chooses(bench, fit_op::kLeastSquares, 0.2F);
    manager.FitNewModel(false);
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_GT(manager.N1(), 5000.0F);
}

namespace
{
/// A log or gamma fit from a typed start. \return whether it arrived
bool ArrivesFrom(SingleBench& bench, std::int32_t fitOp, double start)
{
    bench.Start(fitOp, 0.2);
    bench.user.inputs = {std::to_string(start)};
    if (!bench.model.InputStartingEsts())
        return false; // underflows: the user is told, and cancels
    try {
        bench.Finish();
    } catch (const VeltError& error) {
        // Not converged, or under log arrived where the stock has gone and the residuals do not exist.
        if (error.number == kProgramErrorBase + errors::kMinimisationFailed)
            EXPECT_EQ(bench.model.Excuse(), excuse::kNotConverged);
        else
            EXPECT_TRUE(fitOp == fit_op::kLog && error.IsNumeric() && bench.model.PopUnderflow());
        return false;
    }
    return true;
}
} // namespace

// Three decades around the optimum. What arrives elsewhere must be a minimum of its own: the objective rises
// on both sides by more than its roughness of 1e-5. All ten starts above the optimum survive. Under log an
// underflow is no penalty in this model, and a stock that lasts one period has no variance at all: starts
// beyond three times the optimum fall into that trap, and the missing residuals tell.
TEST(clsSingleCohort, TwentyStartsArriveAtTheOptimumAtAnotherMinimumOrFailHonestly)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        SingleBench best(Simulated(0.1));
        const double optimum = best.Fit(fitOp, 0.2).at(0);
        const double value = *best.model.Details().objective;
        int same = 0;
        for (int k = 0; k < 20; ++k) {
            SingleBench bench(Simulated(0.1));
            const double start = optimum * std::pow(10.0, -1.5 + 3.0 * k / 19.0);
            if (!ArrivesFrom(bench, fitOp, start))
                continue;
            const double reached = *bench.model.Details().objective;
            if (std::fabs(reached - value) < 2e-5 * std::max(1.0, std::fabs(value))) {
                ++same;
                continue;
            }
            const double n1 = bench.model.FinalEsts().at(0);
            for (const double factor : {0.97, 1.03})
                EXPECT_GT(bench.model.INelMead_MinFunc(std::array{n1 * factor}), reached)
                    << fitOp << " " << start;
        }
        EXPECT_GE(same, fitOp == fit_op::kGamma ? 10 : 3) << fitOp;
    }
}
