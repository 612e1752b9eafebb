// SPDX-License-Identifier: GPL-3.0-or-later
// The folders that a set of results passes through on its way to its name.
#pragma once

#include "files/ResultSet.h"

#include <filesystem>
#include <functional>

/// A folder under a random name, held by this run as long as the object lives, and gone with it.
class AsideFolder
{
public:
    /// Makes one in `parent`. \throws VeltError 57 that says of `target` why it cannot be written
    AsideFolder(const std::filesystem::path& parent, const std::filesystem::path& target,
                const FolderCalls& calls);
    ~AsideFolder();
    AsideFolder(const AsideFolder&) = delete;
    AsideFolder& operator=(const AsideFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    /// It has got its name: it stays.
    void Keep() { m_kept = true; }

private:
    bool TryMake(const std::filesystem::path& parent);

    const FolderCalls& m_calls;
    std::filesystem::path m_path;
    int m_lock = -1; ///< the folder, opened and locked: the lock goes with the program, however it ends
    bool m_kept = false;
};

/// Whether a folder has the form of name that AsideFolder gives.
bool IsAsideName(const std::string& name);

/// Removes from `folder`, and from folders in it, every file for which `mayGo`, and then the folders that are
/// empty. What cannot be removed stays.
void RemoveWhat(const std::filesystem::path& folder,
                const std::function<bool(const std::filesystem::path& file)>& mayGo,
                const FolderCalls& calls);

/// Removes the remainders that killed runs left in `parent`: folders of our naming and ownership that no
/// living run holds; see ResultSet::Publish for what goes.
void SweepRemainders(const std::filesystem::path& parent, const ResultNames& ours, const FolderCalls& calls);

/// Whether a file may go with a remainder: a name of ours, or one of several names of the same file.
bool MayGo(const std::filesystem::path& file, const ResultNames& ours);
