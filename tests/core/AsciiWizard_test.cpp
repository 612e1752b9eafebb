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

namespace
{
/// A table of named columns of equal length; the line of a first missing cell may be given for each.
AsciiWizard WizardOver(std::vector<std::string> headings, std::vector<std::vector<double>> columns,
                       std::vector<std::size_t> missing = {})
{
    AsciiWizard shape = WizardOf(columns.front());
    return {"ling.txt",
            {.description = "Ling",
             .headings = std::move(headings),
             .columns = std::move(columns),
             .lines = shape.lines,
             .missing = std::move(missing)},
            shape.columnTitles};
}

/// The timing column that is guessed among columns of these values.
int GuessedTiming(std::vector<std::vector<double>> columns, std::vector<std::size_t> missing = {})
{
    std::vector<std::string> headings(columns.size(), "x");
    AsciiWizard wizard = WizardOver(std::move(headings), std::move(columns), std::move(missing));
    wizard.GuessTiming();
    return wizard.timingColumn;
}

/// Step 2 of a table of these headings behind the years, with the columns guessed.
AsciiWizard Guessed(std::vector<std::string> headings)
{
    headings.insert(headings.begin(), "Year");
    std::vector<std::vector<double>> columns(headings.size(), {1, 1});
    columns.front() = {1990, 1991};
    AsciiWizard wizard = WizardOver(std::move(headings), std::move(columns));
    wizard.GuessTiming();
    wizard.Next();
    wizard.GuessColumns();
    return wizard;
}

/// The titles that the text columns behind the first have got.
std::vector<std::string> TitlesOf(const AsciiWizard& wizard)
{
    std::vector<std::string> titles;
    for (int column = 2; column <= wizard.TextColumns(); ++column) {
        const int dataColumn = wizard.enuUserColRef(column);
        titles.push_back(dataColumn == AsciiWizard::kNone ? "" : wizard.ChoiceTitle(dataColumn));
    }
    return titles;
}
} // namespace

TEST(AsciiWizard, TheFirstColumnOfWholeNumbersThatRiseByOneIsPreselected)
{
    EXPECT_EQ(GuessedTiming({{5, 7, 6}, {1990, 1991, 1992}, {1, 2, 3}}), 2);
    EXPECT_EQ(GuessedTiming({{-1, 0, 1}}), 1);
    EXPECT_EQ(GuessedTiming({{32766, 32767}}), 1);
    EXPECT_EQ(GuessedTiming({{-32768, -32767}}), 1);
}

TEST(AsciiWizard, NoColumnIsPreselectedWhereNoneRisesByOne)
{
    for (const std::vector<double>& values :
         {std::vector{1990.0, 1992.0, 1993.0}, std::vector{1990.0, 1991.0, 1993.0},
          std::vector{1990.0, 1990.0, 1991.0}, std::vector{1992.0, 1991.0, 1990.0},
          std::vector{0.5, 1.5, 2.5}, std::vector{1990.0, 1991.0, 1992.1}, std::vector{32767.0, 32768.0},
          std::vector{-32769.0, -32768.0}, std::vector{1990.0}})
        EXPECT_EQ(GuessedTiming({values}), 0) << values.front() << " to " << values.back();
    AsciiWizard wizard = WizardOf({1990, 1992});
    wizard.GuessTiming();
    EXPECT_FALSE(wizard.CanNext());
}

// -2, nothing, 0: the mark of a missing cell would make a period of it.
TEST(AsciiWizard, AColumnWithAMissingCellIsNotPreselected)
{
    EXPECT_EQ(GuessedTiming({{-2, -1, 0}, {1, 2, 3}}, {4, 0}), 2);
}

TEST(AsciiWizard, APreselectedColumnIsAChoiceThatCanBeChanged)
{
    AsciiWizard wizard = WizardOf({1990, 1991});
    wizard.GuessTiming();
    EXPECT_TRUE(wizard.CanNext());
    wizard.ChooseTiming(2);
    wizard.GuessTiming(); // what a person chose stands
    EXPECT_EQ(wizard.timingColumn, 2);
    wizard.Next();
    EXPECT_EQ(NumberOf([&] { wizard.GuessTiming(); }), 9U);
}

