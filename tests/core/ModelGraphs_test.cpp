// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ModelGraphs.h"

#include "core/ProductionBench.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <utility>

namespace
{
constexpr double kGap = ModelGraph::InvalidData;
using Values = std::vector<double>;

/// A fit of four periods from 1970: 1 and 4 in the fit, 2 toggled out, 3 without effort.
///     catch 10, 20, 30, 40   expected 8, 16, 24, 44   residuals 2, 4, (6), -4
///     catch rate 1, 2, -, 4  expected 0.8, 1.6, -, 4.4
class Graphs : public ::testing::Test, public Bench
{
protected:
    Graphs()
    {
        m.run = &run;
        m.data = &data;
        data.MinTimeP(1970);
        data.NAPoints(4);
        data.NDPoints(5);
        for (int i = 1; i <= 4; ++i) {
            data.Included(i, i != 3);
            data.ToggledIn(i, i == 1 || i == 4);
            data.ObsCPUE(i, static_cast<float>(i));
            data.ExpCPUE(i, i == 4 ? 4.4F : 0.8F * static_cast<float>(i));
            m.CatchVector(i) = static_cast<float>(10 * i);
            m.ExpCatchVec(i) = i == 4 ? 44.0F : static_cast<float>(8 * i);
            m.ResidVec(i) = 0.1F * static_cast<float>(i);
        }
        for (int i = 1; i <= 5; ++i) {
            data.PopNums(i, static_cast<float>(1000 - i));
            data.PopWt(i, static_cast<float>(2000 - i));
        }
    }

    const ModelGraph& Graph(std::size_t number) { return *window.graphs.at(number - 1); }

    clsVeltData data{run};
    ModelState m;
};

const Values kTimes{1970.0, 1971.0, 1972.0, 1973.0};
} // namespace

TEST_F(Graphs, CatchRatesAreSplitIntoPointsInAndOutOfTheFitWithAGapWherePeriodsAreNotIncluded)
{
    AddModelGraphs(m);
    const ModelGraph& graph = Graph(1);
    EXPECT_EQ(graph.Title(), "Expected and Observed CPUE");
    EXPECT_EQ(graph.XTitle(), "Time");
    EXPECT_EQ(graph.YTitle(), "CPUE");
    EXPECT_EQ(graph.Type(), GraphType::PointsAndLine);
    EXPECT_TRUE(graph.WithToggs());
    EXPECT_EQ(graph.NumPoints(), 4);
    EXPECT_EQ(graph.XData(), kTimes);
    EXPECT_EQ(graph.YData(), (Values{1.0, kGap, kGap, 4.0}));
    EXPECT_EQ(graph.YData2(), (Values{kGap, 2.0, kGap, kGap}));
    EXPECT_EQ(graph.OverlayLine(), (Values{static_cast<double>(0.8F), static_cast<double>(1.6F), kGap,
                                           static_cast<double>(4.4F)}));
}

TEST_F(Graphs, CatchesAreSplitLikeCatchRates)
{
    AddModelGraphs(m);
    const ModelGraph& graph = Graph(2);
    EXPECT_EQ(graph.Title(), "Expected and Observed Catch");
    EXPECT_EQ(graph.XTitle(), "Time");
    EXPECT_EQ(graph.YTitle(), "Catch");
    EXPECT_EQ(graph.Type(), GraphType::PointsAndLine);
    EXPECT_TRUE(graph.WithToggs());
    EXPECT_EQ(graph.XData(), kTimes);
    EXPECT_EQ(graph.YData(), (Values{10.0, kGap, kGap, 40.0}));
    EXPECT_EQ(graph.YData2(), (Values{kGap, 20.0, kGap, kGap}));
    EXPECT_EQ(graph.OverlayLine(), (Values{8.0, 16.0, kGap, 44.0}));
}

