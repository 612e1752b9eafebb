// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ScenarioSheet.h"

#include "support/Scenarios.h"
#include "support/SheetBench.h"

#include <gtest/gtest.h>

namespace
{
constexpr int kTitle = ScenarioSheet::kTitleRow;
constexpr int kUnit = ScenarioSheet::kUnitRow;
constexpr int kFirst = ScenarioSheet::kFirstDataRow;

/// The grid of the editor without a toolkit.
class EditorGrid : public PlainGrid
{
public:
    ScenarioSheet* scenarios = nullptr;

    int Rows() const override { return scenarios->Rows(); }
    int Cols() const override { return scenarios->Cols(); }
    int FixedRows() const override { return 0; }
    int FixedCols() const override { return ScenarioSheet::kFirstCol; }
    std::string TextMatrix(int row, int col) const override { return scenarios->Text(row, col); }
    void TextMatrix(int row, int col, const std::string& text) override
    {
        scenarios->ShowText(row, col, text);
    }
};

/// The editor over a data set of 20 periods from 1980 on, and the hands that work in it.
struct Editor : Bench, ScenarioSheet::IWindow {
    explicit Editor(int periods = 20) : data(run)
    {
        data.MinTimeP(1980);
        data.MaxTimeP(1979 + periods);
        data.TimeInts(periods);
        data.NAPoints(periods);
        data.MarkSaved();
        grid.scenarios = &sheet;
        grid.control = box.control = &control;
        control.Create(sheet);
        Load();
    }
    void Load()
    {
        sheet.Load(&data);
        Go(kFirst, 1);
    }

    IFlexGrid& FlexGrid() override { return grid; }
    ITextBox& txtBox() override { return box; }
    ActiveControl Active() const override
    {
        return box.visible ? ActiveControl::TextBox : ActiveControl::Grid;
    }
    void GridPopUpMenu() override {}
    GridSelection Edited() const override { return GridSelection::At(control.OldRow(), control.OldCol()); }
    void Changed() override { ++changes; }
    void Note(const std::string& text) override { note = text; }

    void Go(int row, int col) { grid.selected = GridSelection::At(row, col); }
    /// Types over the cell and presses Enter.
    void Enter(int row, int col, const std::string& text)
    {
        Go(row, col);
        control.GridEdit(grid_keys::kEnter);
        box.SelectAll();
        box.ReplaceSelection(text);
        control.EditKeyCode(grid_keys::kEnter, 0);
    }
    void Paste(int row, int col, const std::string& text)
    {
        Go(row, col);
        clipboard.Put(text);
        control.PasteClick();
    }
    std::string Message() const { return user.messages.empty() ? std::string() : user.messages.back().text; }
    std::string Shown(int row, int col) const { return sheet.Text(row, col); }
    std::int32_t Kept(const std::string& title, int period) const
    {
        return data.ProjScenario(title)->Vector(data.NAPoints() + period);
    }

    clsVeltData data;
    EditorGrid grid;
    PlainBox box;
    PlainClipboard clipboard;
    ScenarioSheet sheet{user, *this};
    clsDataGrid control{user, clipboard};
    int changes = 0;
    std::string note;
};
} // namespace

TEST(ScenarioSheet, ANewDataSetOpensWithOneScenarioOfOnePeriod)
{
    Editor editor;
    EXPECT_EQ(editor.sheet.Scenarios(), 1);
    EXPECT_EQ(editor.sheet.Points(), 1);
    EXPECT_EQ(editor.Shown(kTitle, 0), "Time");
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    EXPECT_EQ(editor.Shown(kUnit, 1), "Effort");
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
    EXPECT_EQ(editor.Shown(kFirst, 0), "2000"); // straight after 1980 to 1999
    EXPECT_EQ(editor.Shown(kFirst + 1, 0), "");
    EXPECT_EQ(editor.data.NumPts(), 1);
    EXPECT_EQ(editor.data.NumProjScenarios(), 1);
    EXPECT_FALSE(editor.data.IsDirty()); // nobody has done anything yet
}

TEST(ScenarioSheet, ShowsTheScenariosOfTheDataSetInTheirOrder)
{
    Editor editor;
    editor.data.ProjScens() = {};
    AddScenario(editor.data, "B", vec_type::kTotCatchNums, {5, 6});
    AddScenario(editor.data, "A", vec_type::kTotCatchWt, {7, 8});
    editor.Load();
    EXPECT_EQ(editor.Shown(kTitle, 1), "B");
    EXPECT_EQ(editor.Shown(kUnit, 1), "Total Catch Numbers");
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "6.000");
    EXPECT_EQ(editor.Shown(kTitle, 2), "A");
    EXPECT_EQ(editor.Shown(kUnit, 2), "Total Catch Weight");
    EXPECT_EQ(editor.Shown(kFirst + 1, 0), "2001");
}

