// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ImportText.h"

#include "data/clsVeltData.h"
#include "files/AsciiWizard.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string_view>

namespace
{
/// Answers from a script and keeps what was asked, in order.
class ScriptedQuestions : public IImportQuestions
{
public:
    bool withoutDescription = true;
    bool finishes = true;
    bool consecutive = true;
    int timing = 1;
    std::vector<std::string> asked;
    std::optional<UnevenLabels> uneven;

    bool GoesOnWithoutDescription() override
    {
        asked.emplace_back("description");
        return withoutDescription;
    }
    bool Assigns(AsciiWizard& wizard) override
    {
        asked.emplace_back("columns");
        if (!finishes)
            return false;
        wizard.ChooseTiming(timing);
        wizard.Next();
        wizard.Assign(timing == 1 ? 2 : 1, columns::Effort);
        wizard.Finish();
        return true;
    }
    bool TakesAsConsecutive(const UnevenLabels& labels) override
    {
        asked.emplace_back("labels");
        uneven = labels;
        return consecutive;
    }
};

class ImportTextRoad : public testing::Test
{
protected:
    void Import(std::string_view text)
    {
        ImportText(data, "ling.txt", {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()},
                   questions);
    }

    /// The number of the failure that ends the import; the data set is then as new.
    std::uint32_t Failure(std::string_view text)
    {
        try {
            Import(text);
        } catch (const VeltError& error) {
            EXPECT_EQ(data.DSDesc(), "");
            EXPECT_EQ(data.TimeInts(), 0);
            EXPECT_FALSE(data.ColPresent(columns::Effort));
            EXPECT_FALSE(data.IsDirty());
            return error.number;
        }
        return 0;
    }

    Bench bench;
    clsVeltData data{bench.run};
    ScriptedQuestions questions;
};

using Asked = std::vector<std::string>;
constexpr std::uint32_t kCancelled = 0x80040000U + 2263U;

AsciiText Table(std::vector<double> labels, std::vector<std::size_t> lines)
{
    std::vector<double> effort(labels.size(), 5.0);
    return {
        "Ling", {"Fishing year", "Boats, days"}, {std::move(labels), std::move(effort)}, std::move(lines)};
}
} // namespace

TEST_F(ImportTextRoad, BytesBecomeATableWithoutAFileAndWithoutABox)
{
    Import("Ling\nYear Boats\n1990 5\n1991 6\n");

    EXPECT_EQ(data.DSDesc(), "Ling");
    EXPECT_EQ(data.DSFName(), "ling.txt");
    EXPECT_EQ(data.MinTimeP(), 1990);
    EXPECT_EQ(data.Effort(2), 6.0F);
    EXPECT_EQ(questions.asked, Asked{"columns"});
    EXPECT_TRUE(bench.user.messages.empty());
    EXPECT_TRUE(bench.user.asked.empty());
}

// 0.71 used to show as 1.
TEST_F(ImportTextRoad, AColumnIsShownWithTheDecimalsOfItsLongestNumber)
{
    Import("Ling\nYear Effort Other\n1990 0.7 1\n1991 0.71 1\n1992 12 1\n");
    EXPECT_EQ(data.ColFormat(columns::Effort), "0.00");
    Import("Ling\nYear Effort Other\n1990 7 1\n1991 71 1\n");
    EXPECT_EQ(data.ColFormat(columns::Effort), "0");
    Import("Ling\nYear Effort Other\n1990 0.123456789 1\n");
    EXPECT_EQ(data.ColFormat(columns::Effort), "0.000000");
}

