// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/Projections.h"

#include "core/FittedModels.h"
#include "graphs/ProjGraph.h"
#include "support/Scenarios.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

using Values = std::vector<double>;

namespace
{
/// The projected populations of a line, from the point where the data end.
Values LineOf(const ProjGraph& graph, int line)
{
    Values values;
    for (int i = graph.ProjStart(); i <= graph.NumPoints(); ++i)
        values.push_back(static_cast<double>(graph.ProjData(line, i)));
    return values;
}

void ExpectNear(const Values& ours, const Values& theirs, double share = 1e-6)
{
    ASSERT_EQ(ours.size(), theirs.size());
    for (std::size_t i = 0; i < ours.size(); ++i)
        EXPECT_NEAR(ours[i], theirs[i], share * std::fabs(theirs[i])) << "point " << i;
}

/// A model that holds these estimates, as if a fit had found them, on the data of `table`.
template <typename Model>
struct Given : ModelBench<Model> {
    Given(const TableBuilder& table, std::int32_t whichMeth, const Estimates& estimates)
        : ModelBench<Model>(table)
    {
        this->model.WhichMeth(whichMeth);
        this->model.m.FinalEsts = estimates;
        this->model.m.QValue = estimates.Q;
    }
    std::shared_ptr<ProjGraph> Project(const std::vector<std::string>& titles, bool withFit = false)
    {
        return projections::Project(this->model, this->data, titles, withFit).graph;
    }
};

/// A stock of a thousand tonnes after one catch of 100, and three future periods of 200 units of effort that
/// catch a fifth of it each (q 0.001).
struct Production : Given<clsProduction> {
    Production(std::int32_t whichMeth, double r)
        : Given(TableBuilder().Effort({100}).Yield({100}), whichMeth, {.K = 1000.0, .Q = 0.001, .R = r})
    {
        AddScenario(data, "Effort", vec_type::kEffort, {200, 200, 200});
    }
};
} // namespace

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

// 500 x 0.0500000007 + 1 and 500 x 0.9499999881, rounded.
TEST(Projections, LimitsOf500ReplicatesStandAt26And475)
{
    const auto positions = projections::PositionsOf(500, 0.05F, 0.95F);
    EXPECT_EQ(positions.low, 26);
    EXPECT_EQ(positions.high, 475);
}

TEST(Projections, AHighLevelOf1StandsAtTheLastReplicateAndALowOneBehindIt)
{
    EXPECT_EQ(projections::PositionsOf(500, 0.0F, 1.0F).high, 500);
    EXPECT_EQ(projections::PositionsOf(500, 0.0F, 1.0F).low, 1);
    EXPECT_EQ(FailureOf([] { projections::PositionsOf(500, 1.0F, 1.0F); }), errors::kSubscript);
    EXPECT_EQ(FailureOf([] { projections::PositionsOf(500, 0.0F, 1.01F); }), errors::kSubscript);
}

TEST(Projections, APositionBelow1Is1AndHalvesGoToTheEvenOne)
{
    EXPECT_EQ(projections::PositionsOf(500, -1.0F, -1.0F).low, 1);
    EXPECT_EQ(projections::PositionsOf(500, -1.0F, 0.0F).high, 1);
    EXPECT_EQ(projections::PositionsOf(10, 0.25F, 0.25F).low, 4);  // 3.5
    EXPECT_EQ(projections::PositionsOf(10, 0.25F, 0.25F).high, 2); // 2.5
}

namespace
{
/// The state of everything but what a projection leaves behind the data, deliberately.
template <typename Model>
Everything<Model> WithoutFuture(Fitted<Model>& bench)
{
    Everything<Model> all(bench);
    all.dirty = false;
    all.state.DIYTCatch = false;
    for (int i = all.naPoints + 1; i <= clsVeltData::kRows; ++i) {
        all.state.ObsTCatchRef(i) = all.state.ObsCatchRef(i) = 0.0F;
        all.table(columns::Effort)(i) = 0.0F;
        if (i > all.ndPoints)
            all.state.Nt(i) = 0.0F;
    }
    return all;
}

/// Effort as before and twice as much, catches as before, over six future periods.
template <typename Bench>
std::vector<std::string> AddThreeScenarios(Bench& bench)
{
    const double effort = static_cast<double>(bench.data.Effort(bench.data.NAPoints()));
    const double caught =
        static_cast<double>(bench.model.ObsTCatchRef(static_cast<std::int16_t>(bench.data.NAPoints())));
    AddScenario(bench.data, "As before", vec_type::kEffort, Values(6, effort));
    AddScenario(bench.data, "Catch", bench.model.UsingNos() ? vec_type::kTotCatchNums : vec_type::kTotCatchWt,
                Values(6, caught));
    AddScenario(bench.data, "Twice", vec_type::kEffort, Values(6, 2.0 * effort));
    return {"As before", "Catch", "Twice"};
}

constexpr int kReplicates = 12;

template <typename Bench>
void MakeReplicates(Bench& bench)
{
    bench.run.globals.settings.NumBootStraps = kReplicates;
    bench.model.CalcBootStraps();
}
} // namespace

