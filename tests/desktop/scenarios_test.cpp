// SPDX-License-Identifier: GPL-3.0-or-later
// Scenarios and projections through the real windows: typed, pasted, projected, looked at, cancelled.
#include "desktop/Session.h"
#include "graphs/ProjGraph.h"
#include "views/PlotStyle.h"
#include "views/frmProjGraph.h"
#include "views/frmProjections.h"

#include <QClipboard>
#include <QComboBox>
#include <QMessageBox>
#include <QTimer>
#include <QToolBar>

namespace
{
constexpr int kFirst = ScenarioSheet::kFirstDataRow;

/// A fit of the sample of 25 periods, with the editor of scenarios open.
struct Fitted : Session {
    Fitted()
    {
        Open();
        Fit();
        user.messages.clear();
    }
    frmProjections& Editor() { return *window.findChild<frmProjections*>(); }
    void SetUp()
    {
        Entry("mnuViewProj")->trigger();
        QApplication::setActiveWindow(&Editor());
        (void)QTest::qWaitForWindowActive(&Editor());
        Cells().setFocus();
    }
    GridWidget& Cells() { return *dynamic_cast<GridWidget*>(Editor().findChild<QTableView*>("grdProj")); }
    QTableView& Heads() { return *Editor().findChild<QTableView*>("grdHeads"); }
    QComboBox& Units() { return *Editor().findChild<QComboBox*>("cmbUnits"); }
    QAction* Command(const char* name) { return Editor().findChild<QAction*>(QString::fromLatin1(name)); }
    QString Cell(int row, int col) { return Cells().model()->index(row, col).data().toString(); }
    QString Year(int row) { return Cells().model()->headerData(row, Qt::Vertical).toString(); }
    void GoTo(int row, int col) { Cells().Select(GridSelection::At(row, col)); }
    void Paste(const char* text)
    {
        QGuiApplication::clipboard()->setText(QString::fromLatin1(text));
        Command("mnuPaste")->trigger();
    }
    const clsVeltData& Data() { return window.objData(); }
    std::int32_t Kept(const char* title, int period)
    {
        return Data().ProjScenario(title)->Vector(Data().NAPoints() + period);
    }
    void Project(const std::vector<std::string>& titles)
    {
        user.Selects(titles);
        Entry("mnuProject")->trigger();
    }
    frmProjGraph* Graph(std::size_t fromTheEnd = 0)
    {
        const std::size_t count = window.Graphs().UserTitles().size();
        return qobject_cast<frmProjGraph*>(window.Graphs().WindowAt(count - 1 - fromTheEnd));
    }
};

/// Closes the box that comes next, and says what it said.
QString AnswerTheNextBox(const std::function<void()>& work)
{
    QString text;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            text = box->text();
            box->accept();
        }
    });
    timer.start(20);
    work();
    return text;
}
} // namespace

class scenarios_test : public QObject
{
    Q_OBJECT

private slots:
    void TheProjectionsMenuFollowsFitScenariosAndBootstraps()
    {
        Session session;
        QVERIFY(!session.Menu("mnuProjections")->isEnabled());
        session.Open();
        QVERIFY(session.Menu("mnuProjections")->isEnabled());
        QVERIFY(!session.Entry("mnuViewProj")->isEnabled());
        session.Fit();
        QVERIFY(session.Entry("mnuViewProj")->isEnabled());
        QVERIFY(!session.Entry("mnuProject")->isEnabled());
        session.Entry("mnuViewProj")->trigger(); // which makes a first scenario
        QVERIFY(session.Entry("mnuProject")->isEnabled());
        QVERIFY(!session.Entry("mnuProjWithCI")->isEnabled());
        session.Entry("mnuGenerateConfInts")->trigger();
        QVERIFY(session.Entry("mnuProjWithCI")->isEnabled());
    }

