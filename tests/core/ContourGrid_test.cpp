// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ContourGrid.h"

#include "core/RecordedPlot.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace
{
constexpr double kInvalid = 1e20;

/// A grid over 1 to 3 by 10 to 30 and an objective of the test's own.
class Grid : public ::testing::Test, public Bench
{
protected:
    Grid()
    {
        state.run = &run;
        state.PlotEvaluations = true;
        grid.range = {.Param1Name = "K",
                      .Param2Name = "r",
                      .Param1Lo = 1.0,
                      .Param1Hi = 3.0,
                      .Param2Lo = 10.0,
                      .Param2Hi = 30.0,
                      .ContEvals = 3};
        window.nextPlot = std::make_unique<RecordedPlot>(record);
    }

    void Draw(const std::function<double(double, double)>& objective)
    {
        grid.Draw(state, objective, "Minimisation", "empty", "cancelled");
    }

    std::optional<VeltError> FailureOf(const std::function<double(double, double)>& objective)
    {
        try {
            Draw(objective);
        } catch (const VeltError& error) {
            return error;
        }
        return std::nullopt;
    }

    ModelState state;
    ContourGrid grid;
    PlotRecord record;
};
} // namespace

TEST_F(Grid, CellsStandAtEvenStepsBetweenTheBounds)
{
    Draw([](double x, double y) { return 100.0 * x + y; });
    ASSERT_TRUE(record.surface);
    EXPECT_EQ(record.surface->x, (std::vector<double>{1.0, 2.0, 3.0}));
    EXPECT_EQ(record.surface->y, (std::vector<double>{10.0, 20.0, 30.0}));
    EXPECT_EQ(record.surface->z[0], (std::vector<double>{110.0, 120.0, 130.0}));
    EXPECT_EQ(record.surface->z[2], (std::vector<double>{310.0, 320.0, 330.0}));
    EXPECT_EQ(record.surface->zMin, 110.0);
    EXPECT_EQ(record.surface->zMax, 330.0);
    EXPECT_EQ(record.surface->levels, 20);
    EXPECT_EQ(record.surface->title, "Minimisation");
    EXPECT_EQ(record.surface->zName, "Negative Likelihood Function");
    EXPECT_EQ(record.surface->xName, "K");
    EXPECT_EQ(record.surface->yName, "r");
}

// The cells keep 64 bits, so that a flat neighbourhood of the minimum has no steps; only the range and the
// plateau are floats. The cells used to be floats.
TEST_F(Grid, CellsKeep64BitsAndTheRangeAndThePlateauAreFloats)
{
    grid.range.ContEvals = 2;
    const auto value = [](double x, double y) { return 0.1 + 1e-12 * x + 1e-13 * y; };
    Draw([&](double x, double y) { return x == 3.0 && y == 30.0 ? kInvalid : value(x, y); });
    EXPECT_EQ(record.surface->z[0][0], value(1.0, 10.0));
    EXPECT_EQ(record.surface->z[0][1], value(1.0, 30.0));
    EXPECT_EQ(record.surface->z[1][0], value(3.0, 10.0));
    EXPECT_EQ(record.surface->zMin, static_cast<double>(0.1F));
    EXPECT_EQ(record.surface->zMax, static_cast<double>(0.1F));
    EXPECT_EQ(record.surface->z[1][1], static_cast<double>(0.1F)); // 0.1F + (0.1F - 0.1F) / 9
}

TEST_F(Grid, AGridOfOneCellStandsAtTheTwoLowBounds)
{
    grid.range.ContEvals = 1;
    Draw([](double x, double y) { return x + y; });
    EXPECT_EQ(record.surface->x, std::vector<double>{1.0});
    EXPECT_EQ(record.surface->y, std::vector<double>{10.0});
    EXPECT_EQ(record.surface->z[0], std::vector<double>{11.0});
    EXPECT_EQ(record.surface->plateau, 11.0);
}

// Valid values 4 and 13: the plateau is 13 + (13 - 4) / 9 = 14.
TEST_F(Grid, InvalidCellsShowAsAPlateauANinthOfTheRangeAboveTheSurface)
{
    Draw(
        [](double x, double y) { return y > 10.0 ? kInvalid : (x == 1.0 ? 4.0 : (x == 2.0 ? 13.0 : 1e21)); });
    EXPECT_EQ(record.surface->plateau, 14.0);
    EXPECT_EQ(record.surface->z[0], (std::vector<double>{4.0, 14.0, 14.0}));
    EXPECT_EQ(record.surface->z[1], (std::vector<double>{13.0, 14.0, 14.0}));
    EXPECT_EQ(record.surface->z[2], (std::vector<double>{14.0, 14.0, 14.0}));
}

