// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AsciiImport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

using namespace ascii_import;

TEST_F(ImportASCIIFile, AGoodFileBecomesTheTable)
{
    UserAssignsByHeading();

    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "good_tabs.txt"));

    EXPECT_TRUE(bench.user.messages.empty());
    EXPECT_EQ(data.DSDesc(), "Scallop dredge fishery, south banks");
    EXPECT_EQ(data.DSFName(), kSamples + "good_tabs.txt");
    EXPECT_EQ(data.MinTimeP(), 1974);
    EXPECT_EQ(data.MaxTimeP(), 1998);
    EXPECT_EQ(data.TimeInts(), 25);
    EXPECT_EQ(data.NAPoints(), 25);
    EXPECT_EQ(data.OrigNAPoints(), 25);
    EXPECT_EQ(data.NDPoints(), 26);
    EXPECT_EQ(data.NNtPoints(), 25);
    EXPECT_TRUE(data.IsDirty());
    EXPECT_EQ(data.TotCatchWt(1), 251.8F);
    EXPECT_EQ(data.Effort(1), 81.0F);
    EXPECT_EQ(data.CatchWt(1), 226.6F);
    EXPECT_EQ(data.TotCatchWt(25), 164.7F);
    EXPECT_EQ(data.CatchWt(25), 148.2F);
    EXPECT_EQ(data.TotCatchWt(26), -1.0F);
    EXPECT_TRUE(data.Included(25));
    EXPECT_FALSE(data.Included(26));
    EXPECT_FALSE(data.ToggledIn(26));
}

TEST_F(ImportASCIIFile, TheWizardGetsTheFileItsHeadingsAndTheTitlesOfTheUserColumns)
{
    bench.user.onAsciiWizard = [](AsciiWizard& wizard) {
        EXPECT_EQ(wizard.fileName, kSamples + "good_numbers.txt");
        EXPECT_EQ(wizard.collFlexHeadings, (std::vector<std::string>{"Time", "Effort_", "Catch_Wt"}));
        EXPECT_EQ(wizard.collFlexData.at(1), (std::vector{5.0, 0.5, 5.0}));
        EXPECT_EQ(wizard.columnTitles.front(), "Tot. Catch Wt");
        EXPECT_EQ(wizard.columnTitles.back(), "Recruit. Index");
        return false;
    };
    EXPECT_FALSE(manager.ImportASCIIFile(kSamples + "good_numbers.txt"));
    EXPECT_EQ(bench.user.asked, std::vector<std::string>{"ascii wizard"});
}

TEST_F(ImportASCIIFile, LineEndsAndSeparatorsMakeNoDifference)
{
    UserAssignsByHeading();
    for (const char* name : {"good_no_last_newline.txt", "good_mixed_separators.txt"}) {
        ASSERT_TRUE(manager.ImportASCIIFile(kSamples + name)) << name;
        EXPECT_EQ(data.TimeInts(), 25);
        EXPECT_EQ(data.TotCatchWt(1), 251.8F) << name;
        EXPECT_EQ(data.Effort(25), 142.0F) << name;
    }
    EXPECT_EQ(data.DSDesc(), "Trimmed description");
}

TEST_F(ImportASCIIFile, EveryFormOfANumberIsRead)
{
    UserAssignsByHeading();
    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "good_numbers.txt"));
    EXPECT_EQ(data.Effort(1), 5.0F);
    EXPECT_EQ(data.CatchWt(1), 100.0F);
    EXPECT_EQ(data.Effort(2), 0.5F);
    EXPECT_EQ(data.CatchWt(2), -1.0F);
    EXPECT_EQ(data.Effort(3), 5.0F);
    EXPECT_EQ(data.CatchWt(3), 0.125F);
}

TEST_F(ImportASCIIFile, FinishWithNoColumnAssignedGivesADataSetWithNoColumns)
{
    UserAssigns(1, {});
    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "good_no_assignment.txt"));
    EXPECT_EQ(data.TimeInts(), 25);
    EXPECT_EQ(data.NNtPoints(), 0);
    for (int column = 1; column <= 15; ++column)
        EXPECT_FALSE(data.ColPresent(column));
}

