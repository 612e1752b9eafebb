// SPDX-License-Identifier: GPL-3.0-or-later
// Hands on the installed desktop program, which knows nothing of them: loaded beside it (LD_PRELOAD), they
// choose "Contents and Index", wait for the page, say what they saw, and choose "Exit".
#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QMainWindow>
#include <QMenuBar>
#include <QTextBrowser>
#include <QTimer>

#include <cstdio>
#include <utility>

namespace
{
constexpr int kEvery = 100;    // ms
constexpr int kPatience = 300; // looks

/// The window of this name, once there is one.
template <typename Kind>
Kind* Window(const char* name)
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == name)
            return qobject_cast<Kind*>(window);
    return nullptr;
}

/// Chooses an entry of the main window's menus; other windows have entries of the same names.
void Choose(const QMainWindow& window, const char* entry)
{
    window.menuBar()->findChild<QAction*>(QString::fromLatin1(entry))->trigger();
}

/// One look at the screen. \return whether all is done
bool Look()
{
    static bool asked = false;
    if (const QWidget* box = QApplication::activeModalWidget()) {
        std::printf("a box stands in the way: %s\n", qPrintable(box->windowTitle()));
        QCoreApplication::exit(2);
        return true;
    }
    const auto* window = Window<QMainWindow>("frmVelt3");
    if (!window)
        return false;
    if (!std::exchange(asked, true))
        Choose(*window, "mnuHelpContents");
    const auto* help = Window<QMainWindow>("HelpWindow");
    const auto* page = help ? help->findChild<QTextBrowser*>("txtPage") : nullptr;
    if (!page || !page->isVisible() || page->toPlainText().isEmpty())
        return false;
    const bool drawn = !QApplication::windowIcon().pixmap(32).isNull();
    std::printf("title: %s\nicon: %s\npage: %s\n", qPrintable(window->windowTitle()),
                drawn ? "drawn" : "none", qPrintable(page->source().toString()));
    std::fflush(stdout);
    Choose(*window, "mnuExit");
    return true;
}

void Begin()
{
    auto* looks = new QTimer(qApp);
    QObject::connect(looks, &QTimer::timeout, qApp, [looks, left = kPatience]() mutable {
        if (Look())
            looks->stop();
        else if (--left == 0) {
            std::printf("no page of the manual has come\n");
            QCoreApplication::exit(3);
        }
    });
    looks->start(kEvery);
}
} // namespace

Q_COREAPP_STARTUP_FUNCTION(Begin)
