// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsConstRecruit.h"

#include "base/Checked.h"
#include "base/StringTable.h"
#include "models/LognormalFit.h"

#include <cmath>

using checked::Div;
using checked::ToFloat;

clsConstRecruit::clsConstRecruit() : MethodCommon("clsConstRecruit", models::kConstantRecruitment) {}

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

float clsConstRecruit::ReplacementYield(double k) const
{
    const double mort = static_cast<double>(m.Mort);
    return ToFloat(std::exp(mort / 2.0) * (1.0 - std::exp(-mort)) * (k - m.Nt(m.NDPoints())));
}

std::vector<double> clsConstRecruit::FinalEsts()
{
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    return {FinalEstimates.K, FinalEstimates.Q, static_cast<double>(ReplacementYield(FinalEstimates.K)),
            static_cast<double>(m.Nt(m.NDPoints()))};
}

void clsConstRecruit::CopyQANDFinalToWorkEsts()
{
    WorkEsts.K = FinalEstimates.K;
    WorkEsts.Q = m.QValue = FinalEstimates.Q;
}

void clsConstRecruit::CopyBStrapsToWorkEsts(std::int16_t n)
{
    WorkEsts.K = static_cast<double>(BootStrap(bs_param::kK, n));
    WorkEsts.Q = static_cast<double>(BootStrap(bs_param::kQ, n));
}

void clsConstRecruit::CalcPopTraj()
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
    const double recruits = static_cast<double>(ToFloat(Recruits(WorkEsts.K)));
    const double e1 = static_cast<double>(ToFloat(std::exp(-static_cast<double>(m.Mort))));
    const double e2 = static_cast<double>(ToFloat(std::exp(-static_cast<double>(m.Mort) / 2.0)));

    m.EffMidPopSum = 0.0;
    nt[0] = ToFloat(m.InitDep * WorkEsts.K);
    m.PopUnderflow = nt[0] < 0.0F;
    if (m.PopUnderflow)
        nt[0] = 0.0F;
    // An underflow does not end the loop: the stock goes on from zero and may grow again by recruitment.
    for (std::size_t i = 0; i + 1 < last; ++i) {
        if (m.DIYTCatch && i + 1 > measured)
            total[i] = ToFloat(Div(q * effort[i] * (recruits + nt[i]) * e2, 1.0 + q * effort[i] / 2.0));
        nt[i + 1] = ToFloat((recruits + nt[i]) * e1 - e2 * total[i]);
        if (!(nt[i + 1] > 0.0F)) {
            m.PopUnderflow = true;
            nt[i + 1] = 0.0F;
        }
        mid[i] = ToFloat((recruits + nt[i]) * e2 - static_cast<double>(total[i]) / 2.0);
        if (toggledIn[i]) {
            x[i] = static_cast<double>(mid[i]) * effort[i];
            m.EffMidPopSum += x[i];
        }
    }
    CalcThetaVecOf(m);
}

void clsConstRecruit::CalcMinPop()
{
    WorkEsts = InitEsts;
    m.MinPop = ToFloat(SmallestSurvivingStart(InitEsts.K, 0, [this](double k) {
        WorkEsts.K = k;
        CalcPopTraj();
        return !m.PopUnderflow;
    }));
    WorkEsts = InitEsts;
    CalcPopTraj();
}

double clsConstRecruit::ExpectedMeanPop(int i) const
{
    return (Recruits(FinalEstimates.K) + m.Nt(i)) * std::exp(-static_cast<double>(m.Mort) / 2.0) -
           static_cast<double>(m.ObsTCatchRef(i)) / 2.0;
}

std::vector<NamedValue> clsConstRecruit::InitEstimateValues() const
{
    return {{"K", InitEsts.K}, {"Q", InitEsts.Q}};
}

bool clsConstRecruit::InputStartingEsts()
{
    const bool given = AskStartingValue(LoadResString(1603), InitEsts.K, [this](double k) {
        WorkEsts.K = k;
        CalcPopTraj();
        return !m.PopUnderflow;
    });
    if (given)
        InitEsts = WorkEsts;
    return given;
}

