// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"

#include <string>
#include <vector>

/// Adds a scenario whose values begin behind the data; the periods to come are as many as it has.
inline void AddScenario(clsVeltData& data, const std::string& title, std::int32_t vecType,
                        const std::vector<double>& values)
{
    clsProjScenario scenario;
    scenario.Title(title);
    scenario.VecType(vecType);
    int row = data.NAPoints();
    for (const double value : values)
        scenario.Vector(++row, value);
    data.AddProjScenario(scenario, title);
    data.NumPts(static_cast<std::int32_t>(values.size()));
}
