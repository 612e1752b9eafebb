// SPDX-License-Identifier: GPL-3.0-or-later
// What single fields of the records of a project may hold.
#include "core/ProjectRecordBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace
{
using namespace project_record_bytes;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
} // namespace

// ---- header and counts ------------------------------------------------------------------------------------

TEST(ProjectRecords, TheCountsOfTheDataRecordDriveTheReaderAndThoseOfTheHeaderAreCarried)
{
    const std::string file = ProjectHeader("", 1, 3, 2147483647, -5, 9) + AbsentColumns(15) + Counts(1, 1) +
                             Scenario("A", VectorOfZeros(), 0) + FitIndex("B", 1, 1, 1, 1);
    const Project read = ReadProject(file);
    EXPECT_EQ(read.scenarios.size(), 1U);
    EXPECT_EQ(read.fits.size(), 1U);
    EXPECT_EQ(read.header.NumLoggedRuns, 2147483647);
    EXPECT_EQ(read.header.NumScens, -5);
}

TEST(ProjectRecords, CountsThatTheRestOfTheFileCannotHoldAreRefused)
{
    const auto refusal = [](std::int64_t fits, std::int64_t scenarios) {
        return RefusalOfProject(ProjectHeader("", 1, 3) + AbsentColumns(15) + Counts(fits, scenarios) +
                                Zeros(435));
    };
    EXPECT_EQ(refusal(2147483647, 0), "\"number of logged fits\" is 2147483647.");
    EXPECT_EQ(refusal(-1, 0), "\"number of logged fits\" is -1.");
    EXPECT_EQ(refusal(5, 0), "\"number of logged fits\" is 5."); // 5 * 88 = 440
    EXPECT_EQ(refusal(0, 2147483647), "\"number of scenarios\" is 2147483647.");
    EXPECT_EQ(refusal(0, -2147483648), "\"number of scenarios\" is -2147483648.");
    EXPECT_EQ(refusal(0, 1), "\"number of scenarios\" is 1."); // the least is 30 + 201 * 2 + 4 = 436
}

TEST(ProjectRecords, AScenarioOfEmptyValuesIsTheShortestThereIs)
{
    const std::string shortest = Scenario("", Times(201, Empty()), 2);
    EXPECT_EQ(shortest.size(), 436U);
    const Project read = ReadProject(ProjectHeader("", 1, 3) + AbsentColumns(15) + Counts(0, 1) + shortest);
    ASSERT_EQ(read.scenarios.size(), 1U);
    EXPECT_EQ(read.scenarios[0].VecType, 2);
}

TEST(ProjectRecords, TheUnusedBytesOfTheHeaderAreAnythingWhenReadAndZerosWhenWritten)
{
    const std::string file = Overwritten(ProjectBytes(), 71, std::string(48, '\xAA'));
    EXPECT_EQ(RefusalOfProject(file), "");
    EXPECT_EQ(Written(ReadProject(file), {"body"}), ProjectBytes());
}

TEST(ProjectRecords, MagicAndVersionAreNotLookedAtAgain) // whoever opens a file has asked for its type
{
    EXPECT_EQ(RefusalOfProject(Overwritten(ProjectBytes(), 0, Zeros(11))), "");
}

TEST(ProjectRecords, BytesBehindTheRecordsAreLeftAlone)
{
    EXPECT_EQ(RefusalOfProject(ProjectBytes() + Zeros(88)), "");
    EXPECT_EQ(RefusalOfBody(BodyBytes(5) + "more", 5), "");
}

// ---- texts ------------------------------------------------------------------------------------------------

TEST(ProjectRecords, TextsAreTrimmedButNotCutAtAZeroByte)
{
    std::string file = ProjectHeader("  A" + Zeros(1) + "B ", 1, 3) + I16(-1) + Text("  0.0 ", 20) +
                       Times(200, F32(0.0F)) + AbsentColumns(14) + Counts(0, 1);
    const Project read = ReadProject(file + Scenario(" T" + Zeros(2) + "U", VectorOfZeros(), 0));
    EXPECT_EQ(read.header.DSDesc, "A" + Zeros(1) + "B");
    EXPECT_EQ(read.data.columns[0]->ColFormat, "0.0");
    EXPECT_EQ(read.scenarios[0].Title, "T" + Zeros(2) + "U");
}

TEST(ProjectRecords, AFitNameKeepsTheBlanksBeforeIt)
{
    const std::string file =
        ProjectHeader("", 1, 3) + AbsentColumns(15) + Counts(1, 0) + FitIndex("  A", 1, 1, 246, 246);
    const Project read = ReadProject(file);
    EXPECT_EQ(read.fits[0].FitName, Text("  A", 50));
    EXPECT_EQ(Written(read, {""}), file); // 119 + 30 + 8 + 88 = 245 bytes
}

