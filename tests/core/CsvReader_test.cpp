// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/AsciiText.h"
#include "support/CsvTable.h"

#include <gtest/gtest.h>

namespace
{
std::string RefusalOf(const std::string& text)
{
    try {
        ReadCsvTable(text);
    } catch (const ImportError& error) {
        EXPECT_EQ(error.place.rfind("Line " + std::to_string(error.line) + ": ", 0), 0U) << error.place;
        return error.place;
    }
    return "taken";
}

using Cells = std::vector<std::string>;
} // namespace

TEST(CsvReader, QuotedHeadingsMayHoldBlanksCommasAndQuotes)
{
    const CsvTable table = ReadCsvTable("\"Fishing year\",\"Catch, t\",\"the \"\"index\"\"\"\n1971,5,6\n");

    EXPECT_EQ(table.headings, (Cells{"Fishing year", "Catch, t", "the \"index\""}));
}

TEST(CsvReader, EveryKindOfLineEndReadsTheSame)
{
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const CsvTable table = ReadCsvTable("a,b" + end + "1,2" + end + "3,4" + end);

        ASSERT_EQ(table.rows.size(), 2U);
        EXPECT_EQ(table.headings, (Cells{"a", "b"}));
        EXPECT_EQ(table.rows[1].cells, (Cells{"3", "4"}));
        EXPECT_EQ(table.rows[1].line, 3U);
    }
}

TEST(CsvReader, AnEmptyCellAtTheEndOfARowIsACell)
{
    EXPECT_EQ(ReadCsvTable("a,b\n1,\n").rows.front().cells, (Cells{"1", ""}));
}

TEST(CsvReader, TheLastLineNeedsNoEndAndEmptyLinesBehindItDoNotCount)
{
    EXPECT_EQ(ReadCsvTable("a,b\n1,2").rows.size(), 1U);
    EXPECT_EQ(ReadCsvTable("a,b\n1,2\n\n\n").rows.size(), 1U);
}

TEST(CsvReader, AByteOrderMarkIsNoPartOfTheFirstHeading)
{
    EXPECT_EQ(ReadCsvTable("\xEF\xBB\xBFyear,b\n1,2\n").headings.front(), "year");
}

TEST(CsvReader, ARowOfAnotherLengthIsRefusedWithItsLine)
{
    EXPECT_EQ(RefusalOf("a,b\n1,2\n3\n"), "Line 3: 1 cells stand under 2 headings.");
    EXPECT_EQ(RefusalOf("a,b\n1,2,3\n"), "Line 2: 3 cells stand under 2 headings.");
    EXPECT_EQ(RefusalOf("a,b\n1,2\n\n3,4\n"), "Line 3: 1 cells stand under 2 headings.");
}

TEST(CsvReader, AQuoteThatIsNeverClosedIsRefusedWithTheLineThatOpensIt)
{
    EXPECT_EQ(RefusalOf("a,b\n\"1,2\n3,4\n"), "Line 2: a quote is opened and never closed.");
}

// Lines of the file, not of the table: an editor shows the reader where to look.
TEST(CsvReader, LineEndsInsideAQuotedCellCountForEveryLineBehindThem)
{
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const std::string text =
            "\"Catch" + end + "in t\",b" + end + "1,\"x" + end + end + "y\"" + end + "2,z";
        const CsvTable table = ReadCsvTable(text);
        ASSERT_EQ(table.rows.size(), 2U);
        EXPECT_EQ(table.headings.front(), "Catch" + end + "in t");
        EXPECT_EQ(table.rows[0].line, 3U); // the headings take lines 1 and 2
        EXPECT_EQ(table.rows[1].line, 6U); // and this row lines 3 to 5
        EXPECT_EQ(RefusalOf(text + end + "3"), "Line 7: 1 cells stand under 2 headings.");
    }
}

TEST(CsvReader, ACellBehindALineEndInItsRowKnowsItsOwnLine)
{
    CsvReader reader("a,b,c\n\"x\ny\",\"z\n\",2\n");
    CsvRow row;
    ASSERT_TRUE(reader.Next(row));
    EXPECT_EQ(row.line, 2U);
    EXPECT_EQ(row.cells[0].line, 2U);
    EXPECT_EQ(row.cells[1].line, 3U);
    EXPECT_EQ(row.cells[2].line, 4U);
    EXPECT_FALSE(reader.Next(row));
}

