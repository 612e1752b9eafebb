// SPDX-License-Identifier: GPL-3.0-or-later
// What leads into Edit Mode of the table, what holds there, and what leaving it does.
#include "TableSessions.h"

#include <QClipboard>
#include <QMimeData>
#include <QPalette>

class table_editmode_test : public QObject
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
};

QTEST_MAIN(table_editmode_test)
#include "table_editmode_test.moc"
