// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsSingleCohort.h"

#include "base/NumberText.h"
#include "fit/clsMethManager.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>

namespace
{
using SingleBench = ModelBench<clsSingleCohort>;

TableBuilder Table(const std::vector<double>& effort, const std::vector<double>& catches)
{
    return TableBuilder().Effort(effort).Catch(catches);
}

TableBuilder ThreePeriods()
{
    return Table({2, 3, 4}, {10, 20, 30});
}

TableBuilder Simulated(double scatter = 0.0)
{
    const SimulatedStock stock;
    return Table(stock.effort, stock.Catches(scatter));
}

/// Runs the trajectory from N1 with natural mortality `mort`.
void Walk(SingleBench& bench, double n1, double mort = 0.0, double q = 0.1)
{
    bench.model.Mort(static_cast<float>(mort));
    bench.model.Work({.N1 = n1, .Q = q});
    bench.model.CalcPopTraj();
}

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

/// A user who takes the no-recruitment model with this error model and mortality.
void Chooses(Bench& bench, std::int32_t fitOp, float mort)
{
    bench.user.Picks(bench.run.globals.ModelTitles(models::kNoRecruitment));
    bench.user.onInputParams = [fitOp, mort](InputParams& params) {
        params.FitOp = fitOp;
        params.Mort = mort;
        return true;
    };
}
} // namespace

TEST(clsSingleCohort, ANewModelHasItsDefaultsAndNoOutcome)
{
    const SingleBench bench(ThreePeriods());
    const clsSingleCohort& model = bench.model;

    EXPECT_EQ(model.Excuse(), 0); // must not be used as an index into the outcome texts
    EXPECT_EQ(model.FitOp(), 1);
    EXPECT_EQ(model.WhichMeth(), 1);
    EXPECT_EQ(model.NumBootStraps(), 500);
    EXPECT_EQ(model.MethTitle(), "NO RECRUITMENT MODEL");
    EXPECT_TRUE(model.UsingNos());
    EXPECT_FALSE(model.IsBSDone() || model.MethDefined() || model.SetStartingEsts() || model.DIYTCatch());
    for (int parameter = 1; parameter <= 8; ++parameter)
        EXPECT_EQ(model.BSFilled(parameter), parameter == 2 || parameter == 4) << parameter;
}

TEST(clsSingleCohort, WhichMethSetLeavesItAtOne)
{
    SingleBench bench(ThreePeriods());
    bench.model.WhichMeth(5);

    EXPECT_EQ(bench.model.WhichMeth(), 1);
    EXPECT_TRUE(bench.model.UsingNos());
}

TEST(clsSingleCohort, ItKeepsNoShapeAndShowsNoContours)
{
    SingleBench bench(ThreePeriods());
    bench.model.Z(2.0F);
    bench.model.LAG(3);

    EXPECT_EQ(bench.model.Z(), 0.0F);
    EXPECT_EQ(bench.model.LAG(), 3); // stored only
    EXPECT_FALSE(bench.model.SetContourRanges());
    EXPECT_FALSE(bench.model.PlotInitContours());
    EXPECT_TRUE(bench.user.asked.empty());
}

// N: 100, 100 - 10, 90 - 20, 70 - 30; B: 100 - 5, 90 - 10, 70 - 15; X = E B.
TEST(clsSingleCohort, WithoutMortalityTheStockLosesTheCatchAndTheMeanLosesHalf)
{
    SingleBench bench(ThreePeriods());
    Walk(bench, 100.0);

    for (const auto& [i, n] :
         {std::pair{1, 100.0F}, std::pair{2, 90.0F}, std::pair{3, 70.0F}, std::pair{4, 40.0F}})
        EXPECT_EQ(bench.model.Nt(static_cast<std::int16_t>(i)), n) << i;
    EXPECT_EQ(bench.model.m.MidPop(1), 95.0F);
    EXPECT_EQ(bench.model.m.MidPop(2), 80.0F);
    EXPECT_EQ(bench.model.m.MidPop(3), 55.0F);
    EXPECT_EQ(bench.model.m.EffMidPop(3), 220.0);
    EXPECT_EQ(bench.model.m.EffMidPopSum, 190.0 + 240.0 + 220.0);
    EXPECT_FALSE(bench.model.PopUnderflow());
}

