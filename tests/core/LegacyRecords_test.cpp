// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/LegacyRecords.h"

#include "support/LegacyBytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{
using namespace byte_strings;
using legacy_file::ReadProject;

/// What the refusal of `file` says; "" when it is none.
std::string Refusal(const std::string& file)
{
    try {
        ReadProject(file);
    } catch (const RecordError& error) {
        return error.place;
    }
    return "";
}

/// Titles of the scenarios in `file`, one behind the other.
std::string Titles(const std::string& file)
{
    std::string titles;
    for (const auto& scenario : ReadProject(file).scenarios)
        titles += scenario.Title + ";";
    return titles;
}

const std::string kQuota = LegacyBytes::ScenarioBlock("Quota", {1.0F, 2.5F}, 2);
constexpr std::int64_t kFirst = LegacyBytes::kFirstBlock;
} // namespace

TEST(LegacyRecords, TheHeaderIsReadFieldByField)
{
    const auto project = ReadProject(LegacyBytes("Ling", -3, 12).Counts(11, -12, 13).Bytes());
    EXPECT_EQ(project.NumLoggedRuns, 11);
    EXPECT_EQ(project.NumScens, -12);
    EXPECT_EQ(project.NumPts, 13);
    EXPECT_EQ(project.DSDesc, "Ling");
    EXPECT_EQ(project.MinTimeP, -3);
    EXPECT_EQ(project.MaxTimeP, 12);
    EXPECT_TRUE(project.scenarios.empty());
    for (const auto& column : project.columns)
        EXPECT_FALSE(column);
}

TEST(LegacyRecords, AProjectWithoutBlocksEndsWithItsDirectories)
{
    const std::string file = LegacyBytes().Bytes();
    ASSERT_EQ(file.size(), 912U);
    EXPECT_EQ(Refusal(file.substr(0, 911)), "");
    EXPECT_EQ(Refusal(file.substr(0, 910)), "Byte 911 of the file: the file ends within its directories.");
    EXPECT_EQ(Refusal(file.substr(0, 300)), "Byte 301 of the file: the file ends within its directories.");
}

TEST(LegacyRecords, AColumnIsTwoHundredFloatsAtTheOffsetAndItsByteIsItsDecimals)
{
    const auto project =
        ReadProject(LegacyBytes().Column(4, {1.5F, -1.0F}, 3).Column(15, {0.25F}, 255).Bytes());
    ASSERT_TRUE(project.columns[3] && project.columns[14]);
    EXPECT_EQ(project.columns[3]->decimals, 3);
    EXPECT_EQ(project.columns[3]->values(1), 1.5F);
    EXPECT_EQ(project.columns[3]->values(2), -1.0F);
    EXPECT_EQ(project.columns[3]->values(3), 77.5F); // the record is as the file has it
    EXPECT_EQ(project.columns[3]->values(200), 77.5F);
    EXPECT_EQ(project.columns[14]->decimals, 255);
    EXPECT_EQ(project.columns[14]->values(1), 0.25F);
    EXPECT_FALSE(project.columns[0]);
}

TEST(LegacyRecords, AnEntryOffsetOf911IsAnAbsentColumnAnd912IsAColumn)
{
    const std::string block = LegacyBytes::ColumnBlock({1.5F});
    EXPECT_FALSE(ReadProject(LegacyBytes().Block(block).ColumnEntry(1, 911, 3).Bytes()).columns[0]);
    EXPECT_TRUE(ReadProject(LegacyBytes().Block(block).ColumnEntry(1, 912, 3).Bytes()).columns[0]);
    EXPECT_FALSE(ReadProject(LegacyBytes().ColumnEntry(1, -1).Bytes()).columns[0]);
    EXPECT_FALSE(ReadProject(LegacyBytes().ColumnEntry(1, -2147483648).Bytes()).columns[0]);
}

TEST(LegacyRecords, EntriesBehindTheFifteenthColumnAreSkippedWhereverTheyPoint)
{
    LegacyBytes file;
    for (int entry = 16; entry <= 25; ++entry)
        file.ColumnEntry(entry, 2147483647, 9);
    EXPECT_EQ(Refusal(file.Bytes()), "");
}

TEST(LegacyRecords, AColumnThatEndsOrBeginsOutsideTheFileIsRefusedWithTheByte)
{
    const std::string whole = LegacyBytes().Column(2, {1.0F}).Bytes();
    EXPECT_EQ(Refusal(whole), "");
    EXPECT_EQ(Refusal(whole.substr(0, whole.size() - 1)),
              "Byte 1709 of the file: the file ends within \"values of column 2\".");
    for (const std::int64_t offset : {kFirst, std::int64_t{2147483647}}) // the second entry is at 92
        EXPECT_EQ(Refusal(LegacyBytes().ColumnEntry(2, offset).Bytes()),
                  "Byte 92 of the file: the values of column 2 begin behind the end of the file.");
}

