// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsRecruitINdex.h"

#include "base/Checked.h"
#include "models/LognormalFit.h"
#include "models/Trajectory.h"

#include <array>
#include <tuple>

using checked::Div;
using checked::ToFloat;

clsRecruitINdex::clsRecruitINdex() : DepletionMethod("clsRecruitIndex", models::kRecruitmentIndex) {}

void clsRecruitINdex::Z(float value)
{
    m_z = checked::ToInt16(static_cast<double>(value));
}

void clsRecruitINdex::CalcPopTraj()
{
    Trajectory t(m);
    const auto index = m.data->RecruitIndex().All();
    const double q = m.WorkEsts.Q;
    const double lambda = m.WorkEsts.Lambda;
    const Survival survival = Survival::In32Bits(m.Mort);
    const auto meanStock = [&](std::size_t p) {
        return ToFloat(survival.half * (t.stock[p] + lambda * index[p]) -
                       static_cast<double>(t.totalCatch[p]) / 2.0);
    };

    t.stock[0] = ToFloat(m.WorkEsts.N1);
    m.PopUnderflow = m.WorkEsts.N1 < 0.0; // period 1 may be empty; a later one may not
    const double firstMean = (m.WorkEsts.N1 * survival.half - static_cast<double>(t.totalCatch[0]) / 2.0) +
                             lambda * index[0] * survival.half;
    t.expectedOverQ[0] = t.included[0] ? t.effort[0] * firstMean : 0.0;
    m.EffMidPopSum = t.expectedOverQ[0]; // also when period 1 is toggled out, unlike any later. Deliberate.
    t.meanStock[0] = meanStock(0);
    if (t.stock[0] < 0.0F)
        t.stock[0] = 0.0F;
    // An underflow does not end the loop: the stock goes on from zero.
    for (std::size_t p = 0; p < t.periods; ++p) {
        if (p > 0) { // from the catch as it stood before a projection replaces it
            t.meanStock[p] = meanStock(p);
            t.expectedOverQ[p] = t.included[p] ? static_cast<double>(t.effort[p]) * t.meanStock[p] : 0.0;
            m.EffMidPopSum += t.toggledIn[p] ? t.expectedOverQ[p] : 0.0;
        }
        const double withRecruits = t.stock[p] + lambda * index[p];
        // A projected catch takes the whole period's survival where the mean population takes half.
        // Deliberate.
        if (t.Projected(p))
            t.totalCatch[p] =
                ToFloat(Div(survival.period * q * t.effort[p] * withRecruits, 1.0 + q * t.effort[p] / 2.0));
        t.StockBehind(p, survival.period * withRecruits - survival.half * t.totalCatch[p]);
    }
    CalcThetaVecOf(m);
}

void clsRecruitINdex::CalcMinPop()
{
    constexpr int kMostRounds = 50;
    SearchMinPop(kMostRounds);
}

double clsRecruitINdex::ExpectedMeanPop(int i) const
{
    return (m.data->RecruitIndex(i) * m.FinalEsts.Lambda + m.Nt(i)) * Survival::Of(m.Mort).half -
           static_cast<double>(m.ObsTCatchRef(i)) / 2.0;
}

void clsRecruitINdex::BuildRegression()
{
    const double mort = static_cast<double>(m.Mort);
    const Survival survival = Survival::In32Bits(m.Mort);
    float recruits = 0.0F; // both sums run over the periods so far, discounted
    float catches = 0.0F;
    FillRegression(AsksForWeights() && m.HasVariances(), [&](int i) -> CatchRegression::Regressors {
        recruits = ToFloat(survival.period * recruits + m.data->RecruitIndex(i));
        catches = ToFloat(survival.period * catches + m.ObsTCatchRef(i));
        const double effort = m.Effort(i);
        return {effort * std::exp(-mort * (i - 1)) * survival.half,
                effort * catches - effort * m.ObsTCatchRef(i) / 2.0, effort * recruits * survival.half};
    });
}

double clsRecruitINdex::MeanIndex() const
{
    double sum = 0.0;
    for (int t = 1; t <= m.NAPoints(); ++t)
        sum += m.data->RecruitIndex(t);
    return Div(sum, m.NAPoints());
}

