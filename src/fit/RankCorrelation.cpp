// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/RankCorrelation.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace
{
/// Ranks from 1, those of equal values averaged.
std::vector<double> RanksOf(std::span<const double> values)
{
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    std::vector<double> ranks(values.size());
    for (std::size_t first = 0; first < order.size();) {
        std::size_t last = first;
        while (last + 1 < order.size() && values[order[last + 1]] == values[order[first]])
            ++last;
        for (std::size_t i = first; i <= last; ++i)
            ranks[order[i]] = 1.0 + static_cast<double>(first + last) / 2.0;
        first = last + 1;
    }
    return ranks;
}
} // namespace

double RankCorrelationWithOrder(std::span<const double> values)
{
    const std::vector<double> ranks = RanksOf(values);
    const double mean = (static_cast<double>(ranks.size()) + 1.0) / 2.0; // also with ties
    double cross = 0.0;
    double ofRanks = 0.0;
    double ofOrder = 0.0;
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        const double x = static_cast<double>(i) + 1.0 - mean;
        const double y = ranks[i] - mean;
        cross += x * y;
        ofOrder += x * x;
        ofRanks += y * y;
    }
    return ofRanks > 0.0 ? cross / std::sqrt(ofOrder * ofRanks) : 0.0;
}
