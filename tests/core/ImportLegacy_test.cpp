// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ImportLegacy.h"

#include "data/ProjectData.h"
#include "data/clsVeltData.h"
#include "support/LegacyBytes.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace
{
using namespace byte_strings;
const std::string kSamples = VELT_TEST_SAMPLES "/legacy/";

std::string Contents(const std::string& name)
{
    std::ifstream file(kSamples + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A data set into which projects of version 2.0 are imported; something else stands in it before.
class ImportLegacyFile : public testing::Test
{
protected:
    ImportLegacyFile()
    {
        data.DSDesc("Something else");
        data.DSFName("else.vl3");
        data.AddColumn(columns::RecruitIndex);
        data.MaxTimeP(9);
        data.TimeInts(10);
    }

    void Import(const std::string& file)
    {
        ImportLegacy(data, "old.vl2", file, [this] {
            ++asked;
            return goesOn;
        });
    }
    void Import(const LegacyBytes& file) { Import(file.Bytes()); }

    /// Number and words of the failure; 0 when there is none.
    std::pair<std::uint32_t, std::string> Failure(const std::string& file)
    {
        try {
            Import(file);
        } catch (const VeltError& error) {
            return {error.number, error.description};
        }
        return {0, ""};
    }

    /// The data set is as new.
    bool IsNew() const
    {
        return data.Table() == DataTable() && data.DSDesc().empty() && data.DSFName().empty() &&
               !data.IsDirty() && data.NumProjScenarios() == 0 && data.NumLoggedRuns() == 0 &&
               data.NumScens() == 0 && data.NumPts() == 0;
    }

    /// A scenario of these values.
    static LegacyBytes Of(std::initializer_list<float> vector)
    {
        return LegacyBytes().Scenario(1, LegacyBytes::ScenarioBlock("Quota", vector, 1));
    }
    std::int32_t Element(int i) const { return data.ProjScenario("Quota")->Vector(i); }

    Bench bench;
    clsVeltData data{bench.run};
    bool goesOn = true;
    int asked = 0;
};
constexpr std::uint32_t kCorrupted = 0x80040000U + 2258U;
} // namespace

// ---- what comes across ------------------------------------------------------------------------------------

TEST_F(ImportLegacyFile, TheHeaderTellsNameRangeAndCounters)
{
    Import(LegacyBytes("Ling", 1986, 1990).Counts(11, 12, 13));
    EXPECT_EQ(data.DSFName(), "old.vl2");
    EXPECT_EQ(data.DSDesc(), "Ling");
    EXPECT_EQ(data.MinTimeP(), 1986);
    EXPECT_EQ(data.MaxTimeP(), 1990);
    EXPECT_EQ(data.TimeInts(), 5);
    EXPECT_EQ(data.NAPoints(), 5);
    EXPECT_EQ(data.NDPoints(), 6);
    EXPECT_EQ(data.NNtPoints(), 5);
    EXPECT_EQ(data.OrigNAPoints(), 5);
    EXPECT_EQ(data.NumLoggedRuns(), 11); // merely copied: the runs themselves are not read
    EXPECT_EQ(data.NumScens(), 12);
    EXPECT_EQ(data.NumPts(), 13);
    EXPECT_EQ(data.NumLoggedFits(), 0);
    EXPECT_TRUE(data.IsDirty());
    EXPECT_EQ(asked, 0);
}

TEST_F(ImportLegacyFile, RowsOfTheRangeAreIncludedAndToggledInWhateverTheirEffort)
{
    Import(LegacyBytes().Column(columns::Effort, {1, 0, -1, 4, 5}));
    for (int row = 1; row <= 5; ++row)
        EXPECT_TRUE(data.Included(row) && data.ToggledIn(row)) << row;
    EXPECT_FALSE(data.Included(6));
}

TEST_F(ImportLegacyFile, AColumnIsPresentWithItsDecimalsAndItsFormatStaysAsNew)
{
    Import(LegacyBytes().Column(columns::Effort, {1.5F, 2, 3, 4, 5.5F}, 3));
    EXPECT_TRUE(data.ColPresent(columns::Effort));
    EXPECT_EQ(data.DecPlaces(columns::Effort), 3);
    EXPECT_EQ(data.ColFormat(columns::Effort), "0");
    EXPECT_EQ(data.Effort(1), 1.5F);
    EXPECT_EQ(data.Effort(5), 5.5F);
    EXPECT_FALSE(data.ColPresent(columns::RecruitIndex)); // of what stood there before
}

TEST_F(ImportLegacyFile, RowsBehindTheRangeBecomeMissing)
{
    Import(LegacyBytes().Column(columns::Effort, {1, 2, 3, 4, 5, 6, 7}));
    for (int row = 6; row <= 200; ++row)
        EXPECT_EQ(data.Effort(row), -1.0F) << row;
}

TEST_F(ImportLegacyFile, AColumnOfFitsIsTakenLikeAnyOther)
{
    Import(LegacyBytes().Column(columns::PopNums, {9, 8, 7, 6, 5}));
    EXPECT_TRUE(data.ColPresent(columns::PopNums));
    EXPECT_EQ(data.PopNums(2), 8.0F);
}

TEST_F(ImportLegacyFile, ConversionsAreNotRun)
{
    Import(LegacyBytes().Column(columns::AbundIndex, {1, 2, 3, 4, 5}));
    EXPECT_FALSE(data.ColPresent(columns::CatchWt));
    EXPECT_FALSE(data.ColPresent(columns::Effort));
    data.DoColumnConversions(); // as the end of Edit Mode does
    EXPECT_TRUE(data.ColPresent(columns::CatchWt));
}

TEST_F(ImportLegacyFile, NaNAndInfinityAreKept)
{
    const float infinity = std::numeric_limits<float>::infinity();
    Import(LegacyBytes().Column(columns::Effort, {std::nanf(""), -infinity}));
    EXPECT_TRUE(std::isnan(data.Effort(1)));
    EXPECT_EQ(data.Effort(2), -infinity);
}

// ---- the range --------------------------------------------------------------------------------------------

TEST_F(ImportLegacyFile, ARangeOf201PeriodsKeepsItsNumberAndRowsStopAt200)
{
    Import(LegacyBytes("Ling", 1, 201).Column(columns::Effort, {1}));
    EXPECT_EQ(data.TimeInts(), 201);
    EXPECT_EQ(data.NDPoints(), 202);
    EXPECT_EQ(data.ShownRows(), 200);
    EXPECT_TRUE(data.Included(200));
    EXPECT_EQ(data.Effort(200), 77.5F);
}

TEST_F(ImportLegacyFile, ARangeBelowOnePeriodIsATableWithoutRows)
{
    Import(LegacyBytes("Ling", 5, 4).Column(columns::Effort, {1}));
    EXPECT_EQ(data.TimeInts(), 0);
    EXPECT_EQ(data.ShownRows(), 0);
    EXPECT_EQ(data.Effort(1), -1.0F);
    Import(LegacyBytes("Ling", 5, -5));
    EXPECT_EQ(data.TimeInts(), -9);
}

TEST_F(ImportLegacyFile, PeriodsAreCountedIn32Bits)
{
    Import(LegacyBytes("Ling", -32768, 32767));
    EXPECT_EQ(data.TimeInts(), 65536);
    EXPECT_EQ(data.NDPoints(), 65537);
}

// ---- scenarios --------------------------------------------------------------------------------------------

TEST_F(ImportLegacyFile, ScenariosStandUnderTheirTitles)
{
    Import(LegacyBytes()
               .Scenario(1, LegacyBytes::ScenarioBlock("Quota", {7.0F}, 1))
               .Scenario(2, LegacyBytes::ScenarioBlock("Effort", {}, 0)));
    ASSERT_EQ(data.NumProjScenarios(), 2);
    EXPECT_EQ(data.ProjScenario(1)->Title(), "Quota");
    EXPECT_EQ(data.ProjScenario("Quota")->VecType(), vec_type::kTotCatchWt);
    EXPECT_EQ(data.ProjScenario("Quota")->Vector(1), 7);
    EXPECT_EQ(data.ProjScenario("Quota")->Vector(201), 0);
    EXPECT_EQ(data.ProjScenario("Effort")->VecType(), vec_type::kEffort);
}

TEST_F(ImportLegacyFile, ValuesOfAScenarioAreRoundedTiesToEven)
{
    Import(Of({12.5F, 13.5F, -0.5F, 12.75F, 2147483520.0F, -2147483648.0F}));
    EXPECT_EQ(Element(1), 12);
    EXPECT_EQ(Element(2), 14);
    EXPECT_EQ(Element(3), 0);
    EXPECT_EQ(Element(4), 13);
    EXPECT_EQ(Element(5), 2147483520); // the largest float below 2^31
    EXPECT_EQ(Element(6), -2147483647 - 1);
}

TEST_F(ImportLegacyFile, AValueOfAScenarioBeyond32BitsOrThatIsNoNumberFailsTheImport)
{
    const auto [number, words] = Failure(Of({0, 2147483648.0F}).Bytes());
    EXPECT_EQ(number, 6U);
    EXPECT_EQ(words, "Overflow: value 2 of the scenario \"Quota\" does not fit 32 bits.");
    EXPECT_TRUE(IsNew());
    for (const float value : {1e30F, -2147483904.0F, std::numeric_limits<float>::infinity(), std::nanf("")})
        EXPECT_NE(Failure(Of({value}).Bytes()).first, 0U) << value;
    EXPECT_TRUE(IsNew());
}

TEST_F(ImportLegacyFile, EqualTitlesAreNumbered)
{
    LegacyBytes file;
    file.Block(LegacyBytes::ScenarioBlock("Quota"));
    for (int entry = 1; entry <= 50; ++entry)
        file.ScenarioEntry(entry, LegacyBytes::kFirstBlock);
    Import(file);
    ASSERT_EQ(data.NumProjScenarios(), 50);
    EXPECT_EQ(data.ProjScenario(1)->Title(), "Quota");
    EXPECT_EQ(data.ProjScenario(2)->Title(), "Quota (2)");
    EXPECT_EQ(data.ProjScenario(50)->Title(), "Quota (50)");
}

TEST_F(ImportLegacyFile, WhatWasImportedIsTheSameAfterAProjectOfThisVersionWasWrittenAndRead)
{
    Import(LegacyBytes("Thon \xE9t\xE9", 1986, 1990)
               .Counts(11, 1, 13)
               .Column(columns::Effort, {1.5F, 2, 3, 4, 5}, 1)
               .Column(columns::TotCatchWt, {10, 20, 30, -1, 50})
               .Scenario(9, LegacyBytes::ScenarioBlock("Quota", {0, 0, 0, 0, 0, 12.5F}, 2)));
    project_file::Project project = ProjectOf(data);
    const clsVeltData again = ReadProjectData(project_file::WriteProject(project, {}), bench.run).data;
    EXPECT_EQ(again.DSDesc(), "Thon \xC3\xA9t\xC3\xA9");
    EXPECT_EQ(again.TimeInts(), 5);
    EXPECT_EQ(again.NumLoggedRuns(), 11);
    EXPECT_EQ(again.NumPts(), 13);
    EXPECT_EQ(again.Effort(), data.Effort());
    EXPECT_EQ(again.TotCatchWt(), data.TotCatchWt());
    EXPECT_EQ(again.ProjScenario("Quota")->Vector(6), 12);
    EXPECT_EQ(again.ProjScenario("Quota")->VecType(), 2);
}

// ---- what is refused --------------------------------------------------------------------------------------

TEST_F(ImportLegacyFile, ADamagedFileIsToldWithTheByteAndTheDataSetIsAsNew)
{
    const std::string file = LegacyBytes().Column(columns::Effort, {1}).Bytes();
    EXPECT_EQ(
        Failure(file.substr(0, 1000)),
        std::pair(kCorrupted, std::string("Invalid or Corrupted *.vl2 File.\nByte 1001 of the file: the "
                                          "file ends within \"values of column 4\".")));
    EXPECT_TRUE(IsNew());
    EXPECT_EQ(Failure("").first, kCorrupted);
}

TEST_F(ImportLegacyFile, AMissingDescriptionIsAskedAboutAndEveryAnswerButYesEndsTheImport)
{
    for (const char* blanks : {"", "   "}) {
        asked = 0;
        goesOn = true;
        Import(LegacyBytes(blanks));
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(data.DSDesc(), "");
        EXPECT_EQ(data.TimeInts(), 5);
        goesOn = false;
        EXPECT_EQ(Failure(LegacyBytes(blanks).Bytes()).first, 0x80040000U + 2263U);
        EXPECT_TRUE(IsNew());
    }
}

TEST_F(ImportLegacyFile, ACutFileLeavesADataSetThatIsWholeOrAsNew)
{
    const std::string whole = LegacyBytes()
                                  .Column(columns::Effort, {1, 2, 3, 4, 5})
                                  .Scenario(1, LegacyBytes::ScenarioBlock("Quota"))
                                  .Bytes();
    int read = 0;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const bool failed = Failure(whole.substr(0, size)).first != 0;
        EXPECT_EQ(failed, IsNew()) << size;
        if (failed)
            continue;
        ++read;
        EXPECT_EQ(data.Effort(5), 5.0F);
        EXPECT_EQ(data.NumProjScenarios(), 0);
    }
    EXPECT_EQ(read, 1); // without a byte of the scenario
}

TEST_F(ImportLegacyFile, AFileWithAnyByteChangedLeavesADataSetThatIsSaneOrAsNew)
{
    const std::string whole = LegacyBytes()
                                  .Column(columns::Effort, {1, 2, 3, 4, 5})
                                  .Scenario(1, LegacyBytes::ScenarioBlock("Quota"))
                                  .Bytes();
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string file = whole;
            file[at] = static_cast<char>(file[at] ^ change);
            const auto [number, words] = Failure(file);
            ASSERT_EQ(number != 0, IsNew()) << at;
            ASSERT_TRUE(number == 0 || words.size() > 20) << at;
            ASSERT_EQ(number == 0 ? data.NDPoints() : 1, data.TimeInts() + 1) << at;
        }
}

