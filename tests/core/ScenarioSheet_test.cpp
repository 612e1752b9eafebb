// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ScenarioSheet.h"

#include "core/ScenarioEditor.h"
#include "support/Scenarios.h"

#include <gtest/gtest.h>

#include <string>

using namespace scenario_editor;

TEST(ScenarioSheet, ANewDataSetOpensWithOneScenarioOfOnePeriod)
{
    Editor editor;
    EXPECT_EQ(editor.sheet.Scenarios(), 1);
    EXPECT_EQ(editor.sheet.Points(), 1);
    EXPECT_EQ(editor.Shown(kTitle, 0), "Time");
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    EXPECT_EQ(editor.Shown(kUnit, 1), "Effort");
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
    EXPECT_EQ(editor.Shown(kFirst, 0), "2000"); // straight after 1980 to 1999
    EXPECT_EQ(editor.Shown(kFirst + 1, 0), "");
    EXPECT_EQ(editor.data.NumPts(), 1);
    EXPECT_EQ(editor.data.NumProjScenarios(), 1);
    EXPECT_FALSE(editor.data.IsDirty()); // nobody has done anything yet
}

TEST(ScenarioSheet, ShowsTheScenariosOfTheDataSetInTheirOrder)
{
    Editor editor;
    editor.data.ProjScens() = {};
    AddScenario(editor.data, "B", vec_type::kTotCatchNums, {5, 6});
    AddScenario(editor.data, "A", vec_type::kTotCatchWt, {7, 8});
    editor.Load();
    EXPECT_EQ(editor.Shown(kTitle, 1), "B");
    EXPECT_EQ(editor.Shown(kUnit, 1), "Total Catch Numbers");
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "6.000");
    EXPECT_EQ(editor.Shown(kTitle, 2), "A");
    EXPECT_EQ(editor.Shown(kUnit, 2), "Total Catch Weight");
    EXPECT_EQ(editor.Shown(kFirst + 1, 0), "2001");
}

TEST(ScenarioSheet, TheNextNewScenarioTakesTheSmallestFreeNumber)
{
    Editor editor;
    editor.sheet.AddScenario();
    EXPECT_EQ(editor.Shown(kTitle, 2), "Scenario2");
    editor.user.answers = {Answer::Yes};
    editor.sheet.DeleteScenario(1);
    EXPECT_EQ(editor.user.messages.back().text, "Are you sure you want to delete Scenario?Scenario1 ? ");
    EXPECT_EQ(editor.user.messages.back().buttons, Buttons::YesNoCancel);
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario2");
    editor.sheet.AddScenario();
    EXPECT_EQ(editor.Shown(kTitle, 2), "Scenario1");
}

// An element that was never set stands as another kind of number in the project file.
TEST(ScenarioSheet, TheZerosOfANewScenarioAreSetLikeTypedOnes)
{
    Editor editor;
    editor.sheet.AddRow();
    editor.sheet.AddScenario();
    const clsProjScenario& added = *editor.data.ProjScenario("Scenario2");
    EXPECT_TRUE(added.IsShort(20));
    EXPECT_FALSE(added.IsShort(21) || added.IsShort(22));
    EXPECT_TRUE(added.IsShort(23));
}

TEST(ScenarioSheet, ADeletionThatIsNotAnsweredWithYesChangesNothing)
{
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        Editor editor;
        editor.user.answers = {answer};
        editor.sheet.DeleteScenario(1);
        EXPECT_EQ(editor.data.NumProjScenarios(), 1);
        EXPECT_EQ(editor.changes, 0);
    }
}

TEST(ScenarioSheet, DeletingTheLastScenarioLeavesAFreshOneOfOnePeriod)
{
    Editor editor;
    editor.sheet.AddRow();
    editor.Enter(kFirst, 1, "5");
    editor.user.answers = {Answer::Yes};
    editor.sheet.DeleteScenario(1);
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
    EXPECT_EQ(editor.sheet.Points(), 1);
}

TEST(ScenarioSheet, RowsComeAtTheEndAndGoFromTheEnd)
{
    Editor editor;
    editor.sheet.AddRow();
    EXPECT_EQ(editor.data.NumPts(), 2);
    EXPECT_EQ(editor.Shown(kFirst + 1, 0), "2001");
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "0.000");
    editor.Go(kFirst, 1);
    editor.sheet.DeleteRow();
    EXPECT_EQ(editor.data.NumPts(), 1);
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "");
    editor.sheet.DeleteRow();
    EXPECT_EQ(editor.Message(), "Cannot remove all Points");
    EXPECT_EQ(editor.user.messages.back().icon, Icon::Exclamation);
    EXPECT_EQ(editor.data.NumPts(), 1);
}

TEST(ScenarioSheet, ARowThatComesBackHoldsTheZeroThatItShows)
{
    Editor editor;
    editor.sheet.AddRow();
    editor.Enter(kFirst + 1, 1, "50");
    editor.sheet.DeleteRow();
    EXPECT_EQ(editor.Kept("Scenario1", 2), 50); // behind the end it stays
    editor.sheet.AddRow();
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "0.000");
    EXPECT_EQ(editor.Kept("Scenario1", 2), 0);
}

TEST(ScenarioSheet, ThereAreNoMoreThan25Scenarios)
{
    Editor editor;
    for (int i = 2; i <= 25; ++i)
        editor.sheet.AddScenario();
    EXPECT_TRUE(editor.user.messages.empty());
    editor.sheet.AddScenario();
    EXPECT_EQ(editor.Message(), "There can be 25 scenarios. Delete one before you add another.");
    EXPECT_EQ(editor.data.NumProjScenarios(), 25);
    EXPECT_EQ(editor.sheet.Cols(), 26);
}

