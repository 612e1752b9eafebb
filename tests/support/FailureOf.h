// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/VeltError.h"

#include <cstdint>

/// The number of the failure that `work` raises; 0 when it raises none.
template <typename Work>
std::uint32_t FailureOf(Work work)
{
    try {
        work();
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}
