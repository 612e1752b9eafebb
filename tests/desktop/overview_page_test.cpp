// SPDX-License-Identifier: GPL-3.0-or-later
// All graphs of a fit and its report on one page: where each stands, in files and on paper.
#include "AskProgram.h"
#include "OverviewSamples.h"
#include "base/VeltError.h"
#include "graphs/ProjGraph.h"
#include "views/PageGrid.h"
#include "views/frmOverview.h"

#include <QPrinter>
#include <QRegularExpression>

namespace
{
constexpr QSizeF kLeast(300.0, 200.0);
constexpr double kRoundOff = 1e-6;

/// A page whose text and head are as high as told at every width.
PageWants Wants(QSizeF page, int graphs, double textHeight = 0.0, double headHeight = 0.0, double gap = 0.0)
{
    PageWants wants{.page = page,
                    .graphs = graphs,
                    .leastGraph = kLeast,
                    .gap = gap,
                    .headHeight = [headHeight](double) { return headHeight; },
                    .textHeight = {}};
    if (textHeight > 0.0)
        wants.textHeight = [textHeight](double) { return textHeight; };
    return wants;
}

std::vector<QRectF> Parts(const PageGrid& grid)
{
    std::vector<QRectF> parts = grid.graphs;
    for (const QRectF& part : {grid.head, grid.text})
        if (!part.isEmpty())
            parts.push_back(part);
    return parts;
}

/// Nothing overlaps, nothing sticks out, graphs are readable and in the order of reading.
QString FaultOf(const PageGrid& grid, QSizeF page)
{
    const QRectF sheet(QPointF(0.0, 0.0), page / grid.scale);
    const std::vector<QRectF> parts = Parts(grid);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!sheet.adjusted(-kRoundOff, -kRoundOff, kRoundOff, kRoundOff).contains(parts[i]))
            return QString("part %1 sticks out").arg(i);
        for (std::size_t j = 0; j < i; ++j)
            if (parts[i].adjusted(kRoundOff, kRoundOff, -kRoundOff, -kRoundOff).intersects(parts[j]))
                return QString("parts %1 and %2 overlap").arg(j).arg(i);
    }
    for (std::size_t i = 0; i < grid.graphs.size(); ++i) {
        const QRectF& graph = grid.graphs[i];
        if (graph.width() < kLeast.width() - kRoundOff || graph.height() < kLeast.height() - kRoundOff)
            return QString("graph %1 is too small").arg(i);
        if (i > 0 &&
            std::pair(grid.graphs[i - 1].y(), grid.graphs[i - 1].x()) >= std::pair(graph.y(), graph.x()))
            return QString("graph %1 stands before its neighbour").arg(i);
    }
    return {};
}
} // namespace

class overview_page_test : public QObject
{
    Q_OBJECT

private slots:
    // The grid
    void OneGraphTakesTheWholePageBelowTheHead();
    void FiveGraphsOnAPageForFourGetSmallerLetters();
    void LettersAreNeverLargerThanOnTheScreen();
    void ATextTakesAsManyCellsAsItNeeds();
    void ATextAloneTakesThePage();
    void WhateverStandsOnThePageNothingOverlaps();

    // The page
    void EachGraphStandsInItsOwnCell();
    void ThePageLiesTheWayThatLettersAreLarger();
    void AProjectionStandsAmongTheGraphs();
    void ALongTitleGetsSmallerLettersAndStaysInItsCell();
    void APictureHasTwiceTheDotsOfAPageAndADrawingHasText();
    void EachBlockOfTheReportHasItsHeading();
    void AnotherEndingIsRefusedAndLeavesNoFile();
    void AFileThatCannotBeReplacedStays();
    void ThePageDoesNotChangeWithTheColoursOfTheWindows();
    void ALightOnAPointIsNotOnThePage();
    void ThePrinterGetsOnePageWhicheverWayItLies();
};

