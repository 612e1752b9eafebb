// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/RoughSurface.h"

#include <algorithm>
#include <cmath>

namespace rough_surface
{
namespace
{
constexpr double kFirstStep = 1e-3; // in logarithms
constexpr double kLongestStep = 0.5;
constexpr double kWander = 12.0; // deviations that noise alone does not reach
constexpr double kRise = 25.0;   // deviations of the noise that the ends of a parabola stand above its middle

struct Direction {
    double u1 = 0.0;
    double u2 = 0.0;
};

double Length(Direction d)
{
    return std::max(std::fabs(d.u1), std::fabs(d.u2));
}

/// Values at equal distances on both sides of the point.
struct Sides {
    double step = 0.0; ///< in units of the direction
    double plus = 0.0;
    double minus = 0.0;
    bool valid = false;     ///< both inside the domain
    double curvature = 0.0; ///< plus + minus - 2 times the middle
    double wander = 0.0;    ///< largest distance of a value from the middle, over all steps that were tried
};

/// A place on the floor of a valley.
struct Floor {
    double offset = 0.0; ///< along the steep axis from the straight line through the point
    double value = 0.0;
    bool valid = false;
};

/// The valley around a point: its axes, and how its floor bends away from the flat one.
struct Valley {
    Direction steep;
    Direction flat;
    Floor here;
    Floor ahead;
    Floor behind;
    double reach = 0.0; ///< of `ahead` and `behind`, in units of the flat axis

    /// Offset of the floor at `t`, by the parabola through the three known ones.
    double OffsetAt(double t) const
    {
        if (reach == 0.0)
            return here.offset;
        const double u = t / reach;
        const double slope = (ahead.offset - behind.offset) / 2.0;
        const double bend = (ahead.offset + behind.offset) / 2.0 - here.offset;
        return here.offset + slope * u + bend * u * u;
    }
};

class Sampler
{
public:
    Sampler(double value, double noise, double penalty, const Displaced& at)
        : m_value(value), m_noise(noise), m_penalty(penalty), m_at(at)
    {
    }

    Finding One() const;
    Finding Two() const;

private:
    Sides Look(Direction d, double step) const;
    Sides Fit(Direction d) const;
    bool Risen(const Sides& s) const { return s.valid && s.curvature > kRise * m_noise; }
    bool IsParabola(Direction d, const Sides& s) const;
    Shape FindAxes(Valley& valley) const;
    Floor FindFloor(const Valley& valley, double t) const;
    Shape FollowFloor(Valley& valley, Sides& along) const;
    double LowestOnFloor(const Valley& valley, const Sides& along) const;
    double LowestAcross(const Valley& valley, double t) const;
    Minimum LowestAround(double u1, double u2) const;