// M = ln 4: exp(-M) = 1/4, exp(-M/2) = 1/2. N: 1000, 250 - 5 = 245, 61.25 - 10 = 51.25, 12.8125 - 15 < 0.
// B: 500 - 5, 122.5 - 10, 25.625 - 15. Float M and exponentials leave some 1e-7 of each.
TEST(clsSingleCohort, HalfTheMortalityActsBeforeTheCatchAndHalfAfter)
{
    SingleBench bench(ThreePeriods());
    Walk(bench, 1000.0, std::log(4.0));

    EXPECT_NEAR(bench.model.Nt(2), 245.0, 1e-4);
    EXPECT_NEAR(bench.model.Nt(3), 51.25, 1e-4);
    EXPECT_EQ(bench.model.Nt(4), 0.0F);
    EXPECT_NEAR(bench.model.m.MidPop(2), 112.5, 1e-4);
    EXPECT_NEAR(bench.model.m.MidPop(3), 10.625, 1e-4);
    EXPECT_TRUE(bench.model.PopUnderflow());
}

TEST(clsSingleCohort, AnUnderflowLeavesNothingToAllLaterPeriods)
{
    SingleBench bench(ThreePeriods());
    Walk(bench, 1000.0); // leaves something everywhere
    ASSERT_GT(bench.model.m.EffMidPop(3), 0.0);
    Walk(bench, 25.0); // 25, 15, below 0

    EXPECT_EQ(bench.model.Nt(2), 15.0F);
    EXPECT_EQ(bench.model.Nt(3), 0.0F);
    EXPECT_EQ(bench.model.Nt(4), 0.0F);
    EXPECT_EQ(bench.model.m.MidPop(3), 0.0F); // and not what the trajectory before left there
    EXPECT_EQ(bench.model.m.EffMidPop(3), 0.0);
    EXPECT_TRUE(bench.model.PopUnderflow());
    Walk(bench, 60.0); // exactly the total catch: zero counts as underflow
    EXPECT_TRUE(bench.model.PopUnderflow());
    Walk(bench, 61.0);
    EXPECT_FALSE(bench.model.PopUnderflow());
}

TEST(clsSingleCohort, AMissingTotalCatchEndsNothingAndIsNotCounted)
{
    SingleBench bench(
        TableBuilder().Effort({2, 3, 0, 4}).CatchNums({10, 20, 30, 40}).TotalNums({10, -1, 30, 40}));

    EXPECT_EQ(bench.data.NAPoints(), 3);
    EXPECT_EQ(bench.data.NDPoints(), 4);
    EXPECT_FALSE(bench.data.Included(3)); // visited, though behind the gap
    EXPECT_TRUE(bench.data.Included(4));
    EXPECT_EQ(bench.data.NNtPoints(), 2);
}

TEST(clsSingleCohort, APeriodWithoutEffortLeavesTheFitButItsCatchLeavesTheStock)
{
    SingleBench bench(Table({2, 0, 4}, {10, 20, 30}));
    bench.data.ToggledIn(2, true);
    bench.model.SetColumnRefs();
    Walk(bench, 100.0);

    EXPECT_FALSE(bench.data.Included(2));
    EXPECT_FALSE(bench.data.ToggledIn(2));
    EXPECT_EQ(bench.model.Nt(3), 70.0F);
    EXPECT_EQ(bench.model.m.EffMidPopSum, 190.0 + 220.0);
}

TEST(clsSingleCohort, AnEffortThatIsNoNumberOrInfiniteIsNotIncluded)
{
    SingleBench bench(Table({2, std::nan(""), std::numeric_limits<double>::infinity()}, {10, 20, 30}));

    EXPECT_TRUE(bench.data.Included(1));
    EXPECT_FALSE(bench.data.Included(2));
    EXPECT_FALSE(bench.data.Included(3));
}

