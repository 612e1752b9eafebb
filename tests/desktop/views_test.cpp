// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VeltError.h"
#include "graphs/ModelGraph.h"
#include "graphs/VELT_ContourPlot.h"
#include "views/ContourLines.h"
#include "views/ContourPainter.h"
#include "views/GraphPainter.h"
#include "views/NumberTicker.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"
#include "views/ProgressMeterWindow.h"
#include "views/frmGraph.h"
#include "views/frmModelGraph.h"
#include "views/frmParams.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <qcustomplot.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kHidden = ModelGraph::InvalidData;
const QString kThin = QString(QChar(0x2009));

/// A CPUE graph over the years from `first` on: the second point is out of the fit, the third one hidden.
ModelGraph CpueGraph(int points, double first = 1967.0)
{
    ModelGraph graph;
    graph.Create(points);
    graph.Type(GraphType::PointsAndLine);
    graph.Title("Expected and Observed CPUE");
    graph.XTitle("Time");
    graph.YTitle("CPUE");
    std::vector<double> x(static_cast<std::size_t>(points)), in(x), out(x), line(x);
    for (std::size_t i = 0; i < x.size(); ++i) {
        const double t = static_cast<double>(i);
        x[i] = first + t;
        const double observed = 20.0 - t / static_cast<double>(points) * 10.0;
        in[i] = i == 1 || i == 2 ? kHidden : observed;
        out[i] = i == 1 ? observed : kHidden;
        line[i] = i == 2 ? kHidden : observed + 0.5;
    }
    graph.XData(x);
    graph.YData(in);
    graph.YData2(out);
    graph.OverlayLine(line);
    return graph;
}

/// A graph of one kind with these points in the fit.
ModelGraph GraphOf(GraphType type, std::vector<double> x, std::vector<double> y)
{
    ModelGraph graph;
    graph.Create(static_cast<int>(x.size()));
    graph.Type(type);
    graph.XData(x);
    graph.YData(y);
    return graph;
}

QCPGraph* Named(const QCustomPlot& plot, const QString& name)
{
    for (int i = 0; i < plot.graphCount(); ++i)
        if (plot.graph(i)->name() == name)
            return plot.graph(i);
    return nullptr;
}

QStringList TickLabels(QCustomPlot& plot, QCPAxis& axis)
{
    plot.resize(kPictureSize);
    plot.replot(QCustomPlot::rpImmediateRefresh);
    return axis.tickVectorLabels();
}

ContourSurface NamedSurface()
{
    ContourSurface surface;
    surface.title = "Minimisation";
    surface.xName = "K";
    surface.yName = "r";
    surface.zName = "Objective";
    return surface;
}

/// z = (x - 2)^2 + (y - 3)^2 on the whole numbers from 0 to 6.
ContourSurface Bowl()
{
    ContourSurface surface = NamedSurface();
    for (int i = 0; i <= 6; ++i) {
        surface.x.push_back(i);
        surface.y.push_back(i);
    }
    surface.z.assign(7, std::vector<double>(7));
    for (std::size_t i = 0; i < 7; ++i)
        for (std::size_t j = 0; j < 7; ++j)
            surface.z[i][j] = std::pow(surface.x[i] - 2.0, 2) + std::pow(surface.y[j] - 3.0, 2);
    surface.zMin = 0.0;
    surface.zMax = 25.0; // at (6, 0): 16 + 9
    surface.plateau = 25.0 + 25.0 / 9.0;
    return surface;
}

ParameterReport Report()
{
    ParameterReport report;
    report.modelTitle = "PROD. MODEL(PELLA TOM)";
    report.fitTitle = "Log Fit   ";
    report.rSqr = "0.500";
    report.inputs = {{"Init. Proportion", "1"}, {"Time Lag", "0"}, {"Z Shape", "1.5"}};
    report.estimates = {{"K", "5230.5"}, {"q", "0.00025"}};
    return report;
}

/// A clock that the test moves on.
struct Hand {
    std::int64_t now = 0;
    ProgressMeterWindow::Clock Clock()
    {
        return [this] { return now; };
    }
};

} // namespace

class ViewsTest : public QObject
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

    // Pictures
    void APngHasTwiceTheDots();
    void AnSvgHoldsRealText();
    void APdfIsWritten();
    void AnUnknownEndingOrAMissingFolderWritesNothing();

    // Windows
    void TheGraphWindowTellsThePointUnderTheCursor();
    void TheHistogramTellsTheClassUnderTheCursor();
    void ADoubleClickShowsAllAgain();
    void ATogglingKeepsTheZoomAndAResetShowsWhatIsThereNow();
    void ClosingAGraphWindowHidesIt();
    void TheRightButtonsMenuHoldsZoomPictureAndData();
    void TheCopiedPictureHasTwiceTheDotsOfTheWindow();
    void TheCopiedDataOfAFitAreTimeObservedAndExpected();
    void TheCopiedDataOfAnyOtherGraphAreItsTwoAxes();
    void ThePictureIsSavedUnderTheGraphsTitle();

    // Contours
    void AContourOfAPlaneIsAStraightLine();
    void AContourOfABowlIsOneClosedRing();
    void ASaddleIsPartedByItsMiddle();
    void NoContourLineClimbsThePlateau();
    void TwentyLevelsCrowdTowardsTheLowestValue();
    void TheRegionOfInvalidParametersEndsHalfway();
    void TheEdgeOfTheInvalidRegionIsSmoothAndKeepsEveryPointOnItsSide();
    void AnIslandOfValidParametersHasAnOutlineOfItsOwn();
    void SomeLevelsAreWrittenOnTheirLinesApartFromOneAnother();
    void TheObjectiveIsLinearBetweenGridPointsAndEmptyOnThePlateau();
    void AGridOfOnePointStillDraws();
    void EachKindOfMarkHasItsOwnSymbolAndLegend();
    void EachStartHasAPathOfItsOwnAndNoLineJoinsTwo();
    void ALeapAcrossThePictureIsNoLine();
    void AContourWindowClosedInMidPathAnswersFalse();
    void TheContourPictureOutlivesTheFit();
    void ASecondSurfaceReplacesTheFirst();
    void AContourPictureHoldsPathAndMarks();

    // Meter
    void TheMeterAppearsAfter300Milliseconds();
    void CancelAndEscapeAreSeenByTheLoop();
    void TheMeterTellsTheTimeLeft();
    void TwoWorksInARowShareOneWindow();
    void AMeterStartedAgainHasForgottenItsCancel();
    void TheMeterBlocksEveryOtherWindow();

    // Report
    void TheReportShowsItsRowsAndNoIntervalBlockWithoutBootstraps();
    void FewerRowsHideThoseOfTheEarlierFit();
    void IntervalsTakeRoomOnlyWhileTheyExist();
    void RemarksTakeRoomOnlyWhileTheyExistAndWrap();
    void ManyRemarksScrollAndTheFewOfTheNextFitDoNot();
    void TheButtonsOfTheReportAskForIntervalsAndHideTheWindow();
    void ALabelOfTheReportIsSelectableAndCopied();
};

