// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "data/IDataGrid.h"
#include "data/clsVeltData.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

/// The data set as the main window's grid shows and edits it: which column stands where, what the cells
/// say, the fonts, and the rules of an entry. It is the host of the grid's controller and knows no toolkit.
///
/// Grid column 0 holds the time label, column 1 the box that takes the period into the fit, row 0 the titles.
class TableSheet : public IDataGrid
{
public:
    static constexpr int FirstDataRow = 1;
    static constexpr int FirstDataCol = 2;
    static constexpr int kTimeColumn = 0;
    static constexpr int kIncludeColumn = 1;

    /// What a step of Undo brings back. Values are compared by their bits: a NaN is itself, and -0 is not 0.
    struct State {
        DataTable table;
        std::string description;
        Array1<CellFont, columns::kLast> fonts;
        bool operator==(const State& other) const;
    };

    /// The window around the sheet.
    class IWindow : public IGridWindow
    {
    public:
        /// The data set, once in `before`, was changed by what the user knows as `what`.
        virtual void Changed(const std::string& what, const State& before) = 0;
    };

    /// Both must outlive this object.
    TableSheet(IUser& user, IWindow& window) : m_user(user), m_window(window) {}

    /// The data set to show, with fonts as new; null for none. It must outlive this object or be replaced.
    void Take(clsVeltData* data);
    /// Brings the places of the columns into step with the data set.
    void Arrange();

    int Rows() const; ///< with the row of titles
    int Cols() const { return FirstDataCol + static_cast<int>(m_dataColOf.size()); }
    /// The data column (1 to 15) that a grid column shows; 0 for the first two.
    int DataColOf(int col) const;
    /// The grid column that shows a data column; 0 when it is absent.
    int GridColOf(int column) const { return m_gridColOf.at(static_cast<std::size_t>(column)); }
    std::string Title(int col) const;
    /// What a cell below the titles shows; nothing in the column of the boxes.
    std::string Text(int row, int col) const;
    bool Included(int row) const { return m_data->Included(row); }
    bool ToggledIn(int row) const { return m_data->ToggledIn(row); }

    State Now() const;
    /// Puts an earlier state in place of the present one; the places of the columns follow.
    void BringBack(const State& state);

    // IDataGrid
    float NoData() const override { return clsVeltData::kMissing; }
    ITextBox& txtBox() override { return m_window.txtBox(); }
    std::string FormatString(int col) const override { return m_data->ColFormat(DataColOf(col)); }
    float Data(int col, int row) const override;
    std::string ExactText(int col, int row) const override;
    IFlexGrid& FlexGrid() override { return m_window.FlexGrid(); }
    void GridPopUpMenu() override { m_window.GridPopUpMenu(); }
    /// A number below -1 becomes -1, the mark of a missing value. Refuses what is no number and what a 32-bit
    /// float cannot hold.
    bool EditData(int col, int row, std::string& value) override;
    void ChangeOfNumberFormat(int col, int row, const std::string& format) override;
    CellFont TextFormat(int col) const override;
    void ChangeOfTextFormat(int col, int row, const CellFont& font) override;
    bool IsValidData() override;
    ActiveControl Active() const override { return m_window.Active(); }
    void Change(const char* what, const std::function<void()>& work) override;

private:
    IUser& m_user;
    IWindow& m_window;
    clsVeltData* m_data = nullptr;
    std::vector<int> m_dataColOf; ///< by grid column less FirstDataCol
    std::array<int, columns::kLast + 1> m_gridColOf{};
    Array1<CellFont, columns::kLast> m_fonts;
};
