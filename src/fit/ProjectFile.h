// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/VeltError.h"
#include "data/clsVeltData.h"
#include "files/ScratchFolder.h"
#include "files/WholeFile.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

/// The project itself cannot be written: 2254 with the program's base, and the reason. Another name or folder
/// may do.
struct ProjectNotWritten : VeltError {
    explicit ProjectNotWritten(const WriteError& error);
};

/// The project on disk behind a data set, and the private working copy that holds the bodies of its logged
/// fits. The project is only ever replaced whole, by Save; all work between happens on the copy.
class ProjectFile
{
public:
    /// `data` must outlive this object.
    explicit ProjectFile(clsVeltData& data, const FileCalls& calls = SystemFileCalls());

    /// Reads the project at `path` into the data set, in place of what it held, and makes the working copy.
    /// \return a conversion of its columns that failed; they are then as the file has them
    /// \throws FileError, RecordError, VeltError 2254: the data set is as it was
    std::optional<VeltError> Open(const std::string& path);

    /// The same for a copy that a crash left behind: the data set is then changed and not saved.
    std::optional<VeltError> OpenLeftover(const ScratchFolder::Leftover& leftover);

    /// Writes the project under DSFName, whose ending becomes ".vl3", and the working copy anew. Afterwards
    /// the data set is unchanged against the disk. \throws ProjectNotWritten, FileError, RecordError (a fit
    /// whose place in the copy is not sound), VeltError 2254: project, copy and data set are as they were;
    /// only where the very last step failed, that to make the new name last, the new project stands
    void Save();

    /// Brings the working copy into step with the data set; the project stays as it is. For what must survive
    /// a crash. A failure is none: the copy then stays as it was.
    void KeepCopy();

    /// Puts the body of a fit behind the working copy and notes its place in the fit.
    /// \throws VeltError 2254 with the copy as it was
    void Append(clsFit& fit, const std::string& body);

    /// The body of a fit. \throws FileError, RecordError
    std::string BodyOf(const clsFit& fit) const;

    /// The working copy; empty before there is one.
    const std::filesystem::path& strTemp() const { return m_copy; }

    /// Whether somebody else has changed the project on disk since it was opened or saved here.
    bool ChangedOnDisk() const;

    /// The name under which Save writes: one that ends in ".vl3", in any case of letters, is kept; of any
    /// other the last four characters give way to ".VL3".
    static std::string SavedName(const std::string& path);

private:
    struct Stamp {
        std::string path;
        std::filesystem::file_time_type written;
        std::uintmax_t size = 0;
        bool operator==(const Stamp&) const = default;
    };
    static std::optional<Stamp> StampOf(const std::string& path);
    std::optional<VeltError> Take(const std::string& bytes, const std::string& origin);
    std::string CopyBytes() const;
    std::string Rebuild(std::vector<std::int32_t>& places) const;
    void Adopt(const std::filesystem::path& copy, const std::vector<std::int32_t>& places);
    std::filesystem::path WriteCopy(const std::string& bytes);
    ScratchFolder& Scratch();

    clsVeltData& m_data;
    const FileCalls& m_calls;
    std::unique_ptr<ScratchFolder> m_scratch; ///< made when it is first needed
    std::filesystem::path m_copy;
    std::optional<Stamp> m_stamp; ///< of the project as it was opened or saved
};
