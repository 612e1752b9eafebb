// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/RoughSurface.h"

#include <algorithm>
#include <cmath>

namespace rough_surface
{
namespace
{
constexpr double kFirstStep = 0.01; // in logarithms: one per cent of a parameter
constexpr double kLongestStep = 0.5;
constexpr double kRise = 25.0; // deviations of the noise that the ends of a parabola stand above its middle

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
    double step = 0.0;
    double plus = 0.0;
    double minus = 0.0;
    bool valid = false;
};

class Sampler
{
public:
    Sampler(double value, double noise, double penalty, const Displaced& at)
        : m_value(value), m_noise(noise), m_penalty(penalty), m_at(at)
    {
    }

    void One();
    void Two();

private:
    Sides Look(Direction d, double step) const;
    Sides Widen(Direction d, double step) const;
    double Curvature(const Sides& s) const { return s.plus + s.minus - 2.0 * m_value; }
    double Shift(const Sides& s) const;
    void SampleAround(double u1, double u2) const;

    double m_value, m_noise, m_penalty;
    const Displaced& m_at;
};

Sides Sampler::Look(Direction d, double step) const
{
    Sides s{step, m_at(step * d.u1, step * d.u2), m_at(-step * d.u1, -step * d.u2)};
    s.valid = s.plus < m_penalty && s.minus < m_penalty;
    return s;
}

/// Doubles the step until the surface has risen well above its noise on both sides.
Sides Sampler::Widen(Direction d, double step) const
{
    Sides s = Look(d, step);
    while (s.valid && std::min(s.plus, s.minus) - m_value < kRise * m_noise && 2.0 * s.step * Length(d) <= kLongestStep) {
        const Sides wider = Look(d, 2.0 * s.step);
        if (!wider.valid)
            break;
        s = wider;
    }
    return s;
}

/// Where the parabola has its minimum, in units of the direction; never beyond the ends.
double Sampler::Shift(const Sides& s) const
{
    const double curvature = s.valid ? Curvature(s) : 0.0;
    if (!(curvature > 0.0))
        return 0.0;
    return s.step * std::clamp(0.5 * (s.minus - s.plus) / curvature, -1.0, 1.0);
}

/// A few neighbours of the place, near enough to differ by noise alone: the lowest is as good as any.
void Sampler::SampleAround(double u1, double u2) const
{
    constexpr int kNeighbours = 6;
    constexpr double kNear = 1e-4;
    for (int k = 0; k < kNeighbours; ++k)
        m_at(u1 + kNear * (k - kNeighbours / 2), u2 + kNear * ((k * 2) % kNeighbours - kNeighbours / 2));
}

void Sampler::One()
{
    SampleAround(Shift(Widen({1.0, 0.0}, kFirstStep)), 0.0);
}

void Sampler::Two()
{
    const Sides first = Widen({1.0, 0.0}, kFirstStep);
    const Sides second = Widen({0.0, 1.0}, kFirstStep);
    if (!first.valid || !second.valid)
        return;
    // Second derivatives in units of the two steps; then the axes of the ellipse.
    const Sides diagonal = Look({first.step, second.step}, 1.0);
    const Sides across = Look({first.step, -second.step}, 1.0);
    if (!diagonal.valid || !across.valid)
        return;
    const double a = Curvature(first);
    const double c = Curvature(second);
    const double b = (Curvature(diagonal) - Curvature(across)) / 4.0;
    const double angle = 0.5 * std::atan2(2.0 * b, a - c); // of the steep axis
    const Direction steep{std::cos(angle) * first.step, std::sin(angle) * second.step};
    const Direction flat{-std::sin(angle) * first.step, std::cos(angle) * second.step};
    const double alongSteep = Shift(Widen(steep, 0.5));
    const double alongFlat = Shift(Widen(flat, 1.0));
    SampleAround(alongSteep * steep.u1 + alongFlat * flat.u1, alongSteep * steep.u2 + alongFlat * flat.u2);
}
} // namespace

void SampleNearMinimum(int parameters, double value, double noise, double penalty, const Displaced& at)
{
    Sampler sampler(value, noise, penalty, at);
    parameters == 1 ? sampler.One() : sampler.Two();
}

} // namespace rough_surface
