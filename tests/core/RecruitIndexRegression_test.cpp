// SPDX-License-Identifier: GPL-3.0-or-later
// The regression on three columns, and the start that it gives to the searches.
#include "core/RecruitIndexBench.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace
{
using namespace recruit_index;

/// What a fleet catches when the dynamics run on below zero without being stopped, for total catches that
/// have nothing to do with it: data whose regression has exactly these parameters, possible or not.
TableBuilder FleetOf(double n1, double q, double lambda, std::vector<double> total)
{
    const SimulatedStock stock;
    std::vector<double> fleet;
    double n = n1;
    for (std::size_t t = 0; t < total.size(); ++t) {
        const double w = n + lambda * stock.index[t];
        fleet.push_back(q * stock.effort[t] * (w * std::exp(-0.1) - total[t] / 2.0));
        n = w * std::exp(-0.2) - std::exp(-0.1) * total[t];
    }
    const std::vector<double> effort(stock.effort.begin(), stock.effort.begin() + std::ssize(total));
    const std::vector<double> index(stock.index.begin(), stock.index.begin() + std::ssize(total));
    return TableBuilder().Effort(effort).CatchNums(fleet).TotalNums(total).Recruits(index);
}
} // namespace

// Cramer's rule on the 3 x 3 normal equations, with sums of whole numbers: M = 0.
TEST(clsRecruitINdex, LeastSquaresIsTheRegressionOnThreeColumns)
{
    const std::vector<double> effort{5, 7, 4, 6, 8}, fleet{52, 60, 47, 45, 50}, total{50, 66, 40, 52, 58},
        index{2, 5, 9, 1, 4}, variance{1, 4, 1, 2, 2};
    IndexBench bench(
        TableBuilder().Effort(effort).CatchNums(fleet).TotalNums(total).Recruits(index).Variance(variance));

    ASSERT_TRUE(bench.Start(fit_op::kWeightedLeastSquares, 0.0) || bench.model.Excuse() != excuse::kNoStart);

    long double a[3][4] = {};
    long double st = 0, sr = 0;
    for (std::size_t i = 0; i < 5; ++i) {
        st += total[i];
        sr += index[i];
        const long double x[3] = {effort[i], effort[i] * (st - total[i] / 2.0L), effort[i] * sr};
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c)
                a[r][c] += x[r] * x[c] / variance[i];
            a[r][3] += x[r] * fleet[i] / variance[i];
        }
    }
    const auto det = [&a](int p, int q, int r) {
        return a[0][p] * (a[1][q] * a[2][r] - a[1][r] * a[2][q]) -
               a[0][q] * (a[1][p] * a[2][r] - a[1][r] * a[2][p]) +
               a[0][r] * (a[1][p] * a[2][q] - a[1][q] * a[2][p]);
    };
    const long double d = det(0, 1, 2);
    const auto b1 = static_cast<double>(det(3, 1, 2) / d), b2 = static_cast<double>(det(0, 3, 2) / d),
               b3 = static_cast<double>(det(0, 1, 3) / d);
    const auto starts = bench.model.Details().initEsts;
    EXPECT_NEAR(starts.at(1).value / -b2, 1.0, 1e-9); // condition 1e4 of the normal equations in 64 bits
    EXPECT_NEAR(starts.at(0).value / (b1 / -b2), 1.0, 1e-9);
    EXPECT_NEAR(starts.at(2).value / (b3 / -b2), 1.0, 1e-9);
}

TEST(clsRecruitINdex, AZeroRecruitmentIndexEndsWithoutAStart)
{
    const SimulatedStock truth = Truth();
    Bench bench;
    clsVeltData data = TableBuilder()
                           .Effort(truth.effort)
                           .Catch(truth.Catches())
                           .Recruits(std::vector<double>(12, 0.0))
                           .Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLeastSquares);

    manager.FitNewModel(false);

    EXPECT_EQ(manager.LastExcuse(), excuse::kNoStart);
    EXPECT_TRUE(bench.user.Saw("Unable to get starting estimates"));
    EXPECT_TRUE(bench.user.Saw("Please try another model."));
    EXPECT_FALSE(manager.MethDefined());

    Chooses(bench, fit_op::kLog);
    manager.FitNewModel(false); // asks for a start by hand, and the user cancels
    EXPECT_TRUE(bench.user.Saw("Please enter starting estimates manually"));
    EXPECT_EQ(bench.user.asked.back(), "start values");
    EXPECT_FALSE(manager.MethDefined());
}

