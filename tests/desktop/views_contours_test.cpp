// SPDX-License-Identifier: GPL-3.0-or-later
// Contours: their lines, levels and edges, the marks and paths on them, and their window.
#include "ContourSamples.h"
#include "views/ContourLines.h"
#include "views/ContourPainter.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"
#include "views/frmGraph.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <qcustomplot.h>

#include <algorithm>
#include <cmath>

class ViewsContoursTest : public QObject
{
    Q_OBJECT

private slots:
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
};

// z = x + 2y on a grid of 3 by 3: the line z = 3 leads from (3, 0) to (0, 1.5).
void ViewsContoursTest::AContourOfAPlaneIsAStraightLine()
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
void ViewsContoursTest::AContourOfABowlIsOneClosedRing()
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
void ViewsContoursTest::ASaddleIsPartedByItsMiddle()
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

void ViewsContoursTest::NoContourLineClimbsThePlateau()
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
void ViewsContoursTest::TwentyLevelsCrowdTowardsTheLowestValue()
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
void ViewsContoursTest::TheRegionOfInvalidParametersEndsHalfway()
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
void ViewsContoursTest::TheEdgeOfTheInvalidRegionIsSmoothAndKeepsEveryPointOnItsSide()
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

void ViewsContoursTest::AnIslandOfValidParametersHasAnOutlineOfItsOwn()
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

void ViewsContoursTest::SomeLevelsAreWrittenOnTheirLinesApartFromOneAnother()
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

void ViewsContoursTest::TheObjectiveIsLinearBetweenGridPointsAndEmptyOnThePlateau()
{
    ContourSurface surface = Bowl();
    surface.z[6][6] = surface.plateau;

    QCOMPARE(ObjectiveAt(surface, 2.0, 3.0).value(), 0.0);
    QCOMPARE(ObjectiveAt(surface, 2.5, 3.0).value(), 0.5);  // between 0 and 1
    QCOMPARE(ObjectiveAt(surface, 6.0, 0.0).value(), 25.0); // the far corner
    QVERIFY(!ObjectiveAt(surface, 6.0, 6.0));
    QVERIFY(!ObjectiveAt(surface, 6.1, 3.0));
}

void ViewsContoursTest::AGridOfOnePointStillDraws()
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

void ViewsContoursTest::EachKindOfMarkHasItsOwnSymbolAndLegend()
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

void ViewsContoursTest::EachStartHasAPathOfItsOwnAndNoLineJoinsTwo()
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

void ViewsContoursTest::ALeapAcrossThePictureIsNoLine()
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

void ViewsContoursTest::AContourWindowClosedInMidPathAnswersFalse()
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

void ViewsContoursTest::TheContourPictureOutlivesTheFit()
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

void ViewsContoursTest::ASecondSurfaceReplacesTheFirst()
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

void ViewsContoursTest::AContourPictureHoldsPathAndMarks()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("contour.svg");

    QVERIFY(SaveContourPicture(Bowl(), {{1, 1, 2, 2}, {2, 2, 2, 3}}, {{ContourMark::Final, 2, 3}}, path));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray svg = file.readAll();
    QVERIFY(svg.contains("Final") && svg.contains("Objective"));
}

QTEST_MAIN(ViewsContoursTest)
#include "views_contours_test.moc"
