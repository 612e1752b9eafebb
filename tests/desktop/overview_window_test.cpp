// SPDX-License-Identifier: GPL-3.0-or-later
// The window of the overview: what opens, changes and closes it, zoom, saving and printing.
#include "AskProgram.h"
#include "OverviewSamples.h"
#include "base/VeltError.h"
#include "views/PageView.h"
#include "views/frmOverview.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPrinter>
#include <QRegularExpression>
#include <QTimer>

namespace
{
QString Flat(const QString& text)
{
    return text.simplified();
}

/// A fitted session and its overview.
struct Seen : Session {
    void Open()
    {
        Session::Open();
        Fit();
        Entry("mnuOverview")->trigger();
    }
    frmOverview* Window()
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* found = qobject_cast<frmOverview*>(widget))
                return found;
        return nullptr;
    }
    PageView& View() { return *Window()->findChild<PageView*>(); }
    void Wheel(int notches, QPointF at)
    {
        QWheelEvent event(at, View().viewport()->mapToGlobal(at), {}, QPoint(0, 120 * notches), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(View().viewport(), &event);
    }
    bool WholePageShows()
    {
        const QRectF page = View().mapFromScene(View().sceneRect()).boundingRect();
        return QRectF(View().viewport()->rect()).adjusted(-1, -1, 1, 1).contains(page) &&
               (page.width() > View().viewport()->width() - 12 ||
                page.height() > View().viewport()->height() - 12);
    }
};
} // namespace

class overview_window_test : public QObject
{
    Q_OBJECT

private slots:
    // The page
    void SevenGraphsAndTheReportStandOnOnePageWithRealText();

    // The window
    void TheMenuOpensThePageOfAllGraphsOfTheFitAndItsReport();
    void WithoutAFitThePageHasThePlotsAlone();
    void TheWindowOpensWithTheWholePageAndDrawsIt();
    void TheWheelZoomsAtTheMouseDraggingPansADoubleClickShowsAllAgain();
    void ThePageFollowsANewGraphAndNewLimitsAndKeepsItsZoom();
    void ATitleThatTheUserEditsIsOnThePage();
    void ClosingTheGraphsClosesThePage();
    void ANewFitClosesThePageOfTheOldOne();
    void TheDialogSavesThePage();
    void ACancelledPrinterPrintsNothingAndAFaultIsTold();
};

void overview_window_test::SevenGraphsAndTheReportStandOnOnePageWithRealText()
{
    const Folder folder;
    Seen session;
    session.Open();
    const Overview& page = session.Window()->Page();
    QVERIFY(page.graphs.size() >= 5);
    QVERIFY(overview_page::Save(page, folder.Path("fit.pdf")));
    const QString info = Ask("pdfinfo", {folder.Path("fit.pdf")});
    QVERIFY2(info.contains(QRegularExpression("Pages: +1\n")), qPrintable(info));
    QVERIFY2(info.contains("(A4)"), qPrintable(info));
    QVERIFY(info.contains("const25.txt"));
    const QString text = Flat(Ask("pdftotext", {"-layout", folder.Path("fit.pdf"), "-"}));
    QVERIFY(text.contains("const25.txt - Constant recruitment, 25 years"));
    QVERIFY(text.contains("CONSTANT RECRUITMENT, "));
    for (const std::string& title : session.window.Graphs().UserTitles())
        QVERIFY2(text.contains(QString::fromStdString(title)), title.c_str());
    QVERIFY(!page.report->estimates.empty());
    for (const auto& rows : {page.report->inputs, page.report->estimates})
        for (const ParameterReport::Row& row : rows) {
            QVERIFY2(text.contains(Flat(QString::fromStdString(row.name))), row.name.c_str());
            QVERIFY2(text.contains(QString::fromStdString(row.value)), row.value.c_str());
        }
}

void overview_window_test::TheMenuOpensThePageOfAllGraphsOfTheFitAndItsReport()
{
    Seen session;
    session.Session::Open();
    session.Fit();
    QVERIFY(!session.Window()->isVisible());
    session.Entry("mnuOverview")->trigger();
    QVERIFY(session.Window()->isVisible());
    QCOMPARE(session.Window()->windowTitle(), QString("Overview"));
    const Overview& page = session.Window()->Page();
    QCOMPARE(page.graphs.size(), session.window.Graphs().UserTitles().size());
    QCOMPARE(page.dataSet, std::string("const25.txt - Constant recruitment, 25 years"));
    QVERIFY(page.report && !page.report->estimates.empty());
    QCOMPARE(session.Menu("mnuGraph")->actions().last()->text(), QString("&Overview"));
}

void overview_window_test::WithoutAFitThePageHasThePlotsAlone()
{
    Seen session;
    session.Session::Open();
    session.user.Picks("Effort");
    session.Entry("mnuDataPlots")->trigger();
    session.Entry("mnuOverview")->trigger();
    QCOMPARE(session.Window()->Page().graphs.size(), std::size_t{1});
    QVERIFY(!session.Window()->Page().report);
}

void overview_window_test::TheWindowOpensWithTheWholePageAndDrawsIt()
{
    Seen session;
    session.Open();
    QVERIFY(session.WholePageShows());
    session.Window()->resize(1100, 500);
    QVERIFY(session.WholePageShows());
    const QImage shown = session.View().viewport()->grab().toImage();
    int observed = 0;
    for (int y = 0; y < shown.height(); ++y)
        for (int x = 0; x < shown.width(); ++x) {
            const QColor colour = shown.pixelColor(x, y);
            observed += colour.blue() > 150 && colour.red() < 80 ? 1 : 0; // near 0072B2
        }
    QVERIFY(observed > 20);
    QVERIFY(shown.pixelColor(2, shown.height() / 2) != QColor(Qt::white)); // the desk beside the page
}

