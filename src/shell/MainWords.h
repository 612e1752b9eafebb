// SPDX-License-Identifier: GPL-3.0-or-later
// What the main window says of itself and of what is brought to it.
#pragma once

#include "base/Ports.h"

#include <QString>

class QMimeData;
class clsVeltData;

namespace main_words
{
/// Version, what the program is for, how to cite it, and its licence.
Message About();

/// The title of the main window. \param data  null while no data set is open
QString Caption(const clsVeltData* data);

/// What stands in place of a table that has nothing to show.
QString Hint(bool fileOpen);

/// The one file that a drag carries when this version can open it; else empty.
QString FileIn(const QMimeData& mime);
} // namespace main_words
