// SPDX-License-Identifier: GPL-3.0-or-later
// Graphs of models that the windows and the painter are held against.
#pragma once

#include "graphs/ModelGraph.h"

#include <cstddef>
#include <vector>

constexpr double kHidden = ModelGraph::InvalidData;

/// A CPUE graph over the years from `first` on: the second point is out of the fit, the third one hidden.
inline ModelGraph CpueGraph(int points, double first = 1967.0)
{
    ModelGraph graph;
    graph.Create(points);
    graph.Type(GraphType::PointsAndLine);
    graph.Title("Expected and Observed CPUE");
    graph.XTitle("Time");
    graph.YTitle("CPUE");
    std::vector<double> x(static_cast<std::size_t>(points)), in(x), out(x), line(x);
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double t = static_cast<double>(i);
        x[i] = first + t;
        const double observed = 20.0 - t / static_cast<double>(points) * 10.0;
        in[i] = i == 1 || i == 2 ? kHidden : observed;
        out[i] = i == 1 ? observed : kHidden;
        line[i] = i == 2 ? kHidden : observed + 0.5;
    }
    graph.XData(x);
    graph.YData(in);
    graph.YData2(out);
    graph.OverlayLine(line);
    return graph;
}

/// A graph of one kind with these points in the fit.
inline ModelGraph GraphOf(GraphType type, std::vector<double> x, std::vector<double> y)
{
    ModelGraph graph;
    graph.Create(static_cast<int>(x.size()));
    graph.Type(type);
    graph.XData(x);
    graph.YData(y);
    return graph;
}
