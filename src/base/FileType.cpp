// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileType.h"

#include "base/Text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace
{
constexpr std::size_t kVersionAt = kProjectMagic.size();
constexpr std::size_t kExtensionLength = 4;

std::string_view LastFour(std::string_view path)
{
    return path.size() < kExtensionLength ? path : path.substr(path.size() - kExtensionLength);
}

/// The version byte behind the magic; 0 when the file is too short or begins otherwise.
int VersionByte(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::array<char, kVersionAt + 1> head{};
    if (!file.read(head.data(), head.size()))
        return 0;
    const bool ours = std::equal(kProjectMagic.begin(), kProjectMagic.end(), head.begin(),
                                 [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); });
    return ours ? static_cast<std::uint8_t>(head[kVersionAt]) : 0;
}
} // namespace

FileType GetFileType(const std::string& path)
{
    const std::string extension = ToUpper(LastFour(path));
    if (extension == ".TXT")
        return FileType::Text;
    if (extension == ".CSV")
        return FileType::CommaSeparated;
    const int version = VersionByte(path);
    constexpr std::array<std::string_view, 4> kExtensions{".QX4", ".VL2", ".VL3", ".QX5"};
    if (version < 1 || version > 4 || extension != kExtensions[static_cast<std::size_t>(version - 1)])
        return FileType::NotRecognised;
    return static_cast<FileType>(version);
}

bool IsProjectName(const std::string& path)
{
    return ToUpper(path).ends_with(".VL3");
}

bool IsLegacyName(const std::string& path)
{
    return ToUpper(path).ends_with(".VL2");
}

bool CheckFileAccess(const std::string& path, FileAccess mode, ErrorReporter& reporter)
{
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (mode == FileAccess::Write && std::filesystem::exists(status)) {
        // The missing blank behind the path belongs to the text.
        const Message question{.text =
                                   "The file " + path +
                                   "already exists on \ndisk. Saving to that file will overwrite the file's "
                                   "current contents \n\nChoose OK to replace file, Cancel to stop.",
                               .buttons = Buttons::OkCancel,
                               .title = "File Message"};
        return reporter.Show(question) == Answer::Ok;
    }
    // What the system cannot even look at (a loop of links, say) is not missing: who reads it tells why not.
    if (mode == FileAccess::Read && status.type() == std::filesystem::file_type::not_found) {
        reporter.Show({.text = "The file " + path + " doesn't exist.\nPlease select another file. ",
                       .title = "File Message"});
        return false;
    }
    return true;
}
