// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/clsMethManager.h"

#include "base/NumberText.h"
#include "fit/ParameterReport.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <stdexcept>

namespace
{
using Values = std::vector<double>;

/// A session at the screen: a data set, the manager, and a user who says yes to the inputs.
class Manager : public ::testing::Test, public Bench
{
protected:
    Manager()
    {
        user.onInputParams = [this](InputParams& params) {
            offered = params;
            if (change)
                change(params);
            return true;
        };
    }

    void On(const TableBuilder& table)
    {
        data = table.Build(run);
        manager.Create(data);
    }

    /// A stock of about 1000 that only dies (0.2 a period) and is caught.
    static TableBuilder Depletion()
    {
        return TableBuilder()
            .Effort({10, 12, 9, 11, 13, 10, 12})
            .Catch({169, 124, 66, 51, 42, 20, 16})
            .Recruits({1, 2, 1, 3, 1, 2, 1});
    }

    /// More catch a unit of effort from period to period, which no closed stock gives.
    static TableBuilder Rising()
    {
        return TableBuilder().Effort({10, 10, 10, 10, 10}).Catch({10, 21, 29, 41, 50});
    }

    /// Four periods with the columns of every model.
    static TableBuilder Depletion4()
    {
        return TableBuilder()
            .Effort({10, 12, 9, 11})
            .Catch({169, 124, 66, 51})
            .Recruits({1, 2, 1, 3})
            .Yield({169, 124, 66, 51});
    }

    static TableBuilder Fishery()
    {
        return TableBuilder()
            .From(1970)
            .Effort({100, 160, 220, 280, 340, 300, 200, 60, 40, 50, 120, 180})
            .Yield({560, 810, 985, 1100, 1160, 905, 590, 190, 135, 178, 430, 610});
    }

    void Fit(const std::string& model, std::function<void(InputParams&)> changes = {})
    {
        user.Picks(model);
        change = std::move(changes);
        manager.FitNewModel(false);
    }

    bool Asked(const std::string& what) const
    {
        return std::find(user.asked.begin(), user.asked.end(), what) != user.asked.end();
    }

    void ExpectNoFit()
    {
        EXPECT_FALSE(manager.MethDefined());
        EXPECT_FALSE(manager.IsBSDone());
        EXPECT_FALSE(window.reportShown);
        EXPECT_FALSE(window.hourglass);
    }

    clsVeltData data{run};
    clsMethManager manager{run};
    InputParams offered;
    std::function<void(InputParams&)> change;
};
} // namespace

TEST_F(Manager, WithoutTheRequiredColumnsNoModelIsOffered)
{
    On(TableBuilder().Effort({1, 2, 3}).CatchWt({1, 2, 3}));
    manager.FitNewModel(false);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "No models available for this dataset");
    EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(user.messages[0].buttons, Buttons::OkCancel);
    EXPECT_EQ(user.messages[0].title, "VELT 3.0");
    EXPECT_TRUE(user.asked.empty());
    ExpectNoFit();
}

TEST_F(Manager, OffersTheModelsThatTheColumnsAllowInTheOrderOfTheirNumbers)
{
    const std::string none = "NO RECRUITMENT        ";
    const std::string index = "RECRUITMENT INDEX     ";
    const std::string constant = "CONSTANT RECRUITMENT  ";
    On(Depletion());
    user.onSelection = [&](Selection& selection) {
        EXPECT_EQ(selection.caption, "New Model");
        EXPECT_EQ(selection.prompt, "Select Model to Fit;");
        EXPECT_EQ(selection.items, (std::vector<std::string>{none, index, constant}));
        return false;
    };
    manager.FitNewModel(false);
    EXPECT_EQ(manager.AvailableModels(), (std::vector<std::string>{none, index, constant}));
    ExpectNoFit();

    On(Fishery());
    user.onSelection = [&](Selection& selection) {
        EXPECT_EQ(selection.items,
                  (std::vector<std::string>{"PROD. MODEL(FOX)      ", "PROD. MODEL(SCHAEFER)",
                                            "PROD. MODEL(PELLA TOM)"}));
        selection.chosen = 3;
        return true;
    };
    manager.FitNewModel(false);
    EXPECT_EQ(manager.CurrMethType(), models::kPellaTomlinson);
}

