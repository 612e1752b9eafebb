// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NumberText.h"
#include "fit/clsMethManager.h"
#include "support/PaperPrinter.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

namespace
{
using number_text::Plain;
using Lines = PaperPrinter::Page;

/// A fit to be printed. The series are those of the tests of the report.
class PrintParameters : public ::testing::Test, public Bench
{
protected:
    void Take(clsVeltData table)
    {
        data = std::move(table);
        data.DSFName("/home/fish/ling.vl3");
        data.DSDesc("Ling of the north");
        manager.Create(data);
    }

    void Fit(const std::string& model)
    {
        user.Picks(model);
        user.onInputParams = [](InputParams&) { return true; };
        manager.FitNewModel(false);
        ASSERT_TRUE(manager.MethDefined());
    }

    void FitSchaefer()
    {
        Take(TableBuilder()
                 .From(1970)
                 .Effort({100, 160, 220, 280, 340, 300, 200, 60, 40, 50, 120, 180})
                 .Yield({560, 810, 985, 1100, 1160, 905, 590, 190, 135, 178, 430, 610})
                 .Build(run));
        Fit("PROD. MODEL(SCHAEFER)");
    }

    void FitDepletion(const std::string& model)
    {
        Take(TableBuilder()
                 .Effort({10, 12, 9, 11, 13, 10, 12})
                 .Catch({169, 124, 66, 51, 42, 20, 16})
                 .Recruits({1, 2, 1, 3, 1, 2, 1})
                 .Build(run));
        Fit(model);
    }

    void Bootstrap()
    {
        manager.NumBootStraps(20);
        manager.GenerateBootStraps();
        ASSERT_TRUE(manager.IsBSDone());
    }

    /// The lines under `heading`, up to the next empty one.
    Lines Block(const std::string& heading) const
    {
        const Lines lines = printer.Lines();
        const auto first = std::ranges::find_if(lines, [&](const auto& l) { return l.starts_with(heading); });
        if (first == lines.end())
            return {};
        return {first + 1, std::find(first, lines.end(), "")};
    }

    /// What stands before the tab of each line.
    static Lines Labels(const Lines& lines)
    {
        Lines labels;
        for (const std::string& line : lines)
            labels.push_back(line.substr(0, line.find('\t')));
        return labels;
    }

    std::string Limits(int parameter) const
    {
        return Plain(manager.LowerCILimit(parameter)) + " - " + Plain(manager.UpperCILimit(parameter));
    }

    PaperPrinter printer;
    clsVeltData data{run};
    clsMethManager manager{run};
};
} // namespace

