// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/ScenarioSheet.h"
#include "support/SheetBench.h"

#include <cstdint>
#include <string>

// The editor of scenarios without a window.
namespace scenario_editor
{
inline constexpr int kTitle = ScenarioSheet::kTitleRow;
inline constexpr int kUnit = ScenarioSheet::kUnitRow;
inline constexpr int kFirst = ScenarioSheet::kFirstDataRow;

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
} // namespace scenario_editor