TEST(ScenarioSheet, TheNextNewScenarioTakesTheSmallestFreeNumber)
{
    Editor editor;
    editor.sheet.AddScenario();
    EXPECT_EQ(editor.Shown(kTitle, 2), "Scenario2");
    editor.user.answers = {Answer::Yes};
    editor.sheet.DeleteScenario(1);
    EXPECT_EQ(editor.user.messages.back().text, "Are you sure you want to delete Scenario?Scenario1 ? ");
    EXPECT_EQ(editor.user.messages.back().buttons, Buttons::YesNoCancel);
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario2");
    editor.sheet.AddScenario();
    EXPECT_EQ(editor.Shown(kTitle, 2), "Scenario1");
}

// An element that was never set stands as another kind of number in the project file.
TEST(ScenarioSheet, TheZerosOfANewScenarioAreSetLikeTypedOnes)
{
    Editor editor;
    editor.sheet.AddRow();
    editor.sheet.AddScenario();
    const clsProjScenario& added = *editor.data.ProjScenario("Scenario2");
    EXPECT_TRUE(added.IsShort(20));
    EXPECT_FALSE(added.IsShort(21) || added.IsShort(22));
    EXPECT_TRUE(added.IsShort(23));
}

TEST(ScenarioSheet, ADeletionThatIsNotAnsweredWithYesChangesNothing)
{
    for (const Answer answer : {Answer::No, Answer::Cancel}) {
        Editor editor;
        editor.user.answers = {answer};
        editor.sheet.DeleteScenario(1);
        EXPECT_EQ(editor.data.NumProjScenarios(), 1);
        EXPECT_EQ(editor.changes, 0);
    }
}

TEST(ScenarioSheet, DeletingTheLastScenarioLeavesAFreshOneOfOnePeriod)
{
    Editor editor;
    editor.sheet.AddRow();
    editor.Enter(kFirst, 1, "5");
    editor.user.answers = {Answer::Yes};
    editor.sheet.DeleteScenario(1);
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
    EXPECT_EQ(editor.sheet.Points(), 1);
}

TEST(ScenarioSheet, ATitleMayBeWhatItIsButNotThatOfAnotherNorBlank)
{
    Editor editor;
    editor.sheet.AddScenario();
    editor.Enter(kTitle, 1, "Scenario1");
    EXPECT_TRUE(editor.user.messages.empty());
    for (const std::string refused : {"Scenario2", "   ", ""}) {
        editor.Enter(kTitle, 1, refused);
        EXPECT_EQ(editor.Message(), "Scenario names cannot be empty and must be unique") << refused;
        EXPECT_TRUE(editor.box.visible);
        editor.control.EditKeyCode(grid_keys::kEscape, 0);
        EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    }
}

TEST(ScenarioSheet, ARenamedScenarioKeepsItsColumnAndStandsLastAtTheNextLoad)
{
    Editor editor;
    editor.sheet.AddScenario();
    editor.Enter(kFirst, 1, "5");
    editor.Enter(kTitle, 1, "  Half of 2020 ");
    EXPECT_EQ(editor.Shown(kTitle, 1), "Half of 2020");
    EXPECT_EQ(editor.Kept("Half of 2020", 1), 5);
    EXPECT_EQ(editor.data.ProjScenario("Scenario1"), nullptr);
    EXPECT_EQ(editor.data.ProjScenario(2)->Title(), "Half of 2020");
    editor.Load();
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario2");
    EXPECT_EQ(editor.Shown(kTitle, 2), "Half of 2020");
}

TEST(ScenarioSheet, ATitleThatIsANumberStaysAsItWasTyped)
{
    Editor editor;
    editor.Enter(kTitle, 1, "2020");
    EXPECT_EQ(editor.Shown(kTitle, 1), "2020");
}

TEST(ScenarioSheet, ALetterBeginsATitleAtOnceAndBeepsOnAValue)
{
    Editor editor;
    editor.Go(kTitle, 1);
    editor.control.GridEdit('H');
    EXPECT_EQ(editor.box.text, "H");
    EXPECT_EQ(editor.grid.beeps, 0);
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Go(kFirst, 1);
    editor.control.GridEdit('H');
    EXPECT_EQ(editor.box.text, "0.000");
    EXPECT_EQ(editor.grid.beeps, 1);
}

