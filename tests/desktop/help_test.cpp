// SPDX-License-Identifier: GPL-3.0-or-later
// The manual on the screen: which page opens from where, search, printing, and what happens without it.
#include "AskProgram.h"
#include "Session.h"
#include "base/HelpTopics.h"
#include "dialogs/DesktopUser.h"
#include "dialogs/frmASCIIWizard.h"
#include "dialogs/frmNewFile.h"
#include "dialogs/frmOptions.h"
#include "shell/HelpCommands.h"
#include "views/HelpBrowser.h"
#include "views/HelpLibrary.h"
#include "views/HelpWindow.h"

#include <QDesktopServices>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QWindow>

#include <functional>
#include <map>

namespace
{
const QString kManual = QStringLiteral(VELT_TEST_HELP);
const QString kNowhere = QStringLiteral("/dev/null/cache"); // below what is no folder, also for the superuser
const QString kRoot = QStringLiteral("qthelp://org.velt.manual/manual/");

/// The list of topics as it stands in the file: topic and page.
std::map<std::string, QString> ListedPages()
{
    std::map<std::string, QString> pages;
    QFile file(kManual + "/contexts.txt");
    if (!file.open(QIODevice::ReadOnly))
        return pages;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (const qsizetype gap = line.indexOf(' '); gap > 0)
            pages[line.left(gap).toStdString()] = line.mid(gap + 1).trimmed();
    return pages;
}

QUrl PageOf(const std::string& topic)
{
    return QUrl(kRoot + ListedPages()[topic]);
}

/// A manual on the screen, and the hands on it.
struct Reader {
    explicit Reader(HelpCommands& help) : help(help) { help.LookIn(kManual, {cache.path()}); }
    ~Reader() { help.LookIn(kManual, {}); } // lets go of the folder
    Q_DISABLE_COPY_MOVE(Reader)

    bool Shows() const { return help.Window() && help.Window()->isVisible(); }
    QUrl Page() const { return The<HelpBrowser>("txtPage")->source(); }
    template <typename Widget>
    Widget* The(const char* name) const
    {
        return help.Window()->findChild<Widget*>(QString::fromLatin1(name));
    }
    /// Its page, ready for keys.
    HelpBrowser* InFront() const
    {
        QApplication::setActiveWindow(help.Window());
        (void)QTest::qWaitForWindowActive(help.Window());
        return The<HelpBrowser>("txtPage");
    }
    /// As the mouse of the screen clicks: a window that a dialog blocks gets none of it.
    void ClickTool(const char* action) const
    {
        auto* bar = The<QToolBar>("tlbHelp");
        const QWidget* button = bar->widgetForAction(The<QAction>(action));
        QTest::mouseClick(help.Window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          button->mapTo(help.Window(), button->rect().center()));
    }
    void SearchFor(const char* words) const
    {
        The<QTabWidget>("tabHelp")->setCurrentIndex(2);
        The<QLineEdit>("txtSearch")->setText(QString::fromUtf8(words));
        QTest::keyClick(The<QLineEdit>("txtSearch"), Qt::Key_Return);
    }

    HelpCommands& help;
    QTemporaryDir cache;
};

/// The whole program with its manual, and a person who answers from a script.
struct Desk : Session {
    Reader reader{window.Help()};

    void PressF1In(QWidget& in)
    {
        QApplication::setActiveWindow(&in);
        QTest::keyClick(in.focusWidget() ? in.focusWidget() : &in, Qt::Key_F1);
    }
};

/// Runs `hands` once the next modal dialog stands, and closes what they leave open, also when a check fails.
void InTheDialog(const std::function<void(QWidget&)>& hands)
{
    QTimer::singleShot(0, [hands] {
        const QPointer<QWidget> dialog = QApplication::activeModalWidget();
        hands(*dialog);
        if (dialog && dialog->isVisible())
            qobject_cast<QDialog*>(dialog)->reject();
    });
}
} // namespace

