// SPDX-License-Identifier: GPL-3.0-or-later
// What comes out on paper: documents are printed to files, and their pages are read back.
#include "AskProgram.h"
#include "Session.h"
#include "base/VeltError.h"
#include "views/DesktopPrinter.h"
#include "views/PlotStyle.h"
#include "views/frmGraph.h"
#include "views/frmParams.h"

#include <QFile>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>

#include <cmath>

namespace
{
constexpr double kPointsPerMillimetre = 72.0 / 25.4;
constexpr int kField = 16;

/// A word on a page and where it stands, in points from the top left corner of the paper.
struct Word {
    QString text;
    QRectF place;
};

using Line = std::vector<Word>;
using Page = std::vector<Line>;

QString TextOf(const Line& line)
{
    QStringList words;
    for (const Word& word : line)
        words += word.text;
    return words.join(' ');
}

/// A document in a file of the test's own.
class Paper
{
public:
    QString Path() const { return m_folder.filePath("paper.pdf"); }
    bool Exists() const { return QFile::exists(Path()); }

    /// Chooses this file as the printer; A4 upright unless told otherwise.
    PrinterChoice Choice(QPageSize::PageSizeId size = QPageSize::A4,
                         QPageLayout::Orientation orientation = QPageLayout::Portrait)
    {
        return [=, this](QWidget*, const QString& title) {
            m_titles += title;
            auto printer = NewPrinter(title);
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setPageSize(QPageSize(size));
            printer->setPageOrientation(orientation);
            printer->setOutputFileName(Path());
            return printer;
        };
    }

    QString Text() const { return Ask("pdftotext", {"-layout", Path(), "-"}); }

    /// The lines of each page; empty ones cannot be seen.
    std::vector<Page> Pages() const
    {
        QStringList texts = Ask("pdftotext", {"-bbox", Path(), "-"}).split("<page ");
        texts.removeFirst(); // what stands before the first page
        std::vector<Page> pages;
        for (const QString& text : texts)
            pages.push_back(LinesIn(text));
        return pages;
    }
    /// Around all words.
    QRectF Written() const
    {
        QRectF all;
        for (const Word& word : Words())
            all |= word.place;
        return all;
    }
    QRectF PlaceOf(const QString& text) const
    {
        for (const Word& word : Words())
            if (word.text == text)
                return word.place;
        return {};
    }

    QStringList m_titles; ///< of the documents

private:
    static Page LinesIn(const QString& text)
    {
        static const QRegularExpression word(
            "<word xMin=\"(.+)\" yMin=\"(.+)\" xMax=\"(.+)\" yMax=\"(.+)\">(.*)</word>");
        Line words;
        for (auto at = word.globalMatch(text); at.hasNext();) {
            const auto match = at.next();
            const QPointF from(match.captured(1).toDouble(), match.captured(2).toDouble());
            const QPointF to(match.captured(3).toDouble(), match.captured(4).toDouble());
            words.push_back({match.captured(5), QRectF(from, to)});
        }
        std::ranges::sort(words, {}, [](const Word& w) { // the program gives columns one after another
            return std::pair(std::lround(w.place.top()), w.place.left());
        });
        Page page;
        for (const Word& each : words) {
            if (page.empty() || each.place.top() - page.back().front().place.top() > 0.5)
                page.emplace_back();
            page.back().push_back(each);
        }
        return page;
    }
    std::vector<Word> Words() const
    {
        std::vector<Word> words;
        for (const Page& page : Pages())
            for (const Line& line : page)
                words.insert(words.end(), line.begin(), line.end());
        return words;
    }

    QTemporaryDir m_folder;
};

/// Answers the next dialog that opens and keeps what it said.
struct NextDialog {
    explicit NextDialog(QString& words)
    {
        QTimer::singleShot(0, qApp, [&words] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            words = box ? box->text() : QString("no box");
            if (box)
                box->accept();
        });
    }
};

/// 200 periods from 1801 on and all 15 columns; the value in column c of row r is 1000 c + r.
clsVeltData FullTable(Run& run)
{
    clsVeltData data(run);
    data.DSFName("/home/fish/ling.vl3");
    data.DSDesc("Ling of the north");
    data.MinTimeP(1801);
    data.TimeInts(200);
    for (int column = columns::kFirst; column <= columns::kLast; ++column) {
        data.ColPresent(column, true);
        for (int row = 1; row <= 200; ++row)
            data.DB(column, row, static_cast<float>(1000 * column + row));
    }
    return data;
}

/// The full table on paper.
struct Listing {
    explicit Listing(QPageSize::PageSizeId size = QPageSize::A4,
                     QPageLayout::Orientation orientation = QPageLayout::Portrait)
    {
        printer.ChosenBy(paper.Choice(size, orientation));
        FullTable(bench.run).PrintData(printer);
    }

