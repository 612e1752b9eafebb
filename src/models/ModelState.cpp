// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ModelState.h"

#include "base/Checked.h"

#include <cmath>
#include <utility>

using checked::Div;
using checked::Ln;
using checked::Sqrt;
using checked::ToFloat;

int ModelState::LastState() const
{
    const int last = NDPoints();
    if (last < 1 || last > clsVeltData::kRows)
        RaiseSubscript();
    return last;
}

void LoadColumnRefs(ModelState& m)
{
    clsVeltData& data = *m.data;
    m.ObsTCatchRef = m.UsingNosFlag ? data.TotCatchNums() : data.TotCatchWt();
    m.CatchRef = m.ObsTCatchRef;
    m.CatchVector = m.UsingNosFlag ? data.CatchNums() : data.CatchWt();
    int periods = 0;
    int inFit = 0;
    for (int i = 1; i <= clsVeltData::kRows; ++i) {
        if (m.ObsTCatchRef(i) == clsVeltData::kMissing)
            continue;
        ++periods;
        data.Include(i, std::isfinite(data.Effort(i)) && data.Effort(i) > 0.0F);
        if (data.ToggledIn(i))
            ++inFit;
    }
    data.NAPoints(periods);
    data.NNtPoints(inFit);
    data.NDPoints(periods + 1);
}

void SumDiscountedCatches(ModelState& m)
{
    const double survival = std::exp(-static_cast<double>(m.Mort));
    m.TotCatchSum = m.CatchSum = m.EffortSqSum = 0.0F;
    m.DiscCatch(1) = 0.0F;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        const float total = m.CatchRef(i) > 0.0F ? m.CatchRef(i) : 0.0F;
        m.TotCatchSum = ToFloat(static_cast<double>(m.TotCatchSum) + total);
        if (m.ToggledIn(i)) {
            m.CatchSum = ToFloat(static_cast<double>(m.CatchSum) + m.CatchVector(i));
            m.EffortSqSum = ToFloat(m.EffortSqSum + m.Effort(i) * m.Effort(i));
        }
        m.DiscCatch(i + 1) = ToFloat(m.DiscCatch(i) * survival + total);
    }
}

void CalcThetaVecOf(ModelState& m)
{
    if (m.FitOp != fit_op::kGamma || m.PopUnderflow)
        return;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.ToggledIn(i))
            continue;
        const double ratio = Div(m.CatchVector(i) * m.EffMidPopSum, m.CatchSum * m.EffMidPop(i));
        m.ThetaVec(i) = ratio > 0.0 ? ToFloat(std::log(ratio)) : 0.0F;
    }
}

namespace
{
/// The value of a catch on the scale on which an error model compares.
double OnScale(std::int32_t fitOp, float value)
{
    if (fitOp == fit_op::kLog)
        return Ln(value);
    if (fitOp == fit_op::kGamma)
        return Sqrt(value);
    return value;
}

/// Variance over the periods toggled in, of the observations or of the residuals.
double CatchVariance(const ModelState& m, bool useObs)
{
    double sum = 0.0;
    double sumSq = 0.0;
    int n = 0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.ToggledIn(i))
            continue;
        double v = OnScale(m.FitOp, m.CatchVector(i));
        if (!useObs)
            v -= OnScale(m.FitOp, m.ExpCatchVec(i));
        sum += v;
        sumSq += v * v;
        ++n;
    }
    if (n == 0)
        return 0.0;
    const double mean = sum / n;
    return sumSq / n - mean * mean;
}
} // namespace

float RSquaredOf(const ModelState& m)
{
    const double residuals = CatchVariance(m, false);
    const double observations = CatchVariance(m, true);
    return observations > 0.0 ? ToFloat(1.0 - residuals / observations) : 0.0F;
}

