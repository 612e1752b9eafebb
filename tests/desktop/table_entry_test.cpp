// SPDX-License-Identifier: GPL-3.0-or-later
// Cells of the table: selected, typed into, pasted and copied, by keys, mouse and clipboard.
#include "TableSessions.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QMessageBox>
#include <QMimeData>
#include <QTimer>

class table_entry_test : public QObject
{
    Q_OBJECT

private slots:
    void TypingEnterEscapeAndArrowsDoAsTheyShould()
    {
        Editing s;
        s.Type("12.5");
        QVERIFY(s.Box()->isVisible());
        QCOMPARE(s.Box()->text(), QString("12.5"));
        s.Press(Qt::Key_Return);
        QVERIFY(!s.Box()->isVisible());
        QCOMPARE(s.Value(1, kA), 12.5F);
        QCOMPARE(s.Panel("Number"), QString("12.5"));
        QCOMPARE(s.Shown(1, kA), QString("12"));
        QVERIFY(s.Grid().hasFocus());

        s.Type("7");
        s.Press(Qt::Key_Escape);
        QVERIFY(!s.Box()->isVisible());
        QCOMPARE(s.Value(1, kA), 12.5F);

        s.Type("8");
        s.Press(Qt::Key_Down);
        QCOMPARE(s.Value(1, kA), 8.0F);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(2, kA));
        s.Press(Qt::Key_Right);
        s.Press(Qt::Key_Down);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(3, kB));
        s.Type("9");
        s.Press(Qt::Key_Left); // in the box it is a key of the box
        QVERIFY(s.Box()->isVisible());
        s.Press(Qt::Key_Tab);
        QCOMPARE(s.Value(3, kB), 9.0F);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(3, kB + 1));
        s.Press(Qt::Key_Home);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(3, kA));
        s.Press(Qt::Key_PageDown);
        QCOMPARE(s.Grid().Selected().row, 4);
        s.Press(Qt::Key_F2);
        QVERIFY(s.Box()->isVisible());
        QCOMPARE(s.Box()->selectedText(), QString("-1"));
        s.Press(Qt::Key_Escape);
        s.Press(Qt::Key_Return);
        QVERIFY(s.Box()->isVisible());
    }

    void ShiftAndTheArrowsSelectABlockFromTheCellWhereItBegan()
    {
        Editing s;
        s.Go(3, kB);
        s.Press(Qt::Key_Up, Qt::ShiftModifier);
        s.Press(Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(s.Grid().Selected(), (GridSelection{3, kB, 2, kA}));
        s.Press(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(s.Grid().Selected(), (GridSelection{1, kA, 4, 4}));
        s.Press(Qt::Key_Delete);
        s.Go(2, kA);
        s.Mark(2, kA, 1, kB); // as a program asks for it
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kA, 1, kB}));
        s.Press(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kA, 2, kB}));
    }

    void ControlAndAnArrowGoToTheEdgeAndShiftSelectsOnTheWay()
    {
        Editing s;
        s.Go(2, kB);
        s.Press(Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kB, 4, kB}));
        s.Press(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kB, 4, kA}));
        s.Press(Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kB, 1, kA}));
        s.Press(Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(1, 4));
        s.Press(Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(4, 4));
        s.Press(Qt::Key_Left, Qt::ControlModifier);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(4, kA));
    }

    void AMouseThatIsDrawnOverCellsSelectsThem()
    {
        Editing s;
        QWidget* cells = s.Grid().viewport();
        const auto at = [&](int row, int col) {
            return s.Grid().visualRect(s.Grid().model()->index(row - 1, col)).center();
        };
        QTest::mousePress(cells, Qt::LeftButton, Qt::NoModifier, at(1, kA));
        QMouseEvent move(QEvent::MouseMove, at(3, kB), cells->mapToGlobal(at(3, kB)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(cells, &move);
        QTest::mouseRelease(cells, Qt::LeftButton, Qt::NoModifier, at(3, kB));
        QCOMPARE(s.Grid().Selected(), (GridSelection{1, kA, 3, kB}));
    }

    void ASelectionIsOneBlockAlsoWithCtrl()
    {
        Editing s;
        s.Click(1, kA);
        QTest::mouseClick(s.Grid().viewport(), Qt::LeftButton, Qt::ControlModifier, s.Middle(3, kB + 1));
        QCOMPARE(s.Grid().selectionModel()->selection().size(), 1);
    }

    void AnEmptiedLineThatLosesTheFocusSaysWhatWouldBeStored()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.Press(Qt::Key_F2);
        s.Press(Qt::Key_Backspace);
        s.Box()->clearFocus();
        QCOMPARE(s.Box()->text(), QString("-1"));
        QCOMPARE(s.Value(1, kA), 5.0F);
    }

    void ALetterAtTheGridOpensTheCellOnItsOldText()
    {
        Editing s;
        s.Put(1, kA, "77");
        s.Type("a");
        QVERIFY(s.Box()->isVisible());
        QCOMPARE(s.Box()->selectedText(), QString("77"));
        s.Type("b");
        QCOMPARE(s.Box()->text(), QString("b"));
        s.Press(Qt::Key_Return);
        QVERIFY(s.user.Saw("Data must be numeric."));
        QVERIFY(s.Box()->isVisible() && s.Box()->hasFocus());
        QCOMPARE(s.Box()->selectedText(), QString("b"));
    }

    void ADoubleClickOpensTheCellAndItStaysOpen()
    {
        Editing s;
        s.Put(2, kB, "5");
        const QPoint spot = s.Grid().visualRect(s.Grid().model()->index(1, kB)).center();
        QTest::mouseDClick(s.Grid().viewport(), Qt::LeftButton, Qt::NoModifier, spot);
        QVERIFY(s.Box()->isVisible());
        QCOMPARE(s.Box()->text(), QString("5"));
        s.Press(Qt::Key_Escape);
        QWidget* cells = s.Grid().viewport(); // and once more with all that a hand does
        QTest::mouseClick(cells, Qt::LeftButton, Qt::NoModifier, spot);
        QTest::mousePress(cells, Qt::LeftButton, Qt::NoModifier, spot);
        QMouseEvent second(QEvent::MouseButtonDblClick, spot, cells->mapToGlobal(spot), Qt::LeftButton,
                           Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(cells, &second);
        QTest::mouseRelease(cells, Qt::LeftButton, Qt::NoModifier, spot);
        QVERIFY(s.Box()->isVisible());
        s.Press(Qt::Key_Escape);
        const QPoint below(spot.x(), cells->height() - 2);
        QVERIFY(!s.Grid().indexAt(below).isValid());
        QTest::mouseDClick(cells, Qt::LeftButton, Qt::NoModifier, below);
        QVERIFY(!s.Box()->isVisible());
    }

    void AClickElsewhereStoresTheCellFirst()
    {
        Editing s;
        s.Go(1, kA);
        s.Type("5");
        s.Click(3, kB);
        QCOMPARE(s.Value(1, kA), 5.0F);
        QCOMPARE(s.Value(3, kB), -1.0F);
        QCOMPARE(s.Grid().Selected(), GridSelection::At(3, kB));
        QVERIFY(!s.Box()->isVisible());
    }

    void AClickElsewhereWithARefusedTextTellsOnceAndComesBackToTheCell()
    {
        Editing s;
        s.Go(1, kA);
        s.Type("5x");
        s.Click(3, kB);
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        QVERIFY(s.Box()->isVisible() && s.Box()->hasFocus());
        s.Type("6");
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 6.0F);
        QCOMPARE(s.Value(3, kB), -1.0F);
    }

    void ABoxOnTheScreenDoesNotTakeTheRefusedTextAway()
    {
        Editing s;
        s.user.onShow = [&] { // a real one takes the focus and gives it back
            QMessageBox box(&s.window);
            QTimer::singleShot(0, &box, &QDialog::accept);
            box.exec();
            QApplication::setActiveWindow(&s.window); // some window systems do so at once
        };
        s.Go(1, kA);
        s.Type("5x");
        s.Click(3, kB);
        QCoreApplication::processEvents();
        QVERIFY(s.Box()->isVisible() && s.Box()->hasFocus());
        QCOMPARE(s.Box()->text(), QString("5x"));
        s.Type("6");
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 6.0F);
        QCOMPARE(s.Value(3, kB), -1.0F);
    }

    void TheFocusThatComesBackToTheGridByKeysStoresTheCell()
    {
        Editing s;
        s.Type("5");
        s.window.findChild<QLabel*>("Number")->setFocus(Qt::MouseFocusReason); // a click on the panel
        QVERIFY(s.Box()->isVisible());
        s.Grid().setFocus(Qt::TabFocusReason);
        QVERIFY(!s.Box()->isVisible());
        QCOMPARE(s.Value(1, kA), 5.0F);
        s.Type("5x");
        s.window.findChild<QLabel*>("Number")->setFocus(Qt::MouseFocusReason);
        s.Grid().setFocus(Qt::BacktabFocusReason);
        QVERIFY(s.user.Saw("Data must be numeric."));
        QVERIFY(s.Box()->isVisible() && s.Box()->hasFocus());
        QCOMPARE(s.Box()->text(), QString("5x"));
    }

    void TheMiddleButtonElsewhereStoresTheCellAsTheLeftOneDoes()
    {
        Editing s;
        s.Go(1, kA);
        s.Type("5");
        QTest::mouseClick(s.Grid().viewport(), Qt::MiddleButton, Qt::NoModifier, s.Middle(3, kB));
        QCOMPARE(s.Value(1, kA), 5.0F);
        QVERIFY(!s.Box()->isVisible());
        s.Type("7");
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 5.0F);
    }

    void ARefusedTextMendedAfterTheRightButtonElsewhereLandsInItsOwnCell()
    {
        Editing s;
        s.Go(1, kA);
        s.Type("5x");
        QTest::mouseClick(s.Grid().viewport(), Qt::RightButton, Qt::NoModifier, s.Middle(3, kB));
        emit s.Menu("mnuEdit")->aboutToShow();
        QVERIFY(s.user.Saw("Data must be numeric."));
        QVERIFY(s.Box()->isVisible() && s.Box()->hasFocus());
        s.Type("6");
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 6.0F);
        QCOMPARE(s.Value(3, kB), -1.0F);
    }

    void OneCellOfASpreadsheetCanBePastedIntoTheOpenCell()
    {
        Editing s;
        QGuiApplication::clipboard()->setText("12.5\r\n");
        s.Press(Qt::Key_F2);
        s.Press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(s.Box()->text(), QString("12.5"));
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 12.5F);
        QVERIFY(s.user.messages.empty());
        s.Press(Qt::Key_F2);
        s.Box()->selectAll();
        s.Box()->paste(); // as the menu of the line itself does
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 12.5F);
        QVERIFY(s.user.messages.empty());
    }

    void ACopiedCellKeepsItsDigitsAlsoThroughTheOpenCell()
    {
        Editing s;
        s.Put(1, kA, "0.712345");
        s.Press(Qt::Key_C, Qt::ControlModifier);
        s.Go(2, kA);
        s.Press(Qt::Key_F2);
        s.Press(Qt::Key_V, Qt::ControlModifier);
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(2, kA), 0.712345F);
    }

    void AHostileClipboardIsAnsweredInTwoSecondsAndLosesNothing()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.Put(4, kB, "6");
        const TableSheet::State before = s.window.Sheet().Now();
        const QString tabs(10'000'000, QChar('\t'));
        const QString rows = QString("1\n").repeated(200'000);
        for (const QString& text :
             {tabs, rows, QString(10'000'000, QChar('9')), QString::fromLatin1("1\0\t2\n", 5),
              QString("1\r\r2"), QString("\"1\t2\n3\t4\n"), QString("1e400\t2\n"),
              QString("1e99999999999999999999\n"), QString("\n\n"), QString("-\t.\n"),
              QString(QChar(0xD800)) + "\t1\n"}) {
            QGuiApplication::clipboard()->setText(text);
            s.Go(1, kA);
            s.user.messages.clear();
            QElapsedTimer timer;
            timer.start();
            s.Entry("mnuPaste")->trigger();
            QVERIFY2(timer.elapsed() < 2000, qPrintable(text.left(20)));
            QVERIFY(!s.user.messages.empty()); // each says what is wrong with it
            while (s.Entry("mnuUndo")->isEnabled() && s.Entry("mnuUndo")->text().endsWith("Paste"))
                s.Entry("mnuUndo")->trigger();
            QVERIFY(s.window.Sheet().Now() == before);
        }
    }

    void ABlockOf200RowsAnd9ColumnsIsPastedCutAndTakenBack()
    {
        Editing s(200, {1, 2, 3, 4, 5, 6, 7, 8, 9});
        QString text;
        for (int row = 1; row <= 200; ++row)
            for (int col = 0; col < 9; ++col)
                text += QString::number(row * 10 + col) + (col < 8 ? "\t" : "\r\n");
        QGuiApplication::clipboard()->setText(text);
        s.Entry("mnuPaste")->trigger();
        QVERIFY(s.user.messages.empty());
        for (int row = 1; row <= 200; ++row)
            for (int col = 0; col < 9; ++col)
                QCOMPARE(s.Value(row, kA + col), static_cast<float>(row * 10 + col));
        s.Mark(1, kA, 200, kA + 8);
        s.Entry("mnuCut")->trigger();
        QCOMPARE(s.Value(200, kA + 8), -1.0F);
        QCOMPARE(QGuiApplication::clipboard()->text(), text);
        QCOMPARE(s.Entry("mnuUndo")->text(), QString("&Undo Cut"));
        s.Entry("mnuUndo")->trigger();
        QCOMPARE(s.Value(200, kA + 8), 2008.0F);
        QCOMPARE(s.Entry("mnuRedo")->text(), QString("&Redo Cut"));
        s.Entry("mnuUndo")->trigger();
        QCOMPARE(s.Value(1, kA), -1.0F);
        QVERIFY(!s.Entry("mnuUndo")->isEnabled());
        s.Entry("mnuRedo")->trigger();
        QCOMPARE(s.Value(1, kA), 10.0F);
    }

    void WhatIsCopiedIsTextAsDisplayedATableWithTheValuesAndTheProgramsOwnFormat()
    {
        Editing s;
        s.Put(1, kA, "0.712345");
        s.Put(1, kB, "2");
        s.Mark(1, kA, 1, kB);
        s.Entry("mnuCopy")->trigger();
        const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
        QCOMPARE(copied->text(), QString("1\t2\r\n"));
        QVERIFY(copied->html().contains("sdval=\"0.712345\""));
        QVERIFY(copied->html().contains(">1</td>"));
        s.Go(3, kA);
        s.Entry("mnuPaste")->trigger();
        QCOMPARE(s.Value(3, kA), 0.712345F);
    }

    void DeleteEmptiesTheSelectedCells()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.Press(Qt::Key_Delete);
        QCOMPARE(s.Value(1, kA), -1.0F);
        QCOMPARE(s.Entry("mnuUndo")->text(), QString("&Undo Delete"));
    }

    void TheEditMenuFollowsEditModeAndTheClipboard()
    {
        Working s;
        const QStringList editing{"mnuCut",    "mnuPaste",     "mnuInsertColumn", "mnuDeleteColumn",
                                  "mnuAddRow", "mnuInsertRow", "mnuDeleteRow"};
        for (const QString& name : editing)
            QVERIFY2(!s.Entry(name.toLatin1())->isEnabled(), qPrintable(name));
        for (const char* name : {"mnuCopy", "mnuFormat", "mnuNumber", "mnuFileDescription"})
            QVERIFY2(s.Entry(name)->isEnabled(), name);
        s.Entry("mnuEditMode")->trigger();
        for (const QString& name : editing)
            QVERIFY2(s.Entry(name.toLatin1())->isEnabled(), qPrintable(name));
        QGuiApplication::clipboard()->clear();
        emit s.Menu("mnuEdit")->aboutToShow();
        QVERIFY(!s.Entry("mnuPaste")->isEnabled());
        QVERIFY(s.Entry("mnuCut")->isEnabled());
        QGuiApplication::clipboard()->setText("1\n");
        emit s.Menu("mnuEdit")->aboutToShow();
        QVERIFY(s.Entry("mnuPaste")->isEnabled());
    }

    void PasteByItsKeysIsNotHeldUpByAClipboardThatWasEmptyWhenTheMenuWasOpen()
    {
        Editing s;
        QGuiApplication::clipboard()->clear();
        s.Menu("mnuEdit")->popup(QPoint(5, 5));
        QVERIFY(!s.Entry("mnuPaste")->isEnabled());
        s.Menu("mnuEdit")->close();
        QCoreApplication::processEvents();
        QGuiApplication::clipboard()->setText("1\n"); // copied elsewhere in the meantime
        s.Activate();
        s.Press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(s.Value(1, kA), 1.0F);
    }

    void OpeningTheEditMenuStoresTheOpenCellAndARefusedOneStaysOpen()
    {
        Editing s;
        s.Type("5");
        emit s.Menu("mnuEdit")->aboutToShow();
        QCOMPARE(s.Value(1, kA), 5.0F);
        QVERIFY(!s.Box()->isVisible());
        s.Type("6x");
        emit s.Menu("mnuEdit")->aboutToShow();
        QVERIFY(s.user.Saw("Data must be numeric."));
        QVERIFY(s.Box()->isVisible());
    }

    void TheRightButtonAndTheMenuKeyPopUpTheEditMenu()
    {
        Editing s;
        bool shown = false;
        QTimer::singleShot(0, &s.window, [&] {
            shown = s.Menu("mnuEdit")->isVisible();
            s.Menu("mnuEdit")->close();
        });
        QContextMenuEvent wish(QContextMenuEvent::Mouse, QPoint(5, 5), s.Grid().mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(s.Grid().viewport(), &wish);
        QCoreApplication::processEvents();
        QVERIFY(shown);
    }
};

QTEST_MAIN(table_entry_test)
#include "table_entry_test.moc"