// exp(-M) = 1/2: K = 0, 8, 4 + 0, 2 + 4. A reference catch below zero counts as none.
TEST(clsSingleCohort, DiscountedCatchesAndTheSumsOverThePeriodsInTheFit)
{
    SingleBench bench(
        TableBuilder().Effort({2, 3, 4}).CatchNums({5, 6, 7}).TotalNums({8, 9, 4}).ToggleOut(2));
    bench.model.CatchRef(2, -3.0F);
    bench.model.Mort(static_cast<float>(std::log(2.0)));

    bench.model.CalcDiscCatches();

    const ModelState& m = bench.model.m;
    EXPECT_EQ(m.DiscCatch(1), 0.0F);
    EXPECT_EQ(m.DiscCatch(2), 8.0F);
    EXPECT_NEAR(m.DiscCatch(3), 4.0, 1e-6);
    EXPECT_NEAR(m.DiscCatch(4), 6.0, 1e-6);
    EXPECT_EQ(m.TotCatchSum, 12.0F);
    EXPECT_EQ(m.CatchSum, 12.0F);    // 5 + 7
    EXPECT_EQ(m.EffortSqSum, 20.0F); // 4 + 16
}

TEST(clsSingleCohort, TwoHundredFilledPeriodsEndWithTheArrayBoundError)
{
    SingleBench full(Table(std::vector<double>(200, 1.0), std::vector<double>(200, 1.0)));
    EXPECT_EQ(FailureOf([&] { full.model.CalcDiscCatches(); }), errors::kSubscript);
    EXPECT_EQ(FailureOf([&] { full.model.CalcPopTraj(); }), errors::kSubscript);

    SingleBench longest(Table(std::vector<double>(199, 1.0), std::vector<double>(199, 1.0)));
    longest.model.CalcDiscCatches();
    EXPECT_EQ(longest.model.m.DiscCatch(200), 199.0F); // M is 0 in a new model
    Walk(longest, 1000.0);
    EXPECT_EQ(longest.model.Nt(200), 801.0F);
}

TEST(clsSingleCohort, TwoHundredFilledPeriodsAreToldToTheUserAndLeaveNoFit)
{
    Bench bench;
    clsVeltData data = Table(std::vector<double>(200, 1.0), std::vector<double>(200, 1.0)).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLeastSquares, 0.2F);

    manager.FitNewModel(false);

    EXPECT_TRUE(bench.user.Saw("Subscript out of range"));
    EXPECT_FALSE(manager.MethDefined());
}

TEST(clsSingleCohort, ATrajectoryBeforeThePeriodsAreCountedFails)
{
    Bench bench;
    clsVeltData data(bench.run);
    clsSingleCohort model;
    model.Create(data);

    EXPECT_EQ(FailureOf([&] { model.CalcPopTraj(); }), errors::kSubscript);
}

// Deliberate: T(t) comes from E(t-1) and from the N(t) of the trajectory before. q E / (1 + q E / 2) = 1
// / 1.5 with q = 0.1, E = 10, M = 0. Periods 3 and 4 lie beyond the data. First run, nothing stands in N:
// T(4) = 0. Second run: T(4) = 40 / 1.5, made of the N(4) = 40 of the first; N(5) = 40 - T(4).
TEST(clsSingleCohort, AProjectedCatchUsesTheStaleStockAndLandsOneEntryLate)
{
    SingleBench bench(Table({10, 10, 10, 10}, {10, 20, 30, 40}));
    bench.data.OrigNAPoints(2);
    bench.model.DIYTCatch(true);

    Walk(bench, 100.0);
    EXPECT_EQ(bench.model.ObsTCatchRef(3), 30.0F);
    EXPECT_EQ(bench.model.ObsTCatchRef(4), 0.0F);
    EXPECT_EQ(bench.model.Nt(5), 40.0F);
    Walk(bench, 100.0);
    EXPECT_NEAR(bench.model.ObsTCatchRef(4), 26.66667, 1e-5);
    EXPECT_NEAR(bench.model.Nt(5), 13.33333, 1e-5);
}

TEST(clsSingleCohort, MinPopIsTheSmallestSurvivingStartToOnePercent) // 60 die in the nets
{
    SingleBench bench(ThreePeriods());
    bench.user.inputs = {"1000"};
    bench.model.Mort(0.0F);
    ASSERT_TRUE(bench.model.InputStartingEsts());

    bench.model.CalcMinPop();

    EXPECT_GT(bench.model.MinPop(), 60.0F);
    EXPECT_LE(bench.model.MinPop(), 60.0F / 0.99F);
    EXPECT_EQ(bench.model.Nt(1), 1000.0F); // and the trajectory is that of the start again
}

