// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/VELT_ContourPlot.h"
#include "models/ContourRange.h"
#include "models/ModelState.h"

#include <functional>
#include <memory>
#include <string>

/// The likelihood surface of a two-parameter model and the path of the minimiser on it.
class ContourGrid
{
public:
    ContourRange range;

    /// Asks the user for the ranges; on OK they are kept.
    bool AskRanges(IUser& user);

    /// Whether there is something to draw: a start that failed left no bounds.
    bool HasRange() const { return !RefuseContourRange(range); }

    /// Bounds of a parameter from the decimal exponent of its estimate: the power of ten below it and ten
    /// times that; 0 and 1 for an estimate that is not above 0.
    static std::pair<double, double> DecadeAround(double estimate);

    /// Evaluates `objective`, counted in `m.objectiveUnit`, over the grid under the meter and shows the
    /// surface. Cells at or above 1e20 take a value a ninth of the range above the highest valid one, so that
    /// the region of invalid parameters shows as a plateau. \throws VeltError 2262 with `emptySource` when no
    /// cell is valid, 2263 with `cancelSource` on Cancel
    void Draw(ModelState& m, const std::function<double(double, double)>& objective, const std::string& title,
              const std::string& emptySource, const std::string& cancelSource);

    /// The path starts here.
    void StartPath(double x, double y);

    /// One step of the path to an evaluated point; switches `m.PlotEvaluations` off when the window is gone.
    /// Events get their turn at the first steps and then at every 50th, so that a long run stays fast.
    void PlotStep(ModelState& m, double x, double y);

    /// Marks a start or the final point, if the plot is on.
    void Mark(ModelState& m, ContourMark kind, double x, double y);

private:
    std::unique_ptr<VELT_ContourPlot> m_plot;
    double m_prevX = 0.0;
    double m_prevY = 0.0;
    int m_steps = 0;
};
