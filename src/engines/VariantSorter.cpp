// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VariantSorter.h"

#include <algorithm>
#include <cmath>

void VariantSorter::Sort(std::span<float> values) const
{
    // "<" alone is no order when not-a-number is among the values; they go aside first.
    const auto numbersEnd =
        std::partition(values.begin(), values.end(), [](float value) { return !std::isnan(value); });
    std::sort(values.begin(), numbersEnd);
}
