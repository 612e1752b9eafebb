// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecordedSurface.h"

#include "engines/MinimumTest.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using Shape = MinimumTest::Shape;
using Point = RecordedSurface::Point;
constexpr double kPenalty = SearchSpace::kPenalty;

/// Settles at u = 0 of a surface; the start itself is not among the points asked for.
struct Settled : RecordedSurface {
    Settled(std::function<double(const Point&)> f, std::size_t dimensions, double visible,
            bool thorough = true)
        : RecordedSurface(std::move(f))
    {
        space.Create(*this, dimensions);
        for (std::size_t i = 0; i < dimensions; ++i)
            space.SetParameter(i, 1.0, 2.0, 0.0, 1e20);
        space.Prepare();
        space.Evaluate(space.best);
        asked.clear();
        MinimumTest test;
        test.Create(dimensions, thorough);
        shape = test.Settle(space, visible);
    }

    /// The steps on the upper side along the first coordinate, in the order taken.
    std::vector<double> Steps() const
    {
        std::vector<double> steps;
        for (std::size_t i = 0; i + 1 < asked.size(); ++i)
            if (asked[i][0] > 0.0 && std::fabs(asked[i][0] + asked[i + 1][0]) < 1e-12)
                steps.push_back(asked[i][0]);
        return steps;
    }

    SearchSpace space;
    Shape shape = Shape::Slope;
};

Settled Along(std::function<double(double)> f, double visible)
{
    return {[f](const Point& u) { return f(u[0]); }, 1, visible};
}

void ExpectSteps(const Settled& settled, std::initializer_list<double> expected)
{
    const std::vector<double> steps = settled.Steps();
    ASSERT_EQ(steps.size(), expected.size());
    std::size_t i = 0;
    for (const double step : expected) {
        EXPECT_NEAR(steps[i], step, 1e-9 * step) << i;
        ++i;
    }
}

bool Near(double u, double place)
{
    return std::fabs(u - place) < 1e-9;
}

double Parabola(double u)
{
    return u * u;
}
} // namespace

// (1e-3)^2 = 1e-6 is seen at once: the step, half of it, and the vertex.
TEST(MinimumTest, AVisibleRiseAtAThousandthNeedsTheStepItsHalfAndTheVertex)
{
    const Settled settled = Along(Parabola, 1e-6);

    EXPECT_EQ(settled.shape, Shape::Bowl);
    ExpectSteps(settled, {1e-3, 5e-4});
    EXPECT_EQ(settled.asked.size(), 5U);
}

// An eighth of a visible rise at 1e-3: for two of them the step must be sqrt(16) as long.
TEST(MinimumTest, AStepIsLengthenedUntilItShowsTwoVisibleRises)
{
    ExpectSteps(Along(Parabola, 8e-6), {1e-3, 4e-3, 2e-3});
}

TEST(MinimumTest, AStepThatShowsNothingIsMadeTenTimesAsLong)
{
    const auto flatFloor = [](double u) { return std::fabs(u) < 5e-3 ? 0.0 : u * u; };

    const std::vector<double> steps = Along(flatFloor, 1e-6).Steps();

    ASSERT_GE(steps.size(), 2U);
    EXPECT_NEAR(steps[1], 1e-2, 1e-11);
}

// At 1e-3 the rise is 20 visible ones: too far above. At 15 it may stay.
TEST(MinimumTest, AStepThatShowsSixteenVisibleRisesIsShortened)
{
    const double shorter = 1e-3 * std::sqrt(2.0 / 20.0);

    ExpectSteps(Along(Parabola, 1e-6 / 20.0), {1e-3, shorter, 0.5 * shorter});
    ExpectSteps(Along(Parabola, 1e-6 / 15.0), {1e-3, 5e-4});
}

TEST(MinimumTest, NoStepIsShorterThanArgumentsOf32BitsAllow)
{
    ExpectSteps(Along(Parabola, 1e-30), {1e-3, 1e-5, 5e-6});
}