/// Doubles the working start until it survives; recruits are as many as the start population in an average
/// period. The work value of N1 has not been repaired, so a negative one stays negative through all the
/// doublings. Deliberate.
bool clsRecruitINdex::DoubleStart()
{
    // Under least squares the mean index is 0: a regression fit that underflows ends in the division.
    // Deliberate.
    double meanIndex = 0.0;
    if (!fit_op::IsLeastSquares(m.FitOp)) {
        meanIndex = MeanIndex();
        m.WorkEsts.Lambda = Div(m.WorkEsts.N1, meanIndex);
    }
    CalcPopTraj();
    return DoubleUntilItSurvives([this, meanIndex] {
        m.StartEstKind = 3;
        m.WorkEsts.N1 *= 2.0;
        m.WorkEsts.Lambda = Div(m.WorkEsts.N1, meanIndex);
        CalcPopTraj();
    });
}

bool clsRecruitINdex::InitEstimates()
{
    m.Excuse = excuse::kNoStart;
    m.StartEstKind = 2;
    if (!SolveRegression())
        return false;
    if (m.InitEsts.N1 < 0.0 || m.InitEsts.Lambda < 0.0) {
        if (fit_op::IsLeastSquares(m.FitOp)) {
            m.Excuse = excuse::kPopulationUnderflow;
            return false;
        }
        m.InitEsts.N1 = static_cast<double>(m.TotCatchSum);
        m.InitEsts.Lambda = std::fabs(m.InitEsts.Lambda);
        m.StartEstKind = 3;
    }
    if (!DoubleStart())
        return false;
    if (m.WorkEsts.Q < 0.0)
        m.WorkEsts.Q = LnFitComputeQ(m);
    m.InitEsts = m.WorkEsts;
    CalcMinPop();
    SetContourBounds();
    return true;
}

void clsRecruitINdex::SetContourBounds()
{
    ContourRange& range = m_contours.range;
    std::tie(range.Param1Lo, range.Param1Hi) = ContourGrid::DecadeAround(m.InitEsts.N1);
    std::tie(range.Param2Lo, range.Param2Hi) = ContourGrid::DecadeAround(m.InitEsts.Lambda);
}

float clsRecruitINdex::MinLogFunction(float n1, float lambda)
{
    m_contours.PlotStep(m, n1, lambda);
    if (BeyondLimit(n1) || !(n1 > 0.0F) || !(lambda > 0.0F))
        return kPenalty;
    FollowAt(std::array<double, 2>{n1, lambda});
    if (m.PopUnderflow)
        return kPenalty;
    const float value = LnVarOfEvaluation(m);
    m.MinOK = true;
    return value;
}

float clsRecruitINdex::MinGammaFunction(float n1, float lambda)
{
    m_contours.PlotStep(m, n1, lambda);
    if (BeyondLimit(n1))
        return kFarPenalty;
    FollowAt(std::array<double, 2>{n1, lambda});
    if (m.PopUnderflow)
        return kPenalty;
    const GammaProfile profile = GammaMinimisation(m);
    if (!profile.failed)
        m.MinOK = true;
    return profile.value; // a failed profile's 1e10 as it comes, unlike in the other two models. Deliberate.
}

void clsRecruitINdex::TakeMoments()
{
    m.GammaBeta = Div(m.EffMidPopSum * m.InitEsts.Q, m.LsqSumSq);
    m.GammaNu = m.HomeNu = m.InitEsts.Q * m.GammaBeta; // differs from the other models. Deliberate.
}

void clsRecruitINdex::DrawLogCatch()
{
    ResampleLogCatch(m, Resample::ToggledIn);
    SumDiscountedCatches(m);
}

void clsRecruitINdex::DrawGammaCatch()
{
    DepletionMethod::DrawGammaCatch();
    m.WorkEsts = m.FinalEsts;
    m.GammaNu = m.HomeNu; // of the fit
}

bool clsRecruitINdex::KeepRegression(int b)
{
    if (!(m_regression.Coefficient(2) < 0.0))
        return false;
    TakeCoefficients(m.WorkEsts);
    if (m.WorkEsts.N1 < 0.0 || m.WorkEsts.Lambda < 0.0)
        return false;
    StoreReplicate(b);
    return true;
}

bool clsRecruitINdex::KeepRefit(int b)
{
    m.WorkEsts.Q = RefittedQ();
    if (m.WorkEsts.Q < 0.0)
        return false;
    StoreReplicate(b);
    return true;
}

void clsRecruitINdex::AfterReplicates(int drawnAgain)
{
    WarnOfFailures(m, drawnAgain);
}