namespace
{
/// A tick of an axis that has chosen its power of ten by this step and this largest number.
QString Tick(double value, double step, double largest, NumberKind kind = NumberKind::Real)
{
    return TickText(value, step, largest, kind, PowerOfAxis(step, largest, kind));
}
} // namespace

void ViewsTest::LargeNumbersAreGroupedAndHugeOnesTakeAPowerOfTen()
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
void ViewsTest::TheLargestNumberOfAnAxisDecidesHowAllAreWritten()
{
    QCOMPARE(Tick(5000, 1000, 9999), "5000");
    QCOMPARE(Tick(5000, 1000, 10000), "5" + kThin + "000");
    QCOMPARE(Tick(5e6, 2.5e6, 9999999), "5" + kThin + "000" + kThin + "000");
    QCOMPARE(PowerOfAxis(0.0005, 0.001), 0);
    QCOMPARE(Tick(0.0005, 0.0005, 0.001), "0.0005");
}

void ViewsTest::UnderAPowerOfTenNoTickReadsLessThanOne()
{
    QCOMPARE(Tick(2.5e6, 2.5e6, 1e7), "2.5");
    QCOMPARE(Tick(1e7, 2.5e6, 1e7), "10.0");
    QCOMPARE(Tick(0.0001, 0.0001, 0.0009), "1");
    QCOMPARE(PowerOfAxis(1000.0, 2e7), 3); // not 2, by a rounding error of the logarithm
}

void ViewsTest::YearsAreNeverGrouped()
{
    QCOMPARE(Tick(1975, 5, 1990, NumberKind::Period), "1975");
    QCOMPARE(Tick(12000, 500, 12500, NumberKind::Period), "12000");
}

void ViewsTest::StepsOfAQuarterShowTwoDecimals()
{
    QCOMPARE(Tick(0.5, 0.25, 1.0), "0.50");
    QCOMPARE(Tick(0.6, 0.2, 1.0), "0.6");
}

void ViewsTest::ASingleNumberKeepsSixDigits()
{
    QCOMPARE(NumberAsText(0.1234567), "0.123457");
    QCOMPARE(NumberAsText(-2.5), QStringLiteral("−2.5"));
    QCOMPARE(NumberAsText(12500), "12" + kThin + "500");
    QCOMPARE(NumberAsText(1.5e-6), QStringLiteral("1.5 × 10⁻⁶"));
    QCOMPARE(NumberAsText(0.0), "0");
    QCOMPARE(NumberAsText(std::nan("")), "no number");
}

void ViewsTest::PointsInAndOutOfTheFitAreSeriesOfTheirOwnAndHiddenOnesAreNotDrawn()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));

    QCOMPARE(plot.graphCount(), 3);
    QCOMPARE(Named(plot, "Observed (Included)")->dataCount(),
             8); // ten without the excluded and the hidden one
    QCOMPARE(Named(plot, "Observed (Excluded)")->dataCount(), 1);
    QCOMPARE(Named(plot, "Observed (Excluded)")->data()->at(0)->key, 1968.0);
}

void ViewsTest::TheLegendNamesOnlyWhatIsDrawn()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));
    QCOMPARE(plot_style::LegendTexts(plot),
             QStringList({"Observed (Included)", "Observed (Excluded)", "Expected"}));

    PaintGraph(plot, CpueGraph(1)); // its only point is in the fit
    QCOMPARE(plot_style::LegendTexts(plot), QStringList({"Observed (Included)", "Expected"}));
}

void ViewsTest::SymbolsAndLineHaveTheColoursThatEveryReaderTellsApart()
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

void ViewsTest::TheExpectedLineHasAGapAtAHiddenPoint()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));

    QVERIFY(std::isnan(Named(plot, "Expected")->data()->at(2)->value));
    QCOMPARE(Named(plot, "Expected")->data()->at(3)->value, 17.5); // 20 - 3 + 0.5
}

void ViewsTest::AnExpectedValueBetweenTwoGapsShowsAsADot()
{
    ModelGraph graph = CpueGraph(5);
    graph.OverlayLine(std::vector<double>{kHidden, 7.0, kHidden, 8.0, 9.0});
    QCustomPlot plot;

    PaintGraph(plot, graph);

    QCOMPARE(plot.graphCount(), 4);
    QCOMPARE(plot.graph(1)->dataCount(), 1); // the line from 8 to 9 needs no dots
    QCOMPARE(plot.graph(1)->data()->at(0)->value, 7.0);
}

void ViewsTest::YearsFrom1987To1996RunFrom1985To2000InStepsOfThree()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10, 1987.0));

    QCOMPARE(plot.xAxis->range().lower, 1985.0);
    QCOMPARE(plot.xAxis->range().upper, 2000.0);
    QCOMPARE(TickLabels(plot, *plot.xAxis), QStringList({"1985", "1988", "1991", "1994", "1997", "2000"}));
}

void ViewsTest::PeriodsFromOneToThirtyHaveTheirOwnWholeNumbers()
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

void ViewsTest::AQuantityThatStartsAt1950LosesNoPointsToTheAxisOfYears()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Residuals, {1950.5, 120.0, 4000.0}, {1.0, -2.0, 0.5}));

    QCOMPARE(plot.xAxis->range().lower, 0.0);
    QVERIFY(plot.xAxis->range().upper > 4000.0);
}

