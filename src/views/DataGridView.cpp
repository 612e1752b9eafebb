// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/DataGridView.h"

#include "toolkit/Fonts.h"
#include "views/GridWidget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

namespace
{
constexpr int kNarrowest = 10;     // average characters, so that short numbers still look like a table
constexpr double kBreathing = 1.2; // times the widest number

/// The tint of Edit Mode; on a dark desktop a dark one of the same colour, so that the palette's text stays
/// readable.
QColor EditTint(const QPalette& palette)
{
    const bool dark = palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
    return dark ? QColor(0x10, 0x4A, 0x4A) : QColor(0xC0, 0xFF, 0xFF);
}

/// One box a row, in the middle of its cell. It answers to the left button going down.
class BoxPainter : public QStyledItemDelegate
{
public:
    using Clicked = std::function<void(int row)>;
    BoxPainter(QObject* parent, Clicked clicked) : QStyledItemDelegate(parent), m_clicked(std::move(clicked))
    {
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QStyleOptionViewItem cell(option);
        initStyleOption(&cell, index);
        const QWidget* widget = option.widget;
        painter->fillRect(cell.rect, cell.backgroundBrush);
        QStyleOptionButton box;
        const QStyle* style = widget ? widget->style() : QApplication::style();
        box.rect = style->subElementRect(QStyle::SE_CheckBoxIndicator, &box, widget);
        box.rect.moveCenter(cell.rect.center());
        box.palette = cell.palette;
        box.state = cell.checkState == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
        if (index.flags() & Qt::ItemIsEnabled)
            box.state |= QStyle::State_Enabled;
        else
            box.palette.setCurrentColorGroup(QPalette::Disabled);
        style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, widget);
    }

    bool editorEvent(QEvent* event, QAbstractItemModel*, const QStyleOptionViewItem&,
                     const QModelIndex& index) override
    {
        if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick)
            return false;
        if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton ||
            !(index.flags() & Qt::ItemIsEnabled))
            return false;
        m_clicked(index.row() + TableSheet::FirstDataRow);
        return true;
    }

private:
    Clicked m_clicked;
};
} // namespace

DataGridView::DataGridView(QWidget* parent)
    : QFrame(parent), m_fixed(new QTableView), m_scrolling(new GridWidget(TableSheet::FirstDataCol)),
      m_underFixed(new QWidget)
{
    setFrameStyle(QFrame::StyledPanel);
    SetUp(*m_fixed, "grdFixed");
    SetUp(*m_scrolling, "grdData");
    SetUpFixed();
    m_underFixed->hide();

    auto* left = new QVBoxLayout;
    left->setSpacing(0);
    left->addWidget(m_fixed);
    left->addWidget(m_underFixed);
    auto* both = new QHBoxLayout(this);
    both->setSpacing(0);
    both->setContentsMargins(0, 0, 0, 0);
    both->addLayout(left);
    both->addWidget(m_scrolling, 1);
    setFocusProxy(m_scrolling);
    Link();
    ShowTint();
}

void DataGridView::SetUp(QTableView& view, const char* name)
{
    view.setObjectName(QString::fromLatin1(name));
    view.setModel(&m_model);
    view.setFrameStyle(QFrame::NoFrame);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setCornerButtonEnabled(false);
    view.verticalHeader()->hide();
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView* titles = view.horizontalHeader();
    titles->setDefaultAlignment(Qt::Alignment::fromInt(int(Qt::AlignCenter) | int(Qt::TextWordWrap)));
    titles->setSectionsClickable(false);
    titles->setHighlightSections(false);
}

void DataGridView::SetUpFixed()
{
    m_fixed->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_fixed->setFocusPolicy(Qt::NoFocus);
    m_fixed->setSelectionMode(QAbstractItemView::NoSelection);
    m_fixed->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_fixed->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_fixed->setItemDelegateForColumn(TableSheet::kIncludeColumn,
                                      new BoxPainter(this, [this](int row) { emit ToggleAsked(row); }));
}

void DataGridView::Link()
{
    QScrollBar* fixed = m_fixed->verticalScrollBar();
    QScrollBar* scrolling = m_scrolling->verticalScrollBar();
    connect(scrolling, &QScrollBar::valueChanged, fixed, &QScrollBar::setValue);
    connect(fixed, &QScrollBar::valueChanged, scrolling, &QScrollBar::setValue);

    QScrollBar* bottom = m_scrolling->horizontalScrollBar();
    connect(bottom, &QScrollBar::rangeChanged, this, [this, bottom](int, int most) {
        m_underFixed->setFixedHeight(bottom->sizeHint().height());
        m_underFixed->setVisible(most > 0);
    });
    connect(m_scrolling->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &DataGridView::TellCellValue);
    connect(m_scrolling->selectionModel(), &QItemSelectionModel::selectionChanged, m_scrolling->viewport(),
            qOverload<>(&QWidget::update)); // the frame of the current cell moves with it
    connect(m_scrolling, &GridWidget::ToggleAsked, this, [this](int row) {
        if (m_model.BoxEnabled(row))
            emit ToggleAsked(row);
    });
}

