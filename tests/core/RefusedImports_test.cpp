// SPDX-License-Identifier: GPL-3.0-or-later
// Text files that are asked about or refused.
#include "core/AsciiImport.h"
#include "support/NoHandlesLeft.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>

using namespace ascii_import;

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