TEST(AsciiWizard, AMissingTimeLabelIsRefusedWithItsLineWhereverItStands)
{
    AsciiWizard wizard = WizardOver({"Year"}, {{1990, -1, 1992}}, {4});
    wizard.ChooseTiming(1);
    try {
        wizard.Next();
        FAIL();
    } catch (const ImportError& error) {
        EXPECT_EQ(error.number, kProgramErrorBase + 2257U);
        EXPECT_EQ(error.place, "Line 4, column \"Year\": a time label is missing.");
        EXPECT_EQ(error.line, 4U);
    }
    EXPECT_EQ(wizard.step, 1);
}

TEST(AsciiWizard, HeadingsThatNameADataColumnAreAssignedAsByHand)
{
    const AsciiWizard wizard = Guessed({"Catch", "Effort_", "Mean weight (kg)"});
    EXPECT_EQ(TitlesOf(wizard), (std::vector<std::string>{"", "Effort", "Mean Wt"}));
    EXPECT_TRUE(wizard.blnVELTColSel(4));
    EXPECT_EQ(wizard.Choices(2), (std::vector{0, 1, 2, 5, 6, 7, 8, 9}));
}

TEST(AsciiWizard, OfTwoHeadingsForADataColumnTheFirstHasIt)
{
    EXPECT_EQ(TitlesOf(Guessed({"CPUE", "Effort", "Index", "effort"})),
              (std::vector<std::string>{"Abundance Index", "Effort", "", ""}));
}

TEST(AsciiWizard, AGuessIsFreedByNoneAndGivesWayToAnother)
{
    AsciiWizard wizard = Guessed({"CPUE", "Index"});
    wizard.Assign(2, AsciiWizard::kNone);
    EXPECT_NO_THROW(wizard.Assign(3, 7));
    EXPECT_EQ(TitlesOf(wizard), (std::vector<std::string>{"", "Abundance Index"}));
}

TEST(AsciiWizard, TheTimingColumnIsNeverGuessed)
{
    AsciiWizard wizard = WizardOver({"Effort", "Effort"}, {{1, 2}, {5, 5}});
    wizard.GuessTiming();
    EXPECT_EQ(NumberOf([&] { wizard.GuessColumns(); }), 9U); // step 1
    wizard.Next();
    wizard.GuessColumns();
    EXPECT_EQ(wizard.enuUserColRef(1), AsciiWizard::kNone);
    EXPECT_EQ(wizard.enuUserColRef(2), 4);
}

TEST(AsciiWizard, BackForgetsTheGuessesAndNextGuessesAnew)
{
    AsciiWizard wizard = WizardOver({"Index", "Effort", "CPUE"}, {{1, 2}, {5, 5}, {7, 7}});
    wizard.GuessTiming(); // the index happens to rise by one
    wizard.Next();
    wizard.GuessColumns();
    EXPECT_EQ(wizard.enuUserColRef(3), 7);
    wizard.Assign(2, AsciiWizard::kNone); // by hand, and forgotten like the rest

    wizard.Back();
    for (int column = 1; column <= 9; ++column)
        EXPECT_FALSE(wizard.blnVELTColSel(column));
    wizard.ChooseTiming(2);
    wizard.Next();
    wizard.GuessColumns();

    EXPECT_EQ(wizard.enuUserColRef(1), 7);
    EXPECT_EQ(wizard.enuUserColRef(2), AsciiWizard::kNone);
    EXPECT_EQ(wizard.enuUserColRef(3), AsciiWizard::kNone);
}

TEST(AsciiWizard, NextAloneAssignsNothing) // whoever names the columns wants no others
{
    AsciiWizard wizard = AtStep2();
    EXPECT_EQ(TitlesOf(wizard), (std::vector<std::string>{"", ""}));
}
