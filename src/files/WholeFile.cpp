// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/WholeFile.h"

#include "base/ForeignText.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace
{
constexpr int kNameTries = 16;    // each of 64 random bits: one is enough unless somebody is in the way
constexpr mode_t kNewFile = 0666; // less what the user's mask takes away

constexpr int kWriteNew = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;

std::filesystem::path BesideAtRandom(const std::filesystem::path& path)
{
    // A name of the greatest length has no room for more behind it.
    constexpr std::size_t kMostOfName = 200;
    return path.parent_path() / RandomName("." + path.filename().string().substr(0, kMostOfName) + ".");
}

/// A file that is open for writing and goes away again unless it was given its name.
class Unfinished
{
public:
    /// Beside `target` under a random name.
    Unfinished(const std::filesystem::path& target, const FileCalls& calls) : m_target(target), m_calls(calls)
    {
        for (int tries = 0; m_file < 0 && tries < kNameTries; ++tries) {
            m_path = BesideAtRandom(target);
            m_file = m_calls.open(m_path.c_str(), kWriteNew, kNewFile);
            if (m_file < 0 && errno != EEXIST)
                break;
        }
        if (m_file < 0)
            FailToWrite(m_target, errno);
    }
    /// As `path` itself.
    Unfinished(const std::filesystem::path& target, const std::filesystem::path& path, const FileCalls& calls)
        : m_target(target), m_calls(calls), m_path(path),
          m_file(calls.open(path.c_str(), kWriteNew, kNewFile))
    {
        if (m_file < 0)
            FailToWrite(m_target, errno);
    }
    ~Unfinished()
    {
        if (m_file >= 0)
            m_calls.close(m_file);
        if (!m_kept)
            ::unlink(m_path.c_str());
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    void TakePermissionsOf(const std::filesystem::path& other) const
    {
        struct stat status {
        };
        if (::stat(other.c_str(), &status) == 0 && ::fchmod(m_file, status.st_mode & 07777U) != 0)
            FailToWrite(m_target, errno);
    }
    void Write(std::string_view bytes) const
    {
        while (!bytes.empty()) {
            const ssize_t written = m_calls.write(m_file, bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                FailToWrite(m_target, written < 0 ? errno : ENOSPC);
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    void Flush()
    {
        if (m_calls.sync(m_file) != 0)
            FailToWrite(m_target, errno);
        const int file = m_file;
        m_file = -1;
        if (m_calls.close(file) != 0)
            FailToWrite(m_target, errno);
    }
    void Keep() { m_kept = true; }
    void GiveName()
    {
        if (m_calls.rename(m_path.c_str(), m_target.c_str()) != 0)
            FailToWrite(m_target, errno);
        Keep();
    }

private:
    const std::filesystem::path& m_target;
    const FileCalls& m_calls;
    std::filesystem::path m_path;
    int m_file = -1;
    bool m_kept = false;
};
} // namespace

const FileCalls& SystemFileCalls()
{
    static const FileCalls calls{
        [](const char* path, int flags, mode_t mode) { return ::open(path, flags, mode); },
        [](int file, const void* bytes, std::size_t size) { return ::write(file, bytes, size); },
        [](int file) { return ::fsync(file); }, [](int file) { return ::close(file); },
        [](const char* from, const char* to) { return ::rename(from, to); }};
    return calls;
}

std::string RandomName(const std::string& before)
{
    std::random_device random;
    const std::uint64_t bits = (static_cast<std::uint64_t>(random()) << 32U) | random();
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(bits));
    return before + text;
}

WriteError::WriteError(const std::filesystem::path& path, int code)
    : VeltError(
          errors::kDevice,
          Quotable(path.string()) + " cannot be written: " + std::generic_category().message(code) + ".", ""),
      code(code)
{
}

void FailToWrite(const std::filesystem::path& path, int reason)
{
    throw WriteError(path, reason);
}

void WriteAside(const std::filesystem::path& path, const std::filesystem::path& target,
                std::string_view bytes, const FileCalls& calls)
{
    Unfinished file(target, path, calls);
    file.TakePermissionsOf(target);
    file.Write(bytes);
    file.Flush();
    file.Keep();
}

void FlushFolder(const std::filesystem::path& folder, const std::filesystem::path& target,
                 const FileCalls& calls)
{
    const int file = calls.open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (file < 0)
        FailToWrite(target, errno);
    const int failed = calls.sync(file) != 0 ? errno : 0;
    calls.close(file);
    if (failed != 0 && failed != EINVAL) // some file systems flush no folders
        FailToWrite(target, failed);
}

void ReplaceFile(const std::filesystem::path& path, std::string_view bytes, const FileCalls& calls)
{
    std::error_code none;
    const std::filesystem::path linked = std::filesystem::canonical(path, none);
    const std::filesystem::path target = none ? path : linked;
    Unfinished file(target, calls);
    if (!none)
        file.TakePermissionsOf(target);
    file.Write(bytes);
    file.Flush();
    file.GiveName();
    FlushFolder(target.has_parent_path() ? target.parent_path() : ".", target, calls);
}
