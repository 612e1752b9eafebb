// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// How often this program has asked for memory. A program that links CountedMemory.cpp has its memory
/// operators replaced by counting ones.
long RequestsForMemory();

/// Bytes that the memory operators have handed out and not got back.
long BytesHeld();

/// The most bytes held at once since the last call of ForgetPeak, or since the start.
long MostBytesHeld();
void ForgetPeak();
