// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/PrintData.h"

#include "data/clsVeltData.h"
#include "support/PaperPrinter.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

namespace
{
using Page = PaperPrinter::Page;

/// A table to be printed. A field is 16 characters wide, so a page of 80 takes the time and four columns.
class PrintData : public testing::Test, public Bench
{
protected:
    PrintData()
    {
        data.DSFName("/home/fish/ling.vl3");
        data.DSDesc("Ling of the north");
        data.MinTimeP(1998);
    }

    void Have(std::initializer_list<int> columns)
    {
        for (const int column : columns)
            data.ColPresent(column, true);
    }
    void HaveAll()
    {
        for (int column = columns::kFirst; column <= columns::kLast; ++column)
            data.ColPresent(column, true);
    }

    std::vector<ColumnGroup> Groups(double width)
    {
        printer.width = width;
        const auto printout = printer.Open("");
        return GroupColumns(data, *printout);
    }

    /// `text` and blanks behind it, as wide as a field.
    static std::string F(const std::string& text) { return text + std::string(16 - text.size(), ' '); }

    PaperPrinter printer;
    clsVeltData data{run};
};

constexpr std::size_t kLinesAboveTheRows = 10; // page, "", name, "", description, "", "", titles, "", ""
} // namespace

TEST_F(PrintData, ColumnsThatAllFitAreOneGroupWhoseLimitStaysTheLastColumnOfAll)
{
    Have({1, 4, 7});
    EXPECT_EQ(Groups(64.0), (std::vector<ColumnGroup>{{1, 15}})); // four fields, to the last character
}

// 80 characters: the time and columns 1 to 4; the 5th makes 96 and closes the group. And so on.
TEST_F(PrintData, TheColumnThatOverflowsTheLineClosesTheGroupBeforeItself)
{
    HaveAll();
    EXPECT_EQ(Groups(80.0), (std::vector<ColumnGroup>{{1, 4}, {5, 8}, {9, 12}, {13, 15}}));
    EXPECT_EQ(Groups(95.0), Groups(80.0));
    EXPECT_EQ(Groups(256.0), (std::vector<ColumnGroup>{{1, 15}}));
    EXPECT_EQ(Groups(255.0), (std::vector<ColumnGroup>{{1, 14}, {15, 15}}));
}

TEST_F(PrintData, AnAbsentColumnTakesNoRoomAndTheLimitIsTheNumberBeforeTheOneThatOverflows)
{
    Have({2, 3, 7, 9, 14});
    EXPECT_EQ(Groups(48.0), (std::vector<ColumnGroup>{{1, 6}, {7, 13}, {14, 15}}));
}

// What would be measured without the time would be cut off at the paper's edge with it.
TEST_F(PrintData, NoPrintedLineIsWiderThanThePage)
{
    for (const int missing : {1, 4, 5, 8, 15}) {
        HaveAll();
        data.ColPresent(missing, false);
        data.TimeInts(2);
        for (printer.width = 32.0; printer.width <= 260.0; printer.width += 1.0) {
            printer.pages.clear();
            data.PrintData(printer);
            for (const std::string& line : printer.Lines())
                EXPECT_LE(line.size(), printer.width);
        }
    }
}

TEST_F(PrintData, AColumnThatFindsNoRoomBesideTheTimeStopsTheJobBeforeALineIsPrinted)
{
    Have({1, 2});
    printer.width = 31.0;
    data.PrintData(printer);
    EXPECT_TRUE(printer.Lines().empty());
    EXPECT_TRUE(printer.dropped);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text,
              "Data too large for page.\n\n(_PrintData)\n\n"
              "A single data column is too large to print. Alter column formats and retry.");

    printer.width = 32.0; // the time and one column
    data.PrintData(printer);
    EXPECT_TRUE(printer.ended);
    EXPECT_EQ(user.messages.size(), 1U);
}

TEST_F(PrintData, TheErrorOfATooNarrowPageHasItsNumberAndSourceWhateverTheFirstColumnIs)
{
    for (const int first : {1, 6}) {
        data.ColPresent(1, false);
        Have({first});
        try {
            Groups(31.0);
            ADD_FAILURE() << first;
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, 0x80040000U + 2251U);
            EXPECT_EQ(error.description, "Data too large for page.");
            EXPECT_EQ(error.source, "_PrintData");
        }
    }
}

