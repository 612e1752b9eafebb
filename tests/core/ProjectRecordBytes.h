// SPDX-License-Identifier: GPL-3.0-or-later
// The bytes of each record are put together here field by field, apart from the code that reads and writes
// them; every field has a value of its own, so that no two can change places unseen.
#pragma once

#include "files/ProjectRecords.h"
#include "support/ByteStrings.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace project_record_bytes
{
using namespace byte_strings;
using namespace project_file;

/// What the refusal of `read` says behind the place; "" when it is none.
inline std::string Refusal(const std::function<void()>& read)
{
    try {
        read();
    } catch (const RecordError& error) {
        return error.description.substr(error.description.find("of the file: ") + 13);
    }
    return "";
}

inline std::string RefusalOfProject(const std::string& file)
{
    return Refusal([&] { ReadProject(file); });
}

inline std::string RefusalOfBody(const std::string& body, std::int32_t model)
{
    return Refusal([&] { ReadBody(body, model); });
}

/// 1, 0.5, 0.25 ... are exact in both widths.
inline std::string SeriesBytes(float first, float second)
{
    return F32(first) + F32(second) + Times(198, F32(0.0F));
}

inline std::string VectorOfZeros()
{
    return Times(201, Tagged16(0));
}

// ---- a project of all records -----------------------------------------------------------------------------

/// Header of 119 bytes, data of 2 * 15 + 820 + 8, a scenario, a fit whose body is the word "body".
inline std::string ProjectBytes()
{
    const std::string scenario = Scenario("Quota", Tagged32(12) + Times(200, Tagged16(-3)), 1);
    const std::size_t bodyAt = 119 + 30 + 820 + 8 + scenario.size() + 88 + 1;
    return ProjectHeader("Ling", 1986, 1990, 11, 1, 7) + AbsentColumns(3) +
           PresentColumn("#,0.0", {1.5F, 2.5F}) + AbsentColumns(11) + Counts(1, 1) + scenario +
           FitIndex("Fox, least squares", 4, 1, static_cast<std::int64_t>(bodyAt),
                    static_cast<std::int64_t>(bodyAt + 4)) +
           "body";
}

inline Project TheProject()
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

inline std::string Written(Project project, const std::vector<std::string_view>& bodies)
{
    return WriteProject(project, bodies);
}

// ---- the body of a fit ------------------------------------------------------------------------------------

inline std::string EstimateBytes(std::int32_t model)
{
    if (model == 2)
        return TaggedDouble(1.5) + TaggedDouble(2.5) + TaggedDouble(3.5) + TaggedDouble(4.5);
    const std::string three = F64(1.5) + F64(2.5) + F64(3.5);
    return model == 1 || model == 3 ? three : three + F64(4.5);
}

inline std::string ZBytes(std::int32_t model)
{
    if (model == 1)
        return Empty();
    return model == 2 ? I16(6) : F32(6.25F);
}

inline std::string ModelBytes(std::int32_t model)
{
    return EstimateBytes(model) + F32(0.75F) + F32(0.25F) + I16(4) + F32(0.875F) + ZBytes(model) + //
           I16(-1) + F64(8.5) + F64(9.5) + I32(10) + TaggedDouble(11.5) + I32(1212) +              // 7 to 12
           I16(-1) + I16(0) + I16(1515) + I16(-1) + I16(0) + I32(1818) + I16(-1) +                 // 13 to 19
           I32(2020) + I32(321) + SeriesBytes(22.5F, -22.25F) +                                    // 20 to 22
           ArrayOf(2, Empty() + Tagged16(1)) + SeriesBytes(24.5F, -24.25F) +                       // 23, 24
           ArrayOf(3, Tagged32(1974) + TaggedFloat(0.5F) + TaggedDouble(2.5)) + I32(2626);         // 25, 26
}

/// The data of a fit: expected catch per unit effort, and the second period toggled out.
inline std::string DataBytes()
{
    return AbsentColumns(9) + PresentColumn("0.0000", {1.25F}) + AbsentColumns(5) + I16(-1) + I16(0) +
           I16(-1) + Times(197, I16(0)) + Counts(5, 6);
}

/// Parameter 1: 0.5 and one never filled; parameter 8: the last replicate. Nothing else.
inline std::string BootStrapBytes()
{
    return TaggedFloat(0.5F) + Times(7998, Empty()) + TaggedFloat(-1.5F);
}

inline std::string BodyBytes(std::int32_t model)
{
    return ModelBytes(model) + DataBytes() + BootStrapBytes();
}

// Where fields of the body of a Schaefer fit (5) begin: three fields of eight bytes and one more, and so on.
inline constexpr std::size_t kLagAt = 32 + 4 + 4;
inline constexpr std::size_t kQValueAt = kLagAt + 2 + 4 + 4 + 2 + 8 + 8 + 4;
inline constexpr std::size_t kNumBootStrapsAt = kQValueAt + 10 + 4 + 5 * 2 + 4 + 2 + 4;
inline constexpr std::size_t kWeightsAt = kNumBootStrapsAt + 4 + 800;
} // namespace project_record_bytes
