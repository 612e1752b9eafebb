// SPDX-License-Identifier: GPL-3.0-or-later
// How a graph is drawn: the numbers at its axes, its series, ranges and titles.
#include "GraphSamples.h"
#include "NamedGraph.h"
#include "views/GraphPainter.h"
#include "views/NumberTicker.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"

#include <QApplication>
#include <QImage>
#include <QtTest>

#include <cmath>

namespace
{
const QString kThin = QString(QChar(0x2009));

QStringList TickLabels(QCustomPlot& plot, QCPAxis& axis)
{
    plot.resize(kPictureSize);
    plot.replot(QCustomPlot::rpImmediateRefresh);
    return axis.tickVectorLabels();
}
} // namespace

class ViewsGraphsTest : public QObject
{
    Q_OBJECT

private slots:
    // Numbers on axes
    void LargeNumbersAreGroupedAndHugeOnesTakeAPowerOfTen();
    void TheLargestNumberOfAnAxisDecidesHowAllAreWritten();
    void UnderAPowerOfTenNoTickReadsLessThanOne();
    void YearsAreNeverGrouped();
    void StepsOfAQuarterShowTwoDecimals();
    void ASingleNumberKeepsSixDigits();

    // Graphs
    void PointsInAndOutOfTheFitAreSeriesOfTheirOwnAndHiddenOnesAreNotDrawn();
    void TheLegendNamesOnlyWhatIsDrawn();
    void SymbolsAndLineHaveTheColoursThatEveryReaderTellsApart();
    void TheExpectedLineHasAGapAtAHiddenPoint();
    void AnExpectedValueBetweenTwoGapsShowsAsADot();
    void YearsFrom1987To1996RunFrom1985To2000InStepsOfThree();
    void PeriodsFromOneToThirtyHaveTheirOwnWholeNumbers();
    void AQuantityThatStartsAt1950LosesNoPointsToTheAxisOfYears();
    void CatchAxesStartAtZero();
    void ResidualsAreSymmetricAboutALineAtZeroWithDashedLimits();
    void PercentilesRunFromZeroToOne();
    void AHistogramHasFiftyBarsWithoutGapsBetweenItsLimits();
    void AHistogramShowsTheLimitsOfTheReportWhereItKnowsThem();
    void ASpreadOfRoundingNoiseIsOneBar();
    void AHistogramOfReversedLevelsStillDraws();
    void AGraphWithoutPointsSaysSo();
    void ASinglePointGetsAnAxisAroundIt();
    void HugeAndTinyValuesFillTheirAxes();
    void ALongTitleGetsSmallerLettersUntilItFits();
    void PaintingTwiceDrawsTheGraphOnce();
    void TickLabelsOfALongSeriesDoNotOverlap_data();
    void TickLabelsOfALongSeriesDoNotOverlap();
    void TheBackgroundIsWhiteInDarkModeToo();
};

namespace
{
/// A tick of an axis that has chosen its power of ten by this step and this largest number.
QString Tick(double value, double step, double largest, NumberKind kind = NumberKind::Real)
{
    return TickText(value, step, largest, kind, PowerOfAxis(step, largest, kind));
}
} // namespace

void ViewsGraphsTest::LargeNumbersAreGroupedAndHugeOnesTakeAPowerOfTen()
{
    QCOMPARE(Tick(12500, 2500, 20000), "12" + kThin + "500");
    QCOMPARE(Tick(2500, 500, 5000), "2500");
    QCOMPARE(PowerOfAxis(0.25e9, 2e9), 8);
    QCOMPARE(Tick(1.25e9, 0.25e9, 2e9), "12.5");
    QCOMPARE(Tick(-5e8, 5e8, 2e9), QStringLiteral("−5"));
    QCOMPARE(PowerOfAxis(1e-6, 5e-6), -6);
    QCOMPARE(Tick(4e-6, 1e-6, 5e-6), "4");
    QCOMPARE(Tick(1e-22, 0.2, 1.0), "0"); // what sums of steps leave over beside zero
    QCOMPARE(PowerText(-6), QStringLiteral("× 10⁻⁶"));
}

