// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchFailure.h"
#include "batch/CsvTable.h"

#include <gtest/gtest.h>

namespace
{
std::string RefusalOf(const std::string& text)
{
    try {
        ReadCsvTable(text);
    } catch (const BatchFailure& failure) {
        EXPECT_EQ(failure.status, ExitStatus::BadData);
        return failure.message;
    }
    return "taken";
}

using Cells = std::vector<std::string>;
} // namespace

TEST(CsvTable, QuotedHeadingsMayHoldBlanksCommasAndQuotes)
{
    const CsvTable table = ReadCsvTable("\"Fishing year\",\"Catch, t\",\"the \"\"index\"\"\"\n1971,5,6\n");

    EXPECT_EQ(table.headings, (Cells{"Fishing year", "Catch, t", "the \"index\""}));
}

TEST(CsvTable, EveryKindOfLineEndReadsTheSame)
{
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const CsvTable table = ReadCsvTable("a,b" + end + "1,2" + end + "3,4" + end);

        ASSERT_EQ(table.rows.size(), 2U);
        EXPECT_EQ(table.headings, (Cells{"a", "b"}));
        EXPECT_EQ(table.rows[1].cells, (Cells{"3", "4"}));
        EXPECT_EQ(table.rows[1].line, 3U);
    }
}

TEST(CsvTable, AnEmptyCellAtTheEndOfARowIsACell)
{
    EXPECT_EQ(ReadCsvTable("a,b\n1,\n").rows.front().cells, (Cells{"1", ""}));
}

TEST(CsvTable, TheLastLineNeedsNoEndAndEmptyLinesBehindItDoNotCount)
{
    EXPECT_EQ(ReadCsvTable("a,b\n1,2").rows.size(), 1U);
    EXPECT_EQ(ReadCsvTable("a,b\n1,2\n\n\n").rows.size(), 1U);
}

TEST(CsvTable, AByteOrderMarkIsNoPartOfTheFirstHeading)
{
    EXPECT_EQ(ReadCsvTable("\xEF\xBB\xBFyear,b\n1,2\n").headings.front(), "year");
}

TEST(CsvTable, ARowOfAnotherLengthIsRefusedWithItsLine)
{
    EXPECT_EQ(RefusalOf("a,b\n1,2\n3\n"), "Line 3: 1 cells stand under 2 headings.");
    EXPECT_EQ(RefusalOf("a,b\n1,2,3\n"), "Line 2: 3 cells stand under 2 headings.");
    EXPECT_EQ(RefusalOf("a,b\n1,2\n\n3,4\n"), "Line 3: 1 cells stand under 2 headings.");
}

TEST(CsvTable, AQuoteThatIsNeverClosedIsRefusedWithTheLineThatOpensIt)
{
    EXPECT_EQ(RefusalOf("a,b\n\"1,2\n3,4\n"), "Line 2: a quote is opened and never closed.");
}

TEST(CsvTable, TextBehindAClosingQuoteIsRefused)
{
    EXPECT_EQ(RefusalOf("a,b\n\"1\"x,2\n"), "Line 2: text follows the closing quote of a cell.");
}

// The message used to count the cells of a table that the reader had taken apart at its decimal commas.
TEST(CsvTable, ATableWithSemicolonsOrTabsIsRefusedByThatName)
{
    EXPECT_EQ(RefusalOf("Year;Catch\n1971;5,5\n").rfind("Line 1: semicolons stand between the headings.", 0),
              0U);
    EXPECT_EQ(RefusalOf("Year\tCatch\n1971\t5\n").rfind("Line 1: tabs stand between the headings.", 0), 0U);
}

// A zero byte used to be shown on the terminal as a cell that is not a number.
TEST(CsvTable, AZeroByteIsRefusedWithItsLine)
{
    using namespace std::string_literals;
    EXPECT_EQ(RefusalOf("a,b\n1,2\0\n"s).rfind("Line 2: a zero byte", 0), 0U);
    EXPECT_EQ(RefusalOf("\xFF\xFE"
                        "a\0,\0b\0\n\0"s)
                  .rfind("Line 1: a zero byte", 0),
              0U); // UTF-16
}

TEST(CsvTable, ATableWithoutRowsIsRefused)
{
    EXPECT_EQ(RefusalOf(""), "Line 2: the table has no rows of values.");
    EXPECT_EQ(RefusalOf("a,b\n"), "Line 2: the table has no rows of values.");
}

TEST(CsvTable, AnEmptyCellAndNaAreMissing)
{
    EXPECT_TRUE(IsMissing(""));
    EXPECT_TRUE(IsMissing("NA"));
    EXPECT_FALSE(IsMissing("0"));
    EXPECT_FALSE(IsMissing("nan"));
}
