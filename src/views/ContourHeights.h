// SPDX-License-Identifier: GPL-3.0-or-later
// What a likelihood surface is between the points of its grid, and the scale its heights are drawn on.
#pragma once

#include "graphs/VELT_ContourPlot.h"

#include <qcustomplot.h>

#include <optional>
#include <vector>

namespace contour_heights
{
/// Whether the cell holds a height, and not the plateau of invalid parameters.
bool Valid(const ContourSurface& surface, std::size_t i, std::size_t j);

/// The span of an axis; a grid of one point, or of equal ones, still gets some width.
QCPRange SpanOf(const std::vector<double>& positions);

/// The mean of the valid corners around (x, y), linear between them; empty outside the grid, and where they
/// weigh less than `least`, of 1.
std::optional<double> Nearby(const ContourSurface& surface, double x, double y, double least);

/// The heights of a surface on the scale of its levels: each step from level to level is one step of colour,
/// so that the neighbourhood of the minimum is told apart as well as the far slopes.
class Heights
{
public:
    explicit Heights(const ContourSurface& surface);

    const std::vector<double>& Levels() const { return m_levels; }

    /// From 0 at the lowest height to 1 at the highest; no number for none.
    double Shade(const std::optional<double>& height) const;

    /// Some of the levels, where their shades stand.
    QSharedPointer<QCPAxisTickerText> Ticks() const;

    static QString HeightText(double height);

private:
    double m_low;
    double m_high;
    std::vector<double> m_levels;
};
} // namespace contour_heights
