// SPDX-License-Identifier: GPL-3.0-or-later
// The fitting schemes and bootstraps of clsProduction; its dynamics stand in clsProduction.cpp.
#include "base/Checked.h"
#include "models/LognormalFit.h"
#include "models/clsProduction.h"

#include <algorithm>
#include <cmath>
#include <string>

using checked::Div;
using checked::Sqrt;
using checked::ToFloat;

namespace
{
constexpr double kStepOfR = 0.5; // from a start to its second point

/// Puts a value back at the end of a scope, also when the user cancels in it.
class Restored
{
public:
    explicit Restored(double& value) : m_value(value), m_before(value) {}
    ~Restored() { m_value = m_before; }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

private:
    double& m_value;
    double m_before;
};
} // namespace

void clsProduction::FillWeights()
{
    // The presence asked for is that of the variance column, the value read is the index itself; this model
    // alone has this combination. Deliberate.
    const bool weighted = m.FitOp == fit_op::kWeightedLeastSquares && m.HasVariances();
    for (int t = 1; t <= m.NAPoints(); ++t) {
        if (!m.ToggledIn(t))
            WeightVec(t) = 0.0;
        else
            WeightVec(t) = weighted ? Div(1.0, m.data->AbundIndex(t)) : 1.0;
    }
    m.objectiveUnit = UnitOfSumSq(m, WeightVec.All());
}

bool clsProduction::SurvivesAt(double K, double R)
{
    m_contours.PlotStep(m, K, R);
    m.WorkEsts.K = K;
    m.WorkEsts.R = R;
    Follow(MeanStock::LeftOut);
    return R > 0.0 && !m.PopUnderflow;
}

double clsProduction::MinLSQFunction(double K, double R)
{
    if (K > kUpperLimit) // in 64 bits, unlike the other two
        return static_cast<double>(kFarPenalty);
    if (!SurvivesAt(K, R))
        return static_cast<double>(kPenalty);
    const auto periods = static_cast<std::size_t>(m.NAPoints());
    for (int t = 1; t <= m.NAPoints(); ++t) {
        const bool inFit = m.ToggledIn(t);
        m_lineX(t) = inFit ? 0.5 * m.Effort(t) * (static_cast<double>(m.Nt(t + 1)) + m.Nt(t)) : 0.0;
        m_lineY(t) = inFit ? static_cast<double>(m.CatchVector(t)) : 0.0;
    }
    m_line.Create(static_cast<std::int16_t>(periods));
    m_line.Weights(WeightVec.All().first(periods));
    m_line.X(m_lineX.All().first(periods));
    m_line.Y(m_lineY.All().first(periods));
    m_line.Solve();
    m.QValue = m_line.Slope();
    m.MinOK = true;
    return m_line.SumSq() / m.objectiveUnit;
}

float clsProduction::MinLogFunction(float K, float R)
{
    if (BeyondLimit(K))
        return kFarPenalty;
    if (!SurvivesAt(static_cast<double>(K), static_cast<double>(R)))
        return kFarPenalty;
    const float value = LnVarOfEvaluation(m);
    m.MinOK = true;
    return value;
}

float clsProduction::MinGammaFunction(float K, float R)
{
    if (BeyondLimit(K))
        return kFarPenalty;
    if (!SurvivesAt(static_cast<double>(K), static_cast<double>(R)))
        return kPenalty;
    const GammaProfile profile = GammaMinimisation(m);
    if (profile.failed)
        return kPenalty;
    m.MinOK = true;
    return profile.value;
}

double clsProduction::Objective(std::span<const double> x)
{
    switch (m.FitOp) {
    case fit_op::kLeastSquares:
        return MinLSQFunction(x[0], x[1]);
    case fit_op::kLog:
        return static_cast<double>(MinLogFunction(ToFloat(x[0]), ToFloat(x[1])));
    case fit_op::kGamma:
        return static_cast<double>(MinGammaFunction(ToFloat(x[0]), ToFloat(x[1])));
    default:
        return 0.0; // weighted least squares has no objective, so its fit always ends unconverged.
                    // Deliberate.
    }
}

double clsProduction::FailedEvaluation() const
{
    return static_cast<double>(m.FitOp == fit_op::kLog ? kFarPenalty : kPenalty);
}

