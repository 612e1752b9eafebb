// SPDX-License-Identifier: GPL-3.0-or-later
// Where the windows of graphs stand, on a screen of 2560 by 1440 pixels.
#include "Session.h"
#include "shell/TileWindows.h"
#include "views/frmParams.h"

#include <QScreen>
#include <QTimer>

namespace
{
constexpr QSize kLeast(350, 250);
constexpr QSize kMost(700, 500);

std::vector<QRect> Tiles(QRect screen, std::vector<QRect> taken, int count)
{
    return TileWindows({.screen = screen, .taken = std::move(taken)}, count, kLeast, kMost);
}

/// Nothing overlaps, nothing is covered, all is inside and large enough, and the order is that of reading.
QString FaultOf(const std::vector<QRect>& places, const QRect& screen, const std::vector<QRect>& taken)
{
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (!screen.contains(places[i]))
            return QString("window %1 sticks out").arg(i);
        if (places[i].width() < kLeast.width() || places[i].height() < kLeast.height())
            return QString("window %1 is too small").arg(i);
        for (const QRect& kept : taken)
            if (kept.intersects(places[i]))
                return QString("window %1 covers what is to be seen").arg(i);
        for (std::size_t j = 0; j < i; ++j)
            if (places[j].intersects(places[i]))
                return QString("windows %1 and %2 overlap").arg(j).arg(i);
        if (i > 0 &&
            std::pair(places[i - 1].y(), places[i - 1].x()) >= std::pair(places[i].y(), places[i].x()))
            return QString("window %1 stands before its neighbour").arg(i);
    }
    return {};
}

/// A session that runs a fit whose windows are looked at.
struct Desk : Session {
    Desk() { window.setGeometry(10, 30, 1000, 700); }
    std::vector<QWidget*> Windows()
    {
        std::vector<QWidget*> windows;
        for (std::size_t i = 0; i < window.Graphs().UserTitles().size(); ++i)
            windows.push_back(window.Graphs().WindowAt(i));
        return windows;
    }
    std::vector<QRect> Frames()
    {
        std::vector<QRect> frames;
        for (const QWidget* each : Windows())
            frames.push_back(each->frameGeometry());
        return frames;
    }
    /// The fit of a production model to data with mean weights, which has seven graphs.
    void FitSeven()
    {
        QFile with(m_folder.filePath("schaefer30.txt"));
        QFile without(QString(VELT_TEST_SAMPLES) + "/expected/schaefer30.txt");
        QVERIFY(without.open(QIODevice::ReadOnly) && with.open(QIODevice::WriteOnly));
        with.write(without.readLine());
        with.write(without.readLine().trimmed() + " Mean\n");
        while (!without.atEnd())
            with.write(without.readLine().trimmed() + " 2.5\n");
        with.close();
        user.onAsciiWizard = [](AsciiWizard& wizard) {
            wizard.ChooseTiming(1);
            wizard.Next();
            wizard.Assign(2, columns::Effort);
            wizard.Assign(3, columns::CatchWt);
            wizard.Assign(4, columns::TotCatchWt);
            wizard.Assign(5, columns::MeanWt);
            wizard.Finish();
            return true;
        };
        window.OpenPath(with.fileName());
        user.Picks("PROD. MODEL(SCHAEFER)");
        Entry("mnuNewModel")->trigger();
        QCOMPARE(window.Graphs().UserTitles().size(), std::size_t{7});
    }

private:
    QTemporaryDir m_folder;
};

bool AnyOverlap(const std::vector<QRect>& rects)
{
    for (std::size_t i = 0; i < rects.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (rects[i].intersects(rects[j]))
                return true;
    return false;
}
} // namespace

class windows_test : public QObject
{
    Q_OBJECT

private slots:
    // The rule, on screens worked by hand
    void WindowsFillTheRowsOfAFreeScreen();
    void OneWindowMoreThanARowHoldsBeginsTheNextRow();
    void BesideAMainWindowOf900SevenGraphsStandInTheCorner();
    void AScreenOf1366By768HasNoRoomForSevenBesideTheMainWindow();
    void OnALargeScreenTheWindowsAreNoLargerThanWanted();
    void ATinyScreenHasNoRoom();
    void AWindowThatExactlyFitsStandsAndOnePixelLessDoesNot();
    void TheReportIsLeftInSightToo();
    void WhateverTheScreenNothingOverlapsOrSticksOut();
    void NoWindowsNeedNoPlaces();

