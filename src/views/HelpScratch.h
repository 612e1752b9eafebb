// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A folder of this program alone for what the help engine writes, its collection and its search index. They
/// are made anew for each program that opens the manual: so they always belong to the manual that is
/// installed, and two programs at once never meet in one file. It goes with this object; what a crash left
/// behind goes when the next program opens the manual.
class HelpScratch
{
public:
    /// Makes the folder in the folder `place`, which is made too where it can be.
    explicit HelpScratch(const QString& place);

    /// Where to try: the user's cache folder, then the one for temporary files.
    static QStringList UsualPlaces();

    bool IsValid() const { return m_lock != nullptr; }
    QString Path(const QString& name) const { return m_folder->filePath(name); }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QLockFile> m_lock; ///< behind the folder: it lies in it
};