/// r steps by a half whatever its size; a parameter that is held stays where the start was given.
SearchRange clsProduction::RangeOfStart(const Estimates& start, const Scheme& scheme) const
{
    SearchRange range = RangeFrom(start);
    range.second.R = start.R + kStepOfR;
    range.upper = {scheme.upperK, scheme.upperR};
    if (m.Fixed1)
        range.start.K = m.InitEsts.K;
    if (m.Fixed2)
        range.start.R = m.InitEsts.R;
    return range;
}

void clsProduction::RunStart(int number, const Scheme& scheme, BestFit& best, std::string& whyNot)
{
    m.MinOK = false;
    Estimates start = m.InitEsts;
    if (!m.SetStartingEsts) {
        start.R = RStarts[number - 1];
        SolveStartK(start); // also where it fails the search starts from what the record holds
    }
    MarkOnSurface(static_cast<ContourMark>(number), start);
    VELT_NelMead minimiser;
    SetUpFinal(minimiser, RangeOfStart(start, scheme));
    minimiser.Minimise();
    if (!minimiser.Converged() || !m.MinOK) {
        whyNot = ConvergenceText(minimiser, m.MinOK, TheRun().globals);
        if (m.MinOK)
            best.notArrivedAt = std::min(best.notArrivedAt, minimiser.MinValue());
        return;
    }
    const bool first = !best.found;
    best.found = true;
    const bool gamma = m.FitOp == fit_op::kGamma;
    if (!(minimiser.MinValue() < best.value) && !(gamma && first))
        return;
    const double q = gamma ? Div(m.GammaNu, m.GammaBeta) : m.QValue;
    best.estimates = {.K = minimiser.Estimate(1), .Q = q, .R = minimiser.Estimate(2)};
    best.value = minimiser.MinValue();
    best.nu = m.GammaNu;
    best.beta = m.GammaBeta;
    best.evaluations = minimiser.NumEvaluations();
    best.atBorder = minimiser.AtBorder();
}

clsProduction::BestFit clsProduction::Search(const Scheme& scheme)
{
    const int starts = !m.SetStartingEsts && !m.Fixed2 ? static_cast<int>(std::size(RStarts)) : 1;
    BestFit best;
    std::string whyNot;
    for (int number = 1; number <= starts; ++number)
        RunStart(number, scheme, best, whyNot);
    if (!best.found)
        RaiseNotConverged(whyNot, Source(scheme.procedure));
    KeepReport(best.value, best.evaluations, best.atBorder);
    if (best.notArrivedAt < best.value)
        m.notArrivedAt = best.notArrivedAt * m.objectiveUnit;
    m.FinalEsts = best.estimates;
    m.QValue = m.FinalEsts.Q;
    MarkOnSurface(ContourMark::Final, m.FinalEsts);
    m.WorkEsts = m.FinalEsts;
    CalcPopTraj();
    return best;
}

void clsProduction::LSQFinalEstimates()
{
    FillWeights();
    const BestFit best = Search({.upperK = static_cast<double>(kFarPenalty),
                                 .upperR = static_cast<double>(kFarPenalty),
                                 .procedure = "_CalcLSQFinalEstimates"});
    m.FinalEsts.Var = best.value * m.objectiveUnit;
    for (int t = 1; t <= m.NAPoints(); ++t) { // every period, whether included or not
        m.FittedVec(t) = ToFloat(m.EffMidPop(t) * m.QValue);
        m.ResidVec(t) =
            ToFloat(Sqrt(WeightVec(t)) * (static_cast<double>(m.CatchVector(t)) - m.FittedVec(t)));
    }
}

void clsProduction::LnFinalEstimates()
{
    for (int t = 1; t <= m.NAPoints(); ++t)
        m.CatchVector(t) = m.data->CatchWt(t);
    Search({.upperK = kUpperLimit, .upperR = kUpperLimit, .procedure = "_CalcLnFinalEstimates"});
    m.FinalEsts.Q = m.QValue = LnFitComputeQ(m);
    m.FinalEsts.Var = static_cast<double>(LnVarForMinimisation(m));
    FillLogResiduals(m, m.FinalEsts.Q, [this](int i) { return ExpectedMeanPop(i); });
}

