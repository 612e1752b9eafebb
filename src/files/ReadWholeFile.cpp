// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ReadWholeFile.h"

#include "base/FileErrors.h"

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace
{
[[noreturn]] void Refuse(int code)
{
    throw FileError(code, "ReadWholeFile");
}
} // namespace

std::vector<std::uint8_t> ReadWholeFile(const std::string& path,
                                        const std::function<void(std::uintmax_t)>& checkSize)
{
    std::error_code failed;
    const auto status = std::filesystem::status(path, failed);
    if (!std::filesystem::exists(status))
        Refuse(failed ? failed.value() : ENOENT);
    // A folder can be opened but not read, a pipe or a device may never end.
    if (!std::filesystem::is_regular_file(status))
        Refuse(EISDIR);
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        Refuse(errno);
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    if (failed)
        Refuse(failed.value());
    checkSize(size);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size)))
        Refuse(EIO);
    return bytes;
}