// ---- sample files -----------------------------------------------------------------------------------------

// The values were read out of the file with a hexadecimal dump: 251.8 is cd cc 7b 43 at offset 912.
TEST_F(ImportLegacyFile, TheSampleOfVersion2IsReadAsItsBytesSay)
{
    Import(Contents("old_good.vl2"));
    EXPECT_EQ(data.DSDesc(), "Scallop survey 1970-89 (old project)");
    EXPECT_EQ(data.MinTimeP(), 1970);
    EXPECT_EQ(data.TimeInts(), 20);
    EXPECT_EQ(data.NumLoggedRuns(), 2);
    EXPECT_EQ(data.NumScens(), 2);
    EXPECT_EQ(data.NumPts(), 4);
    const std::array<bool, 15> present{true, false, true, true, true, false, false, false, true};
    const std::array<int, 15> decimals{1, 0, 2, 0, 1, 0, 0, 0, 1}; // 7 and 8 point at 911 and below 0
    for (int column = 1; column <= 15; ++column) {
        EXPECT_EQ(data.ColPresent(column), present.at(static_cast<std::size_t>(column - 1))) << column;
        EXPECT_EQ(data.DecPlaces(column), decimals.at(static_cast<std::size_t>(column - 1))) << column;
    }
    EXPECT_EQ(std::bit_cast<std::uint32_t>(data.TotCatchWt(1)), 0x437BCCCDU);
    EXPECT_EQ(data.TotCatchWt(20), 503.2F);
    EXPECT_EQ(data.MeanWt(20), 1.52F);
    EXPECT_EQ(data.MeanWt(21), -1.0F); // 77.5 in the file
    EXPECT_EQ(data.Effort(20), 693.0F);
    EXPECT_EQ(data.CatchWt(1), 226.6F);
    EXPECT_EQ(data.RecruitIndex(20), 50.2F);
    // Entries 2 to 5 are deleted, behind the end, of another mark and before the data.
    ASSERT_EQ(data.NumProjScenarios(), 2);
    EXPECT_EQ(data.ProjScenario(1)->Title(), "Status quo");
    EXPECT_EQ(data.ProjScenario(2)->Title(), "Quota 15 chars.");
    EXPECT_EQ(data.ProjScenario(2)->VecType(), vec_type::kTotCatchWt);
}

