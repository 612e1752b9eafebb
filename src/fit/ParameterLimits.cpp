// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ParameterLimits.h"

#include "base/Checked.h"
#include "base/StringTable.h"
#include "fit/clsMethManager.h"

#include <cmath>
#include <limits>

std::vector<ParameterLimits> LimitsOf(const clsMethManager& manager)
{
    std::vector<ParameterLimits> all;
    for (const model_table::Quantity quantity : model_table::Of(manager.CurrMethType()).limits) {
        const model_table::QuantityInfo& info = model_table::InfoOf(quantity);
        all.push_back({LoadResString(info.captionId), static_cast<double>(manager.Result(quantity)),
                       manager.LowerCILimit(info.bsParam), manager.UpperCILimit(info.bsParam)});
    }
    return all;
}

float LevelOf(double entered)
{
    if (!(std::fabs(entered) <= static_cast<double>(std::numeric_limits<float>::max())))
        RaiseSubscript();
    return checked::ToFloat(entered);
}
