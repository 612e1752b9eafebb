// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/LegacyRecords.h"

#include "base/FileType.h"
#include "base/Text.h"
#include "base/Windows1252.h"

#include <algorithm>

namespace legacy_file
{
namespace
{
using project_file::ScenarioRecord;

constexpr std::uint8_t kVersion = 2;
constexpr std::int64_t kHeaderPosition = 12;
constexpr std::int64_t kColumnDirectory = 87;
constexpr std::int64_t kScenarioDirectory = 662;
constexpr std::size_t kEndOfDirectories = 911;
constexpr std::int64_t kEntryBytes = 5;
constexpr int kScenarioEntries = 50;
constexpr std::size_t kDescriptionWidth = 40;
constexpr std::size_t kTitleWidth = 15;
constexpr std::uint8_t kDeleted = 1;
constexpr std::string_view kScenarioMark = "SH";

// Least offsets, which are positions less one. They differ by one, deliberately: the format has it so.
constexpr std::int64_t kLeastColumn = 912;
constexpr std::int64_t kLeastScenario = 911;

/// Where something stands, and a byte about it.
struct Entry {
    std::int64_t offset = 0;
    std::uint8_t byte = 0;
};

Entry ReadEntry(BoundedReader& in, const char* what)
{
    const std::int32_t offset = in.I32(what);
    return {offset, in.U8(what)};
}

/// A byte with the length, then `width` bytes. A length above the width counts as the width.
std::string ReadText(BoundedReader& in, std::size_t width, const char* what)
{
    const std::size_t length = in.U8(what);
    return Trim(FromWindows1252(in.Bytes(width, what).substr(0, std::min(length, width))));
}

void CheckKind(BoundedReader& in)
{
    const std::string_view magic = in.Bytes(kProjectMagic.size(), "first bytes of a project");
    const bool ours = std::equal(magic.begin(), magic.end(), kProjectMagic.begin(),
                                 [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
    if (!ours)
        throw RecordError(1, "it does not begin as a project");
    const std::size_t position = in.Position();
    const std::uint8_t version = in.U8("version");
    if (version != kVersion)
        throw RecordError(position, "the version is " + std::to_string(version) + " and not 2");
}

void ReadHeader(BoundedReader& in, Project& project)
{
    in.Seek(kHeaderPosition, "header");
    project.NumLoggedRuns = in.I16("NumLoggedRuns");
    project.NumScens = in.I16("NumScens");
    project.NumPts = in.I16("NumPts");
    project.DSDesc = ReadText(in, kDescriptionWidth, "description");
    project.MinTimeP = in.I16("MinTimeP");
    project.MaxTimeP = in.I16("MaxTimeP");
}

/// A column must be there whole: a place behind the end of the file is no way to say that it is absent.
std::optional<Column> ReadColumn(BoundedReader& in, const Entry& entry, int number, std::int64_t fileSize)
{
    if (entry.offset < kLeastColumn)
        return std::nullopt;
    const std::string what = "values of column " + std::to_string(number);
    if (entry.offset + 1 > fileSize)
        throw RecordError(static_cast<std::size_t>(kColumnDirectory + kEntryBytes * (number - 1)),
                          "the " + what + " begin behind the end of the file");
    in.Seek(entry.offset + 1, what.c_str());
    Column column{entry.byte, {}};
    for (float& value : column.values)
        value = in.F32(what.c_str());
    return column;
}

void ReadColumns(BoundedReader& in, std::int64_t fileSize, Project& project)
{
    in.Seek(kColumnDirectory, "directory of columns");
    std::array<Entry, project_file::kColumns> entries;
    for (Entry& entry : entries)
        entry = ReadEntry(in, "directory of columns");
    int number = 1;
    for (const Entry& entry : entries) {
        project.columns.at(static_cast<std::size_t>(number - 1)) = ReadColumn(in, entry, number, fileSize);
        ++number;
    }
}

/// The reader stands behind the mark of the block.
ScenarioRecord ReadScenario(BoundedReader& in)
{
    ScenarioRecord scenario;
    scenario.Vector.resize(project_file::kVectorLength);
    for (project_file::TaggedNumber& value : scenario.Vector)
        value = {project_file::kFloat, static_cast<double>(in.F32("Vector of a scenario"))};
    scenario.Title = ReadText(in, kTitleWidth, "title of a scenario");
    scenario.VecType = in.U8("VecType of a scenario");
    return scenario;
}

void ReadProjections(BoundedReader& in, std::int64_t fileSize, Project& project)
{
    in.Seek(kScenarioDirectory, "directory of scenarios");
    std::array<Entry, kScenarioEntries> entries;
    for (Entry& entry : entries)
        entry = ReadEntry(in, "directory of scenarios");
    for (const Entry& entry : entries) {
        if (entry.byte == kDeleted || entry.offset < kLeastScenario || entry.offset + 1 > fileSize)
            continue;
        in.Seek(entry.offset + 1, "scenario");
        if (in.Bytes(kScenarioMark.size(), "mark of a scenario") == kScenarioMark)
            project.scenarios.push_back(ReadScenario(in));
    }
}
} // namespace

Project ReadProject(std::string_view file)
{
    BoundedReader in(file);
    CheckKind(in);
    if (file.size() < kEndOfDirectories)
        throw RecordError(file.size() + 1, "the file ends within its directories");
    const auto size = static_cast<std::int64_t>(file.size());
    Project project;
    ReadHeader(in, project);
    ReadColumns(in, size, project);
    ReadProjections(in, size, project);
    return project;
}

} // namespace legacy_file
