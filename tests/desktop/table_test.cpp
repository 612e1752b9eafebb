// SPDX-License-Identifier: GPL-3.0-or-later
// The table of the main window through its real widgets: keys, mouse, clipboard, boxes, Edit Mode and Undo.
#include "data/NumberFormat.h"
#include "desktop/Session.h"
#include "support/SheetBench.h"
#include "views/DataGridModel.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPalette>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTableView>
#include <QTimer>

#include <array>
#include <numeric>
#include <random>

namespace
{
constexpr int kA = 2; ///< grid columns of the data
constexpr int kB = 3;

/// A new data set in Edit Mode: four periods of Tot. Catch Nums, Effort and Catch Nums.
struct Editing : Session {
    Editing() : Editing(4, {columns::TotCatchNums, columns::Effort, columns::CatchNums}) {}
    Editing(int rows, const std::vector<int>& present)
    {
        New(rows, present);
        Activate();
    }
    QLineEdit* Box() { return window.findChild<DataGridView*>()->findChild<QLineEdit*>("txtEdit"); }
    QPoint Middle(int row, int col)
    {
        return Grid().visualRect(Grid().model()->index(row - 1, col)).center();
    }
    void Put(int row, int col, const QString& text)
    {
        Go(row, col);
        Type(text);
        Press(Qt::Key_Return);
    }
};

/// A hand that does anything at all in Edit Mode, by keys and by the menu.
struct Restless : Editing {
    explicit Restless(unsigned seed) : dice(seed)
    {
        user.onListPicker = [this](ListPicker& picker) {
            for (ListPicker::Item& item : picker.items)
                item.selected = Below(3) == 0;
            return true;
        };
        user.onNumberFormat = [this](NumberFormatChoice& choice) {
            choice.category = static_cast<NumberCategory>(1 + Below(3));
            choice.decPlaces = Below(16);
            return true;
        };
        user.onFont = [this](CellFont& font) {
            font.size = 8.0 + Below(4);
            return true;
        };
    }
    int Below(int n) { return static_cast<int>(dice() % static_cast<unsigned>(n)); }
    void Step()
    {
        if (Grid().Rows() > 1 && Grid().Cols() > kA) {
            const auto row = [this] { return 1 + Below(std::min(Grid().Rows() - 1, 9)); };
            const auto col = [this] { return kA + Below(Grid().Cols() - kA); };
            Mark(row(), col(), row(), col());
        }
        static constexpr std::array entries{
            "mnuUndo",   "mnuUndo",           "mnuUndo",         "mnuRedo",   "mnuRedo",
            "mnuCut",    "mnuCopy",           "mnuPaste",        "mnuPaste",  "mnuInsertRow",
            "mnuAddRow", "mnuDeleteRow",      "mnuInsertColumn", "mnuFormat", "mnuDeleteColumn",
            "mnuNumber", "mnuFileDescription"};
        static const std::array<QString, 5> copied{"1\n", "2\t3\n4\t-7\n", "5\tx\n", "0.1\t1e39\n", ""};
        const int what = Below(static_cast<int>(entries.size()) + 6);
        if (what < static_cast<int>(entries.size())) {
            user.inputs = {std::to_string(Below(100))};
            Entry(entries[static_cast<std::size_t>(what)])->trigger();
        } else if (what == static_cast<int>(entries.size())) {
            QGuiApplication::clipboard()->setText(copied[static_cast<std::size_t>(Below(5))]);
        } else if (Grid().hasFocus()) {
            Type(QString::number(Below(100000) / 7.0));
            Press(Below(4) == 0 ? Qt::Key_Escape : Below(2) == 0 ? Qt::Key_Tab : Qt::Key_Return);
        }
    }
    std::mt19937 dice;
};

/// Two fits' worth of data: the imported sample in the working state.
struct Working : Session {
    Working()
    {
        Open();
        Activate();
    }
    ModelGraph& GraphAt(std::size_t position) { return window.Graphs().At(position)->Graph(); }
    std::size_t Toggling()
    {
        std::size_t count = 0;
        for (std::size_t i = 0; i < window.Graphs().UserTitles().size(); ++i)
            count += GraphAt(i).TakesClicks() ? 1 : 0;
        return count;
    }
    /// Where a point of a graph stands on its plot.
    QPoint Spot(std::size_t position, int point)
    {
        QCustomPlot& plot = window.Graphs().At(position)->Plot();
        const ModelGraph& graph = GraphAt(position);
        const auto i = static_cast<std::size_t>(point - 1);
        const double value =
            graph.SetOf(point) == ModelGraph::kIncluded ? graph.YData()[i] : graph.YData2()[i];
        return QPointF(plot.xAxis->coordToPixel(graph.XData()[i]), plot.yAxis->coordToPixel(value)).toPoint();
    }
    void ClickPoint(std::size_t position, int point, Qt::KeyboardModifiers keys = Qt::NoModifier,
                    Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(&window.Graphs().At(position)->Plot(), button, keys, Spot(position, point));
    }
};
} // namespace

class table_test : public QObject
{
    Q_OBJECT

private slots:
    void NewLeadsIntoEditModeWithAnEmptyTableOfTheChosenColumns()
    {
        Editing s;
        QVERIFY(s.window.FileOpen());
        QVERIFY(s.window.Edit().EditMode());
        QVERIFY(s.Entry("mnuEditMode")->isChecked());
        QCOMPARE(s.window.windowTitle(), QString("VELT 3.0 - Untitled - Ling"));
        QCOMPARE(s.Grid().Rows(), 5);
        QCOMPARE(s.Grid().Cols(), 5);
        QCOMPARE(s.Shown(1, TableSheet::kTimeColumn), QString("2001"));
        QCOMPARE(s.Shown(4, kB), QString("-1"));
        QCOMPARE(s.Grid().Selected(), GridSelection::At(1, kA));
        for (const char* menu : {"mnuFile", "mnuFit", "mnuData", "mnuProjections", "mnuOptions"})
            QVERIFY2(!s.Menu(menu)->isEnabled(), menu);
        QVERIFY(s.Menu("mnuEdit")->isEnabled());
    }

