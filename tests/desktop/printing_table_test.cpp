// SPDX-License-Identifier: GPL-3.0-or-later
// The listing of the table on paper, and the command that prints it.
#include "Paper.h"
#include "Session.h"

#include <QPrintDialog>
#include <QRegularExpression>
#include <QTimer>

#include <cmath>

namespace
{
constexpr int kField = 16;

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
} // namespace

class PrintingTableTest : public QObject
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
};

// Between margins of 20 mm A4 has 170 mm, 482 points. A character of 9 points is 5.4 wide in the usual fonts
// of this kind, so a line has 89, five fields: the time and 4, 4, 4 and 3 columns. The lines of a page are
// told by the font; a group has 10 above its 200 rows.
void PrintingTableTest::AListingOf200RowsAnd15ColumnsStandsInFourGroupsOnAsManyPagesAsTheyTake()
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

void PrintingTableTest::EveryValueStandsInTheFieldOfItsColumnAndTheLineOfItsPeriod()
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
void PrintingTableTest::OnlyTheFirstPageOfAGroupHasAHeadingAndTheOthersKeepTheMargins()
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
void PrintingTableTest::PaperAcrossTakesMoreColumnsOnAPage()
{
    const Listing listing(QPageSize::A4, QPageLayout::Landscape);
    QVERIFY(listing.paper.Text().contains("Page 3 Of 3"));
}

void PrintingTableTest::PaperTooSmallForAColumnIsToldAndLeavesNoFile()
{
    const Listing listing(QPageSize::A7); // 74 mm, 34 between the margins, 17 characters
    QVERIFY(listing.bench.user.Saw("Data too large for page."));
    QVERIFY(!listing.paper.Exists());
}

void PrintingTableTest::AFolderThatDoesNotExistIsToldAsAFaultOfThePrinter()
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

void PrintingTableTest::ADocumentThatIsLetGoLeavesNoFile()
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

void PrintingTableTest::ADocumentLetGoBeforeItsFirstLineLeavesNoFile()
{
    QWidget window;
    Paper paper;
    DesktopPrinter printer(window);
    printer.ChosenBy(paper.Choice());
    QVERIFY(printer.Open("Ling")->TextWidth("one line") > 0.0);
    QVERIFY(!paper.Exists());
}

void PrintingTableTest::ATabGoesToTheNextStopAndAControlCharacterIsABlank()
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

void PrintingTableTest::PrintIsThereWithADataSetAndHasItsKey()
{
    Session session;
    QVERIFY(!session.Entry("mnuPrint")->isEnabled());
    session.Open();
    QVERIFY(session.Entry("mnuPrint")->isEnabled());
    QCOMPARE(session.Entry("mnuPrint")->text(), QString("&Print"));
    QCOMPARE(session.Entry("mnuPrint")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_P));
}

void PrintingTableTest::PrintPrintsTheTableOfTheWindow()
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

void PrintingTableTest::TheSystemsDialogAsksAndItsCancelPrintsNothing()
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

void PrintingTableTest::ATableWithoutRowsIsPrinted()
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

QTEST_MAIN(PrintingTableTest)
#include "printing_table_test.moc"
