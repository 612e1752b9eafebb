// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

/// Rank correlation of `values` with their order (Spearman 1904), from -1 to 1: the correlation of the ranks,
/// equal values sharing the mean of their ranks. 0 when nothing varies.
double RankCorrelationWithOrder(std::span<const double> values);
