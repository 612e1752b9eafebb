// SPDX-License-Identifier: GPL-3.0-or-later
// The look that all pictures share. Colours are those of Okabe and Ito, told apart by colour-blind readers
// too.
#pragma once

#include "views/NumberTicker.h"

#include <QColor>
#include <QFont>
#include <qcustomplot.h>

#include <string>

namespace plot_style
{

inline constexpr QColor kIncluded{0x00, 0x72, 0xB2};
inline constexpr QColor kExcluded{0x99, 0x99, 0x99};
inline constexpr QColor kExpected{0xD5, 0x5E, 0x00};
inline constexpr QColor kHighlighted{0xE6, 0x9F, 0x00};
inline constexpr QColor kLimits{0x55, 0x55, 0x55};
inline constexpr QColor kHistogram{0x56, 0xB4, 0xE9};
inline constexpr QColor kInk{0x22, 0x22, 0x22};
inline constexpr QColor kGrid{0xE4, 0xE4, 0xE4};

/// The system's font at a readable size (never below 9 points), times `factor`.
QFont Font(double factor = 1.0);

/// A length in points as pixels of the picture.
double Pixels(double points);

QPen Pen(const QColor& colour, double points, Qt::PenStyle style = Qt::SolidLine);

/// Empties the plot and gives it room for title and legend, axes, grid and a white background. The legend
/// stands in a row of its own above the axes, where it hides nothing.
void Prepare(QCustomPlot& plot);

/// The title above a prepared plot, and those of its axes.
void Entitle(QCustomPlot& plot, const QString& title, const QString& xTitle, const QString& yTitle);

/// Fonts, lengths and colours of one axis.
void StyleAxis(QCPAxis& axis);

/// The title of an axis, before the power of ten that its numbers are shown in.
void EntitleAxis(QCPAxis& axis, const QString& title);

/// The title of an axis with the unit of its numbers, if it has one.
QString AxisTitle(const std::string& title, const std::string& unit);

/// Ticks of an axis; the axis owns them. Behind its title stands the power of ten that they are shown in.
QSharedPointer<NumberTicker> SetTicks(QCPAxis& axis, NumberKind kind);

/// Adds `plottable` to the legend under `text`.
void AddToLegend(QCPAbstractPlottable& plottable, const QString& text);

/// Arranges title and legend for the width of the picture: smaller letters for a long title, and entries
/// beside one another, wrapped where they do not fit.
void FitLegend(QCustomPlot& plot, int width);

/// The title above a prepared plot.
QString TitleText(QCustomPlot& plot);

/// The texts of the legend, in their order.
QStringList LegendTexts(const QCustomPlot& plot);

/// A series whose symbols may stick out over the frame, so that a point on the edge shows whole.
class SeriesGraph : public QCPGraph
{
public:
    SeriesGraph(QCPAxis* keys, QCPAxis* values) : QCPGraph(keys, values) {}

protected:
    QRect clipRect() const override;
};

/// A plain quiet line across the whole plot at the height `y`.
void AddLevel(QCustomPlot& plot, double y, const QPen& pen);

} // namespace plot_style