    void ACancelledNewLeavesNoDataSetAndSaysNothing()
    {
        Session s;
        s.Open();
        s.user.messages.clear();
        s.user.answers = {Answer::No}; // to the question about changes
        s.Entry("mnuNew")->trigger();
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        s.user.messages.clear();
        QVERIFY(s.user.asked.back() == "new data set"); // and no name of a file
        QVERIFY(!s.window.FileOpen());
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.Entry("mnuNew")->isEnabled());
    }

    void ARangeOf201PeriodsIsMadeAndTheUserIsToldThatTheLastOneHasNoRow()
    {
        Editing s(201, {columns::Effort});
        QVERIFY(s.user.Saw("201 time periods"));
        QCOMPARE(s.window.objData().TimeInts(), 201);
        QCOMPARE(s.Grid().Rows(), 201); // 200 and the titles
    }

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

    void NumbersAreDrawnAndRowsHaveNoSecondNumbering()
    {
        QTest::failOnWarning(QRegularExpression("QPainter")); // one that is left as it was not found
        Editing s;
        const auto cell = [&](int col) {
            return s.Grid().viewport()->grab(s.Grid().visualRect(s.Grid().model()->index(1, col))).toImage();
        };
        s.Put(2, kA, "8");
        s.Put(2, kB, "8");
        s.Go(1, kA);
        const QImage eight = cell(kB);
        s.Put(2, kB, "3");
        s.Go(1, kA);
        QVERIFY(cell(kB) != eight);
        s.Grid().viewport()->grab(); // with the framed cell
        for (const char* name : {"grdData", "grdFixed"})
            QVERIFY(s.window.findChild<QTableView*>(name)->verticalHeader()->isHidden());
        const auto* fixed = s.window.findChild<QTableView*>("grdFixed");
        QCOMPARE(fixed->geometry().right() + 1, s.Grid().geometry().left()); // one table to the eye
        QCOMPARE(fixed->palette().color(QPalette::Base), QApplication::palette().color(QPalette::Window));
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

    void OutsideEditModeAKeyOrADoubleClickSaysSoAndNothingElseHappens()
    {
        Working s;
        const float before = s.Value(1, kA);
        s.user.messages.clear();
        s.Type("5");
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        QVERIFY(s.user.Saw("You must be in Edit Mode to Edit Data"));
        QCOMPARE(s.user.messages.back().icon, Icon::Exclamation);
        QVERIFY(!s.window.findChild<DataGridView*>()->findChild<QLineEdit*>("txtEdit")->isVisible());
        QTest::mouseDClick(s.Grid().viewport(), Qt::LeftButton, Qt::NoModifier,
                           s.Grid().visualRect(s.Grid().model()->index(0, kA)).center());
        QCOMPARE(s.user.messages.size(), std::size_t{2});
        s.Press(Qt::Key_Delete);
        s.Press(Qt::Key_F2);
        QCOMPARE(s.user.messages.size(), std::size_t{4});
        s.Press(Qt::Key_Down); // moving about is no editing
        s.Press(Qt::Key_Escape);
        QCOMPARE(s.user.messages.size(), std::size_t{4});
        QCOMPARE(s.Value(1, kA), before);
    }

    void EditModeTintsTheTableDisablesTheBoxesAndGoesBack()
    {
        Working s;
        QCOMPARE(s.Grid().palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
        QVERIFY(s.window.findChild<DataGridView*>()->Model().BoxEnabled(1));
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.Entry("mnuEditMode")->isChecked());
        QCOMPARE(s.Grid().palette().color(QPalette::Base), QColor(0xC0, 0xFF, 0xFF)); // 0xFFFFC0 as BGR
        QVERIFY(!s.window.findChild<DataGridView*>()->Model().BoxEnabled(1));
        const bool in = s.window.objData().ToggledIn(1);
        s.ClickBox(1);
        s.Press(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(s.window.objData().ToggledIn(1), in);
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(!s.Entry("mnuEditMode")->isChecked());
        QCOMPARE(s.Grid().palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
        QVERIFY(s.Menu("mnuFit")->isEnabled());
    }

    void EnteringEditModeWithAFitAsksAndNoKeepsEverything()
    {
        Working s;
        s.Fit();
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.user.Saw("Entering Edit mode will clear any fit and all plots, Continue?"));
        QCOMPARE(s.user.messages.back().icon, Icon::Question);
        QVERIFY(!s.window.Edit().EditMode());
        QVERIFY(!s.Entry("mnuEditMode")->isChecked());
        QVERIFY(s.window.objMeth().MethDefined());
        QVERIFY(!s.window.Graphs().Empty());

        s.user.answers = {Answer::Yes};
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.window.Edit().EditMode());
        QVERIFY(!s.window.objMeth().MethDefined());
        QVERIFY(s.window.Graphs().Empty());
        QVERIFY(!s.Report()->isVisible());
        QCOMPARE(s.window.Sheet().GridColOf(columns::ExpCatchNums), 0);
    }

    void EnteringEditModeWithAPlotAloneAsksAsWell()
    {
        Working s;
        s.window.AddModelGraph(Graph("Effort"));
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.user.Saw("Entering Edit mode"));
        QVERIFY(!s.window.Edit().EditMode());
    }

    void EnteringEditModeWithNeitherAsksNothing()
    {
        Working s;
        s.user.messages.clear();
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.window.Edit().EditMode());
    }

    void LeavingEditModeRecomputesIncludedSoThatARowWhoseEffortWasEmptiedLosesItsToggle()
    {
        Editing s;
        for (int row = 1; row <= 4; ++row)
            for (int col = kA; col <= kB + 1; ++col)
                s.Put(row, col, "10");
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.window.objData().ToggledIn(2));
        QCOMPARE(s.window.objData().NNtPoints(), 4);
        s.Entry("mnuEditMode")->trigger();
        s.Go(2, kB);
        s.Press(Qt::Key_Delete);
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(!s.window.objData().Included(2));
        QVERIFY(!s.window.objData().ToggledIn(2));
        QCOMPARE(s.window.objData().NNtPoints(), 3);
    }

    void LeavingEditModeStoresTheOpenCellFirst()
    {
        Editing s;
        s.Type("5");
        s.Entry("mnuEditMode")->trigger();
        QCOMPARE(s.Value(1, kA), 5.0F);
        QVERIFY(!s.window.Edit().EditMode());
    }

    void LeavingEditModeWithARefusedCellStaysThere()
    {
        Editing s;
        s.Type("5x");
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.user.Saw("Data must be numeric."));
        QVERIFY(s.window.Edit().EditMode());
        QVERIFY(s.Entry("mnuEditMode")->isChecked());
        QVERIFY(s.Box()->isVisible());
    }

    void AConversionThatFailsIsReportedAndEditModeStaysOn()
    {
        Editing s(2, {columns::MeanWt, columns::Effort, columns::CatchWt});
        for (int row = 1; row <= 2; ++row) {
            s.Put(row, kA, "0"); // a mean weight of nothing
            s.Put(row, kB, "1");
            s.Put(row, kB + 1, "5");
        }
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(s.user.Saw("Division by zero"));
        QVERIFY(s.user.Saw("row 1"));
        QVERIFY(s.window.Edit().EditMode());
        QVERIFY(s.Entry("mnuEditMode")->isChecked());
        QVERIFY(s.Entry("mnuUndo")->isEnabled()); // nothing is lost
        QCOMPARE(s.window.Sheet().GridColOf(columns::CatchNums), 0);
    }

    void AnAbundanceIndexOverwritesATypedEffortAtEachLeavingOfEditMode()
    {
        Editing s(2, {columns::TotCatchNums, columns::Effort, columns::AbundIndex});
        s.Put(1, kB, "7");
        s.Put(1, kB + 1, "0.5");
        s.Entry("mnuEditMode")->trigger();
        QCOMPARE(s.window.objData().Effort(1), 1.0F);
        QCOMPARE(s.window.objData().Effort(2), -1.0F);
        QCOMPARE(s.window.objData().CatchWt(1), 0.5F);
    }

    void UndoIsGoneWhenEditModeIsLeft()
    {
        Editing s;
        s.Put(1, kA, "5");
        QVERIFY(s.Entry("mnuUndo")->isEnabled());
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(!s.Entry("mnuUndo")->isEnabled());
        s.Entry("mnuEditMode")->trigger();
        QVERIFY(!s.Entry("mnuUndo")->isEnabled());
        QCOMPARE(s.Entry("mnuUndo")->text(), QString("&Undo"));
    }

    void EveryKindOfChangeIsTakenBackToTheBitAndBroughtForwardAgain()
    {
        Editing s;
        s.Put(1, kA, "0.1");
        s.Put(2, kB, "3");
        std::vector<TableSheet::State> states{s.window.Sheet().Now()};
        const auto note = [&] { states.push_back(s.window.Sheet().Now()); };
        const int before = s.window.Edit().Steps().index();
        s.Go(1, kA);
        s.Entry("mnuInsertRow")->trigger();
        note();
        s.Go(2, kA);
        s.Entry("mnuDeleteRow")->trigger();
        note();
        s.Entry("mnuAddRow")->trigger();
        note();
        s.user.Selects({"Mean Wt"});
        s.Entry("mnuInsertColumn")->trigger();
        note();
        s.user.Selects({"Effort"});
        s.Entry("mnuDeleteColumn")->trigger();
        note();
        s.user.onNumberFormat = [](NumberFormatChoice& choice) {
            choice = {.category = NumberCategory::Fixed, .decPlaces = 3};
            return true;
        };
        s.Entry("mnuNumber")->trigger();
        note();
        s.user.onFont = [](CellFont& font) {
            font.bold = true;
            return true;
        };
        s.Entry("mnuFormat")->trigger();
        note();
        s.user.inputs = {std::string("Cod")};
        s.Entry("mnuFileDescription")->trigger();
        note();
        QCOMPARE(s.window.Edit().Steps().index(), before + static_cast<int>(states.size()) - 1);
        QCOMPARE(s.Entry("mnuUndo")->text(), QString("&Undo File Description"));
        QVERIFY(s.window.windowTitle().endsWith("Cod"));
        for (auto state = states.rbegin() + 1; state != states.rend(); ++state) {
            s.Entry("mnuUndo")->trigger();
            QVERIFY(s.window.Sheet().Now() == *state);
            QCOMPARE(s.Grid().Rows(), s.window.Sheet().Rows());
            QCOMPARE(s.Grid().Cols(), s.window.Sheet().Cols());
        }
        QVERIFY(s.window.windowTitle().endsWith("Ling"));
        for (auto state = states.begin() + 1; state != states.end(); ++state) {
            s.Entry("mnuRedo")->trigger();
            QVERIFY(s.window.Sheet().Now() == *state);
        }
    }

    void UndoOfARowLeavesTheSelectionWhereItsCellsStillAre()
    {
        Editing s;
        s.Entry("mnuAddRow")->trigger();
        s.Mark(3, kA, 5, kB + 1);
        s.Entry("mnuUndo")->trigger();
        QCOMPARE(s.Grid().Selected(), (GridSelection{3, kA, 4, kB + 1}));
        s.Mark(2, kB + 1, 1, kA);
        s.Entry("mnuRedo")->trigger();
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kB + 1, 1, kA}));
    }

    void UndoAndRedoMixedWithEverythingEndWhereTheyBegan()
    {
        for (const unsigned seed : {1U, 2U}) {
            Restless s(seed);
            const TableSheet::State first = s.window.Sheet().Now();
            for (int step = 0; step < 250; ++step) {
                s.Step();
                QVERIFY(!s.Box()->isVisible());
                QCOMPARE(s.Grid().Rows(), s.window.Sheet().Rows());
                QCOMPARE(s.Grid().Cols(), s.window.Sheet().Cols());
                QCOMPARE(s.Grid().isVisible(), s.Grid().Rows() > 1);
                QVERIFY(!s.user.Saw("Subscript"));
            }
            const TableSheet::State last = s.window.Sheet().Now();
            const int steps = s.window.Edit().Steps().index();
            QVERIFY(steps > 0);
            while (s.Entry("mnuUndo")->isEnabled())
                s.Entry("mnuUndo")->trigger();
            QVERIFY(s.window.Sheet().Now() == first);
            while (s.window.Edit().Steps().index() < steps)
                s.Entry("mnuRedo")->trigger();
            QVERIFY(s.window.Sheet().Now() == last);
        }
    }

    void RowsAreInsertedAboveTheSelectionOnlyOnYes()
    {
        Editing s;
        s.Put(2, kA, "5");
        s.Mark(2, kA, 3, kA);
        s.user.messages.clear();
        for (const Answer no : {Answer::No, Answer::Cancel}) {
            s.user.answers = {no};
            s.Entry("mnuInsertRow")->trigger();
            QCOMPARE(s.window.objData().TimeInts(), 4);
        }
        QCOMPARE(QString::fromStdString(s.user.messages.back().text),
                 QString("Are you sure you wish to insert Time Periods above the selected area ? "));
        QCOMPARE(s.user.messages.back().buttons, Buttons::YesNoCancel);
        QCOMPARE(s.user.messages.back().icon, Icon::Question);
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kA, 3, kB + 1})); // whole rows, to show what is meant
        s.Entry("mnuInsertRow")->trigger();
        QCOMPARE(s.window.objData().TimeInts(), 6);
        QCOMPARE(s.window.objData().MaxTimeP(), 2006);
        QCOMPARE(s.Value(4, kA), 5.0F);
        QCOMPARE(s.Grid().Rows(), 7);
    }

    void DeletingAllRowsLeavesATableWithoutRowsThatCanBeFilledAgain()
    {
        Editing s;
        s.Press(Qt::Key_A, Qt::ControlModifier);
        s.Entry("mnuDeleteRow")->trigger();
        QVERIFY(s.user.Saw("Are you sure you wish to delete the selected Time Periods?"));
        QCOMPARE(s.window.objData().TimeInts(), 0);
        QCOMPARE(s.window.objData().MaxTimeP(), 2000);
        QVERIFY(s.Panel("lblHint").contains("Add Row(s)"));
        QVERIFY(s.window.findChild<QLabel*>("lblHint")->isVisible());
        s.user.messages.clear();
        s.Entry("mnuDeleteRow")->trigger(); // nothing to delete
        QGuiApplication::clipboard()->setText("1\n");
        for (const char* name : {"mnuNumber", "mnuFormat", "mnuCopy", "mnuCut", "mnuPaste"})
            s.Entry(name)->trigger();
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        QVERIFY(s.user.Saw("The table has no cells to paste into."));
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("1\n"));
        s.Entry("mnuEditMode")->trigger();
        s.Entry("mnuEditMode")->trigger();
        s.Entry("mnuAddRow")->trigger();
        QCOMPARE(s.window.objData().TimeInts(), 1);
        QVERIFY(s.Grid().isVisible());
        s.Activate();
        s.Put(1, kA, "5");
        QCOMPARE(s.Value(1, kA), 5.0F);
    }

    void UndoShowsATableAgainOfWhichAllRowsWereDeletedAndTheKeysGoThere()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.Press(Qt::Key_A, Qt::ControlModifier);
        s.Entry("mnuDeleteRow")->trigger();
        s.Entry("mnuUndo")->trigger();
        QVERIFY(s.Grid().isVisible());
        QCOMPARE(s.Value(1, kA), 5.0F);
        QVERIFY(s.Grid().hasFocus());
        s.Type("6");
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 6.0F);
        s.Entry("mnuUndo")->trigger();
        s.Entry("mnuUndo")->trigger();
        QCOMPARE(s.Value(1, kA), -1.0F); // the step before the deletion
        s.Entry("mnuRedo")->trigger();
        s.Press(Qt::Key_A, Qt::ControlModifier);
        s.Entry("mnuDeleteRow")->trigger();
        s.Entry("mnuUndo")->trigger();
        s.Entry("mnuRedo")->trigger();
        QVERIFY(s.window.findChild<QLabel*>("lblHint")->isVisible());
    }

    void The201stRowIsRefusedWithASentence()
    {
        Editing s(199, {columns::Effort});
        s.user.messages.clear();
        s.Mark(1, kA, 2, kA);
        s.Entry("mnuAddRow")->trigger();
        QVERIFY(s.user.Saw("The table has room for 200 time periods."));
        s.Entry("mnuInsertRow")->trigger();
        QCOMPARE(s.user.messages.size(), std::size_t{2}); // refused before it is asked
        QCOMPARE(s.window.objData().TimeInts(), 199);
        s.Go(1, kA);
        s.Entry("mnuAddRow")->trigger();
        QCOMPARE(s.window.objData().TimeInts(), 200);
    }

    void ColumnsAreOfferedPickedAndAskedFor()
    {
        Editing s;
        ListPicker offered;
        s.user.onListPicker = [&](ListPicker& picker) {
            offered = picker;
            return false;
        };
        s.Entry("mnuInsertColumn")->trigger();
        QCOMPARE(QString::fromStdString(offered.caption), QString("Inserting Columns"));
        QCOMPARE(QString::fromStdString(offered.prompt), QString("Select Columns to be inserted;"));
        QCOMPARE(QString::fromStdString(offered.leftCaption), QString("UnSelected"));
        QCOMPARE(QString::fromStdString(offered.rightCaption), QString("Selected"));
        QCOMPARE(offered.items.size(), std::size_t{6});
        QCOMPARE(QString::fromStdString(offered.items.front().text), QString("Tot. Catch Wt"));
        s.Entry("mnuDeleteColumn")->trigger();
        QCOMPARE(QString::fromStdString(offered.caption), QString("Deleting Columns"));
        QCOMPARE(QString::fromStdString(offered.prompt), QString("Select Columns to be deleted;"));
        QCOMPARE(offered.items.size(), std::size_t{3});
        QVERIFY(s.user.messages.empty()); // Cancel stops the command

        s.user.Selects({});
        s.Entry("mnuInsertColumn")->trigger();
        QVERIFY(s.user.messages.empty()); // so does choosing nothing

        s.user.Selects({"Mean Wt", "Recruit. Index"});
        s.user.answers = {Answer::No};
        s.Entry("mnuInsertColumn")->trigger();
        QVERIFY(s.user.Saw("OK to add Columns?"));
        QCOMPARE(s.user.messages.back().icon, Icon::Information);
        QVERIFY(!s.window.objData().ColPresent(columns::MeanWt));
        s.Entry("mnuInsertColumn")->trigger();
        QVERIFY(s.window.objData().ColPresent(columns::MeanWt));
        QVERIFY(s.window.objData().ColPresent(columns::RecruitIndex));
        QCOMPARE(s.Shown(1, s.window.Sheet().GridColOf(columns::MeanWt)), QString("-1"));
    }

    void AllColumnsCannotBeErased()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.user.Selects({"Tot. Catch Nums", "Effort", "Catch Nums"});
        s.Entry("mnuDeleteColumn")->trigger();
        QVERIFY(s.user.Saw("OK to Delete Columns?"));
        QVERIFY(s.user.Saw("Cannot Erase all Columns, please try again"));
        QCOMPARE(s.Value(1, kA), 5.0F);
        QCOMPARE(s.Grid().Cols(), 5);
    }

    void DeletingEffortAndLeavingEditModeMakesEveryRowNotIncluded()
    {
        Editing s;
        for (int row = 1; row <= 4; ++row)
            s.Put(row, kB, "10");
        s.user.Selects({"Effort"});
        s.Entry("mnuDeleteColumn")->trigger();
        s.Entry("mnuEditMode")->trigger();
        for (int row = 1; row <= 4; ++row)
            QVERIFY(!s.window.objData().Included(row));
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

    void TheFileDescriptionIsAskedForWithThePresentOneAndShowsInTheCaption()
    {
        Working s;
        s.user.inputs = {std::string("Hoki")};
        s.Entry("mnuFileDescription")->trigger();
        QVERIFY(s.user.asked.back() == "input box: File Description ; ");
        QCOMPARE(QString::fromStdString(s.user.suggested.back()), QString("Constant recruitment, 25 years"));
        QVERIFY(s.window.windowTitle().endsWith("Hoki"));
        s.user.inputs = {std::string(39, 'n') + "- and more than a project keeps"};
        s.Entry("mnuFileDescription")->trigger();
        QVERIFY(s.user.Saw("A project keeps 40 characters"));
        QVERIFY(s.window.windowTitle().endsWith(QString(39, 'n') + "-"));
        s.user.inputs = {std::string("Hoki")};
        s.Entry("mnuFileDescription")->trigger();
        s.user.inputs = {std::string()}; // an empty answer changes nothing
        s.Entry("mnuFileDescription")->trigger();
        QVERIFY(s.window.windowTitle().endsWith("Hoki"));
    }

    void ANumberFormatAlsoServesOutsideEditModeAndIsNoStepOfUndo()
    {
        Working s;
        s.Go(1, kB);
        s.user.onNumberFormat = [](NumberFormatChoice& choice) {
            choice = {.category = NumberCategory::Scientific, .decPlaces = 2};
            return true;
        };
        s.Entry("mnuNumber")->trigger();
        QCOMPARE(s.Shown(1, kB), QString("1.09E+02"));
        QVERIFY(!s.Entry("mnuUndo")->isEnabled());
        QCOMPARE(s.Grid().Selected().rowSel, 25); // the whole column
    }

    void AFontShowsInTheCellsAndMakesRoomForItself()
    {
        Working s;
        const int row = s.Grid().rowHeight(0);
        const int width = s.Grid().columnWidth(kB);
        s.Go(1, kB);
        s.user.onFont = [](CellFont& font) {
            font = {.name = "Sans", .size = 30.0, .bold = true, .italic = false};
            return true;
        };
        s.Entry("mnuFormat")->trigger();
        QCOMPARE(s.Grid().model()->index(0, kB).data(Qt::FontRole).value<QFont>().pointSizeF(), 30.0);
        QVERIFY(s.Grid().rowHeight(0) > row);
        QVERIFY(s.Grid().columnWidth(kB) > width);
        QVERIFY(!s.Grid().model()->index(0, kA).data(Qt::FontRole).value<QFont>().bold());
    }

    void ABoxTakesAPeriodOutAndInAgainWithoutAQuestionWhenThereIsNoFit()
    {
        Working s;
        s.user.messages.clear();
        const int before = s.window.objData().NNtPoints();
        s.ClickBox(3);
        QVERIFY(!s.window.objData().ToggledIn(3));
        QCOMPARE(s.window.objData().NNtPoints(), before - 1);
        QCOMPARE(s.Grid().Selected().row, 3);
        s.Activate();
        s.Press(Qt::Key_Space, Qt::ControlModifier); // the same by the keyboard
        QVERIFY(s.window.objData().ToggledIn(3));
        QCOMPARE(s.window.objData().NNtPoints(), before);
        QVERIFY(s.user.messages.empty());
    }

    void ThePeriodOfEachOf200RowsHasABox()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath("long.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("Two hundred periods\nTime Effort Catch Total\n");
        for (int label = 1801; label <= 2000; ++label)
            file.write(QByteArray::number(label) + " 10 5 5\n");
        file.close();
        Session s;
        s.window.OpenPath(file.fileName());
        QCOMPARE(s.window.objData().NNtPoints(), 200);
        for (const int row : {1, 200}) {
            auto* fixed = s.window.findChild<QTableView*>("grdFixed");
            fixed->scrollTo(fixed->model()->index(row - 1, 0));
            s.ClickBox(row);
            QVERIFY(!s.window.objData().ToggledIn(row));
        }
        QCOMPARE(s.window.objData().NNtPoints(), 198);
        const DataGridModel& model = s.window.findChild<DataGridView*>()->Model();
        QVERIFY(model.BoxEnabled(200) && !model.BoxEnabled(201));
    }

    void ABoxOfARowThatIsNotIncludedCannotBeClicked()
    {
        Editing s;
        for (int row = 1; row <= 3; ++row)
            s.Put(row, kB, "10");
        s.Entry("mnuEditMode")->trigger();
        s.ClickBox(4);
        s.Go(4, kA);
        s.Press(Qt::Key_Space, Qt::ControlModifier);
        QVERIFY(!s.window.objData().ToggledIn(4));
        QCOMPARE(s.window.objData().NNtPoints(), 3);
    }

    void ATableWithoutDataColumnsHasNoCellAndItsKeysDoNothing()
    {
        Session s;
        s.user.onAsciiWizard = [](AsciiWizard& wizard) { // only the years are taken
            wizard.ChooseTiming(1);
            wizard.Next();
            wizard.Finish();
            return true;
        };
        s.Open();
        s.Activate();
        QCOMPARE(s.Grid().Cols(), 2);
        s.Press(Qt::Key_Space, Qt::ControlModifier);
        s.Entry("mnuCopy")->trigger();
        s.Entry("mnuEditMode")->trigger();
        QGuiApplication::clipboard()->setText("1\t2\n");
        s.user.messages.clear();
        for (const Qt::Key key : {Qt::Key_5, Qt::Key_Delete, Qt::Key_Return, Qt::Key_Down, Qt::Key_End})
            s.Press(key);
        s.Press(Qt::Key_A, Qt::ControlModifier);
        for (const char* name : {"mnuCut", "mnuNumber", "mnuFormat"})
            s.Entry(name)->trigger();
        QVERIFY(s.user.messages.empty());
        s.Entry("mnuPaste")->trigger();
        QVERIFY(s.user.Saw("The table has no cells to paste into."));
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("1\t2\n"));
        s.user.Selects({"Effort"});
        s.Entry("mnuInsertColumn")->trigger();
        QCOMPARE(s.Grid().Selected(), GridSelection::At(1, kA));
    }

    void ABoxAsksBeforeItTakesAFitAwayAndNoKeepsIt()
    {
        Working s;
        s.Fit();
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.ClickBox(3);
        QVERIFY(s.user.Saw("Toggling Points clears current fit. Do you wish to Continue?"));
        QCOMPARE(s.user.messages.back().icon, Icon::Question);
        QVERIFY(s.window.objMeth().MethDefined());
        QVERIFY(s.window.objData().ToggledIn(3));

        const std::size_t graphs = s.window.Graphs().UserTitles().size();
        s.user.answers = {Answer::Yes};
        s.ClickBox(3);
        QVERIFY(!s.window.objMeth().MethDefined());
        QVERIFY(!s.window.objData().ToggledIn(3));
        QCOMPARE(s.window.Graphs().UserTitles().size(),
                 graphs); // they stay, and show the point out of the fit
        QVERIFY(s.Toggling() >= 2);
        for (std::size_t i = 0; i < graphs; ++i)
            if (s.GraphAt(i).TakesClicks())
                QCOMPARE(s.GraphAt(i).SetOf(3), int(ModelGraph::kExcluded));
        QCOMPARE(s.window.Sheet().GridColOf(columns::ExpCatchNums), 0); // columns of no fit do not stay
        QVERIFY(!s.Report()->isVisible());
    }

    void APointOfAGraphAsksBeforeItTakesAFitAwayAndTogglesItInEveryGraph()
    {
        Working s;
        s.Fit();
        s.user.messages.clear();
        s.user.answers = {Answer::No};
        s.ClickPoint(0, 5);
        QVERIFY(s.user.Saw("Toggling Points clears current fit. Do you wish to Continue?"));
        QVERIFY(s.window.objMeth().MethDefined());
        s.user.answers = {Answer::Yes};
        s.ClickPoint(0, 5);
        QVERIFY(!s.window.objMeth().MethDefined());
        QVERIFY(!s.window.objData().ToggledIn(5));
        for (std::size_t i = 0; i < s.window.Graphs().UserTitles().size(); ++i)
            if (s.GraphAt(i).TakesClicks())
                QCOMPARE(s.GraphAt(i).SetOf(5), int(ModelGraph::kExcluded));

        s.user.messages.clear();
        s.ClickPoint(0, 5); // no fit now: back without a question
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.window.objData().ToggledIn(5));
        QCOMPARE(s.GraphAt(0).SetOf(5), int(ModelGraph::kIncluded));
    }

    void APointOfARowThatIsNoLongerIncludedGivesTheInformation()
    {
        Working s;
        s.Fit();
        s.user.answers = {Answer::Yes};
        const_cast<clsVeltData&>(s.window.objData()).Include(5, false);
        s.user.messages.clear();
        s.ClickPoint(0, 5);
        QVERIFY(s.user.Saw("Cannot Toggle in points that are not Included"));
        QCOMPARE(s.user.messages.back().icon, Icon::Information);
    }

    void ADragOverAPointDoesNotToggleItAndADoubleClickTogglesItOnce()
    {
        Working s;
        s.Fit();
        s.user.messages.clear();
        QCustomPlot& plot = s.window.Graphs().At(0)->Plot();
        const QPoint from = s.Spot(0, 5);
        const QPoint to = from + QPoint(QApplication::startDragDistance() * 3, 0);
        QTest::mousePress(&plot, Qt::LeftButton, Qt::NoModifier, to);
        QTest::mouseRelease(&plot, Qt::LeftButton, Qt::NoModifier, from);
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.window.objMeth().MethDefined());

        s.user.answers = {Answer::Yes};
        s.ClickPoint(0, 5); // the first half of it, which cannot know
        QMouseEvent second(QEvent::MouseButtonDblClick, from, plot.mapToGlobal(from), Qt::LeftButton,
                           Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&plot, &second);
        QTest::mouseRelease(&plot, Qt::LeftButton, Qt::NoModifier, from);
        QVERIFY(!s.window.objData().ToggledIn(5));
    }

    void OfCrowdedPointsTheOneUnderTheCursorIsMeant()
    {
        auto crowded = std::make_shared<ModelGraph>();
        crowded->Create(200);
        crowded->WithToggs(true);
        std::vector<double> periods(200);
        std::iota(periods.begin(), periods.end(), 1.0);
        crowded->XData(periods);
        crowded->YData(std::vector<double>(200, 5.0));
        frmModelGraph window(crowded);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.Plot().replot();
        QSignalSpy toggled(&window, &frmModelGraph::UserToggle);
        for (const int point : {1, 50, 200}) {
            const QPointF at(window.Plot().xAxis->coordToPixel(point),
                             window.Plot().yAxis->coordToPixel(5.0));
            QTest::mouseClick(&window.Plot(), Qt::LeftButton, Qt::NoModifier, at.toPoint());
            QCOMPARE(toggled.last().at(0).toInt(), point);
        }
    }

    void AHighlightedPeriodLightsUpInAllGraphsAndInTheTableAndGoesOutAgain()
    {
        Working s;
        s.Fit();
        s.user.messages.clear();
        s.ClickPoint(0, 5, Qt::ShiftModifier);
        QVERIFY(s.user.messages.empty()); // it asks nothing and keeps the fit
        int lit = 0;
        for (std::size_t i = 0; i < s.window.Graphs().UserTitles().size(); ++i) {
            QCOMPARE(s.GraphAt(i).Highlighted().has_value(), s.GraphAt(i).TakesClicks());
            lit += s.GraphAt(i).Highlighted() && s.GraphAt(i).Highlighted()->point == 5 ? 1 : 0;
        }
        QCOMPARE(static_cast<std::size_t>(lit), s.Toggling());
        const auto background = [&](int row) {
            return s.Grid().model()->index(row - 1, kA).data(Qt::BackgroundRole);
        };
        QVERIFY(background(5).isValid());
        QVERIFY(!background(4).isValid());

        s.ClickPoint(0, 6, Qt::NoModifier, Qt::MiddleButton); // the other way to ask for it
        QVERIFY(background(6).isValid() && !background(5).isValid());
        s.ClickPoint(0, 6, Qt::ShiftModifier); // the same point once more: out
        QVERIFY(!background(6).isValid());
        QVERIFY(!s.GraphAt(0).Highlighted());
    }

    void AGraphThatIsLitUpOrTooShortFollowsTheOneThatIsClicked()
    {
        Working s;
        s.Fit();
        auto brief = Graph("Two periods", GraphType::PointsAndLine);
        brief->WithToggs(true);
        brief->HighlightPoint(ModelGraph::kIncluded, 2);
        s.window.AddModelGraph(brief);
        auto alike = std::make_shared<ModelGraph>(s.window.Graphs().At(0)->Graph());
        alike->Title("Lit up before it came");
        alike->HighlightPoint(ModelGraph::kIncluded, 5);
        s.window.AddModelGraph(alike);
        s.ClickPoint(0, 5, Qt::ShiftModifier);
        QVERIFY(alike->Highlighted() && alike->Highlighted()->point == 5);
        QVERIFY(!brief->Highlighted()); // it has no fifth point

        s.user.messages.clear();
        s.user.answers = {Answer::Yes};
        s.ClickPoint(0, 5);
        QCOMPARE(s.user.messages.size(), std::size_t{1}); // the question, and no failure
        QVERIFY(!s.window.objData().ToggledIn(5));
        QCOMPARE(alike->SetOf(5), int(ModelGraph::kExcluded));
        QCOMPARE(brief->SetOf(2), int(ModelGraph::kIncluded));
    }

    void TheKeysOfAGraphMoveTheLightToggleUnderItAndPutItOut()
    {
        Working s;
        s.Fit();
        frmModelGraph* graph = s.window.Graphs().At(0);
        QTest::keyClick(graph, Qt::Key_Right);
        QCOMPARE(graph->Graph().Highlighted()->point, 1);
        QTest::keyClick(graph, Qt::Key_Right);
        QCOMPARE(graph->Graph().Highlighted()->point, 2);
        QTest::keyClick(graph, Qt::Key_Left);
        QTest::keyClick(graph, Qt::Key_Left); // there is none before the first
        QCOMPARE(graph->Graph().Highlighted()->point, 1);
        s.user.answers = {Answer::Yes};
        QTest::keyClick(graph, Qt::Key_Space);
        QVERIFY(!s.window.objData().ToggledIn(1));
        QTest::keyClick(graph, Qt::Key_Escape);
        QVERIFY(!graph->Graph().Highlighted());
    }

    void TheKeysOfAGraphPassOverAPointThatIsNotDrawnAndLeaveOtherKeysAlone()
    {
        auto graph = Graph("Effort", GraphType::PointsAndLine);
        graph->Create(3);
        graph->WithToggs(true);
        graph->XData(std::vector<double>{1, 2, 3});
        graph->YData(std::vector<double>{10, ModelGraph::InvalidData, 30});
        graph->HighlightPoint(ModelGraph::kIncluded, 1);
        frmModelGraph window(graph);
        QSignalSpy asked(&window, &frmModelGraph::UserInterrogate);
        QTest::keyClick(&window, Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(asked.count(), 0);
        QTest::keyClick(&window, Qt::Key_Right);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.last(), (QVariantList{int(ModelGraph::kIncluded), 3}));
    }

    void AGraphSaysWhichButtonDoesWhatOnlyWhereItReactsToClicks()
    {
        Working s;
        s.Fit();
        const QString tip = s.window.Graphs().At(0)->Plot().toolTip();
        QVERIFY(tip.contains("Click on a point") && tip.contains("Shift+click"));
        s.window.AddModelGraph(Graph("Effort"));
        QVERIFY(s.window.Graphs().At(s.window.Graphs().UserTitles().size() - 1)->Plot().toolTip().isEmpty());
    }

    void ClosingTheWindowWithTypedDataAsksAndCancelKeepsThem()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.user.answers = {Answer::Cancel};
        s.window.close();
        QVERIFY(s.window.isVisible());
        QVERIFY(s.user.Saw("Do you wish to save changes to current data set?"));
        s.Type("5x"); // and an open cell that is refused keeps it open as well
        s.window.close();
        QVERIFY(s.window.isVisible());
        QCOMPARE(s.Value(1, kA), 5.0F);
    }

    void AFileThatComesInEditModeStoresTheOpenCellAsksAndEndsIt()
    {
        Editing s;
        s.Type("5x");
        s.Open(); // the refused cell stays in front
        QVERIFY(s.user.Saw("Data must be numeric."));
        QVERIFY(s.Box()->isVisible());
        s.Type("5");
        s.user.answers = {Answer::Cancel};
        s.Open();
        QVERIFY(s.user.Saw("Do you wish to save changes to current data set?"));
        QCOMPARE(s.Value(1, kA), 5.0F);
        QVERIFY(s.window.Edit().EditMode());
        s.user.answers = {Answer::No};
        s.Open();
        QVERIFY(!s.window.Edit().EditMode());
        QVERIFY(!s.Entry("mnuUndo")->isEnabled());
        QVERIFY(s.window.findChild<DataGridView*>()->Model().BoxEnabled(1));
        QCOMPARE(s.Grid().palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
    }

    void NoFileIsDroppedIntoEditMode()
    {
        Editing s;
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(QString(VELT_TEST_SAMPLES) + "/expected/const25.txt")});
        QDragEnterEvent drag(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        drag.ignore();
        QApplication::sendEvent(&s.window, &drag);
        QVERIFY(!drag.isAccepted());
    }

    void AFitCanBeMadeFromTypedData()
    {
        Editing s(6, {columns::TotCatchNums, columns::Effort, columns::CatchNums});
        const char* rows[] = {"100\t10\t100", "80\t10\t80", "66\t10\t66",
                              "52\t10\t52",   "41\t10\t41", "34\t10\t34"};
        QString text;
        for (const char* row : rows)
            text += QString::fromLatin1(row) + "\n";
        QGuiApplication::clipboard()->setText(text);
        s.Entry("mnuPaste")->trigger();
        s.Entry("mnuEditMode")->trigger();
        s.user.Picks("NO RECRUITMENT");
        s.Entry("mnuNewModel")->trigger();
        QVERIFY(s.window.objMeth().MethDefined());
        QVERIFY(!s.window.Graphs().Empty());
    }

    void ACellTellsTheDecimalsThatItsFormatHides()
    {
        Session session;
        session.Open();
        const DataGridModel& model = session.window.findChild<DataGridView*>()->Model();
        QCOMPARE(model.data(model.index(0, 3), Qt::ToolTipRole).toString(), QString("109.3"));
    }

    void TheIncludeColumnTellsAPeriodInTheFitFromOneLeftOutAndFromOneThatTheDataKeepOut()
    {
        SheetBench bench(4, {columns::Effort});
        clsVeltData& data = bench.data;
        const std::array<bool, 4> included{true, true, false, false};
        const std::array<bool, 4> toggledIn{true, false, true, false};
        for (int row = 1; row <= 4; ++row) {
            data.Included(row, included[static_cast<std::size_t>(row - 1)]);
            data.ToggledIn(row, toggledIn[static_cast<std::size_t>(row - 1)]);
        }
        DataGridModel model;
        model.Show(&bench.sheet);
        const std::array<Qt::CheckState, 4> marks{Qt::Checked, Qt::Unchecked, Qt::Unchecked, Qt::Unchecked};
        const QString kept("The data of this period do not allow it in a fit");
        const QStringList hints{"In the fit. A click or Ctrl+Space takes it out.",
                                "Left out of the fit. A click or Ctrl+Space takes it in.", kept, kept};
        for (int row = 0; row < 4; ++row) {
            const QModelIndex cell = model.index(row, TableSheet::kIncludeColumn);
            QCOMPARE(model.data(cell, Qt::CheckStateRole).value<Qt::CheckState>(),
                     marks[static_cast<std::size_t>(row)]);
            QCOMPARE(model.BoxEnabled(row + 1), included[static_cast<std::size_t>(row)]);
            QCOMPARE(model.data(cell, Qt::ToolTipRole).toString(), hints[row]);
            QCOMPARE(model.data(cell, Qt::AccessibleTextRole).toString(), hints[row]); // no mark is read out
        }
        const QModelIndex value = model.index(0, TableSheet::FirstDataCol);
        QCOMPARE(model.data(value, Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
        QCOMPARE(model.data(value, Qt::AccessibleTextRole).toString(), QString("-1"));
    }

    void TheTitlesOfTheRowsLookLikeTitlesAndTheirCellsHaveNoFullValue()
    {
        SheetBench bench(1, {columns::Effort});
        bench.data.DB(columns::Effort, 1, 2.5F);
        DataGridModel model;
        model.Show(&bench.sheet);
        const QPalette palette = QGuiApplication::palette();
        for (const int column : {TableSheet::kTimeColumn, TableSheet::kIncludeColumn}) {
            const QModelIndex title = model.index(0, column);
            QCOMPARE(model.FullValue(title), QString());
            QCOMPARE(model.data(title, Qt::BackgroundRole).value<QBrush>(), palette.button());
            QCOMPARE(model.data(title, Qt::ForegroundRole).value<QBrush>(), palette.buttonText());
        }
        const QModelIndex value = model.index(0, TableSheet::FirstDataCol);
        QCOMPARE(model.FullValue(value), QString("2.5"));
        QVERIFY(!model.data(value, Qt::BackgroundRole).isValid());
        QVERIFY(!model.data(value, Qt::ForegroundRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    }

    void WhoLooksAtTheTableIsToldBeforeAndAfterAnotherDataSetComes()
    {
        SheetBench bench(4, {});
        DataGridModel model;
        QSignalSpy before(&model, &QAbstractItemModel::modelAboutToBeReset);
        QSignalSpy after(&model, &QAbstractItemModel::modelReset);
        int rowsBefore = -1;
        connect(&model, &QAbstractItemModel::modelAboutToBeReset, &model,
                [&] { rowsBefore = model.rowCount(); });
        model.Show(&bench.sheet);
        QCOMPARE(before.count(), 1);
        QCOMPARE(after.count(), 1);
        QCOMPARE(rowsBefore, 0); // the old table still stands then
        QCOMPARE(model.rowCount(), 4);
    }

    void WhoLooksAtTheTableIsToldThatAnotherRowIsLit()
    {
        SheetBench bench(4, {columns::Effort});
        DataGridModel model;
        model.Show(&bench.sheet);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.Highlight(2);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toModelIndex(), model.index(0, 0)); // the whole of it
        QCOMPARE(changed[0][1].toModelIndex(), model.index(3, 2));

        SheetBench oneRow(1, {columns::Effort});
        model.Show(&oneRow.sheet);
        model.Highlight(1);
        QCOMPARE(changed.count(), 2);
    }

    void ATableOfNoDataSetIsEmpty()
    {
        DataGridModel model;
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.columnCount(), 0);
        QCOMPARE(model.FullValue(model.index(0, 0)), QString());
    }

    void TwoHundredPeriodsScrollTogetherWithTheirLabels()
    {
        SheetBench bench(201, {1, 2, 3, 4, 5, 6, 7, 8, 9}); // row 201 does not exist
        DataGridView view;
        view.resize(400, 300);
        view.Show(&bench.sheet);
        view.show();
        QCOMPARE(view.Model().rowCount(), 200);
        auto* scrolling = view.findChild<QTableView*>("grdData");
        auto* fixed = view.findChild<QTableView*>("grdFixed");
        // Whole rows, so that none is cut beside its label; columns wider than the window move smoothly.
        QCOMPARE(scrolling->verticalScrollMode(), QAbstractItemView::ScrollPerItem);
        QCOMPARE(fixed->verticalScrollMode(), QAbstractItemView::ScrollPerItem);
        QCOMPARE(scrolling->horizontalScrollMode(), QAbstractItemView::ScrollPerPixel);
        scrolling->scrollToBottom();
        QCoreApplication::processEvents();
        QCOMPARE(fixed->rowAt(fixed->viewport()->height() - 1),
                 scrolling->rowAt(scrolling->viewport()->height() - 1));
        QCOMPARE(fixed->rowAt(1), scrolling->rowAt(1));
        fixed->verticalScrollBar()->setValue(7); // the wheel over the labels
        QCOMPARE(scrolling->verticalScrollBar()->value(), 7);
        QCOMPARE(view.Model().data(view.Model().index(0, 2), Qt::DisplayRole).toString(), QString("-1"));
    }
};

QTEST_MAIN(table_test)
#include "table_test.moc"
