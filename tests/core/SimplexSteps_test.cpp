// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "core/MinimiserBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace
{
using namespace minimiser_bench;

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
