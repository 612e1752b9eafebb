// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/Projections.h"

#include "core/ProjectionBench.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

using namespace projection_bench;

// Three periods of a closed cohort without natural mortality: N1 1331, q 0.001, catches 242, 198, 162, so
// that 729 are left. The total catch behind the data is the -1 of an empty cell, the populations there are 0.
// N(t) = N(t-1) - T(t-1), and T(t) = q E(t-1) Nold(t) / (1 + q E(t-1) / 2) with what the trajectory before
// left.
TEST(Projections, AClosedCohortTakesAProjectedCatchFromTheTrajectoryBeforeAndOnePeriodLate)
{
    Given<clsSingleCohort> bench(TableBuilder().From(1).Effort({200, 200, 200}).Catch({242, 198, 162}),
                                 models::kNoRecruitment, {.N1 = 1331.0, .Q = 0.001});
    bench.model.Mort(0.0F);
    AddScenario(bench.data, "First effort", vec_type::kEffort, {200, 200, 200});
    AddScenario(bench.data, "Second effort", vec_type::kEffort, {400, 400, 400});
    AddScenario(bench.data, "Catch", vec_type::kTotCatchNums, {9, 9.25, 8.5}); // kept as 9, 9 and 8
    AddScenario(bench.data, "Third effort", vec_type::kEffort, {400, 400, 400});
    const auto graph = bench.Project({"First effort", "Second effort", "Catch", "Third effort"}, true);

    ExpectNear(LineOf(*graph, 1), {729, 730, 730, 730}); // nothing was left: nothing is caught
    ExpectNear(LineOf(*graph, 2), {729, 730, 730 - 730.0 / 3, 730.0 / 3}); // 0.4 / 1.2 of 730, twice
    ExpectNear(LineOf(*graph, 3), {729, 720, 711, 703});
    ExpectNear(LineOf(*graph, 4), {729, 720, 480, 243}); // 9 is left from the catches; then 720/3 and 711/3
    for (int i = 1; i <= 4; ++i)
        EXPECT_FLOAT_EQ(graph->ProjData(5, i),
                        (std::array{1331.0F, 1089.0F, 891.0F, 729.0F})[static_cast<std::size_t>(i - 1)]);
}

// M = ln 2, so that half survives, sqrt(1/2) to the middle, and K recruits of 1000 come each period.
// T = 0.2 (1000 + N) sqrt(1/2) / 1.1, N' = (1000 + N) / 2 - sqrt(1/2) T, from N = 1000 - sqrt(1/2) 100.
TEST(Projections, ConstantRecruitmentTakesTheCatchFromItsOwnPeriod)
{
    Given<clsConstRecruit> bench(TableBuilder().Effort({100}).Catch({100}), models::kConstantRecruitment,
                                 {.K = 1000.0, .Q = 0.001});
    bench.model.Mort(static_cast<float>(std::log(2.0)));
    AddScenario(bench.data, "Effort", vec_type::kEffort, {200, 200, 200});
    ExpectNear(LineOf(*bench.Project({"Effort"}), 1), {929.289322, 789.254723, 731.967841, 708.532299});
}

// G = 0.4 N (1 - N/1000), N' = (1.8 N + 2 G) / 2.2, from 900: G is 36, 71.036 and 84.971.
TEST(Projections, SchaeferTakesTheCatchFromTheMeanThatTheEffortLeaves)
{
    ExpectNear(LineOf(*Production(models::kSchaefer, 0.4).Project({"Effort"}), 1),
               {900, 769.090909, 693.834411, 644.929325});
}

// G = 0.3 N ln(1000/N): 28.447 of 900.
TEST(Projections, FoxProjectsWithItsOwnGrowth)
{
    ExpectNear(LineOf(*Production(models::kFox, 0.3).Project({"Effort"}), 1),
               {900, 762.224854, 680.080647, 627.938967});
}

// G = 0.4 N (1 - (N/1000)^2) of the period before: nothing at the start, at 1000, then of 900.
TEST(Projections, PellaTomlinsonProjectsWithTheGrowthOfAnEarlierPeriod)
{
    Production bench(models::kPellaTomlinson, 0.4);
    bench.model.Z(2.0F);
    bench.model.LAG(1);
    ExpectNear(LineOf(*bench.Project({"Effort"}), 1), {900, 736.363636, 664.661157, 666.389727});
}

