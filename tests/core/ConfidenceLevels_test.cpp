// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ManagerBench.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace
{
/// A fit whose bootstraps are quick: a regression.
class Intervals : public Manager
{
protected:
    void Fitted(std::int32_t replicates)
    {
        On(Depletion());
        Fit("NO RECRUITMENT");
        manager.NumBootStraps(replicates);
    }
    float Sorted(int position) const { return manager.Method()->SortedBootStrap(bs_param::kQ, position); }

    /// The levels as the user enters them.
    bool Enter(double low, double high)
    {
        user.onRange = [=](RangeQuestion& question) {
            question.low = low;
            question.high = high;
            return true;
        };
        return manager.GetUserConfidenceIntervals();
    }
};
} // namespace

TEST_F(Intervals, GeneratingBootstrapsTellsTheStatusAndKeepsTheContourSwitch)
{
    Fitted(20);
    window.status.clear();
    manager.GenerateBootStraps();
    EXPECT_TRUE(manager.IsBSDone());
    EXPECT_EQ(window.status, (std::vector<std::string>{"Calculating Bootstraps...", "Ready..."}));
    EXPECT_FALSE(window.hourglass);
    EXPECT_EQ(manager.Method()->NumBootStraps(), 20);

    On(Fishery());
    user.onContourRange = [](ContourRange& range) {
        range.ContEvals = 2;
        range.Param1Hi = 50000.0;
        return true;
    };
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.PlotEvaluations = true; });
    manager.NumBootStraps(2);
    const auto steps = std::count(window.events.begin(), window.events.end(), "PlotStep");
    EXPECT_GT(steps, 0);
    manager.GenerateBootStraps();
    EXPECT_TRUE(manager.IsBSDone());
    EXPECT_TRUE(manager.Method()->PlotEvaluations());
    EXPECT_EQ(std::count(window.events.begin(), window.events.end(), "PlotStep"), steps);
}

TEST_F(Intervals, ACancelledRunLeavesTheFitWithoutBootstrapsAndTheLevelsCannotBeAsked)
{
    Fitted(20);
    meter.looks = 0;
    meter.cancelAfter = 3;
    manager.GenerateBootStraps();
    EXPECT_TRUE(user.messages.empty());
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_FALSE(manager.IsBSDone());
    EXPECT_EQ(window.status.back(), "Ready...");
    EXPECT_FALSE(window.hourglass);

    EXPECT_FALSE(manager.GetUserConfidenceIntervals());
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "Generate Bootstraps before calculating Confidence Intervals");
    EXPECT_EQ(user.messages[0].icon, Icon::Information);
    EXPECT_FALSE(Asked("range"));
}

// The fit stays, its bootstraps do not, and the contour switch is put back.
TEST_F(Intervals, AFailureThatIsNotTheProgramsOwnEndsTheRunWithAMessageToo)
{
    struct FailingMeter : RecordingMeter {
        std::function<void()> failure;
        void Value(int now) override
        {
            if (failure && now == 3)
                failure();
        }
    } failing;
    struct Run own {
        user, window, failing, random
    };
    clsVeltData table = Fishery().Build(own);
    clsMethManager other(own);
    other.Create(table);
    user.onContourRange = [](ContourRange& range) {
        range.ContEvals = 2;
        range.Param1Hi = 50000.0;
        return true;
    };
    user.Picks("PROD. MODEL(SCHAEFER)");
    change = [](InputParams& params) { params.PlotEvaluations = true; };
    other.FitNewModel(false);
    ASSERT_TRUE(other.MethDefined());
    const float k = other.K();
    other.NumBootStraps(5);
    for (const auto& [failure, text] : kForeignFailures) {
        failing.failure = nullptr;
        other.GenerateBootStraps();
        ASSERT_TRUE(other.IsBSDone());
        failing.failure = failure;
        user.messages.clear();
        EXPECT_NO_THROW(other.GenerateBootStraps());
        ASSERT_EQ(user.messages.size(), 1U);
        EXPECT_EQ(user.messages[0].text, text);
        EXPECT_TRUE(other.MethDefined());
        EXPECT_EQ(other.K(), k);
        EXPECT_FALSE(other.IsBSDone());
        EXPECT_TRUE(other.Method()->PlotEvaluations());
        EXPECT_FALSE(window.hourglass);
        EXPECT_EQ(window.status.back(), "Ready...");
    }
}

TEST_F(Intervals, WithoutAModelTheLevelsCannotBeAskedEither)
{
    On(Depletion());
    EXPECT_FALSE(manager.GetUserConfidenceIntervals());
    EXPECT_TRUE(user.Saw("Generate Bootstraps before"));
}

