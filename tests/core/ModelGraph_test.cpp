// SPDX-License-Identifier: GPL-3.0-or-later
#include "graphs/ModelGraph.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <numeric>

namespace
{
ModelGraph GraphFrom(int first, int last)
{
    ModelGraph graph;
    graph.Create(last - first + 1);
    std::vector<double> x(static_cast<std::size_t>(last - first + 1));
    std::iota(x.begin(), x.end(), static_cast<double>(first));
    graph.XData(x);
    return graph;
}
} // namespace

TEST(ModelGraph, ANewGraphHasItsDefaultTitlesAndNoPoints)
{
    const ModelGraph graph;
    EXPECT_EQ(graph.Title(), "Title");
    EXPECT_EQ(graph.XTitle(), "X_Title");
    EXPECT_EQ(graph.YTitle(), "Y_Title");
    EXPECT_EQ(graph.NumPoints(), 0);
    EXPECT_EQ(graph.Type(), GraphType::PointsAndLine);
    EXPECT_FALSE(graph.WithToggs());
    EXPECT_FALSE(graph.YearAxis());
}

TEST(ModelGraph, CreateSizesTheSeriesToPointsThatAreNotDrawn)
{
    ModelGraph graph;
    graph.Create(3);

    EXPECT_EQ(graph.NumPoints(), 3);
    for (const auto* series : {&graph.XData(), &graph.YData(), &graph.YData2(), &graph.OverlayLine()}) {
        ASSERT_EQ(series->size(), 3U);
        for (const double value : *series)
            EXPECT_FALSE(ModelGraph::Shown(value));
    }
    EXPECT_TRUE(ModelGraph::Shown(0.0));
    EXPECT_TRUE(ModelGraph::Shown(-1.0));
}

TEST(ModelGraph, EachSetterTakesExactlyTheNumberOfPoints)
{
    ModelGraph graph;
    graph.Create(2);
    graph.YData(std::vector{1.0, 2.0});
    graph.YData2(std::vector{3.0, 4.0});
    graph.OverlayLine(std::vector{5.0, 6.0});

    EXPECT_EQ(graph.YData(), (std::vector{1.0, 2.0}));
    EXPECT_EQ(graph.YData2(), (std::vector{3.0, 4.0}));
    EXPECT_EQ(graph.OverlayLine(), (std::vector{5.0, 6.0}));
    for (const std::vector<double>& wrong : {std::vector{1.0}, std::vector{1.0, 2.0, 3.0}}) {
        try {
            graph.XData(wrong);
            FAIL() << wrong.size();
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, 9U);
        }
    }
}

TEST(ModelGraph, ATitleIsAlsoTheUsersUntilHeEditsIt)
{
    ModelGraph graph;
    graph.Title("Biomass vs Time");
    EXPECT_EQ(graph.UserTitle(), "Biomass vs Time");
    graph.UserTitle("Ling");
    EXPECT_EQ(graph.Title(), "Biomass vs Time");
}

TEST(ModelGraph, LimitsKindAndTogglingAreKept)
{
    ModelGraph graph;
    graph.Type(GraphType::Residuals);
    graph.UCI(2.5F);
    graph.LCI(-2.5F);
    graph.WithToggs(true);
    EXPECT_EQ(graph.Type(), GraphType::Residuals);
    EXPECT_EQ(graph.UCI(), 2.5F);
    EXPECT_EQ(graph.LCI(), -2.5F);
    EXPECT_TRUE(graph.WithToggs());
}

// 1987 down to a multiple of 5 is 1985, 1996 + 5 = 2001 down is 2000; (2000 - 1985) / 5 = 3.
TEST(ModelGraph, AnAxisOfYearsRunsBetweenMultiplesOfFiveInFiveSteps)
{
    const auto axis = GraphFrom(1987, 1996).YearAxis();
    ASSERT_TRUE(axis);
    EXPECT_EQ(axis->minimum, 1985.0);
    EXPECT_EQ(axis->maximum, 2000.0);
    EXPECT_EQ(axis->step, 3.0);
}

