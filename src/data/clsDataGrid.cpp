// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsDataGrid.h"

#include "base/ForeignText.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "data/NumberFormat.h"

#include <utility>

using namespace grid_keys;

namespace
{
constexpr int kNonNumeric = 1935;

bool StartsANumber(int key)
{
    return (key >= '0' && key <= '9') || key == '-' || key == '.';
}

/// A character of one byte that prints; others come in through the opened box.
bool StartsAText(int key)
{
    constexpr int kLastPrinting = 126;
    return key > grid_keys::kSpace && key <= kLastPrinting;
}

/// A number through the format; any other text, such as a title, as it stands.
std::string Formatted(const std::string& value, const std::string& format)
{
    const auto number = number_text::ParseTyped(value);
    return number ? FormatNumber(static_cast<float>(*number), format) : value;
}

/// A number as it is typed: without the commas that a format sets between its thousands.
std::string ForTyping(std::string shown, const std::string& format)
{
    if (format.starts_with("#,"))
        std::erase(shown, ',');
    return shown;
}

/// A spreadsheet ends also a single cell with a line end, which a line cannot hold.
std::string WithoutLineEnds(std::string text)
{
    text.resize(text.find_last_not_of("\r\n") + 1); // npos is one less than 0
    return text;
}

/// Where a cell stands in a block, counted from 0.
std::string InBlock(std::size_t row, std::size_t column)
{
    return "row " + std::to_string(row + 1) + ", column " + std::to_string(column + 1) + " of the block";
}

std::string NotNumeric(const std::string& cell, std::size_t row, std::size_t column)
{
    return LoadResString(kNonNumeric) + "\n\nThe paste ended at " + InBlock(row, column) +
           (cell.empty() ? ", which is empty. A missing value is written as -1."
                         : ", which holds \"" + Quotable(cell) + "\".");
}
} // namespace

void clsDataGrid::GridGotFocus()
{
    if (Box().Visible())
        Box().Hide();
}

/// Whether a data cell is selected; a table without rows or columns has none.
bool clsDataGrid::OnACell() const
{
    const GridSelection selected = Grid().Selected();
    return selected.row >= Grid().FixedRows() && selected.col >= Grid().FixedCols();
}

void clsDataGrid::GridEdit(int key)
{
    if (!OnACell())
        return;
    m_old = GridSelection::At(Grid().Selected().row, Grid().Selected().col);
    const bool isText = HoldsText();
    if (isText ? StartsAText(key) : StartsANumber(key)) {
        Box().Text({});
        Box().ReplaceSelection(std::string(1, static_cast<char>(key)));
    } else {
        if (key > kSpace && !isText)
            Grid().Beep();
        const std::string shown = Grid().TextMatrix(m_old.row, m_old.col);
        Box().Text(isText ? shown : ForTyping(shown, m_host->FormatString(m_old.col)));
        Box().SelectAll();
    }
    Box().ShowOver(m_old.row, m_old.col);
    Box().SetFocus();
}

bool clsDataGrid::IsValidData()
{
    // What stands in a cell may be more than can be typed, such as no number at all; left alone, it stays.
    if (!Box().Edited() || (Box().Text().empty() && !HoldsText()) || m_host->IsValidData())
        return true;
    // The selection may have gone elsewhere; the box remembers its cell from it when it gets the focus.
    Grid().Select(GridSelection::At(m_old.row, m_old.col));
    Box().SelectAll();
    Box().SetFocus();
    return false;
}

void clsDataGrid::GridMouseDown(int button)
{
    if (button == 2) {
        m_host->GridPopUpMenu();
        return;
    }
    if (!Box().Visible())
        return;
    const GridSelection clicked = Grid().Selected();
    Grid().Select(GridSelection::At(m_old.row, m_old.col)); // back first: a refused value keeps its cell
    if (!IsValidData())
        return;
    EditKeyCode(kEnter, 0);
    Grid().Select(clicked);
}

void clsDataGrid::GridMouseUp()
{
    if (Box().Visible())
        EditKeyCode(kEnter, 0);
}

void clsDataGrid::TextGotFocus()
{
    if (Box().Visible())
        m_old = GridSelection::At(Grid().Selected().row, Grid().Selected().col);
}

void clsDataGrid::TextLostFocus()
{
    if (Box().Text().empty() && !HoldsText())
        Box().ReplaceSelection(number_text::Plain(m_host->NoData()));
}

bool clsDataGrid::EditKeyCode(int key, int shift)
{
    if (key == kEscape) {
        CloseBox();
        return true;
    }
    if (key != kEnter && key != kUp && key != kDown && key != kTab)
        return false;
    if (!IsValidData())
        return true;
    Commit();
    CloseBox();
    if (key == kUp || key == kDown)
        MoveRow(key == kUp ? -1 : 1);
    else if (key == kTab)
        MoveColumn((shift & kShift) != 0 ? -1 : 1);
    return true;
}

