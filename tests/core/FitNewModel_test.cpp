// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NumberText.h"
#include "core/ManagerBench.h"
#include "fit/ParameterReport.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

TEST_F(Manager, AFitShowsTheReportBeforeTheGraphsAndEndsReady)
{
    On(Depletion());
    window.events.clear();
    Fit("NO RECRUITMENT");
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_TRUE(user.messages.empty());
    ASSERT_EQ(window.events.size(), 6U);
    EXPECT_EQ(window.events[0], "ShowParameterReport");
    for (std::size_t i = 1; i < 6; ++i)
        EXPECT_EQ(window.events[i], "AddModelGraph");
    EXPECT_EQ(window.status, (std::vector<std::string>{"Computing Model Parameters ...", "Ready..."}));
    EXPECT_FALSE(window.hourglass);
    EXPECT_TRUE(window.reportShown);
    EXPECT_EQ(manager.LastExcuse(), 0);
}

namespace
{
/// A window that keeps what the report said and how the pointer looked when graphs came.
class WatchfulWindow : public RecordingWindow
{
public:
    std::string report;
    bool busyAtEveryGraph = true;

    void ShowParameterReport(const ParameterReport* shown) override
    {
        if (shown != nullptr)
            report = shown->AsText();
    }
    void AddModelGraph(std::shared_ptr<ModelGraph>) override
    {
        busyAtEveryGraph = busyAtEveryGraph && hourglass;
    }
};
} // namespace

TEST_F(Manager, TheReportSpeaksOfThisFitAndTheHourglassStaysUntilTheGraphsAreBuilt)
{
    WatchfulWindow watchful;
    struct Run own {
        user, watchful, meter, random
    };
    clsVeltData table = Depletion().Build(own);
    clsMethManager other(own);
    other.Create(table);
    user.Picks("NO RECRUITMENT");
    other.FitNewModel(false);
    ASSERT_GT(other.N1(), 0.0F);
    EXPECT_NE(watchful.report.find(number_text::Plain(other.N1())), std::string::npos) << watchful.report;
    EXPECT_NE(watchful.report.find(number_text::Plain(other.Q())), std::string::npos) << watchful.report;
    EXPECT_TRUE(watchful.busyAtEveryGraph);
    EXPECT_FALSE(watchful.hourglass);
}

TEST_F(Manager, TheResultsAreCopiesOfTheModelsReportValues)
{
    On(Fishery());
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.TimeLag = 1; });
    ASSERT_TRUE(manager.MethDefined());
    const std::vector<double> values = const_cast<IMethod*>(manager.Method())->FinalEsts();
    const float copies[] = {manager.K(),   manager.Q(),      manager.R(),
                            manager.MSY(), manager.RYield(), manager.FinalBiomass()};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(copies[i], static_cast<float>(values[i]));
    EXPECT_EQ(manager.RSqr(), manager.Method()->RSqr());
    EXPECT_EQ(manager.LAG(), 1.0F);
}

// The replacement yield is that of the biomass a lag before the end, so that no fit of a longer lag can
// arrive. The search used to run first and to end as it happened, in a division by zero or a logarithm of
// nothing.
TEST_F(Manager, ALagLongerThanTheTableIsRefusedBeforeTheSearchByEveryProductionModel)
{
    for (const std::string model : {"PROD. MODEL(FOX)", "PROD. MODEL(SCHAEFER)", "PROD. MODEL(PELLA"}) {
        for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
            On(Fishery());
            user.messages.clear();
            window.status.clear();
            Fit(model, [fitOp](InputParams& params) {
                params.FitOp = fitOp;
                params.TimeLag = 13;
            });
            ASSERT_EQ(user.messages.size(), 1U);
            EXPECT_EQ(
                user.messages[0].text,
                "Subscript out of range\n\n(clsMethManager_FitNewModel)\n\nThe time lag is longer than the "
                "12 periods of the table. Choose a shorter one.");
            EXPECT_EQ(window.status, std::vector<std::string>{"Ready..."});
            ExpectNoFit();
        }
    }
}

TEST_F(Manager, ALagAsLongAsTheTableIsSearchedForAndADepletionModelReadsNone)
{
    On(Fishery());
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.TimeLag = 12; });
    EXPECT_EQ(std::count(window.status.begin(), window.status.end(), "Computing Model Parameters ..."), 1);

    On(Depletion());
    Fit("NO RECRUITMENT", [](InputParams& params) { params.TimeLag = 13; });
    EXPECT_TRUE(manager.MethDefined());
}

TEST_F(Manager, ANewFitStartsFromTheDefaults)
{
    On(Fishery());
    Fit("PROD. MODEL(PELLA", [](InputParams& params) {
        params.FitOp = fit_op::kLog;
        params.InitProp = 0.9F;
        params.Z = 1.5F;
        params.Mort = 0.4F;
        params.TimeLag = 1;
        params.SetStartingEstimates = true;
        params.PlotEvaluations = true;
    });
    Fit("PROD. MODEL(PELLA");
    EXPECT_EQ(offered.FitOp, fit_op::kLeastSquares);
    EXPECT_EQ(offered.InitProp, 1.0F);
    EXPECT_EQ(offered.Z, 1.0F);
    EXPECT_EQ(offered.Mort, 0.2F);
    EXPECT_EQ(offered.TimeLag, 0);
    EXPECT_FALSE(offered.SetStartingEstimates);
    EXPECT_FALSE(offered.PlotEvaluations);
    EXPECT_EQ(offered.modelTitle, "PROD. MODEL(PELLA TOM)");
    EXPECT_FALSE(offered.hasVariances);
}

