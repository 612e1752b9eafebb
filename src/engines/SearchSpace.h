// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/INelMead.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

/// The coordinates in which a minimiser searches, and the best point met in them. A parameter whose lower
/// limit is at least 0 and whose start is positive has its logarithm as its coordinate: a stock and its
/// growth trade against each other along x1 x2 = constant, a valley that is straight there. Any other has its
/// share of its start.
class SearchSpace
{
public:
    /// At and above this a value means "outside the domain".
    static constexpr double kPenalty = 1e20;

    using Point = std::vector<double>; ///< one coordinate for each free parameter

    struct Parameter {
        double start = 0.0, second = 0.0, lower = 0.0, upper = 0.0;
        bool logarithm = false;
        double unit = 0.0;              ///< size of the start, for a coordinate that is no logarithm
        double least = 0.0, most = 0.0; ///< limits of the coordinate
    };

    /// As new: parameters that are all held at 0. `callback` must outlive the searches.
    void Create(INelMead& callback, std::size_t parameters);
    /// Equal start and second point, or limits without room between them, hold a parameter. None of the four
    /// is not-a-number; what lies beyond 1e300, infinity too, is cut to it, so that every coordinate is
    /// finite.
    void SetParameter(std::size_t index, double start, double second, double lower, double upper);
    /// Forgets what was met; the best point is the start, moved within the limits, with no value yet.
    void Prepare();

    std::size_t Size() const { return m_parameters.size(); }
    std::size_t Free() const { return m_free.size(); }
    const Parameter& FreeParameter(std::size_t f) const { return m_parameters[m_free[f]]; }

    /// The second point along a free parameter, on the other side of the start where a limit is in the way.
    double SecondCoordinate(std::size_t f) const;
    /// `u` moved within the limits of free parameter `f`.
    double Within(std::size_t f, double u) const;
    /// Value at a point; one that is infinite or not a number counts as 3.4e38, others end at 3.4e38 on
    /// either side. Keeps the point when it is the best.
    double Evaluate(const Point& u);
    /// Value at `from` moved by `factor` times `direction`, within the limits; the point is At() then.
    double EvaluateBeside(const Point& from, std::span<const double> direction, double factor);
    const Point& At() const { return m_at; }
    /// Whether the best point is the one that was evaluated last, so that what the callback keeps belongs to
    /// it.
    bool BestIsLast() const { return m_evaluations > 0 && best == m_last && bestValue == m_lastValue; }

    /// The point evaluated last as the callback saw it, parameter 1 first.
    std::span<const double> LastPoint() const { return m_x; }
    std::int32_t Evaluations() const { return m_evaluations; }

    Point best;
    double bestValue = std::numeric_limits<double>::infinity();

private:
    static double CoordinateOf(const Parameter& p, double x);
    static double ValueOf(const Parameter& p, double u);

    INelMead* m_callback = nullptr;
    std::vector<Parameter> m_parameters;
    std::vector<std::size_t> m_free; ///< the parameters that are searched
    std::vector<double> m_x;
    Point m_at;
    Point m_last; ///< evaluated, with its value
    double m_lastValue = 0.0;
    std::int32_t m_evaluations = 0;
};
