// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/PlotStyle.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace
{

constexpr double kLeastFontPoints = 9.0;
constexpr double kTitleFactor = 1.25;
constexpr double kPointsPerInch = 72.0;
constexpr const char* kTitleProperty = "veltTitle"; // of an axis, without its power of ten
constexpr const char* kNamedProperty = "veltNamed"; // the axis follows its range

double DotsPerInch()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->logicalDotsPerInch() : 96.0;
}

int Em(double times)
{
    return static_cast<int>(std::lround(times * QFontMetricsF(plot_style::Font()).height()));
}

/// The title of an axis with the power of ten that its numbers are shown in.
void StatePower(QCPAxis& axis)
{
    const auto ticker = qSharedPointerDynamicCast<NumberTicker>(axis.ticker());
    if (!ticker)
        return;
    const QString title = axis.property(kTitleProperty).toString();
    const int power = ticker->ChoosePower(axis.range());
    axis.setLabel(power == 0 ? title : title + QStringLiteral("  [") + PowerText(power) + ']');
}

// The rows, from the top: title, legend, axes. Made once for each plot.
QCPTextElement& TitleOf(QCustomPlot& plot)
{
    QCPLayoutGrid& rows = *plot.plotLayout();
    if (rows.rowCount() > 1)
        return *qobject_cast<QCPTextElement*>(rows.element(0, 0));
    rows.insertRow(0);
    rows.insertRow(0);
    auto* title = new QCPTextElement(&plot);
    rows.addElement(0, 0, title);
    auto* legendRow = new QCPLayoutGrid;
    rows.addElement(1, 0, legendRow);
    plot.axisRect()->insetLayout()->take(plot.legend);
    legendRow->addElement(0, 1, plot.legend);
    legendRow->expandTo(1, 3);
    legendRow->setColumnStretchFactors({1.0, 0.001, 1.0}); // the empty columns keep the legend in the middle
    rows.setRowStretchFactor(1, 0.001);
    rows.setRowSpacing(Em(0.3));
    return *title;
}

} // namespace

void plot_style::EntitleAxis(QCPAxis& axis, const QString& title)
{
    axis.setLabel(title);
    axis.setProperty(kTitleProperty, title);
    StatePower(axis);
}

void plot_style::StyleAxis(QCPAxis& axis)
{
    axis.setTicks(true);
    axis.setTickLabels(true);
    axis.setLabelFont(Font());
    axis.setTickLabelFont(Font(0.95));
    axis.setLabelColor(kInk);
    axis.setTickLabelColor(kInk);
    axis.setLabelPadding(Em(0.35));
    axis.setTickLabelPadding(Em(0.25));
    axis.setBasePen(Pen(kInk, 0.8));
    axis.setTickPen(Pen(kInk, 0.8));
    axis.setSubTickPen(Pen(kInk, 0.5));
    axis.setTickLength(0, Em(0.3));
    axis.setSubTickLength(0, Em(0.16));
    axis.grid()->setPen(Pen(kGrid, 0.6));
    axis.grid()->setZeroLinePen(Qt::NoPen);
    axis.grid()->setSubGridVisible(false);
}

QFont plot_style::Font(double factor)
{
    QFont font = QApplication::font();
    font.setPointSizeF(std::max(kLeastFontPoints, font.pointSizeF()) * factor);
    return font;
}

double plot_style::Pixels(double points)
{
    return points * DotsPerInch() / kPointsPerInch;
}

QPen plot_style::Pen(const QColor& colour, double points, Qt::PenStyle style)
{
    QPen pen(colour, Pixels(points), style);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(style == Qt::SolidLine ? Qt::RoundCap : Qt::FlatCap);
    return pen;
}

void plot_style::Entitle(QCustomPlot& plot, const QString& title, const QString& xTitle,
                         const QString& yTitle)
{
    TitleOf(plot).setText(title);
    EntitleAxis(*plot.xAxis, xTitle);
    EntitleAxis(*plot.yAxis, yTitle);
}

