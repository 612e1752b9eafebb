// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "dialogs/EntryBox.h"

#include <QDialog>
#include <vector>

class QDialogButtonBox;
class QVBoxLayout;

/// Least width in pixels at which the title bar of `dialog` shows `title` whole, beside icon and buttons.
int WidthForTitle(const QWidget& dialog, const QString& title);

/// What the input dialogs share: OK and Cancel, entry boxes that are judged when they are left and before
/// OK, and a refused entry that keeps the focus with its text selected. A dialog edits its own copy of a
/// record; the caller takes it back after OK, so that Cancel needs no undo.
class FormDialog : public QDialog
{
    Q_OBJECT

public:
    /// `user` shows the sentences and must outlive the dialog.
    FormDialog(IUser& user, const QString& title, QWidget* parent);

    void accept() override;
    void keyPressEvent(QKeyEvent* event) override;

protected:
    QVBoxLayout* Body() const { return m_body; }
    QDialogButtonBox* ButtonRow() const { return m_buttons; }

    /// The row of buttons below the form. Comes after everything else is made, so that the buttons also come
    /// last in the tab order.
    void AddButtons(int okId, int cancelId);

    /// One more button behind these, which opens the manual at `topic`.
    void AddHelpButton(const char* topic);

    /// From now on the messages about entries have a Help button, too.
    void SayWithHelp(const char* topic) { m_messageTopic = topic; }

    /// A new box that takes part in judging. Boxes are judged in the order they were added.
    EntryBox* AddBox(const char* name, int digits, EntryBox::Rule rule);

    /// Tells the user `sentence` (nothing when it is empty) and puts the focus on the box, text selected.
    void SayAt(EntryBox* box, const std::string& sentence);

    /// Called by OK when every shown box has passed: takes what is in no box, and may refuse the whole.
    virtual bool TakeForm() { return true; }

    /// Called after a box was left with a text that was taken.
    virtual void BoxTaken() {}

private:
    bool JudgeAt(EntryBox* box);
    void OnLeft(EntryBox* box, Qt::FocusReason reason);
    bool LeavesUnjudged(QWidget* next, Qt::FocusReason reason) const;

    IUser& m_user;
    QVBoxLayout* m_body;
    QDialogButtonBox* m_buttons = nullptr;
    std::string m_messageTopic;
    std::vector<EntryBox*> m_boxes;
};
