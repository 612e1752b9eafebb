// SPDX-License-Identifier: GPL-3.0-or-later
// What a user types and pastes into the editor of scenarios.
#include "core/ScenarioEditor.h"

#include <gtest/gtest.h>

#include <string>

using namespace scenario_editor;

TEST(ScenarioSheet, ATitleMayBeWhatItIsButNotThatOfAnotherNorBlank)
{
    Editor editor;
    editor.sheet.AddScenario();
    editor.Enter(kTitle, 1, "Scenario1");
    EXPECT_TRUE(editor.user.messages.empty());
    for (const std::string refused : {"Scenario2", "   ", ""}) {
        editor.Enter(kTitle, 1, refused);
        EXPECT_EQ(editor.Message(), "Scenario names cannot be empty and must be unique") << refused;
        EXPECT_TRUE(editor.box.visible);
        editor.control.EditKeyCode(grid_keys::kEscape, 0);
        EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    }
}

TEST(ScenarioSheet, ARenamedScenarioKeepsItsColumnAndStandsLastAtTheNextLoad)
{
    Editor editor;
    editor.sheet.AddScenario();
    editor.Enter(kFirst, 1, "5");
    editor.Enter(kTitle, 1, "  Half of 2020 ");
    EXPECT_EQ(editor.Shown(kTitle, 1), "Half of 2020");
    EXPECT_EQ(editor.Kept("Half of 2020", 1), 5);
    EXPECT_EQ(editor.data.ProjScenario("Scenario1"), nullptr);
    EXPECT_EQ(editor.data.ProjScenario(2)->Title(), "Half of 2020");
    editor.Load();
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario2");
    EXPECT_EQ(editor.Shown(kTitle, 2), "Half of 2020");
}

TEST(ScenarioSheet, ATitleThatIsANumberStaysAsItWasTyped)
{
    Editor editor;
    editor.Enter(kTitle, 1, "2020");
    EXPECT_EQ(editor.Shown(kTitle, 1), "2020");
}

TEST(ScenarioSheet, ALetterBeginsATitleAtOnceAndBeepsOnAValue)
{
    Editor editor;
    editor.Go(kTitle, 1);
    editor.control.GridEdit('H');
    EXPECT_EQ(editor.box.text, "H");
    EXPECT_EQ(editor.grid.beeps, 0);
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Go(kFirst, 1);
    editor.control.GridEdit('H');
    EXPECT_EQ(editor.box.text, "0.000");
    EXPECT_EQ(editor.grid.beeps, 1);
}

TEST(ScenarioSheet, ATitleIsCutTo30CharactersAndThatIsSaid)
{
    Editor editor;
    editor.Enter(kTitle, 1, "An effort as it was before the war");
    EXPECT_EQ(editor.Shown(kTitle, 1), "An effort as it was before the");
    EXPECT_EQ(editor.note, "A title keeps 30 characters.");
    editor.sheet.AddScenario();
    editor.Enter(kTitle, 2, "An effort as it was before the peace");
    EXPECT_EQ(editor.Message(), "Scenario names cannot be empty and must be unique");
}

TEST(ScenarioSheet, ATitleThatNoProjectCanKeepIsRefused)
{
    Editor editor;
    editor.Enter(kTitle, 1, "\xE6\xBC\x81");
    EXPECT_TRUE(editor.Message().starts_with("A project can keep only the letters")) << editor.Message();
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
}

TEST(ScenarioSheet, AValueIsShownAsItWasTypedUntilTheNextLoadShowsItAsItIsKept)
{
    Editor editor;
    editor.Enter(kFirst, 1, "12.75");
    EXPECT_EQ(editor.Shown(kFirst, 1), "12.750");
    EXPECT_EQ(editor.Kept("Scenario1", 1), 13);
    EXPECT_EQ(editor.note, "12.75 is kept, and projected, as 13: scenarios hold whole numbers.");
    editor.Load();
    EXPECT_EQ(editor.Shown(kFirst, 1), "13.000");
}

