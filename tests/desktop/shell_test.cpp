// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VeltError.h"
#include "data/NumberFormat.h"
#include "desktop/Session.h"
#include "dialogs/frmASCIIWizard.h"
#include "files/AsciiWizard.h"
#include "graphs/ModelGraph.h"
#include "shell/MainMenu.h"
#include "shell/MenuState.h"
#include "shell/frmVelt3.h"
#include "toolkit/Words.h"
#include "views/DataGridView.h"
#include "views/frmModelGraph.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <map>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

namespace
{
/// What stands on each entry and on each menu, by its name.
const std::vector<std::pair<const char*, const char*>> kEntries{
    {"mnuNew", "&New"},
    {"mnuOpen", "&Open"},
    {"mnuSave", "&Save"},
    {"mnuSaveAs", "Save &As"},
    {"mnuPrint", "&Print"},
    {"mnuTextExport", "&Text Export"},
    {"mnuClose", "&Close"},
    {"mnuExit", "E&xit"},
    {"mnuEditMode", "Edit &Mode"},
    {"mnuFileDescription", "Fil&e Description"},
    {"mnuDeleteRow", "&Delete Row(s)"},
    {"mnuInsertRow", "&Insert Row(s)"},
    {"mnuDeleteColumn", "De&lete Column"},
    {"mnuInsertColumn", "In&sert Column"},
    {"mnuAddRow", "&Add Row(s)"},
    {"mnuCut", "Cu&t"},
    {"mnuCopy", "&Copy"},
    {"mnuPaste", "&Paste"},
    {"mnuFormat", "&Format"},
    {"mnuNumber", "&Number"},
    {"mnuDataPlots", "Data &Plots"},
    {"mnuNewModel", "&New Fit"},
    {"mnuNewParams", "New &Input Parameters"},
    {"mnuParameters", "&View Parameters"},
    {"mnuGenerateConfInts", "&Generate Conf. Ints"},
    {"mnuDisplayConfInts", "&Display Conf. Ints."},
    {"mnuFitManager", "&Fit Manager"},
    {"mnuViewProj", "Set Up Scenarios"},
    {"mnuProject", "&Project"},
    {"mnuProjWithCI", "P&roject With Conf. Ints"},
    {"mnuSettings", "&Settings"},
    {"mnuHelpContents", "&Contents and Index"},
    {"mnuAbout", "&About VELT 3.0"}};
const std::vector<std::pair<const char*, const char*>> kMenus{{"mnuFile", "&File"},
                                                              {"mnuEdit", "&Edit"},
                                                              {"mnuData", "&Data"},
                                                              {"mnuFit", "F&it"},
                                                              {"mnuProjections", "&Projections"},
                                                              {"mnuGraph", "&Graph"},
                                                              {"mnuOptions", "&Options"},
                                                              {"mnuHelp", "&Help"}};

using Rule = std::function<bool(const RunState&)>;

/// When each entry can be given, as it is written for the user.
std::map<QString, Rule> Rules()
{
    const Rule always = [](const RunState&) { return true; };
    const Rule open = [](const RunState& run) { return run.fileOpen; };
    const Rule outside = [](const RunState& run) { return !run.editMode; };
    const Rule working = [](const RunState& run) { return run.fileOpen && !run.editMode; };
    const Rule editing = [](const RunState& run) { return run.fileOpen && run.editMode; };
    const Rule graphs = [](const RunState& run) { return run.anyGraph; };
    const auto both = [](const Rule& a, const Rule& b) {
        return Rule([a, b](const RunState& run) { return a(run) && b(run); });
    };
    const Rule fitted = both(working, [](const RunState& run) { return run.fitDefined; });
    const Rule projectable =
        both(working, [](const RunState& run) { return run.projScenarios >= 1 && run.currMethType != 2; });

    std::map<QString, Rule> rules{
        {"mnuFile", outside},     {"mnuEdit", always},         {"mnuData", working},
        {"mnuFit", working},      {"mnuOptions", outside},     {"mnuHelp", always},
        {"mnuGraph", graphs},     {"mnuProjections", working}, {"mnuNew", outside},
        {"mnuOpen", outside},     {"mnuEditMode", open},       {"mnuFileDescription", open},
        {"mnuCopy", open},        {"mnuFormat", open},         {"mnuNumber", open},
        {"mnuSettings", outside}, {"mnuTile", graphs},         {"mnuHelpContents", always},
        {"mnuAbout", always},     {"mnuCascade", graphs},      {"mnuCloseAll", graphs},
        {"mnuOverview", graphs},  {"mnuExit", always},         {"mnuNewModel", working}};
    for (const char* name : {"mnuSave", "mnuSaveAs", "mnuClose", "mnuPrint", "mnuTextExport", "mnuDataPlots",
                             "mnuColumnUnits", "mnuFitManager"})
        rules[name] = working;
    for (const char* name :
         {"mnuCut", "mnuInsertColumn", "mnuDeleteColumn", "mnuAddRow", "mnuInsertRow", "mnuDeleteRow"})
        rules[name] = editing;
    rules["mnuPaste"] = both(editing, [](const RunState& run) { return run.clipboardHasText; });
    for (const char* name : {"mnuViewProj", "mnuGenerateConfInts", "mnuDisplayConfInts", "mnuParameters"})
        rules[name] = fitted;
    rules["mnuNewParams"] = both(working, [](const RunState& run) { return run.fitEverMade; });
    rules["mnuProject"] = both(fitted, projectable);
    rules["mnuProjWithCI"] = both(projectable, [](const RunState& run) { return run.bootstrapsDone; });
    return rules;
}

/// One of the 512 states that a run can be in, by its bits.
RunState StateOf(unsigned state)
{
    const auto bit = [state](unsigned place) { return ((state >> place) & 1U) != 0; };
    return {.editMode = bit(0),
            .fileOpen = bit(1),
            .fitDefined = bit(2),
            .bootstrapsDone = bit(3),
            .projScenarios = bit(4) ? 1 : 0,
            .currMethType = bit(5) ? 2 : 5,
            .fitEverMade = bit(6),
            .anyGraph = bit(7),
            .clipboardHasText = bit(8)};
}
} // namespace

