// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/ModelTable.h"

/// One set of estimates, in 64 bits. A model has those that its row of the model table names; the others
/// stay 0.
struct Estimates {
    double N1 = 0.0;     ///< population at the start of period 1
    double K = 0.0;      ///< unexploited stock, or carrying capacity
    double Q = 0.0;      ///< catchability per unit of effort
    double Lambda = 0.0; ///< recruits per unit of the recruitment index
    double R = 0.0;      ///< intrinsic growth rate per period
    double Var = 0.0;    ///< dispersion of the error model

    /// The value of an estimated quantity. \throws VeltError 5 for one that is derived (a yield, the final
    /// stock)
    double& operator[](model_table::Quantity quantity);
    double operator[](model_table::Quantity quantity) const;

    bool operator==(const Estimates&) const = default;
};
