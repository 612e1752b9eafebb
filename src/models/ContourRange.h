// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Reading.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The ranges of a likelihood surface over two parameters, and the number of points along each axis.
struct ContourRange {
    std::string Param1Name = "N1"; ///< the names of the recruitment index model, which sets none
    std::string Param2Name = "Lambda";
    double Param1Lo = 0.0;
    double Param1Hi = 0.0;
    double Param2Lo = 0.0;
    double Param2Hi = 0.0;
    std::int16_t ContEvals = 20;
};

/// A bound of the parameter called `name`: "K" takes 1 to 3.4E+38, "r" 0 to 3.4E+38, another name any
/// number. The sentence is empty where a refusal has no words (another name, no number).
Reading<double> ReadContourBound(std::string_view typed, std::string_view name);

/// Points along each axis: a whole number of at least 1 and at most 200.
Reading<std::int16_t> ReadContourPoints(std::string_view typed);

/// The sentence against the whole record, or nothing when each low bound is below its high one.
std::optional<std::string> RefuseContourRange(const ContourRange& range);
