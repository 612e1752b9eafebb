// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotPicture.h"

#include "base/VeltError.h"
#include "files/WholeFile.h"
#include "views/PlotStyle.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPageSize>
#include <QPdfWriter>
#include <QPrinter>
#include <QSvgGenerator>
#include <qcustomplot.h>

#include <cmath>

namespace
{

constexpr double kPointsPerInch = 72.0;
constexpr double kInchesPerMetre = 1.0 / 0.0254;

// Fonts are measured at the screen's resolution while the plot is laid out, so vectors are drawn at it too.
int LayoutDpi(const QCustomPlot& plot)
{
    return plot.logicalDpiX();
}

/// \param scale  units of the device for each pixel of the picture
bool DrawVectors(QCustomPlot& plot, QPaintDevice& device, QSize size, double scale = 1.0)
{
    QCPPainter painter;
    if (!painter.begin(&device))
        return false;
    painter.scale(scale, scale);
    painter.setMode(QCPPainter::pmVectorized);
    painter.setMode(QCPPainter::pmNoCaching);
    painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
    plot.toPainter(&painter, size.width(), size.height());
    return painter.end();
}

bool DrawSvg(QCustomPlot& plot, QIODevice& file, QSize size)
{
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setTitle(plot_style::TitleText(plot));
    svg.setDescription(QStringLiteral("Drawn by VELT 3.0"));
    svg.setResolution(LayoutDpi(plot));
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    return DrawVectors(plot, svg, size);
}

bool DrawPdf(QCustomPlot& plot, QIODevice& file, QSize size)
{
    QPdfWriter pdf(&file);
    const int dpi = LayoutDpi(plot);
    pdf.setResolution(dpi);
    pdf.setPageSize(
        QPageSize(QSizeF(size) * kPointsPerInch / dpi, QPageSize::Point, QString(), QPageSize::ExactMatch));
    pdf.setTitle(plot_style::TitleText(plot));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    return DrawVectors(plot, pdf, size);
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
    QBuffer picture;
    picture.open(QIODevice::WriteOnly);
    bool drawn = false;
    if (ending == "png") {
        QImage image = PlotImage(plot, size);
        image.setText(QStringLiteral("Software"), QStringLiteral("VELT 3.0"));
        drawn = image.save(&picture, "PNG");
    } else {
        plot_style::FitLegend(plot, size.width());
        drawn = ending == "svg" ? DrawSvg(plot, picture, size) : DrawPdf(plot, picture, size);
        plot_style::FitLegend(plot, plot.width());
    }
    return drawn ? picture.data() : QByteArray();
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
    const bool drawn = DrawVectors(plot, printer, size, static_cast<double>(wanted.width()) / size.width());
    plot_style::FitLegend(plot, plot.width());
    if (!drawn || printer.printerState() == QPrinter::Error)
        throw PrinterFault(
            "The printer did not take the graph. Where it goes to a file, please choose a folder "
            "that you may write to.");
}
