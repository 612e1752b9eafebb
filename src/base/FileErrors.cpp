// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileErrors.h"

#include "base/StringTable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace
{
constexpr std::string_view kUnknownFileError =
    "Default Error Message: An internal unidentified error has occured.";

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
/// Whether `answer` is one that a box with `buttons` offers for trying again.
bool TriesAgain(Buttons buttons, Answer answer)
{
    switch (buttons) {
    case Buttons::RetryCancel:
        return answer == Answer::Retry;
    case Buttons::OkCancel:
        return answer == Answer::Ok;
    case Buttons::YesNoCancel:
        return answer == Answer::Yes || answer == Answer::No; // deliberate: No has no meaning of its own
    default:                                                  // no file error has such a box
        return false;
    }
}

std::string_view WordsOf(std::uint32_t number)
{
    const FileErrorText* const known = FindFileError(number);
    return known != nullptr ? known->text : kUnknownFileError;
}
} // namespace

const FileErrorText* FindFileError(std::uint32_t number)
{
    const auto found = std::find_if(kFileErrors.begin(), kFileErrors.end(),
                                    [number](const FileErrorText& e) { return e.number == number; });
    return found == kFileErrors.end() ? nullptr : &*found;
}

FileErrorDecision FileErrors(std::uint32_t number, ErrorReporter& reporter, const std::string& place)
{
    const FileErrorText* const known = FindFileError(number);
    std::string text(WordsOf(number));
    if (!place.empty())
        text += "\n" + place;
    const Buttons buttons = known != nullptr ? known->buttons : Buttons::Ok;
    const Answer answer = reporter.Show({.text = text, .buttons = buttons, .title = LoadResString(1303)});
    if (known == nullptr)
        return FileErrorDecision::Unknown;
    return TriesAgain(buttons, answer) ? FileErrorDecision::Retry : FileErrorDecision::GiveUp;
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

FileError::FileError(int code, std::string source)
    : VeltError(FileErrorOf(code), std::string(WordsOf(FileErrorOf(code))), std::move(source))
{
    if (code != 0 && FindFileError(number) == nullptr)
        reason = "(" + std::system_category().message(code) + ")";
}
