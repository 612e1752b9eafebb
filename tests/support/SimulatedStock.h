// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

/// A stock whose true parameters are known. With W the stock after recruitment, the catch of a period is
///     C = q E (W exp(-M/2) - C/2), so C = q E exp(-M/2) W / (1 + q E / 2),
/// and what is left is W exp(-M) - C exp(-M/2).
struct SimulatedStock {
    double n1 = 10000.0;
    double q = 0.002;
    double mort = 0.2;
    double lambda = 0.0;   ///< recruits per unit of `index`
    double recruits = 0.0; ///< constant recruits of each period
    std::vector<double> effort = {50, 80, 110, 90, 140, 60, 120, 100, 70, 130, 85, 105};
    std::vector<double> index = {1.0, 0.4, 1.7, 0.9, 2.2, 0.3, 1.2, 1.9, 0.6, 1.4, 0.8, 1.1};

    /// Catches, each multiplied by exp(scatter * a fixed pattern that sums to about nothing).
    std::vector<double> Catches(double scatter = 0.0) const
    {
        static constexpr double kPattern[] = {0.6, -1.1, 0.3, 0.9,  -0.7, -0.2,
                                              1.2, -0.8, 0.1, -0.5, 0.7,  -0.4};
        std::vector<double> catches;
        double n = n1;
        for (std::size_t t = 0; t < effort.size(); ++t) {
            const double w = n + recruits + lambda * index[t];
            const double qe = q * effort[t];
            const double c = qe * std::exp(-mort / 2.0) * w / (1.0 + qe / 2.0);
            n = w * std::exp(-mort) - c * std::exp(-mort / 2.0);
            catches.push_back(c * std::exp(scatter * kPattern[t % 12]));
        }
        return catches;
    }
};
