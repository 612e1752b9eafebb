// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsRecruitINdex.h"

#include "base/Checked.h"
#include "models/LognormalFit.h"
#include "models/StartVals.h"

#include <array>
#include <cmath>
#include <tuple>

using checked::Div;
using checked::ToFloat;

clsRecruitINdex::clsRecruitINdex() : MethodCommon("clsRecruitIndex", models::kRecruitmentIndex) {}

void clsRecruitINdex::Z(float value)
{
    m_z = checked::ToInt16(static_cast<double>(value));
}

std::vector<double> clsRecruitINdex::FinalEsts()
{
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    return {FinalEstimates.N1, FinalEstimates.Q, FinalEstimates.Lambda,
            static_cast<double>(m.Nt(m.NDPoints()))};
}

void clsRecruitINdex::CopyQANDFinalToWorkEsts()
{
    WorkEsts.N1 = FinalEstimates.N1;
    WorkEsts.Q = m.QValue = FinalEstimates.Q;
}

void clsRecruitINdex::CopyBStrapsToWorkEsts(std::int16_t n)
{
    WorkEsts.N1 = static_cast<double>(BootStrap(bs_param::kN1, n));
    WorkEsts.Q = static_cast<double>(BootStrap(bs_param::kQ, n));
    WorkEsts.Lambda = static_cast<double>(BootStrap(bs_param::kLambda, n));
}

void clsRecruitINdex::CalcPopTraj()
{
    const auto last = static_cast<std::size_t>(m.LastState());
    const auto effort = m.data->Effort().All();
    const auto index = m.data->RecruitIndex().All();
    const auto included = m.data->Included().All();
    const auto toggledIn = m.data->ToggledIn().All();
    const auto total = m.ObsTCatchRef.All();
    const auto nt = m.Nt.All();
    const auto mid = m.MidPop.All();
    const auto x = m.EffMidPop.All();
    const auto measured = static_cast<std::size_t>(m.data->OrigNAPoints());
    const double q = WorkEsts.Q;
    const double lambda = WorkEsts.Lambda;
    const double f1 = static_cast<double>(ToFloat(std::exp(-static_cast<double>(m.Mort) / 2.0)));
    const double f2 = static_cast<double>(ToFloat(std::exp(-static_cast<double>(m.Mort))));

    nt[0] = ToFloat(WorkEsts.N1);
    m.PopUnderflow = WorkEsts.N1 < 0.0; // period 1 may be empty; a later one may not
    const double halfFirst = static_cast<double>(total[0]) / 2.0;
    x[0] = included[0] ? effort[0] * ((WorkEsts.N1 * f1 - halfFirst) + lambda * index[0] * f1) : 0.0;
    m.EffMidPopSum = x[0]; // also when period 1 is toggled out, unlike every later one. Deliberate.
    mid[0] = ToFloat(f1 * (nt[0] + lambda * index[0]) - halfFirst);
    if (nt[0] < 0.0F)
        nt[0] = 0.0F;
    // An underflow does not end the loop: the stock goes on from zero.
    for (std::size_t t = 1; t < last; ++t) {
        const std::size_t p = t - 1;
        const double withRecruits = nt[p] + lambda * index[p];
        // A projected catch takes the whole period's survival where the mean population takes half.
        // Deliberate.
        if (m.DIYTCatch && t > measured)
            total[p] = ToFloat(Div(f2 * q * effort[p] * withRecruits, 1.0 + q * effort[p] / 2.0));
        nt[t] = ToFloat(f2 * withRecruits - f1 * total[p]);
        if (!(nt[t] > 0.0F)) {
            m.PopUnderflow = true;
            nt[t] = 0.0F;
        }
        if (t + 1 == last)
            break;
        mid[t] = ToFloat(f1 * (nt[t] + lambda * index[t]) - static_cast<double>(total[t]) / 2.0);
        if (included[t]) {
            x[t] = static_cast<double>(effort[t]) * mid[t];
            if (toggledIn[t])
                m.EffMidPopSum += x[t];
        } else {
            x[t] = 0.0;
        }
    }
    CalcThetaVecOf(m);
}

void clsRecruitINdex::CalcMinPop()
{
    m.MinPop = ToFloat(SmallestSurvivingStart(InitEsts.N1, 50, [this](double n1) {
        WorkEsts.N1 = n1;
        CalcPopTraj();
        return !m.PopUnderflow;
    }));
    WorkEsts = InitEsts;
    CalcPopTraj();
}