TEST_F(ImportASCIIFile, RowsBehindTheLabelledRangeAreDropped)
{
    UserAssignsByHeading();
    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "good_rows_dropped.txt")); // labels 1, 5, 2
    EXPECT_EQ(data.TimeInts(), 2);
    EXPECT_EQ(data.Effort(1), 10.0F);
    EXPECT_EQ(data.Effort(2), 20.0F);
    EXPECT_EQ(data.Effort(3), -1.0F);
}

TEST_F(ImportASCIIFile, ConversionsRunAtTheEnd)
{
    UserAssigns(1, {{2, columns::AbundIndex}, {3, columns::TotCatchWt}});
    ASSERT_TRUE(manager.ImportASCIIFile(Write("Ling\nYear Index Catch\n1990 2.5 10\n1991 -1 11\n")));
    EXPECT_EQ(data.CatchWt(1), 2.5F);
    EXPECT_EQ(data.Effort(1), 1.0F);
    EXPECT_FALSE(data.Included(2));
    EXPECT_EQ(data.NNtPoints(), 1);
}

TEST_F(ImportASCIIFile, TheTimingColumnMayStandAnywhere)
{
    UserAssigns(2, {{1, columns::Effort}});
    ASSERT_TRUE(manager.ImportASCIIFile(Write("Ling\nEffort Year\n5 1990\n6 1991\n")));
    EXPECT_EQ(data.MinTimeP(), 1990);
    EXPECT_EQ(data.Effort(2), 6.0F);
}

TEST_F(ImportASCIIFile, TwoHundredPeriodsFit)
{
    UserAssigns(1, {{2, columns::Effort}});
    std::string text = "Ling\nTime Effort\n";
    for (int period = 1; period <= 200; ++period)
        text += std::to_string(period) + " 5\n";
    ASSERT_TRUE(manager.ImportASCIIFile(Write(text)));
    EXPECT_EQ(data.NNtPoints(), 200);
    EXPECT_EQ(data.Effort(200), 5.0F);
}

TEST_F(ImportASCIIFile, LabelsThatDoNotRiseByOneAreAskedAboutAfterFinishAndYesGoesOn)
{
    UserAssigns(1, {{2, columns::Effort}});
    bench.user.answers = {Answer::Yes};

    ASSERT_TRUE(manager.ImportASCIIFile(Write("Ling\nTime Effort\n1 10\n3 20\n3 30\n")));

    EXPECT_EQ(bench.user.asked, std::vector<std::string>{"ascii wizard"});
    ASSERT_EQ(bench.user.messages.size(), 1U);
    const Message& box = bench.user.messages[0];
    EXPECT_EQ(box.text, "The time labels do not rise by one from row to row: in line 4, 3 follows 1.\nDo you "
                        "wish to take the rows as consecutive periods all the same?");
    EXPECT_EQ(box.buttons, Buttons::YesNo);
    EXPECT_EQ(box.icon, Icon::Exclamation);
    EXPECT_EQ(box.title, "Import Error");
    EXPECT_EQ(data.TimeInts(), 3);
    EXPECT_EQ(data.Effort(3), 30.0F);
}

TEST_F(ImportASCIIFile, EveryOtherAnswerToUnevenLabelsEndsTheImport)
{
    UserAssigns(1, {{2, columns::Effort}});
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        bench.user.messages.clear();
        bench.user.answers = {answer};
        EXPECT_FALSE(manager.ImportASCIIFile(Write("Ling\nTime Effort\n1 10\n3 20\n3 30\n")));
        EXPECT_EQ(bench.user.messages.size(), 1U); // the question and nothing behind it
        ExpectEmpty();
    }
}

TEST_F(ImportASCIIFile, TimeLabels1And2And5AskForFiveRowsWhereThreeExist)
{
    UserAssigns(1, {{2, columns::Effort}});
    EXPECT_FALSE(manager.ImportASCIIFile(Write("Ling\nTime Effort\n1 10\n2 20\n5 30\n")));
    ASSERT_EQ(bench.user.messages.size(), 2U); // the question, answered Yes, and the end
    EXPECT_TRUE(bench.user.messages[0].text.starts_with(
        "The time labels do not rise by one from row to row: in line 5, 5 follows 2.\n"));
    EXPECT_EQ(bench.user.messages[1].text, "Subscript out of range\nThe time labels 1 to 5 make 5 periods, "
                                           "but the file holds 3 rows of values.");
    ExpectEmpty();
}

