// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ResultSet.h"

#include "base/SignalHold.h"
#include "base/VeltError.h"
#include "files/ResultFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace
{
constexpr mode_t kNewFolder = 0777;

using Files = std::map<fs::path, std::string>;

std::optional<struct stat> StatusOf(const fs::path& path)
{
    struct stat status {
    };
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return status;
}

bool IsFolder(const fs::path& path)
{
    const auto status = StatusOf(path);
    return status && S_ISDIR(status->st_mode);
}

/// The folders that the files of a set need within its own: "plots" for "plots/01.png".
std::vector<fs::path> FoldersOf(const Files& files)
{
    std::vector<fs::path> folders;
    for (const auto& [name, bytes] : files)
        for (fs::path above = name.parent_path(); !above.empty(); above = above.parent_path())
            folders.push_back(above);
    std::sort(folders.begin(), folders.end()); // the outer before the inner
    folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
    return folders;
}

/// The entries of a folder; nothing, with the reason in `errno`, when it cannot be read.
std::optional<std::vector<fs::path>> EntriesOf(const fs::path& folder)
{
    std::error_code failed;
    std::vector<fs::path> entries;
    for (fs::directory_iterator at(folder, failed); !failed && at != fs::directory_iterator();
         at.increment(failed))
        entries.push_back(at->path());
    errno = failed.value();
    return failed ? std::nullopt : std::optional(std::move(entries));
}

void MakeFolders(const fs::path& at, const fs::path& target, const Files& files, const FolderCalls& calls)
{
    for (const fs::path& folder : FoldersOf(files))
        if (calls.mkdir((at / folder).c_str(), kNewFolder) != 0 && errno != EEXIST)
            FailToWrite(target / folder, errno);
}

/// Writes the files below `at`, flushed with the folders that hold them.
void WriteFiles(const fs::path& at, const fs::path& target, const Files& files, const FolderCalls& calls)
{
    MakeFolders(at, target, files, calls);
    for (const auto& [name, bytes] : files)
        WriteAside(at / name, target / name, bytes, calls.file);
    for (const fs::path& folder : FoldersOf(files))
        FlushFolder(at / folder, target / folder, calls.file);
    FlushFolder(at, target, calls.file);
}

bool HasAccessList(const fs::path& folder)
{
    return ::getxattr(folder.c_str(), "system.posix_acl_access", nullptr, 0) > 0 ||
           ::getxattr(folder.c_str(), "system.posix_acl_default", nullptr, 0) > 0;
}

/// Gives `folder` owner, group and permissions of `other`. \return whether it has them now
bool TakePlaceOf(const fs::path& folder, const fs::path& other)
{
    const auto own = StatusOf(folder);
    const auto wanted = StatusOf(other);
    if (!own || !wanted || HasAccessList(other))
        return false;
    if ((own->st_uid != wanted->st_uid || own->st_gid != wanted->st_gid) &&
        ::chown(folder.c_str(), wanted->st_uid, wanted->st_gid) != 0)
        return false;
    return ::chmod(folder.c_str(), wanted->st_mode & 07777U) == 0;
}

/// Gives what is the owner's in `old` a further name in `fresh`. \return false when something there cannot
/// have one: a folder that is no folder of the set, or a file of a system without further names
bool CarryOver(const fs::path& old, const fs::path& fresh, const Files& files, const fs::path& within,
               const ResultNames& ours, const FolderCalls& calls)
{
    const auto entries = EntriesOf(old / within);
    for (const fs::path& entry : entries.value_or(std::vector<fs::path>{})) {
        const fs::path name = within / entry.filename();
        if (IsFolder(entry)) {
            if (within.empty() && IsAsideName(name.string()))
                continue;
            // Only the folders of the set stand in the fresh one; another takes no place there.
            if (!TakePlaceOf(fresh / name, entry) || !CarryOver(old, fresh, files, name, ours, calls))
                return false;
        } else if (!files.contains(name) && !ours.byFile(entry) &&
                   calls.link(entry.c_str(), (fresh / name).c_str()) != 0) {
            return false;
        }
    }
    return entries.has_value();
}

/// Failures of a swap that say "not here" rather than "not possible at all".
bool IsNoSwapHere(int reason)
{
    constexpr std::array kReasons{EINVAL, ENOSYS, ENOTSUP, EBUSY, EXDEV, EPERM, EACCES, EROFS};
    return std::find(kReasons.begin(), kReasons.end(), reason) != kReasons.end();
}

/// Renames and new folders, all undone unless they are kept.
class Moves
{
public:
    explicit Moves(const FolderCalls& calls) : m_calls(calls) {}
    ~Moves()
    {
        if (m_kept)
            return;
        for (auto move = m_done.rbegin(); move != m_done.rend(); ++move)
            m_calls.file.rename(move->second.c_str(), move->first.c_str());
        for (auto folder = m_made.rbegin(); folder != m_made.rend(); ++folder)
            m_calls.remove(folder->c_str());
    }
    Moves(const Moves&) = delete;
    Moves& operator=(const Moves&) = delete;

    void MakeFolder(const fs::path& folder)
    {
        if (m_calls.mkdir(folder.c_str(), kNewFolder) == 0)
            m_made.push_back(folder);
        else if (errno != EEXIST)
            FailToWrite(folder, errno);
    }
    void Move(const fs::path& from, const fs::path& to, const fs::path& target)
    {
        if (m_calls.file.rename(from.c_str(), to.c_str()) != 0)
            FailToWrite(target, errno);
        m_done.emplace_back(from, to);
    }
    void Keep() { m_kept = true; }

private:
    const FolderCalls& m_calls;
    std::vector<std::pair<fs::path, fs::path>> m_done;
    std::vector<fs::path> m_made;
    bool m_kept = false;
};

/// Moves the older set out of `folder`, and what stands under the names of the new one.
void MoveOut(const fs::path& folder, const fs::path& former, const fs::path& within, const Files& files,
             const ResultNames& ours, Moves& moves)
{
    const auto entries = EntriesOf(folder / within);
    if (!entries)
        FailToWrite(folder / within, errno);
    for (const fs::path& entry : *entries) {
        const fs::path name = within / entry.filename();
        if (!IsFolder(entry) && (files.contains(name) || ours.byFile(entry)))
            moves.Move(folder / name, former / name, folder / name);
    }
}

fs::path Resolved(const fs::path& folder)
{
    std::error_code failed;
    const fs::path resolved = fs::weakly_canonical(fs::absolute(folder, failed), failed);
    const fs::path path = failed ? fs::absolute(folder, failed) : resolved;
    return path.has_filename() ? path : path.parent_path(); // without a slash at the end
}
} // namespace

