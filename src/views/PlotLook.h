// SPDX-License-Identifier: GPL-3.0-or-later
// What the user has changed of a drawn plot.
#pragma once

#include <QColor>
#include <QString>

#include <vector>

class GraphTitles;
class QCPAbstractPlottable;
class QCustomPlot;

namespace plot_look
{
/// A series whose look can be changed.
struct Series {
    QString name;
    QColor colour; ///< as it is drawn
    bool takesSymbol = false;
    bool takesLine = false;
};

/// Marks `piece` as one that goes with the series of this name and follows its colour: limits around a line,
/// the other one of two lines.
void Accompany(QCPAbstractPlottable& piece, const QString& series);

/// The named series of a plot, each name once, in the order of drawing.
std::vector<Series> SeriesOf(QCustomPlot& plot);

/// Writes the titles into a prepared plot, and changes what else the user has changed. Does not replot.
void Apply(QCustomPlot& plot, const GraphTitles& titles);

/// The same for titles and ranges alone.
void ApplyTitlesAndRanges(QCustomPlot& plot, const GraphTitles& titles);

/// The title of an axis with its unit, as it stands where the user has not changed it.
QString PlainXTitle(const GraphTitles& titles);
QString PlainYTitle(const GraphTitles& titles);
} // namespace plot_look