TEST(Projections, AfterAnyProjectionTheFitIsToTheBitAsItWas)
{
    ForEveryFit([](auto& bench) {
        const auto titles = AddThreeScenarios(bench);
        if (projections::Refusal(bench.model, bench.data)) {
            EXPECT_EQ(bench.model.WhichMeth(), models::kRecruitmentIndex);
            return;
        }
        MakeReplicates(bench);
        bench.model.FinalEsts();
        const auto before = WithoutFuture(bench);
        const std::vector<double> report = bench.model.FinalEsts();

        projections::Project(bench.model, bench.data, titles, true);
        EXPECT_TRUE(WithoutFuture(bench) == before) << "projected";
        for (const std::string& title : titles) {
            projections::ProjectWithLimits(bench.model, bench.data, title, {2, 11});
            EXPECT_TRUE(WithoutFuture(bench) == before) << "projected with limits: " << title;
        }
        for (const int looks : {1, 4}) {
            bench.meter.cancelAfter = looks;
            bench.meter.looks = 0;
            EXPECT_THROW(projections::ProjectWithLimits(bench.model, bench.data, titles[0], {2, 11}),
                         VeltError);
            EXPECT_TRUE(WithoutFuture(bench) == before) << "cancelled";
        }
        bench.meter.cancelAfter.reset();
        EXPECT_THROW(projections::Project(bench.model, bench.data, {titles[0], "gone"}, true), VeltError);
        EXPECT_TRUE(WithoutFuture(bench) == before) << "failed in the middle";
        EXPECT_EQ(bench.model.FinalEsts(), report);
    });
}

TEST(Projections, ReplicatesDrawnAfterAProjectionAreThoseThatWouldHaveBeenDrawnWithoutIt)
{
    for (const std::int32_t whichMeth : {models::kNoRecruitment, models::kSchaefer}) {
        const auto replicates = [&](auto& bench, bool project) {
            const auto titles = AddThreeScenarios(bench);
            if (project)
                projections::Project(bench.model, bench.data, titles, true);
            MakeReplicates(bench);
            std::vector<float> stocks;
            for (int b = 1; b <= kReplicates; ++b)
                stocks.push_back(bench.model.BootStrap(bs_param::kQ, b));
            return stocks;
        };
        const auto same = [&](auto make) {
            const auto with = make();
            const auto without = make();
            EXPECT_EQ(replicates(*with, true), replicates(*without, false)) << "model " << whichMeth;
        };
        if (whichMeth == models::kNoRecruitment)
            same([&] { return std::make_unique<Fitted<clsSingleCohort>>(whichMeth, fit_op::kLog); });
        else
            same([&] { return std::make_unique<Fitted<clsProduction>>(whichMeth, fit_op::kLog); });
    }
}

namespace
{
/// The limits as they are defined: for each point a pass of its own over all replicates.
std::vector<std::pair<float, float>> LimitsPointByPoint(IMethod& method, clsVeltData& data,
                                                        const std::string& title, int low, int high)
{
    const auto lengthened = method.Lengthen(data.NumPts());
    const clsProjScenario& scenario = *data.ProjScenario(title);
    method.DIYTCatch(scenario.VecType() == vec_type::kEffort);
    for (int row = data.OrigNAPoints() + 1; row <= data.NAPoints(); ++row) {
        if (method.DIYTCatch())
            data.Effort(row, static_cast<float>(scenario.Vector(row)));
        else
            method.ObsTCatchRef(static_cast<std::int16_t>(row), static_cast<float>(scenario.Vector(row)));
    }
    std::vector<std::pair<float, float>> limits;
    for (int t = 1; t <= data.NDPoints(); ++t) {
        std::multiset<float> populations;
        for (int b = 1; b <= method.NumBootStraps(); ++b) {
            method.CopyBStrapsToWorkEsts(static_cast<std::int16_t>(b));
            method.CalcPopTraj();
            populations.insert(method.Nt(static_cast<std::int16_t>(t)));
        }
        limits.emplace_back(*std::next(populations.begin(), low - 1),
                            *std::next(populations.begin(), high - 1));
    }
    return limits;
}
} // namespace