double clsRecruitINdex::ExpectedMeanPop(int i) const
{
    return (m.data->RecruitIndex(i) * FinalEstimates.Lambda + m.Nt(i)) *
               std::exp(-static_cast<double>(m.Mort) / 2.0) -
           static_cast<double>(m.ObsTCatchRef(i)) / 2.0;
}

std::vector<NamedValue> clsRecruitINdex::InitEstimateValues() const
{
    return {{"N1", InitEsts.N1}, {"Q", InitEsts.Q}, {"Lambda", InitEsts.Lambda}};
}

bool clsRecruitINdex::InputStartingEsts()
{
    const modVeltGlobals::Globals& texts = TheRun().globals;
    StartVals starts{.Param1Name = texts.N1,
                     .Param2Name = texts.Lambda,
                     .param1 = InitEsts.N1,
                     .param2 = InitEsts.Lambda,
                     .Fixed1 = Fixed1,
                     .Fixed2 = Fixed2};
    if (!TheRun().user.AskStartVals(starts))
        return false;
    InitEsts.N1 = starts.param1;
    InitEsts.Lambda = starts.param2;
    Fixed1 = starts.Fixed1;
    Fixed2 = starts.Fixed2;
    return true;
}

// C(t) = Q N1 x1 - Q x2 + Q Lambda x3: exact rearrangement of the dynamics, without a constant.
void clsRecruitINdex::BuildRegression()
{
    const clsVeltData& data = *m.data;
    const double mort = static_cast<double>(m.Mort);
    const double f1 = static_cast<double>(ToFloat(std::exp(-mort / 2.0)));
    const double f2 = static_cast<double>(ToFloat(std::exp(-mort)));
    const bool weighted = m.FitOp == fit_op::kWeightedLeastSquares && m.HasVariances();
    float recruits = 0.0F; // both sums run over the periods so far, discounted
    float catches = 0.0F;
    for (int t = 1; t <= m.NAPoints(); ++t) {
        recruits = ToFloat(f2 * recruits + data.RecruitIndex(t));
        catches = ToFloat(f2 * catches + m.ObsTCatchRef(t));
        if (!m.Included(t))
            continue;
        const double effort = m.Effort(t);
        const double x1 = effort * std::exp(-mort * (t - 1)) * f1;
        const double x2 = effort * catches - effort * m.ObsTCatchRef(t) / 2.0;
        const double x3 = effort * recruits * f1;
        const double w = weighted ? Div(1.0, data.VarAbundIndex(t)) : 1.0;
        m_regression.Row(t, {x1, x2, x3}, m.CatchVector(t), w);
    }
}

double clsRecruitINdex::MeanIndex() const
{
    double sum = 0.0;
    for (int t = 1; t <= m.NAPoints(); ++t)
        sum += m.data->RecruitIndex(t);
    return Div(sum, m.NAPoints());
}

void clsRecruitINdex::RepairStart()
{
    InitEsts.N1 = static_cast<double>(m.TotCatchSum);
    InitEsts.Lambda = std::fabs(InitEsts.Lambda);
    m.StartEstKind = 3;
}

bool clsRecruitINdex::InitEstimates()
{
    m.Excuse = excuse::kNoStart;
    m.StartEstKind = 2;
    SumDiscountedCatches(m);
    BuildRegression();
    if (!m_regression.Solve(m))
        return false;
    InitEsts.Q = -m_regression.Coefficient(2);
    InitEsts.N1 = Div(m_regression.Coefficient(1), InitEsts.Q);
    InitEsts.Lambda = Div(m_regression.Coefficient(3), InitEsts.Q);
    WorkEsts = InitEsts;
    CalcPopTraj();
    m.LsqSumSq = StartSumSq(InitEsts.Q);
    const bool leastSquares = fit_op::IsLeastSquares(m.FitOp);
    if (InitEsts.N1 < 0.0 || InitEsts.Lambda < 0.0) {
        if (leastSquares) {
            m.Excuse = excuse::kPopulationUnderflow;
            return false;
        }
        RepairStart();
    }
    // Recruits as many as the start population in an average period. The work value of N1 has not been
    // repaired, so a negative one stays negative through all the doublings. Deliberate.
    double meanIndex = 0.0;
    if (!leastSquares) {
        meanIndex = MeanIndex();
        WorkEsts.Lambda = Div(WorkEsts.N1, meanIndex);
    }
    CalcPopTraj();
    // Under least squares the mean index is 0: a regression fit that underflows ends in the division.
    // Deliberate.
    const bool survives = DoubleUntilItSurvives([this, meanIndex] {
        m.StartEstKind = 3;
        WorkEsts.N1 *= 2.0;
        WorkEsts.Lambda = Div(WorkEsts.N1, meanIndex);
        CalcPopTraj();
    });
    if (!survives)
        return false;
    if (WorkEsts.Q < 0.0)
        WorkEsts.Q = LnFitComputeQ(m);
    InitEsts = WorkEsts;
    m.MinPop = 0.0F;
    CalcMinPop();
    ContourRange& range = m_contours.range;
    std::tie(range.Param1Lo, range.Param1Hi) = ContourGrid::DecadeAround(InitEsts.N1);
    std::tie(range.Param2Lo, range.Param2Hi) = ContourGrid::DecadeAround(InitEsts.Lambda);
    return true;
}