// Groups from 10 000 on, powers of ten from 10^7 on and below 0.001.
void ViewsGraphsTest::TheLargestNumberOfAnAxisDecidesHowAllAreWritten()
{
    QCOMPARE(Tick(5000, 1000, 9999), "5000");
    QCOMPARE(Tick(5000, 1000, 10000), "5" + kThin + "000");
    QCOMPARE(Tick(5e6, 2.5e6, 9999999), "5" + kThin + "000" + kThin + "000");
    QCOMPARE(PowerOfAxis(0.0005, 0.001), 0);
    QCOMPARE(Tick(0.0005, 0.0005, 0.001), "0.0005");
}

void ViewsGraphsTest::UnderAPowerOfTenNoTickReadsLessThanOne()
{
    QCOMPARE(Tick(2.5e6, 2.5e6, 1e7), "2.5");
    QCOMPARE(Tick(1e7, 2.5e6, 1e7), "10.0");
    QCOMPARE(Tick(0.0001, 0.0001, 0.0009), "1");
    QCOMPARE(PowerOfAxis(1000.0, 2e7), 3); // not 2, by a rounding error of the logarithm
}

void ViewsGraphsTest::YearsAreNeverGrouped()
{
    QCOMPARE(Tick(1975, 5, 1990, NumberKind::Period), "1975");
    QCOMPARE(Tick(12000, 500, 12500, NumberKind::Period), "12000");
}

void ViewsGraphsTest::StepsOfAQuarterShowTwoDecimals()
{
    QCOMPARE(Tick(0.5, 0.25, 1.0), "0.50");
    QCOMPARE(Tick(0.6, 0.2, 1.0), "0.6");
}

void ViewsGraphsTest::ASingleNumberKeepsSixDigits()
{
    QCOMPARE(NumberAsText(0.1234567), "0.123457");
    QCOMPARE(NumberAsText(-2.5), QStringLiteral("−2.5"));
    QCOMPARE(NumberAsText(12500), "12" + kThin + "500");
    QCOMPARE(NumberAsText(1.5e-6), QStringLiteral("1.5 × 10⁻⁶"));
    QCOMPARE(NumberAsText(0.0), "0");
    QCOMPARE(NumberAsText(std::nan("")), "no number");
}

void ViewsGraphsTest::PointsInAndOutOfTheFitAreSeriesOfTheirOwnAndHiddenOnesAreNotDrawn()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));

    QCOMPARE(plot.graphCount(), 3);
    QCOMPARE(Named(plot, "Observed (Included)")->dataCount(),
             8); // ten without the excluded and the hidden one
    QCOMPARE(Named(plot, "Observed (Excluded)")->dataCount(), 1);
    QCOMPARE(Named(plot, "Observed (Excluded)")->data()->at(0)->key, 1968.0);
}

void ViewsGraphsTest::TheLegendNamesOnlyWhatIsDrawn()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));
    QCOMPARE(plot_style::LegendTexts(plot),
             QStringList({"Observed (Included)", "Observed (Excluded)", "Expected"}));

    PaintGraph(plot, CpueGraph(1)); // its only point is in the fit
    QCOMPARE(plot_style::LegendTexts(plot), QStringList({"Observed (Included)", "Expected"}));
}

void ViewsGraphsTest::SymbolsAndLineHaveTheColoursThatEveryReaderTellsApart()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));

    const QCPScatterStyle in = Named(plot, "Observed (Included)")->scatterStyle();
    const QCPScatterStyle out = Named(plot, "Observed (Excluded)")->scatterStyle();
    QCOMPARE(in.brush().color().name(), "#0072b2"); // filled
    QCOMPARE(out.pen().color().name(), "#999999");
    QCOMPARE(out.brush().color().name(), "#ffffff"); // hollow
    QCOMPARE(Named(plot, "Expected")->pen().color().name(), "#d55e00");
    // 2 points of 1/72 inch at the screen's resolution
    QCOMPARE(Named(plot, "Expected")->pen().widthF(), 2.0 * plot.logicalDpiX() / 72.0);
}

