// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ParameterReport.h"

#include "base/NumberText.h"
#include "fit/clsMethManager.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

namespace
{
using Names = std::vector<std::string>;
using number_text::Plain;

Names NamesOf(const std::vector<ParameterReport::Row>& rows)
{
    Names names;
    for (const ParameterReport::Row& row : rows)
        names.push_back(row.name);
    return names;
}

Names ValuesOf(const std::vector<ParameterReport::Row>& rows)
{
    Names values;
    for (const ParameterReport::Row& row : rows)
        values.push_back(row.value);
    return values;
}

class Report : public ::testing::Test, public Bench
{
protected:
    Report()
    {
        user.onInputParams = [](InputParams&) { return true; };
    }

    ParameterReport Of(std::int32_t model)
    {
        manager.CurrMethType(model);
        return ParameterReport::Of(manager);
    }

    /// A Schaefer fit, with bootstraps if asked for.
    void FitSchaefer(std::int32_t replicates = 0)
    {
        data = TableBuilder()
                   .From(1970)
                   .Effort({100, 160, 220, 280, 340, 300, 200, 60, 40, 50, 120, 180})
                   .Yield({560, 810, 985, 1100, 1160, 905, 590, 190, 135, 178, 430, 610})
                   .Build(run);
        manager.Create(data);
        user.Picks("PROD. MODEL(SCHAEFER)");
        manager.FitNewModel(false);
        ASSERT_TRUE(manager.MethDefined());
        if (replicates == 0)
            return;
        manager.NumBootStraps(replicates);
        manager.GenerateBootStraps();
        ASSERT_TRUE(manager.IsBSDone());
    }

    clsVeltData data{run};
    clsMethManager manager{run};
};
} // namespace

TEST_F(Report, InputRowsByModel)
{
    manager.NaturalMortality(0.25F);
    manager.InitialProportion(0.5F);
    manager.LAG(2.0F);
    manager.Z(1.5F);
    for (const std::int32_t model : {1, 2}) {
        EXPECT_EQ(NamesOf(Of(model).inputs), (Names{"Nat. Mortality"}));
        EXPECT_EQ(ValuesOf(Of(model).inputs), (Names{"0.25"}));
    }
    EXPECT_EQ(NamesOf(Of(3).inputs), (Names{"Nat. Mortality", "Init. Proportion"}));
    EXPECT_EQ(ValuesOf(Of(3).inputs), (Names{"0.25", "0.5"}));
    for (const std::int32_t model : {4, 5}) {
        EXPECT_EQ(NamesOf(Of(model).inputs), (Names{"Init. Proportion", "Time Lag"}));
        EXPECT_EQ(ValuesOf(Of(model).inputs), (Names{"0.5", "2"}));
    }
    EXPECT_EQ(NamesOf(Of(6).inputs), (Names{"Init. Proportion", "Time Lag", "Z Shape"}));
    EXPECT_EQ(ValuesOf(Of(6).inputs), (Names{"0.5", "2", "1.5"}));
}

TEST_F(Report, EstimateRowsByModel)
{
    EXPECT_EQ(NamesOf(Of(1).estimates), (Names{"N1", "q", "Final Population"}));
    EXPECT_EQ(NamesOf(Of(2).estimates), (Names{"N1", "q", "Lambda", "Final Population"}));
    EXPECT_EQ(NamesOf(Of(3).estimates), (Names{"K", "q", "R. Yield", "Final Population"}));
    for (const std::int32_t model : {4, 5, 6})
        EXPECT_EQ(NamesOf(Of(model).estimates),
                  (Names{"K", "q", "r", "M.S.Y.", "R. Yield", "Final Biomass"}));
}

TEST_F(Report, TitlesOfModelAndErrorModel)
{
    const Names models{"NO RECRUITMENT        ", "RECRUITMENT INDEX     ", "CONSTANT RECRUITMENT  ",
                       "PROD. MODEL(FOX)      ", "PROD. MODEL(SCHAEFER)",  "PROD. MODEL(PELLA TOM)"};
    const Names fits{"LSQ Fit   ", "Log Fit   ", "Gamma Fit ", "LSQ Wt Fit"};
    for (std::int32_t model = 1; model <= 6; ++model)
        EXPECT_EQ(Of(model).modelTitle, models[static_cast<std::size_t>(model) - 1]);
    for (std::int32_t fitOp = 1; fitOp <= 4; ++fitOp) {
        manager.ErrorModel(fitOp);
        EXPECT_EQ(Of(1).fitTitle, fits[static_cast<std::size_t>(fitOp) - 1]);
    }
}

TEST_F(Report, TheValuesAreTheManagersCopiesAsPlainText)
{
    FitSchaefer();
    const ParameterReport report = ParameterReport::Of(manager);
    EXPECT_EQ(ValuesOf(report.estimates),
              (Names{Plain(manager.K()), Plain(manager.Q()), Plain(manager.R()), Plain(manager.MSY()),
                     Plain(manager.RYield()), Plain(manager.FinalBiomass())}));
    EXPECT_GT(manager.K(), 0.0F);
    EXPECT_EQ(ValuesOf(report.inputs), (Names{"1", "0"}));
}

