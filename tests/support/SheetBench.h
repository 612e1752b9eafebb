// SPDX-License-Identifier: GPL-3.0-or-later
// A table with hands on it and no window: the controller, its host and the data set are the program's own,
// the grid and the text box are the simplest that do what a toolkit's do.
#pragma once

#include "data/TableSheet.h"
#include "data/clsDataGrid.h"
#include "support/ScriptedUser.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

class PlainGrid : public IFlexGrid
{
public:
    TableSheet* sheet = nullptr;
    clsDataGrid* control = nullptr;
    GridSelection selected;
    std::map<std::pair<int, int>, std::string> written; ///< what was told to stand in a cell
    int beeps = 0;

    int Rows() const override { return sheet->Rows(); }
    int Cols() const override { return sheet->Cols(); }
    int FixedRows() const override { return TableSheet::FirstDataRow; }
    int FixedCols() const override { return TableSheet::FirstDataCol; }
    GridSelection Selected() const override { return selected; }
    void Select(const GridSelection& selection) override { selected = selection; }
    std::string TextMatrix(int row, int col) const override
    {
        return row == 0 ? sheet->Title(col) : sheet->Text(row, col);
    }
    void TextMatrix(int row, int col, const std::string& text) override { written[{row, col}] = text; }
    void SetFocus() override
    {
        control->TextLostFocus();
        control->GridGotFocus();
    }
    void Beep() override { ++beeps; }
};

class PlainBox : public ITextBox
{
public:
    clsDataGrid* control = nullptr;
    std::string text;
    bool edited = false;
    bool visible = false;
    bool allSelected = false;
    std::pair<int, int> over{0, 0};

    std::string Text() const override { return text; }
    void Text(const std::string& other) override
    {
        text = other;
        edited = allSelected = false;
    }
    bool Edited() const override { return edited; }
    void SelectAll() override { allSelected = true; }
    std::string SelectedText() const override { return allSelected ? text : std::string(); }
    void ReplaceSelection(const std::string& other) override
    {
        text = allSelected ? other : text + other;
        allSelected = false;
        edited = true;
    }
    bool Visible() const override { return visible; }
    void ShowOver(int row, int col) override
    {
        visible = true;
        over = {row, col};
    }
    void Hide() override { visible = false; }
    void SetFocus() override { control->TextGotFocus(); }
};

/// A data set of `rows` periods from 1990 on with these columns, and the hands that work on its grid.
struct SheetBench : Bench, TableSheet::IWindow {
    SheetBench(int rows, const std::vector<int>& present) : data(run)
    {
        for (const int column : present)
            data.AddColumn(column);
        data.MinTimeP(1990);
        data.MaxTimeP(1989 + rows);
        data.TimeInts(rows);
        data.MarkSaved();
        grid.sheet = &sheet;
        grid.control = box.control = &control;
        sheet.Take(&data);
        control.Create(sheet);
        Go(1, 2);
    }

    // TableSheet::IWindow
    IFlexGrid& FlexGrid() override { return grid; }
    ITextBox& txtBox() override { return box; }
    ActiveControl Active() const override
    {
        return box.visible ? ActiveControl::TextBox : ActiveControl::Grid;
    }
    void GridPopUpMenu() override { ++popUps; }
    void Changed(const std::string& what, const TableSheet::State& before) override
    {
        changes.emplace_back(what, before);
    }

    // The hands. Rows count from 1 below the titles, columns as the grid does: 2 is the first data column.
    void Go(int row, int col) { grid.selected = GridSelection::At(row, col); }
    void Mark(int row, int col, int rowSel, int colSel) { grid.selected = {row, col, rowSel, colSel}; }
    void Type(const std::string& text)
    {
        for (const char key : text) {
            if (box.visible)
                box.ReplaceSelection(std::string(1, key));
            else
                control.GridEdit(static_cast<unsigned char>(key));
        }
    }
    void Press(int key, int shift = 0)
    {
        if (box.visible)
            control.TextKeyDown(key, shift);
        else
            control.GridEdit(key);
    }
    void EmptyBox()
    {
        box.SelectAll();
        box.ReplaceSelection({});
    }
    void Click(int row, int col)
    {
        Go(row, col);
        control.GridMouseDown(1);
        control.GridMouseUp();
    }
    void Paste(const std::string& copied)
    {
        clipboard.Put(copied);
        control.PasteClick();
    }
    /// The value behind a cell of the grid.
    float Value(int row, int col) const { return sheet.Data(col, row); }
    std::string Message() const { return user.messages.empty() ? std::string() : user.messages.back().text; }
    /// Takes the last change back, as Undo does.
    void TakeBack()
    {
        sheet.BringBack(changes.back().second);
        changes.pop_back();
    }

    clsVeltData data;
    PlainGrid grid;
    PlainBox box;
    PlainClipboard clipboard;
    TableSheet sheet{user, *this};
    clsDataGrid control{user, clipboard};
    int popUps = 0;
    std::vector<std::pair<std::string, TableSheet::State>> changes;
};