    Bench bench;
    Paper paper;
    QWidget window;
    DesktopPrinter printer{window};
};

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

ContourSurface Bowl()
{
    ContourSurface surface;
    surface.title = "Minimisation";
    surface.xName = "Stock";
    surface.yName = "Growth";
    surface.zName = "Objective";
    for (int i = 0; i <= 6; ++i) {
        surface.x.push_back(i);
        surface.y.push_back(i);
    }
    for (const double x : surface.x) {
        surface.z.emplace_back();
        for (const double y : surface.y)
            surface.z.back().push_back((x - 2.0) * (x - 2.0) + (y - 3.0) * (y - 3.0));
    }
    surface.zMax = 25.0;
    surface.plateau = 26.0;
    return surface;
}
} // namespace

class PrintingTest : public QObject
{
    Q_OBJECT

private slots:
    // The listing
    void AListingOf200RowsAnd15ColumnsStandsInFourGroupsOnAsManyPagesAsTheyTake();
    void EveryValueStandsInTheFieldOfItsColumnAndTheLineOfItsPeriod();
    void OnlyTheFirstPageOfAGroupHasAHeadingAndTheOthersKeepTheMargins();
    void PaperAcrossTakesMoreColumnsOnAPage();
    void PaperTooSmallForAColumnIsToldAndLeavesNoFile();
    void AFolderThatDoesNotExistIsToldAsAFaultOfThePrinter();
    void ADocumentThatIsLetGoLeavesNoFile();
    void ADocumentLetGoBeforeItsFirstLineLeavesNoFile();
    void ATabGoesToTheNextStopAndAControlCharacterIsABlank();

    // The menu
    void PrintIsThereWithADataSetAndHasItsKey();
    void PrintPrintsTheTableOfTheWindow();
    void TheSystemsDialogAsksAndItsCancelPrintsNothing();
    void ATableWithoutRowsIsPrinted();

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

// Between margins of 20 mm A4 has 170 mm, 482 points. A character of 9 points is 5.4 wide in the usual fonts
// of this kind, so a line has 89, five fields: the time and 4, 4, 4 and 3 columns. The lines of a page are
// told by the font; a group has 10 above its 200 rows.
void PrintingTest::AListingOf200RowsAnd15ColumnsStandsInFourGroupsOnAsManyPagesAsTheyTake()
{
    Listing listing;

    QVERIFY(listing.bench.user.messages.empty());
    QCOMPARE(listing.paper.m_titles, QStringList{"Ling of the north"});
    QVERIFY(Ask("pdfinfo", {listing.paper.Path()}).contains("Ling of the north"));
    const std::vector<Page> pages = listing.paper.Pages();
    const QRectF first = pages[0][4].front().place; // behind page, name, description and titles
    const double apart = pages[0][5].front().place.top() - first.top();
    const double onAPage = 1.0 + std::floor((267.0 * kPointsPerMillimetre - first.height()) / apart);
    QCOMPARE(static_cast<double>(pages.size()), 4.0 * std::ceil(210.0 / onAPage));
}

void PrintingTest::EveryValueStandsInTheFieldOfItsColumnAndTheLineOfItsPeriod()
{
    const Listing listing;
    const double left = 20.0 * kPointsPerMillimetre;
    int group = -1;
    int row = 0;
    for (const Page& page : listing.paper.Pages())
        for (const Line& line : page) {
            if (line[0].text == "Time") {
                QVERIFY(group < 0 || row == 200);
                ++group;
                row = 0;
            }
            if (!line[0].text.startsWith(QString::number(1801 + row)))
                continue;
            ++row;
            const double field = line[0].place.width() / 4.0 * kField; // the time has four characters
            QCOMPARE(static_cast<int>(line.size()), group < 3 ? 5 : 4);
            for (std::size_t i = 1; i < line.size(); ++i) {
                const int column = 4 * group + static_cast<int>(i);
                QCOMPARE(line[i].text, QString::number(1000 * column + row));
                QVERIFY(std::abs(line[i].place.left() - left - field * static_cast<double>(i)) < 1.0);
            }
        }
    QCOMPARE(group, 3);
    QCOMPARE(row, 200);
}

// Deliberate: a heading on each page would be kinder, but the listing has one a group.
void PrintingTest::OnlyTheFirstPageOfAGroupHasAHeadingAndTheOthersKeepTheMargins()
{
    const Listing listing;
    const std::vector<Page> pages = listing.paper.Pages();
    const std::size_t inAGroup = pages.size() / 4;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const bool heads = i % inAGroup == 0;
        QCOMPARE(TextOf(pages[i][0]) == QString("Page %1 Of 4").arg(i / inAGroup + 1), heads);
        for (std::size_t line = heads ? 4 : 0; line < pages[i].size(); ++line)
            QVERIFY(pages[i][line][0].text.toInt() >= 1801); // rows and nothing else
        QVERIFY(std::abs(pages[i][0][0].place.top() - 15.0 * kPointsPerMillimetre) < 1.5);
    }
    QCOMPARE(TextOf(pages[0][1]), QString("/home/fish/ling.vl3"));
    QCOMPARE(TextOf(pages[0][2]), QString("Ling of the north"));
    QCOMPARE(TextOf(pages[0][3]), QString("Time Tot. Catch Wt Tot. Catch Nums Mean Wt Effort"));
    const QRectF written = listing.paper.Written();
    QVERIFY(std::abs(written.left() - 20.0 * kPointsPerMillimetre) < 1.0);
    QVERIFY(written.right() <= 190.0 * kPointsPerMillimetre);
    QVERIFY(written.bottom() <= 282.0 * kPointsPerMillimetre);
    // The number of the page begins in the middle between the margins.
    QVERIFY(std::abs(listing.paper.PlaceOf("Page").left() - 105.0 * kPointsPerMillimetre) < 1.0);
}

