// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RecordedSurface.h"
#include "engines/VELT_NelMead.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <utility>
#include <vector>

// Searches in three lines, and the surfaces that they are sent over.
namespace minimiser_bench
{
using Point = std::span<const double>;
inline constexpr double kHuge = 1e20; // upper limit of the models, and the lower penalty
inline constexpr double kHigherPenalty = 3.4e38;

struct Search {
    double start, second, lower = 0.0, upper = kHuge;
};

// A fit in three lines: the surface, the parameters, the settings; and a record of what the surface was
// asked.
struct Fit : INelMead {
    explicit Fit(std::function<double(Point)> f) : surface(std::move(f)) {}

    double INelMead_MinFunc(Point x) override
    {
        last.assign(x.begin(), x.end());
        lowest.resize(x.size(), std::numeric_limits<double>::infinity());
        highest.resize(x.size(), -std::numeric_limits<double>::infinity());
        for (std::size_t i = 0; i < x.size(); ++i) {
            lowest[i] = std::fmin(lowest[i], x[i]);
            highest[i] = std::fmax(highest[i], x[i]);
        }
        ++asked;
        return surface(x);
    }

    Fit& From(const std::vector<Search>& parameters, std::int32_t convergeOn = 3, std::int16_t maxIts = 500)
    {
        minimiser.Create(*this, static_cast<std::int16_t>(parameters.size()));
        minimiser.MaxIts(maxIts);
        minimiser.FTOL(ftol);
        minimiser.XTOL(1e-4F);
        minimiser.ConvergeOn(convergeOn);
        minimiser.HowCarefully(care);
        for (std::size_t i = 0; i < parameters.size(); ++i)
            minimiser.SetParameter(static_cast<std::int16_t>(i + 1), parameters[i].start,
                                   parameters[i].second, parameters[i].lower, parameters[i].upper);
        asked = 0;
        minimiser.Minimise();
        EXPECT_EQ(minimiser.NumEvaluations(), asked);
        for (std::size_t i = 0; i < parameters.size(); ++i) // what the callback keeps belongs to the estimate
            EXPECT_EQ(last[i], minimiser.Estimate(static_cast<std::int16_t>(i + 1)));
        EXPECT_EQ(minimiser.MinValue(), surface(last));
        return *this;
    }

    std::function<double(Point)> surface;
    VELT_NelMead minimiser;
    VELT_NelMead::Care care = VELT_NelMead::Care::Final;
    float ftol = 1e-7F;
    std::vector<double> last, lowest, highest;
    int asked = 0;
};

inline double AsFloat(double x)
{
    return static_cast<double>(static_cast<float>(x));
}

inline double Rosenbrock(Point x)
{
    return 100.0 * std::pow(x[1] - x[0] * x[0], 2) + std::pow(1.0 - x[0], 2);
}

// 100 at x = 1000, as rough as 32-bit floats near 100 are.
inline double FloatBowl(Point x)
{
    return AsFloat(100.0 + 20.0 * std::pow(x[0] / 1000.0 - 1.0, 2));
}

// The same in two parameters that pull against each other, 100 at (1000, 0.4).
inline double FloatBowl2(Point x)
{
    const double a = x[0] / 1000.0 - 1.0, b = x[1] / 0.4 - 1.0;
    return AsFloat(100.0 + 20.0 * (a * a + b * b + 1.6 * a * b));
}

using Care = VELT_NelMead::Care;
using End = VELT_NelMead::End;

/// A search over the logarithms of a recorded surface: its constants are seen in the distances of what it
/// asks for.
struct Recorded : RecordedSurface {
    using RecordedSurface::RecordedSurface;

    Recorded& From(const std::vector<Search>& parameters, Care care = Care::Final,
                   std::int32_t convergeOn = 3)
    {
        minimiser.Create(*this, static_cast<std::int16_t>(parameters.size()));
        minimiser.HowCarefully(care);
        minimiser.ConvergeOn(convergeOn);
        minimiser.VisibleRise(visible);
        minimiser.FTOL(ftol);
        minimiser.MaxIts(maxIts);
        for (std::size_t i = 0; i < parameters.size(); ++i)
            minimiser.SetParameter(static_cast<std::int16_t>(i + 1), parameters[i].start,
                                   parameters[i].second, parameters[i].lower, parameters[i].upper);
        minimiser.Minimise();
        return *this;
    }

    /// Distance of the simplex's two points when the search of one parameter ended: the next two points asked
    /// for are a thousandth on either side of the better one.
    double LastSize() const
    {
        std::size_t i = 0;
        while (i + 1 < asked.size() && std::fabs(asked[i][0] - asked[i + 1][0] - 2e-3) > 1e-9)
            ++i;
        const double better = 0.5 * (asked.at(i)[0] + asked.at(i + 1)[0]);
        double nearest = 1.0;
        for (std::size_t j = 0; j < i; ++j)
            if (std::fabs(asked[j][0] - better) > 1e-12)
                nearest = std::min(nearest, std::fabs(asked[j][0] - better));
        return nearest;
    }

    VELT_NelMead minimiser;
    double visible = 0.0;
    float ftol = 1e-7F;
    std::int16_t maxIts = 500;
};

// The bowls have their bottom at x = 1.
inline double Bowl(const RecordedSurface::Point& u)
{
    return 1.0 + u[0] * u[0];
}

inline double Bowl2(const RecordedSurface::Point& u)
{
    return 1.0 + u[0] * u[0] + u[1] * u[1];
}
} // namespace minimiser_bench
