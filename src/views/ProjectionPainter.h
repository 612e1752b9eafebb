// SPDX-License-Identifier: GPL-3.0-or-later
// Draws what a ProjGraph describes. It owns no numbers; windows and the batch tool share it.
#pragma once

#include <QByteArray>
#include <QString>

class ProjGraph;
class QCustomPlot;

/// Fills `plot` with the projection and sets its axes to show all of it: a line for each scenario, told apart
/// by colour and by dashes, the fit up to them, and an interval as a band with whiskers. Can be called again
/// after a change. Does not replot.
void PaintProjection(QCustomPlot& plot, const ProjGraph& graph);

/// The projection as the bytes of a picture: "png", "svg" or "pdf". Needs a QApplication, but no screen.
/// \return nothing for another ending
QByteArray DrawProjectionPicture(const ProjGraph& graph, const QString& ending);