void ViewsTest::CatchAxesStartAtZero()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));
    QCOMPARE(plot.yAxis->range().lower, 0.0);
    QVERIFY(plot.yAxis->range().upper > 20.5); // the highest expected value

    PaintGraph(plot, GraphOf(GraphType::Line, {1, 2, 3}, {500, 600, 700}));
    QCOMPARE(plot.yAxis->range().lower, 0.0);
}

void ViewsTest::ResidualsAreSymmetricAboutALineAtZeroWithDashedLimits()
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

void ViewsTest::PercentilesRunFromZeroToOne()
{
    ModelGraph graph = GraphOf(GraphType::Residuals, {1, 2, 3}, {0.2, 0.5, 0.9});
    graph.LCI(0.025F);
    graph.UCI(0.975F);
    QCustomPlot plot;

    PaintGraph(plot, graph);

    QCOMPARE(plot.yAxis->range().lower, 0.0);
    QCOMPARE(plot.yAxis->range().upper, 1.0);
}

void ViewsTest::AHistogramHasFiftyBarsWithoutGapsBetweenItsLimits()
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

void ViewsTest::AHistogramShowsTheLimitsOfTheReportWhereItKnowsThem()
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
void ViewsTest::ASpreadOfRoundingNoiseIsOneBar()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Histogram, {0.5, 0.5000001, 0.5000002}, {3, 4, 5}));

    const auto* bars = qobject_cast<QCPBars*>(plot.plottable(0));
    QCOMPARE(bars->dataCount(), 1);
    QCOMPARE(bars->data()->at(0)->value, 12.0);
    QVERIFY(plot.xAxis->range().size() < 0.1 && plot.xAxis->range().contains(0.5));
}

void ViewsTest::AHistogramOfReversedLevelsStillDraws()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::Histogram, {10.0, 8.0, 6.0}, {0.0, 0.0, 0.0}));

    QCOMPARE(plot.graph(0)->data()->at(0)->key, 4.0); // 6 - 2
    QCOMPARE(plot.graph(1)->data()->at(0)->key, 10.0);
}

void ViewsTest::AGraphWithoutPointsSaysSo()
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

void ViewsTest::ASinglePointGetsAnAxisAroundIt()
{
    QCustomPlot plot;

    PaintGraph(plot, GraphOf(GraphType::PointsAndLine, {7.0}, {40.0}));

    QCOMPARE(plot.xAxis->range().lower, 6.5);
    QCOMPARE(plot.xAxis->range().upper, 7.5);
    QCOMPARE(TickLabels(plot, *plot.xAxis).count("7"), 1);
    QVERIFY(plot.yAxis->range().contains(40.0));
}

void ViewsTest::HugeAndTinyValuesFillTheirAxes()
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

void ViewsTest::ALongTitleGetsSmallerLettersUntilItFits()
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

void ViewsTest::PaintingTwiceDrawsTheGraphOnce()
{
    QCustomPlot plot;

    PaintGraph(plot, CpueGraph(10));
    PaintGraph(plot, CpueGraph(10));

    QCOMPARE(plot.graphCount(), 3);
    QCOMPARE(plot_style::LegendTexts(plot).size(), 3);
    QCOMPARE(plot.plotLayout()->rowCount(), 3);
}

void ViewsTest::TickLabelsOfALongSeriesDoNotOverlap_data()
{
    QTest::addColumn<double>("first");
    QTest::addColumn<int>("width");
    for (const int width : {360, 720, 1600}) {
        QTest::addRow("periods, %d wide", width) << 1.0 << width;
        QTest::addRow("years, %d wide", width) << 1850.0 << width;
        QTest::addRow("axis of years, %d wide", width) << 1900.0 << width;
    }
}

void ViewsTest::TickLabelsOfALongSeriesDoNotOverlap()
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

void ViewsTest::TheBackgroundIsWhiteInDarkModeToo()
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

void ViewsTest::APngHasTwiceTheDots()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("cpue.png");

    QVERIFY(SaveGraphPicture(CpueGraph(23), path));

    const QImage picture(path);
    QCOMPARE(picture.size(), kPictureSize * 2);
    // On paper it is as large as on the screen: twice the dots on the same inch of 0.0254 m.
    const double perInch = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    QCOMPARE(picture.dotsPerMeterX(), qRound(2.0 * perInch / 0.0254));
    QCOMPARE(picture.dotsPerMeterY(), picture.dotsPerMeterX());
}

void ViewsTest::AnSvgHoldsRealText()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("cpue.SVG");

    QVERIFY(SaveGraphPicture(CpueGraph(23), path));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString svg = QString::fromUtf8(file.readAll());
    QVERIFY(svg.contains("<text"));
    for (const QString text : {"Expected and Observed CPUE", "Time", "1975", "Observed (Included)"})
        QVERIFY2(svg.contains(text), qPrintable(text));
    QVERIFY(!svg.contains("<image")); // nothing is drawn as dots
}

void ViewsTest::APdfIsWritten()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("cpue.pdf");

    QVERIFY(SaveGraphPicture(CpueGraph(23), path));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    QVERIFY(pdf.startsWith("%PDF-"));
    QVERIFY(pdf.contains("/Font")); // letters and not outlines
}

void ViewsTest::AnUnknownEndingOrAMissingFolderWritesNothing()
{
    QTemporaryDir folder;

    QVERIFY(!SaveGraphPicture(CpueGraph(5), folder.filePath("cpue.bmp")));
    QVERIFY(!SaveGraphPicture(CpueGraph(5), folder.filePath("cpue")));
    QVERIFY_THROWS_EXCEPTION(VeltError, SaveGraphPicture(CpueGraph(5), folder.filePath("missing/cpue.png")));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void ViewsTest::TheGraphWindowTellsThePointUnderTheCursor()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10, 1.0)));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto* plot = window.findChild<QCustomPlot*>("mgphPlot");
    QVERIFY(plot != nullptr);
    plot->replot();

    const QPointF at(plot->xAxis->coordToPixel(5.0), plot->yAxis->coordToPixel(16.0)); // 20 - 4
    QTest::mouseMove(plot, at.toPoint());

    QCOMPARE(window.StatusText(), "Observed (Included):  Time 5,  CPUE 16");

    // A line has no points to meet, only places.
    plot->yAxis->setRange(11.4, 11.6); // so near that the observed point is far from 20 - 9 + 0.5
    plot->replot();
    const QPointF onLine(plot->xAxis->coordToPixel(10.0), plot->yAxis->coordToPixel(11.5));
    QTest::mouseMove(plot, onLine.toPoint());
    QVERIFY(!window.StatusText().contains("Expected"));
    QVERIFY(window.StatusText().startsWith("Time"));
}

