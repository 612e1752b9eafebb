// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/StringTable.h"

#include <QString>

/// The text of `id` for a widget. \throws VeltError 5 when the table holds no such id
inline QString Words(int id)
{
    return QString::fromStdString(LoadResString(id));
}
