// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
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

/// Puts `bytes` under the name `path`, as a whole: they are written beside it under an exclusive random name,
/// flushed to the device and renamed, so that at every instant one whole file stands under the name, the old
/// or the new one. A file that replaces another takes over its permissions; a link is followed to the file
/// that it names. \throws VeltError 57 with the path and the reason in words (no space, no permission, no
/// such folder); nothing is left
///                      beside the file then. A failure to flush the folder, the last step, leaves the new
///                      file
void ReplaceFile(const std::filesystem::path& path, std::string_view bytes,
                 const FileCalls& calls = SystemFileCalls());
