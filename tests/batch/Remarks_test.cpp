// SPDX-License-Identifier: GPL-3.0-or-later
// What velt-batch says about its own answer: in JSON, in the report and on standard error.
#include "batch/BatchJob.h"
#include "fit/FitReading.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
using Words = std::vector<std::string>;

BatchJob Job(const std::string& file, const Words& columns, Words more)
{
    Words words{"fit", "--csv-data", file, "--time-column", columns.at(0), "--columns", columns.at(1)};
    words.insert(words.end(), more.begin(), more.end());
    return RunJob(std::move(words));
}

BatchJob Albacore(const std::string& model, const std::string& error, Words more = {"--format", "json"})
{
    more.insert(more.end(), {"--model", model, "--error", error});
    return Job(Sample("datasets/albacore_south_atlantic.csv"),
               {"year", "catch=Tot. Catch Wt,index=Abundance Index"}, std::move(more));
}

BatchJob ClosedStock(const std::string& file, const std::string& error)
{
    return Job(file, {"period", "catch=Tot. Catch Nums,effort=Effort"},
               {"--model", "no-recruitment", "--m", "0", "--format", "json", "--error", error});
}

/// Weeks of one line each, as a table with the columns Week and Fish.
BatchJob Weeks(const std::string& rows, Words more)
{
    const ScratchDirectory directory;
    more.insert(more.end(), {"--model", "no-recruitment", "--m", "0"});
    return Job(directory.File("t.csv", "Week,Fish,Lines\n" + rows),
               {"Week", "Fish=Tot. Catch Nums,Lines=Effort"}, std::move(more));
}

/// N1 = 1000 and q = 0.2: a catch of 2 q N / (2 + q) each week.
const std::string kWeeks =
    "11,181.8,1\n12,148.8,1\n13,121.7,1\n14,99.6,1\n15,81.5,1\n16,66.7,1\n17,54.5,1\n18,44.6,1\n";

Words Codes(const BatchJob& job)
{
    Words codes;
    const nlohmann::json answer = job.Json(); // lives as long as the loop
    for (const auto& remark : answer.at("Remarks"))
        codes.push_back(remark.at("Code"));
    return codes;
}

std::string TextOf(const BatchJob& job, const std::string& code)
{
    const nlohmann::json answer = job.Json();
    for (const auto& remark : answer.at("Remarks")) {
        if (remark.at("Code") == code)
            return remark.at("Text");
    }
    return "no such remark";
}

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
} // namespace

TEST(BatchRemarks, PublishedFitsThatHoldHaveNone)
{
    for (const std::string error : {"ls", "log"}) {
        for (const std::string model : {"schaefer", "fox"}) {
            const BatchJob job = Albacore(model, error);
            EXPECT_EQ(Codes(job), Words{}) << model << " " << error;
            EXPECT_TRUE(job.err.empty()) << job.err;
        }
        for (const std::string file : {"smallmouth_bass_little_silver", "blue_crab"}) {
            const BatchJob job = ClosedStock(Sample("datasets/depletion_" + file + ".csv"), error);
            EXPECT_EQ(Codes(job), Words{}) << file << " " << error;
            EXPECT_TRUE(job.err.empty()) << job.err;
        }
    }
}

TEST(BatchRemarks, ARemarkStandsInJsonInTheReportAndOnStandardError)
{
    const std::string five = kWeeks.substr(0, kWeeks.find("16,")); // 5 weeks, N1 and q: 3 to spare
    const BatchJob json = Weeks(five, {"--format", "json"});
    ASSERT_EQ(json.status, 0) << json.err;
    EXPECT_EQ(Codes(json), Words{"FewPeriods"});
    EXPECT_EQ(json.err, "velt-batch: remark: " + TextOf(json, "FewPeriods") + "\n");

    const BatchJob text = Weeks(five, {});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(Has(text.out, "\nRemarks\n  1. 5 periods are in the fit")) << text.out;
    EXPECT_EQ(text.err, json.err);
    EXPECT_FALSE(Has(Weeks(kWeeks, {}).out, "Remarks"));
}