bool clsDataGrid::CommitIfOpen()
{
    if (!Box().Visible())
        return true;
    if (!IsValidData())
        return false;
    EditKeyCode(kEnter, 0);
    return true;
}

/// A box that was opened and left as it was stores nothing: the cell may hold more digits than it shows.
void clsDataGrid::Commit()
{
    if (!Box().Edited())
        return;
    if (Box().Text().empty()) // of a text the host has refused it
        Box().Text(number_text::Plain(m_host->NoData()));
    m_host->Change("Typing", [this] { Store(m_old.row, m_old.col, Box().Text()); });
}

/// The grid takes the focus first: a toolkit that hides the box under the focus sends it somewhere itself.
void clsDataGrid::CloseBox()
{
    Grid().SetFocus();
    Box().Hide();
    Box().Text({});
}

/// Stops at the first and at the last data row.
void clsDataGrid::MoveRow(int step)
{
    const int row = m_old.row + step;
    if (row >= Grid().FixedRows() && row < Grid().Rows())
        Grid().Select(GridSelection::At(row, m_old.col));
}

/// Behind the last cell of a row comes the first one of the next.
void clsDataGrid::MoveColumn(int step)
{
    int row = m_old.row;
    int col = m_old.col + step;
    if (col >= Grid().Cols()) {
        col = Grid().FixedCols();
        ++row;
    } else if (col < Grid().FixedCols()) {
        col = Grid().Cols() - 1;
        --row;
    }
    if (row >= Grid().FixedRows() && row < Grid().Rows())
        Grid().Select(GridSelection::At(row, col));
}

bool clsDataGrid::Store(int row, int col, const std::string& value)
{
    std::string taken = value;
    if (!m_host->EditData(col, row, taken))
        return false;
    Grid().TextMatrix(row, col, Formatted(taken, m_host->FormatString(col)));
    return true;
}

void clsDataGrid::CopyBlock()
{
    if (!OnACell())
        return;
    const GridSelection block = Grid().Selected();
    std::string displayed;
    std::string exact;
    for (int row = block.Top(); row <= block.Bottom(); ++row) {
        for (int col = block.Left(); col <= block.Right(); ++col) {
            const char* const end = col < block.Right() ? "\t" : "\r\n";
            displayed += Grid().TextMatrix(row, col) + end;
            exact += m_host->ExactText(col, row) + end;
        }
    }
    m_clipboard.Block(displayed, exact);
}

void clsDataGrid::CopyClick()
{
    if (m_host->Active() == ActiveControl::Grid)
        CopyBlock();
    else if (m_host->Active() == ActiveControl::TextBox && !Box().SelectedText().empty())
        m_clipboard.Text(Box().SelectedText());
}

void clsDataGrid::CutClick()
{
    CopyClick();
    if (m_host->Active() == ActiveControl::Grid)
        m_host->Change("Cut", [this] { ClearSelected(); });
    else if (m_host->Active() == ActiveControl::TextBox && !Box().SelectedText().empty())
        Box().ReplaceSelection({});
}

void clsDataGrid::ClearClick()
{
    if (m_host->Active() == ActiveControl::Grid)
        m_host->Change("Delete", [this] { ClearSelected(); });
}

void clsDataGrid::ClearSelected()
{
    if (!OnACell())
        return;
    const GridSelection block = Grid().Selected();
    for (int row = block.Top(); row <= block.Bottom(); ++row)
        for (int col = block.Left(); col <= block.Right(); ++col)
            Store(row, col, number_text::Plain(m_host->NoData()));
}

void clsDataGrid::PasteClick()
{
    if (m_host->Active() == ActiveControl::TextBox) {
        Box().ReplaceSelection(WithoutLineEnds(m_clipboard.Text()));
        return;
    }
    if (m_host->Active() != ActiveControl::Grid)
        return;
    if (!OnACell()) {
        Tell("The table has no cells to paste into.");
        return;
    }
    const PasteBlock block = ReadPasteBlock(m_clipboard.Text());
    if (block.IsOneValue())
        PasteValue(block);
    else
        PasteCells(block);
}

void clsDataGrid::Tell(const std::string& text)
{
    m_user.Show({.text = text});
}