TEST_F(PrintParameters, TheReportStandsInItsOrderWithLabelsTabsAndValues)
{
    FitSchaefer();
    printer.width = 2000.0; // each remark on one line
    manager.PrintParameters(printer);

    Lines expected{"/home/fish/ling.vl3",
                   "Ling of the north",
                   "",
                   "",
                   "Model\tPROD. MODEL(SCHAEFER)",
                   "Fit\tLSQ Fit   ",
                   "R Sqr\t" + Plain(manager.RSqr()),
                   "",
                   "",
                   "Input Parameters",
                   "Init. Proportion\t1",
                   "Time Lag\t0",
                   "",
                   "Model Parameters",
                   "K\t" + Plain(manager.K()),
                   "q\t" + Plain(manager.Q()),
                   "r\t" + Plain(manager.R()),
                   "M.S.Y.\t" + Plain(manager.MSY()),
                   "R. Yield\t" + Plain(manager.RYield()),
                   "Final Biomass\t" + Plain(manager.FinalBiomass()),
                   ""};
    const std::vector<Remark> remarks = manager.Remarks();
    if (!remarks.empty())
        expected.push_back("Remarks");
    for (std::size_t i = 0; i < remarks.size(); ++i)
        expected.push_back(std::to_string(i + 1) + ". " + remarks[i].text);
    EXPECT_EQ(printer.Lines(), expected);
    EXPECT_TRUE(printer.ended);
    EXPECT_EQ(printer.titles, (Lines{"Parameter Estimates"}));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(PrintParameters, BlanksAroundTheDescriptionAreNotPrinted)
{
    FitSchaefer();
    data.DSDesc("  Ling of the north   ");
    manager.PrintParameters(printer);
    EXPECT_EQ(printer.Lines().at(1), "Ling of the north");
}

TEST_F(PrintParameters, HeadingsAreBoldAndTheRestIsNot)
{
    FitSchaefer();
    Bootstrap();
    manager.PrintParameters(printer);
    Lines bold{"/home/fish/ling.vl3", "Ling of the north", "Input Parameters", "Model Parameters",
               "Confidence Intervals\t0.025 - 0.975"};
    if (!manager.Remarks().empty())
        bold.push_back("Remarks");
    EXPECT_EQ(printer.boldLines, bold);
}

// On the window it has three decimals.
TEST_F(PrintParameters, RSquaredIsPrintedAsPlainText)
{
    FitSchaefer();
    manager.PrintParameters(printer);
    EXPECT_EQ(printer.Lines()[6], "R Sqr\t" + Plain(manager.Method()->RSqr()));
    EXPECT_GT(Plain(manager.Method()->RSqr()).size(), std::string("0.999").size());
}

// Deliberate: the window shows the mortality alone.
TEST_F(PrintParameters, TheModelWithoutRecruitmentPrintsTheInitialProportionAboveItsMortality)
{
    FitDepletion("NO RECRUITMENT");
    manager.PrintParameters(printer);
    EXPECT_EQ(Block("Input Parameters"), (Lines{"Init. Proportion\t" + Plain(manager.Method()->InitDep()),
                                                "Nat. Mortality\t" + Plain(manager.Method()->Mort())}));
    EXPECT_EQ(Labels(Block("Model Parameters")), (Lines{"N1", "q", "Final Population"}));
}

TEST_F(PrintParameters, EveryOtherModelPrintsTheInputsOfTheWindow)
{
    FitDepletion("RECRUITMENT INDEX");
    manager.PrintParameters(printer);
    EXPECT_EQ(Labels(Block("Input Parameters")), (Lines{"Nat. Mortality"}));
    EXPECT_EQ(Labels(Block("Model Parameters")), (Lines{"N1", "q", "Lambda", "Final Population"}));

    FitDepletion("CONSTANT RECRUITMENT");
    printer.pages.clear();
    manager.PrintParameters(printer);
    EXPECT_EQ(Labels(Block("Input Parameters")), (Lines{"Nat. Mortality", "Init. Proportion"}));
    EXPECT_EQ(Labels(Block("Model Parameters")), (Lines{"K", "q", "R. Yield", "Final Population"}));

    FitSchaefer();
    Fit("PROD. MODEL(PELLA");
    printer.pages.clear();
    manager.PrintParameters(printer);
    EXPECT_EQ(Labels(Block("Input Parameters")), (Lines{"Init. Proportion", "Time Lag", "Z Shape"}));
}

TEST_F(PrintParameters, EachInputStandsBesideItsOwnValue)
{
    FitSchaefer();
    user.Picks("PROD. MODEL(PELLA");
    user.onInputParams = [](InputParams& params) {
        params.InitProp = 0.75F;
        params.TimeLag = 1;
        params.Z = 1.5F;
        return true;
    };
    manager.FitNewModel(false);
    ASSERT_TRUE(manager.MethDefined());
    manager.PrintParameters(printer);
    EXPECT_EQ(Block("Input Parameters"), (Lines{"Init. Proportion\t0.75", "Time Lag\t1", "Z Shape\t1.5"}));
}

TEST_F(PrintParameters, TheValuesAreTheModelsAndNotWhatTheManagerWasGivenSince)
{
    FitSchaefer();
    manager.InitialProportion(0.25F);
    manager.LAG(3.0F);
    manager.PrintParameters(printer);
    EXPECT_EQ(Block("Input Parameters"), (Lines{"Init. Proportion\t1", "Time Lag\t0"}));
}

TEST_F(PrintParameters, LimitsStandUnderTheirLevelsWithTheReplacementYieldBeforeR)
{
    FitSchaefer();
    Bootstrap();
    manager.PrintParameters(printer);
    EXPECT_EQ(Block("Confidence Intervals\t0.025 - 0.975"),
              (Lines{"K\t" + Limits(1), "q\t" + Limits(2), "R. Yield\t" + Limits(8), "r\t" + Limits(3),
                     "M.S.Y.\t" + Limits(7)}));
}

TEST_F(PrintParameters, WithoutBootstrapsNoLimitsArePrinted)
{
    FitSchaefer();
    manager.PrintParameters(printer);
    for (const std::string& line : printer.Lines())
        EXPECT_FALSE(line.starts_with("Confidence Intervals")) << line;
}

// Seven periods and two parameters besides q leave 7 - 3 = 4, fewer than the 5 that are remarked on; a limit
// line above the remarks is parted from them by an empty one.
TEST_F(PrintParameters, RemarksAreWrappedToThePageBelowTheirFirstWord)
{
    FitDepletion("RECRUITMENT INDEX");
    ASSERT_FALSE(manager.Remarks().empty());
    printer.width = 40.0;
    manager.PrintParameters(printer);
    const Lines remarks = Block("Remarks");
    ASSERT_GT(remarks.size(), manager.Remarks().size());
    EXPECT_TRUE(remarks[0].starts_with("1. "));
    std::string whole = remarks[0];
    for (std::size_t i = 1; i < remarks.size() && remarks[i].starts_with("   "); ++i)
        whole += " " + remarks[i].substr(3);
    EXPECT_EQ(whole, "1. " + manager.Remarks()[0].text);
    for (const std::string& line : remarks)
        EXPECT_LE(line.size(), 40U) << line;
}

TEST_F(PrintParameters, AnEmptyLinePartsTheLimitsFromTheRemarks)
{
    FitDepletion("RECRUITMENT INDEX");
    Bootstrap();
    ASSERT_FALSE(manager.Remarks().empty());
    manager.PrintParameters(printer);
    const Lines lines = printer.Lines();
    const auto remarks = std::ranges::find(lines, "Remarks");
    ASSERT_NE(remarks, lines.end());
    EXPECT_EQ(*(remarks - 1), "");
    EXPECT_TRUE((remarks - 2)->starts_with("Lambda\t")) << *(remarks - 2);
}

TEST_F(PrintParameters, CancellingTheChoiceOfAPrinterPrintsNothingAndSaysNothing)
{
    FitSchaefer();
    printer.cancelled = true;
    manager.PrintParameters(printer);
    EXPECT_EQ(printer.titles.size(), 1U);
    EXPECT_TRUE(printer.pages.empty());
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(PrintParameters, AFaultOfThePrinterIsToldInACriticalBoxAndDropsTheDocument)
{
    FitSchaefer();
    printer.failsAt = 5;
    manager.PrintParameters(printer);
    EXPECT_TRUE(printer.dropped);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "Unable to Print Parameters\n\nThe printer is jammed.");
    EXPECT_EQ(user.messages[0].icon, Icon::Critical);
}

TEST_F(PrintParameters, AReportThatCannotBeMadeIsToldBeforeAPrinterIsAskedFor)
{
    FitSchaefer();
    Bootstrap();
    manager.CIHigh(2.0F); // the 40th of 20 replicates
    manager.PrintParameters(printer);
    EXPECT_TRUE(printer.titles.empty());
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "Unable to Print Parameters");
    EXPECT_EQ(user.messages[0].icon, Icon::Critical);
}

TEST_F(PrintParameters, WithoutAFitThereIsNothingToPrint)
{
    Take(clsVeltData(run));
    manager.PrintParameters(printer);
    EXPECT_TRUE(printer.titles.empty());
    EXPECT_TRUE(user.Saw("Unable to Print Parameters"));
}
