// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace
{

using Point = std::span<const double>;
constexpr double kHuge = 1e20; // upper limit of the models, and the lower penalty
constexpr double kHigherPenalty = 3.4e38;

struct Search {
    double start, second, lower = 0.0, upper = kHuge;
};

// A fit in three lines: the surface, the parameters, the settings; and a record of what the surface was
// asked.
struct Fit : INelMead {
    explicit Fit(std::function<double(Point)> f) : surface(std::move(f)) {}

    double INelMead_MinFunc(Point x) override
    {
        last.assign(x.begin(), x.end());
        lowest.resize(x.size(), std::numeric_limits<double>::infinity());
        highest.resize(x.size(), -std::numeric_limits<double>::infinity());
        for (std::size_t i = 0; i < x.size(); ++i) {
            lowest[i] = std::fmin(lowest[i], x[i]);
            highest[i] = std::fmax(highest[i], x[i]);
        }
        ++asked;
        return surface(x);
    }

    Fit& From(const std::vector<Search>& parameters, std::int32_t convergeOn = 3, std::int16_t maxIts = 500)
    {
        minimiser.Create(*this, static_cast<std::int16_t>(parameters.size()));
        minimiser.MaxIts(maxIts);
        minimiser.FTOL(1e-7F);
        minimiser.XTOL(1e-4F);
        minimiser.ConvergeOn(convergeOn);
        for (std::size_t i = 0; i < parameters.size(); ++i)
            minimiser.SetParameter(static_cast<std::int16_t>(i + 1), parameters[i].start,
                                   parameters[i].second, parameters[i].lower, parameters[i].upper);
        asked = 0;
        minimiser.Minimise();
        EXPECT_EQ(minimiser.NumEvaluations(), asked);
        for (std::size_t i = 0; i < parameters.size(); ++i) // what the callback keeps belongs to the estimate
            EXPECT_EQ(last[i], minimiser.Estimate(static_cast<std::int16_t>(i + 1)));
        EXPECT_EQ(minimiser.MinValue(), surface(last));
        return *this;
    }

    std::function<double(Point)> surface;
    VELT_NelMead minimiser;
    std::vector<double> last, lowest, highest;
    int asked = 0;
};

double AsFloat(double x)
{
    return static_cast<double>(static_cast<float>(x));
}

// Pseudo-random on [-1, 1], a function of its argument as a 32-bit float.
double Hash(double x)
{
    auto u = std::bit_cast<std::uint32_t>(static_cast<float>(x)) * 2654435761U;
    u = (u ^ (u >> 15)) * 2246822519U;
    u = (u ^ (u >> 13)) * 3266489917U;
    return (u ^ (u >> 16)) / 2147483648.0 - 1.0;
}

double Rosenbrock(Point x)
{
    return 100.0 * std::pow(x[1] - x[0] * x[0], 2) + std::pow(1.0 - x[0], 2);
}

double PowellSingular(Point x)
{
    return std::pow(x[0] + 10 * x[1], 2) + 5 * std::pow(x[2] - x[3], 2) + std::pow(x[1] - 2 * x[2], 4) +
           10 * std::pow(x[0] - x[3], 4);
}

// 100 at x = 1000, as rough as 32-bit floats near 100 are.
double FloatBowl(Point x)
{
    return AsFloat(100.0 + 20.0 * std::pow(x[0] / 1000.0 - 1.0, 2));
}

// The same in two parameters that pull against each other, 100 at (1000, 0.4).
double FloatBowl2(Point x)
{
    const double a = x[0] / 1000.0 - 1.0, b = x[1] / 0.4 - 1.0;
    return AsFloat(100.0 + 20.0 * (a * a + b * b + 1.6 * a * b));
}

// The unrounded floor of the rough valleys, 0 at x = 1000 (and 0.4).
double Valley(Point x)
{
    const double a = std::log(std::fmax(x[0], 1e-30) / 1000.0);
    const double b = x.size() > 1 ? std::log(std::fmax(x[1], 1e-30) / 0.4) : 0.0;
    return 0.05 * (a * a + b * b + 1.6 * a * b);
}

double RoughValley(Point x)
{
    return AsFloat(0.002 + Valley(x) + 1e-5 * Hash(x[0] + (x.size() > 1 ? Hash(x[1]) : 0.0)));
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

TEST(VELT_NelMead, AReplicateIsCheaper)
{
    for (const double second : {1.0 / 3.0, 4.0 / 3.0}) {
        Fit one(FloatBowl), two(FloatBowl2);
        one.From({{1300.0, 1300.0 * second}}, 0);
        EXPECT_TRUE(one.minimiser.Converged());
        EXPECT_NEAR(one.minimiser.Estimate(1), 1000.0, 0.9);
        EXPECT_LE(one.minimiser.NumEvaluations(), 50);
        two.From({{1300.0, 1300.0 * second}, {0.3, 0.4}}, 0);
        EXPECT_TRUE(two.minimiser.Converged());
        EXPECT_LE(two.minimiser.MinValue(), 100.0 + 1.6e-5);
        EXPECT_LE(two.minimiser.NumEvaluations(), 120);
    }
}

// A record of the roughness lies 1e-5 below the valley, an improvement counts from about four deviations of
// 0.58e-5 on: 3.3e-5 above the floor bounds every point that may be called converged.
TEST(VELT_NelMead, CallsNothingConvergedThatLiesAboveTheRoughnessOfTheOptimum)
{
    for (const std::int32_t convergeOn : {3, 0})
        for (int i = 0; i < 20; ++i) {
            const double start = 1000.0 * std::pow(10.0, 1.5 * Hash(i + 1));
            Fit one(RoughValley), two(RoughValley);
            one.From({{start, start * 4.0 / 3.0}}, convergeOn);
            EXPECT_TRUE(one.minimiser.Converged()) << start;
            EXPECT_LT(Valley(one.last), 3.3e-5) << start;
            EXPECT_LE(one.minimiser.NumEvaluations(), 130) << start;
            const double other = 0.4 * std::pow(10.0, 1.5 * Hash(i + 100));
            two.From({{start, start * 4.0 / 3.0}, {other, other * 4.0 / 3.0}}, convergeOn);
            EXPECT_TRUE(two.minimiser.Converged()) << start << ' ' << other;
            EXPECT_LT(Valley(two.last), 3.3e-5) << start << ' ' << other;
            EXPECT_LE(two.minimiser.NumEvaluations(), 350) << start << ' ' << other;
        }
}

TEST(VELT_NelMead, RetreatsFromAHalfPlaneOfPenalties)
{
    for (const double penalty : {kHuge, kHigherPenalty}) {
        Fit inside([penalty](Point x) { return x[0] < 900.0 ? penalty : FloatBowl2(x); });
        inside.From({{1500, 2000}, {0.3, 0.4}});
        EXPECT_TRUE(inside.minimiser.Converged());
        EXPECT_LE(inside.minimiser.MinValue(), 100.0 + 1.6e-5);
    }
}

TEST(VELT_NelMead, FindsAnOptimumAtTheEdgeOfThePenalties)
{
    Fit one([](Point x) { return x[0] < 1000.0 ? kHuge : AsFloat(100.0 + x[0] / 1000.0); });
    one.From({{1500, 2000}});
    EXPECT_TRUE(one.minimiser.Converged());
    EXPECT_NEAR(one.minimiser.Estimate(1), 1000.0, 0.1); // XTOL
    Fit two([](Point x) {
        return x[0] < 1000.0 ? kHuge : AsFloat(100.0 + x[0] / 1000.0 + std::pow(x[1] / 0.4 - 1.0, 2));
    });
    two.From({{1500, 2000}, {0.3, 0.4}});
    EXPECT_TRUE(two.minimiser.Converged());
    EXPECT_NEAR(two.minimiser.MinValue(), 101.0, 1e-4);
}

TEST(VELT_NelMead, SearchesOutwardFromAStartOnThePenalty)
{
    for (const double start : {15.0, 3e6}) {
        Fit fit([](Point x) { return x[0] < 500.0 || x[0] > 50000.0 ? kHigherPenalty : FloatBowl(x); });
        fit.From({{start, start * 4.0 / 3.0}});
        EXPECT_TRUE(fit.minimiser.Converged()) << start;
        EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
    }
    Fit alongOne([](Point x) { return x[1] < 0.1 || x[0] > 5000.0 ? kHuge : FloatBowl2(x); });
    alongOne.From({{1500, 2000}, {0.001, 0.0013}});
    EXPECT_TRUE(alongOne.minimiser.Converged());
    EXPECT_LE(alongOne.minimiser.MinValue(), 100.0 + 1.6e-5);
}

TEST(VELT_NelMead, PenaltiesAloneAreNoConvergence)
{
    for (const double penalty : {kHuge, kHigherPenalty})
        for (const std::int32_t convergeOn : {3, 0}) {
            Fit fit([penalty](Point) { return penalty; });
            fit.From({{15, 20}, {0.3, 0.4}}, convergeOn);
            EXPECT_FALSE(fit.minimiser.Converged());
            EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
            EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
            EXPECT_LE(fit.minimiser.NumEvaluations(), 180); // (5 + 24) scales, 3 ways, up and down, and 4
        }
}

// A likelihood of data without noise: valid only close by, and the start itself is a hole in the middle of
// it.
TEST(VELT_NelMead, FindsASpikeTooNarrowForTheFirstStep)
{
    Fit fit([](Point x) {
        const double away = std::fabs(x[0] - 1000.0);
        return away < 1e-6 || away > 20.0 ? kHuge : AsFloat(10.0 * std::log(away));
    });
    fit.From({{1000, 1333}});
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 1.0); // a thousandth
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

TEST(VELT_NelMead, ReachingMaxItsIsNoConvergenceAndNoFailure)
{
    Fit fit(Rosenbrock);
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}}, 3, 10);
    EXPECT_FALSE(fit.minimiser.Converged());
    EXPECT_LT(fit.minimiser.MinValue(), 24.2); // the start
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}}, 3, 0);
    EXPECT_FALSE(fit.minimiser.Converged());
}

TEST(VELT_NelMead, ACallbackThatAnswersNotANumberOrInfinityIsTreatedAsAPenalty)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double bad : {kNaN, kInfinity}) {
        Fit fit([bad](Point x) { return x[0] > 1200.0 ? bad : FloatBowl(x); });
        fit.From({{1100, 1400}});
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
    }
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

} // namespace
