// SPDX-License-Identifier: GPL-3.0-or-later
// velt-batch with projects: fits are logged in them, read from them, and they are looked into.
#include "BatchJob.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{
BatchJob LogIn(const std::string& project, const std::string& name, const std::vector<std::string>& more = {})
{
    std::vector<std::string> words{"--log-as", name, "--project", project};
    words.insert(words.end(), more.begin(), more.end());
    return RunJob(SchaeferWords(words));
}

BatchJob FitOf(const std::string& project, std::vector<std::string> more = {})
{
    more.insert(more.begin(), {"fit", "--data", project, "--model", "schaefer"});
    return RunJob(std::move(more));
}
} // namespace

TEST(Projects, AFitIsLoggedInANewProjectAndTheDataComeBackFromIt)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    const BatchJob logged = LogIn(project, "First", {"--format", "json"});
    ASSERT_EQ(logged.status, 0) << logged.err;
    const BatchJob again = FitOf(project, {"--format", "json"});
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(again.Json()["Estimates"], logged.Json()["Estimates"]);
    EXPECT_EQ(again.Json()["Series"], logged.Json()["Series"]);
}

TEST(Projects, AFurtherFitIsLoggedInTheProjectThatTheDataComeFrom)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    ASSERT_EQ(LogIn(project, "First").status, 0);
    const BatchJob second =
        FitOf(project, {"--error", "log", "--bootstraps", "20", "--seed", "3", "--log-as", "Second"});
    ASSERT_EQ(second.status, 0) << second.err;
    const nlohmann::json dump = RunJob({"dump", "--json", project}).Json();
    ASSERT_EQ(dump["Fits"].size(), 2U);
    EXPECT_EQ(dump["Fits"][0]["FitName"], "First");
    EXPECT_EQ(dump["Fits"][0]["Model"], "schaefer");
    EXPECT_EQ(dump["Fits"][1]["ErrorModel"], "log");
    EXPECT_EQ(dump["Fits"][1]["Body"]["Model"]["NumBootStraps"], 20);
    EXPECT_EQ(dump["Fits"][1]["Body"]["BS"]["1"].size(), 20U);
    EXPECT_EQ(dump["Fits"][0]["TheEnd"], dump["Fits"][1]["Start"]);
    EXPECT_EQ(dump["Fits"][1]["TheEnd"], std::filesystem::file_size(project) + 1);
}

TEST(Projects, TheSameTableMayBeLoggedInItsProjectAgainAndAnotherTableMayNot)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    ASSERT_EQ(LogIn(project, "First").status, 0);
    EXPECT_EQ(LogIn(project, "Second").status, 0);
    const std::string before = folder.Read("stock.vl3");
    const BatchJob other =
        RunJob({"fit", "--data", Sample("expected/const25.txt"), "--time-column", "Year", "--columns",
                "Effort=Effort,Catch=Catch Nums,Total=Tot. Catch Nums", "--model", "constant-recruitment",
                "--log-as", "Third", "--project", project});
    EXPECT_EQ(other.status, 3);
    EXPECT_NE(other.err.find("holds other data"), std::string::npos);
    EXPECT_EQ(folder.Read("stock.vl3"), before);
}

TEST(Projects, ANameThatIsTakenIsRefusedBeforeAFitIsMade)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    ASSERT_EQ(LogIn(project, "First").status, 0);
    const std::string before = folder.Read("stock.vl3");
    const BatchJob twice = LogIn(project, "First");
    EXPECT_EQ(twice.status, 2);
    EXPECT_NE(twice.err.find("\"First\" already"), std::string::npos);
    EXPECT_EQ(folder.Read("stock.vl3"), before);
}

TEST(Projects, OptionsThatDoNotGoTogetherAreRefusedByName)
{
    const auto refusal = [](std::vector<std::string> more) {
        more.insert(more.begin(), "fit");
        const BatchJob job = RunJob(std::move(more));
        EXPECT_EQ(job.status, 2);
        return job.err;
    };
    const auto has = [](const std::string& text, const char* part) {
        return text.find(part) != std::string::npos;
    };
    EXPECT_TRUE(
        has(refusal({"--data", "a.vl3", "--time-column", "Year", "--model", "fox"}), "--time-column"));
    EXPECT_TRUE(has(RunJob(SchaeferWords({"--project", "a.vl3"})).err, "--log-as"));
    EXPECT_TRUE(has(RunJob(SchaeferWords({"--log-as", "A"})).err, "--project"));
    EXPECT_TRUE(has(RunJob(SchaeferWords({"--log-as", "A", "--project", "a.txt"})).err, ".vl3"));
    EXPECT_TRUE(has(RunJob(SchaeferWords({"--log-as", "\xD0\xBB", "--project", "a.vl3"})).err, "--log-as"));
}

TEST(Projects, AProjectThatCannotBeReadIsBadDataWithTheByte)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    ASSERT_EQ(LogIn(project, "First").status, 0);
    const std::string whole = folder.Read("stock.vl3");
    const std::string cut = folder.File("cut.vl3", whole.substr(0, 500));
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"fit", "--data", cut, "--model", "fox"}, {"info", cut}, {"dump", "--json", cut}}) {
        const BatchJob job = RunJob(words);
        EXPECT_EQ(job.status, 3);
        EXPECT_NE(job.err.find("Byte "), std::string::npos);
        EXPECT_TRUE(job.out.empty());
    }
    const BatchJob missing = RunJob({"info", folder.Path("missing.vl3")});
    EXPECT_EQ(missing.status, 3);
    EXPECT_EQ(RunJob({"info", folder.File("text.vl3", "nothing of ours")}).status, 3);
}

TEST(Projects, ADamagedBodyIsToldAndTheRestIsShown)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    ASSERT_EQ(LogIn(project, "First").status, 0);
    const std::string whole = folder.Read("stock.vl3");
    const std::string cut = folder.File("cut.vl3", whole.substr(0, whole.size() - 10));
    const BatchJob info = RunJob({"info", cut});
    EXPECT_EQ(info.status, 0);
    EXPECT_NE(info.out.find("First: schaefer, ls"), std::string::npos);
    EXPECT_NE(info.out.find("damaged"), std::string::npos);
    EXPECT_TRUE(RunJob({"dump", "--json", cut}).Json()["Fits"][0].contains("Damage"));
}

TEST(Projects, InfoTellsPeriodsColumnsAndFits)
{
    const ScratchDirectory folder;
    const std::string project = folder.Path("stock.vl3");
    ASSERT_EQ(LogIn(project, "First", {"--exclude", "1975"}).status, 0);
    const BatchJob info = RunJob({"info", project});
    EXPECT_EQ(info.status, 0);
    for (const char* part : {"Periods 19", "Effort              30 values", "Logged fits: 1", "Scenarios: 0",
                             "First: schaefer, ls, 20"})
        EXPECT_NE(info.out.find(part), std::string::npos) << part << "\n" << info.out;
}

TEST(Projects, AFolderThatDoesNotExistIsToldAndNothingIsLeftBehind)
{
    const ScratchDirectory folder;
    const BatchJob job = LogIn(folder.Path("missing/stock.vl3"), "First");
    EXPECT_EQ(job.status, 2);
    EXPECT_NE(job.err.find("cannot be written"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("missing")));
}
