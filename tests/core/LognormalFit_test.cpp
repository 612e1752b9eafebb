// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/LognormalFit.h"

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

TEST(LognormalFit, TheBestQIsTheGeometricMeanOfTheRatios) // (2 * 8 * 4)^(1/3) = 4
{
    const StateBench bench({1.0, 2.0, 5.0}, {2.0, 16.0, 20.0});

    EXPECT_NEAR(LnFitComputeQ(bench.m), 4.0, 1e-15);
}

TEST(LognormalFit, TheScaledProductEqualsThePlainOneToTheBitWhereThatIsInRange)
{
    const StateBench ordinary({3.7, 11.3, 0.017, 913.4, 5e-4, 2.9}, {1.1, 2.7, 3.3, 0.0023, 77.0, 1e6});
    EXPECT_EQ(LnFitComputeQ(ordinary.m), PlainGeometricMean(ordinary));

    const StateBench nearTheTop({1e-200, 0.9, 1.0}, {1e38, 1e38, 1e31}); // 1.1e307
    EXPECT_EQ(LnFitComputeQ(nearTheTop.m), PlainGeometricMean(nearTheTop));

    const StateBench nearTheBottom({1e200, 1e100, 3e7}, {7.0, 3.0, 1.5}); // 1e-306
    EXPECT_EQ(LnFitComputeQ(nearTheBottom.m), PlainGeometricMean(nearTheBottom));
}

// Plainly 1e10^199 = 1e1990, far beyond the range of a 64-bit number.
TEST(LognormalFit, ALongSeriesOfLargeOrSmallRatiosNeitherOverflowsNorUnderflows)
{
    // The logarithm near 4582 carries 1e-16 of itself, divided by 199: 2e-15 in the result.
    EXPECT_NEAR(LnFitComputeQ(SameRatio(199, 1e10, 1.0).m) / 1e10, 1.0, 1e-13);
    EXPECT_NEAR(LnFitComputeQ(SameRatio(199, 1.0, 1e10).m) / 1e-10, 1.0, 1e-13);
}

TEST(LognormalFit, AfterAnUnderflowTheProductIsNotPositiveAndQIsNothing)
{
    EXPECT_EQ(LnFitComputeQ(StateBench({5.0, 0.0, 3.0}, {1.0, 1.0, 1.0}).m), 0.0);
    EXPECT_EQ(LnFitComputeQ(StateBench({5.0, -2.0, 3.0}, {1.0, 1.0, 1.0}).m), 0.0);
    EXPECT_EQ(LnFitComputeQ(StateBench({5.0, 2.0, 3.0}, {1.0, 0.0, 1.0}).m), 0.0);
}

TEST(LognormalFit, PeriodsToggledOutDoNotEnterQ)
{
    StateBench bench({1.0, 1.0, 1.0}, {2.0, 1000.0, 8.0});
    bench.data.ToggledIn(2, false);

    EXPECT_NEAR(LnFitComputeQ(bench.m), 4.0, 1e-15);
}

// ln of the ratios 1 and 3: (1 + 9) / 2 - 2^2 = 1. X is chosen so that float catches leave only 1e-7.
TEST(LognormalFit, TheObjectiveIsTheVarianceOfTheLogRatios)
{
    const StateBench bench({1.0 / std::exp(1.0), 1.0 / std::exp(3.0)}, {1.0, 1.0});

    EXPECT_NEAR(LnVarForMinimisation(bench.m), 1.0, 1e-6);
}

TEST(LognormalFit, PeriodsWithoutExpectedCatchOrToggledOutAreLeftOutOfTheVariance)
{
    StateBench bench({1.0 / std::exp(1.0), 0.0, -4.0, 7.0, 1.0 / std::exp(3.0)}, {1.0, 9.0, 9.0, 9.0, 1.0});
    bench.data.ToggledIn(4, false);

    EXPECT_NEAR(LnVarForMinimisation(bench.m), 1.0, 1e-6);
}