TEST(CsvReader, ADoubledQuoteIsOneAndEndsNoCell)
{
    EXPECT_EQ(ReadCsvTable("a\n\"\"\"\"\n").rows.front().cells, Cells{"\""});
    EXPECT_EQ(RefusalOf("a\n\"x\"\"\n1\n"), "Line 2: a quote is opened and never closed.");
}

TEST(CsvReader, AnEmptyLineInsideAOneColumnTableIsAMissingCell)
{
    const CsvTable table = ReadCsvTable("a\n1\n\n3\n");
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.rows[1].cells, Cells{""});
    EXPECT_EQ(table.rows[2].line, 4U);
}

TEST(CsvReader, TextBehindAClosingQuoteIsRefused)
{
    EXPECT_EQ(RefusalOf("a,b\n\"1\"x,2\n"), "Line 2: text follows the closing quote of a cell.");
}

// The message used to count the cells of a table that the reader had taken apart at its decimal commas.
TEST(CsvReader, ATableWithSemicolonsOrTabsIsRefusedByThatName)
{
    EXPECT_EQ(RefusalOf("Year;Catch\n1971;5,5\n").rfind("Line 1: semicolons stand between the headings.", 0),
              0U);
    EXPECT_EQ(RefusalOf("Year\tCatch\n1971\t5\n").rfind("Line 1: tabs stand between the headings.", 0), 0U);
}

// A zero byte used to be shown on the terminal as a cell that is not a number.
TEST(CsvReader, AZeroByteIsRefusedWithItsLine)
{
    using namespace std::string_literals;
    EXPECT_EQ(RefusalOf("a,b\n1,2\0\n"s).rfind("Line 2: a zero byte", 0), 0U);
    EXPECT_EQ(RefusalOf("\xFF\xFE"
                        "a\0,\0b\0\n\0"s)
                  .rfind("Line 1: a zero byte", 0),
              0U); // UTF-16
}

TEST(CsvReader, AZeroByteIsRefusedWithItsLineWhateverEndsTheLines)
{
    using namespace std::string_literals;
    for (const std::string end : {"\n", "\r\n", "\r"})
        EXPECT_EQ(RefusalOf("a,b" + end + "1,2" + end + "3,\0"s).rfind("Line 3: a zero byte", 0), 0U);
}

TEST(CsvReader, AFileWithoutHeadingsIsRefused)
{
    for (const char* text : {"", "\n\n\n", " \t\n", "\n1,2\n", ",,\n1,2,3\n", "\xEF\xBB\xBF"})
        EXPECT_EQ(RefusalOf(text), "Line 1: there are no headings.") << text;
    EXPECT_EQ(RefusalOf(",b\n1,2\n"), "taken"); // row names often stand under nothing
}

TEST(CsvReader, MoreThan256ColumnsAreRefused)
{
    const auto wide = [](std::size_t columns) {
        std::string text = "h";
        for (std::size_t i = 1; i < columns; ++i)
            text += ",h";
        text += "\n1";
        for (std::size_t i = 1; i < columns; ++i)
            text += ",1";
        return text;
    };
    EXPECT_EQ(RefusalOf(wide(256)), "taken");
    EXPECT_EQ(RefusalOf(wide(257)), "Line 1: 257 headings; at most 256 columns can be read.");
}

TEST(CsvReader, CellsBehindThe256thAreStillCounted)
{
    EXPECT_EQ(RefusalOf("a,b\n" + std::string(999, ',')), "Line 2: 1000 cells stand under 2 headings.");
}

TEST(CsvReader, ATableWithoutRowsIsRefused)
{
    EXPECT_EQ(RefusalOf("a,b"), "Line 2: the table has no rows of values.");
    EXPECT_EQ(RefusalOf("a,b\n"), "Line 2: the table has no rows of values.");
    EXPECT_EQ(RefusalOf("\"a\n\",b\n\n"), "Line 3: the table has no rows of values.");
}

TEST(CsvReader, AnEmptyCellAndNaAreMissing)
{
    EXPECT_TRUE(IsMissing(""));
    EXPECT_TRUE(IsMissing("NA"));
    EXPECT_FALSE(IsMissing("0"));
    EXPECT_FALSE(IsMissing("nan"));
}
