// SPDX-License-Identifier: GPL-3.0-or-later
// The report and the graphs of a fit on paper.
#include "ContourSamples.h"
#include "NextBox.h"
#include "Paper.h"
#include "Session.h"
#include "base/VeltError.h"
#include "views/PlotStyle.h"
#include "views/frmGraph.h"
#include "views/frmParams.h"

#include <QPushButton>
#include <QRegularExpression>

#include <cmath>

namespace
{
/// A plot of its own shape in a window.
struct GraphOnPaper {
    explicit GraphOnPaper(QSize size, GraphType type = GraphType::Line) : window(Graph("Yield of ling", type))
    {
        window.Graph().XTitle("Year");
        window.Graph().YTitle("Tonnes");
        window.Graph().YData2(std::vector<double>{1969, ModelGraph::InvalidData});
        window.Graph().OverlayLine(std::vector<double>{1970, 1971});
        window.Redraw();
        window.show();
        window.Plot().resize(size);
        window.PrinterChosenBy(paper.Choice());
    }
    void Print() { window.PrintGraph(); }

    Paper paper;
    frmModelGraph window;
};
} // namespace

class PrintingGraphsTest : public QObject
{
    Q_OBJECT

private slots:
    // The report
    void TheButtonOfTheReportPrintsItWithoutLimits();
    void LimitsArePrintedUnderTheEstimates();
    void RemarksArePrintedUnderTheEstimates();
    void LabelsAndValuesStandBelowOneAnother();

    // Graphs
    void AGraphFillsTheWidthOfOnePageInItsShapeWithRealText();
    void ATallGraphFillsTheHeight();
    void TheLettersOfALargeWindowAreNoSmallerOnPaper();
    void APlotTooNarrowForItsLettersIsPrintedSmaller();
    void PrintingLeavesTheWindowAsItWas();
    void AContourSurfaceIsPrintedToo();
    void ACancelledPrinterPrintsNoGraph();
    void AGraphThatCannotBePrintedIsToldWithNumberAndText();
};

void PrintingGraphsTest::TheButtonOfTheReportPrintsItWithoutLimits()
{
    Session session;
    session.Open();
    session.Fit();
    Paper paper;
    session.window.Printer().ChosenBy(paper.Choice());
    auto* button = session.Report()->findChild<QPushButton*>("cmdPrint");
    QCOMPARE(button->text(), QString("&Print"));

    button->click();

    QCOMPARE(paper.m_titles, QStringList{"Parameter Estimates"});
    const QString text = paper.Text();
    for (const char* words : {"const25.txt", "Constant recruitment, 25 years", "CONSTANT RECRUITMENT",
                              "R Sqr", "Input Parameters", "Nat. Mortality", "Init. Proportion",
                              "Model Parameters", "R. Yield", "Final Population"})
        QVERIFY2(text.contains(words), words);
    QVERIFY(!text.contains("Confidence Intervals"));
    QVERIFY(Ask("pdffonts", {paper.Path()}).contains("Bold"));
    QCOMPARE(paper.Pages().size(), std::size_t{1});
}

void PrintingGraphsTest::LimitsArePrintedUnderTheEstimates()
{
    Session session;
    session.Open();
    session.Fit();
    clsMethManager& fits = session.window.objMeth();
    fits.NumBootStraps(20);
    fits.GenerateBootStraps();
    fits.CILow(0.1F);
    fits.CIHigh(0.9F);
    Paper paper;
    session.window.Printer().ChosenBy(paper.Choice());

    session.Report()->findChild<QPushButton*>("cmdPrint")->click();

    const QString text = paper.Text();
    // How many blanks stand for a gap hangs on the widths of the font.
    const qsizetype levels = text.indexOf(QRegularExpression("Confidence Intervals +0\\.1 - 0\\.9\n"));
    QVERIFY(levels > text.indexOf("Model Parameters"));
}

