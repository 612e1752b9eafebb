// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ExportText.h"

#include "base/NumberText.h"
#include "data/ImportText.h"
#include "data/ProjectData.h"
#include "data/clsVeltData.h"
#include "files/AsciiWizard.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>

namespace
{
using Limits = std::numeric_limits<float>;

std::string Contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Sample(const std::string& name)
{
    return Contents(VELT_TEST_SAMPLES "/" + name);
}

/// A data set of five periods from 1986 on.
class ExportText : public testing::Test
{
protected:
    ExportText()
    {
        data.DSDesc("Ling");
        Range(1986, 1990);
    }
    void Range(std::int32_t first, std::int32_t last)
    {
        data.MinTimeP(first);
        data.MaxTimeP(last);
        data.TimeInts(last - first + 1);
    }
    void Fill(int column, std::initializer_list<float> values)
    {
        data.ColPresent(column, true);
        int row = 1;
        for (const float value : values)
            data.DB(column, row++, value);
    }
    /// The text of a value of the first period.
    std::string Written(float value)
    {
        Range(1, 1);
        Fill(columns::Effort, {value});
        const std::string text = TextOf(data);
        const std::size_t at = text.find("\r\n1\t") + 4;
        return text.substr(at, text.find('\t', at) - at);
    }
    std::string Refusal(float value)
    {
        Range(1986, 1990);
        Fill(columns::Effort, {1, 2, value});
        try {
            TextOf(data);
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, errors::kInvalidArgument);
            return error.description;
        }
        return "";
    }

    Bench bench;
    clsVeltData data{bench.run};
};

/// Takes the first column for the periods, and each other one by its heading.
class ByHeading : public IImportQuestions
{
public:
    explicit ByHeading(Run& run) : m_run(run) {}
    bool GoesOnWithoutDescription() override { return true; }
    bool TakesAsConsecutive(const UnevenLabels&) override { return false; }
    bool Assigns(AsciiWizard& wizard) override
    {
        wizard.ChooseTiming(1);
        wizard.Next();
        for (int i = 2; i <= wizard.TextColumns(); ++i)
            for (int column = columns::kFirst; column <= columns::kLastUser; ++column)
                if (wizard.collFlexHeadings[static_cast<std::size_t>(i - 1)] ==
                    m_run.globals.ColumnFileNames(column))
                    wizard.Assign(i, column);
        wizard.Finish();
        return true;
    }

private:
    Run& m_run;
};

clsVeltData ReadBack(const std::string& text, Run& run)
{
    clsVeltData data(run);
    ByHeading answers(run);
    ImportText(data, "back.txt", {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, answers);
    return data;
}

/// `text` with the values from line 3 on as plain text of at most seven digits.
std::string WithSevenDigits(const std::string& text)
{
    std::string plain;
    int line = 1;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find_first_of("\t\n", at) + 1;
        const std::string word = text.substr(at, end - at);
        const bool isValue = line > 2 && word.back() == '\t';
        plain += isValue ? number_text::Plain(std::stof(word)) + "\t" : word;
        line += word.back() == '\n' ? 1 : 0;
        at = end;
    }
    return plain;
}

/// Equality to the bit, so that a zero keeps its sign.
bool SameBits(const clsVeltData& a, const clsVeltData& b, int column, int rows = clsVeltData::kRows)
{
    for (int row = 1; row <= rows; ++row)
        if (std::bit_cast<std::uint32_t>(a.DB(column, row)) !=
            std::bit_cast<std::uint32_t>(b.DB(column, row)))
            return false;
    return true;
}
} // namespace

// ---- what is written --------------------------------------------------------------------------------------

TEST_F(ExportText, WritesTheDescriptionTheHeadingsAndALineForEachPeriod)
{
    Range(1986, 1988);
    Fill(columns::TotCatchWt, {10, 20.5F, 30});
    Fill(columns::Effort, {1, 2, 3});
    EXPECT_EQ(TextOf(data), "Ling\r\nTime\tTot_Catch_wt\tEffort_\t\r\n1986\t10\t1\t\r\n"
                            "1987\t20.5\t2\t\r\n1988\t30\t3\t\r\n");
}

TEST_F(ExportText, ADataSetWithoutColumnsWritesTheTwoLinesAndTheTimeLabels)
{
    EXPECT_EQ(TextOf(data), "Ling\r\nTime\t\r\n1986\t\r\n1987\t\r\n1988\t\r\n1989\t\r\n1990\t\r\n");
    Range(1, 0);
    EXPECT_EQ(TextOf(data), "Ling\r\nTime\t\r\n");
}