TEST_F(Report, RSquaredHasThreeDecimals)
{
    EXPECT_EQ(Of(1).rSqr, "0.000");
    EXPECT_EQ(number_text::Fixed(0.5, 3), "0.500");
    EXPECT_EQ(number_text::Fixed(123.4567, 3), "123.457");
    FitSchaefer();
    EXPECT_EQ(ParameterReport::Of(manager).rSqr, number_text::Fixed(static_cast<double>(manager.RSqr()), 3));
}

TEST_F(Report, AFitWithoutBootstrapsHasNoIntervalBlockWhateverTheFormerFitShowed)
{
    FitSchaefer(20);
    EXPECT_FALSE(ParameterReport::Of(manager).intervals.empty());
    FitSchaefer();
    const ParameterReport report = ParameterReport::Of(manager);
    EXPECT_TRUE(report.intervals.empty());
    EXPECT_TRUE(report.intervalLevels.empty());
    EXPECT_EQ(report.AsText().find("Confidence Intervals"), std::string::npos);
}

// The final biomass has no limits, and the replacement yield stands before r here and after M.S.Y. above.
// Deliberate.
TEST_F(Report, IntervalRowsOfAProductionModel)
{
    FitSchaefer(20);
    const ParameterReport report = ParameterReport::Of(manager);
    EXPECT_EQ(NamesOf(report.intervals), (Names{"K", "q", "R. Yield", "r", "M.S.Y."}));
    const int parameters[] = {1, 2, 8, 3, 7};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(report.intervals[i].value, Plain(manager.LowerCILimit(parameters[i])) + " - " +
                                                 Plain(manager.UpperCILimit(parameters[i])));
    EXPECT_EQ(report.intervalLevels, "0.025 - 0.975");
}

TEST_F(Report, IntervalRowsOfTheDepletionModels)
{
    struct Case {
        std::string model;
        Names names;
        std::vector<int> parameters;
    };
    const Case cases[] = {{"NO RECRUITMENT", {"N1", "q"}, {4, 2}},
                          {"RECRUITMENT INDEX", {"N1", "q", "Lambda"}, {4, 2, 5}},
                          {"CONSTANT RECRUITMENT", {"K", "q", "R. Yield"}, {1, 2, 8}}};
    data = TableBuilder()
               .Effort({10, 12, 9, 11, 13, 10, 12})
               .Catch({169, 124, 66, 51, 42, 20, 16})
               .Recruits({1, 2, 1, 3, 1, 2, 1})
               .Build(run);
    manager.Create(data);
    for (const Case& each : cases) {
        user.Picks(each.model);
        manager.FitNewModel(false);
        ASSERT_TRUE(manager.MethDefined()) << each.model;
        manager.NumBootStraps(10);
        manager.GenerateBootStraps();
        ASSERT_TRUE(manager.IsBSDone()) << each.model;
        const ParameterReport report = ParameterReport::Of(manager);
        EXPECT_EQ(NamesOf(report.intervals), each.names);
        for (std::size_t i = 0; i < each.parameters.size(); ++i)
            EXPECT_EQ(report.intervals[i].value, Plain(manager.LowerCILimit(each.parameters[i])) + " - " +
                                                     Plain(manager.UpperCILimit(each.parameters[i])));
    }
}

TEST_F(Report, NewLevelsGiveNewLimitsAndTheirOwnLine)
{
    FitSchaefer(20);
    const ParameterReport before = ParameterReport::Of(manager);
    manager.CILow(0.3F);
    manager.CIHigh(0.7F);
    const ParameterReport after = ParameterReport::Of(manager);
    EXPECT_EQ(after.intervalLevels, "0.3 - 0.7");
    EXPECT_NE(after.intervals[0].value, before.intervals[0].value);
}

TEST_F(Report, AsTextHoldsTheBlocksInOrderWithAlignedValues)
{
    ParameterReport report;
    report.modelTitle = "PROD. MODEL(FOX)      ";
    report.fitTitle = "Log Fit   ";
    report.rSqr = "0.500";
    report.inputs = {{"Time Lag", "1"}};
    report.estimates = {{"K", "1000"}, {"M.S.Y.", "100"}};
    EXPECT_EQ(report.AsText(), "Parameter Estimates\n"
                               "\n"
                               "  Model  PROD. MODEL(FOX)      \n"
                               "  Fit    Log Fit   \n"
                               "  R Sqr  0.500\n"
                               "\nInput Parameters\n"
                               "  Time Lag  1\n"
                               "\nModel Parameters\n"
                               "  K       1000\n"
                               "  M.S.Y.  100\n");
    report.intervals = {{"K", "900 - 1100"}};
    report.intervalLevels = "0.025 - 0.975";
    EXPECT_TRUE(report.AsText().ends_with("\nConfidence Intervals  0.025 - 0.975\n"
                                          "  K  900 - 1100\n"));
}

TEST_F(Report, RemarksStandUnderTheOtherBlocksWrappedBelowTheirFirstWord)
{
    ParameterReport report;
    report.estimates = {{"K", "1000"}};
    EXPECT_EQ(report.AsText().find("Remarks"), std::string::npos);
    const std::string before = report.AsText();
    // Two blanks, "1. " and ten words of six letters end in column 74, " now" in column 78.
    report.remarks = {"1. eleven twelve eleven twelve eleven twelve eleven twelve eleven twelve now next",
                      "2. Short."};
    EXPECT_EQ(report.AsText(),
              before + "\nRemarks\n"
                       "  1. eleven twelve eleven twelve eleven twelve eleven twelve eleven twelve now\n"
                       "     next\n"
                       "  2. Short.\n");
}
