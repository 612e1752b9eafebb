// SPDX-License-Identifier: GPL-3.0-or-later
// The data that a fit keeps of its own, and how they come back.
#include "core/ProjectDataBench.h"

#include <gtest/gtest.h>

#include <string>

using namespace project_data;

TEST_F(ProjectData, ReloadingTheDataOfAFitBringsItsColumnsAndTogglesBack)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    data.ColPresent(columns::PopWt, true);
    data.PopWt(1, 0.5F);
    data.Toggle(2);
    const project_file::DataRecord logged = OfFit(data);

    clsVeltData opened = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    TakeDataOfFit(opened, logged);

    EXPECT_EQ(opened.Table().db, data.Table().db);
    EXPECT_EQ(opened.Table().present, data.Table().present);
    EXPECT_EQ(opened.ToggledIn(), data.ToggledIn());
    EXPECT_FALSE(opened.IsDirty()); // its user columns are those of the project
}

TEST_F(ProjectData, UserColumnsOfAFitThatDifferAreAChange)
{
    const clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    const auto dirties = [&](const std::string& columns) {
        clsVeltData copy = data;
        TakeDataOfFit(copy, OfFit(DataOf(ProjectBytes(columns))));
        return copy.IsDirty();
    };
    EXPECT_FALSE(dirties(EffortColumns({1, 2, 3, 4, 5})));
    EXPECT_TRUE(dirties(EffortColumns({1, 2, 3, 4, 6})));
    EXPECT_TRUE(dirties(AbsentColumns(3) + PresentColumn("0", {1, 2, 3, 4, 5}) + AbsentColumns(11)));
    EXPECT_TRUE(dirties(PresentColumn("0", {1}) + AbsentColumns(2) + PresentColumn("0", {1, 2, 3, 4, 5}) +
                        PresentColumn("0.0", {1, 2, 3, 4, 5}) + AbsentColumns(10)));
    EXPECT_TRUE(dirties(AbsentColumns(3) + PresentColumn("0.00", {1, 2, 3, 4, 5}) +
                        PresentColumn("0.0", {1, 2, 3, 4, 5}) + AbsentColumns(10)));
}

TEST_F(ProjectData, AValueThatIsNoNumberIsEqualToItself)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, kNaN, 3, 4, 5})));
    TakeDataOfFit(data, OfFit(data));
    EXPECT_FALSE(data.IsDirty());
}

// Used to be a change: the format of a new column had no blanks behind it, the one from the file had.
TEST_F(ProjectData, FormatsAreComparedWithoutTheBlanksBehindThem)
{
    clsVeltData data(bench.run);
    data.AddColumn(columns::Effort);
    data.TimeInts(3);
    data.MarkSaved();
    project_file::Body body;
    body.data = OfFit(data);
    body.bootStraps.resize(8000);
    const auto read = project_file::ReadBody(project_file::WriteBody(body, 4), 4);
    TakeDataOfFit(data, read.data);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(ProjectData, TheRowsInTheFitAreNotCountedAnewAfterAReload) // deliberate: the model counts them
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    project_file::DataRecord logged = OfFit(data);
    (*logged.ToggledIn)(2) = false;
    TakeDataOfFit(data, logged);
    EXPECT_FALSE(data.ToggledIn(2));
    EXPECT_EQ(data.NNtPoints(), 5);
}

TEST_F(ProjectData, TheCountsOfAFitsDataAreTakenAndThoseOfTheHeaderStay)
{
    clsVeltData data = DataOf(ProjectHeader("", 1, 3, 11, 0, 0) + AbsentColumns(15) + Counts(0, 0));
    project_file::DataRecord logged = OfFit(data);
    logged.loggedFits = 2147483647;
    logged.scenarios = -5;
    TakeDataOfFit(data, logged);
    EXPECT_EQ(data.V2KLoggedFits(), 2147483647);
    EXPECT_EQ(data.V2kProjScens(), -5);
    EXPECT_EQ(data.NumLoggedRuns(), 11);
}

TEST_F(ProjectData, AConversionThatFailsOnReloadLeavesTheDataAsTheyWere)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    const DataTable before = data.Table();
    project_file::DataRecord logged = OfFit(data);
    logged.columns[2] = project_file::ColumnRecord{"0", project_file::Series(0.0F)}; // mean weight 0
    EXPECT_THROW(TakeDataOfFit(data, logged), VeltError);
    EXPECT_EQ(data.Table(), before);
    EXPECT_FALSE(data.IsDirty());
}