TEST_F(Manager, NewInputParametersKeepsTheModelAndItsInputsAndShowsNoList)
{
    On(Depletion());
    Fit("RECRUITMENT INDEX", [](InputParams& params) {
        params.FitOp = fit_op::kLog;
        params.Mort = 0.1F;
    });
    ASSERT_TRUE(manager.MethDefined());
    const float z = manager.Z();
    const float lag = manager.LAG();
    user.asked.clear();
    change = nullptr;
    manager.FitNewModel(true);
    EXPECT_EQ(user.asked, std::vector<std::string>{"input params"});
    EXPECT_EQ(offered.WhichMeth, models::kRecruitmentIndex);
    EXPECT_EQ(offered.FitOp, fit_op::kLog);
    EXPECT_EQ(offered.Mort, 0.1F);
    EXPECT_EQ(offered.Z, z);
    EXPECT_EQ(static_cast<float>(offered.TimeLag), lag);
    EXPECT_TRUE(manager.MethDefined());
}

// The command is offered once New Fit has run, also when the user chose no model there. There is no model to
// keep then, and it used to fail inside.
TEST_F(Manager, NewInputParametersAfterACancelledFirstFitAsksForTheModel)
{
    On(Depletion());
    user.onSelection = nullptr; // Cancel
    manager.FitNewModel(false);
    ASSERT_EQ(manager.CurrMethType(), 0);
    user.asked.clear();
    manager.FitNewModel(true);
    EXPECT_EQ(user.asked, std::vector<std::string>{"selection"});
    EXPECT_TRUE(user.messages.empty());
    ExpectNoFit();

    user.asked.clear();
    user.Picks("CONSTANT");
    manager.FitNewModel(true);
    EXPECT_EQ(user.asked, (std::vector<std::string>{"selection", "input params"}));
    EXPECT_EQ(offered.WhichMeth, models::kConstantRecruitment);
    EXPECT_EQ(offered.FitOp, fit_op::kLeastSquares);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_TRUE(manager.MethDefined());
}

TEST_F(Manager, NewInputParametersKeepsStartLagAndShapeOfAProductionModel)
{
    On(Fishery());
    Fit("PROD. MODEL(PELLA", [](InputParams& params) {
        params.InitProp = 0.9F;
        params.Z = 1.5F;
        params.TimeLag = 1;
    });
    ASSERT_TRUE(manager.MethDefined());
    change = nullptr;
    manager.FitNewModel(true);
    EXPECT_EQ(offered.WhichMeth, models::kPellaTomlinson);
    EXPECT_EQ(offered.InitProp, 0.9F);
    EXPECT_EQ(offered.Z, 1.5F);
    EXPECT_EQ(offered.TimeLag, 1);
}

TEST_F(Manager, NewInputParametersKeepsTheTwoCheckBoxes)
{
    On(Fishery());
    user.onStartVals = [](StartVals&) { return true; };
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.SetStartingEstimates = true; });
    ASSERT_TRUE(manager.MethDefined());
    manager.PlotEvaluations(true);
    change = nullptr;
    manager.FitNewModel(true);
    EXPECT_TRUE(offered.SetStartingEstimates);
    EXPECT_TRUE(offered.PlotEvaluations);
}

TEST_F(Manager, ACancelInTheInputDialogLeavesNoFitAndTheFormerOneIsGone)
{
    On(Depletion());
    Fit("NO RECRUITMENT");
    ASSERT_TRUE(window.reportShown);
    user.onInputParams = nullptr;
    manager.FitNewModel(false);
    ExpectNoFit();
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(Manager, ACancelAtTheStartingValuesEndsTheFit)
{
    On(Fishery());
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.SetStartingEstimates = true; });
    EXPECT_EQ(user.asked, (std::vector<std::string>{"selection", "input params", "start values"}));
    EXPECT_TRUE(user.messages.empty());
    ExpectNoFit();
}

TEST_F(Manager, ACancelAtTheContourRangesOnlySwitchesTheViewOff)
{
    On(Fishery());
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.PlotEvaluations = true; });
    EXPECT_TRUE(Asked("contour range"));
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_FALSE(manager.PlotEvaluations());
    EXPECT_EQ(std::count(window.events.begin(), window.events.end(), "NewContourPlot"), 0);
}

TEST_F(Manager, AModelWithoutContoursGoesOnWithTheViewOff)
{
    On(Depletion());
    Fit("NO RECRUITMENT", [](InputParams& params) {
        params.FitOp = fit_op::kLog;
        params.PlotEvaluations = true;
    });
    EXPECT_FALSE(Asked("contour range"));
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_FALSE(manager.PlotEvaluations());
}

TEST_F(Manager, ACancelOfTheContoursEndsTheFitWithoutAWord)
{
    On(Fishery());
    user.onContourRange = [](ContourRange&) { return true; };
    meter.cancelAfter = 2;
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.PlotEvaluations = true; });
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(window.status.back(), "Ready...");
    ExpectNoFit();
}
