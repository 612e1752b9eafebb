// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AsciiImport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using namespace ascii_import;

// Seen from the desk a .csv differs in its description, in quoted cells and in cells that may be missing.
TEST_F(ImportASCIIFile, ACommaSeparatedFileBecomesTheTable)
{
    UserAssigns(2, {{1, columns::Effort}, {3, columns::TotCatchWt}});
    const std::string path =
        Write("Boats,\"Fishing year\",\"Catch, t\"\n5,1990,10.5\n,1991,NA\n6,1992,12\n", "Ling of 1990.CSV");

    ASSERT_TRUE(manager.ImportASCIIFile(path));

    EXPECT_TRUE(bench.user.messages.empty()); // no question about a description
    EXPECT_EQ(data.DSDesc(), "Ling of 1990.CSV");
    EXPECT_EQ(data.DSFName(), path);
    EXPECT_EQ(data.MinTimeP(), 1990);
    EXPECT_EQ(data.MaxTimeP(), 1992);
    EXPECT_EQ(data.Effort(1), 5.0F);
    EXPECT_EQ(data.Effort(2), -1.0F);
    EXPECT_EQ(data.TotCatchWt(2), -1.0F);
    EXPECT_EQ(data.TotCatchWt(3), 12.0F);
    EXPECT_EQ(data.ColFormat(columns::TotCatchWt), "0.0");
    EXPECT_FALSE(data.Included(2));
}

TEST_F(ImportASCIIFile, AFailureInACommaSeparatedFileIsToldUnderImportErrorWithItsLine)
{
    UserAssigns(1, {{2, columns::Effort}});
    ExpectRefused(Write("Year,Boats\n1990,5\n1991\n", "a.csv"),
                  kBadColumns + "Line 3: 1 cells stand under 2 headings.");
    EXPECT_EQ(bench.user.messages[0].title, "Import Error");
    ExpectRefused(Write("Year,Boats\n1990,5\n1991,five\n", "a.csv"),
                  kBadData + "Line 3, column \"Boats\": \"five\" is not a number.");
    ExpectRefused(Write("Year;Boats\n1990;5\n", "a.csv"),
                  kBadColumns + "Line 1: semicolons stand between the headings. Save the table with commas "
                                "between the cells and points in the numbers.");
    EXPECT_TRUE(bench.user.asked.empty()); // none of them comes as far as the wizard
    ExpectRefused(Write("Year,Boats\n1990,5\nNA,6\n1992,7\n", "a.csv"),
                  kBadData + "Line 3, column \"Year\": a time label is missing.");
}

TEST_F(ImportASCIIFile, ACommaSeparatedFileThatCannotBeReadLeavesNothingOfAnEarlierOne)
{
    UserAssigns(1, {{2, columns::Effort}});
    ASSERT_TRUE(manager.ImportASCIIFile(Write("Year,Boats\n1990,5\n", "a.csv")));
    const std::string missing = Write("", "b.csv");
    std::filesystem::remove(missing);
    EXPECT_FALSE(manager.ImportASCIIFile(missing));
    ASSERT_EQ(bench.user.messages.size(), 1U);
    EXPECT_NE(bench.user.messages[0].text.find(missing), std::string::npos);
    ExpectEmpty();
}

TEST_F(ImportASCIIFile, LabelsOfACommaSeparatedFileThatDoNotRiseByOneAreAskedAbout)
{
    UserAssigns(1, {{2, columns::Effort}});
    bench.user.answers = {Answer::No};
    EXPECT_FALSE(manager.ImportASCIIFile(Write("Year,Boats\n1990,5\n1992,6\n1991,7\n", "a.csv")));
    EXPECT_TRUE(bench.user.Saw("in line 3, 1992 follows 1990."));
    ExpectEmpty();
}
