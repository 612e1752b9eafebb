// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsSingleCohort.h"

#include "base/Checked.h"
#include "models/LognormalFit.h"
#include "models/Trajectory.h"

#include <array>

using checked::Div;
using checked::ToFloat;

clsSingleCohort::clsSingleCohort() : DepletionMethod("clsSingleCohort", models::kNoRecruitment) {}

void clsSingleCohort::CalcPopTraj()
{
    Trajectory t(m);
    const double q = static_cast<double>(ToFloat(m.WorkEsts.Q));
    const Survival survival = Survival::In32Bits(m.Mort);
    t.stock[0] = ToFloat(m.WorkEsts.N1);
    for (std::size_t p = 0; p < t.periods; ++p) {
        if (m.PopUnderflow) { // nothing is left, nor any expected catch
            t.stock[p + 1] = t.meanStock[p] = 0.0F;
            t.expectedOverQ[p] = 0.0;
            continue;
        }
        // A projected catch is made from the effort of the period before and from what the stock still holds
        // from the previous trajectory, and it lands one entry late. Deliberate.
        if (t.Projected(p))
            t.totalCatch[p + 1] =
                ToFloat(Div(q * t.effort[p] * t.stock[p + 1] * survival.half, 1.0 + q * t.effort[p] / 2.0));
        t.StockBehind(p, survival.period * t.stock[p] - survival.half * t.totalCatch[p]);
        t.meanStock[p] = ToFloat(survival.half * t.stock[p] - static_cast<double>(t.totalCatch[p]) / 2.0);
        t.ExpectCatch(p, static_cast<double>(t.meanStock[p]));
    }
    CalcThetaVecOf(m);
}

void clsSingleCohort::CalcMinPop()
{
    constexpr int kMostRounds = 50;
    SearchMinPop(kMostRounds);
}

double clsSingleCohort::ExpectedMeanPop(int i) const
{
    return m.Nt(i) * Survival::Of(m.Mort).half - static_cast<double>(m.ObsTCatchRef(i)) / 2.0;
}

void clsSingleCohort::BuildRegression()
{
    const double mort = static_cast<double>(m.Mort);
    const Survival survival = Survival::Of(m.Mort);
    float catches = 0.0F; // S, total catch so far, discounted
    FillRegression(AsksForWeights() && m.HasVariances(), [&](int i) -> CatchRegression::Regressors {
        catches = ToFloat(m.data->TotCatchNums(i) + survival.period * catches);
        const double effort = m.Effort(i);
        return {effort * survival.half * std::exp(-mort * (i - 1)),
                effort * catches - effort * m.ObsTCatchRef(i) / 2.0, 0.0};
    });
}

float clsSingleCohort::MinLogFunction(float n1, float)
{
    m.MinOK = true; // nobody asks this model whether an evaluation was inside the domain. Deliberate.
    if (BeyondLimit(n1))
        return kFarPenalty;
    // A start below MinPop is not turned away: the variance of its trajectory stands, unlike in the gamma
    // objective and in the other models. Deliberate.
    FollowAt(std::array{static_cast<double>(n1)});
    return LnVarOfEvaluation(m);
}

float clsSingleCohort::MinGammaFunction(float n1, float)
{
    m.MinOK = true;
    if (BeyondLimit(n1))
        return kFarPenalty;
    if (n1 < m.MinPop)
        return kPenalty;
    FollowAt(std::array{static_cast<double>(n1)});
    const GammaProfile profile = GammaMinimisation(m);
    return profile.failed ? kPenalty : profile.value;
}

SearchRange clsSingleCohort::RefitRange() const
{
    SearchRange range = RangeFrom(m.FinalEsts);
    if (m.FitOp == fit_op::kLog)
        range.second.N1 = m.FinalEsts.N1 / 3.0;
    return range;
}

bool clsSingleCohort::KeepRegression(int b)
{
    if (m_regression.Coefficient(2) < 0.0) {
        TakeCoefficients(m.WorkEsts);
        StoreReplicate(b);
        return true;
    }
    // A slope that means nothing stays in the sample as these two values.
    m_boot.BS(bs_param::kQ, b, 0.0F);
    m_boot.BS(bs_param::kN1, b, kPenalty);
    return true;
}