void ViewsTest::ADoubleClickShowsAllAgain()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QCPRange before = window.Plot().xAxis->range();

    window.Plot().xAxis->setRange(1970.0, 1971.0);
    QTest::mouseDClick(&window.Plot(), Qt::LeftButton);

    QCOMPARE(window.Plot().xAxis->range(), before);
}

// Four classes from 1 on, each 1 wide.
void ViewsTest::TheHistogramTellsTheClassUnderTheCursor()
{
    auto graph = std::make_shared<ModelGraph>();
    graph->Create(4);
    graph->Type(GraphType::Histogram);
    graph->XTitle("K");
    graph->XData(std::vector<double>{1, 2, 3, 4});
    graph->YData(std::vector<double>{5, 9, 4, 1});
    frmModelGraph window(graph);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.Plot().replot();
    const auto said = [&](double x) {
        const QPointF at(window.Plot().xAxis->coordToPixel(x), window.Plot().yAxis->coordToPixel(2.0));
        QTest::mouseMove(&window.Plot(), at.toPoint());
        return window.StatusText();
    };
    QCOMPARE(said(2.2), QString("K 2 to 3:  9")); // nearer to the middle of the class before than its width
    QCOMPARE(said(1.8), QString("K 1 to 2:  5"));
    QCOMPARE(said(5.1), QString());
    QTest::mouseMove(&window.Plot(), QPoint(static_cast<int>(window.Plot().xAxis->coordToPixel(2.2)),
                                            window.Plot().height() - 2)); // below the axis
    QCOMPARE(window.StatusText(), QString());
}

void ViewsTest::ATogglingKeepsTheZoomAndAResetShowsWhatIsThereNow()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    const QCPRange zoom(3.0, 4.0);
    window.Plot().xAxis->setRange(zoom);
    window.Plot().yAxis->setRange(zoom);
    window.Graph().YData(std::vector<double>(10, 500.0)); // far above what was there
    window.Refresh();
    QCOMPARE(window.Plot().xAxis->range(), zoom);
    QCOMPARE(window.Plot().yAxis->range(), zoom);
    window.ResetZoom();
    QVERIFY(window.Plot().yAxis->range().contains(500.0));
}

void ViewsTest::ClosingAGraphWindowHidesIt()
{
    QPointer<frmModelGraph> window = new frmModelGraph(std::make_shared<ModelGraph>(CpueGraph(10)));
    window->show();

    QVERIFY(window->close());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QVERIFY(!window.isNull());
    QVERIFY(!window->isVisible());
    delete window;
}

namespace
{
/// Closes the box that the next command will show, and keeps its words.
void CloseNextBox(QString& words)
{
    QTimer::singleShot(0, [&words] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        words = box->text();
        box->accept();
    });
}

void Give(frmModelGraph& window, const char* command)
{
    window.findChild<QAction*>(QString::fromLatin1(command))->trigger();
}
} // namespace

void ViewsTest::TheRightButtonsMenuHoldsZoomPictureAndData()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    QCOMPARE(window.Plot().contextMenuPolicy(), Qt::ActionsContextMenu);
    QStringList entries;
    for (const QAction* action : window.Plot().actions())
        entries += action->text();
    QCOMPARE(entries, QStringList({"&Edit...", "&Print...", "&Copy Graph", "&Save Picture As...",
                                   "&Reset Zoom", "Copy &Data"}));
}

void ViewsTest::TheCopiedPictureHasTwiceTheDotsOfTheWindow()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    window.show();
    QString words;
    CloseNextBox(words);
    Give(window, "CopyGraph");
    QCOMPARE(words, QString("Graph Copied to Clipboard"));
    QCOMPARE(QGuiApplication::clipboard()->image().size(), window.Plot().size() * 2);
}

// Three years from 1967: in the fit, out of the fit, hidden. Observed 20 - 10 t / 3, expected 0.5 more.
void ViewsTest::TheCopiedDataOfAFitAreTimeObservedAndExpected()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(3)));
    QString words;
    CloseNextBox(words);
    Give(window, "CopyData");
    QCOMPARE(words, QString("Data Copied to Clipboard"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("Time\tObs CPUE\tExp CPUE\r\n"
                                                           "1967\t20\t20.5\r\n"
                                                           "1968\t16.6666666666667\t17.1666666666667\r\n"
                                                           "1969\t-999.999\t-999.999\r\n"));
}

void ViewsTest::TheCopiedDataOfAnyOtherGraphAreItsTwoAxes()
{
    ModelGraph graph = CpueGraph(2);
    graph.Type(GraphType::Line);
    QCOMPARE(graph.CopiedText(), std::string("Time\tCPUE\r\n1967\t20\r\n1968\t-999.999\r\n"));
}

void ViewsTest::ThePictureIsSavedUnderTheGraphsTitle()
{
    ModelGraph graph = CpueGraph(10);
    graph.Title("Rep Yield(0.025..0.975), n = 500");
    frmModelGraph window(std::make_shared<ModelGraph>(graph));
    window.show();
    const QTemporaryDir folder;
    QTimer::singleShot(0, [&folder] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        const QString suggested = dialog->findChild<QLineEdit*>("fileNameEdit")->text();
        dialog->setDirectory(folder.path());
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(suggested);
        static_cast<QDialog*>(dialog)->accept();
    });
    Give(window, "actSavePicture");
    QVERIFY(QFile::exists(folder.filePath("Rep Yield.png")));
}