TEST(ScenarioSheet, ATitleIsCutTo30CharactersAndThatIsSaid)
{
    Editor editor;
    editor.Enter(kTitle, 1, "An effort as it was before the war");
    EXPECT_EQ(editor.Shown(kTitle, 1), "An effort as it was before the");
    EXPECT_EQ(editor.note, "A title keeps 30 characters.");
    editor.sheet.AddScenario();
    editor.Enter(kTitle, 2, "An effort as it was before the peace");
    EXPECT_EQ(editor.Message(), "Scenario names cannot be empty and must be unique");
}

TEST(ScenarioSheet, ATitleThatNoProjectCanKeepIsRefused)
{
    Editor editor;
    editor.Enter(kTitle, 1, "\xE6\xBC\x81");
    EXPECT_TRUE(editor.Message().starts_with("A project can keep only the letters")) << editor.Message();
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
}

TEST(ScenarioSheet, AValueIsShownAsItWasTypedUntilTheNextLoadShowsItAsItIsKept)
{
    Editor editor;
    editor.Enter(kFirst, 1, "12.75");
    EXPECT_EQ(editor.Shown(kFirst, 1), "12.750");
    EXPECT_EQ(editor.Kept("Scenario1", 1), 13);
    EXPECT_EQ(editor.note, "12.75 is kept, and projected, as 13: scenarios hold whole numbers.");
    editor.Load();
    EXPECT_EQ(editor.Shown(kFirst, 1), "13.000");
}

TEST(ScenarioSheet, ATextIsNoValueAndAnEmptyCellIs0)
{
    Editor editor;
    editor.Enter(kFirst, 1, "much");
    EXPECT_EQ(editor.Message(), "Data must be numeric.");
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Enter(kFirst, 1, "3,5");
    EXPECT_EQ(editor.Message(), "Data must be numeric.\n\nThe decimal sign is a point.");
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Enter(kFirst, 1, "1e10");
    EXPECT_TRUE(editor.Message().starts_with("Data must be numeric.\n\nThe value is too large"))
        << editor.Message();
    editor.control.EditKeyCode(grid_keys::kEscape, 0);
    editor.Enter(kFirst, 1, "7");
    editor.Enter(kFirst, 1, "");
    EXPECT_EQ(editor.Kept("Scenario1", 1), 0);
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
}

TEST(ScenarioSheet, RowsComeAtTheEndAndGoFromTheEnd)
{
    Editor editor;
    editor.sheet.AddRow();
    EXPECT_EQ(editor.data.NumPts(), 2);
    EXPECT_EQ(editor.Shown(kFirst + 1, 0), "2001");
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "0.000");
    editor.Go(kFirst, 1);
    editor.sheet.DeleteRow();
    EXPECT_EQ(editor.data.NumPts(), 1);
    EXPECT_EQ(editor.Shown(kFirst, 1), "0.000");
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "");
    editor.sheet.DeleteRow();
    EXPECT_EQ(editor.Message(), "Cannot remove all Points");
    EXPECT_EQ(editor.user.messages.back().icon, Icon::Exclamation);
    EXPECT_EQ(editor.data.NumPts(), 1);
}

TEST(ScenarioSheet, ARowThatComesBackHoldsTheZeroThatItShows)
{
    Editor editor;
    editor.sheet.AddRow();
    editor.Enter(kFirst + 1, 1, "50");
    editor.sheet.DeleteRow();
    EXPECT_EQ(editor.Kept("Scenario1", 2), 50); // behind the end it stays
    editor.sheet.AddRow();
    EXPECT_EQ(editor.Shown(kFirst + 1, 1), "0.000");
    EXPECT_EQ(editor.Kept("Scenario1", 2), 0);
}

TEST(ScenarioSheet, ThereAreNoMoreThan25Scenarios)
{
    Editor editor;
    for (int i = 2; i <= 25; ++i)
        editor.sheet.AddScenario();
    EXPECT_TRUE(editor.user.messages.empty());
    editor.sheet.AddScenario();
    EXPECT_EQ(editor.Message(), "There can be 25 scenarios. Delete one before you add another.");
    EXPECT_EQ(editor.data.NumProjScenarios(), 25);
    EXPECT_EQ(editor.sheet.Cols(), 26);
}

TEST(ScenarioSheet, DataAndFutureTogetherAreNoMoreThan199Periods)
{
    Editor editor(197);
    editor.sheet.AddRow();
    EXPECT_EQ(editor.sheet.Points(), 2);
    editor.sheet.AddRow();
    EXPECT_EQ(editor.Message(),
              "With 197 periods of data there can be 2 future periods: together they can be 199.");
    EXPECT_EQ(editor.data.NumPts(), 2);
    EXPECT_EQ(editor.sheet.Rows(), kFirst + 2);
}