TEST(Projections, LimitsAreThoseOfAPassOverAllReplicatesForEachPoint)
{
    const auto same = [](auto make) {
        const auto asDefined = make();
        const auto ours = make();
        for (const std::string title : {"As before", "Catch", "Twice"}) {
            const auto limits = LimitsPointByPoint(asDefined->model, asDefined->data, title, 2, 11);
            asDefined->model.CopyQANDFinalToWorkEsts(); // what a projection ends with is what the next finds
            {
                const auto lengthened = asDefined->model.Lengthen(asDefined->data.NumPts());
                asDefined->model.CalcPopTraj();
            }
            const auto graph = projections::ProjectWithLimits(ours->model, ours->data, title, {2, 11}).graph;
            ASSERT_EQ(static_cast<std::size_t>(graph->NumPoints()), limits.size());
            for (int t = 1; t <= graph->NumPoints(); ++t) {
                EXPECT_EQ(graph->ErrorMinus(t), limits[static_cast<std::size_t>(t - 1)].first) << title << t;
                EXPECT_EQ(graph->ErrorPlus(t), limits[static_cast<std::size_t>(t - 1)].second) << title << t;
            }
        }
    };
    const auto make = [](auto bench) {
        AddThreeScenarios(*bench);
        MakeReplicates(*bench);
        return bench;
    };
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog}) {
        same([&] { return make(std::make_unique<Fitted<clsSingleCohort>>(models::kNoRecruitment, fitOp)); });
        same([&] {
            return make(std::make_unique<Fitted<clsConstRecruit>>(models::kConstantRecruitment, fitOp));
        });
        same([&] { return make(std::make_unique<Fitted<clsProduction>>(models::kPellaTomlinson, fitOp)); });
    }
}

TEST(Projections, FewerReplicatesThanFuturePeriodsNeedMorePassesAndGetThem)
{
    const auto make = [] {
        auto bench = std::make_unique<Fitted<clsSingleCohort>>(models::kNoRecruitment, fit_op::kLog);
        AddScenario(bench->data, "Effort", vec_type::kEffort, Values(9, 100.0));
        bench->run.globals.settings.NumBootStraps = 2;
        bench->model.CalcBootStraps();
        return bench;
    };
    const auto asDefined = make();
    const auto ours = make();
    const auto limits = LimitsPointByPoint(asDefined->model, asDefined->data, "Effort", 1, 2);
    const auto graph = projections::ProjectWithLimits(ours->model, ours->data, "Effort", {1, 2}).graph;
    for (int t = 1; t <= graph->NumPoints(); ++t) {
        EXPECT_EQ(graph->ErrorMinus(t), limits[static_cast<std::size_t>(t - 1)].first) << t;
        EXPECT_EQ(graph->ErrorPlus(t), limits[static_cast<std::size_t>(t - 1)].second) << t;
    }
}

TEST(Projections, AProjectionWithLimitsHasTheScenarioAndTheFitOverAllPoints)
{
    Fitted<clsProduction> bench(models::kSchaefer, fit_op::kLog);
    AddThreeScenarios(bench);
    MakeReplicates(bench);
    const auto graph = projections::ProjectWithLimits(bench.model, bench.data, "Twice", {2, 11}).graph;
    EXPECT_TRUE(graph->WithCI());
    EXPECT_TRUE(graph->WithFit());
    EXPECT_EQ(graph->NumLines(), 2);
    EXPECT_EQ(graph->LegendText(1), "Twice");
    EXPECT_EQ(graph->LegendText(2), "Fit");
    for (int i = 1; i <= graph->NumPoints(); ++i)
        EXPECT_EQ(graph->ProjData(1, i), graph->ProjData(2, i));
    EXPECT_EQ(bench.meter.titles.back(), "Generating Conf. Ints...");
    EXPECT_EQ(bench.meter.maximum, graph->NumPoints());
    EXPECT_EQ(bench.meter.value, graph->NumPoints());
}

