// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

/// Looks through the roughness of a surface near a point: fits parabolas to values far enough apart that their
/// rise drowns the noise, and evaluates points where those say the minimum lies. It keeps no result: `at` is
/// the caller's, who remembers the best value that it gave.
namespace rough_surface
{

/// Value at the point displaced by (u1, u2) in the logarithms of its one or two parameters.
using Displaced = std::function<double(double u1, double u2)>;

/// \param parameters 1 or 2 \param value at the point itself \param noise standard deviation of the roughness,
/// above 0 \param penalty values from here on lie outside the domain
void SampleNearMinimum(int parameters, double value, double noise, double penalty, const Displaced& at);

} // namespace rough_surface
