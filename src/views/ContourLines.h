// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of equal height over a rectangular grid, by marching squares.
#pragma once

#include <vector>

namespace contour_lines
{

struct Point {
    double x = 0.0;
    double y = 0.0;
};

/// A line through the crossings of grid edges; a closed one ends at its first point.
using Line = std::vector<Point>;

/// `count` levels above `low`, crowded towards it: their distances from it grow by one factor from `closest`
/// to a little below `high`. A likelihood is looked at near its best, and far from it rises without end. None
/// unless low < high. \param closest the distance of the first one, > 0; at most the whole height counts
std::vector<double> Levels(double low, double high, double closest, int count);

/// The lines on which z, linear along the edges of the grid, equals `level`. Cells with a corner that is no
/// finite number are left out. Saddles are parted by the mean of their corners.
///
/// \param x, y  ascending positions
/// \param z     z[i][j] at (x[i], y[j])
std::vector<Line> Trace(const std::vector<double>& x, const std::vector<double>& y,
                        const std::vector<std::vector<double>>& z, double level);

/// The outlines of the region of a grid that is not `valid`, as closed lines, the smoothest that pass between
/// the valid points and their invalid neighbours: more the grid does not tell. Nested ones are islands. Where
/// the region reaches the rim of the grid its outline runs outside.
///
/// \param valid  valid[i][j] of the point (i, j) \return lines in numbers of points, (0, 0) to (n - 1, m - 1)
std::vector<Line> SmoothOutlines(const std::vector<std::vector<bool>>& valid);

} // namespace contour_lines
