// SPDX-License-Identifier: GPL-3.0-or-later
// What the axes of pictures show of their numbers.
#pragma once

#include <qcustomplot.h>

#include <limits>

namespace plot_ranges
{
inline constexpr double kHeadroom = 0.06; ///< share of the values left free above them

/// The span of the finite ones among some values.
struct Extent {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    bool Empty() const { return low > high; }
    void Add(double value);
};

/// From zero for quantities that cannot be negative, else around the values.
QCPRange QuantityRange(const Extent& extent);

/// An axis of whole periods or years, from the first one on and with a little room behind the last.
void SetPeriodAxis(QCPAxis& axis, double first, double last);
} // namespace plot_ranges
