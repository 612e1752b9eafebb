// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchFailure.h"
#include "batch/BatchJob.h"
#include "batch/CommandLine.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

namespace
{
/// A line that is accepted, with `more` behind it.
std::vector<std::string> Line(std::vector<std::string> more)
{
    std::vector<std::string> words{
        "fit", "--data", "a.txt", "--time-column", "Year", "--columns", "C=Tot. Catch Wt,I=Abundance Index"};
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

FitRequest Accepted(std::vector<std::string> more)
{
    std::ostringstream out;
    return *ParseCommandLine(Line(std::move(more)), out);
}

std::string RefusalOf(const std::vector<std::string>& words)
{
    try {
        std::ostringstream out;
        ParseCommandLine(words, out);
    } catch (const BatchFailure& failure) {
        EXPECT_EQ(failure.status, ExitStatus::BadUsage);
        return failure.message;
    }
    return "taken";
}

void ExpectRefused(std::vector<std::string> more, const std::string& part)
{
    const std::string refusal = RefusalOf(Line(std::move(more)));
    EXPECT_NE(refusal.find(part), std::string::npos) << refusal << " does not say " << part;
}
} // namespace

TEST(CommandLine, WhatIsNotGivenStaysWithTheProgramsDefaults)
{
    const FitRequest request = Accepted({"--model", "schaefer"});

    EXPECT_EQ(request.model, 5);
    EXPECT_EQ(request.errorModel, 1);
    EXPECT_FALSE(request.mort || request.z || request.lag || request.initialProportion || request.seed);
    EXPECT_EQ(request.minimiser, MinimiserOptions{});
    EXPECT_FALSE(request.bootstraps || request.json || request.SetsStart());
}

TEST(CommandLine, EveryModelAndErrorModelHasItsWord)
{
    for (std::size_t i = 0; i < ModelNames().size(); ++i)
        EXPECT_EQ(Accepted({"--model", ModelNames()[i]}).model, static_cast<std::int32_t>(i) + 1);
    for (std::size_t i = 0; i < ErrorModelNames().size(); ++i)
        EXPECT_EQ(Accepted({"--model", "fox", "--error", ErrorModelNames()[i]}).errorModel,
                  static_cast<std::int32_t>(i) + 1);
}

TEST(CommandLine, TakesEveryInputOfAFit)
{
    const FitRequest request =
        Accepted({"--model", "pella-tomlinson", "--error", "log", "--init-proportion", "0.8", "--lag", "2",
                  "--z", "1.5", "--exclude", "1971, 1975", "--start", "k=5000,R=0.3", "--fix", "r"});

    EXPECT_EQ(Accepted({"--model", "no-recruitment", "--m", "0.3"}).mort, 0.3F);
    EXPECT_EQ(request.initialProportion, 0.8F);
    EXPECT_EQ(request.lag, std::int16_t{2});
    EXPECT_EQ(request.z, 1.5F);
    EXPECT_EQ(request.exclude, (std::vector<std::int32_t>{1971, 1975}));
    ASSERT_EQ(request.start.size(), 2U);
    EXPECT_EQ(request.start[0].parameter, "K");
    EXPECT_EQ(request.start[0].value, 5000.0);
    EXPECT_EQ(request.fix, (std::vector<std::string>{"R"}));
}

TEST(CommandLine, TakesTheSettingsOfTheMinimiserAndTheBootstraps)
{
    const FitRequest request =
        Accepted({"--model", "fox", "--max-its", "900", "--ftol", "1e-9", "--xtol", "1e-6", "--converge-on",
                  "either", "--bootstraps", "50", "--seed", "7", "--ci", "0.1,0.9"});

    EXPECT_EQ(request.minimiser.intMaxIts, 900);
    EXPECT_EQ(request.minimiser.sngFTOL, 1e-9F);
    EXPECT_EQ(request.minimiser.sngXTOL, 1e-6F);
    EXPECT_EQ(request.minimiser.ConvergeOn, 0);
    EXPECT_EQ(request.minimiser.BS, 50);
    EXPECT_TRUE(request.bootstraps);
    EXPECT_EQ(request.seed, 7U);
    EXPECT_EQ(request.ciLow, 0.1);
    EXPECT_EQ(request.ciHigh, 0.9);
}

TEST(CommandLine, AHeadingMayHoldAnEqualsSign)
{
    std::ostringstream out;
    const auto request = ParseCommandLine(
        {"fit", "--data", "a.txt", "--time-column", "Year", "--columns", "q=1=Effort", "--model", "fox"},
        out);

    EXPECT_EQ(request->columns.front().heading, "q=1");
    EXPECT_EQ(request->columns.front().gridTitle, "Effort");
}

TEST(CommandLine, AWrongValueIsRefusedWithTheSentenceOfItsField)
{
    ExpectRefused({"--model", "no-recruitment", "--m=-1"}, "--m: Natural Mortality must be >= 0");
    ExpectRefused({"--model", "no-recruitment", "--m", "much"}, "--m: Natural Mortality must be >= 0");
    ExpectRefused({"--model", "fox", "--init-proportion", "1.1"}, "--init-proportion: Initial Proportion");
    ExpectRefused({"--model", "fox", "--lag=-1"}, "--lag: Time Lag must be >=0");
    ExpectRefused({"--model", "pella-tomlinson", "--z", "0"}, "--z: Z shape parameter must be > 0");
    ExpectRefused({"--model", "fox", "--bootstraps", "1001"}, "--bootstraps: Value must be in the range");
    ExpectRefused({"--model", "fox", "--max-its", "0"}, "--max-its: Value must be numeric and > 0");
    ExpectRefused({"--model", "fox", "--ftol", "0"}, "--ftol: Value must be numeric and > 0");
    ExpectRefused({"--model", "fox", "--start", "K=-5"}, "--start: Starting Value must be >= 0");
}

TEST(CommandLine, AnUnknownWordIsRefusedWithTheWordsThatExist)
{
    ExpectRefused({"--model", "ricker"}, "--model is one of no-recruitment, recruitment-index");
    ExpectRefused({"--model", "fox", "--error", "normal"}, "--error is one of ls, log, gamma, wls");
    ExpectRefused({"--model", "fox", "--format", "xml"}, "--format is one of text, json");
    ExpectRefused({"--model", "fox", "--converge-on", "none"}, "--converge-on is one of both, either");
    ExpectRefused({"--model", "fox", "--start", "N1=5"}, "this model starts from K and R, not from \"N1\"");
    ExpectRefused({"--model", "fox", "--unheard-of", "5"}, "--unheard-of");
}

TEST(CommandLine, WhatIsMissingIsNamed)
{
    EXPECT_NE(RefusalOf({"fit"}).find("--data and --csv-data"), std::string::npos);
    EXPECT_NE(RefusalOf({"fit", "--data", "a.txt"}).find("--time-column"), std::string::npos);
    EXPECT_EQ(RefusalOf({"fit", "--data", "a.txt", "--time-column", "Y"}),
              "--columns assigns the columns of the file to those of the data set; it is missing.");
    ExpectRefused({}, "--model names the model to fit; it is missing");
    EXPECT_NE(RefusalOf({}), "taken");
    EXPECT_NE(RefusalOf({"fit", "--data", "a", "--csv-data", "b"}), "taken");
}

TEST(CommandLine, ListsAndPairsMustBeWhole)
{
    ExpectRefused({"--model", "fox", "--exclude", "1971,,1972"}, "--exclude: an item of the list");
    ExpectRefused({"--model", "fox", "--exclude", "1971x"}, "--exclude takes time labels, not \"1971x\"");
    ExpectRefused({"--model", "fox", "--start", "K"}, "--start takes NAME=VALUE, not \"K\"");
    ExpectRefused({"--model", "fox", "--bootstraps", "9", "--ci", "0.1"}, "--ci takes two levels");
    ExpectRefused({"--model", "fox", "--seed=-1"}, "--seed takes a whole number");
}

TEST(CommandLine, TheRecruitmentIndexModelHasNoProjections)
{
    for (const char* option : {"--scenarios", "--project-ci"})
        ExpectRefused({"--model", "recruitment-index", option, "x"},
                      std::string(option) + ": the recruitment index model cannot be projected");
    EXPECT_EQ(Accepted({"--model", "fox", "--scenarios", "s.csv"}).scenarios, "s.csv");
}

TEST(CommandLine, LimitsOfAProjectionNeedBootstrapsAndAScenario)
{
    ExpectRefused({"--model", "fox", "--project-ci", "Low", "--scenarios", "s.csv"},
                  "--project-ci: limits come from bootstraps");
    ExpectRefused({"--model", "fox", "--project-ci", "Low", "--bootstraps", "9"},
                  "--project-ci: a table has no scenarios");
    EXPECT_EQ(Accepted({"--model", "fox", "--project-ci", "Low", "--bootstraps", "9", "--scenarios", "s.csv"})
                  .projectCi,
              "Low");
}

TEST(CommandLine, ARegressionTakesNoStartingValues)
{
    ExpectRefused({"--model", "no-recruitment", "--start", "N1=500"}, "takes no starting values");
    EXPECT_EQ(Accepted({"--model", "no-recruitment", "--error", "log", "--start", "N1=500"}).start.size(),
              1U);
    EXPECT_EQ(Accepted({"--model", "schaefer", "--start", "K=500"}).start.size(), 1U);
}

TEST(CommandLine, OnlyASearchOverTwoParametersHasASurface)
{
    ExpectRefused({"--model", "no-recruitment", "--error", "log", "--contours", "9"},
                  "--contours: this model");
    ExpectRefused({"--model", "recruitment-index", "--contours", "9"}, "--contours: this model");
    ExpectRefused({"--model", "fox", "--contours", "0"}, "--contours");
    EXPECT_EQ(Accepted({"--model", "fox", "--contours", "9"}).contours, std::int16_t{9});
}

TEST(CommandLine, LimitsNeedBootstraps)
{
    ExpectRefused({"--model", "fox", "--ci", "0.1,0.9"}, "--bootstraps");
}

// A low level above 1 and a high one below 0 used to pass; the first made a limit of 0, the second ended the
// job with "Subscript out of range" after all the bootstraps.
TEST(CommandLine, ALevelOutsideZeroToOneIsRefusedBeforeAnyFit)
{
    for (const char* levels :
         {"2,3", "-1,0.5", "2,0.5", "0.5,-1", "1e300,0.5", "0.5,-0.0000001", "1.0000001,0.5"})
        ExpectRefused({"--model", "fox", "--bootstraps", "9", std::string("--ci=") + levels},
                      std::string("--ci: Confidence Interval levels must lie in the range 0 - 1, not ") +
                          levels);
    ExpectRefused({"--model", "fox", "--bootstraps", "9", "--ci", "nan,1"}, "--ci takes two levels");
}

// Limits used to come out in the wrong order, the high one under "low".
TEST(CommandLine, ALowLevelThatIsNotBelowTheHighOneIsRefused)
{
    for (const char* levels : {"0.9,0.1", "0.5,0.5", "1,0"})
        ExpectRefused({"--model", "fox", "--bootstraps", "9", std::string("--ci=") + levels},
                      std::string("--ci: the low level stands first and is below the high one, not ") +
                          levels);
}

// An empty text, as of a script's variable that is not set, used to count as an option that was not given.
TEST(CommandLine, AnEmptyValueIsRefusedByTheNameOfItsOption)
{
    for (const char* option : {"--model",       "--error",      "--m",       "--init-proportion",
                               "--lag",         "--z",          "--exclude", "--start",
                               "--fix",         "--max-its",    "--ftol",    "--xtol",
                               "--converge-on", "--bootstraps", "--seed",    "--ci",
                               "--format",      "--csv",        "--plots",   "--contours",
                               "--scenarios",   "--project-ci", "--csv-data"})
        for (const char* value : {"", "  ", "\t"})
            ExpectRefused({option, value}, std::string(option) + ": the value is empty.");
    EXPECT_EQ(RefusalOf({"fit", "--data", "", "--csv-data", "a.csv"}), "--data: the value is empty.");
    EXPECT_EQ(RefusalOf({"fit", "--data", "a", "--time-column="}).rfind("--time-column: ", 0), 0U);
}

// The dialogs round; the command used to do the same without a word.
TEST(CommandLine, AFractionWhereACountIsMeantIsRefused)
{
    ExpectRefused({"--model", "fox", "--bootstraps", "10.5"}, "--bootstraps takes a whole number, not 10.5.");
    ExpectRefused({"--model", "fox", "--max-its", "3.7"}, "--max-its takes a whole number, not 3.7.");
    ExpectRefused({"--model", "fox", "--lag", "0.5"}, "--lag takes a whole number, not 0.5.");
    ExpectRefused({"--model", "fox", "--contours", "2.5"}, "--contours takes a whole number, not 2.5.");
    ExpectRefused({"--model", "fox", "--seed", "1.5"}, "--seed takes a whole number");
    ExpectRefused({"--model", "fox", "--bootstraps", "9.999999999"}, "--bootstraps takes a whole number");
    EXPECT_EQ(Accepted({"--model", "fox", "--bootstraps", "1e2"}).minimiser.BS, 100);
}

// Such a value used to be taken, shown in the report and used for nothing.
TEST(CommandLine, AnInputThatTheModelDoesNotHaveIsToldWithThoseThatItHas)
{
    const auto notes = [](const char* model, const char* option, const char* value) {
        return Accepted({"--model", model, option, value}).notes;
    };
    const auto expect = [&notes](const char* model, const char* option, const std::string& taken) {
        EXPECT_EQ(notes(model, option, "0.5"),
                  std::vector{std::string(option) + " has no meaning for the model " + model +
                              ", which takes " + taken + "; it was not used."});
    };
    for (const char* option : {"--init-proportion", "--z"})
        expect("no-recruitment", option, "--m");
    EXPECT_EQ(notes("recruitment-index", "--lag", "2").size(), 1U);
    expect("constant-recruitment", "--z", "--m, --init-proportion");
    for (const char* option : {"--m", "--z"})
        expect("schaefer", option, "--init-proportion, --lag");
    expect("pella-tomlinson", "--m", "--init-proportion, --lag, --z");
}

TEST(CommandLine, AnInputThatTheModelHasOrThatStandsAtItsDefaultIsNotWorthAWord)
{
    EXPECT_TRUE(Accepted({"--model", "fox", "--m", "0.2", "--z", "1", "--lag", "1"}).notes.empty());
}

TEST(CommandLine, AnOptionsValueIsQuotedShortAndWithoutControlCharacters)
{
    const std::string shown = std::string(300, 'x') + "...";
    const std::string typed(100000, 'x');
    ExpectRefused({"--model", typed}, "not \"" + shown + "\".");
    ExpectRefused({"--model", "\x1B[2J\xFF"}, "not \"\\x1b[2J\\xff\".");
    for (const char* option : {"--exclude", "--start", "--seed"})
        ExpectRefused({"--model", "fox", option, typed}, shown);
    ExpectRefused({"--model", "fox", "--bootstraps", "9", "--ci", typed}, shown);
    for (const char* option :
         {"--exclude", "--start", "--seed", "--fix", "--error", "--format", "--lag", "--m"})
        EXPECT_LT(RefusalOf(Line({"--model", "fox", option, typed})).size(), 600U) << option;
    EXPECT_LT(RefusalOf(Line({"--model", "fox", typed})).size(), 600U);
}

// The comma used to end the item, so that such a column could not be named.
TEST(CommandLine, AHeadingMayHoldACommaBeforeItsEqualsSign)
{
    std::ostringstream out;
    const auto request = ParseCommandLine({"fit", "--data", "a.txt", "--time-column", "Year", "--columns",
                                           "Fish=Tot. Catch Nums, Lines, set=Effort", "--model", "fox"},
                                          out);

    ASSERT_EQ(request->columns.size(), 2U);
    EXPECT_EQ(request->columns[0].gridTitle, "Tot. Catch Nums");
    EXPECT_EQ(request->columns[1].heading, "Lines, set");
    EXPECT_EQ(
        RefusalOf({"fit", "--data", "a", "--time-column", "Y", "--columns", "C=Effort,", "--model", "fox"}),
        "--columns takes NAME=VALUE, not \"\".");
}

// The sentence of the dialog used to say that 40000 must be above 0.
TEST(CommandLine, ANumberBeyond16BitsIsRefusedWithTheLargestThatFits)
{
    ExpectRefused({"--model", "fox", "--lag", "32768"}, "--lag is at most 32767, not 32768.");
    ExpectRefused({"--model", "fox", "--max-its", "40000"}, "--max-its is at most 32767, not 40000.");
    EXPECT_EQ(Accepted({"--model", "fox", "--max-its", "32767"}).minimiser.intMaxIts, 32767);
}

// The second value used to win without a word.
TEST(CommandLine, AStartingValueGivenTwiceIsRefused)
{
    ExpectRefused({"--model", "fox", "--start", "K=1,R=2,k=3"}, "--start gives K two values.");
}

// The fit used to end with "Unable to Generate Contours", which does not say why.
TEST(CommandLine, ASurfaceOfOnePointIsRefused)
{
    ExpectRefused({"--model", "fox", "--contours", "1"}, "--contours: a surface has at least 2 points");
    EXPECT_EQ(Accepted({"--model", "fox", "--contours", "2"}).contours, std::int16_t{2});
}

TEST(CommandLine, HelpIsNoFailure)
{
    const BatchJob help = RunJob({"fit", "--help"});

    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--time-column"), std::string::npos);
    EXPECT_TRUE(help.err.empty());
}

TEST(CommandLine, EveryOptionOfTheHelpStandsInTheManual)
{
    std::ostringstream page;
    page << std::ifstream(Sample("../../docs/velt-batch.1")).rdbuf();
    std::string manual = std::regex_replace(page.str(), std::regex(R"(\\-)"), "-");
    ASSERT_FALSE(manual.empty());

    std::string help;
    for (const char* command : {"fit", "dump", "convert", "export"})
        help += RunJob({command, "--help"}).out;
    const std::regex option("--[a-z][a-z-]*");
    for (auto match = std::sregex_iterator(help.begin(), help.end(), option); match != std::sregex_iterator();
         ++match)
        EXPECT_TRUE(match->str() == "--help" || manual.find(match->str()) != std::string::npos)
            << match->str();
}
