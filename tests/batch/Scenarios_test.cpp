// SPDX-License-Identifier: GPL-3.0-or-later
// velt-batch with scenarios: what a scenario file may hold, and what comes out.
#include "batch/BatchFailure.h"
#include "batch/BatchJob.h"
#include "batch/ReadScenarios.h"

#include <gtest/gtest.h>

#include <algorithm>

using Json = nlohmann::json;

namespace
{
const std::string kHeading = "Scenario,Units,Time,Value\n";

std::string RefusalOf(const std::string& rows)
{
    try {
        ReadScenarios(kHeading + rows, "s.csv");
    } catch (const BatchFailure& failure) {
        EXPECT_EQ(failure.status, ExitStatus::BadData);
        return failure.message;
    }
    return {};
}

/// A Schaefer fit of thirty years, 1960 to 1989, under the scenarios of `rows`.
BatchJob Projected(const std::string& rows, std::vector<std::string> more = {"--format", "json"})
{
    const ScratchDirectory folder;
    more.insert(more.begin(), {"--scenarios", folder.File("s.csv", kHeading + rows)});
    return RunJob(SchaeferWords(more));
}

std::string Rows(const std::string& title, const std::string& units, int first, int count, double value)
{
    std::string rows;
    for (int k = 0; k < count; ++k)
        rows += title + "," + units + "," + std::to_string(first + k) + "," + std::to_string(value) + "\n";
    return rows;
}

int BehindTheData()
{
    static const int time = [] {
        const Json series = RunJob(SchaeferWords({"--format", "json"})).Json()["Series"];
        return series.back()["Time"].get<int>();
    }();
    return time;
}

const Json& EntryOf(const Json& projections, const std::string& scenario)
{
    const auto found = std::find_if(projections.begin(), projections.end(),
                                    [&](const Json& p) { return p["Scenario"] == scenario; });
    if (found == projections.end())
        throw std::runtime_error("no scenario " + scenario);
    return *found;
}
} // namespace

TEST(Scenarios, AFileGivesItsScenariosInItsOrder)
{
    const ScenarioFile file = ReadScenarios(kHeading + "B,Effort,5,1.5\nB,Effort,6,2\n"
                                                       "\"A, half\",Total Catch Weight,5,0\n"
                                                       "\"A, half\",Total Catch Weight,6,7\n",
                                            "s.csv");
    ASSERT_EQ(file.scenarios.size(), 2U);
    EXPECT_EQ(file.scenarios[0].title, "B");
    EXPECT_EQ(file.scenarios[0].values, (std::vector<double>{1.5, 2}));
    EXPECT_EQ(file.scenarios[1].title, "A, half");
    EXPECT_EQ(file.scenarios[1].vecType, 1);
    EXPECT_EQ(file.scenarios[1].firstTime, 5);
    EXPECT_EQ(file.scenarios[1].line, 4U);
}

TEST(Scenarios, RowsOutOfOrderAreRefused)
{
    EXPECT_EQ(RefusalOf("A,Effort,6,1\nA,Effort,5,1\n"),
              "s.csv: Line 3: the time 5 is out of order; 7 is due.");
    EXPECT_EQ(RefusalOf("A,Effort,5,1\nA,Effort,5,1\n"),
              "s.csv: Line 3: the time 5 is out of order; 6 is due.");
    EXPECT_EQ(RefusalOf("A,Effort,5,1\nA,Effort,7,1\n"),
              "s.csv: Line 3: the time 7 is out of order; 6 is due.");
    EXPECT_EQ(RefusalOf("A,Effort,5,1\nB,Effort,5,1\nA,Effort,6,1\n"),
              "s.csv: Line 4: the rows of scenario \"A\" stand apart; it began in line 2.");
}

TEST(Scenarios, UnequalLengthsAreRefused)
{
    EXPECT_EQ(RefusalOf("A,Effort,5,1\nA,Effort,6,1\nB,Effort,5,1\n"),
              "s.csv: Line 4: scenario \"B\" has 1 periods and \"A\" 2; all have as many.");
}

TEST(Scenarios, ValuesAreNumbersThatAreNotNegative)
{
    EXPECT_EQ(RefusalOf("A,Effort,5,-1\n"), "s.csv: Line 2: the value -1 is negative.");
    EXPECT_EQ(RefusalOf("A,Effort,5,much\n"), "s.csv: Line 2: the value \"much\" is not a number.");
    EXPECT_EQ(RefusalOf("A,Effort,5,\n"), "s.csv: Line 2: the value \"\" is not a number.");
    EXPECT_EQ(RefusalOf("A,Effort,5,nan\n"), "s.csv: Line 2: the value \"nan\" is not a number.");
    EXPECT_EQ(RefusalOf("A,Effort,5,1e10\n"),
              "s.csv: Line 2: the value 1e10 is too large: scenarios hold whole numbers up to 2147483647.");
}

