// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsSingleCohort.h"

#include "base/NumberText.h"
#include "core/SingleCohortBench.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

using namespace single_cohort;

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

TEST(clsSingleCohort, TheSuggestedStartingValueIsTakenToTheBit)
{
    SingleBench bench(Table({2, 3, 4}, {70, 61, 43}));
    bench.model.Mort(0.0F);
    ASSERT_TRUE(bench.model.CalcInitEstimates());
    const double suggested = bench.model.Details().initEsts.at(0).value;
    const std::string text = number_text::Plain(suggested);
    ASSERT_NE(number_text::ParseTyped(text), suggested); // it has more digits than its text
    bench.user.inputs = {text};
    ASSERT_TRUE(bench.model.InputStartingEsts());
    EXPECT_EQ(bench.model.Details().initEsts.at(0).value, suggested);
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
