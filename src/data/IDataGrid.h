// SPDX-License-Identifier: GPL-3.0-or-later
// What clsDataGrid needs of a window: the grid, the text box that lies over a cell, and the host that knows
// what the cells mean.
#pragma once

#include "data/CellFont.h"

#include <algorithm>
#include <functional>
#include <string>

/// The current cell and the opposite corner of the selected block, equal when one cell is selected. Rows and
/// columns of a grid count from 0, titles included.
struct GridSelection {
    int row = 0;
    int col = 0;
    int rowSel = 0;
    int colSel = 0;

    static GridSelection At(int row, int col) { return {row, col, row, col}; }
    int Top() const { return std::min(row, rowSel); }
    int Bottom() const { return std::max(row, rowSel); }
    int Left() const { return std::min(col, colSel); }
    int Right() const { return std::max(col, colSel); }
    bool operator==(const GridSelection&) const = default;
};

/// A plain grid: it shows texts and knows which cells are selected.
class IFlexGrid
{
public:
    virtual ~IFlexGrid() = default;
    virtual int Rows() const = 0; ///< with the title rows
    virtual int Cols() const = 0;
    virtual int FixedRows() const = 0; ///< title rows at the top
    virtual int FixedCols() const = 0;
    virtual GridSelection Selected() const = 0;
    virtual void Select(const GridSelection& selection) = 0;
    virtual std::string TextMatrix(int row, int col) const = 0;
    virtual void TextMatrix(int row, int col, const std::string& text) = 0;
    virtual void SetFocus() = 0;
    virtual void Beep() = 0;
};

/// The one line that lies over a cell while it is edited.
class ITextBox
{
public:
    virtual ~ITextBox() = default;
    virtual std::string Text() const = 0;
    virtual void Text(const std::string& text) = 0; ///< the caret goes behind it; counts as not edited
    virtual bool Edited() const = 0;                ///< the user changed the text since it was set
    virtual void SelectAll() = 0;
    virtual std::string SelectedText() const = 0;
    virtual void ReplaceSelection(const std::string& text) = 0; ///< counts as an edit of the user
    virtual bool Visible() const = 0;
    virtual void ShowOver(int row, int col) = 0;
    virtual void Hide() = 0;
    virtual void SetFocus() = 0;
};

/// Where the keyboard is.
enum class ActiveControl { Other, Grid, TextBox };

/// The window in which a grid stands, as far as a sheet of cells needs it.
class IGridWindow
{
public:
    virtual ~IGridWindow() = default;
    virtual IFlexGrid& FlexGrid() = 0;
    virtual ITextBox& txtBox() = 0;
    virtual ActiveControl Active() const = 0;
    virtual void GridPopUpMenu() = 0;
};

/// The window that hosts a grid. Columns come before rows in its arguments, as ever.
class IDataGrid
{
public:
    virtual ~IDataGrid() = default;
    virtual float NoData() const = 0; ///< what stands in a cell with no data
    virtual ITextBox& txtBox() = 0;
    virtual std::string FormatString(int col) const = 0; ///< number format of a column
    /// The stored value of a cell, and the shortest text that gives it back to the bit.
    virtual float Data(int col, int row) const = 0;
    virtual std::string ExactText(int col, int row) const = 0;
    virtual IFlexGrid& FlexGrid() = 0;
    virtual void GridPopUpMenu() = 0;
    /// Stores `value`, which the host may bring into its own form. \return false when it refuses it; nothing
    /// has then changed
    virtual bool EditData(int col, int row, std::string& value) = 0;
    /// Whether a cell holds a text, which any printing key begins and nothing stands for when it is empty.
    virtual bool HoldsText(int /*col*/, int /*row*/) const { return false; }
    virtual void ChangeOfNumberFormat(int col, int row, const std::string& format) = 0;
    virtual CellFont TextFormat(int col) const = 0;
    virtual void ChangeOfTextFormat(int col, int row, const CellFont& font) = 0;
    /// Whether the text box holds what may be stored; tells the user why not.
    virtual bool IsValidData() = 0;
    virtual ActiveControl Active() const = 0;
    /// Runs `work` as one change of the data, which the host may then offer to take back under the name
    /// `what`.
    virtual void Change(const char* what, const std::function<void()>& work) = 0;
};
