// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ReadWholeFile.h"

#include "base/FileErrors.h"
#include "base/VeltError.h"

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace
{
constexpr std::uint32_t kDiskError = 57;

[[noreturn]] void RaiseFileError(std::uint32_t number)
{
    const FileErrorText* const known = FindFileError(number);
    throw VeltError{number, std::string(known != nullptr ? known->text : ""), "ReadWholeFile"};
}
} // namespace

std::vector<std::uint8_t> ReadWholeFile(const std::string& path,
                                        const std::function<void(std::uintmax_t)>& checkSize)
{
    std::error_code failed;
    const auto status = std::filesystem::status(path, failed);
    if (!std::filesystem::exists(status))
        RaiseFileError(FileErrorOf(failed ? failed.value() : ENOENT));
    // A folder can be opened but not read, a pipe or a device may never end.
    if (!std::filesystem::is_regular_file(status))
        RaiseFileError(FileErrorOf(EISDIR));
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        RaiseFileError(FileErrorOf(errno));
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    if (failed)
        RaiseFileError(FileErrorOf(failed.value()));
    checkSize(size);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size)))
        RaiseFileError(kDiskError);
    return bytes;
}