void PrintingGraphsTest::RemarksArePrintedUnderTheEstimates()
{
    Session session;
    session.Open();
    session.user.ChoosesFit("NO RECRUITMENT", fit_op::kLog); // a stock with recruits has no such fit
    session.Entry("mnuNewModel")->trigger();
    QVERIFY(!session.window.objMeth().Remarks().empty());
    Paper paper;
    session.window.Printer().ChosenBy(paper.Choice());

    session.Report()->findChild<QPushButton*>("cmdPrint")->click();

    const QString text = paper.Text();
    QVERIFY(text.indexOf("Final Population") > 0);
    QVERIFY(text.indexOf("Remarks") > text.indexOf("Final Population"));
    const QString first = QString::fromStdString(session.window.objMeth().Remarks().front().text);
    QVERIFY2(text.simplified().contains(first), qPrintable(text));
}

void PrintingGraphsTest::LabelsAndValuesStandBelowOneAnother()
{
    Session session;
    session.Open();
    session.Fit();
    Paper paper;
    session.window.Printer().ChosenBy(paper.Choice());
    session.Report()->findChild<QPushButton*>("cmdPrint")->click();
    int rows = 0;
    const Page page = paper.Pages()[0];
    for (const Line& line : page) {
        if (line.size() < 2 || !QStringList{"K", "q", "Final"}.contains(line[0].text))
            continue;
        ++rows;
        const double character = page[0][0].place.width() / static_cast<double>(page[0][0].text.size());
        const double stop = page[0][0].place.left() + static_cast<double>(IPrintout::kTabStop) * character;
        QVERIFY(std::abs(line.back().place.left() - stop) < 1.0);
    }
    QCOMPARE(rows, 3);
}

void PrintingGraphsTest::AGraphFillsTheWidthOfOnePageInItsShapeWithRealText()
{
    GraphOnPaper graph(QSize(800, 500));
    graph.Print();
    QCOMPARE(graph.paper.Pages().size(), std::size_t{1});
    for (const char* word : {"Yield", "ling", "Year", "Tonnes"})
        QVERIFY2(!graph.paper.PlaceOf(word).isEmpty(), word);
    QCOMPARE(Ask("pdfimages", {"-list", graph.paper.Path()}).count('\n'),
             2); // nothing below the table's head

    // 170 mm wide between the margins, and 5/8 of that high, from the top of the page on; the letters reach
    // the sides up to the room that the plot leaves around itself.
    const double width = 170.0 * kPointsPerMillimetre;
    const QRectF written =
        graph.paper.Written().translated(-20.0 * kPointsPerMillimetre, -15.0 * kPointsPerMillimetre);
    QVERIFY2(written.left() >= 0.0 && written.left() < 0.05 * width,
             qPrintable(QString::number(written.left())));
    QVERIFY(written.right() > 0.92 * width && written.right() <= width);
    QVERIFY(written.top() >= 0.0);
    QVERIFY(written.bottom() > 0.9 * width * 5.0 / 8.0 && written.bottom() <= width * 5.0 / 8.0);
}

void PrintingGraphsTest::ATallGraphFillsTheHeight()
{
    GraphOnPaper graph(QSize(400, 800));
    graph.Print();
    QCOMPARE(graph.paper.Pages().size(), std::size_t{1});
    const double height = 267.0 * kPointsPerMillimetre;
    const QRectF written =
        graph.paper.Written().translated(-20.0 * kPointsPerMillimetre, -15.0 * kPointsPerMillimetre);
    QVERIFY(written.bottom() > 0.9 * height && written.bottom() <= height);
    QVERIFY(written.right() <= height / 2.0);
}

void PrintingGraphsTest::TheLettersOfALargeWindowAreNoSmallerOnPaper()
{
    GraphOnPaper small(QSize(600, 400));
    GraphOnPaper large(QSize(1800, 1200));
    small.Print();
    large.Print();
    const double height = small.paper.PlaceOf("Tonnes").width(); // it stands upright
    QVERIFY(height >= 9.0);
    QVERIFY(std::abs(large.paper.PlaceOf("Tonnes").width() - height) < 0.1);
}