TEST(ScenarioSheet, DataAndFutureTogetherAreNoMoreThan199Periods)
{
    Editor editor(197);
    editor.sheet.AddRow();
    EXPECT_EQ(editor.sheet.Points(), 2);
    editor.sheet.AddRow();
    EXPECT_EQ(editor.Message(),
              "With 197 periods of data there can be 2 future periods: together they can be 199.");
    EXPECT_EQ(editor.data.NumPts(), 2);
    EXPECT_EQ(editor.sheet.Rows(), kFirst + 2);
}

TEST(ScenarioSheet, ADataSetWithoutRoomForAFutureShowsAScenarioWithoutRows)
{
    Editor editor(199);
    EXPECT_EQ(editor.sheet.Points(), 0);
    EXPECT_EQ(editor.sheet.Scenarios(), 1);
    editor.sheet.AddRow();
    EXPECT_EQ(editor.Message(),
              "With 199 periods of data there can be 0 future periods: together they can be 199.");
}

TEST(ScenarioSheet, MoreScenariosAndPeriodsOfAProjectThanThereMayBeAreShownAllTheSame)
{
    Editor editor;
    editor.data.ProjScens() = {};
    for (int i = 1; i <= 30; ++i)
        AddScenario(editor.data, "S" + std::to_string(i), vec_type::kEffort, {1});
    editor.data.NumPts(5000);
    editor.Load();
    EXPECT_EQ(editor.sheet.Scenarios(), 30);
    EXPECT_EQ(editor.sheet.Cols(), 31);
    EXPECT_EQ(editor.sheet.Points(), 181); // up to the 201st element
    EXPECT_EQ(editor.Shown(kFirst, 30), "1.000");
    editor.data.NumPts(-4);
    editor.Load();
    EXPECT_EQ(editor.sheet.Points(), 0);
}

// A former project may cover more years than a table has rows.
TEST(ScenarioSheet, ADataSetOfMorePeriodsThanThereAreRowsHasNoFutureOnes)
{
    Editor editor;
    AddScenario(editor.data, "A", vec_type::kEffort, {1, 2, 3});
    editor.data.NAPoints(300);
    editor.Load();
    EXPECT_EQ(editor.sheet.Points(), 0);
    EXPECT_EQ(editor.sheet.Rows(), kFirst);
}

TEST(ScenarioSheet, TheLargestTimesAreLabelledAsTheyAre)
{
    Editor editor;
    editor.data.MinTimeP(2147483628); // the 20th period is the last that 32 bits hold
    EXPECT_EQ(editor.Shown(kFirst, 0), "2147483648");
}

TEST(ScenarioSheet, EveryCommittedChangeMarksTheDataSetButAChangeOfThePeriodsAlone)
{
    const auto marks = [](auto change) {
        Editor editor;
        editor.sheet.AddScenario();
        editor.data.MarkSaved();
        change(editor);
        return editor.data.IsDirty();
    };
    EXPECT_TRUE(marks([](Editor& e) { e.Enter(kFirst, 1, "5"); }));
    EXPECT_TRUE(marks([](Editor& e) { e.Enter(kTitle, 1, "Other"); }));
    EXPECT_TRUE(marks([](Editor& e) { e.sheet.Unit(1, vec_type::kTotCatchWt); }));
    EXPECT_TRUE(marks([](Editor& e) { e.sheet.AddScenario(); }));
    EXPECT_TRUE(marks([](Editor& e) {
        e.user.answers = {Answer::Yes};
        e.sheet.DeleteScenario(1);
    }));
    EXPECT_FALSE(marks([](Editor& e) { e.sheet.AddRow(); }));
    EXPECT_FALSE(marks([](Editor& e) {
        e.sheet.AddRow();
        e.sheet.DeleteRow();
    }));
    EXPECT_FALSE(marks([](Editor& e) { e.Enter(kTitle, 1, "Scenario1"); }));
    EXPECT_FALSE(marks([](Editor& e) { e.sheet.Unit(1, vec_type::kEffort); }));
    EXPECT_FALSE(marks([](Editor& e) { e.Load(); }));
}

TEST(ScenarioSheet, TheUnitOfAScenarioIsItsOwn)
{
    Editor editor;
    editor.sheet.AddScenario();
    editor.sheet.Unit(2, vec_type::kTotCatchNums);
    EXPECT_EQ(editor.Shown(kUnit, 1), "Effort");
    EXPECT_EQ(editor.Shown(kUnit, 2), "Total Catch Numbers");
    EXPECT_EQ(editor.data.ProjScenario("Scenario2")->VecType(), vec_type::kTotCatchNums);
    editor.sheet.Unit(9, vec_type::kTotCatchNums); // no scenario there
    EXPECT_EQ(editor.data.NumProjScenarios(), 2);
}

TEST(ScenarioSheet, ValuesStayWithTheirPeriodsWhenTheDataGrowLonger)
{
    Editor editor;
    editor.Paste(kFirst, 1, "1\r\n2\r\n3\r\n");
    EXPECT_FALSE(editor.sheet.IsOutOfStep());
    AddScenario(editor.data, "From elsewhere", vec_type::kEffort, {1, 2, 3});
    EXPECT_TRUE(editor.sheet.IsOutOfStep());
    editor.Load();
    EXPECT_FALSE(editor.sheet.IsOutOfStep());
    editor.data.NAPoints(21);
    EXPECT_TRUE(editor.sheet.IsOutOfStep());
    editor.Load();
    EXPECT_EQ(editor.Shown(kFirst, 0), "2001");
    EXPECT_EQ(editor.Shown(kFirst, 1), "2.000");
}