TEST(clsSingleCohort, MinPopStaysAtTheStartWhenEveryMidpointUnderflows)
{
    SingleBench bench(ThreePeriods());
    bench.user.inputs = {"60.25"};
    bench.model.Mort(0.0F);
    ASSERT_TRUE(bench.model.InputStartingEsts());

    bench.model.CalcMinPop();

    EXPECT_EQ(bench.model.MinPop(), 60.25F);
}

TEST(clsSingleCohort, MinPopStopsAfterFiftyRoundsWhenEverythingSurvives)
{
    SingleBench bench(Table({2, 3, 4}, {0, 0, 0}));
    bench.user.inputs = {"1024"};
    bench.model.Mort(0.0F);
    ASSERT_TRUE(bench.model.InputStartingEsts());

    bench.model.CalcMinPop();

    EXPECT_EQ(bench.model.MinPop(), std::ldexp(1.0F, -40)); // 2^10 halved 50 times
}

TEST(clsSingleCohort, AStartingValueIsAskedForUntilItSurvives)
{
    SingleBench bench(ThreePeriods());
    bench.model.Mort(0.0F);
    bench.user.inputs = {"50", "200"};

    EXPECT_TRUE(bench.model.InputStartingEsts());

    ASSERT_EQ(bench.user.messages.size(), 1U);
    EXPECT_EQ(bench.user.messages[0].text, "This value has caused a population underflow, please try again");
    EXPECT_EQ(bench.user.asked.size(), 2U);
    EXPECT_EQ(bench.user.asked[0], "input box: Initial Population (N1) ");
    EXPECT_EQ(bench.model.Details().initEsts.at(0).value, 200.0);
}

TEST(clsSingleCohort, AStartingValueThatIsNoNumberEndsTheQuestionAndCancelEndsItSilently)
{
    SingleBench bench(ThreePeriods());
    bench.user.inputs = {"many", std::nullopt, ""};

    EXPECT_FALSE(bench.model.InputStartingEsts());
    ASSERT_EQ(bench.user.messages.size(), 1U);
    EXPECT_EQ(bench.user.messages[0].text, "Invalid Value Entered!");
    EXPECT_EQ(bench.user.messages[0].title, "VELT 3.0");
    EXPECT_FALSE(bench.model.InputStartingEsts());
    EXPECT_FALSE(bench.model.InputStartingEsts());
    EXPECT_EQ(bench.user.messages.size(), 1U);
}

TEST(clsSingleCohort, NinetyEightDoublingsCanHelpTheNinetyNinthCannot)
{
    for (const int clearsAt : {98, 99, 1000}) {
        SingleBench bench(ThreePeriods());
        bench.model.m.PopUnderflow = true;
        int doublings = 0;
        const bool survives =
            bench.model.DoubleUntilItSurvives([&] { bench.model.m.PopUnderflow = ++doublings < clearsAt; });
        EXPECT_EQ(survives, clearsAt == 98);
        EXPECT_EQ(doublings, std::min(clearsAt, 99));
    }
}

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

namespace
{
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
    SingleBench bench(Simulated(0.1));
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const auto far = static_cast<float>(bench.model.Objective(std::array{1.1e20}));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(far), 0x7F7FC99EU);
    }
}

// The limit as a float is a little more than 1e20, and is inside itself: its trajectory runs.
TEST(clsSingleCohort, TheLimitItselfIsInsideAndTheNextFloatIsNot)
{
    const double limit = static_cast<double>(1e20F);
    const double next = static_cast<double>(std::nextafter(1e20F, 1e30F));
    ASSERT_GT(limit, 1e20);
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        SingleBench bench(Simulated(0.1));
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const float before = bench.model.Nt(1);
        EXPECT_EQ(bench.model.Objective(std::array{next}), static_cast<double>(3.4E+38F));
        EXPECT_EQ(bench.model.Nt(1), before);                              // no trajectory was run
        EXPECT_LE(bench.model.INelMead_MinFunc(std::array{limit}), limit); // the penalty is the limit
        EXPECT_EQ(bench.model.Nt(1), 1e20F);
    }
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