class shell_test : public QObject
{
    Q_OBJECT

private slots:
    void WithNoDataSetEditIsStillAvailableWithFileDescriptionDisabled()
    {
        const MenuState menu = MenuStateOf({});
        QVERIFY(menu.file && menu.edit && menu.options && menu.help);
        QVERIFY(!menu.fileDescription);
        QVERIFY(!menu.data && !menu.fit && !menu.projections && !menu.graph);
        QVERIFY(!menu.close && !menu.save && !menu.editMode);
        QVERIFY(menu.open && menu.newData);
    }

    void ADataSetOffersItsCommandsAndNoneOfThoseOfAFit()
    {
        const MenuState menu = MenuStateOf({.fileOpen = true});
        QVERIFY(menu.file && menu.edit && menu.data && menu.fit && menu.projections && menu.options &&
                menu.help);
        QVERIFY(menu.save && menu.saveAs && menu.print && menu.textExport && menu.close);
        QVERIFY(menu.editMode && menu.fileDescription && menu.dataPlots && menu.newModel && menu.fitManager);
        QVERIFY(!menu.graph && !menu.newParams && !menu.project && !menu.projWithCI);
    }

    void AGraphOffersTheListOfGraphsAlsoWithoutADataSet() { QVERIFY(MenuStateOf({.anyGraph = true}).graph); }

    void EditModeLeavesTheEditMenuAlone()
    {
        const MenuState menu = MenuStateOf({.editMode = true, .fileOpen = true});
        QVERIFY(!menu.file && !menu.fit && !menu.projections && !menu.data && !menu.options);
        QVERIFY(menu.edit && menu.editMode);
    }

    void AFitOffersItsResults()
    {
        const MenuState without = MenuStateOf({.fileOpen = true});
        QVERIFY(!without.parameters && !without.generateConfInts && !without.displayConfInts &&
                !without.viewProj);
        const MenuState with = MenuStateOf({.fileOpen = true, .fitDefined = true});
        QVERIFY(with.parameters && with.generateConfInts && with.displayConfInts && with.viewProj);
        QVERIFY(!with.newParams);
        QVERIFY(MenuStateOf({.fileOpen = true, .fitEverMade = true}).newParams);
    }

