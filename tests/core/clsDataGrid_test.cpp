// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsDataGrid.h"

#include "base/NumberText.h"
#include "data/NumberFormat.h"
#include "support/SheetBench.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace grid_keys;

namespace
{
constexpr int kA = 2; ///< grid columns of the data
constexpr int kB = 3;
constexpr int kC = 4;

/// Four periods with Tot. Catch Wt, Effort and Catch Wt in the grid columns A, B and C.
struct Sheet : SheetBench {
    Sheet() : SheetBench(4, {columns::TotCatchWt, columns::Effort, columns::CatchWt}) {}
    void Set(int row, int col, double value)
    {
        data.DB(sheet.DataColOf(col), row, static_cast<float>(value));
        data.MarkSaved();
    }
};
} // namespace

TEST(GridEdit, TypingANumberAndEnterStoresItAndStaysInTheCell)
{
    Sheet s;
    s.Go(2, kB);
    s.Type("12.5");
    EXPECT_TRUE(s.box.visible);
    EXPECT_EQ(s.box.over, std::pair(2, kB));
    s.Press(kEnter);
    EXPECT_EQ(s.Value(2, kB), 12.5F);
    EXPECT_FALSE(s.box.visible);
    EXPECT_EQ(s.box.text.find("12"), std::string::npos); // the box is emptied
    EXPECT_EQ(s.grid.selected, GridSelection::At(2, kB));
    EXPECT_EQ((s.grid.written[{2, kB}]), "12"); // format "0", half to even
    EXPECT_TRUE(s.data.IsDirty());
}

TEST(GridEdit, ADigitAMinusOrAPointOpensTheBoxWithThatCharacterAlone)
{
    for (const std::string key : {"0", "9", "-", "."}) {
        Sheet s;
        s.Set(1, kA, 77);
        s.Type(key);
        EXPECT_EQ(s.box.text, key);
        EXPECT_FALSE(s.box.allSelected);
        EXPECT_EQ(s.grid.beeps, 0);
    }
}

TEST(GridEdit, EnterSpaceAndADoubleClickOpenTheBoxOnTheOldTextAllSelected)
{
    for (const int key : {0, kEnter, kSpace}) {
        Sheet s;
        s.Set(1, kA, 77);
        s.Press(key);
        EXPECT_EQ(s.box.text, "77");
        EXPECT_TRUE(s.box.allSelected);
        EXPECT_EQ(s.grid.beeps, 0);
    }
}

TEST(GridEdit, TypingAbcAtTheGridBeepsOnTheFirstLetterAndOpensTheBoxOnTheOldText)
{
    Sheet s;
    s.Set(1, kA, 77);
    s.Type("a");
    EXPECT_EQ(s.grid.beeps, 1);
    EXPECT_EQ(s.box.text, "77");
    EXPECT_TRUE(s.box.allSelected);
    s.Type("bc"); // now in the box
    EXPECT_EQ(s.grid.beeps, 1);
    s.Press(kEnter);
    EXPECT_TRUE(s.user.Saw("Data must be numeric."));
    EXPECT_EQ(s.Value(1, kA), 77.0F);
}

TEST(GridEdit, TheTitlesAreNotEdited)
{
    Sheet s;
    s.Go(0, kA);
    s.Type("5");
    EXPECT_FALSE(s.box.visible);
    s.Go(1, TableSheet::kIncludeColumn);
    s.Type("5");
    EXPECT_FALSE(s.box.visible);
}

TEST(GridEdit, ABoxThatIsOpenedAndLeftAsItWasKeepsTheValueToTheBit)
{
    Sheet s;
    s.Set(1, kA, 0.71); // shown as "1"
    s.Press(kEnter);
    EXPECT_EQ(s.box.text, "1");
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), 0.71F);
    EXPECT_FALSE(s.data.IsDirty());
    EXPECT_TRUE(s.changes.empty());
}

TEST(GridEdit, TypingTheShownTextAnewStoresWhatWasTyped)
{
    Sheet s;
    s.Set(1, kA, 0.71);
    s.Press(kEnter);
    s.Type("1"); // over the selected "1"
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), 1.0F);
}

TEST(GridEdit, EmptyingACellAndPressingEnterStoresTheMissingValue)
{
    Sheet s;
    s.Set(1, kA, 77);
    s.Press(kEnter);
    s.EmptyBox();
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    EXPECT_TRUE(s.user.messages.empty());
}