TEST(ScenarioSheet, ADataSetWithoutRoomForAFutureShowsAScenarioWithoutRows)
{
    Editor editor(199);
    EXPECT_EQ(editor.sheet.Points(), 0);
    EXPECT_EQ(editor.sheet.Scenarios(), 1);
    editor.sheet.AddRow();
    EXPECT_EQ(editor.Message(),
              "With 199 periods of data there can be 0 future periods: together they can be 199.");
}

TEST(ScenarioSheet, MoreScenariosAndPeriodsOfAProjectThanThereMayBeAreShownAllTheSame)
{
    Editor editor;
    editor.data.ProjScens() = {};
    for (int i = 1; i <= 30; ++i)
        AddScenario(editor.data, "S" + std::to_string(i), vec_type::kEffort, {1});
    editor.data.NumPts(5000);
    editor.Load();
    EXPECT_EQ(editor.sheet.Scenarios(), 30);
    EXPECT_EQ(editor.sheet.Cols(), 31);
    EXPECT_EQ(editor.sheet.Points(), 181); // up to the 201st element
    EXPECT_EQ(editor.Shown(kFirst, 30), "1.000");
    editor.data.NumPts(-4);
    editor.Load();
    EXPECT_EQ(editor.sheet.Points(), 0);
}

// A former project may cover more years than a table has rows.
TEST(ScenarioSheet, ADataSetOfMorePeriodsThanThereAreRowsHasNoFutureOnes)
{
    Editor editor;
    AddScenario(editor.data, "A", vec_type::kEffort, {1, 2, 3});
    editor.data.NAPoints(300);
    editor.Load();
    EXPECT_EQ(editor.sheet.Points(), 0);
    EXPECT_EQ(editor.sheet.Rows(), kFirst);
}

TEST(ScenarioSheet, TheLargestTimesAreLabelledAsTheyAre)
{
    Editor editor;
    editor.data.MinTimeP(2147483628); // the 20th period is the last that 32 bits hold
    EXPECT_EQ(editor.Shown(kFirst, 0), "2147483648");
}

TEST(ScenarioSheet, EveryCommittedChangeMarksTheDataSetButAChangeOfThePeriodsAlone)
{
    const auto marks = [](auto change) {
        Editor editor;
        editor.sheet.AddScenario();
        editor.data.MarkSaved();
        change(editor);
        return editor.data.IsDirty();
    };
    EXPECT_TRUE(marks([](Editor& e) { e.Enter(kFirst, 1, "5"); }));
    EXPECT_TRUE(marks([](Editor& e) { e.Enter(kTitle, 1, "Other"); }));
    EXPECT_TRUE(marks([](Editor& e) { e.sheet.Unit(1, vec_type::kTotCatchWt); }));
    EXPECT_TRUE(marks([](Editor& e) { e.sheet.AddScenario(); }));
    EXPECT_TRUE(marks([](Editor& e) {
        e.user.answers = {Answer::Yes};
        e.sheet.DeleteScenario(1);
    }));
    EXPECT_FALSE(marks([](Editor& e) { e.sheet.AddRow(); }));
    EXPECT_FALSE(marks([](Editor& e) {
        e.sheet.AddRow();
        e.sheet.DeleteRow();
    }));
    EXPECT_FALSE(marks([](Editor& e) { e.Enter(kTitle, 1, "Scenario1"); }));
    EXPECT_FALSE(marks([](Editor& e) { e.sheet.Unit(1, vec_type::kEffort); }));
    EXPECT_FALSE(marks([](Editor& e) { e.Load(); }));
}

TEST(ScenarioSheet, TheUnitOfAScenarioIsItsOwn)
{
    Editor editor;
    editor.sheet.AddScenario();
    editor.sheet.Unit(2, vec_type::kTotCatchNums);
    EXPECT_EQ(editor.Shown(kUnit, 1), "Effort");
    EXPECT_EQ(editor.Shown(kUnit, 2), "Total Catch Numbers");
    EXPECT_EQ(editor.data.ProjScenario("Scenario2")->VecType(), vec_type::kTotCatchNums);
    editor.sheet.Unit(9, vec_type::kTotCatchNums); // no scenario there
    EXPECT_EQ(editor.data.NumProjScenarios(), 2);
}

