// SPDX-License-Identifier: GPL-3.0-or-later
// The windows of models' graphs: the point under the cursor, zoom, menu, copies; and the pictures in files.
#include "GraphSamples.h"
#include "NextBox.h"
#include "base/VeltError.h"
#include "views/GraphPainter.h"
#include "views/PlotPicture.h"
#include "views/frmModelGraph.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <qcustomplot.h>

class ViewsWindowsTest : public QObject
{
    Q_OBJECT

private slots:
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
};

void ViewsWindowsTest::APngHasTwiceTheDots()
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

void ViewsWindowsTest::AnSvgHoldsRealText()
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

void ViewsWindowsTest::APdfIsWritten()
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

void ViewsWindowsTest::AnUnknownEndingOrAMissingFolderWritesNothing()
{
    QTemporaryDir folder;

    QVERIFY(!SaveGraphPicture(CpueGraph(5), folder.filePath("cpue.bmp")));
    QVERIFY(!SaveGraphPicture(CpueGraph(5), folder.filePath("cpue")));
    QVERIFY_THROWS_EXCEPTION(VeltError, SaveGraphPicture(CpueGraph(5), folder.filePath("missing/cpue.png")));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void ViewsWindowsTest::TheGraphWindowTellsThePointUnderTheCursor()
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

// Four classes from 1 on, each 1 wide.
void ViewsWindowsTest::TheHistogramTellsTheClassUnderTheCursor()
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

void ViewsWindowsTest::ADoubleClickShowsAllAgain()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QCPRange before = window.Plot().xAxis->range();

    window.Plot().xAxis->setRange(1970.0, 1971.0);
    QTest::mouseDClick(&window.Plot(), Qt::LeftButton);

    QCOMPARE(window.Plot().xAxis->range(), before);
}

void ViewsWindowsTest::ATogglingKeepsTheZoomAndAResetShowsWhatIsThereNow()
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

void ViewsWindowsTest::ClosingAGraphWindowHidesIt()
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
void Give(frmModelGraph& window, const char* command)
{
    window.findChild<QAction*>(QString::fromLatin1(command))->trigger();
}
} // namespace

void ViewsWindowsTest::TheRightButtonsMenuHoldsZoomPictureAndData()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    QCOMPARE(window.Plot().contextMenuPolicy(), Qt::ActionsContextMenu);
    QStringList entries;
    for (const QAction* action : window.Plot().actions())
        entries += action->text();
    QCOMPARE(entries, QStringList({"&Edit...", "&Print...", "&Copy Graph", "&Save Picture As...",
                                   "&Reset Zoom", "Copy &Data"}));
}

void ViewsWindowsTest::TheCopiedPictureHasTwiceTheDotsOfTheWindow()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(10)));
    window.show();
    QCOMPARE(AnswerTheNextBox([&] { Give(window, "CopyGraph"); }).words,
             QString("Graph Copied to Clipboard"));
    QCOMPARE(QGuiApplication::clipboard()->image().size(), window.Plot().size() * 2);
}

// Three years from 1967: in the fit, out of the fit, hidden. Observed 20 - 10 t / 3, expected 0.5 more.
void ViewsWindowsTest::TheCopiedDataOfAFitAreTimeObservedAndExpected()
{
    frmModelGraph window(std::make_shared<ModelGraph>(CpueGraph(3)));
    QCOMPARE(AnswerTheNextBox([&] { Give(window, "CopyData"); }).words, QString("Data Copied to Clipboard"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("Time\tObs CPUE\tExp CPUE\r\n"
                                                           "1967\t20\t20.5\r\n"
                                                           "1968\t16.6666666666667\t17.1666666666667\r\n"
                                                           "1969\t-999.999\t-999.999\r\n"));
}

void ViewsWindowsTest::TheCopiedDataOfAnyOtherGraphAreItsTwoAxes()
{
    ModelGraph graph = CpueGraph(2);
    graph.Type(GraphType::Line);
    QCOMPARE(graph.CopiedText(), std::string("Time\tCPUE\r\n1967\t20\r\n1968\t-999.999\r\n"));
}

void ViewsWindowsTest::ThePictureIsSavedUnderTheGraphsTitle()
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

QTEST_MAIN(ViewsWindowsTest)
#include "views_windows_test.moc"