TEST_F(ImportLegacyFile, TheSampleWithAnotherVersionByteIsRefusedAtThatByte)
{
    EXPECT_EQ(Failure(Contents("bad_version3.vl2")),
              std::pair(kCorrupted, std::string("Invalid or Corrupted *.vl2 File.\nByte 11 of the file: the "
                                                "version is 3 and not 2.")));
}

TEST_F(ImportLegacyFile, HostileFilesAreRefusedInASentenceOrReadAsSaneData)
{
    int files = 0;
    for (const auto& entry : nlohmann::json::parse(Contents("hostile/manifest.json"))) {
        const auto name = entry.at("file").get<std::string>();
        ASSERT_TRUE(std::filesystem::exists(kSamples + "hostile/" + name)) << name;
        const auto [number, words] = Failure(Contents("hostile/" + name));
        EXPECT_EQ(number == 0 ? "read" : "refused", entry.at("end").get<std::string>()) << name << words;
        EXPECT_EQ(data.NumProjScenarios(), entry.at("scenarios").get<int>()) << name;
        EXPECT_EQ(number != 0, IsNew()) << name;
        ++files;
    }
    EXPECT_EQ(files, 19);
}

// ---- from the disk ----------------------------------------------------------------------------------------

TEST_F(ImportLegacyFile, AFileIsKnownByItsNameAndItsBytes)
{
    data.ImportVELT2File(kSamples + "old_good.vl2");
    EXPECT_EQ(data.DSFName(), kSamples + "old_good.vl2");
    EXPECT_EQ(data.TimeInts(), 20);

    const auto folder = std::filesystem::path(testing::TempDir()) / "velt_import_legacy";
    std::filesystem::create_directories(folder);
    const auto refusal = [&](const char* name, const std::string& bytes) {
        const std::string path = (folder / name).string();
        std::ofstream(path, std::ios::binary) << bytes;
        try {
            data.ImportVELT2File(path);
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, kCorrupted);
            EXPECT_EQ(error.source, "clsVeltDATA");
            return error.description.substr(error.description.find('\n') + 1);
        }
        return std::string();
    };
    const std::string good = Contents("old_good.vl2");
    EXPECT_EQ(refusal("upper.VL2", good), "");
    EXPECT_EQ(refusal("other.vl3", good), "Its name does not end in .vl2.");
    EXPECT_TRUE(IsNew());
    std::filesystem::resize_file(folder / "upper.VL2", (std::uintmax_t{64} << 20U) + 1);
    EXPECT_THROW(data.ImportVELT2File((folder / "upper.VL2").string()), VeltError);
    EXPECT_TRUE(IsNew());
    std::filesystem::remove_all(folder);
}
