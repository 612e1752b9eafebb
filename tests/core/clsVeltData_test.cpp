// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsVeltData.h"

#include "base/Text.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace
{
class VeltData : public testing::Test
{
protected:
    /// Whether `change` marks a data set as changed.
    bool Dirties(const std::function<void(clsVeltData&)>& change)
    {
        clsVeltData fresh(bench.run);
        change(fresh);
        return fresh.IsDirty();
    }

    Bench bench;
    clsVeltData data{bench.run};
};

std::uint32_t NumberOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}

clsProjScenario Scenario(const std::string& title)
{
    clsProjScenario scenario;
    scenario.Title(title);
    return scenario;
}

clsFit Named(const std::string& name)
{
    clsFit fit;
    fit.Create(name, 36526.0);
    return fit;
}
} // namespace

TEST_F(VeltData, AFreshDataSetHasMinusOneEverywhereNoColumnsAndNoChanges)
{
    for (int column = 1; column <= 15; ++column) {
        for (int row = 1; row <= 200; ++row)
            ASSERT_EQ(data.DB(column, row), -1.0F);
        EXPECT_FALSE(data.ColPresent(column));
        EXPECT_EQ(data.ColFormat(column), "0");
        EXPECT_EQ(data.DecPlaces(column), 0);
    }
    for (int row = 1; row <= 200; ++row) {
        EXPECT_FALSE(data.Included(row));
        EXPECT_TRUE(data.ToggledIn(row));
        EXPECT_EQ(data.NumDPs(row), 0);
    }
    EXPECT_EQ(data.NNtPoints(), 0);
    EXPECT_EQ(data.TimeInts(), 0);
    EXPECT_EQ(data.DSDesc(), "");
    EXPECT_EQ(data.DSFName(), "");
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(VeltData, DBLetOfAValueMarksTheSetDirtyEffortLetOfTheSameValueDoesNot)
{
    data.Effort(3, 7.0F);
    EXPECT_FALSE(data.IsDirty());
    data.DB(columns::Effort, 3, 7.0F);
    EXPECT_TRUE(data.IsDirty());
}

TEST_F(VeltData, AClearedSystemColumnIsGoneAndHoldsZerosWhileItsNeighboursStay)
{
    for (const int column : {columns::ExpCatchNums - 1, columns::ExpCatchNums, columns::ExpCatchNums + 1}) {
        data.ColPresent(column, true);
        for (int row = 1; row <= 200; ++row)
            data.DB(column, row, 7.0F);
    }

    data.ClearSystemColumn(columns::ExpCatchNums);

    EXPECT_FALSE(data.ColPresent(columns::ExpCatchNums));
    EXPECT_TRUE(data.ColPresent(columns::ExpCatchNums - 1));
    EXPECT_TRUE(data.ColPresent(columns::ExpCatchNums + 1));
    for (int row = 1; row <= 200; ++row) {
        ASSERT_EQ(data.DB(columns::ExpCatchNums, row), 0.0F) << row; // and not the -1 of a missing value
        ASSERT_EQ(data.DB(columns::ExpCatchNums - 1, row), 7.0F) << row;
        ASSERT_EQ(data.DB(columns::ExpCatchNums + 1, row), 7.0F) << row;
    }
}

TEST_F(VeltData, ClearingASystemColumnIsNoChangeOfTheDataSet)
{
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.ClearSystemColumn(columns::ExpCatchNums); }));
}

TEST_F(VeltData, DSFNameLetLeavesIsDirtyUnchangedDSDescLetSetsIt)
{
    data.DSFName("/data/ling.vl3");
    EXPECT_FALSE(data.IsDirty());
    data.DSDesc("Ling");
    EXPECT_TRUE(data.IsDirty());
    EXPECT_EQ(data.DSFName(), "/data/ling.vl3");
    EXPECT_EQ(data.DSDesc(), "Ling");
}

TEST_F(VeltData, ColFormatHoldsAtMost20CharactersALongerFormatIsCut)
{
    data.ColFormat(1, "#,##0.0000000000000000");
    EXPECT_EQ(data.ColFormat(1), "#,##0.00000000000000");
    EXPECT_EQ(data.ColFormat(1).size(), 20U);
    data.ColFormat(2, " 0.00 ");
    EXPECT_EQ(data.ColFormat(2), "0.00");
}

