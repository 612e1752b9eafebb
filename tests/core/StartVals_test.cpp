// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/StartVals.h"

#include <gtest/gtest.h>

namespace
{
const std::string kSentence = "Starting Value must be >= 0";

double ValueOf(std::string_view typed)
{
    return std::get<double>(ReadStartingValue(typed));
}

std::string SentenceOf(std::string_view typed)
{
    return std::get<std::string>(ReadStartingValue(typed));
}
} // namespace

TEST(StartVals, AStartingValueIsAnyNumberFromNothingUp)
{
    EXPECT_EQ(ValueOf("0"), 0.0);
    EXPECT_EQ(ValueOf("  1234.5 "), 1234.5);
    EXPECT_EQ(ValueOf("4e-07"), 4e-07);
    EXPECT_EQ(ValueOf("1E+300"), 1e300); // a 64-bit number, not a float
}

TEST(StartVals, WhatIsNegativeOrNoNumberIsAnsweredWithTheSentence)
{
    for (const char* typed : {"-0.001", "", " ", "abc", "1,5", "nan", "inf", "0x10", "1E+400"})
        EXPECT_EQ(SentenceOf(typed), kSentence) << typed;
}