// C(i) = b1 x1(i) + b2 x2(i) with b1 = q K and b2 = -q: exact rearrangement of the dynamics.
void clsConstRecruit::BuildRegression()
{
    const clsVeltData& data = *m.data;
    const double mort = static_cast<double>(m.Mort);
    // The weights apply when the variance column is absent, the reverse of the other models. Deliberate.
    const bool weighted = m.FitOp == fit_op::kWeightedLeastSquares && !m.HasVariances();
    float running = 0.0F; // total catch so far, discounted
    for (int i = 1; i <= m.NAPoints(); ++i) {
        m.CatchVector(i) = data.CatchNums(i); // replicates of an earlier run must not remain
        running = ToFloat(data.TotCatchNums(i) + std::exp(-mort) * running);
        if (!m.Included(i))
            continue;
        const double effort = m.Effort(i);
        const double x1 = effort * std::exp(mort / 2.0) * (1.0 - (1.0 - m.InitDep) * std::exp(-mort * i));
        const double x2 = effort * running - data.TotCatchNums(i) * effort / 2.0;
        const double w = weighted ? Div(1.0, data.VarAbundIndex(i)) : 1.0;
        m_regression.Row(i, {x1, x2, 0.0}, m.CatchVector(i), w);
    }
}

namespace
{
/// Runs the objective once for nothing: its result and its failure are both ignored, so that a zero catch
/// does not end a least-squares fit. Deliberate.
void CallForNothing(const ModelState& m)
{
    try {
        LnVarForMinimisation(m);
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
    }
}
} // namespace

bool clsConstRecruit::InitEstimates()
{
    SumDiscountedCatches(m);
    BuildRegression();
    const auto run = [this](double first, double q) {
        WorkEsts.K = first;
        WorkEsts.Q = q;
        CalcPopTraj();
    };
    if (!StartFromRegression(m_regression, InitEsts.K, InitEsts.Q, run, [this] { CallForNothing(m); }))
        return false;
    WorkEsts = InitEsts;
    CalcMinPop();
    return true;
}

void clsConstRecruit::LSQFinalEstimates()
{
    FinalEstimates = InitEsts;
    m.QValue = FinalEstimates.Q;
    FinalEstimates.Var = LSQVariance(m);
    CopyQANDFinalToWorkEsts();
    CalcPopTraj();
    m_regression.FillResiduals(m);
}

float clsConstRecruit::MinLogFunction(float x)
{
    if (BeyondLimit(x))
        return kFarPenalty;
    WorkEsts.K = static_cast<double>(x);
    CalcPopTraj();
    if (m.PopUnderflow) // rejected here, unlike in the no-recruitment model. Deliberate.
        return kPenalty;
    const float value = LnVarOfEvaluation(m);
    m.MinOK = true;
    return value;
}

float clsConstRecruit::MinGammaFunction(float x)
{
    if (BeyondLimit(x))
        return kFarPenalty;
    if (x < m.MinPop)
        return kPenalty;
    WorkEsts.K = static_cast<double>(x);
    CalcPopTraj();
    const GammaProfile profile = GammaMinimisation(m);
    if (profile.failed)
        return kPenalty;
    m.MinOK = true;
    return profile.value;
}

double clsConstRecruit::Objective(std::span<const double> x)
{
    const float k = ToFloat(x[0]);
    if (m.FitOp == fit_op::kLog)
        return static_cast<double>(MinLogFunction(k));
    if (m.FitOp == fit_op::kGamma)
        return static_cast<double>(MinGammaFunction(k));
    return 0.0; // least squares has nothing to minimise
}

