// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ForeignText.h"

#include "base/Windows1252.h"

#include <gtest/gtest.h>

TEST(ForeignText, PlainTextAndLettersOfEveryScriptStay)
{
    const std::string text = "Cap\u00E9lan \u20AC5 \U0001F41F C:\\data\\cod.csv \"x\"";
    EXPECT_EQ(Quotable(text), text);
    EXPECT_EQ(Quotable(""), "");
}

TEST(ForeignText, ControlCharactersStandAsEscapes)
{
    EXPECT_EQ(Quotable("a\tb\nc\r\x1B[2J\x7F"), "a\\tb\\nc\\r\\x1b[2J\\x7f");
    EXPECT_EQ(Quotable(std::string("a\0b", 3)), "a\\x00b");
}

// U+009B begins a terminal's command as escape and bracket do; U+202E shows "gpj.exe" for "exe.jpg".
TEST(ForeignText, WhatATerminalObeysBeyondAsciiStandsAsAnEscapeToo)
{
    EXPECT_EQ(Quotable("\u009B1m"), "\\u009b1m");
    EXPECT_EQ(Quotable("\u202Egpj.exe"), "\\u202egpj.exe");
    EXPECT_EQ(Quotable("\u0085\u2028\u2069\uFEFF"), "\\u0085\\u2028\\u2069\\ufeff");
}

TEST(ForeignText, BytesThatAreNoUtf8StandAsEscapes)
{
    EXPECT_EQ(Quotable("\xE9t\xE9"), "\\xe9t\\xe9");
    EXPECT_EQ(Quotable("\xC0\x80|\xED\xA0\x80|\xE2\x82"), "\\xc0\\x80|\\xed\\xa0\\x80|\\xe2\\x82");
    for (int lead = 0; lead < 256; ++lead)
        for (int next = 0; next < 256; ++next) {
            const std::string text{static_cast<char>(lead), static_cast<char>(next), 'a'};
            EXPECT_TRUE(IsUtf8(Quotable(text))) << lead << " " << next;
            EXPECT_TRUE(IsUtf8(Printable(text))) << lead << " " << next;
        }
}

TEST(ForeignText, ThreeHundredCharactersStayAndOneMoreIsCut)
{
    const std::string full(300, 'x');
    EXPECT_EQ(Quotable(full), full);
    EXPECT_EQ(Quotable(full + "y"), full + "...");
}

// The limit counts what a reader sees, so 300 letters of two bytes fit.
TEST(ForeignText, TheLimitCountsCharactersNotBytes)
{
    std::string letters;
    for (int i = 0; i < 300; ++i)
        letters += "\u00E9";
    EXPECT_EQ(Quotable(letters), letters);
    EXPECT_EQ(Quotable(letters + "\u00E9"), letters + "...");
}

TEST(ForeignText, AnEscapeIsNeverCut)
{
    EXPECT_EQ(Quotable("ab\x1B", 6), "ab\\x1b");
    EXPECT_EQ(Quotable("ab\x1B", 5), "ab...");
}

TEST(ForeignText, AWholeMessageKeepsItsLineBreaksAndItsLength)
{
    EXPECT_EQ(Printable("First.\nSecond \x1B[2J\xFF."), "First.\nSecond \\x1b[2J\\xff.");
    EXPECT_EQ(Printable(std::string(1000, 'x')), std::string(1000, 'x'));
}
