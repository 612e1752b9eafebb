// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <qcustomplot.h>

/// The first line of a plot that has this name in the legend; nullptr when there is none.
inline QCPGraph* Named(const QCustomPlot& plot, const QString& name)
{
    for (int i = 0; i < plot.graphCount(); ++i)
        if (plot.graph(i)->name() == name)
            return plot.graph(i);
    return nullptr;
}
