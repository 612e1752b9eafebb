// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/GridWidget.h"

#include "data/clsDataGrid.h"

#include <QApplication>
#include <QFocusEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace
{
/// The code that the controller knows a key by; 0 for keys that it leaves alone.
int CodeOf(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return grid_keys::kEnter;
    case Qt::Key_Escape:
        return grid_keys::kEscape;
    case Qt::Key_Up:
        return grid_keys::kUp;
    case Qt::Key_Down:
        return grid_keys::kDown;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return grid_keys::kTab;
    default:
        return 0;
    }
}

bool MovesAbout(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default:
        return event.matches(QKeySequence::SelectAll);
    }
}

bool IsArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

/// Draws the cell where the selection began as spreadsheets do: in a frame, and not filled.
class CellPainter : public QStyledItemDelegate
{
public:
    CellPainter(GridWidget& grid, QTableView& view) : QStyledItemDelegate(&view), m_grid(grid) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const GridSelection selected = m_grid.Selected();
        const bool current =
            selected.row == index.row() + m_grid.FixedRows() && selected.col == index.column();
        QStyleOptionViewItem plain(option);
        plain.state &= ~QStyle::State_HasFocus;
        if (current) { // the table has filled it as a selected cell
            plain.state &= ~QStyle::State_Selected;
            painter->fillRect(option.rect, option.palette.base());
        }
        QStyledItemDelegate::paint(painter, plain, index);
        if (!current)
            return;
        constexpr int kFrame = 2;
        painter->save();
        painter->setPen(QPen(option.palette.color(QPalette::Highlight), kFrame));
        painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
        painter->restore();
    }

private:
    GridWidget& m_grid;
};
} // namespace

CellBox::CellBox(GridWidget& grid) : QLineEdit(grid.viewport()), m_grid(grid)
{
    setObjectName("txtEdit");
    setFrame(false);
    setAlignment(Qt::AlignRight);
    setAutoFillBackground(true);
    hide();
}

void CellBox::Text(const std::string& text)
{
    setText(QString::fromStdString(text)); // which also counts as not modified
}

std::string CellBox::Text() const
{
    const std::string typed = text().toStdString();
    return typed.substr(0, typed.find_last_not_of("\r\n") + 1);
}

void CellBox::ShowOver(int row, int col)
{
    constexpr int kShortest = 9; // average characters
    QTableView& view = m_grid.ViewOf(row);
    if (parentWidget() != view.viewport())
        setParent(view.viewport());
    const QModelIndex cell = view.model()->index(row - m_grid.FixedRows(), col);
    view.scrollTo(cell);
    QRect place = view.visualRect(cell);
    setFont(cell.data(Qt::FontRole).value<QFont>());
    place.setLeft(std::min(place.left(), place.right() - kShortest * fontMetrics().averageCharWidth()));
    setGeometry(place);
    show();
    raise();
}

bool CellBox::event(QEvent* event)
{
    // Here and not in keyPressEvent: Tab would never come there, it moves the focus.
    if (event->type() == QEvent::KeyPress && m_controller) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const int shift = key->modifiers() & Qt::ShiftModifier ? grid_keys::kShift : 0;
        if (key->matches(QKeySequence::Paste)) { // the line would take the text as displayed, not the value
            m_controller->PasteClick();
            return true;
        }
        const int code = CodeOf(key->key());
        if (code != 0 && m_controller->TextKeyDown(code, shift))
            return true;
    }
    return QLineEdit::event(event);
}

void CellBox::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (m_controller)
        m_controller->TextGotFocus();
}

void CellBox::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    if (m_controller && event->reason() != Qt::PopupFocusReason) // its own menu is no loss
        m_controller->TextLostFocus();
}

GridWidget::GridWidget(int fixedCols, int titleRows)
    : m_fixedCols(fixedCols), m_titleRows(titleRows), m_box(new CellBox(*this))
{
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setItemDelegate(NewCellPainter(*this));
}

QAbstractItemDelegate* GridWidget::NewCellPainter(QTableView& view)
{
    return new CellPainter(*this, view);
}

void GridWidget::Attach(clsDataGrid* controller)
{
    m_controller = controller;
    m_box->Attach(controller);
}

GridSelection GridWidget::Selected() const
{
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return {};
    GridSelection cells = GridSelection::At(current.row() + FixedRows(), current.column());
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        if (!range.contains(current))
            continue;
        // The end that moves is Qt's current cell; the corner opposite to it is where the selection began.
        const int left = std::max(range.left(), m_fixedCols);
        cells.row = FixedRows() + (current.row() == range.top() ? range.bottom() : range.top());
        cells.col = current.column() == left ? range.right() : left;
    }
    return cells;
}

