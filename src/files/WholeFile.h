// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/VeltError.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

/// The calls of the system that writing a file makes, so that a test can let each of them fail.
struct FileCalls {
    std::function<int(const char* path, int flags, mode_t mode)> open;
    std::function<ssize_t(int file, const void* bytes, std::size_t size)> write;
    std::function<int(int file)> sync;
    std::function<int(int file)> close;
    std::function<int(const char* from, const char* to)> rename;
};

/// Those of the system itself.
const FileCalls& SystemFileCalls();

/// A file that cannot be written: the path and the reason in words, and the system's error code.
struct WriteError : VeltError {
    WriteError(const std::filesystem::path& path, int code);
    int code;
};

/// Puts `bytes` under the name `path`, as a whole: they are written beside it under an exclusive random name,
/// flushed to the device and renamed, so that at every instant one whole file stands under the name, the old
/// or the new one. A file that replaces another takes over its permissions; a link is followed to the file
/// that it names. \throws WriteError 57 with the path and the reason in words (no space, no permission, no
/// such folder); nothing is left
///                      beside the file then. A failure to flush the folder, the last step, leaves the new
///                      file
void ReplaceFile(const std::filesystem::path& path, std::string_view bytes,
                 const FileCalls& calls = SystemFileCalls());

/// The parts of the above, for who replaces more than one file at once.

/// A name beside others that nobody else takes: `before` and 64 random bits in hexadecimal digits.
std::string RandomName(const std::string& before);

/// Writes `bytes` into the file `path`, which must not exist, and flushes them to the device. The file takes
/// over the permissions of `target`, which it will replace, where that exists. \throws VeltError 57 that says
/// of `target` why it cannot be written; there is no file `path` then
void WriteAside(const std::filesystem::path& path, const std::filesystem::path& target,
                std::string_view bytes, const FileCalls& calls);

/// Flushes names that were given or taken away in `folder`, so that they survive the power. \throws
/// WriteError 57 that says of `target` why it cannot be written
void FlushFolder(const std::filesystem::path& folder, const std::filesystem::path& target,
                 const FileCalls& calls);

/// \throws WriteError 57, "... cannot be written: " and the system's words for its error code `reason`
[[noreturn]] void FailToWrite(const std::filesystem::path& path, int reason);