    void ProjectionsNeedAScenarioAndAModelOtherThanTheRecruitmentIndex()
    {
        RunState run{.fileOpen = true, .fitDefined = true, .bootstrapsDone = true, .currMethType = 5};
        QVERIFY(!MenuStateOf(run).project && !MenuStateOf(run).projWithCI);
        run.projScenarios = 1;
        QVERIFY(MenuStateOf(run).project && MenuStateOf(run).projWithCI);
        run.bootstrapsDone = false;
        QVERIFY(MenuStateOf(run).project && !MenuStateOf(run).projWithCI);
        run.currMethType = 2;
        run.bootstrapsDone = true;
        QVERIFY(!MenuStateOf(run).project && !MenuStateOf(run).projWithCI);
    }

    void TheWindowStartsEmptyAndSaysHowToBegin()
    {
        Session session;
        QCOMPARE(session.window.windowTitle(), QString("VELT 3.0"));
        QCOMPARE(session.Panel("Status"), QString("Ready..."));
        QVERIFY(session.Panel("lblHint").contains("To begin"));
        QVERIFY(!session.Menu("mnuFit")->isEnabled());
        QVERIFY(!session.Menu("mnuGraph")->isEnabled());
        QVERIFY(session.Menu("mnuEdit")->isEnabled());
        QVERIFY(session.Entry("mnuOpen")->isEnabled());
        QVERIFY(!session.Entry("mnuClose")->isEnabled());
        QVERIFY(!session.window.FileOpen());
    }

    void TheEntriesCarryTheWordsOfTheTable()
    {
        Session session;
        for (const auto& [name, words] : kEntries) {
            QVERIFY2(session.Entry(name), name);
            QCOMPARE(session.Entry(name)->text(), QString(words));
        }
        for (const auto& [name, words] : kMenus)
            QCOMPARE(session.Menu(name)->title(), QString(words));
    }

    void EveryEntryCanBeGivenExactlyWhenItsRuleHolds()
    {
        const std::map<QString, Rule> rules = Rules();
        QMainWindow window;
        MainMenu menu(window);
        for (unsigned state = 0; state < 512; ++state) {
            const RunState run = StateOf(state);
            menu.Apply(MenuStateOf(run));
            for (const auto& [name, rule] : rules) {
                const auto* action = window.menuBar()->findChild<QAction*>(name);
                const auto* top = window.menuBar()->findChild<QMenu*>(name);
                QVERIFY2(action || top, qPrintable(name));
                const bool given = action ? action->isEnabled() : top->isEnabled();
                QVERIFY2(given == rule(run), qPrintable(name + " in state " + QString::number(state, 2)));
            }
            QCOMPARE(window.menuBar()->findChild<QAction*>("mnuEditMode")->isChecked(), run.editMode);
        }
    }

    void AboutTellsTheVersion()
    {
        Session session;
        session.Entry("mnuAbout")->trigger();
        QCOMPARE(session.user.messages.size(), std::size_t{1});
        QCOMPARE(session.user.messages.front().title, std::string("About VELT 3.0"));
        QVERIFY(session.user.Saw("VELT 3.0.0\n"));
        QVERIFY(session.user.Saw("To cite it: VELT developers"));
    }

    void LinesPartTheEntriesThatDoNotBelongTogether()
    {
        Session session;
        const auto groups = [&session](const char* menu) {
            QStringList sizes;
            int entries = 0;
            for (const QAction* action : session.Menu(menu)->actions()) {
                if (action->isSeparator())
                    sizes += QString::number(std::exchange(entries, 0));
                else
                    ++entries;
            }
            return (sizes << QString::number(entries)).join(' ');
        };
        QCOMPARE(groups("mnuFile"), QString("3 2 2 2"));   // come in, save, put out, leave
        QCOMPARE(groups("mnuEdit"), QString("1 2 1 8 2")); // mode, undo, description, rows and cells, formats
        QCOMPARE(groups("mnuFit"), QString("3 2 1"));      // fit, intervals, manager
        QCOMPARE(groups("mnuOptions"), QString("1"));
    }

