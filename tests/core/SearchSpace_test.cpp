// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/SearchSpace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{
/// Answers from a list, the last one for ever, and keeps the last point.
struct Answers : INelMead {
    explicit Answers(std::vector<double> list) : values(std::move(list)) {}
    double INelMead_MinFunc(std::span<const double> x) override
    {
        last.assign(x.begin(), x.end());
        const double value = values.front();
        if (values.size() > 1)
            values.erase(values.begin());
        return value;
    }
    std::vector<double> values, last;
};

struct Space : SearchSpace {
    explicit Space(std::vector<double> answers, std::size_t parameters = 1) : callback(std::move(answers))
    {
        Create(callback, parameters);
    }
    Answers callback;
};
} // namespace

TEST(SearchSpace, APositiveParameterIsSearchedInItsLogarithm)
{
    Space space({1.0});
    space.SetParameter(0, 100.0, 50.0, 0.0, 1e20);
    space.Prepare();
    EXPECT_DOUBLE_EQ(space.best[0], std::log(100.0));
    EXPECT_DOUBLE_EQ(space.SecondCoordinate(0), std::log(50.0));

    space.Evaluate({std::log(7.0)});

    EXPECT_DOUBLE_EQ(space.callback.last[0], 7.0);
}

TEST(SearchSpace, AParameterThatMayBeNegativeIsSearchedInSharesOfItsStart)
{
    for (const auto& [start, second, lower] :
         {std::tuple{-4.0, 3.0, -10.0}, {4.0, -1.0, 0.0}, {0.0, 4.0, 0.0}}) {
        Space space({1.0});
        space.SetParameter(0, start, second, lower, 10.0);
        space.Prepare();
        EXPECT_DOUBLE_EQ(space.best[0], start / 4.0);

        space.Evaluate({0.5});

        EXPECT_DOUBLE_EQ(space.callback.last[0], 2.0);
    }
}

TEST(SearchSpace, PointsAreMovedWithinTheLimits)
{
    Space space({1.0});
    space.SetParameter(0, 3000.0, 4000.0, 100.0, 2000.0);
    space.Prepare();
    EXPECT_DOUBLE_EQ(space.best[0], std::log(2000.0));
    EXPECT_LT(space.SecondCoordinate(0), std::log(2000.0)); // the limit is in the way: to the other side
    space.EvaluateBeside(space.best, std::vector{1.0}, 5.0);
    EXPECT_EQ(space.callback.last[0], 2000.0);
    space.EvaluateBeside(space.best, std::vector{1.0}, -50.0);
    EXPECT_EQ(space.callback.last[0], 100.0); // to the bit, though the coordinate is a logarithm
}

TEST(SearchSpace, EqualPointsOrLimitsWithoutRoomHoldAParameter)
{
    Space space({1.0}, 3);
    space.SetParameter(0, 0.1, 0.1, 0.0, 1e20);
    space.SetParameter(1, 5.0, 6.0, 0.0, 1e20);
    space.SetParameter(2, 7.0, 8.0, 7.5, 7.5);
    space.Prepare();
    ASSERT_EQ(space.Free(), 1U);

    space.Evaluate({std::log(9.0)});

    EXPECT_EQ(space.callback.last[0], 0.1);
    EXPECT_EQ(space.callback.last[2], 7.5);
}

TEST(SearchSpace, TheBestPointIsKeptWithItsValue)
{
    Space space({5.0, 3.0, 4.0});
    space.SetParameter(0, 1.0, 2.0, 0.0, 1e20);
    space.Prepare();
    for (const double u : {0.0, 0.5, 1.0})
        space.Evaluate({u});

    EXPECT_EQ(space.best[0], 0.5);
    EXPECT_EQ(space.bestValue, 3.0);
    EXPECT_EQ(space.Evaluations(), 3);
}

TEST(SearchSpace, NotANumberAndInfinityAreTheWorstValues)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Space space({std::numeric_limits<double>::quiet_NaN(), kInfinity, -kInfinity});
    space.SetParameter(0, 1.0, 2.0, 0.0, 1e20);
    space.Prepare();

    EXPECT_EQ(space.Evaluate({0.0}), 3.4e38);
    EXPECT_EQ(space.Evaluate({0.0}), 3.4e38);
    EXPECT_EQ(space.Evaluate({0.0}), 3.4e38); // the logarithm of zero is no best of all fits
}

TEST(SearchSpace, ValuesBeyondTheRangeOfTheFloatsEndThere)
{
    Space space({1e300, -1e300});
    space.SetParameter(0, 1.0, 2.0, 0.0, 1e20);
    space.Prepare();

    EXPECT_EQ(space.Evaluate({0.0}), 3.4e38);
    EXPECT_EQ(space.Evaluate({0.0}), -3.4e38);
}

// Differences of coordinates must not overflow: without a limit a parameter ends at 1e300.
TEST(SearchSpace, LimitsThatAreNoneEndWhereDifferencesStillExist)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Space space({1.0});
    space.SetParameter(0, -1.0, 1.0, -kInfinity, kInfinity);
    space.Prepare();
    space.Evaluate({1e308});
    EXPECT_EQ(space.callback.last[0], 1e300);
    space.Evaluate({-1e308});
    EXPECT_EQ(space.callback.last[0], -1e300);
}

// Where the logarithms of zero and of 1e300 stand, on either side of 1.
TEST(SearchSpace, TheCoordinateOfZeroIsTheLogarithmOfOneIn1e300)
{
    Space space({1.0});
    space.SetParameter(0, 1.0, 2.0, 0.0, std::numeric_limits<double>::infinity());
    space.Prepare();
    EXPECT_DOUBLE_EQ(space.Within(0, -1e4), -300.0 * std::log(10.0));
    EXPECT_DOUBLE_EQ(space.Within(0, 1e4), 300.0 * std::log(10.0));
}

// A limit of zero has no logarithm, an infinite start no share of itself, and the share of a tiny start that
// an open limit makes is infinite: a simplex with such a vertex asked for points that were not numbers.
TEST(SearchSpace, EveryCoordinateIsFinite)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const auto& [start, second, lower] : {std::tuple{1.0, 2.0, 0.0},
                                               {kInfinity, 5.0, -kInfinity},
                                               {kInfinity, 5.0, 0.0},
                                               {1e-310, 2e-310, -kInfinity}}) {
        Space space({1.0});
        space.SetParameter(0, start, second, lower, kInfinity);
        space.Prepare();
        for (const double u : {space.best[0], space.SecondCoordinate(0), space.Within(0, -kInfinity),
                               space.Within(0, kInfinity)})
            EXPECT_LE(std::fabs(u), 1e300) << start;
        space.Evaluate({space.Within(0, -kInfinity)});
        EXPECT_EQ(space.callback.last[0], std::max(lower, -1e300)); // the limit, to the bit
    }
}