TEST(clsSingleCohort, AZeroCatchFailsRSquaredUnderLog)
{
    StateBench bench({1.0, 1.0}, {1.0, 0.0});
    bench.m.FitOp = fit_op::kLog;
    bench.m.ExpCatchVec.Fill(1.0F);

    EXPECT_EQ(FailureOf([&] { RSquaredOf(bench.m); }), errors::kInvalidArgument);
}

// Variances of three values. 1, 4, 9: 98/9; their distance to 2, 4, 8: 6/9. Roots 1, 2, 3: 2/3; distance to
// the roots of 1, 4, 4: 2/9. Logarithms 0, 1, 2: 2/3; distance to 0, 1, 1: 2/9. A fourth is toggled out.
TEST(clsSingleCohort, RSquaredComparesVariancesOnTheScaleOfTheErrorModel)
{
    const double e = std::exp(1.0);
    struct Case {
        std::int32_t fitOp;
        std::vector<double> observed, expected;
        double rSqr;
    };
    for (const Case& c : {Case{1, {1, 4, 9, 50}, {2, 4, 8, 3}, 92.0 / 98.0},
                          Case{4, {1, 4, 9, 50}, {2, 4, 8, 3}, 92.0 / 98.0},
                          Case{2, {1, e, e * e, 50}, {1, e, e, 3}, 2.0 / 3.0},
                          Case{3, {1, 4, 9, 50}, {1, 4, 4, 3}, 2.0 / 3.0}}) {
        StateBench bench({1, 1, 1, 1}, c.observed);
        bench.data.ToggledIn(4, false);
        bench.m.FitOp = c.fitOp;
        for (int i = 1; i <= 4; ++i)
            bench.m.ExpCatchVec(i) = static_cast<float>(c.expected[static_cast<std::size_t>(i) - 1]);
        EXPECT_NEAR(RSquaredOf(bench.m), c.rSqr, 3e-7) << c.fitOp; // a float below 1, float catches
    }
}

TEST(clsSingleCohort, RSquaredIsZeroWhereTheObservationsDoNotVary)
{
    StateBench bench({1.0, 1.0}, {5.0, 5.0});
    bench.m.ExpCatchVec.Fill(3.0F);
    EXPECT_EQ(RSquaredOf(bench.m), 0.0F);

    bench.data.ToggledIn(1, false);
    bench.data.ToggledIn(2, false);
    EXPECT_EQ(RSquaredOf(bench.m), 0.0F);
}

// N1 = 100, q = 0.1, M = 0: B = 95, 80, 55; rates 9.5, 8, 5.5; catches E times that.
TEST(clsSingleCohort, TheSeriesGoToTheDataSetAndTheirColumnsArePresent)
{
    SingleBench bench(ThreePeriods().MeanWt({2, 2, 4}).From(1990));
    bench.model.m.QValue = 0.1;
    Walk(bench, 100.0);

    bench.model.CalcCPUEVectors();

    EXPECT_EQ(bench.data.ObsCPUE(2), 20.0F / 3.0F);
    EXPECT_NEAR(bench.data.ExpCPUE(3), 5.5, 1e-6);
    EXPECT_NEAR(bench.data.ExpCatchNums(3), 22.0, 2e-6);
    EXPECT_EQ(bench.data.PopNums(4), 40.0F);
    EXPECT_EQ(bench.data.PopWt(4), 160.0F); // the period behind the last has the last one's weight
    for (const int column :
         {columns::ExpCPUE, columns::ObsCPUE, columns::PopNums, columns::ExpCatchNums, columns::PopWt})
        EXPECT_TRUE(bench.data.ColPresent(column)) << column;
    EXPECT_FALSE(bench.data.ColPresent(columns::ExpCatchWt));
}

TEST(clsSingleCohort, AnExpectedRateThatIsNotPositiveIsReplaced)
{
    SingleBench bench(ThreePeriods());
    bench.model.m.QValue = -0.1;
    Walk(bench, 100.0);

    bench.model.CalcCPUEVectors();

    EXPECT_EQ(bench.data.ExpCPUE(1), 0.0001F);
    EXPECT_FALSE(bench.data.ColPresent(columns::PopWt)); // no mean weight, no biomass
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
