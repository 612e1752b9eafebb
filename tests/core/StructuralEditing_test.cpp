// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/StructuralEditing.h"

#include "base/VeltError.h"
#include "data/clsVeltData.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace
{
constexpr float kMissing = DataTable::kMissing;

/// Rows 1 to `rows` of Effort hold 1, 2, 3, ...; all of them are included and toggled in.
DataTable Numbered(int rows)
{
    DataTable table;
    AddColumn(table, columns::Effort);
    table.minTimeP = 1990;
    table.maxTimeP = 1989 + rows;
    table.timeInts = rows;
    for (int row = 1; row <= DataTable::kRows; ++row) {
        if (row <= rows)
            table.db(columns::Effort)(row) = static_cast<float>(row);
        table.Include(row, row <= rows);
    }
    return table;
}

std::vector<float> Efforts(const DataTable& table, int rows)
{
    std::vector<float> values;
    for (int row = 1; row <= rows; ++row)
        values.push_back(table.db(columns::Effort)(row));
    return values;
}

std::uint32_t FailureOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}
} // namespace

TEST(ShiftData, OpeningPushesTheRowsDownAndLeavesEmptyOnes)
{
    DataTable table = Numbered(4);
    ShiftData(table, 2, 3);
    EXPECT_EQ(Efforts(table, 7), (std::vector<float>{1, 2, kMissing, kMissing, 3, 4, kMissing}));
}

TEST(ShiftData, ClosingPullsTheRowsUp)
{
    DataTable table = Numbered(5);
    ShiftData(table, -2, 2);
    EXPECT_EQ(Efforts(table, 5), (std::vector<float>{1, 4, 5, kMissing, kMissing}));
}

TEST(ShiftData, AnAmountOfZeroDoesNothing)
{
    DataTable table = Numbered(3);
    ShiftData(table, 0);
    EXPECT_EQ(table, Numbered(3));
}

TEST(ShiftData, AllColumnsMoveWhetherPresentOrNot)
{
    DataTable table = Numbered(2);
    for (int column = columns::kFirst; column <= columns::kLast; ++column)
        table.db(column)(1) = static_cast<float>(column);
    ShiftData(table, 1);
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        EXPECT_EQ(table.db(column)(1), kMissing);
        EXPECT_EQ(table.db(column)(2), static_cast<float>(column));
    }
}

TEST(ShiftData, TheTogglesMoveWithTheirRowsAndAnOpenedRowStaysOutUntilItIsTicked)
{
    DataTable table = Numbered(4);
    table.toggledIn(2) = false;
    ShiftData(table, 1, 2);
    EXPECT_TRUE(table.toggledIn(1));
    EXPECT_FALSE(table.toggledIn(2)); // opened
    EXPECT_FALSE(table.included(2));
    EXPECT_FALSE(table.toggledIn(3)); // came from row 2
    EXPECT_TRUE(table.toggledIn(4));
}

TEST(ShiftData, IncludedStaysWithItsPlaceUntilTheConversions)
{
    DataTable table = Numbered(4);
    table.included(2) = false;
    ShiftData(table, 1, 2);
    EXPECT_FALSE(table.included(2));
    EXPECT_TRUE(table.included(3)); // although its data were not included in row 2
    ShiftData(table, -1, 2);
    EXPECT_FALSE(table.included(2));
    EXPECT_TRUE(table.included(3));
}

TEST(ShiftData, RowsPushedPast200FallOff)
{
    DataTable table = Numbered(200);
    ShiftData(table, 1, 200);
    EXPECT_EQ(table.db(columns::Effort)(200), kMissing);
    EXPECT_EQ(table.db(columns::Effort)(199), 199.0F);
    table = Numbered(200);
    ShiftData(table, 500);
    EXPECT_EQ(Efforts(table, 200), std::vector<float>(200, kMissing));
    table = Numbered(200);
    ShiftData(table, -500);
    EXPECT_EQ(Efforts(table, 200), std::vector<float>(200, kMissing));
}

TEST(ShiftData, ClosingLeavesTheLastRowOfAFullTableEmpty)
{
    DataTable table = Numbered(200);
    ShiftData(table, -1);
    EXPECT_EQ(table.db(columns::Effort)(199), 200.0F);
    EXPECT_EQ(table.db(columns::Effort)(200), kMissing);
    EXPECT_FALSE(table.toggledIn(200));
    EXPECT_FALSE(table.included(200));
}

