// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/TableSheet.h"
#include "data/clsDataGrid.h"
#include "shell/DesktopClipboard.h"
#include "shell/OpenProject.h"

#include <QUndoStack>

#include <functional>
#include <string>
#include <vector>

class DataGridView;
class GraphWindows;
class QMenu;

/// The Edit menu and the table's own events: Edit Mode and what may be changed in it, and Undo.
///
/// Data change only in Edit Mode, and no fit exists there; each change is one step of Undo, and the steps are
/// gone when Edit Mode is left.
class EditCommands : public TableSheet::IWindow
{
public:
    /// What it needs of the main window; all of it must outlive this object.
    struct Around {
        OpenProject& project;
        GraphWindows& graphs;
        DataGridView& grid;
        std::function<void()> showDataSet; ///< its caption, and the table or what stands in its place
        std::function<void()> popUpMenu;
    };
    explicit EditCommands(Around around);
    ~EditCommands() override;
    EditCommands(const EditCommands&) = delete;
    EditCommands& operator=(const EditCommands&) = delete;

    TableSheet& Sheet() { return m_sheet; }
    const TableSheet& Sheet() const { return m_sheet; }
    QUndoStack& Steps() { return m_steps; }
    bool EditMode() const { return m_editMode; }
    bool ClipboardHasText() const { return m_clipboard.HasText(); }

    /// The data set goes, or a new one has come: Edit Mode is off.
    void LetGo();
    void TakeDataSet();

    /// Stores what an open cell holds. \return false when it is refused, the cell then stays open
    bool MayLeaveCell() { return m_control.CommitIfOpen(); }

    // The menu.
    void SwitchEditMode();
    void EnterEditMode();
    void FileDescription();
    void DeleteRow() { InsertDeleteRows(true); }
    void InsertRow() { InsertDeleteRows(false); }
    void AddRow();
    void DeleteColumn();
    void InsertColumn();
    void Cut() { m_control.CutClick(); }
    void Copy() { m_control.CopyClick(); }
    void Paste() { m_control.PasteClick(); }
    void Format() { m_control.FormatCol(); }
    void Number() { m_control.FormatNumber(); }

    // The table.
    void GridKey(int key);
    void DeleteKey();

    // TableSheet::IWindow
    IFlexGrid& FlexGrid() override;
    ITextBox& txtBox() override;
    ActiveControl Active() const override;
    void GridPopUpMenu() override { m_around.popUpMenu(); }
    void Changed(const std::string& what, const TableSheet::State& before) override;

    /// Puts an earlier or later state in place, as Undo and Redo do.
    void BringBack(const TableSheet::State& state);

private:
    clsVeltData& Data() const { return m_around.project.Data(); }
    Run& TheRun() const { return m_around.project.TheRun(); }
    bool Asks(int textId, Icon icon, Buttons buttons = Buttons::YesNo) const;
    bool MayEdit();
    void LeaveEditMode();
    void InsertDeleteRows(bool remove);
    void Restructure(const char* what, const std::function<void()>& work);
    std::vector<int> SelectColumns(const std::vector<int>& offered, int titleId, int promptId);
    bool RefusesRows(int count) const;

    Around m_around;
    DesktopClipboard m_clipboard;
    TableSheet m_sheet;
    clsDataGrid m_control;
    QUndoStack m_steps;
    bool m_editMode = false;
};