TEST(MinimumTest, WhatDoesNotRiseWithinHalfAUnitIsFlat)
{
    const Settled settled = Along([](double) { return 7.0; }, 1e-6);

    EXPECT_EQ(settled.shape, Shape::Flat);
    ExpectSteps(settled, {1e-3, 1e-2, 1e-1, 0.5});
    EXPECT_EQ(Along([](double u) { return std::fabs(u) < 0.49 ? 7.0 : 8.0; }, 1e-6).shape, Shape::Edge);
    EXPECT_EQ(Along([](double u) { return std::fabs(u) < 0.51 ? 7.0 : 8.0; }, 1e-6).shape, Shape::Flat);
}

// A cusp shows half the rise at half the step, at every scale.
TEST(MinimumTest, ACuspIsAnEdgeAfterThreeCoarserSteps)
{
    const Settled settled = Along([](double u) { return std::fabs(u); }, 1e-3);

    EXPECT_EQ(settled.shape, Shape::Edge);
    ExpectSteps(settled, {1e-3, 5e-4, 3e-3, 1.5e-3, 9e-3, 4.5e-3, 27e-3, 13.5e-3});
    EXPECT_EQ(settled.space.best[0], 0.0);
}

// |u|^p shows 2^-p of the rise at half the step: a parabola's quarter, 1/12 and 1/2.4 at the limits.
TEST(MinimumTest, HalfTheStepOfABowlShowsBetweenATwelfthAndOneIn24Tenths)
{
    const auto power = [](double p) {
        return Along([p](double u) { return std::pow(std::fabs(u), p); }, std::pow(1e-3, p)).shape;
    };

    EXPECT_EQ(power(1.30), Shape::Bowl); // 0.406 against 0.417
    EXPECT_EQ(power(1.22), Shape::Edge); // 0.429
    EXPECT_EQ(power(3.50), Shape::Bowl); // 0.088 against 0.083
    EXPECT_EQ(power(3.70), Shape::Edge); // 0.077
}

TEST(MinimumTest, TheBorderOfTheDomainIsToldFromACusp)
{
    const Settled settled = Along([](double u) { return u < 0.0 ? kPenalty : 1.0 + u; }, 1e-4);

    EXPECT_EQ(settled.shape, Shape::Border);
    ExpectSteps(settled, {1e-3, 1e-4, 1e-5});
}

// Nearer than the border nothing rises visibly; beyond it nothing is known.
TEST(MinimumTest, AFlatPlaceBesideTheBorderIsTheBorderAndNotFlat)
{
    EXPECT_EQ(Along([](double u) { return u < -5e-4 ? kPenalty : 1.0 + u * u; }, 1e-4).shape, Shape::Border);
}

// Every step shows 0.05, every half step 0.35.
TEST(MinimumTest, ASurfaceThatRisesAndFallsWithTheStepIsRagged)
{
    const auto jumps = [](double u) {
        for (const double step : {1e-3, 3e-3, 9e-3, 27e-3})
            if (Near(std::fabs(u), step))
                return 1.05;
        return u == 0.0 ? 1.0 : 1.35;
    };

    const Settled settled = Along(jumps, 0.04);

    EXPECT_EQ(settled.shape, Shape::Ragged);
    ExpectSteps(settled, {1e-3, 5e-4, 3e-3, 1.5e-3, 9e-3, 4.5e-3, 27e-3, 13.5e-3});
}

// The second axis rises visibly at 1e-3, to the same at half of it, and dips at the step made three times as
// long: the dip's quarter at half that step made it a bowl, and a root of its negative rise the next step,
// which was not a number and was scaled for ever.
TEST(MinimumTest, AStepLengthenedIntoADipShowsNoBowl)
{
    const auto dipped = [](const Point& u) {
        const double v = std::fabs(u[1]);
        return u[0] * u[0] + (Near(v, 3e-3) ? -2e-7 : Near(v, 1.5e-3) ? -5e-8 : v > 0.0 ? 1e-6 : 0.0);
    };

    EXPECT_EQ(Settled(dipped, 2, 1e-6).shape, Shape::Ragged);
}

