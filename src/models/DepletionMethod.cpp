// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/DepletionMethod.h"

#include "base/Checked.h"
#include "models/LognormalFit.h"

using checked::Div;
using checked::ToFloat;
using model_table::Quantity;

void DepletionMethod::FillRegression(bool weighted,
                                     const std::function<CatchRegression::Regressors(int i)>& regressors)
{
    for (int i = 1; i <= m.NAPoints(); ++i) {
        const CatchRegression::Regressors x = regressors(i);
        if (m.Included(i))
            m_regression.Row(i, x, m.CatchVector(i), weighted ? Div(1.0, m.data->VarAbundIndex(i)) : 1.0);
    }
}

void DepletionMethod::TakeCoefficients(Estimates& estimates) const
{
    estimates.Q = -m_regression.Coefficient(2);
    int column = 1;
    for (const Quantity quantity : m.Table().searched) {
        estimates[quantity] = Div(m_regression.Coefficient(column), estimates.Q);
        column += 2; // the second column is q's own
    }
}

bool DepletionMethod::SolveRegression()
{
    SumDiscountedCatches(m);
    BuildRegression();
    if (!m_regression.Solve(m))
        return false;
    TakeCoefficients(m.InitEsts);
    m.WorkEsts = m.InitEsts;
    CalcPopTraj();
    AtRegressionStart();
    m.LsqSumSq = StartSumSq(m.InitEsts.Q);
    return true;
}

/// The start of a model with one searched parameter: what the regression gave, repaired until it survives.
DepletionMethod::RegressionStart DepletionMethod::StartFromRegression()
{
    const Quantity first = m.Table().searched[0];
    RegressionStart found{.estimates = m.InitEsts};
    if (found.estimates[first] < 0.0) {
        if (fit_op::IsLeastSquares(m.FitOp)) {
            found.excuse = excuse::kPopulationUnderflow;
            return found;
        }
        found.estimates[first] = static_cast<double>(m.TotCatchSum);
        found.repaired = true;
    }
    m.WorkEsts = found.estimates; // a box for starting values must not stand at 99 doublings without help
    CalcPopTraj();
    const bool survives = DoubleUntilItSurvives([&] {
        found.repaired = true;
        m.WorkEsts[first] *= 2.0;
        CalcPopTraj();
    });
    if (!survives) {
        found.excuse = excuse::kNoStart;
        return found;
    }
    found.estimates = m.WorkEsts;
    if (found.estimates.Q < 0.0)
        found.estimates.Q = LnFitComputeQ(m);
    return found;
}

bool DepletionMethod::InitEstimates()
{
    if (!SolveRegression()) {
        m.Excuse = excuse::kNoStart;
        return false;
    }
    m.replacedStart.reset();
    const RegressionStart start = StartFromRegression();
    if (start.repaired) {
        m.replacedStart = m.InitEsts[m.Table().searched[0]];
        m.StartEstKind = 3;
    }
    m.InitEsts = start.estimates;
    if (start.excuse != excuse::kNone) {
        m.Excuse = start.excuse;
        return false;
    }
    CalcMinPop();
    return true;
}

void DepletionMethod::LSQFinalEstimates()
{
    m_regression.FillResiduals(m);
    m.FinalEsts = m.InitEsts;
    m.QValue = m.FinalEsts.Q;
    m.FinalEsts.Var = LSQVariance(m);
    m.objectiveUnit = UnitOfSumSq(m, m_regression.Weights());
}

double DepletionMethod::Objective(std::span<const double> x)
{
    if (fit_op::IsLeastSquares(m.FitOp))
        return 0.0; // nothing to minimise
    const float first = ToFloat(x[0]);
    const float second = m.Searched() == 2 ? ToFloat(x[1]) : 0.0F;
    return static_cast<double>(m.FitOp == fit_op::kLog ? MinLogFunction(first, second)
                                                       : MinGammaFunction(first, second));
}

double DepletionMethod::SurfaceValue(std::span<const double> x)
{
    if (!fit_op::IsLeastSquares(m.FitOp))
        return Objective(x);
    FollowAt(x);
    return m.PopUnderflow ? static_cast<double>(kPenalty)
                          : WeightedSumSq(m, m_regression.Weights()) / m.objectiveUnit;
}

void DepletionMethod::Search(const Estimates& start, const std::string& procedure)
{
    m.WorkEsts = m.InitEsts;
    m.MinOK = false;
    MarkOnSurface(ContourMark::Start1, start);
    VELT_NelMead minimiser;
    SetUpFinal(minimiser, RangeFrom(start));
    minimiser.Minimise();
    if (!minimiser.Converged() || !m.MinOK)
        RaiseNotConverged(ConvergenceText(minimiser, m.MinOK, TheRun().globals), SearchSource(procedure));
    m.FinalEsts = m.WorkEsts;
    TakeSearched(m.FinalEsts, minimiser);
    KeepReport(minimiser.MinValue(), minimiser.NumEvaluations(), minimiser.AtBorder());
    MarkOnSurface(ContourMark::Final, m.FinalEsts);
}

void DepletionMethod::LnFinalEstimates()
{
    Search(m.InitEsts, "CalcLnFinalEstimates");
    m.WorkEsts = m.FinalEsts;
    FinishLogFit();
}

void DepletionMethod::FinishLogFit()
{
    CalcPopTraj();
    m.FinalEsts.Q = m.QValue = LnFitComputeQ(m);
    m.FinalEsts.Var = static_cast<double>(LnVarForMinimisation(m));
    FillLogResiduals(m, m.FinalEsts.Q, [this](int i) { return m.MidPop(i); });
}

Estimates DepletionMethod::GammaSearchStart() const
{
    Estimates start = m.InitEsts;
    double& first = start[m.Table().searched[0]];
    first = static_cast<double>(ToFloat(first));
    return start;
}

void DepletionMethod::GammaFinalEstimates()
{
    MomentStart();
    Search(GammaSearchStart(), "CalcGammaFinalEstimates");
    m.FinalEsts.Q = m.QValue = Div(m.GammaNu, m.GammaBeta);
    m.FinalEsts.Var = Div(1.0, m.GammaBeta);
    m.WorkEsts = m.FinalEsts;
    CalcPopTraj();
    FillGammaPositions(
        m, [this](int i) { return m.Effort(i) * m.GammaNu * StockOfPositions(i); },
        [this](int i) {
            return m.CatchVector(i) > m.Effort(i) * m.QValue * StockOfPositions(i) ? 1.0F : 0.0F;
        });
}

void DepletionMethod::LSQBootStraps()
{
    BuildRegression();
    m_regression.Solve(m);
    AfterReplicates(RunReplicates(m, Source("_CalcLSQBootStraps"), [this](int b) {
        m_regression.SolveResampled(m);
        return KeepRegression(b);
    }));
}

void DepletionMethod::DrawLogCatch()
{
    ResampleLogCatch(m, Resample::EveryPeriod);
    SumDiscountedCatches(m);
}
