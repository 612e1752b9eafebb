// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/LogFit.h"

#include "base/Checked.h"

#include <cmath>
#include <limits>
#include <numbers>

using checked::Div;
using checked::Ln;
using checked::ToFloat;

namespace
{
/// ln of mantissa 2^exponent, mantissa from 1/2 to below 1; to the bit the logarithm of the plain product
/// wherever that is in range.
double LnOfScaled(double mantissa, long exponent)
{
    using Limits = std::numeric_limits<double>;
    if (exponent >= Limits::min_exponent && exponent <= Limits::max_exponent)
        return std::log(std::ldexp(mantissa, static_cast<int>(exponent)));
    return std::log(mantissa) + static_cast<double>(exponent) * std::numbers::ln2;
}
} // namespace

double LnFitComputeQ(const ModelState& m)
{
    double product = 1.0; // its binary exponent is carried apart: a long series must not overflow
    long exponent = 0;
    int n = 0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.ToggledIn(i))
            continue;
        if (m.EffMidPop(i) == 0.0)
            return 0.0; // an underflowed period
        int shift = 0;
        product = std::frexp(product * m.CatchVector(i) / m.EffMidPop(i), &shift);
        exponent += shift;
        ++n;
    }
    if (!(product > 0.0) || n == 0)
        return 0.0;
    return checked::Exp(LnOfScaled(product, exponent) / n);
}

float LnVarForMinimisation(const ModelState& m)
{
    const int periods = m.NAPoints();
    const auto toggledIn = m.data->ToggledIn().All();
    const auto catches = m.CatchVector.All();
    const auto expected = m.EffMidPop.All();
    float sumC = 0.0F;
    float sumX = 0.0F;
    float sumL = 0.0F;
    double sumSq = 0.0;
    int n = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(periods); ++i) {
        if (!toggledIn[i] || !(expected[i] > 0.0))
            continue;
        const double l = Ln(catches[i] / expected[i]);
        sumC = ToFloat(static_cast<double>(sumC) + catches[i]);
        sumX = ToFloat(sumX + expected[i]);
        sumL = ToFloat(sumL + l);
        sumSq += l * l;
        ++n;
    }
    // The ratio serves nothing; it only must not fail, and so it finds a trajectory without any stock.
    Div(sumC, sumX);
    const double mean = static_cast<double>(sumL) / n;
    return ToFloat(sumSq / n - mean * mean);
}

void FillLogResiduals(ModelState& m, double q, const std::function<double(int)>& meanPop)
{
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.Included(i))
            continue;
        m.FittedVec(i) = ToFloat(Ln(q) + Ln(m.Effort(i)) + Ln(meanPop(i)));
        m.ResidVec(i) = ToFloat(Ln(m.CatchVector(i)) - m.FittedVec(i));
    }
}
