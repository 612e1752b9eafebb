// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsConstRecruit.h"

#include "base/Checked.h"
#include "models/LognormalFit.h"
#include "models/Trajectory.h"

#include <array>

using checked::Div;
using checked::ToFloat;

clsConstRecruit::clsConstRecruit() : DepletionMethod("clsConstRecruit", models::kConstantRecruitment) {}

void clsConstRecruit::Create(clsVeltData& data)
{
    MethodCommon::Create(data);
    m.InitDep = 1.0F;
    m.Mort = 0.2F;
    m.StartEstKind2 = 3;
}

double clsConstRecruit::Recruits(double k) const
{
    return k * (std::exp(static_cast<double>(m.Mort)) - 1.0);
}

double clsConstRecruit::Derived(model_table::Quantity quantity, const Estimates& of) const
{
    if (quantity != model_table::Quantity::RYield)
        return DepletionMethod::Derived(quantity, of);
    const double mort = static_cast<double>(m.Mort);
    return static_cast<double>(
        ToFloat(std::exp(mort / 2.0) * (1.0 - std::exp(-mort)) * (of.K - m.Nt(m.NDPoints()))));
}

void clsConstRecruit::CalcPopTraj()
{
    Trajectory t(m);
    const double q = static_cast<double>(ToFloat(m.WorkEsts.Q));
    const double recruits = static_cast<double>(ToFloat(Recruits(m.WorkEsts.K)));
    const Survival survival = Survival::In32Bits(m.Mort);
    t.stock[0] = ToFloat(m.InitDep * m.WorkEsts.K);
    if (t.stock[0] < 0.0F) {
        m.PopUnderflow = true;
        t.stock[0] = 0.0F;
    }
    // An underflow does not end the loop: the stock goes on from zero and may grow again by recruitment.
    for (std::size_t p = 0; p < t.periods; ++p) {
        const double withRecruits = recruits + t.stock[p];
        if (t.Projected(p))
            t.totalCatch[p] =
                ToFloat(Div(q * t.effort[p] * withRecruits * survival.half, 1.0 + q * t.effort[p] / 2.0));
        t.StockBehind(p, withRecruits * survival.period - survival.half * t.totalCatch[p]);
        t.meanStock[p] = ToFloat(withRecruits * survival.half - static_cast<double>(t.totalCatch[p]) / 2.0);
        t.ExpectCatch(p, static_cast<double>(t.meanStock[p]));
    }
    CalcThetaVecOf(m);
}

void clsConstRecruit::CalcMinPop()
{
    SearchMinPop(0);
}

double clsConstRecruit::ExpectedMeanPop(int i) const
{
    return (Recruits(m.FinalEsts.K) + m.Nt(i)) * Survival::Of(m.Mort).half -
           static_cast<double>(m.ObsTCatchRef(i)) / 2.0;
}

void clsConstRecruit::BuildRegression()
{
    const double mort = static_cast<double>(m.Mort);
    const double survival = Survival::Of(m.Mort).period;
    float catches = 0.0F; // S, total catch so far, discounted
    // The weights apply when the variance column is absent, the reverse of the other models. Deliberate.
    FillRegression(AsksForWeights() && !m.HasVariances(), [&](int i) -> CatchRegression::Regressors {
        m.CatchVector(i) = m.data->CatchNums(i); // replicates of an earlier run must not remain
        catches = ToFloat(m.data->TotCatchNums(i) + survival * catches);
        const double effort = m.Effort(i);
        return {effort * std::exp(mort / 2.0) * (1.0 - (1.0 - m.InitDep) * std::exp(-mort * i)),
                effort * catches - m.data->TotCatchNums(i) * effort / 2.0, 0.0};
    });
}

/// Runs the objective once for nothing: its result and its failure are both ignored, so that a zero catch
/// does not end a least-squares fit. Deliberate.
void clsConstRecruit::AtRegressionStart()
{
    try {
        LnVarForMinimisation(m);
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
    }
}

float clsConstRecruit::MinLogFunction(float k, float)
{
    if (BeyondLimit(k))
        return kFarPenalty;
    FollowAt(std::array{static_cast<double>(k)});
    if (m.PopUnderflow) // rejected here, unlike in the no-recruitment model. Deliberate.
        return kPenalty;
    const float value = LnVarOfEvaluation(m);
    m.MinOK = true;
    return value;
}

float clsConstRecruit::MinGammaFunction(float k, float)
{
    if (BeyondLimit(k))
        return kFarPenalty;
    if (k < m.MinPop)
        return kPenalty;
    FollowAt(std::array{static_cast<double>(k)});
    const GammaProfile profile = GammaMinimisation(m);
    if (profile.failed)
        return kPenalty;
    m.MinOK = true;
    return profile.value;
}

void clsConstRecruit::LnFinalEstimates()
{
    Search(m.InitEsts, "CalcLnFinalEstimates");
    FinishLogFit(); // on the trajectory of the last evaluation, whose K has 32 bits. Deliberate.
}

void clsConstRecruit::StoreAtCutStock(int b)
{
    m.WorkEsts.K = static_cast<double>(ToFloat(m.WorkEsts.K));
    StoreReplicate(b);
}

bool clsConstRecruit::KeepRegression(int b)
{
    const double q = -m_regression.Coefficient(2);
    if (!(q > 0.0) || m_regression.Coefficient(1) / q < 0.0) {
        // A slope that means nothing stays in the sample as these values.
        m_boot.BS(bs_param::kK, b, kPenalty);
        m_boot.BS(bs_param::kQ, b, 0.0F);
        m_boot.BS(bs_param::kRYield, b, 0.0F);
        return true;
    }
    TakeCoefficients(m.WorkEsts);
    CalcPopTraj();
    StoreAtCutStock(b);
    return true;
}

bool clsConstRecruit::KeepRefit(int b)
{
    m.WorkEsts.Q = RefittedQ();
    StoreAtCutStock(b);
    return true;
}