TEST(BatchRemarks, AFailedFitTellsItsCauseAndTheWayOut)
{
    std::string zero = kWeeks;
    zero.replace(zero.find("14,99.6"), 7, "14,0");
    const BatchJob failed = Weeks(zero, {"--error", "log", "--format", "json"});
    EXPECT_EQ(failed.status, 4);
    EXPECT_EQ(failed.Json().at("Status"), "failed");
    EXPECT_EQ(Codes(failed), Words{"ZeroCatch"});
    EXPECT_TRUE(Has(TextOf(failed, "ZeroCatch"), "and period 14 has none above 0"));
    EXPECT_TRUE(Has(failed.Json().at("Message"), "\n\n" + TextOf(failed, "ZeroCatch")));
    EXPECT_TRUE(Has(failed.err, "\nvelt-batch: remark: " + TextOf(failed, "ZeroCatch") + "\n")) << failed.err;

    const BatchJob toggled = Weeks(zero, {"--error", "log", "--format", "json", "--exclude", "14"});
    EXPECT_EQ(toggled.status, 4);
    EXPECT_EQ(Codes(toggled), Words{"ZeroCatch"});
    zero.replace(zero.find("14,0,1"), 6, "14,0,");
    const BatchJob mended = Weeks(zero, {"--error", "log", "--format", "json"});
    EXPECT_EQ(mended.status, 0) << mended.err;
    EXPECT_EQ(Codes(mended), Words{});
}

TEST(BatchRemarks, AFailureOfUnknownCauseHasAnEmptyList)
{
    const BatchJob job = Weeks(kWeeks, {"--error", "log", "--format", "json", "--max-its", "1"});
    EXPECT_EQ(job.status, 4);
    EXPECT_EQ(Codes(job), Words{});
}

// From half of K the best of the starts needs more than 40 steps and the worst of them fewer.
TEST(BatchRemarks, AStartThatDidNotArriveButCameFurtherIsNamed)
{
    const Words fromHalf{"--format", "json", "--init-proportion", "0.5"};
    const BatchJob whole = Albacore("fox", "ls", fromHalf);
    ASSERT_EQ(whole.status, 0) << whole.err;
    EXPECT_EQ(TextOf(whole, "BetterFitKnown"), "no such remark");

    Words few = fromHalf;
    few.insert(few.end(), {"--max-its", "40"});
    const BatchJob cut = Albacore("fox", "ls", few);
    ASSERT_EQ(cut.status, 0) << cut.err;
    const double shown = cut.Json().at("Objective");
    const double best = whole.Json().at("Objective");
    EXPECT_LT(best, 0.99 * shown);
    const std::string said = TextOf(cut, "BetterFitKnown");
    EXPECT_TRUE(Has(said, "and did not arrive; the fit shown, with " + remark_text::Short(shown))) << said;
    EXPECT_TRUE(Has(cut.err, "velt-batch: remark: " + said + "\n"));
}

TEST(BatchRemarks, BootstrapsBringTheRemarksOnTheirLimits)
{
    const BatchJob job = Weeks(kWeeks + "19,37,1\n",
                               {"--error", "gamma", "--format", "json", "--bootstraps", "20", "--seed", "1"});
    ASSERT_EQ(job.status, 0) << job.err;
    const Words codes = Codes(job);
    EXPECT_EQ(std::count(codes.begin(), codes.end(), "LimitsShifted"), 1);
    EXPECT_TRUE(Has(job.err, "velt-batch: remark: " + TextOf(job, "LimitsShifted") + "\n"));
}

TEST(BatchRemarks, AnEmptyTotalCatchInsideTheSeriesIsNamed)
{
    std::string gap = kWeeks;
    gap.replace(gap.find("13,121.7,1"), 10, "13,,");
    const BatchJob job = Weeks(gap, {"--format", "json"});
    ASSERT_EQ(job.status, 0) << job.err;
    EXPECT_TRUE(Has(TextOf(job, "GapInCatch"), "13 has no total catch"));
    EXPECT_TRUE(Has(TextOf(job, "GapInCatch"), "18 plays no part"));
}