void clsRecruitINdex::LSQFinalEstimates()
{
    FinalEstimates = InitEsts;
    m.QValue = FinalEstimates.Q;
    FinalEstimates.Var = LSQVariance(m);
    m_regression.FillResiduals(m);
}

float clsRecruitINdex::MinLogFunction(float n1, float lambda)
{
    m_contours.PlotStep(m, n1, lambda);
    if (BeyondLimit(n1) || !(n1 > 0.0F) || !(lambda > 0.0F))
        return kPenalty;
    WorkEsts.N1 = static_cast<double>(n1);
    WorkEsts.Lambda = static_cast<double>(lambda);
    CalcPopTraj();
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
    WorkEsts.N1 = static_cast<double>(n1);
    WorkEsts.Lambda = static_cast<double>(lambda);
    CalcPopTraj();
    if (m.PopUnderflow)
        return kPenalty;
    const GammaProfile profile = GammaMinimisation(m);
    if (!profile.failed)
        m.MinOK = true;
    return profile.value; // a failed profile's 1e10 as it comes, unlike in the other two models. Deliberate.
}

double clsRecruitINdex::Objective(std::span<const double> x)
{
    const float n1 = ToFloat(x[0]);
    const float lambda = ToFloat(x[1]);
    if (m.FitOp == fit_op::kLog)
        return static_cast<double>(MinLogFunction(n1, lambda));
    if (m.FitOp == fit_op::kGamma)
        return static_cast<double>(MinGammaFunction(n1, lambda));
    return 0.0; // least squares has nothing to minimise
}

void clsRecruitINdex::SetParameters(VELT_NelMead& minimiser, const Estimates& start) const
{
    // Both objectives turn away everything at or below 0 (the gamma one through its failing profile).
    minimiser.SetParameter(1, start.N1, Fixed1 ? start.N1 : start.N1 * kSecondPoint, 0.0, kUpperLimit);
    minimiser.SetParameter(2, start.Lambda, Fixed2 ? start.Lambda : start.Lambda * kSecondPoint, 0.0,
                           kUpperLimit);
}

void clsRecruitINdex::Search(const char* source)
{
    m.MinOK = false;
    m_contours.Mark(m, ContourMark::Start1, InitEsts.N1, InitEsts.Lambda);
    VELT_NelMead minimiser;
    SetUpFinal(minimiser, 2);
    SetParameters(minimiser, InitEsts);
    minimiser.Minimise();
    if (!minimiser.Converged() || !m.MinOK)
        RaiseNotConverged(ConvergenceText(minimiser, m.MinOK, TheRun().globals), source);
    FinalEstimates = WorkEsts;
    FinalEstimates.N1 = minimiser.Estimate(1);
    FinalEstimates.Lambda = minimiser.Estimate(2);
    KeepReport(minimiser.MinValue(), minimiser.NumEvaluations(), minimiser.AtBorder());
    m_contours.Mark(m, ContourMark::Final, FinalEstimates.N1, FinalEstimates.Lambda);
}

void clsRecruitINdex::LnFinalEstimates()
{
    Search("RIM - CalcLnFinalEstimates");
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    FinalEstimates.Q = m.QValue = LnFitComputeQ(m);
    FinalEstimates.Var = static_cast<double>(LnVarForMinimisation(m));
    FillLogResiduals(m, FinalEstimates.Q, [this](int i) { return m.MidPop(i); });
}

