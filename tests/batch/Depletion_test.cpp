// SPDX-License-Identifier: GPL-3.0-or-later
// Published depletion experiments, read as tables of a spreadsheet. With equal efforts and M = 0 the
// least-squares fit is Leslie's regression of catch per effort on the catch taken before, counted to the
// middle of the period (Ricker 1975, example 6.1): q is minus the slope, N1 the intercept over q.
#include "batch/BatchJob.h"
#include "support/CsvTable.h"

#include <gtest/gtest.h>

namespace
{
nlohmann::json FitOf(const std::string& file, const std::string& columns)
{
    const BatchJob job =
        RunJob({"fit", "--csv-data", Sample("datasets/" + file), "--time-column", "period", "--columns",
                columns, "--model", "no-recruitment", "--m", "0", "--format", "json"});
    EXPECT_EQ(job.status, 0) << job.err;
    return job.status == 0 ? job.Json()["Estimates"] : nlohmann::json::object({{"N1", 0.0}, {"Q", 0.0}});
}

constexpr const char* kBothCatches = "catch=Catch Nums,catch=Tot. Catch Nums,effort=Effort";
} // namespace

// Regression of C/7 on cumulative catch + C/2 over the ten days. Half a unit in the sixth digit is accepted.
TEST(Depletion, SmallmouthBassOfLittleSilverLakeMatchesTheRegression)
{
    const nlohmann::json estimates = FitOf("depletion_smallmouth_bass_little_silver.csv", kBothCatches);

    EXPECT_NEAR(estimates["N1"].get<double>(), 1077.5713, 0.005);
    EXPECT_NEAR(estimates["Q"].get<double>(), 0.01525078, 5e-8);
}

TEST(Depletion, FantailDarterMatchesTheRegression)
{
    const nlohmann::json estimates = FitOf("depletion_fantail_darter.csv", kBothCatches);

    EXPECT_NEAR(estimates["N1"].get<double>(), 861.8144, 0.0005);
    EXPECT_NEAR(estimates["Q"].get<double>(), 0.207561, 5e-7);
}

// A replicate whose search came to rest where a period has nothing to catch from used to have q = 0; the
// limits of q of northern pike were 0 and 0.
TEST(Depletion, EveryLogReplicateOfAPublishedExperimentHasACatchability)
{
    for (const std::string stock :
         {"northern_pike_island_lake", "smallmouth_bass_little_silver", "blue_crab", "fantail_darter"}) {
        const ScratchDirectory directory;
        const BatchJob job =
            RunJob({"fit", "--csv-data", Sample("datasets/depletion_" + stock + ".csv"), "--time-column",
                    "period", "--columns", kBothCatches, "--model", "no-recruitment", "--m", "0", "--error",
                    "log", "--bootstraps", "500", "--seed", "7", "--csv", directory.Path()});
        ASSERT_EQ(job.status, 0) << stock << ": " << job.err;
        const CsvTable replicates = ReadCsvTable(directory.Read("replicates.csv"));
        ASSERT_EQ(replicates.headings, (std::vector<std::string>{"replicate", "N1", "Q"})) << stock;
        ASSERT_EQ(replicates.rows.size(), 500U) << stock;
        for (const CsvTable::Row& row : replicates.rows)
            EXPECT_GT(std::stod(row.cells[2]), 0.0) << stock << " " << row.cells[0];
    }
}

// The catch that the model is fitted to is derived from the total catch where there is an effort.
TEST(Depletion, TotalCatchAloneGivesTheSameFit)
{
    EXPECT_EQ(FitOf("depletion_fantail_darter.csv", "catch=Tot. Catch Nums,effort=Effort"),
              FitOf("depletion_fantail_darter.csv", kBothCatches));
}
