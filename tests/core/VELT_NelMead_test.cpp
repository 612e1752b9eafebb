// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "base/VeltError.h"
#include "core/MinimiserBench.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace
{
using namespace minimiser_bench;

double PowellSingular(Point x)
{
    return std::pow(x[0] + 10 * x[1], 2) + 5 * std::pow(x[2] - x[3], 2) + std::pow(x[1] - 2 * x[2], 4) +
           10 * std::pow(x[0] - x[3], 4);
}

TEST(VELT_NelMead, FindsTheMinimumOfRosenbrocksValley)
{
    Fit fit(Rosenbrock);
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1.0, 1e-4); // XTOL
    EXPECT_NEAR(fit.minimiser.Estimate(2), 1.0, 1e-4);
}

TEST(VELT_NelMead, FindsTheSingularMinimumOfPowellsFunction)
{
    Fit fit(PowellSingular);
    fit.From({{3, 4, -10, 10}, {-1, -1.3, -10, 10}, {0, 1, -10, 10}, {1, 1.3, -10, 10}}, 3, 2000);
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_LT(fit.minimiser.MinValue(), 1e-8); // 215 at the start
}

TEST(VELT_NelMead, OneParameterTakesATwoPointSimplexAndFewEvaluations)
{
    for (const double start : {700.0, 1300.0, 100.0, 10000.0}) {
        Fit fit(FloatBowl);
        fit.From({{start, start * 4.0 / 3.0}});
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_TRUE(fit.minimiser.ConvergedOnFunction());
        EXPECT_TRUE(fit.minimiser.ConvergedOnParameter());
        // Within two roundings near 100 (1.5e-5) of the floor: 20 d^2 < 1.5e-5 for d < 9e-4.
        EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
        EXPECT_LE(fit.minimiser.NumEvaluations(), 130);
    }
}

TEST(VELT_NelMead, TwoParametersTakeFewEvaluationsToo)
{
    for (const double start : {700.0, 1300.0, 3000.0}) {
        Fit fit(FloatBowl2);
        fit.From({{start, start * 4.0 / 3.0}, {0.3, 0.4}});
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_LE(fit.minimiser.MinValue(), 100.0 + 1.6e-5);
        EXPECT_LE(fit.minimiser.NumEvaluations(), 350);
    }
}

TEST(VELT_NelMead, AReplicateIsAsGoodAndTakesLessThanTwoThirds)
{
    for (const double second : {1.0 / 3.0, 4.0 / 3.0}) {
        const std::vector<Search> one{{1300.0, 1300.0 * second}}, two{one[0], {0.3, 0.4}};
        for (const auto& [surface, parameters] : {std::pair{&FloatBowl, one}, {&FloatBowl2, two}}) {
            Fit final(surface), replicate(surface);
            final.From(parameters);
            replicate.care = VELT_NelMead::Care::Replicate;
            replicate.From(parameters, 0);
            EXPECT_TRUE(replicate.minimiser.Converged());
            EXPECT_LE(replicate.minimiser.MinValue(), 100.0 + 1.6e-5);
            EXPECT_LT(replicate.asked, 2 * final.asked / 3);
        }
    }
}

TEST(VELT_NelMead, AConstantSurfaceBelowThePenaltyConverges)
{
    Fit fit([](Point) { return 0.0; });
    fit.From({{15, 20}, {0.3, 0.4}});
    EXPECT_TRUE(fit.minimiser.Converged());
}

TEST(VELT_NelMead, WithEitherTestAFunctionMayMeetOnlyTheFunctionTest)
{
    Fit fit([](Point) { return 5.0; });
    fit.From({{700, 900}}, 0);
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_TRUE(fit.minimiser.ConvergedOnFunction());
    EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
}

// Steep on both sides: points 1e-4 apart still differ by 1e-2 in value.
TEST(VELT_NelMead, WithEitherTestAFunctionMayMeetOnlyTheParameterTest)
{
    Fit fit([](Point x) { return AsFloat(1.0 + std::fabs(x[0] - 1000.0)); });
    fit.From({{700, 900}}, 0);
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_TRUE(fit.minimiser.ConvergedOnParameter());
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.2);
}