class help_test : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        static const QTemporaryDir settings;
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
        QFile::remove(settings.path() + "/VELT/VELT.ini");
    }

    void EveryTopicOfTheProgramHasItsPageAndTheAnchorOnIt()
    {
        const QTemporaryDir cache;
        const HelpLibrary library(kManual, {cache.path()});
        QVERIFY2(library.Failure().isEmpty(), qPrintable(library.Failure()));
        const auto listed = ListedPages();
        for (const std::string_view topic : help_topics::kWithPages) {
            const std::string name(topic);
            QVERIFY2(listed.contains(name), name.c_str());
            const QUrl page = library.Page(name);
            QCOMPARE(page, PageOf(name));
            const QString text = library.Bytes(page);
            QVERIFY2(text.contains("<html"), name.c_str());
            const QString anchor = page.fragment();
            QVERIFY2(anchor.isEmpty() || text.contains("\"" + anchor + "\""), name.c_str());
        }
        QCOMPARE(library.Page(help_topics::kContents), QUrl(kRoot + "index.html"));
        QCOMPARE(library.Page("no-such-topic"), QUrl(kRoot + "index.html"));
        QVERIFY(library.Bytes(QUrl(kRoot + "no-such-page.html")).isEmpty());
    }

    void ContentsAndIndexOpensTheFirstPage()
    {
        Desk desk;
        QVERIFY(desk.Entry("mnuHelpContents")->isEnabled());
        QVERIFY(!desk.reader.Shows());
        desk.Entry("mnuHelpContents")->trigger();
        QVERIFY(desk.reader.Shows());
        QCOMPARE(desk.reader.Page(), QUrl(kRoot + "index.html"));
        QVERIFY(!desk.reader.help.Window()->isModal());
        QTRY_VERIFY(desk.reader.The<QHelpContentWidget>("treContents")->model()->rowCount() > 0);
        QTRY_VERIFY(desk.reader.The<QHelpIndexWidget>("lstIndex")->model()->rowCount() > 0);
    }

    void TheManualOpensBesideACellThatIsRefused()
    {
        Desk desk;
        desk.New(3, {1});
        desk.Activate();
        desk.Go(1, 2);
        desk.Type("5x");
        desk.Entry("mnuHelpContents")->trigger();
        QVERIFY(desk.reader.Shows());
        QVERIFY(desk.user.messages.empty()); // which a command that leaves the cell would have shown
    }

    void F1OpensThePageOfTheWindowInFront()
    {
        Desk desk;
        desk.Open();
        desk.Fit();
        desk.Entry("mnuFitManager")->trigger();
        desk.Entry("mnuViewProj")->trigger();
        desk.Entry("mnuOverview")->trigger();
        const std::map<const char*, std::string> windows{
            {"frmVelt3", "main"},     {"frmParams", "parameters"}, {"frmModelGraph", "model-graph"},
            {"frmFitManager", "102"}, {"frmProjections", "107"},   {"frmOverview", "overview"}};
        for (const auto& [name, topic] : windows) {
            QWidget* found = nullptr;
            for (QWidget* window : QApplication::topLevelWidgets())
                if (window->objectName() == name && window->isVisible())
                    found = window;
            QVERIFY2(found, name);
            desk.PressF1In(*found);
            QVERIFY2(desk.reader.Shows(), name);
            QVERIFY2(desk.reader.Page() == PageOf(topic), name);
        }
    }

    void ABoxOrAWindowWithoutAPageOfItsOwnOpensTheOneBehindIt()
    {
        QWidget options;
        options.setObjectName("frmOptions");
        QMessageBox box(&options);
        QCOMPARE(HelpCommands::TopicOf(&box), std::string("68"));
        box.setProperty(IHelpViewer::kTopicProperty, "20");
        QCOMPARE(HelpCommands::TopicOf(&box), std::string("20"));
        QWidget projection;
        projection.setObjectName("frmProjGraph");
        QCOMPARE(HelpCommands::TopicOf(&projection), std::string("117"));
        const QWidget stranger;
        QCOMPARE(HelpCommands::TopicOf(&stranger), std::string("main"));
    }

    void F1InAnOpenMenuClosesItAndOpensThePageOfItsWindow()
    {
        Desk desk;
        desk.window.Help().ShowTopic(help_topics::kOptions); // a window that comes new closes menus by itself
        desk.Menu("mnuFile")->popup(QPoint(0, 0));
        QTest::keyClick(desk.Menu("mnuFile"), Qt::Key_F1);
        QVERIFY(!desk.Menu("mnuFile")->isVisible());
        QCOMPARE(desk.reader.Page(), PageOf("main"));
    }

    void F1InAModalDialogOpensAManualThatTakesInput()
    {
        Desk desk;
        desk.user.onOptions = [&](MinimiserOptions& options) {
            InTheDialog([&](QWidget& dialog) {
                desk.PressF1In(dialog);
                QCOMPARE(desk.reader.Page(), PageOf("68"));
                QVERIFY(dialog.isVisible());
                QVERIFY(QTest::qWaitForWindowExposed(desk.reader.help.Window()));
                desk.reader.ClickTool("actHome");
                QCOMPARE(desk.reader.Page(), QUrl(kRoot + "index.html"));
            });
            return frmOptions::Ask(desk.user, options, &desk.window);
        };
        desk.Entry("mnuSettings")->trigger();
        QVERIFY(desk.reader.Shows()); // it outlives the dialog
        desk.PressF1In(desk.window);
        desk.reader.ClickTool("actHome");
        QCOMPARE(desk.reader.Page(), QUrl(kRoot + "index.html"));
    }

    void AManualThatIsOpenAlreadyStaysUsableWhenADialogComes()
    {
        Desk desk;
        desk.window.Help().ShowTopic(help_topics::kOptions);
        QVERIFY(QTest::qWaitForWindowExposed(desk.reader.help.Window()));
        desk.user.onOptions = [&](MinimiserOptions& options) {
            InTheDialog([&](QWidget& dialog) {
                desk.reader.ClickTool("actHome");
                QCOMPARE(desk.reader.Page(), QUrl(kRoot + "index.html"));
                QMessageBox second(&dialog);
                QTimer::singleShot(0, &second, [&] {
                    desk.reader.ClickTool("actBack");
                    QCOMPARE(desk.reader.Page(), PageOf("68"));
                    second.reject();
                });
                second.exec();
                desk.reader.ClickTool("actForward"); // again over the dialog alone
                QCOMPARE(desk.reader.Page(), QUrl(kRoot + "index.html"));
            });
            return frmOptions::Ask(desk.user, options, &desk.window);
        };
        desk.Entry("mnuSettings")->trigger();
        desk.reader.ClickTool("actBack");
        QCOMPARE(desk.reader.Page(), PageOf("68"));
    }

    void TheHelpButtonOfABoxOpensItsPageAndTheBoxStays()
    {
        DesktopUser person(nullptr);
        HelpCommands help(person);
        person.HelpBy(help);
        const Reader reader(help);
        InTheDialog([&](QWidget& box) {
            auto* button = box.findChild<QPushButton*>("cmdHelp");
            QCOMPARE(button->text(), QString("&Help"));
            QTest::mouseClick(button, Qt::LeftButton);
            QCOMPARE(reader.Page(), PageOf("20"));
            QVERIFY(box.isVisible());
            QTest::keyClick(&box, Qt::Key_Escape); // with two buttons the box would not know which it means
            QVERIFY(!box.isVisible());
        });
        const Answer answer = person.Show({.text = "Not Enough", .helpTopic = help_topics::kTooFewPoints});
        QVERIFY(answer == Answer::Ok);
    }

    void ABoxWithoutATopicHasNoHelpButton()
    {
        DesktopUser person(nullptr);
        InTheDialog([&](QWidget& box) {
            QVERIFY(!box.findChild<QPushButton*>("cmdHelp"));
            qobject_cast<QDialog*>(&box)->accept();
        });
        person.Show({.text = "Ready"});
    }

    void TheHelpButtonsOfTheDialogsOpenTheirTopicsAndJudgeNoEntry()
    {
        ScriptedUser user;
        frmOptions options(user, {}, nullptr);
        frmNewFile newFile(user, nullptr);
        AsciiWizard shape("ling.txt", {"Ling", {"Year"}, {{1990}}, {3}}, {});
        frmASCIIWizard wizard(user, shape, nullptr);
        for (QDialog* dialog : std::initializer_list<QDialog*>{&options, &newFile, &wizard}) {
            dialog->show();
            QApplication::setActiveWindow(dialog);
            if (auto* box = dialog->findChild<QLineEdit*>("txtOption0")) {
                box->setFocus();
                box->setText("none");
            }
            QTest::mouseClick(dialog->findChild<QPushButton*>("cmdHelp"), Qt::LeftButton);
            QCoreApplication::processEvents();
            QVERIFY(dialog->isVisible());
        }
        QVERIFY(user.helpShown == std::vector<std::string>({"68", "new-data-set", "import-wizard"}));
        QVERIFY(user.messages.empty());
    }

    void TheHelpButtonsOfReportAndFitManagerOpenTheirPages()
    {
        Desk desk;
        desk.Open();
        desk.Fit();
        auto* report = desk.Report()->findChild<QPushButton*>("cmdHelp");
        QVERIFY(!report->icon().isNull()); // a picture, so its name must be told otherwise
        QCOMPARE(report->accessibleName(), QString("Help"));
        report->click();
        QCOMPARE(desk.reader.Page(), PageOf("parameters"));
        desk.Entry("mnuFitManager")->trigger();
        auto* manager = desk.window.findChild<frmFitManager*>()->findChild<QPushButton*>("cmdHelp");
        QCOMPARE(manager->text(), QString("&Help"));
        manager->click();
        QCOMPARE(desk.reader.Page(), PageOf("102"));
    }

    void MessagesAboutThePeriodsOfANewDataSetHaveHelpAndTheOneAboutColumnsHasNot()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        form.show();
        const auto enter = [&](const char* low, const char* high) {
            form.findChild<QLineEdit*>("TxtTimeP0")->setText(low);
            form.findChild<QLineEdit*>("TxtTimeP1")->setText(high);
            user.messages.clear();
            form.accept();
            return user.messages.size() == 1 ? user.messages.front().helpTopic : "no message";
        };
        QCOMPARE(enter("0", "10"), std::string("new-data-set")); // not positive
        QCOMPARE(enter("10", "1"), std::string("new-data-set")); // not a range
        QCOMPARE(enter("1990", "1999"), std::string());          // no column yet
    }

    void AFileThatIsNotRecognisedHasAHelpButton()
    {
        Desk desk;
        QTemporaryFile file("ling_XXXXXX.qx4");
        QVERIFY(file.open());
        desk.window.OpenPath(file.fileName());
        QVERIFY(desk.user.Saw("File type not recognised."));
        QCOMPARE(desk.user.messages.back().helpTopic, std::string("file-type"));
    }

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
        desk.reader.SearchFor("catchability"); // at once: the index may still be in the making
        auto* hits = desk.reader.The<QListWidget>("lstHits");
        QTRY_VERIFY(hits->count() > 0);
        const QUrl page = hits->item(0)->data(Qt::UserRole).toUrl();
        QVERIFY(page.toString().startsWith(kRoot));
        QTest::keyClick(hits, Qt::Key_Return);
        QCOMPARE(desk.reader.Page(), page);
        QVERIFY(desk.reader.The<HelpBrowser>("txtPage")->toPlainText().contains("catchability",
                                                                                Qt::CaseInsensitive));
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

QTEST_MAIN(help_test)
#include "help_test.moc"
