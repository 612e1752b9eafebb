// SPDX-License-Identifier: GPL-3.0-or-later
// What the user changes of the series of a graph: colours, symbols and lines; legend and grid lines.
#include "GraphEditing.h"
#include "NamedGraph.h"
#include "views/PlotPicture.h"
#include "views/PlotStyle.h"

namespace
{
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
} // namespace

class GraphEditSeriesTest : public QObject
{
    Q_OBJECT

private slots:
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
};

QTEST_MAIN(GraphEditSeriesTest)
#include "graphedit_series_test.moc"
