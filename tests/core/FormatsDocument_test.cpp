// SPDX-License-Identifier: GPL-3.0-or-later
// docs/formats.md shows a small project byte by byte. It is made here as the program makes one, and the
// document must show just these bytes and explain each part at the offset at which it stands.
#include "data/ImportLegacy.h"
#include "data/ProjectData.h"
#include "support/LegacyBytes.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace
{
using namespace project_file;

/// A Schaefer fit to three seasons: K = 800, q = 0.01, r = 0.5, variance 0.0625.
ModelRecord Schaefer()
{
    ModelRecord model;
    model.FinalEsts = {800.0, 0.01, 0.5, 0.0625};
    model.InitDep = 1.0F;
    model.Mort = 0.25F;
    model.RSqr = 0.75F;
    model.Z = {kFloat, 1.0};
    model.FitOp = 2;
    model.QValue = 0.01;
    model.StartEstKind = 2;
    model.StartEstKind2 = 2;
    model.ResidVec(1) = -0.5F;
    model.FittedVec(1) = 1.5F;
    model.times = TaggedArray{{kInt32, 2001.0}, {kInt32, 2002.0}, {kInt32, 2003.0}};
    return model;
}

clsVeltData DataSet(Run& run)
{
    clsVeltData data(run);
    data.DSDesc("Ling, three seasons");
    data.MinTimeP(2001);
    data.MaxTimeP(2003);
    data.TimeInts(3);
    data.AddColumn(columns::Effort);
    data.Effort(1, 10.0F);
    data.Effort(2, 12.5F);
    data.Effort(3, 8.0F);
    clsProjScenario quota;
    quota.Title("Less effort");
    quota.Vector(4, 6.0);
    quota.Vector(5, 4.0);
    data.AddProjScenario(quota, quota.Title());
    for (int row = 1; row <= clsVeltData::kRows; ++row)
        data.ToggledIn(row, row <= 3);
    return data;
}

std::string ExampleFile(Run& run)
{
    clsVeltData data = DataSet(run);
    data.NewLoggedFit(5, 2, "Schaefer log", 37257.75); // 2002-01-01, 18:00
    Body body{Schaefer(), DataRecordOf(data, true), BootStrapRecord(std::size_t{8} * 1000)};
    Project project = ProjectOf(data);
    return WriteProject(project, {WriteBody(body, 5)});
}

std::string HexOf(std::string_view bytes)
{
    std::string hex;
    for (const char byte : bytes) {
        std::array<char, 4> pair{};
        std::snprintf(pair.data(), pair.size(), "%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(byte)));
        hex += (hex.empty() ? "" : " ") + std::string(pair.data());
    }
    return hex;
}

std::string DumpLine(std::size_t offset, std::string_view bytes)
{
    std::array<char, 80> line{};
    std::string letters;
    for (const char c : bytes)
        letters += c >= ' ' && c <= '~' ? c : '.';
    std::snprintf(line.data(), line.size(), "    %6zu  %-47s  ", offset, HexOf(bytes).c_str());
    const std::string whole = line.data() + letters;
    return whole.substr(0, whole.find_last_not_of(' ') + 1) + "\n"; // no blanks at the end of a line
}

/// Sixteen bytes a line; lines like the one before them are one "*".
std::string Dump(const std::string& file)
{
    std::string dump;
    bool repeated = false;
    for (std::size_t at = 0; at < file.size(); at += 16) {
        const std::string_view bytes = std::string_view(file).substr(at, 16);
        const bool same = at >= 16 && bytes == std::string_view(file).substr(at - 16, 16);
        if (!same)
            dump += DumpLine(at, bytes);
        else if (!repeated)
            dump += "         *\n";
        repeated = same;
    }
    return dump;
}

std::string Document()
{
    std::ifstream file(VELT_TEST_SAMPLES "/../../docs/formats.md", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The part on this version's project, and the part on the former version's behind it.
constexpr const char* kFormer = "\n## Project of version 2.0";
std::string PartOnProjects()
{
    return Document().substr(0, Document().find(kFormer));
}
std::string PartOnFormerProjects()
{
    return Document().substr(Document().find(kFormer));
}

/// How many parts of `file` the tables of `part` explain; each must stand where they say.
int Explained(const std::string& part, const std::string& file)
{
    const std::regex row(R"(\n\| (\d+) \| `([0-9a-f ]+)` \|)");
    int rows = 0;
    for (std::sregex_iterator at(part.begin(), part.end(), row); at != std::sregex_iterator(); ++at) {
        const std::string bytes = (*at)[2];
        EXPECT_EQ(HexOf(file.substr(std::stoul((*at)[1]), (bytes.size() + 1) / 3)), bytes) << (*at)[1];
        ++rows;
    }
    return rows;
}

/// A project of version 2.0 of five periods.
std::string FormerExample()
{
    return LegacyBytes("Ling, five seasons", 1986, 1990)
        .Counts(2, 1, 4)
        .Column(columns::Effort, {10, 12.5F, 8, 9, -1}, 1)
        .Scenario(1, LegacyBytes::ScenarioBlock("Less effort", {0, 0, 0, 0, 0, 6, 4.5F}))
        .Bytes();
}
} // namespace

TEST(FormatsDocument, ShowsTheBytesThatTheProgramWrites)
{
    Bench bench;
    const std::string dump = Dump(ExampleFile(bench.run));
    EXPECT_NE(Document().find("\n" + dump + "\n"), std::string::npos) << dump;
}

TEST(FormatsDocument, ExplainsEachPartAtTheOffsetWhereItStands)
{
    Bench bench;
    EXPECT_GE(Explained(PartOnProjects(), ExampleFile(bench.run)), 20);
}

TEST(FormatsDocument, TheExampleIsReadAsItIsExplained)
{
    Bench bench;
    const std::string file = ExampleFile(bench.run);
    const OpenedProject opened = ReadProjectData(file, bench.run);
    EXPECT_EQ(opened.data.DSDesc(), "Ling, three seasons");
    EXPECT_EQ(opened.data.Effort(2), 12.5F);
    EXPECT_EQ(opened.data.ProjScenario("Less effort")->Vector(5), 4);
    const Project project = ProjectOf(opened.data);
    EXPECT_EQ(ReadBody(BodyOf(project.fits.at(0), file), 5).model.FinalEsts,
              (std::array<double, 4>{800.0, 0.01, 0.5, 0.0625}));
}

TEST(FormatsDocument, ShowsAndExplainsTheBytesOfTheFormerVersion)
{
    const std::string dump = Dump(FormerExample());
    EXPECT_NE(PartOnFormerProjects().find("\n" + dump + "\n"), std::string::npos) << dump;
    EXPECT_GE(Explained(PartOnFormerProjects(), FormerExample()), 20);
}

TEST(FormatsDocument, TheExampleOfTheFormerVersionIsReadAsItIsExplained)
{
    Bench bench;
    clsVeltData data(bench.run);
    ImportLegacy(data, "old.vl2", FormerExample(), [] { return false; });
    EXPECT_EQ(data.DSDesc(), "Ling, five seasons");
    EXPECT_EQ(data.Effort(2), 12.5F);
    EXPECT_EQ(data.Effort(6), -1.0F);
    EXPECT_EQ(data.DecPlaces(columns::Effort), 1);
    EXPECT_EQ(data.ProjScenario("Less effort")->Vector(7), 4);
}
