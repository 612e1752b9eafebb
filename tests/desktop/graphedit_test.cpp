// SPDX-License-Identifier: GPL-3.0-or-later
// What the user changes of a graph: titles, ranges, legend, grid lines, colours, symbols; and the units of
// columns.
#include "base/VeltError.h"
#include "desktop/Session.h"
#include "graphs/ProjGraph.h"
#include "shell/ColumnUnits.h"
#include "views/GraphPainter.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"
#include "views/frmGraph.h"
#include "views/frmGraphEdit.h"
#include "views/frmProjGraph.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolBar>

#include <cmath>

namespace
{
/// Does `what` with the dialog that `open` will show, which then must be closed.
template <typename Dialog>
void With(const std::function<void()>& open, const std::function<void(Dialog&)>& what)
{
    bool done = false;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr)
            return;
        what(*dialog);
        done = true;
        if (dialog->isVisible()) // a dialog that stays would hang the test
            dialog->reject();
    });
    open();
    QVERIFY(done);
}

void Edit(PlotWindow& window, const std::function<void(frmGraphEdit&)>& what)
{
    With<frmGraphEdit>([&] { window.findChild<QAction*>("EditGraph")->trigger(); }, what);
}

void Enter(QDialog& form, const char* box, const QString& text)
{
    form.findChild<QLineEdit*>(QString::fromLatin1(box))->setText(text);
}

void Tick(QDialog& form, const char* box, bool on)
{
    form.findChild<QCheckBox*>(QString::fromLatin1(box))->setChecked(on);
}

void Choose(QDialog& form, const char* box, const QString& entry)
{
    auto* combo = form.findChild<QComboBox*>(QString::fromLatin1(box));
    const int index = combo->findText(entry);
    QVERIFY2(index >= 0, qPrintable(entry));
    combo->setCurrentIndex(index);
}

void Click(QDialog& form, const char* button)
{
    form.findChild<QPushButton*>(QString::fromLatin1(button))->click();
}

struct Box {
    QString words;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

/// What the next message box says, which is then closed.
Box AnswerTheNextBox(const std::function<void()>& command)
{
    Box seen;
    QTimer::singleShot(0, [&seen] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            seen = {.words = box->text(), .icon = box->icon()};
            box->accept();
        }
    });
    command();
    return seen;
}

Box AnswerTheBoxOf(PlotWindow& window, const char* command)
{
    return AnswerTheNextBox([&] { window.findChild<QAction*>(QString::fromLatin1(command))->trigger(); });
}

/// Four years: two in the fit, one out of it, one that is not drawn.
std::shared_ptr<ModelGraph> Cpue()
{
    auto graph = std::make_shared<ModelGraph>();
    constexpr double hidden = ModelGraph::InvalidData;
    graph->Create(4);
    graph->Type(GraphType::PointsAndLine);
    graph->Title("Expected and Observed CPUE");
    graph->XTitle("Time");
    graph->YTitle("CPUE");
    graph->WithToggs(true);
    graph->XData(std::vector<double>{2001, 2002, 2003, 2004});
    graph->YData(std::vector<double>{20, hidden, 10, hidden});
    graph->YData2(std::vector<double>{hidden, 15, hidden, hidden});
    graph->OverlayLine(std::vector<double>{21, 16, 11, 8});
    return graph;
}

/// One scenario of two periods behind two of a fit, with limits.
std::shared_ptr<ProjGraph> Projection()
{
    auto graph = std::make_shared<ProjGraph>();
    graph->Create(1, 4, true, 2, true);
    graph->Title("Projection #1");
    graph->LegendText(1, "Half the effort");
    graph->LegendText(2, "Fit");
    for (int i = 1; i <= 4; ++i) {
        graph->XData(i, 2000.0F + static_cast<float>(i));
        for (int line = 1; line <= 2; ++line)
            graph->ProjData(line, i, 100.0F);
        graph->ErrorMinus(i, 80.0F);
        graph->ErrorPlus(i, 130.0F);
    }
    return graph;
}