TEST(ShiftData, AStartThatIsNoRowFails)
{
    DataTable table = Numbered(3);
    EXPECT_EQ(FailureOf([&] { ShiftData(table, 1, 0); }), 9U);
    EXPECT_EQ(FailureOf([&] { ShiftData(table, 1, 201); }), 9U);
    EXPECT_EQ(table, Numbered(3));
}

TEST(EmptyData, PeriodsByTheirLabelsBecomeZeroInThePresentColumnsAndLeaveTheFit)
{
    DataTable table = Numbered(4);
    table.db(columns::MeanWt)(2) = 7.0F; // an absent column
    AddColumn(table, columns::PopNums);  // the last one
    EmptyData(table, 1991, 1992);
    EXPECT_EQ(table.db(columns::PopNums)(2), 0.0F);
    EXPECT_EQ(Efforts(table, 4), (std::vector<float>{1, 0, 0, 4}));
    EXPECT_EQ(table.db(columns::MeanWt)(2), 7.0F);
    EXPECT_TRUE(table.toggledIn(1));
    EXPECT_FALSE(table.toggledIn(2));
    EXPECT_FALSE(table.included(3));
    EXPECT_TRUE(table.included(4));
}

TEST(EmptyData, NothingHappensWhenTheFirstPeriodIsAboveTheLast)
{
    DataTable table = Numbered(4);
    EmptyData(table, 1992, 1991);
    EXPECT_EQ(table, Numbered(4));
}

TEST(EmptyData, APeriodWithoutARowFailsAndChangesNothing)
{
    DataTable table = Numbered(4);
    EXPECT_EQ(FailureOf([&] { EmptyData(table, 1989, 1991); }), 9U);
    EXPECT_EQ(FailureOf([&] { EmptyData(table, 1990, 2190); }), 9U);
    EXPECT_EQ(table, Numbered(4));
}

TEST(Columns, AnInsertedColumnShowsMinusOneInEveryRowUntilItIsEdited)
{
    DataTable table = Numbered(3);
    table.db(columns::MeanWt)(2) = 7.0F; // left from a column that was erased by other means
    AddColumn(table, columns::MeanWt);
    EXPECT_TRUE(table.present(columns::MeanWt));
    for (int row = 1; row <= DataTable::kRows; ++row)
        ASSERT_EQ(table.db(columns::MeanWt)(row), kMissing);
}

TEST(Columns, AnErasedColumnIsGoneWithItsValues)
{
    DataTable table = Numbered(3);
    EraseColumn(table, columns::Effort);
    EXPECT_FALSE(table.present(columns::Effort));
    EXPECT_EQ(Efforts(table, 3), (std::vector<float>(3, kMissing)));
}

TEST(Columns, UserColumnsAloneAreOfferedInTheirOrder)
{
    DataTable table = Numbered(3);
    table.present(columns::CatchWt) = table.present(columns::PopNums) = true;
    EXPECT_EQ(PresentColumns(table), (std::vector<int>{columns::Effort, columns::CatchWt}));
    EXPECT_EQ(AvailableColumns(table), (std::vector<int>{1, 2, 3, 6, 7, 8, 9}));
}

TEST(Columns, ErasingAllOfThemIsNoticed)
{
    DataTable table = Numbered(3);
    EXPECT_TRUE(ErasesAll(table, {columns::Effort}));
    table.present(columns::CatchWt) = true;
    EXPECT_FALSE(ErasesAll(table, {columns::Effort}));
    table.present(columns::CatchWt) = false;
    table.present(columns::PopNums) = true; // column 15 does not count; deliberate
    EXPECT_TRUE(ErasesAll(table, {columns::Effort}));
    table.present(columns::PopWt) = true; // 14 does
    EXPECT_FALSE(ErasesAll(table, {columns::Effort}));
}

TEST(Rows, InsertingAtTheLastRowPushesItsDataDownKeepingThem)
{
    DataTable table = Numbered(3);
    InsertRows(table, 3, 2);
    EXPECT_EQ(Efforts(table, 5), (std::vector<float>{1, 2, kMissing, kMissing, 3}));
    EXPECT_EQ(table.timeInts, 5);
    EXPECT_EQ(table.minTimeP, 1990);
    EXPECT_EQ(table.maxTimeP, 1994);
}

TEST(Rows, DeletingAllRowsLeavesTheLastLabelBelowTheFirst)
{
    DataTable table = Numbered(3);
    DeleteRows(table, 1, 3);
    EXPECT_EQ(table.maxTimeP, 1989);
    EXPECT_EQ(table.minTimeP, 1990);
    EXPECT_EQ(table.timeInts, 0);
    EXPECT_EQ(table.ShownRows(), 0);
    AddRows(table, 2); // and it can be filled again
    EXPECT_EQ(table.timeInts, 2);
    EXPECT_EQ(Efforts(table, 3), (std::vector<float>(3, kMissing)));
}