TEST(Projections, AFuturePeriodWithoutEffortHasNoCatch)
{
    Production bench(models::kSchaefer, 0.4);
    AddScenario(bench.data, "Rest", vec_type::kEffort, {0, 0, 0});
    // 900 + 36, then 936 + 0.4 936 0.064
    ExpectNear(LineOf(*bench.Project({"Rest"}), 1), {900, 936, 959.9616, 975.335808});
}

TEST(Projections, ACatchScenarioRemovesWhatItSays)
{
    Production bench(models::kSchaefer, 0.4);
    AddScenario(bench.data, "Catch", vec_type::kTotCatchWt, {36, 136, 0});
    ExpectNear(LineOf(*bench.Project({"Catch"}), 1), {900, 900, 800, 864});
}

TEST(Projections, EveryProjectionSaysItsTimesAndItsLines)
{
    Production bench(models::kSchaefer, 0.4);
    AddScenario(bench.data, "Rest", vec_type::kEffort, {0, 0, 0});
    const auto graph = bench.Project({"Rest", "Effort"}, true);
    EXPECT_EQ(graph->NumLines(), 3);
    EXPECT_EQ(graph->NumPoints(), 5); // one period of data, three future ones, the state behind
    EXPECT_EQ(graph->ProjStart(), 2);
    EXPECT_EQ(graph->LegendText(1), "Rest");
    EXPECT_EQ(graph->LegendText(2), "Effort");
    EXPECT_EQ(graph->LegendText(3), "Fit");
    EXPECT_EQ(graph->XTitle(), "Time");
    EXPECT_EQ(graph->YTitle(), "Population");
    EXPECT_EQ(graph->XData(1), 2001.0F);
    EXPECT_EQ(graph->XData(5), 2005.0F);
    EXPECT_EQ(graph->ProjData(3, 1), 1000.0F);
    EXPECT_EQ(graph->ProjData(3, 2), graph->ProjData(1, 2));
}

TEST(Projections, AScenarioKeepsItsTrajectory)
{
    Production bench(models::kSchaefer, 0.4);
    const auto graph = bench.Project({"Effort"});
    const clsProjScenario& scenario = *bench.data.ProjScenario("Effort");
    EXPECT_EQ(scenario.PopTraj(1), 1000.0F);
    for (int i = 2; i <= 5; ++i)
        EXPECT_EQ(scenario.PopTraj(i), graph->ProjData(1, i)) << i;
    EXPECT_EQ(scenario.PopTraj(6), 0.0F);
}

TEST(Projections, AScenarioThatIsNotThereIsAFailureAndLeavesTheFitAlone)
{
    Production bench(models::kSchaefer, 0.4);
    EXPECT_EQ(FailureOf([&] { bench.Project({"Effort", "Gone"}); }), errors::kInvalidArgument);
    EXPECT_EQ(bench.data.NAPoints(), 1);
    EXPECT_EQ(bench.data.NDPoints(), 2);
}

TEST(Projections, EffortSuitsEveryModelAndACatchThoseThatCountInItsUnit)
{
    const auto suitable = [](auto& bench) {
        AddScenario(bench.data, "Weight", vec_type::kTotCatchWt, {1});
        AddScenario(bench.data, "Effort 2", vec_type::kEffort, {1});
        AddScenario(bench.data, "Numbers", vec_type::kTotCatchNums, {1});
        return projections::SuitableTitles(bench.model, bench.data);
    };
    using Titles = std::vector<std::string>;
    Production production(models::kFox, 0.3);
    EXPECT_EQ(suitable(production), (Titles{"Effort", "Weight", "Effort 2"}));
    Given<clsConstRecruit> recruits(TableBuilder().Effort({100}).Catch({100}), models::kConstantRecruitment,
                                    {.K = 1000.0, .Q = 0.001});
    EXPECT_EQ(suitable(recruits), (Titles{"Effort 2", "Numbers"}));
}

namespace
{
std::string RefusalOf(Production& bench)
{
    return projections::Refusal(bench.model, bench.data).value_or("");
}
} // namespace

TEST(Projections, DataAndFutureTogetherAreAtMost199Periods)
{
    Production bench(models::kSchaefer, 0.4);
    bench.data.NumPts(198);
    EXPECT_EQ(RefusalOf(bench), "");
    EXPECT_NO_THROW(bench.Project({"Effort"}));
    bench.data.NumPts(199);
    EXPECT_EQ(RefusalOf(bench), "1 periods of data and 199 future periods are 200; together they can be 199. "
                                "Delete rows in Set Up Scenarios.");
}

