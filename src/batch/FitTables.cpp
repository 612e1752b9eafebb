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

std::vector<NamedValue> EstimatesOf(const clsMethManager& m)
{
    switch (m.CurrMethType()) {
    case models::kNoRecruitment:
        return {{"N1", m.N1()}, {"Q", m.Q()}, {"FinalPopulation", m.FinalPopulation()}};
    case models::kRecruitmentIndex:
        return {
            {"N1", m.N1()}, {"Q", m.Q()}, {"Lambda", m.Lambda()}, {"FinalPopulation", m.FinalPopulation()}};
    case models::kConstantRecruitment:
        return {{"K", m.K()}, {"Q", m.Q()}, {"RYield", m.RYield()}, {"FinalPopulation", m.FinalPopulation()}};
    default:
        return {{"K", m.K()},     {"Q", m.Q()},           {"R", m.R()},
                {"MSY", m.MSY()}, {"RYield", m.RYield()}, {"FinalBiomass", m.FinalBiomass()}};
    }
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

std::span<const std::pair<const char*, int>> IntervalParameters(std::int32_t model)
{
    using Row = std::pair<const char*, int>;
    static constexpr std::array<Row, 2> kClosed{Row{"N1", bs_param::kN1}, {"Q", bs_param::kQ}};
    static constexpr std::array<Row, 3> kIndex{
        Row{"N1", bs_param::kN1}, {"Q", bs_param::kQ}, {"Lambda", bs_param::kLambda}};
    static constexpr std::array<Row, 3> kConstant{
        Row{"K", bs_param::kK}, {"Q", bs_param::kQ}, {"RYield", bs_param::kRYield}};
    static constexpr std::array<Row, 5> kProduction{Row{"K", bs_param::kK},
                                                    {"Q", bs_param::kQ},
                                                    {"RYield", bs_param::kRYield},
                                                    {"R", bs_param::kR},
                                                    {"MSY", bs_param::kMSY}};
    if (model == models::kNoRecruitment)
        return kClosed;
    if (model == models::kRecruitmentIndex)
        return kIndex;
    if (model == models::kConstantRecruitment)
        return kConstant;
    return kProduction;
}
} // namespace

FitTables TablesOf(const clsMethManager& manager, const clsVeltData& data)
{
    const IMethod& method = *manager.Method();
    FitTables tables;
    tables.model = ModelNames()[static_cast<std::size_t>(manager.CurrMethType() - 1)];
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
    for (const auto& [name, parameter] : IntervalParameters(manager.CurrMethType())) {
        tables.intervals.push_back({name, manager.LowerCILimit(parameter), manager.UpperCILimit(parameter)});
        FitTables::Replicates replicates{name, {}};
        for (std::int32_t n = 1; n <= method.NumBootStraps(); ++n)
            replicates.values.push_back(method.BootStrap(parameter, n));
        tables.replicates.push_back(std::move(replicates));
    }
}
