// SPDX-License-Identifier: GPL-3.0-or-later
// The manual's window: contents, search, text and printing; and what happens without a manual or a cache.
#include "AskProgram.h"
#include "ManualDesk.h"
#include "views/HelpLibrary.h"

#include <QDesktopServices>
#include <QListWidget>
#include <QRegularExpression>
#include <QTabBar>
#include <QToolButton>
#include <QTreeView>

namespace
{
const QString kNowhere = QStringLiteral("/dev/null/cache"); // below what is no folder, also for the superuser
} // namespace

class help_window_test : public QObject
{
    Q_OBJECT

private slots:
    void init() { ForgetSettings(); }

    void AMadeNumberStandsApartFromTheWordsBesideIt()
    {
        Desk desk;
        desk.Entry("mnuHelpContents")->trigger();
        const QString page = desk.reader.The<HelpBrowser>("txtPage")->toPlainText();
        QVERIFY2(page.contains(QRegularExpression("N1 about [0-9.]+ to [0-9.]+\\.")), qPrintable(page));
    }

    void TheContentsOpenWithTheirFirstLevelInSight()
    {
        Desk desk;
        desk.Entry("mnuHelpContents")->trigger();
        auto* tree = desk.reader.The<QTreeView>("treContents");
        QTRY_VERIFY(tree->model()->rowCount() > 0);
        QTRY_VERIFY(tree->isExpanded(tree->model()->index(0, 0)));
    }

    void TheSearchFindsAWordAndAHitOpensItsPage()
    {
        Desk desk;
        desk.Entry("mnuHelpContents")->trigger();
        desk.reader.SearchFor("catchability"); // at once: the index is still in the making
        QCOMPARE(desk.reader.The<QLabel>("lblHits")->text(), QString("Reading the manual..."));
        auto* hits = desk.reader.The<QListWidget>("lstHits");
        QTRY_VERIFY(hits->count() > 0);
        const QUrl page = hits->item(0)->data(Qt::UserRole).toUrl();
        QVERIFY(page.toString().startsWith(kRoot));
        QTest::keyClick(hits, Qt::Key_Return);
        QCOMPARE(desk.reader.Page(), page);
        QVERIFY(desk.reader.The<HelpBrowser>("txtPage")->toPlainText().contains("catchability",
                                                                                Qt::CaseInsensitive));
    }

    void WhoOpensTheSearchOrTheIndexBeginsToType()
    {
        Desk desk;
        desk.Entry("mnuHelpContents")->trigger();
        desk.reader.InFront();
        QTabBar* tabs = desk.reader.The<QTabWidget>("tabHelp")->tabBar();
        for (const auto& [tab, box] : {std::pair(2, "txtSearch"), std::pair(1, "txtIndex")}) {
            QTest::mouseClick(tabs, Qt::LeftButton, Qt::NoModifier, tabs->tabRect(tab).center());
            QTest::keyClicks(QApplication::focusWidget(), "under");
            QCOMPARE(desk.reader.The<QLineEdit>(box)->text(), QString("under"));
        }
        tabs->setFocus();
        QTest::keyClick(tabs, Qt::Key_Right); // along the tabs
        QVERIFY(tabs->hasFocus());
        desk.reader.The<HelpBrowser>("txtPage")->setFocus();
        QTest::mouseClick(tabs, Qt::LeftButton, Qt::NoModifier,
                          tabs->tabRect(2).center()); // in front already
        QTRY_VERIFY(desk.reader.The<QLineEdit>("txtSearch")->hasFocus());
    }

    void TheSearchSaysWhenNothingIsFoundAndTakesSignsAsTheyStand()
    {
        Desk desk;
        desk.Entry("mnuHelpContents")->trigger();
        for (const char* words : {"zzyzzx", "\"catchability", "catchability AND (", "* - \"\""}) {
            desk.reader.SearchFor("catchability");
            QTRY_VERIFY(desk.reader.The<QListWidget>("lstHits")->count() > 0);
            desk.reader.SearchFor(words);
            if (QByteArray(words) == "zzyzzx")
                QTRY_COMPARE(desk.reader.The<QLabel>("lblHits")->text(),
                             QString("No page has all these words."));
        }
        desk.reader.SearchFor("\"catchability");
        QTRY_VERIFY(desk.reader.The<QListWidget>("lstHits")->count() > 0);
    }