TEST(VELT_NelMead, EqualValuesOnBothSidesOfTheValleyAreNoConvergence)
{
    Fit fit(FloatBowl);
    fit.From({{900, 1100}}, 0);
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
}

TEST(VELT_NelMead, WalksDownTerraces)
{
    // Steps 50 wide: a simplex of one step's size must not take a tread for the floor.
    for (const std::int32_t convergeOn : {3, 0}) {
        Fit fit([](Point x) { return std::floor(std::fabs(x[0] - 1000.0) / 50.0); });
        fit.From({{400, 533}}, convergeOn);
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_EQ(fit.minimiser.MinValue(), 0.0);
    }
}

TEST(VELT_NelMead, HeldParametersStayWhereTheyAre)
{
    Fit fit(FloatBowl2);
    fit.From({{700, 933}, {0.5, 0.5}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_EQ(fit.lowest[1], 0.5);
    EXPECT_EQ(fit.highest[1], 0.5);
    // With b = 0.25 held, a^2 + 1.6 a b is least at a = -0.8 b = -0.2.
    EXPECT_NEAR(fit.minimiser.Estimate(1), 800.0, 1.0);
}

TEST(VELT_NelMead, WithEverythingHeldItEvaluatesOnceAndHasConverged)
{
    Fit fit(FloatBowl2);
    fit.From({{700, 700}, {0.5, 0.5}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_EQ(fit.minimiser.NumEvaluations(), 1);
    EXPECT_EQ(fit.minimiser.Estimate(1), 700.0);
    Fit onPenalty([](Point) { return kHuge; });
    onPenalty.From({{700, 700}});
    EXPECT_FALSE(onPenalty.minimiser.Converged());
}

TEST(VELT_NelMead, NeverAsksBeyondTheLimits)
{
    Fit fit(FloatBowl2);
    fit.From({{1500, 2000, 1200, 1800}, {0.3, 0.4, 0.1, 0.35}});
    EXPECT_GE(fit.lowest[0], 1200.0);
    EXPECT_LE(fit.highest[0], 1800.0);
    EXPECT_GE(fit.lowest[1], 0.1);
    EXPECT_LE(fit.highest[1], 0.35);
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_EQ(fit.minimiser.Estimate(1), 1200.0); // a = 0.2 at the limit: b = -0.8 a = -0.16, so 0.336
    EXPECT_NEAR(fit.minimiser.Estimate(2), 0.336, 4e-4);
}

TEST(VELT_NelMead, AStartOutsideTheLimitsIsMovedInside)
{
    Fit fit(FloatBowl);
    fit.From({{3000, 4000, 100, 2000}});
    EXPECT_LE(fit.highest[0], 2000.0);
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
}

TEST(VELT_NelMead, SettingsAndParametersMayComeInEitherOrder)
{
    Fit fit(FloatBowl);
    fit.From({{700, 933}}); // settings first
    const double estimate = fit.minimiser.Estimate(1);
    fit.minimiser.Create(fit, 1);
    fit.minimiser.SetParameter(1, 700, 933, 0, kHuge);
    fit.minimiser.MaxIts(500);
    fit.minimiser.FTOL(1e-7F);
    fit.minimiser.XTOL(1e-4F);
    fit.minimiser.ConvergeOn(3);
    fit.minimiser.Minimise();
    EXPECT_EQ(fit.minimiser.Estimate(1), estimate);
}

TEST(VELT_NelMead, CreateMakesItAsNew)
{
    Fit fit(FloatBowl2);
    fit.From({{700, 933}, {0.3, 0.4}}, 0, 3);
    fit.surface = FloatBowl;
    fit.From({{700, 933}});
    Fit fresh(FloatBowl);
    fresh.From({{700, 933}});
    EXPECT_EQ(fit.minimiser.Estimate(1), fresh.minimiser.Estimate(1));
    EXPECT_EQ(fit.minimiser.NumEvaluations(), fresh.minimiser.NumEvaluations());
    EXPECT_THROW(fit.minimiser.Estimate(2), VeltError);
}

TEST(VELT_NelMead, FollowsASurfaceWhoseLeastValueLiesAtInfinity)
{
    for (const std::int32_t convergeOn : {3, 0}) {
        Fit fit([](Point x) { return AsFloat(4.55 + 1e5 / x[0]); });
        fit.From({{1e5, 1e5 * 4.0 / 3.0}}, convergeOn);
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_NEAR(fit.minimiser.MinValue(), 4.55, 4.55 * 2e-4);
        EXPECT_LE(fit.minimiser.NumEvaluations(), 130);
    }
}

TEST(VELT_NelMead, FollowsAValleyThatRunsToZeroInTheSecondParameter)
{
    // x1 x2 = 40000 is the bed of the valley, and it falls towards x2 = 0 and x1 = infinity.
    Fit fit([](Point x) { return AsFloat(4.55 + 0.5 * x[1] + std::pow(x[0] * x[1] / 4e4 - 1.0, 2)); });
    fit.From({{1e5, 1e5 * 4.0 / 3.0}, {0.4, 0.4 * 4.0 / 3.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.MinValue(), 4.55, 4.55 * 2e-4);
    EXPECT_LE(fit.minimiser.NumEvaluations(), 700); // 620 at most from 60 starts around this one
}

// A root search inside the objective may start where the last one ended, so that the same point has two
// values.
TEST(VELT_NelMead, EndsThoughAPointAskedTwiceHasTwoValues)
{
    struct Restless : INelMead {
        double INelMead_MinFunc(Point x) override { return FloatBowl(x) + (++turn % 3) * 8e-6; }
        int turn = 0;
    } restless;
    VELT_NelMead minimiser;
    minimiser.Create(restless, 1);
    minimiser.SetParameter(1, 700, 933, 0, kHuge);
    minimiser.Minimise();
    EXPECT_TRUE(minimiser.Converged());
    EXPECT_NEAR(minimiser.Estimate(1), 1000.0, 2.0); // 20 d^2 < 4 * 1.6e-5
    EXPECT_LE(minimiser.NumEvaluations(), 200);
}

TEST(VELT_NelMead, RefusesParametersThatDoNotExist)
{
    Fit fit(FloatBowl);
    EXPECT_THROW(fit.minimiser.Create(fit, 0), VeltError);
    fit.minimiser.Create(fit, 1);
    EXPECT_THROW(fit.minimiser.SetParameter(0, 1, 2, 0, 3), VeltError);
    EXPECT_THROW(fit.minimiser.SetParameter(2, 1, 2, 0, 3), VeltError);
    EXPECT_THROW(fit.minimiser.SetParameter(1, std::numeric_limits<double>::quiet_NaN(), 2, 0, 3), VeltError);
    EXPECT_THROW(fit.minimiser.Estimate(0), VeltError);
}

// McKinnon (1998): a function on which the simplex can collapse onto the origin, which is no minimum.
TEST(VELT_NelMead, ASimplexThatCollapsedOnASlopeIsNoConvergence)
{
    const auto mcKinnon = [](Point x) {
        return (x[0] <= 0.0 ? 360.0 : 6.0) * x[0] * x[0] + x[1] + x[1] * x[1] + 1.0;
    };
    Fit fit(mcKinnon);
    fit.From({{0.0, 0.84, -10.0, 10.0}, {0.0, -0.59, -10.0, 10.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 0.0, 1e-3);
    EXPECT_NEAR(fit.minimiser.Estimate(2), -0.5, 1e-3);
}

TEST(VELT_NelMead, ATighterFunctionToleranceThanFloatsHaveChangesNothing)
{
    for (const Care care : {Care::Final, Care::Replicate})
        for (const float ftol : {1e-9F, 1e-12F}) {
            Fit fit(FloatBowl2);
            fit.care = care;
            fit.ftol = ftol;
            fit.From({{1500, 2000}, {0.3, 0.4}});
            EXPECT_TRUE(fit.minimiser.Converged());
            EXPECT_TRUE(fit.minimiser.ConvergedOnFunction());
            EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
        }
}
} // namespace