    void ANewDataSetShowsOneScenarioOfOnePeriod()
    {
        Fitted session;
        session.SetUp();
        QVERIFY(session.Editor().isVisible());
        QCOMPARE(session.Editor().windowTitle(), QString("Projection Scenarios"));
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
        QCOMPARE(session.Cell(1, 1), QString("Effort"));
        QCOMPARE(session.Cell(kFirst, 1), QString("0.000"));
        QCOMPARE(session.Year(0), QString("Time"));
        QCOMPARE(session.Year(kFirst),
                 QString::number(session.Data().MinTimeP() + session.Data().NAPoints()));
        QVERIFY(session.Units().isVisible());
        QCOMPARE(session.Units().currentText(), QString("Effort"));
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 1));
    }

    void TheCommandsOfTheEditorCarryTheWordsOfTheTable()
    {
        Fitted session;
        session.SetUp();
        const std::pair<const char*, const char*> words[] = {{"mnuAddScenario", "&Add Scenario"},
                                                             {"mnuDeleteScenario", "&Delete Scenario"},
                                                             {"mnuAddRow", "Add Row"},
                                                             {"mnuDeleteRow", "Delete Row"},
                                                             {"mnuCopy", "&Copy"},
                                                             {"mnuPaste", "&Paste"}};
        for (const auto& [command, text] : words)
            QCOMPARE(session.Command(command)->text(), QString(text));
        QStringList menus;
        for (const QMenu* menu : session.Editor().findChildren<QMenu*>())
            menus += menu->title();
        QVERIFY(menus.contains("&Projections") && menus.contains("&Edit"));
        QStringList units;
        for (int i = 0; i < session.Units().count(); ++i)
            units += session.Units().itemText(i);
        QCOMPARE(units, QStringList({"Effort", "Total Catch Weight", "Total Catch Numbers"}));
    }

    void ValuesAreTypedAndAKeyBelowTheLastRowAddsOne()
    {
        Fitted session;
        session.SetUp();
        session.Type("120");
        session.Press(Qt::Key_Down);
        session.Type("12.75");
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Data().NumPts(), 2);
        QCOMPARE(session.Kept("Scenario1", 1), 120);
        QCOMPARE(session.Kept("Scenario1", 2), 13);
        QCOMPARE(session.Cell(kFirst + 1, 1), QString("12.750"));
        QVERIFY(session.Editor().findChild<QLabel*>("lblNote")->text().contains("as 13"));
        session.Entry("mnuViewProj")->trigger();
        QCOMPARE(session.Cell(kFirst + 1, 1), QString("13.000"));
    }

    void AKeyBesideTheScenariosAddsOne()
    {
        Fitted session;
        session.SetUp();
        session.Press(Qt::Key_Right);
        session.Type("5");
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Cell(0, 2), QString("Scenario2"));
        QCOMPARE(session.Kept("Scenario2", 1), 5);
        session.GoTo(kFirst, 9); // far out: the next free column takes it
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Cell(0, 3), QString("Scenario3"));
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 3));
        QVERIFY(!session.Cells().Box().isVisible());
    }

    void ATitleIsTypedInItsCell()
    {
        Fitted session;
        session.SetUp();
        session.Press(Qt::Key_Up);
        session.Press(Qt::Key_Up);
        QVERIFY(session.Cells().Selected() == GridSelection::At(0, 1));
        session.Type("Half effort");
        QVERIFY(session.Cells().Box().isVisible());
        QCOMPARE(session.Cells().Box().parentWidget(), session.Heads().viewport());
        session.Press(Qt::Key_Return);
        QCOMPARE(session.Cell(0, 1), QString("Half effort"));
        QVERIFY(session.Data().ProjScenario("Half effort"));
        session.Type("   ");
        session.Press(Qt::Key_Return);
        QVERIFY(session.user.Saw("Scenario names cannot be empty and must be unique"));
        QVERIFY(session.Cells().Box().isVisible());
        session.Press(Qt::Key_Escape);
        QCOMPARE(session.Cell(0, 1), QString("Half effort"));
    }

    void ADoubleClickOnATitleOpensIt()
    {
        Fitted session;
        session.SetUp();
        const QRect title = session.Heads().visualRect(session.Heads().model()->index(0, 1));
        QTest::mouseClick(session.Heads().viewport(), Qt::LeftButton, Qt::NoModifier, title.center());
        QVERIFY(session.Cells().Selected() == GridSelection::At(0, 1));
        QTest::mouseDClick(session.Heads().viewport(), Qt::LeftButton, Qt::NoModifier, title.center());
        QVERIFY(session.Cells().Box().isVisible());
    }

    void TheUnitIsPickedFromTheListOverItsCell()
    {
        Fitted session;
        session.SetUp();
        session.Units().setCurrentIndex(2);
        emit session.Units().activated(2);
        QCOMPARE(session.Cell(1, 1), QString("Total Catch Numbers"));
        QCOMPARE(session.Data().ProjScenario("Scenario1")->VecType(), vec_type::kTotCatchNums);
        session.Press(Qt::Key_Right);
        QVERIFY(!session.Units().isVisible()); // no scenario there
        session.Press(Qt::Key_Left);
        QCOMPARE(session.Units().currentText(), QString("Total Catch Numbers"));
        session.Units().setFocus();
        QTest::keyClick(&session.Units(), Qt::Key_Return);
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 1));
        QVERIFY(session.Cells().hasFocus());
    }

    void AKeyInTheRowOfUnitsOpensTheList()
    {
        Fitted session;
        session.SetUp();
        session.Press(Qt::Key_Up);
        QVERIFY(session.Cells().Selected() == GridSelection::At(1, 1));
        session.Press(Qt::Key_Return);
        QTRY_VERIFY(session.Units().view()->isVisible());
        session.Units().hidePopup();
        QVERIFY(!session.Cells().Box().isVisible());
    }

    void APastedBlockAddsRowsAndScenarios()
    {
        Fitted session;
        session.SetUp();
        session.Paste("1\t10\r\n2\t20\r\n3\t30\r\n");
        QCOMPARE(session.Data().NumPts(), 3);
        QCOMPARE(session.Kept("Scenario2", 3), 30);
        QCOMPARE(session.Cell(kFirst + 2, 2), QString("30.000"));
        session.Paste("x\r\ny\r\n");
        QVERIFY(session.user.Saw("Cannot paste non numeric data"));
    }

    void PasteIsOfferedInsideTheScenariosOnly()
    {
        Fitted session;
        session.SetUp();
        auto* edit = session.Editor().findChild<QMenu*>("mnuEdit");
        const auto offered = [&](int row, int col) {
            session.GoTo(row, col);
            emit edit->aboutToShow();
            return session.Command("mnuPaste")->isEnabled();
        };
        QGuiApplication::clipboard()->setText("1\r\n");
        QVERIFY(offered(kFirst, 1));
        QVERIFY(!offered(kFirst + 1, 1));
        QVERIFY(!offered(kFirst, 2));
        QVERIFY(!offered(0, 1));
        session.Paste("7\r\n"); // by its key, at the title
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
        QGuiApplication::clipboard()->clear();
        QVERIFY(!offered(kFirst, 1));
    }

    void TheCommandsAddAndDeleteRowsAndScenarios()
    {
        Fitted session;
        session.SetUp();
        session.Command("mnuAddRow")->trigger();
        session.Command("mnuAddScenario")->trigger();
        QCOMPARE(session.Data().NumPts(), 2);
        QCOMPARE(session.Data().NumProjScenarios(), 2);
        session.Command("mnuDeleteRow")->trigger();
        session.Command("mnuDeleteRow")->trigger();
        QVERIFY(session.user.Saw("Cannot remove all Points"));
        QCOMPARE(session.Data().NumPts(), 1);
        session.Command("mnuAddRow")->trigger();
        session.GoTo(kFirst + 1, 1);
        session.user.answers = {Answer::No, Answer::Yes};
        session.Command("mnuDeleteScenario")->trigger();
        QCOMPARE(session.Data().NumProjScenarios(), 2);
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst + 1, 1));
        session.Command("mnuDeleteScenario")->trigger();
        QVERIFY(session.user.Saw("Are you sure you want to delete Scenario?Scenario1 ? "));
        QCOMPARE(session.Cell(0, 1), QString("Scenario2"));
        QVERIFY(session.Cells().Selected() == GridSelection::At(kFirst, 1)); // as after every load
    }

    void DeleteMakesValuesZeroAndLeavesTitlesAlone()
    {
        Fitted session;
        session.SetUp();
        session.Paste("1\r\n2\r\n");
        session.GoTo(kFirst, 1);
        session.Press(Qt::Key_Delete);
        QCOMPARE(session.Kept("Scenario1", 1), 0);
        QCOMPARE(session.Kept("Scenario1", 2), 2);
        session.GoTo(0, 1);
        session.Press(Qt::Key_Delete);
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
    }

    void WhatIsBeingTypedIsStoredBeforeAProjection()
    {
        Fitted session;
        session.SetUp();
        session.Type("77");
        session.Project({"Scenario1"});
        QCOMPARE(session.Kept("Scenario1", 1), 77);
        QVERIFY(session.Graph());
    }

    void ClosingTheEditorHidesItAndStoresTheOpenCell()
    {
        Fitted session;
        session.SetUp();
        session.Type("9");
        session.Editor().close();
        QVERIFY(!session.Editor().isVisible());
        QCOMPARE(session.Kept("Scenario1", 1), 9);
        session.SetUp();
        session.Type("-"); // no number
        session.Editor().close();
        QVERIFY(session.user.Saw("Data must be numeric."));
        QVERIFY(session.Editor().isVisible());
    }

    void TheEditorRestsWhileThereIsNoFit()
    {
        Fitted session;
        session.SetUp();
        QVERIFY(session.Editor().isEnabled());
        session.user.answers = {Answer::Yes};
        session.Entry("mnuEditMode")->trigger();
        QVERIFY(!session.Editor().isEnabled());
        session.Entry("mnuEditMode")->trigger();
        session.Fit();
        QVERIFY(session.Editor().isEnabled());
    }

    void ClosingTheDataSetHidesTheEditor()
    {
        Fitted session;
        session.SetUp();
        session.user.answers = {Answer::No, Answer::Yes};
        session.Entry("mnuClose")->trigger();
        QVERIFY(!session.Editor().isVisible());
        session.Open();
        session.Fit();
        session.SetUp();
        QCOMPARE(session.Cell(0, 1), QString("Scenario1"));
    }

    void TwoScenariosAndTheFitAreThreeLinesThatMeetAtTheEndOfTheData()
    {
        Fitted session;
        session.SetUp();
        session.Paste("10\t50\r\n10\t50\r\n10\t50\r\n");
        session.Project({"Scenario1", "Scenario2"});
        frmProjGraph* graph = session.Graph();
        QVERIFY(graph && graph->isVisible());
        QCOMPARE(graph->windowTitle(), QString("Projection #1"));
        QCOMPARE(plot_style::LegendTexts(graph->Plot()), (QStringList{"Scenario1", "Scenario2", "Fit"}));
        const int periods = session.Data().NAPoints();
        QCOMPARE(graph->Graph().ProjStart(), periods + 1);
        QCOMPARE(graph->Plot().graphCount(), 3);
        QCOMPARE(graph->Plot().graph(0)->data()->size(), 4);
        QCOMPARE(graph->Plot().graph(2)->data()->size(), periods + 1);
        QCOMPARE(graph->Plot().graph(0)->data()->at(0)->key,
                 (graph->Plot().graph(2)->data()->constEnd() - 1)->key);
        QCOMPARE(graph->Plot().graph(0)->data()->at(0)->value,
                 (graph->Plot().graph(2)->data()->constEnd() - 1)->value);
    }

    void TheFitCanBeHiddenAndShownAgain()
    {
        Fitted session;
        session.SetUp();
        session.Project({"Scenario1"});
        frmProjGraph* graph = session.Graph();
        auto* button = graph->findChild<QAction*>("WithFit");
        QVERIFY(button->isChecked());
        const QImage before = graph->Plot().toPixmap(600, 400).toImage();
        button->trigger();
        QCOMPARE(plot_style::LegendTexts(graph->Plot()), QStringList{"Scenario1"});
        QVERIFY(graph->Plot().toPixmap(600, 400).toImage() != before);
        button->trigger();
        QCOMPARE(graph->Plot().toPixmap(600, 400).toImage(), before);
    }

    void AProjectionTellsThePointUnderTheCursorAndNoneThatIsHidden()
    {
        auto projection = std::make_shared<ProjGraph>();
        projection->Create(1, 4, true, 2, true);
        projection->XTitle("Time");
        projection->YTitle("Population");
        projection->LegendText(1, "Low");
        projection->LegendText(2, "Fit");
        const float low[] = {60.0F, 90.0F, 50.0F, 40.0F}; // the first belongs to the past
        const float fit[] = {100.0F, 90.0F, 75.0F, 75.0F};
        for (int i = 1; i <= 4; ++i) {
            projection->XData(i, 2000.0F + static_cast<float>(i));
            projection->ProjData(1, i, low[i - 1]);
            projection->ProjData(2, i, fit[i - 1]);
            projection->ErrorMinus(i, low[i - 1] - 5.0F);
            projection->ErrorPlus(i, low[i - 1] + 7.0F);
        }
        frmProjGraph window(projection);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.Plot().replot();
        const auto said = [&](double time, double population) {
            const QPointF at(window.Plot().xAxis->coordToPixel(time),
                             window.Plot().yAxis->coordToPixel(population));
            QMouseEvent move(QEvent::MouseMove, at.toPoint(), window.Plot().mapToGlobal(at.toPoint()),
                             Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(&window.Plot(), &move);
            return window.StatusText();
        };
        QCOMPARE(said(2003, 50), QString("Low:  Time 2003,  Population 50,  limits 45 to 57"));
        QCOMPARE(said(2001, 60), QString());
        QCOMPARE(said(2004, 75), QString());
        QVERIFY(said(2001, 100).startsWith("Fit:  Time 2001"));
        QVERIFY(said(2002, 90).startsWith("Low:")); // of two as near the one that is listed first
    }

    void AProjectionWithoutAFitHasNoneToShowAndNothingIsSaidWhereThereIsNothingToSay()
    {
        auto projection = std::make_shared<ProjGraph>();
        projection->Create(1, 4, false, 2, false);
        frmProjGraph window(projection);
        const auto* button = window.findChild<QAction*>("WithFit");
        QVERIFY(!button->isEnabled());
        QVERIFY(!button->isChecked());
        QVERIFY(window.findChild<QLabel*>("lblRemark") == nullptr);
    }

    void TheNumbersAndThePictureAreCopied()
    {
        Fitted session;
        session.SetUp();
        session.Project({"Scenario1"});
        frmProjGraph* graph = session.Graph();
        QCOMPARE(AnswerTheNextBox([&] { graph->findChild<QAction*>("CopyData")->trigger(); }),
                 QString("Data Copied to Clipboard"));
        QCOMPARE(QGuiApplication::clipboard()->text().toStdString(), graph->Graph().CopiedText());
        QCOMPARE(AnswerTheNextBox([&] { graph->findChild<QAction*>("CopyGraph")->trigger(); }),
                 QString("Graph Copied to Clipboard"));
        QVERIFY(!QGuiApplication::clipboard()->image().isNull());
    }

    void AProjectionWithLimitsHasABandOnBothSidesOfTheEndOfTheData()
    {
        Fitted session;
        session.SetUp();
        session.Paste("10\r\n10\r\n");
        session.Entry("mnuGenerateConfInts")->trigger();
        session.user.Picks("Scenario1");
        session.user.onRange = [](RangeQuestion&) { return true; };
        session.Entry("mnuProjWithCI")->trigger();
        frmProjGraph* graph = session.Graph();
        QVERIFY(graph);
        QVERIFY(graph->Graph().WithCI());
        int bands = 0;
        for (int i = 0; i < graph->Plot().graphCount(); ++i)
            bands += graph->Plot().graph(i)->channelFillGraph() ? 1 : 0;
        QCOMPARE(bands, 2);
    }

    void ProjectionsStandInTheGraphMenuAndGoWhenAPeriodIsToggled()
    {
        Fitted session;
        session.SetUp();
        session.Project({"Scenario1"});
        const auto listed = [&] {
            QStringList titles;
            for (const QAction* action : session.Menu("mnuGraph")->actions())
                titles += action->text();
            return titles.contains("Projection #1");
        };
        QVERIFY(listed());
        session.ClickBox(3);
        QVERIFY(!listed());
        QVERIFY(!session.window.Graphs().Empty()); // those of the model stay
    }

    void AProjectionLeadsToTheQuestionOnClose()
    {
        Fitted session;
        session.SetUp();
        QTemporaryDir folder;
        session.user.filesToSave = {folder.filePath("p.vl3").toStdString()};
        session.Entry("mnuSaveAs")->trigger();
        QVERIFY(!session.Data().IsDirty());
        session.Project({"Scenario1"});
        QVERIFY(session.Data().IsDirty());
        session.user.messages.clear();
        session.user.answers = {Answer::Cancel};
        session.Entry("mnuClose")->trigger();
        QCOMPARE(session.user.messages.size(), std::size_t{1});
        QVERIFY(session.user.Saw("Do you wish to save changes to current data set?"));
        QVERIFY(session.window.FileOpen());
    }

    void ScenariosAreSavedWithTheProject()
    {
        Fitted session;
        session.SetUp();
        session.Paste("10\t50\r\n20\t60\r\n");
        QTemporaryDir folder;
        const QString path = folder.filePath("p.vl3");
        session.user.filesToSave = {path.toStdString()};
        session.Entry("mnuSaveAs")->trigger();
        session.window.OpenPath(path);
        QCOMPARE(session.Data().NumProjScenarios(), 2);
        QCOMPARE(session.Data().NumPts(), 2);
        QCOMPARE(session.Kept("Scenario2", 2), 60);
    }

    void TheRemarkOfAnEffortProjectionStandsBelowItsGraph()
    {
        Session session;
        session.window.OpenPath(QString(VELT_TEST_SAMPLES) + "/expected/closed16.txt");
        session.user.Picks("NO RECRUITMENT");
        session.Entry("mnuNewModel")->trigger();
        session.Entry("mnuViewProj")->trigger();
        session.user.Selects({"Scenario1"});
        session.Entry("mnuProject")->trigger();
        const std::size_t count = session.window.Graphs().UserTitles().size();
        auto* graph = qobject_cast<frmProjGraph*>(session.window.Graphs().WindowAt(count - 1));
        QVERIFY(graph);
        auto* remark = graph->findChild<QLabel*>("lblRemark");
        QVERIFY(remark && remark->text().startsWith("Under an effort scenario"));
    }

    void TheEditorShows199RowsAndKeepsTitlesInView()
    {
        Fitted session;
        session.SetUp();
        for (int i = 1; i < 199 - session.Data().NAPoints(); ++i)
            session.Command("mnuAddRow")->trigger();
        QCOMPARE(session.Data().NumPts() + session.Data().NAPoints(), 199);
        session.Command("mnuAddRow")->trigger();
        QVERIFY(session.user.Saw("together they can be 199"));
        QVERIFY(session.Heads().isVisible());
        QVERIFY(!session.Heads().visualRect(session.Heads().model()->index(0, 1)).isEmpty());
        QVERIFY(!session.Cells().visualRect(session.Cells().currentIndex()).isEmpty());
    }
};

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setStyle("Fusion");
    scenarios_test test;
    return QTest::qExec(&test, argc, argv);
}

#include "scenarios_test.moc"