    void FindInPageGoesRoundAndSaysWhenThereIsNothing()
    {
        Desk desk;
        desk.PressF1In(desk.window);
        auto* page = desk.reader.InFront();
        QTest::keyClick(page, Qt::Key_F, Qt::ControlModifier);
        auto* line = desk.reader.The<QLineEdit>("txtFind");
        QTRY_VERIFY(line->isVisible() && line->hasFocus());
        line->setText("the"); // at the top of every page of the manual, and not only there
        QTest::keyClick(line, Qt::Key_Return);
        const int first = page->textCursor().position();
        QCOMPARE(page->textCursor().selectedText().toLower(), QString("the"));
        QTest::keyClick(line, Qt::Key_F3);
        QVERIFY(page->textCursor().position() > first);
        QTest::keyClick(line, Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(page->textCursor().position(), first);
        QTest::mouseClick(desk.reader.The<QToolButton>("cmdFindNext"), Qt::LeftButton);
        QVERIFY(page->textCursor().position() > first);
        int rounds = 0;
        do {
            QTest::keyClick(line, Qt::Key_Return);
            ++rounds;
        } while (page->textCursor().position() != first && rounds < 10000);
        QCOMPARE(page->textCursor().position(), first);
        line->setText("zzyzzx");
        QTest::keyClick(line, Qt::Key_Return);
        QCOMPARE(desk.reader.The<QLabel>("lblFind")->text(), QString("Not on this page"));
        QTest::keyClick(line, Qt::Key_Escape);
        QVERIFY(!line->isVisible());
        QVERIFY(desk.reader.Shows()); // the first Escape closes the line, the second the window
        QTest::keyClick(page, Qt::Key_Escape);
        QVERIFY(!desk.reader.Shows());
    }

    void TheTextGrowsAndShrinksWithinLimitsAndComesBack()
    {
        Desk desk;
        desk.PressF1In(desk.window);
        auto* page = desk.reader.InFront();
        const int usual = page->font().pointSize();
        QTest::keyClick(page, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(page->font().pointSize(), usual + 1);
        for (int i = 0; i < 100; ++i)
            QTest::keyClick(page, Qt::Key_Minus, Qt::ControlModifier);
        QVERIFY(page->font().pointSize() >= usual - 4 && page->font().pointSize() < usual);
        QTest::keyClick(page, Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(page->font().pointSize(), usual);
    }

    void APageIsPrintedOnTheChosenPrinter()
    {
        Desk desk;
        desk.PressF1In(desk.window);
        const QTemporaryDir paper;
        const QString file = paper.filePath("page.pdf");
        QString asked;
        desk.reader.help.Window()->PrinterChosenBy([&](QWidget*, const QString& title) {
            asked = title;
            auto printer = NewPrinter(title);
            printer->setOutputFileName(file);
            return printer;
        });
        desk.reader.ClickTool("actPrint");
        auto* page = desk.reader.The<HelpBrowser>("txtPage");
        QCOMPARE(asked, page->documentTitle());
        const QString word =
            page->toPlainText().simplified().section(' ', 0, 0); // a line may be broken elsewhere
        QVERIFY(!word.isEmpty());
        QVERIFY(Ask("pdftotext", {file, "-"}).contains(word));
    }

    void AddressesOutsideTheManualGoToTheUsersBrowser()
    {
        Desk desk;
        desk.PressF1In(desk.window);
        const QUrl before = desk.reader.Page();
        m_outside.clear();
        QDesktopServices::setUrlHandler("https", this, "TakeOutside");
        desk.reader.The<HelpBrowser>("txtPage")->setSource(QUrl("https://example.org/"));
        QDesktopServices::unsetUrlHandler("https");
        QCOMPARE(m_outside, QUrl("https://example.org/"));
        QCOMPARE(desk.reader.Page(), before);
    }

    void APageThatDoesNotExistSaysSo()
    {
        Desk desk;
        desk.PressF1In(desk.window);
        auto* page = desk.reader.The<HelpBrowser>("txtPage");
        page->setSource(QUrl(kRoot + "no-such-page.html"));
        QVERIFY(page->toPlainText().contains("no-such-page.html"));
        desk.reader.ClickTool("actBack");
        QCOMPARE(desk.reader.Page(), PageOf("main"));
    }

    void TheWindowKeepsItsSizeFromRunToRun()
    {
        QSize size;
        {
            Desk desk;
            desk.PressF1In(desk.window);
            size = desk.reader.help.Window()->size() - QSize(60, 40);
            desk.reader.help.Window()->resize(size);
            desk.reader.help.Window()->close();
        }
        Desk desk;
        desk.PressF1In(desk.window);
        QCOMPARE(desk.reader.help.Window()->size(), size);
    }

    void TheManualDoesNotKeepTheProgramRunning()
    {
        Desk desk;
        desk.PressF1In(desk.window);
        QVERIFY(desk.reader.Shows());
        desk.window.close();
        QVERIFY(!desk.reader.Shows());
    }

    void WithoutTheManualTheProgramSaysWhichFileIsMissingAndWhatToDo()
    {
        Desk desk;
        const QTemporaryDir empty;
        desk.window.Help().LookIn(empty.path(), {desk.reader.cache.path()});
        desk.user.onShow = [&] { desk.PressF1In(desk.window); }; // over the message: no second one
        desk.Entry("mnuHelpContents")->trigger();
        QCOMPARE(desk.user.messages.size(), std::size_t{1});
        const QString said = QString::fromStdString(desk.user.messages.front().text);
        QVERIFY2(said.contains(empty.path() + "/velt.qch") && said.contains("Install VELT again"),
                 qPrintable(said));
        QVERIFY(!desk.window.Help().Window());
    }

    void AFileThatIsNoManualIsToldApartFromAMissingOne()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath("velt.qch"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no database") > 0);
        file.close();
        const HelpLibrary library(folder.path(), {folder.path()});
        QVERIFY2(library.Failure().contains("cannot be read"), qPrintable(library.Failure()));
    }

    void ACacheThatCannotBeWrittenIsPassedOver()
    {
        const QTemporaryDir second;
        const HelpLibrary library(kManual, {kNowhere, second.path()});
        QVERIFY2(library.Failure().isEmpty(), qPrintable(library.Failure()));
        QVERIFY(!library.Bytes(library.Page("main")).isEmpty());
        QCOMPARE(QDir(second.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    }

    void WhereNothingCanBeWrittenTheProgramSaysSoAndGoesOn()
    {
        Desk desk;
        desk.window.Help().LookIn(kManual, {kNowhere, kNowhere + "2"});
        desk.Entry("mnuHelpContents")->trigger();
        QCOMPARE(desk.user.messages.size(), std::size_t{1});
        QVERIFY(desk.user.Saw("cannot write"));
        QVERIFY(desk.user.Saw(kNowhere.toStdString()));
        desk.window.Help().LookIn(kManual, {desk.reader.cache.path()}); // room was made
        desk.Entry("mnuHelpContents")->trigger();
        QVERIFY(desk.reader.Shows());
    }

    void TwoProgramsReadTheManualAtOnceAndTheLastTakesItsFilesAway()
    {
        const QTemporaryDir cache;
        const auto folders = [&] { return QDir(cache.path()).entryList({"velt-help-*"}, QDir::Dirs).size(); };
        auto one = std::make_unique<HelpLibrary>(kManual, QStringList{cache.path()});
        const auto other = std::make_unique<HelpLibrary>(kManual, QStringList{cache.path()});
        QCOMPARE(folders(), 2); // the second did not take the first's for a leftover
        one.reset();
        QCOMPARE(folders(), 1);
        QVERIFY(!other->Bytes(other->Page("main")).isEmpty());
    }

    void WhatACrashLeftInTheCacheIsTakenAwayLater()
    {
        const QTemporaryDir cache;
        QVERIFY(QDir(cache.path()).mkdir("velt-help-abcdef"));
        QProcess gone; // a number of a process that no longer runs
        gone.start("true", {});
        QVERIFY(gone.waitForStarted());
        const qint64 number = gone.processId();
        QVERIFY(gone.waitForFinished());
        QFile lock(cache.filePath("velt-help-abcdef/lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write(QByteArray::number(number) + "\nvelt\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        lock.close();
        QVERIFY(QDir(cache.path()).mkdir("velt-help-ghijkl")); // just being made by another program
        const HelpLibrary library(kManual, {cache.path()});
        QVERIFY(!QFile::exists(cache.filePath("velt-help-abcdef")));
        QVERIFY(QFile::exists(cache.filePath("velt-help-ghijkl")));
    }

public slots:
    void TakeOutside(const QUrl& url) { m_outside = url; }

private:
    QUrl m_outside;
};

QTEST_MAIN(help_window_test)
#include "help_window_test.moc"