// s = 2^2 + 4^2 = 20 over 2 periods: limits 2 root 10 = 6.324555
TEST_F(Graphs, LeastSquaresResidualsAreDifferencesWithLimitsAtTwiceTheirRootMeanSquare)
{
    AddModelGraphs(m);
    for (const std::size_t number : {3U, 4U}) {
        const ModelGraph& graph = Graph(number);
        EXPECT_EQ(graph.Type(), GraphType::Residuals);
        EXPECT_TRUE(graph.WithToggs());
        EXPECT_EQ(graph.YData(), (Values{2.0, kGap, kGap, -4.0}));
        EXPECT_EQ(graph.YData2(), (Values{kGap, 4.0, kGap, kGap}));
        EXPECT_EQ(graph.OverlayLine(), Values(4, kGap));
        EXPECT_FLOAT_EQ(graph.UCI(), 6.324555F);
        EXPECT_FLOAT_EQ(graph.LCI(), -6.324555F);
    }
    EXPECT_EQ(Graph(3).XTitle(), "Time");
    EXPECT_EQ(Graph(3).YTitle(), "Residual Catches");
    EXPECT_EQ(Graph(3).XData(), kTimes);
    EXPECT_EQ(Graph(4).XTitle(), "Expected Catch");
    EXPECT_EQ(Graph(4).YTitle(), "Observed Residuals");
    EXPECT_EQ(Graph(4).XData(), (Values{8.0, 16.0, 24.0, 44.0})); // of every period
}

TEST_F(Graphs, ResidualsOfAWeightedFitAreNotWeighted)
{
    m.FitOp = fit_op::kWeightedLeastSquares;
    m.ResidVec.Fill(77.0F);
    AddModelGraphs(m);
    EXPECT_EQ(Graph(3).YData(), (Values{2.0, kGap, kGap, -4.0}));
    EXPECT_FLOAT_EQ(Graph(3).UCI(), 6.324555F);
}

// ln 1.25 = 0.22314355, ln(10/11) = -0.09531018; s/m = (0.04979304 + 0.00908403) / 2 = 0.029438535,
// limits 2 * 0.17157661 = 0.34315323
TEST_F(Graphs, LogResidualsAreDifferencesOfLogarithms)
{
    m.FitOp = fit_op::kLog;
    AddModelGraphs(m);
    EXPECT_NEAR(Graph(3).YData()[0], 0.22314355, 1e-7);
    EXPECT_NEAR(Graph(3).YData()[3], -0.09531018, 1e-7);
    EXPECT_NEAR(Graph(3).YData2()[1], 0.22314355, 1e-7);
    EXPECT_EQ(Graph(3).YData()[2], kGap);
    EXPECT_NEAR(Graph(4).UCI(), 0.34315323, 1e-7);
    EXPECT_NEAR(Graph(4).LCI(), -0.34315323, 1e-7);
}

TEST_F(Graphs, GammaResidualsArePercentilesWithTheirOwnLimits)
{
    m.FitOp = fit_op::kGamma;
    AddModelGraphs(m);
    EXPECT_EQ(Graph(3).YData(), (Values{static_cast<double>(0.1F), kGap, kGap, static_cast<double>(0.4F)}));
    EXPECT_EQ(Graph(3).YData2(), (Values{kGap, static_cast<double>(0.2F), kGap, kGap}));
    EXPECT_EQ(Graph(3).UCI(), 0.975F);
    EXPECT_EQ(Graph(3).LCI(), 0.025F);
}

// A log fit is titled by differences and a weighted fit by logarithms: the table is read by the number of the
// error model. Deliberate.
TEST_F(Graphs, ResidualTitlesGoByTheNumberOfTheErrorModel)
{
    const std::string titles[] = {"Residual Catches", "Residual Catches", "Percentiles",
                                  "ln Residual Catches"};
    for (std::int32_t fitOp = 1; fitOp <= 4; ++fitOp) {
        window.graphs.clear();
        m.FitOp = fitOp;
        AddModelGraphs(m);
        EXPECT_EQ(Graph(3).Title(), titles[fitOp - 1] + " vs Time");
        EXPECT_EQ(Graph(4).Title(), titles[fitOp - 1] + " vs Expected Catches");
    }
}