TEST_F(VeltData, OrigNAPointsLetMakesTheSetDirty)
{
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.OrigNAPoints(5); }));
}

TEST_F(VeltData, EachCounterKeepsItsOwnValue)
{
    data.NAPoints(11);
    data.OrigNAPoints(12);
    data.NNtPoints(13);
    data.NumScens(14);
    data.NumPts(15);
    data.NDPoints(16);
    EXPECT_EQ(data.NAPoints(), 11);
    EXPECT_EQ(data.OrigNAPoints(), 12);
    EXPECT_EQ(data.NNtPoints(), 13);
    EXPECT_EQ(data.NumScens(), 14);
    EXPECT_EQ(data.NumPts(), 15);
    EXPECT_EQ(data.NDPoints(), 16);
}

TEST_F(VeltData, OnlyTheMembersThatTheUserChangesMarkTheSetDirty)
{
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.ColFormat(1, "0.0"); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.NumDPs(1, 2); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.TimeInts(1); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.ProjNum(1); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.DecPlaces(1, 1); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.MaxTimeP(1); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.MinTimeP(1); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) { d.NumScens(1); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.NAPoints(1); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.NNtPoints(1); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.NDPoints(1); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.NumPts(1); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.ColPresent(1, true); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.Included(1, true); }));
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.ToggledIn(1, false); }));
}

TEST_F(VeltData, ANumberOutside1To15Reads0AndTakesNothing)
{
    for (const int column : {0, 16, -1}) {
        data.DB(column, 1, 5.0F);
        EXPECT_EQ(data.DB(column, 1), 0.0F);
    }
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(VeltData, RowsOutside1To200RaiseSubscriptOutOfRange)
{
    for (const int row : {0, 201, -5}) {
        EXPECT_EQ(NumberOf([&] { data.DB(1, row); }), 9U);
        EXPECT_EQ(NumberOf([&] { data.DB(1, row, 1.0F); }), 9U);
        EXPECT_EQ(NumberOf([&] { data.Included(row, true); }), 9U);
    }
    EXPECT_EQ(NumberOf([&] { data.Column(16); }), 9U);
    EXPECT_EQ(NumberOf([&] { data.ColPresent(0); }), 9U);
}

TEST_F(VeltData, AColumnIsTheSameByNumberAndByName)
{
    data.DB(1, 1, 1.0F);
    data.DB(2, 1, 2.0F);
    data.DB(9, 1, 9.0F);
    data.PopNums(200, 15.0F);
    EXPECT_EQ(data.TotCatchWt(1), 1.0F);
    EXPECT_EQ(data.TotCatchNums(1), 2.0F);
    EXPECT_EQ(data.RecruitIndex(1), 9.0F);
    EXPECT_EQ(data.DB(15, 200), 15.0F);
    EXPECT_EQ(data.RecruitIndex()(1), 9.0F);
}

TEST_F(VeltData, TheLastSixColumnsBelongToTheSystemAndResetDropsThem)
{
    for (int column = 1; column <= 15; ++column) {
        EXPECT_EQ(clsVeltData::DBSysOnly(column), column >= 10) << column;
        data.ColPresent(column, true);
    }
    data.ExpCPUE(1, 3.0F);

    data.Reset();

    for (int column = 1; column <= 15; ++column)
        EXPECT_EQ(data.ColPresent(column), column < 10) << column;
    EXPECT_EQ(data.ExpCPUE(1), 3.0F); // out of view, not erased
}

TEST_F(VeltData, CheckRqColsWantsEveryColumnAndIsFalseForAnEmptyList)
{
    data.ColPresent(1, true);
    data.ColPresent(4, true);
    EXPECT_TRUE(data.CheckRqCols(std::vector{1, 4}));
    EXPECT_FALSE(data.CheckRqCols(std::vector{1, 2, 4}));
    EXPECT_FALSE(data.CheckRqCols({}));
}

TEST_F(VeltData, ShownRowsStayBetween0And200)
{
    for (const auto& [intervals, shown] : {std::pair{-3, 0}, {0, 0}, {1, 1}, {200, 200}, {201, 200}}) {
        data.TimeInts(intervals);
        EXPECT_EQ(data.ShownRows(), shown);
    }
}

TEST_F(VeltData, AFreshDataSetHasNoFitsNoScenariosAndNoStoredCounts)
{
    EXPECT_EQ(data.NumLoggedFits(), 0);
    EXPECT_EQ(data.NumProjScenarios(), 0);
    EXPECT_EQ(data.NumLoggedRuns(), 0);
    EXPECT_EQ(data.V2KLoggedFits(), 0);
    EXPECT_EQ(data.V2kProjScens(), 0);
    data.LogOrReload(true);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(VeltData, AddingAScenarioMarksTheSetDirtyOnlyWhileLogOrReloadIsTrue) // deliberate
{
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.AddProjScenario(Scenario("Base"), "Base"); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) {
        d.LogOrReload(true);
        d.AddProjScenario(Scenario("Base"), "Base");
    }));
}

