// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/AsciiWizard.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <numeric>

namespace
{
AsciiWizard WizardOf(std::vector<double> labels)
{
    const std::vector<double> values(labels.size(), 1.0);
    std::vector<std::size_t> lines(labels.size());
    std::iota(lines.begin(), lines.end(), 3U); // behind the description and the headings
    return {"ling.txt",
            {"Ling", {"Time", "Effort_", "Catch"}, {std::move(labels), values, values}, std::move(lines)},
            {"Tot. Catch Wt", "Tot. Catch Nums", "Mean Wt", "Effort", "Catch Wt", "Catch Nums",
             "Abundance Index", "Var. Abund. Index", "Recruit. Index"}};
}

AsciiWizard AtStep2()
{
    AsciiWizard wizard = WizardOf({1990, 1991, 1992});
    wizard.ChooseTiming(1);
    wizard.Next();
    return wizard;
}

std::uint32_t NumberOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}
} // namespace

TEST(AsciiWizard, StepOneAsksForTheTimingColumn)
{
    const AsciiWizard wizard = WizardOf({1990});
    EXPECT_EQ(wizard.Caption(), "ASCII File Import : Step 1");
    EXPECT_EQ(wizard.StepTitle(), "Timing");
    EXPECT_EQ(wizard.Explanation(),
              "This screen is used for selecting the Timing Column. Select a column and press next.");
    EXPECT_FALSE(wizard.CanNext());
    EXPECT_FALSE(wizard.CanBack());
    EXPECT_FALSE(wizard.CanFinish());
}

TEST(AsciiWizard, ChoosingATextColumnEnablesNext)
{
    AsciiWizard wizard = WizardOf({1990, 1991});
    wizard.ChooseTiming(2);
    EXPECT_TRUE(wizard.CanNext());
    wizard.ChooseTiming(1);
    wizard.Next();
    EXPECT_EQ(wizard.Caption(), "ASCII File Import : Step 2");
    EXPECT_EQ(wizard.StepTitle(), "Data Columns");
    EXPECT_TRUE(wizard.CanFinish());
    EXPECT_TRUE(wizard.CanBack());
    EXPECT_FALSE(wizard.CanNext());
}

TEST(AsciiWizard, NextTakesTheFirstAndTheLastLabelOnly)
{
    AsciiWizard wizard = WizardOf({1, 5000000, 2});
    wizard.ChooseTiming(1);
    wizard.Next();
    EXPECT_EQ(wizard.intMinTimeP, 1);
    EXPECT_EQ(wizard.intMaxTimeP, 2);
}

TEST(AsciiWizard, LabelsAreRoundedToWholeNumbersTiesToEven)
{
    AsciiWizard wizard = WizardOf({1990.5, 1991, 1993.5});
    wizard.ChooseTiming(1);
    wizard.Next();
    EXPECT_EQ(wizard.intMinTimeP, 1990);
    EXPECT_EQ(wizard.intMaxTimeP, 1994);
}

TEST(AsciiWizard, ALabelOutside16BitsFailsAndNamesTheLabel)
{
    for (const std::vector<double>& labels :
         {std::vector{39999.0, 40000.0}, std::vector{32768.0, 32769.0}, std::vector{1.0, 32767.5},
          std::vector{-32769.0, 1.0}, std::vector{1.0, std::numeric_limits<double>::max()}}) {
        AsciiWizard wizard = WizardOf(labels);
        wizard.ChooseTiming(1);
        try {
            wizard.Next();
            FAIL() << labels.front();
        } catch (const ImportError& error) {
            EXPECT_EQ(error.number, 6U);
            EXPECT_NE(error.place.find("no whole number from -32768 to 32767"), std::string::npos);
        }
        EXPECT_EQ(wizard.step, 1);
    }
    AsciiWizard limits = WizardOf({-32768, 32767});
    limits.ChooseTiming(1);
    EXPECT_NO_THROW(limits.Next());
}

TEST(AsciiWizard, ALabelOutside16BitsIsNamedWithItsLine)
{
    AsciiWizard wizard = WizardOf({1990, 1991, 40000}); // lines 3, 4 and 5
    wizard.ChooseTiming(1);
    try {
        wizard.Next();
        FAIL();
    } catch (const ImportError& error) {
        EXPECT_EQ(error.line, 5U);
        EXPECT_EQ(error.place, "The time label 40000 in line 5 is no whole number from -32768 to 32767.");
    }
}