void clsConstRecruit::Search(double start, const char* procedure)
{
    WorkEsts = InitEsts;
    m.MinOK = false;
    VELT_NelMead minimiser;
    SetUpFinal(minimiser, 1);
    minimiser.SetParameter(1, start, start * kSecondPoint, 0.0, kUpperLimit);
    minimiser.Minimise();
    if (!minimiser.Converged() || !m.MinOK)
        RaiseNotConverged(ConvergenceText(minimiser, m.MinOK, TheRun().globals), Source(procedure));
    FinalEstimates.K = minimiser.Estimate(1);
    KeepReport(minimiser.MinValue(), minimiser.NumEvaluations(), minimiser.AtBorder());
}

void clsConstRecruit::LnFinalEstimates()
{
    Search(InitEsts.K, "_CalcLnFinalEstimates");
    CalcPopTraj(); // reads what the last evaluation, the one at the estimate, left
    FinalEstimates.Q = m.QValue = LnFitComputeQ(m);
    FinalEstimates.Var = static_cast<double>(LnVarForMinimisation(m));
    FillLogResiduals(m, FinalEstimates.Q, [this](int i) { return m.MidPop(i); });
}

void clsConstRecruit::GammaFinalEstimates()
{
    GammaMomentStart(m, InitEsts.Q, m.LsqSumSq);
    Search(static_cast<double>(ToFloat(InitEsts.K)), "_CalcGammaFinalEstimates");
    FinalEstimates.Q = m.QValue = Div(m.GammaNu, m.GammaBeta);
    FinalEstimates.Var = Div(1.0, m.GammaBeta);
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    FillPositionsFromStartOfPeriod();
}

void clsConstRecruit::StoreReplicate(int b, double k, double q)
{
    const float stock = ToFloat(k);
    m_boot.BS(bs_param::kK, b, stock);
    m_boot.BS(bs_param::kQ, b, ToFloat(q));
    m_boot.BS(bs_param::kRYield, b, ReplacementYield(static_cast<double>(stock)));
}

void clsConstRecruit::LSQBootStraps()
{
    BuildRegression();
    m_regression.Solve(m);
    RunReplicates(m, Source("_CalcLSQBootStraps"), [this](int b) {
        m_regression.SolveResampled(m);
        const double q = -m_regression.Coefficient(2);
        const double k = q == 0.0 ? 0.0 : m_regression.Coefficient(1) / q;
        if (!(q > 0.0) || k < 0.0) { // a slope that means nothing stays in the sample as these values
            m_boot.BS(bs_param::kK, b, kPenalty);
            m_boot.BS(bs_param::kQ, b, 0.0F);
            m_boot.BS(bs_param::kRYield, b, 0.0F);
            return true;
        }
        WorkEsts.Q = q;
        WorkEsts.K = k;
        CalcPopTraj();
        StoreReplicate(b, k, q);
        return true;
    });
}

void clsConstRecruit::LnBootStraps()
{
    const double start = FinalEstimates.K;
    VELT_NelMead minimiser;
    RunReplicates(m, Source("_CalcLnBootStraps"), [this, start, &minimiser](int b) {
        ResampleLogCatch(m, Resample::EveryPeriod);
        SumDiscountedCatches(m);
        SetUpBootStrap(minimiser, 1);
        minimiser.SetParameter(1, start, start * kSecondPoint, 0.0, kUpperLimit);
        minimiser.Minimise();
        if (!minimiser.Converged())
            return false;
        CalcPopTraj();
        StoreReplicate(b, minimiser.Estimate(1), LnFitComputeQ(m));
        return true;
    });
}

void clsConstRecruit::GammaBootStraps()
{
    const double start = FinalEstimates.K;
    VELT_NelMead minimiser;
    RunReplicates(m, Source("_CalcGammaBootStraps"), [this, start, &minimiser](int b) {
        ResampleGammaCatch(m, m_gammaCatch);
        SumDiscountedCatches(m);
        SetUpBootStrap(minimiser, 1);
        minimiser.SetParameter(1, start, start * kSecondPoint, 0.0, kUpperLimit);
        minimiser.Minimise();
        if (!minimiser.Converged())
            return false;
        CalcPopTraj();
        StoreReplicate(b, minimiser.Estimate(1), Div(m.GammaNu, m.GammaBeta));
        return true;
    });
}
