// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Checked.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace
{
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargestDouble = std::numeric_limits<double>::max();
constexpr float kLargestFloat = std::numeric_limits<float>::max();

std::uint32_t NumberOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}
} // namespace

TEST(Checked, ToFloatRoundsToTheNearestFloatTiesToEven)
{
    EXPECT_EQ(checked::ToFloat(0.1), 0.1F);
    EXPECT_EQ(checked::ToFloat(16777217.0), 16777216.0F); // 2^24 + 1 lies midway; 2^24 is even
    EXPECT_EQ(checked::ToFloat(16777219.0), 16777220.0F);
    EXPECT_EQ(checked::ToFloat(1e-60), 0.0F);
    EXPECT_TRUE(std::signbit(checked::ToFloat(-0.0)));
}

// Largest float: (2 - 2^-23) * 2^127; the next would be 2^128, and half way between is 3.4028235677973366e38.
TEST(Checked, ToFloatOverflowsWhereTheNextFloatWouldBeNearer)
{
    const double halfWay = 3.4028235677973366e38;
    EXPECT_EQ(checked::ToFloat(kLargestFloat), kLargestFloat);
    EXPECT_EQ(checked::ToFloat(std::nextafter(halfWay, 0.0)), kLargestFloat);
    EXPECT_EQ(checked::ToFloat(-std::nextafter(halfWay, 0.0)), -kLargestFloat);
    EXPECT_EQ(NumberOf([&] { checked::ToFloat(halfWay); }), 6U);
    EXPECT_EQ(NumberOf([&] { checked::ToFloat(-halfWay); }), 6U);
    EXPECT_EQ(NumberOf([&] { checked::ToFloat(kInfinity); }), 6U);
    EXPECT_EQ(NumberOf([&] { checked::ToFloat(kNaN); }), 5U);
}

TEST(Checked, FinitePassesWhatIsFiniteAndTellsTheRestApart)
{
    EXPECT_EQ(checked::Finite(kLargestDouble), kLargestDouble);
    EXPECT_EQ(NumberOf([] { checked::Finite(-kInfinity); }), 6U);
    EXPECT_EQ(NumberOf([] { checked::Finite(kNaN); }), 5U);
}

TEST(Checked, DivisionByZeroRaises11AlsoForZeroOverZero)
{
    EXPECT_EQ(checked::Div(1.0, 4.0), 0.25);
    EXPECT_EQ(checked::Div(0.0, 3.0), 0.0);
    EXPECT_EQ(NumberOf([] { checked::Div(1.0, 0.0); }), 11U);
    EXPECT_EQ(NumberOf([] { checked::Div(0.0, -0.0); }), 11U);
    EXPECT_EQ(NumberOf([] { checked::Div(kLargestDouble, 0.5); }), 6U);
    EXPECT_EQ(NumberOf([] { checked::Div(kNaN, 1.0); }), 5U);
}

TEST(Checked, ALogarithmNeedsAnArgumentAboveZero)
{
    EXPECT_EQ(checked::Ln(1.0), 0.0);
    EXPECT_LT(checked::Ln(std::numeric_limits<double>::denorm_min()), -744.0); // ln 2^-1074 = -744.44
    for (const double bad : {0.0, -0.0, -1.0, kNaN})
        EXPECT_EQ(NumberOf([bad] { checked::Ln(bad); }), 5U) << bad;
}

TEST(Checked, AnExponentialOverflowsAboveTheLogarithmOfTheLargestNumber)
{
    EXPECT_EQ(checked::Exp(0.0), 1.0);
    EXPECT_EQ(checked::Exp(-1000.0), 0.0);
    EXPECT_GT(checked::Exp(709.0), 1e307); // ln(largest) = 709.78
    EXPECT_EQ(NumberOf([] { checked::Exp(710.0); }), 6U);
    EXPECT_EQ(NumberOf([] { checked::Exp(kNaN); }), 5U);
}

TEST(Checked, ARootNeedsAnArgumentOfAtLeastZero)
{
    EXPECT_EQ(checked::Sqrt(9.0), 3.0);
    EXPECT_EQ(checked::Sqrt(0.0), 0.0);
    EXPECT_EQ(NumberOf([] { checked::Sqrt(-1e-300); }), 5U);
    EXPECT_EQ(NumberOf([] { checked::Sqrt(kNaN); }), 5U);
}

TEST(Checked, APowerOfANegativeNumberNeedsAWholeExponent)
{
    EXPECT_EQ(checked::Pow(2.0, 10.0), 1024.0);
    EXPECT_EQ(checked::Pow(-2.0, 3.0), -8.0);
    EXPECT_EQ(checked::Pow(0.0, 0.0), 1.0);
    EXPECT_EQ(NumberOf([] { checked::Pow(-2.0, 0.5); }), 5U);
    EXPECT_EQ(NumberOf([] { checked::Pow(0.0, -1.0); }), 5U);
    EXPECT_EQ(NumberOf([] { checked::Pow(1e200, 2.0); }), 6U);
}

TEST(Checked, WholeNumbersAreRoundedTiesToEvenAndMustFit)
{
    EXPECT_EQ(checked::ToInt16(0.5), 0);
    EXPECT_EQ(checked::ToInt16(1.5), 2);
    EXPECT_EQ(checked::ToInt16(-2.5), -2);
    EXPECT_EQ(checked::ToInt16(32767.4), 32767);
    EXPECT_EQ(checked::ToInt16(-32768.5), -32768); // midway, and the even neighbour fits
    EXPECT_EQ(NumberOf([] { checked::ToInt16(32767.5); }), 6U);
    EXPECT_EQ(NumberOf([] { checked::ToInt16(-32769.0); }), 6U);
    EXPECT_EQ(NumberOf([] { checked::ToInt16(kNaN); }), 6U);
    EXPECT_EQ(checked::ToInt32(2147483647.0), 2147483647);
    EXPECT_EQ(checked::ToInt32(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(NumberOf([] { checked::ToInt32(2147483648.0); }), 6U);
    EXPECT_EQ(NumberOf([] { checked::ToInt32(kInfinity); }), 6U);
}
