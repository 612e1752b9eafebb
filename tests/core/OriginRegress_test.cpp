// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/OriginRegress.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace
{

OriginRegress Line(const std::vector<double>& x, const std::vector<double>& y, const std::vector<double>& w)
{
    OriginRegress line;
    line.Create(static_cast<std::int16_t>(x.size()));
    line.Weights(w);
    line.X(x);
    line.Y(y);
    line.Solve();
    return line;
}

std::uint32_t NumberRaised(const std::vector<double>& x, const std::vector<double>& y,
                           const std::vector<double>& w)
{
    try {
        Line(x, y, w);
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}

// sum w x y = 1*1*2 + 2*2*3 + 1*3*7 = 35, sum w x^2 = 1 + 8 + 9 = 18; residuals 1/18 (1, -16, 21),
// SumSq = (1 + 2*256 + 441) / 324 = 954 / 324
TEST(OriginRegress, GivesSlopeAndWeightedResidualSumOfSquares)
{
    const OriginRegress line = Line({1, 2, 3}, {2, 3, 7}, {1, 2, 1});
    EXPECT_NEAR(line.Slope(), 35.0 / 18.0, 1e-15);
    EXPECT_NEAR(line.SumSq(), 954.0 / 324.0, 1e-14);
}

TEST(OriginRegress, AWeightOfZeroTakesAPointOutWhateverStandsThere)
{
    const OriginRegress line =
        Line({1, std::numeric_limits<double>::quiet_NaN(), 3}, {2, 1e308, 6}, {1, 0, 5});
    EXPECT_EQ(line.Slope(), 2.0);
    EXPECT_EQ(line.SumSq(), 0.0);
}

// y = 1e8 x + 1 at x = 1 and -1: slope 1e8, both residuals 1. Taken as a difference of sums near 2e16, whose
// neighbours are 4 apart, the 2 would be lost.
TEST(OriginRegress, KeepsASmallSumOfSquaresBesideLargeResponses)
{
    const OriginRegress line = Line({1, -1}, {1e8 + 1, -1e8 + 1}, {1, 1});
    EXPECT_EQ(line.Slope(), 1e8);
    EXPECT_EQ(line.SumSq(), 2.0);
}

TEST(OriginRegress, FailsWithoutAnyRegressor)
{
    EXPECT_EQ(NumberRaised({0, 0}, {1, 2}, {1, 1}), 11U);
    EXPECT_EQ(NumberRaised({1, 2}, {1, 2}, {0, 0}), 11U);
    EXPECT_EQ(NumberRaised({}, {}, {}), 11U);
}

TEST(OriginRegress, FailsOnBadNumbersAndLengths)
{
    EXPECT_EQ(NumberRaised({1, 2}, {1, std::numeric_limits<double>::quiet_NaN()}, {1, 1}), 5U);
    EXPECT_EQ(NumberRaised({1, 2}, {1, 2}, {1, -1}), 5U);
    EXPECT_EQ(NumberRaised({1e200, 2}, {1, 2}, {1, 1}), 6U);
    EXPECT_EQ(NumberRaised({1, 2}, {1}, {1, 1}), 9U);
    EXPECT_EQ(NumberRaised({1, 2}, {1, 2}, {1}), 9U);
}

TEST(OriginRegress, CreateMakesItAsNew)
{
    OriginRegress line = Line({1, 2}, {2, 4.5}, {1, 1});
    line.Create(2);
    EXPECT_EQ(line.Slope(), 0.0);
    EXPECT_THROW(line.Solve(), VeltError) << "the vectors of before are forgotten";
}

} // namespace
