// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ErrorReporter.h"

#include <array>
#include <cstdint>
#include <string>

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
    CommaSeparated = 6, ///< a table with one line of headings
};

/// Kind of the file at `path`. A path that ends in ".TXT" is Text and one in ".CSV" CommaSeparated (any
/// case), without looking inside, also when no such file exists; otherwise the magic, the version byte and
/// the extension must agree. Never creates a file; a file of less than 11 bytes is NotRecognised.
FileType GetFileType(const std::string& path);

/// Whether `path` is named as a project, with ".vl3" in any case of letters.
bool IsProjectName(const std::string& path);
/// The same of a project of version 2.0, with ".vl2".
bool IsLegacyName(const std::string& path);

/// Ways of asking for a file.
enum class FileAccess { Write = 1, Read = 2, Other4 = 4, Other5 = 5 };

/// Whether a command may go on with `path`. Write: true unless the file exists and the user does not wish to
/// replace it. Read: the file must exist, else the user is told so. The other two are accepted untested.
bool CheckFileAccess(const std::string& path, FileAccess mode, ErrorReporter& reporter);