TEST_F(Intervals, TheLevelsAreAskedWithTheirLabelsAndKeptOnOk)
{
    Fitted(20);
    manager.GenerateBootStraps();
    user.onRange = [](RangeQuestion& question) {
        EXPECT_EQ(question.caption, "Confidence Interval Range");
        EXPECT_EQ(question.prompt, "Enter high and low confidence levels");
        EXPECT_EQ(question.lowLabel, "Low interval");
        EXPECT_EQ(question.highLabel, "High interval");
        EXPECT_EQ(static_cast<float>(question.low), 0.025F);
        EXPECT_EQ(static_cast<float>(question.high), 0.975F);
        question.low = 0.3;
        return false;
    };
    EXPECT_FALSE(manager.GetUserConfidenceIntervals());
    EXPECT_EQ(manager.CILow(), 0.025F);
    EXPECT_TRUE(Enter(0.05, 0.95));
    EXPECT_EQ(manager.CILow(), 0.05F);
    EXPECT_EQ(manager.CIHigh(), 0.95F);
}

TEST_F(Intervals, OnlyAHighLevelAbove1AndALowLevelBelow0AreRefused)
{
    Fitted(20);
    manager.GenerateBootStraps();
    for (const auto& [low, high] : {std::pair(0.1, 1.01), std::pair(-0.01, 0.9)}) {
        user.messages.clear();
        EXPECT_FALSE(Enter(low, high));
        ASSERT_EQ(user.messages.size(), 1U);
        EXPECT_EQ(user.messages[0].text, "Confidence Interval levels must lie in the range 0 - 1");
        EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
        EXPECT_EQ(manager.CILow(), 0.025F);
        EXPECT_EQ(manager.CIHigh(), 0.975F);
    }
    EXPECT_TRUE(Enter(1.2, 0.5));
    EXPECT_TRUE(Enter(0.1, -0.5));
}

// Of 20 replicates 1.2 asks for position 24, -0.5 for -10, 0.02 for 0.4, which is 0 and taken for 1.
// Positions far outside used to be cast to whole numbers as they came, and the levels stayed, so that every
// further report failed.
TEST_F(Intervals, LevelsWithoutAPositionEndInNineOnceAndTheFormerLevelsStand)
{
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    Fitted(20);
    manager.GenerateBootStraps();
    ASSERT_TRUE(Enter(0.02, 0.9));
    manager.DisplayBootStrapHistograms();
    const std::size_t shown = window.graphs.size();
    for (const auto& [low, high] :
         {std::pair(1.2, 0.5), std::pair(0.1, -0.5), std::pair(3e38, 0.5), std::pair(0.1, -3e38),
          std::pair(1e300, 0.5), std::pair(kNoNumber, 0.5), std::pair(0.1, kNoNumber)}) {
        EXPECT_EQ(FailureOf([&] {
                      if (Enter(low, high))
                          manager.DisplayBootStrapHistograms();
                  }),
                  errors::kSubscript)
            << low << " " << high;
        EXPECT_EQ(manager.CILow(), 0.02F);
        EXPECT_EQ(manager.CIHigh(), 0.9F);
        EXPECT_EQ(window.graphs.size(), shown);
        EXPECT_EQ(manager.LowerCILimit(bs_param::kQ), Sorted(1));
        EXPECT_EQ(manager.UpperCILimit(bs_param::kQ), Sorted(18));
    }
    EXPECT_TRUE(user.messages.empty()); // it is the command that tells it
    manager.DisplayBootStrapHistograms();
    EXPECT_EQ(window.graphs.size(), shown);
}

TEST_F(Intervals, LevelsThatNoDialogSetEndInNineTooAndStay)
{
    Fitted(20);
    manager.GenerateBootStraps();
    ASSERT_TRUE(Enter(0.2, 0.8)); // shown, and so no longer to be put back
    manager.DisplayBootStrapHistograms();
    for (const float level : {-0.5F, 1.2F}) {
        manager.CILow(level);
        EXPECT_EQ(FailureOf([&] { manager.LowerCILimit(bs_param::kQ); }), errors::kSubscript);
        EXPECT_EQ(FailureOf([&] { manager.DisplayBootStrapHistograms(); }), errors::kSubscript);
        EXPECT_EQ(manager.CILow(), level);
    }

    ASSERT_TRUE(Enter(0.2, 0.8)); // never shown, and gone with its fit
    Fit("NO RECRUITMENT");
    manager.GenerateBootStraps();
    manager.CILow(1.2F);
    EXPECT_EQ(FailureOf([&] { manager.DisplayBootStrapHistograms(); }), errors::kSubscript);
    EXPECT_EQ(manager.CILow(), 1.2F);
    EXPECT_EQ(manager.CIHigh(), 0.975F);
}

