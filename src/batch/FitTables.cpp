// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/FitTables.h"

#include "batch/FitRequest.h"
#include "data/clsVeltData.h"
#include "fit/clsMethManager.h"

#include <array>
#include <cmath>
#include <span>
#include <utility>

namespace
{
std::optional<float> Present(float value)
{
    return value == clsVeltData::kMissing ? std::nullopt : std::optional<float>(value);
}

std::vector<NamedValue> EstimatesOf(const clsMethManager& manager)
{
    std::vector<NamedValue> estimates;
    for (const model_table::Quantity quantity : model_table::Of(manager.CurrMethType()).estimates)
        estimates.push_back({std::string(model_table::InfoOf(quantity).key), manager.Result(quantity)});
    return estimates;
}

FitTables::Period PeriodOf(const clsVeltData& data, const IMethod& method, const FitDetails& details, int row)
{
    FitTables::Period period;
    period.time = data.MinTimeP() + row - 1;
    period.included = data.Included(row);
    period.toggledIn = data.ToggledIn(row);
    period.effort = Present(data.Effort(row));
    period.obsCatch = Present(method.UsingNos() ? data.CatchNums(row) : data.CatchWt(row));
    period.nt = method.Nt(static_cast<std::int16_t>(row));
    if (!period.included)
        return period;
    const auto index = static_cast<std::size_t>(row - 1);
    period.obsCPUE = Present(data.ObsCPUE(row));
    period.expCPUE = Present(data.ExpCPUE(row));
    period.expCatch = method.UsingNos() ? data.ExpCatchNums(row) : data.ExpCatchWt(row);
    if (details.fittedExists && index < details.fitted.size())
        period.fittedVec = details.fitted[index];
    if (index < details.resid.size())
        period.residVec = details.resid[index];
    return period;
}
} // namespace

FitTables TablesOf(const clsMethManager& manager, const clsVeltData& data)
{
    const IMethod& method = *manager.Method();
    FitTables tables;
    tables.model = model_table::Of(manager.CurrMethType()).word;
    tables.errorModel = ErrorModelNames()[static_cast<std::size_t>(manager.ErrorModel() - 1)];
    tables.M = manager.NaturalMortality();
    tables.InitialProportion = manager.InitialProportion();
    tables.LAG = manager.LAG();
    tables.Z = manager.Z();
    tables.details = method.Details();
    tables.estimates = EstimatesOf(manager);
    tables.rSqr = manager.RSqr();
    for (int row = 1; row <= data.NAPoints(); ++row)
        tables.series.push_back(PeriodOf(data, method, tables.details, row));
    tables.timeAfter = data.MinTimeP() + data.NAPoints();
    tables.ntAfter = method.Nt(static_cast<std::int16_t>(data.NDPoints()));
    return tables;
}

void AddBootstraps(FitTables& tables, const clsMethManager& manager)
{
    const IMethod& method = *manager.Method();
    for (const model_table::Quantity quantity : model_table::Of(manager.CurrMethType()).limits) {
        const std::string name(model_table::InfoOf(quantity).key);
        const int parameter = model_table::InfoOf(quantity).bsParam;
        tables.intervals.push_back({name, manager.LowerCILimit(parameter), manager.UpperCILimit(parameter)});
        FitTables::Replicates replicates{name, {}};
        for (std::int32_t n = 1; n <= method.NumBootStraps(); ++n)
            replicates.values.push_back(method.BootStrap(parameter, n));
        tables.replicates.push_back(std::move(replicates));
    }
}
