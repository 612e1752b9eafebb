// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSettings>

/// What the user's desktop remembers of the program from run to run.
inline QSettings DesktopSettings()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("VELT"),
                     QStringLiteral("VELT"));
}
