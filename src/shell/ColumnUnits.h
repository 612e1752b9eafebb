// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/Columns.h"
#include "graphs/GraphTitles.h"

#include <array>
#include <string>

/// The units that the user gave to the columns of the open data set, for the axes of its graphs. A project
/// file has no room for them, so the settings of the desktop keep them, for each project by its path: the
/// units of one project must never stand beside the numbers of another.
class ColumnUnits
{
public:
    /// \param column  AxisMeasure::kTime, or one of the user's columns from 1
    const std::string& Typed(int column) const { return m_units.at(static_cast<std::size_t>(column)); }
    void Typed(int column, std::string unit)
    {
        m_units.at(static_cast<std::size_t>(column)) = std::move(unit);
    }

    /// The unit of what is measured, "t / days" for a ratio; empty where the user has not named it. A column
    /// that fits fill has the unit of the column that it estimates.
    std::string Of(const AxisMeasure& measure) const;

    /// Puts the units beside the titles of the axes; one that no column gives stays.
    void Apply(GraphTitles& graph) const;

    void Clear() { m_units = {}; }
    void Load(const std::string& path);
    void Store(const std::string& path) const;

private:
    std::array<std::string, columns::kLastUser + 1> m_units;
};