// Lower by 0.3 and by 0.2 of a visible rise on one side, higher on the other.
TEST(MinimumTest, AQuarterOfAVisibleRiseLowerIsASlopeAndLessIsNone)
{
    const auto tilted = [](double lower) {
        return [lower](double u) { return u > 0.0 ? -lower : u < 0.0 ? 5.0 : 0.0; };
    };

    const Settled slope = Along(tilted(0.3), 1.0);
    EXPECT_EQ(slope.shape, Shape::Slope);
    EXPECT_GT(slope.space.best[0], 0.0); // the lower point, for the search to go on from
    EXPECT_NE(Along(tilted(0.2), 1.0).shape, Shape::Slope);
}

TEST(MinimumTest, ASlopeMetAtHalfTheStepIsOneToo)
{
    EXPECT_EQ(Along([](double u) { return Near(u, 5e-4) ? -1.0 : u * u; }, 1e-6).shape, Shape::Slope);
}

// Where nothing is a bowl the point stays, whatever dents the steps met.
TEST(MinimumTest, DentsThatRoundingLeftDoNotMoveThePoint)
{
    const auto cuspWithDent = [](double u) { return Near(u, 1e-3) ? -1e-5 : std::fabs(u); };

    const Settled settled = Along(cuspWithDent, 1e-3);

    EXPECT_EQ(settled.shape, Shape::Edge);
    EXPECT_EQ(settled.space.best[0], 0.0);
    EXPECT_EQ(settled.space.bestValue, 0.0);
}

TEST(MinimumTest, ABowlMovesToTheVertexOfItsParabola)
{
    const Settled settled = Along([](double u) { return (u - 4e-4) * (u - 4e-4); }, 9e-7);

    EXPECT_EQ(settled.shape, Shape::Bowl);
    EXPECT_NEAR(settled.space.best[0], 4e-4, 1e-12);
    EXPECT_EQ(settled.asked.size(), 10U); // 0.4 steps away: looked at again, and there it is
    EXPECT_EQ(Along([](double u) { return (u - 0.9e-4) * (u - 0.9e-4); }, 9e-7).asked.size(), 5U);
    EXPECT_EQ(Along([](double u) { return (u - 1.1e-4) * (u - 1.1e-4); }, 9e-7).asked.size(), 10U);
}

// Whenever a bowl has been measured its bottom is 0.4 steps further on: the bend of a valley, not its lowest
// place.
TEST(MinimumTest, ABowlWhoseBottomRunsOnIsFollowedFourTimesAndNoMinimum)
{
    struct Runaway : INelMead {
        double INelMead_MinFunc(std::span<const double> x) override
        {
            const double bottom = 4e-4 * (1 + (asked++ - 1) / 5);
            return std::pow(std::log(x[0]) - bottom, 2);
        }
        int asked = 0;
    } runaway;
    SearchSpace space;
    space.Create(runaway, 1);
    space.SetParameter(0, 1.0, 2.0, 0.0, 1e20);
    space.Prepare();
    space.Evaluate(space.best);
    MinimumTest test;
    test.Create(1, true);

    EXPECT_EQ(test.Settle(space, 9e-7), Shape::Ragged);

    EXPECT_GT(runaway.asked, 1 + 3 * 5); // more than three looks of five points
    EXPECT_LE(runaway.asked, 1 + 4 * 7); // at most four, of which a step was lengthened
}

// The parabola says that the vertex is lower; where the surface there is not, the point stays.
TEST(MinimumTest, AVertexThatProvesHigherIsNotTaken)
{
    const auto spiked = [](double u) { return Near(u, 4e-4) ? 1.0 : (u - 4e-4) * (u - 4e-4); };

    EXPECT_EQ(Along(spiked, 9e-7).space.best[0], 0.0);
}

