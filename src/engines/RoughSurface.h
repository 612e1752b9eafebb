// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>

/// Looks through the roughness of a surface near a point: parabolas through values far enough apart that their
/// rise drowns the noise say where the minimum of the surface below it lies.
namespace rough_surface
{

/// Value at the point displaced by (u1, u2) in the logarithms of its one or two parameters.
using Displaced = std::function<double(double u1, double u2)>;

struct Minimum {
    double u1 = 0.0;
    double u2 = 0.0;
    double value = 0.0; ///< as the rough surface has it there
};

/// The lowest of a few neighbours at the place where the parabolas have their minimum.
/// \param parameters 1 or 2 \param value at the point itself \param noise standard deviation of the roughness,
/// above 0 \param penalty values from here on lie outside the domain
/// \return nothing when the domain ends too near, or the surface does not rise on both sides
std::optional<Minimum> FindMinimum(int parameters, double value, double noise, double penalty,
                                   const Displaced& at);

} // namespace rough_surface
