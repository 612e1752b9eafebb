// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Array1.h"
#include "data/Columns.h"

#include <cstdint>
#include <string>

/// The table of a data set as a value: 200 time periods by 15 columns of 32-bit floats, what is known about
/// each column and row, and the counters that go with them. A copy is changed aside and put in place of the
/// old one as a whole: conversions, imports and Edit Mode need nothing else.
///
/// Rows and columns count from 1; row r is the period minTimeP + r - 1. An index outside raises 9. A new
/// table holds no value, no column, and every row toggled in.
struct DataTable {
    static constexpr int kRows = 200;
    static constexpr float kMissing = -1.0F; ///< the one mark of an absent value; a true -1 cannot be stored

    using Series = Array1<float, kRows>;
    using Flags = Array1<bool, kRows>;

    Array1<Series, columns::kLast> db{Series(kMissing)};
    Array1<bool, columns::kLast> present; ///< a column that is not is neither shown nor saved
    Array1<std::string, columns::kLast> format{std::string("0")}; ///< number format texts
    Array1<std::int32_t, columns::kLast> decPlaces;               ///< only the legacy import writes them
    Array1<std::int32_t, kRows> numDPs;
    Flags included;        ///< the data allow the row to take part
    Flags toggledIn{true}; ///< the user lets it; no row is toggled in that is not included

    std::int32_t minTimeP = 0; ///< label of row 1
    std::int32_t maxTimeP = 0;
    std::int32_t timeInts = 0;     ///< rows in use; may imply more rows than exist
    std::int32_t naPoints = 0;     ///< rows with a total catch, as the current model sees them
    std::int32_t ndPoints = 0;     ///< one more: a trajectory ends behind the last period
    std::int32_t origNAPoints = 0; ///< naPoints before a projection lengthened the table
    std::int32_t nntPoints = 0;    ///< rows toggled in

    bool operator==(const DataTable&) const = default;

    /// For a column that was just worked out: while its format is still "0", it gets enough decimals to show
    /// three significant figures of its smallest value other than 0 among the rows that exist.
    void FormatFilled(int column);

    /// Rows that exist: timeInts, but never more than 200 and never below 0.
    int ShownRows() const;

    /// Whether the data of a row allow it to take part; one that they do not allow leaves the fit. The count
    /// of rows in the fit is the caller's.
    void Include(int row, bool usable);

    /// Takes an included row into the fit or out of it and counts; any other row stays out.
    void Toggle(int row);
    void ToggleOut(int row); ///< takes it out if it is in
};