/// Four classes of bootstraps.
std::shared_ptr<ModelGraph> Histogram()
{
    auto graph = std::make_shared<ModelGraph>();
    graph->Create(4);
    graph->Type(GraphType::Histogram);
    graph->YTitle("Frequency");
    graph->XData(std::vector<double>{1, 2, 3, 4});
    graph->YData(std::vector<double>{5, 9, 4, 1});
    return graph;
}

/// Residuals of four years: two in the fit, one out of it, with limits.
std::shared_ptr<ModelGraph> Residuals()
{
    auto graph = Cpue();
    graph->Type(GraphType::Residuals);
    graph->UCI(30.0F);
    graph->LCI(-30.0F);
    return graph;
}

/// Chooses in the box of that accessible name, as "Line of Limits".
void ChooseOf(QDialog& form, const QString& what, const QString& entry)
{
    for (QComboBox* box : form.findChildren<QComboBox*>())
        if (box->accessibleName() == what)
            return Choose(form, qPrintable(box->objectName()), entry);
    QFAIL(qPrintable(what));
}

/// What the colour dialog of each series would begin with, and which boxes its row has.
struct Rows {
    QList<QColor> colours;
    QList<bool> symbols, lines;
};

Rows RowsOf(PlotWindow& window)
{
    Rows rows;
    Edit(window, [&](frmGraphEdit& form) {
        form.ColourChosenBy([&](const QColor& now) {
            rows.colours += now;
            return QColor();
        });
        for (int i = 1; form.findChild<QPushButton*>(QStringLiteral("cmdColour%1").arg(i)); ++i) {
            Click(form, qPrintable(QStringLiteral("cmdColour%1").arg(i)));
            rows.symbols += form.findChild<QComboBox*>(QStringLiteral("cmbSymbol%1").arg(i))->isEnabled();
            rows.lines += form.findChild<QComboBox*>(QStringLiteral("cmbLine%1").arg(i))->isEnabled();
        }
    });
    return rows;
}

QCPGraph* Named(const QCustomPlot& plot, const QString& name)
{
    for (int i = 0; i < plot.graphCount(); ++i)
        if (plot.graph(i)->name() == name)
            return plot.graph(i);
    return nullptr;
}

QString TitleOf(PlotWindow& window)
{
    return plot_style::TitleText(window.Plot());
}
} // namespace

