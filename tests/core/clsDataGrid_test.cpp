// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsDataGrid.h"

#include "base/NumberText.h"
#include "core/ThreeColumns.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

using namespace grid_keys;
using namespace three_columns;

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

TEST(GridEdit, ACellWithThousandsSetApartIsOpenedWithoutItsCommasAndCanBeLeftOrChanged)
{
    Sheet s;
    s.data.ColFormat(columns::TotCatchWt, "#,0");
    s.Set(1, kA, 1234567);
    EXPECT_EQ(s.grid.TextMatrix(1, kA), "1,234,567");
    s.Press(kEnter);
    EXPECT_EQ(s.box.text, "1234567");
    s.Press(kEnter); // left as it was
    EXPECT_FALSE(s.box.visible);
    EXPECT_TRUE(s.user.messages.empty());
    EXPECT_FALSE(s.data.IsDirty());
    s.Press(kEnter);
    s.Type("1234568");
    s.Press(kEnter);
    EXPECT_TRUE(s.user.messages.empty());
    EXPECT_EQ(s.Value(1, kA), 1234568.0F);
}

TEST(GridEdit, ACellThatHoldsNoNumberCanBeOpenedAndLeft)
{
    for (const float value :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        Sheet s;
        s.Set(1, kA, value);
        s.Press(kEnter);
        s.Press(kEnter);
        EXPECT_FALSE(s.box.visible);
        EXPECT_TRUE(s.user.messages.empty());
        s.Press(kEnter);
        EXPECT_TRUE(s.control.CommitIfOpen());
        EXPECT_FALSE(s.data.IsDirty());
    }
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
