// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ResultFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace
{
constexpr std::string_view kPrefix = ".velt-results.";
constexpr std::size_t kDigits = 16;
constexpr int kNameTries = 16;
constexpr mode_t kNewFolder = 0777; // less what the user's mask takes away

/// The folder, opened and locked by us alone; -1 when it is not there or somebody holds it.
int Lock(const fs::path& folder)
{
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0)
        return -1;
    struct stat opened {
    };
    struct stat named {
    };
    // Between the opening and the lock somebody may have removed it.
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &opened) == 0 &&
        ::lstat(folder.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
        opened.st_dev == named.st_dev)
        return file;
    ::close(file);
    return -1;
}

bool IsOwn(const fs::path& folder)
{
    struct stat status {
    };
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

std::vector<fs::directory_entry> EntriesOf(const fs::path& folder)
{
    std::error_code failed;
    std::vector<fs::directory_entry> entries;
    for (fs::directory_iterator at(folder, failed); !failed && at != fs::directory_iterator();
         at.increment(failed))
        entries.push_back(*at);
    return entries;
}

bool IsFolder(const fs::path& path)
{
    std::error_code failed;
    return fs::is_directory(fs::symlink_status(path, failed));
}
} // namespace

AsideFolder::AsideFolder(const fs::path& parent, const fs::path& target, const FolderCalls& calls)
    : m_calls(calls)
{
    for (int tries = 0; tries < kNameTries; ++tries) {
        if (TryMake(parent))
            return;
        if (errno != EEXIST)
            break;
    }
    FailToWrite(target, errno);
}

bool AsideFolder::TryMake(const fs::path& parent)
{
    m_path = parent / RandomName(std::string(kPrefix));
    if (m_calls.mkdir(m_path.c_str(), kNewFolder) != 0)
        return false;
    m_lock = Lock(m_path);
    std::error_code failed;
    // Without a lock because the file system has none, nobody else gets one either, and the folder stands.
    if (m_lock >= 0 || fs::exists(m_path, failed))
        return true;
    errno = EEXIST; // another run swept it away before it was locked
    return false;
}

AsideFolder::~AsideFolder()
{
    if (!m_kept)
        RemoveWhat(
            m_path, [](const fs::path&) { return true; }, m_calls);
    if (m_lock >= 0)
        ::close(m_lock);
}

bool IsAsideName(const std::string& name)
{
    return name.size() == kPrefix.size() + kDigits && name.starts_with(kPrefix) &&
           name.find_first_not_of("0123456789abcdef", kPrefix.size()) == std::string::npos;
}

void RemoveWhat(const fs::path& folder, const std::function<bool(const fs::path& file)>& mayGo,
                const FolderCalls& calls)
{
    for (const fs::directory_entry& entry : EntriesOf(folder))
        if (IsFolder(entry.path()))
            RemoveWhat(entry.path(), mayGo, calls);
        else if (mayGo(entry.path()))
            calls.remove(entry.path().c_str());
    calls.remove(folder.c_str()); // refused by the system while something is in it
}

bool MayGo(const fs::path& file, const ResultNames& ours)
{
    struct stat status {
    };
    return ours.byName(file.filename().string()) ||
           (::lstat(file.c_str(), &status) == 0 && status.st_nlink > 1);
}

void SweepRemainders(const fs::path& parent, const ResultNames& ours, const FolderCalls& calls)
{
    for (const fs::directory_entry& entry : EntriesOf(parent)) {
        if (!IsAsideName(entry.path().filename().string()) || !IsOwn(entry.path()))
            continue;
        const int lock = Lock(entry.path());
        if (lock < 0)
            continue;
        RemoveWhat(
            entry.path(), [&ours](const fs::path& file) { return MayGo(file, ours); }, calls);
        ::close(lock);
    }
}
