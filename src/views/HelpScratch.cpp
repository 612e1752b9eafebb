// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/HelpScratch.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace
{
const QString kFolders = QStringLiteral("velt-help-XXXXXX");
const QString kLock = QStringLiteral("lock");

std::unique_ptr<QLockFile> NewLock(const QString& folder)
{
    auto lock = std::make_unique<QLockFile>(folder + '/' + kLock);
    lock->setStaleLockTime(0); // its age says nothing: the manual may stay open for days
    return lock;
}

/// The lock ends with its program, however that ended. A folder without one is just being made.
void RemoveLeftovers(const QString& place)
{
    const QDir dir(place);
    for (const QString& name : dir.entryList({QString(kFolders).replace('X', '?')}, QDir::Dirs)) {
        const QString folder = dir.filePath(name);
        if (QFile::exists(folder + '/' + kLock) && NewLock(folder)->tryLock(0))
            QDir(folder).removeRecursively();
    }
}
} // namespace

QStringList HelpScratch::UsualPlaces()
{
    return {QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/velt3",
            QDir::tempPath()};
}

HelpScratch::HelpScratch(const QString& place)
{
    if (!QDir().mkpath(place))
        return;
    RemoveLeftovers(place);
    auto folder = std::make_unique<QTemporaryDir>(place + '/' + kFolders);
    if (!folder->isValid())
        return;
    auto lock = NewLock(folder->path());
    if (!lock->tryLock(0)) // a full disk takes a folder and no file
        return;
    m_folder = std::move(folder);
    m_lock = std::move(lock);
}
