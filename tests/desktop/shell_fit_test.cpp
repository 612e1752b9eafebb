// SPDX-License-Identifier: GPL-3.0-or-later
// A fit in the main window: its report, graphs and intervals, and the commands that ask before they end it.
#include "data/NumberFormat.h"
#include "desktop/Session.h"
#include "views/frmModelGraph.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <vector>

class shell_fit_test : public QObject
{
    Q_OBJECT

private slots:
    void ANewFitLeadsToTheReportTheGraphsAndTheListOfThem()
    {
        Session session;
        session.Open();
        session.Fit();
        QVERIFY(session.window.objMeth().MethDefined());
        QVERIFY(session.window.findChild<frmParams*>()->isVisible());
        QVERIFY(session.Entry("mnuNewParams")->isEnabled());
        QVERIFY(session.Entry("mnuParameters")->isEnabled());
        const auto titles = session.window.Graphs().UserTitles();
        QVERIFY(!titles.empty());
        QStringList listed;
        for (const std::string& title : titles)
            listed += QString::fromStdString(title);
        QCOMPARE(session.ListedGraphs(), listed);
        QVERIFY(session.window.Sheet().GridColOf(columns::ExpCatchNums) > 0);
    }

    void EveryColumnThatAFitFillsShowsThreeFiguresOfItsSmallestValue()
    {
        Session session;
        session.Open();
        session.Fit();
        const clsVeltData& data = session.window.objData();
        for (const int column :
             {columns::ExpCPUE, columns::ObsCPUE, columns::ExpCatchNums, columns::PopNums}) {
            float smallest = std::numeric_limits<float>::max();
            for (int row = 1; row <= data.ShownRows(); ++row)
                smallest = std::min(smallest, data.DB(column, row));
            const QString shown = QString::fromStdString(FormatNumber(smallest, data.ColFormat(column)));
            const QString figures = QString(shown).remove('.').remove(QRegularExpression("^0+"));
            QVERIFY2(smallest > 0.0F && figures.size() >= 3, qPrintable(shown));
        }
    }

    void TheListBringsBackAWindowThatItsCloseBoxHid()
    {
        Session session;
        session.window.AddModelGraph(Graph("Effort & more"));
        frmModelGraph* graph = const_cast<frmModelGraph*>(session.window.Graphs().At(0));
        graph->close();
        QVERIFY(!graph->isVisible());
        QCOMPARE(session.ListedGraphs(), QStringList{"Effort && more"});
        session.Menu("mnuGraph")->actions().first()->trigger();
        QVERIFY(graph->isVisible());
    }

    void ViewParametersBringsTheReportBackThatWasClosed()
    {
        Session session;
        session.Open();
        session.Fit();
        session.Report()->close();
        QVERIFY(!session.Report()->isVisible());
        session.Entry("mnuParameters")->trigger();
        QVERIFY(session.Report()->isVisible());
    }

    void AGraphReplacesTheOneOfItsTitle()
    {
        Session session;
        session.window.AddModelGraph(Graph("A"));
        session.window.AddModelGraph(Graph("B"));
        session.window.AddModelGraph(Graph("A"));
        QVERIFY((session.window.Graphs().UserTitles() == std::vector<std::string>{"B", "A"}));
    }

    void ClearingHistogramsLeavesEveryOtherWindowOpen()
    {
        Session session;
        session.window.AddModelGraph(Graph("Line"));
        session.window.AddModelGraph(Graph("K", GraphType::Histogram));
        session.window.ClearGraphs(true);
        QVERIFY((session.window.Graphs().UserTitles() == std::vector<std::string>{"Line"}));
        session.window.ClearGraphs(false);
        QVERIFY(session.window.Graphs().Empty());
    }

    void ACancelledChoiceOfModelLeavesNoFitButOffersNewInputParameters()
    {
        Session session;
        session.Open();
        session.user.onSelection = {};
        session.Entry("mnuNewModel")->trigger();
        QVERIFY(!session.window.objMeth().MethDefined());
        QVERIFY(session.Entry("mnuNewParams")->isEnabled());
    }

    void NewFitWithAFitAsksAndNoKeepsItWithItsGraphs()
    {
        Session session;
        session.Open();
        session.Fit();
        const auto titles = session.window.Graphs().UserTitles();
        session.user.messages.clear();
        session.user.asked.clear();
        session.user.answers = {Answer::No};
        session.Entry("mnuNewModel")->trigger();
        QVERIFY(session.user.Saw("Clear Current Fit"));
        QVERIFY(session.user.asked.empty()); // neither a model nor inputs
        QVERIFY(session.window.objMeth().MethDefined());
        QVERIFY(session.window.Graphs().UserTitles() == titles);
    }

    void NewFitWithoutAFitAsksNothing()
    {
        Session session;
        session.Open();
        session.user.messages.clear();
        session.Fit();
        QVERIFY(!session.user.Saw("Clear Current Fit"));
    }