TEST_F(Manager, TooFewPointsAreToldAfterTheChoiceOfTheModel)
{
    On(TableBuilder().Effort({10, 12}).Catch({100, 90}).Yield({100, 90}));
    Fit("PROD. MODEL(SCHAEFER)");
    EXPECT_EQ(user.asked, std::vector<std::string>{"selection"});
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "Not Enough Data Points for this model");
    EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(user.messages[0].helpContext, 20);
    ExpectNoFit();

    user.asked.clear();
    user.messages.clear();
    user.Picks("NO RECRUITMENT");
    user.onInputParams = nullptr; // Cancel
    manager.FitNewModel(false);
    EXPECT_EQ(user.asked, (std::vector<std::string>{"selection", "input params"}));
    EXPECT_TRUE(user.messages.empty());
    ExpectNoFit();
}

// Two points are enough for a regression on two columns, three for the others.
TEST_F(Manager, EachModelHasItsOwnLeastNumberOfPoints)
{
    const std::pair<std::string, int> leastPoints[] = {{"NO RECRUITMENT", 2},   {"RECRUITMENT INDEX", 3},
                                                       {"CONSTANT", 2},         {"PROD. MODEL(FOX)", 3},
                                                       {"PROD. MODEL(SCHA", 3}, {"PROD. MODEL(PELLA", 3}};
    user.onInputParams = nullptr; // Cancel
    for (const auto& [model, least] : leastPoints) {
        for (const int points : {least - 1, least}) {
            // Four periods, of which only the first ones are in the fit.
            TableBuilder table = Depletion4();
            for (int row = points + 1; row <= 4; ++row)
                table.ToggleOut(row);
            On(table);
            user.asked.clear();
            user.messages.clear();
            user.Picks(model);
            manager.FitNewModel(false);
            const bool enough = points == least;
            EXPECT_EQ(Asked("input params"), enough) << model << points;
            EXPECT_EQ(user.Saw("Not Enough Data Points for this model"), !enough) << model << points;
            ExpectNoFit();
        }
    }
}

// The count that stands in the data set may be that of other columns, or of before a point was toggled.
TEST_F(Manager, ThePointsAreCountedByTheModelAndNotTakenFromTheDataSet)
{
    user.onInputParams = nullptr; // Cancel
    for (const bool enough : {false, true}) {
        TableBuilder table = Depletion4().ToggleOut(4).ToggleOut(3);
        On(enough ? table : table.ToggleOut(2));
        data.NNtPoints(enough ? 0 : 99); // stale
        user.asked.clear();
        user.messages.clear();
        user.Picks("NO RECRUITMENT");
        manager.FitNewModel(false);
        EXPECT_EQ(user.asked.at(0), "selection");
        EXPECT_EQ(Asked("input params"), enough);
        EXPECT_EQ(user.Saw("Not Enough Data Points"), !enough);
        EXPECT_EQ(data.NNtPoints(), enough ? 2 : 1);
    }
}

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

namespace
{
/// A window whose graphs fail as told, and a session in it.
struct FailingGraphs : RecordingWindow {
    std::function<void()> failure;
    void AddModelGraph(std::shared_ptr<ModelGraph>) override { failure(); }
};

const std::pair<std::function<void()>, std::string> kForeignFailures[] = {
    {[] { throw std::bad_alloc(); }, "Out of memory"},
    {[] { throw std::runtime_error("the disc is upside down"); }, "the disc is upside down"},
};
} // namespace

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

TEST_F(Manager, ResetForgetsTheFitAndKeepsTheInputs)
{
    On(Depletion());
    Fit("NO RECRUITMENT", [](InputParams& params) { params.Mort = 0.3F; });
    manager.CILow(0.1F);
    manager.CIHigh(0.9F);
    const float n1 = manager.N1();
    manager.Reset();
    ExpectNoFit();
    EXPECT_EQ(manager.Method(), nullptr);
    EXPECT_TRUE(manager.AvailableModels().empty());
    EXPECT_EQ(manager.CILow(), 0.025F);
    EXPECT_EQ(manager.CIHigh(), 0.975F);
    EXPECT_EQ(manager.NaturalMortality(), 0.3F);
    EXPECT_EQ(manager.CurrMethType(), models::kNoRecruitment);
    EXPECT_EQ(manager.N1(), n1);
    EXPECT_FALSE(data.ColPresent(columns::PopNums)); // the columns of the fit are dropped
}

TEST_F(Manager, WithoutAModelThereAreNoBootstraps)
{
    EXPECT_FALSE(manager.IsBSDone());
    On(Depletion());
    EXPECT_FALSE(manager.IsBSDone());
}

