// SPDX-License-Identifier: GPL-3.0-or-later
// Projections in their windows: lines, limits, what the cursor tells, copies, the project.
#include "NextBox.h"
#include "ScenarioSession.h"
#include "graphs/ProjGraph.h"
#include "views/PlotStyle.h"

class scenarios_projections_test : public QObject
{
    Q_OBJECT

private slots:
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
        QCOMPARE(AnswerTheNextBox([&] { graph->findChild<QAction*>("CopyData")->trigger(); }).words,
                 QString("Data Copied to Clipboard"));
        QCOMPARE(QGuiApplication::clipboard()->text().toStdString(), graph->Graph().CopiedText());
        QCOMPARE(AnswerTheNextBox([&] { graph->findChild<QAction*>("CopyGraph")->trigger(); }).words,
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
};

int main(int argc, char* argv[])
{
    return RunInFusion<scenarios_projections_test>(argc, argv);
}

#include "scenarios_projections_test.moc"