TEST(ModelGraph, OnlyYearsFrom1900To1999MakeAnAxisOfYears)
{
    EXPECT_FALSE(GraphFrom(1, 30).YearAxis());
    EXPECT_FALSE(GraphFrom(1899, 1950).YearAxis());
    EXPECT_TRUE(GraphFrom(1900, 1950).YearAxis());
    EXPECT_TRUE(GraphFrom(1999, 2010).YearAxis());
    EXPECT_FALSE(GraphFrom(2000, 2010).YearAxis());
}

TEST(ModelGraph, ASingleYearStillHasARange)
{
    const auto axis = GraphFrom(1990, 1990).YearAxis();
    ASSERT_TRUE(axis);
    EXPECT_EQ(axis->minimum, 1990.0);
    EXPECT_EQ(axis->maximum, 1995.0);
    EXPECT_EQ(axis->step, 1.0);
}

namespace
{
/// Three points, the second out of the fit.
ModelGraph ClickableGraph(GraphType type = GraphType::PointsAndLine)
{
    ModelGraph graph = GraphFrom(1, 3);
    graph.Type(type);
    graph.WithToggs(true);
    graph.YData(std::vector{10.0, ModelGraph::InvalidData, 30.0});
    graph.YData2(std::vector{ModelGraph::InvalidData, 20.0, ModelGraph::InvalidData});
    return graph;
}
} // namespace

TEST(ModelGraph, TogglingAPointMovesItToTheOtherSetAndTogglingItAgainBringsItBack)
{
    ModelGraph graph = ClickableGraph();
    graph.TogglePoint(1);
    EXPECT_EQ(graph.YData(), (std::vector{ModelGraph::InvalidData, ModelGraph::InvalidData, 30.0}));
    EXPECT_EQ(graph.YData2(), (std::vector{10.0, 20.0, ModelGraph::InvalidData}));

    graph.TogglePoint(1);
    EXPECT_EQ(graph.YData(), ClickableGraph().YData());
    EXPECT_EQ(graph.YData2(), ClickableGraph().YData2());
}

TEST(ModelGraph, APlainLineAndAGraphWithoutTogglingStayAsTheyAre)
{
    ModelGraph line = ClickableGraph(GraphType::Line);
    ModelGraph quiet = ClickableGraph();
    quiet.WithToggs(false);
    for (ModelGraph* graph : {&line, &quiet}) {
        graph->TogglePoint(1);
        graph->HighlightPoint(ModelGraph::kIncluded, 3);
        EXPECT_EQ(graph->YData(), ClickableGraph().YData());
        EXPECT_FALSE(graph->Highlighted());
    }
}

TEST(ModelGraph, OnePointIsLitUpAtATimeAndTheSameOnceMoreGoesOut)
{
    ModelGraph graph = ClickableGraph(GraphType::Residuals);
    graph.HighlightPoint(ModelGraph::kIncluded, 3);
    EXPECT_EQ(graph.Highlighted(), (ModelGraph::Highlight{3, 30.0}));

    graph.HighlightPoint(ModelGraph::kExcluded, 2);
    EXPECT_EQ(graph.Highlighted(), (ModelGraph::Highlight{2, 20.0}));

    graph.HighlightPoint(ModelGraph::kHighlight, 2); // a click on the mark itself
    EXPECT_FALSE(graph.Highlighted());
}

TEST(ModelGraph, APeriodLightsUpAlsoWhereItStandsInTheOtherSet)
{
    ModelGraph graph = ClickableGraph();
    graph.HighlightPoint(ModelGraph::kIncluded, 2);
    EXPECT_EQ(graph.Highlighted(), (ModelGraph::Highlight{2, 20.0}));
}

TEST(ModelGraph, APeriodInTheFitLightsUpAlsoWhenItIsLookedForOutsideTheFit)
{
    ModelGraph graph = ClickableGraph();
    graph.HighlightPoint(ModelGraph::kExcluded, 3);
    EXPECT_EQ(graph.Highlighted(), (ModelGraph::Highlight{3, 30.0}));
}

