// SPDX-License-Identifier: GPL-3.0-or-later
// Whole jobs: what stands on the terminal, in the files and in the exit status.
#include "batch/BatchJob.h"
#include "batch/WritePlots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

namespace
{
BatchJob Schaefer(const std::vector<std::string>& more)
{
    return RunJob(SchaeferWords(more));
}

/// A depletion fit of a table given as text.
BatchJob Depletion(const std::string& csv, std::vector<std::string> more = {})
{
    const ScratchDirectory directory;
    std::vector<std::string> words{"fit",
                                   "--csv-data",
                                   directory.File("t.csv", csv),
                                   "--time-column",
                                   "Week",
                                   "--columns",
                                   "Lines set=Effort,Fish=Tot. Catch Nums",
                                   "--model",
                                   "no-recruitment",
                                   "--m",
                                   "0"};
    if (more.empty() || more.front() != "--format")
        words.insert(words.end(), {"--format", "json"});
    words.insert(words.end(), more.begin(), more.end());
    return RunJob(std::move(words));
}

/// Eight weeks of one line each: N1 = 1000, q = 0.2 a line, so C(t) = q (N(t) + N(t+1)) / 2 and
/// N(t+1) = N(t) (1 - 0.1) / (1 + 0.1); the catches below are rounded to 0.001.
constexpr const char* kWeeks =
    "\"Week\",\"Lines set\",Fish,Remark\r\n"
    "11,1,181.818,calm\r\n12,1,148.760,\r\n13,1,121.713,\"wind, rain\"\r\n"
    "14,1,99.583,\r\n15,1,81.477,\r\n16,1,66.663,\r\n17,1,54.543,\r\n18,1,44.626,\r\n";

long Lines(const std::string& text)
{
    return std::count(text.begin(), text.end(), '\n');
}
} // namespace

TEST(Batch, TakesASpreadsheetsTableWithQuotedHeadingsAndCarriageReturns)
{
    const BatchJob job = Depletion(kWeeks);

    ASSERT_EQ(job.status, 0) << job.err;
    // The rounding of the catches moves the estimates by less than one part in ten thousand.
    EXPECT_NEAR(job.Json()["Estimates"]["N1"].get<double>(), 1000.0, 0.1);
    EXPECT_NEAR(job.Json()["Estimates"]["Q"].get<double>(), 0.2, 2e-5);
}

TEST(Batch, AnEmptyCellAndNaAreMissingValues)
{
    std::string csv = kWeeks;
    csv.replace(csv.find("13,1,"), 5, "13,,");
    csv.replace(csv.find("15,1,"), 5, "15,NA,");
    const BatchJob job = Depletion(csv);

    ASSERT_EQ(job.status, 0) << job.err;
    const nlohmann::json series = job.Json()["Series"];
    EXPECT_TRUE(series[2]["Effort"].is_null());
    EXPECT_TRUE(series[4]["Effort"].is_null());
    EXPECT_EQ(series[2]["Included"], false);
    EXPECT_TRUE(series[2]["ExpCPUE"].is_null());
    EXPECT_EQ(series[3]["Included"], true);
    EXPECT_NEAR(job.Json()["Estimates"]["N1"].get<double>(), 1000.0, 0.1);
}

// Week 13 has no effort; week 15 has one, but was left out by the user.
TEST(Batch, APeriodThatTheDataKeepOutOfTheFitHasItsPopulationButNothingThatWasFitted)
{
    std::string csv = kWeeks;
    csv.replace(csv.find("13,1,"), 5, "13,,");
    const BatchJob job = Depletion(csv, {"--exclude", "15"});

    ASSERT_EQ(job.status, 0) << job.err;
    const nlohmann::json series = job.Json()["Series"];
    // The catch of an effort that is missing is missing, too; the total is known, and the fish are gone.
    const std::set<std::string> fitted{"Effort",   "ObsCatch",  "ObsCPUE", "ExpCPUE",
                                       "ExpCatch", "FittedVec", "ResidVec"};
    for (const std::string& key : fitted) {
        EXPECT_TRUE(series[2][key].is_null()) << key;
        for (const std::size_t row : {0U, 1U, 3U, 4U, 5U, 6U, 7U})
            EXPECT_TRUE(series[row][key].is_number()) << key << " of row " << row;
    }
    EXPECT_TRUE(series[2]["Nt"].is_number());
    EXPECT_EQ(series[2]["Included"], false);
    EXPECT_EQ(series[2]["ToggledIn"], false);
    EXPECT_EQ(series[4]["Included"], true);
    EXPECT_EQ(series[4]["ToggledIn"], false);
}