void PrintingGraphsTest::APlotTooNarrowForItsLettersIsPrintedSmaller()
{
    GraphOnPaper usual(QSize(800, 500));
    GraphOnPaper narrow(QSize(300, 3000)); // a tenth of the height of the page, 76 points
    usual.Print();
    narrow.Print();
    QVERIFY(narrow.paper.PlaceOf("Tonnes").width() < 0.5 * usual.paper.PlaceOf("Tonnes").width());
    QVERIFY(narrow.paper.Written().width() <= 26.7 * kPointsPerMillimetre);
    QVERIFY(narrow.paper.Written().height() > 0.9 * 267.0 * kPointsPerMillimetre);
}

// The legend of a graph of a fit stands in one row in a wide window and in more on small paper.
void PrintingGraphsTest::PrintingLeavesTheWindowAsItWas()
{
    GraphOnPaper graph(QSize(1800, 900), GraphType::PointsAndLine);
    QCustomPlot& plot = graph.window.Plot();
    graph.window.PrinterChosenBy(graph.paper.Choice(QPageSize::A6));
    plot_style::FitLegend(plot, plot.width());
    const QImage before = plot.toPixmap(plot.width(), plot.height()).toImage();
    const QCPRange range = plot.xAxis->range();
    graph.Print();
    QCOMPARE(graph.paper.Text().count("Observed"), 2);
    QVERIFY(graph.paper.PlaceOf("Expected").top() > graph.paper.PlaceOf("Observed").bottom());
    QCOMPARE(plot.xAxis->range(), range);
    QCOMPARE(plot.toPixmap(plot.width(), plot.height()).toImage(), before);
}

void PrintingGraphsTest::AContourSurfaceIsPrintedToo()
{
    Paper paper;
    auto* window = new frmGraph; // deletes itself when closed
    ContourSurface surface = Bowl();
    surface.xName = "Stock";
    surface.yName = "Growth";
    window->Surface(surface);
    window->show();
    window->PrinterChosenBy(paper.Choice());
    window->findChild<QAction*>("PrintGraph")->trigger();
    QCOMPARE(paper.m_titles, QStringList{"Minimisation"});
    QVERIFY(!paper.PlaceOf("Stock").isEmpty());
    QVERIFY(!paper.PlaceOf("Growth").isEmpty());
    window->close();
}

void PrintingGraphsTest::ACancelledPrinterPrintsNoGraph()
{
    GraphOnPaper graph(QSize(600, 400));
    graph.window.PrinterChosenBy([](QWidget*, const QString&) { return std::unique_ptr<QPrinter>(); });
    graph.Print();
    QVERIFY(!graph.paper.Exists());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void PrintingGraphsTest::AGraphThatCannotBePrintedIsToldWithNumberAndText()
{
    GraphOnPaper graph(QSize(600, 400));
    graph.window.PrinterChosenBy([](QWidget*, const QString&) -> std::unique_ptr<QPrinter> {
        throw PrinterFault("There is no printer.");
    });
    QCOMPARE(AnswerTheNextBox([&] { graph.Print(); }).words, QString("Error 57 There is no printer."));

    graph.window.PrinterChosenBy([](QWidget*, const QString& title) {
        auto pdf = NewPrinter(title);
        pdf->setOutputFormat(QPrinter::PdfFormat);
        pdf->setOutputFileName("/there/is/no/such/folder/paper.pdf");
        return pdf;
    });
    const QString words = AnswerTheNextBox([&] { graph.Print(); }).words;
    QVERIFY2(words.startsWith("Error 57 The printer did not take the graph."), qPrintable(words));
}

QTEST_MAIN(PrintingGraphsTest)
#include "printing_graphs_test.moc"
