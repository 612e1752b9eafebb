// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of a fit. There are two sources behind this header: one that draws, and one for a program built
// without the desktop's libraries, which has no pictures and says so.
#pragma once

#include "batch/BatchWindow.h"
#include "batch/ResultFiles.h"

#include <vector>

/// Whether this program can draw.
bool CanDraw();

/// Every graph, and the likelihood surface when there is one, as PNG and as SVG:
/// "01-expected-and-observed-cpue.png", ... \throws BatchFailure BadUsage for a graph that cannot be drawn,
/// or when this program cannot draw
std::vector<ResultFile> PicturesOf(const BatchWindow& window);