namespace
{
/// A page 32 characters wide whose letters are not all of one width: an X is as wide as three others.
struct Typeset : IPrintout {
    double TextWidth(const std::string& line) const override
    {
        return static_cast<double>(line.size() + 2 * std::ranges::count(line, 'x'));
    }
    double PrintableWidth() const override { return 32.0; }
    void CurrentX(double) override {}
    void Bold(bool) override {}
    void Print(const std::string&) override {}
    void NewPage() override {}
    void End() override {}
};
} // namespace

// "Effort" stands beside the time, "Recruit. Index" with its wide x does not, and it is not the first column.
TEST_F(PrintData, AColumnThatFindsNoRoomBehindOthersThatDidStopsTheJobToo)
{
    Have({columns::Effort});
    EXPECT_EQ(GroupColumns(data, Typeset()), (std::vector<ColumnGroup>{{1, 15}}));
    Have({columns::RecruitIndex});
    EXPECT_THROW(GroupColumns(data, Typeset()), VeltError);
}

TEST_F(PrintData, BlanksAroundTheDescriptionArePrintedNeitherThereNorInTheTitleOfTheDocument)
{
    data.DSDesc("  Ling of the north   ");
    data.PrintData(printer);
    EXPECT_EQ(printer.pages.at(0).at(4), "Ling of the north");
    EXPECT_EQ(printer.titles, std::vector<std::string>{"Ling of the north"});
}

