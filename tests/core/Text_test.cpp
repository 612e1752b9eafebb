// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Text.h"

#include <gtest/gtest.h>

TEST(Text, ATextIsPaddedOrCutToItsWidth)
{
    EXPECT_EQ(PadString("ab", 4), "ab  ");
    EXPECT_EQ(PadString("abcd", 4), "abcd");
    EXPECT_EQ(PadString("abcde", 4), "abcd");
    EXPECT_EQ(PadString("", 2), "  ");
    EXPECT_EQ(PadString("abc", 0), "");
}

TEST(Text, PaddingCountsCharactersAndNeverCutsOneInTwo)
{
    EXPECT_EQ(PadString("\u00E9t\u00E9", 5), "\u00E9t\u00E9  ");
    EXPECT_EQ(PadString("\u00E9t\u00E9", 1), "\u00E9");
}

TEST(Text, TrimmingTakesBlanksFromBothEndsOnly)
{
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim(""), "");
    EXPECT_EQ(Trim("\ta"), "\ta");
}

TEST(Text, CapitalsAreMadeOfPlainLettersOnly)
{
    EXPECT_EQ(ToUpper("aZ9.vl3"), "AZ9.VL3");
    EXPECT_EQ(ToUpper("\u00E9"), "\u00E9");
}

TEST(Text, FourNumbersSeparatedByACommaABlankAndATabGiveFourTokens)
{
    EXPECT_EQ(ParseLine("1,2 3\t4"), (std::vector<std::string>{"1", "2", "3", "4"}));
}

TEST(Text, ALineOfOnlySeparatorsYieldsNoTokens)
{
    EXPECT_TRUE(ParseLine(" ,\t, ,").empty());
    EXPECT_TRUE(ParseLine("").empty());
}

TEST(Text, AnyRunOfSeparatorsCountsAsOne)
{
    EXPECT_EQ(ParseLine("  , a ,,\t b;c  "), (std::vector<std::string>{"a", "b;c"}));
}

TEST(Text, TokensAreCountedAsTheyAreCut)
{
    for (const char* line : {"", " ,\t, ,", "a", "1,2 3\t4", "  , a ,,\t b;c  "})
        EXPECT_EQ(CountTokens(line), ParseLine(line).size()) << line;
    EXPECT_EQ(CountTokens("1,2 3\t4"), 4U);
}
