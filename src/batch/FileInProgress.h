// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

/// A file that gets its name only when it is whole: until then it stands beside its place under a name of its
/// own, and a write that fails leaves nothing behind and an older file untouched.
class FileInProgress
{
public:
    explicit FileInProgress(std::filesystem::path place);
    ~FileInProgress();
    FileInProgress(const FileInProgress&) = delete;
    FileInProgress& operator=(const FileInProgress&) = delete;

    /// Where to write; it ends as the final name does.
    std::string Path() const { return m_path.string(); }
    /// \return false when the file cannot take its place
    bool Finish();

private:
    std::filesystem::path m_place, m_path;
};
