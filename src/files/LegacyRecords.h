// SPDX-License-Identifier: GPL-3.0-or-later
// The project file of version 2.0 (.vl2), which is read and never written: a plain record out of bytes.
// Layout with offsets: docs/formats.md.
#pragma once

#include "files/ProjectRecords.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace legacy_file
{
struct Column {
    std::uint8_t decimals = 0; ///< places behind the point
    project_file::Series values;
};

struct Project {
    std::int16_t NumLoggedRuns = 0;
    std::int16_t NumScens = 0;
    std::int16_t NumPts = 0;
    std::string DSDesc; ///< trimmed, UTF-8
    std::int16_t MinTimeP = 0;
    std::int16_t MaxTimeP = 0;
    std::array<std::optional<Column>, project_file::kColumns> columns; ///< those that the directory points to
    std::vector<project_file::ScenarioRecord> scenarios;               ///< their values are floats
};

/// \throws RecordError the bytes are no project of version 2.0, or a record ends behind the end of the file.
/// A scenario that is marked as deleted, whose place is not among the data, behind the end included, or whose
/// block has another mark is skipped.
Project ReadProject(std::string_view file);

} // namespace legacy_file