void clsProduction::TakeMoments()
{
    MethodCommon::TakeMoments();
    m_startNu = m.GammaNu;
}

void clsProduction::GammaFinalEstimates()
{
    MomentStart();
    // The upper limits differ from those of the log search. Deliberate.
    const BestFit best = Search({.upperK = m.Fixed1 ? kUpperLimit : static_cast<double>(kFarPenalty),
                                 .upperR = m.Fixed2 ? kUpperLimit : static_cast<double>(kFarPenalty),
                                 .procedure = "_CalcGammaFinalEstimates"});
    m.GammaNu = best.nu;
    m.GammaBeta = best.beta;
    m.FinalEsts.Q = m.QValue = Div(m.GammaNu, m.GammaBeta);
    m.FinalEsts.Var = Div(1.0, m.GammaBeta);
    m.WorkEsts = m.FinalEsts;
    CalcPopTraj();
    // A period toggled out gets 0 whichever way its catch lies, unlike in the depletion models. Deliberate.
    FillGammaPositions(
        m, [this](int i) { return m.EffMidPop(i) * m.GammaNu; }, [](int) { return 0.0F; });
}

MethodCommon::ContourWords clsProduction::WordsOfContours() const
{
    return {TheRun().globals.Minimisation, "_IMethod_PlotInitContours"};
}

void clsProduction::PrepareContours()
{
    MethodCommon::PrepareContours();
    if (fit_op::IsLeastSquares(m.FitOp))
        FillWeights();
}

double clsProduction::GridValue(double K, double R)
{
    if (m.FitOp != fit_op::kWeightedLeastSquares)
        return MethodCommon::GridValue(K, R);
    // The grid has a surface for weighted least squares, although its search has none.
    try {
        return MinLSQFunction(K, R);
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
        return FailedEvaluation();
    }
}

SearchRange clsProduction::RefitRange() const
{
    SearchRange range = RangeFrom(m.FinalEsts);
    if (!fit_op::IsLeastSquares(m.FitOp))
        range.second.R = m.FinalEsts.R + kStepOfR;
    return range;
}

void clsProduction::DrawLSQCatch()
{
    for (int t = 1; t <= m.NAPoints(); ++t) {
        if (!m.ToggledIn(t))
            continue;
        // The residual alone is divided by the root of the weight, unlike in the depletion models.
        // Deliberate.
        const float drawn = m.ResidVec(GetValidPtNo(m));
        m.CatchVector(t) = ToFloat(Div(drawn, Sqrt(WeightVec(t))) + m.FittedVec(t));
    }
}

void clsProduction::DrawLogCatch()
{
    ResampleLogCatch(m, Resample::ToggledIn);
}

void clsProduction::DrawGammaCatch()
{
    MethodCommon::DrawGammaCatch();
    m.GammaNu = m_startNu;
}

void clsProduction::LSQBootStraps()
{
    FillWeights();
    const Restored q(m.QValue);
    // A cancel carries the name of the log routine. Deliberate.
    RefitReplicates("_CalcLnBootStraps", [this] { DrawLSQCatch(); });
}

bool clsProduction::KeepRefit(int b)
{
    const bool byLog = m.FitOp == fit_op::kLog;
    if (byLog)
        CalcPopTraj(); // q belongs to the estimates in 64 bits, not to the last evaluation
    m.WorkEsts.Q = fit_op::IsLeastSquares(m.FitOp) ? m.QValue : RefittedQ();
    if (m.WorkEsts.Q < 0.0) { // such a replicate stays in the sample, with these values
        m.WorkEsts.Q = 0.0;
        m.WorkEsts.K = static_cast<double>(kFarPenalty);
        if (byLog)
            m.WorkEsts.R = 0.0;
    }
    CalcPopTraj();
    StoreReplicate(b);
    return true;
}

std::optional<ISurfaceModel::Start> clsProduction::SurfaceStart(std::size_t number)
{
    if (number >= std::size(RStarts))
        return std::nullopt;
    Estimates start = m.InitEsts;
    start.R = RStarts[number];
    SolveStartK(start); // where it fails the search starts from what the record holds, as a fit does
    return Start{start.K, start.R};
}