TEST(ProjectRecords, TextsAreCutToTheirWidths)
{
    Project project = TheProject();
    project.header.DSDesc = std::string(40, 'd') + "lost";
    project.data.columns[3]->ColFormat = std::string(20, 'f') + "lost";
    project.scenarios[0].Title = std::string(30, 't') + "lost";
    project.fits[0].FitName = std::string(50, 'n') + "lost";
    const Project read = ReadProject(Written(project, {"body"}));
    EXPECT_EQ(read.header.DSDesc, std::string(40, 'd'));
    EXPECT_EQ(read.data.columns[3]->ColFormat, std::string(20, 'f'));
    EXPECT_EQ(read.scenarios[0].Title, std::string(30, 't'));
    EXPECT_EQ(read.fits[0].FitName, std::string(50, 'n'));
    EXPECT_EQ(read.header.MaxTimeP, 1990); // what follows them stands where it did
}

TEST(ProjectRecords, ADescriptionHasAQuestionMarkForWhatTheCodePageLacks)
{
    Project project;
    project.header.DSDesc = "\u0141osos, S\u00F8r";
    EXPECT_EQ(ReadProject(Written(project, {})).header.DSDesc, "?osos, S\u00F8r");
}

// ---- values -----------------------------------------------------------------------------------------------

TEST(ProjectRecords, AnyNonzeroBooleanIsTrue)
{
    for (const std::int64_t flag : {1, -2, 256, -32768}) {
        std::string file = ProjectBytes();
        file = Overwritten(file, 119 + 6, I16(flag));              // column 4 follows
        file = Overwritten(file, file.size() - 4 - 88, I16(flag)); // Deleted
        const Project read = ReadProject(file);
        EXPECT_TRUE(read.data.columns[3].has_value()) << flag;
        EXPECT_TRUE(read.fits[0].Deleted) << flag;
        const std::string body = Overwritten(BodyBytes(5), kLagAt + 2 + 4 + 4, I16(flag));
        EXPECT_TRUE(ReadBody(body, 5).model.IsBSDone) << flag;
    }
}

TEST(ProjectRecords, WhatIsNoNumberIsKeptToTheBit)
{
    const std::string values = Raw({1, 0, 0xA0, 0x7F}) + Raw({2, 0, 0xC0, 0xFF}) + F32(kInfinity) +
                               F32(-kInfinity) + F32(-0.0F) + Times(195, F32(1e-45F));
    const std::string file =
        ProjectHeader("", 1, 3) + I16(-1) + Text("0", 20) + values + AbsentColumns(14) + Counts(0, 0);
    const Project read = ReadProject(file);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(read.data.columns[0]->values(1)), 0x7FA00001U);
    EXPECT_EQ(read.data.columns[0]->values(3), kInfinity);
    EXPECT_EQ(Written(read, {}), file);
}

TEST(ProjectRecords, EstimatesThatAreNoNumbersAreKept)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::string body = Overwritten(BodyBytes(5), 0, F64(nan) + F64(-HUGE_VAL));
    body = Overwritten(body, body.size() - 4, F32(kInfinity));
    EXPECT_EQ(WriteBody(ReadBody(body, 5), 5), body);
}

TEST(ProjectRecords, NumbersOfOpenTypeAreReadFromEachTypeOfNumberAndWrittenAsDoubles)
{
    const std::string behind = BodyBytes(5).substr(kQValueAt + 10);
    const auto withQ = [&](const std::string& q) { return BodyBytes(5).substr(0, kQValueAt) + q + behind; };
    for (const auto& [bytes, value] : {std::pair{Empty(), 0.0},
                                       {Tagged16(-7), -7.0},
                                       {Tagged32(70000), 70000.0},
                                       {TaggedFloat(0.5F), 0.5},
                                       {TaggedDouble(1e300), 1e300}}) {
        const Body read = ReadBody(withQ(bytes), 5);
        EXPECT_EQ(read.model.QValue, value);
        EXPECT_EQ(WriteBody(read, 5), withQ(TaggedDouble(value)));
    }
}

TEST(ProjectRecords, EstimatesOfTheRecruitmentIndexModelAreReadFromEachTypeOfNumber)
{
    const std::string behind = BodyBytes(2).substr(40);
    const std::string body = Tagged16(3) + Empty() + TaggedFloat(0.25F) + Tagged32(-9) + behind;
    const Body read = ReadBody(body, 2);
    EXPECT_EQ(read.model.FinalEsts, (std::array<double, 4>{3.0, 0.0, 0.25, -9.0}));
    EXPECT_EQ(WriteBody(read, 2),
              TaggedDouble(3.0) + TaggedDouble(0.0) + TaggedDouble(0.25) + TaggedDouble(-9.0) + behind);
}