    void AnImportedFileFillsTheTableAndTheCaption()
    {
        Session session;
        session.Open();
        QVERIFY(session.window.FileOpen());
        QCOMPARE(session.window.windowTitle(),
                 QString("VELT 3.0 - const25.txt - Constant recruitment, 25 years"));
        const DataGridModel& model = session.window.findChild<DataGridView*>()->Model();
        QCOMPARE(model.rowCount(), 25);
        QCOMPARE(model.columnCount(), 5);
        const QStringList titles{"Time", "Include", "Tot. Catch Nums", "Effort", "Catch Nums"};
        for (int column = 0; column < 5; ++column)
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), titles[column]);
        QCOMPARE(model.data(model.index(0, 0), Qt::DisplayRole).toString(), QString("1970"));
        QCOMPARE(model.data(model.index(0, 3), Qt::DisplayRole).toString(),
                 QString("109.3")); // with the decimals of the file
        QCOMPARE(session.window.Sheet().GridColOf(columns::Effort), 3);
        QCOMPARE(session.window.Sheet().GridColOf(columns::CatchWt), 0);
        QVERIFY(!(model.flags(model.index(0, 3)) & Qt::ItemIsEditable));
        QVERIFY(session.Menu("mnuFit")->isEnabled());
        QVERIFY(!session.Entry("mnuParameters")->isEnabled());
    }

    void TheNumberPanelShowsTheCurrentCellInFull()
    {
        Session session;
        session.Open();
        QCOMPARE(session.Panel("Number"), QString("9172.47")); // total catch of 1970
        auto* grid = session.window.findChild<QTableView*>("grdData");
        grid->setCurrentIndex(grid->model()->index(0, 3));
        QCOMPARE(session.Panel("Number"), QString("109.3"));
    }

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

    void CloseWithAFitAsksAndNoKeepsEverything()
    {
        Session session;
        session.Open();
        session.Fit();
        session.user.messages.clear();
        session.user.answers = {Answer::No, Answer::No}; // do not save, do not clear
        session.Entry("mnuClose")->trigger();
        QVERIFY(session.user.Saw("Do you wish to save changes to current data set?"));
        QVERIFY(session.user.Saw("Clear Current Fit"));
        QVERIFY(session.window.FileOpen());
        QVERIFY(session.window.objMeth().MethDefined());

        session.user.answers = {Answer::No, Answer::Yes};
        session.Entry("mnuClose")->trigger();
        QVERIFY(!session.window.FileOpen());
        QCOMPARE(session.window.windowTitle(), QString("VELT 3.0"));
        QVERIFY(session.window.Graphs().Empty());
        QVERIFY(!session.window.findChild<frmParams*>()->isVisible());
        QVERIFY(!session.Entry("mnuNewParams")->isEnabled());
        QCOMPARE(session.Panel("Number"), QString());
    }

    void ExitWithAFitAsksAndNoKeepsTheProgramRunning()
    {
        Session session;
        session.Open();
        session.Fit();
        session.user.answers = {Answer::No, Answer::No};
        session.Entry("mnuExit")->trigger();
        QVERIFY(session.window.isVisible());
        session.user.answers = {Answer::No, Answer::Yes};
        session.Entry("mnuExit")->trigger();
        QVERIFY(!session.window.isVisible());
    }

    void CloseWithoutAFitAsksOnlyForTheChangesOfTheData()
    {
        Session session;
        session.Open();
        session.user.messages.clear();
        session.user.answers = {Answer::No};
        session.Entry("mnuClose")->trigger();
        QCOMPARE(session.user.messages.size(), std::size_t{1}); // imported and never saved
        QVERIFY(!session.window.FileOpen());
        session.Entry("mnuClose")->trigger();
        QCOMPARE(session.user.messages.size(), std::size_t{1}); // nothing is open
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

    void OpenReadsTheFileThatWasChosen()
    {
        Session session;
        session.user.files = {std::string(VELT_TEST_SAMPLES) + "/expected/const25.txt"};
        session.Entry("mnuOpen")->trigger();
        QVERIFY(session.window.FileOpen());
        QCOMPARE(session.window.objData().TimeInts(), 25);
    }

    void OpenOffersProjectsTextAndCommaSeparatedTables()
    {
        struct Chooser : ScriptedUser {
            std::optional<std::string> AskFileToOpen(const FileQuestion& question) override
            {
                filter = question.filter;
                return {};
            }
            std::string filter;
        } user;
        frmVelt3 window(&user);
        window.menuBar()->findChild<QAction*>("mnuOpen")->trigger();
        QCOMPARE(
            user.filter,
            std::string("Projects and tables (*.vl3 *.vl2 *.txt *.csv);;Velt 3.0 (*.vl3);;Velt 2.0 (*.vl2);;"
                        "Text (*.txt);;Comma-separated (*.csv)"));
    }

    void ACommaSeparatedTableOpensThroughTheRealWizardWithItsGuesses()
    {
        Session session;
        session.user.onAsciiWizard = [&session](AsciiWizard& wizard) {
            QTimer::singleShot(0, [] { // no hand but on the two buttons
                auto* form = QApplication::activeModalWidget();
                form->findChild<QPushButton*>("cmdNext")->click();
                form->findChild<QPushButton*>("cmdFinish")->click();
            });
            return frmASCIIWizard::Ask(session.user, wizard, nullptr);
        };
        const std::string path = VELT_TEST_SAMPLES "/datasets/squid_loligo_gahi_falklands_1990.csv";
        session.user.files = {path};
        session.Entry("mnuOpen")->trigger();

        const clsVeltData& data = session.window.objData();
        QCOMPARE(data.TimeInts(), 120);
        QCOMPARE(data.DSDesc(), std::string("squid_loligo_gahi_falklands_1990.csv"));
        QCOMPARE(data.Effort(1), 17.0F);
        QCOMPARE(data.MeanWt(1), 0.0359F);
        QVERIFY(!data.ColPresent(columns::TotCatchWt)); // "catch_kg" may be two columns
        QVERIFY(session.user.messages.empty());
        QCOMPARE(session.user.asked.back(), std::string("file to save")); // it becomes a project
        QVERIFY(session.Menu("mnuRecent")->actions().front()->text().contains("squid_loligo"));
    }

    void AFaultInACommaSeparatedTableIsToldWithItsLine()
    {
        Session session;
        QTemporaryDir folder;
        QFile file(folder.filePath("ling.csv"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("Year,Boats\n1990,5\n1991,five\n");
        file.close();
        session.window.OpenPath(file.fileName());
        QCOMPARE(session.user.messages.size(), std::size_t{1});
        QCOMPARE(session.user.messages.front().title, std::string("Import Error"));
        QVERIFY(session.user.Saw("Line 3, column \"Boats\": \"five\" is not a number."));
    }

    void CancelInTheFileDialogLeavesNoDataSetOpen()
    {
        Session session;
        session.Open();
        session.user.answers = {Answer::No}; // to the question about changes
        session.Entry("mnuOpen")->trigger();
        QVERIFY(!session.window.FileOpen());
        QVERIFY(session.Panel("lblHint").contains("To begin"));
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

    void ACommandThatFailsSaysSoAndLeavesTheWindowUsable()
    {
        Session session;
        session.Open();
        session.user.onOptions = [](MinimiserOptions&) -> bool { throw std::runtime_error("disk on fire"); };
        session.Entry("mnuSettings")->trigger();
        QVERIFY(session.user.Saw("The command could not be finished: disk on fire"));
        QVERIFY(session.user.Saw("(frmVelt3_mnuSettings_Click)"));
        session.user.onOptions = [](MinimiserOptions&) -> bool { throw std::bad_alloc(); };
        session.Entry("mnuSettings")->trigger();
        QVERIFY(session.user.Saw("There is not enough memory for this command."));
        session.user.onOptions = [](MinimiserOptions&) -> bool {
            throw VeltError(11, "Division by zero", "");
        };
        session.Entry("mnuSettings")->trigger();
        QVERIFY(session.user.Saw("Division by zero\n\n(frmVelt3_mnuSettings_Click)"));

        QCOMPARE(session.Panel("Status"), QString("Ready..."));
        session.Fit();
        QVERIFY(session.window.objMeth().MethDefined());
    }

    void ACommandThatFailsLeavesNoHourglassBehind()
    {
        Session session;
        session.Open();
        session.user.onOptions = [&session](MinimiserOptions&) -> bool {
            session.window.HourglassOn();
            throw std::runtime_error("disk on fire");
        };
        session.Entry("mnuSettings")->trigger();
        QVERIFY(QApplication::overrideCursor() == nullptr);
        session.window.HourglassOn(); // and the next one comes as ever
        QVERIFY(QApplication::overrideCursor() != nullptr);
        session.window.HourglassOff();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void ACommandGivenWhileAnotherRunsIsIgnored()
    {
        Session session;
        session.Open();
        session.user.onOptions = [&session](MinimiserOptions&) {
            session.window.Command("mnuClose");
            session.window.close();
            return false;
        };
        session.Entry("mnuSettings")->trigger();
        QVERIFY(session.window.FileOpen());
        QVERIFY(session.window.isVisible());
    }

    // It used to be called missing, and then of an unknown type.
    void APathThatLoopsIsAnUnidentifiedErrorToldOnce()
    {
        Session session;
        QTemporaryDir folder;
        const QString loop = folder.filePath("loop.txt");
        QVERIFY(QFile::link(loop, loop));
        session.window.OpenPath(loop);
        QCOMPARE(session.user.messages.size(), std::size_t{1});
        QVERIFY(session.user.Saw("Default Error Message: An internal unidentified error has occured.\n" +
                                 loop.toStdString()));
    }

    void AFailedImportSaysThatTheDataSetIsEmptyAndHowToFillIt()
    {
        Session session;
        session.window.OpenPath(QString(VELT_TEST_SAMPLES) + "/import/bad_token_missing.txt");
        QVERIFY(session.user.Saw("Bad number of data columns."));
        QVERIFY(session.Panel("lblHint").contains("has no time periods"));
        session.Entry("mnuNewModel")->trigger();
        QVERIFY(session.user.Saw("No models available for this dataset"));
    }

    void AnUnknownFileIsNotRecognised()
    {
        Session session;
        QTemporaryDir folder;
        const QString path = folder.filePath("notes.doc");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("nothing that this program knows");
        file.close();
        session.window.OpenPath(path);
        QVERIFY(session.user.Saw("File type not recognised."));
        QVERIFY(!session.window.FileOpen());
        QCOMPARE(session.Panel("Status"), QString("Ready..."));
    }

    // The name alone would make a table of the third.
    void AFileThatDoesNotExistIsToldAndThenNotRecognised()
    {
        QTemporaryDir folder;
        for (const char* name : {"gone.vl3", "gone.vl2", "gone.txt"}) {
            Session session;
            const QString path = folder.filePath(name);
            session.window.OpenPath(path);
            QCOMPARE(session.user.messages.size(), std::size_t{2});
            QCOMPARE(session.user.messages[0].text,
                     "The file " + path.toStdString() + " doesn't exist.\nPlease select another file. ");
            QCOMPARE(session.user.messages[0].title, std::string("File Message"));
            QCOMPARE(session.user.messages[1].text, std::string("File type not recognised."));
            QVERIFY(!session.window.FileOpen());
            QVERIFY(!QFile::exists(path));
        }
    }

    void FilesOfRelatedToolsAreNotRecognised()
    {
        QTemporaryDir folder;
        for (const auto& [name, version] : {std::pair{"other.qx4", '\1'}, std::pair{"other.qx5", '\4'}}) {
            Session session;
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray("\0\4\0\10\6\11ORVO", 10) + version + QByteArray(200, '\0'));
            file.close();
            session.window.OpenPath(file.fileName());
            QCOMPARE(session.user.messages.size(), std::size_t{1});
            QVERIFY(session.user.Saw("File type not recognised."));
            QVERIFY(!session.window.FileOpen());
        }
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

QTEST_MAIN(shell_test)
#include "shell_test.moc"