TEST_F(Graphs, PopulationGraphsExistOnlyWhereTheirColumnsDo)
{
    AddModelGraphs(m);
    EXPECT_EQ(window.graphs.size(), 4U);

    window.graphs.clear();
    data.ColPresent(columns::PopNums, true);
    AddModelGraphs(m);
    ASSERT_EQ(window.graphs.size(), 5U);
    EXPECT_EQ(Graph(5).Title(), "Population Numbers");
    EXPECT_EQ(Graph(5).XTitle(), "Time");
    EXPECT_EQ(Graph(5).YTitle(), "Population Numbers");
    EXPECT_EQ(Graph(5).Type(), GraphType::Line);
    EXPECT_FALSE(Graph(5).WithToggs());
    EXPECT_EQ(Graph(5).XData(), (Values{1970.0, 1971.0, 1972.0, 1973.0, 1974.0}));
    EXPECT_EQ(Graph(5).YData(), (Values{999.0, 998.0, 997.0, 996.0, 995.0}));

    window.graphs.clear();
    data.ColPresent(columns::PopWt, true);
    AddModelGraphs(m);
    ASSERT_EQ(window.graphs.size(), 6U);
    EXPECT_EQ(Graph(6).Title(), "Biomass");
    EXPECT_EQ(Graph(6).YTitle(), "Population Weight");
    EXPECT_EQ(Graph(6).YData(), (Values{1999.0, 1998.0, 1997.0, 1996.0, 1995.0}));
}

TEST_F(Graphs, WithoutAToggledInPeriodTheLimitsDivideByZeroAndTheGraphsOfBeforeStay)
{
    data.ToggledIn(1, false);
    data.ToggledIn(4, false);
    try {
        AddModelGraphs(m);
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, errors::kDivisionByZero);
    }
    EXPECT_EQ(window.graphs.size(), 2U);
}

TEST_F(Graphs, AZeroCatchOrExpectedCatchOfAnIncludedPeriodFailsAtItsLogarithm)
{
    m.FitOp = fit_op::kLog;
    for (auto* series : {&m.CatchVector, &m.ExpCatchVec}) {
        const float before = (*series)(2);
        (*series)(2) = 0.0F;
        try {
            AddModelGraphs(m);
            FAIL();
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, errors::kInvalidArgument);
        }
        (*series)(2) = before;
    }
    m.CatchVector(3) = 0.0F; // not Included
    EXPECT_NO_THROW(AddModelGraphs(m));
}

namespace
{
class YieldCurve : public ::testing::Test, public ProductionBench
{
protected:
    const ModelGraph& Built(std::int32_t whichMeth, float z = 1.0F)
    {
        Table({1.0F, 1.0F, 1.0F}, {100.0F, 100.0F, 100.0F});
        Prepare(whichMeth, fit_op::kLeastSquares, 0, z);
        model.Final({.K = 1000.0, .Q = 0.001, .R = 0.4});
        model.CopyQANDFinalToWorkEsts();
        model.CalcPopTraj();
        window.graphs.clear();
        EXPECT_TRUE(model.BuildModelGraphs());
        return *window.graphs.back();
    }
};
} // namespace

TEST_F(YieldCurve, HasFiftyOnePointsFromNothingToK)
{
    const ModelGraph& graph = Built(models::kSchaefer);
    EXPECT_EQ(window.graphs.size(), 6U); // without a mean weight: no numbers, but biomass
    EXPECT_EQ(graph.Title(), "Equilibrium Yield Curve");
    EXPECT_EQ(graph.XTitle(), "Biomass");
    EXPECT_EQ(graph.YTitle(), "Yield");
    EXPECT_EQ(graph.Type(), GraphType::Line);
    EXPECT_FALSE(graph.WithToggs());
    ASSERT_EQ(graph.NumPoints(), 51);
    for (std::size_t i = 0; i <= 50; ++i) {
        const double x = 20.0 * static_cast<double>(i);
        EXPECT_NEAR(graph.XData()[i], x, 1e-9);
        EXPECT_NEAR(graph.YData()[i], 0.4 * x * (1.0 - x / 1000.0), 1e-5);
    }
}

TEST_F(YieldCurve, OfFoxStartsAtZero)
{
    const ModelGraph& graph = Built(models::kFox);
    EXPECT_EQ(graph.YData()[0], 0.0);
    EXPECT_NEAR(graph.YData()[10], 0.4 * 200.0 * std::log(5.0), 1e-4);
    EXPECT_EQ(graph.YData()[50], 0.0);
}

TEST_F(YieldCurve, OfPellaTomlinsonHasItsOwnForm)
{
    const ModelGraph& graph = Built(models::kPellaTomlinson, 2.0F);
    EXPECT_NEAR(graph.YData()[25], 0.4 * 500.0 * 0.75, 1e-4);
}

