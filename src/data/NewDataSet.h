// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Reading.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class clsVeltData;

/// What a new data set is made from.
struct NewDataSet {
    std::string FileDescription;
    std::int32_t MinTimeP = 0; ///< label of the first period
    std::int32_t MaxTimeP = 0;
    std::vector<int> columns; ///< user columns, in their order
};

/// The label of a period as typed: a whole number from 1 to 2147483647; the sentence otherwise.
Reading<std::int32_t> ReadTimePeriod(std::string_view typed);

/// Why no table is made from `typedMin` to `typedMax`, both taken by ReadTimePeriod; nothing when it is.
///
/// Two oddities are deliberate: the order is that of the texts, so that 5 to 10 and 99 to 100 are refused,
/// and a difference of 200 passes, which is 201 periods for 200 rows. What passes the comparison of texts and
/// runs backwards (100 to 99) would be a table without rows, and is refused as well.
std::optional<std::string> RefusalOfRange(const std::string& typedMin, const std::string& typedMax);

/// Fills a data set as new: description, range and columns, all cells without a value.
void Begin(clsVeltData& data, const NewDataSet& wanted);
