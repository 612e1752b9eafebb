// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsSingleCohort.h"

#include "base/Checked.h"
#include "base/StringTable.h"
#include "models/LognormalFit.h"

#include <cmath>

using checked::Div;
using checked::ToFloat;

clsSingleCohort::clsSingleCohort() : MethodCommon("clsSingleCohort", models::kNoRecruitment) {}

std::vector<double> clsSingleCohort::FinalEsts()
{
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    return {FinalEstimates.N1, FinalEstimates.Q, static_cast<double>(m.Nt(m.NDPoints()))};
}

void clsSingleCohort::CopyQANDFinalToWorkEsts()
{
    WorkEsts.N1 = FinalEstimates.N1;
    WorkEsts.Q = m.QValue = FinalEstimates.Q;
}

void clsSingleCohort::CopyBStrapsToWorkEsts(std::int16_t n)
{
    WorkEsts.N1 = static_cast<double>(BootStrap(bs_param::kN1, n));
    WorkEsts.Q = static_cast<double>(BootStrap(bs_param::kQ, n));
}

void clsSingleCohort::CalcPopTraj()
{
    const auto last = static_cast<std::size_t>(m.LastState());
    const auto effort = m.data->Effort().All();
    const auto toggledIn = m.data->ToggledIn().All();
    const auto total = m.ObsTCatchRef.All();
    const auto nt = m.Nt.All();
    const auto mid = m.MidPop.All();
    const auto x = m.EffMidPop.All();
    const auto measured = static_cast<std::size_t>(m.data->OrigNAPoints());
    const double q = static_cast<double>(ToFloat(WorkEsts.Q));
    const double e1 = static_cast<double>(ToFloat(std::exp(-static_cast<double>(m.Mort))));
    const double e2 = static_cast<double>(ToFloat(std::exp(-static_cast<double>(m.Mort) / 2.0)));

    m.PopUnderflow = false;
    m.EffMidPopSum = 0.0;
    nt[0] = ToFloat(WorkEsts.N1);
    for (std::size_t t = 1; t < last; ++t) { // t is the state behind period p, both counted from 0
        const std::size_t p = t - 1;
        if (m.PopUnderflow) { // nothing is left, nor any expected catch
            nt[t] = mid[p] = 0.0F;
            x[p] = 0.0;
            continue;
        }
        // A projected catch is made from the effort of the period before and from what N(t) still holds from
        // the previous trajectory, and it lands one entry late. Deliberate.
        if (m.DIYTCatch && p + 1 > measured)
            total[t] = ToFloat(Div(q * effort[p] * nt[t] * e2, 1.0 + q * effort[p] / 2.0));
        nt[t] = ToFloat(e1 * nt[p] - e2 * total[p]);
        if (!(nt[t] > 0.0F)) {
            m.PopUnderflow = true;
            nt[t] = 0.0F;
        }
        mid[p] = ToFloat(e2 * nt[p] - static_cast<double>(total[p]) / 2.0);
        if (toggledIn[p]) {
            x[p] = static_cast<double>(mid[p]) * effort[p];
            m.EffMidPopSum += x[p];
        }
    }
    m.PopUnderflow = !(nt[last - 1] > 0.0F);
    CalcThetaVecOf(m);
}

void clsSingleCohort::CalcMinPop()
{
    m.MinPop = ToFloat(SmallestSurvivingStart(InitEsts.N1, 50, [this](double n1) {
        WorkEsts.N1 = n1;
        CalcPopTraj();
        return !m.PopUnderflow;
    }));
    WorkEsts = InitEsts;
    CalcPopTraj();
}

double clsSingleCohort::ExpectedMeanPop(int i) const
{
    return m.Nt(i) * std::exp(-static_cast<double>(m.Mort) / 2.0) -
           static_cast<double>(m.ObsTCatchRef(i)) / 2.0;
}

std::vector<NamedValue> clsSingleCohort::InitEstimateValues() const
{
    return {{"N1", InitEsts.N1}, {"Q", InitEsts.Q}};
}

bool clsSingleCohort::InputStartingEsts()
{
    const bool given = AskStartingValue(LoadResString(1602), InitEsts.N1, [this](double n1) {
        WorkEsts.N1 = n1;
        CalcPopTraj();
        return !m.PopUnderflow;
    });
    if (given)
        InitEsts = WorkEsts;
    return given;
}

// C(i) = b1 x1(i) + b2 x2(i) with b1 = q N1 and b2 = -q: exact rearrangement of the dynamics, and with M = 0
// the regression of Leslie and Davis (1939).
void clsSingleCohort::BuildRegression()
{
    const clsVeltData& data = *m.data;
    const double mort = static_cast<double>(m.Mort);
    const bool weighted = m.FitOp == fit_op::kWeightedLeastSquares && m.HasVariances();
    float running = 0.0F; // total catch so far, discounted
    for (int i = 1; i <= m.NAPoints(); ++i) {
        running = ToFloat(data.TotCatchNums(i) + std::exp(-mort) * running);
        if (!m.Included(i))
            continue;
        const double effort = m.Effort(i);
        const double x1 = effort * std::exp(-mort / 2.0) * std::exp(-mort * (i - 1));
        const double x2 = effort * running - effort * m.ObsTCatchRef(i) / 2.0;
        const double w = weighted ? Div(1.0, data.VarAbundIndex(i)) : 1.0;
        m_regression.Row(i, {x1, x2, 0.0}, m.CatchVector(i), w);
    }
}