// A report that cannot be shown leaves the levels of before, too.
TEST_F(Intervals, AFailureBehindTheHistogramsBringsTheFormerLevelsBack)
{
    struct FailingWindow : RecordingWindow {
        bool fails = false;
        void ShowParameterReport(const ParameterReport*) override
        {
            if (fails)
                RaiseOverflow();
        }
    } failing;
    struct Run own {
        user, failing, meter, random
    };
    clsVeltData table = Depletion().Build(own);
    clsMethManager other(own);
    other.Create(table);
    user.Picks("NO RECRUITMENT");
    other.FitNewModel(false);
    other.NumBootStraps(20);
    other.GenerateBootStraps();
    user.onRange = [](RangeQuestion& question) {
        question.low = 0.2;
        question.high = 0.8;
        return true;
    };
    ASSERT_TRUE(other.GetUserConfidenceIntervals());
    failing.fails = true;
    EXPECT_EQ(FailureOf([&] { other.DisplayBootStrapHistograms(); }), errors::kOverflow);
    EXPECT_EQ(other.CILow(), 0.025F);
    EXPECT_EQ(other.CIHigh(), 0.975F);
    failing.fails = false;
    ASSERT_TRUE(other.GetUserConfidenceIntervals());
    other.DisplayBootStrapHistograms();
    EXPECT_EQ(other.CILow(), 0.2F);
}

TEST_F(Intervals, LevelsInReverseAreAcceptedAndTheLowerLimitLiesAboveTheUpper)
{
    Fitted(100);
    manager.GenerateBootStraps();
    ASSERT_TRUE(Enter(0.9, 0.1));
    EXPECT_GT(manager.LowerCILimit(bs_param::kQ), manager.UpperCILimit(bs_param::kQ));
}

// 500 * 0.97500002 = 487.50001 and 500 * 0.02500000037 = 12.5000002
TEST_F(Intervals, The500ReplicatesOfTheDefaultsGivePositions488And13)
{
    Fitted(500);
    manager.GenerateBootStraps();
    ASSERT_NE(Sorted(488), Sorted(487));
    ASSERT_NE(Sorted(13), Sorted(12));
    EXPECT_EQ(manager.UpperCILimit(bs_param::kQ), Sorted(488));
    EXPECT_EQ(manager.LowerCILimit(bs_param::kQ), Sorted(13));
}

TEST_F(Intervals, ATieGoesToTheEvenPosition)
{
    Fitted(10);
    manager.GenerateBootStraps();
    ASSERT_TRUE(Enter(0.25, 0.75)); // 2.5 and 7.5
    EXPECT_EQ(manager.LowerCILimit(bs_param::kQ), Sorted(2));
    EXPECT_EQ(manager.UpperCILimit(bs_param::kQ), Sorted(8));
    ASSERT_NE(Sorted(2), Sorted(3));
    ASSERT_NE(Sorted(8), Sorted(7));
}

TEST_F(Intervals, ALevelOf0GivesTheLowestValueAnd1TheHighest)
{
    Fitted(10);
    manager.GenerateBootStraps();
    ASSERT_TRUE(Enter(0.0, 1.0));
    EXPECT_EQ(manager.LowerCILimit(bs_param::kQ), Sorted(1));
    EXPECT_EQ(manager.UpperCILimit(bs_param::kQ), Sorted(10));
}

TEST_F(Intervals, OfOneReplicateBothLimitsAreThatOne)
{
    Fitted(1);
    manager.GenerateBootStraps();
    EXPECT_EQ(manager.LowerCILimit(bs_param::kQ), Sorted(1));
    EXPECT_EQ(manager.UpperCILimit(bs_param::kQ), Sorted(1));
    EXPECT_EQ(Sorted(1), manager.Method()->BootStrap(bs_param::kQ, 1));
}

TEST_F(Intervals, HistogramsReplaceTheFormerOnesAndTheReportIsRebuilt)
{
    Fitted(20);
    const std::size_t ofTheFit = window.graphs.size();
    manager.GenerateBootStraps();
    manager.DisplayBootStrapHistograms();
    EXPECT_EQ(window.graphs.size(), ofTheFit + 2); // q and N
    window.events.clear();
    manager.DisplayBootStrapHistograms();
    EXPECT_EQ(window.graphs.size(), ofTheFit + 2);
    EXPECT_EQ(window.events, (std::vector<std::string>{"ClearGraphs histograms", "AddModelGraph",
                                                       "AddModelGraph", "ShowParameterReport"}));
}

TEST_F(Intervals, AfterResetTheLevelsAreBackAtTheirDefaults)
{
    Fitted(10);
    manager.GenerateBootStraps();
    ASSERT_TRUE(Enter(0.2, 0.8));
    manager.Reset();
    EXPECT_EQ(manager.CILow(), 0.025F);
    EXPECT_EQ(manager.CIHigh(), 0.975F);
}