// z = x + 2y on a grid of 3 by 3: the line z = 3 leads from (3, 0) to (0, 1.5).
void ViewsTest::AContourOfAPlaneIsAStraightLine()
{
    const std::vector<double> x{0, 2, 4}, y{0, 1, 2};
    std::vector<std::vector<double>> z(3, std::vector<double>(3));
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            z[i][j] = x[i] + 2.0 * y[j];

    const auto lines = contour_lines::Trace(x, y, z, 3.0);

    QCOMPARE(lines.size(), 1U);
    for (const contour_lines::Point& point : lines[0])
        QCOMPARE(point.x + 2.0 * point.y, 3.0);
    const double ends = lines[0].front().x + lines[0].back().x;
    QCOMPARE(ends, 3.0);
    QCOMPARE(lines[0].front().y + lines[0].back().y, 1.5);
}

// z = (x - 2)^2 + (y - 3)^2 at 2.5: between grid points z is linear along the edges, so on the row y = 3 the
// ring passes between z(3) = 1 and z(4) = 4 at x = 3.5, and likewise at 0.5.
void ViewsTest::AContourOfABowlIsOneClosedRing()
{
    const ContourSurface bowl = Bowl();

    const auto lines = contour_lines::Trace(bowl.x, bowl.y, bowl.z, 2.5);

    QCOMPARE(lines.size(), 1U);
    QCOMPARE(lines[0].front().x, lines[0].back().x);
    QCOMPARE(lines[0].front().y, lines[0].back().y);
    double right = 0.0, left = 9.0;
    for (const contour_lines::Point& point : lines[0]) {
        right = std::max(right, point.x);
        left = std::min(left, point.x);
    }
    QCOMPARE(right, 3.5);
    QCOMPARE(left, 0.5);
}

// High corners at (0, 0) and (1, 1). With a high middle they are joined and the two lines cut off the low
// corners; with a low middle the lines cut off the high ones.
void ViewsTest::ASaddleIsPartedByItsMiddle()
{
    const std::vector<double> at{0, 1};
    const auto cutsOff = [&](double high, double cornerX, double cornerY) {
        const auto lines = contour_lines::Trace(at, at, {{high, 0.0}, {0.0, high}}, 1.0);
        return lines.size() == 2 &&
               std::any_of(lines.begin(), lines.end(), [&](const contour_lines::Line& line) {
                   const auto &from = line.front(), &to = line.back();
                   return (from.x == cornerX && to.y == cornerY) || (from.y == cornerY && to.x == cornerX);
               });
    };

    QVERIFY(cutsOff(4.0, 1.0, 0.0)); // mean 2: above the level
    QVERIFY(cutsOff(1.5, 0.0, 0.0)); // mean 0.75: below it
    QVERIFY(!cutsOff(4.0, 0.0, 0.0));
    QVERIFY(!cutsOff(1.5, 1.0, 0.0));
}

void ViewsTest::NoContourLineClimbsThePlateau()
{
    ContourSurface surface = Bowl();
    for (std::size_t j = 0; j < 7; ++j)
        surface.z[6][j] = surface.plateau;
    surface.zMax = 18.0; // at (5, 0) and (5, 6)
    QCustomPlot plot;
    ContourPainter painter(plot);

    painter.Surface(surface);

    int curves = 0;
    for (int i = 0; i < plot.plottableCount(); ++i)
        if (const auto* curve = qobject_cast<QCPCurve*>(plot.plottable(i));
            curve && !curve->data()->isEmpty() && curve->pen().color() != plot_style::kLimits) { // the edge
            ++curves;
            for (const QCPCurveData& point : *curve->data())
                QVERIFY(std::isnan(point.key) || point.key <= 5.0);
        }
    QCOMPARE(curves, 20);
}

// From 1 above the lowest on by a factor whose twentieth power is the whole height: 1024 = (sqrt 2)^20.
void ViewsTest::TwentyLevelsCrowdTowardsTheLowestValue()
{
    const std::vector<double> levels = contour_lines::Levels(10.0, 1034.0, 1.0, 20);

    QCOMPARE(levels.size(), 20U);
    QCOMPARE(levels[0], 11.0);
    QCOMPARE(levels[2], 12.0);
    QCOMPARE(levels[18], 10.0 + 512.0);
    QVERIFY(levels.back() < 1034.0);
    QVERIFY(contour_lines::Levels(3.0, 3.0, 1.0, 20).empty());
    QVERIFY(contour_lines::Levels(3.0, 4.0, 0.0, 20).empty());
    QCOMPARE(contour_lines::Levels(0.0, 21.0, 100.0, 20).front(), 1.0); // never wider than even steps
}

// Three valid corners of four: valid up to the middle of the way to the fourth.
void ViewsTest::TheRegionOfInvalidParametersEndsHalfway()
{
    ContourSurface surface = Bowl();
    surface.z[6][6] = surface.plateau;

    QVERIFY(ObjectiveAt(surface, 5.69, 5.69)); // 0.69 * 0.69 < 1/2
    QVERIFY(!ObjectiveAt(surface, 5.72, 5.72));
}

namespace
{
QPolygonF PolygonOf(const contour_lines::Line& line)
{
    QPolygonF polygon;
    for (const contour_lines::Point& point : line)
        polygon << QPointF(point.x, point.y);
    return polygon;
}
} // namespace

// Steps of five points for each column: a straight edge of slope -5, as a coarse grid sees it.
void ViewsTest::TheEdgeOfTheInvalidRegionIsSmoothAndKeepsEveryPointOnItsSide()
{
    constexpr int kSize = 40;
    std::vector<std::vector<bool>> valid(kSize, std::vector<bool>(kSize));
    for (int i = 0; i < kSize; ++i)
        for (int j = 0; j < kSize; ++j)
            valid[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)] = 5 * i + j > 100;

    const auto outlines = contour_lines::SmoothOutlines(valid);

    QCOMPARE(outlines.size(), 1U);
    const QPolygonF region = PolygonOf(outlines.front());
    for (int i = 0; i < kSize; ++i)
        for (int j = 0; j < kSize; ++j)
            QCOMPARE(region.containsPoint(QPointF(i, j), Qt::OddEvenFill), 5 * i + j <= 100);
    double sharpest = 0.0;
    for (qsizetype k = 1; k + 1 < region.size(); ++k) {
        if (region[k].y() < 1.0 || region[k].y() > kSize - 2.0 || region[k].x() < 1.0)
            continue; // outside it turns round
        const double turn = QLineF(region[k - 1], region[k]).angleTo(QLineF(region[k], region[k + 1]));
        sharpest = std::max(sharpest, std::min(turn, 360.0 - turn));
    }
    QVERIFY2(sharpest > 0.0 && sharpest < 10.0, qPrintable(QString::number(sharpest))); // steps turn by 45
}

