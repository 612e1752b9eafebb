// SPDX-License-Identifier: GPL-3.0-or-later
// The road from a comma-separated table, as CsvReader takes it apart, to the table that an import takes.
#pragma once

#include "files/AsciiText.h"
#include "files/CsvReader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The rest of `reader` as numbers, of its columns `used` alone (counted from 0); what stands in the others
/// is not looked at. A missing cell counts as AsciiText::kMissing, but not in the column `time`. Headings
/// stay as the file has them, there is no description.
/// \throws ImportError 2257 with the line for a cell that is no number, otherwise as CsvReader
AsciiText TakeColumns(CsvReader& reader, const std::vector<std::size_t>& used,
                      std::optional<std::size_t> time = {});

/// The table of a whole file for someone who has yet to say which column is what: every column that holds a
/// number in one of its rows, described by the file's name, with headings in UTF-8. Columns of names and
/// remarks, and the empty ones that a spreadsheet leaves at the right, are left out.
/// \throws ImportError as TakeColumns and CheckTextSize, and 2257 when no column holds a number
AsciiText ReadCsvText(std::span<const std::uint8_t> bytes, const std::string& path);

/// What describes a table that has no line for it: the name of its file, UTF-8.
std::string DescriptionFromName(const std::string& path);
