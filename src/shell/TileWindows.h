// SPDX-License-Identifier: GPL-3.0-or-later
// Where windows stand side by side.
#pragma once

#include <QRect>
#include <QSize>

#include <vector>

/// A screen and what of it is not to be covered. All rectangles are in pixels and with the windows' frames.
struct ScreenSpace {
    QRect screen;             ///< without the system's bars
    std::vector<QRect> taken; ///< windows that stay in sight; they may reach out of the screen
};

/// Places for `count` windows in the part of the screen that is not taken, in blocks of rows and columns, as
/// large as the space allows: none overlaps another, all lie inside the screen. They come in the order in
/// which one reads: from top to bottom, and from left to right where the tops are level.
///
/// \param least  below it a window is not readable; not empty
/// \param most   a window takes no more, so that room is left for others; at least `least`
/// \return nothing when there is no room for all of them
std::vector<QRect> TileWindows(const ScreenSpace& space, int count, QSize least, QSize most);