TEST(Scenarios, TitlesUnitsTimesAndHeadingsAreChecked)
{
    EXPECT_EQ(RefusalOf("Fit,Effort,5,1\n"),
              "s.csv: Line 2: a scenario cannot be named \"Fit\": that is the fitted line.");
    EXPECT_EQ(RefusalOf(",Effort,5,1\n"), "s.csv: Line 2: the scenario has no name.");
    EXPECT_EQ(RefusalOf(std::string(31, 'x') + ",Effort,5,1\n"),
              "s.csv: Line 2: the name \"" + std::string(31, 'x') + "\" is longer than 30 characters.");
    EXPECT_EQ(RefusalOf("A,effort,5,1\n"),
              "s.csv: Line 2: the units \"effort\" are none of \"Effort\", \"Total Catch "
              "Weight\" and \"Total Catch Numbers\".");
    EXPECT_EQ(RefusalOf("A,Effort,5,1\nA,Total Catch Weight,6,1\n"),
              "s.csv: Line 3: scenario \"A\" changes its units.");
    EXPECT_EQ(RefusalOf("A,Effort,5.5,1\n"), "s.csv: Line 2: the time \"5.5\" is no whole number.");
    EXPECT_EQ(RefusalOf("A,Effort,99999999999,1\n"),
              "s.csv: Line 2: the time \"99999999999\" is no whole number.");
    EXPECT_THROW(ReadScenarios("Scenario,Unit,Time,Value\nA,Effort,5,1\n", "s.csv"), BatchFailure);
    EXPECT_THROW(ReadScenarios(kHeading, "s.csv"), BatchFailure);
    EXPECT_THROW(ReadScenarioFile("/nowhere/s.csv"), BatchFailure);
}

TEST(Scenarios, ThereAreNoMoreThan25)
{
    std::string rows;
    for (int i = 1; i <= 25; ++i)
        rows += "S" + std::to_string(i) + ",Effort,5,1\n";
    EXPECT_EQ(RefusalOf(rows), "");
    EXPECT_EQ(RefusalOf(rows + "S26,Effort,5,1\n"), "s.csv: Line 27: there can be 25 scenarios.");
}

TEST(Scenarios, TimesRunOnFromTheLastPeriodOfTheData)
{
    const int next = BehindTheData();
    const BatchJob job = Projected(Rows("A", "Effort", next + 1, 3, 100));
    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("Line 2: scenario \"A\" begins at " + std::to_string(next + 1) +
                           "; the period behind the data is " + std::to_string(next)),
              std::string::npos)
        << job.err;
}

TEST(Scenarios, DataAndFutureTogetherAreAtMost199Periods)
{
    const int next = BehindTheData();
    const int room =
        199 - static_cast<int>(RunJob(SchaeferWords({"--format", "json"})).Json()["Series"].size()) + 1;
    EXPECT_EQ(Projected(Rows("A", "Effort", next, room, 100)).status, 0);
    const BatchJob job = Projected(Rows("A", "Effort", next, room + 1, 100));
    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("together they can be 199"), std::string::npos) << job.err;
}

TEST(Scenarios, UnitsThatDoNotSuitTheModelAreRefusedByName)
{
    const BatchJob job = Projected(Rows("Fish", "Total Catch Numbers", BehindTheData(), 2, 100));
    EXPECT_EQ(job.status, 3);
    EXPECT_NE(
        job.err.find(
            "scenario \"Fish\" has the units \"Total Catch Numbers\", but this model counts in weight."),
        std::string::npos)
        << job.err;
}

