// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Checked.h"
#include "base/NumberText.h"
#include "base/PrintWrapped.h"
#include "base/StringTable.h"
#include "base/Text.h"
#include "fit/ParameterReport.h"
#include "fit/clsMethManager.h"

#include <exception>
#include <string>
#include <vector>

namespace
{
using model_table::Input;
using number_text::Plain;
using Rows = std::vector<ParameterReport::Row>;

/// What the printed report says besides the window's: it asks the model itself.
struct PrintedReport {
    std::string name;
    std::string description;
    Rows head;
    Rows inputs;
    Rows estimates;
    ParameterReport shown; ///< limits and remarks, which it shares with the window
};

float ValueOf(const IMethod& method, Input input)
{
    switch (input) {
    case Input::Mort:
        return method.Mort();
    case Input::InitDep:
        return method.InitDep();
    case Input::Lag:
        return static_cast<float>(method.LAG());
    case Input::Z:
        return method.Z();
    }
    RaiseInvalidArgument();
}

Rows InputsOf(const IMethod& method)
{
    const std::span<const Input> asked = model_table::Of(method.WhichMeth()).inputs;
    std::vector<Input> inputs(asked.begin(), asked.end());
    if (method.WhichMeth() == models::kNoRecruitment)
        inputs.insert(inputs.begin(), Input::InitDep); // on paper alone. Deliberate.
    Rows rows;
    for (const Input input : inputs)
        rows.push_back({LoadResString(model_table::CaptionIdOf(input)), Plain(ValueOf(method, input))});
    return rows;
}

Rows EstimatesOf(IMethod& method)
{
    const std::vector<double> values = method.FinalEsts();
    const auto names = model_table::Of(method.WhichMeth()).estimates;
    Rows rows;
    for (std::size_t i = 0; i < names.size(); ++i)
        rows.push_back(
            {LoadResString(model_table::InfoOf(names[i]).captionId), Plain(checked::ToFloat(values.at(i)))});
    return rows;
}

PrintedReport ReportOf(const clsMethManager& manager, IMethod& method, const clsVeltData& data)
{
    const modVeltGlobals::Globals& texts = manager.TheRun().globals;
    return {.name = data.DSFName(),
            .description = Trim(data.DSDesc()),
            .head = {{texts.ModelTitle, texts.ModelTitles(method.WhichMeth())},
                     {texts.FitTitle, texts.FitOpTitles(method.FitOp())},
                     {texts.RSqrTitle, Plain(method.RSqr())}},
            .inputs = InputsOf(method),
            .estimates = EstimatesOf(method),
            .shown = ParameterReport::Of(manager)};
}

void PrintHeading(IPrintout& printout, const std::string& heading)
{
    printout.Bold(true);
    printout.Print(heading);
    printout.Bold(false);
}

void PrintRows(IPrintout& printout, const Rows& rows)
{
    for (const ParameterReport::Row& row : rows)
        printout.Print(row.name + "\t" + row.value);
}

void PrintLimits(IPrintout& printout, const ParameterReport& report)
{
    if (report.intervalLevels.empty())
        return;
    PrintHeading(printout, LoadResString(804) + "\t" + report.intervalLevels);
    PrintRows(printout, report.intervals);
    if (!report.remarks.empty())
        printout.Print("");
}

void PrintRemarks(IPrintout& printout, const ParameterReport& report)
{
    if (!report.remarks.empty())
        PrintHeading(printout, ParameterReport::kRemarksHeading);
    for (const std::string& remark : report.remarks)
        PrintWrapped(printout, remark, ParameterReport::HangingOf(remark));
}

void PrintReport(IPrintout& printout, const PrintedReport& report)
{
    printout.Bold(true);
    PrintWrapped(printout, report.name);
    PrintWrapped(printout, report.description);
    printout.Bold(false);
    printout.Print("");
    printout.Print("");
    PrintRows(printout, report.head);
    printout.Print("");
    printout.Print("");
    PrintHeading(printout, LoadResString(802));
    PrintRows(printout, report.inputs);
    printout.Print("");
    PrintHeading(printout, LoadResString(803));
    PrintRows(printout, report.estimates);
    printout.Print("");
    PrintLimits(printout, report.shown);
    PrintRemarks(printout, report.shown);
    printout.End();
}

} // namespace

void clsMethManager::PrintParameters(IPrinter& printer)
{
    const std::string unable = "Unable to Print Parameters";
    try {
        if (!m_methDefined)
            RaiseInvalidArgument();
        const PrintedReport report =
            ReportOf(*this, *m_method, *m_data); // whole before a printer is asked for
        if (const auto printout = printer.Open(LoadResString(801)))
            PrintReport(*printout, report);
    } catch (const PrinterFault& fault) {
        Say(unable + "\n\n" + fault.description, Icon::Critical);
    } catch (const std::exception&) {
        Say(unable, Icon::Critical);
    }
}
