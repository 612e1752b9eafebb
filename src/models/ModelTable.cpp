// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ModelTable.h"

#include "base/VeltError.h"
#include "data/Columns.h"
#include "models/IMethod.h"

#include <algorithm>
#include <array>

namespace model_table
{
namespace
{
using enum Quantity;

constexpr std::array<QuantityInfo, kQuantities> kInfos{{{"N1", 1890, bs_param::kN1, 1602},
                                                        {"K", 1896, bs_param::kK, 1603},
                                                        {"Q", 1891, bs_param::kQ},
                                                        {"Lambda", 1893, bs_param::kLambda},
                                                        {"R", 1897, bs_param::kR},
                                                        {"MSY", 1898, bs_param::kMSY},
                                                        {"RYield", 1894, bs_param::kRYield},
                                                        {"FinalPopulation", 1892, 0},
                                                        {"FinalBiomass", 1895, 0}}};

constexpr std::array kNumbers{columns::Effort, columns::CatchNums, columns::TotCatchNums};
constexpr std::array kNumbersAndRecruits{columns::Effort, columns::CatchNums, columns::TotCatchNums,
                                         columns::RecruitIndex};
constexpr std::array kWeights{columns::Effort, columns::CatchWt, columns::TotCatchWt};

constexpr std::array kMort{Input::Mort};
constexpr std::array kMortAndStart{Input::Mort, Input::InitDep};
constexpr std::array kProduction{Input::InitDep, Input::Lag};
constexpr std::array kShapedProduction{Input::InitDep, Input::Lag, Input::Z};

constexpr std::array kClosedEstimates{N1, Q, FinalPopulation};
constexpr std::array kIndexEstimates{N1, Q, Lambda, FinalPopulation};
constexpr std::array kConstantEstimates{K, Q, RYield, FinalPopulation};
constexpr std::array kProductionEstimates{K, Q, R, MSY, RYield, FinalBiomass};

constexpr std::array kClosedLimits{N1, Q};
constexpr std::array kIndexLimits{N1, Q, Lambda};
constexpr std::array kConstantLimits{K, Q, RYield};
// The replacement yield stands before r here and behind MSY among the estimates. Deliberate.
constexpr std::array kProductionLimits{K, Q, RYield, R, MSY};

constexpr std::array kSearchN1{N1};
constexpr std::array kSearchN1Lambda{N1, Lambda};
constexpr std::array kSearchK{K};
constexpr std::array kSearchKR{K, R};

constexpr std::array<Model, models::kCount> kModels{
    {{models::kNoRecruitment, 1812, "no-recruitment", kNumbers, 2, kMort, kClosedEstimates, kClosedLimits,
      kSearchN1, true},
     {models::kRecruitmentIndex, 1813, "recruitment-index", kNumbersAndRecruits, 3, kMort, kIndexEstimates,
      kIndexLimits, kSearchN1Lambda, true},
     {models::kConstantRecruitment, 1814, "constant-recruitment", kNumbers, 2, kMortAndStart,
      kConstantEstimates, kConstantLimits, kSearchK, true},
     {models::kFox, 1815, "fox", kWeights, 3, kProduction, kProductionEstimates, kProductionLimits, kSearchKR,
      false},
     {models::kSchaefer, 1816, "schaefer", kWeights, 3, kProduction, kProductionEstimates, kProductionLimits,
      kSearchKR, false},
     {models::kPellaTomlinson, 1817, "pella-tomlinson", kWeights, 3, kShapedProduction, kProductionEstimates,
      kProductionLimits, kSearchKR, false}}};
} // namespace

const QuantityInfo& InfoOf(Quantity quantity)
{
    return kInfos[static_cast<std::size_t>(quantity)];
}

int CaptionIdOf(Input input)
{
    switch (input) {
    case Input::Mort:
        return 1887;
    case Input::InitDep:
        return 1888;
    case Input::Lag:
        return 1889;
    case Input::Z:
        return 1886;
    }
    RaiseInvalidArgument();
}

bool Model::Asks(Input input) const
{
    return std::find(inputs.begin(), inputs.end(), input) != inputs.end();
}

std::span<const Model> All()
{
    return kModels;
}

const Model& Of(std::int32_t number)
{
    if (number < 1 || number > models::kCount)
        RaiseSubscript();
    return kModels[static_cast<std::size_t>(number - 1)];
}
} // namespace model_table