TEST(Scenarios, EachScenarioAndTheFitHaveTheirLinesInTheJson)
{
    const int next = BehindTheData();
    const BatchJob job =
        Projected(Rows("Rest", "Effort", next, 3, 0) + Rows("Catch", "Total Catch Weight", next, 3, 12.75));
    ASSERT_EQ(job.status, 0) << job.err;
    const Json object = job.Json();
    const Json& projections = object["Projections"];
    ASSERT_EQ(projections.size(), 3U);
    EXPECT_EQ(projections[0]["Scenario"], "Rest");
    EXPECT_EQ(projections[0]["Units"], "Effort");
    EXPECT_EQ(projections[1]["Units"], "Total Catch Weight");
    EXPECT_EQ(projections[2]["Scenario"], "Fit");
    EXPECT_FALSE(projections[2].contains("Units"));
    const Json& rest = projections[0]["Series"];
    ASSERT_EQ(rest.size(), 4U);
    EXPECT_EQ(rest[0]["Time"], next);
    EXPECT_EQ(rest[0]["Population"], object["Series"].back()["Nt"]);
    EXPECT_FALSE(rest[0].contains("Low"));
    // A biomass that is left alone grows by r B (1 - B / K).
    const double b = rest[0]["Population"], r = object["Estimates"]["R"], k = object["Estimates"]["K"];
    EXPECT_NEAR(rest[1]["Population"].get<double>(), b + r * b * (1.0 - b / k), 1e-4 * b);
    EXPECT_NEAR(projections[1]["Series"][1]["Population"].get<double>(), b + r * b * (1.0 - b / k) - 13.0,
                1e-4 * b);
    EXPECT_EQ(projections[2]["Series"].size(), object["Series"].size());
    EXPECT_EQ(projections[2]["Series"].back()["Population"], rest[0]["Population"]);
}

TEST(Scenarios, WithoutThemThereAreNoProjections)
{
    EXPECT_TRUE(RunJob(SchaeferWords({"--format", "json"})).Json()["Projections"].is_null());
}

TEST(Scenarios, TheFitIsToTheBitTheSameWithThemAndWithout)
{
    const int next = BehindTheData();
    const std::vector<std::string> more{"--format", "json", "--bootstraps", "30", "--seed", "5"};
    std::vector<std::string> withLimits = more;
    withLimits.insert(withLimits.end(), {"--project-ci", "A"});
    Json with = Projected(Rows("A", "Effort", next, 20, 300), withLimits).Json();
    Json without = RunJob(SchaeferWords(more)).Json();
    with.erase("Projections");
    without.erase("Projections");
    EXPECT_EQ(with, without);
}

TEST(Scenarios, AProjectionWithLimitsPutsThemBesideItsScenarioAndTheFit)
{
    const int next = BehindTheData();
    const BatchJob job =
        Projected(Rows("A", "Effort", next, 3, 100) + Rows("B", "Effort", next, 3, 200),
                  {"--format", "json", "--bootstraps", "100", "--seed", "5", "--project-ci", "B"});
    ASSERT_EQ(job.status, 0) << job.err;
    const Json projections = job.Json()["Projections"];
    ASSERT_EQ(projections.size(), 3U);
    EXPECT_FALSE(EntryOf(projections, "A")["Series"][0].contains("Low"));
    for (const char* line : {"B", "Fit"})
        for (const Json& point : EntryOf(projections, line)["Series"]) {
            ASSERT_TRUE(point.contains("Low") && point.contains("High")) << line;
            EXPECT_LE(point["Low"].get<double>(), point["High"].get<double>()) << line << point;
        }
}

TEST(Scenarios, LevelsOfTheLimitsAreThoseOfCiWhereItIsGiven)
{
    const int next = BehindTheData();
    const auto widthAt = [&](const std::vector<std::string>& levels) {
        std::vector<std::string> more{"--format", "json", "--bootstraps", "100",
                                      "--seed",   "5",    "--project-ci", "A"};
        more.insert(more.end(), levels.begin(), levels.end());
        const Json point =
            EntryOf(Projected(Rows("A", "Effort", next, 3, 100), more).Json()["Projections"], "A")["Series"]
                .back();
        return point["High"].get<double>() - point["Low"].get<double>();
    };
    EXPECT_EQ(widthAt({}), widthAt({"--ci", "0.05,0.95"}));
    EXPECT_LT(widthAt({"--ci", "0.4,0.6"}), widthAt({}));
}

TEST(Scenarios, ALevelWithoutAReplicateIsRefused)
{
    const BatchJob job =
        Projected(Rows("A", "Effort", BehindTheData(), 3, 100),
                  {"--bootstraps", "10", "--seed", "5", "--project-ci", "A", "--ci", "0.999,1"});
    EXPECT_EQ(job.status, 2);
    EXPECT_NE(job.err.find("with 10 replicates none stands at a level of --ci"), std::string::npos)
        << job.err;
}

TEST(Scenarios, LimitsOfAScenarioThatIsNotThereAreRefusedWithThoseThatAre)
{
    const BatchJob job = Projected(Rows("A", "Effort", BehindTheData(), 3, 100),
                                   {"--bootstraps", "10", "--seed", "5", "--project-ci", "Z"});
    EXPECT_EQ(job.status, 2);
    EXPECT_NE(job.err.find("No such Projection Scenario Exists: \"Z\". There are \"A\"."), std::string::npos)
        << job.err;
}