bool HoldsWorkingFolder(const fs::path& folder)
{
    std::error_code failed;
    const fs::path here = fs::current_path(failed);
    return failed ||
           std::mismatch(folder.begin(), folder.end(), here.begin(), here.end()).first == folder.end();
}

const FolderCalls& SystemFolderCalls()
{
    static const FolderCalls calls{
        SystemFileCalls(), [](const char* path, mode_t mode) { return ::mkdir(path, mode); },
        [](const char* from, const char* to) { return ::linkat(AT_FDCWD, from, AT_FDCWD, to, 0); },
        [](const char* from, const char* to) {
            return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_EXCHANGE);
        },
        [](const char* path) { return ::remove(path); }};
    return calls;
}

ResultSet::ResultSet(const fs::path& folder, ResultNames ours, const FolderCalls& calls)
    : m_folder(Resolved(folder)), m_ours(std::move(ours)), m_calls(calls)
{
}

void ResultSet::Add(const fs::path& name, std::string bytes)
{
    m_files[name] = std::move(bytes);
}

void ResultSet::Check(const std::vector<fs::path>& names) const
{
    fs::path existing = m_folder;
    std::error_code failed;
    while (!fs::exists(fs::status(existing, failed)) && existing.has_relative_path()) {
        if (failed && failed.value() != ENOENT)
            FailToWrite(m_folder, failed.value());
        if (fs::is_symlink(fs::symlink_status(existing, failed)))
            FailToWrite(m_folder, ENOENT); // a link to nothing
        existing = existing.parent_path();
    }
    if (!fs::is_directory(existing, failed))
        FailToWrite(m_folder, failed ? failed.value() : ENOTDIR);
    if (::access(existing.c_str(), W_OK | X_OK) != 0)
        FailToWrite(m_folder, errno);
    for (const fs::path& name : names)
        if (IsFolder(m_folder / name))
            FailToWrite(m_folder / name, EISDIR);
}

