// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/TwoLists.h"

#include <QLabel>
#include <QListWidget>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace
{
constexpr int kLines = 10;
constexpr int kNarrowest = 24;       // average characters
constexpr int kPlace = Qt::UserRole; // of an item in the common order, from 0
} // namespace

TwoLists::TwoLists(const QString& leftCaption, const QString& rightCaption, const std::vector<Item>& items,
                   QWidget* parent)
    : QWidget(parent), m_count(static_cast<int>(items.size())), m_lstUnSelected(new QListWidget),
      m_lstSelected(new QListWidget), m_oneRight(MoveButton("cmdOneRight", ">", tr("Select"))),
      m_allRight(MoveButton("cmdAllRight", ">>", tr("Select all"))),
      m_oneLeft(MoveButton("cmdOneLeft", "<", tr("Take out"))),
      m_allLeft(MoveButton("cmdAllLeft", "<<", tr("Take all out")))
{
    m_lstUnSelected->setObjectName("lstUnSelected");
    m_lstSelected->setObjectName("lstSelected");
    for (int place = 0; place < m_count; ++place) {
        const Item& item = items[static_cast<std::size_t>(place)];
        auto* line = new QListWidgetItem(item.text, item.selected ? m_lstSelected : m_lstUnSelected);
        line->setData(kPlace, place);
    }
    auto* buttons = new QVBoxLayout;
    buttons->addStretch();
    for (QAbstractButton* button : {m_oneRight, m_allRight, m_oneLeft, m_allLeft})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(ListUnder(leftCaption, m_lstUnSelected), 1);
    row->addLayout(buttons);
    row->addWidget(ListUnder(rightCaption, m_lstSelected), 1);

    connect(m_oneRight, &QAbstractButton::clicked, this, [this] { Move(Direction::Right, false); });
    connect(m_allRight, &QAbstractButton::clicked, this, [this] { Move(Direction::Right, true); });
    connect(m_oneLeft, &QAbstractButton::clicked, this, [this] { Move(Direction::Left, false); });
    connect(m_allLeft, &QAbstractButton::clicked, this, [this] { Move(Direction::Left, true); });
    for (QListWidget* list : {m_lstUnSelected, m_lstSelected})
        connect(list, &QListWidget::itemDoubleClicked, this, [this, list](QListWidgetItem* item) {
            list->clearSelection();
            item->setSelected(true);
            Move(list == m_lstUnSelected ? Direction::Right : Direction::Left, false);
        });
    m_rightKeys = EnterMoves(m_lstUnSelected, Direction::Right);
    m_leftKeys = EnterMoves(m_lstSelected, Direction::Left);
    for (QListWidget* list : {m_lstUnSelected, m_lstSelected}) {
        list->setCurrentRow(0);
        connect(list, &QListWidget::currentRowChanged, this, &TwoLists::ShowWhatCanMove);
    }
    setFocusProxy(m_lstUnSelected);
    ShowWhatCanMove();
}

QWidget* TwoLists::ListUnder(const QString& caption, QListWidget* list)
{
    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(caption);
    label->setBuddy(list);
    column->addWidget(label);
    column->addWidget(list);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setMinimumSize(kNarrowest * fontMetrics().averageCharWidth(),
                         kLines * fontMetrics().height() * 5 / 4);
    return box;
}

/// Enter moves what is selected, as the button between the lists does. At an empty list it is the dialog's
/// own again.
std::vector<QShortcut*> TwoLists::EnterMoves(QListWidget* list, Direction direction)
{
    std::vector<QShortcut*> keys;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        const auto move = [this, direction] { Move(direction, false); };
        keys.push_back(new QShortcut(key, list, this, move, Qt::WidgetShortcut));
    }
    return keys;
}

QAbstractButton* TwoLists::MoveButton(const char* name, const QString& sign, const QString& hint)
{
    auto* button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setText(sign);
    button->setToolTip(hint);
    button->setAccessibleName(hint);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setMinimumWidth(6 * fontMetrics().averageCharWidth());
    return button;
}

void TwoLists::Move(Direction direction, bool all)
{
    QListWidget* from = direction == Direction::Right ? m_lstUnSelected : m_lstSelected;
    QListWidget* to = direction == Direction::Right ? m_lstSelected : m_lstUnSelected;
    to->clearSelection();
    const int stay = from->currentRow();
    for (int line = 0; line < from->count();) {
        if (!all && !from->item(line)->isSelected()) {
            ++line;
            continue;
        }
        QListWidgetItem* item = from->takeItem(line);
        int place = 0;
        while (place < to->count() && to->item(place)->data(kPlace).toInt() < item->data(kPlace).toInt())
            ++place;
        to->insertItem(place, item);
        to->setCurrentItem(item, QItemSelectionModel::Select);
    }
    from->setCurrentRow(std::min(stay, from->count() - 1));
    ShowWhatCanMove();
    emit Moved();
}

void TwoLists::ShowWhatCanMove()
{
    const bool right = m_lstUnSelected->count() > 0;
    m_oneRight->setEnabled(right);
    m_allRight->setEnabled(right);
    for (QShortcut* key : m_rightKeys)
        key->setEnabled(right);
    m_oneLeft->setEnabled(AnySelected());
    m_allLeft->setEnabled(AnySelected());
    for (QShortcut* key : m_leftKeys)
        key->setEnabled(AnySelected());
}

bool TwoLists::AnySelected() const
{
    return m_lstSelected->count() > 0;
}

std::vector<bool> TwoLists::Selected() const
{
    std::vector<bool> selected(static_cast<std::size_t>(m_count), false);
    for (int line = 0; line < m_lstSelected->count(); ++line)
        selected[static_cast<std::size_t>(m_lstSelected->item(line)->data(kPlace).toInt())] = true;
    return selected;
}
