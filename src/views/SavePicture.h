// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/// Asks where a picture goes and saves it; tells the user what stands against the name or the folder.
/// \param suggestion  a file name without ending \param endings of "png", "svg" and "pdf", the usual one
/// first \param save  writes the picture; false for a name that is none of a picture. \throws VeltError
/// otherwise
void AskAndSavePicture(QWidget& parent, const QString& title, const QString& suggestion,
                       const QStringList& endings, const std::function<bool(const QString& path)>& save);
