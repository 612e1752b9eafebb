// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsConstRecruit.h"

#include "core/ConstRecruitBench.h"
#include "models/clsSingleCohort.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace
{
using namespace const_recruit;

void Walk(ConstBench& bench, double k, double mort, double initDep = 1.0, double q = 0.1)
{
    bench.model.Mort(static_cast<float>(mort));
    bench.model.InitDep(static_cast<float>(initDep));
    bench.model.Work({.K = k, .Q = q});
    bench.model.CalcPopTraj();
}
} // namespace

TEST(clsConstRecruit, ANewModelHasItsOwnDefaults)
{
    ConstBench bench(ThreePeriods());
    bench.model.LAG(3);
    bench.model.Z(2.0F);
    bench.model.WhichMeth(4);

    EXPECT_EQ(bench.model.WhichMeth(), 3);
    EXPECT_EQ(bench.model.InitDep(), 1.0F);
    EXPECT_EQ(bench.model.Mort(), 0.2F);
    EXPECT_EQ(bench.model.LAG(), 0); // kept nowhere
    EXPECT_EQ(bench.model.Z(), 0.0F);
    EXPECT_EQ(bench.model.m.StartEstKind, 2);
    EXPECT_EQ(bench.model.m.StartEstKind2, 3);
    EXPECT_EQ(bench.model.Excuse(), 0);
    EXPECT_EQ(bench.model.MethTitle(), "Constant Recruitment");
    for (int parameter = 1; parameter <= 8; ++parameter)
        EXPECT_EQ(bench.model.BSFilled(parameter), parameter == 1 || parameter == 2 || parameter == 8)
            << parameter;
}

TEST(clsConstRecruit, ItHasNoContoursToShow)
{
    ConstBench bench(ThreePeriods());
    EXPECT_FALSE(bench.model.SetContourRanges());
    EXPECT_FALSE(bench.model.PlotInitContours());
    EXPECT_TRUE(bench.user.asked.empty());
}

TEST(clsConstRecruit, FromTheUnexploitedStockWithoutCatchesTheStockStaysAtK)
{
    ConstBench bench(Table(std::vector<double>(199, 1.0), std::vector<double>(199, 0.0)));
    Walk(bench, 1000.0, 0.2);

    for (std::int16_t i = 1; i <= 200; ++i)
        EXPECT_NEAR(bench.model.Nt(i), 1000.0, 1e-3) << i; // floats near 1000, M and its exponential rounded
    EXPECT_FALSE(bench.model.PopUnderflow());
}

// K = 1000, M = ln 4, half of it at the start: r = 3000. N: 500, (3500)/4 - 5 = 870, 3870/4 - 10 = 957.5,
// 3957.5/4 - 15 = 974.375. B: 1750 - 5, 1935 - 10, 1978.75 - 15.
TEST(clsConstRecruit, RecruitsJoinBeforeTheMortalityOfThePeriod)
{
    ConstBench bench(ThreePeriods());
    Walk(bench, 1000.0, kLn4, 0.5);

    EXPECT_EQ(bench.model.Nt(1), 500.0F);
    EXPECT_NEAR(bench.model.Nt(2), 870.0, 5e-4);
    EXPECT_NEAR(bench.model.Nt(3), 957.5, 5e-4);
    EXPECT_NEAR(bench.model.Nt(4), 974.375, 5e-4);
    EXPECT_NEAR(bench.model.m.MidPop(1), 1745.0, 1e-3);
    EXPECT_NEAR(bench.model.m.MidPop(3), 1963.75, 1e-3);
    EXPECT_NEAR(bench.model.m.EffMidPopSum, 2 * 1745.0 + 3 * 1925.0 + 4 * 1963.75, 1e-2);
}

// K = 4: r = 12. N: 4, 16/4 - 5 < 0 is 0, 12/4 - 5 < 0 with T = 10 twice, then T = 0: 12/4 = 3 again.
TEST(clsConstRecruit, AfterAnUnderflowTheStockGrowsAgainButTheUnderflowStays)
{
    ConstBench bench(Table({1, 1, 1}, {10, 10, 0}));
    Walk(bench, 4.0, kLn4);

    EXPECT_EQ(bench.model.Nt(2), 0.0F);
    EXPECT_EQ(bench.model.Nt(3), 0.0F);
    EXPECT_NEAR(bench.model.Nt(4), 3.0, 1e-5);
    EXPECT_TRUE(bench.model.PopUnderflow());
}

// r = 300, N: 0, 300/4 - 0.5 = 74.5.
TEST(clsConstRecruit, AnInitialProportionOfZeroStartsEmptyWithoutUnderflow)
{
    ConstBench bench(Table({1, 1}, {1, 1}));
    Walk(bench, 100.0, kLn4, 0.0);

    EXPECT_EQ(bench.model.Nt(1), 0.0F);
    EXPECT_NEAR(bench.model.Nt(2), 74.5, 1e-4);
    EXPECT_FALSE(bench.model.PopUnderflow());
    Walk(bench, 0.1, kLn4, 0.0); // 0.3/4 - 0.5 < 0
    EXPECT_TRUE(bench.model.PopUnderflow());
}

