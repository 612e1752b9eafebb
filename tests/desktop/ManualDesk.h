// SPDX-License-Identifier: GPL-3.0-or-later
// The program with its manual on the screen.
#pragma once

#include "Session.h"
#include "shell/HelpCommands.h"
#include "views/HelpBrowser.h"
#include "views/HelpWindow.h"

#include <QFile>
#include <QLineEdit>
#include <QSettings>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolBar>
#include <QUrl>
#include <QWindow>

#include <map>
#include <string>

inline const QString kManual = QStringLiteral(VELT_TEST_HELP);
inline const QString kRoot = QStringLiteral("qthelp://org.velt.manual/manual/");

/// The list of topics as it stands in the file: topic and page.
inline std::map<std::string, QString> ListedPages()
{
    std::map<std::string, QString> pages;
    QFile file(kManual + "/contexts.txt");
    if (!file.open(QIODevice::ReadOnly))
        return pages;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (const qsizetype gap = line.indexOf(' '); gap > 0)
            pages[line.left(gap).toStdString()] = line.mid(gap + 1).trimmed();
    return pages;
}

inline QUrl PageOf(const std::string& topic)
{
    return QUrl(kRoot + ListedPages()[topic]);
}

/// A manual on the screen, and the hands on it.
struct Reader {
    explicit Reader(HelpCommands& help) : help(help) { help.LookIn(kManual, {cache.path()}); }
    ~Reader() { help.LookIn(kManual, {}); } // lets go of the folder
    Q_DISABLE_COPY_MOVE(Reader)

    bool Shows() const { return help.Window() && help.Window()->isVisible(); }
    QUrl Page() const { return The<HelpBrowser>("txtPage")->source(); }
    template <typename Widget>
    Widget* The(const char* name) const
    {
        return help.Window()->findChild<Widget*>(QString::fromLatin1(name));
    }
    /// Its page, ready for keys.
    HelpBrowser* InFront() const
    {
        QApplication::setActiveWindow(help.Window());
        (void)QTest::qWaitForWindowActive(help.Window());
        return The<HelpBrowser>("txtPage");
    }
    /// As the mouse of the screen clicks: a window that a dialog blocks gets none of it.
    void ClickTool(const char* action) const
    {
        auto* bar = The<QToolBar>("tlbHelp");
        const QWidget* button = bar->widgetForAction(The<QAction>(action));
        QTest::mouseClick(help.Window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          button->mapTo(help.Window(), button->rect().center()));
    }
    void SearchFor(const char* words) const
    {
        The<QTabWidget>("tabHelp")->setCurrentIndex(2);
        The<QLineEdit>("txtSearch")->setText(QString::fromUtf8(words));
        QTest::keyClick(The<QLineEdit>("txtSearch"), Qt::Key_Return);
    }

    HelpCommands& help;
    QTemporaryDir cache;
};

/// The whole program with its manual, and a person who answers from a script.
struct Desk : Session {
    Reader reader{window.Help()};

    void PressF1In(QWidget& in)
    {
        QApplication::setActiveWindow(&in);
        QTest::keyClick(in.focusWidget() ? in.focusWidget() : &in, Qt::Key_F1);
    }
};

/// For the start of each test: no setting of the user or of an earlier test is there.
inline void ForgetSettings()
{
    static const QTemporaryDir settings;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QFile::remove(settings.path() + "/VELT/VELT.ini");
}