// Deliberate: without a column nothing is stored, and so nothing is missing.
TEST_F(ImportASCIIFile, TimeLabels1And2And5WithNothingAssignedMakeFiveEmptyRows)
{
    UserAssigns(1, {});
    ASSERT_TRUE(manager.ImportASCIIFile(Write("Ling\nTime Effort\n1 10\n2 20\n5 30\n")));
    EXPECT_EQ(data.TimeInts(), 5);
}

TEST_F(ImportASCIIFile, CancellingTheWizardIsSilentAndLeavesAnEmptyDataSet)
{
    EXPECT_FALSE(manager.ImportASCIIFile(kSamples + "good_tabs.txt")); // nothing scripted: Cancel
    EXPECT_TRUE(bench.user.messages.empty());
    ExpectEmpty();
}

TEST_F(ImportASCIIFile, AWizardLeftWithoutFinishIsACancel)
{
    bench.user.onAsciiWizard = [](AsciiWizard&) { return true; };
    EXPECT_FALSE(manager.ImportASCIIFile(kSamples + "good_tabs.txt"));
    ExpectEmpty();
}

TEST_F(ImportASCIIFile, AFailedImportLeavesNothingOfAnEarlierOne)
{
    UserAssignsByHeading();
    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "good_tabs.txt"));
    EXPECT_FALSE(manager.ImportASCIIFile(kSamples + "bad_token_extra.txt"));
    ExpectEmpty();
}

TEST_F(ImportASCIIFile, ARelativePathWorksAndIsKept)
{
    const std::string relative = std::filesystem::relative(kSamples + "good_tabs.txt").string();
    UserAssignsByHeading();
    ASSERT_TRUE(manager.ImportASCIIFile(relative));
    EXPECT_EQ(data.DSFName(), relative);
}

TEST_F(ImportASCIIFile, AnExportedProjectReadsBack)
{
    UserAssignsByHeading();
    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "two_fits_export.txt"));
    EXPECT_EQ(data.TotCatchNums(1), 141.4607F);
    EXPECT_EQ(data.RecruitIndex(25), 43.2F);
    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "minimal_export.txt"));
    EXPECT_EQ(data.TimeInts(), 3);
    EXPECT_FALSE(data.ColPresent(columns::Effort));
}

TEST_F(ImportASCIIFile, AMalformedFileIsReadSanelyOrRefusedAndLeavesNoHalfTable)
{
    UserAssignsByHeading();
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSamples + "hostile")) {
        if (entry.path().extension() != ".txt")
            continue;
        ++files;
        bench.user.messages.clear();
        if (manager.ImportASCIIFile(entry.path().string())) {
            EXPECT_GE(data.TimeInts(), 1) << entry.path();
            EXPECT_LE(data.TimeInts(), 200) << entry.path();
        } else {
            const auto isFailure = [](const Message& box) { return box.buttons != Buttons::YesNo; };
            EXPECT_EQ(std::count_if(bench.user.messages.begin(), bench.user.messages.end(), isFailure), 1)
                << entry.path();
            ExpectEmpty();
        }
    }
    EXPECT_EQ(files, 12);
}

TEST_F(ImportASCIIFile, EachBundledDataSetImportsWithTheColumnsItsHeadingsName)
{
    UserAssignsByHeading();
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VELT_TEST_SAMPLES "/../../samples")) {
        if (entry.path().extension() != ".txt")
            continue;
        ++files;
        EXPECT_TRUE(manager.ImportASCIIFile(entry.path().string())) << entry.path();
        EXPECT_EQ(data.NNtPoints(), data.TimeInts()) << entry.path();
        EXPECT_FALSE(data.DSDesc().empty());
        EXPECT_LE(data.DSDesc().size(), clsVeltData::kDescriptionWidth) << entry.path();
    }
    EXPECT_GE(files, 3);
}