void overview_page_test::OneGraphTakesTheWholePageBelowTheHead()
{
    const PageGrid grid = LayOutPage(Wants({300, 250}, 1, 0.0, 40.0, 10.0));
    QCOMPARE(grid.scale, 1.0);
    QCOMPARE(grid.head, QRectF(0, 0, 300, 40));
    QCOMPARE(grid.graphs, std::vector{QRectF(0, 50, 300, 200)});
    QVERIFY(grid.text.isNull());
}

// 600 x 400 hold 2 x 2 of 300 x 200. Five need a third row (133 high) or a third column (200 wide): two
// thirds.
void overview_page_test::FiveGraphsOnAPageForFourGetSmallerLetters()
{
    QCOMPARE(LayOutPage(Wants({600, 400}, 4)).scale, 1.0);
    const PageGrid grid = LayOutPage(Wants({600, 400}, 5));
    QVERIFY(std::abs(grid.scale - 2.0 / 3.0) < 0.003); // found to 0.2 %
    QCOMPARE(FaultOf(grid, {600, 400}), QString());
}

void overview_page_test::LettersAreNeverLargerThanOnTheScreen()
{
    const PageGrid grid = LayOutPage(Wants({3000, 2000}, 1));
    QCOMPARE(grid.scale, 1.0);
    QCOMPARE(grid.graphs, std::vector{QRectF(0, 0, 3000, 2000)});
}

// On 600 x 600 in cells of 300 x 200 a text of 450 needs three below one another; the graphs stand beside it.
void overview_page_test::ATextTakesAsManyCellsAsItNeeds()
{
    const PageGrid grid = LayOutPage(Wants({600, 600}, 3, 450.0));
    QCOMPARE(grid.scale, 1.0);
    QCOMPARE(grid.text, QRectF(0, 0, 300, 600));
    QCOMPARE(grid.graphs,
             (std::vector{QRectF(300, 0, 300, 200), QRectF(300, 200, 300, 200), QRectF(300, 400, 300, 200)}));
}

void overview_page_test::ATextAloneTakesThePage()
{
    const PageGrid grid = LayOutPage(Wants({400, 500}, 0, 1000.0));
    QVERIFY(grid.graphs.empty());
    QVERIFY(std::abs(grid.scale - 0.5) < 0.003);
    QVERIFY(grid.text.height() >= 1000.0);
}

void overview_page_test::WhateverStandsOnThePageNothingOverlaps()
{
    for (const QSizeF page : {QSizeF(700, 1000), QSizeF(1000, 700), QSizeF(500, 500)})
        for (int graphs = 1; graphs <= 14; ++graphs)
            for (const double text : {0.0, 150.0, 700.0, 3000.0}) {
                PageWants wants = Wants(page, graphs, text, 50.0, 12.0);
                if (text > 0.0) // as many letters in wider lines
                    wants.textHeight = [text](double width) { return text * 300.0 / width; };
                const PageGrid grid = LayOutPage(wants);
                QCOMPARE(grid.graphs.size(), static_cast<std::size_t>(graphs));
                QCOMPARE(FaultOf(grid, page), QString());
                QVERIFY(grid.scale > 0.1 && grid.scale <= 1.0);
                QVERIFY(text == 0.0 || grid.text.height() >= wants.textHeight(grid.text.width()));
            }
}

// The letters of a title stand in the middle of its graph.
void overview_page_test::EachGraphStandsInItsOwnCell()
{
    const Folder folder;
    const Overview page = Page(7);
    QVERIFY(overview_page::Save(page, folder.Path("p.pdf")));
    const double dpi = QCustomPlot().logicalDpiX();
    const int margin = qRound(12.0 / 25.4 * dpi);
    const PageGrid grid = overview_page::GridOf(page, overview_page::PageFor(page), margin);
    QCOMPARE(grid.graphs.size(), std::size_t{7});
    for (int i = 1; i <= 7; ++i) {
        const QRectF& cell = grid.graphs[static_cast<std::size_t>(i - 1)];
        const double points = 72.0 / dpi;
        const QRectF place((margin + cell.x() * grid.scale) * points,
                           (margin + cell.y() * grid.scale) * points, cell.width() * grid.scale * points,
                           cell.height() * grid.scale * points);
        const QRectF title = PlaceOf(folder.Path("p.pdf"), "Subject" + QString::number(i));
        QVERIFY(!title.isNull());
        QVERIFY(place.contains(title.center()));
        QVERIFY(std::abs(place.center().x() - title.center().x()) < 3.0);
        QVERIFY(title.center().y() < place.top() + 0.2 * place.height());
    }
    const QRectF value = PlaceOf(folder.Path("p.pdf"), "5123");
    QVERIFY(value.right() * dpi / 72.0 <= margin + grid.text.right() * grid.scale + 1.0);
}

