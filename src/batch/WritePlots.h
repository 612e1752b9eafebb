// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of a fit. There are two sources behind this header: one that draws, and one for a program built
// without the desktop's libraries, which has no pictures and says so.
#pragma once

#include "batch/BatchWindow.h"

#include <string>

/// Whether this program can draw.
bool CanDraw();

/// Writes every graph, and the likelihood surface when there is one, into `directory` as PNG and as SVG:
/// "01-expected-and-observed-cpue.png", ... \throws BatchFailure BadUsage for a file that cannot be written,
/// or when this program cannot draw
void WritePlots(const BatchWindow& window, const std::string& directory);
