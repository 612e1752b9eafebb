// SPDX-License-Identifier: GPL-3.0-or-later
// The bytes of each record are put together here field by field, apart from the code that reads and writes
// them; every field has a value of its own, so that no two can change places unseen.
#include "files/ProjectRecords.h"

#include "support/ByteStrings.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>

namespace
{
using namespace byte_strings;
using namespace project_file;
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// What the refusal of `read` says behind the place; "" when it is none.
std::string Refusal(const std::function<void()>& read)
{
    try {
        read();
    } catch (const RecordError& error) {
        return error.description.substr(error.description.find("of the file: ") + 13);
    }
    return "";
}

std::string RefusalOfProject(const std::string& file)
{
    return Refusal([&] { ReadProject(file); });
}

std::string RefusalOfBody(const std::string& body, std::int32_t model)
{
    return Refusal([&] { ReadBody(body, model); });
}

/// 1, 0.5, 0.25 ... are exact in both widths.
std::string SeriesBytes(float first, float second)
{
    return F32(first) + F32(second) + Times(198, F32(0.0F));
}

std::string VectorOfZeros()
{
    return Times(201, Tagged16(0));
}

// ---- a project of all records -----------------------------------------------------------------------------

/// Header of 119 bytes, data of 2 * 15 + 820 + 8, a scenario, a fit whose body is the word "body".
std::string ProjectBytes()
{
    const std::string scenario = Scenario("Quota", Tagged32(12) + Times(200, Tagged16(-3)), 1);
    const std::size_t bodyAt = 119 + 30 + 820 + 8 + scenario.size() + 88 + 1;
    return ProjectHeader("Ling", 1986, 1990, 11, 1, 7) + AbsentColumns(3) +
           PresentColumn("#,0.0", {1.5F, 2.5F}) + AbsentColumns(11) + Counts(1, 1) + scenario +
           FitIndex("Fox, least squares", 4, 1, static_cast<std::int64_t>(bodyAt),
                    static_cast<std::int64_t>(bodyAt + 4)) +
           "body";
}

Project TheProject()
{
    Project project;
    project.header = {11, 1, 7, "Ling", 1986, 1990};
    ColumnRecord effort{"#,0.0", Series(-1.0F)};
    effort.values(1) = 1.5F;
    effort.values(2) = 2.5F;
    project.data.columns[3] = effort;
    project.data.loggedFits = project.data.scenarios = 1;
    ScenarioRecord scenario{"Quota", TaggedArray(201, {kInt16, -3.0}), 1};
    scenario.Vector[0] = {kInt32, 12.0};
    project.scenarios.push_back(scenario);
    project.fits.push_back({false, 4, 1, "Fox, least squares", 36526.0, 0.75, 0, 0});
    return project;
}

std::string Written(Project project, const std::vector<std::string_view>& bodies)
{
    return WriteProject(project, bodies);
}

// ---- the body of a fit ------------------------------------------------------------------------------------

std::string EstimateBytes(std::int32_t model)
{
    if (model == 2)
        return TaggedDouble(1.5) + TaggedDouble(2.5) + TaggedDouble(3.5) + TaggedDouble(4.5);
    const std::string three = F64(1.5) + F64(2.5) + F64(3.5);
    return model == 1 || model == 3 ? three : three + F64(4.5);
}

std::string ZBytes(std::int32_t model)
{
    if (model == 1)
        return Empty();
    return model == 2 ? I16(6) : F32(6.25F);
}

std::string ModelBytes(std::int32_t model)
{
    return EstimateBytes(model) + F32(0.75F) + F32(0.25F) + I16(4) + F32(0.875F) + ZBytes(model) + //
           I16(-1) + F64(8.5) + F64(9.5) + I32(10) + TaggedDouble(11.5) + I32(1212) +              // 7 to 12
           I16(-1) + I16(0) + I16(1515) + I16(-1) + I16(0) + I32(1818) + I16(-1) +                 // 13 to 19
           I32(2020) + I32(321) + SeriesBytes(22.5F, -22.25F) +                                    // 20 to 22
           ArrayOf(2, Empty() + Tagged16(1)) + SeriesBytes(24.5F, -24.25F) +                       // 23, 24
           ArrayOf(3, Tagged32(1974) + TaggedFloat(0.5F) + TaggedDouble(2.5)) + I32(2626);         // 25, 26
}

/// The data of a fit: expected catch per unit effort, and the second period toggled out.
std::string DataBytes()
{
    return AbsentColumns(9) + PresentColumn("0.0000", {1.25F}) + AbsentColumns(5) + I16(-1) + I16(0) +
           I16(-1) + Times(197, I16(0)) + Counts(5, 6);
}

/// Parameter 1: 0.5 and one never filled; parameter 8: the last replicate. Nothing else.
std::string BootStrapBytes()
{
    return TaggedFloat(0.5F) + Times(7998, Empty()) + TaggedFloat(-1.5F);
}

std::string BodyBytes(std::int32_t model)
{
    return ModelBytes(model) + DataBytes() + BootStrapBytes();
}

TaggedNumber ZOf(std::int32_t model)
{
    if (model == 1)
        return {};
    return model == 2 ? TaggedNumber{kInt16, 6.0} : TaggedNumber{kFloat, 6.25};
}

ModelRecord TheModel(std::int32_t model)
{
    ModelRecord record;
    record.FinalEsts = {1.5, 2.5, 3.5, model == 1 || model == 3 ? 0.0 : 4.5};
    record.InitDep = 0.75F;
    record.Mort = 0.25F;
    record.LAG = 4;
    record.RSqr = 0.875F;
    record.Z = ZOf(model);
    record.IsBSDone = true;
    record.GammaBeta = 8.5;
    record.GammaNu = 9.5;
    record.FitOp = 10;
    record.QValue = 11.5;
    record.unnamed12 = 1212;
    record.Fixed1 = true;
    record.unnamed15 = 1515;
    record.PlotEvaluations = true;
    record.StartEstKind = 1818;
    record.UsingNosFlag = true;
    record.StartEstKind2 = 2020;
    record.NumBootStraps = 321;
    record.ResidVec(1) = 22.5F;
    record.ResidVec(2) = -22.25F;
    record.weights = TaggedArray{{}, {kInt16, 1.0}};
    record.FittedVec(1) = 24.5F;
    record.FittedVec(2) = -24.25F;
    record.times = TaggedArray{{kInt32, 1974.0}, {kFloat, 0.5}, {kDouble, 2.5}};
    record.unnamed26 = 2626;
    return record;
}

Body TheBody(std::int32_t model)
{
    Body body;
    body.model = TheModel(model);
    ColumnRecord expected{"0.0000", Series(-1.0F)};
    expected.values(1) = 1.25F;
    body.data.columns[9] = expected;
    body.data.ToggledIn.emplace();
    (*body.data.ToggledIn)(1) = (*body.data.ToggledIn)(3) = true;
    body.data.loggedFits = 5;
    body.data.scenarios = 6;
    body.bootStraps.resize(8000);
    body.bootStraps.front() = 0.5F;
    body.bootStraps.back() = -1.5F;
    return body;
}

void ExpectSameInputs(const ModelRecord& a, const ModelRecord& b)
{
    EXPECT_EQ(a.FinalEsts, b.FinalEsts);
    EXPECT_EQ(a.InitDep, b.InitDep);
    EXPECT_EQ(a.Mort, b.Mort);
    EXPECT_EQ(a.LAG, b.LAG);
    EXPECT_EQ(a.RSqr, b.RSqr);
    EXPECT_EQ(a.Z, b.Z);
    EXPECT_EQ(a.IsBSDone, b.IsBSDone);
    EXPECT_EQ(a.GammaBeta, b.GammaBeta);
    EXPECT_EQ(a.GammaNu, b.GammaNu);
    EXPECT_EQ(a.FitOp, b.FitOp);
    EXPECT_EQ(a.QValue, b.QValue);
    EXPECT_EQ(a.unnamed12, b.unnamed12);
}

void ExpectSame(const ModelRecord& a, const ModelRecord& b)
{
    ExpectSameInputs(a, b);
    EXPECT_EQ(a.Fixed1, b.Fixed1);
    EXPECT_EQ(a.Fixed2, b.Fixed2);
    EXPECT_EQ(a.unnamed15, b.unnamed15);
    EXPECT_EQ(a.PlotEvaluations, b.PlotEvaluations);
    EXPECT_EQ(a.SetStartingEsts, b.SetStartingEsts);
    EXPECT_EQ(a.StartEstKind, b.StartEstKind);
    EXPECT_EQ(a.UsingNosFlag, b.UsingNosFlag);
    EXPECT_EQ(a.StartEstKind2, b.StartEstKind2);
    EXPECT_EQ(a.NumBootStraps, b.NumBootStraps);
    EXPECT_EQ(a.ResidVec, b.ResidVec);
    EXPECT_EQ(a.weights, b.weights);
    EXPECT_EQ(a.FittedVec, b.FittedVec);
    EXPECT_EQ(a.times, b.times);
    EXPECT_EQ(a.unnamed26, b.unnamed26);
}

void ExpectSame(const DataRecord& a, const DataRecord& b)
{
    for (std::size_t column = 0; column < a.columns.size(); ++column) {
        ASSERT_EQ(a.columns[column].has_value(), b.columns[column].has_value()) << column;
        if (!a.columns[column])
            continue;
        EXPECT_EQ(a.columns[column]->ColFormat, b.columns[column]->ColFormat) << column;
        EXPECT_EQ(a.columns[column]->values, b.columns[column]->values) << column;
    }
    EXPECT_EQ(a.ToggledIn, b.ToggledIn);
    EXPECT_EQ(a.loggedFits, b.loggedFits);
    EXPECT_EQ(a.scenarios, b.scenarios);
}

// Where fields of the body of a Schaefer fit (5) begin: three fields of eight bytes and one more, and so on.
constexpr std::size_t kLagAt = 32 + 4 + 4;
constexpr std::size_t kQValueAt = kLagAt + 2 + 4 + 4 + 2 + 8 + 8 + 4;
constexpr std::size_t kNumBootStrapsAt = kQValueAt + 10 + 4 + 5 * 2 + 4 + 2 + 4;
constexpr std::size_t kWeightsAt = kNumBootStrapsAt + 4 + 800;

const std::array<std::int32_t, 6> kModels{1, 2, 3, 4, 5, 6};
} // namespace

