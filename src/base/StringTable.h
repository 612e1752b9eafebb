// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Added to every id, so that a translation could stand beside the English texts; 0 in this build.
inline constexpr std::int16_t ResOffset = 0;

/// Number of texts in the table.
inline constexpr std::size_t kStringCount = 351;

/// The text of `id`, padding blanks included. \throws VeltError 5 when the table holds no such id: there is
/// no fallback text, a window with a missing caption must not open.
std::string LoadResString(int id);
