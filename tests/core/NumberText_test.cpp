// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

using namespace number_text;

TEST(NumberText, APlainFloatHasAtMostSevenDigitsAndNoTrailingZeros)
{
    EXPECT_EQ(Plain(0.025F), "0.025");
    EXPECT_EQ(Plain(1e-7F), "1E-07");
    EXPECT_EQ(Plain(123456789.0F), "1.234568E+08");
    EXPECT_EQ(Plain(1234567.0F), "1234567");
    EXPECT_EQ(Plain(0.1F), "0.1");
    EXPECT_EQ(Plain(-1.0F), "-1");
    EXPECT_EQ(Plain(2.0F / 3.0F), "0.6666667");
    EXPECT_EQ(Plain(0.0F), "0");
    EXPECT_EQ(Plain(-0.0F), "0");
    EXPECT_EQ(Plain(std::numeric_limits<float>::max()), "3.402823E+38");
}

TEST(NumberText, APlainDoubleHasAtMostFifteenDigits)
{
    EXPECT_EQ(Plain(0.1), "0.1");
    EXPECT_EQ(Plain(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(Plain(1e100), "1E+100");
    EXPECT_EQ(Plain(-2.5e-10), "-2.5E-10");
}

TEST(NumberText, TheShortestTextReadsBackAsTheSameFloat)
{
    EXPECT_EQ(Shortest(0.1F), "0.1");
    EXPECT_EQ(Shortest(141.4607F), "141.4607");
    for (float value : {1.0F / 3.0F, 16777216.0F, 3.4e38F, 1e-45F, -1.17549435e-38F, 81.0F}) {
        const auto back = Parse(Shortest(value));
        ASSERT_TRUE(back) << value;
        EXPECT_EQ(static_cast<float>(*back), value);
    }
}

TEST(NumberText, FixedHasExactlyItsDecimals)
{
    EXPECT_EQ(Fixed(0.5, 3), "0.500");
    EXPECT_EQ(Fixed(2.0, 0), "2");
    EXPECT_EQ(Fixed(-1.005, 1), "-1.0");
}

TEST(NumberText, ANumberIsASignDigitsAPointAndAnExponent)
{
    EXPECT_EQ(Parse("5"), 5.0);
    EXPECT_EQ(Parse("+5"), 5.0);
    EXPECT_EQ(Parse("-1"), -1.0);
    EXPECT_EQ(Parse(".5"), 0.5);
    EXPECT_EQ(Parse("5."), 5.0);
    EXPECT_EQ(Parse("1e2"), 100.0);
    EXPECT_EQ(Parse("1.25E-1"), 0.125);
    EXPECT_EQ(Parse("0007"), 7.0);
    EXPECT_EQ(Parse("1e+05"), 100000.0);
}

TEST(NumberText, NothingElseIsANumber)
{
    for (const char* text : {"",
                             "-",
                             "+",
                             ".",
                             "5-",
                             "1.2.3",
                             "True",
                             "nan",
                             "inf",
                             "-inf",
                             "0x10",
                             "1e",
                             "1e+",
                             "1d2",
                             "--1",
                             "+-1",
                             " 1",
                             "1 ",
                             "1,5",
                             "\xA0"
                             "5",
                             "1e2.5",
                             "1_000",
                             "e5",
                             "&H10",
                             "5%"})
        EXPECT_FALSE(Parse(text)) << '"' << text << '"';
}

TEST(NumberText, AValueBeyond64BitsIsNoNumberAndOneTooSmallIsZero)
{
    EXPECT_TRUE(Parse("1.7e308"));
    EXPECT_FALSE(Parse("1e309"));
    EXPECT_FALSE(Parse("-1e999"));
    EXPECT_EQ(Parse("1e-999"), 0.0);
}

// The sign of the exponent used to decide alone: 400 digits with e-1 came out as 0.
TEST(NumberText, AHugeMantissaIsTooLargeWhateverTheSignOfItsExponent)
{
    EXPECT_FALSE(Parse(std::string(400, '9') + "e-1"));
    EXPECT_FALSE(Parse("-" + std::string(400, '9') + ".5E-01"));
    EXPECT_FALSE(Parse(std::string(400, '9')));
    EXPECT_FALSE(Parse("0.001e999"));
    EXPECT_FALSE(Parse("1e99999999999999999999"));
    EXPECT_EQ(Parse("1" + std::string(400, '0') + "e-400"), 1.0);
}

// Without an exponent a number too small used to be refused.
TEST(NumberText, ATinyNumberWrittenOutIsZero)
{
    EXPECT_EQ(Parse("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(Parse("-." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(Parse("0." + std::string(400, '0') + "1e+10"), 0.0);
    EXPECT_EQ(Parse("123e-999"), 0.0);
    EXPECT_EQ(Parse("1e-99999999999999999999"), 0.0);
    EXPECT_EQ(Parse("0." + std::string(400, '0') + "1e401"), 1.0);
    EXPECT_EQ(Parse("0e999"), 0.0);
}

TEST(NumberText, ANumberInALongerTextEndsWhereItsPartEnds)
{
    const std::string_view line = "12345e6";
    EXPECT_EQ(Parse(line.substr(0, 2)), 12.0);
    EXPECT_EQ(Parse(line.substr(3, 2)), 45.0);
    EXPECT_EQ(ParseTyped(line.substr(1, 3)), 234.0);
    const std::string tiny = "0." + std::string(400, '0') + "1e1"; // 1e-400, and with three more digits 1e599
    const std::string longer = tiny + "000";
    EXPECT_EQ(Parse(std::string_view(longer).substr(0, tiny.size())), 0.0);
}

TEST(NumberText, ATypedNumberMayStandBetweenBlanks)
{
    EXPECT_EQ(ParseTyped("  0.5\t"), 0.5);
    EXPECT_FALSE(ParseTyped("   "));
    EXPECT_FALSE(ParseTyped(""));
    EXPECT_FALSE(ParseTyped("1 2"));
}

TEST(NumberText, DecimalsAreThoseOfTheNumberWrittenOut)
{
    EXPECT_EQ(number_text::Decimals("12"), 0);
    EXPECT_EQ(number_text::Decimals("12."), 0);
    EXPECT_EQ(number_text::Decimals("-0.71"), 2);
    EXPECT_EQ(number_text::Decimals(".5"), 1);
    EXPECT_EQ(number_text::Decimals("1.500"), 3); // as the file has it
    EXPECT_EQ(number_text::Decimals("7.1E-2"), 3);
    EXPECT_EQ(number_text::Decimals("71e-04"), 4);
    EXPECT_EQ(number_text::Decimals("1.25e+1"), 1);
    EXPECT_EQ(number_text::Decimals("1.5E3"), 0);
    EXPECT_EQ(number_text::Decimals("0e-99999999999"), 0);
    EXPECT_EQ(number_text::Decimals(""), 0);
}
