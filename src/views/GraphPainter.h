// SPDX-License-Identifier: GPL-3.0-or-later
// Draws what a ModelGraph describes. It owns no numbers; windows and the batch tool share it.
#pragma once

#include <QByteArray>
#include <QString>

class ModelGraph;
class QCustomPlot;

/// Fills `plot` with the graph and sets its axes to show all of it. Can be called again after a change of the
/// graph. Points that hold InvalidData, a NaN or an infinity are not drawn. Does not replot.
void PaintGraph(QCustomPlot& plot, const ModelGraph& graph);

/// The graph as the bytes of a picture: "png", "svg" or "pdf". Needs a QApplication, but no screen.
/// \return nothing for another ending
QByteArray DrawGraphPicture(const ModelGraph& graph, const QString& ending);

/// Writes the graph as a picture: .png, .svg or .pdf. Needs a QApplication, but no screen.
/// \return false for another ending or a file that cannot be written.
bool SaveGraphPicture(const ModelGraph& graph, const QString& path);