TEST(clsRecruitINdex, ANegativeN1OrLambdaEndsLeastSquares)
{
    for (const auto& [n1, lambda] : {std::pair{-100.0, 5000.0}, std::pair{20000.0, -200.0}}) {
        IndexBench bench(FleetOf(n1, 0.01, lambda, std::vector<double>(12, 10.0)));
        EXPECT_FALSE(bench.Start(fit_op::kLeastSquares, 0.2));
        EXPECT_EQ(bench.model.Excuse(), excuse::kPopulationUnderflow);
        EXPECT_NEAR(bench.model.Details().initEsts.at(0).value / n1, 1.0, 0.02); // float catches, f1 and f2
    }
}

// Deliberate: the repair reaches InitEsts only; the doublings go on from the negative work value.
TEST(clsRecruitINdex, ANegativeN1UnderLogOrGammaIsRepairedInInitEstsOnlyAndEndsWithoutAStart)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        IndexBench bench(FleetOf(-100.0, 0.01, 5000.0, std::vector<double>(12, 10.0)));
        EXPECT_FALSE(bench.Start(fitOp, 0.2));
        EXPECT_EQ(bench.model.Excuse(), excuse::kNoStart);
        EXPECT_EQ(bench.model.m.StartEstKind, 3);
        EXPECT_EQ(bench.model.Details().initEsts.at(0).value, 120.0); // the total catch
        EXPECT_LT(bench.model.Work().N1, -1e30);                      // doubled 99 times
    }
}

// A period out of the fit takes 1e35 fish, which no 99 doublings reach.
TEST(clsRecruitINdex, DoublingsThatFailLeaveTheStartThatTheRegressionGave)
{
    const SimulatedStock truth = Truth();
    std::vector<double> effort = truth.effort;
    std::vector<double> index = truth.index;
    std::vector<double> fleet = truth.Catches(0.1);
    IndexBench without(TableBuilder().Effort(effort).Catch(fleet).Recruits(index));
    ASSERT_TRUE(without.Start(fit_op::kLeastSquares, 0.2));
    const std::vector<NamedValue> expected = without.model.Details().initEsts;
    effort.push_back(1);
    index.push_back(1);
    fleet.push_back(1);
    std::vector<double> total = fleet;
    total.back() = 1e35;
    const TableBuilder table =
        TableBuilder().Effort(effort).CatchNums(fleet).TotalNums(total).Recruits(index).ToggleOut(13);
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        IndexBench bench(table);
        EXPECT_FALSE(bench.Start(fitOp, 0.2));
        EXPECT_EQ(bench.model.Excuse(), excuse::kNoStart);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_EQ(bench.model.Details().initEsts.at(i).value, expected.at(i).value) << i;
    }
}

// The mean of the index over all periods is 13.5 / 12.
TEST(clsRecruitINdex, UnderLogAnAverageRecruitmentEqualsTheStartPopulation)
{
    IndexBench bench(FleetOf(20000.0, 0.001, -200.0, std::vector<double>(12, 10.0)));

    ASSERT_TRUE(bench.Start(fit_op::kLog, 0.2));

    const auto starts = bench.model.Details().initEsts;
    EXPECT_NEAR(starts.at(0).value / 20000.0, 1.0, 0.02); // the work value, not the total catch of the repair
    EXPECT_NEAR(starts.at(2).value / (starts[0].value * 12.0 / 13.5), 1.0, 1e-6);
}

// Deliberate: under least squares the mean index is not computed and is 0. The last catch takes all: W
// exp(-M/2) is little more than half of it.
TEST(clsRecruitINdex, APositiveRegressionThatUnderflowsEndsInADivisionByZero)
{
    std::vector<double> total(12, 100.0);
    total[11] = 8000.0;
    IndexBench bench(FleetOf(5000.0, 0.001, 1000.0, total));

    EXPECT_EQ(FailureOf([&] { bench.Start(fit_op::kLeastSquares, 0.2); }), errors::kDivisionByZero);
    EXPECT_TRUE(bench.model.PopUnderflow());
    EXPECT_GT(bench.model.Details().initEsts.at(0).value, 0.0);
}

TEST(clsRecruitINdex, TheContourBoundsAreTheDecadesOfTheStart)
{
    IndexBench bench(Simulated());
    ASSERT_TRUE(bench.Start(fit_op::kLeastSquares, 0.2));
    ContourRange shown;
    bench.user.onContourRange = [&shown](ContourRange& range) {
        shown = range;
        return false;
    };

    EXPECT_FALSE(bench.model.SetContourRanges());

    EXPECT_EQ(shown.Param1Name, "N1");
    EXPECT_EQ(shown.Param2Name, "Lambda");
    EXPECT_EQ(shown.Param1Lo, 1000.0);
    EXPECT_EQ(shown.Param1Hi, 10000.0);
    EXPECT_EQ(shown.Param2Lo, 1000.0);
    EXPECT_EQ(shown.Param2Hi, 10000.0);
    EXPECT_EQ(shown.ContEvals, 20);
}
