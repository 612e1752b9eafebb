// SPDX-License-Identifier: GPL-3.0-or-later
// Copying, cutting, clearing and pasting in the table.
#include "core/ThreeColumns.h"

#include <gtest/gtest.h>

#include <string>

using namespace grid_keys;
using namespace three_columns;

TEST(CopyClick, ABlockIsTheCellsAsDisplayedWithALineEndBehindEveryRow)
{
    Sheet s;
    s.Set(1, kA, 0.71);
    s.Set(1, kB, 12.6);
    s.Set(2, kA, 1e6);
    s.Mark(1, kA, 2, kB);
    s.control.CopyClick();
    EXPECT_EQ(s.clipboard.text, "1\t13\r\n1000000\t-1\r\n");
    EXPECT_EQ(s.clipboard.exact, "0.71\t12.6\r\n1E+06\t-1\r\n");
}

TEST(CopyClick, ASelectionDrawnUpwardsIsTheSameBlock)
{
    Sheet s;
    s.Set(1, kA, 1);
    s.Set(2, kB, 4);
    s.Mark(2, kB, 1, kA);
    s.control.CopyClick();
    EXPECT_EQ(s.clipboard.text, "1\t-1\r\n-1\t4\r\n");
}

TEST(CopyClick, InTheTextBoxItIsTheSelectedText)
{
    Sheet s;
    s.clipboard.Put("before");
    s.Type("12");
    s.control.CopyClick(); // nothing is selected
    EXPECT_EQ(s.clipboard.text, "before");
    s.box.SelectAll();
    s.control.CopyClick();
    EXPECT_EQ(s.clipboard.text, "12");
    EXPECT_EQ(s.box.text, "12");
    s.control.CutClick(); // still all selected
    EXPECT_EQ(s.box.text, "");
    EXPECT_EQ(s.Value(1, kA), -1.0F);
}

TEST(CutClick, CopiesTheBlockAndLeavesMissingValues)
{
    Sheet s;
    s.Set(1, kA, 5);
    s.Set(2, kA, 6);
    s.Set(3, kA, 7);
    s.Mark(1, kA, 2, kA);
    s.control.CutClick();
    EXPECT_EQ(s.clipboard.text, "5\r\n6\r\n");
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    EXPECT_EQ(s.Value(2, kA), -1.0F);
    EXPECT_EQ(s.Value(3, kA), 7.0F);
    EXPECT_EQ((s.grid.written[{1, kA}]), "-1");
    ASSERT_EQ(s.changes.size(), 1U); // one step to take back
    EXPECT_EQ(s.changes.front().first, "Cut");
}

TEST(CutClick, WhatWasCutComesBackToTheBitAlsoWhereTheFormatHidesIt)
{
    Sheet s;
    s.Set(1, kA, 0.71);
    s.control.CutClick();
    s.Go(3, kB);
    s.control.PasteClick();
    EXPECT_EQ(s.Value(3, kB), 0.71F);
}

TEST(ClearClick, TheDeleteKeyLeavesMissingValuesAndTheClipboardAsItWas)
{
    Sheet s;
    s.clipboard.Put("before");
    s.Set(1, kA, 5);
    s.control.ClearClick();
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    EXPECT_EQ(s.clipboard.text, "before");
    s.Type("5");
    s.control.ClearClick(); // the key belongs to the open box
    EXPECT_EQ(s.box.text, "5");
}

TEST(PasteClick, OneCopiedCellPastedOverASelectionOfSeveralCellsFillsThemAll)
{
    Sheet s;
    s.Mark(1, kA, 2, kB);
    s.Paste("3.5\r\n");
    for (const int row : {1, 2})
        for (const int col : {kA, kB})
            EXPECT_EQ(s.Value(row, col), 3.5F);
    EXPECT_EQ(s.Value(3, kA), -1.0F);
    EXPECT_EQ(s.Value(1, kC), -1.0F);
    EXPECT_EQ(s.changes.size(), 1U);
    EXPECT_EQ((s.grid.written[{2, kB}]), "4");
}