TEST(clsConstRecruit, ANegativeStockIsAnUnderflowFromTheFirstPeriod)
{
    ConstBench bench(Table({1}, {0}));
    Walk(bench, -10.0, 0.0);

    EXPECT_EQ(bench.model.Nt(1), 0.0F);
    EXPECT_TRUE(bench.model.PopUnderflow());
}

TEST(clsConstRecruit, WithoutMortalityItIsTheClosedModelOfTheStartingProportion)
{
    const SimulatedStock stock;
    const TableBuilder table = Table(stock.effort, stock.Catches(0.1));
    ConstBench recruited(table);
    ModelBench<clsSingleCohort> closed(table);

    Walk(recruited, 40000.0, 0.0, 0.5);
    closed.model.Work({.N1 = 20000.0, .Q = 0.1});
    closed.model.CalcPopTraj();
    for (std::int16_t i = 1; i <= 13; ++i)
        EXPECT_EQ(recruited.model.Nt(i), closed.model.Nt(i)) << i;

    const auto k = recruited.Fit(fit_op::kLeastSquares, 0.0, 0.5);
    const auto n1 = closed.Fit(fit_op::kLeastSquares, 0.0);
    EXPECT_NEAR(0.5 * k.at(0) / n1.at(0), 1.0, 1e-12);
    EXPECT_NEAR(k.at(1) / n1.at(1), 1.0, 1e-12);
    EXPECT_EQ(k.at(2), 0.0); // no mortality, nothing to replace
}

// Deliberate, unlike the closed cohort: the catch is made from the stock of the same period and lands there.
// q E / (1 + q E / 2) = 1 / 1.5, M = 0: N(3) = 70, T(3) = 70 / 1.5, N(4) = 70 - T(3).
TEST(clsConstRecruit, AProjectedCatchUsesTheStockOfItsOwnPeriod)
{
    ConstBench bench(Table({10, 10, 10}, {10, 20, 30}));
    bench.data.OrigNAPoints(2);
    bench.model.DIYTCatch(true);
    Walk(bench, 100.0, 0.0);

    EXPECT_NEAR(bench.model.ObsTCatchRef(3), 46.66667, 1e-5);
    EXPECT_NEAR(bench.model.Nt(4), 23.33333, 1e-5);
}

// exp(M/2) (1 - exp(-M)) (K - N) = 2 * 3/4 * (1000 - N(4)).
TEST(clsConstRecruit, TheReplacementYieldKeepsTheStockWhereItEnds)
{
    ConstBench bench(Simulated(0.05));
    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.2);

    ASSERT_EQ(fit.size(), 4U);
    const double yield = std::exp(0.1) * (1.0 - std::exp(-0.2)) * (fit[0] - fit[3]);
    EXPECT_NEAR(fit[2], yield, 1e-4); // a float near 500, and M as a float
    // Taken every period it leaves the stock as it is: (r + N) exp(-M) - exp(-M/2) Y = N.
    const double next = (fit[0] * (std::exp(0.2) - 1.0) + fit[3]) * std::exp(-0.2) - std::exp(-0.1) * fit[2];
    EXPECT_NEAR(next, fit[3], 1e-3);
}

TEST(clsConstRecruit, TwoHundredFilledPeriodsEndWithTheArrayBoundError)
{
    ConstBench bench(Table(std::vector<double>(200, 1.0), std::vector<double>(200, 1.0)));

    EXPECT_EQ(FailureOf([&] { bench.model.CalcPopTraj(); }), errors::kSubscript);
}

TEST(clsConstRecruit, MinPopHasNoLimitOfRounds)
{
    ConstBench bench(Table({2, 3, 4}, {0, 0, 0}));
    bench.user.inputs = {"1024"};
    bench.model.Mort(0.0F);
    ASSERT_TRUE(bench.model.InputStartingEsts());
    EXPECT_EQ(bench.user.asked.at(0), "input box: Carrying Capacity (K) ");

    bench.model.CalcMinPop(); // everything survives down to the smallest float

    EXPECT_LT(bench.model.MinPop(), 1e-40F);
}

// Half of the smallest number is 0, a hundredth too: without a limit of rounds this used to go on for ever.
TEST(clsConstRecruit, TheBisectionWithoutALimitOfRoundsEndsAtTheSmallestNumber)
{
    const double smallest = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(SmallestSurvivingStart(smallest, 0, [](double k) { return k > 0.0; }), smallest);

    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(SmallestSurvivingStart(largest, 0, [](double k) { return k > 0.0; }), smallest);
    EXPECT_EQ(SmallestSurvivingStart(largest, 0, [](double) { return true; }), 0.0);
}

// B = (r + N) exp(-M/2) - T / 2 with the recruits of the fit.
TEST(clsConstRecruit, TheExpectedRateIsQTimesTheMeanStockWithRecruits)
{
    ConstBench bench(Simulated(0.05));
    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.2);

    for (int i = 1; i <= 12; ++i) {
        const double recruits = fit.at(0) * (std::exp(0.2) - 1.0);
        const double mean = (recruits + bench.model.Nt(static_cast<std::int16_t>(i))) * std::exp(-0.1) -
                            bench.data.TotCatchNums(i) / 2.0;
        EXPECT_NEAR(bench.data.ExpCPUE(i) / (fit[1] * mean), 1.0, 1e-6) << i;
    }
}