void ViewsTest::AnIslandOfValidParametersHasAnOutlineOfItsOwn()
{
    std::vector<std::vector<bool>> valid(9, std::vector<bool>(9, false));
    for (std::size_t i = 3; i < 6; ++i)
        for (std::size_t j = 3; j < 6; ++j)
            valid[i][j] = true;

    const auto outlines = contour_lines::SmoothOutlines(valid);

    QCOMPARE(outlines.size(), 2U); // around all, and around the island
    QPainterPath region;
    for (const auto& outline : outlines)
        region.addPolygon(PolygonOf(outline));
    QVERIFY(region.contains(QPointF(0, 0)));
    QVERIFY(region.contains(QPointF(8, 8)));
    QVERIFY(!region.contains(QPointF(4, 4)));
    QVERIFY(contour_lines::SmoothOutlines({{true, true}, {true, true}}).empty());
    QVERIFY(contour_lines::SmoothOutlines({}).empty());
}

void ViewsTest::SomeLevelsAreWrittenOnTheirLinesApartFromOneAnother()
{
    ContourSurface surface = Bowl();
    surface.zMax = 25.0;
    QCustomPlot plot;
    ContourPainter painter(plot);

    painter.Surface(surface);

    std::vector<QPointF> places;
    for (int i = 0; i < plot.itemCount(); ++i)
        if (const auto* text = qobject_cast<QCPItemText*>(plot.item(i)))
            places.emplace_back(text->position->coords());
    QVERIFY(places.size() >= 2);
    for (std::size_t i = 0; i < places.size(); ++i)
        for (std::size_t k = i + 1; k < places.size(); ++k)
            QVERIFY(std::abs(places[i].x() - places[k].x()) >= 0.72 ||
                    std::abs(places[i].y() - places[k].y()) >= 0.36); // of six units each
}

void ViewsTest::TheObjectiveIsLinearBetweenGridPointsAndEmptyOnThePlateau()
{
    ContourSurface surface = Bowl();
    surface.z[6][6] = surface.plateau;

    QCOMPARE(ObjectiveAt(surface, 2.0, 3.0).value(), 0.0);
    QCOMPARE(ObjectiveAt(surface, 2.5, 3.0).value(), 0.5);  // between 0 and 1
    QCOMPARE(ObjectiveAt(surface, 6.0, 0.0).value(), 25.0); // the far corner
    QVERIFY(!ObjectiveAt(surface, 6.0, 6.0));
    QVERIFY(!ObjectiveAt(surface, 6.1, 3.0));
}

void ViewsTest::AGridOfOnePointStillDraws()
{
    ContourSurface surface = NamedSurface();
    surface.x = {500.0};
    surface.y = {0.0};
    surface.z = {{12.0}};
    surface.plateau = surface.zMin = surface.zMax = 12.0;
    QCustomPlot plot;
    ContourPainter painter(plot);

    painter.Surface(surface);

    QVERIFY(plot.xAxis->range().lower < 500.0 && plot.xAxis->range().upper > 500.0);
    QVERIFY(plot.yAxis->range().size() > 0.0);
    QVERIFY(!PlotImage(plot, kPictureSize).isNull());
}

void ViewsTest::EachKindOfMarkHasItsOwnSymbolAndLegend()
{
    QCustomPlot plot;
    ContourPainter painter(plot);
    painter.Surface(Bowl());

    for (const ContourMark kind :
         {ContourMark::Start1, ContourMark::Start2, ContourMark::Start3, ContourMark::Final})
        QVERIFY(painter.Mark({kind, 3, 3}));

    QCOMPARE(plot_style::LegendTexts(plot), QStringList({"Start 1", "Start 2", "Start 3", "Final"}));
    QSet<int> shapes;
    for (int i = 0; i < plot.graphCount(); ++i)
        shapes.insert(plot.graph(i)->scatterStyle().shape());
    QCOMPARE(shapes.size(), 4);
}

namespace
{
/// Where the paths go, each as its points; a lifted pen is no number.
std::vector<std::vector<QPointF>> PathsOf(QCustomPlot& plot)
{
    std::vector<std::vector<QPointF>> paths;
    for (int i = 0; i < plot.plottableCount(); ++i)
        if (const auto* curve = qobject_cast<QCPCurve*>(plot.plottable(i));
            curve && curve->layer()->name() == ContourPainter::PathLayer()) {
            paths.emplace_back();
            for (const QCPCurveData& point : *curve->data())
                paths.back().emplace_back(point.key, point.value);
        }
    return paths;
}
} // namespace

void ViewsTest::EachStartHasAPathOfItsOwnAndNoLineJoinsTwo()
{
    QCustomPlot plot;
    ContourPainter painter(plot);
    painter.Surface(Bowl());
    painter.Mark({ContourMark::Start1, 1, 1});
    painter.Step({0, 0, 1, 2}); // what the minimiser came from is no part of this start
    painter.Step({1, 2, 2, 2});
    painter.Mark({ContourMark::Start2, 5, 5});
    painter.Step({2, 2, 4, 4});
    painter.Mark({ContourMark::Final, 2, 3});

    const std::vector<std::vector<QPointF>> paths = PathsOf(plot);
    QCOMPARE(paths.size(), 2U);
    QVERIFY((paths[0] == std::vector<QPointF>{{1, 1}, {1, 2}, {2, 2}}));
    QVERIFY((paths[1] == std::vector<QPointF>{{5, 5}, {4, 4}}));
    QSet<QRgb> tones;
    for (int i = 0; i < plot.plottableCount(); ++i)
        if (plot.plottable(i)->layer()->name() == ContourPainter::PathLayer() &&
            qobject_cast<QCPCurve*>(plot.plottable(i)))
            tones.insert(plot.plottable(i)->pen().color().rgb());
    QCOMPARE(tones.size(), 2);
}

