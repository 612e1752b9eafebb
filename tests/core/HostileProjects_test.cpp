// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ProjectDataBench.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace
{
using namespace project_data;

/// How a file ends: it does not open, it opens but the body of a fit cannot be read, or all can be read.
enum class End { Refused, BodyRefused, Read };

void ExpectSentence(const VeltError& error, const std::string& file)
{
    EXPECT_GT(error.description.size(), 20U) << file;
    EXPECT_LT(error.description.size(), 500U) << file;
    EXPECT_TRUE(error.number == 0x80040000U + 2253U || error.number == 6U) << file;
}

void ExpectSane(const clsVeltData& data, const std::string& file)
{
    EXPECT_EQ(data.NumLoggedFits(), data.V2KLoggedFits()) << file;
    EXPECT_EQ(data.NumProjScenarios(), data.V2kProjScens()) << file;
    EXPECT_EQ(data.NDPoints(), data.TimeInts() + 1) << file;
    for (int row = 1; row <= clsVeltData::kRows; ++row)
        EXPECT_TRUE(data.Included(row) || !data.ToggledIn(row)) << file << " row " << row;
}

/// Reads all of `file`. Any exception but a VeltError goes through and fails the test.
End ReadAll(const std::string& name, const std::string& file, Run& run)
{
    std::optional<OpenedProject> opened;
    try {
        opened = ReadProjectData(file, run);
    } catch (const VeltError& error) {
        ExpectSentence(error, name);
        return End::Refused;
    }
    ExpectSane(opened->data, name);
    for (const auto& fit : ProjectOf(opened->data).fits) {
        try {
            const std::string_view body = project_file::BodyOf(fit, file);
            project_file::ReadBody(body, fit.MethType, static_cast<std::size_t>(fit.Start));
        } catch (const VeltError& error) {
            ExpectSentence(error, name);
            return End::BodyRefused;
        }
    }
    return End::Read;
}

/// As the manifest says it.
std::string Word(End end)
{
    return end == End::Refused ? "refused" : end == End::BodyRefused ? "body refused" : "read";
}
} // namespace

TEST_F(ProjectData, HostileFilesAreRefusedInASentenceOrReadAsSaneData)
{
    int files = 0;
    for (const auto& entry : nlohmann::json::parse(Contents("hostile/manifest.json"))) {
        const auto name = entry.at("file").get<std::string>();
        ASSERT_TRUE(std::filesystem::exists(VELT_TEST_SAMPLES "/hostile/" + name)) << name;
        const End end = ReadAll(name, Contents("hostile/" + name), bench.run);
        EXPECT_EQ(Word(end), entry.at("end").get<std::string>()) << name << ": " << entry.at("what");
        ++files;
    }
    EXPECT_GE(files, 60);
}

TEST_F(ProjectData, AProjectWithAnyByteChangedIsRefusedInASentenceOrReadAsSaneData)
{
    const std::string whole = ProjectBytes(EffortColumns({1, 2, 3}), {ScenarioTitled("A")}, {FitNamed("B")});
    int read = 0;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string file = whole;
            file[at] = static_cast<char>(file[at] ^ change);
            read += ReadAll("byte " + std::to_string(at), file, bench.run) == End::Refused ? 0 : 1;
        }
    EXPECT_GT(read, 3 * 48); // those of the unused bytes of the header at least
}

TEST_F(ProjectData, AProjectCutOffAtAnyByteIsRefusedInASentence)
{
    const std::string whole = ProjectBytes(EffortColumns({1, 2, 3}), {ScenarioTitled("A")}, {FitNamed("B")});
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_EQ(ReadAll("cut at " + std::to_string(size), whole.substr(0, size), bench.run), End::Refused);
}
