// SPDX-License-Identifier: GPL-3.0-or-later
// The fitting schemes and bootstraps of clsProduction; its dynamics stand in clsProduction.cpp.
#include "base/Checked.h"
#include "models/LognormalFit.h"
#include "models/clsProduction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

using checked::Div;
using checked::Sqrt;
using checked::ToFloat;

namespace
{
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
}

double clsProduction::MinLSQFunction(double K, double R)
{
    if (K > kUpperLimit) // in 64 bits, unlike the other two
        return static_cast<double>(kFarPenalty);
    m_contours.PlotStep(m, K, R);
    WorkEsts.K = K;
    WorkEsts.R = R;
    Follow(MeanStock::LeftOut);
    if (R <= 0.0 || m.PopUnderflow)
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
    return m_line.SumSq();
}

float clsProduction::MinLogFunction(float K, float R)
{
    if (BeyondLimit(K))
        return kFarPenalty;
    m_contours.PlotStep(m, K, R);
    WorkEsts.K = static_cast<double>(K);
    WorkEsts.R = static_cast<double>(R);
    Follow(MeanStock::LeftOut);
    if (R <= 0.0F || m.PopUnderflow)
        return kFarPenalty;
    const float value = LnVarOfEvaluation(m);
    m.MinOK = true;
    return value;
}

