// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ContourRange.h"

#include <gtest/gtest.h>

namespace
{
template <typename T>
std::string SentenceOf(const Reading<T>& reading)
{
    return std::get<std::string>(reading);
}
} // namespace

TEST(ContourRange, AKBoxHoldingAHalfIsRefusedAndAnRBoxHoldingAHalfIsAccepted)
{
    EXPECT_EQ(SentenceOf(ReadContourBound("0.5", "K")), "Value must be in the range 1 - 3.4E+38");
    EXPECT_EQ(std::get<double>(ReadContourBound("0.5", "r")), 0.5);
}

TEST(ContourRange, TheBoundsOfKRunFromOneToTheLargestFloats)
{
    EXPECT_EQ(std::get<double>(ReadContourBound("1", "K")), 1.0);
    EXPECT_EQ(std::get<double>(ReadContourBound("3.4E+38", "K")), 3.4E+38);
    EXPECT_EQ(SentenceOf(ReadContourBound("0.9999999", "K")), "Value must be in the range 1 - 3.4E+38");
    EXPECT_EQ(SentenceOf(ReadContourBound("3.41E+38", "K")), "Value must be in the range 1 - 3.4E+38");
}

TEST(ContourRange, TheBoundsOfRRunFromNothing)
{
    EXPECT_EQ(std::get<double>(ReadContourBound("0", "r")), 0.0);
    EXPECT_EQ(SentenceOf(ReadContourBound("-1E-09", "r")), "Value must be in the range 0 - 3.4E+38");
    EXPECT_EQ(SentenceOf(ReadContourBound("much", "r")), "Value must be in the range 0 - 3.4E+38");
}

TEST(ContourRange, AnotherParameterTakesAnyNumberAndRefusesOtherTextsWithoutWords)
{
    EXPECT_EQ(std::get<double>(ReadContourBound("-5", "Lambda")), -5.0);
    EXPECT_EQ(SentenceOf(ReadContourBound("five", "Lambda")), "");
}

TEST(ContourRange, ThePointsOfAnAxisAreAWholeNumberFromOneToTwoHundred)
{
    EXPECT_EQ(std::get<std::int16_t>(ReadContourPoints("1")), 1);
    EXPECT_EQ(std::get<std::int16_t>(ReadContourPoints("200")), 200);
    EXPECT_EQ(std::get<std::int16_t>(ReadContourPoints("12.7")), 13);
    for (const char* typed : {"0", "0.9", "200.1", "201", "-3", "ten", ""})
        EXPECT_EQ(SentenceOf(ReadContourPoints(typed)), "Value must be in the range 1 - 200") << typed;
}

TEST(ContourRange, EqualLowAndHighValuesGiveInvalidRangeSpecified)
{
    ContourRange range;
    range.Param1Lo = 2.0;
    range.Param1Hi = 2.0;
    range.Param2Lo = 0.0;
    range.Param2Hi = 1.0;
    EXPECT_EQ(RefuseContourRange(range), "Invalid Range specified");

    range.Param1Hi = 2.0000001;
    EXPECT_EQ(RefuseContourRange(range), std::nullopt);

    range.Param2Lo = 1.5; // the other parameter counts just the same
    EXPECT_EQ(RefuseContourRange(range), "Invalid Range specified");
}