namespace
{
/// A production model that keeps what it is told to do, each step once in a row, and the catches it is given.
struct Watched : clsProduction {
    using clsProduction::CatchRef, clsProduction::CatchVector;
    void CatchRef(std::int16_t i, float value) override
    {
        Note("CatchRef");
        given[i] = value;
        clsProduction::CatchRef(i, value);
    }
    void CatchVector(std::int16_t i, float value) override
    {
        Note("CatchVector");
        given[i] = value;
        clsProduction::CatchVector(i, value);
    }
    void CopyFinalToWorkEsts() override
    {
        Note("CopyFinalToWorkEsts");
        clsProduction::CopyFinalToWorkEsts();
    }
    void CopyQANDFinalToWorkEsts() override
    {
        Note("CopyQANDFinalToWorkEsts");
        clsProduction::CopyQANDFinalToWorkEsts();
    }
    void CopyBStrapsToWorkEsts(std::int16_t n) override
    {
        Note("CopyBStrapsToWorkEsts");
        clsProduction::CopyBStrapsToWorkEsts(n);
    }
    void CalcDiscCatches() override
    {
        Note("CalcDiscCatches");
        clsProduction::CalcDiscCatches();
    }
    void Note(const char* step)
    {
        if (steps.empty() || steps.back() != step)
            steps.emplace_back(step);
    }

    std::vector<std::string> steps;
    std::map<int, float> given;
};
} // namespace

// Deliberate: without limits the total catch of the data goes into CatchVector, with limits into CatchRef.
TEST(Projections, ThePastTotalCatchGoesIntoCatchVectorAndUnderLimitsIntoCatchRef)
{
    const Values total{570, 820, 995, 1110, 1170, 915, 600, 200, 145, 188, 440, 620};
    Fitted<Watched> bench(TableFor(models::kSchaefer).TotalWt(total), models::kSchaefer, fit_op::kLog);
    const auto titles = AddThreeScenarios(bench);
    MakeReplicates(bench);
    std::map<int, float> past;
    for (std::size_t i = 0; i < total.size(); ++i)
        past[static_cast<int>(i) + 1] = static_cast<float>(total[i]);

    bench.model.steps.clear();
    bench.model.given.clear();
    projections::Project(bench.model, bench.data, titles, true);
    EXPECT_EQ(bench.model.given, past);
    EXPECT_EQ(bench.model.steps,
              (std::vector<std::string>{"CatchVector", "CopyFinalToWorkEsts", "CalcDiscCatches"}));

    bench.model.steps.clear();
    bench.model.given.clear();
    projections::ProjectWithLimits(bench.model, bench.data, "Catch", {2, 11});
    EXPECT_EQ(bench.model.given, past);
    EXPECT_EQ(bench.model.steps,
              (std::vector<std::string>{"CatchRef", "CopyBStrapsToWorkEsts", "CopyQANDFinalToWorkEsts"}));
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

// Period 4 is the first behind the data; its catch of 0 leaves 729 + 1 at the start of period 5.
TEST(Projections, TheRemarkNamesThePeriodsBehindTheDataAndComesWithLimitsToo)
{
    Given<clsSingleCohort> bench(TableBuilder().From(1).Effort({200, 200, 200}).Catch({242, 198, 162}),
                                 models::kNoRecruitment, {.N1 = 1331.0, .Q = 0.001});
    bench.model.Mort(0.0F);
    AddScenario(bench.data, "Effort", vec_type::kEffort, {200, 200});
    const auto projected = projections::Project(bench.model, bench.data, {"Effort"}, true);
    ASSERT_TRUE(projected.remark);
    EXPECT_NE(projected.remark->text.find("730 in 5, not 596.5;"), std::string::npos)
        << projected.remark->text;

    Fitted<clsSingleCohort> fitted(models::kNoRecruitment, fit_op::kLog);
    AddThreeScenarios(fitted);
    MakeReplicates(fitted);
    EXPECT_TRUE(projections::ProjectWithLimits(fitted.model, fitted.data, "Twice", {2, 11}).remark);
    EXPECT_FALSE(projections::ProjectWithLimits(fitted.model, fitted.data, "Catch", {2, 11}).remark);
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

TEST(Projections, AProjectionWithLimitsLeavesItsCatchesBehindTheData)
{
    Fitted<clsProduction> bench(models::kSchaefer, fit_op::kLog);
    AddThreeScenarios(bench);
    MakeReplicates(bench);
    projections::ProjectWithLimits(bench.model, bench.data, "Catch", {2, 11});
    const auto behind = static_cast<std::int16_t>(bench.data.NAPoints() + 1);
    EXPECT_EQ(bench.model.ObsTCatchRef(behind),
              bench.model.ObsTCatchRef(static_cast<std::int16_t>(behind - 1)));
    EXPECT_FALSE(bench.model.DIYTCatch());
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