// The mark itself is looked for among the points in the fit first, and found among the others.
TEST(ModelGraph, APeriodLightsUpAlsoWhenItIsLookedForAmongTheMarks)
{
    for (const int point : {1, 2, 3}) {
        ModelGraph graph = ClickableGraph();
        graph.HighlightPoint(ModelGraph::kHighlight, point);
        EXPECT_EQ(graph.Highlighted(), (ModelGraph::Highlight{point, 10.0 * point}));
    }
}

TEST(ModelGraph, AnotherPeriodThanTheOneThatIsLitUpTakesTheLightOver)
{
    ModelGraph graph = ClickableGraph();
    graph.HighlightPoint(ModelGraph::kExcluded, 2);
    graph.HighlightPoint(ModelGraph::kIncluded, 1);
    EXPECT_EQ(graph.Highlighted(), (ModelGraph::Highlight{1, 10.0}));
}

TEST(ModelGraph, ACopiedGraphOfTimeHasItsObservedPointsInAndOutOfTheFitInOneColumn)
{
    ModelGraph graph = ClickableGraph();
    graph.XTitle("Time");
    graph.OverlayLine(std::vector{11.5, 21.5, ModelGraph::InvalidData});
    EXPECT_EQ(graph.CopiedText(), "Time\tObs CPUE\tExp CPUE\r\n"
                                  "1\t10\t11.5\r\n"
                                  "2\t20\t21.5\r\n"
                                  "3\t30\t-999.999\r\n");
}

TEST(ModelGraph, OfAPointInBothSetsTheOneInTheFitIsCopied)
{
    ModelGraph graph = ClickableGraph();
    graph.YData2(std::vector{7.0, 20.0, 7.0});
    EXPECT_EQ(graph.CopiedText(), "X_Title\tObs CPUE\tExp CPUE\r\n"
                                  "1\t10\t-999.999\r\n"
                                  "2\t20\t-999.999\r\n"
                                  "3\t30\t-999.999\r\n");
}

TEST(ModelGraph, ACopiedGraphOfAnotherKindHasItsTwoColumnsAndNoPointsOutOfTheFit)
{
    for (const GraphType type : {GraphType::Residuals, GraphType::Line, GraphType::Histogram}) {
        ModelGraph graph = ClickableGraph(type);
        graph.XTitle("Effort");
        graph.YTitle("Yield");
        EXPECT_EQ(graph.CopiedText(), "Effort\tYield\r\n1\t10\r\n2\t-999.999\r\n3\t30\r\n");
    }
}

TEST(ModelGraph, TheExpectedLineLightsNothingUp)
{
    ModelGraph graph = ClickableGraph();
    graph.HighlightPoint(ModelGraph::kExpected, 1);
    EXPECT_FALSE(graph.Highlighted());
}

TEST(ModelGraph, StopInterrogatePutsTheLightOut)
{
    ModelGraph graph = ClickableGraph();
    graph.HighlightPoint(ModelGraph::kIncluded, 1);
    graph.StopInterrogate();
    EXPECT_FALSE(graph.Highlighted());
}

TEST(ModelGraph, AGraphThatTakesNoClicksKeepsItsLight)
{
    ModelGraph graph = ClickableGraph();
    graph.HighlightPoint(ModelGraph::kIncluded, 1);
    graph.WithToggs(false);
    graph.StopInterrogate();
    EXPECT_TRUE(graph.Highlighted());
}

TEST(ModelGraph, APointThatDoesNotExistIsASubscript)
{
    ModelGraph graph = ClickableGraph();
    for (const int point : {0, 4}) {
        EXPECT_THROW(graph.TogglePoint(point), VeltError);
        EXPECT_THROW(graph.HighlightPoint(ModelGraph::kIncluded, point), VeltError);
    }
}
