// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/DataGridView.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

namespace
{
constexpr int kNarrowest = 10;     // average characters, so that short numbers still look like a table
constexpr double kBreathing = 1.2; // times the widest number
} // namespace

DataGridView::DataGridView(QWidget* parent) : QFrame(parent)
{
    setFrameStyle(QFrame::StyledPanel);
    m_fixed = AddView("grdFixed");
    m_scrolling = AddView("grdData");
    m_underFixed = new QWidget;
    m_underFixed->hide();

    m_fixed->setFocusPolicy(Qt::NoFocus);
    m_fixed->setSelectionMode(QAbstractItemView::NoSelection);
    m_fixed->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_fixed->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    auto* left = new QVBoxLayout;
    left->setSpacing(0);
    left->addWidget(m_fixed);
    left->addWidget(m_underFixed);
    auto* both = new QHBoxLayout(this);
    both->setSpacing(0);
    both->setContentsMargins(0, 0, 0, 0);
    both->addLayout(left);
    both->addWidget(m_scrolling, 1);
    Link();
}

QTableView* DataGridView::AddView(const char* name)
{
    auto* view = new QTableView;
    view->setObjectName(QString::fromLatin1(name));
    view->setModel(&m_model);
    view->setFrameStyle(QFrame::NoFrame);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setCornerButtonEnabled(false);
    view->verticalHeader()->hide();
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    const int row = fontMetrics().height() * 3 / 2;
    view->verticalHeader()->setDefaultSectionSize(row);
    QHeaderView* titles = view->horizontalHeader();
    titles->setDefaultAlignment(Qt::Alignment::fromInt(int(Qt::AlignCenter) | int(Qt::TextWordWrap)));
    titles->setFixedHeight(2 * row);
    titles->setSectionsClickable(false);
    titles->setHighlightSections(false);
    return view;
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
            [this](const QModelIndex& current) { emit CellValue(m_model.FullValue(current)); });
}

QModelIndex DataGridView::Current() const
{
    return m_scrolling->currentIndex();
}

void DataGridView::Show(const clsVeltData* data)
{
    m_model.Show(data);
    SizeColumns();
    const QModelIndex first = m_model.index(0, DataGridModel::FirstDataCol);
    if (first.isValid())
        m_scrolling->setCurrentIndex(first);
    else
        emit CellValue({});
}

void DataGridView::SizeColumns()
{
    int fixedWidth = 0;
    for (int column = 0; column < m_model.columnCount(); ++column) {
        const bool isFixed = column < DataGridModel::FirstDataCol;
        m_fixed->setColumnHidden(column, !isFixed);
        m_scrolling->setColumnHidden(column, isFixed);
        const int width = WidthOf(column);
        (isFixed ? m_fixed : m_scrolling)->setColumnWidth(column, width);
        fixedWidth += isFixed ? width : 0;
    }
    m_fixed->setFixedWidth(fixedWidth);
}

/// Room for the widest number and for the longest word of the title, which is wrapped between words.
int DataGridView::WidthOf(int column) const
{
    const QFontMetrics metrics = fontMetrics();
    int widest = 0;
    for (int row = 0; row < m_model.rowCount(); ++row)
        widest = std::max(widest, metrics.horizontalAdvance(
                                      m_model.data(m_model.index(row, column), Qt::DisplayRole).toString()));
    int word = 0;
    const QString title = m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    for (const QString& part : title.split(' '))
        word = std::max(word, metrics.horizontalAdvance(part));
    const int narrowest = column < DataGridModel::FirstDataCol ? 0 : kNarrowest * metrics.averageCharWidth();
    return std::max({narrowest, static_cast<int>(kBreathing * widest), word}) +
           2 * metrics.averageCharWidth();
}
