// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Array1.h"
#include "models/IMethod.h"

#include <cstdint>
#include <optional>

/// The bootstrap estimates of one fit: per parameter (1 to 8) the values in the order drawn and the same in
/// ascending order, up to 1000 replicates. There is no stored count: the first empty element ends a column.
/// An index outside raises 9.
class clsBootStrap
{
public:
    static constexpr int kMaxReplicates = 1000;
    using Element = std::optional<float>;

    Element BS(std::int32_t parameter, std::int32_t n) const { return m_drawn(parameter)(n); }
    void BS(std::int32_t parameter, std::int32_t n, float value) { m_drawn(parameter)(n) = value; }
    Element SortedBS(std::int32_t parameter, std::int32_t n) const { return m_sorted(parameter)(n); }
    void SortedBS(std::int32_t parameter, std::int32_t n, float value) { m_sorted(parameter)(n) = value; }

    /// Sorts the values of one parameter before its first empty element.
    void SortBS(std::int32_t parameter);

    /// Number of values of a parameter before the first empty one.
    int Length(std::int32_t parameter) const;

private:
    using Column = Array1<Element, kMaxReplicates>;
    Array1<Column, bs_param::kCount> m_drawn;
    Array1<Column, bs_param::kCount> m_sorted;
};