void ResultSet::Publish() const
{
    const SignalHold hold;
    std::vector<fs::path> names;
    for (const auto& [name, bytes] : m_files)
        names.push_back(name);
    Check(names);
    std::error_code failed;
    if (!fs::exists(m_folder, failed))
        PublishNew();
    else if (!Swap())
        ReplaceInside();
    SweepRemainders(m_folder.parent_path(), m_ours, m_calls);
    SweepRemainders(m_folder, m_ours, m_calls);
}

void ResultSet::PublishNew() const
{
    std::error_code failed;
    fs::create_directories(m_folder.parent_path(), failed);
    if (failed)
        FailToWrite(m_folder, failed.value());
    AsideFolder aside(m_folder.parent_path(), m_folder, m_calls);
    WriteFiles(aside.Path(), m_folder, m_files, m_calls);
    if (m_calls.file.rename(aside.Path().c_str(), m_folder.c_str()) != 0)
        FailToWrite(m_folder, errno);
    aside.Keep();
    FlushFolder(m_folder.parent_path(), m_folder, m_calls.file);
}

/// \return false, with nothing changed, when this folder cannot be swapped
bool ResultSet::Swap() const
{
    if (HoldsWorkingFolder(m_folder) || ::access(m_folder.parent_path().c_str(), W_OK | X_OK) != 0)
        return false;
    AsideFolder aside(m_folder.parent_path(), m_folder, m_calls);
    if (!TakePlaceOf(aside.Path(), m_folder))
        return false;
    MakeFolders(aside.Path(), m_folder, m_files, m_calls);
    if (!CarryOver(m_folder, aside.Path(), m_files, {}, m_ours, m_calls))
        return false;
    WriteFiles(aside.Path(), m_folder, m_files, m_calls);
    if (m_calls.exchange(aside.Path().c_str(), m_folder.c_str()) != 0) {
        if (!IsNoSwapHere(errno))
            FailToWrite(m_folder, errno);
        return false;
    }
    aside.Keep(); // what stands under its name now is the old folder
    RemoveOld(aside.Path());
    FlushFolder(m_folder.parent_path(), m_folder, m_calls.file);
    return true;
}

void ResultSet::RemoveOld(const fs::path& old) const
{
    const auto mayGo = [&](const fs::path& file) {
        return m_files.contains(file.lexically_relative(old)) || MayGo(file, m_ours);
    };
    RemoveWhat(old, mayGo, m_calls);
    // What its owner put into the folder while the set was written.
    for (const fs::path& entry : EntriesOf(old).value_or(std::vector<fs::path>{}))
        if (!StatusOf(m_folder / entry.filename()))
            m_calls.file.rename(entry.c_str(), (m_folder / entry.filename()).c_str());
    m_calls.remove(old.c_str());
}

void ResultSet::ReplaceInside() const
{
    const AsideFolder fresh(m_folder, m_folder, m_calls);
    WriteFiles(fresh.Path(), m_folder, m_files, m_calls);
    const AsideFolder former(m_folder, m_folder, m_calls);
    MakeFolders(former.Path(), m_folder, m_files, m_calls);
    Moves moves(m_calls);
    for (const fs::path& folder : FoldersOf(m_files))
        moves.MakeFolder(m_folder / folder);
    MoveOut(m_folder, former.Path(), {}, m_files, m_ours, moves);
    for (const fs::path& folder : FoldersOf(m_files))
        MoveOut(m_folder, former.Path(), folder, m_files, m_ours, moves);
    for (const auto& [name, bytes] : m_files)
        moves.Move(fresh.Path() / name, m_folder / name, m_folder / name);
    moves.Keep();
    for (const fs::path& folder : FoldersOf(m_files))
        FlushFolder(m_folder / folder, m_folder, m_calls.file);
    FlushFolder(m_folder, m_folder, m_calls.file);
}