TEST(GridEdit, EscapeAfterTypingLeavesTheOldValue)
{
    Sheet s;
    s.Set(1, kA, 77);
    s.Type("5");
    s.Press(kEscape);
    EXPECT_FALSE(s.box.visible);
    EXPECT_EQ(s.Value(1, kA), 77.0F);
    EXPECT_FALSE(s.data.IsDirty());
}

TEST(GridEdit, AnEntryOfMinusFiveIsStoredAsMinusOneAndShownAsAMissingValue)
{
    Sheet s;
    s.Type("-5");
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    EXPECT_EQ((s.grid.written[{1, kA}]), "-1");
    s.Type("-0.5"); // only what lies below -1
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), -0.5F);
}

TEST(GridEdit, UpAndDownCommitAndMoveOneRowAndStopAtTheEnds)
{
    Sheet s;
    s.Go(2, kA);
    s.Type("1");
    s.Press(kUp);
    EXPECT_EQ(s.Value(2, kA), 1.0F);
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kA));
    s.Type("2");
    s.Press(kUp);
    EXPECT_EQ(s.Value(1, kA), 2.0F);
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kA));
    s.Go(3, kA);
    s.Type("3");
    s.Press(kDown);
    EXPECT_EQ(s.grid.selected, GridSelection::At(4, kA));
    s.Type("4");
    s.Press(kDown);
    EXPECT_EQ(s.Value(4, kA), 4.0F);
    EXPECT_EQ(s.grid.selected, GridSelection::At(4, kA));
}

TEST(GridEdit, TabCommitsAndGoesOnToTheNextCellAlsoRoundTheEndOfTheRow)
{
    Sheet s;
    s.Go(1, kB);
    s.Type("1");
    s.Press(kTab);
    EXPECT_EQ(s.Value(1, kB), 1.0F);
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kC));
    s.Type("2");
    s.Press(kTab);
    EXPECT_EQ(s.grid.selected, GridSelection::At(2, kA));
    s.Type("3");
    s.Press(kTab, kShift);
    EXPECT_EQ(s.Value(2, kA), 3.0F);
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kC));
    s.Go(4, kC);
    s.Type("4");
    s.Press(kTab);
    EXPECT_EQ(s.grid.selected, GridSelection::At(4, kC)); // there is no cell behind it
    s.Go(1, kA);
    s.Type("5");
    s.Press(kTab, kShift);
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kA));
}

TEST(GridEdit, AllOtherKeysStayInTheBox)
{
    Sheet s;
    s.Type("1");
    for (const int key : {37, 39, 36, 35, 46, 65}) // left, right, Home, End, Delete, a letter
        EXPECT_FALSE(s.control.EditKeyCode(key, 0)) << key;
    EXPECT_TRUE(s.box.visible);
    EXPECT_TRUE(clsDataGrid::TextKeyPress(kEnter)); // swallowed, or the toolkit beeps
    EXPECT_FALSE(clsDataGrid::TextKeyPress('5'));
}

TEST(GridEdit, ARefusedTextStaysInTheBoxAllSelectedWhateverKeyAsked)
{
    for (const int key : {kEnter, kUp, kDown, kTab}) {
        Sheet s;
        s.Go(2, kB);
        s.Type("1x");
        s.Press(key);
        EXPECT_TRUE(s.box.visible);
        EXPECT_TRUE(s.box.allSelected);
        EXPECT_EQ(s.box.text, "1x");
        EXPECT_EQ(s.Message(), "Data must be numeric.");
        EXPECT_EQ(s.user.messages.back().icon, Icon::Exclamation);
        EXPECT_EQ(s.user.messages.back().title, "VELT 3.0");
        EXPECT_EQ(s.grid.selected, GridSelection::At(2, kB));
        EXPECT_EQ(s.Value(2, kB), -1.0F);
    }
}

TEST(GridEdit, ADecimalCommaIsRefusedWithAWordOnThePoint)
{
    Sheet s;
    s.Type("1");
    s.Type(",5");
    s.Press(kEnter);
    EXPECT_TRUE(s.user.Saw("Data must be numeric.\n\nThe decimal sign is a point."));
}

TEST(GridEdit, ANumberThatNoCellCanHoldIsRefusedAndTheLargestOneIsTaken)
{
    Sheet s;
    s.Type("1e39");
    s.Press(kEnter);
    EXPECT_TRUE(s.user.Saw("too large"));
    EXPECT_EQ(s.Value(1, kA), -1.0F);
    s.Press(kEscape);
    s.Type(number_text::Shortest(std::numeric_limits<float>::max()));
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), std::numeric_limits<float>::max());
}

