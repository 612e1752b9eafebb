// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Windows1252.h"

#include <gtest/gtest.h>

TEST(Windows1252, PlainLettersStayAndOthersBecomeUtf8)
{
    EXPECT_EQ(FromWindows1252("Ling 1986"), "Ling 1986");
    EXPECT_EQ(FromWindows1252("\xE9t\xE9"), "\u00E9t\u00E9");
    EXPECT_EQ(FromWindows1252("\x80\x96\xFF"), "\u20AC\u2013\u00FF"); // euro, en dash, y with diaeresis
    EXPECT_EQ(FromWindows1252("\x81"), "\u0081");                     // left open by the page
}

// The code page as it was published, 27 letters and signs and five places left open.
TEST(Windows1252, EachByteOfTheHighBlockIsItsOwnSign)
{
    EXPECT_EQ(FromWindows1252("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E\x91"
                              "\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
              "\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D\u2018"
              "\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178");
    EXPECT_EQ(FromWindows1252("\x81\x8D\x8F\x90\x9D"), "\u0081\u008D\u008F\u0090\u009D");
}

TEST(Windows1252, EveryByteBecomesWellFormedUtf8)
{
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_TRUE(IsUtf8(FromWindows1252(std::string(1, static_cast<char>(byte))))) << byte;
}

TEST(Windows1252, IllFormedUtf8IsRecognised)
{
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("\u00E9 \u20AC \U0001F41F"));
    for (const char* bad : {"\xE9", "\xE9t\xE9", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                            "\xFF", "\x80", "\xE2\x82"})
        EXPECT_FALSE(IsUtf8(bad));
}

TEST(Windows1252, TextOfUnknownMakingIsUtf8WhereItIsWellFormedAsSuch)
{
    EXPECT_EQ(ToUtf8("Lang\xC3\xB6rt"), "Lang\u00F6rt");
    EXPECT_EQ(ToUtf8("Lang\xF6rt"), "Lang\u00F6rt");
}
