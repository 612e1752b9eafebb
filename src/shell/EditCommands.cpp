// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/EditCommands.h"

#include "base/StringTable.h"
#include "base/Text.h"
#include "data/GridTitle.h"
#include "data/StructuralEditing.h"
#include "shell/GraphWindows.h"
#include "views/DataGridView.h"
#include "views/GridWidget.h"

#include <QUndoCommand>
#include <algorithm>
#include <utility>

namespace
{
constexpr int kMostSteps = 1000; // of some 15 KB each
constexpr int kDescriptionPrompt = 50;
constexpr int kDeletePrompt = 54;
constexpr int kDeleteTitle = 55;
constexpr int kInsertPrompt = 56;
constexpr int kInsertTitle = 57;
constexpr int kSelected = 1884;
constexpr int kUnSelected = 1885;
constexpr int kEditingClearsFit = 1904;
constexpr int kAddColumns = 1905;
constexpr int kNotInEditMode = 1928;
constexpr int kCannotEraseAll = 1931;
constexpr int kDeleteColumns = 1932;
constexpr int kDeleteRows = 1943;
constexpr int kInsertRows = 1944;

/// One change of the table, with the whole of it before and after: restoring is exact whatever the change
/// was.
class TableChange : public QUndoCommand
{
public:
    TableChange(EditCommands& owner, const std::string& what, TableSheet::State before,
                TableSheet::State after)
        : QUndoCommand(QString::fromStdString(what)), m_owner(owner), m_before(std::move(before)),
          m_after(std::move(after))
    {
    }
    void undo() override { m_owner.BringBack(m_before); }
    void redo() override
    {
        if (std::exchange(m_done, true)) // the first time it has just been done
            m_owner.BringBack(m_after);
    }

private:
    EditCommands& m_owner;
    TableSheet::State m_before;
    TableSheet::State m_after;
    bool m_done = false;
};
} // namespace

EditCommands::EditCommands(Around around)
    : m_around(std::move(around)), m_sheet(TheRun().user, *this), m_control(TheRun().user, m_clipboard)
{
    m_control.Create(m_sheet);
    m_around.grid.Grid().Attach(&m_control);
    m_steps.setUndoLimit(kMostSteps);
}

EditCommands::~EditCommands()
{
    m_around.grid.Grid().Attach(nullptr);
    m_around.grid.Show(nullptr);
}

IFlexGrid& EditCommands::FlexGrid()
{
    return m_around.grid.Grid();
}

ITextBox& EditCommands::txtBox()
{
    return m_around.grid.Grid().Box();
}

/// The table is all that the main window has to type into.
ActiveControl EditCommands::Active() const
{
    const CellBox& box = m_around.grid.Grid().Box();
    return box.isVisible() ? ActiveControl::TextBox : ActiveControl::Grid;
}

void EditCommands::LetGo()
{
    m_steps.clear();
    m_around.grid.Show(nullptr);
    m_sheet.Take(nullptr);
    m_editMode = false;
    m_around.grid.EditMode(false);
}

void EditCommands::TakeDataSet()
{
    m_sheet.Take(&Data());
}

bool EditCommands::Asks(int textId, Icon icon, Buttons buttons) const
{
    return TheRun().reporter.Show({.text = LoadResString(textId), .icon = icon, .buttons = buttons}) ==
           Answer::Yes;
}

void EditCommands::SwitchEditMode()
{
    if (m_editMode)
        LeaveEditMode();
    else if ((!m_around.project.Fits().MethDefined() && m_around.graphs.Empty()) ||
             Asks(kEditingClearsFit, Icon::Question))
        EnterEditMode();
    TheRun().window.EnableControls();
}

void EditCommands::EnterEditMode()
{
    m_around.project.Fits().Reset();
    TheRun().window.ClearGraphs(false);
    m_editMode = true;
    m_around.grid.EditMode(true);
    TheRun().window.SetUpDataGrid();
    m_around.grid.Grid().SetFocus();
}

/// When a conversion fails, Edit Mode stays on: the failure is one of the data that were typed.
void EditCommands::LeaveEditMode()
{
    if (!MayLeaveCell())
        return;
    Data().DoColumnConversions();
    m_editMode = false;
    m_steps.clear();
    m_around.grid.EditMode(false);
    TheRun().window.SetUpDataGrid();
    m_around.project.File().KeepCopy();
}

/// Data are only ever changed in Edit Mode; the menu sees to it, keys do not know.
bool EditCommands::MayEdit()
{
    if (!m_editMode)
        TheRun().reporter.Show({.text = LoadResString(kNotInEditMode)});
    return m_editMode;
}

