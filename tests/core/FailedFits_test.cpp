// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ManagerBench.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace
{
/// A window whose graphs fail as told, and a session in it.
struct FailingGraphs : RecordingWindow {
    std::function<void()> failure;
    void AddModelGraph(std::shared_ptr<ModelGraph>) override { failure(); }
};
} // namespace

TEST_F(Manager, AFailedStartUnderLeastSquaresOfADepletionModelEndsTheFit)
{
    On(Rising());
    Fit("NO RECRUITMENT");
    ASSERT_EQ(user.messages.size(), 2U);
    EXPECT_EQ(user.messages[0].text, "Estimated Parameters Caused Population Underflow");
    EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(user.messages[1].text, "Please try another model.");
    EXPECT_EQ(manager.LastExcuse(), excuse::kPopulationUnderflow);
    ExpectNoFit();
}

TEST_F(Manager, AFailedStartOfAProductionModelGoesToManualStartsUnderEveryErrorModel)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        On(Fishery());
        user.messages.clear();
        user.asked.clear();
        Fit("PROD. MODEL(SCHAEFER)", [fitOp](InputParams& params) {
            params.FitOp = fitOp;
            params.InitProp = 0.0F; // an empty sea
        });
        ASSERT_EQ(user.messages.size(), 2U);
        EXPECT_EQ(user.messages[0].text, "Unable to get starting estimates");
        EXPECT_EQ(user.messages[1].text, "Please enter starting estimates manually");
        EXPECT_TRUE(Asked("start values"));
        ExpectNoFit(); // the dialog was cancelled
    }
}

// A last period out of the fit takes 1e35 fish, which no start and no doublings of it survive.
TEST_F(Manager, AFailedStartUnderLogOrGammaOfADepletionModelGoesToAManualStart)
{
    const TableBuilder table = TableBuilder()
                                   .Effort({10, 12, 9, 11, 13, 10, 12})
                                   .CatchNums({169, 124, 66, 51, 42, 20, 16})
                                   .TotalNums({169, 124, 66, 51, 42, 20, 1e35})
                                   .ToggleOut(7);
    for (const std::string model : {"NO RECRUITMENT", "CONSTANT"}) {
        for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
            On(table);
            user.messages.clear();
            user.asked.clear();
            Fit(model, [fitOp](InputParams& params) { params.FitOp = fitOp; });
            ASSERT_EQ(user.messages.size(), 2U);
            EXPECT_EQ(user.messages[0].text, "Unable to get starting estimates");
            const bool regression = fitOp == fit_op::kLeastSquares;
            EXPECT_EQ(user.messages[1].text,
                      regression ? "Please try another model." : "Please enter starting estimates manually");
            EXPECT_EQ(user.asked.back().starts_with("input box: "), !regression);
            ExpectNoFit(); // the box was cancelled
        }
    }
}

// The regression of these catches gives a negative N1, which no doubling mends; the typed start arrives.
TEST_F(Manager, WithoutARangeTheContoursAreLeftOutWithAWordAndTheFitGoesOn)
{
    On(TableBuilder()
           .Effort({50, 80, 110, 90, 140, 60, 120, 100})
           .Catch({560, 832, 1417, 1585, 3143, 346, 1332, 2336})
           .Recruits({1.0, 0.4, 1.7, 0.9, 2.2, 0.3, 1.2, 1.9}));
    user.onContourRange = [](ContourRange& range) { // OK, as it stands
        EXPECT_EQ(range.Param1Hi, 0.0);
        EXPECT_EQ(range.Param2Hi, 0.0);
        return true;
    };
    user.onStartVals = [](StartVals& starts) {
        starts.param1 = 500.0;
        starts.param2 = 1500.0;
        return true;
    };
    Fit("RECRUITMENT INDEX", [](InputParams& params) {
        params.FitOp = fit_op::kLog;
        params.PlotEvaluations = true;
    });
    ASSERT_EQ(user.messages.size(), 3U);
    EXPECT_EQ(user.messages[0].text, "Unable to get starting estimates");
    EXPECT_EQ(user.messages[1].text, "Please enter starting estimates manually");
    EXPECT_EQ(user.messages[2].text,
              "The minimisation is not shown: the start that failed left no range to draw. The fit goes on.");
    EXPECT_EQ(user.messages[2].icon, Icon::Information);
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_FALSE(manager.PlotEvaluations());
    EXPECT_EQ(std::count(window.events.begin(), window.events.end(), "NewContourPlot"), 0);
    EXPECT_EQ(manager.LastExcuse(), excuse::kNone);
}

TEST_F(Manager, ContoursThatCannotBeDrawnEndTheFitWithASentenceOfTheirOwnFirst)
{
    On(Fishery());
    user.onContourRange = [](ContourRange& range) {
        range = {.Param1Lo = 1.0, .Param1Hi = 2.0, .Param2Lo = 0.1, .Param2Hi = 0.2, .ContEvals = 2};
        return true;
    };
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.PlotEvaluations = true; });
    ASSERT_EQ(user.messages.size(), 2U);
    EXPECT_EQ(user.messages[0].text, "Unable to Generate Contours");
    EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(user.messages[0].title, "VELT 3.0");
    EXPECT_TRUE(user.messages[1].text.starts_with("Failed to Plot Minimisation Contours."));
    ExpectNoFit();
}

