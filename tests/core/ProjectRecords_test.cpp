// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ProjectRecords.h"

#include "core/ProjectRecordBytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{
using namespace project_record_bytes;

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
