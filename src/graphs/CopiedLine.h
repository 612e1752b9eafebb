// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>

/// One line of the numbers of a graph as a spreadsheet takes them: cells parted by tabs, ended by CR LF.
std::string CopiedLine(std::span<const std::string> cells);