TEST(Rows, AddedRowsComeBehindTheLastOneAndTheFirstOfThemKeepsItsFlag)
{
    DataTable table = Numbered(3);
    table.toggledIn(4) = true; // as a new table has it; deliberate
    table.toggledIn(5) = true;
    AddRows(table, 2);
    EXPECT_EQ(table.timeInts, 5);
    EXPECT_EQ(table.maxTimeP, 1994);
    EXPECT_EQ(Efforts(table, 6), (std::vector<float>{1, 2, 3, kMissing, kMissing, kMissing}));
    EXPECT_TRUE(table.toggledIn(4));
    EXPECT_FALSE(table.toggledIn(5));
}

TEST(Rows, WhatAProjectionLeftBehindTheLastPeriodDoesNotComeIntoViewAsData)
{
    DataTable table = Numbered(3);
    table.db(columns::Effort)(4) = 500.0F;
    table.db(columns::Effort)(5) = 600.0F;
    AddRows(table, 2);
    EXPECT_EQ(Efforts(table, 5), (std::vector<float>{1, 2, 3, kMissing, kMissing}));
}

TEST(Rows, TheTwoHundredthRowCanBeAddedAndThe201stIsRefusedWithASentence)
{
    DataTable table = Numbered(199);
    EXPECT_FALSE(RefusalOfRows(table, 1).has_value());
    EXPECT_EQ(RefusalOfRows(table, 2), "The table has room for 200 time periods. It has 199 now: 2 more do "
                                       "not fit, at most 1 do.");
    AddRows(table, 1);
    EXPECT_EQ(table.ShownRows(), 200);
    EXPECT_EQ(Efforts(table, 200)[198], 199.0F);
    EXPECT_EQ(RefusalOfRows(table, 1), "The table has room for 200 time periods. No more can be added.");
    DataTable tooLong = Numbered(200); // a range of 201 periods can be made and has 200 rows
    ++tooLong.timeInts;
    EXPECT_TRUE(RefusalOfRows(tooLong, 1).has_value());
}

TEST(Rows, LabelsDoNotRunPastTheLargestWholeNumber)
{
    DataTable table = Numbered(3);
    table.minTimeP = std::numeric_limits<std::int32_t>::max() - 2;
    table.maxTimeP = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(RefusalOfRows(table, 1).has_value());
}

TEST(Rows, ARangeThatEndsBeforeItBeginsCountsAsAnEmptyOne)
{
    DataTable table = Numbered(0);
    table.maxTimeP = 1000;
    table.timeInts = 1000 - 1990 + 1;
    AddRows(table, 1);
    EXPECT_EQ(table.timeInts, 1);
    EXPECT_EQ(table.maxTimeP, 1990);
}

TEST(Rows, ATableFromTheSmallestLabelOnCanBeEmptied)
{
    DataTable table = Numbered(3);
    table.minTimeP = std::numeric_limits<std::int32_t>::min();
    table.maxTimeP = table.minTimeP + 2;
    DeleteRows(table, 1, 3);
    EXPECT_EQ(table.timeInts, 0);
    EXPECT_EQ(table.ShownRows(), 0);
}

TEST(Rows, ARowAddedToATableAsNewIsOneRow)
{
    DataTable table; // its labels are both 0, and it has no row
    AddRows(table, 1);
    EXPECT_EQ(table.timeInts, 1);
    EXPECT_EQ(table.maxTimeP, 0);
}

TEST(Rows, EveryStructuralChangeMarksTheDataSet)
{
    Bench bench;
    const std::vector<std::function<void(clsVeltData&)>> changes{
        [](clsVeltData& d) { d.ShiftData(1); },     [](clsVeltData& d) { d.EmptyData(0, 0); },
        [](clsVeltData& d) { d.AddColumn(1); },     [](clsVeltData& d) { d.EraseColumn(1); },
        [](clsVeltData& d) { d.InsertRows(1, 1); }, [](clsVeltData& d) { d.DeleteRows(1, 1); },
        [](clsVeltData& d) { d.AddRows(1); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        clsVeltData data(bench.run);
        changes[i](data);
        EXPECT_TRUE(data.IsDirty()) << i;
    }
    clsVeltData same(bench.run);
    same.ShiftData(0);
    same.EmptyData(1, 0);
    EXPECT_FALSE(same.IsDirty());
}
