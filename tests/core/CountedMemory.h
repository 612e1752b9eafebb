// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// How often this program has asked for memory. A program that links CountedMemory.cpp has its memory
/// operators replaced by counting ones.
long RequestsForMemory();
