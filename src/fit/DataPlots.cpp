// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/DataPlots.h"

#include "base/Checked.h"
#include "data/clsVeltData.h"
#include "graphs/ModelGraph.h"

std::int32_t AskDataPlot(const clsVeltData& data)
{
    Run& run = data.TheRun();
    Selection selection{.caption = "Plot Data", .prompt = "Select Data Series To Plot"};
    std::vector<std::int32_t> codes;
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        if (!data.ColPresent(column))
            continue;
        selection.items.push_back(run.globals.ColumnDisplayNames(column));
        codes.push_back(column);
    }
    if (data.ColPresent(columns::CatchWt) && data.ColPresent(columns::Effort)) {
        selection.items.push_back(run.globals.CPUETitle);
        codes.push_back(kCPUECode);
    }
    if (!run.user.AskSelection(selection) || selection.chosen == 0)
        return 0;
    return codes.at(selection.chosen - 1);
}

namespace
{
double PlottedValue(const clsVeltData& data, std::int32_t code, int row)
{
    if (!data.Included(row))
        return ModelGraph::InvalidData;
    if (code != kCPUECode)
        return data.DB(code, row);
    if (data.Effort(row) == 0.0F) // no catch rate without effort
        return ModelGraph::InvalidData;
    return checked::Div(data.CatchWt(row), data.Effort(row));
}

AxisMeasure MeasureOf(const clsVeltData& data, std::int32_t code)
{
    if (code == kCPUECode)
        return {.column = columns::CatchWt, .per = columns::Effort};
    if (code == columns::ExpCPUE || code == columns::ObsCPUE) // in the unit of the fit that filled them
        return {.column = data.ColPresent(columns::ExpCatchNums) ? columns::CatchNums : columns::CatchWt,
                .per = columns::Effort};
    return {.column = code};
}
} // namespace

std::shared_ptr<ModelGraph> DataPlot(const clsVeltData& data, std::int32_t code)
{
    std::vector<double> x;
    std::vector<double> y;
    for (int row = 1; row <= data.ShownRows(); ++row) {
        x.push_back(data.MinTimeP() + row - 1);
        y.push_back(PlottedValue(data, code, row));
    }
    const modVeltGlobals::Globals& texts = data.TheRun().globals;
    auto graph = std::make_shared<ModelGraph>();
    graph->Create(data.ShownRows());
    graph->XData(x);
    graph->YData(y);
    graph->Title(code == kCPUECode ? texts.CPUETitle : texts.ColumnDisplayNames(code));
    graph->YTitle(graph->Title());
    graph->XTitle(texts.TimeTitle);
    graph->XMeasure({.column = AxisMeasure::kTime});
    graph->YMeasure(MeasureOf(data, code));
    graph->WithToggs(false);
    graph->Type(GraphType::Line);
    return graph;
}