TEST(ScenarioSheet, APastedBlockAddsTheRowsAndScenariosThatItNeeds)
{
    Editor editor;
    editor.Paste(kFirst, 1, "1\t10\r\n2\t20\r\n3\t30\r\n");
    EXPECT_TRUE(editor.user.messages.empty()) << editor.Message();
    EXPECT_EQ(editor.sheet.Scenarios(), 2);
    EXPECT_EQ(editor.sheet.Points(), 3);
    EXPECT_EQ(editor.Kept("Scenario1", 3), 3);
    EXPECT_EQ(editor.Kept("Scenario2", 2), 20);
    EXPECT_EQ(editor.Shown(kFirst + 2, 2), "30.000");
}

TEST(ScenarioSheet, APastedTitleNeedsAScenarioAndFollowsTheRulesOfTitles)
{
    Editor editor;
    std::string foreign = "\xE6\xBC\x81"; // no project can keep it
    EXPECT_FALSE(editor.sheet.EditData(1, kTitle, foreign));
    EXPECT_EQ(editor.Shown(kTitle, 1), "Scenario1");
    for (const int behind : {2, 25}) {
        std::string title = "Second";
        EXPECT_FALSE(editor.sheet.EditData(behind, kTitle, title)) << behind;
    }
    EXPECT_EQ(editor.data.NumProjScenarios(), 1);
    EXPECT_EQ(editor.data.ProjScenario("Second"), nullptr);
}

TEST(ScenarioSheet, NothingIsTypedInTheRowOfUnits)
{
    Editor editor;
    std::string value = "5";
    EXPECT_FALSE(editor.sheet.EditData(1, kUnit, value));
    EXPECT_EQ(editor.sheet.Points(), 1);
    EXPECT_EQ(editor.Shown(kUnit, 1), "Effort");
}

// A box that was opened over a unit and left must not hold the user in it: "Effort" is no number.
TEST(ScenarioSheet, ABoxOverAUnitIsLeftWithoutAWord)
{
    Editor editor;
    editor.Go(kUnit, 1);
    editor.box.visible = true;
    editor.control.TextGotFocus();
    editor.box.Text("Effort");
    EXPECT_TRUE(editor.sheet.IsValidData());
    EXPECT_TRUE(editor.user.messages.empty());
}

TEST(ScenarioSheet, TheNoteOfAnEntryGoesWithTheNext)
{
    Editor editor;
    editor.Enter(kFirst, 1, "12.75");
    EXPECT_NE(editor.note, "");
    editor.Enter(kFirst, 1, "13");
    EXPECT_EQ(editor.note, "");
}

TEST(ScenarioSheet, PastingTextSaysThatItIsNoNumber)
{
    Editor editor;
    editor.Paste(kFirst, 1, "1\r\nmany\r\n");
    EXPECT_TRUE(editor.Message().starts_with("Cannot paste non numeric data")) << editor.Message();
    EXPECT_EQ(editor.Kept("Scenario1", 1), 1);
    EXPECT_EQ(editor.sheet.Points(), 1);
}

TEST(ScenarioSheet, ABlockForMorePeriodsThanThereMayBeIsAskedAbout)
{
    Editor editor(198);
    editor.user.answers = {Answer::No};
    editor.Paste(kFirst, 1, "1\r\n2\r\n");
    EXPECT_TRUE(editor.Message().starts_with("The block is larger than the table")) << editor.Message();
    EXPECT_EQ(editor.Kept("Scenario1", 1), 0);
}

TEST(ScenarioSheet, ACopiedBlockHasTheTextsAndTheExactValues)
{
    Editor editor;
    editor.Enter(kFirst, 1, "12.75");
    editor.Go(kFirst, 1);
    editor.control.CopyClick();
    EXPECT_EQ(editor.clipboard.text, "12.750\r\n");
    EXPECT_EQ(editor.clipboard.exact, "13\r\n");
}

TEST(ScenarioSheet, ValuesStayWithTheirPeriodsWhenTheDataGrowLonger)
{
    Editor editor;
    editor.Paste(kFirst, 1, "1\r\n2\r\n3\r\n");
    EXPECT_FALSE(editor.sheet.IsOutOfStep());
    AddScenario(editor.data, "From elsewhere", vec_type::kEffort, {1, 2, 3});
    EXPECT_TRUE(editor.sheet.IsOutOfStep());
    editor.Load();
    EXPECT_FALSE(editor.sheet.IsOutOfStep());
    editor.data.NAPoints(21);
    EXPECT_TRUE(editor.sheet.IsOutOfStep());
    editor.Load();
    EXPECT_EQ(editor.Shown(kFirst, 0), "2001");
    EXPECT_EQ(editor.Shown(kFirst, 1), "2.000");
}
