// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ImportLegacy.h"

#include "base/FileType.h"
#include "data/ProjectData.h"
#include "data/clsVeltData.h"
#include "files/LegacyRecords.h"
#include "files/ReadWholeFile.h"

#include <utility>

namespace
{
/// Larger files are refused unread: columns and scenarios take 55 kB at most, and only logged runs, which are
/// not read, could make such a file longer.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{64} << 20U;

[[noreturn]] void Refuse(const std::string& why)
{
    throw ProgramError(errors::kLegacyFile, "Invalid or Corrupted *.vl2 File.\n" + why, "clsVeltDATA");
}

legacy_file::Project Read(std::string_view bytes)
{
    try {
        return legacy_file::ReadProject(bytes);
    } catch (const RecordError& error) {
        Refuse(error.place);
    }
}

/// Rows of the range are in use, included and toggled in, whatever their values; no conversion looks at them
/// yet.
void TakeRange(clsVeltData& data, const legacy_file::Project& project)
{
    data.MinTimeP(project.MinTimeP);
    data.MaxTimeP(project.MaxTimeP);
    data.TimeInts(data.MaxTimeP() - data.MinTimeP() + 1);
    data.NAPoints(data.TimeInts());
    data.NDPoints(data.NAPoints() + 1);
    data.NNtPoints(data.NAPoints());
    data.OrigNAPoints(data.NAPoints());
    for (int row = 1; row <= data.ShownRows(); ++row) {
        data.Included(row, true);
        data.ToggledIn(row, true);
    }
}

/// Behind the last period the file may hold anything.
void TakeColumns(clsVeltData& data, const legacy_file::Project& project)
{
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        const auto& stored = project.columns.at(static_cast<std::size_t>(column - 1));
        if (!stored)
            continue;
        data.ColPresent(column, true);
        data.DecPlaces(column, stored->decimals);
        for (int row = 1; row <= data.ShownRows(); ++row)
            data.DB(column, row, stored->values(row));
    }
}

clsVeltData DataSetOf(const legacy_file::Project& project, const std::string& path, Run& run)
{
    clsVeltData data(run);
    data.DSFName(path);
    data.DSDesc(project.DSDesc);
    data.NumScens(project.NumScens);
    data.NumPts(project.NumPts);
    data.Stored({.numLoggedRuns = project.NumLoggedRuns, .loggedFits = 0, .projScens = 0});
    TakeRange(data, project);
    TakeColumns(data, project);
    TakeScenarios(data, project.scenarios);
    return data;
}

void CheckSize(std::uintmax_t size)
{
    if (size > kMostBytes)
        Refuse("It has " + std::to_string(size) + " bytes; no project of version 2.0 is that large.");
}
} // namespace

void ImportLegacy(clsVeltData& data, const std::string& path, std::string_view bytes,
                  const std::function<bool()>& goesOn)
{
    data = clsVeltData(data.TheRun());
    const legacy_file::Project project = Read(bytes);
    if (project.DSDesc.empty() && !goesOn())
        throw UserCancelled("clsVeltDATA_ImportVELT2File");
    data = DataSetOf(project, path, data.TheRun());
}

void clsVeltData::ImportVELT2File(const std::string& path, const std::function<bool()>& goesOn)
{
    *this = clsVeltData(m_run);
    const std::vector<std::uint8_t> bytes = ReadWholeFile(path, CheckSize);
    if (!IsLegacyName(path)) // the other half of what GetFileType asks for; the reader looks at the bytes
        Refuse("Its name does not end in .vl2.");
    ImportLegacy(*this, path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, goesOn);
}
