// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/NumberFormat.h"

#include <gtest/gtest.h>

#include <limits>

TEST(NumberFormat, TheDefaultFormatShowsTwelvePointSixAsThirteen)
{
    EXPECT_EQ(FormatNumber(12.6F, "0"), "13");
}

TEST(NumberFormat, TheMissingValueFollowsTheFormatLikeAnyNumber)
{
    EXPECT_EQ(FormatNumber(-1.0F, "0"), "-1");
    EXPECT_EQ(FormatNumber(-1.0F, "0.00"), "-1.00");
    EXPECT_EQ(FormatNumber(-1.0F, "#,0.0"), "-1.0");
    EXPECT_EQ(FormatNumber(-1.0F, "0.00E+"), "-1.00E+00");
}

TEST(NumberFormat, FixedKeepsAsManyDecimalsAsTheFormatHasZeros)
{
    EXPECT_EQ(FormatNumber(1234.5F, "0.00"), "1234.50");
    EXPECT_EQ(FormatNumber(0.0009765625F, "0.0000000000"), "0.0009765625"); // 2 to the power -10, exact
    EXPECT_EQ(FormatNumber(2.5F, "0"), "2");                                // a half goes to the even digit
}

TEST(NumberFormat, StandardSetsThousandsApart)
{
    EXPECT_EQ(FormatNumber(0.0F, "#,0"), "0");
    EXPECT_EQ(FormatNumber(999.0F, "#,0"), "999");
    EXPECT_EQ(FormatNumber(1000.0F, "#,0"), "1,000");
    EXPECT_EQ(FormatNumber(-123456.0F, "#,0"), "-123,456");
    EXPECT_EQ(FormatNumber(-1234567.0F, "#,0.0"), "-1,234,567.0");
}

TEST(NumberFormat, ScientificCarriesASignedExponent)
{
    EXPECT_EQ(FormatNumber(1234.5F, "0.00E+"), "1.23E+03"); // 1.2345
    EXPECT_EQ(FormatNumber(1.0e-7F, "0E+"), "1E-07");
    EXPECT_EQ(FormatNumber(0.0F, "0.0E+"), "0.0E+00");
}

TEST(NumberFormat, AValueThatRoundsToNothingHasNoSign)
{
    EXPECT_EQ(FormatNumber(-0.3F, "0"), "0");
    EXPECT_EQ(FormatNumber(-0.0F, "0.00E+"), "0.00E+00");
    EXPECT_EQ(FormatNumber(-0.003F, "0.00E+"), "-3.00E-03"); // nothing is lost here
}

TEST(NumberFormat, ATextThatIsNoFormatShowsTheNumberInFull)
{
    for (const char* format : {"", "0.", "#", "General", "0.0x", "#,0.00E+", "00"})
        EXPECT_EQ(FormatNumber(12.625F, format), "12.625") << format;
    EXPECT_EQ(FormatNumber(std::numeric_limits<float>::infinity(), "#,0"), "inf");
    EXPECT_EQ(FormatNumber(std::numeric_limits<float>::quiet_NaN(), "0.0E+"), "nan");
}

TEST(NumberFormat, TheLargestFloatIsWrittenOut)
{
    EXPECT_EQ(FormatNumber(std::numeric_limits<float>::max(), "0"),
              "340282346638528859811704183484516925440");
}

TEST(NumberFormat, AFixedFormatHasItsDecimalsUpToSix)
{
    EXPECT_EQ(FixedFormat(-2), "0");
    EXPECT_EQ(FixedFormat(0), "0");
    EXPECT_EQ(FixedFormat(2), "0.00");
    EXPECT_EQ(FixedFormat(6), "0.000000");
    EXPECT_EQ(FixedFormat(7), "0.000000");
}
