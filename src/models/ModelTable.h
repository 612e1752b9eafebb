// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// What is known about a model besides its biology, in one place: fit manager, dialogs, report, tables and
/// command line walk it, so that a further model is a row here and a class.
namespace model_table
{
/// What a fit estimates, and behind it what is derived from the estimates.
enum class Quantity { N1, K, Q, Lambda, R, MSY, RYield, FinalPopulation, FinalBiomass };
inline constexpr int kQuantities = 9;
constexpr bool IsDerived(Quantity quantity)
{
    return quantity >= Quantity::MSY;
}

struct QuantityInfo {
    std::string_view key; ///< in JSON, tables and on the command line
    int captionId;        ///< string id of its name in the report
    int bsParam;          ///< its number in the table of bootstraps; 0 where none is kept
    int promptId = 0;     ///< string id of the question for its starting value, where it may stand alone
};
const QuantityInfo& InfoOf(Quantity quantity);

/// What the Input Parameters dialog asks.
enum class Input { Mort, InitDep, Lag, Z };
/// String id of its name in the report.
int CaptionIdOf(Input input);

struct Model {
    std::int32_t number;                 ///< `WhichMeth`
    int titleId;                         ///< string id of its title in lists
    std::string_view word;               ///< on the command line and in JSON
    std::span<const int> columns;        ///< that a data set must have, derived ones included
    std::int32_t minPoints;              ///< in the fit
    std::span<const Input> inputs;       ///< in the order of the report
    std::span<const Quantity> estimates; ///< in the order of FinalEsts and of the report
    std::span<const Quantity> limits;    ///< those with bootstraps, in the order of the report
    std::span<const Quantity> searched;  ///< by a minimiser; they take starting values

    bool regression; ///< least squares is solved directly: no search to start by hand or to watch

    bool Asks(Input input) const;
};

/// All models, number 1 first.
std::span<const Model> All();

/// \throws VeltError 9 for a number that is none of 1 to 6
const Model& Of(std::int32_t number);
} // namespace model_table
