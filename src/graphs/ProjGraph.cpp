// SPDX-License-Identifier: GPL-3.0-or-later
#include "graphs/ProjGraph.h"

#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/VeltError.h"
#include "graphs/CopiedLine.h"

void ProjGraph::Create(int lines, int points, bool withFit, int start, bool withCI)
{
    m_scenarios = lines;
    m_points = points;
    m_start = start;
    m_hasFit = m_withFit = withFit;
    m_withCI = withCI;
    const auto size = static_cast<std::size_t>(points);
    for (std::vector<float>* series : {&m_x, &m_plus, &m_minus})
        series->assign(size, 0.0F);
    m_lines.assign(static_cast<std::size_t>(NumLines()),
                   {.legend = {}, .population = std::vector(size, 0.0F)});
}

std::size_t ProjGraph::IndexOf(int point) const
{
    if (point < 1 || point > m_points)
        RaiseSubscript();
    return static_cast<std::size_t>(point - 1);
}

std::size_t ProjGraph::IndexOfLine(int line) const
{
    if (line < 1 || static_cast<std::size_t>(line) > m_lines.size())
        RaiseSubscript();
    return static_cast<std::size_t>(line - 1);
}

std::string ProjGraph::CopiedText() const
{
    constexpr int kLow = 1006;
    constexpr int kHigh = 1007;
    using number_text::Plain;
    std::vector<std::string> cells{XTitle(), YTitle()};
    if (m_withCI)
        cells.insert(cells.end(), {LoadResString(kLow), LoadResString(kHigh)});
    std::string text = CopiedLine(cells);
    for (int i = m_withFit ? 1 : m_start + 1; i <= m_points; ++i) {
        cells = {Plain(XData(i)), Plain(ProjData(i > m_start ? 1 : 2, i))};
        if (m_withCI)
            cells.insert(cells.end(), {Plain(ErrorMinus(i)), Plain(ErrorPlus(i))});
        text += CopiedLine(cells);
    }
    return text;
}
