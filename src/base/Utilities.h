// SPDX-License-Identifier: GPL-3.0-or-later
// Small routines that more than one floor needs.
#pragma once

#include "base/ErrorReporter.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The bytes a project file begins with; the version byte follows.
inline constexpr std::array<std::uint8_t, 10> kProjectMagic{0, 4, 0, 8, 6, 9, 'O', 'R', 'V', 'O'};

/// What a file is, by its first bytes and its extension.
enum class FileType : std::uint8_t {
    NotRecognised = 0,
    Qx4 = 1,
    Velt2 = 2,
    Velt3 = 3,
    Qx5 = 4,
    Text = 5,
};

/// Kind of the file at `path`. A ".TXT" path (any case) is Text without looking inside, also when no such
/// file exists; otherwise the magic, the version byte and the extension must agree. Never creates a file; a
/// file of less than 11 bytes is NotRecognised.
FileType GetFileType(const std::string& path);

/// Ways of asking for a file.
enum class FileAccess { Write = 1, Read = 2, Other4 = 4, Other5 = 5 };

/// Whether a command may go on with `path`. Write: true unless the file exists and the user does not wish to
/// replace it. Read: the file must exist, else the user is told so. The other two are accepted untested.
bool CheckFileAccess(const std::string& path, FileAccess mode, ErrorReporter& reporter);

/// Path routines on full paths in the system's own form. An empty path gives an empty text; a path that is
/// not absolute raises system error 161 with the source "VELT 3.0.Windows".
std::string GetFullPath(const std::string& path);
std::string GetBaseName(const std::string& path); ///< name without extension
std::string GetFileName(const std::string& path); ///< name with extension
std::string GetFileExt(const std::string& path);  ///< extension with its dot

/// `text` (UTF-8) filled with blanks on the right, or cut, to `width` characters.
std::string PadString(std::string_view text, std::size_t width);

/// `text` without blanks at either end.
std::string Trim(std::string_view text);

/// `text` with the letters A to Z in place of a to z; other characters stay.
std::string ToUpper(std::string_view text);

/// The tokens of an import line. Blanks, tabs and commas separate, any run of them counts as one, so two
/// commas do not mean an empty field.
std::vector<std::string> ParseLine(std::string_view line);

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

/// Raises `code` + 0x80047148 with the system's message text for the code, cut to 256 characters, and the
/// source "VELT 3.0.Windows".
[[noreturn]] void RaiseWindowsError(int code);

/// RaiseWindowsError unless `code` is 0.
void RaiseIfFailed(int code);

/// Below 1001: raises that number, source "VELT 3.0.VBError". From 1001 up: description the text of `number`,
/// source "VELT 3.0." and the text of the number rounded down to a multiple of 10.
[[noreturn]] void RaiseError(int number);
