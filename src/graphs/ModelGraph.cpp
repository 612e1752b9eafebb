// SPDX-License-Identifier: GPL-3.0-or-later
#include "graphs/ModelGraph.h"

#include "base/VeltError.h"

#include <cmath>

void ModelGraph::Create(int points)
{
    m_points = points;
    for (std::vector<double>* series : {&m_x, &m_y, &m_y2, &m_overlay})
        series->assign(static_cast<std::size_t>(points), InvalidData);
}

void ModelGraph::Take(std::vector<double>& series, std::span<const double> values)
{
    if (values.size() != static_cast<std::size_t>(m_points))
        RaiseSubscript();
    series.assign(values.begin(), values.end());
}

std::optional<ModelGraph::TimeAxis> ModelGraph::YearAxis() const
{
    if (m_x.empty() || m_x.front() < 1900.0 || m_x.front() > 1999.0)
        return std::nullopt;
    const auto downTo5 = [](double year) { return std::floor(year / 5.0) * 5.0; };
    TimeAxis axis{.minimum = downTo5(m_x.front()), .maximum = downTo5(m_x.back() + 5.0)};
    axis.step = (axis.maximum - axis.minimum) / 5.0;
    return axis;
}