    // Windows
    void TheGraphsOfAFitOpenSideBySideAndCoverNeitherTheTableNorTheReport();
    void WithoutRoomTheGraphsOfAFitStandAsACascade();
    void AGraphThatComesLaterTakesAFreePlaceAndTheOthersStay();
    void AWindowThatTheUserMovedStaysWhereItIs();
    void AWindowThatTheUserMovesWhileTheFitRunsIsNotPutIntoTheRows();
    void TheMenuHasItsCommandsBehindTheListOfWindows();
    void TileOrdersWindowsThatTheUserMoved();
    void TileWithoutRoomCascadesAndSaysWhy();
    void CascadeGivesTheWindowsTheirUsualSizeOneBehindTheOther();
    void AClosedWindowTakesNoPlace();
    void CloseAllClosesEveryWindowAndDisablesTheMenu();
};

// 1050 x 500 hold 3 x 2 of 350 x 250 and no more.
void windows_test::WindowsFillTheRowsOfAFreeScreen()
{
    const std::vector<QRect> wanted{{0, 0, 350, 250},   {350, 0, 350, 250},   {700, 0, 350, 250},
                                    {0, 250, 350, 250}, {350, 250, 350, 250}, {700, 250, 350, 250}};
    QVERIFY(Tiles({0, 0, 1050, 500}, {}, 6) == wanted);
    QVERIFY(Tiles({0, 0, 1050, 500}, {}, 7).empty());
}

// 1100 x 500 hold three in a row of 366 (a third of the width), so the fourth begins the next row. Two in a
// row would be wider, but their three rows of 166 are too low.
void windows_test::OneWindowMoreThanARowHoldsBeginsTheNextRow()
{
    const std::vector<QRect> wanted{
        {0, 0, 366, 250}, {366, 0, 366, 250}, {732, 0, 366, 250}, {0, 250, 366, 250}, {366, 250, 366, 250}};
    QVERIFY(Tiles({0, 0, 1100, 500}, {}, 5) == wanted);
}

// Right of the main window 1020 x 1040 are free: 2 x 4 of 510 x 260, 1.04 times the least height. With the
// block below it, 900 x 340, the rows may be higher: 2 x 3 of 510 x 346 on the right and one below, 1.36
// times the least height (340).
void windows_test::BesideAMainWindowOf900SevenGraphsStandInTheCorner()
{
    const QRect screen(0, 0, 1920, 1040);
    const QRect main(0, 0, 900, 700);
    const std::vector<QRect> places = Tiles(screen, {main}, 7);
    QCOMPARE(places.size(), std::size_t{7});
    QCOMPARE(FaultOf(places, screen, {main}), QString());
    for (const QRect& place : places)
        QVERIFY(place.height() >= 340);
}

// A main window of 1000 x 680 leaves 366 x 728 on the right (2 windows) and nothing below.
void windows_test::AScreenOf1366By768HasNoRoomForSevenBesideTheMainWindow()
{
    const QRect screen(0, 0, 1366, 728);
    const QRect main(0, 0, 1000, 680);
    QVERIFY(Tiles(screen, {main}, 7).empty());
    QVERIFY(Tiles(screen, {main}, 3).empty());
    const std::vector<QRect> wanted{{1000, 0, 366, 364}, {1000, 364, 366, 364}};
    QVERIFY(Tiles(screen, {main}, 2) == wanted);
}

// Right of the main window stand 1560 x 1400: two columns of 700 and two rows of 500 for four windows.
void windows_test::OnALargeScreenTheWindowsAreNoLargerThanWanted()
{
    const QRect main(0, 0, 1000, 700);
    const std::vector<QRect> wanted{
        {1000, 0, 700, 500}, {1700, 0, 700, 500}, {1000, 500, 700, 500}, {1700, 500, 700, 500}};
    QVERIFY(Tiles({0, 0, 2560, 1400}, {main}, 4) == wanted);
}

void windows_test::ATinyScreenHasNoRoom()
{
    QVERIFY(Tiles({0, 0, 320, 240}, {}, 1).empty());
    QVERIFY(Tiles({0, 0, 800, 600}, {{-5, -5, 2000, 2000}}, 1).empty()); // covered whole
    QVERIFY(Tiles({}, {}, 1).empty());
}

void windows_test::AWindowThatExactlyFitsStandsAndOnePixelLessDoesNot()
{
    QVERIFY(Tiles({7, 9, 350, 250}, {}, 1) == std::vector<QRect>{QRect(7, 9, 350, 250)});
    QVERIFY(Tiles({7, 9, 349, 250}, {}, 1).empty());
    QVERIFY(Tiles({7, 9, 350, 249}, {}, 1).empty());
}