void GridWidget::Select(const GridSelection& selection)
{
    const QModelIndex began = At(selection.row, selection.col);
    const QModelIndex end = At(selection.rowSel, selection.colSel);
    if (!began.isValid() || !end.isValid())
        return;
    setCurrentIndex(began); // from here Shift extends
    if (began == end)
        return;
    selectionModel()->setCurrentIndex(end, QItemSelectionModel::NoUpdate);
    selectionModel()->select(
        QItemSelection(At(selection.Top(), selection.Left()), At(selection.Bottom(), selection.Right())),
        QItemSelectionModel::ClearAndSelect);
}

/// Not as the toolkit does it, which leaves its current cell amid the block.
void GridWidget::selectAll()
{
    Select({FixedRows(), m_fixedCols, Rows() - 1, Cols() - 1});
}

std::string GridWidget::TextMatrix(int row, int col) const
{
    return row < FixedRows() ? model()->headerData(col, Qt::Horizontal).toString().toStdString()
                             : At(row, col).data().toString().toStdString();
}

void GridWidget::TextMatrix(int row, int col, const std::string& text)
{
    model()->setData(At(row, col), QString::fromStdString(text), Qt::DisplayRole);
}

void GridWidget::Beep()
{
    QApplication::beep();
}

void GridWidget::keyPressEvent(QKeyEvent* event)
{
    const bool command = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (command && event->key() == Qt::Key_Space)
        emit ToggleAsked(Selected().row);
    else if (event->modifiers().testFlag(Qt::ControlModifier) && IsArrow(event->key()))
        GoToEdge(event->key(), event->modifiers().testFlag(Qt::ShiftModifier));
    else if (MovesAbout(*event))
        QTableView::keyPressEvent(event);
    else if (event->key() == Qt::Key_Delete && !command)
        emit DeleteAsked();
    else if (event->key() == Qt::Key_F2 || CodeOf(event->key()) == grid_keys::kEnter)
        emit EditAsked(grid_keys::kEnter);
    else if (!command && event->key() != Qt::Key_Escape && !event->text().isEmpty())
        emit EditAsked(event->text().at(0).unicode());
    else
        event->ignore();
}

/// As in a spreadsheet: the moving end of the selection goes to the first or last row or column.
void GridWidget::GoToEdge(int arrow, bool extends)
{
    GridSelection cells = Selected();
    if (arrow == Qt::Key_Up || arrow == Qt::Key_Down)
        cells.rowSel = arrow == Qt::Key_Up ? FixedRows() : Rows() - 1;
    else
        cells.colSel = arrow == Qt::Key_Left ? m_fixedCols : Cols() - 1;
    Select(extends ? cells : GridSelection::At(cells.rowSel, cells.colSel));
    scrollTo(currentIndex());
}

void GridWidget::mousePressEvent(QMouseEvent* event)
{
    QTableView::mousePressEvent(event);
    if (event->button() == Qt::RightButton || !m_controller)
        return; // it comes as a wish for the menu, as the menu key does
    Pressed();
    m_pressed = !m_box->isVisible(); // a refused value keeps its box, and the release has nothing to say
}

void GridWidget::Pressed()
{
    m_controller->GridMouseDown(1);
}

void GridWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_box->isVisible())
        QTableView::mouseMoveEvent(event);
}

void GridWidget::mouseReleaseEvent(QMouseEvent* event)
{
    QTableView::mouseReleaseEvent(event);
    if (m_pressed && m_controller && event->button() != Qt::RightButton)
        m_controller->GridMouseUp();
    m_pressed = false;
}

void GridWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid())
        emit EditAsked(0);
    m_pressed = false; // the release that follows would close the box again
}

void GridWidget::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_controller)
        m_controller->GridMouseDown(2);
    event->accept();
}

void GridWidget::focusInEvent(QFocusEvent* event)
{
    QTableView::focusInEvent(event);
    if (!m_controller)
        return;
    switch (event->reason()) {
    case Qt::MouseFocusReason:        // the click commits the box itself, before anything else
    case Qt::ActiveWindowFocusReason: // back from a message about the box, which must stay open
        return;
    case Qt::TabFocusReason: // a box that was left open is stored first
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        if (!m_controller->CommitIfOpen())
            return;
        break;
    default:
        break;
    }
    m_controller->GridGotFocus();
}