TEST(LegacyRecords, AScenarioIsItsMarkItsValuesItsTitleAndItsType)
{
    const auto project = ReadProject(LegacyBytes().Scenario(50, kQuota).Bytes());
    ASSERT_EQ(project.scenarios.size(), 1U);
    const project_file::ScenarioRecord& scenario = project.scenarios[0];
    EXPECT_EQ(scenario.Title, "Quota");
    EXPECT_EQ(scenario.VecType, 2);
    ASSERT_EQ(scenario.Vector.size(), 201U);
    EXPECT_EQ(scenario.Vector[0], (project_file::TaggedNumber{project_file::kFloat, 1.0}));
    EXPECT_EQ(scenario.Vector[1], (project_file::TaggedNumber{project_file::kFloat, 2.5}));
    EXPECT_EQ(scenario.Vector[200], (project_file::TaggedNumber{project_file::kFloat, 0.0}));
}

TEST(LegacyRecords, ScenariosComeInTheOrderOfTheirEntries)
{
    EXPECT_EQ(Titles(LegacyBytes()
                         .Scenario(7, LegacyBytes::ScenarioBlock("Seventh"))
                         .Scenario(3, LegacyBytes::ScenarioBlock("Third"))
                         .Bytes()),
              "Third;Seventh;");
}

TEST(LegacyRecords, AScenarioEntryWithMark1IsSkippedAndWithAnyOtherMarkItIsRead)
{
    EXPECT_EQ(Titles(LegacyBytes().Scenario(1, kQuota, 1).Bytes()), "");
    EXPECT_EQ(Titles(LegacyBytes().Scenario(1, kQuota, 2).Bytes()), "Quota;");
    EXPECT_EQ(Titles(LegacyBytes().Scenario(1, kQuota, 255).Bytes()), "Quota;");
}

TEST(LegacyRecords, AScenarioEntryThatPointsPastTheEndOfTheFileIsSkipped)
{
    for (const std::int64_t offset : {kFirst, kFirst + 1, std::int64_t{2147483647}})
        EXPECT_EQ(Refusal(LegacyBytes().ScenarioEntry(1, offset).Bytes()), "") << offset;
    EXPECT_EQ(Titles(LegacyBytes().ScenarioEntry(1, 2147483647).Scenario(2, kQuota).Bytes()), "Quota;");
}

TEST(LegacyRecords, AScenarioThatBeginsInsideTheFileAndEndsOutsideIsRefused)
{
    const std::string whole = LegacyBytes().Scenario(1, kQuota).Bytes();
    for (std::size_t size = kFirst + 1; size < whole.size(); ++size)
        EXPECT_NE(Refusal(whole.substr(0, size)).find("the file ends within"), std::string::npos) << size;
    // A deleted one is not looked at.
    const std::string deleted = LegacyBytes().Scenario(1, kQuota, 1).Bytes();
    EXPECT_EQ(Refusal(deleted.substr(0, kFirst + 100)), "");
}

TEST(LegacyRecords, ABlockWithAnotherMarkIsNoScenarioAndMayEndAnywhere)
{
    for (const char* mark : {"XX", "Sh", "HS", "S\x55"})
        EXPECT_EQ(Titles(LegacyBytes().Scenario(1, mark + kQuota.substr(2)).Bytes()), "") << mark;
    EXPECT_EQ(Titles(LegacyBytes().Scenario(1, "XX").Bytes()), "");
}

TEST(LegacyRecords, AScenarioMayBeginOneByteBeforeTheFirstColumnDeliberately)
{
    LegacyBytes file;
    file.ByteBeforeBlocks('S').Block(kQuota.substr(1));
    EXPECT_EQ(Titles(file.ScenarioEntry(1, 911).Bytes()), "Quota;");
    EXPECT_EQ(Titles(file.ScenarioEntry(1, 910).Bytes()), "");
    EXPECT_EQ(Titles(file.ScenarioEntry(1, -1).Bytes()), "");
}

TEST(LegacyRecords, ALengthByteAboveTheFieldIsCutToTheField)
{
    std::string file =
        LegacyBytes(std::string(40, 'd')).Scenario(1, LegacyBytes::ScenarioBlock("15 characters..")).Bytes();
    file = Overwritten(file, 17, Raw({255}));
    file = Overwritten(file, kFirst + 2 + 804, Raw({16}));
    EXPECT_EQ(ReadProject(file).DSDesc, std::string(40, 'd'));
    EXPECT_EQ(Titles(file), "15 characters..;");
}

