// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/clsMethManager.h"

#include "support/Scenarios.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <limits>

using Titles = std::vector<std::string>;

namespace
{
/// A manager with a fit of a closed cohort: N1 1331, q 0.001, 729 left; no scenarios yet.
class ManagerProjections : public ::testing::Test, public Bench
{
protected:
    ManagerProjections()
    {
        data = TableBuilder().From(1).Effort({200, 200, 200}).Catch({242, 198, 162}).Build(run);
        manager.Create(data);
        user.onInputParams = [](InputParams& params) {
            params.Mort = 0.0F;
            return true;
        };
        user.Picks("NO RECRUITMENT");
        manager.FitNewModel(false);
        user.asked.clear();
        user.messages.clear();
    }
    void MakeReplicates(std::int32_t count)
    {
        manager.NumBootStraps(count);
        manager.GenerateBootStraps();
        ASSERT_TRUE(manager.IsBSDone());
    }
    bool HasRemark() const
    {
        for (const Remark& remark : manager.Remarks())
            if (remark.code == "ProjectionStale")
                return true;
        return false;
    }

    clsVeltData data{run};
    clsMethManager manager{run};
};
} // namespace

TEST_F(ManagerProjections, WithoutScenariosNothingIsAskedAndNothingSaid)
{
    EXPECT_TRUE(manager.SelectProjections().empty());
    EXPECT_TRUE(user.asked.empty());
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(ManagerProjections, WithoutASuitableScenarioItSaysSo)
{
    AddScenario(data, "Weight", vec_type::kTotCatchWt, {1});
    EXPECT_TRUE(manager.SelectProjections().empty());
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "No Suitable Scenarios for this model");
    EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(user.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(user.messages[0].title, "VELT 3.0");

    EXPECT_EQ(manager.SelectProjection(), "");
    ASSERT_EQ(user.messages.size(), 2U);
    EXPECT_EQ(user.messages[1].text, "No Suitable Scenarios for this model");
    EXPECT_EQ(user.messages[1].buttons, Buttons::OkCancel);
    EXPECT_TRUE(user.asked.empty());
}

TEST_F(ManagerProjections, TheSuitableScenariosAreOfferedUnselected)
{
    AddScenario(data, "Effort", vec_type::kEffort, {1});
    AddScenario(data, "Weight", vec_type::kTotCatchWt, {1});
    AddScenario(data, "Numbers", vec_type::kTotCatchNums, {1});
    user.onListPicker = [](ListPicker& picker) {
        EXPECT_EQ(picker.caption, "Projections");
        EXPECT_EQ(picker.prompt, "Select Scenarios to Project.");
        EXPECT_EQ(picker.leftCaption, "Available Scenarios");
        EXPECT_EQ(picker.rightCaption, "Selected Scenarios");
        EXPECT_EQ(picker.items.size(), 2U);
        EXPECT_EQ(picker.items[0].text, "Effort");
        EXPECT_EQ(picker.items[1].text, "Numbers");
        EXPECT_FALSE(picker.items[0].selected || picker.items[1].selected);
        picker.items[1].selected = true;
        return true;
    };
    EXPECT_EQ(manager.SelectProjections(), Titles{"Numbers"});
    user.Selects({});
    EXPECT_TRUE(manager.SelectProjections().empty());
    user.onListPicker = [](ListPicker&) { return false; };
    EXPECT_TRUE(manager.SelectProjections().empty());
}

TEST_F(ManagerProjections, OneScenarioIsPickedForAProjectionWithLimits)
{
    AddScenario(data, "Effort", vec_type::kEffort, {1});
    AddScenario(data, "Numbers", vec_type::kTotCatchNums, {1});
    user.onSelection = [](Selection& selection) {
        EXPECT_EQ(selection.caption, "Projection Scenarios");
        EXPECT_EQ(selection.prompt, "Select scenario to Project");
        EXPECT_EQ(selection.items, (Titles{"Effort", "Numbers"}));
        selection.chosen = 2;
        return true;
    };
    EXPECT_EQ(manager.SelectProjection(), "Numbers");
    user.onSelection = [](Selection&) { return true; }; // OK, and nothing is chosen
    EXPECT_EQ(manager.SelectProjection(), "");
    user.onSelection = [](Selection&) { return false; };
    EXPECT_EQ(manager.SelectProjection(), "");
}

TEST_F(ManagerProjections, ProjectionsOfBothKindsAreNumberedInOneSeries)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100, 100});
    manager.ProjWithFit(true);
    manager.Project({"Effort"});
    manager.Project({"Effort"});
    MakeReplicates(20);
    user.onRange = [](RangeQuestion&) { return true; };
    manager.DoProjCI("Effort");
    ASSERT_EQ(window.projections.size(), 3U);
    EXPECT_EQ(window.projections[0]->Title(), "Projection #1");
    EXPECT_EQ(window.projections[1]->Title(), "Projection #2");
    EXPECT_EQ(window.projections[2]->Title(), "Projection #3");
    EXPECT_EQ(window.projections[0]->NumLines(), 2);
    EXPECT_TRUE(window.projections[2]->WithCI());
    manager.ProjWithFit(false);
    manager.Project({"Effort"});
    EXPECT_EQ(window.projections[3]->NumLines(), 1);
}