namespace
{
constexpr float kLeastCatchRate = 0.0001F; ///< stands for an expected catch rate that is not above 0

/// The series of the model's own unit as the data set holds them now.
void TakeStoredSeries(ModelState& m)
{
    const clsVeltData& data = *m.data;
    m.PopVec = m.UsingNosFlag ? data.PopNums() : data.PopWt();
    m.ExpCatchVec = m.UsingNosFlag ? data.ExpCatchNums() : data.ExpCatchWt();
    m.ObsCatchRef = m.UsingNosFlag ? data.CatchNums() : data.CatchWt();
    m.ObsTCatchRef = m.UsingNosFlag ? data.TotCatchNums() : data.TotCatchWt();
}

/// Where there is a mean weight: biomass beside the numbers of the no-recruitment model, numbers beside the
/// biomass of a production model. The period behind the last one takes the last one's weight.
void WriteOtherUnit(ModelState& m)
{
    clsVeltData& data = *m.data;
    if (!data.ColPresent(columns::MeanWt))
        return;
    data.MeanWt(m.NDPoints(), data.MeanWt(m.NAPoints()));
    if (!data.ColPresent(columns::PopWt) && m.WhichMeth == models::kNoRecruitment) {
        data.ColPresent(columns::PopWt, true);
        for (int i = 1; i <= m.NDPoints(); ++i)
            data.PopWt(i, ToFloat(static_cast<double>(m.PopVec(i)) * data.MeanWt(i)));
        data.FormatFilled(columns::PopWt);
    }
    if (!data.ColPresent(columns::PopNums) && models::IsProduction(m.WhichMeth)) {
        data.ColPresent(columns::PopNums, true);
        for (int i = 1; i <= m.NDPoints(); ++i)
            data.PopNums(i, ToFloat(Div(m.PopVec(i), data.MeanWt(i))));
        data.FormatFilled(columns::PopNums);
    }
}

/// Population and expected catch in the model's own unit, all 200 entries.
void StoreSeries(ModelState& m)
{
    clsVeltData& data = *m.data;
    m.PopVec = m.Nt;
    for (int i = 1; i <= clsVeltData::kRows; ++i) {
        if (m.UsingNosFlag) {
            data.PopNums(i, m.PopVec(i));
            data.ExpCatchNums(i, m.ExpCatchVec(i));
        } else {
            data.PopWt(i, m.PopVec(i));
            data.ExpCatchWt(i, m.ExpCatchVec(i));
        }
    }
    for (const int column : {m.UsingNosFlag ? columns::PopNums : columns::PopWt,
                             m.UsingNosFlag ? columns::ExpCatchNums : columns::ExpCatchWt}) {
        data.ColPresent(column, true);
        data.FormatFilled(column);
    }
}
} // namespace

void WriteCPUESeries(ModelState& m, const std::function<double(int)>& meanPop)
{
    clsVeltData& data = *m.data;
    TakeStoredSeries(m);
    for (int i = 1; i <= m.NDPoints(); ++i)
        m.PopVec(i) = m.Nt(i);
    WriteOtherUnit(m);
    data.ColPresent(columns::ExpCPUE, true);
    data.ColPresent(columns::ObsCPUE, true);
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.Included(i))
            continue;
        data.ObsCPUE(i, ToFloat(Div(m.CatchVector(i), m.Effort(i))));
        const float expected = ToFloat(meanPop(i) * m.QValue);
        data.ExpCPUE(i, expected > 0.0F ? expected : kLeastCatchRate);
        m.ExpCatchVec(i) = ToFloat(data.ExpCPUE(i) * m.Effort(i));
    }
    StoreSeries(m);
    data.FormatFilled(columns::ExpCPUE);
    data.FormatFilled(columns::ObsCPUE);
}

double LSQVariance(const ModelState& m)
{
    double sum = 0.0;
    int n = 0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.ToggledIn(i))
            continue;
        sum += m.CatchVector(i) - m.EffMidPop(i) * m.QValue;
        ++n;
    }
    return n >= 2 ? sum / n : 0.0;
}

double UnitOfSumSq(const ModelState& m, std::span<const double> weight)
{
    constexpr int kMostBits = 60;
    double sum = 0.0;
    for (int i = 1; i <= m.NAPoints(); ++i)
        if (m.ToggledIn(i))
            sum += weight[static_cast<std::size_t>(i - 1)] * m.CatchVector(i) * m.CatchVector(i);
    const bool fits = !std::isfinite(sum) || sum < std::ldexp(1.0, kMostBits);
    return fits ? 1.0 : std::ldexp(1.0, std::ilogb(sum) - kMostBits);
}

double WeightedSumSq(const ModelState& m, std::span<const double> weight)
{
    const auto periods = static_cast<std::size_t>(m.NAPoints());
    const auto included = m.data->Included().All();
    const auto toggledIn = m.data->ToggledIn().All();
    const auto catches = m.CatchVector.All();
    const auto expected = m.EffMidPop.All();
    double cross = 0.0;
    double square = 0.0;
    for (std::size_t i = 0; i < periods; ++i) {
        if (!included[i] || !toggledIn[i])
            continue;
        cross += weight[i] * expected[i] * catches[i];
        square += weight[i] * expected[i] * expected[i];
    }
    const double q = Div(cross, square);
    double sum = 0.0;
    for (std::size_t i = 0; i < periods; ++i) {
        if (!included[i] || !toggledIn[i])
            continue;
        const double r = catches[i] - q * expected[i];
        sum += weight[i] * r * r;
    }
    return sum;
}

double SmallestSurvivingStart(double good, int maxRounds, const std::function<bool(double)>& survives)
{
    const int most = maxRounds == 0 ? kMostHalvings<double> : maxRounds;
    double bad = 0.0;
    for (int round = 0; round < most && good - bad > 0.01 * good; ++round) {
        const double middle = (good + bad) / 2.0;
        (survives(middle) ? good : bad) = middle;
    }
    return good;
}
