// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QtTest>

/// A dialog on the screen and the hands on it.
class Desk
{
public:
    explicit Desk(QDialog& dialog) : m_dialog(dialog)
    {
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        (void)QTest::qWaitForWindowActive(&dialog);
    }
    template <typename Widget = QLineEdit>
    Widget* The(const char* name) const
    {
        return m_dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    /// Puts the cursor into the box and types over what stands there.
    void Type(const char* box, const char* text) const
    {
        The(box)->setFocus();
        The(box)->selectAll();
        QTest::keyClicks(The(box), QString::fromLatin1(text));
    }
    void Leave(const char* box) const
    {
        QTest::keyClick(The(box), Qt::Key_Tab);
        QCoreApplication::processEvents();
    }
    void Enter(const char* box) const
    {
        QTest::keyClick(The(box), Qt::Key_Return);
        QCoreApplication::processEvents();
    }
    void Click(const char* button) const
    {
        QTest::mouseClick(The<QAbstractButton>(button), Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    bool HasFocusSelected(const char* box) const
    {
        return m_dialog.focusWidget() == The(box) && The(box)->selectedText() == The(box)->text();
    }

private:
    QDialog& m_dialog;
};