float clsProduction::MinGammaFunction(float K, float R)
{
    if (BeyondLimit(K))
        return kFarPenalty;
    m_contours.PlotStep(m, K, R);
    WorkEsts.K = static_cast<double>(K);
    WorkEsts.R = static_cast<double>(R);
    Follow(MeanStock::LeftOut);
    if (!(R > 0.0F) || m.PopUnderflow)
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

void clsProduction::RunStart(int number, const Scheme& scheme, BestFit& best, std::string& whyNot)
{
    m.MinOK = false;
    Estimates start = InitEsts;
    if (!m.SetStartingEsts) {
        start.R = RStarts[number - 1];
        SolveStartK(start); // also where it fails the search starts from what the record holds
    }
    m_contours.Mark(m, static_cast<ContourMark>(number), start.K, start.R);
    VELT_NelMead minimiser;
    SetUpFinal(minimiser, 2);
    minimiser.SetParameter(1, Fixed1 ? InitEsts.K : start.K, Fixed1 ? InitEsts.K : start.K * kSecondPoint,
                           0.0, scheme.upperK);
    minimiser.SetParameter(2, Fixed2 ? InitEsts.R : start.R, Fixed2 ? InitEsts.R : start.R + 0.5, 0.0,
                           scheme.upperR);
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
    const int starts = !m.SetStartingEsts && !Fixed2 ? static_cast<int>(std::size(RStarts)) : 1;
    BestFit best;
    std::string whyNot;
    for (int number = 1; number <= starts; ++number)
        RunStart(number, scheme, best, whyNot);
    if (!best.found)
        RaiseNotConverged(whyNot, Source(scheme.procedure));
    KeepReport(best.value, best.evaluations, best.atBorder);
    if (best.notArrivedAt < best.value)
        m.notArrivedAt = best.notArrivedAt;
    FinalEstimates = best.estimates;
    m.QValue = FinalEstimates.Q;
    m_contours.Mark(m, ContourMark::Final, FinalEstimates.K, FinalEstimates.R);
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    return best;
}

void clsProduction::LSQFinalEstimates()
{
    FillWeights();
    const BestFit best = Search({.upperK = static_cast<double>(kFarPenalty),
                                 .upperR = static_cast<double>(kFarPenalty),
                                 .procedure = "_CalcLSQFinalEstimates"});
    FinalEstimates.Var = best.value;
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
    FinalEstimates.Q = m.QValue = LnFitComputeQ(m);
    FinalEstimates.Var = static_cast<double>(LnVarForMinimisation(m));
    FillLogResiduals(m, FinalEstimates.Q, [this](int i) { return ExpectedMeanPop(i); });
}

void clsProduction::MomentStart()
{
    WorkEsts = InitEsts;
    CalcPopTraj();
    SumDiscountedCatches(m);
    GammaMomentStart(m, InitEsts.Q, m.LsqSumSq);
    m_startNu = m.GammaNu;
    m_startBeta = m.GammaBeta;
}

void clsProduction::GammaFinalEstimates()
{
    MomentStart();
    // The upper limits differ from those of the log search. Deliberate.
    const BestFit best = Search({.upperK = Fixed1 ? kUpperLimit : static_cast<double>(kFarPenalty),
                                 .upperR = Fixed2 ? kUpperLimit : static_cast<double>(kFarPenalty),
                                 .procedure = "_CalcGammaFinalEstimates"});
    m.GammaNu = best.nu;
    m.GammaBeta = best.beta;
    FinalEstimates.Q = m.QValue = Div(m.GammaNu, m.GammaBeta);
    FinalEstimates.Var = Div(1.0, m.GammaBeta);
    WorkEsts = FinalEstimates;
    CalcPopTraj();
    // A period toggled out gets 0 whichever way its catch lies, unlike in the depletion models. Deliberate.
    FillGammaPositions(
        m, [this](int i) { return m.EffMidPop(i) * m.GammaNu; }, [](int) { return 0.0F; });
}

double clsProduction::GridValue(double K, double R)
{
    if (m.FitOp != fit_op::kWeightedLeastSquares)
        return INelMead_MinFunc(std::array{K, R});
    // The grid has a surface for weighted least squares, although its search has none.
    try {
        return MinLSQFunction(K, R);
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
        return FailedEvaluation();
    }
}

bool clsProduction::PlotInitContours()
{
    constexpr const char* kProcedure = "_IMethod_PlotInitContours";
    if (!m_contours.HasRange())
        return false;
    return Traced(kProcedure, [this] {
        if (m.FitOp == fit_op::kGamma)
            MomentStart();
        if (fit_op::IsLeastSquares(m.FitOp))
            FillWeights();
        const double nu = m.GammaNu;
        const auto objective = [this, nu](double k, double r) {
            m.GammaNu = nu; // every cell of the grid starts from the same shape
            return GridValue(k, r);
        };
        m_contours.Draw(m, objective, TheRun().globals.Minimisation, kProcedure, Source(kProcedure));
        m_contours.StartPath(InitEsts.K, InitEsts.R);
        return true;
    });
}

bool clsProduction::Refit(VELT_NelMead& minimiser, double secondR)
{
    SetUpBootStrap(minimiser, 2);
    const double k = FinalEstimates.K;
    const double r = FinalEstimates.R;
    minimiser.SetParameter(1, k, Fixed1 ? k : k * kSecondPoint, 0.0, kUpperLimit);
    minimiser.SetParameter(2, r, Fixed2 ? r : secondR, 0.0, kUpperLimit);
    minimiser.Minimise();
    WorkEsts.K = minimiser.Estimate(1);
    WorkEsts.R = minimiser.Estimate(2);
    return minimiser.Converged();
}

void clsProduction::StoreReplicate(int b, bool keepR)
{
    if (WorkEsts.Q < 0.0) { // such a replicate stays in the sample, with these values
        WorkEsts.Q = 0.0;
        WorkEsts.K = static_cast<double>(kFarPenalty);
        if (!keepR)
            WorkEsts.R = 0.0;
    }
    CalcPopTraj();
    m_boot.BS(bs_param::kK, b, ToFloat(WorkEsts.K));
    m_boot.BS(bs_param::kQ, b, ToFloat(WorkEsts.Q));
    m_boot.BS(bs_param::kR, b, ToFloat(WorkEsts.R));
    m_boot.BS(bs_param::kMSY, b, MSYOf(WorkEsts));
    m_boot.BS(bs_param::kRYield, b, ProductionFunction(m.Nt(m.NDPoints() - m.LAG)));
}

void clsProduction::LSQBootStraps()
{
    FillWeights();
    const Restored q(m.QValue);
    VELT_NelMead minimiser;
    // A cancel carries the name of the log routine. Deliberate.
    RunReplicates(m, Source("_CalcLnBootStraps"), [this, &minimiser](int b) {
        for (int t = 1; t <= m.NAPoints(); ++t) {
            if (!m.ToggledIn(t))
                continue;
            // The residual alone is divided by the root of the weight, unlike in the depletion models.
            // Deliberate.
            const float drawn = m.ResidVec(GetValidPtNo(m));
            m.CatchVector(t) = ToFloat(Div(drawn, Sqrt(WeightVec(t))) + m.FittedVec(t));
        }
        if (!Refit(minimiser, FinalEstimates.R * kSecondPoint))
            return false;
        WorkEsts.Q = m.QValue;
        StoreReplicate(b, true);
        return true;
    });
}

void clsProduction::LnBootStraps()
{
    VELT_NelMead minimiser;
    RunReplicates(m, Source("_CalcLnBootStraps"), [this, &minimiser](int b) {
        ResampleLogCatch(m, Resample::ToggledIn);
        if (!Refit(minimiser, FinalEstimates.R + 0.5))
            return false;
        CalcPopTraj();
        WorkEsts.Q = LnFitComputeQ(m);
        StoreReplicate(b, false);
        return true;
    });
}

void clsProduction::GammaBootStraps()
{
    VELT_NelMead minimiser;
    RunReplicates(m, Source("_CalcGammaBootStraps"), [this, &minimiser](int b) {
        ResampleGammaCatch(m, m_gammaCatch);
        SumDiscountedCatches(m);
        m.GammaNu = m_startNu;
        m.GammaBeta = m_startBeta;
        if (!Refit(minimiser, FinalEstimates.R + 0.5))
            return false;
        WorkEsts.Q = Div(m.GammaNu, m.GammaBeta);
        StoreReplicate(b, true);
        return true;
    });
}

std::optional<ISurfaceModel::Start> clsProduction::SurfaceStart(std::size_t number)
{
    if (number >= std::size(RStarts))
        return std::nullopt;
    Estimates start = InitEsts;
    start.R = RStarts[number];
    SolveStartK(start); // where it fails the search starts from what the record holds, as a fit does
    return Start{start.K, start.R};
}
