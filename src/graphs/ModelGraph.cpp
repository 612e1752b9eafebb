// SPDX-License-Identifier: GPL-3.0-or-later
#include "graphs/ModelGraph.h"

#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/VeltError.h"
#include "graphs/CopiedLine.h"

#include <cmath>
#include <utility>

void ModelGraph::Create(int points)
{
    m_points = points;
    for (std::vector<double>* series : {&m_x, &m_y, &m_y2, &m_overlay})
        series->assign(static_cast<std::size_t>(points), InvalidData);
}

void ModelGraph::Take(std::vector<double>& series, std::span<const double> values) const
{
    if (values.size() != static_cast<std::size_t>(m_points))
        RaiseSubscript();
    series.assign(values.begin(), values.end());
}

std::size_t ModelGraph::IndexOf(int point) const
{
    if (point < 1 || point > m_points)
        RaiseSubscript();
    return static_cast<std::size_t>(point - 1);
}

void ModelGraph::TogglePoint(int point)
{
    if (TakesClicks())
        std::swap(m_y[IndexOf(point)], m_y2[IndexOf(point)]);
}

void ModelGraph::HighlightPoint(int set, int point)
{
    if (!TakesClicks() || set == kExpected)
        return;
    const std::size_t index = IndexOf(point);
    if (m_highlight && m_highlight->point == point) {
        m_highlight.reset();
        return;
    }
    // Graphs of one fit hold a period in the same set; where one does not, the period lights up all the same.
    const double value = set == kExcluded ? m_y2[index] : m_y[index];
    m_highlight = Highlight{point, Shown(value) ? value : set == kExcluded ? m_y[index] : m_y2[index]};
}

void ModelGraph::StopInterrogate()
{
    if (TakesClicks())
        m_highlight.reset();
}

int ModelGraph::SetOf(int point) const
{
    const std::size_t index = IndexOf(point);
    return Shown(m_y[index]) ? kIncluded : Shown(m_y2[index]) ? kExcluded : 0;
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

std::string ModelGraph::CopiedText() const
{
    constexpr int kObserved = 1855;
    constexpr int kExpected = 1854;
    const auto line = [](std::initializer_list<std::string> cells) { return CopiedLine(std::span(cells)); };
    using number_text::Plain;
    if (m_type != GraphType::PointsAndLine) {
        std::string text = line({XTitle(), YTitle()});
        for (std::size_t i = 0; i < m_x.size(); ++i)
            text += line({Plain(m_x[i]), Plain(m_y[i])});
        return text;
    }
    std::string text = line({XTitle(), LoadResString(kObserved), LoadResString(kExpected)});
    for (std::size_t i = 0; i < m_x.size(); ++i)
        text += line({Plain(m_x[i]), Plain(Shown(m_y[i]) ? m_y[i] : m_y2[i]), Plain(m_overlay[i])});
    return text;
}
