// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/AsciiText.h"

#include "base/FileErrors.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace
{
constexpr std::uint32_t kColumnsError = 0x80040000U + 2256U;
constexpr std::uint32_t kDataError = 0x80040000U + 2257U;

std::span<const std::uint8_t> Bytes(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

AsciiText Read(std::string_view text)
{
    return ReadAsciiText(Bytes(text));
}

/// The failure of reading `text`; number 0 when it is read.
ImportError Failure(std::string_view text)
{
    try {
        Read(text);
    } catch (const ImportError& error) {
        return error;
    }
    return {0, "read without a failure", ""};
}

const std::string kGood = "Ling\nTime Effort Catch\n1990 10 5.5\n1991 11 6.5\n";
} // namespace

TEST(AsciiText, LineOneIsTheDescriptionLineTwoTheHeadingsTheRestRows)
{
    const AsciiText text = Read(kGood);

    EXPECT_EQ(text.description, "Ling");
    EXPECT_EQ(text.headings, (std::vector<std::string>{"Time", "Effort", "Catch"}));
    ASSERT_EQ(text.Rows(), 2U);
    EXPECT_EQ(text.columns[0], (std::vector{1990.0, 1991.0}));
    EXPECT_EQ(text.columns[1], (std::vector{10.0, 11.0}));
    EXPECT_EQ(text.columns[2], (std::vector{5.5, 6.5}));
    EXPECT_EQ(text.lines, (std::vector<std::size_t>{3, 4}));
}

TEST(AsciiText, CrLfAndLfAndCrEndALine)
{
    const AsciiText text = Read("Ling\r\nTime Effort\r1990 10\n1991 11\r\n1992 12");
    EXPECT_EQ(text.description, "Ling");
    EXPECT_EQ(text.columns[1], (std::vector{10.0, 11.0, 12.0}));
}

TEST(AsciiText, LfThenCrIsTwoLineEndsAndSoAnEmptyLine)
{
    EXPECT_EQ(Failure("Ling\nTime\n1\n\r2\n").line, 4U);
}

TEST(AsciiText, AByteOrderMarkIsSkipped)
{
    const AsciiText text = Read("\xEF\xBB\xBFLing\nTime\n1\n");
    EXPECT_EQ(text.description, "Ling");
}

TEST(AsciiText, TheDescriptionLosesItsBlanksAtBothEnds)
{
    EXPECT_EQ(Read("  Ling of the north \t\nTime\n1\n").description, "Ling of the north");
}

TEST(AsciiText, AFirstLineOfBlanksIsAMissingDescription)
{
    EXPECT_TRUE(Read("\nTime\n1\n").MissingDescription());
    EXPECT_TRUE(Read(" \t \nTime\n1\n").MissingDescription());
    EXPECT_FALSE(Read(kGood).MissingDescription());
    EXPECT_EQ(ReadAsciiDescription(Bytes("   \n")), "");
}

TEST(AsciiText, WordsOfTheCodePageAndOfUtf8AreBothUnderstood)
{
    EXPECT_EQ(Read("Lang\xF6rt\nTime Z\xE9\n1 2\n").description, "Lang\u00F6rt");
    EXPECT_EQ(Read("Lang\xF6rt\nTime Z\xE9\n1 2\n").headings[1], "Z\u00E9");
    EXPECT_EQ(Read("Lang\xC3\xB6rt\nTime\n1\n").description, "Lang\u00F6rt");
}

TEST(AsciiText, ALineWithOneTokenTooFewOrTooManyAnywhereStopsAtThatLine)
{
    for (std::size_t bad = 3; bad <= 6; ++bad) {
        for (const char* row : {"1 2\n", "1 2 3 4\n", "\n", ", ,\t\n"}) {
            std::string text = "Ling\nTime Effort Catch\n";
            for (std::size_t line = 3; line <= 6; ++line)
                text += line == bad ? row : "1 2 3\n";
            const ImportError error = Failure(text);
            EXPECT_EQ(error.number, kColumnsError);
            EXPECT_EQ(error.description, "Bad number of data columns. Please correct and reload file.");
            EXPECT_EQ(error.source, "clsVeltDATA");
            EXPECT_EQ(error.line, bad);
            EXPECT_EQ(error.place, "(line " + std::to_string(bad) + ")");
        }
    }
}

TEST(AsciiText, AValueThatIsNoNumberStopsAtItsLineAlsoInTheTimingColumn)
{
    for (const char* row :
         {"74/75 1 2", "1974 n/a 2", "1974 1 inf", "1974 1 nan", "1974 1 0x10", "1974 1 1e999"}) {
        const ImportError error = Failure(std::string("Ling\nTime Effort Catch\n1973 1 2\n") + row + "\n");
        EXPECT_EQ(error.number, kDataError) << row;
        EXPECT_EQ(error.description, "Invalid or missing data. Please correct and reload file.");
        EXPECT_EQ(error.line, 4U) << row;
    }
}

TEST(AsciiText, AFileThatEndsInLineOneOrTwoSaysSo)
{
    EXPECT_EQ(Failure("").number, 62U);
    EXPECT_EQ(Failure("").line, 1U);
    EXPECT_EQ(Failure("\xEF\xBB\xBF").line, 1U);
    EXPECT_EQ(Failure("Only a description\r\n").number, 62U);
    EXPECT_EQ(Failure("Only a description").line, 2U);
    EXPECT_EQ(Failure("Only a description").description, FindFileError(62)->text);
}

TEST(AsciiText, HeadingsWithoutARowAreRefused)
{
    EXPECT_EQ(Failure("Ling\nTime Effort\n").number, kDataError);
    EXPECT_EQ(Failure("Ling\nTime Effort\n").line, 3U);
}

TEST(AsciiText, ALineOfHeadingsWithoutAWordIsRefused)
{
    EXPECT_EQ(Failure("Ling\n , \n\n").number, kColumnsError);
    EXPECT_EQ(Failure("Ling\n , \n\n").line, 2U);
}

TEST(AsciiText, UpTo256ColumnsAreRead)
{
    const auto wide = [](std::size_t columns) {
        std::string text = "Wide\n";
        for (const char* word : {"h ", "1 "}) {
            for (std::size_t i = 0; i < columns; ++i)
                text += word;
            text += "\n";
        }
        return text;
    };
    EXPECT_EQ(Read(wide(256)).columns.size(), 256U);
    EXPECT_EQ(Failure(wide(257)).number, kColumnsError);
}

TEST(AsciiText, AZeroByteIsRefusedWithTheLine)
{
    using namespace std::string_literals;
    EXPECT_EQ(Failure("Li\0ng\nTime\n1\n"s).line, 1U);
    EXPECT_EQ(Failure("Ling\nTi\0me\n1\n"s).line, 2U);
    const ImportError error = Failure("Ling\nTime\n1\n\0002\n"s);
    EXPECT_EQ(error.number, kDataError);
    EXPECT_EQ(error.line, 4U);
    EXPECT_NE(error.place.find("zero byte"), std::string::npos);
}

TEST(AsciiText, AFileAboveTheCapIsRefusedUnread)
{
    const std::string longLine(std::size_t{10} << 20U, 'x');
    const ImportError error = Failure(longLine);
    EXPECT_EQ(error.number, kDataError);
    EXPECT_NE(error.place.find("10485760"), std::string::npos);

    EXPECT_NO_THROW(CheckTextSize(kMaxTextBytes));
    EXPECT_THROW(CheckTextSize(kMaxTextBytes + 1), ImportError);
    EXPECT_THROW(CheckTextSize(std::uintmax_t{1} << 62U), ImportError);
}

TEST(AsciiText, ALongLineWithinTheCapIsRead)
{
    const std::string text = std::string(900000, 'd') + "\nTime\n1\n";
    EXPECT_EQ(Read(text).description.size(), 900000U);
}

// Behind the last line end nothing is missing; a cut inside line 3 or 4 leaves a short row or a shorter
// number.
TEST(AsciiText, CutOffAtEveryByteItIsReadOrRefusedWithALine)
{
    for (std::size_t size = 0; size < kGood.size(); ++size) {
        try {
            const AsciiText text = Read(std::string_view(kGood).substr(0, size));
            EXPECT_EQ(text.description, "Ling");
            EXPECT_EQ(text.columns.size(), text.headings.size());
            for (const auto& column : text.columns)
                EXPECT_EQ(column.size(), text.Rows());
            EXPECT_EQ(text.lines.size(), text.Rows());
        } catch (const ImportError& error) {
            EXPECT_GE(error.line, 1U) << size;
            EXPECT_LE(error.line, 4U) << size;
            EXPECT_FALSE(error.place.empty());
        }
    }
}

TEST(AsciiText, EveryByteChangedInTurnItIsReadWholeOrRefused)
{
    int refused = 0;
    for (std::size_t at = 0; at < kGood.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = kGood;
            changed[at] = static_cast<char>(byte);
            try {
                const AsciiText text = Read(changed);
                EXPECT_EQ(text.columns.size(), text.headings.size());
                for (const auto& column : text.columns)
                    EXPECT_EQ(column.size(), text.Rows());
            } catch (const ImportError& error) {
                EXPECT_FALSE(error.description.empty());
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 1000); // most bytes are no digits
}
