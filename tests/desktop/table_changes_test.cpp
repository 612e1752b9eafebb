// SPDX-License-Identifier: GPL-3.0-or-later
// Changes of the table that are more than a cell: rows, columns, formats, description; and Undo of all of
// them.
#include "TableSessions.h"
#include "data/NumberFormat.h"

#include <QClipboard>

#include <array>
#include <random>

namespace
{
/// A hand that does anything at all in Edit Mode, by keys and by the menu.
struct Restless : Editing {
    explicit Restless(unsigned seed) : dice(seed)
    {
        user.onListPicker = [this](ListPicker& picker) {
            for (ListPicker::Item& item : picker.items)
                item.selected = Below(3) == 0;
            return true;
        };
        user.onNumberFormat = [this](NumberFormatChoice& choice) {
            choice.category = static_cast<NumberCategory>(1 + Below(3));
            choice.decPlaces = Below(16);
            return true;
        };
        user.onFont = [this](CellFont& font) {
            font.size = 8.0 + Below(4);
            return true;
        };
    }
    int Below(int n) { return static_cast<int>(dice() % static_cast<unsigned>(n)); }
    void Step()
    {
        if (Grid().Rows() > 1 && Grid().Cols() > kA) {
            const auto row = [this] { return 1 + Below(std::min(Grid().Rows() - 1, 9)); };
            const auto col = [this] { return kA + Below(Grid().Cols() - kA); };
            Mark(row(), col(), row(), col());
        }
        static constexpr std::array entries{
            "mnuUndo",   "mnuUndo",           "mnuUndo",         "mnuRedo",   "mnuRedo",
            "mnuCut",    "mnuCopy",           "mnuPaste",        "mnuPaste",  "mnuInsertRow",
            "mnuAddRow", "mnuDeleteRow",      "mnuInsertColumn", "mnuFormat", "mnuDeleteColumn",
            "mnuNumber", "mnuFileDescription"};
        static const std::array<QString, 5> copied{"1\n", "2\t3\n4\t-7\n", "5\tx\n", "0.1\t1e39\n", ""};
        const int what = Below(static_cast<int>(entries.size()) + 6);
        if (what < static_cast<int>(entries.size())) {
            user.inputs = {std::to_string(Below(100))};
            Entry(entries[static_cast<std::size_t>(what)])->trigger();
        } else if (what == static_cast<int>(entries.size())) {
            QGuiApplication::clipboard()->setText(copied[static_cast<std::size_t>(Below(5))]);
        } else if (Grid().hasFocus()) {
            Type(QString::number(Below(100000) / 7.0));
            Press(Below(4) == 0 ? Qt::Key_Escape : Below(2) == 0 ? Qt::Key_Tab : Qt::Key_Return);
        }
    }
    std::mt19937 dice;
};
} // namespace

class table_changes_test : public QObject
{
    Q_OBJECT

private slots:
    void EveryKindOfChangeIsTakenBackToTheBitAndBroughtForwardAgain()
    {
        Editing s;
        s.Put(1, kA, "0.1");
        s.Put(2, kB, "3");
        std::vector<TableSheet::State> states{s.window.Sheet().Now()};
        const auto note = [&] { states.push_back(s.window.Sheet().Now()); };
        const int before = s.window.Edit().Steps().index();
        s.Go(1, kA);
        s.Entry("mnuInsertRow")->trigger();
        note();
        s.Go(2, kA);
        s.Entry("mnuDeleteRow")->trigger();
        note();
        s.Entry("mnuAddRow")->trigger();
        note();
        s.user.Selects({"Mean Wt"});
        s.Entry("mnuInsertColumn")->trigger();
        note();
        s.user.Selects({"Effort"});
        s.Entry("mnuDeleteColumn")->trigger();
        note();
        s.user.onNumberFormat = [](NumberFormatChoice& choice) {
            choice = {.category = NumberCategory::Fixed, .decPlaces = 3};
            return true;
        };
        s.Entry("mnuNumber")->trigger();
        note();
        s.user.onFont = [](CellFont& font) {
            font.bold = true;
            return true;
        };
        s.Entry("mnuFormat")->trigger();
        note();
        s.user.inputs = {std::string("Cod")};
        s.Entry("mnuFileDescription")->trigger();
        note();
        QCOMPARE(s.window.Edit().Steps().index(), before + static_cast<int>(states.size()) - 1);
        QCOMPARE(s.Entry("mnuUndo")->text(), QString("&Undo File Description"));
        QVERIFY(s.window.windowTitle().endsWith("Cod"));
        for (auto state = states.rbegin() + 1; state != states.rend(); ++state) {
            s.Entry("mnuUndo")->trigger();
            QVERIFY(s.window.Sheet().Now() == *state);
            QCOMPARE(s.Grid().Rows(), s.window.Sheet().Rows());
            QCOMPARE(s.Grid().Cols(), s.window.Sheet().Cols());
        }
        QVERIFY(s.window.windowTitle().endsWith("Ling"));
        for (auto state = states.begin() + 1; state != states.end(); ++state) {
            s.Entry("mnuRedo")->trigger();
            QVERIFY(s.window.Sheet().Now() == *state);
        }
    }

