// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/FitReading.h"
#include "fit/Remark.h"

#include <optional>

/// Rules that look at the data and the estimates alone. Each gives its remark, or nothing.
namespace data_remarks
{
using Said = std::optional<Remark>;

Said OneWayTrip(const FitReading& fit);    ///< the catch rate only falls, or only rises
Said WorseThanMean(const FitReading& fit); ///< R squared below 0
Said StartRepaired(const FitReading& fit); ///< N1 or K is a doubled start, not the regression's
Said StockGone(const FitReading& fit);     ///< nothing, or next to nothing, is left at the end
/// \param parameters  those searched, with q
Said FewPeriods(int periodsInFit, int parameters);
Said GapInCatch(const FitReading& fit);  ///< a row inside the series without a total catch
Said IndexUnused(const FitReading& fit); ///< an abundance index that the fit never saw
Said PellaYield(const FitReading& fit);  ///< M.S.Y. is not the top of the yield curve

/// Included periods, toggled in or out, whose catch (or index) has no logarithm; none but under the log error
/// model.
std::vector<int> PeriodsWithoutLogarithm(const IMethod& method, const clsVeltData& data);
Said ZeroCatch(const IMethod& method, const clsVeltData& data);
} // namespace data_remarks
