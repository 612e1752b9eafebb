// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "data/IDataGrid.h"
#include "data/clsVeltData.h"

#include <functional>
#include <string>
#include <vector>

/// The projection scenarios of a data set side by side in one grid, as they are shown and edited: one column
/// a scenario, one row a future period. It is the host of the grid's controller and knows no toolkit. What is
/// entered goes into the scenario at once.
///
/// Grid row 0 holds the titles, row 1 the units, column 0 the time labels. The grid has room for all
/// scenarios and periods that there may be; what lies behind the last of them is empty.
class ScenarioSheet : public IDataGrid
{
public:
    static constexpr int kTitleRow = 0;
    static constexpr int kUnitRow = 1;
    static constexpr int kFirstDataRow = 2;
    static constexpr int kTimeCol = 0;
    static constexpr int kFirstCol = 1;
    static constexpr int kMostScenarios = 25;

    /// The window around the sheet.
    class IWindow : public IGridWindow
    {
    public:
        /// The cell that is edited, from which a text goes its way.
        virtual GridSelection Edited() const = 0;
        /// Scenarios, periods or values are others than before.
        virtual void Changed() = 0;
        /// Something to be said in passing; empty takes it back.
        virtual void Note(const std::string& text) = 0;
    };

    /// Both must outlive this object.
    ScenarioSheet(IUser& user, IWindow& window) : m_user(user), m_window(window) {}

    /// Shows the scenarios of `data` as they are kept; null for none. A data set without scenarios gets one
    /// of one period, so that the window is never empty. `data` must outlive this object or be replaced.
    void Load(clsVeltData* data);

    /// Whether the rows stand for other periods, or scenarios are others, than at the last load.
    bool IsOutOfStep() const;

    int Rows() const; ///< with titles and units
    int Cols() const; ///< with the time labels
    int Scenarios() const { return static_cast<int>(m_columns.size()); }
    int Points() const { return m_points; } ///< future periods
    bool IsScenario(int col) const { return col >= kFirstCol && col < kFirstCol + Scenarios(); }
    bool IsPoint(int row) const { return row >= kFirstDataRow && row < kFirstDataRow + m_points; }
    bool IsTitle(int row) const { return row == kTitleRow || row == kUnitRow; }

    /// What a cell shows.
    std::string Text(int row, int col) const;
    /// A value is shown as it was typed, until the next load shows it as it is kept.
    void ShowText(int row, int col, const std::string& text);

    std::int32_t UnitOf(int col) const; ///< vec_type; effort for a column without a scenario
    void Unit(int col, std::int32_t vecType);
    static std::vector<std::string> Units(); ///< in the order of vec_type

    // Commands. What stands against one is told to the user.
    void AddScenario();
    bool DeleteScenario(int col); ///< asks; whether it has gone, and all is loaded anew
    void AddRow();
    void DeleteRow(); ///< the last one, wherever the selection is

    // IDataGrid
    float NoData() const override { return 0.0F; }
    ITextBox& txtBox() override { return m_window.txtBox(); }
    std::string FormatString(int) const override { return "0.000"; }
    float Data(int col, int row) const override;
    std::string ExactText(int col, int row) const override;
    IFlexGrid& FlexGrid() override { return m_window.FlexGrid(); }
    void GridPopUpMenu() override { m_window.GridPopUpMenu(); }
    /// A value behind the last period or scenario adds rows and scenarios up to it, where there is room.
    bool EditData(int col, int row, std::string& value) override;
    bool HoldsText(int, int row) const override { return row == kTitleRow; }
    void ChangeOfNumberFormat(int, int, const std::string&) override {} // one format serves all
    CellFont TextFormat(int) const override { return {}; }
    void ChangeOfTextFormat(int, int, const CellFont&) override {}
    bool IsValidData() override;
    ActiveControl Active() const override { return m_window.Active(); }
    void Change(const char* what, const std::function<void()>& work) override;

private:
    struct Column {
        std::string title;
        std::vector<std::string> shown; ///< by period
    };
    clsProjScenario& ScenarioAt(int col) const;
    int RowOfTable(int row) const; ///< the row of the data set that a grid row stands for
    bool MakeRoom(int col, int row);
    bool MoreScenarios();
    bool MorePoints();
    void Rename(int col, const std::string& title);
    bool ValidTitle(int col, const std::string& title) const;
    bool StoreTitle(int col, const std::string& typed);
    bool StoreValue(int col, int row, const std::string& value);
    void MarkChanged();
    std::string NewTitle() const;

    IUser& m_user;
    IWindow& m_window;
    clsVeltData* m_data = nullptr;
    std::vector<Column> m_columns;
    int m_points = 0;
    std::int32_t m_firstRow = 0; ///< row of the data set behind its last period, at the last load
};