// Weighted least squares of a production model never arrives.
TEST_F(Manager, AFitThatDoesNotArriveIsToldOnceAndTheWholeFitIsLost)
{
    On(Fishery()
           .AbundIndex({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1})
           .Variance({1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
    Fit("PROD. MODEL(SCHAEFER)", [](InputParams& params) {
        EXPECT_TRUE(params.hasVariances);
        params.FitOp = fit_op::kWeightedLeastSquares;
    });
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(user.messages[0].text.starts_with("Minimisation "));
    EXPECT_NE(user.messages[0].text.find("clsProduction_CalcLSQFinalEstimates"), std::string::npos);
    EXPECT_EQ(manager.LastExcuse(), excuse::kNotConverged);
    EXPECT_EQ(window.status.back(), "Ready...");
    EXPECT_TRUE(window.graphs.empty());
    EXPECT_EQ(manager.Method(), nullptr);
    ExpectNoFit();
}

TEST_F(Manager, AFailureBehindTheReportHidesItAgain)
{
    // A catch of 0 in a period out of the log fit: the fit arrives, and the residuals of the graphs do not.
    On(Depletion());
    data.ToggledIn(3, false);
    data.CatchNums(3, 0.0F);
    Fit("NO RECRUITMENT", [](InputParams& params) { params.FitOp = fit_op::kLog; });
    EXPECT_EQ(user.messages.size(), 1U);
    ExpectNoFit();
    EXPECT_FALSE(manager.DisplayParameters());
}

// A failure that names no operation is told with the manager's own, one that does keeps it; where the fit
// gave up nothing of the kind helps the user.
TEST_F(Manager, TheSourceOfAFailureIsTheManagersUnlessItNamesOneOrTheFitGaveUp)
{
    struct FailingReport : RecordingWindow {
        std::optional<VeltError> failure;
        void ShowParameterReport(const ParameterReport* report) override
        {
            RecordingWindow::ShowParameterReport(report);
            if (report != nullptr)
                throw *failure;
        }
    } failing;
    const std::pair<VeltError, std::string> told[] = {
        {VeltError(errors::kOverflow, "Overflow", ""), "Overflow\n\n(clsMethManager_FitNewModel)"},
        {VeltError(errors::kOverflow, "Overflow", "clsThere_Where"), "Overflow\n\n(clsThere_Where)"},
        {ProgramError(errors::kFitFailed, "No fit.", ""), "No fit."}};
    struct Run own {
        user, failing, meter, random
    };
    clsVeltData table = Depletion().Build(own);
    clsMethManager other(own);
    other.Create(table);
    user.Picks("NO RECRUITMENT");
    for (const auto& [failure, text] : told) {
        failing.failure = failure;
        user.messages.clear();
        other.FitNewModel(false);
        ASSERT_EQ(user.messages.size(), 1U);
        const std::string hint =
            failure.number == errors::kOverflow ? "\n\nA number grew beyond 3.4e38." : "";
        EXPECT_TRUE(user.messages[0].text.starts_with(text + hint)) << user.messages[0].text;
        EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
        EXPECT_FALSE(other.MethDefined());
    }
}

// The graphs come last, behind a report that is on screen already.
TEST_F(Manager, GraphsThatCannotBeBuiltTakeTheReportAndTheFitWithThem)
{
    FailingGraphs failing;
    failing.failure = [] { RaiseOverflow(); };
    struct Run own {
        user, failing, meter, random
    };
    clsVeltData table = Depletion().Build(own);
    clsMethManager other(own);
    other.Create(table);
    user.Picks("NO RECRUITMENT");
    other.FitNewModel(false);
    EXPECT_EQ(failing.events, (std::vector<std::string>{"ShowParameterReport", "HideParameterReport"}));
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(user.messages[0].text.starts_with("Overflow\n\n(clsSingleCohort_BuildModelGraphs)\n\n"));
    EXPECT_EQ(other.Method(), nullptr);
    EXPECT_FALSE(other.MethDefined());
    EXPECT_FALSE(failing.reportShown);
    EXPECT_FALSE(failing.hourglass);
    EXPECT_EQ(failing.status.back(), "Ready...");
    EXPECT_FALSE(table.ColPresent(columns::PopNums)); // the columns of the fit are dropped
}

// A failure from outside the program's own used to leave the manager in the middle of a fit.
TEST_F(Manager, AFailureThatIsNotTheProgramsOwnEndsTheFitWithAMessageToo)
{
    for (const auto& [failure, text] : kForeignFailures) {
        FailingGraphs failing;
        failing.failure = failure;
        user.messages.clear();
        struct Run own {
            user, failing, meter, random
        };
        clsVeltData table = Depletion().Build(own);
        clsMethManager other(own);
        other.Create(table);
        user.Picks("NO RECRUITMENT");
        EXPECT_NO_THROW(other.FitNewModel(false));
        ASSERT_EQ(user.messages.size(), 1U);
        EXPECT_EQ(user.messages[0].text, text + "\n\n(clsMethManager_FitNewModel)");
        EXPECT_FALSE(other.MethDefined());
        EXPECT_EQ(other.Method(), nullptr);
        EXPECT_FALSE(failing.reportShown);
        EXPECT_FALSE(failing.hourglass);
        EXPECT_EQ(failing.status.back(), "Ready...");
        EXPECT_FALSE(table.ColPresent(columns::PopNums));
    }
}
