// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ProjectFile.h"

#include "base/FileType.h"
#include "data/ProjectData.h"
#include "files/ReadWholeFile.h"

#include <limits>
#include <system_error>

namespace
{
namespace fs = std::filesystem;
constexpr std::size_t kEndingLength = 4;

std::string ReadFile(const std::string& path)
{
    const std::vector<std::uint8_t> bytes = ReadWholeFile(path, [](std::uintmax_t size) {
        if (size > static_cast<std::uintmax_t>(std::numeric_limits<std::int32_t>::max()))
            throw RecordError(1, "no project is that large");
    });
    return {bytes.begin(), bytes.end()};
}

VeltError NotWritten(const WriteError& error)
{
    return ProgramError(errors::kWriteObj, "WriteObj Failure.\n" + error.description, "WriteObj");
}

/// Does what writes the working copy, and says of a failure that it was a project that could not be written.
template <typename Work>
auto Writing(Work work)
{
    try {
        return work();
    } catch (const WriteError& error) {
        throw NotWritten(error);
    }
}
} // namespace

ProjectNotWritten::ProjectNotWritten(const WriteError& error) : VeltError(NotWritten(error)) {}

ProjectFile::ProjectFile(clsVeltData& data, const FileCalls& calls) : m_data(data), m_calls(calls) {}

ScratchFolder& ProjectFile::Scratch()
{
    if (!m_scratch)
        m_scratch = Writing([] { return std::make_unique<ScratchFolder>(); });
    return *m_scratch;
}

std::optional<ProjectFile::Stamp> ProjectFile::StampOf(const std::string& path)
{
    std::error_code error;
    const auto written = fs::last_write_time(path, error);
    if (error)
        return std::nullopt;
    const auto size = fs::file_size(path, error);
    return error ? std::nullopt : std::optional(Stamp{path, written, size});
}

bool ProjectFile::ChangedOnDisk() const
{
    const auto now = StampOf(SavedName(m_data.DSFName()));
    return m_stamp && now && now->path == m_stamp->path && *now != *m_stamp;
}

std::string ProjectFile::SavedName(const std::string& path)
{
    if (IsProjectName(path) || path.size() < kEndingLength)
        return path;
    return path.substr(0, path.size() - kEndingLength) + ".VL3";
}

fs::path ProjectFile::WriteCopy(const std::string& bytes)
{
    fs::path copy = Scratch().NewName();
    Writing([&] { ReplaceFile(copy, bytes, m_calls); });
    return copy;
}

/// Reads `bytes` aside, makes the copy, and only then puts the data set in place.
std::optional<VeltError> ProjectFile::Take(const std::string& bytes, const std::string& origin)
{
    OpenedProject opened = ReadProjectData(bytes, m_data.TheRun());
    opened.data.DSFName(origin);
    const fs::path copy = WriteCopy(bytes);
    Writing([&] { Scratch().Origin(origin); });
    m_data = std::move(opened.data);
    m_copy = copy;
    return opened.failedConversion;
}

std::optional<VeltError> ProjectFile::Open(const std::string& path)
{
    const auto stamp = StampOf(path);
    auto failedConversion = Take(ReadFile(path), path);
    m_stamp = stamp;
    return failedConversion;
}

std::optional<VeltError> ProjectFile::OpenLeftover(const ScratchFolder::Leftover& leftover)
{
    auto failedConversion = Take(ReadFile(leftover.copy.string()), leftover.origin);
    m_stamp = StampOf(leftover.origin);
    m_data.MarkChanged();
    return failedConversion;
}

/// The bytes of the working copy. Should somebody have swept it away, the project as it was opened or saved
/// holds the same as long as nobody has changed it, also while it is about to get another name.
std::string ProjectFile::CopyBytes() const
{
    if (m_copy.empty())
        return {};
    std::error_code error;
    const bool swept = !fs::exists(m_copy, error);
    return ReadFile(swept && m_stamp && StampOf(m_stamp->path) == m_stamp ? m_stamp->path : m_copy.string());
}