void plot_style::Prepare(QCustomPlot& plot)
{
    plot.clearPlottables();
    plot.clearItems();
    plot.setAutoAddPlottableToLegend(false);
    plot.setBackground(Qt::white);
    TitleOf(plot).setTextColor(kInk);
    plot.legend->clearItems();
    plot.legend->setVisible(true);
    plot.legend->setFont(Font(0.95));
    plot.legend->setTextColor(kInk);
    plot.legend->setBorderPen(Qt::NoPen);
    plot.legend->setBrush(Qt::NoBrush);
    plot.legend->setMargins(QMargins(0, 0, 0, 0));
    plot.legend->setColumnSpacing(Em(1.2));
    plot.legend->setRowSpacing(Em(0.1));
    plot.legend->setIconSize(Em(1.7), Em(1.1));
    // Icons of lines stick out by 5 pixels.
    plot.legend->setIconTextPadding(Em(0.35) + 5);
    plot.axisRect()->setupFullAxesBox();
    // Half a wide label may stand to the right of the last tick.
    plot.axisRect()->setMinimumMargins(QMargins(Em(1), Em(0.6), Em(2.6), Em(1)));
    StyleAxis(*plot.xAxis);
    StyleAxis(*plot.yAxis);
    plot.xAxis->grid()->setVisible(true);
    plot.yAxis->grid()->setVisible(true);
    for (QCPAxis* axis : {plot.xAxis2, plot.yAxis2}) {
        axis->setBasePen(Pen(kInk, 0.8));
        axis->setTicks(false);
        axis->setTickLabels(false);
    }
}

QSharedPointer<NumberTicker> plot_style::SetTicks(QCPAxis& axis, NumberKind kind)
{
    auto ticker = QSharedPointer<NumberTicker>::create(axis, kind);
    axis.setTicker(ticker);
    if (!axis.property(kNamedProperty).toBool()) {
        axis.setProperty(kNamedProperty, true);
        QObject::connect(&axis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), &axis,
                         [&axis] { StatePower(axis); });
    }
    StatePower(axis);
    return ticker;
}

void plot_style::AddToLegend(QCPAbstractPlottable& plottable, const QString& text)
{
    plottable.setName(text);
    plottable.addToLegend();
}

namespace
{
/// A title too long for the picture gets smaller letters, down to those of the axes.
void FitTitle(QCustomPlot& plot, int width)
{
    QCPTextElement& title = TitleOf(plot);
    QFont font = plot_style::Font(kTitleFactor);
    font.setBold(true);
    const double wanted = QFontMetricsF(font).horizontalAdvance(title.text());
    if (wanted > width)
        font.setPointSizeF(font.pointSizeF() * std::max(1.0 / kTitleFactor, width / wanted));
    title.setFont(font);
}
} // namespace

void plot_style::FitLegend(QCustomPlot& plot, int width)
{
    FitTitle(plot, width);
    const QCPLegend& legend = *plot.legend;
    const QFontMetricsF metrics(legend.font());
    const double beside =
        legend.iconSize().width() + legend.iconTextPadding() + legend.columnSpacing() + Em(0.5);
    const QStringList texts = LegendTexts(plot);
    QCPLayoutGrid& rows = *plot.plotLayout();
    if (rows.columnCount() > 1 && rows.hasElement(2, 1)) // a colour scale takes its part of the width
        width -= std::max(Em(8), rows.element(2, 1)->outerRect().width());
    const auto fits = [&](qsizetype columns) {
        std::vector<double> widths(static_cast<std::size_t>(columns), 0.0);
        for (qsizetype i = 0; i < texts.size(); ++i) {
            double& widest = widths[static_cast<std::size_t>(i % columns)];
            widest = std::max(widest, metrics.horizontalAdvance(texts[i]) + beside);
        }
        return std::accumulate(widths.begin(), widths.end(), 0.0) <= width;
    };
    qsizetype columns = std::max<qsizetype>(1, texts.size());
    while (columns > 1 && !fits(columns))
        --columns;
    plot.legend->setWrap(static_cast<int>(columns));
    plot.legend->setFillOrder(QCPLayoutGrid::foColumnsFirst);
    plot.legend->simplify();
}

QString plot_style::AxisTitle(const std::string& title, const std::string& unit)
{
    const QString text = QString::fromStdString(title);
    return unit.empty() ? text : text + QStringLiteral(" (") + QString::fromStdString(unit) + ')';
}

QString plot_style::TitleText(QCustomPlot& plot)
{
    return TitleOf(plot).text();
}

QStringList plot_style::LegendTexts(const QCustomPlot& plot)
{
    QStringList texts;
    for (int i = 0; i < plot.legend->itemCount(); ++i)
        if (auto* item = qobject_cast<QCPPlottableLegendItem*>(plot.legend->item(i)))
            texts += item->plottable()->name();
    return texts;
}

QRect plot_style::SeriesGraph::clipRect() const
{
    if (scatterStyle().isNone())
        return QCPGraph::clipRect();
    const int out = static_cast<int>(std::ceil(scatterStyle().size()));
    return QCPGraph::clipRect().adjusted(-out, -out, out, out);
}

void plot_style::AddLevel(QCustomPlot& plot, double y, const QPen& pen)
{
    auto* line = new QCPItemStraightLine(&plot);
    line->point1->setCoords(0.0, y);
    line->point2->setCoords(1.0, y);
    line->setPen(pen);
    line->setSelectable(false);
}