TEST(Projections, WithoutFuturePeriodsThereIsNothingToProject)
{
    Production bench(models::kSchaefer, 0.4);
    for (const std::int32_t points : {0, -3}) {
        bench.data.NumPts(points);
        EXPECT_EQ(RefusalOf(bench), "The scenarios have no future periods. Add rows in Set Up Scenarios.");
    }
}

TEST(Projections, AGapInTheTotalCatchIsRefusedWithItsPeriod)
{
    ModelBench<clsProduction> bench(
        TableBuilder().From(1990).Effort({1, 2, 3, 4}).CatchWt({5, 6, 7, 8}).TotalWt({5, 6, -1, 8}));
    AddScenario(bench.data, "Effort", vec_type::kEffort, {1});
    EXPECT_TRUE(projections::RefusalOfFit(bench.model, bench.data)
                    .value_or("")
                    .starts_with("The period 1992 has no total catch."));
}

TEST(Projections, RowsBehindTheLastTotalCatchAreNoGap)
{
    ModelBench<clsProduction> bench(
        TableBuilder().Effort({1, 2, 3, 4}).CatchWt({5, 6, 7, 8}).TotalWt({5, 6, 7, -1}));
    AddScenario(bench.data, "Effort", vec_type::kEffort, {1});
    EXPECT_FALSE(projections::Refusal(bench.model, bench.data));
}

TEST(Projections, TheRecruitmentIndexModelIsRefused)
{
    ModelBench<clsRecruitINdex> bench(TableBuilder().Effort({1, 2}).Catch({5, 6}).Recruits({1, 1}));
    AddScenario(bench.data, "Effort", vec_type::kEffort, {1});
    EXPECT_TRUE(projections::Refusal(bench.model, bench.data));
}

TEST(Projections, TheCatchesOfAScenarioStayAsObservedOnesBehindTheData)
{
    Production bench(models::kSchaefer, 0.4);
    AddScenario(bench.data, "Catch", vec_type::kTotCatchWt, {36, 136, 7});
    bench.Project({"Catch"});
    EXPECT_EQ(bench.model.ObsCatchRef(2), 36.0F);
    EXPECT_EQ(bench.model.ObsCatchRef(3), 136.0F);
    EXPECT_EQ(bench.model.ObsCatchRef(4), 7.0F);
    EXPECT_EQ(bench.model.ObsTCatchRef(4), 0.0F);
}

TEST(Projections, TheAxisOfAProjectionMeasuresWhatItsModelCounts)
{
    Production biomass(models::kSchaefer, 0.4);
    EXPECT_EQ(biomass.Project({"Effort"})->YMeasure().column, columns::PopWt);
    EXPECT_EQ(biomass.Project({"Effort"})->XMeasure().column, AxisMeasure::kTime);
    Given<clsConstRecruit> numbers(TableBuilder().Effort({100}).Catch({100}), models::kConstantRecruitment,
                                   {.K = 1000.0, .Q = 0.001});
    AddScenario(numbers.data, "Effort", vec_type::kEffort, {200});
    EXPECT_EQ(numbers.Project({"Effort"})->YMeasure().column, columns::PopNums);
}

TEST(Projections, AModelThatTakesEachCatchFromItsOwnPeriodNeedsNoRemark)
{
    Production bench(models::kSchaefer, 0.4);
    EXPECT_FALSE(projections::Project(bench.model, bench.data, {"Effort"}, true).remark);
}

TEST(Projections, WhatLiesBehindTheDataStaysAsTold)
{
    Production bench(models::kSchaefer, 0.4);
    bench.data.MarkSaved();
    bench.Project({"Effort"});
    EXPECT_TRUE(bench.data.IsDirty());
    EXPECT_EQ(bench.data.OrigNAPoints(), 1);
    EXPECT_TRUE(bench.model.DIYTCatch()); // of the last scenario
    for (int row = 2; row <= 4; ++row) {
        EXPECT_EQ(bench.data.Effort(row), 200.0F);
        EXPECT_EQ(bench.model.ObsTCatchRef(static_cast<std::int16_t>(row)), 0.0F);
    }
    EXPECT_EQ(bench.model.ObsTCatchRef(200), 0.0F);
    EXPECT_EQ(bench.model.ObsTCatchRef(1), 100.0F);
}

