// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchWindow.h"

#include <utility>

namespace
{
class RecordingPlot : public VELT_ContourPlot
{
public:
    explicit RecordingPlot(std::shared_ptr<ContourRecord> record) : m_record(std::move(record)) {}

    void Show(const ContourSurface& surface) override { m_record->surface = surface; }
    bool PlotPoint(ContourMark kind, double x, double y) override
    {
        m_record->marks.push_back({kind, x, y, m_record->path.size()});
        return true;
    }
    bool PlotStep(double fromX, double fromY, double toX, double toY) override
    {
        m_record->path.push_back({fromX, fromY, toX, toY});
        return true;
    }

private:
    std::shared_ptr<ContourRecord> m_record;
};
} // namespace

void BatchWindow::ClearGraphs(bool histogramsOnly)
{
    std::erase_if(graphs, [histogramsOnly](const std::shared_ptr<ModelGraph>& graph) {
        return !histogramsOnly || graph->Type() == GraphType::Histogram;
    });
    if (histogramsOnly)
        return;
    contours.reset();
    projections.clear();
}

std::unique_ptr<VELT_ContourPlot> BatchWindow::NewContourPlot()
{
    contours = std::make_shared<ContourRecord>();
    return std::make_unique<RecordingPlot>(contours);
}

void BatchMeter::Start(const std::string& /*title*/, int /*maximum*/)
{
    m_furthest = 0;
    m_looks = 0;
}

void BatchMeter::Value(int value)
{
    if (value <= m_furthest)
        return;
    m_furthest = value;
    m_looks = 0;
}

bool BatchMeter::Cancelled()
{
    ++m_looks;
    return GaveUp();
}
