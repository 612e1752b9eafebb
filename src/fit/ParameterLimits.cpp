// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ParameterLimits.h"

#include "fit/clsMethManager.h"

std::vector<ParameterLimits> LimitsOf(const clsMethManager& manager)
{
    const modVeltGlobals::Globals& texts = manager.TheRun().globals;
    std::vector<ParameterLimits> all;
    const auto add = [&](const std::string& name, int parameter, float estimate) {
        all.push_back({name, static_cast<double>(estimate), manager.LowerCILimit(parameter),
                       manager.UpperCILimit(parameter)});
    };
    const bool production = models::IsProduction(manager.CurrMethType());
    const bool fromK = production || manager.CurrMethType() == models::kConstantRecruitment;
    if (fromK)
        add(texts.K, bs_param::kK, manager.K());
    else
        add(texts.N1, bs_param::kN1, manager.N1());
    add(texts.Q, bs_param::kQ, manager.Q());
    if (manager.CurrMethType() == models::kRecruitmentIndex)
        add(texts.Lambda, bs_param::kLambda, manager.Lambda());
    if (fromK)
        add(texts.ReplacementYield, bs_param::kRYield, manager.RYield());
    if (production) {
        add(texts.R, bs_param::kR, manager.R());
        add(texts.MSY, bs_param::kMSY, manager.MSY());
    }
    return all;
}
