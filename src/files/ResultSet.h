// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/WholeFile.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

/// The calls of the system that replacing a set of files makes, so that a test can let each of them fail or
/// end the program.
struct FolderCalls {
    FileCalls file;
    std::function<int(const char* path, mode_t mode)> mkdir;
    std::function<int(const char* from, const char* to)> link;     ///< a further name of a file or link
    std::function<int(const char* from, const char* to)> exchange; ///< two names swap in one step
    std::function<int(const char* path)> remove;                   ///< a file or an empty folder
};

/// Those of the system itself.
const FolderCalls& SystemFolderCalls();

/// What belongs to an older set in the folder and goes when a new one comes. Everything else in the folder is
/// its owner's and stays.
struct ResultNames {
    std::function<bool(const std::string& name)> byName;           ///< looking at the name alone
    std::function<bool(const std::filesystem::path& file)> byFile; ///< looking into the file too
};

/// Whether `folder`, absolute and without links, is the working folder or one above it. Such a folder keeps
/// its place: a shell that stands there would find itself in a folder that is gone.
bool HoldsWorkingFolder(const std::filesystem::path& folder);

/// Files that belong together, the results of one run, put into a folder as one: files of an older set do not
/// remain beside them.
///
/// The set is written into a folder of its own beside the old one, together with further names (hard links)
/// for the owner's own files, and the two folders swap in one step: whatever ends the program, and whenever,
/// one whole set stands under the name. Some folders cannot be swapped: the working folder or one above it,
/// one that holds further folders or has an access list, a mount point, one whose parent may not be written
/// to, and any on a file system that knows no swap. There the set is written aside inside the folder, the
/// older files are moved out and the new ones in; a program killed within these few renames leaves a part of
/// one set, never parts of two.
class ResultSet
{
public:
    /// \param folder  may not exist yet; a link is followed \param calls  must outlive the set
    ResultSet(const std::filesystem::path& folder, ResultNames ours,
              const FolderCalls& calls = SystemFolderCalls());

    /// Adds a file. `name` is relative to the folder; what stands before a slash in it is a folder within.
    void Add(const std::filesystem::path& name, std::string bytes);

    /// Whether Publish could go well with files of these names, as far as that can be seen without writing.
    /// \throws VeltError 57 with the path and the reason in words
    void Check(const std::vector<std::filesystem::path>& names) const;

    /// Puts the set in the place of the older one; requests to end the program wait meanwhile. Remainders of
    /// killed runs beside and in the folder are swept: folders of our naming that no living run holds. Of
    /// what they hold nothing goes but names of ours and further names of files that exist elsewhere.
    /// \throws VeltError 57 with the path and the reason in words; the older set then stands as it was, and
    ///         nothing is left beside it. A failure to flush the folder, the last step, leaves the new set
    void Publish() const;

    /// The folder, absolute and without links.
    const std::filesystem::path& Folder() const { return m_folder; }

private:
    void PublishNew() const;
    bool Swap() const;
    void RemoveOld(const std::filesystem::path& old) const;
    void ReplaceInside() const;

    std::filesystem::path m_folder;
    ResultNames m_ours;
    const FolderCalls& m_calls;
    std::map<std::filesystem::path, std::string> m_files;
};
