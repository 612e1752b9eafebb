// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ParameterReport.h"

#include "base/NumberText.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "fit/ParameterLimits.h"
#include "fit/clsMethManager.h"

#include <algorithm>

namespace
{
using number_text::Plain;

float ValueOf(const clsMethManager& manager, model_table::Input input)
{
    switch (input) {
    case model_table::Input::Mort:
        return manager.NaturalMortality();
    case model_table::Input::InitDep:
        return manager.InitialProportion();
    case model_table::Input::Lag:
        return manager.LAG();
    case model_table::Input::Z:
        return manager.Z();
    }
    RaiseInvalidArgument();
}

std::vector<ParameterReport::Row> Inputs(const clsMethManager& manager)
{
    std::vector<ParameterReport::Row> rows;
    for (const model_table::Input input : model_table::Of(manager.CurrMethType()).inputs)
        rows.push_back({LoadResString(model_table::CaptionIdOf(input)), Plain(ValueOf(manager, input))});
    return rows;
}

std::vector<ParameterReport::Row> Estimates(const clsMethManager& manager)
{
    std::vector<ParameterReport::Row> rows;
    for (const model_table::Quantity quantity : model_table::Of(manager.CurrMethType()).estimates)
        rows.push_back(
            {LoadResString(model_table::InfoOf(quantity).captionId), Plain(manager.Result(quantity))});
    return rows;
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

/// `sentence` on lines that a terminal shows whole, the later ones below its first word.
std::string Wrapped(const std::string& sentence)
{
    constexpr std::size_t kWidth = 78;
    const std::string indent = "  ";
    std::string text;
    for (const std::string& line :
         WrapText(indent + sentence, indent + ParameterReport::HangingOf(sentence),
                  [](const std::string& fitting) { return fitting.size() <= kWidth; }))
        text += line + "\n";
    return text;
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
        for (const ParameterLimits& p : LimitsOf(manager))
            report.intervals.push_back({p.name, Plain(p.low) + " - " + Plain(p.high)});
        report.intervalLevels = Plain(manager.CILow()) + " - " + Plain(manager.CIHigh());
    }
    for (const Remark& remark : manager.Remarks())
        report.remarks.push_back(std::to_string(report.remarks.size() + 1) + ". " + remark.text);
    return report;
}

std::string ParameterReport::HangingOf(const std::string& remark)
{
    return std::string(remark.find(' ') + 1, ' ');
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
    if (!remarks.empty())
        text += std::string("\n") + kRemarksHeading + "\n";
    for (const std::string& remark : remarks)
        text += Wrapped(remark);
    return text;
}
