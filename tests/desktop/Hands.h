// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTimer>

#include <deque>
#include <functional>
#include <map>

/// A person at the program's own dialogs: fills each that comes into the front as the script says, by its
/// object name. Message boxes are answered Yes, or OK, and their words are kept; file dialogs take the next
/// of `files`, input boxes the next of `names`. A dialog that the script does not know, or that stays open
/// after it was filled, ends the test.
class Hands : public QObject
{
public:
    std::map<QString, std::function<void(QDialog&)>> fill;
    std::deque<QString> files;
    std::deque<QString> names;
    QStringList said; ///< by message boxes

    Hands()
    {
        m_look.setInterval(5);
        connect(&m_look, &QTimer::timeout, this, [this] { Look(); });
        m_look.start();
    }

    // What fills are made of.
    static void Enter(QDialog& form, const char* box, const QString& text)
    {
        Child<QLineEdit>(form, box).setText(text);
    }
    static void Click(QWidget& form, const char* button) { Child<QAbstractButton>(form, button).click(); }
    /// Picks the line of a list that begins with `text`.
    static void Pick(QDialog& form, const char* list, const QString& text)
    {
        auto& lines = Child<QListWidget>(form, list);
        const auto found = lines.findItems(text, Qt::MatchStartsWith);
        if (found.isEmpty())
            qFatal("%s has no line %s", list, qPrintable(text));
        lines.setCurrentItem(found.front());
    }
    /// Moves lines of the left list to the right one.
    static void Move(QDialog& form, const QStringList& texts)
    {
        auto& left = Child<QListWidget>(form, "lstUnSelected");
        for (const QString& text : texts) {
            left.clearSelection();
            Pick(form, "lstUnSelected", text);
            left.currentItem()->setSelected(true);
            Click(form, "cmdOneRight");
        }
    }
    template <typename Widget>
    static Widget& Child(QWidget& form, const char* name)
    {
        auto* child = form.findChild<Widget*>(QString::fromLatin1(name));
        if (child == nullptr)
            qFatal("%s has no %s", qPrintable(form.objectName()), name);
        return *child;
    }

private:
    void Look()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible() || dialog->objectName() == "ProgressMeter")
            return; // the meter comes up where a machine is slow, and goes by itself
        if (dialog == m_last) {
            if (++m_waited > kPatience)
                qFatal("%s stays open", qPrintable(dialog->objectName() + ' ' + dialog->windowTitle()));
            return;
        }
        m_last = dialog;
        m_waited = 0;
        Answer(*dialog);
    }

    void Answer(QDialog& dialog)
    {
        if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
            said += box->text();
            auto* yes = box->button(QMessageBox::Yes);
            (yes ? yes : box->button(QMessageBox::Ok))->click();
        } else if (auto* file = qobject_cast<QFileDialog*>(&dialog)) {
            Child<QLineEdit>(*file, "fileNameEdit").setText(Next(files, "a file"));
            file->findChild<QDialogButtonBox*>()->buttons().front()->click();
        } else if (auto* input = qobject_cast<QInputDialog*>(&dialog)) {
            input->setTextValue(Next(names, "a name"));
            input->accept();
        } else if (const auto found = fill.find(dialog.objectName()); found != fill.end()) {
            found->second(dialog);
        } else {
            qFatal("nobody expects %s", qPrintable(dialog.objectName() + ' ' + dialog.windowTitle()));
        }
    }

    static QString Next(std::deque<QString>& script, const char* what)
    {
        if (script.empty())
            qFatal("%s is asked for once more than expected", what);
        const QString next = script.front();
        script.pop_front();
        return next;
    }

    static constexpr int kPatience = 600; // looks
    QTimer m_look;
    QPointer<QDialog> m_last;
    int m_waited = 0;
};
