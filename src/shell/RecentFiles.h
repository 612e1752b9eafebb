// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The files that were opened or saved last, the latest first, kept in the settings of the user's desktop.
class RecentFiles
{
public:
    static constexpr int kMost = 8;

    QStringList Paths() const;
    void Note(const QString& path) const;
};
