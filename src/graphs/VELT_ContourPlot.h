// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

/// A likelihood surface over a grid of two parameters, as the drawing gets it.
struct ContourSurface {
    std::string title;
    std::string xName;
    std::string yName;
    std::string zName;
    std::vector<double> x;              ///< first parameter, ascending, G values
    std::vector<double> y;              ///< second parameter, ascending, G values
    std::vector<std::vector<double>> z; ///< z[i][j] at (x[i], y[j]); invalid cells hold the plateau
    double plateau = 0.0;               ///< the value of invalid cells, above every valid one
    double zMin = 0.0;                  ///< lowest valid value
    double zMax = 0.0;                  ///< highest valid value
    int levels = 20;                    ///< number of contour levels
};

/// The kinds of marks on the surface.
enum class ContourMark : int { Start1 = 1, Start2 = 2, Start3 = 3, Final = 4 };

/// A window that shows a likelihood surface and the path of the minimiser on it. It may be closed at any
/// time.
class VELT_ContourPlot
{
public:
    virtual ~VELT_ContourPlot() = default;
    virtual void Show(const ContourSurface& surface) = 0;
    /// Marks a point. \return whether the graph is still open.
    virtual bool PlotPoint(ContourMark kind, double x, double y) = 0;
    /// Draws one step of the path. \return whether the graph is still open.
    virtual bool PlotStep(double fromX, double fromY, double toX, double toY) = 0;
};