void DataGridView::TellCellValue()
{
    const GridSelection selected = m_scrolling->Selected();
    emit CellValue(m_model.FullValue(m_model.index(selected.row - TableSheet::FirstDataRow, selected.col)));
}

void DataGridView::Show(const TableSheet* sheet)
{
    m_sheet = sheet;
    m_model.Show(sheet);
    SizeColumns();
    m_scrolling->Select(GridSelection::At(TableSheet::FirstDataRow, TableSheet::FirstDataCol));
    TellCellValue();
}

void DataGridView::Refresh()
{
    if (!m_sheet)
        return;
    const GridSelection before = m_scrolling->Selected();
    const int rows = m_sheet->Rows() - TableSheet::FirstDataRow;
    const bool sameSize = m_model.rowCount() == rows && m_model.columnCount() == m_sheet->Cols();
    const int scrolled = m_scrolling->verticalScrollBar()->value();
    m_model.Refresh(sameSize);
    SizeColumns();
    if (!sameSize && rows > 0) {
        const auto inside = [](int at, int first, int most) {
            return std::clamp(at, first, std::max(first, most));
        };
        m_scrolling->Select({inside(before.row, TableSheet::FirstDataRow, rows),
                             inside(before.col, TableSheet::FirstDataCol, m_sheet->Cols() - 1),
                             inside(before.rowSel, TableSheet::FirstDataRow, rows),
                             inside(before.colSel, TableSheet::FirstDataCol, m_sheet->Cols() - 1)});
        m_scrolling->verticalScrollBar()->setValue(scrolled);
    }
    TellCellValue();
}

void DataGridView::EditMode(bool on)
{
    m_editMode = on;
    m_model.EditMode(on);
    m_model.Refresh(true);
    ShowTint();
}

void DataGridView::Highlight(int row)
{
    m_model.Highlight(row);
    if (row > 0)
        m_scrolling->scrollTo(
            m_model.index(row - TableSheet::FirstDataRow,
                          std::max(m_scrolling->currentIndex().column(), int{TableSheet::FirstDataCol})));
}

void DataGridView::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_scrolling)
        ShowTint();
}

void DataGridView::ShowTint()
{
    QPalette palette = QApplication::palette(m_scrolling);
    if (m_editMode)
        palette.setColor(QPalette::Base, EditTint(palette));
    m_scrolling->setPalette(palette);
    palette.setColor(QPalette::Base, palette.color(QPalette::Window)); // where no row is
    m_fixed->setPalette(palette);
}

void DataGridView::SizeColumns()
{
    int tallest = fontMetrics().height();
    int fixedWidth = 0;
    for (int column = 0; column < m_model.columnCount(); ++column) {
        const bool isFixed = column < TableSheet::FirstDataCol;
        m_fixed->setColumnHidden(column, !isFixed);
        m_scrolling->setColumnHidden(column, isFixed);
        const int width = WidthOf(column);
        (isFixed ? m_fixed : m_scrolling)->setColumnWidth(column, width);
        fixedWidth += isFixed ? width : 0;
        if (!isFixed)
            tallest = std::max(tallest, QFontMetrics(FontOf(m_sheet->TextFormat(column))).height());
    }
    m_fixed->setFixedWidth(fixedWidth);
    const int title = fontMetrics().height() * 3;
    for (QTableView* view : {m_fixed, static_cast<QTableView*>(m_scrolling)}) {
        view->verticalHeader()->setDefaultSectionSize(tallest * 3 / 2);
        view->horizontalHeader()->setFixedHeight(title);
    }
}

/// Room for the widest number and for the longest word of the title, which is wrapped between words.
int DataGridView::WidthOf(int column) const
{
    const QFontMetrics metrics = fontMetrics();
    const bool isFixed = column < TableSheet::FirstDataCol;
    const QFontMetrics numbers = isFixed ? metrics : QFontMetrics(FontOf(m_sheet->TextFormat(column)));
    int widest = 0;
    for (int row = TableSheet::FirstDataRow; row < m_sheet->Rows(); ++row)
        widest =
            std::max(widest, numbers.horizontalAdvance(QString::fromStdString(m_sheet->Text(row, column))));
    int word = 0;
    const QString title = QString::fromStdString(m_sheet->Title(column));
    for (const QString& part : title.split(' '))
        word = std::max(word, metrics.horizontalAdvance(part));
    const int narrowest = isFixed ? 0 : kNarrowest * metrics.averageCharWidth();
    return std::max({narrowest, static_cast<int>(kBreathing * widest), word}) +
           2 * metrics.averageCharWidth();
}
