// SPDX-License-Identifier: GPL-3.0-or-later
// velt-batch makes a project out of one of version 2.0.
#include "BatchJob.h"
#include "support/LegacyBytes.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{
const std::string kOld = Sample("legacy/old_good.vl2");

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

std::ptrdiff_t FilesIn(const ScratchDirectory& folder)
{
    return std::distance(std::filesystem::directory_iterator(folder.Path()), {});
}
} // namespace

TEST(Convert, AProjectOfVersion2BecomesOneThatHoldsItsColumnsAndScenarios)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("new.vl3");
    const BatchJob job = RunJob({"convert", kOld, project});
    ASSERT_EQ(job.status, 0) << job.err;
    EXPECT_EQ(job.out, RunJob({"info", project}).out);
    EXPECT_TRUE(Has(job.out, "Periods 1970 to 1989")) << job.out;
    const nlohmann::json dump = RunJob({"dump", "--json", project}).Json();
    EXPECT_EQ(dump["DSDesc"], "Scallop survey 1970-89 (old project)");
    EXPECT_EQ(dump["NumLoggedRuns"], 2);
    EXPECT_EQ(dump["Data"]["Columns"].size(), 5U);
    EXPECT_EQ(dump["Data"]["Columns"]["Effort_"]["Values"][19], 693.0);
    EXPECT_EQ(dump["Data"]["Columns"]["Effort_"]["Values"][20], -1.0);
    ASSERT_EQ(dump["Scenarios"].size(), 2U);
    EXPECT_EQ(dump["Scenarios"][1]["Title"], "Quota 15 chars.");
    EXPECT_EQ(FilesIn(folder), 1); // nothing is left beside it
}

TEST(Convert, AConvertedProjectCanBeFitted)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("new.vl3");
    ASSERT_EQ(RunJob({"convert", kOld, project}).status, 0);
    const BatchJob fit = RunJob({"fit", "--data", project, "--model", "schaefer"});
    EXPECT_EQ(fit.status, 0) << fit.err;
}

TEST(Convert, LoggedRunsAreToldNotToComeAcross)
{
    const ScratchDirectory folder;
    EXPECT_TRUE(
        Has(RunJob({"convert", kOld, folder.Path("a.vl3")}).err, "its logged runs (2) are not taken"));
    const std::string without = folder.File("none.vl2", LegacyBytes().Bytes());
    EXPECT_EQ(RunJob({"convert", without, folder.Path("b.vl3")}).err, "");
}

TEST(Convert, AFileThatExistsIsReplacedOnlyWithForce)
{
    const ScratchDirectory folder;
    const std::string project = folder.File("new.vl3", "somebody's work");
    const BatchJob refused = RunJob({"convert", kOld, project});
    EXPECT_EQ(refused.status, 2);
    EXPECT_TRUE(Has(refused.err, "new.vl3 exists already; --force replaces it.")) << refused.err;
    EXPECT_EQ(folder.Read("new.vl3"), "somebody's work");
    EXPECT_EQ(RunJob({"convert", "--force", kOld, project}).status, 0);
    EXPECT_EQ(RunJob({"info", project}).status, 0);
}

TEST(Convert, AFormerProjectThatCannotBeReadIsBadDataAndNothingIsWritten)
{
    const ScratchDirectory folder;
    const std::string project = folder.File("new.vl3", "somebody's work");
    const auto refusal = [&](const std::string& old) {
        const BatchJob job = RunJob({"convert", "--force", old, project});
        EXPECT_EQ(job.status, 3) << job.err;
        EXPECT_EQ(job.out, "");
        EXPECT_EQ(folder.Read("new.vl3"), "somebody's work");
        return job.err;
    };
    const std::string unable = "Unable to Import VELT 2.0 File, Bad File Format.\n";
    EXPECT_TRUE(Has(refusal(Sample("legacy/bad_version3.vl2")),
                    unable + "Invalid or Corrupted *.vl2 File.\nByte 11 of the file"));
    EXPECT_TRUE(Has(refusal(Sample("projects/minimal.vl3")), unable));
    EXPECT_TRUE(Has(refusal(folder.Path("missing.vl2")), "That path doesn't exist."));
    EXPECT_TRUE(Has(refusal(folder.Path()), "That path or filename cannot be accessed."));
}

TEST(Convert, AMissingDescriptionIsNoReasonToStop)
{
    const ScratchDirectory folder;
    const std::string old = folder.File("old.vl2", LegacyBytes("").Bytes());
    EXPECT_EQ(RunJob({"convert", old, folder.Path("new.vl3")}).status, 0);
}

TEST(Convert, WhatCannotBeWrittenIsBadUsageWithThePlace)
{
    const ScratchDirectory folder;
    const BatchJob job = RunJob({"convert", kOld, folder.Path("missing/new.vl3")});
    EXPECT_EQ(job.status, 2);
    EXPECT_TRUE(Has(job.err, "cannot be written")) << job.err;
    EXPECT_EQ(FilesIn(folder), 0);
}

TEST(Convert, TheNewNameEndsAsAProjectAndIsNotThatOfTheFileThatIsRead)
{
    const ScratchDirectory folder;
    const BatchJob other = RunJob({"convert", kOld, folder.Path("new.vl2")});
    EXPECT_EQ(other.status, 2);
    EXPECT_TRUE(Has(other.err, "ends in .vl3")) << other.err;
    const std::string old = folder.File("old.vl2", LegacyBytes().Bytes());
    std::filesystem::create_symlink(old, folder.Path("link.vl3"));
    const BatchJob same = RunJob({"convert", "--force", old, folder.Path("link.vl3")});
    EXPECT_EQ(same.status, 2);
    EXPECT_TRUE(Has(same.err, "is the file that is read")) << same.err;
    EXPECT_EQ(folder.Read("old.vl2"), LegacyBytes().Bytes());
}

TEST(Convert, BothNamesMustBeGiven)
{
    EXPECT_EQ(RunJob({"convert", kOld}).status, 2);
    EXPECT_EQ(RunJob({"convert", kOld, ""}).status, 2);
    EXPECT_EQ(RunJob({"convert", "", "new.vl3"}).status, 2);
}

TEST(Convert, OtherCommandsTurnAProjectOfVersion2AwayAndNameThisOne)
{
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"info", kOld}, {"dump", "--json", kOld}, {"fit", "--data", kOld, "--model", "fox"}}) {
        const BatchJob job = RunJob(words);
        EXPECT_EQ(job.status, words[0] == "fit" ? 2 : 3);
        EXPECT_TRUE(Has(job.err, "velt-batch convert")) << job.err;
    }
}
