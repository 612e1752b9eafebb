// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of the table as periods: how they show, their boxes and their points in the graphs, which take
// them out of the fit and light them up.
#include "TableSessions.h"
#include "support/SheetBench.h"
#include "views/DataGridModel.h"

#include <QHeaderView>
#include <QPalette>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>

#include <array>
#include <numeric>

class table_periods_test : public QObject
{
    Q_OBJECT

private slots:
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

    void AClickBesideThePointsPutsTheLightOutAndAsksNothing()
    {
        Working s;
        s.Fit();
        s.ClickPoint(0, 5, Qt::ShiftModifier);
        QVERIFY(s.GraphAt(0).Highlighted());
        s.user.messages.clear();
        QCustomPlot& plot = s.window.Graphs().At(0)->Plot();
        QTest::mouseClick(&plot, Qt::LeftButton, Qt::NoModifier,
                          plot.axisRect()->rect().topLeft() + QPoint(2, 2));
        QVERIFY(!s.GraphAt(0).Highlighted());
        QVERIFY(s.user.messages.empty());
        QVERIFY(s.window.objMeth().MethDefined());
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

QTEST_MAIN(table_periods_test)
#include "table_periods_test.moc"