TEST(PasteClick, ASingleValueFromTheClipboardWithoutALineEndIsRefusedAsNonNumeric) // deliberate
{
    Sheet s;
    s.Paste("3.5");
    EXPECT_TRUE(s.user.Saw("Cannot paste non numeric data"));
    EXPECT_TRUE(s.user.Saw("F2")); // and how to get it in all the same
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    EXPECT_FALSE(s.data.IsDirty());
}

TEST(PasteClick, ASingleValueThatIsEmptyOrNoNumberIsRefused)
{
    for (const char* text : {"", "\r\n", "abc\r\n", "1,5\n", "nan\n"}) {
        Sheet s;
        s.Set(1, kA, 7);
        s.Paste(text);
        EXPECT_EQ(s.Message().substr(0, 29), "Cannot paste non numeric data") << text;
        EXPECT_EQ(s.user.messages.size(), 1U);
        EXPECT_EQ(s.user.messages.back().icon, Icon::Exclamation);
        EXPECT_EQ(s.user.messages.back().title, "VELT 3.0");
        EXPECT_EQ(s.Value(1, kA), 7.0F);
    }
}

TEST(PasteClick, ASingleValueMayEndInAnyLineEndAndStandInQuotes)
{
    for (const char* text : {"3.5\r\n", "3.5\n", "3.5\r", "\"3.5\"\n", " 3.5 \n"}) {
        Sheet s;
        s.Paste(text);
        EXPECT_EQ(s.Value(1, kA), 3.5F) << text;
        EXPECT_TRUE(s.user.messages.empty());
    }
}

TEST(PasteClick, ASingleValueBeyondACellIsRefusedOnceAndNothingIsPasted)
{
    Sheet s;
    s.Mark(1, kA, 4, kC);
    s.Paste("1e39\n");
    EXPECT_EQ(s.user.messages.size(), 1U);
    EXPECT_TRUE(s.user.Saw("too large"));
    EXPECT_FALSE(s.data.IsDirty());
}

TEST(PasteClick, ABlockBeginsInTheCurrentCell)
{
    for (const char* text : {"1\t2\r\n3\t4\r\n", "1\t2\n3\t4\n", "1\t2\r3\t4", "\"1\"\t2\n3\t\"4\""}) {
        Sheet s;
        s.Go(2, kB);
        s.Paste(text);
        EXPECT_EQ(s.Value(2, kB), 1.0F) << text;
        EXPECT_EQ(s.Value(2, kC), 2.0F);
        EXPECT_EQ(s.Value(3, kB), 3.0F);
        EXPECT_EQ(s.Value(3, kC), 4.0F);
        EXPECT_EQ(s.Value(2, kA), -1.0F);
        EXPECT_EQ(s.Value(4, kB), -1.0F);
        EXPECT_TRUE(s.user.messages.empty());
    }
}

TEST(PasteClick, APasteBlockWiderThanTheGridFillsWhatFitsWhenTheUserWantsIt)
{
    Sheet s;
    s.Go(1, kB);
    s.user.answers = {Answer::Yes};
    s.Paste("1\t2\t3\t4\n5\t6\t7\t8\n");
    EXPECT_EQ(s.user.messages.size(), 1U);
    EXPECT_TRUE(s.user.Saw("row 1, column 3 of the block")); // the first cell without a place
    EXPECT_EQ(s.Value(1, kB), 1.0F);
    EXPECT_EQ(s.Value(1, kC), 2.0F);
    EXPECT_EQ(s.Value(2, kB), 5.0F);
    EXPECT_EQ(s.Value(2, kC), 6.0F);
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    EXPECT_EQ(s.Value(3, kA), -1.0F); // nothing runs over into the next row
}

TEST(PasteClick, ABlockThatDoesNotFitIsRefusedWholeWhenTheUserSaysNo)
{
    Sheet s;
    s.Go(3, kA);
    s.user.answers = {Answer::No};
    s.Paste("1\n2\n3\n");
    EXPECT_TRUE(s.user.Saw("row 3, column 1 of the block"));
    EXPECT_EQ(s.Value(3, kA), -1.0F);
    EXPECT_FALSE(s.data.IsDirty());
    EXPECT_TRUE(s.changes.empty());
}

