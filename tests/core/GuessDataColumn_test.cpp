// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/GuessDataColumn.h"

#include "base/StringTable.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
const std::array<std::string, 9> kTitles{"Tot. Catch Wt",   "Tot. Catch Nums",   "Mean Wt",
                                         "Effort",          "Catch Wt",          "Catch Nums",
                                         "Abundance Index", "Var. Abund. Index", "Recruit. Index"};

/// The grid title that a heading is given; empty for none.
std::string Guess(const std::string& heading)
{
    const int column = GuessDataColumn(heading, kTitles);
    return column == 0 ? "" : kTitles.at(static_cast<std::size_t>(column - 1));
}

struct Case {
    const char* heading;
    const char* title;
};

void ExpectGuesses(const std::vector<Case>& cases)
{
    for (const Case& c : cases)
        EXPECT_EQ(Guess(c.heading), c.title) << c.heading;
}
} // namespace

// A table that was exported reads back without a hand on the list.
TEST(GuessDataColumn, EveryTitleAndEveryNameOfAnExportIsItsOwnColumn)
{
    const std::array<const char*, 9> exported{"Tot_Catch_wt", "Tot_Catch_Nums",  "Mean_Wt",
                                              "Effort_",      "Catch_Wt",        "Catch_Nums",
                                              "Abund_Index",  "Var_Abund_Index", "Recruit_Index"};
    for (std::size_t i = 0; i < kTitles.size(); ++i) {
        EXPECT_EQ(Guess(kTitles.at(i)), kTitles.at(i));
        EXPECT_EQ(Guess(exported.at(i)), kTitles.at(i));
    }
}

// They follow the user's columns in an export, and are no observations.
TEST(GuessDataColumn, WhatAFitWroteIntoAnExportIsNoColumnOfTheUser)
{
    for (const char* heading :
         {"Time", "Exp_CPUE", "Obs_CPUE", "Exp_Catch_Wt", "Exp_Catch_Nums", "Pop_Wt", "Pop_Nums"})
        EXPECT_EQ(Guess(heading), "") << heading;
}

TEST(GuessDataColumn, CaseBlanksAndPunctuationDoNotCount)
{
    ExpectGuesses({{"EFFORT", "Effort"},
                   {"  effort ", "Effort"},
                   {"MeanWt", "Mean Wt"},
                   {"mean-wt.", "Mean Wt"},
                   {"Tot.Catch.Wt", "Tot. Catch Wt"}, // R
                   {"tot catch\nwt", "Tot. Catch Wt"},
                   {"Mean\xC2\xA0Wt", "Mean Wt"}, // a no-break space
                   {"\"Recruit Index\"", "Recruit. Index"}});
}

TEST(GuessDataColumn, PlainWordsOfTheFieldAreKnown)
{
    ExpectGuesses({{"CPUE", "Abundance Index"},
                   {"Index", "Abundance Index"},
                   {"Catch per unit effort", "Abundance Index"},
                   {"Index of abundance", "Abundance Index"},
                   {"Fishing effort", "Effort"},
                   {"Mean weight", "Mean Wt"},
                   {"Total catch weight", "Tot. Catch Wt"},
                   {"Total catch numbers", "Tot. Catch Nums"},
                   {"Variance of index", "Var. Abund. Index"},
                   {"Recruits", "Recruit. Index"},
                   {"Recruitment index", "Recruit. Index"}});
}

TEST(GuessDataColumn, UnitsBehindANameDoNotCount)
{
    ExpectGuesses({{"Effort (boat days)", "Effort"},
                   {"Effort [1000 hooks]", "Effort"},
                   {"Effort, boat-days", "Effort"},
                   {"effort_vessels", "Effort"},
                   {"CPUE (kg/h)", "Abundance Index"},
                   {"CPUE kg/tow", "Abundance Index"},
                   {"mean_weight_kg", "Mean Wt"},
                   {"Mean Wt (g)", "Mean Wt"},
                   {"Tot. Catch Wt (t)", "Tot. Catch Wt"},
                   {"Total catch weight, 1000 t", "Tot. Catch Wt"},
                   {"Recruits (millions)", "Recruit. Index"}});
}

// A wrong guess that nobody looks at is a wrong answer; none is one click.
TEST(GuessDataColumn, WhatCouldMeanTwoColumnsIsLeftToThePerson)
{
    for (const char* heading : {"Catch", "catch_kg", "Landings", "Yield", "Total catch", "Catch weight",
                                "Catch numbers", "Catch (t)", "Days", "Boat days", "Hours", "Trips", "Weight",
                                "Numbers", "Abundance", "Biomass", "Total"})
        EXPECT_EQ(Guess(heading), "") << heading;
}

TEST(GuessDataColumn, AWordInsideAnotherHeadingIsNoName)
{
    for (const char* heading :
         {"Year of catch",    "Year of index", "Effort index",      "Log effort",     "Effort squared",
          "Effort lag 1 day", "Effort/day",    "Effort per trip",   "Catch per trip", "No effort",
          "CPUE SE",          "CPUE (CV)",     "Index (var)",       "log(CPUE)",      "Index 2",
          "Index2",           "CPUE boat",     "postrecruit_index", "pre-recruits",   "Mean weight t-1",
          "Mean length",      "geomean_cpue",  "Effort?2"})
        EXPECT_EQ(Guess(heading), "") << heading;
}

TEST(GuessDataColumn, LettersOfOtherAlphabetsAreLettersAndNotDropped)
{
    for (const char* heading : {"Index\xC3\xA9",
                                "\xC3\x84"
                                "CPUE",
                                "F\xC3\xA4nge",
                                "\xC3\x89"
                                "ffort",
                                "Effort\xC2\xB2", "\xD1\x83\xD0\xBB\xD0\xBE\xD0\xB2"})
        EXPECT_EQ(Guess(heading), "") << heading;
}

TEST(GuessDataColumn, NothingIsNoName)
{
    for (const char* heading :
         {"", " ", "...", "()", "_", "\xC2\xA0", "\xC2", "\xFF", "1", "1000", "t", "kg/h", "/"})
        EXPECT_EQ(Guess(heading), "") << heading;
}

TEST(GuessDataColumn, TitlesInOtherWordsAreFollowed)
{
    std::array<std::string, 9> titles = kTitles;
    titles[3] = "Hauls made";
    EXPECT_EQ(GuessDataColumn("hauls_made", titles), 4);
    titles[3] = "Hauls"; // a unit, but all there is of the name
    EXPECT_EQ(GuessDataColumn("hauls (1000)", titles), 0);
    EXPECT_EQ(GuessDataColumn("HAULS", titles), 4);
    EXPECT_EQ(GuessDataColumn("kg", titles), 0);
    titles[3] = "";
    EXPECT_EQ(GuessDataColumn("...", titles), 0);
}
