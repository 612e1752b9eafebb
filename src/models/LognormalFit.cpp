// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/LognormalFit.h"

#include "base/Checked.h"

#include <algorithm>
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

namespace
{
struct LogSpread {
    float variance = 0.0F;
    bool leftOut = false; ///< a period in the fit expects no catch
};

LogSpread SpreadOfLogs(const ModelState& m)
{
    const auto periods = static_cast<std::size_t>(m.NAPoints());
    const auto toggledIn = m.data->ToggledIn().All();
    const auto catches = m.CatchVector.All();
    const auto expected = m.EffMidPop.All();
    double sumC = 0.0;
    double sumX = 0.0;
    double first = 0.0;
    double sum = 0.0; // both sums of l - first: the l of a good fit differ by less than their own size
    double sumSq = 0.0;
    int n = 0;
    bool leftOut = false;
    for (std::size_t i = 0; i < periods; ++i) {
        if (!toggledIn[i])
            continue;
        if (!(expected[i] > 0.0)) {
            leftOut = true;
            continue;
        }
        const double l = Ln(catches[i] / expected[i]);
        if (n == 0)
            first = l;
        sumC += catches[i];
        sumX += expected[i];
        sum += l - first;
        sumSq += (l - first) * (l - first);
        ++n;
    }
    // The ratio serves nothing; it only must not fail, and so it finds a trajectory without any stock.
    Div(sumC, sumX);
    const double mean = sum / n;
    return {ToFloat(std::max(0.0, sumSq / n - mean * mean)), leftOut};
}
} // namespace

float LnVarForMinimisation(const ModelState& m)
{
    return SpreadOfLogs(m).variance;
}

float LnVarOfEvaluation(ModelState& m)
{
    const LogSpread spread = SpreadOfLogs(m);
    m.CatchUnexpected = spread.leftOut;
    return spread.variance;
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
