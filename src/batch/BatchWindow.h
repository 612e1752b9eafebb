// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "graphs/ModelGraph.h"
#include "graphs/VELT_ContourPlot.h"

#include <memory>
#include <optional>
#include <vector>

/// A likelihood surface with the walk of the minimiser over it.
struct ContourRecord {
    struct Mark {
        ContourMark kind;
        double x, y;
    };
    struct Step {
        double fromX, fromY, toX, toY;
    };
    ContourSurface surface;
    std::vector<Mark> marks;
    std::vector<Step> path;
};

/// The main window of a job without a screen: it keeps the graphs that the workflow opens, and nothing else.
class BatchWindow : public IMainWindow
{
public:
    std::vector<std::shared_ptr<ModelGraph>> graphs;
    std::shared_ptr<ContourRecord> contours; ///< the last surface; empty when there was none

    void StatusText(const std::string&) override {}
    void HourglassOn() override {}
    void HourglassOff() override {}
    void UpDatePBar(double) override {}
    void AddModelGraph(std::shared_ptr<ModelGraph> graph) override { graphs.push_back(std::move(graph)); }
    void ClearGraphs(bool histogramsOnly) override;
    void SetUpDataGrid() override {}
    void EnableControls() override {}
    void ShowParameterReport(const ParameterReport*) override {}
    std::unique_ptr<VELT_ContourPlot> NewContourPlot() override;
    void YieldToEvents() override {}
};

/// Nobody watches, nobody cancels.
class BatchMeter : public IProgressMeter
{
public:
    void Start(const std::string&, int) override {}
    void Value(int) override {}
    bool Cancelled() override { return false; }
    void Finish() override {}
};