TEST_F(VeltData, AddingAFitMarksTheSetDirtyOnlyWhileLogOrReloadIsTrue) // deliberate
{
    EXPECT_FALSE(Dirties([](clsVeltData& d) { d.AddLoggedFit(Named("Ling")); }));
    EXPECT_TRUE(Dirties([](clsVeltData& d) {
        d.LogOrReload(true);
        d.AddLoggedFit(Named("Ling"));
    }));
}

TEST_F(VeltData, AddingNeverTakesTheMarkOfAChangeAway)
{
    data.DSDesc("Ling");
    data.AddProjScenario(Scenario("Base"), "Base");
    data.AddLoggedFit(Named("Ling"));
    EXPECT_TRUE(data.IsDirty());
}

TEST_F(VeltData, ScenariosComeByPlaceInTheOrderOfAddingAndByTitle)
{
    data.AddProjScenario(Scenario("Zero"), "Zero");
    data.AddProjScenario(Scenario("Base"), "Base");

    EXPECT_EQ(data.NumProjScenarios(), 2);
    ASSERT_NE(data.ProjScenario(1), nullptr);
    EXPECT_EQ(data.ProjScenario(1)->Title(), "Zero");
    EXPECT_EQ(data.ProjScenario(2)->Title(), "Base");
    EXPECT_EQ(data.ProjScenario("Base"), data.ProjScenario(2));
}

TEST_F(VeltData, AScenarioThatIsNotThereIsNothing)
{
    data.AddProjScenario(Scenario("Base"), "Base");
    const clsVeltData& seen = data;
    for (const std::int32_t index : {0, 2, -1})
        EXPECT_EQ(seen.ProjScenario(index), nullptr) << index;
    for (const char* const title : {"", "base", "Bas", " Base", "Base 2"})
        EXPECT_EQ(seen.ProjScenario(title), nullptr) << title;
}

TEST_F(VeltData, TitlesCompareByTheirFirst30Characters)
{
    const std::string thirty = "Effort of 1985 for thirty year";
    ASSERT_EQ(thirty.size(), 30U);
    data.AddProjScenario(Scenario(thirty + "s"), thirty + "s");

    EXPECT_NE(data.ProjScenario(thirty), nullptr);
    EXPECT_NE(data.ProjScenario(thirty + " and more"), nullptr);
    EXPECT_EQ(data.ProjScenario(thirty.substr(0, 29)), nullptr);
    EXPECT_EQ(NumberOf([&] { data.AddProjScenario(Scenario(thirty), thirty); }), 5U);
    EXPECT_EQ(data.NumProjScenarios(), 1);
}