// ---- byte by byte -----------------------------------------------------------------------------------------

TEST(ProjectRecords, AProjectIsWrittenByteByByte)
{
    EXPECT_EQ(Written(TheProject(), {"body"}), ProjectBytes());
}

TEST(ProjectRecords, AProjectIsReadByteByByte)
{
    const Project read = ReadProject(ProjectBytes());
    EXPECT_EQ(read.header.NumLoggedRuns, 11);
    EXPECT_EQ(read.header.NumScens, 1);
    EXPECT_EQ(read.header.NumPts, 7);
    EXPECT_EQ(read.header.DSDesc, "Ling");
    EXPECT_EQ(read.header.MinTimeP, 1986);
    EXPECT_EQ(read.header.MaxTimeP, 1990);
    ExpectSame(read.data, TheProject().data);
    ASSERT_EQ(read.scenarios.size(), 1U);
    EXPECT_EQ(read.scenarios[0].Title, "Quota");
    EXPECT_EQ(read.scenarios[0].Vector, TheProject().scenarios[0].Vector);
    EXPECT_EQ(read.scenarios[0].VecType, 1);
}

TEST(ProjectRecords, AFitIndexRecordIsReadByteByByte)
{
    const Project read = ReadProject(ProjectBytes());
    ASSERT_EQ(read.fits.size(), 1U);
    const FitIndexRecord& fit = read.fits[0];
    EXPECT_FALSE(fit.Deleted);
    EXPECT_EQ(fit.MethType, 4);
    EXPECT_EQ(fit.FitOp, 1);
    EXPECT_EQ(fit.FitName, Text("Fox, least squares", 50));
    EXPECT_EQ(fit.TheDate, 36526.0); // 2000-01-01
    EXPECT_EQ(fit.TheTime, 0.75);    // 18:00
    EXPECT_EQ(BodyOf(fit, ProjectBytes()), "body");
}

