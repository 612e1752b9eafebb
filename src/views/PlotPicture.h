// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

class QCustomPlot;
class QPrinter;

/// Size of a picture that no window gives a size to, in logical pixels (7.5 by 5 inches).
inline constexpr QSize kPictureSize{720, 480};

/// Dots of a PNG or a copied picture for each logical pixel.
inline constexpr int kPictureScale = 2;

/// The plot as an image with twice as many dots as `size` says.
QImage PlotImage(QCustomPlot& plot, QSize size);

/// The plot as the bytes of a picture: "png" with twice the dots, "svg" and "pdf" as vectors with real text.
/// They name this program within their first 4096 bytes, by which its own pictures are known again. Empty for
/// another ending or an empty size.
QByteArray DrawPlot(QCustomPlot& plot, const QString& ending, QSize size = kPictureSize);

/// Writes the plot to `path`: .png with twice the dots, .svg and .pdf as vectors with real text. The file
/// appears whole or not at all. \return false for another ending or an empty size \throws VeltError 57 with
/// the reason when it cannot be written
bool SavePlot(QCustomPlot& plot, const QString& path, QSize size = kPictureSize);

/// Prints the plot on one page, as vectors with real text on white: as wide as the page, or as high, in the
/// shape that it has now. \throws PrinterFault the printer does not take it
void PrintPlot(QCustomPlot& plot, QPrinter& printer);
