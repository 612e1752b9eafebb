// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs of the table: lists of columns, number format, new data set; and how wide a dialog is.
#include "DialogDesk.h"
#include "data/Columns.h"
#include "dialogs/DesktopUser.h"
#include "dialogs/ListPickerDialog.h"
#include "dialogs/RangeDialog.h"
#include "dialogs/frmNewFile.h"
#include "dialogs/frmNumberFormat.h"
#include "support/ScriptedUser.h"

#include <QGroupBox>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>

class dialogs_table_test : public QObject
{
    Q_OBJECT

private:
    ScriptedUser m_user;

private slots:
    void init() { m_user = ScriptedUser(); }

    void ADialogIsWideEnoughForItsTitle()
    {
        RangeQuestion question{"Confidence Interval Range", "?", "L", "H", 0.0, 1.0};
        RangeDialog form(m_user, question, nullptr);
        const Desk desk(form);
        QVERIFY(form.width() >= WidthForTitle(form, form.windowTitle()));
    }

    void AMessageBehindAnotherBoxStandsOverTheSameWindow()
    {
        QWidget main;
        QWidget manager(&main, Qt::Window);
        main.show();
        manager.show();
        DesktopUser person(&main);
        const auto standsOver = [&person] {
            const QWidget* over = nullptr;
            QTimer::singleShot(0, [&over] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                over = box->parentWidget();
                box->accept();
            });
            person.Show({.text = "?"});
            return over;
        };
        QApplication::setActiveWindow(&manager);
        QCOMPARE(standsOver(), &manager);
        QApplication::setActiveWindow(nullptr); // as until the system gives the focus back
        QCOMPARE(standsOver(), &manager);
        QApplication::setActiveWindow(&main);
        QCOMPARE(standsOver(), &main);
        QApplication::setActiveWindow(&manager);
        QCOMPARE(standsOver(), &manager);
        // The user went to the main window meanwhile, and on to another program.
        main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&main));
        QApplication::setActiveWindow(nullptr);
        QCOMPARE(standsOver(), &main);
        for (const auto& away :
             {std::function([&] { manager.hide(); }), std::function([&] { manager.showMinimized(); })}) {
            QApplication::setActiveWindow(&manager);
            QCOMPARE(standsOver(), &manager);
            away();
            QApplication::setActiveWindow(nullptr);
            QCOMPARE(standsOver(), &main);
            manager.showNormal();
        }
    }

    void TheInputBoxShowsItsWholeTitleAndGivesTheText()
    {
        DesktopUser person(nullptr);
        int room = -1;
        QTimer::singleShot(0, [&room] {
            auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            room = box->width() - WidthForTitle(*box, box->windowTitle());
            box->setTextValue("1200");
            box->accept();
        });
        const auto answer =
            person.InputBox("Initial Population (N1) ", "Parameter Estimation Starting Values", "900");
        QVERIFY(room >= 0);
        QVERIFY(answer == std::optional<std::string>("1200"));
    }

    void TheListPickerMovesOneOrAllAndKeepsTheCommonOrder()
    {
        ScriptedUser user;
        ListPicker picker{.caption = "Inserting Columns",
                          .prompt = "Select Columns to be inserted;",
                          .leftCaption = "UnSelected",
                          .rightCaption = "Selected",
                          .items = {{"A"}, {"B", true}, {"C"}, {"D"}}};
        ListPickerDialog form(user, picker, nullptr);
        const Desk desk(form);
        QCOMPARE(form.windowTitle(), QString("Inserting Columns"));
        auto* left = desk.The<QListWidget>("lstUnSelected");
        auto* right = desk.The<QListWidget>("lstSelected");
        const auto texts = [](const QListWidget* list) {
            QString all;
            for (int i = 0; i < list->count(); ++i)
                all += list->item(i)->text();
            return all;
        };
        QCOMPARE(texts(left), QString("ACD"));
        QCOMPARE(texts(right), QString("B"));
        left->setCurrentRow(2);
        desk.Click("cmdOneRight");
        left->setCurrentRow(0);
        desk.Click("cmdOneRight");
        QCOMPARE(texts(right), QString("ABD"));
        QCOMPARE(left->currentRow(), 0); // the next one stands ready
        desk.Click("cmdAllRight");
        QCOMPARE(texts(right), QString("ABCD"));
        QVERIFY(!desk.The<QAbstractButton>("cmdOneRight")->isEnabled());
        QVERIFY(!desk.The<QAbstractButton>("cmdAllRight")->isEnabled());
        right->clearSelection();
        right->setCurrentRow(1);
        desk.Click("cmdOneLeft");
        QCOMPARE(texts(left), QString("B"));
        desk.Click("cmdAllLeft");
        QCOMPARE(texts(left), QString("ABCD"));
        QVERIFY(!desk.The<QAbstractButton>("cmdAllLeft")->isEnabled());
        emit left->itemDoubleClicked(left->item(0));
        QCOMPARE(right->count(), 1);
    }

    void EnterAtAnItemMovesItAndAtAnEmptyListItIsOK()
    {
        ScriptedUser user;
        const ListPicker picker{
            .caption = "c", .prompt = "p", .leftCaption = "l", .rightCaption = "r", .items = {{"A"}, {"B"}}};
        ListPickerDialog form(user, picker, nullptr);
        const Desk desk(form);
        auto* left = desk.The<QListWidget>("lstUnSelected");
        auto* right = desk.The<QListWidget>("lstSelected");
        const auto enter = [](QWidget* list, Qt::Key key) {
            list->setFocus();
            QTest::keyClick(list, key);
        };
        QVERIFY(!desk.The<QAbstractButton>("cmdOK")->isEnabled()); // nothing would come of none
        enter(left, Qt::Key_Return);
        QCOMPARE(right->count(), 1);
        QVERIFY(desk.The<QAbstractButton>("cmdOK")->isEnabled());
        enter(right, Qt::Key_Enter);
        QCOMPARE(right->count(), 0);
        QVERIFY(!desk.The<QAbstractButton>("cmdOK")->isEnabled());
        enter(left, Qt::Key_Return);
        enter(left, Qt::Key_Enter);
        QCOMPARE(right->count(), 2);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
        QApplication::sendEvent(left, &held);
        QVERIFY(form.isVisible());
        enter(left, Qt::Key_Return);
        QVERIFY(!form.isVisible());
        QCOMPARE(form.result(), int{QDialog::Accepted});
    }

    void TheListPickerGivesItsChoiceBackOnOkAndLeavesTheRecordOnCancel()
    {
        ScriptedUser user;
        ListPicker picker{
            .caption = "c", .prompt = "p", .leftCaption = "l", .rightCaption = "r", .items = {{"A"}, {"B"}}};
        const auto answer = [](const char* button) {
            QTimer::singleShot(0, qApp, [button] {
                auto* form = QApplication::activeModalWidget();
                form->findChild<QAbstractButton*>("cmdAllRight")->click();
                form->findChild<QAbstractButton*>(QString::fromLatin1(button))->click();
            });
        };
        answer("cmdCancel");
        QVERIFY(!ListPickerDialog::Ask(user, picker, nullptr));
        QVERIFY(!picker.items[0].selected);
        answer("cmdOK");
        QVERIFY(ListPickerDialog::Ask(user, picker, nullptr));
        QVERIFY(picker.items[0].selected && picker.items[1].selected);
    }

    void TheNumberFormatDialogOpensOnTheFormatAndShowsTheSampleInEachChoice()
    {
        ScriptedUser user;
        NumberFormatChoice choice = ChoiceOf("#,0.0");
        choice.sample = 12345.678F;
        frmNumberFormat form(user, choice, nullptr);
        const Desk desk(form);
        auto* category = desk.The<QListWidget>("lstFormat");
        auto* places = desk.The<QListWidget>("lstDecPlaces");
        QCOMPARE(category->count(), 3);
        QCOMPARE(places->count(), 16);
        QCOMPARE(category->currentItem()->text(), QString("Standard"));
        QCOMPARE(places->currentRow(), 1);
        QCOMPARE(desk.The<QLabel>("lblSample")->text(), QString("12,345.7"));
        category->setCurrentRow(2);
        QCOMPARE(desk.The<QLabel>("lblSample")->text(), QString("1.2E+04"));
        places->setCurrentRow(3);
        QCOMPARE(desk.The<QLabel>("lblSample")->text(), QString("1.235E+04"));
        QCOMPARE(form.Choice().category, NumberCategory::Scientific);
        QCOMPARE(form.Choice().decPlaces, 3);
        places->setCurrentRow(-1);
        QVERIFY(!desk.The<QPushButton>("cmdOK")->isEnabled());
    }

    void TheNewDataSetDialogTakesDescriptionRangeAndColumns()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        QCOMPARE(desk.The<QListWidget>("lstUnSelected")->count(), 9);
        QCOMPARE(desk.The<QListWidget>("lstUnSelected")->item(8)->text(), QString("Recruit. Index"));
        QCOMPARE(desk.The<QListWidget>("lstSelected")->count(), 0);
        desk.Type("txtDescription", "Ling");
        desk.Type("TxtTimeP0", "1990");
        desk.Type("TxtTimeP1", "1999");
        desk.The<QListWidget>("lstUnSelected")->setCurrentRow(3);
        desk.Click("cmdOneRight");
        desk.Click("cmdOK");
        QCOMPARE(form.result(), int(QDialog::Accepted));
        QCOMPARE(QString::fromStdString(form.Record().FileDescription), QString("Ling"));
        QCOMPARE(form.Record().MinTimeP, 1990);
        QCOMPARE(form.Record().MaxTimeP, 1999);
        QVERIFY((form.Record().columns == std::vector<int>{columns::Effort}));
        QVERIFY(user.messages.empty());
    }

    void TheNewDataSetDialogCarriesItsWordsAndEachBoxItsOwn()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        QCOMPARE(form.windowTitle(), QString("New Data Set"));
        QCOMPARE(desk.The<QPushButton>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(desk.The<QPushButton>("cmdCancel")->text(), QString("&Cancel"));
        QStringList frames;
        for (const QGroupBox* frame : form.findChildren<QGroupBox*>())
            frames += frame->title();
        QCOMPARE(frames, QStringList({"Enter File Details", "Columns to Include"}));
        QStringList words;
        QStringList boxes;
        for (const QLabel* label : form.findChildren<QLabel*>()) {
            words += label->text();
            boxes += label->buddy() ? label->buddy()->objectName() : QString();
        }
        for (const char* word : {"File Name", "File Description", "Time Period", "Min.", "Max.",
                                 "Unselected Columns", "Selected Columns"})
            QVERIFY2(words.contains(word), word);
        QCOMPARE(boxes[words.indexOf("File Description")], QString("txtDescription"));
        QCOMPARE(boxes[words.indexOf("Min.")], QString("TxtTimeP0"));
        QCOMPARE(boxes[words.indexOf("Max.")], QString("TxtTimeP1"));
        QCOMPARE(boxes[words.indexOf("Unselected Columns")], QString("lstUnSelected"));
        QCOMPARE(boxes[words.indexOf("Selected Columns")], QString("lstSelected"));
        QVERIFY(!desk.The<QAbstractButton>("cmdOneLeft")->isEnabled());
        QVERIFY(!desk.The<QAbstractButton>("cmdAllLeft")->isEnabled());
        desk.Click("cmdOneRight"); // the first column stands ready
        QCOMPARE(desk.The<QListWidget>("lstSelected")->item(0)->text(), QString("Tot. Catch Wt"));
    }

    void TheNumberFormatDialogCarriesItsWordsAndItsSampleCanBeCopied()
    {
        ScriptedUser user;
        frmNumberFormat form(user, ChoiceOf("0.00"), nullptr);
        const Desk desk(form);
        QCOMPARE(form.windowTitle(), QString("Number Format"));
        QCOMPARE(desk.The<QPushButton>("cmdOK")->text(), QString("&OK"));
        QCOMPARE(desk.The<QPushButton>("cmdCancel")->text(), QString("&Cancel"));
        QCOMPARE(form.findChild<QGroupBox*>()->title(), QString("Sample"));
        QStringList words;
        for (const QLabel* label : form.findChildren<QLabel*>())
            words += label->text();
        QVERIFY(words.contains("Category") && words.contains("Decimal Places"));
        const auto* categories = desk.The<QListWidget>("lstFormat");
        QCOMPARE(categories->item(0)->text(), QString("Fixed"));
        QCOMPARE(categories->item(2)->text(), QString("Scientific"));
        QVERIFY(desk.The<QLabel>("lblSample")->textInteractionFlags() & Qt::TextSelectableByMouse);
    }

    void LeavingATimeBoxTestsItAndTheFocusComesBack()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        desk.Type("TxtTimeP0", "1.5");
        desk.Leave("TxtTimeP0");
        QVERIFY(user.Saw("Time Period must be a positive integer"));
        QVERIFY(desk.HasFocusSelected("TxtTimeP0"));
    }

    void TheNewDataSetDialogRefusesARangeAndAnEmptyChoiceOfColumns()
    {
        ScriptedUser user;
        frmNewFile form(user, nullptr);
        const Desk desk(form);
        desk.Type("TxtTimeP0", "5");
        desk.Type("TxtTimeP1", "10"); // the texts are compared; deliberate
        desk.Click("cmdOK");
        QVERIFY(user.Saw("Illegal Range Specified for Time Period"));
        QVERIFY(desk.HasFocusSelected("TxtTimeP0"));
        desk.Type("TxtTimeP0", "1");
        desk.Click("cmdOK");
        QVERIFY(user.Saw("You must select at least one data column"));
        QVERIFY(form.isVisible());
        desk.Click("cmdAllRight");
        desk.Click("cmdOK");
        QVERIFY(!form.isVisible());
        QCOMPARE(form.Record().columns.size(), std::size_t{9});
    }
};

QTEST_MAIN(dialogs_table_test)
#include "dialogs_table_test.moc"
