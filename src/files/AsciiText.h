// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/VeltError.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A table of periods as a file holds it. In a text file line 1 is the description, line 2 holds the
/// headings, every further line is one row of numbers. It does not know what the columns mean.
struct AsciiText {
    std::string description;                  ///< without blanks at its ends, UTF-8
    std::vector<std::string> headings;        ///< at least one
    std::vector<std::vector<double>> columns; ///< one a heading, of equal length, at least one value
    std::vector<std::size_t> lines;           ///< in the file, of each row, counted from 1
    std::vector<int> decimals = {};           ///< of each column, behind the point of its longest number
    std::vector<std::size_t> missing = {};    ///< of each column, the line of its first missing cell, or 0

    static constexpr double kMissing = -1.0; ///< what a missing cell counts as

    /// Adds a number behind a column, as its text has it.
    void Add(std::size_t column, double value, std::string_view text);

    /// Adds a cell in which nothing stands behind a column.
    void AddMissing(std::size_t column, std::size_t line);

    /// Line 1 holds nothing but blanks: the user is to be asked.
    bool MissingDescription() const { return description.empty(); }
    std::size_t Rows() const { return columns.empty() ? 0 : columns.front().size(); }
};

/// A failure of an import with its place; the description keeps its fixed words.
struct ImportError : VeltError {
    ImportError(std::uint32_t number, std::string description, std::string place, std::size_t line = 0)
        : VeltError(number, std::move(description), "clsVeltDATA"), place(std::move(place)), line(line)
    {
    }
    std::string place; ///< for a line of its own behind the description: "(line 7)"
    std::size_t line;  ///< counted from 1; 0 when the failure has no line
};

/// 2256: a line has another number of values than there are headings.
ImportError BadColumns(std::string place, std::size_t line);

/// 2257: what stands there is no number, or no table.
ImportError BadData(std::string place, std::size_t line);

/// Larger files are refused unread: 200 periods of 256 columns fit several times over.
inline constexpr std::size_t kMaxTextBytes = std::size_t{1} << 20U;
inline constexpr std::size_t kMaxTextColumns = 256;

/// The file error of a text that ends before its line 2 is there.
inline constexpr std::uint32_t kEndOfFile = 62;

/// Line 1 alone: the import asks about a missing description before it looks at anything else.
/// \throws ImportError as ReadAsciiText
std::string ReadAsciiDescription(std::span<const std::uint8_t> bytes);

/// Takes `bytes` apart. Lines end with CR LF, LF or CR; a UTF-8 byte order mark is skipped; words are
/// separated by runs of blanks, tabs and commas. Text is UTF-8 where it is well-formed as such, else
/// Windows-1252. Numbers carry a decimal point, whatever the system's locale.
///
/// \throws ImportError 62 the file ends in line 1 or 2; 2256 a line with another number of values than there
///         are headings (an empty line has none); 2257 a value that is no number, no row at all, a zero byte,
///         or a file above kMaxTextBytes. The two latter numbers carry the program's base.
AsciiText ReadAsciiText(std::span<const std::uint8_t> bytes);

/// \throws ImportError 2257 when a file of `size` bytes is too large to be read
void CheckTextSize(std::uintmax_t size);
