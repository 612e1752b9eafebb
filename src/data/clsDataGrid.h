// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "data/IDataGrid.h"
#include "data/PasteBlock.h"

#include <string>

/// Keys by their codes, as grids report them.
namespace grid_keys
{
inline constexpr int kTab = 9;
inline constexpr int kEnter = 13;
inline constexpr int kEscape = 27;
inline constexpr int kSpace = 32;
inline constexpr int kUp = 38;
inline constexpr int kDown = 40;
inline constexpr int kShift = 1; ///< in the shift state
} // namespace grid_keys

/// Gives a plain grid the behaviour of a spreadsheet: editing in the cell, cut, copy and paste of blocks,
/// number formats and fonts. It knows nothing of what the cells mean; the host does.
///
/// A window hands each event of its grid and text box on to the operation of that name.
class clsDataGrid
{
public:
    /// Both must outlive this object.
    clsDataGrid(IUser& user, IClipboard& clipboard) : m_user(user), m_clipboard(clipboard) {}

    /// The window to serve. It must outlive this object or be replaced.
    void Create(IDataGrid& host) { m_host = &host; }

    /// The cell over which the text box was shown last.
    int OldRow() const { return m_old.row; }
    int OldCol() const { return m_old.col; }

    // Events of the grid.
    void GridGotFocus();
    /// A key that prints (its code), or 0 to 32 for Enter, space and a double click: opens the cell.
    void GridEdit(int key);
    void GridMouseDown(int button); ///< 1 left, 2 right; the click has already moved the selection
    void GridMouseUp();

    // Events of the text box.
    void TextGotFocus();
    void TextLostFocus();
    /// \return true when the key is swallowed
    static bool TextKeyPress(int key) { return key == grid_keys::kEnter; }
    bool TextKeyDown(int key, int shift) { return EditKeyCode(key, shift); }
    /// Enter, Escape, Up, Down and Tab end the editing of a cell. \return false for every other key
    bool EditKeyCode(int key, int shift);

    /// Whether the text box holds acceptable data: what was opened and left as it was is, and an empty box
    /// stands for the host's NoData. On refusal the
    /// box keeps the focus with its text selected.
    bool IsValidData();

    bool ClipboardHasText() const { return m_clipboard.HasText(); }

    /// Stores what an open text box holds, as Enter does. \return false when it is refused; it stays open
    /// then
    bool CommitIfOpen();

    // Commands.
    void CopyClick();
    void CutClick();
    void PasteClick();
    void ClearClick(); ///< the Delete key: as Cut, and the clipboard stays as it was
    void FormatNumber();
    void FormatCol();

private:
    IFlexGrid& Grid() const { return m_host->FlexGrid(); }
    ITextBox& Box() const { return m_host->txtBox(); }
    bool OnACell() const;
    bool HoldsText() const { return m_host->HoldsText(m_old.col, m_old.row); } ///< the cell being edited
    void Commit();
    void CloseBox();
    void MoveRow(int step);
    void MoveColumn(int step);
    bool Store(int row, int col, const std::string& value);
    void ClearSelected();
    void CopyBlock();
    void PasteValue(const PasteBlock& block);
    void PasteCells(const PasteBlock& block);
    std::string FirstOutside(const PasteBlock& block) const;
    std::string PlaceCells(const PasteBlock& block);
    void Tell(const std::string& text);
    GridSelection WholeColumns() const;

    IUser& m_user;
    IClipboard& m_clipboard;
    IDataGrid* m_host = nullptr;
    GridSelection m_old;
};
