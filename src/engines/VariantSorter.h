// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

/// Sorts numbers ascending; not-a-number goes to the end.
class VariantSorter
{
public:
    void Sort(std::span<float> values) const;
};
