// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmVelt3.h"

#include <QApplication>
#include <QStyleFactory>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("VELT");
    QApplication::setApplicationVersion("3.0.0");
    QApplication::setStyle(QStyleFactory::create("Fusion")); // the same on every system
    frmVelt3 window;
    window.show();
    return QApplication::exec();
}
