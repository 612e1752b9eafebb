// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/LogFit.h"

#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
/// The product as a reader would write it, in plain 64-bit arithmetic.
double PlainGeometricMean(const StateBench& bench)
{
    double product = 1.0;
    int n = 0;
    for (int i = 1; i <= bench.m.NAPoints(); ++i) {
        product = product * bench.m.CatchVector(i) / bench.m.EffMidPop(i);
        ++n;
    }
    return std::exp(std::log(product) / n);
}

StateBench SameRatio(std::size_t periods, double catches, double expected)
{
    return {std::vector<double>(periods, expected), std::vector<double>(periods, catches)};
}
} // namespace

TEST(LogFit, TheBestQIsTheGeometricMeanOfTheRatios) // (2 * 8 * 4)^(1/3) = 4
{
    const StateBench bench({1.0, 2.0, 5.0}, {2.0, 16.0, 20.0});

    EXPECT_NEAR(LnFitComputeQ(bench.m), 4.0, 1e-15);
}

TEST(LogFit, TheScaledProductEqualsThePlainOneToTheBitWhereThatIsInRange)
{
    const StateBench ordinary({3.7, 11.3, 0.017, 913.4, 5e-4, 2.9}, {1.1, 2.7, 3.3, 0.0023, 77.0, 1e6});
    EXPECT_EQ(LnFitComputeQ(ordinary.m), PlainGeometricMean(ordinary));

    const StateBench nearTheTop({1e-200, 0.9, 1.0}, {1e38, 1e38, 1e31}); // 1.1e307
    EXPECT_EQ(LnFitComputeQ(nearTheTop.m), PlainGeometricMean(nearTheTop));

    const StateBench nearTheBottom({1e200, 1e100, 3e7}, {7.0, 3.0, 1.5}); // 1e-306
    EXPECT_EQ(LnFitComputeQ(nearTheBottom.m), PlainGeometricMean(nearTheBottom));
}

// Plainly 1e10^199 = 1e1990, far beyond the range of a 64-bit number.
TEST(LogFit, ALongSeriesOfLargeOrSmallRatiosNeitherOverflowsNorUnderflows)
{
    // The logarithm near 4582 carries 1e-16 of itself, divided by 199: 2e-15 in the result.
    EXPECT_NEAR(LnFitComputeQ(SameRatio(199, 1e10, 1.0).m) / 1e10, 1.0, 1e-13);
    EXPECT_NEAR(LnFitComputeQ(SameRatio(199, 1.0, 1e10).m) / 1e-10, 1.0, 1e-13);
}

TEST(LogFit, AfterAnUnderflowTheProductIsNotPositiveAndQIsNothing)
{
    EXPECT_EQ(LnFitComputeQ(StateBench({5.0, 0.0, 3.0}, {1.0, 1.0, 1.0}).m), 0.0);
    EXPECT_EQ(LnFitComputeQ(StateBench({5.0, -2.0, 3.0}, {1.0, 1.0, 1.0}).m), 0.0);
    EXPECT_EQ(LnFitComputeQ(StateBench({5.0, 2.0, 3.0}, {1.0, 0.0, 1.0}).m), 0.0);
}

TEST(LogFit, PeriodsToggledOutDoNotEnterQ)
{
    StateBench bench({1.0, 1.0, 1.0}, {2.0, 1000.0, 8.0});
    bench.data.ToggledIn(2, false);

    EXPECT_NEAR(LnFitComputeQ(bench.m), 4.0, 1e-15);
}

// ln of the ratios 1 and 3: (1 + 9) / 2 - 2^2 = 1. X is chosen so that float catches leave only the 1e-7 of
// the float sum of l.
TEST(LogFit, TheObjectiveIsTheVarianceOfTheLogRatios)
{
    const StateBench bench({1.0 / std::exp(1.0), 1.0 / std::exp(3.0)}, {1.0, 1.0});

    EXPECT_NEAR(LnVarForMinimisation(bench.m), 1.0, 1e-6);
}

TEST(LogFit, PeriodsWithoutExpectedCatchOrToggledOutAreLeftOutOfTheVariance)
{
    StateBench bench({1.0 / std::exp(1.0), 0.0, -4.0, 7.0, 1.0 / std::exp(3.0)}, {1.0, 9.0, 9.0, 9.0, 1.0});
    bench.data.ToggledIn(4, false);

    EXPECT_NEAR(LnVarForMinimisation(bench.m), 1.0, 1e-6);
}

TEST(LogFit, ATrajectoryWithoutAnyStockFailsInTheUnusedRatio)
{
    EXPECT_EQ(FailureOf([] {
                  LnVarForMinimisation(StateBench({0.0, -1.0}, {1.0, 1.0}).m);
              }),
              errors::kDivisionByZero);
}

TEST(LogFit, AZeroOrMissingCatchFailsInTheLogarithm)
{
    EXPECT_EQ(FailureOf([] {
                  LnVarForMinimisation(StateBench({1.0, 1.0}, {1.0, 0.0}).m);
              }),
              errors::kInvalidArgument);
    StateBench missing({1.0, 1.0}, {1.0, 1.0});
    missing.m.CatchVector(2) = -1.0F;
    EXPECT_EQ(FailureOf([&] { LnVarForMinimisation(missing.m); }), errors::kInvalidArgument);
}

// Deliberate: the sum of l is a 32-bit float. Equal ratios vary by nothing; what is left comes from its
// rounding: 100 sums of up to 1000, half a unit of 6e-5 each, over 100 and times 2 * 10.
TEST(LogFit, TheFloatSumOfLogarithmsMakesTheObjectiveRough)
{
    const float value = LnVarForMinimisation(SameRatio(100, 1.0, std::exp(-9.7)).m);

    EXPECT_NE(value, 0.0F);
    EXPECT_LT(std::fabs(value), 1e-3F);
}

// ln 2 + ln 3 + ln 5 = ln 30; the catch is 60, so the residual is ln 2. Half a unit of a float near 4.
TEST(LogFit, FittedValuesAndResidualsExistForIncludedPeriodsAlsoWhenToggledOut)
{
    StateBench bench({1.0, 1.0, 1.0}, {60.0, 60.0, 60.0});
    for (int i = 1; i <= 3; ++i)
        bench.data.Effort(i, 3.0F);
    bench.data.ToggledIn(2, false);
    bench.data.Included(3, false);

    FillLogResiduals(bench.m, 2.0, [](int) { return 5.0; });

    EXPECT_NEAR(bench.m.FittedVec(2), std::log(30.0), 3e-7);
    EXPECT_NEAR(bench.m.ResidVec(2), std::log(2.0), 3e-7);
    EXPECT_EQ(bench.m.FittedVec(3), 0.0F);
}

TEST(LogFit, AnIncludedPeriodWithoutCatchOrStockFails)
{
    StateBench empty({1.0}, {0.0});
    EXPECT_EQ(FailureOf([&] { FillLogResiduals(empty.m, 1.0, [](int) { return 1.0; }); }),
              errors::kInvalidArgument);
    StateBench fished({1.0}, {1.0});
    EXPECT_EQ(FailureOf([&] { FillLogResiduals(fished.m, 1.0, [](int) { return 0.0; }); }),
              errors::kInvalidArgument);
}
