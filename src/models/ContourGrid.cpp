// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ContourGrid.h"

#include "base/Checked.h"
#include "base/MeterScope.h"
#include "models/modMaths.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

using checked::ToFloat;

namespace
{
constexpr double kInvalid = 1e20; // an objective at or above this lies outside the domain
constexpr double kHighest = std::numeric_limits<float>::max() / 2.0; // room for the plateau above it
} // namespace

bool ContourGrid::AskRanges(IUser& user)
{
    ContourRange answer = range;
    if (!user.AskContourRange(answer))
        return false;
    range = answer;
    return true;
}

std::pair<double, double> ContourGrid::DecadeAround(double estimate)
{
    if (!(estimate > 0.0))
        return {0.0, 1.0};
    const double low = std::pow(10.0, modMaths::Magnitude(estimate));
    return {low, 10.0 * low};
}

void ContourGrid::Draw(ModelState& m, const std::function<double(double, double)>& objective,
                       const std::string& title, const std::string& emptySource,
                       const std::string& cancelSource)
{
    m.PlotEvaluations = false; // evaluations of the grid are no part of the path
    const auto points = static_cast<std::size_t>(range.ContEvals);
    const auto step = [points](double low, double high) {
        return points == 1 ? 0.0F : ToFloat((high - low) / static_cast<double>(points - 1));
    };
    const float dx = step(range.Param1Lo, range.Param1Hi);
    const float dy = step(range.Param2Lo, range.Param2Hi);

    std::vector<std::vector<std::optional<double>>> cells(points, std::vector<std::optional<double>>(points));
    ContourSurface surface;
    float zMin = std::numeric_limits<float>::max();
    float zMax = -zMin;
    bool nothingDrawn = true;
    MeterScope meter(m.run->meter, m.run->globals.DrawingContours, range.ContEvals);
    for (std::size_t i = 0; i < points; ++i) {
        surface.x.push_back(static_cast<double>(i) * dx + range.Param1Lo);
        for (std::size_t j = 0; j < points; ++j) {
            if (i == 0)
                surface.y.push_back(static_cast<double>(j) * dy + range.Param2Lo);
            const double value = objective(surface.x[i], surface.y[j]);
            const double height = value * m.objectiveUnit;
            if (!(value < kInvalid && height < kHighest))
                continue;
            cells[i][j] = height;
            nothingDrawn = false;
            zMin = std::min(zMin, ToFloat(height)); // the range alone is in 32 bits
            zMax = std::max(zMax, ToFloat(height));
        }
        meter.Done(static_cast<int>(i) + 1, cancelSource);
    }
    if (nothingDrawn)
        throw ProgramError(errors::kContoursFailed, "Failed to Plot Minimisation Contours.", emptySource);

    const float plateau = zMax + (zMax - zMin) / 9.0F;
    for (const auto& column : cells) {
        surface.z.emplace_back();
        for (const auto& cell : column)
            surface.z.back().push_back(cell.value_or(static_cast<double>(plateau)));
    }
    surface.plateau = static_cast<double>(plateau);
    surface.zMin = static_cast<double>(zMin);
    surface.zMax = static_cast<double>(zMax);
    surface.title = title;
    surface.xName = range.Param1Name;
    surface.yName = range.Param2Name;
    surface.zName = m.run->globals.GraphTitles(7);
    m_plot = m.run->window.NewContourPlot();
    m_plot->Show(surface);
    m.run->window.YieldToEvents();
    m.PlotEvaluations = true;
}

void ContourGrid::StartPath(double x, double y)
{
    m_prevX = x;
    m_prevY = y;
    m_steps = 0;
}

void ContourGrid::PlotStep(ModelState& m, double x, double y)
{
    constexpr int kEveryStep = 30;
    constexpr int kRation = 50;
    if (!m.PlotEvaluations)
        return;
    m.PlotEvaluations = m_plot && m_plot->PlotStep(m_prevX, m_prevY, x, y);
    m_prevX = x;
    m_prevY = y;
    ++m_steps;
    if (m_steps < kEveryStep || m_steps % kRation == 0)
        m.run->window.YieldToEvents();
}

void ContourGrid::Mark(ModelState& m, ContourMark kind, double x, double y)
{
    if (!m.PlotEvaluations)
        return;
    m.PlotEvaluations = m_plot && m_plot->PlotPoint(kind, x, y);
    m.run->window.YieldToEvents();
}