/// One value goes into every selected cell. Without a line end behind it, it counts as empty. Deliberate.
void clsDataGrid::PasteValue(const PasteBlock& block)
{
    const std::string value = block.rows.empty() ? std::string() : block.rows.front().front();
    if (!block.endsInLineEnd || !number_text::ParseTyped(value)) {
        const bool noEnd = !block.endsInLineEnd && number_text::ParseTyped(value);
        Tell(LoadResString(kNonNumeric) +
             (noEnd
                  ? "\n\nThe clipboard holds one value without a line end. Press F2 and paste it inside the "
                    "cell."
                  : "\n\nThe clipboard holds \"" + Quotable(value) + "\"."));
        return;
    }
    const GridSelection cells = Grid().Selected();
    bool taken = true;
    m_host->Change("Paste", [&] {
        for (int row = cells.Top(); row <= cells.Bottom(); ++row)
            for (int col = cells.Left(); col <= cells.Right(); ++col)
                taken = Store(row, col, value) && taken;
    });
    if (!taken)
        Tell("The value " + Quotable(value) + " is too large for a cell. Nothing was pasted.");
}

void clsDataGrid::PasteCells(const PasteBlock& block)
{
    if (const auto outside = FirstOutside(block);
        !outside.empty() && m_user.Show({.text = "The block is larger than the table: " + outside +
                                                 " is the first cell that has no place.\n\nPaste what fits?",
                                         .icon = Icon::Question,
                                         .buttons = Buttons::YesNo}) != Answer::Yes)
        return;
    std::string problem;
    m_host->Change("Paste", [&] { problem = PlaceCells(block); });
    if (!problem.empty())
        Tell(problem);
}

/// The first cell of `block` that lies past the last row or column, in words; empty when all have a place.
std::string clsDataGrid::FirstOutside(const PasteBlock& block) const
{
    const GridSelection start = Grid().Selected();
    for (std::size_t i = 0; i < block.rows.size(); ++i) {
        const bool below = start.row + static_cast<int>(i) >= Grid().Rows();
        const std::size_t room = below ? 0 : static_cast<std::size_t>(Grid().Cols() - start.col);
        if (block.rows[i].size() > room)
            return InBlock(i, room);
    }
    return {};
}

/// Places cell by cell. The first one that is not numeric ends it; what was placed before it stays, which is
/// deliberate: Undo takes it back in one step. \return what to tell the user; empty when all went well
std::string clsDataGrid::PlaceCells(const PasteBlock& block)
{
    const GridSelection start = Grid().Selected();
    std::string problem;
    for (std::size_t i = 0; i < block.rows.size(); ++i) {
        for (std::size_t j = 0; j < block.rows[i].size(); ++j) {
            const std::string& cell = block.rows[i][j];
            if (!number_text::ParseTyped(cell))
                return NotNumeric(cell, i, j) + (problem.empty() ? "" : "\n\n") + problem;
            const int row = start.row + static_cast<int>(i);
            const int col = start.col + static_cast<int>(j);
            if (row < Grid().Rows() && col < Grid().Cols() && !Store(row, col, cell) && problem.empty())
                problem = "The value " + Quotable(cell) + " in " + InBlock(i, j) +
                          " is too large for a cell. Such values were left out.";
        }
    }
    return problem;
}

/// The selection from the first to the last row.
GridSelection clsDataGrid::WholeColumns() const
{
    GridSelection columns = Grid().Selected();
    columns.row = Grid().FixedRows();
    columns.rowSel = Grid().Rows() - 1;
    return columns;
}

void clsDataGrid::FormatNumber()
{
    if (!OnACell())
        return;
    const GridSelection current = Grid().Selected();
    const GridSelection columns = WholeColumns();
    Grid().Select(columns);
    NumberFormatChoice choice = ChoiceOf(m_host->FormatString(current.col));
    choice.sample = m_host->Data(current.col, current.row);
    if (m_user.AskNumberFormat(choice)) {
        const std::string format = FormatText(choice.category, choice.decPlaces);
        m_host->Change("Number Format", [&] {
            for (int col = columns.Left(); col <= columns.Right(); ++col) {
                m_host->ChangeOfNumberFormat(col, current.row, format);
                for (int row = columns.Top(); row <= columns.Bottom(); ++row)
                    Grid().TextMatrix(row, col, ::FormatNumber(m_host->Data(col, row), format));
            }
        });
    }
    Grid().SetFocus();
}

void clsDataGrid::FormatCol()
{
    if (!OnACell())
        return;
    const GridSelection current = Grid().Selected();
    const GridSelection columns = WholeColumns();
    Grid().Select(columns);
    CellFont font = m_host->TextFormat(current.col);
    if (m_user.AskFont(font))
        m_host->Change("Font", [&] {
            for (int col = columns.Left(); col <= columns.Right(); ++col)
                m_host->ChangeOfTextFormat(col, current.row, font);
        });
    Grid().SetFocus();
}