TEST(GridEdit, NoTextThatIsNoNumberGetsIntoACell)
{
    for (const char* text : {"nan", "inf", "0x10", "--1", "1..2", "1e", " ", "-", ".", "1 2"}) {
        Sheet s;
        s.Press(kEnter);
        s.EmptyBox();
        s.Type(text);
        s.Press(kEnter);
        EXPECT_TRUE(s.box.visible) << text;
        EXPECT_EQ(s.Value(1, kA), -1.0F) << text;
    }
}

TEST(GridMouse, AClickElsewhereCommitsTheBoxInItsOwnCellAndKeepsTheClickedOne)
{
    Sheet s;
    s.Go(1, kA);
    s.Type("5");
    s.Click(3, kC);
    EXPECT_EQ(s.Value(1, kA), 5.0F);
    EXPECT_EQ(s.Value(3, kC), -1.0F);
    EXPECT_EQ(s.grid.selected, GridSelection::At(3, kC));
    EXPECT_FALSE(s.box.visible);
}

TEST(GridMouse, AClickElsewhereWithARefusedTextStaysInItsCellSoThatTheMendedNumberLandsThere)
{
    Sheet s;
    s.Go(1, kA);
    s.Type("5x");
    s.Go(3, kC);
    s.control.GridMouseDown(1);
    EXPECT_EQ(s.user.messages.size(), 1U);
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kA));
    EXPECT_TRUE(s.box.visible);
    s.Type("6"); // over the selected text
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), 6.0F);
    EXPECT_EQ(s.Value(3, kC), -1.0F);
}

TEST(GridMouse, TheRightButtonPopsUpTheMenuAtOnceAndCommitsNothing)
{
    Sheet s;
    s.Type("5");
    s.control.GridMouseDown(2);
    EXPECT_EQ(s.popUps, 1);
    EXPECT_TRUE(s.box.visible);
    EXPECT_EQ(s.Value(1, kA), -1.0F);
}

TEST(GridMouse, TheButtonComingUpCommitsABoxThatIsStillOpen)
{
    Sheet s;
    s.Type("5");
    s.control.GridMouseUp();
    EXPECT_EQ(s.Value(1, kA), 5.0F);
    EXPECT_FALSE(s.box.visible);
}

TEST(GridFocus, LosingTheFocusStoresNothingAndFillsAnEmptyBox)
{
    Sheet s;
    s.Set(1, kA, 77);
    s.Press(kEnter);
    s.EmptyBox();
    s.control.TextLostFocus();
    EXPECT_EQ(s.box.text, "-1");
    EXPECT_EQ(s.Value(1, kA), 77.0F);
    s.Press(kEnter); // the user had emptied it
    EXPECT_EQ(s.Value(1, kA), -1.0F);
}

TEST(GridFocus, TheGridGettingTheFocusHidesTheBox)
{
    Sheet s;
    s.Type("5");
    s.control.GridGotFocus();
    EXPECT_FALSE(s.box.visible);
    EXPECT_EQ(s.Value(1, kA), -1.0F);
}

TEST(GridFocus, TheBoxRemembersTheCellThatWasCurrentWhenItGotTheFocus)
{
    Sheet s;
    s.Go(2, kB);
    s.Type("5");
    EXPECT_EQ(s.control.OldRow(), 2);
    EXPECT_EQ(s.control.OldCol(), kB);
    s.box.visible = false;
    s.Go(3, kC);
    s.control.TextGotFocus(); // hidden: remembers nothing
    EXPECT_EQ(s.control.OldRow(), 2);
}

TEST(CommitIfOpen, StoresAnOpenBoxAndSaysWhetherTheWayIsFree)
{
    Sheet s;
    EXPECT_TRUE(s.control.CommitIfOpen());
    s.Type("5");
    EXPECT_TRUE(s.control.CommitIfOpen());
    EXPECT_EQ(s.Value(1, kA), 5.0F);
    s.Type("5x");
    EXPECT_FALSE(s.control.CommitIfOpen());
    EXPECT_TRUE(s.box.visible);
}

TEST(CommitIfOpen, ARefusedTextKeepsItsCellWhereverTheSelectionHasGone)
{
    Sheet s;
    s.Type("5x");
    s.Go(3, kC); // as the right button does before its menu opens
    EXPECT_FALSE(s.control.CommitIfOpen());
    EXPECT_EQ(s.grid.selected, GridSelection::At(1, kA));
    s.Type("6");
    s.Press(kEnter);
    EXPECT_EQ(s.Value(1, kA), 6.0F);
    EXPECT_EQ(s.Value(3, kC), -1.0F);
}

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