    void AnAcceptedNewFitTakesTheGraphsOfTheFormerOneAway()
    {
        Session session;
        session.Open();
        session.Fit();
        session.window.AddModelGraph(Graph("Of the former fit"));
        session.user.onSelection = {}; // the choice of a model is cancelled
        session.user.answers = {Answer::Yes};
        session.Entry("mnuNewModel")->trigger();
        QVERIFY(session.window.Graphs().Empty());
        QVERIFY(!session.window.objMeth().MethDefined());
        QCOMPARE(session.window.Sheet().GridColOf(columns::ExpCatchNums), 0);
    }

    void NewInputParametersAsksAndNoKeepsTheFit()
    {
        Session session;
        session.Open();
        session.Fit();
        session.user.messages.clear();
        session.user.asked.clear();
        session.user.answers = {Answer::No};
        session.Entry("mnuNewParams")->trigger();
        QVERIFY(session.user.Saw("Clear Current Fit"));
        QVERIFY(session.user.asked.empty());
        QVERIFY(session.window.objMeth().MethDefined());
    }

    void NewInputParametersKeepsTheModelAndOffersTheInputsOfTheFormerFit()
    {
        Session session;
        session.user.onInputParams = [](InputParams& params) {
            params.Mort = 0.35F;
            return true;
        };
        session.Open();
        session.Fit();
        session.window.AddModelGraph(Graph("Of the former fit"));
        session.user.asked.clear();
        float offered = 0.0F;
        session.user.onInputParams = [&offered](InputParams& params) {
            offered = params.Mort;
            return true;
        };
        session.user.answers = {Answer::Yes};
        session.Entry("mnuNewParams")->trigger();
        QCOMPARE(offered, 0.35F);
        QVERIFY(std::ranges::count(session.user.asked, "selection") == 0); // no list of models
        QCOMPARE(session.window.objMeth().CurrMethType(), 3);
        const auto titles = session.window.Graphs().UserTitles();
        QVERIFY(std::ranges::count(titles, "Of the former fit") == 0);
        QVERIFY(!titles.empty());
        QVERIFY(session.window.Sheet().GridColOf(columns::ExpCatchNums) > 0);
    }

    void NewInputParametersThatAreCancelledTakeTheColumnsOfTheFormerFitAway()
    {
        Session session;
        session.Open();
        session.Fit();
        QVERIFY(session.window.Sheet().GridColOf(columns::ExpCatchNums) > 0);
        session.user.onInputParams = [](InputParams&) { return false; };
        session.user.answers = {Answer::Yes};
        session.Entry("mnuNewParams")->trigger();
        QVERIFY(!session.window.objMeth().MethDefined());
        QCOMPARE(session.window.Sheet().GridColOf(columns::ExpCatchNums), 0);
    }

    // Deliberate: nothing clears the flag.
    void AfterAFitWasReloadedNewInputParametersStaysAvailableOnLaterDataSets()
    {
        Session session;
        session.Open();
        QVERIFY(!session.Entry("mnuNewParams")->isEnabled());
        session.window.objData().TheRun().FitReloaded = true;
        session.window.EnableControls();
        QVERIFY(session.Entry("mnuNewParams")->isEnabled());
        session.Entry("mnuClose")->trigger();
        session.Open();
        QVERIFY(session.Entry("mnuNewParams")->isEnabled());
    }

    void GeneratedIntervalsBringHistogramsAndLimits()
    {
        Session session;
        session.Open();
        session.Fit();
        session.window.objMeth().NumBootStraps(20);
        session.user.onRange = [](RangeQuestion&) { return true; };
        session.Entry("mnuGenerateConfInts")->trigger();
        QVERIFY(session.window.objMeth().IsBSDone());
        QVERIFY(session.Histograms() > 0);
        QVERIFY(session.Report()->findChild<QWidget*>("picCI")->isVisible());
        QCOMPARE(session.Panel("Status"), QString("Ready..."));
    }

    void TheButtonOfTheReportMakesBootstrapsAndShowsThemUnlessTheLevelsAreCancelled()
    {
        Session session;
        session.Open();
        session.Fit();
        session.window.objMeth().NumBootStraps(20);
        auto* button = session.Report()->findChild<QPushButton*>("cmdCIs");
        session.user.onRange = [](RangeQuestion&) { return false; };
        button->click();
        QVERIFY(session.window.objMeth().IsBSDone());
        QCOMPARE(session.Histograms(), std::size_t{0});
        session.user.onRange = [](RangeQuestion&) { return true; };
        button->click();
        QVERIFY(session.Histograms() > 0);
    }

