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

namespace
{
/// Wrapped to `width` bytes, or whatever `fits` makes of it.
std::vector<std::string> Wrap(const std::string& text, std::size_t width, const std::string& hanging = {})
{
    return WrapText(text, hanging, [=](const std::string& line) { return line.size() <= width; });
}
using Lines = std::vector<std::string>;
} // namespace

TEST(Text, ATextThatFitsStaysOnOneLineWithAllItsBlanks)
{
    EXPECT_EQ(Wrap("", 5), (Lines{""}));
    EXPECT_EQ(Wrap(" a  b", 5), (Lines{" a  b"}));
}

TEST(Text, ALongTextIsPartedAtTheLastBlankThatFitsAndTheBlanksThereGo)
{
    EXPECT_EQ(Wrap("aa bb cc", 5), (Lines{"aa bb", "cc"}));
    EXPECT_EQ(Wrap("aa bb cc", 7), (Lines{"aa bb", "cc"}));
    EXPECT_EQ(Wrap("aa    bb", 5), (Lines{"aa", "bb"}));
    EXPECT_EQ(Wrap("aa bb   ", 5), (Lines{"aa bb"}));
}

TEST(Text, FurtherLinesBeginWithTheHangingWhichTakesRoom)
{
    EXPECT_EQ(Wrap("1. aa bb cc dd", 8, "   "), (Lines{"1. aa bb", "   cc dd"}));
    EXPECT_EQ(Wrap("1. aa bb cc dd", 7, "   "), (Lines{"1. aa", "   bb", "   cc", "   dd"}));
}

TEST(Text, AWordLongerThanALineIsPartedBetweenCharacters)
{
    EXPECT_EQ(Wrap("a /home/fish", 5), (Lines{"a", "/home", "/fish"}));
    EXPECT_EQ(Wrap("  long", 4), (Lines{"  lo", "ng"})); // the blanks in front are no place to part
    EXPECT_EQ(Wrap("\u00E9t\u00E9", 4), (Lines{"\u00E9t", "\u00E9"})); // of two bytes each
}

TEST(Text, WhereNothingFitsEachLineTakesOneCharacter)
{
    EXPECT_EQ(Wrap("ab", 0), (Lines{"a", "b"}));
    EXPECT_EQ(Wrap("\u00E9b", 1), (Lines{"\u00E9", "b"}));
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
