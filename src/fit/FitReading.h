// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"
#include "models/IMethod.h"

#include <string>
#include <vector>

/// A fit as the remarks look at it: its estimates by meaning, and the series that it was fitted to.
struct FitReading {
    const IMethod& method;
    const clsVeltData& data;
    std::int32_t model = 0;
    std::int32_t fitOp = 0;
    double stock = 0.0;  ///< N1 or K
    double q = 0.0;      ///< catchability
    double second = 0.0; ///< Lambda or r; 0 in a model without either
    double msy = 0.0;    ///< of a production model
    double firstStock = 0.0;
    double finalStock = 0.0;

    bool IsProduction() const { return models::IsProduction(model); }
    bool HasSecond() const;
    /// Names as the report has them.
    std::string StockName() const;
    std::string SecondName() const;

    int Periods() const { return data.NAPoints(); } ///< of the fit's data, in the fit or not
    bool InFit(int period) const { return data.Included(period) && data.ToggledIn(period); }
    float Catch(int period) const;
    float TotalCatch(int period) const;
    double TotalCatchSum() const; ///< over all periods with a total catch
};

/// The reading of a fit. Runs the model's trajectory on its final estimates.
FitReading ReadFit(IMethod& method, const clsVeltData& data);

namespace remark_text
{
/// A number for a sentence: four significant digits.
std::string Short(double value);
/// Time labels of rows, "1975, 1981 and 1990"; of more than eight only the first ones.
std::string Labels(const std::vector<int>& rows, const clsVeltData& data);
/// "a", "a and b", "a, b and c"
std::string Listed(const std::vector<std::string>& items);
} // namespace remark_text