TEST_F(YieldCurve, IsNeverBelowZero)
{
    Table({1.0F, 1.0F, 1.0F}, {100.0F, 100.0F, 100.0F});
    Prepare(models::kSchaefer);
    model.Final({.K = 1000.0, .Q = 0.001, .R = -0.4});
    model.Work({.K = 1000.0, .Q = 0.001, .R = 0.4});
    model.CalcPopTraj();
    model.BuildModelGraphs();
    for (const double y : window.graphs.back()->YData())
        EXPECT_EQ(y, 0.0);
}

TEST_F(YieldCurve, StandsBehindNumbersAndBiomassWithAMeanWeight)
{
    data.ColPresent(columns::MeanWt, true);
    Table({1.0F, 1.0F, 1.0F}, {100.0F, 100.0F, 100.0F});
    data.ColPresent(columns::MeanWt, true);
    for (int t = 1; t <= 3; ++t)
        data.MeanWt(t, 2.0F);
    Prepare(models::kSchaefer);
    model.Final({.K = 1000.0, .Q = 0.001, .R = 0.4});
    model.CopyQANDFinalToWorkEsts();
    model.CalcPopTraj();
    model.BuildModelGraphs();
    ASSERT_EQ(window.graphs.size(), 7U);
    EXPECT_EQ(window.graphs[4]->Title(), "Population Numbers");
    EXPECT_EQ(window.graphs[5]->Title(), "Biomass");
    EXPECT_EQ(window.graphs[6]->Title(), "Equilibrium Yield Curve");
    EXPECT_FALSE(window.yields.empty());
}

namespace
{
/// Sorted bootstrap values of K and q.
class Histograms : public ::testing::Test, public Bench
{
protected:
    Histograms()
    {
        m.run = &run;
        m.BSFilled(bs_param::kK) = true;
        m.BSFilled(bs_param::kMSY) = true;
    }

    /// 1, 2, 3, ... for K; 7 each time for MSY.
    void Replicates(int count)
    {
        m.NumBootStraps = count;
        for (int n = 1; n <= count; ++n) {
            boot.SortedBS(bs_param::kK, n, static_cast<float>(n));
            boot.SortedBS(bs_param::kMSY, n, 7.0F);
        }
    }

    double Counted() const
    {
        const Values& counts = window.graphs.front()->YData();
        return std::accumulate(counts.begin(), counts.end(), 0.0);
    }

    ModelState m;
    clsBootStrap boot;
};
} // namespace

// a = int(12.5000002) + 1 = 13, b = int(487.50001) = 487: 475 values. w = (487 - 13) / 50 * 1.00001
// = 9.4800948.
TEST_F(Histograms, CountTheValuesBetweenTheLevelsIn50Classes)
{
    Replicates(500);
    AddBootStrapHistos(m, boot, 0.025F, 0.975F);
    ASSERT_EQ(window.graphs.size(), 2U);
    const ModelGraph& graph = *window.graphs[0];
    EXPECT_EQ(graph.Title(), "K(0.025..0.975), n = 500");
    EXPECT_EQ(graph.XTitle(), "K");
    EXPECT_EQ(graph.YTitle(), "Numbers");
    EXPECT_EQ(graph.Type(), GraphType::Histogram);
    EXPECT_FALSE(graph.WithToggs());
    ASSERT_EQ(graph.NumPoints(), 50);
    EXPECT_EQ(graph.XData()[0], 13.0);
    EXPECT_NEAR(graph.XData()[1], 13.0 + 9.4800948, 1e-9);
    EXPECT_NEAR(graph.XData()[49], 13.0 + 49 * 9.4800948, 1e-9);
    EXPECT_EQ(Counted(), 475.0);
    EXPECT_EQ(graph.YData()[0], 10.0); // 13 to 22
    EXPECT_GT(graph.YData()[49], 0.0); // the top value falls inside the last class
    EXPECT_EQ(window.graphs[1]->Title(), "MSY(0.025..0.975), n = 500");
}

