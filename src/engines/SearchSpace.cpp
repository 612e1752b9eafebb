// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/SearchSpace.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kWorst = 3.4e38; // stands for a value that is infinite or not a number
constexpr double kReach = 1e300;  // what lies beyond is cut to it; differences of points must not overflow

double WithinReach(double x)
{
    return std::clamp(x, -kReach, kReach);
}
} // namespace

void SearchSpace::Create(INelMead& callback, std::size_t parameters)
{
    m_callback = &callback;
    m_parameters.assign(parameters, Parameter());
    m_free.clear();
    m_free.reserve(parameters);
    m_x.assign(parameters, 0.0);
    m_evaluations = 0;
    bestValue = 0.0;
}

void SearchSpace::SetParameter(std::size_t index, double start, double second, double lower, double upper)
{
    Parameter& p = m_parameters[index];
    p = {WithinReach(start), WithinReach(second), WithinReach(lower), WithinReach(upper)};
    p.logarithm = lower >= 0.0 && start > 0.0 && second > 0.0;
    p.unit = std::max(std::fabs(p.start), std::fabs(p.second)); // 0 only of a parameter that is held at 0
    p.least = CoordinateOf(p, p.lower);
    p.most = CoordinateOf(p, p.upper);
}

void SearchSpace::Prepare()
{
    m_evaluations = 0;
    bestValue = std::numeric_limits<double>::infinity();
    best.clear();
    m_free.clear();
    for (std::size_t i = 0; i < m_parameters.size(); ++i) {
        const Parameter& p = m_parameters[i];
        m_x[i] = std::min(std::max(p.start, p.lower), p.upper);
        if (p.start == p.second || !(p.lower < p.upper))
            continue;
        m_free.push_back(i);
        best.push_back(CoordinateOf(p, m_x[i]));
    }
    m_at = best;
}

double SearchSpace::CoordinateOf(const Parameter& p, double x)
{
    return p.logarithm ? std::log(std::max(x, 1.0 / kReach)) : WithinReach(x / p.unit);
}

double SearchSpace::ValueOf(const Parameter& p, double u)
{
    if (u >= p.most) // to the bit, which the logarithm of a limit would not be
        return p.upper;
    if (u <= p.least)
        return p.lower;
    return std::min(std::max(p.logarithm ? std::exp(u) : u * p.unit, p.lower), p.upper);
}

double SearchSpace::Within(std::size_t f, double u) const
{
    const Parameter& p = FreeParameter(f);
    return std::min(std::max(u, p.least), p.most);
}

double SearchSpace::SecondCoordinate(std::size_t f) const
{
    const Parameter& p = FreeParameter(f);
    const double from = Within(f, CoordinateOf(p, p.start));
    const double step = CoordinateOf(p, p.second) - CoordinateOf(p, p.start);
    const double second = Within(f, from + step);
    return second != from ? second : Within(f, from - step);
}

double SearchSpace::Evaluate(const Point& u)
{
    ++m_evaluations;
    for (std::size_t f = 0; f < m_free.size(); ++f)
        m_x[m_free[f]] = ValueOf(FreeParameter(f), u[f]);
    double value = m_callback->INelMead_MinFunc(m_x);
    value = std::isfinite(value) ? std::clamp(value, -kWorst, kWorst) : kWorst;
    m_last = u;
    m_lastValue = value;
    if (value < bestValue) {
        bestValue = value;
        if (&u != &best)
            best = u;
    }
    return value;
}

double SearchSpace::EvaluateBeside(const Point& from, std::span<const double> direction, double factor)
{
    for (std::size_t f = 0; f < m_free.size(); ++f)
        m_at[f] = Within(f, from[f] + factor * direction[f]);
    return Evaluate(m_at);
}
