// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/GraphTitles.h"

#include <cstddef>
#include <string>
#include <vector>

/// Content and behaviour of the graph of one projection: a line for each scenario, behind them the fitted
/// line if it is wanted, and the interval around a scenario. It keeps its own copy of the numbers and does
/// not draw.
///
/// Lines and points count from 1; one that does not exist raises 9. Populations are numbers, or biomass in a
/// production model.
class ProjGraph : public GraphTitles
{
public:
    /// \param lines scenarios \param points periods with the state behind the last one
    /// \param start the first projected point, where the fit ends and every scenario begins
    void Create(int lines, int points, bool withFit, int start, bool withCI);

    int NumLines() const { return m_scenarios + (m_withFit ? 1 : 0); } ///< those that show
    int NumPoints() const { return m_points; }
    int ProjStart() const { return m_start; }
    bool WithCI() const { return m_withCI; }
    bool WithFit() const { return m_withFit; }
    /// Shows or hides the fitted line; its numbers stay. Nothing in a graph that was created without one.
    void WithFit(bool on) { m_withFit = on && m_hasFit; }
    bool HasFit() const { return m_hasFit; }
    bool IsFit(int line) const { return line > m_scenarios; }

    const std::string& LegendText(int line) const { return m_lines[IndexOfLine(line)].legend; }
    void LegendText(int line, std::string text) { m_lines[IndexOfLine(line)].legend = std::move(text); }
    float XData(int i) const { return m_x[IndexOf(i)]; }
    void XData(int i, float time) { m_x[IndexOf(i)] = time; }
    float ProjData(int line, int i) const { return m_lines[IndexOfLine(line)].population[IndexOf(i)]; }
    void ProjData(int line, int i, float population)
    {
        m_lines[IndexOfLine(line)].population[IndexOf(i)] = population;
    }
    /// Limits, as populations.
    float ErrorPlus(int i) const { return m_plus[IndexOf(i)]; }
    void ErrorPlus(int i, float population) { m_plus[IndexOf(i)] = population; }
    float ErrorMinus(int i) const { return m_minus[IndexOf(i)]; }
    void ErrorMinus(int i, float population) { m_minus[IndexOf(i)] = population; }

    /// What there is to say about these numbers; mostly nothing.
    const std::string& Remark() const { return m_remark; }
    void Remark(std::string text) { m_remark = std::move(text); }

    /// Whether point i belongs to the picture of a line: a scenario begins at ProjStart, and the fit ends
    /// there.
    bool Drawn(int line, int i) const { return IsFit(line) ? i <= m_start : i >= m_start; }

    /// The numbers as text for a spreadsheet. Only the lines 1 and 2 reach it: with several scenarios the
    /// second is another scenario, and the past then shows its zeros and not the fit. Deliberate.
    std::string CopiedText() const;

private:
    struct Line {
        std::string legend;
        std::vector<float> population;
    };
    std::size_t IndexOf(int point) const;
    std::size_t IndexOfLine(int line) const;

    int m_scenarios = 0;
    int m_points = 0;
    int m_start = 0;
    bool m_hasFit = false;
    bool m_withFit = false;
    bool m_withCI = false;
    std::vector<float> m_x, m_plus, m_minus;
    std::vector<Line> m_lines; ///< the fit last, also while it is hidden
    std::string m_remark;
};