    double m_value, m_noise, m_penalty;
    const Displaced& m_at;
};

Sides Sampler::Look(Direction d, double step) const
{
    Sides s{step, m_at(step * d.u1, step * d.u2), m_at(-step * d.u1, -step * d.u2)};
    s.valid = s.plus < m_penalty && s.minus < m_penalty;
    if (s.valid)
        s.curvature = s.plus + s.minus - 2.0 * m_value;
    return s;
}

/// Fits the step so that the ends stand well above the noise, and not so far that the surface is no parabola.
Sides Sampler::Fit(Direction d) const
{
    constexpr int kTries = 6;
    Sides s = Look(d, kFirstStep);
    double wander = 0.0;
    for (int k = 0; k < kTries; ++k) {
        if (s.valid)
            wander = std::max({wander, std::fabs(s.plus - m_value), std::fabs(s.minus - m_value)});
        const bool tooLong = !s.valid || s.curvature > 8.0 * kRise * m_noise;
        if (!tooLong && s.curvature > 2.0 * kRise * m_noise)
            break;
        const double wanted =
            s.valid ? std::sqrt(4.0 * kRise * m_noise / std::max(s.curvature, m_noise)) : 0.1;
        const double step = s.step * std::clamp(wanted, 0.05, 10.0);
        if (step * Length(d) > kLongestStep)
            break;
        s = Look(d, step);
    }
    s.wander = wander;
    return s;
}

/// Where the parabola through the sides has its minimum, in units of the step; not far beyond the ends.
double Lowest(const Sides& s)
{
    constexpr double kBeyond = 2.0;
    return std::clamp(0.5 * (s.minus - s.plus) / s.curvature, -kBeyond, kBeyond);
}

/// Of the place and a few neighbours, near enough to differ by noise alone, the lowest is as good as any.
Minimum Sampler::LowestAround(double u1, double u2) const
{
    constexpr int kNeighbours = 3;
    constexpr double kNear = 1e-6;
    Minimum lowest{u1, u2, m_at(u1, u2)};
    for (int k = 1; k < kNeighbours; ++k) {
        const double v1 = u1 + kNear * k;
        const double v2 = u2 + kNear * ((2 * k) % kNeighbours);
        const double value = m_at(v1, v2);
        if (value < lowest.value)
            lowest = {v1, v2, value};
    }
    return lowest;
}

/// The minimum from parabolas over a whole and a half step: what bends one side more than the other shifts
/// the lowest place by the square of the step, and so cancels (Richardson 1911).
double WithoutSkew(double overWhole, double overHalf)
{
    return (4.0 * overHalf - overWhole) / 3.0;
}

Finding Sampler::One() const
{
    const Sides whole = Fit({1.0, 0.0});
    if (!Risen(whole))
        return {};
    const Sides half = Look({1.0, 0.0}, whole.step / 2.0);
    const double lowest = Lowest(whole) * whole.step;
    const bool parabola = half.valid && half.curvature > 0.0;
    return {Shape::Bowl, m_value,
            LowestAround(parabola ? WithoutSkew(lowest, Lowest(half) * half.step) : lowest, 0.0)};
}

/// Whether half the step shows about a quarter of the rise, as it does however narrow a smooth valley is.
bool Sampler::IsParabola(Direction d, const Sides& s) const
{
    const Sides half = Look(d, s.step / 2.0);
    return half.valid && half.curvature < s.curvature / 2.4 && half.curvature > s.curvature / 12.0;
}

/// The axes of the ellipse of equal values, the steep one as long as the noise asks for.
Shape Sampler::FindAxes(Valley& valley) const
{
    const Sides first = Fit({1.0, 0.0});
    const Sides second = Fit({0.0, 1.0});
    for (const Sides& s : {first, second}) {
        // Far from the middle, and yet no rise: what looks like noise grows with the distance.
        if (!Risen(s))
            return s.wander > kWander * m_noise ? Shape::Ragged : Shape::Flat;
    }
    if (!IsParabola({1.0, 0.0}, first) || !IsParabola({0.0, 1.0}, second))
        return Shape::Ragged;
    const Sides diagonal = Look({first.step, second.step}, 1.0);
    const Sides across = Look({first.step, -second.step}, 1.0);
    if (!diagonal.valid || !across.valid)
        return Shape::Flat;
    const double mixed = (diagonal.curvature - across.curvature) / 4.0;
    const double angle = 0.5 * std::atan2(2.0 * mixed, first.curvature - second.curvature);
    valley.steep = {std::cos(angle) * first.step, std::sin(angle) * second.step};
    valley.flat = {-std::sin(angle) * first.step, std::cos(angle) * second.step};
    return Shape::Bowl;
}

/// The floor across from `t` along the flat axis, by a parabola along the steep one.
Floor Sampler::FindFloor(const Valley& valley, double t) const
{
    constexpr double kBeyond = 4.0;
    const double guess = valley.OffsetAt(t);
    const auto across = [&](double s) {
        return m_at(t * valley.flat.u1 + s * valley.steep.u1, t * valley.flat.u2 + s * valley.steep.u2);
    };
    const double minus = across(guess - 1.0);
    const double middle = across(guess);
    const double plus = across(guess + 1.0);
    if (std::max({minus, middle, plus}) >= m_penalty)
        return {};
    const double curvature = plus + minus - 2.0 * middle;
    if (!(curvature > kRise * m_noise))
        return {};
    const double slope = (plus - minus) / 2.0;
    const double shift = std::clamp(-slope / curvature, -kBeyond, kBeyond);
    return {guess + shift, middle + slope * shift + curvature * shift * shift / 2.0, true};
}

/// Values on the floor at equal distances on both sides.
Sides FloorSides(const Valley& valley, const Floor& ahead, const Floor& behind, double t)
{
    Sides s{t, ahead.value, behind.value, ahead.valid && behind.valid};
    if (s.valid)
        s.curvature = s.plus + s.minus - 2.0 * valley.here.value;
    return s;
}

/// Walks along the floor on both sides until it has risen well above the noise.
Shape Sampler::FollowFloor(Valley& valley, Sides& along) const
{
    constexpr double kStride = 2.5;
    valley.here = FindFloor(valley, 0.0);
    if (!valley.here.valid)
        return Shape::Ragged;
    for (double t = 2.0; t * Length(valley.flat) <= kLongestStep; t *= kStride) {
        const Floor ahead = FindFloor(valley, t);
        const Floor behind = FindFloor(valley, -t);
        const Sides sides = FloorSides(valley, ahead, behind, t);
        if (!sides.valid) {
            if (valley.reach == 0.0)
                return Shape::Ragged; // lost at once
            break;
        }
        valley.ahead = ahead;
        valley.behind = behind;
        valley.reach = t;
        along = sides;
        if (along.curvature > 4.0 * kRise * m_noise)
            break;
    }
    return Risen(along) ? Shape::Bowl : Shape::Flat;
}

double Sampler::LowestOnFloor(const Valley& valley, const Sides& along) const
{
    const double t = along.step / 2.0;
    const Sides half = FloorSides(valley, FindFloor(valley, t), FindFloor(valley, -t), t);
    const double lowest = Lowest(along) * along.step;
    const bool parabola = half.valid && half.curvature > 0.0;
    return parabola ? WithoutSkew(lowest, Lowest(half) * half.step) : lowest;
}

/// Offset of the floor at `t` once more, with the skew across the valley taken out as well.
double Sampler::LowestAcross(const Valley& valley, double t) const
{
    const double guess = valley.OffsetAt(t);
    const auto across = [&](double s) {
        return m_at(t * valley.flat.u1 + s * valley.steep.u1, t * valley.flat.u2 + s * valley.steep.u2);
    };
    const double middle = across(guess);
    const auto sides = [&](double step) {
        Sides s{step, across(guess + step), across(guess - step)};
        s.valid = std::max({s.plus, s.minus, middle}) < m_penalty;
        s.curvature = s.valid ? s.plus + s.minus - 2.0 * middle : 0.0;
        return s;
    };
    const Sides whole = sides(1.0);
    const Sides half = sides(0.5);
    if (!(whole.curvature > 0.0) || !(half.curvature > 0.0))
        return guess;
    return guess + WithoutSkew(Lowest(whole) * whole.step, Lowest(half) * half.step);
}

Finding Sampler::Two() const
{
    Valley valley;
    Sides along;
    Shape shape = FindAxes(valley);
    if (shape == Shape::Bowl)
        shape = FollowFloor(valley, along);
    if (shape != Shape::Bowl)
        return {shape, m_value, {}};
    const double t = LowestOnFloor(valley, along);
    const double s = LowestAcross(valley, t);
    return {Shape::Bowl, m_value,
            LowestAround(t * valley.flat.u1 + s * valley.steep.u1, t * valley.flat.u2 + s * valley.steep.u2)};
}
} // namespace

namespace
{
/// Mean of a few neighbours, near enough to differ by noise alone. The value at the point itself is the
/// lowest that a search met, so it lies below the level of the surface.
double LevelAt(double value, double penalty, const Displaced& at)
{
    constexpr int kNeighbours = 4;
    constexpr double kNear = 2e-6;
    double sum = 0.0;
    for (int k = 1; k <= kNeighbours; ++k) {
        const double u = k % 2 == 0 ? kNear * k : -kNear * k;
        const double neighbour = at(u, k % 3 == 0 ? u : -u);
        if (neighbour >= penalty)
            return value;
        sum += neighbour;
    }
    return sum / kNeighbours;
}
} // namespace

Finding FindMinimum(int parameters, double value, double noise, double penalty, const Displaced& at)
{
    const Sampler sampler(LevelAt(value, penalty, at), noise, penalty, at);
    return parameters == 1 ? sampler.One() : sampler.Two();
}

} // namespace rough_surface