TEST(LognormalFit, ATrajectoryWithoutAnyStockFailsInTheUnusedRatio)
{
    EXPECT_EQ(FailureOf([] {
                  LnVarForMinimisation(StateBench({0.0, -1.0}, {1.0, 1.0}).m);
              }),
              errors::kDivisionByZero);
}

TEST(LognormalFit, AZeroOrMissingCatchFailsInTheLogarithm)
{
    EXPECT_EQ(FailureOf([] {
                  LnVarForMinimisation(StateBench({1.0, 1.0}, {1.0, 0.0}).m);
              }),
              errors::kInvalidArgument);
    StateBench missing({1.0, 1.0}, {1.0, 1.0});
    missing.m.CatchVector(2) = -1.0F;
    EXPECT_EQ(FailureOf([&] { LnVarForMinimisation(missing.m); }), errors::kInvalidArgument);
}

// What 32-bit sums used to add was up to 3 % of the variance of a good fit, and it hung on the units of the
// catch.
TEST(LognormalFit, EqualRatiosVaryByNothingWhateverTheirSize)
{
    for (const double ratio : {std::exp(-9.7), 1.0, 3e30})
        EXPECT_EQ(LnVarForMinimisation(SameRatio(100, 1.0, ratio).m), 0.0F);
}

// Ratios of 1 and 1 + 2^-12 in turn: l is 0 and d = ln(1 + 2^-12), so the variance is (d / 2)^2. A factor of
// 2^40, exact in both formats, must change no bit of it: that is the unit of the catch.
TEST(LognormalFit, TheObjectiveKeepsAllDigitsOfASmallVarianceInAnyUnits)
{
    const double d = std::log1p(0x1p-12);
    for (const double unit : {1.0, 0x1p40, 0x1p-40}) {
        const StateBench bench({1.0, 1.0, 1.0, 1.0},
                               {unit, unit * (1.0 + 0x1p-12), unit, unit * (1.0 + 0x1p-12)});

        EXPECT_FLOAT_EQ(LnVarForMinimisation(bench.m), static_cast<float>(d * d / 4.0));
    }
}

TEST(LognormalFit, AnEvaluationOfASearchSaysThatAPeriodInTheFitWasLeftOut)
{
    StateBench whole({1.0, 2.0}, {1.0, 1.0});
    whole.m.CatchUnexpected = true;
    EXPECT_EQ(LnVarOfEvaluation(whole.m), LnVarForMinimisation(whole.m));
    EXPECT_FALSE(whole.m.CatchUnexpected);

    StateBench cut({1.0, 2.0, 0.0}, {1.0, 1.0, 1.0});
    EXPECT_EQ(LnVarOfEvaluation(cut.m), LnVarForMinimisation(cut.m));
    EXPECT_TRUE(cut.m.CatchUnexpected);

    cut.data.ToggledIn(3, false); // not in the fit: nothing is missing
    LnVarOfEvaluation(cut.m);
    EXPECT_FALSE(cut.m.CatchUnexpected);
}

// ln 2 + ln 3 + ln 5 = ln 30; the catch is 60, so the residual is ln 2. Half a unit of a float near 4.
TEST(LognormalFit, FittedValuesAndResidualsExistForIncludedPeriodsAlsoWhenToggledOut)
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

TEST(LognormalFit, AnIncludedPeriodWithoutCatchOrStockFails)
{
    StateBench empty({1.0}, {0.0});
    EXPECT_EQ(FailureOf([&] { FillLogResiduals(empty.m, 1.0, [](int) { return 1.0; }); }),
              errors::kInvalidArgument);
    StateBench fished({1.0}, {1.0});
    EXPECT_EQ(FailureOf([&] { FillLogResiduals(fished.m, 1.0, [](int) { return 0.0; }); }),
              errors::kInvalidArgument);
}