TEST_F(Grid, WithOneValidCellThePlateauIsItsValue)
{
    Draw([](double x, double y) { return x == 2.0 && y == 20.0 ? 7.0 : kInvalid; });
    EXPECT_EQ(record.surface->zMin, 7.0);
    EXPECT_EQ(record.surface->zMax, 7.0);
    EXPECT_EQ(record.surface->plateau, 7.0);
    EXPECT_EQ(record.surface->z[0][0], 7.0);
}

TEST_F(Grid, WithoutAValidCellTheContoursFail)
{
    const std::optional<VeltError> failure = FailureOf([](double, double) { return kInvalid; });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, 0x800408D6U);
    EXPECT_EQ(failure->description, "Failed to Plot Minimisation Contours.");
    EXPECT_EQ(failure->source, "empty");
    EXPECT_FALSE(record.surface);
}

TEST_F(Grid, TheMeterMovesWithEachColumnAndItsCancelEndsTheGrid)
{
    Draw([](double x, double y) { return x + y; });
    EXPECT_EQ(meter.titles, std::vector<std::string>{"Drawing Contours..."});
    EXPECT_EQ(meter.maximum, 3);
    EXPECT_EQ(meter.value, 3);

    meter.looks = 0;
    meter.cancelAfter = 1;
    const std::optional<VeltError> failure = FailureOf([](double x, double y) { return x + y; });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, 0x800408D7U);
    EXPECT_EQ(failure->description, "User Cancelled.");
    EXPECT_EQ(failure->source, "cancelled");
    EXPECT_EQ(meter.value, 1);
}

TEST_F(Grid, EvaluationsOfTheGridArePlottedNowhereAndThePathIsOnAfterwards)
{
    Draw([this](double x, double y) {
        EXPECT_FALSE(state.PlotEvaluations);
        grid.PlotStep(state, x, y);
        return x + y;
    });
    EXPECT_TRUE(record.steps.empty());
    EXPECT_TRUE(state.PlotEvaluations);
}

TEST_F(Grid, ThePathGoesFromPointToPoint)
{
    Draw([](double x, double y) { return x + y; });
    grid.StartPath(1.0, 2.0);
    grid.PlotStep(state, 3.0, 4.0);
    grid.PlotStep(state, 5.0, 6.0);
    ASSERT_EQ(record.steps.size(), 2U);
    EXPECT_EQ(record.steps[0].fromX, 1.0);
    EXPECT_EQ(record.steps[0].fromY, 2.0);
    EXPECT_EQ(record.steps[0].toX, 3.0);
    EXPECT_EQ(record.steps[1].fromX, 3.0);
    EXPECT_EQ(record.steps[1].toY, 6.0);
}

// Steps 1 to 29, then 50 and 100: 31 of the first 100.
TEST_F(Grid, EventsGetTheirTurnAtTheFirstStepsAndThenAtEveryFiftieth)
{
    Draw([](double x, double y) { return x + y; });
    window.yields.clear();
    for (int i = 0; i < 100; ++i)
        grid.PlotStep(state, 1.0, 1.0);
    EXPECT_EQ(window.yields.size(), 31U);
}

TEST_F(Grid, AClosedWindowSwitchesThePathOff)
{
    record.closedAfter = 2;
    Draw([](double x, double y) { return x + y; });
    for (int i = 0; i < 5; ++i)
        grid.PlotStep(state, 1.0, 1.0);
    EXPECT_EQ(record.steps.size(), 2U);
    EXPECT_FALSE(state.PlotEvaluations);
    grid.Mark(state, ContourMark::Final, 1.0, 1.0);
    EXPECT_TRUE(record.marks.empty());
}

TEST_F(Grid, TheRangesAreKeptOnOkAndForgottenOnCancel)
{
    user.onContourRange = [](ContourRange& range) {
        range.Param1Hi = 99.0;
        range.ContEvals = 7;
        return false;
    };
    EXPECT_FALSE(grid.AskRanges(user));
    EXPECT_EQ(grid.range.Param1Hi, 3.0);
    EXPECT_EQ(grid.range.ContEvals, 3);
    user.onContourRange = [](ContourRange& range) {
        range.Param1Hi = 99.0;
        range.ContEvals = 7;
        return true;
    };
    EXPECT_TRUE(grid.AskRanges(user));
    EXPECT_EQ(grid.range.Param1Hi, 99.0);
    EXPECT_EQ(grid.range.ContEvals, 7);
}

// The power of ten below and the one above; zero has none.
TEST_F(Grid, TheDecadeAroundAnEstimate)
{
    EXPECT_EQ(ContourGrid::DecadeAround(456.0), (std::pair<double, double>(100.0, 1000.0)));
    EXPECT_EQ(ContourGrid::DecadeAround(0.0), (std::pair<double, double>(0.0, 1.0)));
}
