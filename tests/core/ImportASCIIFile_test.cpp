// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsVeltData.h"
#include "files/AsciiWizard.h"
#include "fit/clsMethManager.h"
#include "support/NoHandlesLeft.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace
{
const std::string kSamples = VELT_TEST_SAMPLES "/import/";

/// A session at the screen: a file, a person at the wizard, and the data set that comes out.
class ImportASCIIFile : public testing::Test
{
protected:
    ImportASCIIFile()
        : m_folder(
              std::filesystem::path(testing::TempDir()) /
              (std::string("velt_import_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::create_directories(m_folder);
        manager.Create(data);
    }
    ~ImportASCIIFile() override { std::filesystem::remove_all(m_folder); }

    std::string Write(const std::string& text, const std::string& name = "typed.txt")
    {
        const std::string path = (m_folder / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    /// The user takes text column `timing` for the periods, assigns what `assign` says and finishes.
    void UserAssigns(int timing, std::vector<std::pair<int, int>> assign)
    {
        bench.user.onAsciiWizard = [timing, assign](AsciiWizard& wizard) {
            wizard.ChooseTiming(timing);
            wizard.Next();
            for (const auto& [textColumn, dataColumn] : assign)
                wizard.Assign(textColumn, dataColumn);
            wizard.Finish();
            return true;
        };
    }

    /// The same, with every heading that is the export name of a user column assigned to it.
    void UserAssignsByHeading()
    {
        bench.user.onAsciiWizard = [this](AsciiWizard& wizard) {
            wizard.ChooseTiming(1);
            wizard.Next();
            for (int i = 2; i <= wizard.TextColumns(); ++i) {
                for (int column = 1; column <= 9; ++column) {
                    if (wizard.collFlexHeadings[static_cast<std::size_t>(i - 1)] ==
                            bench.run.globals.ColumnFileNames(column) &&
                        !wizard.blnVELTColSel(column))
                        wizard.Assign(i, column);
                }
            }
            wizard.Finish();
            return true;
        };
    }

    /// The data set is as new.
    void ExpectEmpty()
    {
        EXPECT_EQ(data.DSDesc(), "");
        EXPECT_EQ(data.DSFName(), "");
        EXPECT_EQ(data.TimeInts(), 0);
        EXPECT_EQ(data.NAPoints(), 0);
        EXPECT_FALSE(data.IsDirty());
        for (int column = 1; column <= 15; ++column) {
            EXPECT_FALSE(data.ColPresent(column));
            EXPECT_EQ(data.DB(column, 1), -1.0F);
        }
        EXPECT_TRUE(data.ToggledIn(1));
        EXPECT_FALSE(data.Included(1));
    }

    /// The import of `path` fails with one box that says exactly `text`.
    void ExpectRefused(const std::string& path, const std::string& text)
    {
        bench.user.messages.clear();
        EXPECT_FALSE(manager.ImportASCIIFile(path));
        ASSERT_EQ(bench.user.messages.size(), 1U) << path;
        EXPECT_EQ(bench.user.messages[0].text, text);
        EXPECT_EQ(bench.user.messages[0].icon, Icon::Exclamation);
        ExpectEmpty();
    }

    Bench bench;
    clsVeltData data{bench.run};
    clsMethManager manager{bench.run};

private:
    std::filesystem::path m_folder;
};

const std::string kBadColumns = "Bad number of data columns. Please correct and reload file.\n";
const std::string kBadData = "Invalid or missing data. Please correct and reload file.\n";
} // namespace

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

TEST_F(ImportASCIIFile, AMissingDescriptionIsAskedAboutAndYesGoesOn)
{
    UserAssignsByHeading();
    bench.user.answers = {Answer::Yes};

    ASSERT_TRUE(manager.ImportASCIIFile(kSamples + "good_no_description.txt"));

    ASSERT_EQ(bench.user.messages.size(), 1U);
    const Message& box = bench.user.messages[0];
    EXPECT_EQ(box.text, "The File contains no file description, do you wish to continue?");
    EXPECT_EQ(box.buttons, Buttons::YesNoCancel);
    EXPECT_EQ(box.icon, Icon::Exclamation);
    EXPECT_EQ(box.title, "Import Error");
    EXPECT_EQ(data.DSDesc(), "");
    EXPECT_EQ(data.TimeInts(), 3);
}

TEST_F(ImportASCIIFile, EveryOtherAnswerToAMissingDescriptionEndsTheImport)
{
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        bench.user.messages.clear();
        bench.user.answers = {answer};
        EXPECT_FALSE(manager.ImportASCIIFile(kSamples + "good_no_description.txt"));
        EXPECT_EQ(bench.user.messages.size(), 1U); // the question and nothing behind it
        EXPECT_TRUE(bench.user.asked.empty());
        ExpectEmpty();
    }
}

TEST_F(ImportASCIIFile, TheQuestionComesBeforeAnyFailureFurtherDown)
{
    bench.user.answers = {Answer::No};
    EXPECT_FALSE(manager.ImportASCIIFile(Write("  \nTime Effort\n1\n")));
    EXPECT_EQ(bench.user.messages.size(), 1U);
    EXPECT_TRUE(bench.user.Saw("no file description"));
}

TEST_F(ImportASCIIFile, AFormatErrorShowsItsFixedTextAndTheLineBehindIt)
{
    ExpectRefused(kSamples + "bad_token_missing.txt", kBadColumns + "(line 7)");
    EXPECT_EQ(bench.user.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(bench.user.messages[0].title, "Import Error");
    ExpectRefused(kSamples + "bad_token_extra.txt", kBadColumns + "(line 7)");
    ExpectRefused(kSamples + "bad_blank_line_inside.txt", kBadColumns + "(line 7)");
    ExpectRefused(kSamples + "bad_blank_line_at_end.txt", kBadColumns + "(line 28)");
    ExpectRefused(kSamples + "bad_heading_with_blank.txt", kBadColumns + "(line 3)");
    ExpectRefused(kSamples + "bad_not_numeric.txt", kBadData + "(line 7)");
    EXPECT_TRUE(bench.user.asked.empty()); // none of them comes as far as the wizard
}

TEST_F(ImportASCIIFile, NonNumericTimeLabelsFailBeforeTheWizard)
{
    ExpectRefused(kSamples + "bad_time_text.txt", kBadData + "(line 3)");
    EXPECT_TRUE(bench.user.asked.empty());
}

TEST_F(ImportASCIIFile, MoreThan200PeriodsEndTheImportAtTheTablesLimit)
{
    const std::string text = "Subscript out of range\nThe time labels 1 to 201 make 201 periods; a table has "
                             "room for 200.";
    UserAssignsByHeading();
    ExpectRefused(kSamples + "bad_201_rows.txt", text);
    UserAssigns(1, {}); // also with nothing to store
    ExpectRefused(kSamples + "bad_201_rows.txt", text);
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

TEST_F(ImportASCIIFile, LabelsThatRunBackwardsAreRefused)
{
    UserAssigns(1, {{2, columns::Effort}});
    ExpectRefused(
        Write("Ling\nTime Effort\n3 10\n2 20\n1 30\n"),
        "Subscript out of range\nThe last time label, 1 in line 5, is below the first, 3 in line 3.");
}

TEST_F(ImportASCIIFile, ATimeLabelOutside16BitsFailsTheImport)
{
    UserAssignsByHeading();
    ExpectRefused(kSamples + "bad_label_40000.txt",
                  "Overflow\nThe time label 39999 in line 3 is no whole number from -32768 to 32767.");
}

TEST_F(ImportASCIIFile, AValueThatDoesNotFitItsCellFailsOnlyWhenItsColumnIsAssigned)
{
    const std::string path = Write("Ling\nTime Effort Other\n1 10 1\n2 20 1e39\n");
    UserAssigns(1, {{2, columns::Effort}, {3, columns::CatchWt}});
    ExpectRefused(path, "Overflow\n(line 4: a value is too large for a cell)");
    UserAssigns(1, {{2, columns::Effort}});
    EXPECT_TRUE(manager.ImportASCIIFile(path));
}

TEST_F(ImportASCIIFile, AConversionThatFailsEndsTheImport)
{
    UserAssigns(1, {{2, columns::CatchWt}, {3, columns::MeanWt}, {4, columns::Effort}});
    ExpectRefused(Write("Ling\nTime Catch Mean Effort\n1990 5 0 1\n"),
                  "Division by zero: Catch Nums of row 1 cannot be derived.");
}

TEST_F(ImportASCIIFile, AFileThatEndsInLineOneOrTwoHasAFileErrorOfItsOwn)
{
    const std::string text = "This file has a nonstandard end-of-file marker, or an attempt was made to read "
                             "beyond the end-of-file marker.\n";
    bench.user.answers = {Answer::Cancel};
    ExpectRefused(kSamples + "bad_empty.txt", text + "(line 1: the file ends before it)");
    EXPECT_EQ(bench.user.messages[0].title, "File Error");
    EXPECT_EQ(bench.user.messages[0].buttons, Buttons::RetryCancel);
    bench.user.answers = {Answer::Cancel};
    ExpectRefused(kSamples + "bad_one_line.txt", text + "(line 2: the file ends before it)");
}

TEST_F(ImportASCIIFile, AMissingFileAndAFolderAreFileErrors)
{
    const std::string missing = kSamples + "nowhere.txt";
    ExpectRefused(missing, "That path doesn't exist.\n" + missing);
    EXPECT_EQ(bench.user.messages[0].title, "File Error");
    ExpectRefused(kSamples, "That path or filename cannot be accessed.\n" + kSamples);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

// A failure that the file errors do not list used to show an empty box.
TEST_F(ImportASCIIFile, ALoopOfLinksIsAnUnidentifiedErrorWithItsPath)
{
    const std::string loop = Write("") + ".loop.txt";
    std::filesystem::create_symlink(loop, loop);

    ExpectRefused(loop, "Default Error Message: An internal unidentified error has occured.\n" + loop +
                            "\n(" + std::system_category().message(ELOOP) + ")");

    EXPECT_EQ(bench.user.messages[0].title, "File Error");
    EXPECT_EQ(bench.user.messages[0].buttons, Buttons::Ok);
}

TEST_F(ImportASCIIFile, NoFileHandleLeftIsAnUnidentifiedErrorToo)
{
    const std::string path = Write("Ling\nTime Effort\n1 5\n");
    const NoHandlesLeft none;
    ExpectRefused(path, "Default Error Message: An internal unidentified error has occured.\n" + path +
                            "\n(" + std::system_category().message(EMFILE) + ")");
}

TEST_F(ImportASCIIFile, RetryReadsTheFileAgain)
{
    class MendingUser : public ScriptedUser
    {
    public:
        std::function<void()> mend;
        Answer Show(const Message& message) override
        {
            const Answer answer = ScriptedUser::Show(message);
            mend();
            return answer;
        }
    };
    const std::string path = Write("");
    MendingUser user;
    user.answers = {Answer::Retry};
    user.mend = [&] { Write("Ling\nTime Effort\n1 5\n"); };
    user.onAsciiWizard = [](AsciiWizard& wizard) {
        wizard.ChooseTiming(1);
        wizard.Next();
        wizard.Finish();
        return true;
    };
    struct Run run(user, bench.window, bench.meter, bench.random);
    clsVeltData mended(run);
    clsMethManager attentive(run);
    attentive.Create(mended);

    EXPECT_TRUE(attentive.ImportASCIIFile(path));

    EXPECT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(mended.DSDesc(), "Ling");
}

TEST_F(ImportASCIIFile, AHugeFileIsRefusedWithItsSize)
{
    const std::string path = Write("");
    std::filesystem::resize_file(path, std::uintmax_t{10} << 20U);
    ExpectRefused(path, kBadData + "(the file has 10485760 bytes; at most 1048576 can be imported)");
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