/// The project with the bodies out of the present copy. \param places start and end of each fit in it
std::string ProjectFile::Rebuild(std::vector<std::int32_t>& places) const
{
    project_file::Project project = ProjectOf(m_data);
    const std::string copy = project.fits.empty() ? std::string() : CopyBytes();
    std::vector<std::string_view> bodies;
    for (const project_file::FitIndexRecord& fit : project.fits)
        bodies.push_back(project_file::BodyOf(fit, copy));
    std::size_t sum = 0;
    for (const std::string_view body : bodies)
        sum += body.size();
    if (sum > copy.size()) // written apart they could fill the disk
        throw RecordError(1, "logged fits share the same bytes");
    std::string bytes = project_file::WriteProject(project, bodies);
    for (const project_file::FitIndexRecord& fit : project.fits)
        places.insert(places.end(), {fit.Start, fit.TheEnd});
    return bytes;
}

void ProjectFile::Adopt(const fs::path& copy, const std::vector<std::int32_t>& places)
{
    for (std::int32_t i = 1; i <= m_data.NumLoggedFits(); ++i) {
        const auto at = 2 * static_cast<std::size_t>(i - 1);
        m_data.LoggedFit(i).Start(places[at]);
        m_data.LoggedFit(i).TheEnd(places[at + 1]);
    }
    std::error_code ignored;
    if (!m_copy.empty())
        fs::remove(m_copy, ignored);
    m_copy = copy;
}

void ProjectFile::Save()
{
    m_data.LogOrReload(false);
    const std::string target = SavedName(m_data.DSFName());
    std::vector<std::int32_t> places;
    const std::string bytes = Rebuild(places);
    const fs::path copy = WriteCopy(bytes);
    const auto dropCopy = [&copy] {
        std::error_code ignored;
        fs::remove(copy, ignored);
    };
    try {
        ReplaceFile(target, bytes, m_calls);
    } catch (const WriteError& error) {
        dropCopy();
        throw ProjectNotWritten(error);
    } catch (...) {
        dropCopy();
        throw;
    }
    Adopt(copy, places);
    m_data.DSFName(target);
    m_data.NumScens(m_data.NumProjScenarios());
    m_data.MarkSaved();
    m_stamp = StampOf(target);
    try {
        Scratch().Origin(target);
    } catch (const VeltError&) {
        return; // the project is saved; a crash and another program would find its copy under the former name
    }
}

void ProjectFile::KeepCopy()
{
    try {
        std::vector<std::int32_t> places;
        const std::string bytes = Rebuild(places);
        const fs::path copy = WriteCopy(bytes);
        Scratch().Origin(m_data.DSFName());
        Adopt(copy, places);
    } catch (const VeltError&) {
        return; // there is less to find after a crash, and nothing else is lost
    }
}

void ProjectFile::Append(clsFit& fit, const std::string& body)
{
    std::string bytes = CopyBytes();
    const std::size_t start = bytes.size() + 1;
    bytes += body;
    if (bytes.size() >= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        throw ProgramError(errors::kWriteObj, "WriteObj Failure.\nThere is no room for a further fit.",
                           "WriteObj");
    if (m_copy.empty())
        m_copy = Scratch().NewName();
    Writing([&] { ReplaceFile(m_copy, bytes, m_calls); });
    fit.Start(static_cast<std::int32_t>(start));
    fit.TheEnd(static_cast<std::int32_t>(bytes.size() + 1));
}

std::string ProjectFile::BodyOf(const clsFit& fit) const
{
    project_file::FitIndexRecord place;
    place.FitName = fit.FitName();
    place.Start = fit.Start();
    place.TheEnd = fit.TheEnd();
    return std::string(project_file::BodyOf(place, CopyBytes()));
}
