// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/clsMethManager.h"

#include "core/ManagerBench.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace
{
using Values = std::vector<double>;
} // namespace

TEST_F(Manager, WithoutTheRequiredColumnsNoModelIsOffered)
{
    On(TableBuilder().Effort({1, 2, 3}).CatchWt({1, 2, 3}));
    manager.FitNewModel(false);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "No models available for this dataset\n\n"
                                     "Missing for the production models: Tot. Catch Wt.\n"
                                     "Missing for the models in numbers: Catch Nums, Tot. Catch Nums.\n\n"
                                     "Insert them in Edit Mode, or assign them when the table is imported.");
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
    EXPECT_EQ(user.messages[0].helpTopic, "20");
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
