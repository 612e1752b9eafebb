// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsBootStrap.h"

#include "engines/VariantSorter.h"

#include <vector>

int clsBootStrap::Length(std::int32_t parameter) const
{
    int length = 0;
    while (length < kMaxReplicates && m_drawn(parameter)(length + 1))
        ++length;
    return length;
}

void clsBootStrap::SortBS(std::int32_t parameter)
{
    std::vector<float> values;
    for (int n = 1, length = Length(parameter); n <= length; ++n)
        values.push_back(*m_drawn(parameter)(n));
    VariantSorter().Sort(values);
    for (std::size_t i = 0; i < values.size(); ++i)
        m_sorted(parameter)(static_cast<std::ptrdiff_t>(i) + 1) = values[i];
}