TEST(AsciiWizard, ACopyOfATextColumnStandsBehindTheOthersAndHasAPlaceOfItsOwn)
{
    AsciiWizard wizard = AtStep2();
    wizard.Assign(2, 4);

    EXPECT_EQ(wizard.CopyColumn(2), 4);

    EXPECT_EQ(wizard.TextColumns(), 4);
    EXPECT_EQ(wizard.collFlexHeadings.back(), "Effort_");
    EXPECT_EQ(wizard.collFlexData.back(), wizard.collFlexData[1]);
    EXPECT_EQ(wizard.enuUserColRef(4), AsciiWizard::kNone);
    EXPECT_NO_THROW(wizard.Assign(4, 5));
    EXPECT_EQ(NumberOf([&] { wizard.CopyColumn(5); }), 9U);
}

TEST(AsciiWizard, TheListHoldsNoneAndTheColumnsNotYetTaken)
{
    AsciiWizard wizard = AtStep2();
    EXPECT_EQ(wizard.Choices(2), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));

    wizard.Assign(2, 4);

    EXPECT_EQ(wizard.enuUserColRef(2), 4);
    EXPECT_TRUE(wizard.blnVELTColSel(4));
    EXPECT_EQ(wizard.Choices(3), (std::vector{0, 1, 2, 3, 5, 6, 7, 8, 9}));
    EXPECT_EQ(wizard.Choices(2), (std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9})); // its own stays
    EXPECT_EQ(wizard.ChoiceTitle(0), "(None)");
    EXPECT_EQ(wizard.ChoiceTitle(4), "Effort");
    EXPECT_EQ(wizard.ChoiceTitle(9), "Recruit. Index");
}

TEST(AsciiWizard, ChoosingNoneFreesTheColumn)
{
    AsciiWizard wizard = AtStep2();
    wizard.Assign(2, 4);
    wizard.Assign(2, AsciiWizard::kNone);
    EXPECT_FALSE(wizard.blnVELTColSel(4));
    EXPECT_NO_THROW(wizard.Assign(3, 4));
}

TEST(AsciiWizard, ChoosingAnotherColumnFreesTheFormer)
{
    AsciiWizard wizard = AtStep2();
    wizard.Assign(2, 4);
    wizard.Assign(2, 5);
    EXPECT_FALSE(wizard.blnVELTColSel(4));
    EXPECT_TRUE(wizard.blnVELTColSel(5));
}

TEST(AsciiWizard, ATakenColumnTheTimingColumnAndSystemColumnsCannotBeAssigned)
{
    AsciiWizard wizard = AtStep2();
    wizard.Assign(2, 4);
    EXPECT_EQ(NumberOf([&] { wizard.Assign(3, 4); }), 9U);
    EXPECT_EQ(NumberOf([&] { wizard.Assign(1, 5); }), 9U);
    for (const int column : {-1, 10, 15})
        EXPECT_EQ(NumberOf([&] { wizard.Assign(3, column); }), 9U) << column;
    EXPECT_EQ(wizard.enuUserColRef(3), 0);
}

TEST(AsciiWizard, BackReturnsToStepOneAndForgetsAllAssignments)
{
    AsciiWizard wizard = AtStep2();
    wizard.Assign(2, 4);
    wizard.Assign(3, 6);

    wizard.Back();

    EXPECT_EQ(wizard.step, 1);
    EXPECT_EQ(wizard.timingColumn, 1); // the choice of step 1 stands
    for (int column = 1; column <= 9; ++column)
        EXPECT_FALSE(wizard.blnVELTColSel(column));
    EXPECT_EQ(wizard.enuUserColRef(2), 0);
    EXPECT_FALSE(wizard.CanFinish());
}

TEST(AsciiWizard, FinishIsForStepTwoAlsoWithNothingAssigned)
{
    AsciiWizard early = WizardOf({1990});
    EXPECT_EQ(NumberOf([&] { early.Finish(); }), 9U);
    EXPECT_FALSE(early.OK);

    AsciiWizard wizard = AtStep2();
    wizard.Finish();
    EXPECT_TRUE(wizard.OK);
}

TEST(AsciiWizard, TextColumnsOutsideTheFileRaise9)
{
    AsciiWizard wizard = WizardOf({1990});
    for (const int column : {0, -1, 4}) {
        EXPECT_EQ(NumberOf([&] { wizard.ChooseTiming(column); }), 9U) << column;
        EXPECT_EQ(NumberOf([&] { wizard.enuUserColRef(column); }), 9U) << column;
    }
    EXPECT_EQ(NumberOf([&] { wizard.Next(); }), 9U); // nothing chosen yet
}
