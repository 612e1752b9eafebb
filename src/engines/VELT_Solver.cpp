// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_Solver.h"

#include "base/VeltError.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace
{

constexpr double kDefaultTolerance = 1e-6;
constexpr double kFloatUnit = 0x1p-24; // half the distance of neighbouring floats near 1
constexpr int kBrentSteps = 60;        // far more than a smooth function takes

bool SameSign(float a, float b)
{
    return (a > 0.0F) == (b > 0.0F);
}

// Whole numbers in the order of the floats.
std::int32_t Rank(float x)
{
    const auto bits = std::bit_cast<std::int32_t>(x);
    return bits >= 0 ? bits : std::numeric_limits<std::int32_t>::min() - bits;
}

float AtRank(std::int32_t rank)
{
    return std::bit_cast<float>(rank >= 0 ? rank : std::numeric_limits<std::int32_t>::min() - rank);
}

// The float in the middle by count: at most 32 of these reach neighbours, wherever the interval lies.
float MiddleFloat(float a, float b)
{
    return AtRank(static_cast<std::int32_t>((static_cast<std::int64_t>(Rank(a)) + Rank(b)) / 2));
}

bool AreNeighbours(float a, float b)
{
    return std::abs(static_cast<std::int64_t>(Rank(a)) - Rank(b)) <= 1;
}

bool StrictlyBetween(float x, float a, float b)
{
    return (a < x && x < b) || (b < x && x < a);
}

// Brent's trial step from `b` towards `c` by secant or inverse quadratic interpolation; not-a-number when it
// cannot be had.
double Interpolate(double a, double fa, double b, double fb, double c, double fc)
{
    const double s = fb / fa;
    const double half = 0.5 * (c - b);
    if (a == c)
        return -2.0 * half * s / (1.0 - s);
    const double q = fa / fc;
    const double r = fb / fc;
    const double p = s * (2.0 * half * q * (q - r) - (b - a) * (r - 1.0));
    return -p / ((q - 1.0) * (r - 1.0) * (s - 1.0));
}

} // namespace

void VELT_Solver::Init()
{
    *this = VELT_Solver();
}

VELT_Solver::Point VELT_Solver::Evaluate(ISolver& callback, float x)
{
    Point point{x, std::numeric_limits<float>::quiet_NaN()};
    callback.ISolver_Fn(x, point.y);
    if (std::isnan(point.y))
        RaiseInvalidArgument();
    return point;
}

double VELT_Solver::HalfWidth(float root) const
{
    const double size = std::fabs(static_cast<double>(root));
    return kFloatUnit * size + 0.5 * (m_tolerance > 0.0 ? m_tolerance : kDefaultTolerance * size);
}

float VELT_Solver::Solve(ISolver& callback, float lower, float upper)
{
    if (!std::isfinite(lower) || !std::isfinite(upper))
        RaiseInvalidArgument();
    const Point a = Evaluate(callback, lower);
    if (a.y == 0.0F)
        return lower;
    const Point b = Evaluate(callback, upper);
    if (b.y == 0.0F)
        return upper;
    if (SameSign(a.y, b.y))
        return std::fabs(a.y) < std::fabs(b.y) ? lower : upper;
    return BrentSearch(callback, a, b).x;
}

// b is the best point, c the other end of the interval, a the point before.
VELT_Solver::Point VELT_Solver::BrentSearch(ISolver& callback, Point a, Point b) const
{
    Point c = a;
    double step = static_cast<double>(b.x) - a.x;
    double stepBefore = step;
    for (int count = 1;; ++count) {
        if (std::fabs(c.y) < std::fabs(b.y)) {
            a = b;
            std::swap(b, c);
        }
        const double half = 0.5 * (static_cast<double>(c.x) - b.x);
        const double least = HalfWidth(b.x);
        if (b.y == 0.0F || std::fabs(half) <= least || AreNeighbours(b.x, c.x))
            return b;
        const double trial = Interpolate(a.x, a.y, b.x, b.y, c.x, c.y);
        const double towards = half > 0.0 ? trial : -trial;
        const bool accepted = std::fabs(stepBefore) >= least && std::fabs(a.y) > std::fabs(b.y) &&
                              towards > 0.0 && 2.0 * towards < 3.0 * std::fabs(half) - least &&
                              2.0 * towards < std::fabs(stepBefore);
        stepBefore = accepted ? step : half;
        step = accepted ? trial : half;
        const double move = std::fabs(step) > least ? step : std::copysign(least, half);
        auto next = static_cast<float>(b.x + move);
        if (count > kBrentSteps || !StrictlyBetween(next, b.x, c.x))
            next = MiddleFloat(b.x, c.x);
        a = b;
        b = Evaluate(callback, next);
        if (SameSign(b.y, c.y)) {
            c = a;
            stepBefore = step = static_cast<double>(b.x) - a.x;
        }
    }
}

// True, with the bounds set, when the sign changes between `edge` and `next`; otherwise `next` is the new
// edge.
bool VELT_Solver::StepOutwards(ISolver& callback, Point& edge, float next)
{
    const Point outer = Evaluate(callback, next);
    if (outer.y == 0.0F || !SameSign(outer.y, edge.y)) {
        m_lower = std::fmin(edge.x, next);
        m_upper = std::fmax(edge.x, next);
        return true;
    }
    edge = outer;
    return false;
}

void VELT_Solver::Bracket(ISolver& callback, float start, float factor)
{
    if (!(start > 0.0F) || !std::isfinite(start) || !(factor > 1.0F))
        RaiseInvalidArgument();
    constexpr float kLargest = std::numeric_limits<float>::max();
    Point high = Evaluate(callback, start);
    Point low = high;
    if (high.y == 0.0F) {
        m_lower = start < kLargest ? start : std::nextafter(start, 0.0F);
        m_upper = start < kLargest ? std::nextafter(start, kLargest) : start;
        return;
    }
    for (;;) {
        const bool canRise = high.x < kLargest;
        // The product of two floats is exact enough in 64 bits to see that it leaves the float range.
        const double above = static_cast<double>(high.x) * factor;
        if (canRise && StepOutwards(callback, high,
                                    above < kLargest ? std::fmax(static_cast<float>(above),
                                                                 std::nextafter(high.x, kLargest))
                                                     : kLargest))
            return;
        const auto below =
            std::fmin(static_cast<float>(static_cast<double>(low.x) / factor), std::nextafter(low.x, 0.0F));
        const bool canFall = below > 0.0F;
        if (canFall && StepOutwards(callback, low, below))
            return;
        if (!canRise && !canFall)
            RaiseOverflow();
    }
}
