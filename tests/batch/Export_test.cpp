// SPDX-License-Identifier: GPL-3.0-or-later
// velt-batch writes the table of a project as text.
#include "BatchJob.h"
#include "support/ByteStrings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

namespace
{
using namespace byte_strings;

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// A project of three periods with these columns.
std::string Project(const std::string& columns)
{
    return ProjectHeader("Ling", 1986, 1988) + columns + Counts(0, 0);
}

std::string WithEffort(std::initializer_list<float> effort)
{
    return Project(AbsentColumns(3) + PresentColumn("0", effort) + AbsentColumns(11));
}
} // namespace

TEST(Export, TheTableOfAProjectIsWrittenAsText)
{
    const ScratchDirectory folder;
    const std::string text = folder.Path("out.txt");
    const BatchJob job = RunJob({"export", folder.File("a.vl3", WithEffort({1, 0.1F, -1})), "--text", text});
    EXPECT_EQ(job.status, 0) << job.err;
    EXPECT_EQ(job.out, "File Exported Successfully to ASCII file " + text + "\n");
    EXPECT_EQ(job.err, "");
    EXPECT_EQ(folder.Read("out.txt"),
              "Ling\r\nTime\tEffort_\t\r\n1986\t1\t\r\n1987\t0.1\t\r\n1988\t-1\t\r\n");
}

TEST(Export, AFitOfTheExportedTextIsTheFitOfTheProject)
{
    const ScratchDirectory folder;
    const std::string project = Sample("projects/two_fits.vl3");
    const std::string text = folder.Path("out.txt");
    ASSERT_EQ(RunJob({"export", project, "--text", text}).status, 0);
    const BatchJob fromText = RunJob({"fit", "--data", text, "--time-column", "Time", "--columns",
                                      "Tot_Catch_wt=Tot. Catch Wt,Effort_=Effort,Catch_Wt=Catch Wt",
                                      "--model", "schaefer", "--format", "json"});
    const BatchJob fromProject =
        RunJob({"fit", "--data", project, "--model", "schaefer", "--format", "json"});
    ASSERT_EQ(fromText.status, 0) << fromText.err;
    EXPECT_EQ(fromText.Json()["Estimates"], fromProject.Json()["Estimates"]);
}

TEST(Export, AFileThatExistsIsReplacedOnlyWithForce)
{
    const ScratchDirectory folder;
    const std::string text = folder.File("out.TXT", "somebody's work");
    const BatchJob refused = RunJob({"export", Sample("projects/minimal.vl3"), "--text", text});
    EXPECT_EQ(refused.status, 2);
    EXPECT_TRUE(Has(refused.err, "out.TXT exists already; --force replaces it.")) << refused.err;
    EXPECT_EQ(folder.Read("out.TXT"), "somebody's work");
    EXPECT_EQ(RunJob({"export", Sample("projects/minimal.vl3"), "--text", text, "--force"}).status, 0);
    EXPECT_EQ(folder.Read("out.TXT"), "No columns yet\r\nTime\t\r\n1\t\r\n2\t\r\n3\t\r\n");
}

TEST(Export, AValueThatATextFileCannotHoldIsBadDataAndTheOldFileStands)
{
    const ScratchDirectory folder;
    const std::string project =
        folder.File("a.vl3", WithEffort({1, std::numeric_limits<float>::infinity(), 3}));
    const std::string text = folder.File("out.txt", "old");
    const BatchJob job = RunJob({"export", project, "--text", text, "--force"});
    EXPECT_EQ(job.status, 3);
    EXPECT_TRUE(Has(job.err, "\"Effort\" of period 1987 is infinite")) << job.err;
    EXPECT_EQ(folder.Read("out.txt"), "old");
}

// Catch over a mean weight of 0.
TEST(Export, ColumnsWhoseConversionFailsAreExportedAsTheyStandAndThatIsTold)
{
    const ScratchDirectory folder;
    const std::string project = folder.File(
        "a.vl3", Project(AbsentColumns(2) + PresentColumn("0", {0, 2, 2}) + PresentColumn("0", {1, 1, 1}) +
                         PresentColumn("0", {5, 6, 7}) + AbsentColumns(10)));
    const BatchJob job = RunJob({"export", project, "--text", folder.Path("out.txt")});
    EXPECT_EQ(job.status, 0);
    EXPECT_TRUE(Has(
        job.err,
        "Division by zero: Catch Nums of row 1 cannot be derived.\nThe columns are exported as they stand"))
        << job.err;
    EXPECT_TRUE(Has(folder.Read("out.txt"), "\r\n1986\t0\t1\t5\t\r\n"));
}

TEST(Export, WhatCannotBeReadOrWrittenIsToldWithItsPlace)
{
    const ScratchDirectory folder;
    const std::string minimal = Sample("projects/minimal.vl3");
    const std::string text = folder.Path("out.txt");
    const auto fails = [](int status, std::vector<std::string> words, const std::string& sentence) {
        const BatchJob job = RunJob(std::move(words));
        EXPECT_EQ(job.status, status);
        EXPECT_TRUE(Has(job.err, sentence)) << job.err;
        EXPECT_EQ(job.out, "");
    };
    fails(2, {"export", minimal, "--text", folder.Path("missing/out.txt")}, "cannot be written");
    fails(2, {"export", minimal, "--text", folder.Path("out.csv")}, "--text ends in .txt");
    fails(2, {"export", minimal}, "--text");
    fails(2, {"export", minimal, "--text", ""}, "--text: the value is empty.");
    fails(3, {"export", folder.Path("none.vl3"), "--text", text}, "That path doesn't exist.");
    fails(3, {"export", Sample("legacy/old_good.vl2"), "--text", text}, "velt-batch convert");
    fails(3, {"export", Sample("expected/const25.txt"), "--text", text}, "no project of version 3.0");
    fails(3, {"export", folder.File("cut.vl3", WithEffort({1}).substr(0, 300)), "--text", text}, "Byte ");
    EXPECT_FALSE(std::filesystem::exists(text));
}

TEST(Export, AProjectIsNotReplacedByItsOwnExportUnderAnotherName)
{
    const ScratchDirectory folder;
    const std::string bytes = WithEffort({1});
    const std::string project = folder.File("a.vl3", bytes);
    std::filesystem::create_symlink(project, folder.Path("link.txt"));
    const BatchJob job = RunJob({"export", project, "--text", folder.Path("link.txt"), "--force"});
    EXPECT_EQ(job.status, 2);
    EXPECT_TRUE(Has(job.err, "is the file that is read")) << job.err;
    EXPECT_EQ(folder.Read("a.vl3"), bytes);
}