void ViewsTest::ALeapAcrossThePictureIsNoLine()
{
    QCustomPlot plot;
    ContourPainter painter(plot);
    painter.Surface(Bowl()); // from 0 to 6 both ways
    painter.Mark({ContourMark::Start1, 1, 1});
    painter.Step({1, 1, 1, 2});
    painter.Step({1, 2, 5, 2});
    painter.Step({5, 2, 5, 3});

    const std::vector<QPointF> path = PathsOf(plot).at(0);
    QCOMPARE(path.size(), 5U);
    QVERIFY(std::isnan(path[2].x()));
    QCOMPARE(path[3], QPointF(5, 2));
}

void ViewsTest::AContourWindowClosedInMidPathAnswersFalse()
{
    ContourWindowPlot plot;
    QVERIFY(!plot.PlotStep(1, 1, 2, 2)); // nothing to draw on yet
    plot.Show(Bowl());
    QVERIFY(plot.Window() != nullptr && plot.Window()->isVisible());
    QVERIFY(plot.PlotPoint(ContourMark::Start1, 1, 1));
    QVERIFY(plot.PlotStep(1, 1, 2, 2));

    plot.Window()->close();

    QVERIFY(!plot.PlotStep(2, 2, 2, 3)); // at once
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(plot.Window() == nullptr);
    QVERIFY(!plot.PlotPoint(ContourMark::Final, 2, 3)); // and after the window has been deleted
}

void ViewsTest::TheContourPictureOutlivesTheFit()
{
    auto plot = std::make_unique<ContourWindowPlot>();
    plot->Show(Bowl());
    const QPointer<frmGraph> window = plot->Window();

    plot.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    QVERIFY(!window.isNull() && window->isVisible());
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(window.isNull());
}

void ViewsTest::ASecondSurfaceReplacesTheFirst()
{
    ContourWindowPlot plot;
    plot.Show(Bowl());
    plot.PlotStep(1, 1, 2, 2);
    const QPointer<frmGraph> window = plot.Window();

    plot.Show(Bowl());

    QCOMPARE(plot.Window(), window.data());
    QVERIFY(plot_style::LegendTexts(window->Plot()).isEmpty()); // no path yet
    QCOMPARE(window->Plot().plotLayout()->columnCount(), 2);    // one colour scale
    delete window;
}

void ViewsTest::AContourPictureHoldsPathAndMarks()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("contour.svg");

    QVERIFY(SaveContourPicture(Bowl(), {{1, 1, 2, 2}, {2, 2, 2, 3}}, {{ContourMark::Final, 2, 3}}, path));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray svg = file.readAll();
    QVERIFY(svg.contains("Final") && svg.contains("Objective"));
}

void ViewsTest::TheMeterAppearsAfter300Milliseconds()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Calculating Bootstraps...", 500);

    hand.now = 299;
    meter.Value(10);
    QVERIFY(!meter.isVisible());
    hand.now = 320;
    meter.Value(20);

    QVERIFY(meter.isVisible());
    QCOMPARE(meter.findChild<QLabel*>("lblTitle")->text(), "Calculating Bootstraps...");
    QCOMPARE(meter.findChild<QProgressBar*>("barProgress")->text(), "4%"); // 20 of 500
    meter.Finish();
    QTRY_VERIFY(!meter.isVisible());
}

void ViewsTest::CancelAndEscapeAreSeenByTheLoop()
{
    for (const bool byKey : {false, true}) {
        Hand hand;
        ProgressMeterWindow meter(nullptr, hand.Clock());
        meter.Start("Drawing Contours...", 20);
        hand.now = 400;
        meter.Value(1);
        QVERIFY(!meter.Cancelled());

        if (byKey)
            QTest::keyClick(&meter, Qt::Key_Escape);
        else
            QTest::mouseClick(meter.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);

        QVERIFY(meter.Cancelled());
        QVERIFY(meter.isVisible()); // until the loop has ended
        QVERIFY(!meter.findChild<QPushButton*>("cmdCancel")->isEnabled());
        meter.Finish();
    }
}

// 100 of 400 steps in 20 s: the other 300 take 60 s.
void ViewsTest::TheMeterTellsTheTimeLeft()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Calculating Bootstraps...", 400);

    hand.now = 20000;
    meter.Value(100);

    QCOMPARE(meter.findChild<QLabel*>("lblTimeLeft")->text(), "1 min 0 s left");
    meter.Finish();
}

void ViewsTest::TwoWorksInARowShareOneWindow()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Calculating Bootstraps...", 500);
    hand.now = 400;
    meter.Value(500);

    meter.Finish();
    meter.Start("Sorting Bootstraps...", 2);
    QCoreApplication::processEvents();

    QVERIFY(meter.isVisible()); // it has not gone and come back
    QCOMPARE(meter.findChild<QLabel*>("lblTitle")->text(), "Sorting Bootstraps...");
    meter.Finish();
    QTRY_VERIFY(!meter.isVisible());
}

void ViewsTest::AMeterStartedAgainHasForgottenItsCancel()
{
    Hand hand;
    ProgressMeterWindow meter(nullptr, hand.Clock());
    meter.Start("Drawing Contours...", 20);
    meter.reject();
    QVERIFY(meter.Cancelled());

    meter.Start("Drawing Contours...", 20);

    QVERIFY(!meter.Cancelled());
    meter.Finish();
    meter.reject(); // a late press of Escape, with nothing left to cancel
    QVERIFY(!meter.Cancelled());
}

void ViewsTest::TheMeterBlocksEveryOtherWindow()
{
    ProgressMeterWindow meter;
    QCOMPARE(meter.windowModality(), Qt::ApplicationModal);
}

