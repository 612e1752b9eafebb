// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/DataTable.h"

#include "data/clsVeltData.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace
{
/// Five rows in use, the first three with data.
DataTable FiveRows()
{
    DataTable table;
    table.timeInts = 5;
    for (int row = 1; row <= 5; ++row)
        table.Include(row, row <= 3);
    table.nntPoints = 3;
    return table;
}
} // namespace

TEST(DataTable, ANewTableHoldsNoValueAndNoColumnAndEveryRowMayBeUsed)
{
    const DataTable table;
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        EXPECT_FALSE(table.present(column));
        EXPECT_EQ(table.format(column), "0");
        for (int row = 1; row <= DataTable::kRows; ++row)
            ASSERT_EQ(table.db(column)(row), -1.0F);
    }
    EXPECT_TRUE(table.toggledIn(1));
    EXPECT_TRUE(table.toggledIn(200));
    EXPECT_FALSE(table.included(1));
    EXPECT_EQ(table.ShownRows(), 0);
}

TEST(DataTable, TogglingTakesARowOutAndInAgainAndCounts)
{
    DataTable table = FiveRows();
    table.Toggle(2);
    EXPECT_FALSE(table.toggledIn(2));
    EXPECT_EQ(table.nntPoints, 2);
    table.Toggle(2);
    EXPECT_TRUE(table.toggledIn(2));
    EXPECT_EQ(table.nntPoints, 3);
}

TEST(DataTable, ARowWithoutDataCannotBeToggledIn)
{
    DataTable table = FiveRows();
    table.Toggle(4);
    EXPECT_FALSE(table.toggledIn(4));
    EXPECT_EQ(table.nntPoints, 3);
}

TEST(DataTable, TakingARowOutTwiceCountsOnce)
{
    DataTable table = FiveRows();
    table.ToggleOut(1);
    table.ToggleOut(1);
    EXPECT_EQ(table.nntPoints, 2);
}

TEST(DataTable, ARowThatLostItsDataStaysOutWhenTheyComeBack)
{
    DataTable table = FiveRows();
    table.Include(1, false);
    table.Include(1, true);
    EXPECT_TRUE(table.included(1));
    EXPECT_FALSE(table.toggledIn(1));
}

TEST(DataTable, RowsPast200DoNotExistWhateverTheRangeSays)
{
    DataTable table;
    table.timeInts = 201;
    EXPECT_EQ(table.ShownRows(), 200);
    table.timeInts = -3;
    EXPECT_EQ(table.ShownRows(), 0);
    EXPECT_THROW(table.Toggle(201), VeltError);
}

TEST(DataTable, ACopyIsChangedAsideAndPutInPlaceAsAWhole)
{
    Bench bench;
    clsVeltData data(bench.run);
    DataTable aside = data.Table();
    aside.db(columns::Effort)(1) = 7.0F;
    aside.present(columns::Effort) = true;
    aside.timeInts = 1;
    EXPECT_EQ(data.Effort(1), -1.0F);
    EXPECT_NE(data.Table(), aside);

    data.Table(aside);
    EXPECT_EQ(data.Table(), aside);
    EXPECT_EQ(data.Effort(1), 7.0F);
    EXPECT_TRUE(data.ColPresent(columns::Effort));
    EXPECT_FALSE(data.IsDirty()); // whoever puts it there says whether it is a change
}

TEST(DataTable, AConversionThatFailsLeavesTheTableAsItWas)
{
    Bench bench;
    clsVeltData data(bench.run);
    data.ColPresent(columns::CatchWt, true);
    data.ColPresent(columns::MeanWt, true);
    data.ColPresent(columns::Effort, true);
    data.Effort(1, 1.0F);
    data.MeanWt(200, 0.0F); // a catch of the last row cannot be divided by it
    const DataTable before = data.Table();

    EXPECT_THROW(data.DoColumnConversions(), VeltError);
    EXPECT_EQ(data.Table(), before);
}

TEST(DataTable, WhatIsSavedIsNoLongerDirty)
{
    Bench bench;
    clsVeltData data(bench.run);
    data.DSDesc("Abalone");
    ASSERT_TRUE(data.IsDirty());
    data.MarkSaved();
    EXPECT_FALSE(data.IsDirty());
}

namespace
{
std::string FormatFor(const std::vector<float>& values, const std::string& before = "0")
{
    DataTable table;
    table.timeInts = static_cast<std::int32_t>(values.size());
    table.format(columns::ExpCPUE) = before;
    for (std::size_t i = 0; i < values.size(); ++i)
        table.db(columns::ExpCPUE)(static_cast<std::ptrdiff_t>(i) + 1) = values[i];
    table.FormatFilled(columns::ExpCPUE);
    return table.format(columns::ExpCPUE);
}
} // namespace

TEST(DataTable, AFilledColumnShowsThreeFiguresOfItsSmallestValue)
{
    EXPECT_EQ(FormatFor({0.71F, 25.0F}), "0.000"); // 0.710
    EXPECT_EQ(FormatFor({7.1F, 25.0F}), "0.00");   // 7.10
    EXPECT_EQ(FormatFor({71.0F}), "0.0");
    EXPECT_EQ(FormatFor({710.0F}), "0");
    EXPECT_EQ(FormatFor({-0.05F, 3.0F}), "0.0000"); // a residual may be negative
    EXPECT_EQ(FormatFor({1e-9F}), "0.000000");      // no more than six
}

TEST(DataTable, EmptyCellsZeroesAndWhatIsNoNumberDoNotCountForTheFormat)
{
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(FormatFor({-1.0F, 0.0F, infinity, std::nanf(""), 25.0F}), "0.0");
    EXPECT_EQ(FormatFor({-1.0F, 0.0F}), "0");
    EXPECT_EQ(FormatFor({}), "0");
}

TEST(DataTable, AFormatThatWasChosenStays)
{
    EXPECT_EQ(FormatFor({0.71F}, "0.0"), "0.0");
    EXPECT_EQ(FormatFor({0.71F}, "0.00E+"), "0.00E+");
    EXPECT_EQ(FormatFor({0.71F}, "0                   "), "0.000"); // as a project file holds it
}
