// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/RecentFiles.h"

#include "shell/DesktopSettings.h"

namespace
{
const QString kKey = QStringLiteral("recentFiles");
} // namespace

QStringList RecentFiles::Paths() const
{
    return DesktopSettings().value(kKey).toStringList().mid(0, kMost);
}

void RecentFiles::Note(const QString& path) const
{
    QStringList paths = Paths();
    paths.removeAll(path);
    paths.prepend(path);
    DesktopSettings().setValue(kKey, paths.mid(0, kMost));
}