TEST(ProjectRecords, UnknownTypesOfValuesAreRefused)
{
    for (const std::int64_t tag : {1, 6, 7, 8, 9, 11, 12, 13, 8192, 8204, -1}) {
        const std::string vector = I16(tag) + Zeros(8) + Times(200, Tagged16(0));
        const std::string said = RefusalOfProject(ProjectHeader("", 1, 3) + AbsentColumns(15) + Counts(0, 1) +
                                                  Scenario("A", vector, 0));
        EXPECT_EQ(said, "\"Vector\" has the unknown type " + std::to_string(tag) + ".");
        EXPECT_EQ(RefusalOfBody(Overwritten(BodyBytes(5), kQValueAt, I16(tag)), 5),
                  "\"QValue\" has the unknown type " + std::to_string(tag) + ".");
    }
}

TEST(ProjectRecords, DatesThatAreNoDatesAreRefused)
{
    for (const std::int64_t tag : {0, 5, 8, 8192}) {
        std::string file = ProjectBytes();
        EXPECT_EQ(RefusalOfProject(Overwritten(file, file.size() - 4 - 28, I16(tag))),
                  "\"TheDate\" is no date.");
        EXPECT_EQ(RefusalOfProject(Overwritten(file, file.size() - 4 - 18, I16(tag))),
                  "\"TheTime\" is no date.");
    }
}

TEST(ProjectRecords, ElementsOfAVectorStayOfTheTypeThatTheyHad)
{
    const std::string vector =
        Tagged32(5) + Tagged16(5) + Empty() + TaggedFloat(0.5F) + TaggedDouble(0.1) + Times(196, Tagged16(0));
    const std::string file =
        ProjectHeader("", 1, 3, 0, 1) + AbsentColumns(15) + Counts(0, 1) + Scenario("A", vector, 0);
    EXPECT_EQ(Written(ReadProject(file), {}), file);
}

// ---- arrays -----------------------------------------------------------------------------------------------

namespace
{
/// The body of a Schaefer fit with `weights` in place of the array of its weights, which is of 18 bytes.
std::string WithWeights(const std::string& weights)
{
    return BodyBytes(5).substr(0, kWeightsAt) + weights + BodyBytes(5).substr(kWeightsAt + 18);
}
} // namespace

TEST(ProjectRecords, AnArrayThatWasNeverSizedIsEmptyOrHasNoElementsAndIsWrittenEmpty)
{
    for (const std::string& weights : {Empty(), ArrayOf(0, "")}) {
        const Body read = ReadBody(WithWeights(weights), 5);
        EXPECT_EQ(read.model.weights, std::nullopt);
        EXPECT_EQ(read.model.unnamed26, 2626);
        EXPECT_EQ(WriteBody(read, 5), WithWeights(Empty()));
    }
}

TEST(ProjectRecords, AnArrayOf200ElementsIsRead)
{
    const Body read = ReadBody(WithWeights(ArrayOf(200, Times(200, Tagged16(1)))), 5);
    EXPECT_EQ(read.model.weights->size(), 200U);
    EXPECT_EQ(read.model.weights->back(), (TaggedNumber{kInt16, 1.0}));
}

TEST(ProjectRecords, AnArrayOfMoreElementsThanAreLeftOrThanPeriodsIsRefused)
{
    for (const std::int64_t count : {201LL, 65536LL, 536870912LL, 2147483647LL, -1LL, -2147483648LL})
        EXPECT_EQ(RefusalOfBody(WithWeights(ArrayOf(count, "")), 5),
                  "\"WeightVec\" asks for " + std::to_string(count) + " elements.");
    const std::string cut = BodyBytes(5).substr(0, kWeightsAt) + ArrayOf(3, Zeros(5));
    EXPECT_EQ(RefusalOfBody(cut, 5), "\"WeightVec\" asks for 3 elements.");
}

TEST(ProjectRecords, NestedArraysAndArraysOfOtherThanOneDimensionAreRefused)
{
    for (const std::int64_t dimensions : {0, 2, 60, -1})
        EXPECT_EQ(RefusalOfBody(WithWeights(I16(8204) + I16(dimensions) + I32(1) + I32(1) + Zeros(40)), 5),
                  "\"WeightVec\" is no array of one dimension.");
    EXPECT_EQ(RefusalOfBody(WithWeights(ArrayOf(1, ArrayOf(1, Empty()))), 5),
              "\"WeightVec\" has the unknown type 8204.");
    EXPECT_EQ(RefusalOfBody(WithWeights(Tagged16(1)), 5), "\"WeightVec\" is no array of one dimension.");
}