TEST(Batch, ABadCellIsBadDataAndTheMessageSaysWhere)
{
    std::string csv = kWeeks;
    csv.replace(csv.find("14,1,99"), 7, "14,one,99");
    const BatchJob job = Depletion(csv);

    EXPECT_EQ(job.status, 3);
    EXPECT_TRUE(job.out.empty());
    EXPECT_NE(job.err.find("Line 5, column \"Lines set\": \"one\" is not a number."), std::string::npos)
        << job.err;
}

TEST(Batch, ABadLineOfATextFileIsBadDataAndTheMessageSaysWhere)
{
    const ScratchDirectory directory;
    const std::string file = directory.File("t.txt", "A stock\nYear Catch\n1971 5\n1972\n");
    const BatchJob job = RunJob(
        {"fit", "--data", file, "--time-column", "Year", "--columns", "Catch=Effort", "--model", "fox"});

    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("line 4"), std::string::npos) << job.err;
}

TEST(Batch, AFileThatDoesNotExistIsBadData)
{
    for (const char* option : {"--data", "--csv-data"}) {
        const BatchJob job = RunJob({"fit", option, "/nowhere/t.txt", "--time-column", "Year", "--columns",
                                     "Catch=Effort", "--model", "fox"});
        EXPECT_EQ(job.status, 3) << option;
        EXPECT_NE(job.err.find("/nowhere/t.txt"), std::string::npos) << job.err;
    }
}

TEST(Batch, AnUnknownHeadingOrTitleIsBadUsageAndNamesThoseThatExist)
{
    const BatchJob title = RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column",
                                   "Year", "--columns", "Effort=Boats", "--model", "schaefer"});
    EXPECT_EQ(title.status, 2);
    EXPECT_NE(title.err.find("\"Tot. Catch Wt\""), std::string::npos) << title.err;

    const BatchJob time = RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column",
                                  "Season", "--columns", "Effort=Effort", "--model", "schaefer"});
    EXPECT_EQ(time.status, 2);
    EXPECT_NE(time.err.find("\"Season\"; it has \"Year\""), std::string::npos) << time.err;

    const BatchJob csv = Depletion(kWeeks, {"--exclude", "99"});
    EXPECT_EQ(csv.status, 2);
    EXPECT_NE(csv.err.find("there is no period 99; the table runs from 11 to 18"), std::string::npos)
        << csv.err;
}

TEST(Batch, AModelThatTheDataDoNotAllowIsBadDataAndSaysWhatItNeeds)
{
    const BatchJob job =
        RunJob({"fit", "--data", Sample("expected/schaefer30.txt"), "--time-column", "Year", "--columns",
                "Effort=Effort,Catch=Catch Wt,Total=Tot. Catch Wt", "--model", "recruitment-index"});

    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("\"Recruit. Index\""), std::string::npos) << job.err;
}

TEST(Batch, TooFewPeriodsAreBadData)
{
    const BatchJob job = Depletion("Week,Lines set,Fish\n1,1,5\n");

    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("Not Enough Data Points"), std::string::npos) << job.err;
}

TEST(Batch, AFailedFitSaysWhyInBothForms)
{
    // Catches rise under a constant effort: the regression's slope has the wrong sign.
    const std::string rising = "Week,Lines set,Fish\n1,1,5\n2,1,6\n3,1,7\n4,1,8\n5,1,9\n";
    const BatchJob json = Depletion(rising);
    EXPECT_EQ(json.status, 4);
    EXPECT_EQ(json.Json()["Status"], "failed");
    EXPECT_EQ(json.Json()["Excuse"], 2);
    EXPECT_NE(json.err.find("Population Underflow"), std::string::npos);

    const BatchJob text = Depletion(rising, {"--format", "text"});
    EXPECT_EQ(text.status, 4);
    EXPECT_TRUE(text.out.empty());
    EXPECT_EQ(text.err, json.err);
}

// Weighted least squares of a production model has no objective, so its search ends on nothing. Deliberate.
TEST(Batch, ASearchThatDidNotArriveSaysSoFirst)
{
    const BatchJob job = Schaefer({"--error", "wls", "--format", "json"});

    EXPECT_EQ(job.status, 4);
    EXPECT_EQ(job.Json()["Excuse"], 3);
    EXPECT_EQ(job.Json()["Message"].get<std::string>().rfind("Minimisation Failed To Converge.", 0), 0U);
}

TEST(Batch, TheObjectNamesModelAndErrorModelAsTheCommandLineDoes)
{
    for (const char* error : {"ls", "log", "gamma"}) {
        const nlohmann::json fit = Schaefer({"--error", error, "--format", "json"}).Json();
        EXPECT_EQ(fit["Model"], "schaefer");
        EXPECT_EQ(fit["ErrorModel"], error);
    }
    const nlohmann::json depletion = Depletion(kWeeks).Json();
    EXPECT_EQ(depletion["Model"], "no-recruitment");
    EXPECT_EQ(depletion["ErrorModel"], "ls");
}