// One graph is wider than high. Under a long report it stands upright.
void overview_page_test::ThePageLiesTheWayThatLettersAreLarger()
{
    Overview one = Page(1);
    one.report.reset();
    QVERIFY(overview_page::PageFor(one).width() > overview_page::PageFor(one).height());
    QCOMPARE(overview_page::PageFor(one), QSize(1123, 794)); // 297 x 210 mm at 96 dots an inch
    for (const int graphs : {3, 7, 8, 12}) {
        const Overview page = Page(graphs);
        const QSize best = overview_page::PageFor(page);
        QVERIFY(overview_page::GridOf(page, best, 45).scale >=
                overview_page::GridOf(page, best.transposed(), 45).scale);
    }
}

void overview_page_test::AProjectionStandsAmongTheGraphs()
{
    const Folder folder;
    Overview page = Page(1);
    auto projection = std::make_shared<ProjGraph>();
    projection->Create(1, 3, false, 1, false);
    projection->Title("Outlook");
    projection->LegendText(1, "Halved");
    for (int i = 1; i <= 3; ++i) {
        projection->XData(i, static_cast<float>(2000 + i));
        projection->ProjData(1, i, static_cast<float>(100 * i));
    }
    page.graphs.emplace_back(projection);
    QVERIFY(overview_page::Save(page, folder.Path("p.pdf")));
    QVERIFY(!PlaceOf(folder.Path("p.pdf"), "Outlook").isNull());
    QVERIFY(!PlaceOf(folder.Path("p.pdf"), "Halved").isNull());
}

void overview_page_test::ALongTitleGetsSmallerLettersAndStaysInItsCell()
{
    const Folder folder;
    Overview page = Page(6);
    const auto graph = Graph("First-" + QByteArray(120, 'x'));
    page.graphs.emplace_back(graph);
    page.graphs.emplace_back(Graph("Neighbour"));
    QVERIFY(overview_page::Save(page, folder.Path("p.pdf")));
    const QRectF title = PlaceOf(folder.Path("p.pdf"), QString::fromStdString(graph->UserTitle()));
    QVERIFY(!title.isNull());
    const PageGrid grid = overview_page::GridOf(page, overview_page::PageFor(page), 45);
    QVERIFY(title.width() <= grid.graphs[6].width() * grid.scale * 0.75 + 1.0);
}

void overview_page_test::APictureHasTwiceTheDotsOfAPageAndADrawingHasText()
{
    const Folder folder;
    const Overview page = Page(2);
    QVERIFY(overview_page::Save(page, folder.Path("p.PNG")));
    const QImage image(folder.Path("p.PNG"));
    QCOMPARE(image.size(), overview_page::PageFor(page) * 2);
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QVERIFY(overview_page::Save(page, folder.Path("p.svg")));
    QFile svg(folder.Path("p.svg"));
    QVERIFY(svg.open(QIODevice::ReadOnly));
    const QByteArray text = svg.readAll();
    QVERIFY(text.contains("<text") && text.contains("Subject2"));
    QVERIFY(text.left(4096).contains("VELT 3.0"));
}

