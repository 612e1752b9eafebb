// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/RecentFiles.h"

#include <QSettings>

namespace
{
const QString kKey = QStringLiteral("recentFiles");

QSettings Settings()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("VELT"),
                     QStringLiteral("VELT"));
}
} // namespace

QStringList RecentFiles::Paths() const
{
    return Settings().value(kKey).toStringList().mid(0, kMost);
}

void RecentFiles::Note(const QString& path) const
{
    QStringList paths = Paths();
    paths.removeAll(path);
    paths.prepend(path);
    Settings().setValue(kKey, paths.mid(0, kMost));
}
