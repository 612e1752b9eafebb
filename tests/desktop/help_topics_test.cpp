// SPDX-License-Identifier: GPL-3.0-or-later
// Which page of the manual opens from where: windows, menus, dialogs, boxes and their Help buttons.
#include "ManualDesk.h"
#include "base/HelpTopics.h"
#include "dialogs/DesktopUser.h"
#include "dialogs/frmASCIIWizard.h"
#include "dialogs/frmNewFile.h"
#include "dialogs/frmOptions.h"
#include "views/HelpLibrary.h"

#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QMessageBox>
#include <QPushButton>

#include <functional>
#include <map>

namespace
{
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

class help_topics_test : public QObject
{
    Q_OBJECT

private slots:
    void init() { ForgetSettings(); }

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
};

QTEST_MAIN(help_topics_test)
#include "help_topics_test.moc"
