// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "RecordedSurface.h"
#include "base/VeltError.h"
#include "engines/RandomSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <iterator>
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
        minimiser.FTOL(ftol);
        minimiser.XTOL(1e-4F);
        minimiser.ConvergeOn(convergeOn);
        minimiser.HowCarefully(care);
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
    VELT_NelMead::Care care = VELT_NelMead::Care::Final;
    float ftol = 1e-7F;
    std::vector<double> last, lowest, highest;
    int asked = 0;
};

double AsFloat(double x)
{
    return static_cast<double>(static_cast<float>(x));
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

// From the start a doubling leads to the lower penalty, which is as little a value as the higher one: the
// domain begins five doublings further out, beyond what the last look around that place sees.
TEST(VELT_NelMead, APenaltyLowerThanThatOfTheStartIsNotTakenForTheDomain)
{
    Fit fit([](Point x) { return x[0] < 15.0 ? kHigherPenalty : x[0] < 400.0 ? kHuge : FloatBowl(x); });
    fit.From({{10.0, 9.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
}

// 32-bit penalties are a little more than 1e20.
TEST(VELT_NelMead, AValueBelowThePenaltyIsOneAndThePenaltyIsNone)
{
    for (const double value : {0.9e20, 1e20, static_cast<double>(1e20F)}) {
        Fit fit([value](Point) { return value; });
        fit.From({{15, 20}});
        EXPECT_EQ(fit.minimiser.Converged(), value < 1e20) << value;
    }
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
            EXPECT_EQ(fit.minimiser.HowItEnded(), VELT_NelMead::End::OutsideDomain);
            EXPECT_EQ(fit.asked, 3 + (5 + 24) * 8 + 1); // simplex, stars, the last evaluation
        }
}

// The second point is better than the start by the lower of two penalties. From 20 the sixth doubling meets
// the domain at 1280, and the other vertex of the simplex that is built there lies outside again.
TEST(VELT_NelMead, ANarrowDomainFarAwayIsFoundFromTwoKindsOfPenalty)
{
    Fit fit([](Point x) {
        if (x[0] < 15.0)
            return kHigherPenalty;
        const double away = x[0] / 1300.0 - 1.0;
        return x[0] < 1200.0 || x[0] > 1400.0 ? kHuge : AsFloat(1.0 + away * away);
    });
    fit.From({{10, 20}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1300.0,
                1.0); // a float near 1 tells 1 + 6e-8 from 1, so 0.3 from 1300
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

// What a search asks for, in logarithms: its constants are seen in the distances. The bowls have their bottom
// at x = 1.

using Care = VELT_NelMead::Care;
using End = VELT_NelMead::End;

/// A search over the logarithms of a recorded surface.
struct Recorded : RecordedSurface {
    using RecordedSurface::RecordedSurface;

    Recorded& From(const std::vector<Search>& parameters, Care care = Care::Final,
                   std::int32_t convergeOn = 3)
    {
        minimiser.Create(*this, static_cast<std::int16_t>(parameters.size()));
        minimiser.HowCarefully(care);
        minimiser.ConvergeOn(convergeOn);
        minimiser.VisibleRise(visible);
        minimiser.FTOL(ftol);
        minimiser.MaxIts(maxIts);
        for (std::size_t i = 0; i < parameters.size(); ++i)
            minimiser.SetParameter(static_cast<std::int16_t>(i + 1), parameters[i].start,
                                   parameters[i].second, parameters[i].lower, parameters[i].upper);
        minimiser.Minimise();
        return *this;
    }

    /// Distance of the simplex's two points when the search of one parameter ended: the next two points asked
    /// for are a thousandth on either side of the better one.
    double LastSize() const
    {
        std::size_t i = 0;
        while (i + 1 < asked.size() && std::fabs(asked[i][0] - asked[i + 1][0] - 2e-3) > 1e-9)
            ++i;
        const double better = 0.5 * (asked.at(i)[0] + asked.at(i + 1)[0]);
        double nearest = 1.0;
        for (std::size_t j = 0; j < i; ++j)
            if (std::fabs(asked[j][0] - better) > 1e-12)
                nearest = std::min(nearest, std::fabs(asked[j][0] - better));
        return nearest;
    }

    VELT_NelMead minimiser;
    double visible = 0.0;
    float ftol = 1e-7F;
    std::int16_t maxIts = 500;
};

double Bowl(const RecordedSurface::Point& u)
{
    return 1.0 + u[0] * u[0];
}

double Bowl2(const RecordedSurface::Point& u)
{
    return 1.0 + u[0] * u[0] + u[1] * u[1];
}

// Nelder and Mead (1965). The simplex of one parameter stands at 0 and 1, its better point at 1.
TEST(VELT_NelMead, AStepReflectsExpandsAndContractsByTheFactorsOneTwoAndAHalf)
{
    const auto asked = [](double bottom) {
        Recorded fit([bottom](const RecordedSurface::Point& u) { return 1.0 + std::pow(u[0] - bottom, 2); });
        fit.From({{1.0, std::exp(1.0)}});
        return std::pair(fit.asked[2][0], fit.asked[3][0]);
    };
    const auto expectAsked = [&](double bottom, double reflected, double then) {
        EXPECT_NEAR(asked(bottom).first, reflected, 1e-9) << bottom;
        EXPECT_NEAR(asked(bottom).second, then, 1e-9) << bottom;
    };

    expectAsked(3.0, 2.0, 3.0); // better than the best: expanded
    expectAsked(1.4, 2.0, 1.5); // better than the worst alone: contracted outside
    expectAsked(0.6, 2.0, 0.5); // worse than the worst: contracted inside
}

// Vertices (0, 0), (1, 0) and (0, 1) with the values 1, 2 and 3. Neither the reflection of the worst through
// (1/2, 0), nor the contraction half way to there is better than 3.
TEST(VELT_NelMead, WhereNoContractionHelpsTheSimplexShrinksToHalf)
{
    Recorded fit([](const RecordedSurface::Point& u) {
        return u[0] == 0.0 && u[1] == 0.0 ? 1.0 : u[0] > 0.9 && u[1] == 0.0 ? 2.0 : u[1] > 0.9 ? 3.0 : 9.0;
    });
    fit.visible = 100.0; // no more than how the simplex moves is asked of this surface
    fit.From({{1.0, std::exp(1.0)}, {1.0, std::exp(1.0)}}, Care::Replicate);

    const auto expectAsked = [&](std::size_t at, double u, double v) {
        EXPECT_NEAR(fit.asked[at][0], u, 1e-9) << at;
        EXPECT_NEAR(fit.asked[at][1], v, 1e-9) << at;
    };
    expectAsked(4, 0.25, 0.5);
    expectAsked(5, 0.5, 0.0);
    expectAsked(6, 0.0, 0.5);
}

// 1 at 0, 2 elsewhere: the contraction of the point at 1 ties with it. With one parameter a shrunken simplex
// would be the same, so that the next point asked for is the reflection of 1/2.
TEST(VELT_NelMead, ATiedContractionOfOneParameterIsNotEvaluatedTwice)
{
    Recorded fit([](const RecordedSurface::Point& u) { return u[0] == 0.0 ? 1.0 : 2.0; });
    fit.From({{1.0, std::exp(1.0)}});

    EXPECT_NEAR(fit.asked[2][0], -1.0, 1e-9);
    EXPECT_NEAR(fit.asked[3][0], 0.5, 1e-9);
    EXPECT_NEAR(fit.asked[4][0], -0.5, 1e-9);
}

// Between its points a simplex of one parameter on 1 + u^2, one of them the bottom, has the spread d^2, and
// every step halves d.
TEST(VELT_NelMead, TheFunctionTestOfAReplicateAllowsAHundredTimesTheTolerance)
{
    for (const auto& [spread, end] :
         {std::pair{1.5e-5, 0.25 * 1.5e-5}, {0.7e-5, 0.7e-5}}) { // 100 FTOL = 1e-5
        const double second = std::exp(std::sqrt(spread) * 128.0);
        Recorded fit(Bowl);
        fit.From({{1.0, second}}, Care::Replicate, 0);
        EXPECT_NEAR(fit.LastSize(), std::sqrt(end), 1e-8);
    }
}

TEST(VELT_NelMead, TheFunctionTestOfAFinalFitAllowsTheToleranceItself)
{
    for (const auto& [spread, end] : {std::pair{1.5e-7, 0.25 * 1.5e-7}, {0.7e-7, 0.7e-7}}) {
        const double second = std::exp(std::sqrt(spread) * 1024.0);
        Recorded fit(Bowl);
        fit.From({{1.0, second}}, Care::Final, 0);
        EXPECT_NEAR(fit.LastSize(), std::sqrt(end), 1e-8);
    }
}

// 1 + 12.5 u^2 rises by 12.5e-6 at a thousandth, an eighth of 1e-4 of the value: four times the step shows
// two rises.
TEST(VELT_NelMead, ARiseIsVisibleFromAnTenThousandthOfTheValueOnOrFromWhereTheModelSaysSo)
{
    const auto stepsOf = [](double curvature, double visible) {
        Recorded fit([curvature](const RecordedSurface::Point& u) { return 1.0 + curvature * u[0] * u[0]; });
        fit.visible = visible;
        fit.From({{1.0, 2.0}}, Care::Replicate, 0);
        return (fit.Last(6) - fit.Last(5)) /
               (fit.Last(4) - fit.Last(3)); // first step against the one that serves
    };

    EXPECT_NEAR(stepsOf(12.5, 0.0), 0.25, 1e-5);
    EXPECT_NEAR(stepsOf(1250.0, 0.01), 0.25, 1e-5);
}

// Every evaluation is worse by 1e-6 than the last one at the same point, ten FTOL and not visible: the
// simplex gets as small as a tenth of XTOL, no smaller.
TEST(VELT_NelMead, InASimplexOfATenthOfXtolRoundingDecides)
{
    int turn = 0;
    Recorded fit([&turn](const RecordedSurface::Point& u) { return Bowl(u) + ++turn * 1e-6; });
    fit.From({{1.0, std::exp(0.7)}});

    EXPECT_TRUE(fit.minimiser.ConvergedOnFunction());
    EXPECT_LE(fit.LastSize(), 1e-5);
    EXPECT_GT(fit.LastSize(), 0.5e-5);
}

// The same point has ever another value: below the distance of 32-bit arguments the simplex is one point.
TEST(VELT_NelMead, ACollapsedSimplexIsOnePointWithOneValue)
{
    int turn = 0;
    Recorded fit([&turn](const RecordedSurface::Point& u) { return Bowl(u) + ++turn * 1e-3; });
    fit.From({{1.0, std::exp(0.7)}});

    EXPECT_LE(fit.LastSize(), 0x1p-24);
    EXPECT_GT(fit.LastSize(), 0x1p-25);
    EXPECT_NE(fit.minimiser.HowItEnded(), End::StepsUsed);
}

TEST(VELT_NelMead, TheFloorOfTheParameterTestIsAMillionthOfTheStart)
{
    std::vector<double> asked;
    Fit cusp([&asked](Point x) {
        asked.push_back(x[0]);
        return std::fabs(x[0]);
    });
    cusp.From({{0.0, 0.7, -10.0, 10.0}}, 0);

    double nearest = 1.0; // of the simplex, before the steps of 1e-3 follow
    for (std::size_t i = 0; std::fabs(asked[i] - 0.7e-3) > 1e-9; ++i)
        if (asked[i] != 0.0)
            nearest = std::min(nearest, std::fabs(asked[i]));
    EXPECT_LE(nearest, 0.7e-10); // XTOL * 1e-6 of the unit 0.7
    EXPECT_GT(nearest, 0.35e-10);
}

// FTOL of 1 ends the simplex at once, half a unit from the bottom. What goes on from the slope has a fiftieth
// of a unit.
TEST(VELT_NelMead, FromASlopeASimplexOfAFiftiethOfAUnitGoesOn)
{
    Recorded fit(Bowl);
    fit.ftol = 1.0F;
    fit.From({{std::exp(-0.5), std::exp(-0.6)}}, Care::Replicate, 0);

    EXPECT_NEAR(fit.asked[2][0], -0.5 + 1e-3, 1e-9); // the slope was seen at the first step
    EXPECT_NEAR(fit.asked[3][0], -0.5 - 1e-3, 1e-9);
    EXPECT_NEAR(fit.asked[4][0], -0.499 + 0.02, 1e-9);
}

// A parameter test of 0.01 ends the first simplex, half a unit from the bottom and 0.005 wide; the next one
// has 0.02 and steps on. Its new vertex is the better one, so the old best point is reflected through it.
TEST(VELT_NelMead, TheSimplexBuiltOnASlopeKnowsTheValuesOfItsVertices)
{
    Recorded fit(Bowl);
    fit.minimiser.Create(fit, 1);
    fit.minimiser.XTOL(0.01F);
    fit.minimiser.ConvergeOn(0);
    fit.minimiser.SetParameter(1, std::exp(-0.5), std::exp(-0.505), 0.0, kHuge);
    fit.minimiser.Minimise();

    EXPECT_NEAR(fit.asked[4][0], -0.499 + 0.02, 1e-9);
    EXPECT_NEAR(fit.asked[5][0], -0.499 + 0.04, 1e-9);
}

// A simplex of 0.02 goes on from -0.499, with an upper limit 0.4 and 0.6 of that above it.
TEST(VELT_NelMead, ASimplexThatALimitCutsToLessThanHalfStandsOnTheOtherSide)
{
    for (const auto& [room, vertex] : {std::pair{0.4, -0.519}, {0.6, -0.487}}) {
        Recorded fit(Bowl);
        fit.ftol = 1.0F;
        fit.From({{std::exp(-0.5), std::exp(-0.6), 0.0, std::exp(-0.499 + room * 0.02)}}, Care::Replicate, 0);
        EXPECT_NEAR(fit.asked[4][0], vertex, 1e-9);
    }
}

TEST(VELT_NelMead, AFinalFitLooksAroundAtFourDistancesAndAReplicateDoesNot)
{
    for (const Care care : {Care::Final, Care::Replicate}) {
        Recorded fit(Bowl);
        fit.From({{1.3, 1.7}}, care);
        const RecordedSurface::Point bottom{std::log(fit.minimiser.Estimate(1))};
        for (const double distance : {0.1, 0.3, 0.9, 2.7})
            EXPECT_EQ(fit.AskedAt(bottom, 0, distance), care == Care::Final) << distance;
    }
}

// The two points of a simplex of one parameter go to and fro over the minimum anyway.
TEST(VELT_NelMead, OneParameterNeedsNoFreshSimplexAfterTheStars)
{
    Recorded fit(Bowl);
    fit.From({{1.3, 1.7}});

    const double bottom = fit.Last(0);
    EXPECT_NEAR(fit.Last(2) - bottom, 2.7, 1e-9);
    EXPECT_NEAR(fit.Last(1) - bottom, -2.7, 1e-9);
}

// Two parameters are looked around along both diagonals too, and once more with a simplex turned the other
// way.
TEST(VELT_NelMead, AFreshSimplexOfThreeTenthsConfirmsAFinalFitOfTwoParameters)
{
    Recorded fit(Bowl2);
    fit.From({{1.3, 1.7}, {0.8, 1.2}});
    const double a = std::log(fit.minimiser.Estimate(1)), b = std::log(fit.minimiser.Estimate(2));

    const auto asked = [&](double du, double dv) {
        for (const auto& u : fit.asked)
            if (std::fabs(u[0] - a - du) < 1e-9 && std::fabs(u[1] - b - dv) < 1e-9)
                return true;
        return false;
    };
    EXPECT_TRUE(asked(2.7, -2.7));
    EXPECT_TRUE(asked(-2.7, -2.7));
    const std::size_t last = fit.asked.size() - 1;
    std::size_t star = 0; // the last point of the last star
    for (std::size_t i = 0; i <= last; ++i)
        if (std::fabs(std::fabs(fit.asked[i][1] - b) - 2.7) < 1e-9)
            star = i;
    EXPECT_NEAR(fit.asked[star + 1][0] - a, -0.3, 1e-9);
    EXPECT_NEAR(fit.asked[star + 2][1] - b, -0.3, 1e-9);
}

TEST(VELT_NelMead, AStartOnThePenaltyIsLookedAroundCloseByAndThenTwentyFourDoublingsFar)
{
    Recorded fit([](const RecordedSurface::Point&) { return kHuge; });
    fit.From({{1.0, 2.0}});

    std::vector<double> distances;
    for (std::size_t i = 2; i + 1 < fit.asked.size(); i += 2) {
        distances.push_back(fit.asked[i][0]);
        EXPECT_NEAR(fit.asked[i + 1][0], -fit.asked[i][0], 1e-9);
    }
    ASSERT_EQ(distances.size(), 5U + 24U);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NEAR(distances[i], std::pow(10.0, -1.0 - static_cast<double>(i)), 1e-12);
    for (std::size_t i = 1; i <= 24; ++i)
        EXPECT_NEAR(distances[4 + i], static_cast<double>(i) * std::log(2.0), 1e-9);
}

TEST(VELT_NelMead, AroundWhatAStarFoundASimplexOfHalfItsRadiusGoesOn)
{
    // Valid from half a decade above the start on: found at the doubling of 1.386, four times the start.
    Recorded fit(
        [](const RecordedSurface::Point& u) { return u[0] < 1.15 ? kHuge : 1.0 + std::pow(u[0] - 3.0, 2); });
    fit.From({{1.0, 0.9}});

    const double found = 2.0 * std::log(2.0);
    std::size_t at = 0;
    while (std::fabs(fit.asked[at][0] - found) > 1e-9)
        ++at;
    EXPECT_NEAR(fit.asked[at + 2][0], found + 0.5 * found, 1e-9); // behind the star's other side
}

TEST(VELT_NelMead, FromAFlatPlaceThirtyDecadesAreLookedThrough)
{
    Recorded fit([](const RecordedSurface::Point&) { return 5.0; });
    fit.From({{1.0, 2.0, 0.0, 1e300}}, Care::Replicate);
    EXPECT_TRUE(fit.minimiser.Converged());
    for (int decade = 1; decade <= 30; ++decade) {
        const std::size_t back =
            2U * static_cast<std::size_t>(30 - decade) + 1U; // before the last evaluation
        EXPECT_NEAR(fit.Last(back + 1), decade * std::log(10.0), 1e-9);
        EXPECT_NEAR(fit.Last(back), -decade * std::log(10.0), 1e-9);
    }
    // First simplex, stars of the look outward, 13 times half of ln 2 until XTOL is met, four steps, decades,
    // end.
    EXPECT_EQ(fit.asked.size(), 2U + 2U * (5U + 24U) + 13U + 2U * 4U + 2U * 30U + 1U);

    // A growth rate of 1e-12 makes no difference to one of 1e-13; one of 0.1 does.
    Recorded drifted([](const RecordedSurface::Point& u) {
        const double r = std::exp(u[0]);
        return 1.0 + 0.1 * std::pow(r - 0.1, 2) / (0.01 + r * r);
    });
    drifted.From({{1e-12, 2e-12}});
    EXPECT_NEAR(drifted.minimiser.Estimate(1), 0.1, 1e-4);
}

TEST(VELT_NelMead, AStockAndItsGrowthAreFollowedThroughTheirValleyOverThreeDecades)
{
    Recorded fit([](const RecordedSurface::Point& u) {
        return 0.01 + std::pow(u[0] + u[1], 2) + 1e-3 * std::pow(u[0] - u[1] - 3.0, 2); // at u = (1.5, -1.5)
    });
    fit.From({{std::exp(7.0), std::exp(7.3)}, {std::exp(-6.0), std::exp(-5.7)}});

    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(std::log(fit.minimiser.Estimate(1)), 1.5, 1e-4);
    EXPECT_NEAR(std::log(fit.minimiser.Estimate(2)), -1.5, 1e-4);
    EXPECT_LT(fit.asked.size(), 300U);
}

// The float steps of the value hide the bottom within 2.4e-4 of a unit; the parabolas see it, skew or not.
TEST(VELT_NelMead, TheBottomOfASkewedValleyIsFoundBehindTheStepsOfTheFloats)
{
    for (const double start : {0.3, 0.9, 2.0, 40.0}) {
        Recorded fit([](const RecordedSurface::Point& u) { return AsFloat(0.5 + std::exp(u[0]) - u[0]); });
        fit.From({{start, start * 4.0 / 3.0}});
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_NEAR(std::log(fit.minimiser.Estimate(1)), 0.0, 3e-5);
    }
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

TEST(VELT_NelMead, WithoutSettingsTheProgramsDefaultsHold)
{
    const auto search = [](bool set) {
        Fit fit(FloatBowl2);
        fit.minimiser.Create(fit, 2);
        if (set) {
            fit.minimiser.FTOL(1e-7F);
            fit.minimiser.XTOL(1e-4F);
            fit.minimiser.MaxIts(500);
            fit.minimiser.ConvergeOn(3);
            fit.minimiser.HowCarefully(Care::Final);
        }
        fit.minimiser.SetParameter(1, 1500, 2000, 0, kHuge);
        fit.minimiser.SetParameter(2, 0.3, 0.4, 0, kHuge);
        fit.minimiser.Minimise();
        return fit.minimiser.NumEvaluations();
    };

    EXPECT_EQ(search(false), search(true));
}

/// A search without settings of the surface 1 + curvature u^2 from its bottom, with that first step.
double LastSizeWithoutSettings(double curvature, double step)
{
    Recorded fit([curvature](const RecordedSurface::Point& u) { return 1.0 + curvature * u[0] * u[0]; });
    fit.minimiser.Create(fit, 1);
    fit.minimiser.SetParameter(1, 1.0, std::exp(step), 0.0, kHuge);
    fit.minimiser.Minimise();
    return fit.LastSize();
}

// Every step halves the distance d of the two points. 1 + u^2 has a spread of d^2, far below 1e-7 when the
// distance meets 1e-4; 1 + 100 u^2 one of 100 d^2, which meets 1e-7 at a distance of 3.2e-5.
TEST(VELT_NelMead, WithoutSettingsTheTolerancesAreTheProgramsDefaults)
{
    EXPECT_NEAR(LastSizeWithoutSettings(1.0, 1.5e-4 * 1024.0), 0.75e-4, 1e-9);
    for (const auto& [spread, end] : {std::pair{1.5e-7, 0.25 * 1.5e-7}, {0.7e-7, 0.7e-7}})
        EXPECT_NEAR(LastSizeWithoutSettings(100.0, std::sqrt(spread / 100.0) * 1024.0),
                    std::sqrt(end / 100.0), 1e-9);
}

// Six parameters in a row of valleys are not done after 501 steps.
TEST(VELT_NelMead, WithoutSettingsASearchEndsAfterFiveHundredSteps)
{
    const auto evaluations = [](std::int16_t maxIts) {
        Fit fit([](Point x) {
            double sum = 0.0;
            for (std::size_t i = 0; i + 1 < x.size(); ++i)
                sum += Rosenbrock(x.subspan(i, 2));
            return sum;
        });
        fit.minimiser.Create(fit, 6);
        if (maxIts > 0)
            fit.minimiser.MaxIts(maxIts);
        for (std::int16_t i = 1; i <= 6; ++i)
            fit.minimiser.SetParameter(i, -1.2, -1.6, -10.0, 10.0);
        fit.minimiser.Minimise();
        EXPECT_EQ(fit.minimiser.HowItEnded(), End::StepsUsed);
        return fit.minimiser.NumEvaluations();
    };

    EXPECT_EQ(evaluations(0), evaluations(500));
    EXPECT_LT(evaluations(499), evaluations(500));
    EXPECT_LT(evaluations(500), evaluations(501));
}

TEST(VELT_NelMead, BeforeTheSearchNothingHasConverged)
{
    Fit fit(FloatBowl);
    fit.minimiser.Create(fit, 1);
    EXPECT_EQ(fit.minimiser.HowItEnded(), End::NotRun);
    EXPECT_FALSE(fit.minimiser.Converged());
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
}

// The bowl's floor at 1000 lies outside a domain that begins at 1200, and inside one that begins at 500.
TEST(VELT_NelMead, TellsAMinimumOnTheBorderOfTheDomainFromOneInside)
{
    double border = 1200.0;
    Fit fit([&border](Point x) { return x[0] < border ? kHuge : FloatBowl(x); });
    fit.From({{1500.0, 2000.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1200.0, 0.12); // XTOL
    EXPECT_TRUE(fit.minimiser.AtBorder());

    border = 500.0;
    fit.From({{1500.0, 2000.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_FALSE(fit.minimiser.AtBorder());

    border = 1200.0;
    fit.From({{1500.0, 2000.0}}, 3, 2); // two steps do not get there
    EXPECT_FALSE(fit.minimiser.Converged());
    EXPECT_FALSE(fit.minimiser.AtBorder());
}

TEST(VELT_NelMead, ASearchThatAFailureOfTheCallbackEndedHasNotRun)
{
    Fit fit(FloatBowl);
    fit.From({{700, 933}});
    ASSERT_TRUE(fit.minimiser.Converged());

    fit.surface = [](Point) -> double { RaiseOverflow(); };

    EXPECT_THROW(fit.minimiser.Minimise(), VeltError);
    EXPECT_EQ(fit.minimiser.HowItEnded(), End::NotRun);
    EXPECT_FALSE(fit.minimiser.Converged());
}

// The message for the user must never say "succeeded on" twice beside "failed to converge".
TEST(VELT_NelMead, ATestThatTheSecondLookDeniesIsReportedAsFailed)
{
    int turn = 0; // two points always look equal and every third is better: ragged at every scale
    for (const std::int32_t convergeOn : {3, 0}) {
        Recorded fit([&turn](const RecordedSurface::Point&) { return turn++ % 7 == 0 ? 1.3 : 1.0; });
        fit.From({{1.0, 2.0}}, Care::Final, convergeOn);
        ASSERT_FALSE(fit.minimiser.Converged());
        EXPECT_EQ(fit.minimiser.HowItEnded(), End::NoMinimum);
        EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
        EXPECT_EQ(fit.minimiser.ConvergedOnParameter(),
                  convergeOn == 3); // with either test the other one ended it
    }
}

// 100 - u falls by 0.02 from one simplex to the next, which meets a parameter test of 0.05 without a
// step: only their number, 10 and the first, can end the search before the limit at u = 46. Each takes at
// most ten evaluations.
TEST(VELT_NelMead, MaxItsEndsASearchThatGoesFromSlopeToSlopeToo)
{
    Recorded fit([](const RecordedSurface::Point& u) { return 100.0 - u[0]; });
    fit.minimiser.Create(fit, 1);
    fit.minimiser.XTOL(0.05F);
    fit.minimiser.ConvergeOn(0);
    fit.minimiser.MaxIts(10);
    fit.minimiser.SetParameter(1, 1.0, 1.02, 0.0, kHuge);
    fit.minimiser.Minimise();

    EXPECT_EQ(fit.minimiser.HowItEnded(), End::NoMinimum);
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_LE(fit.minimiser.NumEvaluations(), 11 * 10);
}

/// Answers that no surface gives: noise, the same every third time, ever lower, ever higher, without bottom.
/// A search that asks a hundred thousand times, two hundred for each step that it is given, has no end.
struct Unruly : INelMead {
    Unruly(int kind, RandomSource& source) : kind(kind), random(source) {}

    double INelMead_MinFunc(Point x) override
    {
        if (++asked > 100000)
            RaiseOverflow();
        for (const double xi : x)
            finite = finite && std::isfinite(xi);
        constexpr double kAnswers[] = {0.0,     -1.0,           1.0,       1.0001, 0.99975, kHuge,
                                       -3.4e38, kHigherPenalty, -INFINITY, NAN};
        switch (kind) {
        case 0:
            return kAnswers[static_cast<std::size_t>(random.Next() * std::size(kAnswers))];
        case 1:
            return kAnswers[static_cast<std::size_t>(asked % 3) * 2];
        case 2:
            return 100.0 - asked;
        case 3:
            return 100.0 + asked;
        default:
            return -1e-3 * std::pow(std::log(std::fabs(x[0]) + 1e-30), 2);
        }
    }

    int kind;
    RandomSource& random;
    int asked = 0;
    bool finite = true;
};

// Ever lower answers under wide tolerances used to keep a search for ever.
TEST(VELT_NelMead, EndsOnAnyAnswersUnderAnySettingsAndNeverAsksForWhatIsNoNumber)
{
    RandomSource random(1);
    const auto oneOf = [&random](std::initializer_list<double> list) {
        return list.begin()[static_cast<std::size_t>(random.Next() * static_cast<double>(list.size()))];
    };
    for (int search = 0; search < 5000; ++search) {
        Unruly answers(search % 5, random);
        VELT_NelMead minimiser;
        const auto parameters = static_cast<std::int16_t>(1 + search % 3);
        minimiser.Create(answers, parameters);
        minimiser.MaxIts(static_cast<std::int16_t>(oneOf({-1, 0, 1, 10, 500})));
        minimiser.XTOL(static_cast<float>(oneOf({1e-4, 0.05, 0.0, 1e30, NAN, -1.0})));
        minimiser.FTOL(static_cast<float>(oneOf({1e-7, 1.0, 0.0, 1e30, NAN, -1.0})));
        minimiser.ConvergeOn(static_cast<std::int32_t>(oneOf({0, 3})));
        minimiser.HowCarefully(oneOf({0, 1}) > 0.0 ? Care::Final : Care::Replicate);
        minimiser.VisibleRise(oneOf({0.0, 0.01, 1e-300, 1e300, INFINITY, NAN, -1.0}));
        for (std::int16_t i = 1; i <= parameters; ++i)
            minimiser.SetParameter(i, oneOf({1.0, 0.0, -1.0, 1e-310, 3e8, INFINITY}),
                                   oneOf({4.0 / 3.0, 2.0, 0.0, 1e300}), oneOf({0.0, 1e-300, -5.0, -INFINITY}),
                                   oneOf({1e20, 5.0, 1.0000001, INFINITY}));

        ASSERT_NO_THROW(minimiser.Minimise()) << search;
        EXPECT_TRUE(answers.finite) << search;
        EXPECT_FALSE(!minimiser.Converged() && minimiser.ConvergedOnFunction() &&
                     minimiser.ConvergedOnParameter())
            << search;
    }
}

TEST(VELT_NelMead, StepsThatWereUsedUpSayWhichTestsWereMet)
{
    Fit fit(Rosenbrock);
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}}, 3, 10);
    EXPECT_EQ(fit.minimiser.HowItEnded(), End::StepsUsed);
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
}

// A replicate's parabola ends at the vertex that becomes the estimate: its bootstraps would pay for asking
// again.
TEST(VELT_NelMead, APointThatWasAskedForLastIsNotAskedForAgain)
{
    Recorded fit(Bowl);
    fit.From({{1.3, 1.7}}, Care::Replicate, 0);

    const std::size_t last = fit.asked.size() - 1;
    EXPECT_EQ(std::exp(fit.asked[last][0]), fit.minimiser.Estimate(1));
    EXPECT_NE(fit.asked[last], fit.asked[last - 1]);
}

} // namespace
