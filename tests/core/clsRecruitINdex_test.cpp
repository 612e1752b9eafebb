// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsRecruitINdex.h"

#include "core/RecruitIndexBench.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace
{
using namespace recruit_index;

const double kLn4 = std::log(4.0); // exp(-M) = 1/4, exp(-M/2) = 1/2

TableBuilder ThreePeriods()
{
    return TableBuilder().Effort({2, 3, 4}).Catch({10, 20, 30}).Recruits({4, 8, 2});
}

void Walk(IndexBench& bench, double n1, double lambda, double mort = kLn4, double q = 0.5)
{
    bench.model.Mort(static_cast<float>(mort));
    bench.model.Work({.N1 = n1, .Q = q, .Lambda = lambda});
    bench.model.CalcPopTraj();
}
} // namespace

TEST(clsRecruitINdex, ANewModelHasItsOwnDefaults)
{
    IndexBench bench(ThreePeriods());
    bench.model.WhichMeth(4);

    EXPECT_EQ(bench.model.WhichMeth(), 2);
    EXPECT_EQ(bench.model.MethTitle(), "RECRUITMENT INDEX MODEL");
    EXPECT_EQ(bench.model.Z(), 1.0F);
    EXPECT_EQ(bench.model.LAG(), 0);
    EXPECT_EQ(bench.model.m.StartEstKind, 2);
    bench.model.LAG(3);
    bench.model.Z(2.5F); // a whole number, ties to even
    EXPECT_EQ(bench.model.LAG(), 3);
    EXPECT_EQ(bench.model.Z(), 2.0F);
    for (int parameter = 1; parameter <= 8; ++parameter)
        EXPECT_EQ(bench.model.BSFilled(parameter), parameter == 2 || parameter == 4 || parameter == 5)
            << parameter;
}

// With W = N + 10 R = 1040, 335, 93.75: N = W/4 - T/2 = 255, 73.75, 8.4375; B = W/2 - T/2 = 515,
// 157.5, 31.875.
TEST(clsRecruitINdex, RecruitsJoinAtTheStartOfThePeriodBeforeItsCatch)
{
    IndexBench bench(ThreePeriods());
    Walk(bench, 1000.0, 10.0);

    EXPECT_NEAR(bench.model.Nt(2), 255.0, 1e-4);
    EXPECT_NEAR(bench.model.Nt(3), 73.75, 1e-4);
    EXPECT_NEAR(bench.model.Nt(4), 8.4375, 1e-4);
    EXPECT_NEAR(bench.model.EffMidPop(1), 1030.0, 1e-3);
    EXPECT_NEAR(bench.model.EffMidPop(2), 472.5, 1e-3);
    EXPECT_NEAR(bench.model.EffMidPop(3), 127.5, 1e-3);
    EXPECT_NEAR(bench.model.EffMidPopSum(), 1630.0, 1e-3);
    EXPECT_FALSE(bench.model.PopUnderflow());
}

TEST(clsRecruitINdex, APeriodExcludedByZeroEffortKeepsItsMeanButHasNoExpectedCatch)
{
    IndexBench bench(TableBuilder().Effort({2, 0, 4, -1}).Catch({10, 20, 30, 5}).Recruits({4, 8, 2, 6}));
    bench.model.m.EffMidPop(2) = bench.model.m.EffMidPop(4) = 99.0;
    Walk(bench, 1000.0, 10.0);

    EXPECT_NEAR(bench.model.m.MidPop(2), 157.5, 1e-4);
    EXPECT_EQ(bench.model.EffMidPop(2), 0.0);
    EXPECT_EQ(bench.model.EffMidPop(4), 0.0); // nor one without a value for its effort
    EXPECT_NEAR(bench.model.EffMidPopSum(), 1157.5, 1e-3);
}