TEST_F(ImportTextRoad, AColumnThatConversionsFillIsShownWithThreeFigures)
{
    data = clsVeltData(data.TheRun());
    data.TimeInts(2);
    for (const int column : {columns::CatchWt, columns::MeanWt, columns::Effort})
        data.ColPresent(column, true);
    data.CatchWt(1, 3.0F); // numbers: 3 / 4 = 0.75 and 2 / 1 = 2
    data.MeanWt(1, 4.0F);
    data.CatchWt(2, 2.0F);
    data.MeanWt(2, 1.0F);
    for (int row = 3; row <= clsVeltData::kRows; ++row)
        data.MeanWt(row, 1.0F);
    data.MarkSaved();
    data.DoColumnConversions();
    EXPECT_EQ(data.ColFormat(columns::CatchNums), "0.000");
    EXPECT_EQ(data.ColFormat(columns::CatchWt), "0"); // as it was typed
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(ImportTextRoad, QuestionsComeInTheOrderDescriptionColumnsLabels)
{
    Import("\nYear Boats\n1990 5\n1992 6\n1991 7\n");
    EXPECT_EQ(questions.asked, (Asked{"description", "columns", "labels"}));
}

TEST_F(ImportTextRoad, AMissingDescriptionIsAskedAboutBeforeAnythingElseIsLookedAt)
{
    questions.withoutDescription = false;
    EXPECT_EQ(Failure(" \nYear Boats\nno number at all\n"), kCancelled);
    EXPECT_EQ(questions.asked, Asked{"description"});
}

TEST_F(ImportTextRoad, EachNoEndsTheImportThere)
{
    questions.finishes = false;
    EXPECT_EQ(Failure("Ling\nYear Boats\n1990 5\n"), kCancelled);
    questions.finishes = true;
    questions.consecutive = false;
    EXPECT_EQ(Failure("Ling\nYear Boats\n1990 5\n1992 6\n1991 7\n"), kCancelled);
}

TEST_F(ImportTextRoad, AFailedImportLeavesNothingOfAnEarlierOne)
{
    const std::string good = "Ling\nYear Boats\n1990 5\n";
    Import(good);
    EXPECT_NE(Failure("Tusk\nYear Boats\n1990\n"), 0U);

    Import(good);
    questions.finishes = false;
    EXPECT_THROW(ImportTable(data, "tusk.csv", Table({1990}, {2}), questions), VeltError);
    EXPECT_EQ(data.DSDesc(), "");
    questions.finishes = true;

    Import(good);
    EXPECT_THROW(data.ImportASCIIFile("nowhere.txt", questions), VeltError);
    EXPECT_EQ(data.DSDesc(), "");
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(ImportTextRoad, WhatAnAnswerRaisesEndsTheImportAsItStands)
{
    struct Refusal {
    };
    class Refusing : public ScriptedQuestions
    {
    public:
        bool TakesAsConsecutive(const UnevenLabels&) override { throw Refusal(); }
    };
    Refusing refusing;
    EXPECT_THROW(ImportTable(data, "ling.txt", Table({1990, 1992}, {3, 4}), refusing), Refusal);
    EXPECT_EQ(data.TimeInts(), 0);
}

TEST_F(ImportTextRoad, ATableReadElsewhereTakesTheSameRoad)
{
    ImportTable(data, "ling.csv", Table({1990, 1991}, {2, 4}), questions);

    EXPECT_EQ(data.DSFName(), "ling.csv");
    EXPECT_EQ(data.Effort(2), 5.0F);
    AsciiText undescribed = Table({1990}, {2});
    undescribed.description.clear();
    questions.asked.clear();
    questions.withoutDescription = false;
    EXPECT_THROW(ImportTable(data, "ling.csv", undescribed, questions), VeltError);
    EXPECT_EQ(questions.asked, Asked{"description"});
}

// A gap of one year used to shift every later value into the year before it, without a word.
TEST_F(ImportTextRoad, TheFirstRowWhoseLabelDoesNotRiseByOneIsNamed)
{
    struct Case {
        std::vector<double> labels;
        std::size_t line; ///< 0: none
    };
    for (const Case& c : {Case{{1990, 1991, 1992}, 0}, Case{{1990}, 0}, Case{{1990, 1992, 1993}, 4},
                          Case{{1990, 1991, 1993}, 5}, Case{{1990, 1990, 1991}, 4},
                          Case{{1990, 1989, 1991}, 4}, Case{{-1, 0, 1}, 0}, Case{{1990, 5000000, 1992}, 4}}) {
        std::vector<std::size_t> lines;
        for (std::size_t row = 0; row < c.labels.size(); ++row)
            lines.push_back(row + 3);
        const auto uneven = FindUnevenLabels(c.labels, lines);
        EXPECT_EQ(uneven ? uneven->line : 0U, c.line) << c.labels.back();
    }
}

// 1990.5 is 1990 and 1991.5 is 1992; 1990.4 and 1990.6 are 1990 and 1991.
TEST_F(ImportTextRoad, LabelsAreComparedAsWholeNumbersTiesToEven)
{
    const std::vector<std::size_t> lines{3, 4};
    EXPECT_FALSE(FindUnevenLabels(std::vector{1990.4, 1990.6}, lines));
    EXPECT_TRUE(FindUnevenLabels(std::vector{1990.5, 1991.5}, lines));
    EXPECT_FALSE(FindUnevenLabels(std::vector{1991.5, 1992.6}, lines));
}

TEST_F(ImportTextRoad, TheQuestionNamesTheTrueLineAndTheLabelsAsTheFileHasThem)
{
    ImportTable(data, "ling.csv", Table({1990.2, 1992, 1991}, {2, 7, 8}), questions); // a cell of six lines
    ASSERT_TRUE(questions.uneven);
    EXPECT_EQ(questions.uneven->Sentence(),
              "The time labels do not rise by one from row to row: in line 7, 1992 follows 1990.2.");
}

TEST_F(ImportTextRoad, LabelsThatNoAnswerCouldMendAreRefusedWithoutAQuestion)
{
    EXPECT_EQ(Failure("Ling\nYear Boats\n1992 5\n1990 6\n"), 9U); // end before they begin
    EXPECT_EQ(Failure("Ling\nYear Boats\n1 5\n300 6\n"), 9U);     // beyond the table
    EXPECT_EQ(Failure("Ling\nYear Boats\n1 5\n40000 6\n"), 6U);   // beyond 16 bits
    EXPECT_EQ(questions.asked, (Asked{"columns", "columns", "columns"}));
}

TEST_F(ImportTextRoad, AValueTooLargeForItsCellIsNamedWithItsTrueLine)
{
    AsciiText table = Table({1990, 1991}, {2, 7});
    table.columns[1][1] = 1e39;
    try {
        ImportTable(data, "ling.csv", table, questions);
        FAIL();
    } catch (const ImportError& error) {
        EXPECT_EQ(error.line, 7U);
        EXPECT_EQ(error.place, "(line 7: a value is too large for a cell)");
    }
}
