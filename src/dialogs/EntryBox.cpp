// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/EntryBox.h"

#include <QFocusEvent>

EntryBox::EntryBox(const char* name, int digits, Rule rule, QWidget* parent)
    : QLineEdit(parent), m_rule(std::move(rule))
{
    setObjectName(QString::fromLatin1(name));
    setAlignment(Qt::AlignRight);
    constexpr int kFrame = 3; // figures' worth of room for frame and cursor
    setFixedWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * (digits + kFrame));
}

EntryBox::Verdict EntryBox::Judge()
{
    Verdict verdict = m_rule(text().toStdString());
    if (verdict.taken && verdict.text != text().toStdString())
        setText(QString::fromStdString(verdict.text));
    return verdict;
}

void EntryBox::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    // Queued, because the mouse press that brought the focus would take the selection away again.
    QMetaObject::invokeMethod(this, &QLineEdit::selectAll, Qt::QueuedConnection);
}

void EntryBox::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    switch (event->reason()) {
    case Qt::MouseFocusReason:
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        emit Left(event->reason());
        break;
    default: // another window came to the front, a menu opened, the program moved the focus
        break;
    }
}
