// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "graphs/VELT_ContourPlot.h"

#include <optional>
#include <vector>

/// What a contour window was given.
struct PlotRecord {
    struct Point {
        ContourMark kind;
        double x, y;
    };
    struct Step {
        double fromX, fromY, toX, toY;
    };
    std::optional<ContourSurface> surface;
    std::vector<Point> marks;
    std::vector<Step> steps;
    std::optional<std::size_t> closedAfter; ///< steps after which the user closes the window
};

/// A contour window that keeps what it is given; the record outlives it.
class RecordedPlot : public VELT_ContourPlot
{
public:
    explicit RecordedPlot(PlotRecord& record) : m_record(record) {}
    void Show(const ContourSurface& surface) override { m_record.surface = surface; }
    bool PlotPoint(ContourMark kind, double x, double y) override
    {
        m_record.marks.push_back({kind, x, y});
        return Open();
    }
    bool PlotStep(double fromX, double fromY, double toX, double toY) override
    {
        m_record.steps.push_back({fromX, fromY, toX, toY});
        return Open();
    }

private:
    bool Open() const { return !m_record.closedAfter || m_record.steps.size() < *m_record.closedAfter; }
    PlotRecord& m_record;
};
