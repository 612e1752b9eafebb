// SPDX-License-Identifier: GPL-3.0-or-later
// Limits of projections, and what any projection leaves as it was.
#include "core/ProjectionBench.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace
{
using namespace projection_bench;

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
} // namespace

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
