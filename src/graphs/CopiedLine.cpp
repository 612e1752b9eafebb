// SPDX-License-Identifier: GPL-3.0-or-later
#include "graphs/CopiedLine.h"

std::string CopiedLine(std::span<const std::string> cells)
{
    std::string text;
    for (const std::string& cell : cells)
        text += (&cell == cells.data() ? "" : "\t") + cell;
    return text + "\r\n";
}
