// SPDX-License-Identifier: GPL-3.0-or-later
// What the user changes of a graph as a whole, titles and ranges; how the dialog ends; and what is copied.
#include "GraphEditing.h"
#include "NamedGraph.h"
#include "NextBox.h"
#include "base/VeltError.h"
#include "views/GraphPainter.h"
#include "views/PlotStyle.h"
#include "views/frmGraph.h"

#include <QToolBar>

#include <cmath>

namespace
{
Box AnswerTheBoxOf(PlotWindow& window, const char* command)
{
    return AnswerTheNextBox([&] { window.findChild<QAction*>(QString::fromLatin1(command))->trigger(); });
}

QString TitleOf(PlotWindow& window)
{
    return plot_style::TitleText(window.Plot());
}
} // namespace

class GraphEditTitlesTest : public QObject
{
    Q_OBJECT

private slots:
    void TheToolbarEditsPrintsAndCopiesWithTheTipsOfTheProgram()
    {
        frmModelGraph graph(Cpue());
        QStringList names, tips;
        for (const QAction* action : graph.findChild<QToolBar*>("tlbUtils")->actions()) {
            names += action->objectName();
            tips += action->toolTip();
        }
        QCOMPARE(names, (QStringList{"EditGraph", "PrintGraph", "CopyGraph", "CopyData"}));
        QCOMPARE(tips, (QStringList{"Edit Graph", "Print Graph", "Copy Graph To Clipboard",
                                    "Copy Graph source data to Clipboard"}));
        frmProjGraph projection(Projection());
        QCOMPARE(projection.findChild<QToolBar*>("tlbUtils")->actions().last()->objectName(),
                 QString("WithFit"));
    }