    void ASecondGenerateAsksAndNoKeepsTheBootstrapsThatStand()
    {
        Session session;
        session.Open();
        session.Fit();
        session.window.objMeth().NumBootStraps(20);
        int asked = 0;
        session.user.onRange = [&asked](RangeQuestion&) { return ++asked > 1; };
        session.Entry("mnuGenerateConfInts")->trigger();
        QCOMPARE(session.Histograms(), std::size_t{0}); // the levels were cancelled
        const float lower = session.window.objMeth().LowerCILimit(1);

        session.user.answers = {Answer::Cancel};
        session.Entry("mnuGenerateConfInts")->trigger();
        QVERIFY(session.user.Saw("Confidence Intervals have already been generated"));
        QCOMPARE(asked, 1);

        session.user.answers = {Answer::No};
        session.Entry("mnuGenerateConfInts")->trigger();
        QCOMPARE(asked, 2);
        QCOMPARE(session.window.objMeth().LowerCILimit(1), lower);
        QVERIFY(session.Histograms() > 0);
    }

    void LevelsTheWrongWayRoundAreTakenAsTheyStand()
    {
        Session session;
        session.Open();
        session.Fit();
        session.window.objMeth().NumBootStraps(20);
        session.user.onRange = [](RangeQuestion& range) {
            range.low = 0.9;
            range.high = 0.1;
            return true;
        };
        session.Entry("mnuDisplayConfInts")->trigger();
        QCOMPARE(session.Report()->findChild<QLabel*>("lblCIRange")->text(), QString("0.9 - 0.1"));
        QVERIFY(session.window.objMeth().LowerCILimit(1) > session.window.objMeth().UpperCILimit(1));
    }

    void CancelInTheRunKeepsTheFitAndShowsNoHistogram()
    {
        Session session;
        session.Open();
        session.user.onInputParams = [](InputParams& params) {
            params.FitOp = 3; // gamma, the slowest
            return true;
        };
        session.Fit();
        QVERIFY(session.window.objMeth().MethDefined());
        session.window.objMeth().NumBootStraps(1000);
        QTimer hand;
        connect(&hand, &QTimer::timeout, session.window.findChild<ProgressMeterWindow*>(),
                &ProgressMeterWindow::reject);
        hand.start(0);
        session.user.messages.clear();
        session.Entry("mnuGenerateConfInts")->trigger();
        QVERIFY(!session.window.objMeth().IsBSDone());
        QVERIFY(session.user.messages.empty()); // a cancel is no failure

        session.Entry("mnuDisplayConfInts")->trigger();
        QVERIFY(session.user.Saw("Generate Bootstraps before calculating Confidence Intervals"));
        QCOMPARE(session.Histograms(), std::size_t{0});
        QVERIFY(session.window.objMeth().MethDefined());
        QVERIFY(session.Report()->isVisible());
        QCOMPARE(session.Panel("Status"), QString("Ready..."));
    }

    void TheReportStaysOnTheScreenWhenItsLimitsMakeItWider()
    {
        Session session;
        session.Open();
        session.Fit();
        session.window.objMeth().NumBootStraps(20);
        session.user.onRange = [](RangeQuestion&) { return true; };
        session.Entry("mnuGenerateConfInts")->trigger();
        const QRect screen = session.window.screen()->availableGeometry();
        QVERIFY(session.Report()->x() + session.Report()->sizeHint().width() <= screen.right());
    }

    void EveryGraphOpensInsideTheScreen()
    {
        Session session;
        for (int i = 0; i < 30; ++i)
            session.window.AddModelGraph(Graph(qPrintable(QString::number(i)), GraphType::Histogram));
        const QRect screen = session.window.screen()->availableGeometry();
        for (std::size_t i = 0; i < 30; ++i) {
            const QRect place = session.window.Graphs().At(i)->geometry();
            QVERIFY(screen.contains(place.topLeft()));
            QVERIFY2(screen.contains(place.bottomRight()),
                     qPrintable(QStringLiteral("%1 %2").arg(place.right()).arg(place.bottom())));
        }
    }

    void NewHistogramsTakeThePlacesOfTheOldOnes()
    {
        Session session;
        session.window.AddModelGraph(Graph("Line"));
        session.window.AddModelGraph(Graph("K", GraphType::Histogram));
        const QPoint place = session.window.Graphs().At(1)->pos();
        session.window.ClearGraphs(true);
        session.window.AddModelGraph(Graph("K", GraphType::Histogram));
        QCOMPARE(session.window.Graphs().At(1)->pos(), place);
    }

    void ADataPlotNeedsNoFit()
    {
        Session session;
        session.Open();
        session.user.Picks("Effort");
        session.Entry("mnuDataPlots")->trigger();
        QCOMPARE(session.window.Graphs().UserTitles().size(), std::size_t{1});
        QVERIFY(session.Menu("mnuGraph")->isEnabled());
    }
};

QTEST_MAIN(shell_fit_test)
#include "shell_fit_test.moc"
