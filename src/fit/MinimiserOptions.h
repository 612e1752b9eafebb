// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Reading.h"

#include <cstdint>
#include <string_view>

/// What the Options dialog edits: the settings of the minimiser and the number of bootstraps.
struct MinimiserOptions {
    std::int32_t ConvergeOn = 3; ///< 3 both tests, 0 either
    std::int16_t BS = 500;
    float sngFTOL = 1e-07F;
    float sngXTOL = 1e-04F;
    std::int16_t intMaxIts = 500;

    bool operator==(const MinimiserOptions&) const = default;
};

/// Whether some value differs from the program's default, so that the Defaults button has something to do.
bool DiffersFromDefaults(const MinimiserOptions& options);

// The rules of the fields; whole numbers are rounded, ties to even.
Reading<std::int16_t> ReadMaxIterations(std::string_view typed); ///< above 0
Reading<std::int16_t> ReadBootstraps(std::string_view typed);    ///< above 0, at most 1000
Reading<float> ReadTolerance(std::string_view typed);            ///< above 0
