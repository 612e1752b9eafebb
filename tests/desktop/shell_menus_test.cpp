// SPDX-License-Identifier: GPL-3.0-or-later
// The menus of the main window: their words, when each entry can be given, Close and Exit, and commands that
// fail.
#include "base/VeltError.h"
#include "desktop/Session.h"
#include "shell/MainMenu.h"
#include "shell/MenuState.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTableView>
#include <QtTest>

#include <functional>
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

class shell_menus_test : public QObject
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

    void TheNumberPanelShowsTheCurrentCellInFull()
    {
        Session session;
        session.Open();
        QCOMPARE(session.Panel("Number"), QString("9172.47")); // total catch of 1970
        auto* grid = session.window.findChild<QTableView*>("grdData");
        grid->setCurrentIndex(grid->model()->index(0, 3));
        QCOMPARE(session.Panel("Number"), QString("109.3"));
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
};

QTEST_MAIN(shell_menus_test)
#include "shell_menus_test.moc"
