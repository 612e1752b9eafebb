// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/FailureHints.h"

#include "base/VeltError.h"
#include "fit/DataRemarks.h"
#include "models/ModelTable.h"

namespace
{
using remark_text::Labels;

/// A subscript says nothing to a user; here the table or the lag is the cause.
std::string OnSubscript(const clsVeltData& data, const IMethod* method)
{
    // The population has one entry more than there are periods, and no more room than the table.
    constexpr std::int32_t kMostPeriods = clsVeltData::kRows - 1;
    const std::string periods = std::to_string(data.NAPoints()) + " periods";
    if (data.NAPoints() > kMostPeriods)
        return "The table has " + periods + " and at most " + std::to_string(kMostPeriods) +
               " can be fitted. Take a row out of the table.";
    if (method != nullptr && method->LAG() > data.NAPoints())
        return "The time lag is longer than the " + periods + " of the table. Choose a shorter one.";
    return {};
}

/// Periods in the fit where `value` is 0 or, as far as it is there at all, below.
template <typename Value>
std::string PeriodsNotAboveZero(const IMethod& method, const clsVeltData& data, Value value)
{
    const FitReading fit{.method = method, .data = data};
    std::vector<int> rows;
    for (int t = 1; t <= fit.Periods(); ++t) {
        if (fit.InFit(t) && !(value(fit, t) > 0.0F))
            rows.push_back(t);
    }
    return rows.empty() ? std::string() : Labels(rows, data);
}

std::string PeriodsWithoutCatch(const IMethod& method, const clsVeltData& data)
{
    return PeriodsNotAboveZero(method, data, [](const FitReading& fit, int t) { return fit.Catch(t); });
}

std::string OnInvalidArgument(const IMethod& method, const clsVeltData& data)
{
    std::string hint = "It was the logarithm or a power of a number that has none.";
    if (const std::string periods = PeriodsWithoutCatch(method, data); !periods.empty())
        hint += " Look at the catch of " + periods + ", which is not above 0.";
    const bool hasProportion = model_table::Of(method.WhichMeth()).Asks(model_table::Input::InitDep);
    if (hasProportion && !(method.InitDep() > 0.0F))
        hint += " The initial proportion must be above 0.";
    return hint;
}

std::string OnDivisionByZero(const IMethod& method, const clsVeltData& data)
{
    if (method.FitOp() == fit_op::kWeightedLeastSquares && data.ColPresent(columns::VarAbundIndex)) {
        const std::string periods = PeriodsNotAboveZero(
            method, data, [](const FitReading& fit, int t) { return fit.data.VarAbundIndex(t); });
        if (!periods.empty())
            return "A variance of zero is no weight: look at " + periods + ".";
    }
    if (const std::string periods = PeriodsWithoutCatch(method, data); !periods.empty())
        return "Look for zeros in the table: the catch of " + periods + " is not above 0.";
    if (method.WhichMeth() == models::kRecruitmentIndex && fit_op::IsLeastSquares(method.FitOp()))
        return "The stock that the regression found does not survive the catches. Try the log or the gamma "
               "error model.";
    if (method.SetStartingEsts() && !(method.Nt(static_cast<std::int16_t>(data.NDPoints())) > 0.0F))
        return "The stock of these starting values does not survive the catches. Give a larger one.";
    if (method.FitOp() == fit_op::kGamma)
        return "The gamma error model needs some scatter: it has no start where the catches follow the model "
               "exactly.";
    return {};
}

/// The titles of the columns that the model needs and the data set lacks.
std::string Lacking(const clsVeltData& data, std::int32_t model)
{
    std::string titles;
    for (const int column : model_table::Of(model).columns)
        if (!data.ColPresent(column))
            titles += (titles.empty() ? "" : ", ") + data.TheRun().globals.ColumnDisplayNames(column);
    return titles;
}
} // namespace

std::string HintOnNoModel(const clsVeltData& data)
{
    return "Missing for the production models: " + Lacking(data, models::kSchaefer) +
           ".\nMissing for the models in numbers: " + Lacking(data, models::kConstantRecruitment) +
           ".\n\nInsert them in Edit Mode, or assign them when the table is imported.";
}

std::string HintOn(const VeltError& error, const clsVeltData& data, const IMethod* method)
{
    if (error.IsUserCancel())
        return {};
    if (error.number == errors::kSubscript)
        return OnSubscript(data, method);
    if (method == nullptr)
        return {};
    if (const auto zeroCatch = data_remarks::ZeroCatch(*method, data))
        return zeroCatch->text;
    switch (error.number) {
    case errors::kOverflow:
        return "A number grew beyond 3.4e38. Give the data in larger units, and look at the starting values "
               "and "
               "at Z; replicates of an estimate without a bound fail like this too.";
    case errors::kInvalidArgument:
        return OnInvalidArgument(*method, data);
    case errors::kDivisionByZero:
        return OnDivisionByZero(*method, data);
    default:
        return {};
    }
}