void EditCommands::GridKey(int key)
{
    if (MayEdit())
        m_control.GridEdit(key);
}

void EditCommands::DeleteKey()
{
    if (MayEdit())
        m_control.ClearClick();
}

void EditCommands::FileDescription()
{
    const auto typed = TheRun().user.InputBox(LoadResString(kDescriptionPrompt), "VELT 3.0", Data().DSDesc());
    if (!typed || typed->empty() || *typed == Data().DSDesc())
        return;
    const std::string kept = Trim(PadString(*typed, clsVeltData::kDescriptionWidth));
    m_sheet.Change("File Description", [&] { Data().DSDesc(kept); });
    m_around.showDataSet();
    if (kept != Trim(*typed))
        TheRun().reporter.Show(
            {.text = "A project keeps 40 characters of the description. It now reads:\n" + kept,
             .icon = Icon::Information});
}

/// A change of rows or columns: one step of Undo, and the table is set up anew.
void EditCommands::Restructure(const char* what, const std::function<void()>& work)
{
    m_sheet.Change(what, work);
    TheRun().window.SetUpDataGrid();
}

bool EditCommands::RefusesRows(int count) const
{
    const auto refusal = RefusalOfRows(Data().Table(), count);
    if (refusal)
        TheRun().reporter.Show({.text = *refusal});
    return refusal.has_value();
}

void EditCommands::InsertDeleteRows(bool remove)
{
    GridSelection rows = FlexGrid().Selected();
    rows.col = TableSheet::FirstDataCol;
    rows.colSel = m_sheet.Cols() - 1;
    const int top = std::max(rows.Top(), TableSheet::FirstDataRow);
    const int count = std::max(rows.Bottom(), top) - top + 1;
    if (remove ? Data().ShownRows() == 0 : RefusesRows(count))
        return;
    FlexGrid().Select(rows); // shows what is meant
    if (!Asks(remove ? kDeleteRows : kInsertRows, Icon::Question, Buttons::YesNoCancel))
        return;
    if (remove)
        Restructure("Delete Row(s)", [&] { Data().DeleteRows(top, count); });
    else
        Restructure("Insert Row(s)", [&] { Data().InsertRows(top, count); });
}

void EditCommands::AddRow()
{
    const GridSelection rows = FlexGrid().Selected();
    const int count = rows.Bottom() - rows.Top() + 1;
    if (!RefusesRows(count))
        Restructure("Add Row(s)", [&] { Data().AddRows(count); });
}

/// The columns that the user picks out of `offered`; none when there are none to pick from.
std::vector<int> EditCommands::SelectColumns(const std::vector<int>& offered, int titleId, int promptId)
{
    ListPicker picker{.caption = LoadResString(titleId),
                      .prompt = LoadResString(promptId),
                      .leftCaption = LoadResString(kUnSelected),
                      .rightCaption = LoadResString(kSelected)};
    for (const int column : offered)
        picker.items.push_back({GridTitle(column)});
    std::vector<int> chosen;
    if (offered.empty() || !TheRun().user.AskListPicker(picker))
        return chosen;
    for (std::size_t i = 0; i < offered.size(); ++i)
        if (picker.items[i].selected)
            chosen.push_back(offered[i]);
    return chosen;
}

void EditCommands::InsertColumn()
{
    const auto chosen = SelectColumns(AvailableColumns(Data().Table()), kInsertTitle, kInsertPrompt);
    if (chosen.empty() || !Asks(kAddColumns, Icon::Information))
        return;
    Restructure("Insert Column", [&] {
        for (const int column : chosen)
            Data().AddColumn(column);
    });
}

void EditCommands::DeleteColumn()
{
    const auto chosen = SelectColumns(PresentColumns(Data().Table()), kDeleteTitle, kDeletePrompt);
    if (chosen.empty() || !Asks(kDeleteColumns, Icon::Information))
        return;
    if (ErasesAll(Data().Table(), chosen)) {
        TheRun().reporter.Show({.text = LoadResString(kCannotEraseAll)});
        return;
    }
    Restructure("Delete Column", [&] {
        for (const int column : chosen)
            Data().EraseColumn(column);
    });
}

void EditCommands::Changed(const std::string& what, const TableSheet::State& before)
{
    if (m_editMode)
        m_steps.push(new TableChange(*this, what, before, m_sheet.Now())); // the stack takes it over
    m_around.grid.Refresh();
}

void EditCommands::BringBack(const TableSheet::State& state)
{
    m_sheet.BringBack(state);
    m_around.grid.Refresh();
    m_around.showDataSet();
    TheRun().window.EnableControls();
}