void clsRecruitINdex::MomentStart()
{
    WorkEsts = InitEsts;
    CalcPopTraj();
    SumDiscountedCatches(m);
    m.GammaBeta = Div(m.EffMidPopSum * InitEsts.Q, m.LsqSumSq);
    m.GammaNu = m.HomeNu =
        InitEsts.Q * m.GammaBeta; // differs from the other models' moment start. Deliberate.
}

void clsRecruitINdex::GammaFinalEstimates()
{
    MomentStart();
    Search("RIM - CalcGammaFinalEstimates");
    FinalEstimates.Q = m.QValue = Div(m.GammaNu, m.GammaBeta);
    FinalEstimates.Var = Div(1.0, m.GammaBeta);
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    // From the mean population of the period, unlike in the other two depletion models. Deliberate.
    FillGammaPositions(
        m, [this](int i) { return m.Effort(i) * m.GammaNu * m.MidPop(i); },
        [this](int i) { return m.CatchVector(i) > m.Effort(i) * m.QValue * m.MidPop(i) ? 1.0F : 0.0F; });
}

bool clsRecruitINdex::PlotInitContours()
{
    if (fit_op::IsLeastSquares(m.FitOp))
        return true; // a regression: no minimisation to show
    if (!m_contours.HasRange())
        return false;
    if (m.FitOp == fit_op::kGamma)
        MomentStart();
    const double nu = m.GammaNu;
    m_contours.Draw(
        m,
        [this, nu](double n1, double lambda) {
            m.GammaNu = nu; // every cell of the grid starts from the same shape
            return INelMead_MinFunc(std::array{n1, lambda});
        },
        "Contour Plot", "RIM - PlotInitContours", Source("_IMethod_PlotInitContours"));
    m_contours.StartPath(InitEsts.N1, InitEsts.Lambda);
    return true;
}

bool clsRecruitINdex::StoreReplicate(int b, double n1, double q, double lambda)
{
    m_boot.BS(bs_param::kN1, b, ToFloat(n1));
    m_boot.BS(bs_param::kQ, b, ToFloat(q));
    m_boot.BS(bs_param::kLambda, b, ToFloat(lambda));
    return true;
}

void clsRecruitINdex::LSQBootStraps()
{
    BuildRegression();
    m_regression.Solve(m);
    const int failures = RunReplicates(m, Source("_CalcLSQBootStraps"), [this](int b) {
        m_regression.SolveResampled(m);
        const double q = -m_regression.Coefficient(2);
        if (!(q > 0.0))
            return false;
        const double n1 = m_regression.Coefficient(1) / q;
        const double lambda = m_regression.Coefficient(3) / q;
        return n1 >= 0.0 && lambda >= 0.0 && StoreReplicate(b, n1, q, lambda);
    });
    WarnOfFailures(m, failures);
}

void clsRecruitINdex::LnBootStraps()
{
    VELT_NelMead minimiser;
    const int failures = RunReplicates(m, Source("_CalcLnBootStraps"), [this, &minimiser](int b) {
        ResampleLogCatch(m, Resample::ToggledIn);
        SumDiscountedCatches(m);
        SetUpBootStrap(minimiser, 2);
        SetParameters(minimiser, FinalEstimates);
        minimiser.Minimise();
        if (!minimiser.Converged())
            return false;
        CalcPopTraj();
        const double q = LnFitComputeQ(m);
        return q >= 0.0 && StoreReplicate(b, minimiser.Estimate(1), q, minimiser.Estimate(2));
    });
    WarnOfFailures(m, failures);
}

void clsRecruitINdex::GammaBootStraps()
{
    const double finalNu = m.GammaNu;
    const double finalBeta = m.GammaBeta;
    VELT_NelMead minimiser;
    const int failures = RunReplicates(m, Source("_CalcGammaBootStraps"), [&](int b) {
        ResampleGammaCatch(m, m_gammaCatch);
        SumDiscountedCatches(m);
        WorkEsts = FinalEstimates;
        m.GammaNu = finalNu;
        m.GammaBeta = finalBeta;
        SetUpBootStrap(minimiser, 2);
        SetParameters(minimiser, FinalEstimates);
        minimiser.Minimise();
        if (!minimiser.Converged())
            return false;
        const double q = Div(m.GammaNu, m.GammaBeta);
        return q >= 0.0 && StoreReplicate(b, minimiser.Estimate(1), q, minimiser.Estimate(2));
    });
    WarnOfFailures(m, failures);
}