// v^2 + v^3 with v = u - 1e-4: the cubic moves the parabola's vertex by h^2 / 2, 5e-7 at the step of 1e-3.
// Without it there is left what one step of Newton leaves from 1e-4 away, 1.5e-8.
TEST(MinimumTest, TheSkewOfAValleyIsTakenOut)
{
    const auto skewed = [](double u) {
        const double v = u - 1e-4;
        return v * v + v * v * v;
    };

    EXPECT_NEAR(Along(skewed, 9e-7).space.best[0], 1e-4, 2e-8);
}

// A valley a thousand times as long as wide across both coordinates, whose scales differ too.
TEST(MinimumTest, ConjugateDiagonalsFindTheBottomOfANarrowValley)
{
    const auto valley = [](const Point& u) {
        const double a = (u[0] - 2e-4) / 1.0, b = (u[1] + 1e-4) / 0.2;
        return a * a + b * b + 1.998 * a * b;
    };

    const Settled settled(valley, 2, 1e-6);

    EXPECT_EQ(settled.shape, Shape::Bowl);
    EXPECT_NEAR(settled.space.best[0], 2e-4, 1e-9);
    EXPECT_NEAR(settled.space.best[1], -1e-4, 1e-9);
}

// Both axes have a step and its half, both diagonals too, then comes the vertex: 4 * 4 + 1. Without judging
// the axes their halves are saved, and the bottom is the same.
TEST(MinimumTest, ARefitTakesOnlyTheStepsFromTheAxes)
{
    const auto bowl = [](const Point& u) { return std::pow(u[0] - 4e-5, 2) + std::pow(u[1] + 2e-5, 2); };
    const Settled thorough(bowl, 2, 9e-7);
    const Settled refit(bowl, 2, 9e-7, false);

    EXPECT_EQ(thorough.asked.size(), 17U);
    EXPECT_EQ(refit.asked.size(), 13U);
    EXPECT_EQ(refit.shape, Shape::Bowl);
    EXPECT_NEAR(refit.space.best[0], 4e-5, 1e-9);
    EXPECT_NEAR(refit.space.best[1], -2e-5, 1e-9);
    EXPECT_EQ(Settled([](const Point& u) { return std::fabs(u[0]); }, 1, 1e-3, false).shape, Shape::Edge);
}

TEST(MinimumTest, AValleyThatRisesAlongBothAxesAndFallsAlongADiagonalIsASlope)
{
    const auto saddle = [](const Point& u) { return u[0] * u[0] + u[1] * u[1] + 4.0 * u[0] * u[1]; };

    EXPECT_EQ(Settled(saddle, 2, 1e-6).shape, Shape::Slope);
}

TEST(MinimumTest, AValleyThatNowhereEndsIsFlatAlongItsDiagonal)
{
    const auto endless = [](const Point& u) { return std::pow(u[0] + u[1], 2); };

    EXPECT_EQ(Settled(endless, 2, 1e-6).shape, Shape::Flat);
}

// Of a value of 0 no share is a rise that counts, so the threshold is 0 as well. The axes of such a surface
// were taken for bowls that rise by 0, the step along the diagonal was 0/0, and the test never ended.
TEST(MinimumTest, ASurfaceThatIsZeroAllAroundIsFlatAndTheTestEnds)
{
    const auto zero = [](const Point& u) { return std::isnan(u[0]) ? kPenalty : 0.0; };

    for (const bool thorough : {true, false})
        for (const std::size_t dimensions : {1U, 2U, 3U})
            EXPECT_EQ(Settled(zero, dimensions, 0.0, thorough).shape, Shape::Flat) << dimensions;
}

TEST(MinimumTest, MoreThanTwoParametersAreExaminedAndNotMoved)
{
    const auto bowl = [](const Point& u) {
        return std::pow(u[0] - 1e-4, 2) + std::pow(u[1] + 1e-4, 2) + u[2] * u[2];
    };

    const Settled settled(bowl, 3, 1e-6);

    EXPECT_EQ(settled.shape, Shape::Bowl);
    EXPECT_EQ(settled.space.best, (Point{0.0, 0.0, 0.0}));
}
