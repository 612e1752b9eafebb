// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Utilities.h"

#include "base/StringTable.h"
#include "base/VeltError.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace
{
constexpr std::size_t kVersionAt = kProjectMagic.size();
constexpr std::size_t kExtensionLength = 4;
constexpr std::string_view kApplication = "VELT 3.0";
constexpr std::string_view kUnknownFileError =
    "Default Error Message: An internal unidentified error has occured.";

// Raised for a path in none of the accepted forms.
constexpr int kBadPathname = 161;
constexpr std::uint32_t kWindowsErrorBase = 0x80047148U;
constexpr std::size_t kMessageBuffer = 256;
constexpr int kFirstTableError = 1001;

constexpr std::array<FileErrorText, 11> kFileErrors{{
    {52, "That file number or name is illegal", Buttons::OkCancel},
    {54, "Can't open your file for that type of access", Buttons::RetryCancel},
    {55, "This file is already open.", Buttons::RetryCancel},
    {57, "Internal disk error.", Buttons::RetryCancel},
    {61, "Disk is full. Continue?", Buttons::YesNoCancel},
    {62,
     "This file has a nonstandard end-of-file marker, or an attempt was made to read beyond the "
     "end-of-file marker.",
     Buttons::RetryCancel},
    {64, "That filename is illegal.", Buttons::OkCancel},
    {68, "That device appears unavailable.", Buttons::RetryCancel},
    {71, "Insert a disk in the drive and make sure door is closed", Buttons::RetryCancel},
    {75, "That path or filename cannot be accessed.", Buttons::RetryCancel},
    {76, "That path doesn't exist.", Buttons::RetryCancel},
}};

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

#ifdef _WIN32
bool IsFullPath(std::string_view path)
{
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (path.size() >= 3 && isLetter(path[0]) && path.substr(1, 2) == ":\\")
        return true;
    if (path.substr(0, 2) != "\\\\")
        return false;
    const auto share = path.find('\\', 2);
    return share != std::string_view::npos && share > 2 && share + 1 < path.size() && path[share + 1] != '\\';
}
#else
bool IsFullPath(std::string_view path)
{
    return !path.empty() && path.front() == '/';
}
#endif

/// `path` taken apart by the system's rules; empty stays empty.
std::filesystem::path Accepted(const std::string& path)
{
    if (!path.empty() && !IsFullPath(path))
        RaiseWindowsError(kBadPathname);
    return std::filesystem::path(path);
}

std::string TableText(int id)
{
    try {
        return LoadResString(id);
    } catch (const VeltError&) {
        return {}; // the failure to be raised matters more than its missing words
    }
}

bool IsSeparator(char c)
{
    return c == ' ' || c == '\t' || c == ',';
}

bool ContinuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}
} // namespace

FileType GetFileType(const std::string& path)
{
    const std::string extension = ToUpper(LastFour(path));
    if (extension == ".TXT")
        return FileType::Text;
    const int version = VersionByte(path);
    constexpr std::array<std::string_view, 4> kExtensions{".QX4", ".VL2", ".VL3", ".QX5"};
    if (version < 1 || version > 4 || extension != kExtensions[static_cast<std::size_t>(version - 1)])
        return FileType::NotRecognised;
    return static_cast<FileType>(version);
}

bool CheckFileAccess(const std::string& path, FileAccess mode, ErrorReporter& reporter)
{
    std::error_code ignored;
    const bool exists = std::filesystem::exists(path, ignored);
    if (mode == FileAccess::Write && exists) {
        // The missing blank behind the path belongs to the text.
        const Message question{.text =
                                   "The file " + path +
                                   "already exists on \ndisk. Saving to that file will overwrite the file's "
                                   "current contents \n\nChoose OK to replace file, Cancel to stop.",
                               .buttons = Buttons::OkCancel,
                               .title = "File Message"};
        return reporter.Show(question) == Answer::Ok;
    }
    if (mode == FileAccess::Read && !exists) {
        reporter.Show({.text = "The file " + path + " doesn't exist.\nPlease select another file. ",
                       .title = "File Message"});
        return false;
    }
    return true;
}

std::string GetFullPath(const std::string& path)
{
    return Accepted(path).lexically_normal().string();
}

std::string GetBaseName(const std::string& path)
{
    return Accepted(path).stem().string();
}

std::string GetFileName(const std::string& path)
{
    return Accepted(path).filename().string();
}

std::string GetFileExt(const std::string& path)
{
    return Accepted(path).extension().string();
}

std::string PadString(std::string_view text, std::size_t width)
{
    std::size_t characters = 0;
    std::size_t end = 0;
    while (end < text.size() && characters < width) {
        ++characters;
        do
            ++end;
        while (end < text.size() && ContinuesCharacter(text[end]));
    }
    return std::string(text.substr(0, end)) + std::string(width - characters, ' ');
}

std::string Trim(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string ToUpper(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::vector<std::string> ParseLine(std::string_view line)
{
    std::vector<std::string> tokens;
    auto at = line.begin();
    while (at != line.end()) {
        const auto first = std::find_if_not(at, line.end(), IsSeparator);
        at = std::find_if(first, line.end(), IsSeparator);
        if (first != at)
            tokens.emplace_back(first, at);
    }
    return tokens;
}

const FileErrorText* FindFileError(std::uint32_t number)
{
    const auto found = std::find_if(kFileErrors.begin(), kFileErrors.end(),
                                    [number](const FileErrorText& e) { return e.number == number; });
    return found == kFileErrors.end() ? nullptr : &*found;
}

FileErrorDecision FileErrors(std::uint32_t number, ErrorReporter& reporter, const std::string& place)
{
    const FileErrorText* const known = FindFileError(number);
    std::string text(known != nullptr ? known->text : kUnknownFileError);
    if (!place.empty())
        text += "\n" + place;
    const Buttons buttons = known != nullptr ? known->buttons : Buttons::Ok;
    const Answer answer = reporter.Show({.text = text, .buttons = buttons, .title = LoadResString(1303)});
    if (known == nullptr)
        return FileErrorDecision::Unknown;
    switch (buttons) {
    case Buttons::RetryCancel:
        return answer == Answer::Retry ? FileErrorDecision::Retry : FileErrorDecision::GiveUp;
    case Buttons::OkCancel:
        return answer == Answer::Ok ? FileErrorDecision::Retry : FileErrorDecision::GiveUp;
    default: // Yes and No both try again
        return answer == Answer::Cancel ? FileErrorDecision::GiveUp : FileErrorDecision::Retry;
    }
}

std::uint32_t FileErrorOf(int code)
{
    switch (code) {
    case ENOENT:
    case ENOTDIR:
        return 76;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS:
    case ENAMETOOLONG:
        return 75;
    case ENOSPC:
        return 61;
    case ENODEV:
    case ENXIO:
        return 68;
    case EIO:
        return 57;
    default:
        return 0;
    }
}

void RaiseWindowsError(int code)
{
    const std::string text = code == kBadPathname ? "The path is not a full path in the form of this system."
                                                  : std::system_category().message(code);
    throw VeltError{static_cast<std::uint32_t>(code) + kWindowsErrorBase, text.substr(0, kMessageBuffer),
                    std::string(kApplication) + ".Windows"};
}

void RaiseIfFailed(int code)
{
    if (code != 0)
        RaiseWindowsError(code);
}

void RaiseError(int number)
{
    const std::string application(kApplication);
    const auto raised = static_cast<std::uint32_t>(number);
    if (number < kFirstTableError)
        throw VeltError{raised, "", application + ".VBError"};
    throw VeltError{raised, TableText(number), application + "." + TableText(number / 10 * 10)};
}
