// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/FitReading.h"
#include "fit/Remark.h"

#include <optional>

/// Rules that ask what lies around the estimate, or at the edge of what is searched.
namespace surface_remarks
{
using Said = std::optional<Remark>;

Said StockUnbounded(const FitReading& fit, FitSurface& surface); ///< ten times the stock does as well
Said AtBound(const FitReading& fit, const FitSurface& surface);  ///< an estimate at the edge
Said Oscillating(const FitReading& fit, FitSurface& surface);    ///< the biomass overshoots

/// The program's own starts reach a better fit than the typed ones did. Makes that fit, with a model of its
/// own.
Said BetterFitKnown(const FitReading& fit, const FitSurface& surface, clsVeltData& data);
} // namespace surface_remarks
