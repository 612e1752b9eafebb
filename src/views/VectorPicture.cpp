// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/VectorPicture.h"

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <qcustomplot.h>

namespace
{
constexpr double kPointsPerInch = 72.0;

bool DrawSvg(const Drawing& drawing, QIODevice& file)
{
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setTitle(drawing.title);
    svg.setDescription(QStringLiteral("Drawn by VELT 3.0"));
    svg.setResolution(drawing.dpi);
    svg.setSize(drawing.size);
    svg.setViewBox(QRect(QPoint(0, 0), drawing.size));
    return DrawVectors(drawing, svg);
}

bool DrawPdf(const Drawing& drawing, QIODevice& file)
{
    QPdfWriter pdf(&file);
    pdf.setResolution(drawing.dpi);
    pdf.setPageSize(QPageSize(QSizeF(drawing.size) * kPointsPerInch / drawing.dpi, QPageSize::Point,
                              QString(), QPageSize::ExactMatch));
    pdf.setTitle(drawing.title);
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    return DrawVectors(drawing, pdf);
}
} // namespace

bool DrawVectors(const Drawing& drawing, QPaintDevice& device, double scale)
{
    QCPPainter painter;
    if (!painter.begin(&device))
        return false;
    painter.scale(scale, scale);
    painter.setMode(QCPPainter::pmVectorized);
    painter.setMode(QCPPainter::pmNoCaching);
    painter.fillRect(QRect(QPoint(0, 0), drawing.size), Qt::white);
    drawing.paint(painter);
    return painter.end();
}

QByteArray DrawDocument(const Drawing& drawing, const QString& ending)
{
    QBuffer picture;
    picture.open(QIODevice::WriteOnly);
    const bool drawn = ending == "svg"   ? DrawSvg(drawing, picture)
                       : ending == "pdf" ? DrawPdf(drawing, picture)
                                         : false;
    return drawn ? picture.data() : QByteArray();
}