void overview_page_test::EachBlockOfTheReportHasItsHeading()
{
    const Folder folder;
    Overview page = Page(1);
    page.report->intervalLevels = "0.05 - 0.95";
    page.report->intervals = {{"q", "2.1E-04 - 2.9E-04"}};
    QVERIFY(overview_page::Save(page, folder.Path("p.pdf")));
    // A font may join letters, such as f and i.
    QString text = Ask("pdftotext", {"-layout", folder.Path("p.pdf"), "-"})
                       .normalized(QString::NormalizationForm_KC)
                       .simplified();
    for (const char* words : {"Input Parameters", "Model Parameters", "Confidence Intervals 0.05 - 0.95"}) {
        const auto at = text.indexOf(words);
        QVERIFY2(at >= 0, qPrintable(text));
        text = text.mid(at); // in this order
    }
    QVERIFY2(text.contains("2.1E-04 - 2.9E-04"), qPrintable(text));
}

void overview_page_test::AnotherEndingIsRefusedAndLeavesNoFile()
{
    const Folder folder;
    QVERIFY(!overview_page::Save(Page(1), folder.Path("p.doc")));
    QVERIFY(!QFile::exists(folder.Path("p.doc")));
}

void overview_page_test::AFileThatCannotBeReplacedStays()
{
    const Folder folder;
    QVERIFY_EXCEPTION_THROWN(overview_page::Save(Page(1), folder.Path("no such folder/p.pdf")), VeltError);
    QVERIFY(QDir(folder.dir.path()).mkpath("p.pdf/inside"));
    QVERIFY_EXCEPTION_THROWN(overview_page::Save(Page(1), folder.Path("p.pdf")), VeltError);
    QVERIFY(QDir(folder.Path("p.pdf/inside")).exists());
}

void overview_page_test::ThePageDoesNotChangeWithTheColoursOfTheWindows()
{
    const Folder folder;
    const Overview page = Page(1);
    QVERIFY(overview_page::Save(page, folder.Path("light.png")));
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(40, 40, 40), QColor(20, 20, 20)));
    const bool saved = overview_page::Save(page, folder.Path("dark.png"));
    QApplication::setPalette(before);
    QVERIFY(saved);
    QCOMPARE(QImage(folder.Path("dark.png")), QImage(folder.Path("light.png")));
}

void overview_page_test::ALightOnAPointIsNotOnThePage()
{
    const Folder folder;
    const auto graph = Graph("A", GraphType::PointsAndLine);
    graph->WithToggs(true);
    Overview page = Page(0);
    page.graphs.emplace_back(graph);
    QVERIFY(overview_page::Save(page, folder.Path("dull.png")));
    graph->HighlightPoint(ModelGraph::kIncluded, 1);
    QVERIFY(graph->Highlighted());
    QVERIFY(overview_page::Save(page, folder.Path("lit.png")));
    QCOMPARE(QImage(folder.Path("lit.png")), QImage(folder.Path("dull.png")));
    QVERIFY(graph->Highlighted()); // the screen keeps it
}

void overview_page_test::ThePrinterGetsOnePageWhicheverWayItLies()
{
    for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
        const Folder folder;
        frmOverview window;
        window.Show(Page(7));
        window.PrinterChosenBy([&](QWidget*, const QString& title) {
            auto printer = NewPrinter(title);
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setPageSize(QPageSize(QPageSize::A4));
            printer->setPageOrientation(orientation);
            printer->setOutputFileName(folder.Path("paper.pdf"));
            return printer;
        });
        window.Print();
        QVERIFY(Ask("pdfinfo", {folder.Path("paper.pdf")}).contains("ling.vl3"));
        QVERIFY(Ask("pdfinfo", {folder.Path("paper.pdf")}).contains(QRegularExpression("Pages: +1\n")));
        const bool upright = orientation == QPageLayout::Portrait;
        const QRectF paper = upright ? QRectF(0, 0, 595, 842) : QRectF(0, 0, 842, 595);
        QRectF all;
        for (int i = 1; i <= 7; ++i) {
            const QRectF title = PlaceOf(folder.Path("paper.pdf"), "Subject" + QString::number(i));
            QVERIFY(paper.contains(title));
            all |= title;
        }
        QVERIFY(all.width() > 0.4 * paper.width()); // laid out for this paper
        QVERIFY(all.height() > 0.4 * paper.height());
    }
}

QTEST_MAIN(overview_page_test)
#include "overview_page_test.moc"
