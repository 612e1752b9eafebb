// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

/// Looks through the roughness of a surface near a point: parabolas through values far enough apart that
/// their rise drowns the noise say where the minimum of the surface below it lies.
namespace rough_surface
{

/// Value at the point displaced by (u1, u2) in the logarithms of its one or two parameters.
using Displaced = std::function<double(double u1, double u2)>;

struct Minimum {
    double u1 = 0.0;
    double u2 = 0.0;
    double value = 0.0; ///< as the rough surface has it there
};

/// What the surface looks like above its roughness.
enum class Shape {
    Bowl,   ///< parabolas fit, and they have a minimum
    Flat,   ///< it does not rise, or the domain ends, before anything stands out of the roughness
    Ragged, ///< it rises on all sides, but no parabolas fit: there may be better points near by
};

struct Finding {
    Shape shape = Shape::Flat;
    double level = 0.0; ///< of the surface at the point itself, without the dent that a search ends in
    /// Of a bowl: the lowest of a few neighbours of the place where the parabolas have theirs.
    Minimum minimum;
};

/// \param parameters 1 or 2 \param value at the point itself \param noise standard deviation of the
/// roughness, above 0 \param penalty values from here on lie outside the domain
Finding FindMinimum(int parameters, double value, double noise, double penalty, const Displaced& at);

} // namespace rough_surface
