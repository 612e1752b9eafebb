// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "graphs/ModelGraph.h"
#include "graphs/ProjGraph.h"
#include "graphs/VELT_ContourPlot.h"

#include <memory>
#include <optional>
#include <vector>

/// A likelihood surface with the walk of the minimiser over it.
struct ContourRecord {
    struct Mark {
        ContourMark kind{};
        double x = 0, y = 0;
        std::size_t after = 0; ///< so many steps came before it
    };
    struct Step {
        double fromX = 0, fromY = 0, toX = 0, toY = 0;
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
    std::vector<std::shared_ptr<ProjGraph>> projections;
    std::shared_ptr<ContourRecord> contours; ///< the last surface; empty when there was none

    void StatusText(const std::string&) override {}
    void HourglassOn() override {}
    void HourglassOff() override {}
    void UpDatePBar(double) override {}
    void AddModelGraph(std::shared_ptr<ModelGraph> graph) override { graphs.push_back(std::move(graph)); }
    void AddProjGraph(std::shared_ptr<ProjGraph> graph) override { projections.push_back(std::move(graph)); }
    void ClearGraphs(bool histogramsOnly) override;
    void SetUpDataGrid() override {}
    void EnableControls() override {}
    void ShowParameterReport(const ParameterReport*) override {}
    std::unique_ptr<VELT_ContourPlot> NewContourPlot() override;
    void YieldToEvents() override {}
};

/// Nobody watches, so the meter itself cancels work that goes round in a circle: a replicate that does not
/// converge is drawn again without end.
class BatchMeter : public IProgressMeter
{
public:
    /// Even where one refit in twenty converges, this many failures in a row do not happen by chance.
    static constexpr int kPatience = 500;

    void Start(const std::string& title, int maximum) override;
    void Value(int value) override;
    bool Cancelled() override;
    void Finish() override {}

    bool GaveUp() const { return m_looks > kPatience; }
    int Furthest() const { return m_furthest; } ///< the highest value shown since Start

private:
    int m_furthest = 0;
    int m_looks = 0; ///< at Cancelled since the value last rose
};