// Between them 700 x 500 are left, two beside one another; below, 1400 x 250 hold four.
void windows_test::TheReportIsLeftInSightToo()
{
    const QRect screen(0, 0, 1400, 750);
    const std::vector<QRect> taken{{0, 0, 350, 500}, {1050, 0, 350, 500}};
    QVERIFY(Tiles(screen, taken, 9).empty());
    const std::vector<QRect> places = Tiles(screen, taken, 8);
    QCOMPARE(places.size(), std::size_t{8});
    QCOMPARE(FaultOf(places, screen, taken), QString());
}

void windows_test::WhateverTheScreenNothingOverlapsOrSticksOut()
{
    int tiled = 0;
    for (const QSize size : {QSize(1366, 768), QSize(1920, 1080), QSize(2560, 1440), QSize(3840, 2160)})
        for (const QPoint corner : {QPoint(0, 0), QPoint(-1920, 24)})
            for (const QPoint at : {QPoint(0, 0), QPoint(300, 100), QPoint(-40, 400), QPoint(900, 30)})
                for (const bool withReport : {false, true})
                    for (int count = 1; count <= 12; ++count) {
                        const QRect screen(corner, size);
                        std::vector<QRect> taken{QRect(corner + at, QSize(900, 640))};
                        if (withReport)
                            taken.emplace_back(screen.right() - 330, screen.top() + 20, 320, 400);
                        const std::vector<QRect> places = Tiles(screen, taken, count);
                        if (places.empty())
                            continue;
                        ++tiled;
                        QCOMPARE(places.size(), static_cast<std::size_t>(count));
                        QCOMPARE(FaultOf(places, screen, taken), QString());
                    }
    QVERIFY(tiled > 200);
}

void windows_test::NoWindowsNeedNoPlaces()
{
    QVERIFY(Tiles({0, 0, 1000, 1000}, {}, 0).empty());
}

void windows_test::TheGraphsOfAFitOpenSideBySideAndCoverNeitherTheTableNorTheReport()
{
    Desk desk;
    desk.FitSeven();
    std::vector<QRect> frames = desk.Frames();
    QVERIFY(desk.Report()->isVisible());
    frames.push_back(desk.window.frameGeometry());
    frames.push_back(desk.Report()->frameGeometry());
    QVERIFY(!AnyOverlap(frames));
    for (const QRect& frame : frames)
        QVERIFY(desk.window.screen()->availableGeometry().contains(frame));
}

void windows_test::WithoutRoomTheGraphsOfAFitStandAsACascade()
{
    Desk desk;
    desk.window.setGeometry(desk.window.screen()->availableGeometry());
    desk.FitSeven();
    const std::vector<QRect> frames = desk.Frames();
    for (std::size_t i = 1; i < frames.size(); ++i) {
        QVERIFY(frames[i].left() > frames[i - 1].left() && frames[i].top() > frames[i - 1].top());
        QCOMPARE(frames[i].size(), frames[0].size());
    }
}

void windows_test::AGraphThatComesLaterTakesAFreePlaceAndTheOthersStay()
{
    Desk desk;
    desk.Open();
    desk.user.Picks("Effort");
    desk.Entry("mnuDataPlots")->trigger();
    const QRect before = desk.Frames().at(0);
    desk.user.Picks("Tot. Catch Nums");
    desk.Entry("mnuDataPlots")->trigger();
    QCOMPARE(desk.Frames().size(), std::size_t{2});
    QCOMPARE(desk.Frames().at(0), before);
    QVERIFY(!desk.Frames().at(1).intersects(before));
    QVERIFY(!desk.Frames().at(1).intersects(desk.window.frameGeometry()));
}

void windows_test::AWindowThatTheUserMovedStaysWhereItIs()
{
    Desk desk;
    desk.Open();
    desk.user.Picks("Effort");
    desk.Entry("mnuDataPlots")->trigger();
    desk.Windows().at(0)->move(300, 300);
    desk.user.Picks("Tot. Catch Nums");
    desk.Entry("mnuDataPlots")->trigger();
    QCOMPARE(desk.Windows().at(0)->pos(), QPoint(300, 300));
    QVERIFY(!desk.Frames().at(1).intersects(desk.Frames().at(0)));
}

