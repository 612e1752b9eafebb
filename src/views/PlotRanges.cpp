// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotRanges.h"

#include "views/PlotStyle.h"

#include <algorithm>
#include <cmath>

void plot_ranges::Extent::Add(double value)
{
    if (!std::isfinite(value))
        return;
    low = std::min(low, value);
    high = std::max(high, value);
}

QCPRange plot_ranges::QuantityRange(const Extent& extent)
{
    if (extent.Empty() || (extent.low == 0.0 && extent.high == 0.0))
        return {0.0, 1.0};
    if (extent.low >= 0.0)
        return {0.0, extent.high * (1.0 + kHeadroom)};
    const double span = std::max(extent.high, 0.0) - extent.low;
    return {extent.low - kHeadroom * span, std::max(extent.high, 0.0) + kHeadroom * span};
}

void plot_ranges::SetPeriodAxis(QCPAxis& axis, double first, double last)
{
    const double room = std::max(0.5, 0.03 * (last - first));
    plot_style::SetTicks(axis, NumberKind::Period);
    axis.setRange(last > first ? first : first - room, last + room);
}
