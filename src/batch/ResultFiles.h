// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitRequest.h"
#include "files/ResultSet.h"

#include <filesystem>
#include <string>
#include <vector>

/// A file of results before it is written.
struct ResultFile {
    std::string name;
    std::string bytes;
};

/// The files of one job: tables in the directory of --csv, pictures in that of --plots. Where the one is the
/// other or lies in it they are one set; two directories apart are two sets, put in place one after the
/// other. Contours without --csv go into the working directory.
class ResultFiles
{
public:
    explicit ResultFiles(const FitRequest& request);

    /// What can be said against the directories before any work. It writes nothing.
    /// \throws BatchFailure BadUsage when they cannot be written to, or a result, or the program's output,
    ///         would take the place of the data file
    void Check(const FitRequest& request) const;

    void AddTables(std::vector<ResultFile> files) { Add(m_tables, std::move(files)); }
    void AddPictures(std::vector<ResultFile> files) { Add(m_pictures, std::move(files)); }

    /// \throws BatchFailure BadUsage with the reason; the older results of that directory then stand
    void Publish() const;

private:
    struct Directory {
        std::string option; ///< for messages
        ResultSet set;
    };
    /// Where a kind of file goes: a set, and a folder within it.
    struct Place {
        std::size_t directory = 0;
        std::filesystem::path within;
    };
    void Add(const Place& place, std::vector<ResultFile> files);
    /// \param kind what the file is, "data"
    void RefuseToReplace(const std::string& input, const std::string& kind) const;

    std::vector<Directory> m_directories; ///< at most two
    Place m_tables, m_pictures;
};