TEST_F(ExportText, MissingValuesAreMinusOneWhateverTheFormatOfTheColumn)
{
    Range(1, 2);
    Fill(columns::Effort, {-1, 12345.678F});
    data.ColFormat(columns::Effort, "0.00E+00");
    EXPECT_EQ(TextOf(data), "Ling\r\nTime\tEffort_\t\r\n1\t-1\t\r\n2\t12345.678\t\r\n");
}

TEST_F(ExportText, ColumnsOfAFitAreWrittenWhenTheyArePresentAndNoOthers)
{
    Range(1, 1);
    for (int column = columns::kFirst; column <= columns::kLast; ++column)
        Fill(column, {static_cast<float>(column)});
    EXPECT_EQ(TextOf(data),
              "Ling\r\nTime\tTot_Catch_wt\tTot_Catch_Nums\tMean_Wt\tEffort_\tCatch_Wt\tCatch_Nums\t"
              "Abund_Index\tVar_Abund_Index\tRecruit_Index\tExp_CPUE\tObs_CPUE\tExp_Catch_Wt\t"
              "Exp_Catch_Nums\tPop_Wt\tPop_Nums\t\r\n"
              "1\t1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\t\r\n");
    for (int column = columns::kFirst; column < columns::PopNums; ++column)
        data.ColPresent(column, false);
    EXPECT_EQ(TextOf(data), "Ling\r\nTime\tPop_Nums\t\r\n1\t15\t\r\n");
}

TEST_F(ExportText, ValuesAreTheShortestTextOfTheirFloat)
{
    EXPECT_EQ(Written(0.1F), "0.1");
    EXPECT_EQ(Written(16777216.0F), "16777216"); // 2^24
    EXPECT_EQ(Written(1e-7F), "1E-07");
    EXPECT_EQ(Written(-0.0F), "-0");
    EXPECT_EQ(Written(Limits::max()), "3.4028235E+38");
    EXPECT_EQ(Written(Limits::denorm_min()), "1E-45");
}

TEST_F(ExportText, RowsBehindThe200thDoNotExist)
{
    Range(1, 201);
    const std::string text = TextOf(data);
    EXPECT_TRUE(text.ends_with("\r\n200\t\r\n"));
}

TEST_F(ExportText, LabelsMayBeNegative)
{
    Range(-2, 0);
    EXPECT_EQ(TextOf(data), "Ling\r\nTime\t\r\n-2\t\r\n-1\t\r\n0\t\r\n");
}

TEST_F(ExportText, TheDescriptionIsOfTheCodePageAndStaysOnItsLine)
{
    Range(1, 0);
    data.DSDesc("Thon \xC3\xA9t\xC3\xA9 \xE2\x82\xAC \xD0\xBB"); // e with acute, the euro, a Cyrillic letter
    EXPECT_EQ(TextOf(data), "Thon \xE9t\xE9 \x80 ?\r\nTime\t\r\n");
    data.DSDesc(std::string("A\r\nB\tC\0D\x7F", 9));
    EXPECT_EQ(TextOf(data), "A  B C D \r\nTime\t\r\n");
}

TEST_F(ExportText, EveryControlCharacterOfTheDescriptionIsABlankAndNothingElse)
{
    Range(1, 0);
    for (int byte = 0; byte < 128; ++byte) {
        const char c = static_cast<char>(byte);
        data.DSDesc(std::string("A") + c + "B");
        const bool control = byte < 32 || byte == 127;
        EXPECT_EQ(TextOf(data), std::string("A") + (control ? ' ' : c) + "B\r\nTime\t\r\n") << byte;
    }
}

// ---- what a text file cannot hold -------------------------------------------------------------------------

TEST_F(ExportText, AValueThatIsNoNumberIsRefusedWithItsPlace)
{
    EXPECT_EQ(
        Refusal(std::nanf("")),
        "The table cannot be exported as text: \"Effort\" of period 1988 is not a number. Enter a value "
        "there, or -1 where there is none, and export again.");
    EXPECT_NE(Refusal(Limits::infinity()).find("\"Effort\" of period 1988 is infinite."), std::string::npos);
    EXPECT_NE(Refusal(-Limits::infinity()).find("is infinite."), std::string::npos);
    EXPECT_EQ(Refusal(Limits::max()), "");
}

TEST_F(ExportText, AValueThatIsNotShownDoesNotMatter)
{
    data.DB(columns::CatchWt, 1, std::nanf("")); // of a column that is absent
    Fill(columns::Effort, {1, 2, 3, 4, 5, std::nanf("")});
    EXPECT_NO_THROW(TextOf(data)); // behind the last period
}

// ---- there and back ---------------------------------------------------------------------------------------

