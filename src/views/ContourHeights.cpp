// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ContourHeights.h"

#include "views/ContourLines.h"
#include "views/NumberTicker.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
/// Where a value lies between two grid points.
struct Place {
    std::size_t index = 0;
    double part = 0.0;
};

std::optional<Place> PlaceOf(const std::vector<double>& positions, double value)
{
    const QCPRange span = contour_heights::SpanOf(positions);
    if (positions.empty() || !(value >= span.lower && value <= span.upper))
        return std::nullopt;
    if (positions.size() == 1 || !(positions.back() > positions.front()))
        return Place{};
    const auto above = std::upper_bound(positions.begin(), positions.end() - 1, value);
    const auto index = static_cast<std::size_t>(above - positions.begin()) - 1;
    const std::size_t at = std::min(index, positions.size() - 2);
    return Place{at, (value - positions[at]) / (positions[at + 1] - positions[at])};
}

/// How far above the lowest cell the next best hundredth of the cells lie: nearer, a grid resolves nothing.
double Closest(const ContourSurface& surface)
{
    std::vector<double> above;
    for (std::size_t i = 0; i < surface.z.size(); ++i)
        for (std::size_t j = 0; j < surface.z[i].size(); ++j)
            if (contour_heights::Valid(surface, i, j) && surface.z[i][j] > surface.zMin)
                above.push_back(surface.z[i][j] - surface.zMin);
    if (above.empty())
        return 0.0;
    const auto at = above.begin() + static_cast<std::ptrdiff_t>(above.size() / 100);
    std::nth_element(above.begin(), at, above.end());
    return *at;
}
} // namespace

bool contour_heights::Valid(const ContourSurface& surface, std::size_t i, std::size_t j)
{
    // With a single valid height the plateau has that same height, so the largest valid value decides.
    return std::isfinite(surface.z[i][j]) && surface.z[i][j] <= surface.zMax;
}

QCPRange contour_heights::SpanOf(const std::vector<double>& positions)
{
    if (positions.empty())
        return {0.0, 1.0};
    if (positions.back() > positions.front())
        return {positions.front(), positions.back()};
    const double around = positions.front() != 0.0 ? 0.05 * std::abs(positions.front()) : 0.5;
    return {positions.front() - around, positions.front() + around};
}

std::optional<double> contour_heights::Nearby(const ContourSurface& surface, double x, double y, double least)
{
    const std::optional<Place> across = PlaceOf(surface.x, x);
    const std::optional<Place> up = PlaceOf(surface.y, y);
    if (!across || !up)
        return std::nullopt;
    double sum = 0.0;
    double weights = 0.0;
    for (const std::size_t i : {0U, 1U})
        for (const std::size_t j : {0U, 1U}) {
            const double weight =
                (i == 1 ? across->part : 1.0 - across->part) * (j == 1 ? up->part : 1.0 - up->part);
            if (weight <= 0.0 || !Valid(surface, across->index + i, up->index + j))
                continue; // beside the plateau the valid corners decide alone
            sum += weight * surface.z[across->index + i][up->index + j];
            weights += weight;
        }
    if (weights < least)
        return std::nullopt;
    return sum / weights;
}

contour_heights::Heights::Heights(const ContourSurface& surface)
    : m_low(surface.zMin), m_high(surface.zMax),
      m_levels(contour_lines::Levels(surface.zMin, surface.zMax, Closest(surface), surface.levels))
{
}

double contour_heights::Heights::Shade(const std::optional<double>& height) const
{
    if (!height)
        return std::numeric_limits<double>::quiet_NaN();
    if (m_levels.empty())
        return 0.5;
    const auto above = std::upper_bound(m_levels.begin(), m_levels.end(), *height);
    const auto passed = static_cast<double>(above - m_levels.begin());
    const double from = above == m_levels.begin() ? m_low : *(above - 1);
    const double to = above == m_levels.end() ? m_high : *above;
    const double part = to > from ? std::clamp((*height - from) / (to - from), 0.0, 1.0) : 0.0;
    return (passed + part) / static_cast<double>(m_levels.size() + 1);
}

QSharedPointer<QCPAxisTickerText> contour_heights::Heights::Ticks() const
{
    constexpr std::size_t kEvery = 4;
    QSharedPointer<QCPAxisTickerText> ticks(new QCPAxisTickerText);
    if (m_levels.empty())
        ticks->addTick(0.5, HeightText(m_low));
    for (std::size_t k = 0; k < m_levels.size(); k += kEvery)
        ticks->addTick(Shade(m_levels[k]), HeightText(m_levels[k]));
    return ticks;
}

QString contour_heights::Heights::HeightText(double height)
{
    constexpr int kDigits = 4;
    const double rounded = QString::number(height, 'g', kDigits).toDouble();
    return NumberAsText(rounded);
}