TEST(PasteClick, TheFirstCellOfABlockThatIsNoNumberEndsThePasteAndWhatWasPlacedStays) // deliberate
{
    Sheet s;
    s.Paste("1\t2\nx\t4\n5\t6\n");
    EXPECT_EQ(s.Message(),
              "Cannot paste non numeric data\n\nThe paste ended at row 2, column 1 of the block, "
              "which holds \"x\".");
    EXPECT_EQ(s.Value(1, kA), 1.0F);
    EXPECT_EQ(s.Value(1, kB), 2.0F);
    EXPECT_EQ(s.Value(2, kB), -1.0F);
    EXPECT_EQ(s.Value(3, kA), -1.0F);
    s.TakeBack(); // in one step
    EXPECT_EQ(s.Value(1, kA), -1.0F);
}

TEST(PasteClick, AnEmptyCellOfABlockEndsThePasteAndSaysHowAMissingValueIsWritten)
{
    Sheet s;
    s.Paste("1\t\n3\t4\n");
    EXPECT_TRUE(
        s.user.Saw("row 1, column 2 of the block, which is empty. A missing value is written as -1."));
    EXPECT_EQ(s.Value(1, kA), 1.0F);
    EXPECT_EQ(s.Value(2, kA), -1.0F);
}

TEST(PasteClick, ValuesOfABlockBeyondACellAreLeftOutAndTheFirstIsNamed)
{
    Sheet s;
    s.Set(1, kB, 7);
    s.Paste("1\t1e39\n2\t-1e39\n");
    EXPECT_EQ(s.user.messages.size(), 1U);
    EXPECT_TRUE(s.user.Saw("1e39 in row 1, column 2 of the block"));
    EXPECT_EQ(s.Value(1, kA), 1.0F);
    EXPECT_EQ(s.Value(1, kB), 7.0F);
    EXPECT_EQ(s.Value(2, kA), 2.0F);
}

TEST(PasteClick, AValueBeyondACellIsAlsoToldWhenALaterCellEndsThePaste)
{
    Sheet s;
    s.Paste("1e39\tx\n");
    EXPECT_EQ(s.user.messages.size(), 1U);
    EXPECT_TRUE(s.user.Saw("The paste ended at row 1, column 2 of the block"));
    EXPECT_TRUE(s.user.Saw("1e39 in row 1, column 1 of the block"));
}

TEST(PasteClick, InTheTextBoxTheLineEndsBehindTheTextAreLeftOut)
{
    Sheet s;
    s.Press(kEnter);
    s.Paste("3.25\r\n"); // as a spreadsheet copies one cell
    EXPECT_EQ(s.box.text, "3.25");
}

TEST(PasteClick, InTheTextBoxTheClipboardReplacesTheSelectedText)
{
    Sheet s;
    s.Set(1, kA, 77);
    s.Press(kEnter);
    s.Paste("3.25"); // all is selected, and a line end is not asked for
    EXPECT_EQ(s.box.text, "3.25");
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), 3.25F);
}

TEST(PasteClick, AHostileTextIsQuotedShortAndOnOneLine)
{
    Sheet s;
    s.Paste(std::string(100000, 'x') + "\n");
    EXPECT_LT(s.Message().size(), 500U);
    s.Paste(std::string("a\x01\x1b[31m\n"));
    EXPECT_EQ(s.Message().find('\x1b'), std::string::npos);
}

TEST(EmptyTable, WithoutACellNoCommandTouchesTheDataOrTheClipboard)
{
    SheetBench s(0, {columns::TotCatchWt, columns::Effort});
    s.grid.selected = {}; // as a grid without cells says it
    s.clipboard.Put("1\r\n");
    s.control.CopyClick();
    s.control.CutClick();
    s.control.ClearClick();
    EXPECT_EQ(s.clipboard.Text(), "1\r\n");
    EXPECT_TRUE(s.user.messages.empty());
    for (const char* copied : {"1\r\n", "1\t2\r\n", "x"}) {
        s.Paste(copied);
        EXPECT_TRUE(s.user.Saw("The table has no cells to paste into."));
        s.user.messages.clear();
    }
    EXPECT_TRUE(s.changes.empty());
    EXPECT_TRUE(s.grid.written.empty());
}
