// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/CellFont.h"

#include <QApplication>
#include <QFont>

/// The font as the toolkit knows it; the default one is that of the application.
inline QFont FontOf(const CellFont& font)
{
    if (font.IsDefault())
        return QApplication::font();
    QFont shown(font.name == CellFont::kDefaultName ? QApplication::font().family()
                                                    : QString::fromStdString(font.name));
    shown.setPointSizeF(font.size);
    shown.setBold(font.bold);
    shown.setItalic(font.italic);
    return shown;
}