void ViewsGraphsTest::TheExpectedLineHasAGapAtAHiddenPoint()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));

    QVERIFY(std::isnan(Named(plot, "Expected")->data()->at(2)->value));
    QCOMPARE(Named(plot, "Expected")->data()->at(3)->value, 17.5); // 20 - 3 + 0.5
}

void ViewsGraphsTest::AnExpectedValueBetweenTwoGapsShowsAsADot()
{
    ModelGraph graph = CpueGraph(5);
    graph.OverlayLine(std::vector<double>{kHidden, 7.0, kHidden, 8.0, 9.0});
    QCustomPlot plot;

    PaintGraph(plot, graph);

    QCOMPARE(plot.graphCount(), 4);
    QCOMPARE(plot.graph(1)->dataCount(), 1); // the line from 8 to 9 needs no dots
    QCOMPARE(plot.graph(1)->data()->at(0)->value, 7.0);
}

void ViewsGraphsTest::YearsFrom1987To1996RunFrom1985To2000InStepsOfThree()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10, 1987.0));

    QCOMPARE(plot.xAxis->range().lower, 1985.0);
    QCOMPARE(plot.xAxis->range().upper, 2000.0);
    QCOMPARE(TickLabels(plot, *plot.xAxis), QStringList({"1985", "1988", "1991", "1994", "1997", "2000"}));
}

void ViewsGraphsTest::PeriodsFromOneToThirtyHaveTheirOwnWholeNumbers()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(30, 1.0));

    QCOMPARE(plot.xAxis->range().lower, 1.0); // no empty room before the first period
    QVERIFY(plot.xAxis->range().upper > 30.0);
    const QStringList labels = TickLabels(plot, *plot.xAxis);
    QVERIFY(labels.size() >= 3);
    for (const QString& label : labels)
        QVERIFY2(!label.contains('.'), qPrintable(label));
}

void ViewsGraphsTest::AQuantityThatStartsAt1950LosesNoPointsToTheAxisOfYears()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Residuals, {1950.5, 120.0, 4000.0}, {1.0, -2.0, 0.5}));

    QCOMPARE(plot.xAxis->range().lower, 0.0);
    QVERIFY(plot.xAxis->range().upper > 4000.0);
}

void ViewsGraphsTest::CatchAxesStartAtZero()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));
    QCOMPARE(plot.yAxis->range().lower, 0.0);
    QVERIFY(plot.yAxis->range().upper > 20.5); // the highest expected value

    PaintGraph(plot, GraphOf(GraphType::Line, {1, 2, 3}, {500, 600, 700}));
    QCOMPARE(plot.yAxis->range().lower, 0.0);
}

void ViewsGraphsTest::ResidualsAreSymmetricAboutALineAtZeroWithDashedLimits()
{
    ModelGraph graph = GraphOf(GraphType::Residuals, {1, 2, 3, 4}, {5.0, -1.0, 0.0, 2.0});
    graph.UCI(4.0F);
    graph.LCI(-4.0F);
    QCustomPlot plot;

    PaintGraph(plot, graph);

    QCOMPARE(plot.yAxis->range().lower, -plot.yAxis->range().upper);
    QVERIFY(plot.yAxis->range().upper > 5.0);
    QCOMPARE(plot.itemCount(), 1);
    const auto* zero = qobject_cast<QCPItemStraightLine*>(plot.item(0));
    QVERIFY(zero != nullptr);
    QCOMPARE(zero->point1->coords().y(), 0.0);
    QCOMPARE(plot.graph(0)->data()->at(0)->value, 4.0);
    QCOMPARE(plot.graph(1)->data()->at(0)->value, -4.0);
    QCOMPARE(plot.graph(0)->pen().style(), Qt::DashLine);
    QCOMPARE(plot.graph(0)->pen().color().name(), "#555555");
}

void ViewsGraphsTest::PercentilesRunFromZeroToOne()
{
    ModelGraph graph = GraphOf(GraphType::Residuals, {1, 2, 3}, {0.2, 0.5, 0.9});
    graph.LCI(0.025F);
    graph.UCI(0.975F);
    QCustomPlot plot;

    PaintGraph(plot, graph);

    QCOMPARE(plot.yAxis->range().lower, 0.0);
    QCOMPARE(plot.yAxis->range().upper, 1.0);
}

