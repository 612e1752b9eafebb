// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/SearchSpace.h"

#include <cmath>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

/// A surface over the logarithms of its parameters that keeps every point it was asked for.
struct RecordedSurface : INelMead {
    using Point = std::vector<double>;

    explicit RecordedSurface(std::function<double(const Point&)> f) : value(std::move(f)) {}

    double INelMead_MinFunc(std::span<const double> x) override
    {
        Point u;
        for (const double xi : x)
            u.push_back(std::log(xi));
        asked.push_back(u);
        return value(u);
    }

    /// Coordinate of the point asked for `back` evaluations before the last one.
    double Last(std::size_t back, std::size_t coordinate = 0) const
    {
        return asked.at(asked.size() - 1 - back)[coordinate];
    }

    /// Whether some point was asked for at this distance from `centre` along a coordinate, in either
    /// direction.
    bool AskedAt(const Point& centre, std::size_t coordinate, double distance) const
    {
        for (const Point& u : asked)
            if (std::fabs(std::fabs(u[coordinate] - centre[coordinate]) - distance) < 1e-9)
                return true;
        return false;
    }

    std::function<double(const Point&)> value;
    std::vector<Point> asked;
};