TEST_F(ManagerProjections, TheLevelsStartAgainAt5And95PerCentEachTime)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100});
    MakeReplicates(20);
    const float low = manager.CILow();
    for (int time = 0; time < 2; ++time) {
        user.onRange = [](RangeQuestion& question) {
            EXPECT_EQ(question.caption, "Confidence Interval Range");
            EXPECT_EQ(question.prompt, "Enter High and Low Confidence Intervals");
            EXPECT_EQ(question.lowLabel, "Low");
            EXPECT_EQ(question.highLabel, "High");
            EXPECT_EQ(question.low, 0.05);
            EXPECT_EQ(question.high, 0.95);
            question.low = 0.2;
            question.high = 0.8;
            return true;
        };
        manager.DoProjCI("Effort");
    }
    EXPECT_EQ(window.projections.size(), 2U);
    EXPECT_EQ(manager.CILow(), low);
}

TEST_F(ManagerProjections, CancelOfTheLevelsOpensNoGraphAndTakesNoNumber)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100});
    MakeReplicates(20);
    user.onRange = [](RangeQuestion&) { return false; };
    manager.DoProjCI("Effort");
    EXPECT_TRUE(window.projections.empty());
    manager.Project({"Effort"});
    EXPECT_EQ(window.projections[0]->Title(), "Projection #1");
}

TEST_F(ManagerProjections, CancelInTheMeterDropsTheGraphAndGivesTheCountersBack)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100});
    MakeReplicates(20);
    user.onRange = [](RangeQuestion&) { return true; };
    meter.looks = 0;
    meter.cancelAfter = 2;
    EXPECT_EQ(FailureOf([&] { manager.DoProjCI("Effort"); }), kProgramErrorBase + errors::kUserCancelled);
    EXPECT_TRUE(window.projections.empty());
    EXPECT_EQ(data.NAPoints(), 3);
    EXPECT_EQ(data.NDPoints(), 4);
}

TEST_F(ManagerProjections, ALevelThatIsNoNumberFailsAndOneOutsideTheReplicatesToo)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100});
    MakeReplicates(20);
    for (const double low : {1.0, std::numeric_limits<double>::quiet_NaN(), 1e40}) {
        user.onRange = [low](RangeQuestion& question) {
            question.low = low;
            return true;
        };
        EXPECT_EQ(FailureOf([&] { manager.DoProjCI("Effort"); }), errors::kSubscript) << low;
    }
    EXPECT_EQ(data.NAPoints(), 3);
}

TEST_F(ManagerProjections, ARefusedProjectionIsToldAndTakesNoNumber)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100});
    data.NumPts(0);
    manager.Project({"Effort"});
    manager.DoProjCI("Effort");
    EXPECT_TRUE(manager.SelectProjections().empty());
    EXPECT_EQ(manager.SelectProjection(), "");
    EXPECT_EQ(user.messages.size(), 4U);
    EXPECT_TRUE(user.Saw("The scenarios have no future periods."));
    data.NumPts(1);
    manager.Project({"Effort"});
    EXPECT_EQ(window.projections.at(0)->Title(), "Projection #1");
}

TEST_F(ManagerProjections, TheRemarkOfAnEffortProjectionStandsAtItsGraphAndGoesWithTheFit)
{
    AddScenario(data, "Effort", vec_type::kEffort, {100});
    AddScenario(data, "Catch", vec_type::kTotCatchNums, {100});
    EXPECT_FALSE(HasRemark());
    manager.Project({"Effort"});
    EXPECT_TRUE(HasRemark());
    EXPECT_FALSE(window.projections[0]->Remark().empty());
    manager.Project({"Catch"});
    EXPECT_FALSE(HasRemark());
    EXPECT_TRUE(window.projections[1]->Remark().empty());
    manager.Project({"Effort"});
    manager.Reset();
    EXPECT_FALSE(HasRemark());
}