TEST(Batch, TheObjectTellsTheInputsThatTheFitWasMadeWith)
{
    const nlohmann::json inputs =
        Schaefer({"--init-proportion", "0.75", "--lag", "1", "--format", "json"}).Json()["Inputs"];
    EXPECT_EQ(inputs["InitialProportion"].get<float>(), 0.75F);
    EXPECT_EQ(inputs["LAG"].get<float>(), 1.0F);
    const BatchJob depletion =
        RunJob({"fit", "--data", Sample("expected/const25.txt"), "--time-column", "Year", "--columns",
                "Effort=Effort,Catch=Catch Nums,Total=Tot. Catch Nums", "--model", "constant-recruitment",
                "--m", "0.25", "--format", "json"});
    ASSERT_EQ(depletion.status, 0) << depletion.err;
    EXPECT_EQ(depletion.Json()["Inputs"]["M"].get<float>(), 0.25F);
}

TEST(Batch, AnExcludedPeriodStaysInTheTableAndOutOfTheFit)
{
    const BatchJob all = Schaefer({"--format", "json"});
    const int first = all.Json()["Series"][0]["Time"];
    const BatchJob less = Schaefer({"--format", "json", "--exclude", std::to_string(first + 4)});

    ASSERT_EQ(less.status, 0) << less.err;
    const nlohmann::json series = less.Json()["Series"];
    EXPECT_EQ(series[4]["Included"], true);
    EXPECT_EQ(series[4]["ToggledIn"], false);
    EXPECT_FALSE(series[4]["ObsCPUE"].is_null());
    EXPECT_NE(less.Json()["Estimates"]["K"], all.Json()["Estimates"]["K"]);
}

// Its residuals are percentiles of catches; on that scale there is no fitted value.
TEST(Batch, UnderGammaEveryPeriodHasAResidualAndNoneAFittedValue)
{
    const BatchJob job = Schaefer({"--error", "gamma", "--format", "json"});

    ASSERT_EQ(job.status, 0) << job.err;
    const nlohmann::json series = job.Json()["Series"];
    for (std::size_t row = 0; row < 30; ++row) {
        EXPECT_TRUE(series[row]["FittedVec"].is_null()) << row;
        EXPECT_TRUE(series[row]["ResidVec"].is_number()) << row;
        EXPECT_TRUE(series[row]["ExpCatch"].is_number()) << row;
    }
}

TEST(Batch, ThePopulationHasOneEntryMoreThanThereArePeriods)
{
    const nlohmann::json series = Schaefer({"--format", "json"}).Json()["Series"];

    ASSERT_EQ(series.size(), 31U);
    EXPECT_TRUE(series[30]["Nt"].is_number());
    EXPECT_TRUE(series[30]["ObsCPUE"].is_null());
    EXPECT_TRUE(series[30]["Included"].is_null());
    EXPECT_EQ(series[30]["Time"].get<int>(), series[29]["Time"].get<int>() + 1);
}

TEST(Batch, TheTextFormIsTheParameterReport)
{
    const BatchJob job = Schaefer({});

    ASSERT_EQ(job.status, 0) << job.err;
    for (const char* part : {"PROD. MODEL(SCHAEFER)", "R Sqr", "Init. Proportion", "M.S.Y.", "Final Biomass"})
        EXPECT_NE(job.out.find(part), std::string::npos) << part;
    EXPECT_EQ(job.out.find("Confidence Intervals"), std::string::npos);
    EXPECT_TRUE(job.err.empty()) << job.err;
}

TEST(Batch, AFixedParameterStaysWhereItWasPut)
{
    const BatchJob job = Schaefer({"--error", "log", "--start", "R=0.3", "--fix", "R", "--format", "json"});

    ASSERT_EQ(job.status, 0) << job.err;
    EXPECT_EQ(job.Json()["Estimates"]["R"].get<float>(), 0.3F);
}

TEST(Batch, AStartThatUnderflowsEndsTheFitWithTheSentenceOfTheBox)
{
    const BatchJob job = Depletion(kWeeks, {"--error", "log", "--start", "N1=1"});

    EXPECT_EQ(job.status, 4);
    EXPECT_NE(job.err.find("This value has caused a population underflow"), std::string::npos) << job.err;
}

TEST(Batch, TheSameSeedGivesTheSameReplicatesToTheBit)
{
    const ScratchDirectory one, two, other;
    const auto run = [](const ScratchDirectory& directory, const char* seed) {
        return Schaefer(
            {"--bootstraps", "20", "--seed", seed, "--csv", directory.Path(), "--format", "json"});
    };
    const BatchJob first = run(one, "7");
    const BatchJob second = run(two, "7");
    ASSERT_EQ(first.status, 0) << first.err;
    run(other, "8");

    EXPECT_EQ(first.out, second.out);
    EXPECT_EQ(one.Read("replicates.csv"), two.Read("replicates.csv"));
    EXPECT_NE(one.Read("replicates.csv"), other.Read("replicates.csv"));
    EXPECT_EQ(Lines(one.Read("replicates.csv")), 21);
}