TEST(ProjectRecords, AFitIndexRecordTakes88Bytes)
{
    EXPECT_EQ(FitIndex("A", 1, 1, 1, 1).size(), 88U);
    Project project;
    const std::size_t without = Written(project, {}).size();
    project.fits.emplace_back();
    EXPECT_EQ(Written(project, {""}).size(), without + 88);
}

TEST(ProjectRecords, TheModelOfEachClassIsReadByteByByte)
{
    for (const std::int32_t model : kModels) {
        SCOPED_TRACE(model);
        ExpectSame(ReadBody(BodyBytes(model), model).model, TheModel(model));
    }
}

TEST(ProjectRecords, TheBodyOfEachClassIsWrittenByteByByte)
{
    for (const std::int32_t model : kModels)
        EXPECT_EQ(WriteBody(TheBody(model), model), BodyBytes(model)) << model;
}

TEST(ProjectRecords, TheDataOfAFitHaveTogglesAndTheirOwnCounts)
{
    ExpectSame(ReadBody(BodyBytes(1), 1).data, TheBody(1).data);
}

TEST(ProjectRecords, ReplicatesAreReadParameterByParameterAndMayBeMissing)
{
    const BootStrapRecord read = ReadBody(BodyBytes(3), 3).bootStraps;
    ASSERT_EQ(read.size(), 8000U);
    EXPECT_EQ(read[0], 0.5F);
    EXPECT_EQ(read[1], std::nullopt);
    EXPECT_EQ(read[7998], std::nullopt);
    EXPECT_EQ(read[7999], -1.5F); // parameter 8, replicate 1000
}

TEST(ProjectRecords, ProjectsWithoutColumnsScenariosAndFitsAreOf157Bytes)
{
    const std::string bytes = ProjectHeader("", 1, 3) + AbsentColumns(15) + Counts(0, 0);
    EXPECT_EQ(bytes.size(), 157U);
    Project project;
    project.header.MinTimeP = 1;
    project.header.MaxTimeP = 3;
    EXPECT_EQ(Written(project, {}), bytes);
    EXPECT_TRUE(ReadProject(bytes).fits.empty());
}

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