TEST_F(ExportText, ATextExportReadBackGivesTheSameColumnsToTheBitForEveryValueAFloatCanHold)
{
    // Columns that no conversion fills.
    const std::array<int, 3> present{columns::TotCatchWt, columns::VarAbundIndex, columns::RecruitIndex};
    std::mt19937 random(20261121);
    Range(1801, 2000);
    for (int round = 0; round < 100; ++round) {
        for (const int column : present) {
            data.ColPresent(column, true);
            for (int row = 1; row <= clsVeltData::kRows; ++row) {
                const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
                data.DB(column, row, std::isfinite(value) ? value : -1.0F);
            }
        }
        const clsVeltData back = ReadBack(TextOf(data), bench.run);
        EXPECT_EQ(back.MinTimeP(), 1801);
        EXPECT_EQ(back.TimeInts(), 200);
        for (const int column : present)
            ASSERT_TRUE(SameBits(back, data, column)) << round << " " << column;
    }
}

TEST_F(ExportText, TheEdgesOfAFloatComeBackToTheBitToo)
{
    Range(1, 12);
    Fill(columns::RecruitIndex,
         {Limits::max(), Limits::lowest(), Limits::min(), -Limits::min(), Limits::denorm_min(),
          -Limits::denorm_min(), std::nextafter(Limits::min(), 0.0F), 0.0F, -0.0F, -1.0F,
          std::nextafter(-1.0F, 0.0F), std::nextafter(1.0F, 2.0F)});
    EXPECT_TRUE(SameBits(ReadBack(TextOf(data), bench.run), data, columns::RecruitIndex));
}

TEST_F(ExportText, ASampleProjectWithoutColumnsIsExportedByteByByte)
{
    const OpenedProject opened = ReadProjectData(Sample("projects/minimal.vl3"), bench.run);
    EXPECT_EQ(TextOf(opened.data), Sample("import/minimal_export.txt"));
}

// The sample was written with seven digits, which is not enough to read the same float back: 141.46068 stands
// there as 141.4607. With its digits cut to seven the export is the sample to the byte.
TEST_F(ExportText, ASampleProjectIsExportedByteByByteButForTheDigitsBehindTheSeventh)
{
    const OpenedProject opened = ReadProjectData(Sample("projects/two_fits.vl3"), bench.run);
    const std::string text = TextOf(opened.data);
    EXPECT_NE(text.find("\r\n1974\t251.8\t141.46068\t1.78\t81\t226.6\t127.303375\t49.1\t\r\n"),
              std::string::npos);
    EXPECT_EQ(WithSevenDigits(text), Sample("import/two_fits_export.txt"));
}

TEST_F(ExportText, AProjectThatIsExportedAndReadBackIsTheSameTable)
{
    const clsVeltData project = ReadProjectData(Sample("projects/two_fits.vl3"), bench.run).data;
    const clsVeltData back = ReadBack(TextOf(project), bench.run);
    EXPECT_EQ(back.DSDesc(), project.DSDesc());
    EXPECT_EQ(back.MinTimeP(), project.MinTimeP());
    EXPECT_EQ(back.TimeInts(), project.TimeInts());
    for (int column = columns::kFirst; column <= columns::kLastUser; ++column) {
        EXPECT_EQ(back.ColPresent(column), project.ColPresent(column)) << column;
        EXPECT_TRUE(SameBits(back, project, column, project.TimeInts())) << column;
    }
}

// ---- on the disk ------------------------------------------------------------------------------------------

TEST_F(ExportText, AFullDiskOrAnUnwritableValueLeavesTheOldFileAsItWas)
{
    const auto folder = std::filesystem::path(testing::TempDir()) / "velt_export_text";
    std::filesystem::create_directories(folder);
    const std::string path = (folder / "out.txt").string();
    std::ofstream(path) << "old";
    FileCalls full = SystemFileCalls();
    int writes = 0;
    full.write = [&writes](int, const void*, std::size_t) -> ssize_t {
        ++writes;
        errno = ENOSPC;
        return -1;
    };
    try {
        data.ExportToASCIIFile(path, full);
        ADD_FAILURE() << "a full disk was not noticed";
    } catch (const WriteError& error) {
        EXPECT_EQ(error.code, ENOSPC);
        EXPECT_EQ(error.number, errors::kDevice);
    }
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(Contents(path), "old");
    Fill(columns::Effort, {std::nanf("")});
    EXPECT_THROW(data.ExportToASCIIFile(path), VeltError);
    EXPECT_EQ(Contents(path), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1); // nothing beside it
    data.ColPresent(columns::Effort, false);
    data.ExportToASCIIFile(path);
    EXPECT_EQ(Contents(path), TextOf(data));
    std::filesystem::remove_all(folder);
}

TEST_F(ExportText, AnExportIsNoChangeOfTheDataSet)
{
    data.MarkSaved();
    TextOf(data);
    EXPECT_FALSE(data.IsDirty());
    EXPECT_EQ(data.DSFName(), "");
}