TEST(Batch, LimitsStandAtTheLevelsAskedFor)
{
    const ScratchDirectory directory;
    const BatchJob job = Schaefer(
        {"--bootstraps", "20", "--seed", "7", "--ci", "0,1", "--csv", directory.Path(), "--format", "json"});

    ASSERT_EQ(job.status, 0) << job.err;
    const nlohmann::json intervals = job.Json()["ConfidenceIntervals"];
    ASSERT_EQ(intervals.size(), 5U);
    // The levels 0 and 1 are the lowest and the highest replicate; K is the first column of the table.
    std::set<float> k;
    std::istringstream rows(directory.Read("replicates.csv"));
    std::string line;
    std::getline(rows, line);
    ASSERT_EQ(line, "replicate,K,Q,RYield,R,MSY");
    while (std::getline(rows, line))
        k.insert(std::stof(line.substr(line.find(',') + 1)));
    EXPECT_EQ(intervals["K"][0].get<float>(), *k.begin());
    EXPECT_EQ(intervals["K"][1].get<float>(), *k.rbegin());
}

TEST(Batch, LevelsOutsideZeroToOneAreBadUsage)
{
    const BatchJob job = Schaefer({"--bootstraps", "5", "--seed", "7", "--ci", "0.1,1.1"});

    EXPECT_EQ(job.status, 2);
    EXPECT_NE(job.err.find("must lie in the range 0 - 1"), std::string::npos) << job.err;
    EXPECT_TRUE(job.out.empty());
}

TEST(Batch, TablesHoldOneRowAPeriodAndOneMoreForThePopulation)
{
    const ScratchDirectory directory;
    const BatchJob job = Schaefer({"--csv", directory.Path("made/here")});

    ASSERT_EQ(job.status, 0) << job.err;
    EXPECT_EQ(Lines(directory.Read("made/here/series.csv")), 1 + 30 + 1);
    EXPECT_EQ(directory.Read("made/here/estimates.csv").rfind("parameter,value\nK,", 0), 0U);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("made/here/replicates.csv")));
}

TEST(Batch, ADirectoryThatCannotBeMadeIsBadUsageBeforeAnyFit)
{
    const ScratchDirectory directory;
    const BatchJob job = Schaefer({"--csv", directory.File("taken", "")});

    EXPECT_EQ(job.status, 2);
    EXPECT_TRUE(job.out.empty());
}

TEST(Batch, ContoursAreAGridAndTheWalkOfTheMinimiser)
{
    const ScratchDirectory directory;
    const BatchJob job = Schaefer({"--error", "log", "--contours", "6", "--csv", directory.Path()});

    ASSERT_EQ(job.status, 0) << job.err;
    EXPECT_EQ(Lines(directory.Read("contours.csv")), 1 + 6 * 6);
    EXPECT_EQ(directory.Read("contours.csv").rfind("K,r,Objective\n", 0), 0U);
    EXPECT_NE(directory.Read("contour_path.csv").find("\nstep,"), std::string::npos);
    EXPECT_NE(directory.Read("contour_path.csv").find("\nfinal,"), std::string::npos);
}

TEST(Batch, EveryGraphOfTheFitIsWrittenAsPngAndSvg)
{
    const ScratchDirectory directory;
    const BatchJob job = Schaefer({"--plots", directory.Path("plots")});

    if (!CanDraw()) {
        EXPECT_EQ(job.status, 2);
        EXPECT_NE(job.err.find("--plots: this velt-batch was built without the desktop"), std::string::npos);
        return;
    }
    ASSERT_EQ(job.status, 0) << job.err;
    EXPECT_EQ(directory.Read("plots/01-expected-and-observed-cpue.png").substr(0, 4), "\x89PNG");
    EXPECT_NE(directory.Read("plots/01-expected-and-observed-cpue.svg").find("<svg"), std::string::npos);
    // CPUE, catch, two graphs of residuals, biomass, equilibrium yield; each twice.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory.Path("plots")), {}), 12);
}

TEST(Batch, AnInputWithoutMeaningIsToldOnStandardErrorAndChangesNothing)
{
    const BatchJob with = Schaefer({"--m", "0.5", "--format", "json"});
    EXPECT_EQ(with.status, 0);
    EXPECT_NE(with.err.find("velt-batch: --m has no meaning for the model schaefer"), std::string::npos);
    EXPECT_EQ(with.Json()["Estimates"], Schaefer({"--format", "json"}).Json()["Estimates"]);
}
