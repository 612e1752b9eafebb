// SPDX-License-Identifier: GPL-3.0-or-later
// Published production data, read as tables of a spreadsheet.
#include "batch/BatchJob.h"

#include <gtest/gtest.h>

// The search from r = 1 used to end at r = 2.7, K = 59 000 t with an MSY of 40 000 t: there the biomass
// swings from year to year, each look finds another dent, and a dent's sum of squares lies a little below
// that of the ordinary optimum. An independent fit of the same dynamics gives K 11789.04, r 0.111984.
TEST(Production, AChaoticStockIsNoAnswerForPinkLing)
{
    const BatchJob job =
        RunJob({"fit", "--csv-data", Sample("datasets/pink_ling_dataspm.csv"), "--time-column", "year",
                "--columns", "catch=Tot. Catch Wt,index=Abundance Index", "--model", "schaefer", "--error",
                "ls", "--format", "json"});

    ASSERT_EQ(job.status, 0) << job.err;
    const nlohmann::json estimates = job.Json()["Estimates"];
    EXPECT_NEAR(estimates["K"].get<double>(), 11789.04, 0.005 * 11789.04); // half a per cent, as published
    EXPECT_NEAR(estimates["R"].get<double>(), 0.111984, 0.005 * 0.111984);
}