TEST_F(Manager, TheNumberOfScenariosReadsZeroEvenWithScenarios) // deliberate
{
    On(Depletion());
    clsProjScenario scenario;
    scenario.Title("Rest");
    data.AddProjScenario(scenario, "Rest");
    data.NumScens(1);
    ASSERT_EQ(data.NumProjScenarios(), 1);
    EXPECT_EQ(manager.NumProjScens(), 0);
}

TEST_F(Manager, AManagerThatGoesClearsTheColumnsOfItsFit)
{
    data = Depletion().Build(run);
    {
        clsMethManager other(run);
        other.Create(data);
        user.Picks("NO RECRUITMENT");
        other.FitNewModel(false);
        ASSERT_TRUE(data.ColPresent(columns::PopNums));
    }
    EXPECT_FALSE(data.ColPresent(columns::PopNums));
    EXPECT_EQ(data.PopNums(1), 0.0F);
    EXPECT_TRUE(data.ColPresent(columns::Effort));
    EXPECT_EQ(data.Effort(1), 10.0F);
}

TEST_F(Manager, DataPlotsOfferTheColumnsThatArePresentAndCatchRatesLast)
{
    On(Fishery());
    user.onSelection = [](Selection& selection) {
        EXPECT_EQ(selection.caption, "Plot Data");
        EXPECT_EQ(selection.prompt, "Select Data Series To Plot");
        EXPECT_EQ(selection.items.size(), 4U);
        EXPECT_EQ(selection.items.back(), "CPUE");
        selection.chosen = 4;
        return true;
    };
    EXPECT_EQ(manager.GetUserDataPlot(), 16);
    user.onSelection = [](Selection& selection) {
        selection.chosen = 2;
        return true;
    };
    EXPECT_EQ(manager.GetUserDataPlot(), columns::Effort);
    user.onSelection = nullptr;
    EXPECT_EQ(manager.GetUserDataPlot(), 0);

    On(Depletion()); // numbers have no catch rate here
    user.onSelection = [](Selection& selection) {
        EXPECT_NE(selection.items.back(), "CPUE");
        return false;
    };
    EXPECT_EQ(manager.GetUserDataPlot(), 0);
}

TEST_F(Manager, APeriodThatIsNotIncludedIsAGapInADataPlotWhateverItHolds)
{
    On(TableBuilder().From(1970).Effort({2, 0, 4}).Yield({10, 11, 12}));
    manager.PlotData(columns::CatchWt);
    manager.PlotData(16);
    ASSERT_EQ(window.graphs.size(), 2U);
    const ModelGraph& catches = *window.graphs[0];
    EXPECT_EQ(catches.XData(), (Values{1970.0, 1971.0, 1972.0}));
    EXPECT_EQ(catches.YData(), (Values{10.0, ModelGraph::InvalidData, 12.0}));
    EXPECT_EQ(catches.Title(), run.globals.ColumnDisplayNames(columns::CatchWt));
    EXPECT_EQ(catches.YTitle(), catches.Title());
    EXPECT_EQ(catches.XTitle(), "Time");
    EXPECT_EQ(catches.Type(), GraphType::Line);
    EXPECT_FALSE(catches.WithToggs());
    EXPECT_EQ(window.graphs[1]->Title(), "CPUE");
    EXPECT_EQ(window.graphs[1]->YData(), (Values{5.0, ModelGraph::InvalidData, 3.0}));
}

TEST_F(Manager, OptionsAreKeptOnOkAndForgottenOnCancel)
{
    On(Depletion());
    const MinimiserOptions changed{
        .ConvergeOn = 0, .BS = 7, .sngFTOL = 1e-5F, .sngXTOL = 1e-3F, .intMaxIts = 99};
    for (const bool ok : {false, true}) {
        user.onOptions = [&](MinimiserOptions& options) {
            EXPECT_EQ(options, MinimiserOptions());
            options = changed;
            return ok;
        };
        manager.MinimisationOptions();
        const modVeltGlobals::Settings& settings = run.globals.settings;
        EXPECT_EQ(settings.NumBootStraps, ok ? 7 : 500);
        EXPECT_EQ(settings.ConvergeOn, ok ? 0 : 3);
        EXPECT_EQ(settings.sngFTOL, ok ? 1e-5F : 1e-7F);
        EXPECT_EQ(settings.sngXTOL, ok ? 1e-3F : 1e-4F);
        EXPECT_EQ(settings.intMaxIts, ok ? 99 : 500);
    }
    EXPECT_EQ(manager.NumBootStraps(), 7);
}

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