TEST(ScenarioSheet, ATextIsNoValueAndAnEmptyCellIs0)
{
    Editor editor;
    editor.Enter(kFirst, 1, "much");
    EXPECT_EQ(editor.Message(), "Data must be numeric.");
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Enter(kFirst, 1, "3,5");
    EXPECT_EQ(editor.Message(), "Data must be numeric.\n\nThe decimal sign is a point.");
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Enter(kFirst, 1, "1e10");
    EXPECT_TRUE(editor.Message().starts_with("Data must be numeric.\n\nThe value is too large"))
        << editor.Message();
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Enter(kFirst, 1, "7");
    editor.Enter(kFirst, 1, "");
    EXPECT_EQ(editor.Kept("Scenario1", 1), 0);
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
}

TEST(ScenarioSheet, APastedBlockAddsTheRowsAndScenariosThatItNeeds)
{
    Editor editor;
    editor.Paste(kFirst, 1, "1\t10\r\n2\t20\r\n3\t30\r\n");
    EXPECT_TRUE(editor.user.messages.empty()) << editor.Message();
    EXPECT_EQ(editor.sheet.Scenarios(), 2);
    EXPECT_EQ(editor.sheet.Points(), 3);
    EXPECT_EQ(editor.Kept("Scenario1", 3), 3);
    EXPECT_EQ(editor.Kept("Scenario2", 2), 20);
    EXPECT_EQ(editor.Shown(kFirst + 2, 2), "30.000");
}

TEST(ScenarioSheet, APastedTitleNeedsAScenarioAndFollowsTheRulesOfTitles)
{
    Editor editor;
    std::string foreign = "\xE6\xBC\x81"; // no project can keep it
    EXPECT_FALSE(editor.sheet.EditData(1, kTitle, foreign));
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    for (const int behind : {2, 25}) {
        std::string title = "Second";
        EXPECT_FALSE(editor.sheet.EditData(behind, kTitle, title)) << behind;
    }
    EXPECT_EQ(editor.data.NumProjScenarios(), 1);
    EXPECT_EQ(editor.data.ProjScenario("Second"), nullptr);
}

TEST(ScenarioSheet, NothingIsTypedInTheRowOfUnits)
{
    Editor editor;
    std::string value = "5";
    EXPECT_FALSE(editor.sheet.EditData(1, kUnit, value));
    EXPECT_EQ(editor.sheet.Points(), 1);
    EXPECT_EQ(editor.Shown(kUnit, 1), "Effort");
}

// A box that was opened over a unit and left must not hold the user in it: "Effort" is no number.
TEST(ScenarioSheet, ABoxOverAUnitIsLeftWithoutAWord)
{
    Editor editor;
    editor.Go(kUnit, 1);
    editor.box.visible = true;
    editor.control.TextGotFocus();
    editor.box.Text("Effort");
    EXPECT_TRUE(editor.sheet.IsValidData());
    EXPECT_TRUE(editor.user.messages.empty());
}

TEST(ScenarioSheet, TheNoteOfAnEntryGoesWithTheNext)
{
    Editor editor;
    editor.Enter(kFirst, 1, "12.75");
    EXPECT_NE(editor.note, "");
    editor.Enter(kFirst, 1, "13");
    EXPECT_EQ(editor.note, "");
}

TEST(ScenarioSheet, PastingTextSaysThatItIsNoNumber)
{
    Editor editor;
    editor.Paste(kFirst, 1, "1\r\nmany\r\n");
    EXPECT_TRUE(editor.Message().starts_with("Cannot paste non numeric data")) << editor.Message();
    EXPECT_EQ(editor.Kept("Scenario1", 1), 1);
    EXPECT_EQ(editor.sheet.Points(), 1);
}

TEST(ScenarioSheet, ABlockForMorePeriodsThanThereMayBeIsAskedAbout)
{
    Editor editor(198);
    editor.user.answers = {Answer::No};
    editor.Paste(kFirst, 1, "1\r\n2\r\n");
    EXPECT_TRUE(editor.Message().starts_with("The block is larger than the table")) << editor.Message();
    EXPECT_EQ(editor.Kept("Scenario1", 1), 0);
}

TEST(ScenarioSheet, ACopiedBlockHasTheTextsAndTheExactValues)
{
    Editor editor;
    editor.Enter(kFirst, 1, "12.75");
    editor.Go(kFirst, 1);
    editor.control.CopyClick();
    EXPECT_EQ(editor.clipboard.text, "12.750\r\n");
    EXPECT_EQ(editor.clipboard.exact, "13\r\n");
}