// 257 mm are 728 points and 134 characters, eight fields: the time and 7, 7 and 1 columns.
void PrintingTest::PaperAcrossTakesMoreColumnsOnAPage()
{
    const Listing listing(QPageSize::A4, QPageLayout::Landscape);
    QVERIFY(listing.paper.Text().contains("Page 3 Of 3"));
}

void PrintingTest::PaperTooSmallForAColumnIsToldAndLeavesNoFile()
{
    const Listing listing(QPageSize::A7); // 74 mm, 34 between the margins, 17 characters
    QVERIFY(listing.bench.user.Saw("Data too large for page."));
    QVERIFY(!listing.paper.Exists());
}

void PrintingTest::AFolderThatDoesNotExistIsToldAsAFaultOfThePrinter()
{
    QWidget window;
    DesktopPrinter printer(window);
    printer.ChosenBy([](QWidget*, const QString& title) {
        auto pdf = NewPrinter(title);
        pdf->setOutputFormat(QPrinter::PdfFormat);
        pdf->setOutputFileName("/there/is/no/such/folder/paper.pdf");
        return pdf;
    });
    Bench bench;
    FullTable(bench.run).PrintData(printer);
    QCOMPARE(bench.user.messages.size(), std::size_t{1});
    QVERIFY(bench.user.Saw("Unable to Print. Check Printer is set up correctly."));
}

void PrintingTest::ADocumentThatIsLetGoLeavesNoFile()
{
    QWidget window;
    Paper paper;
    DesktopPrinter printer(window);
    printer.ChosenBy(paper.Choice());
    {
        const auto printout = printer.Open("Ling");
        printout->Print("one line");
    }
    QVERIFY(!paper.Exists());
}

void PrintingTest::ADocumentLetGoBeforeItsFirstLineLeavesNoFile()
{
    QWidget window;
    Paper paper;
    DesktopPrinter printer(window);
    printer.ChosenBy(paper.Choice());
    QVERIFY(printer.Open("Ling")->TextWidth("one line") > 0.0);
    QVERIFY(!paper.Exists());
}

void PrintingTest::ATabGoesToTheNextStopAndAControlCharacterIsABlank()
{
    QWidget window;
    Paper paper;
    DesktopPrinter printer(window);
    printer.ChosenBy(paper.Choice());
    const auto printout = printer.Open("Ling");
    const double stop = printout->TextWidth(std::string(IPrintout::kTabStop, ' '));
    QCOMPARE(printout->TextWidth("K\t"), stop);
    QCOMPARE(printout->TextWidth(std::string(IPrintout::kTabStop, 'x') + "\t"), 2.0 * stop);
    printout->Print("a\nb");
    printout->End();
    QCOMPARE(TextOf(paper.Pages()[0][0]), QString("a b"));
}

void PrintingTest::PrintIsThereWithADataSetAndHasItsKey()
{
    Session session;
    QVERIFY(!session.Entry("mnuPrint")->isEnabled());
    session.Open();
    QVERIFY(session.Entry("mnuPrint")->isEnabled());
    QCOMPARE(session.Entry("mnuPrint")->text(), QString("&Print"));
    QCOMPARE(session.Entry("mnuPrint")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_P));
}