TEST(ProjectRecords, TheLowerBoundOfAnArrayDoesNotMatter)
{
    for (const std::int64_t bound : {0LL, 2147483647LL, -2147483648LL}) {
        const Body read = ReadBody(WithWeights(I16(8204) + I16(1) + I32(1) + I32(bound) + Tagged16(3)), 5);
        EXPECT_EQ(read.model.weights, (TaggedArray{{kInt16, 3.0}}));
    }
}

TEST(ProjectRecords, ArraysAreNamedAsTheirClassNamesThem)
{
    const std::string noArray = "\" is no array of one dimension.";
    const auto changed = [](std::int32_t model, std::size_t behind) {
        const std::string body = BodyBytes(model);
        const std::size_t modelEnds = ModelBytes(model).size();
        return RefusalOfBody(Overwritten(body, modelEnds - behind, I16(9)), model);
    };
    // Behind the weights: 18 bytes of theirs, 800 and the times of 34 bytes and four more.
    EXPECT_EQ(changed(1, 34 + 4 + 800 + 18), "\"InitWeight" + noArray);
    EXPECT_EQ(changed(6, 34 + 4 + 800 + 18), "\"WeightVec" + noArray);
    EXPECT_EQ(changed(3, 34 + 4), "\"InitX2" + noArray);
    EXPECT_EQ(changed(4, 34 + 4), "\"TimeIdx" + noArray);
}

// ---- fields that differ -----------------------------------------------------------------------------------

TEST(ProjectRecords, AZThatNothingReadsIsKeptAndWrittenBack)
{
    const std::string withZ = EstimateBytes(1) + F32(0.75F) + F32(0.25F) + I16(4) + F32(0.875F);
    const std::string behind = BodyBytes(1).substr(withZ.size() + 2);
    for (const std::string& z : {Tagged16(3), Tagged32(4), TaggedFloat(0.5F), TaggedDouble(0.1)}) {
        const std::string body = withZ + z + behind;
        EXPECT_EQ(WriteBody(ReadBody(body, 1), 1), body);
    }
}

TEST(ProjectRecords, ABodyOfAnUnknownModelIsRefused)
{
    for (const std::int32_t model : {0, 7, -1, 2147483647})
        EXPECT_EQ(RefusalOfBody(BodyBytes(5), model),
                  "the fit is of the unknown model " + std::to_string(model) + ".");
}

TEST(ProjectRecords, NumbersOfReplicatesOutside0To1000AreRefused)
{
    const auto refusal = [](std::int64_t count) {
        return RefusalOfBody(Overwritten(BodyBytes(5), kNumBootStrapsAt, I32(count)), 5);
    };
    EXPECT_EQ(refusal(0), "");
    EXPECT_EQ(refusal(1000), "");
    EXPECT_EQ(refusal(1001), "\"NumBootStraps\" is 1001.");
    EXPECT_EQ(refusal(-1), "\"NumBootStraps\" is -1.");
    EXPECT_EQ(refusal(2147483647), "\"NumBootStraps\" is 2147483647.");
}

TEST(ProjectRecords, ReplicatesOfOtherTypesAreWrittenAsFloats)
{
    const std::string front = ModelBytes(5) + DataBytes();
    const std::string rest = Times(7996, Empty());
    const std::string body =
        front + Tagged16(7) + Tagged32(-8) + TaggedDouble(0.1) + TaggedFloat(0.5F) + rest;
    EXPECT_EQ(WriteBody(ReadBody(body, 5), 5),
              front + TaggedFloat(7.0F) + TaggedFloat(-8.0F) + TaggedFloat(0.1F) + TaggedFloat(0.5F) + rest);
}

TEST(ProjectRecords, AReplicateBeyondTheFloatsIsRefused)
{
    const auto refusal = [](double value) {
        return RefusalOfBody(ModelBytes(5) + DataBytes() + TaggedDouble(value) + Times(7999, Empty()), 5);
    };
    EXPECT_EQ(refusal(std::numeric_limits<float>::max()), "");
    EXPECT_EQ(refusal(-HUGE_VAL), "");
    EXPECT_EQ(refusal(3.5e38), "an estimate of a replicate is too large.");
    EXPECT_EQ(refusal(-1e300), "an estimate of a replicate is too large.");
}
