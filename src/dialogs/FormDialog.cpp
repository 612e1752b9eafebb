// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialogs/FormDialog.h"

#include "toolkit/Words.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{
constexpr int kHelp = 1955;
}

int WidthForTitle(const QWidget& dialog, const QString& title)
{
    constexpr int kIconAndButtons = 9; // heights of the font; the title bar itself is drawn by the system
    QFont bold = dialog.font();
    bold.setBold(true);
    return QFontMetrics(bold).horizontalAdvance(title) + kIconAndButtons * dialog.fontMetrics().height();
}

FormDialog::FormDialog(IUser& user, const QString& title, QWidget* parent)
    : QDialog(parent), m_user(user), m_body(new QVBoxLayout)
{
    setWindowTitle(title);
    auto* outer = new QVBoxLayout(this);
    outer->addLayout(m_body);
    outer->setSizeConstraint(QLayout::SetFixedSize); // follows rows that come and go
    m_body->addStrut(WidthForTitle(*this, title));
}

void FormDialog::AddButtons(int okId, int cancelId)
{
    m_buttons =
        new QDialogButtonBox(this); // a default button must know its dialog, or another takes its place
    QPushButton* ok = m_buttons->addButton(Words(okId), QDialogButtonBox::AcceptRole);
    ok->setObjectName("cmdOK");
    ok->setDefault(true);
    m_buttons->addButton(Words(cancelId), QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    connect(m_buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    layout()->addWidget(m_buttons);
}

void FormDialog::AddHelpButton(const char* topic)
{
    QPushButton* help = m_buttons->addButton(Words(kHelp), QDialogButtonBox::HelpRole);
    help->setObjectName("cmdHelp");
    help->setAutoDefault(false);
    connect(help, &QPushButton::clicked, this, [this, topic] { m_user.ShowHelp(topic); });
}

EntryBox* FormDialog::AddBox(const char* name, int digits, EntryBox::Rule rule)
{
    auto* box = new EntryBox(name, digits, std::move(rule), this);
    // Queued: the focus has then arrived where it was going, and a message box may take it.
    connect(
        box, &EntryBox::Left, this, [this, box](Qt::FocusReason reason) { OnLeft(box, reason); },
        Qt::QueuedConnection);
    m_boxes.push_back(box);
    return box;
}

void FormDialog::SayAt(EntryBox* box, const std::string& sentence)
{
    if (!sentence.empty())
        m_user.Show({.text = sentence, .helpTopic = m_messageTopic});
    box->setFocus();
    box->selectAll();
}

bool FormDialog::JudgeAt(EntryBox* box)
{
    const EntryBox::Verdict verdict = box->Judge();
    if (!verdict.taken)
        SayAt(box, verdict.text);
    return verdict.taken;
}

/// Cancel closes without a message whatever a box holds, a button that sets all boxes anew needs none of
/// them, who asks for help need not know yet what to enter, and a click on OK judges every box itself.
bool FormDialog::LeavesUnjudged(QWidget* next, Qt::FocusReason reason) const
{
    auto* button = qobject_cast<QAbstractButton*>(next);
    switch (button ? m_buttons->buttonRole(button) : QDialogButtonBox::InvalidRole) {
    case QDialogButtonBox::RejectRole:
    case QDialogButtonBox::ResetRole:
    case QDialogButtonBox::HelpRole:
        return true;
    case QDialogButtonBox::AcceptRole:
        return reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
    default:
        return false;
    }
}

void FormDialog::OnLeft(EntryBox* box, Qt::FocusReason reason)
{
    QWidget* next = focusWidget();
    if (!isVisible() || next == box || !box->isVisibleTo(this) || LeavesUnjudged(next, reason))
        return;
    if (JudgeAt(box))
        BoxTaken();
}

/// An Enter that is held down for something else, such as moving an item, is no OK.
void FormDialog::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || !event->isAutoRepeat())
        QDialog::keyPressEvent(event);
}

void FormDialog::accept()
{
    for (EntryBox* box : m_boxes) {
        if (box->isVisibleTo(this) && !JudgeAt(box))
            return;
    }
    if (TakeForm())
        QDialog::accept();
}
