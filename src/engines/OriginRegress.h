// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

/// One straight line through the origin, weighted: minimises the sum of w(i) (y(i) - b x(i))^2. It keeps
/// views of its inputs, which must live until Solve has run; it allocates nothing.
class OriginRegress
{
public:
    void Create(std::int16_t points);
    void X(std::span<const double> x) { m_x = x; }
    void Y(std::span<const double> y) { m_y = y; }
    void Weights(std::span<const double> w) { m_w = w; } ///< a weight of 0 takes a point out
    /// \throws VeltError 9 when a vector does not have `points` values, 11 when every w x^2 is 0, 5 for a
    /// weight
    ///         below 0 or a number that is none, 6 on overflow; the answers of before then stand
    void Solve();
    double Slope() const { return m_slope; }
    double SumSq() const { return m_sumSq; } ///< weighted residual sum of squares, never below 0

private:
    std::span<const double> m_x, m_y, m_w;
    std::int16_t m_points = 0;
    double m_slope = 0.0;
    double m_sumSq = 0.0;
};