// Deliberate: the first term enters the sum whatever the toggle says, later ones only when toggled in.
// Without effort there was no fleet: what its catch cell holds must not move anything.
TEST(clsRecruitINdex, APeriodExcludedByZeroEffortTakesNoPartInTheRegression)
{
    const SimulatedStock stock = Truth();
    std::vector<double> effort = stock.effort;
    effort[3] = 0.0;
    const std::vector<double> total = stock.Catches(0.1);
    std::vector<std::vector<double>> fits;
    for (const double fleet : {0.0, 1e6}) {
        std::vector<double> catches = total;
        catches[3] = fleet;
        IndexBench bench(
            TableBuilder().Effort(effort).CatchNums(catches).TotalNums(total).Recruits(stock.index));
        bench.data.ToggledIn(4, true); // as it was before the effort was taken out
        bench.model.SetColumnRefs();
        fits.push_back(bench.Fit(fit_op::kLeastSquares, 0.2));
        fits.back().push_back(bench.model.Details().var);
        fits.back().push_back(bench.model.m.LsqSumSq);
    }
    ASSERT_EQ(fits[0].size(), 6U); // with the mean residual and the sum of squares
    EXPECT_EQ(fits[0], fits[1]);
}

TEST(clsRecruitINdex, PeriodOneToggledOutStillEntersTheSumOthersDoNot)
{
    IndexBench bench(ThreePeriods().ToggleOut(1).ToggleOut(3));
    Walk(bench, 1000.0, 10.0);

    EXPECT_NEAR(bench.model.EffMidPopSum(), 1502.5, 1e-3);
    EXPECT_NEAR(bench.model.EffMidPop(3), 127.5, 1e-3);
}

TEST(clsRecruitINdex, NoStockAtTheStartIsNoUnderflowButNoneLaterIs)
{
    IndexBench bench(ThreePeriods());
    Walk(bench, 0.0, 1000.0);
    EXPECT_FALSE(bench.model.PopUnderflow());
    Walk(bench, -1.0, 1000.0);
    EXPECT_TRUE(bench.model.PopUnderflow());
    EXPECT_EQ(bench.model.Nt(1), 0.0F);

    IndexBench ends(TableBuilder().Effort({1, 1}).Catch({0, 0}).Recruits({0, 5}));
    Walk(ends, 0.0, 10.0); // nothing at period 2, recruits afterwards
    EXPECT_TRUE(ends.model.PopUnderflow());
    EXPECT_GT(ends.model.Nt(3), 0.0F);
}

// Deliberate: exp(-M) where the mean has exp(-M/2). Period 3: (1/4) (1/2) 4 93.75 / (1 + 1) = 23.4375, and
// N = 23.4375 - half of that.
TEST(clsRecruitINdex, AProjectedCatchTakesTheSurvivalOfTheWholePeriod)
{
    IndexBench bench(ThreePeriods());
    bench.data.OrigNAPoints(2);
    bench.model.DIYTCatch(true);
    Walk(bench, 1000.0, 10.0);

    EXPECT_NEAR(bench.model.ObsTCatchRef(3), 23.4375, 1e-4);
    EXPECT_NEAR(bench.model.Nt(4), 11.71875, 1e-4);
}

TEST(clsRecruitINdex, TwoHundredFilledPeriodsEndWithTheArrayBoundError)
{
    const std::vector<double> ones(200, 1.0);
    IndexBench bench(TableBuilder().Effort(ones).Catch(ones).Recruits(ones));

    EXPECT_EQ(FailureOf([&] { bench.model.CalcPopTraj(); }), errors::kSubscript);
}

// B = (N + Lambda R) exp(-M/2) - T / 2.
TEST(clsRecruitINdex, TheExpectedRateIncludesTheRecruitsOfThePeriod)
{
    IndexBench bench(Simulated(0.05));
    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.2);

    for (int i = 1; i <= 12; ++i) {
        const double mean =
            (bench.data.RecruitIndex(i) * fit.at(2) + bench.model.Nt(static_cast<std::int16_t>(i))) *
                std::exp(-0.1) -
            bench.data.TotCatchNums(i) / 2.0;
        EXPECT_NEAR(bench.data.ExpCPUE(i) / (fit[1] * mean), 1.0, 1e-6) << i;
    }
}
