// SPDX-License-Identifier: GPL-3.0-or-later
#include "graphs/ProjGraph.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

namespace
{
/// Two periods of data from 1990 on and two future ones: the fit falls to 60, "Low" goes on to 50 and 40,
/// "High" to 20 and 10.
ProjGraph Projection(int scenarios, bool withFit, bool withCI = false)
{
    ProjGraph graph;
    graph.Create(scenarios, 5, withFit, 3, withCI);
    graph.XTitle("Time");
    graph.YTitle("Population");
    const float fit[] = {100.0F, 80.0F, 60.0F, 0.0F, 0.0F};
    const float low[] = {0.0F, 0.0F, 60.0F, 50.0F, 40.0F};
    const float high[] = {0.0F, 0.0F, 60.0F, 20.0F, 10.0F};
    for (int i = 1; i <= 5; ++i) {
        graph.XData(i, static_cast<float>(1989 + i));
        graph.ProjData(1, i, low[i - 1]);
        if (scenarios == 2)
            graph.ProjData(2, i, high[i - 1]);
        if (withFit)
            graph.ProjData(scenarios + 1, i, fit[i - 1]);
        graph.ErrorMinus(i, static_cast<float>(i));
        graph.ErrorPlus(i, static_cast<float>(100 + i));
    }
    return graph;
}
} // namespace

TEST(ProjGraph, ANewOneHasTheTitlesOfANewGraph)
{
    const ProjGraph graph;
    EXPECT_EQ(graph.Title(), "Title");
    EXPECT_EQ(graph.XTitle(), "X_Title");
    EXPECT_EQ(graph.YTitle(), "Y_Title");
}

TEST(ProjGraph, TheFitIsOneLineMore)
{
    EXPECT_EQ(Projection(2, true).NumLines(), 3);
    EXPECT_EQ(Projection(2, false).NumLines(), 2);
}

TEST(ProjGraph, TheScenariosBeginWhereTheFitEnds)
{
    const ProjGraph graph = Projection(2, true);
    for (int i = 1; i <= 5; ++i) {
        EXPECT_EQ(graph.Drawn(1, i), i >= 3) << i;
        EXPECT_EQ(graph.Drawn(2, i), i >= 3) << i;
        EXPECT_EQ(graph.Drawn(3, i), i <= 3) << i;
    }
}

TEST(ProjGraph, ThePointAtTheStartIsOnBothLines)
{
    const ProjGraph graph = Projection(1, true);
    EXPECT_TRUE(graph.Drawn(1, 3));
    EXPECT_TRUE(graph.Drawn(2, 3));
    EXPECT_EQ(graph.ProjData(1, 3), graph.ProjData(2, 3));
}

TEST(ProjGraph, HidingTheFitAndShowingItAgainLosesNothing)
{
    ProjGraph graph = Projection(1, true);
    const std::string before = graph.CopiedText();
    graph.WithFit(false);
    EXPECT_EQ(graph.NumLines(), 1);
    EXPECT_NE(graph.CopiedText(), before);
    graph.WithFit(true);
    EXPECT_EQ(graph.NumLines(), 2);
    EXPECT_EQ(graph.CopiedText(), before);
}

TEST(ProjGraph, AGraphWithoutAFitHasNoneToShow)
{
    ProjGraph graph = Projection(1, false);
    graph.WithFit(true);
    EXPECT_FALSE(graph.WithFit());
    EXPECT_EQ(graph.NumLines(), 1);
}

TEST(ProjGraph, ACopyWithTheFitHasThePastFromTheFitAndTheFutureFromTheScenario)
{
    EXPECT_EQ(Projection(1, true).CopiedText(), "Time\tPopulation\r\n"
                                                "1990\t100\r\n"
                                                "1991\t80\r\n"
                                                "1992\t60\r\n"
                                                "1993\t50\r\n"
                                                "1994\t40\r\n");
}

TEST(ProjGraph, ACopyWithoutTheFitHasNoLineForThePast)
{
    EXPECT_EQ(Projection(1, false).CopiedText(), "Time\tPopulation\r\n"
                                                 "1993\t50\r\n"
                                                 "1994\t40\r\n");
}

TEST(ProjGraph, OfSeveralScenariosTheSecondStandsInThePlaceOfTheFitInACopy)
{
    EXPECT_EQ(Projection(2, true).CopiedText(), "Time\tPopulation\r\n"
                                                "1990\t0\r\n"
                                                "1991\t0\r\n"
                                                "1992\t60\r\n"
                                                "1993\t50\r\n"
                                                "1994\t40\r\n");
}

// The point where the fit ends still is the second line's, also where the first has another value there.
TEST(ProjGraph, ThePointAtTheStartIsCopiedFromTheSecondLine)
{
    ProjGraph graph = Projection(1, true);
    graph.ProjData(1, 3, 61.0F);
    EXPECT_NE(graph.CopiedText().find("1992\t60\r\n"), std::string::npos);
}

TEST(ProjGraph, ACopyOfAnIntervalHasTheLowerLimitBeforeTheUpperOne)
{
    EXPECT_EQ(Projection(1, true, true).CopiedText(), "Time\tPopulation\tCI Low\tCI High\r\n"
                                                      "1990\t100\t1\t101\r\n"
                                                      "1991\t80\t2\t102\r\n"
                                                      "1992\t60\t3\t103\r\n"
                                                      "1993\t50\t4\t104\r\n"
                                                      "1994\t40\t5\t105\r\n");
}

TEST(ProjGraph, TheHeadingOfACopyIsThatOfTheFieldsAlsoWhenTheUserEditedTheTitle)
{
    ProjGraph graph = Projection(1, false);
    graph.Title("Projection #1");
    graph.UserTitle("My projection");
    EXPECT_EQ(graph.UserTitle(), "My projection");
    EXPECT_TRUE(graph.CopiedText().starts_with("Time\tPopulation\r\n"));
}

TEST(ProjGraph, LinesAndPointsOutsideAreRefused)
{
    ProjGraph graph = Projection(1, true);
    EXPECT_THROW(graph.ProjData(3, 1), VeltError);
    EXPECT_THROW(graph.ProjData(0, 1), VeltError);
    EXPECT_THROW(graph.ProjData(1, 6), VeltError);
    EXPECT_THROW(graph.XData(0), VeltError);
    EXPECT_THROW(graph.LegendText(3), VeltError);
}