class GraphEditTest : public QObject
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

    void LegendAndGridLinesGoAndComeBack()
    {
        frmModelGraph graph(Cpue());
        const QImage before = PlotImage(graph.Plot(), kPictureSize);
        Edit(graph, [](frmGraphEdit& form) {
            Tick(form, "chkLegend", false);
            Tick(form, "chkGrid", false);
            Click(form, "cmdOK");
        });
        QCOMPARE(graph.Plot().legend->itemCount(), 0);
        QVERIFY(!graph.Plot().xAxis->grid()->visible());
        Edit(graph, [](frmGraphEdit& form) {
            Click(form, "cmdDefaults");
            Click(form, "cmdOK");
        });
        QCOMPARE(PlotImage(graph.Plot(), kPictureSize), before);
    }

    void ASeriesTakesColourSymbolAndLine()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            QCOMPARE(form.findChild<QPushButton*>("cmdColour1")->accessibleName(),
                     QString("Colour of Expected"));
            form.ColourChosenBy([](const QColor& now) {
                return now == plot_style::kExpected ? QColor(1, 2, 3) : QColor(4, 5, 6);
            });
            Click(form, "cmdColour1"); // the line
            Choose(form, "cmbLine1", "Dotted");
            Choose(form, "cmbSymbol1", "Square, filled");
            Click(form, "cmdColour2");
            Choose(form, "cmbSymbol2", "Cross");
            Click(form, "cmdOK");
        });
        const QCPGraph* expected = Named(graph.Plot(), "Expected");
        QCOMPARE(expected->pen().color(), QColor(1, 2, 3));
        QCOMPARE(expected->pen().style(), Qt::DotLine);
        QCOMPARE(expected->scatterStyle().shape(), QCPScatterStyle::ssSquare);
        QCOMPARE(expected->scatterStyle().brush().color(), QColor(1, 2, 3));
        const QCPGraph* excluded = Named(graph.Plot(), "Observed (Excluded)");
        QCOMPARE(excluded->scatterStyle().shape(), QCPScatterStyle::ssCross);
        QCOMPARE(excluded->scatterStyle().pen().color(), QColor(4, 5, 6));
        QCOMPARE(excluded->lineStyle(), QCPGraph::lsNone);
        const QCPGraph* included = Named(graph.Plot(), "Observed (Included)");
        QCOMPARE(included->scatterStyle().brush().color(), plot_style::kIncluded);
    }

    void EverySymbolOfTheListIsDrawnFilledOrHollowInTheSizeOfTheFormerOne()
    {
        using Style = QCPScatterStyle;
        const struct {
            const char* name;
            Style::ScatterShape shape;
            bool filled;
        } all[] = {{"None", Style::ssNone, false},
                   {"Circle", Style::ssCircle, false},
                   {"Circle, filled", Style::ssCircle, true},
                   {"Square", Style::ssSquare, false},
                   {"Square, filled", Style::ssSquare, true},
                   {"Triangle", Style::ssTriangle, false},
                   {"Triangle, filled", Style::ssTriangle, true},
                   {"Diamond", Style::ssDiamond, false},
                   {"Diamond, filled", Style::ssDiamond, true},
                   {"Cross", Style::ssCross, false},
                   {"Plus", Style::ssPlus, false}};
        frmProjGraph graph(Projection());
        const double size = Named(graph.Plot(), "Half the effort")->scatterStyle().size();
        const QColor colour = Named(graph.Plot(), "Half the effort")->pen().color();
        for (const auto& each : all) {
            Edit(graph, [&](frmGraphEdit& form) {
                Choose(form, "cmbSymbol1", each.name); // of the scenario
                Choose(form, "cmbSymbol2", each.name); // of the fit, which has none by itself
                Click(form, "cmdOK");
            });
            const Style style = Named(graph.Plot(), "Half the effort")->scatterStyle();
            QCOMPARE(style.shape(), each.shape);
            QCOMPARE(style.brush().color(), each.filled ? colour : QColor(Qt::white));
            QCOMPARE(style.size(), size);
            QCOMPARE(Named(graph.Plot(), "Fit")->scatterStyle().size(), plot_style::Pixels(6.5));
        }
    }

    void EveryLineOfTheListIsDrawnInTheWidthOfTheFormerOne()
    {
        const std::pair<const char*, Qt::PenStyle> all[] = {{"Solid", Qt::SolidLine},
                                                            {"Dashed", Qt::DashLine},
                                                            {"Dotted", Qt::DotLine},
                                                            {"Dash-dot", Qt::DashDotLine}};
        frmModelGraph graph(Residuals());
        const double width = Named(graph.Plot(), "Limits")->pen().widthF();
        QVERIFY(width != plot_style::Pixels(2.0));
        for (const auto& [name, style] : all) {
            Edit(graph, [name = name](frmGraphEdit& form) {
                ChooseOf(form, "Line of Limits", name);
                ChooseOf(form, "Line of Observed (Included)", name); // which has none by itself
                Click(form, "cmdOK");
            });
            for (int i = 0; i < graph.Plot().graphCount(); ++i) // both limits
                if (graph.Plot().graph(i)->name() == "Limits") {
                    QCOMPARE(graph.Plot().graph(i)->pen().style(), style);
                    QCOMPARE(graph.Plot().graph(i)->pen().widthF(), width);
                }
            const QCPGraph* points = Named(graph.Plot(), "Observed (Included)");
            QCOMPARE(points->lineStyle(), QCPGraph::lsLine);
            QCOMPARE(points->pen().style(), style);
            QCOMPARE(points->pen().color(), plot_style::kIncluded);
            QCOMPARE(points->pen().widthF(), plot_style::Pixels(2.0));
        }
        Edit(graph, [](frmGraphEdit& form) {
            ChooseOf(form, "Line of Limits", "None");
            Click(form, "cmdOK");
        });
        for (int i = 0; i < graph.Plot().graphCount(); ++i)
            QVERIFY(graph.Plot().graph(i)->name() != "Limits" ||
                    graph.Plot().graph(i)->lineStyle() == QCPGraph::lsNone);
    }

    void AColourIsChosenFromTheOneThatIsSeen()
    {
        frmModelGraph graph(Cpue());
        QCOMPARE(RowsOf(graph).colours,
                 (QList<QColor>{plot_style::kExpected, plot_style::kExcluded, plot_style::kIncluded}));
        frmModelGraph bars(Histogram());
        const Rows rows = RowsOf(bars);
        QCOMPARE(rows.colours, (QList<QColor>{plot_style::kHistogram, plot_style::kLimits}));
        QCOMPARE(rows.symbols, (QList<bool>{false, true})); // bars have neither symbols nor lines
        QCOMPARE(rows.lines, (QList<bool>{false, true}));
    }

    void AHollowSymbolStaysWhiteInsideInAnotherColour()
    {
        frmProjGraph graph(Projection());
        Edit(graph, [](frmGraphEdit& form) {
            form.ColourChosenBy([](const QColor&) { return QColor(200, 0, 0); });
            Click(form, "cmdColour1");
            Click(form, "cmdOK");
        });
        const QCPScatterStyle symbol = Named(graph.Plot(), "Half the effort")->scatterStyle();
        QCOMPARE(symbol.pen().color(), QColor(200, 0, 0));
        QCOMPARE(symbol.brush().color(), QColor(Qt::white));
    }

    void SymbolsAndLinesOfASeriesAreNotThoseOfItsLimits()
    {
        frmProjGraph graph(Projection());
        Edit(graph, [](frmGraphEdit& form) {
            Choose(form, "cmbSymbol1", "Cross");
            Choose(form, "cmbLine1", "Dashed");
            Click(form, "cmdOK");
        });
        int edges = 0;
        for (int i = 0; i < graph.Plot().graphCount(); ++i) {
            const QCPGraph& each = *graph.Plot().graph(i);
            if (each.name() != "Half the effort" || &each == Named(graph.Plot(), "Half the effort"))
                continue;
            ++edges;
            QVERIFY(each.scatterStyle().isNone());
            QCOMPARE(each.pen().style(), Qt::NoPen);
        }
        QCOMPARE(edges, 2);
    }

    void LimitsFollowTheColourOfTheirLineAndStayTransparent()
    {
        frmProjGraph graph(Projection());
        const auto band = [&]() -> QColor {
            for (int i = 0; i < graph.Plot().graphCount(); ++i)
                if (graph.Plot().graph(i)->channelFillGraph() != nullptr &&
                    graph.Plot().graph(i)->name() == "Half the effort")
                    return graph.Plot().graph(i)->brush().color();
            return {};
        };
        const int alpha = band().alpha();
        QVERIFY(alpha < 255);
        Edit(graph, [](frmGraphEdit& form) {
            form.ColourChosenBy([](const QColor&) { return QColor(200, 0, 0); });
            Click(form, "cmdColour1");
            Click(form, "cmdOK");
        });
        QCOMPARE(band(), QColor(200, 0, 0, alpha));
        QCOMPARE(Named(graph.Plot(), "Half the effort")->pen().color(), QColor(200, 0, 0));
        QCOMPARE(Named(graph.Plot(), "Fit")->pen().color(), plot_style::kExpected);
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

    void AChoiceIsTakenBackByChoosingAsDrawn()
    {
        frmModelGraph graph(Cpue());
        for (const char* symbol : {"Cross", "As drawn"})
            Edit(graph, [symbol](frmGraphEdit& form) {
                Choose(form, "cmbSymbol2", symbol);
                Click(form, "cmdOK");
            });
        QVERIFY(graph.Graph().Look() == GraphLook{});
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

    void TheDefaultsForgetALineThatIsNotSeenToo()
    {
        frmModelGraph graph(Cpue());
        graph.Graph().HighlightPoint(ModelGraph::kIncluded, 1);
        graph.Refresh();
        Edit(graph, [](frmGraphEdit& form) {
            Choose(form, "cmbSymbol4", "Plus"); // the highlight
            Click(form, "cmdOK");
        });
        graph.Graph().StopInterrogate();
        graph.Refresh();
        QCOMPARE(graph.Graph().Look().series.count("Highlighted"), 1U);
        Edit(graph, [](frmGraphEdit& form) {
            Click(form, "cmdDefaults");
            Click(form, "cmdOK");
        });
        QVERIFY(graph.Graph().Look() == GraphLook{});
    }

    void AScenarioThatIsCalledAsTheFitSharesItsRow()
    {
        auto projection = Projection();
        projection->LegendText(1, "Fit");
        frmProjGraph graph(projection);
        QCOMPARE(RowsOf(graph).colours.size(), 1);
    }

    void ALineWithoutANameHasNothingToChoose()
    {
        auto line = Cpue();
        line->Type(GraphType::Line);
        line->YTitle("");
        frmModelGraph graph(line);
        QVERIFY(RowsOf(graph).colours.isEmpty());
    }

    void AGraphWithoutPointsGetsNoGridLines()
    {
        frmModelGraph graph(std::make_shared<ModelGraph>());
        QVERIFY(!graph.Plot().xAxis->grid()->visible());
        QVERIFY(!graph.Plot().yAxis->grid()->visible());
    }

    void ACancelledColourIsNoChoice()
    {
        frmModelGraph graph(Cpue());
        Edit(graph, [](frmGraphEdit& form) {
            form.ColourChosenBy([](const QColor&) { return QColor(); });
            Click(form, "cmdColour1");
            Click(form, "cmdOK");
        });
        QVERIFY(graph.Graph().Look().series.empty());
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

    void TheLegendWrapsWhenTheWindowGetsNarrow()
    {
        frmModelGraph graph(Cpue());
        graph.show();
        QVERIFY(QTest::qWaitForWindowExposed(&graph));
        graph.resize(1200, 500);
        QCOMPARE(graph.Plot().legend->rowCount(), 1);
        graph.resize(graph.minimumSizeHint());
        QVERIFY(graph.Plot().legend->rowCount() > 1);
    }

    void AnEditOutlivesATogglingAndTheHighlightThatIsNotSeen()
    {
        frmModelGraph graph(Cpue());
        graph.Graph().HighlightPoint(ModelGraph::kIncluded, 1);
        graph.Refresh();
        Edit(graph, [](frmGraphEdit& form) {
            Choose(form, "cmbSymbol4", "Plus"); // the highlight
            Choose(form, "cmbSymbol3", "Diamond");
            Click(form, "cmdOK");
        });
        QCOMPARE(Named(graph.Plot(), "Highlighted")->scatterStyle().shape(), QCPScatterStyle::ssPlus);
        graph.Graph().StopInterrogate();
        graph.Graph().TogglePoint(2);
        graph.Refresh();
        QCOMPARE(Named(graph.Plot(), "Observed (Included)")->scatterStyle().shape(),
                 QCPScatterStyle::ssDiamond);
        Edit(graph, [](frmGraphEdit& form) { Click(form, "cmdOK"); });
        QCOMPARE(graph.Graph().Look().series.count("Highlighted"), 1U);
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

QTEST_MAIN(GraphEditTest)
#include "graphedit_test.moc"
