// SPDX-License-Identifier: GPL-3.0-or-later
// Surfaces whose heights are known.
#pragma once

#include "graphs/VELT_ContourPlot.h"

#include <cmath>
#include <cstddef>
#include <vector>

inline ContourSurface NamedSurface()
{
    ContourSurface surface;
    surface.title = "Minimisation";
    surface.xName = "K";
    surface.yName = "r";
    surface.zName = "Objective";
    return surface;
}

/// z = (x - 2)^2 + (y - 3)^2 on the whole numbers from 0 to 6.
inline ContourSurface Bowl()
{
    ContourSurface surface = NamedSurface();
    for (int i = 0; i <= 6; ++i) {
        surface.x.push_back(i);
        surface.y.push_back(i);
    }
    surface.z.assign(7, std::vector<double>(7));
    for (std::size_t i = 0; i < 7; ++i)
        for (std::size_t j = 0; j < 7; ++j)
            surface.z[i][j] = std::pow(surface.x[i] - 2.0, 2) + std::pow(surface.y[j] - 3.0, 2);
    surface.zMin = 0.0;
    surface.zMax = 25.0; // at (6, 0): 16 + 9
    surface.plateau = 25.0 + 25.0 / 9.0;
    return surface;
}
