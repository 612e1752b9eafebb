// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/Estimates.h"

#include "base/VeltError.h"

double& Estimates::operator[](model_table::Quantity quantity)
{
    switch (quantity) {
    case model_table::Quantity::N1:
        return N1;
    case model_table::Quantity::K:
        return K;
    case model_table::Quantity::Q:
        return Q;
    case model_table::Quantity::Lambda:
        return Lambda;
    case model_table::Quantity::R:
        return R;
    default:
        RaiseInvalidArgument();
    }
}

double Estimates::operator[](model_table::Quantity quantity) const
{
    return Estimates(*this)[quantity];
}
