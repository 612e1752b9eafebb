// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/ProjectData.h"
#include "support/ByteStrings.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace project_data
{
using namespace byte_strings;
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

inline std::string Contents(const std::string& name)
{
    std::ifstream file(VELT_TEST_SAMPLES "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A project over the periods 1986 to 1990 with these columns, scenarios and fits.
inline std::string ProjectBytes(const std::string& columns, const std::vector<std::string>& scenarios = {},
                                const std::vector<std::string>& fits = {})
{
    std::string file =
        ProjectHeader("Ling", 1986, 1990) + columns +
        Counts(static_cast<std::int64_t>(fits.size()), static_cast<std::int64_t>(scenarios.size()));
    for (const std::string& record : scenarios)
        file += record;
    for (const std::string& record : fits)
        file += record;
    return file;
}

inline std::string ScenarioTitled(const std::string& title)
{
    return Scenario(title, Times(201, Tagged16(0)), 0);
}

inline std::string FitNamed(const std::string& name)
{
    return FitIndex(name, 4, 1, 1, 1);
}

inline std::string OverRange(std::int64_t minTimeP, std::int64_t maxTimeP)
{
    return ProjectHeader("", minTimeP, maxTimeP) + AbsentColumns(15) + Counts(0, 0);
}

/// Effort of 5, 0 and two periods without one, and a catch per period.
inline std::string EffortColumns(std::initializer_list<float> effort)
{
    return AbsentColumns(3) + PresentColumn("0", effort) + PresentColumn("0.0", {1, 2, 3, 4, 5}) +
           AbsentColumns(10);
}

class ProjectData : public testing::Test
{
protected:
    OpenedProject Open(const std::string& file) { return ReadProjectData(file, bench.run); }
    clsVeltData DataOf(const std::string& file) { return Open(file).data; }

    /// Number of the failure and what is said behind its first words; nothing when the project opens.
    std::optional<std::pair<std::uint32_t, std::string>> Refusal(const std::string& file)
    {
        try {
            Open(file);
        } catch (const VeltError& error) {
            return std::pair{error.number, error.description};
        }
        return std::nullopt;
    }

    std::vector<std::string> TitlesOf(const std::vector<std::string>& inFile)
    {
        std::vector<std::string> records;
        for (const std::string& title : inFile)
            records.push_back(ScenarioTitled(title));
        const clsVeltData data = DataOf(ProjectBytes(AbsentColumns(15), records));
        std::vector<std::string> titles;
        for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i)
            titles.push_back(data.ProjScenario(i)->Title());
        return titles;
    }

    std::vector<std::string> NamesOf(const std::vector<std::string>& inFile)
    {
        std::vector<std::string> records;
        for (const std::string& name : inFile)
            records.push_back(FitNamed(name));
        const clsVeltData data = DataOf(ProjectBytes(AbsentColumns(15), {}, records));
        std::vector<std::string> names;
        for (std::int32_t i = 1; i <= data.NumLoggedFits(); ++i)
            names.push_back(data.LoggedFit(i).FitName());
        return names;
    }

    /// Opened and saved again, with the bodies carried over.
    std::string SavedAgain(const std::string& file)
    {
        const clsVeltData data = DataOf(file);
        project_file::Project project = ProjectOf(data);
        std::vector<std::string_view> bodies;
        for (const project_file::FitIndexRecord& fit : project.fits)
            bodies.push_back(project_file::BodyOf(fit, file));
        return project_file::WriteProject(project, bodies);
    }

    /// The data that a fit of `data` would log.
    static project_file::DataRecord OfFit(const clsVeltData& data) { return DataRecordOf(data, true); }

    Bench bench;
};
} // namespace project_data
