// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/TableSheet.h"

#include "core/ThreeColumns.h"
#include "data/NumberFormat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

using namespace grid_keys;
using namespace three_columns;

TEST(FormatNumber, WholeColumnsGetTheFormatAndTheirCellsAreRewritten)
{
    Sheet s;
    s.Set(2, kA, 1234.5);
    s.data.ColFormat(columns::TotCatchWt, "#,0.0");
    s.Mark(2, kA, 3, kB);
    NumberFormatChoice offered;
    s.user.onNumberFormat = [&](NumberFormatChoice& choice) {
        offered = choice;
        choice.category = NumberCategory::Scientific;
        choice.decPlaces = 2;
        return true;
    };
    s.control.FormatNumber();
    EXPECT_EQ(offered.category, NumberCategory::Standard);
    EXPECT_EQ(offered.decPlaces, 1);
    EXPECT_EQ(offered.sample, 1234.5F);
    EXPECT_EQ(s.data.ColFormat(columns::TotCatchWt), "0.00E+");
    EXPECT_EQ(s.data.ColFormat(columns::Effort), "0.00E+");
    EXPECT_EQ(s.data.ColFormat(columns::CatchWt), "0");
    EXPECT_EQ(s.grid.selected, (GridSelection{1, kA, 4, kB}));
    EXPECT_EQ((s.grid.written[{2, kA}]), s.sheet.Text(2, kA));
    EXPECT_EQ((s.grid.written[{4, kB}]), "-1.00E+00");
    EXPECT_EQ(s.changes.size(), 1U);
}

TEST(FormatNumber, CancelAndATableWithoutCellsChangeNothing)
{
    Sheet s;
    s.control.FormatNumber(); // Cancel
    EXPECT_FALSE(s.data.IsDirty());
    SheetBench empty(0, {columns::Effort});
    empty.Go(0, kA);
    empty.control.FormatNumber();
    empty.control.FormatCol();
    EXPECT_TRUE(empty.user.asked.empty());
}

TEST(FormatCol, WholeColumnsGetTheFontThatWasPresetFromTheCurrentOne)
{
    Sheet s;
    s.sheet.ChangeOfTextFormat(kA, 1, {.name = "Serif", .size = 9.0, .bold = false, .italic = true});
    s.Mark(1, kA, 1, kB);
    CellFont offered;
    s.user.onFont = [&](CellFont& font) {
        offered = font;
        font.bold = true;
        return true;
    };
    s.control.FormatCol();
    EXPECT_EQ(offered.name, "Serif");
    EXPECT_TRUE(offered.italic);
    EXPECT_TRUE(s.sheet.TextFormat(kA).bold);
    EXPECT_EQ(s.sheet.TextFormat(kB), s.sheet.TextFormat(kA));
    EXPECT_TRUE(s.sheet.TextFormat(kC).IsDefault());
    EXPECT_FALSE(s.data.IsDirty()); // no file keeps fonts
    ASSERT_EQ(s.changes.size(), 1U);
    s.TakeBack();
    EXPECT_FALSE(s.sheet.TextFormat(kA).bold);
    EXPECT_EQ(s.grid.selected.Top(), 1);
    EXPECT_EQ(s.grid.selected.Bottom(), 4);
}

TEST(Undo, EveryChangeIsOneStepAndTakingItBackRestoresTheBits)
{
    Sheet s;
    s.Set(1, kA, 0.1);
    const TableSheet::State before = s.sheet.Now();
    s.Type("2");
    s.Press(kEnter);
    s.Paste("1\t2\n3\t4\n");
    s.control.CutClick();
    ASSERT_EQ(s.changes.size(), 3U);
    EXPECT_EQ(s.changes[0].first, "Typing");
    EXPECT_EQ(s.changes[1].first, "Paste");
    while (!s.changes.empty())
        s.TakeBack();
    EXPECT_EQ(s.sheet.Now(), before);
    EXPECT_TRUE(s.data.IsDirty());
}

TEST(Undo, AValueThatIsNoNumberInTheTableMakesNoStepOutOfNothing)
{
    Sheet s;
    s.Set(4, kC, std::numeric_limits<double>::quiet_NaN()); // a project file may hold one
    s.Paste("x\ty\n");
    EXPECT_TRUE(s.changes.empty());
    s.Go(4, kC);
    s.Type("3");
    s.Press(kEnter);
    ASSERT_EQ(s.changes.size(), 1U);
    s.TakeBack();
    EXPECT_TRUE(std::isnan(s.Value(4, kC)));
}

TEST(Undo, TheSignOfAZeroIsAChangeThatCanBeTakenBack)
{
    Sheet s;
    s.Set(1, kA, 0.0);
    s.Type("-0");
    s.Press(kEnter);
    ASSERT_EQ(s.changes.size(), 1U);
    EXPECT_TRUE(std::signbit(s.Value(1, kA)));
    s.TakeBack();
    EXPECT_FALSE(std::signbit(s.Value(1, kA)));
}

TEST(TableSheet, LabelsAtTheEndsOfTheirRangeAreShown)
{
    Sheet s;
    s.data.MinTimeP(std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(s.sheet.Text(1, TableSheet::kTimeColumn), "-2147483648");
    s.data.MinTimeP(std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(s.sheet.Text(1, TableSheet::kTimeColumn), "2147483647");
}

TEST(TableSheet, AbsentColumnsHaveNoPlaceAndThePresentOnesStandInTheirOrder)
{
    Sheet s;
    EXPECT_EQ(s.sheet.GridColOf(columns::TotCatchWt), kA);
    EXPECT_EQ(s.sheet.GridColOf(columns::Effort), kB);
    EXPECT_EQ(s.sheet.GridColOf(columns::MeanWt), 0);
    EXPECT_EQ(s.sheet.DataColOf(kC), columns::CatchWt);
    EXPECT_EQ(s.sheet.DataColOf(TableSheet::kTimeColumn), 0);
    EXPECT_EQ(s.sheet.Title(0), "Time");
    EXPECT_EQ(s.sheet.Title(1), "Include");
    EXPECT_EQ(s.sheet.Title(kB), "Effort");
    EXPECT_EQ(s.sheet.Text(3, TableSheet::kTimeColumn), "1992");
    EXPECT_EQ(s.sheet.Text(3, kA), "-1"); // a missing value is shown like any other number
}
