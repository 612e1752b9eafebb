// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotPicture.h"

#include "base/VeltError.h"
#include "files/WholeFile.h"
#include "views/PlotStyle.h"
#include "views/VectorPicture.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPrinter>
#include <qcustomplot.h>

#include <cmath>

namespace
{

constexpr double kInchesPerMetre = 1.0 / 0.0254;

// Fonts are measured at the screen's resolution while the plot is laid out, so vectors are drawn at it too.
int LayoutDpi(const QCustomPlot& plot)
{
    return plot.logicalDpiX();
}

Drawing DrawingOf(QCustomPlot& plot, QSize size)
{
    return {.title = plot_style::TitleText(plot),
            .size = size,
            .dpi = LayoutDpi(plot),
            .paint = [&plot, size](QCPPainter& painter) {
                plot.toPainter(&painter, size.width(), size.height());
            }};
}

} // namespace

QImage PlotImage(QCustomPlot& plot, QSize size)
{
    plot_style::FitLegend(plot, size.width());
    QImage image = plot.toPixmap(size.width(), size.height(), kPictureScale).toImage();
    const int dotsPerMetre = static_cast<int>(std::lround(LayoutDpi(plot) * kPictureScale * kInchesPerMetre));
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    plot_style::FitLegend(plot, plot.width()); // the window keeps its own arrangement
    return image;
}

QByteArray DrawPlot(QCustomPlot& plot, const QString& ending, QSize size)
{
    if (size.isEmpty() || !QStringList{"png", "svg", "pdf"}.contains(ending))
        return {};
    if (ending == "png") {
        QImage image = PlotImage(plot, size);
        image.setText(QStringLiteral("Software"), QStringLiteral("VELT 3.0"));
        QBuffer picture;
        picture.open(QIODevice::WriteOnly);
        return image.save(&picture, "PNG") ? picture.data() : QByteArray();
    }
    plot_style::FitLegend(plot, size.width());
    QByteArray document = DrawDocument(DrawingOf(plot, size), ending);
    plot_style::FitLegend(plot, plot.width());
    return document;
}

bool SavePlot(QCustomPlot& plot, const QString& path, QSize size)
{
    const QByteArray bytes = DrawPlot(plot, QFileInfo(path).suffix().toLower(), size);
    if (!bytes.isEmpty())
        ReplaceFile(path.toStdString(), {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return !bytes.isEmpty();
}

void PrintPlot(QCustomPlot& plot, QPrinter& printer)
{
    printer.setResolution(LayoutDpi(plot));
    const QSize page(printer.width(), printer.height());
    const QSize wanted = plot.size().scaled(page, Qt::KeepAspectRatio);
    // Letters keep their size on paper, but not where the plot would be too small for them.
    const QSize size =
        plot.size().scaled(wanted.expandedTo(plot.minimumSize()), Qt::KeepAspectRatioByExpanding);
    plot_style::FitLegend(plot, size.width());
    const bool drawn =
        DrawVectors(DrawingOf(plot, size), printer, static_cast<double>(wanted.width()) / size.width());
    plot_style::FitLegend(plot, plot.width());
    if (!drawn || printer.printerState() == QPrinter::Error)
        throw PrinterFault(
            "The printer did not take the graph. Where it goes to a file, please choose a folder "
            "that you may write to.");
}