TEST_F(Histograms, OfValuesAllAlikeHaveThemInTheFirstClassOfWidth1)
{
    Replicates(500);
    AddBootStrapHistos(m, boot, 0.025F, 0.975F);
    const ModelGraph& graph = *window.graphs[1];
    EXPECT_EQ(graph.XData()[0], 7.0);
    EXPECT_NEAR(graph.XData()[1], 7.0 + 1.00001, 1e-12);
    EXPECT_EQ(graph.YData()[0], 475.0);
    EXPECT_EQ(graph.YData()[1], 0.0);
}

TEST_F(Histograms, ALowLevelOf0StartsAtTheFirstValue)
{
    Replicates(500);
    AddBootStrapHistos(m, boot, 0.0F, 1.0F);
    EXPECT_EQ(window.graphs[0]->Title(), "K(0..1), n = 500");
    EXPECT_EQ(window.graphs[0]->XData()[0], 1.0);
    EXPECT_EQ(Counted(), 500.0);
}

// The 32-bit 0.9 lies below 0.9: a = int(449.99999) + 1 = 450; b would be 50 and is at least a.
TEST_F(Histograms, ReversedLevelsCountOneValue)
{
    Replicates(500);
    AddBootStrapHistos(m, boot, 0.9F, 0.1F);
    EXPECT_EQ(window.graphs[0]->XData()[0], 450.0);
    EXPECT_EQ(Counted(), 1.0);
}

// A product beyond the whole numbers used to be cut to whatever the processor makes of it.
TEST_F(Histograms, ALevelFarOutsideCountsTheValueAtItsEndAndOneThatIsNoNumberHasNoPosition)
{
    Replicates(500);
    AddBootStrapHistos(m, boot, 3e38F, 3e38F);
    EXPECT_EQ(window.graphs[0]->XData()[0], 500.0);
    EXPECT_EQ(Counted(), 1.0);
    window.graphs.clear();
    AddBootStrapHistos(m, boot, -3e38F, 3e38F);
    EXPECT_EQ(window.graphs[0]->XData()[0], 1.0);
    EXPECT_EQ(Counted(), 500.0);
    window.graphs.clear();
    const float none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(FailureOf([&] { AddBootStrapHistos(m, boot, none, 0.5F); }), errors::kSubscript);
    EXPECT_EQ(FailureOf([&] { AddBootStrapHistos(m, boot, 0.5F, none); }), errors::kSubscript);
    EXPECT_TRUE(window.graphs.empty());
}

TEST_F(Histograms, OfOneReplicateCountIt)
{
    Replicates(1);
    AddBootStrapHistos(m, boot, 0.025F, 0.975F);
    EXPECT_EQ(window.graphs[0]->XData()[0], 1.0);
    EXPECT_EQ(Counted(), 1.0);
}

// The stock and the yield of constant recruitment used to have the units of weights.
TEST_F(Histograms, HaveTheMeasureOfTheModelsOwnUnit)
{
    m.BSFilled(bs_param::kRYield) = true;
    const std::array<std::pair<bool, std::pair<int, int>>, 2> units{
        {{true, {columns::PopNums, columns::TotCatchNums}}, {false, {columns::PopWt, columns::TotCatchWt}}}};
    for (const auto& [numbers, expected] : units) {
        m.UsingNosFlag = numbers;
        window.graphs.clear();
        Replicates(1);
        AddBootStrapHistos(m, boot, 0.025F, 0.975F);
        ASSERT_EQ(window.graphs.size(), 3U); // K, MSY and the replacement yield
        EXPECT_EQ(window.graphs[0]->XMeasure().column, expected.first);
        EXPECT_EQ(window.graphs[2]->XMeasure().column, expected.second);
    }
}

TEST_F(Histograms, OfAProductionModelShowItsFiveParametersInOrder)
{
    ProductionBench bench;
    bench.Table({100.0F, 200.0F, 300.0F, 200.0F, 50.0F, 60.0F}, {55.0F, 98.0F, 131.0F, 82.0F, 22.0F, 27.0F});
    bench.run.globals.settings.NumBootStraps = 5;
    bench.Prepare(models::kSchaefer);
    bench.Fit();
    bench.model.CalcBootStraps();
    bench.model.CalcBootStrapHistos(0.0F, 1.0F);
    const std::string names[] = {"K", "q", "r", "MSY", "Rep Yield"};
    ASSERT_EQ(bench.window.graphs.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(bench.window.graphs[i]->Title(), names[i] + "(0..1), n = 5");
}