TEST_F(PrintData, APageHoldsItsNumberTheNamesTheTitlesAndTheRows)
{
    Have({4, 7});
    data.TimeInts(2);
    data.Effort(1, 12.5F);
    data.Effort(2, 1e-7F);
    data.AbundIndex(1, 123456789.0F);
    data.AbundIndex(2, 0.0F);

    data.PrintData(printer);

    ASSERT_EQ(printer.pages.size(), 1U);
    EXPECT_EQ(printer.pages[0], (Page{"> Page 1 Of 1", "", "/home/fish/ling.vl3", "", "Ling of the north", "",
                                      "", F("Time") + F("Effort") + F("Abundance Index"), "", "",
                                      F("1998") + F("12.5") + F("1.234568E+08"), // 7 significant digits
                                      F("1999") + F("1E-07") + F("0")}));
    EXPECT_EQ(printer.positions, std::vector<double>{40.0}); // half of 80
    EXPECT_TRUE(printer.boldLines.empty());
    EXPECT_TRUE(printer.ended);
    EXPECT_EQ(printer.titles, std::vector<std::string>{"Ling of the north"});
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(PrintData, EachGroupHasItsPageWithItsNumberTheTimeAndItsOwnColumns)
{
    Have({1, 2, 3});
    data.TimeInts(1);
    data.TotCatchWt(1, 1.0F);
    data.TotCatchNums(1, 2.0F);
    data.MeanWt(1, 3.0F);
    printer.width = 48.0;

    data.PrintData(printer);

    ASSERT_EQ(printer.pages.size(), 2U);
    EXPECT_EQ(printer.pages[0][0], "> Page 1 Of 2");
    EXPECT_EQ(printer.pages[1][0], "> Page 2 Of 2");
    EXPECT_EQ(printer.pages[0][7], F("Time") + F("Tot. Catch Wt") + F("Tot. Catch Nums"));
    EXPECT_EQ(printer.pages[1][7], F("Time") + F("Mean Wt"));
    EXPECT_EQ(printer.pages[0].back(), F("1998") + F("1") + F("2"));
    EXPECT_EQ(printer.pages[1].back(), F("1998") + F("3"));
    EXPECT_EQ(printer.positions, (std::vector<double>{24.0, 24.0}));
}

TEST_F(PrintData, MissingValuesArePrintedAsMinusOneAlsoWhereTheFormatWouldShowThemOtherwise)
{
    Have({4});
    data.TimeInts(1);
    data.ColFormat(4, "0.000");
    data.PrintData(printer);
    EXPECT_EQ(printer.pages[0].back(), F("1998") + F("-1"));
}

TEST_F(PrintData, TheFormatOfAColumnPlaysNoPart)
{
    Have({4});
    data.TimeInts(1);
    data.ColFormat(4, "0");
    data.Effort(1, 0.126F);
    data.PrintData(printer);
    EXPECT_EQ(printer.pages[0].back(), F("1998") + F("0.126"));
}

// Deliberate: a field has 16 characters, and this title 17.
TEST_F(PrintData, TheOneTitleThatIsWiderThanAFieldIsCut)
{
    Have({8, 9});
    data.PrintData(printer);
    EXPECT_EQ(printer.pages[0][7], F("Time") + "Var. Abund. Inde" + F("Recruit. Index"));
}

TEST_F(PrintData, AnEmptyTablePrintsItsHeadingAlone)
{
    data.PrintData(printer);
    ASSERT_EQ(printer.pages.size(), 1U);
    EXPECT_EQ(printer.pages[0].size(), kLinesAboveTheRows);
    EXPECT_EQ(printer.pages[0][7], F("Time"));
    EXPECT_TRUE(printer.ended);
}

TEST_F(PrintData, ATableWithoutColumnsPrintsItsTimes)
{
    data.TimeInts(2);
    data.PrintData(printer);
    EXPECT_EQ(printer.pages[0][kLinesAboveTheRows], F("1998"));
    EXPECT_EQ(printer.pages[0].back(), F("1999"));
}

// 210 lines on paper of 60: the pages break where the paper ends. Deliberate: no heading stands on them.
TEST_F(PrintData, ATableOf200RowsIsPrintedWithoutARepeatedHeadingOnThePrintersFollowingPages)
{
    Have({4});
    data.TimeInts(200);
    printer.depth = 60;
    data.PrintData(printer);
    ASSERT_EQ(printer.pages.size(), 4U);
    EXPECT_EQ(printer.pages[0].size(), 60U);
    EXPECT_EQ(printer.pages[1][0], F("2048") + F("-1")); // row 51
    EXPECT_EQ(printer.pages[3].size(), 30U);
    EXPECT_EQ(printer.pages[3].back(), F("2197") + F("-1"));
}

TEST_F(PrintData, OfARangeOf201PeriodsThe200RowsThatExistArePrinted)
{
    data.TimeInts(201);
    data.PrintData(printer);
    EXPECT_EQ(printer.Lines().size(), kLinesAboveTheRows + 200);
}

TEST_F(PrintData, TheLargestPeriodsArePrintedAsTheyAre)
{
    data.MinTimeP(std::numeric_limits<std::int32_t>::max());
    data.TimeInts(2);
    data.PrintData(printer);
    EXPECT_EQ(printer.pages[0].back(), F("2147483648"));
}

TEST_F(PrintData, ANameTooLongForTheLineRunsOnInTheNext)
{
    data.DSFName("/home/" + std::string(100, 'x') + ".vl3");
    data.PrintData(printer);
    EXPECT_EQ(printer.pages[0][2], "/home/" + std::string(74, 'x'));
    EXPECT_EQ(printer.pages[0][3], std::string(26, 'x') + ".vl3");
    EXPECT_EQ(printer.pages[0][4], "");
}

TEST_F(PrintData, WithoutAPrinterTheUserIsToldToLookAtIt)
{
    printer.absent = true;
    data.PrintData(printer);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text,
              "Unable to Print. Check Printer is set up correctly.\n\nThere is no printer.");
}

TEST_F(PrintData, APrinterThatFailsInTheMiddleDropsTheDocumentAndIsToldOnce)
{
    Have({4});
    data.TimeInts(20);
    printer.failsAt = 15;
    data.PrintData(printer);
    EXPECT_TRUE(printer.dropped);
    EXPECT_FALSE(printer.ended);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(user.Saw("Unable to Print. Check Printer is set up correctly."));
}

TEST_F(PrintData, CancellingTheChoiceOfAPrinterPrintsNothingAndSaysNothing)
{
    Have({4});
    data.TimeInts(2);
    printer.cancelled = true;
    data.PrintData(printer);
    EXPECT_TRUE(printer.pages.empty());
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(PrintData, PrintingDoesNotMarkTheDataSetAsChanged)
{
    Have({4});
    data.TimeInts(2);
    data.MarkSaved();
    data.PrintData(printer);
    EXPECT_TRUE(printer.ended);
    EXPECT_FALSE(data.IsDirty());
}
