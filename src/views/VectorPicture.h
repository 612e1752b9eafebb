// SPDX-License-Identifier: GPL-3.0-or-later
// Drawings on pages of files and printers.
#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <functional>

class QCPPainter;
class QPaintDevice;

/// What stands on one page.
struct Drawing {
    QString title;
    QSize size;                             ///< of the page, in pixels at `dpi`
    int dpi = 96;                           ///< at which its letters are measured
    std::function<void(QCPPainter&)> paint; ///< in those pixels, on white
};

/// Draws vectors and real text. \param scale  units of the device for each pixel of the drawing
/// \return whether the device took them
bool DrawVectors(const Drawing& drawing, QPaintDevice& device, double scale = 1.0);

/// The drawing as the bytes of a document, "svg" or "pdf", that names this program within its first 4096
/// bytes. \return nothing for another ending, or when it could not be drawn
QByteArray DrawDocument(const Drawing& drawing, const QString& ending);