// ---- places of the bodies ---------------------------------------------------------------------------------

TEST(ProjectRecords, BodiesAreWrittenBehindTheIndexInTheirOrderAndTheIndexSaysWhere)
{
    Project project;
    project.fits.resize(3);
    const std::string file = WriteProject(project, {"one", "", "three"});
    EXPECT_EQ(file.substr(119 + 30 + 8 + 3 * 88), "onethree");
    EXPECT_EQ(project.fits[0].Start, 119 + 30 + 8 + 3 * 88 + 1);
    EXPECT_EQ(project.fits[1].Start, project.fits[0].TheEnd);
    EXPECT_EQ(BodyOf(project.fits[0], file), "one");
    EXPECT_EQ(BodyOf(project.fits[1], file), "");
    EXPECT_EQ(BodyOf(project.fits[2], file), "three");
    EXPECT_EQ(project.fits[2].TheEnd, static_cast<std::int32_t>(file.size()) + 1);
}

TEST(ProjectRecords, APlaceOutsideTheFileIsRefusedAndTheFitNamed)
{
    const auto refusal = [](std::int32_t start, std::int32_t theEnd) {
        FitIndexRecord fit;
        fit.FitName = Text("Fox\n1", 50);
        fit.Start = start;
        fit.TheEnd = theEnd;
        return Refusal([&] { BodyOf(fit, "0123456789"); });
    };
    EXPECT_EQ(refusal(1, 11), "");
    EXPECT_EQ(refusal(11, 11), "");
    const std::string outside = "the place of the fit \"Fox\\n1\" is not within the file.";
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    for (const auto& [start, theEnd] :
         {std::pair{0, 5}, {1, 12}, {5, 4}, {12, 12}, {kLeast, kMost}, {kMost, kLeast}, {1, kMost}, {-1, 1}})
        EXPECT_EQ(refusal(start, theEnd), outside) << start << " " << theEnd;
}

TEST(ProjectRecords, AProjectLongerThanItsPositionsCanSayIsRefusedBeforeItIsWritten)
{
    const std::string megabyte(1U << 20U, 'b');
    Project project;
    project.fits.resize(2048); // 2048 times a megabyte is 2^31
    const std::vector<std::string_view> bodies(2048, megabyte);
    try {
        WriteProject(project, bodies);
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, 0x80040000U + 2254U);
        EXPECT_EQ(error.description,
                  "WriteObj Failure.\nThe project is larger than its format allows (2 GB).");
    }
}

TEST(ProjectRecords, AFailureInABodyNamesTheByteOfTheFile)
{
    const std::string body = Overwritten(BodyBytes(5), kQValueAt, I16(9));
    try {
        ReadBody(body, 5, 5001);
        FAIL();
    } catch (const RecordError& error) {
        const std::size_t behindTheTag = 5001 + kQValueAt + 2;
        EXPECT_EQ(error.description, "ReadObj Failure.\nByte " + std::to_string(behindTheTag) +
                                         " of the file: \"QValue\" has the unknown type 9.");
    }
}

// ---- every byte -------------------------------------------------------------------------------------------

TEST(ProjectRecords, AProjectCutOffAtAnyByteIsRefused)
{
    const std::string whole = ProjectBytes().substr(0, ProjectBytes().size() - 4); // without the body
    EXPECT_EQ(RefusalOfProject(whole), "");
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_NE(RefusalOfProject(whole.substr(0, size)), "") << size;
}

TEST(ProjectRecords, ABodyCutOffAtAnyByteIsRefused)
{
    const std::string whole = BodyBytes(2);
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_NE(RefusalOfBody(whole.substr(0, size), 2), "") << size;
}

TEST(ProjectRecords, AProjectWithAnyByteChangedIsRefusedOrReadsAsItIsWritten)
{
    const std::string whole = ProjectBytes();
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string file = whole;
            file[at] = static_cast<char>(file[at] ^ change);
            if (RefusalOfProject(file) != "")
                continue;
            const std::vector<std::string_view> bodies(ReadProject(file).fits.size(), "body");
            const std::string once = Written(ReadProject(file), bodies);
            ASSERT_EQ(Written(ReadProject(once), bodies), once) << at;
        }
}

TEST(ProjectRecords, ABodyWithAnyByteChangedIsRefusedOrReadsAsItIsWritten)
{
    const std::string whole = BodyBytes(2);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string body = whole;
        body[at] = static_cast<char>(~body[at]);
        if (RefusalOfBody(body, 2) != "")
            continue;
        const std::string once = WriteBody(ReadBody(body, 2), 2);
        ASSERT_EQ(WriteBody(ReadBody(once, 2), 2), once) << at;
    }
}