TEST(LegacyRecords, TextsHaveTheirLengthAreOfTheCodePageAndLoseTheBlanksAtTheirEnds)
{
    const std::string file = LegacyBytes("  Thon \xE0 l'\xE9t\xE9  ")
                                 .Scenario(1, LegacyBytes::ScenarioBlock("  Quota \x80 "))
                                 .Bytes();
    EXPECT_EQ(Titles(file), "Quota \xE2\x82\xAC;");
    EXPECT_EQ(ReadProject(file).DSDesc, "Thon \xC3\xA0 l'\xC3\xA9t\xC3\xA9");
    const std::string four = Overwritten(file, 17, Raw({6}));
    EXPECT_EQ(ReadProject(four).DSDesc, "Thon");
    EXPECT_EQ(ReadProject(Overwritten(file, 17, Raw({0}))).DSDesc, "");
}

TEST(LegacyRecords, ATextIsNotCutAtAZeroByte)
{
    const std::string file = LegacyBytes(std::string("A\0B", 3)).Bytes();
    EXPECT_EQ(ReadProject(file).DSDesc, std::string("A\0B", 3));
}

TEST(LegacyRecords, NaNAndInfinityOfAColumnAreKept)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto project = ReadProject(LegacyBytes().Column(1, {nan, infinity, -infinity}).Bytes());
    EXPECT_TRUE(std::isnan(project.columns[0]->values(1)));
    EXPECT_EQ(project.columns[0]->values(2), infinity);
    EXPECT_EQ(project.columns[0]->values(3), -infinity);
}

TEST(LegacyRecords, WhatIsNoProjectOfThisVersionIsToldByItsByte)
{
    const std::string file = LegacyBytes().Bytes();
    EXPECT_EQ(Refusal(Overwritten(file, 10, Raw({3}))), "Byte 11 of the file: the version is 3 and not 2.");
    EXPECT_EQ(Refusal(Overwritten(file, 10, Raw({0}))), "Byte 11 of the file: the version is 0 and not 2.");
    EXPECT_EQ(Refusal(Overwritten(file, 9, "X")), "Byte 1 of the file: it does not begin as a project.");
    EXPECT_EQ(Refusal(""), "Byte 1 of the file: the file ends within \"first bytes of a project\".");
    EXPECT_EQ(Refusal(file.substr(0, 10)), "Byte 11 of the file: the file ends within \"version\".");
}

namespace
{
/// Two columns, then three scenarios of which the second is deleted.
LegacyBytes AllRecords()
{
    return LegacyBytes()
        .Column(1, {1, 2, 3, 4, 5}, 1)
        .Column(4, {6, 7, 8, 9, 10})
        .Scenario(1, kQuota)
        .Scenario(2, kQuota, 1)
        .Scenario(3, LegacyBytes::ScenarioBlock("Last"));
}

/// Of a file of AllRecords that is cut to `size` bytes: whether it can be read. A block that is gone to its
/// first byte is past the end; one of which something is left is damaged.
bool CanBeRead(std::size_t size)
{
    const std::size_t first = kFirst + 2 * LegacyBytes::kColumnBlock;
    const std::size_t last = first + 2 * LegacyBytes::kScenarioBlock;
    const auto within = [size](std::size_t block) {
        return size > block && size < block + LegacyBytes::kScenarioBlock;
    };
    return size >= first && !within(first) && !within(last);
}
} // namespace

TEST(LegacyRecords, AFileThatIsCutAtAnyByteIsRefusedOrEndsBetweenScenarios)
{
    const std::string whole = AllRecords().Bytes();
    ASSERT_EQ(whole.size(), 912U + 2 * 800 + 3 * 823);
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(Refusal(whole.substr(0, size)).empty(), CanBeRead(size)) << size;
    EXPECT_EQ(Titles(whole), "Quota;Last;");
}

TEST(LegacyRecords, AFileWithAnyByteChangedIsRefusedInASentenceOrRead)
{
    const std::string whole = AllRecords().Bytes();
    int read = 0, refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string file = whole;
            file[at] = static_cast<char>(file[at] ^ change);
            const std::string refusal = Refusal(file); // any other exception fails the test
            if (refusal.empty()) {
                EXPECT_LE(ReadProject(file).scenarios.size(), 3U);
                ++read;
            } else {
                EXPECT_EQ(refusal.find("Byte "), 0U) << at;
                ++refused;
            }
        }
    EXPECT_GT(read, 3 * 2400); // values of columns and scenarios are as good as others
    EXPECT_GE(refused, 3 * 11);
}

TEST(LegacyRecords, AllFiftyEntriesMayPointAtOneBlock)
{
    LegacyBytes file;
    file.Block(kQuota);
    for (int entry = 1; entry <= 50; ++entry)
        file.ScenarioEntry(entry, kFirst);
    EXPECT_EQ(ReadProject(file.Bytes()).scenarios.size(), 50U);
}
