// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

class ModelGraph;
class clsVeltData;

/// The column code of catch by effort among the data plots, behind the 15 columns.
inline constexpr std::int32_t kCPUECode = 16;

/// Asks the user for one of the present columns, or the catch rate where weight and effort are there.
/// \return its code, 0 for none
std::int32_t AskDataPlot(const clsVeltData& data);

/// The plot of a series against time: a gap where a period is not included or, in the catch rate, has no
/// effort. \pre the column of the code is present
std::shared_ptr<ModelGraph> DataPlot(const clsVeltData& data, std::int32_t code);