void windows_test::AWindowThatTheUserMovesWhileTheFitRunsIsNotPutIntoTheRows()
{
    Desk desk;
    QTimer hand;
    QObject::connect(&hand, &QTimer::timeout, &desk.window, [&] {
        if (!desk.Windows().empty()) {
            desk.Windows().front()->move(1500, 900);
            hand.stop();
        }
    });
    hand.start();
    desk.FitSeven();
    QCOMPARE(desk.Windows().front()->pos(), QPoint(1500, 900));
    QVERIFY(!AnyOverlap(desk.Frames()));
}

void windows_test::TheMenuHasItsCommandsBehindTheListOfWindows()
{
    Desk desk;
    desk.window.AddModelGraph(Graph("A"));
    desk.window.AddModelGraph(Graph("B"));
    desk.window.EnableControls(); // the list is made anew, the commands stay
    QStringList entries;
    for (const QAction* action : desk.Menu("mnuGraph")->actions())
        entries += action->isSeparator() ? QString("-") : action->text();
    QCOMPARE(entries, (QStringList{"A", "B", "-", "&Tile", "C&ascade", "Close A&ll", "&Overview"}));
}

void windows_test::TileOrdersWindowsThatTheUserMoved()
{
    Desk desk;
    desk.FitSeven();
    const std::vector<QRect> ordered = desk.Frames();
    for (QWidget* window : desk.Windows())
        window->setGeometry(200, 200, 500, 400);
    desk.Entry("mnuTile")->trigger();
    QVERIFY(desk.Frames() == ordered);
}

void windows_test::TileWithoutRoomCascadesAndSaysWhy()
{
    Desk desk;
    desk.FitSeven();
    desk.window.setGeometry(desk.window.screen()->availableGeometry());
    desk.Entry("mnuTile")->trigger();
    QVERIFY(desk.Panel("Status").contains("no room"));
    QVERIFY(desk.Frames().at(1).top() > desk.Frames().at(0).top());
    QVERIFY(desk.Frames().at(1).intersects(desk.Frames().at(0)));
    desk.window.setGeometry(10, 30, 1000, 700);
    desk.Entry("mnuTile")->trigger();
    QVERIFY(!AnyOverlap(desk.Frames()));
    QCOMPARE(desk.Panel("Status"), QString("Ready..."));
}

void windows_test::CascadeGivesTheWindowsTheirUsualSizeOneBehindTheOther()
{
    Desk desk;
    desk.window.AddModelGraph(Graph("A"));
    const QSize usual = desk.Windows().at(0)->size();
    desk.FitSeven();
    desk.Entry("mnuTile")->trigger();
    desk.Entry("mnuCascade")->trigger();
    const std::vector<QRect> frames = desk.Frames();
    for (std::size_t i = 0; i < frames.size(); ++i) {
        QCOMPARE(desk.Windows().at(i)->size(), usual);
        if (i > 0)
            QVERIFY(frames[i].left() > frames[i - 1].left() && frames[i].top() > frames[i - 1].top());
    }
}

void windows_test::AClosedWindowTakesNoPlace()
{
    Desk desk;
    desk.FitSeven();
    QWidget* closed = desk.Windows().at(2);
    closed->close();
    desk.Entry("mnuTile")->trigger();
    QVERIFY(!closed->isVisible());
    std::vector<QRect> frames = desk.Frames();
    frames.erase(frames.begin() + 2);
    QVERIFY(!AnyOverlap(frames));
}

void windows_test::CloseAllClosesEveryWindowAndDisablesTheMenu()
{
    Desk desk;
    desk.FitSeven();
    const QPointer<QWidget> first = desk.Windows().at(0);
    desk.Entry("mnuCloseAll")->trigger();
    QVERIFY(desk.window.Graphs().Empty());
    QVERIFY(!first);
    QVERIFY(!desk.Menu("mnuGraph")->isEnabled());
    QVERIFY(desk.window.objMeth().MethDefined()); // the fit itself stays
}

/// On a screen large enough for seven graphs; the one that tests have otherwise is not.
int main(int argc, char** argv)
{
    const QTemporaryDir folder;
    QFile screens(folder.filePath("screens.json"));
    if (!screens.open(QIODevice::WriteOnly))
        return 1;
    screens.write(R"({"screens": [{"name": "large", "x": 0, "y": 0, "width": 2560, "height": 1440,
                     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    const QApplication application(argc, argv);
    windows_test test;
    return QTest::qExec(&test, argc, argv);
}

#include "windows_test.moc"
