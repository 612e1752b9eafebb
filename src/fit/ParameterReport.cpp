// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ParameterReport.h"

#include "base/NumberText.h"
#include "base/StringTable.h"
#include "fit/clsMethManager.h"

#include <algorithm>
#include <utility>

namespace
{
using number_text::Plain;

std::vector<ParameterReport::Row> Inputs(const clsMethManager& manager)
{
    const modVeltGlobals::Globals& texts = manager.TheRun().globals;
    std::vector<ParameterReport::Row> rows;
    if (models::IsProduction(manager.CurrMethType())) {
        rows = {{texts.InitProportion, Plain(manager.InitialProportion())},
                {texts.TimeLag, Plain(manager.LAG())}};
        if (manager.CurrMethType() == models::kPellaTomlinson)
            rows.push_back({texts.ZShape, Plain(manager.Z())});
        return rows;
    }
    rows = {{texts.NatMortality, Plain(manager.NaturalMortality())}};
    if (manager.CurrMethType() == models::kConstantRecruitment)
        rows.push_back({texts.InitProportion, Plain(manager.InitialProportion())});
    return rows;
}

std::vector<ParameterReport::Row> Estimates(const clsMethManager& manager)
{
    const modVeltGlobals::Globals& texts = manager.TheRun().globals;
    const ParameterReport::Row q{texts.Q, Plain(manager.Q())};
    const ParameterReport::Row finalPopulation{texts.FinalPopulation, Plain(manager.FinalPopulation())};
    const ParameterReport::Row replacementYield{texts.ReplacementYield, Plain(manager.RYield())};
    switch (manager.CurrMethType()) {
    case models::kNoRecruitment:
        return {{texts.N1, Plain(manager.N1())}, q, finalPopulation};
    case models::kRecruitmentIndex:
        return {{texts.N1, Plain(manager.N1())}, q, {texts.Lambda, Plain(manager.Lambda())}, finalPopulation};
    case models::kConstantRecruitment:
        return {{texts.K, Plain(manager.K())}, q, replacementYield, finalPopulation};
    default:
        return {{texts.K, Plain(manager.K())},
                q,
                {texts.R, Plain(manager.R())},
                {texts.MSY, Plain(manager.MSY())},
                replacementYield,
                {texts.FinalBiomass, Plain(manager.FinalBiomass())}};
    }
}

/// The parameters that have limits, in the order of the block. In a production model the replacement yield
/// stands before r here and after MSY among the estimates. Deliberate.
std::vector<std::pair<std::string, int>> IntervalParameters(const clsMethManager& manager)
{
    const modVeltGlobals::Globals& texts = manager.TheRun().globals;
    switch (manager.CurrMethType()) {
    case models::kNoRecruitment:
        return {{texts.N1, bs_param::kN1}, {texts.Q, bs_param::kQ}};
    case models::kRecruitmentIndex:
        return {{texts.N1, bs_param::kN1}, {texts.Q, bs_param::kQ}, {texts.Lambda, bs_param::kLambda}};
    case models::kConstantRecruitment:
        return {
            {texts.K, bs_param::kK}, {texts.Q, bs_param::kQ}, {texts.ReplacementYield, bs_param::kRYield}};
    default:
        return {{texts.K, bs_param::kK},
                {texts.Q, bs_param::kQ},
                {texts.ReplacementYield, bs_param::kRYield},
                {texts.R, bs_param::kR},
                {texts.MSY, bs_param::kMSY}};
    }
}

void AppendBlock(std::string& text, const std::string& heading, const std::vector<ParameterReport::Row>& rows)
{
    if (rows.empty())
        return;
    std::size_t width = 0;
    for (const ParameterReport::Row& row : rows)
        width = std::max(width, row.name.size());
    text += heading.empty() ? "\n" : "\n" + heading + "\n";
    for (const ParameterReport::Row& row : rows)
        text += "  " + row.name + std::string(width - row.name.size() + 2, ' ') + row.value + "\n";
}
} // namespace

ParameterReport ParameterReport::Of(const clsMethManager& manager)
{
    const modVeltGlobals::Globals& texts = manager.TheRun().globals;
    ParameterReport report;
    report.modelTitle = texts.ModelTitles(manager.CurrMethType());
    report.fitTitle = texts.FitOpTitles(manager.ErrorModel());
    report.rSqr = number_text::Fixed(static_cast<double>(manager.RSqr()), 3);
    report.inputs = Inputs(manager);
    report.estimates = Estimates(manager);
    if (manager.IsBSDone()) {
        for (const auto& [name, parameter] : IntervalParameters(manager))
            report.intervals.push_back({name, Plain(manager.LowerCILimit(parameter)) + " - " +
                                                  Plain(manager.UpperCILimit(parameter))});
        report.intervalLevels = Plain(manager.CILow()) + " - " + Plain(manager.CIHigh());
    }
    return report;
}

std::string ParameterReport::AsText() const
{
    std::string text = LoadResString(801) + "\n";
    AppendBlock(
        text, "",
        {{LoadResString(1869), modelTitle}, {LoadResString(1868), fitTitle}, {LoadResString(1865), rSqr}});
    AppendBlock(text, LoadResString(802), inputs);
    AppendBlock(text, LoadResString(803), estimates);
    AppendBlock(text, LoadResString(804) + "  " + intervalLevels, intervals);
    return text;
}
