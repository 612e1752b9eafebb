// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/IDataGrid.h"

#include <QLineEdit>
#include <QTableView>

class GridWidget;
class clsDataGrid;

/// The line that lies over a cell while it is edited.
class CellBox : public QLineEdit, public ITextBox
{
    Q_OBJECT

public:
    explicit CellBox(GridWidget& grid);
    void Attach(clsDataGrid* controller) { m_controller = controller; }

    // ITextBox
    std::string Text() const override; ///< without the line ends that the line's own menu lets in
    void Text(const std::string& text) override;
    bool Edited() const override { return isModified(); }
    void SelectAll() override { selectAll(); }
    std::string SelectedText() const override { return selectedText().toStdString(); }
    void ReplaceSelection(const std::string& text) override { insert(QString::fromStdString(text)); }
    bool Visible() const override { return isVisible(); }
    void ShowOver(int row, int col) override;
    void Hide() override { hide(); }
    void SetFocus() override { setFocus(Qt::OtherFocusReason); }

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    GridWidget& m_grid;
    clsDataGrid* m_controller = nullptr;
};

/// A table whose keys, mouse and text box are those of a spreadsheet: what they mean is told by the
/// clsDataGrid it is attached to. The cell where a selection began has a frame; it is the one that is edited.
///
/// Grid rows are those of the model plus `titleRows`, which the header shows; the columns before `fixedCols`
/// are shown by somebody else and cannot be selected.
class GridWidget : public QTableView, public IFlexGrid
{
    Q_OBJECT

public:
    explicit GridWidget(int fixedCols, int titleRows = 1);

    /// Events go to `controller`, which must outlive the widget or be detached with null.
    void Attach(clsDataGrid* controller);
    CellBox& Box() const { return *m_box; }
    bool HasGridFocus() const { return hasFocus(); }

    // IFlexGrid
    int Rows() const override { return model()->rowCount() + FixedRows(); }
    int Cols() const override { return model()->columnCount(); }
    int FixedRows() const override { return m_titleRows; }
    int FixedCols() const override { return m_fixedCols; }
    GridSelection Selected() const override;
    void Select(const GridSelection& selection) override;
    std::string TextMatrix(int row, int col) const override;
    void TextMatrix(int row, int col, const std::string& text) override;
    void SetFocus() override { setFocus(Qt::OtherFocusReason); }
    void Beep() override;

    void selectAll() override;

    /// The table that shows a row; another one when rows that stay in view have a table of their own.
    virtual QTableView& ViewOf(int /*row*/) { return *this; }
    /// A press of the left button, here or in such a table, has moved the selection.
    void Pressed();
    /// Draws cells as this grid does: the one where the selection began in a frame. The view takes it over.
    QAbstractItemDelegate* NewCellPainter(QTableView& view);

signals:
    /// A key that would change the current cell: the code of a printing key, or 0 to 32 (Enter, space, a
    /// double click).
    void EditAsked(int key);
    void DeleteAsked();
    /// Ctrl+Space: the box of this grid row.
    void ToggleAsked(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void GoToEdge(int arrow, bool extends);
    QModelIndex At(int row, int col) const { return model()->index(row - FixedRows(), col); }

    int m_fixedCols;
    int m_titleRows;
    CellBox* m_box;
    clsDataGrid* m_controller = nullptr;
    bool m_pressed = false; ///< a press that went to the controller and waits for its release
};
