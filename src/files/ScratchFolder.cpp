// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ScratchFolder.h"

#include "files/WholeFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

constexpr const char* kPrefix = "velt-project-";
constexpr const char* kLock = "lock";
constexpr const char* kOrigin = "origin";
constexpr const char* kCopyEnding = ".vl3";

fs::path TemporaryFolder()
{
    std::error_code error;
    fs::path folder = fs::temp_directory_path(error);
    return error ? fs::path("/tmp") : folder;
}

/// The folders of this user that carry our name, links excluded.
std::vector<fs::path> OurFolders()
{
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator at(TemporaryFolder(), error), end; !error && at != end; at.increment(error)) {
        struct stat status {
        };
        if (at->path().filename().string().starts_with(kPrefix) &&
            ::lstat(at->path().c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
            status.st_uid == ::geteuid())
            found.push_back(at->path());
    }
    return found;
}

/// The lock of a folder, taken for as long as this object lives.
class Lock
{
public:
    explicit Lock(const fs::path& folder)
        : m_file(::open((folder / kLock).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW)),
          m_taken(m_file >= 0 && ::flock(m_file, LOCK_EX | LOCK_NB) == 0)
    {
    }
    ~Lock()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    bool Exists() const { return m_file >= 0; }
    bool Taken() const { return m_taken; }

private:
    int m_file;
    bool m_taken;
};

std::string OriginOf(const fs::path& folder)
{
    std::ifstream file(folder / kOrigin, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

fs::path NewestCopyIn(const fs::path& folder)
{
    fs::path newest;
    fs::file_time_type when{};
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        std::error_code unreadable;
        const auto written = fs::last_write_time(at->path(), unreadable);
        if (at->path().extension() != kCopyEnding || unreadable || (!newest.empty() && written < when))
            continue;
        newest = at->path();
        when = written;
    }
    return newest;
}

bool IsSameFile(const std::string& a, const std::string& b)
{
    std::error_code error;
    return !a.empty() && !b.empty() && (a == b || fs::equivalent(a, b, error));
}
} // namespace

ScratchFolder::ScratchFolder()
{
    std::string name = (TemporaryFolder() / (std::string(kPrefix) + "XXXXXX")).string();
    if (::mkdtemp(name.data()) == nullptr) // which lets its owner alone in
        FailToWrite(name, errno);
    m_folder = name;
    constexpr mode_t kOwnerAlone = 0600;
    m_lock = ::open((m_folder / kLock).c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerAlone);
    if (m_lock < 0 || ::flock(m_lock, LOCK_EX | LOCK_NB) != 0) {
        const int reason = errno;
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
        FailToWrite(m_folder, reason);
    }
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
    ::close(m_lock);
}

fs::path ScratchFolder::NewName()
{
    return m_folder / (std::to_string(++m_names) + kCopyEnding);
}

void ScratchFolder::Origin(const std::string& path)
{
    ReplaceFile(m_folder / kOrigin, path);
}

std::vector<ScratchFolder::Leftover> ScratchFolder::Leftovers()
{
    std::vector<Leftover> found;
    for (const fs::path& folder : OurFolders()) {
        const Lock lock(folder);
        if (lock.Exists() && !lock.Taken())
            continue; // somebody works on it
        Leftover leftover{folder, NewestCopyIn(folder), OriginOf(folder)};
        if (leftover.copy.empty())
            Discard(leftover);
        else
            found.push_back(std::move(leftover));
    }
    return found;
}

void ScratchFolder::Discard(const Leftover& leftover)
{
    std::error_code ignored;
    fs::remove_all(leftover.folder, ignored);
}

bool ScratchFolder::IsOpenElsewhere(const std::string& path)
{
    for (const fs::path& folder : OurFolders()) {
        const Lock lock(folder); // a lock of this very program is not free either
        if (lock.Exists() && !lock.Taken() && IsSameFile(OriginOf(folder), path))
            return true;
    }
    return false;
}
