// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

/// The function that VELT_NelMead minimises.
class INelMead
{
public:
    virtual ~INelMead() = default;
    /// The value at `x` (parameter 1 first). It is often a widened 32-bit float, so plateaus are normal; a
    /// value of 1e20 or above says "outside the domain". Never not-a-number.
    virtual double INelMead_MinFunc(std::span<const double> x) = 0;
};