bool clsSingleCohort::InitEstimates()
{
    SumDiscountedCatches(m);
    BuildRegression();
    const auto run = [this](double first, double q) {
        WorkEsts.N1 = first;
        WorkEsts.Q = q;
        CalcPopTraj();
    };
    if (!StartFromRegression(m_regression, InitEsts.N1, InitEsts.Q, run, [] {}))
        return false;
    WorkEsts = InitEsts;
    CalcMinPop();
    return true;
}

void clsSingleCohort::LSQFinalEstimates()
{
    m_regression.FillResiduals(m);
    FinalEstimates = InitEsts;
    m.QValue = FinalEstimates.Q;
    FinalEstimates.Var = LSQVariance(m);
}

float clsSingleCohort::MinLogFunction(float x)
{
    if (BeyondLimit(x))
        return kFarPenalty;
    // A start below MinPop is not turned away: the variance of its trajectory stands, unlike in the gamma
    // objective and in the other models. Deliberate.
    WorkEsts.N1 = static_cast<double>(x);
    CalcPopTraj();
    return LnVarOfEvaluation(m);
}

float clsSingleCohort::MinGammaFunction(float x)
{
    if (BeyondLimit(x))
        return kFarPenalty;
    if (x < m.MinPop)
        return kPenalty;
    WorkEsts.N1 = static_cast<double>(x);
    CalcPopTraj();
    const GammaProfile profile = GammaMinimisation(m);
    return profile.failed ? kPenalty : profile.value;
}

double clsSingleCohort::Objective(std::span<const double> x)
{
    const float n1 = ToFloat(x[0]);
    if (m.FitOp == fit_op::kLog)
        return static_cast<double>(MinLogFunction(n1));
    if (m.FitOp == fit_op::kGamma)
        return static_cast<double>(MinGammaFunction(n1));
    return 0.0; // least squares has nothing to minimise
}

void clsSingleCohort::Search(double start, const char* procedure)
{
    VELT_NelMead minimiser;
    SetUpFinal(minimiser, 1);
    minimiser.SetParameter(1, start, start * kSecondPoint, 0.0, kUpperLimit);
    minimiser.Minimise();
    if (!minimiser.Converged())
        RaiseNotConverged(ConvergenceText(minimiser, true, TheRun().globals), Source(procedure));
    WorkEsts.N1 = minimiser.Estimate(1);
    KeepReport(minimiser.MinValue(), minimiser.NumEvaluations(), minimiser.AtBorder());
}

void clsSingleCohort::LnFinalEstimates()
{
    Search(InitEsts.N1, "_CalcLnFinalEstimates");
    CalcPopTraj();
    FinalEstimates = WorkEsts;
    FinalEstimates.Q = m.QValue = LnFitComputeQ(m);
    FinalEstimates.Var = static_cast<double>(LnVarForMinimisation(m));
    FillLogResiduals(m, FinalEstimates.Q, [this](int i) { return m.MidPop(i); });
}

void clsSingleCohort::GammaFinalEstimates()
{
    GammaMomentStart(m, InitEsts.Q, m.LsqSumSq);
    Search(static_cast<double>(ToFloat(InitEsts.N1)), "_CalcGammaFinalEstimates");
    WorkEsts.Q = m.QValue = Div(m.GammaNu, m.GammaBeta);
    WorkEsts.Var = Div(1.0, m.GammaBeta);
    FinalEstimates = WorkEsts;
    CalcPopTraj();
    FillPositionsFromStartOfPeriod();
}

void clsSingleCohort::LSQBootStraps()
{
    BuildRegression();
    m_regression.Solve(m);
    RunReplicates(m, Source("_CalcLSQBootStraps"), [this](int b) {
        m_regression.SolveResampled(m);
        const double b2 = m_regression.Coefficient(2);
        // A slope that means nothing stays in the sample as these two values.
        m_boot.BS(bs_param::kQ, b, b2 < 0.0 ? ToFloat(-b2) : 0.0F);
        m_boot.BS(bs_param::kN1, b, b2 < 0.0 ? ToFloat(Div(m_regression.Coefficient(1), -b2)) : kPenalty);
        return true;
    });
}

void clsSingleCohort::LnBootStraps()
{
    const double start = FinalEstimates.N1;
    RunReplicates(m, Source("_CalcLnBootStraps"), [this, start](int b) {
        ResampleLogCatch(m, Resample::EveryPeriod);
        SumDiscountedCatches(m);
        SetUpBootStrap(m_bootMinimiser, 1);
        m_bootMinimiser.SetParameter(1, start, start / 3.0, 0.0, kUpperLimit);
        m_bootMinimiser.Minimise();
        if (!m_bootMinimiser.Converged())
            return false;
        m_boot.BS(bs_param::kN1, b, ToFloat(m_bootMinimiser.Estimate(1)));
        m_boot.BS(bs_param::kQ, b, ToFloat(LnFitComputeQ(m)));
        return true;
    });
}

void clsSingleCohort::GammaBootStraps()
{
    const double start = FinalEstimates.N1;
    RunReplicates(m, Source("_CalcGammaBootStraps"), [this, start](int b) {
        ResampleGammaCatch(m, m_gammaCatch);
        SumDiscountedCatches(m);
        SetUpBootStrap(m_bootMinimiser, 1);
        m_bootMinimiser.SetParameter(1, start, start * kSecondPoint, 0.0, kUpperLimit);
        m_bootMinimiser.Minimise();
        if (!m_bootMinimiser.Converged())
            return false;
        WorkEsts.N1 = m_bootMinimiser.Estimate(1);
        m_boot.BS(bs_param::kN1, b, ToFloat(WorkEsts.N1));
        m_boot.BS(bs_param::kQ, b, ToFloat(Div(m.GammaNu, m.GammaBeta)));
        return true;
    });
}
