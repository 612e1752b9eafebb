// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/frmVelt3.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QProxyStyle>
#include <QTimer>

namespace
{
/// Fusion on every system, with buttons that carry words alone in all dialogs, the toolkit's own included.
class PlainButtons : public QProxyStyle
{
public:
    PlainButtons() : QProxyStyle("Fusion") {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override
    {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, answer);
    }
};
} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("VELT");
    QApplication::setApplicationVersion(VELT_VERSION);
    // The name of the desktop entry, by which the system finds name and icon of the windows.
    QGuiApplication::setDesktopFileName("org.velt.Velt");
    QApplication::setWindowIcon(QIcon(":/org.velt.Velt.svg"));
    QApplication::setStyle(new PlainButtons); // the application owns it
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Stock sizes from catch, effort and index data."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("file"), QStringLiteral("A project (*.vl3, *.vl2) or a table (*.txt, *.csv) to open."),
        QStringLiteral("[file]"));
    parser.process(application);
    frmVelt3 window;
    window.show();
    // Behind the window's first appearance: both may ask questions over it.
    QTimer::singleShot(0, &window, [&] {
        window.OfferLeftovers();
        if (!parser.positionalArguments().isEmpty())
            window.OpenPath(parser.positionalArguments().constFirst());
    });
    return QApplication::exec();
}