void ViewsGraphsTest::AHistogramHasFiftyBarsWithoutGapsBetweenItsLimits()
{
    std::vector<double> x(50), y(50, 3.0);
    for (std::size_t j = 0; j < 50; ++j)
        x[j] = 100.0 + 2.0 * static_cast<double>(j);
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Histogram, x, y));

    const auto* bars = qobject_cast<QCPBars*>(plot.plottable(0));
    QVERIFY(bars != nullptr);
    QCOMPARE(bars->data()->size(), 50);
    QCOMPARE(bars->width(), 2.0);
    QCOMPARE(bars->data()->at(0)->key, 101.0);          // the X data are lower ends
    QCOMPARE(plot.graph(0)->data()->at(0)->key, 100.0); // lower limit
    QCOMPARE(plot.graph(1)->data()->at(0)->key, 200.0); // upper limit, 100 + 50 * 2
    QVERIFY(TickLabels(plot, *plot.xAxis).size() <= 12);
}

void ViewsGraphsTest::AHistogramShowsTheLimitsOfTheReportWhereItKnowsThem()
{
    ModelGraph graph = GraphOf(GraphType::Histogram, {10, 11, 12, 13}, {1, 4, 3, 1});
    graph.LCI(9.5F);
    graph.UCI(13.5F);
    QCustomPlot plot;

    PaintGraph(plot, graph);

    QList<double> lines;
    for (int i = 0; i < plot.graphCount(); ++i)
        lines += plot.graph(i)->data()->at(0)->key;
    QCOMPARE(lines, (QList<double>{9.5, 13.5}));
    QVERIFY(plot.xAxis->range().lower < 9.5);
}

// Five neighbours among 32-bit numbers are one value.
void ViewsGraphsTest::ASpreadOfRoundingNoiseIsOneBar()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Histogram, {0.5, 0.5000001, 0.5000002}, {3, 4, 5}));

    const auto* bars = qobject_cast<QCPBars*>(plot.plottable(0));
    QCOMPARE(bars->dataCount(), 1);
    QCOMPARE(bars->data()->at(0)->value, 12.0);
    QVERIFY(plot.xAxis->range().size() < 0.1 && plot.xAxis->range().contains(0.5));
}

void ViewsGraphsTest::AHistogramOfReversedLevelsStillDraws()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Histogram, {10.0, 8.0, 6.0}, {0.0, 0.0, 0.0}));

    QCOMPARE(plot.graph(0)->data()->at(0)->key, 4.0); // 6 - 2
    QCOMPARE(plot.graph(1)->data()->at(0)->key, 10.0);
}

void ViewsGraphsTest::AGraphWithoutPointsSaysSo()
{
    for (const GraphType type :
         {GraphType::PointsAndLine, GraphType::Residuals, GraphType::Line, GraphType::Histogram}) {
        for (const int points : {0, 5}) { // no points, and five that are all InvalidData
            ModelGraph graph;
            graph.Create(points);
            graph.Type(type);
            QCustomPlot plot;

            PaintGraph(plot, graph);

            const auto* text = qobject_cast<QCPItemText*>(plot.item(plot.itemCount() - 1));
            QVERIFY(text != nullptr);
            QCOMPARE(text->text(), "No points to show");
            QVERIFY(!PlotImage(plot, kPictureSize).isNull());
        }
    }
}

void ViewsGraphsTest::ASinglePointGetsAnAxisAroundIt()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::PointsAndLine, {7.0}, {40.0}));

    QCOMPARE(plot.xAxis->range().lower, 6.5);
    QCOMPARE(plot.xAxis->range().upper, 7.5);
    QCOMPARE(TickLabels(plot, *plot.xAxis).count("7"), 1);
    QVERIFY(plot.yAxis->range().contains(40.0));
}

