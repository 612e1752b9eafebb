// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/modVeltGlobals.h"

#include <gtest/gtest.h>

using modVeltGlobals::CacheStrings;
using modVeltGlobals::Globals;

TEST(modVeltGlobals, TheCacheRoutineRunsOnceOnlyTheSecondCallReturnsAtOnce)
{
    Globals globals;
    ASSERT_TRUE(CacheStrings(globals));
    globals.K = "changed";

    EXPECT_FALSE(CacheStrings(globals));

    EXPECT_EQ(globals.K, "changed"); // a second run would have put "K" back
}

TEST(modVeltGlobals, ArraysCountFromOneAndHoldTheirBlockOfTexts)
{
    Globals globals;
    CacheStrings(globals);

    EXPECT_EQ(globals.GraphTitles(1), "Expected and Observed CPUE");
    EXPECT_EQ(globals.GraphTitles(7), "Negative Likelihood Function");
    EXPECT_EQ(globals.ResidTitles(2), "Residual Catches"); // deliberate: 1 and 2 are the same words
    EXPECT_EQ(globals.ResidTitles(4), "ln Residual Catches");
    EXPECT_EQ(globals.ModelTitles(6), "PROD. MODEL(PELLA TOM)");
    EXPECT_EQ(globals.FitOpTitles(4), "LSQ Wt Fit");
    EXPECT_EQ(globals.ParamNames(8), "Rep Yield");
    EXPECT_EQ(globals.ColumnFileNames(1), "Tot_Catch_wt");
    EXPECT_EQ(globals.ColumnFileNames(15), "Pop_Nums");
    EXPECT_EQ(globals.ColumnDisplayNames(1), "Tot. Catch Wt");
    EXPECT_EQ(globals.ColumnDisplayNames(15), "Pop Nums");
    EXPECT_EQ(globals.ExcuseTexts(5), "Out of Memory");
}

TEST(modVeltGlobals, SingleTextsAreThoseOfTheirNames)
{
    Globals globals;
    CacheStrings(globals);

    EXPECT_EQ(globals.RSqrTitle, "R Sqr");
    EXPECT_EQ(globals.CountTitle, "Numbers");
    EXPECT_EQ(globals.TimeTitle, "Time");
    EXPECT_EQ(globals.ZShape, "Z Shape");
    EXPECT_EQ(globals.InitialPopulation, "Initial Population");
    EXPECT_EQ(globals.Of, "Of");
    EXPECT_EQ(globals.Help, "&Help");
}

TEST(modVeltGlobals, ARunStartsWithTheDefaultSettings)
{
    const modVeltGlobals::Settings settings;

    EXPECT_EQ(settings.sngFTOL, 1e-07F);
    EXPECT_EQ(settings.sngXTOL, 1e-04F);
    EXPECT_EQ(settings.intMaxIts, 500);
    EXPECT_EQ(settings.NumBootStraps, 500);
    EXPECT_EQ(settings.ConvergeOn, 3);
    EXPECT_EQ(settings.BootStrapConvergeOn, 0);
}