TEST(Projections, TheEffortOfARowOfTheTableIsTheUsersAndComesBack)
{
    ModelBench<clsProduction> bench(TableBuilder().Effort({100, 77}).CatchWt({100, 5}).TotalWt({100, -1}));
    bench.model.WhichMeth(models::kSchaefer);
    bench.model.m.FinalEsts = {.K = 1000.0, .Q = 0.001, .R = 0.4};
    AddScenario(bench.data, "Effort", vec_type::kEffort, {200, 200});
    const bool toggled = bench.data.ToggledIn(2);
    projections::Project(bench.model, bench.data, {"Effort"}, true);
    EXPECT_EQ(bench.data.Effort(2), 77.0F);
    EXPECT_EQ(bench.data.ToggledIn(2), toggled);
    EXPECT_EQ(bench.data.Effort(3), 200.0F);
}

// Ticked as a period of a gamma fit it would be asked for the logarithm of a ratio to its effort, which is 0.
TEST(Projections, ATickInARowWithoutATotalCatchIsNoPartOfTheFit)
{
    SimulatedStock stock;
    stock.q = 0.001;
    const Values catches = stock.Catches(0.05);
    const auto with = [](Values values, double last) {
        values.push_back(last);
        return values;
    };
    Fitted<clsSingleCohort> bench(TableBuilder()
                                      .Effort(with(stock.effort, 77.0))
                                      .CatchNums(with(catches, 5.0))
                                      .TotalNums(with(catches, -1.0)),
                                  models::kNoRecruitment, fit_op::kGamma);
    ASSERT_TRUE(bench.data.ToggledIn(bench.data.NAPoints() + 1));
    AddScenario(bench.data, "Rest", vec_type::kEffort, {0, 0});
    EXPECT_NO_THROW(projections::Project(bench.model, bench.data, {"Rest"}, true));
    EXPECT_TRUE(bench.data.ToggledIn(bench.data.NAPoints() + 1));
}

// A stock without noise, fished on at its mean catch: what is projected is what the simulation goes on to.
TEST(Projections, UnderTheMeanCatchAClosedCohortGoesOnAsItWasSimulated)
{
    SimulatedStock stock;
    stock.q = 0.001;
    const Values catches = stock.Catches();
    double n = stock.n1;
    for (const double caught : catches)
        n = n * std::exp(-stock.mort) - caught * std::exp(-stock.mort / 2.0);
    Fitted<clsSingleCohort> bench(TableBuilder().Effort(stock.effort).Catch(catches), models::kNoRecruitment,
                                  fit_op::kLog);
    constexpr double kCatch = 20.0;
    AddScenario(bench.data, "Mean", vec_type::kTotCatchNums, Values(4, kCatch));
    Values expected{n};
    for (int t = 0; t < 4; ++t)
        expected.push_back(expected.back() * std::exp(-stock.mort) - kCatch * std::exp(-stock.mort / 2.0));
    ExpectNear(LineOf(*projections::Project(bench.model, bench.data, {"Mean"}, true).graph, 1), expected,
               2e-3);
}

TEST(Projections, UnderTheMeanCatchAProductionStockGoesOnAsItWasSimulated)
{
    constexpr double kK = 2000.0, kR = 0.5, kQ = 0.0008;
    const Values effort{100, 200, 320, 420, 500, 480, 350, 220, 120, 90, 140, 260, 380, 300};
    Values yield;
    double b = kK;
    for (const double e : effort) { // what the trapezium of effort and growth takes
        const double grown = kR * b * (1.0 - b / kK);
        const double next = (b * (2.0 - kQ * e) + 2.0 * grown) / (2.0 + kQ * e);
        yield.push_back(kQ * e * (b + next) / 2.0);
        b = next;
    }
    Fitted<clsProduction> bench(TableBuilder().Effort(effort).Yield(yield), models::kSchaefer, fit_op::kLog);
    constexpr double kCatch = 200.0;
    AddScenario(bench.data, "Mean", vec_type::kTotCatchWt, Values(5, kCatch));
    AddScenario(bench.data, "Effort", vec_type::kEffort, Values(5, 250.0));
    Values underCatch{b}, underEffort{b};
    for (int t = 0; t < 5; ++t) {
        const double a = underCatch.back();
        underCatch.push_back(a + kR * a * (1.0 - a / kK) - kCatch);
        const double c = underEffort.back();
        underEffort.push_back((c * (2.0 - kQ * 250.0) + 2.0 * kR * c * (1.0 - c / kK)) / (2.0 + kQ * 250.0));
    }
    const auto graph = projections::Project(bench.model, bench.data, {"Mean", "Effort"}, true).graph;
    ExpectNear(LineOf(*graph, 1), underCatch, 2e-3);
    ExpectNear(LineOf(*graph, 2), underEffort, 2e-3);
}