void overview_window_test::TheWheelZoomsAtTheMouseDraggingPansADoubleClickShowsAllAgain()
{
    Seen session;
    session.Open();
    PageView& view = session.View();
    const double whole = view.Zoom();
    const QPointF mouse = view.viewport()->rect().center() + QPoint(40, 30);
    QTest::mouseMove(view.viewport(), mouse.toPoint());
    const QPointF under = view.mapToScene(mouse.toPoint());
    session.Wheel(8, mouse);
    QVERIFY(std::abs(view.Zoom() / whole - std::pow(1.25, 8)) < 1e-6);
    const QPointF after = view.mapToScene(mouse.toPoint());
    QVERIFY2(std::hypot(after.x() - under.x(), after.y() - under.y()) < 3.0, "the point stays at the mouse");

    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, mouse.toPoint());
    QTest::mouseMove(view.viewport(), mouse.toPoint() - QPoint(50, 20));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, mouse.toPoint() - QPoint(50, 20));
    const QPointF panned = view.mapToScene(mouse.toPoint());
    QVERIFY(panned.x() > after.x() + 1.0 && panned.y() > after.y() + 1.0);

    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, mouse.toPoint());
    QVERIFY(session.WholePageShows());
    session.Wheel(-5, mouse); // nothing is smaller than the whole
    QVERIFY(session.WholePageShows());
    session.Window()->findChild<QAction*>("actZoomIn")->trigger();
    QVERIFY(view.Zoom() > whole * 1.2);
    session.Window()->findChild<QAction*>("actWholePage")->trigger();
    QVERIFY(session.WholePageShows());
}

void overview_window_test::ThePageFollowsANewGraphAndNewLimitsAndKeepsItsZoom()
{
    Seen session;
    session.Open();
    session.Wheel(5, {50, 50});
    const double zoom = session.View().Zoom();
    const std::size_t before = session.Window()->Page().graphs.size();
    QVERIFY(session.Window()->Page().report->intervals.empty());
    session.user.onRange = [](RangeQuestion&) { return true; };
    session.Entry("mnuGenerateConfInts")->trigger();
    QCOMPARE(session.Window()->Page().graphs.size(), before + session.Histograms());
    QVERIFY(session.Histograms() > 0);
    QVERIFY(!session.Window()->Page().report->intervals.empty());
    QCOMPARE(session.View().Zoom(), zoom);
}

void overview_window_test::ATitleThatTheUserEditsIsOnThePage()
{
    Seen session;
    session.Open();
    const QImage before = session.View().viewport()->grab().toImage();
    session.window.EnableControls();
    QCOMPARE(session.View().viewport()->grab().toImage(), before);
    session.window.Graphs().At(0)->Graph().UserTitle("In my own words");
    session.window.EnableControls(); // what ends an edit calls it
    QVERIFY(session.View().viewport()->grab().toImage() != before);
}

void overview_window_test::ClosingTheGraphsClosesThePage()
{
    Seen session;
    session.Open();
    session.Entry("mnuCloseAll")->trigger();
    QVERIFY(!session.Window()->isVisible());
}

void overview_window_test::ANewFitClosesThePageOfTheOldOne()
{
    Seen session;
    session.Open();
    session.user.answers = {Answer::Yes};
    bool shownDuringTheFit = true;
    session.user.onInputParams = [&](InputParams&) {
        shownDuringTheFit = session.Window()->isVisible();
        return true;
    };
    session.Fit();
    QVERIFY(!shownDuringTheFit);
    QVERIFY(session.window.objMeth().MethDefined());
    session.Entry("mnuOverview")->trigger();
    session.user.answers = {Answer::No, Answer::Yes}; // do not save, clear the fit
    session.window.close();
    QVERIFY(!session.Window()->isVisible());
}

void overview_window_test::TheDialogSavesThePage()
{
    const Folder folder;
    frmOverview window;
    window.Show(Page(1));
    QTimer::singleShot(0, qApp, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->selectFile(folder.Path("page"));
        QMetaObject::invokeMethod(dialog, "accept");
    });
    window.findChild<QAction*>("actSaveAs")->trigger();
    QVERIFY(!PlaceOf(folder.Path("page.pdf"), "Subject1").isNull());
}

void overview_window_test::ACancelledPrinterPrintsNothingAndAFaultIsTold()
{
    frmOverview window;
    window.Show(Page(1));
    int asked = 0;
    window.PrinterChosenBy([&](QWidget*, const QString&) {
        ++asked;
        return std::unique_ptr<QPrinter>();
    });
    window.Print();
    QCOMPARE(asked, 1);
    window.PrinterChosenBy([](QWidget*, const QString&) -> std::unique_ptr<QPrinter> {
        throw PrinterFault("There is no paper.");
    });
    QString told;
    QTimer::singleShot(0, qApp, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        told = box->text();
        box->accept();
    });
    window.findChild<QAction*>("actPrint")->trigger();
    QVERIFY2(told.startsWith("Error ") && told.endsWith("There is no paper."), qPrintable(told));
}

QTEST_MAIN(overview_window_test)
#include "overview_window_test.moc"