TEST_F(VeltData, AScenarioUnderATakenTitleIsRefusedAndChangesNothing)
{
    data.AddProjScenario(Scenario("Base"), "Base");
    data.LogOrReload(true);
    EXPECT_EQ(NumberOf([&] { data.AddProjScenario(Scenario("Base"), "Base"); }), 5U);
    EXPECT_EQ(data.NumProjScenarios(), 1);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(VeltData, AScenarioIsRenamedByTakingItOutAndAddingItUnderTheNewTitle)
{
    data.AddProjScenario(Scenario("Base"), "Base");
    clsProjScenario renamed = *data.ProjScenario("Base");
    renamed.Title("Twice");
    data.ProjScens().Remove("Base");
    data.AddProjScenario(renamed, "Twice");

    EXPECT_EQ(data.NumProjScenarios(), 1);
    EXPECT_EQ(data.ProjScenario("Base"), nullptr);
    EXPECT_EQ(data.ProjScenario("Twice")->Title(), "Twice");
    EXPECT_EQ(NumberOf([&] { data.ProjScens().Remove("Base"); }), 5U);
}

TEST_F(VeltData, FitsComeByPlaceInTheOrderOfAddingAndAPlaceOutsideRaises9)
{
    data.AddLoggedFit(Named("Tusk"));
    data.AddLoggedFit(Named("Ling"));
    EXPECT_EQ(data.NumLoggedFits(), 2);
    EXPECT_EQ(Trim(data.LoggedFit(1).FitName()), "Tusk");
    EXPECT_EQ(Trim(data.LoggedFit(2).FitName()), "Ling");
    for (const std::int32_t index : {0, 3, -1})
        EXPECT_EQ(NumberOf([&] { data.LoggedFit(index); }), 9U) << index;
}

TEST_F(VeltData, DeletingAFitByItsNameWithoutBlanksMarksTheSetDirty)
{
    data.AddLoggedFit(Named("Tusk"));
    data.AddLoggedFit(Named("Ling"));
    ASSERT_FALSE(data.IsDirty());

    data.DeleteLoggedFit("Tusk");

    EXPECT_EQ(data.NumLoggedFits(), 1);
    EXPECT_EQ(Trim(data.LoggedFit(1).FitName()), "Ling");
    EXPECT_TRUE(data.IsDirty());
}

TEST_F(VeltData, TheNameOfADeletedFitIsFreeAgain)
{
    data.AddLoggedFit(Named("Tusk"));
    EXPECT_TRUE(data.HasLoggedFit("Tusk"));
    data.DeleteLoggedFit("Tusk");
    EXPECT_FALSE(data.HasLoggedFit("Tusk"));
    data.AddLoggedFit(Named("Tusk"));
    EXPECT_EQ(data.NumLoggedFits(), 1);
}

TEST_F(VeltData, DeletingAFitThatIsNotThereRaises5AndChangesNothing)
{
    data.AddLoggedFit(Named("Ling"));
    EXPECT_EQ(NumberOf([&] { data.DeleteLoggedFit("ling"); }), 5U);
    EXPECT_EQ(data.NumLoggedFits(), 1);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(VeltData, AFitStaysWhereItIsWhileOthersComeAndGoAndWhenTheSetIsMoved)
{
    data.AddLoggedFit(Named("Tusk"));
    data.AddLoggedFit(Named("Ling"));
    clsFit* const ling = &data.LoggedFit(2);
    data.AddLoggedFit(Named("Hake"));
    data.DeleteLoggedFit("Tusk");
    EXPECT_EQ(&data.LoggedFit(1), ling);

    const clsVeltData moved = std::move(data);

    EXPECT_EQ(&moved.LoggedFit(1), ling);
    EXPECT_EQ(moved.NumLoggedFits(), 2);
}

TEST_F(VeltData, ACopyHasFitsAndScenariosOfItsOwn)
{
    data.AddLoggedFit(Named("Ling"));
    data.AddProjScenario(Scenario("Base"), "Base");

    clsVeltData copy = data;
    copy.LoggedFit(1).Start(913);
    copy.ProjScenario("Base")->Vector(1, 5.0);
    copy.DeleteLoggedFit("Ling");

    EXPECT_EQ(data.NumLoggedFits(), 1);
    EXPECT_EQ(data.LoggedFit(1).Start(), 0);
    EXPECT_EQ(data.ProjScenario(1)->Vector(1), 0);
    EXPECT_FALSE(data.IsDirty());
}
