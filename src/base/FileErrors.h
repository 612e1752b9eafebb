// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ErrorReporter.h"
#include "base/VeltError.h"

#include <cstdint>
#include <string>
#include <string_view>

/// What a failed file operation should do next.
enum class FileErrorDecision { Retry = 0, Continue = 1, GiveUp = 2, Unknown = 3 };

/// What the user reads and may answer for one file error.
struct FileErrorText {
    std::uint32_t number;
    std::string_view text;
    Buttons buttons;
};

/// The entry of a file error (52 to 76); null for a number that is none.
const FileErrorText* FindFileError(std::uint32_t number);

/// Asks the user what to do about file error `number`, in a box titled "File Error"; `place` (which file,
/// which line) stands on a line of its own behind the fixed text. An unknown number shows the default message
/// and answers Unknown at once. An answer that the box does not offer gives up, so that nobody retries for
/// ever unasked.
FileErrorDecision FileErrors(std::uint32_t number, ErrorReporter& reporter, const std::string& place = {});

/// The file error number of this program for the system's error code `code` (errno): 76 for a path that does
/// not exist, 75 for one that cannot be accessed, 61 for a full disk, 68, 57, and 0 for the rest.
std::uint32_t FileErrorOf(int code);

/// A file operation that the system refused: the number and the words of the file errors. A code that they do
/// not know has number 0, the words of an unidentified error, and the system's own words beside them.
struct FileError : VeltError {
    /// \param code  the system's error code (errno); 0 when it gave none
    FileError(int code, std::string source);
    std::string reason; ///< "(Too many levels of symbolic links)"; empty where the description says it all
};
