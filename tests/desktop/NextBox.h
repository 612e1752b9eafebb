// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <functional>

/// What a message box said.
struct Box {
    QString words;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

/// What the next message box says, which is then closed.
inline Box AnswerTheNextBox(const std::function<void()>& command)
{
    Box seen;
    QTimer::singleShot(0, [&seen] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            seen = {.words = box->text(), .icon = box->icon()};
            box->accept();
        }
    });
    command();
    return seen;
}
