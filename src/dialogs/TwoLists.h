// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <vector>

class QAbstractButton;
class QListWidget;
class QShortcut;

/// Two lists side by side and the buttons that move items between them. Each list keeps the items in their
/// common order, wherever they were before.
class TwoLists : public QWidget
{
    Q_OBJECT

public:
    struct Item {
        QString text;
        bool selected = false;
    };

    TwoLists(const QString& leftCaption, const QString& rightCaption, const std::vector<Item>& items,
             QWidget* parent = nullptr);

    /// By item, in their common order: whether it stands in the right list.
    std::vector<bool> Selected() const;
    bool AnySelected() const;

signals:
    void Moved();

private:
    enum class Direction { Right, Left };
    QWidget* ListUnder(const QString& caption, QListWidget* list);
    QAbstractButton* MoveButton(const char* name, const QString& sign, const QString& hint);
    void Move(Direction direction, bool all);
    void ShowWhatCanMove();
    std::vector<QShortcut*> EnterMoves(QListWidget* list, Direction direction);

    int m_count = 0;
    QListWidget* m_lstUnSelected;
    QListWidget* m_lstSelected;
    QAbstractButton* m_oneRight;
    QAbstractButton* m_allRight;
    QAbstractButton* m_oneLeft;
    QAbstractButton* m_allLeft;
    std::vector<QShortcut*> m_rightKeys; ///< of the left list
    std::vector<QShortcut*> m_leftKeys;
};