void ViewsTest::TheReportShowsItsRowsAndNoIntervalBlockWithoutBootstraps()
{
    frmParams window;

    window.Show(Report());

    QCOMPARE(window.windowTitle(), "Parameter Estimates");
    QCOMPARE(window.findChild<QLabel*>("lblMeth")->text(), "Model");
    QCOMPARE(window.findChild<QLabel*>("lblFitOp")->text(), "Fit");
    QCOMPARE(window.findChild<QLabel*>("lblRSqr")->text(), "R Sqr");
    QCOMPARE(window.findChild<QLabel*>("lblMethName")->text(), "PROD. MODEL(PELLA TOM)");
    QCOMPARE(window.findChild<QLabel*>("lblFitOpName")->text(), "Log Fit");
    QCOMPARE(window.findChild<QLabel*>("lblR2")->text(), "0.500");
    QCOMPARE(window.findChild<QLabel*>("lblIPName2")->text(), "Z Shape");
    QCOMPARE(window.findChild<QLabel*>("lblIPVal2")->text(), "1.5");
    QCOMPARE(window.findChild<QLabel*>("lblMPVal0")->text(), "5230.5");
    QVERIFY(window.findChild<QLabel*>("lblMPVal0")->alignment().testFlag(Qt::AlignRight));
    QVERIFY(!window.findChild<QGroupBox*>("picCI")->isVisible());
}

void ViewsTest::FewerRowsHideThoseOfTheEarlierFit()
{
    frmParams window;
    window.Show(Report());
    ParameterReport smaller = Report();
    smaller.inputs.resize(1);

    window.Show(smaller);

    QVERIFY(window.findChild<QLabel*>("lblIPName0")->isVisible());
    QVERIFY(!window.findChild<QLabel*>("lblIPName1")->isVisible());
    QVERIFY(!window.findChild<QLabel*>("lblIPVal2")->isVisible());
}

void ViewsTest::IntervalsTakeRoomOnlyWhileTheyExist()
{
    frmParams window;
    window.Show(Report());
    QCoreApplication::processEvents();
    const int without = window.sizeHint().height();
    ParameterReport bootstrapped = Report();
    bootstrapped.intervals = {{"K", "4100 - 6900"}};
    bootstrapped.intervalLevels = "0.025 - 0.975";

    window.Show(bootstrapped);

    QVERIFY(window.findChild<QGroupBox*>("picCI")->isVisible());
    QCOMPARE(window.findChild<QLabel*>("lblCIRange")->text(), "0.025 - 0.975");
    QCOMPARE(window.findChild<QLabel*>("lblCIVal0")->text(), "4100 - 6900");
    QVERIFY(window.sizeHint().height() > without);

    window.Show(Report()); // a new fit without bootstraps
    QVERIFY(!window.findChild<QGroupBox*>("picCI")->isVisible());
    QCOMPARE(window.sizeHint().height(), without);
}

void ViewsTest::RemarksTakeRoomOnlyWhileTheyExistAndWrap()
{
    frmParams window;
    window.Show(Report());
    QVERIFY(!window.findChild<QGroupBox*>("picRemarks")->isVisible());
    const int without = window.sizeHint().height();
    const std::string sentence = "1. A sentence that is much too long for one line of the window, because it "
                                 "tells what a fit means, why, and "
                                 "what to do about it.";
    ParameterReport remarked = Report();
    remarked.remarks = {sentence, "2. Short."};

    window.Show(remarked);

    QVERIFY(window.findChild<QGroupBox*>("picRemarks")->isVisible());
    QCOMPARE(window.findChild<QLabel*>("lblRemarks")->text(), "Remarks");
    auto* first = window.findChild<QLabel*>("lblRemark0");
    auto* second = window.findChild<QLabel*>("lblRemark1");
    QCOMPARE(first->text(), QString::fromStdString(sentence));
    QVERIFY(first->height() > second->height()); // two lines and one
    QCoreApplication::processEvents();
    QCOMPARE(first->visibleRegion().boundingRect(),
             first->rect()); // a scroll bar used to cover the last words
    QCOMPARE(second->visibleRegion().boundingRect(), second->rect());
    QVERIFY(first->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    QVERIFY(window.sizeHint().height() > without);
    QCOMPARE(window.findChild<QLabel*>("lblMPVal0")->text(), "5230.5");

    window.Show(Report()); // a fit that deserves none
    QVERIFY(!window.findChild<QGroupBox*>("picRemarks")->isVisible());
    QCOMPARE(window.sizeHint().height(), without);
}

void ViewsTest::ManyRemarksScrollAndTheFewOfTheNextFitDoNot()
{
    frmParams window;
    ParameterReport report = Report();
    for (int i = 0; i < 40; ++i)
        report.remarks.push_back("A remark.");
    window.Show(report);
    auto* area = window.findChild<QScrollArea*>();
    QVERIFY(area->height() < area->widget()->height());
    QVERIFY(window.sizeHint().height() < 700); // with its buttons on a screen of 768 lines

    report.remarks.resize(2);
    window.Show(report);
    QVERIFY(area->height() >= area->widget()->height());
    QVERIFY(window.findChild<QLabel*>("lblRemark2") == nullptr);
}

void ViewsTest::TheButtonsOfTheReportAskForIntervalsAndHideTheWindow()
{
    frmParams window;
    window.Show(Report());
    QSignalSpy asked(&window, &frmParams::confIntsRequested);
    auto* cis = window.findChild<QPushButton*>("cmdCIs");
    auto* close = window.findChild<QPushButton*>("cmdClose");
    QCOMPARE(cis->text(), "&Conf. Ints");
    QCOMPARE(close->text(), "&OK");

    cis->click();
    QCOMPARE(asked.count(), 1);
    QVERIFY(window.isVisible());
    close->click();

    QVERIFY(!window.isVisible());
}

void ViewsTest::ALabelOfTheReportIsSelectableAndCopied()
{
    frmParams window;
    window.Show(Report());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    for (const QLabel* label : window.findChildren<QLabel*>())
        QVERIFY2(label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse),
                 qPrintable(label->objectName()));
    auto* value = window.findChild<QLabel*>("lblMPVal0");

    value->setFocus();
    value->setSelection(0, 4);
    QTest::keyClick(value, Qt::Key_C, Qt::ControlModifier);

    QCOMPARE(QGuiApplication::clipboard()->text(), "5230");
    window.CopyReport();
    QVERIFY(QGuiApplication::clipboard()->text().contains("5230.5"));
}

QTEST_MAIN(ViewsTest)
#include "views_test.moc"