TEST(Scenarios, ProjectionsAreWrittenAsATableAndPrintedBelowTheReport)
{
    const ScratchDirectory folder;
    const int next = BehindTheData();
    const BatchJob job = Projected(
        Rows("\"A, half\"", "Effort", next, 2, 100),
        {"--csv", folder.Path("out"), "--bootstraps", "20", "--seed", "1", "--project-ci", "A, half"});
    ASSERT_EQ(job.status, 0) << job.err;
    const std::string table = folder.Read("out/projections.csv");
    EXPECT_TRUE(table.starts_with("Scenario,Units,Time,Population,Low,High\n\"A, half\",Effort," +
                                  std::to_string(next) + ","))
        << table;
    EXPECT_NE(table.find("\nFit,,1"), std::string::npos) << table;
    EXPECT_NE(job.out.find("\nProjections\n  Time"), std::string::npos) << job.out;
    EXPECT_NE(job.out.find("\n  " + std::to_string(next + 2) + "  "), std::string::npos) << job.out;
}

TEST(Scenarios, AScenarioFileIsNotReplacedByResults)
{
    const ScratchDirectory folder;
    const std::string file =
        folder.File("projections.csv", kHeading + Rows("A", "Effort", BehindTheData(), 2, 100));
    const BatchJob job = RunJob(SchaeferWords({"--scenarios", file, "--csv", folder.Path()}));
    EXPECT_EQ(job.status, 2);
    EXPECT_NE(job.err.find("which is the scenario file"), std::string::npos) << job.err;
}

TEST(Scenarios, AProjectKeepsItsOwnScenariosWhenAFitIsLogged)
{
    const ScratchDirectory folder;
    const std::string scenarios =
        folder.File("s.csv", kHeading + Rows("A", "Effort", BehindTheData(), 2, 100));
    const std::string project = folder.Path("p.vl3");
    const BatchJob job =
        RunJob(SchaeferWords({"--scenarios", scenarios, "--log-as", "One", "--project", project}));
    ASSERT_EQ(job.status, 0) << job.err;
    const Json dump = RunJob({"dump", project, "--json"}).Json();
    EXPECT_EQ(dump.dump().find("\"A\""), std::string::npos) << dump.dump(1);
    const BatchJob again = RunJob({"fit", "--data", project, "--model", "schaefer", "--bootstraps", "5",
                                   "--seed", "1", "--project-ci", "A"});
    EXPECT_EQ(again.status, 3); // it has none, and no periods for one
}

TEST(Scenarios, AnEffortProjectionOfAClosedCohortIsRemarkedUpon)
{
    const std::vector<std::string> words{"fit",
                                         "--data",
                                         Sample("projections/hand3.txt"),
                                         "--time-column",
                                         "T",
                                         "--columns",
                                         "Effort=Effort,Catch=Catch Nums,Total=Tot. Catch Nums",
                                         "--model",
                                         "no-recruitment",
                                         "--m",
                                         "0",
                                         "--format",
                                         "json",
                                         "--scenarios",
                                         Sample("projections/hand3_m1_e1_p3.csv")};
    const BatchJob job = RunJob(words);
    ASSERT_EQ(job.status, 0) << job.err;
    int remarks = 0;
    const Json object = job.Json();
    for (const Json& remark : object["Remarks"])
        remarks += remark["Code"] == "ProjectionStale" ? 1 : 0;
    EXPECT_EQ(remarks, 1);
    EXPECT_NE(job.err.find("velt-batch: remark: Under an effort scenario"), std::string::npos) << job.err;
}

TEST(Scenarios, AGapInTheTotalCatchIsRefusedWithItsPeriod)
{
    const ScratchDirectory folder;
    const std::string data =
        folder.File("d.txt", "gap\nYear Effort Catch Total\n1990 100 50 50\n1991 120 55 55\n1992 140 60 -1\n"
                             "1993 160 62 62\n1994 180 60 60\n1995 150 50 50\n");
    const std::string scenarios = folder.File("s.csv", kHeading + Rows("A", "Effort", 1996, 2, 100));
    const BatchJob job = RunJob(SchaeferWords({"--scenarios", scenarios}, data));
    EXPECT_EQ(job.status, 3);
    EXPECT_NE(job.err.find("The period 1992 has no total catch"), std::string::npos) << job.err;
}