void ViewsGraphsTest::HugeAndTinyValuesFillTheirAxes()
{
    for (const double size : {1e9, 1e-6}) {
        QCustomPlot plot;

        PaintGraph(plot, GraphOf(GraphType::Line, {1, 2, 3}, {size, 2.0 * size, 1.5 * size}));

        QVERIFY(plot.yAxis->range().upper >= 2.0 * size && plot.yAxis->range().upper < 2.5 * size);
        const QStringList labels = TickLabels(plot, *plot.yAxis);
        QVERIFY(labels.size() >= 3);
        QVERIFY2(labels.last().size() < 6, qPrintable(labels.last()));
        QVERIFY2(plot.yAxis->label().contains(QStringLiteral("[× 10")), qPrintable(plot.yAxis->label()));
    }
}

void ViewsGraphsTest::ALongTitleGetsSmallerLettersUntilItFits()
{
    QCustomPlot plot;
    PaintGraph(plot, GraphOf(GraphType::Line, {1, 2, 3}, {1, 2, 3}));
    auto* title = qobject_cast<QCPTextElement*>(plot.plotLayout()->element(0, 0));
    title->setText(QStringLiteral("Residual Catches vs Expected Catches"));
    plot_style::FitLegend(plot, 2000);
    const double usual = title->font().pointSizeF();
    const double wanted = QFontMetricsF(title->font()).horizontalAdvance(title->text());

    plot_style::FitLegend(plot, static_cast<int>(0.9 * wanted));

    QVERIFY(title->font().pointSizeF() < usual);
    QVERIFY(QFontMetricsF(title->font()).horizontalAdvance(title->text()) <= 0.93 * wanted);
    plot_style::FitLegend(plot, 2000);
    QCOMPARE(title->font().pointSizeF(), usual);
}

void ViewsGraphsTest::PaintingTwiceDrawsTheGraphOnce()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));
    PaintGraph(plot, CpueGraph(10));

    QCOMPARE(plot.graphCount(), 3);
    QCOMPARE(plot_style::LegendTexts(plot).size(), 3);
    QCOMPARE(plot.plotLayout()->rowCount(), 3);
}

void ViewsGraphsTest::TickLabelsOfALongSeriesDoNotOverlap_data()
{
    QTest::addColumn<double>("first");
    QTest::addColumn<int>("width");
    for (const int width : {360, 720, 1600}) {
        QTest::addRow("periods, %d wide", width) << 1.0 << width;
        QTest::addRow("years, %d wide", width) << 1850.0 << width;
        QTest::addRow("axis of years, %d wide", width) << 1900.0 << width;
    }
}

void ViewsGraphsTest::TickLabelsOfALongSeriesDoNotOverlap()
{
    QFETCH(double, first);
    QFETCH(int, width);
    QCustomPlot plot;
    PaintGraph(plot, CpueGraph(200, first));

    plot.resize(width, 300);
    plot.replot(QCustomPlot::rpImmediateRefresh);

    const QFontMetricsF metrics(plot.xAxis->tickLabelFont());
    const QVector<double> ticks = plot.xAxis->tickVector();
    const QVector<QString> labels = plot.xAxis->tickVectorLabels();
    QVERIFY(ticks.size() >= 2);
    for (qsizetype i = 1; i < ticks.size(); ++i) {
        const double apart = plot.xAxis->coordToPixel(ticks[i]) - plot.xAxis->coordToPixel(ticks[i - 1]);
        const double needed =
            (metrics.horizontalAdvance(labels[i]) + metrics.horizontalAdvance(labels[i - 1])) / 2.0;
        QVERIFY2(apart > needed + 3.0, qPrintable(labels[i]));
    }
}

void ViewsGraphsTest::TheBackgroundIsWhiteInDarkModeToo()
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::black));
    QCustomPlot plot;
    PaintGraph(plot, CpueGraph(10));
    const QImage image = PlotImage(plot, kPictureSize);
    QApplication::setPalette(before);

    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::white));
    QCOMPARE(plot.xAxis->labelColor().name(), "#222222");
}

QTEST_MAIN(ViewsGraphsTest)
#include "views_graphs_test.moc"