void PrintingTest::PrintPrintsTheTableOfTheWindow()
{
    Session session;
    session.Open();
    Paper paper;
    session.window.Printer().ChosenBy(paper.Choice());

    session.Entry("mnuPrint")->trigger();

    const QString text = paper.Text();
    QVERIFY(text.contains("Page 1 Of 1"));
    QVERIFY(text.contains("const25.txt"));
    QVERIFY(text.contains("Constant recruitment, 25 years"));
    // Four lines that can be seen above the rows.
    QCOMPARE(static_cast<int>(paper.Pages()[0].size()), 4 + session.window.objData().TimeInts());
}

void PrintingTest::TheSystemsDialogAsksAndItsCancelPrintsNothing()
{
    Session session;
    session.Open();
    bool asked = false;
    QTimer::singleShot(0, qApp, [&] {
        if (auto* dialog = qobject_cast<QPrintDialog*>(QApplication::activeModalWidget())) {
            asked = !dialog->testOption(QAbstractPrintDialog::PrintPageRange);
            dialog->reject();
        }
    });

    session.Entry("mnuPrint")->trigger();

    QVERIFY(asked);
    QVERIFY(session.user.messages.empty());
}

void PrintingTest::ATableWithoutRowsIsPrinted()
{
    QWidget window;
    Paper paper;
    DesktopPrinter printer(window);
    printer.ChosenBy(paper.Choice());
    Bench bench;
    clsVeltData(bench.run).PrintData(printer);
    QVERIFY(bench.user.messages.empty());
    QCOMPARE(paper.Text().split(QRegularExpression("\\s+"), Qt::SkipEmptyParts),
             (QStringList{"Page", "1", "Of", "1", "Time"}));
}

void PrintingTest::TheButtonOfTheReportPrintsItWithoutLimits()
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

void PrintingTest::LimitsArePrintedUnderTheEstimates()
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

void PrintingTest::RemarksArePrintedUnderTheEstimates()
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

void PrintingTest::LabelsAndValuesStandBelowOneAnother()
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

void PrintingTest::AGraphFillsTheWidthOfOnePageInItsShapeWithRealText()
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

void PrintingTest::ATallGraphFillsTheHeight()
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

void PrintingTest::TheLettersOfALargeWindowAreNoSmallerOnPaper()
{
    GraphOnPaper small(QSize(600, 400));
    GraphOnPaper large(QSize(1800, 1200));
    small.Print();
    large.Print();
    const double height = small.paper.PlaceOf("Tonnes").width(); // it stands upright
    QVERIFY(height >= 9.0);
    QVERIFY(std::abs(large.paper.PlaceOf("Tonnes").width() - height) < 0.1);
}

void PrintingTest::APlotTooNarrowForItsLettersIsPrintedSmaller()
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
void PrintingTest::PrintingLeavesTheWindowAsItWas()
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

void PrintingTest::AContourSurfaceIsPrintedToo()
{
    Paper paper;
    auto* window = new frmGraph; // deletes itself when closed
    window->Surface(Bowl());
    window->show();
    window->PrinterChosenBy(paper.Choice());
    window->findChild<QAction*>("PrintGraph")->trigger();
    QCOMPARE(paper.m_titles, QStringList{"Minimisation"});
    QVERIFY(!paper.PlaceOf("Stock").isEmpty());
    QVERIFY(!paper.PlaceOf("Growth").isEmpty());
    window->close();
}

void PrintingTest::ACancelledPrinterPrintsNoGraph()
{
    GraphOnPaper graph(QSize(600, 400));
    graph.window.PrinterChosenBy([](QWidget*, const QString&) { return std::unique_ptr<QPrinter>(); });
    graph.Print();
    QVERIFY(!graph.paper.Exists());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void PrintingTest::AGraphThatCannotBePrintedIsToldWithNumberAndText()
{
    GraphOnPaper graph(QSize(600, 400));
    graph.window.PrinterChosenBy([](QWidget*, const QString&) -> std::unique_ptr<QPrinter> {
        throw PrinterFault("There is no printer.");
    });
    QString words;
    {
        const NextDialog answer(words);
        graph.Print();
    }
    QCOMPARE(words, QString("Error 57 There is no printer."));

    graph.window.PrinterChosenBy([](QWidget*, const QString& title) {
        auto pdf = NewPrinter(title);
        pdf->setOutputFormat(QPrinter::PdfFormat);
        pdf->setOutputFileName("/there/is/no/such/folder/paper.pdf");
        return pdf;
    });
    words.clear();
    const NextDialog answer(words);
    graph.Print();
    QVERIFY2(words.startsWith("Error 57 The printer did not take the graph."), qPrintable(words));
}

QTEST_MAIN(PrintingTest)
#include "printing_test.moc"