    void TheDialogShowsTheGraphAsItStands()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [&](frmGraphEdit& form) {
            QCOMPARE(form.findChild<QLineEdit*>("txtTitle")->text(), QString("Expected and Observed CPUE"));
            QCOMPARE(form.findChild<QLineEdit*>("txtXTitle")->text(), QString("Time"));
            QCOMPARE(form.findChild<QLineEdit*>("txtLowY")->text(), QString("0"));
            QVERIFY(!form.findChild<QLineEdit*>("txtLowY")->isEnabled());
            QVERIFY(form.findChild<QCheckBox*>("chkAutomaticY")->isChecked());
            QCOMPARE(form.findChild<QPushButton*>("cmdColour1")->text(), QString("As drawn"));
            Click(form, "cmdOK");
        });
        QVERIFY(graph.Graph().Look() == GraphLook{});
        QCOMPARE(graph.Graph().UserTitle(), std::string("Expected and Observed CPUE"));
    }

    void TheEditedTitleStandsInTheWindowThePictureAndTheGraphMenu()
    {
        Session session;
        session.Open();
        session.Fit();
        PlotWindow* graph = session.window.Graphs().WindowAt(0);
        Edit(*graph, [](frmGraphEdit& form) {
            Enter(form, "txtTitle", "Ling & lobster");
            Click(form, "cmdOK");
        });
        QCOMPARE(TitleOf(*graph), QString("Ling & lobster"));
        QCOMPARE(graph->windowTitle(), QString("Ling & lobster"));
        QCOMPARE(session.ListedGraphs().first(), QString("Ling && lobster"));
        graph->hide();
        session.Menu("mnuGraph")->actions().first()->trigger();
        QVERIFY(graph->isVisible());
    }

    void CopiedDataKeepTheTitlesThatTheGraphCameWith()
    {
        frmModelGraph graph(Cpue());
        const std::string before = graph.Graph().CopiedText();
        Edit(graph, [](frmGraphEdit& form) {
            Enter(form, "txtXTitle", "Season");
            Enter(form, "txtYTitle", "Catch rate (kg / h)");
            Click(form, "cmdOK");
        });
        QCOMPARE(graph.Plot().xAxis->label(), QString("Season"));
        QCOMPARE(graph.Plot().yAxis->label(), QString("Catch rate (kg / h)"));
        QCOMPARE(graph.Graph().CopiedText(), before);
        frmProjGraph projection(Projection());
        const std::string heading = projection.Graph().CopiedText();
        Edit(projection, [](frmGraphEdit& form) {
            Enter(form, "txtYTitle", "Stock");
            Click(form, "cmdOK");
        });
        QCOMPARE(projection.Graph().CopiedText(), heading);
    }

    void AProjectionIsKnownByItsEditedTitleAndAModelsGraphByItsOwn()
    {
        const auto rename = [](frmGraphEdit& form) {
            Enter(form, "txtTitle", "Mine");
            Click(form, "cmdOK");
        };
        frmProjGraph projection(Projection());
        Edit(projection, rename);
        QCOMPARE(projection.Graph().Title(), std::string("Mine"));
        frmModelGraph graph(Cpue());
        Edit(graph, rename);
        QCOMPARE(graph.Graph().Title(), std::string("Expected and Observed CPUE"));
        QCOMPARE(graph.Graph().UserTitle(), std::string("Mine"));
    }

    void AGraphKeepsATitle()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            Enter(form, "txtTitle", "   ");
            Click(form, "cmdOK");
            QVERIFY(form.isVisible());
            QVERIFY(form.findChild<QLabel*>("lblRefusal")->isVisible());
        });
        QCOMPARE(TitleOf(graph), QString("Expected and Observed CPUE"));
    }

    void TypedRangesAreDrawnAndResetGoesBackToThem()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            Tick(form, "chkAutomaticX", false);
            Enter(form, "txtLowX", "1999");
            Enter(form, "txtHighX", " 2010 ");
            Tick(form, "chkAutomaticY", false);
            Enter(form, "txtLowY", "-5");
            Enter(form, "txtHighY", "2.5E1");
            Click(form, "cmdOK");
        });
        const QCPRange x(1999, 2010);
        const QCPRange y(-5, 25);
        QCOMPARE(graph.Plot().xAxis->range(), x);
        QCOMPARE(graph.Plot().yAxis->range(), y);
        graph.Plot().yAxis->setRange(0, 1);
        graph.ResetZoom();
        QCOMPARE(graph.Plot().yAxis->range(), y);
    }

    void AutomaticGivesAnAxisItsOwnRangeBack()
    {
        frmModelGraph graph(Cpue());
        const QCPRange own = graph.Plot().yAxis->range();
        Edit(graph, [](frmGraphEdit& form) {
            Tick(form, "chkAutomaticY", false);
            Enter(form, "txtHighY", "400");
            Click(form, "cmdOK");
        });
        QCOMPARE(graph.Plot().yAxis->range().upper, 400.0);
        Edit(graph, [](frmGraphEdit& form) {
            QCOMPARE(form.findChild<QLineEdit*>("txtHighY")->text(), QString("400"));
            Tick(form, "chkAutomaticY", true);
            Click(form, "cmdOK");
        });
        QCOMPARE(graph.Plot().yAxis->range(), own);
    }

    void WhatIsNoRangeIsRefusedWithTheFocusOnIt_data()
    {
        QTest::addColumn<QString>("low");
        QTest::addColumn<QString>("high");
        QTest::addColumn<QString>("box");
        QTest::newRow("a word") << "few"
                                << "10"
                                << "txtLowY";
        QTest::newRow("nothing") << "0"
                                 << ""
                                 << "txtHighY";
        QTest::newRow("no number") << "nan"
                                   << "1"
                                   << "txtLowY";
        QTest::newRow("infinite") << "0"
                                  << "inf"
                                  << "txtHighY";
        QTest::newRow("the wrong way round") << "10"
                                             << "1"
                                             << "txtHighY";
        QTest::newRow("of no length") << "3"
                                      << "3"
                                      << "txtHighY";
        QTest::newRow("beyond any axis") << "0"
                                         << "1E300"
                                         << "txtHighY";
        QTest::newRow("a comma") << "0"
                                 << "1,5"
                                 << "txtHighY";
    }
    void WhatIsNoRangeIsRefusedWithTheFocusOnIt()
    {
        QFETCH(const QString, low);
        QFETCH(const QString, high);
        QFETCH(const QString, box);
        frmModelGraph graph(Cpue());
        const QCPRange own = graph.Plot().yAxis->range();
        Edit(graph, [&](frmGraphEdit& form) {
            Tick(form, "chkAutomaticY", false);
            Enter(form, "txtLowY", low);
            Enter(form, "txtHighY", high);
            Click(form, "cmdOK");
            QVERIFY(form.isVisible());
            QVERIFY(form.findChild<QLabel*>("lblRefusal")->isVisible());
            QCOMPARE(form.focusWidget()->objectName(), box);
        });
        QCOMPARE(graph.Plot().yAxis->range(), own);
    }

    void WhatWasChosenStandsInTheDialogAgain()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            form.ColourChosenBy([](const QColor&) { return QColor(1, 2, 3); });
            Click(form, "cmdColour1");
            Choose(form, "cmbSymbol1", "Circle");
            Choose(form, "cmbLine1", "None");
            Tick(form, "chkLegend", false);
            Tick(form, "chkAutomaticY", false);
            Enter(form, "txtLowY", "1.23456789");
            Enter(form, "txtHighY", "98.7654321");
            Enter(form, "txtXTitle", "Season");
            Click(form, "cmdOK");
        });
        const GraphLook look = graph.Graph().Look();
        QCOMPARE(look.series.at("Expected").colour, std::optional<std::uint32_t>(0x010203));
        Edit(graph, [](frmGraphEdit& form) {
            QCOMPARE(form.findChild<QPushButton*>("cmdColour1")->text(), QString("#010203"));
            QCOMPARE(form.findChild<QPushButton*>("cmdColour2")->text(), QString("As drawn"));
            QCOMPARE(form.findChild<QComboBox*>("cmbSymbol1")->currentText(), QString("Circle"));
            QCOMPARE(form.findChild<QComboBox*>("cmbLine1")->currentText(), QString("None"));
            QCOMPARE(form.findChild<QComboBox*>("cmbSymbol2")->currentText(), QString("As drawn"));
            QVERIFY(!form.findChild<QCheckBox*>("chkLegend")->isChecked());
            QCOMPARE(form.findChild<QLineEdit*>("txtLowY")->text(), QString("1.23456789"));
            QCOMPARE(form.findChild<QLineEdit*>("txtHighY")->text(), QString("98.7654321"));
            QVERIFY(form.findChild<QLineEdit*>("txtHighY")->isEnabled());
            QCOMPARE(form.findChild<QLineEdit*>("txtXTitle")->text(), QString("Season"));
            form.ColourChosenBy([](const QColor& now) {
                return now == QColor(1, 2, 3) ? QColor() : QColor(9, 9, 9); // it begins with the one chosen
            });
            Click(form, "cmdColour1");
            Click(form, "cmdOK");
        });
        QVERIFY(graph.Graph().Look() == look);
    }

    void TheRangesOfAGraphAreShownInSixDigits()
    {
        frmModelGraph graph(Cpue());
        const QCPRange x = graph.Plot().xAxis->range();
        Edit(graph, [&](frmGraphEdit& form) {
            const auto close = [&](const char* box, double end) {
                const QString shown = form.findChild<QLineEdit*>(QString::fromLatin1(box))->text();
                return shown.size() <= 7 && std::abs(shown.toDouble() - end) <= 5e-6 * std::abs(end);
            };
            QVERIFY(close("txtLowX", x.lower));
            QVERIFY(close("txtHighX", x.upper));
        });
    }

    void ARefusalGoesWhenTheEntryIsMendedAndWithTheDefaults()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            const auto* refusal = form.findChild<QLabel*>("lblRefusal");
            for (const char* mends : {"cmdApply", "cmdDefaults"}) {
                Tick(form, "chkAutomaticX", false);
                Enter(form, "txtLowX", "few");
                Click(form, "cmdApply");
                QVERIFY(refusal->isVisible());
                Enter(form, "txtLowX", "1990");
                Click(form, mends);
                QVERIFY2(!refusal->isVisible(), mends);
            }
        });
    }

    void OfTwoRangesThatAreNoneTheFirstIsRefused()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            for (const char* end : {"X", "Y"}) {
                Tick(form, qPrintable(QString("chkAutomatic") + end), false);
                Enter(form, qPrintable(QString("txtLow") + end), "5");
                Enter(form, qPrintable(QString("txtHigh") + end), "5");
            }
            Click(form, "cmdOK");
            QCOMPARE(form.focusWidget()->objectName(), QString("txtHighX"));
            QCOMPARE(form.findChild<QLabel*>("lblRefusal")->text(),
                     QString("The upper end of a range must be above its lower end."));
        });
    }

    void ApplyShowsTheEditAndCancelKeepsWhatWasApplied()
    {
        frmModelGraph graph(Cpue());
        QSignalSpy edited(&graph, &PlotWindow::Edited);
        Edit(graph, [&](frmGraphEdit& form) {
            Enter(form, "txtTitle", "Applied");
            Click(form, "cmdApply");
            QVERIFY(form.isVisible());
            QCOMPARE(TitleOf(graph), QString("Applied"));
            Enter(form, "txtTitle", "Dropped");
            Click(form, "cmdCancel");
        });
        QCOMPARE(TitleOf(graph), QString("Applied"));
        QCOMPARE(edited.count(), 1);
    }

    void ADialogThatIsCancelledLeavesTheZoomAsItWas()
    {
        frmModelGraph graph(Cpue());
        const QCPRange whole = graph.Plot().yAxis->range();
        graph.Plot().xAxis->setRange(2001, 2002);
        graph.Plot().yAxis->setRange(5, 12);
        Edit(graph, [&](frmGraphEdit& form) {
            QCOMPARE(form.findChild<QLineEdit*>("txtLowY")->text(), QString("0")); // the graph's own range
            Click(form, "cmdCancel");
        });
        QCOMPARE(graph.Plot().xAxis->range(), QCPRange(2001, 2002));
        QCOMPARE(graph.Plot().yAxis->range(), QCPRange(5, 12));
        graph.ResetZoom();
        QCOMPARE(graph.Plot().yAxis->range(), whole);
    }

    void ADialogThatIsCancelledLeavesAnEarlierEditAndTheDefaultsAreTheGraphsOwn()
    {
        frmModelGraph graph(Cpue());
        QString own;
        Edit(graph, [&](frmGraphEdit& form) {
            own = form.findChild<QLineEdit*>("txtHighY")->text();
            Tick(form, "chkAutomaticY", false);
            Enter(form, "txtHighY", "400");
            Enter(form, "txtTitle", "Mine");
            Choose(form, "cmbSymbol2", "Cross");
            Click(form, "cmdOK");
        });
        const GraphLook look = graph.Graph().Look();
        Edit(graph, [&](frmGraphEdit& form) {
            Click(form, "cmdDefaults");
            QCOMPARE(form.findChild<QLineEdit*>("txtHighY")->text(), own);
            QCOMPARE(form.findChild<QLineEdit*>("txtTitle")->text(), QString("Expected and Observed CPUE"));
            Click(form, "cmdCancel");
        });
        QVERIFY(graph.Graph().Look() == look);
        QCOMPARE(TitleOf(graph), QString("Mine"));
        QCOMPARE(Named(graph.Plot(), "Observed (Excluded)")->scatterStyle().shape(),
                 QCPScatterStyle::ssCross);
    }

    void AGraphThatTheUserRenamedIsReplacedByTheNextOfItsOwnTitle()
    {
        Session session;
        session.window.AddModelGraph(::Graph("Effort"));
        Edit(*session.window.Graphs().WindowAt(0), [](frmGraphEdit& form) {
            Enter(form, "txtTitle", "Mine");
            Click(form, "cmdOK");
        });
        session.window.AddModelGraph(::Graph("Effort"));
        QCOMPARE(session.ListedGraphs(), QStringList{"Effort"});
    }

    void EveryPictureOfTheGraphShowsTheEdit()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            Enter(form, "txtTitle", "Hake of the western bank");
            Click(form, "cmdOK");
        });
        QVERIFY(DrawGraphPicture(graph.Graph(), "svg").contains("Hake of the western bank"));
    }

    void OfASurfaceTitlesAndRangesAreEdited()
    {
        ContourSurface surface{.title = "Negative Likelihood Function",
                               .xName = "N",
                               .yName = "q",
                               .zName = "Objective",
                               .x = {1, 2, 3},
                               .y = {1, 2, 3},
                               .z = {{3, 2, 3}, {2, 1, 2}, {3, 2, 3}},
                               .plateau = 4,
                               .zMin = 1,
                               .zMax = 3};
        frmGraph graph;
        graph.Surface(surface);
        const auto change = [](frmGraphEdit& form) {
            QVERIFY(form.findChild<QCheckBox*>("chkLegend") == nullptr);
            QVERIFY(form.findChild<QPushButton*>("cmdColour1") == nullptr);
            Enter(form, "txtTitle", "Where the minimum lies");
            Tick(form, "chkAutomaticX", false);
            Enter(form, "txtLowX", "1.5");
            Enter(form, "txtHighX", "2.5");
            Click(form, "cmdOK");
        };
        Edit(graph, change);
        QCOMPARE(TitleOf(graph), QString("Where the minimum lies"));
        QCOMPARE(graph.Plot().xAxis->range(), QCPRange(1.5, 2.5));
        graph.Mark({.kind = ContourMark::Final, .x = 2, .y = 2});
        QCOMPARE(graph.Plot().xAxis->range(), QCPRange(1.5, 2.5));
        Edit(graph, [](frmGraphEdit& form) {
            Click(form, "cmdDefaults");
            Click(form, "cmdOK");
        });
        QCOMPARE(TitleOf(graph), QString("Negative Likelihood Function"));
        QCOMPARE(graph.Plot().xAxis->range(), QCPRange(1, 3));
    }

    // Deliberate: the copy of a projection is told in an exclamation box, that of a model's graph is not.
    void TheCopiedDataOfAProjectionAreToldInAnExclamationBox()
    {
        frmProjGraph projection(Projection());
        const Box ofProjection = AnswerTheBoxOf(projection, "CopyData");
        QCOMPARE(ofProjection.words, QString("Data Copied to Clipboard"));
        QCOMPARE(ofProjection.icon, QMessageBox::Warning);
        QCOMPARE(AnswerTheBoxOf(projection, "CopyGraph").icon, QMessageBox::Information);
        frmModelGraph graph(Cpue());
        QCOMPARE(AnswerTheBoxOf(graph, "CopyData").icon, QMessageBox::Information);
    }

    void DataThatCannotBeCopiedAreSaid()
    {
        frmModelGraph graph(Cpue());
        graph.CopiesBy([](const QString&) { return false; });
        const Box ofGraph = AnswerTheBoxOf(graph, "CopyData");
        QCOMPARE(ofGraph.words, QString("Unable to Copy Data to Clipboard"));
        QCOMPARE(ofGraph.icon, QMessageBox::Warning);
        frmProjGraph projection(Projection());
        projection.CopiesBy([](const QString&) -> bool { RaiseSubscript(); });
        const Box box = AnswerTheBoxOf(projection, "CopyData");
        QCOMPARE(box.words, QString("Unable to Copy Data to Clipboard"));
        QCOMPARE(box.icon, QMessageBox::Warning);
    }
};

QTEST_MAIN(GraphEditTitlesTest)
#include "graphedit_titles_test.moc"