    void UndoOfARowLeavesTheSelectionWhereItsCellsStillAre()
    {
        Editing s;
        s.Entry("mnuAddRow")->trigger();
        s.Mark(3, kA, 5, kB + 1);
        s.Entry("mnuUndo")->trigger();
        QCOMPARE(s.Grid().Selected(), (GridSelection{3, kA, 4, kB + 1}));
        s.Mark(2, kB + 1, 1, kA);
        s.Entry("mnuRedo")->trigger();
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kB + 1, 1, kA}));
    }

    void UndoAndRedoMixedWithEverythingEndWhereTheyBegan()
    {
        for (const unsigned seed : {1U, 2U}) {
            Restless s(seed);
            const TableSheet::State first = s.window.Sheet().Now();
            for (int step = 0; step < 250; ++step) {
                s.Step();
                QVERIFY(!s.Box()->isVisible());
                QCOMPARE(s.Grid().Rows(), s.window.Sheet().Rows());
                QCOMPARE(s.Grid().Cols(), s.window.Sheet().Cols());
                QCOMPARE(s.Grid().isVisible(), s.Grid().Rows() > 1);
                QVERIFY(!s.user.Saw("Subscript"));
            }
            const TableSheet::State last = s.window.Sheet().Now();
            const int steps = s.window.Edit().Steps().index();
            QVERIFY(steps > 0);
            while (s.Entry("mnuUndo")->isEnabled())
                s.Entry("mnuUndo")->trigger();
            QVERIFY(s.window.Sheet().Now() == first);
            while (s.window.Edit().Steps().index() < steps)
                s.Entry("mnuRedo")->trigger();
            QVERIFY(s.window.Sheet().Now() == last);
        }
    }

    void RowsAreInsertedAboveTheSelectionOnlyOnYes()
    {
        Editing s;
        s.Put(2, kA, "5");
        s.Mark(2, kA, 3, kA);
        s.user.messages.clear();
        for (const Answer no : {Answer::No, Answer::Cancel}) {
            s.user.answers = {no};
            s.Entry("mnuInsertRow")->trigger();
            QCOMPARE(s.window.objData().TimeInts(), 4);
        }
        QCOMPARE(QString::fromStdString(s.user.messages.back().text),
                 QString("Are you sure you wish to insert Time Periods above the selected area ? "));
        QCOMPARE(s.user.messages.back().buttons, Buttons::YesNoCancel);
        QCOMPARE(s.user.messages.back().icon, Icon::Question);
        QCOMPARE(s.Grid().Selected(), (GridSelection{2, kA, 3, kB + 1})); // whole rows, to show what is meant
        s.Entry("mnuInsertRow")->trigger();
        QCOMPARE(s.window.objData().TimeInts(), 6);
        QCOMPARE(s.window.objData().MaxTimeP(), 2006);
        QCOMPARE(s.Value(4, kA), 5.0F);
        QCOMPARE(s.Grid().Rows(), 7);
    }

    void DeletingAllRowsLeavesATableWithoutRowsThatCanBeFilledAgain()
    {
        Editing s;
        s.Press(Qt::Key_A, Qt::ControlModifier);
        s.Entry("mnuDeleteRow")->trigger();
        QVERIFY(s.user.Saw("Are you sure you wish to delete the selected Time Periods?"));
        QCOMPARE(s.window.objData().TimeInts(), 0);
        QCOMPARE(s.window.objData().MaxTimeP(), 2000);
        QVERIFY(s.Panel("lblHint").contains("Add Row(s)"));
        QVERIFY(s.window.findChild<QLabel*>("lblHint")->isVisible());
        s.user.messages.clear();
        s.Entry("mnuDeleteRow")->trigger(); // nothing to delete
        QGuiApplication::clipboard()->setText("1\n");
        for (const char* name : {"mnuNumber", "mnuFormat", "mnuCopy", "mnuCut", "mnuPaste"})
            s.Entry(name)->trigger();
        QCOMPARE(s.user.messages.size(), std::size_t{1});
        QVERIFY(s.user.Saw("The table has no cells to paste into."));
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("1\n"));
        s.Entry("mnuEditMode")->trigger();
        s.Entry("mnuEditMode")->trigger();
        s.Entry("mnuAddRow")->trigger();
        QCOMPARE(s.window.objData().TimeInts(), 1);
        QVERIFY(s.Grid().isVisible());
        s.Activate();
        s.Put(1, kA, "5");
        QCOMPARE(s.Value(1, kA), 5.0F);
    }

    void UndoShowsATableAgainOfWhichAllRowsWereDeletedAndTheKeysGoThere()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.Press(Qt::Key_A, Qt::ControlModifier);
        s.Entry("mnuDeleteRow")->trigger();
        s.Entry("mnuUndo")->trigger();
        QVERIFY(s.Grid().isVisible());
        QCOMPARE(s.Value(1, kA), 5.0F);
        QVERIFY(s.Grid().hasFocus());
        s.Type("6");
        s.Press(Qt::Key_Return);
        QCOMPARE(s.Value(1, kA), 6.0F);
        s.Entry("mnuUndo")->trigger();
        s.Entry("mnuUndo")->trigger();
        QCOMPARE(s.Value(1, kA), -1.0F); // the step before the deletion
        s.Entry("mnuRedo")->trigger();
        s.Press(Qt::Key_A, Qt::ControlModifier);
        s.Entry("mnuDeleteRow")->trigger();
        s.Entry("mnuUndo")->trigger();
        s.Entry("mnuRedo")->trigger();
        QVERIFY(s.window.findChild<QLabel*>("lblHint")->isVisible());
    }

    void The201stRowIsRefusedWithASentence()
    {
        Editing s(199, {columns::Effort});
        s.user.messages.clear();
        s.Mark(1, kA, 2, kA);
        s.Entry("mnuAddRow")->trigger();
        QVERIFY(s.user.Saw("The table has room for 200 time periods."));
        s.Entry("mnuInsertRow")->trigger();
        QCOMPARE(s.user.messages.size(), std::size_t{2}); // refused before it is asked
        QCOMPARE(s.window.objData().TimeInts(), 199);
        s.Go(1, kA);
        s.Entry("mnuAddRow")->trigger();
        QCOMPARE(s.window.objData().TimeInts(), 200);
    }

    void ColumnsAreOfferedPickedAndAskedFor()
    {
        Editing s;
        ListPicker offered;
        s.user.onListPicker = [&](ListPicker& picker) {
            offered = picker;
            return false;
        };
        s.Entry("mnuInsertColumn")->trigger();
        QCOMPARE(QString::fromStdString(offered.caption), QString("Inserting Columns"));
        QCOMPARE(QString::fromStdString(offered.prompt), QString("Select Columns to be inserted;"));
        QCOMPARE(QString::fromStdString(offered.leftCaption), QString("UnSelected"));
        QCOMPARE(QString::fromStdString(offered.rightCaption), QString("Selected"));
        QCOMPARE(offered.items.size(), std::size_t{6});
        QCOMPARE(QString::fromStdString(offered.items.front().text), QString("Tot. Catch Wt"));
        s.Entry("mnuDeleteColumn")->trigger();
        QCOMPARE(QString::fromStdString(offered.caption), QString("Deleting Columns"));
        QCOMPARE(QString::fromStdString(offered.prompt), QString("Select Columns to be deleted;"));
        QCOMPARE(offered.items.size(), std::size_t{3});
        QVERIFY(s.user.messages.empty()); // Cancel stops the command

        s.user.Selects({});
        s.Entry("mnuInsertColumn")->trigger();
        QVERIFY(s.user.messages.empty()); // so does choosing nothing

        s.user.Selects({"Mean Wt", "Recruit. Index"});
        s.user.answers = {Answer::No};
        s.Entry("mnuInsertColumn")->trigger();
        QVERIFY(s.user.Saw("OK to add Columns?"));
        QCOMPARE(s.user.messages.back().icon, Icon::Information);
        QVERIFY(!s.window.objData().ColPresent(columns::MeanWt));
        s.Entry("mnuInsertColumn")->trigger();
        QVERIFY(s.window.objData().ColPresent(columns::MeanWt));
        QVERIFY(s.window.objData().ColPresent(columns::RecruitIndex));
        QCOMPARE(s.Shown(1, s.window.Sheet().GridColOf(columns::MeanWt)), QString("-1"));
    }

    void AllColumnsCannotBeErased()
    {
        Editing s;
        s.Put(1, kA, "5");
        s.user.Selects({"Tot. Catch Nums", "Effort", "Catch Nums"});
        s.Entry("mnuDeleteColumn")->trigger();
        QVERIFY(s.user.Saw("OK to Delete Columns?"));
        QVERIFY(s.user.Saw("Cannot Erase all Columns, please try again"));
        QCOMPARE(s.Value(1, kA), 5.0F);
        QCOMPARE(s.Grid().Cols(), 5);
    }

    void TheFileDescriptionIsAskedForWithThePresentOneAndShowsInTheCaption()
    {
        Working s;
        s.user.inputs = {std::string("Hoki")};
        s.Entry("mnuFileDescription")->trigger();
        QVERIFY(s.user.asked.back() == "input box: File Description ; ");
        QCOMPARE(QString::fromStdString(s.user.suggested.back()), QString("Constant recruitment, 25 years"));
        QVERIFY(s.window.windowTitle().endsWith("Hoki"));
        s.user.inputs = {std::string(39, 'n') + "- and more than a project keeps"};
        s.Entry("mnuFileDescription")->trigger();
        QVERIFY(s.user.Saw("A project keeps 40 characters"));
        QVERIFY(s.window.windowTitle().endsWith(QString(39, 'n') + "-"));
        s.user.inputs = {std::string("Hoki")};
        s.Entry("mnuFileDescription")->trigger();
        s.user.inputs = {std::string()}; // an empty answer changes nothing
        s.Entry("mnuFileDescription")->trigger();
        QVERIFY(s.window.windowTitle().endsWith("Hoki"));
    }

    void ANumberFormatAlsoServesOutsideEditModeAndIsNoStepOfUndo()
    {
        Working s;
        s.Go(1, kB);
        s.user.onNumberFormat = [](NumberFormatChoice& choice) {
            choice = {.category = NumberCategory::Scientific, .decPlaces = 2};
            return true;
        };
        s.Entry("mnuNumber")->trigger();
        QCOMPARE(s.Shown(1, kB), QString("1.09E+02"));
        QVERIFY(!s.Entry("mnuUndo")->isEnabled());
        QCOMPARE(s.Grid().Selected().rowSel, 25); // the whole column
    }

    void AFontShowsInTheCellsAndMakesRoomForItself()
    {
        Working s;
        const int row = s.Grid().rowHeight(0);
        const int width = s.Grid().columnWidth(kB);
        s.Go(1, kB);
        s.user.onFont = [](CellFont& font) {
            font = {.name = "Sans", .size = 30.0, .bold = true, .italic = false};
            return true;
        };
        s.Entry("mnuFormat")->trigger();
        QCOMPARE(s.Grid().model()->index(0, kB).data(Qt::FontRole).value<QFont>().pointSizeF(), 30.0);
        QVERIFY(s.Grid().rowHeight(0) > row);
        QVERIFY(s.Grid().columnWidth(kB) > width);
        QVERIFY(!s.Grid().model()->index(0, kA).data(Qt::FontRole).value<QFont>().bold());
    }

    void ATableWithoutDataColumnsHasNoCellAndItsKeysDoNothing()
    {
        Session s;
        s.user.onAsciiWizard = [](AsciiWizard& wizard) { // only the years are taken
            wizard.ChooseTiming(1);
            wizard.Next();
            wizard.Finish();
            return true;
        };
        s.Open();
        s.Activate();
        QCOMPARE(s.Grid().Cols(), 2);
        s.Press(Qt::Key_Space, Qt::ControlModifier);
        s.Entry("mnuCopy")->trigger();
        s.Entry("mnuEditMode")->trigger();
        QGuiApplication::clipboard()->setText("1\t2\n");
        s.user.messages.clear();
        for (const Qt::Key key : {Qt::Key_5, Qt::Key_Delete, Qt::Key_Return, Qt::Key_Down, Qt::Key_End})
            s.Press(key);
        s.Press(Qt::Key_A, Qt::ControlModifier);
        for (const char* name : {"mnuCut", "mnuNumber", "mnuFormat"})
            s.Entry(name)->trigger();
        QVERIFY(s.user.messages.empty());
        s.Entry("mnuPaste")->trigger();
        QVERIFY(s.user.Saw("The table has no cells to paste into."));
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("1\t2\n"));
        s.user.Selects({"Effort"});
        s.Entry("mnuInsertColumn")->trigger();
        QCOMPARE(s.Grid().Selected(), GridSelection::At(1, kA));
    }
};

QTEST_MAIN(table_changes_test)
#include "table_changes_test.moc"
