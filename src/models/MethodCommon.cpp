// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/MethodCommon.h"

#include "base/Checked.h"
#include "base/MeterScope.h"
#include "base/NumberText.h"
#include "base/StringTable.h"
#include "models/LognormalFit.h"
#include "models/ModelGraphs.h"
#include "models/ModelTable.h"

#include <algorithm>
#include <cmath>
#include <utility>

std::string ConvergenceText(const VELT_NelMead& minimiser, bool someValue,
                            const modVeltGlobals::Globals& globals)
{
    const auto line = [&globals](bool succeeded, int what) {
        return globals.Minimisation + " " + LoadResString(succeeded ? 1956 : 1957) + " " +
               LoadResString(what) + ".";
    };
    return line(someValue && minimiser.ConvergedOnFunction(), 1958) + "\n" +
           line(minimiser.ConvergedOnParameter(), 1959);
}

MethodCommon::MethodCommon(std::string className, std::int32_t whichMeth) : m_className(std::move(className))
{
    m.WhichMeth = whichMeth;
    m.UsingNosFlag = !models::IsProduction(whichMeth);
    for (const model_table::Quantity quantity : model_table::Of(whichMeth).limits)
        m.BSFilled(model_table::InfoOf(quantity).bsParam) = true;
}

void MethodCommon::Create(clsVeltData& data)
{
    m.run = &data.TheRun();
    modVeltGlobals::CacheStrings(m.run->globals);
    m.NumBootStraps = Settings().NumBootStraps;
    m.data = &data;
}

float MethodCommon::BootStrap(std::int32_t parameter, std::int32_t n) const
{
    return m_boot.BS(parameter, n).value_or(0.0F);
}

float MethodCommon::SortedBootStrap(std::int32_t parameter, std::int32_t n) const
{
    return m_boot.SortedBS(parameter, n).value_or(0.0F);
}

void MethodCommon::WhichMeth(std::int32_t value)
{
    if (models::IsProduction(m.WhichMeth))
        m.WhichMeth = value;
}

void MethodCommon::CalcDiscCatches()
{
    Traced("_IMethod_CalcDiscCatches", [this] { SumDiscountedCatches(m); });
}

void MethodCommon::SetColumnRefs()
{
    Traced("_IMethod_SetColumnRefs", [this] { LoadColumnRefs(m); });
}

void MethodCommon::SetRSquared()
{
    Traced("_IMethod_SetRSquared", [this] { m.RSqr = RSquaredOf(m); });
}

bool MethodCommon::CalcInitEstimates()
{
    return Traced("_IMethod_CalcInitEstimates", [this] { return InitEstimates(); });
}

void MethodCommon::CalcCPUEVectors()
{
    Traced("_IMethod_CalcCPUEVectors",
           [this] { WriteCPUESeries(m, [this](int i) { return ExpectedMeanPop(i); }); });
}

bool MethodCommon::CalcFinalEstimates()
{
    m.objective.reset();
    m.notArrivedAt.reset();
    m.atBorder = false;
    m.evaluations = 0;
    if (m.FitOp == fit_op::kLog)
        Traced("_CalcLnFinalEstimates", [this] { LnFinalEstimates(); });
    else if (m.FitOp == fit_op::kGamma)
        Traced("_CalcGammaFinalEstimates", [this] { GammaFinalEstimates(); });
    else
        Traced("_CalcLSQFinalEstimates", [this] { LSQFinalEstimates(); });
    return true;
}

namespace
{
/// Shape and rate belong to the fit: replicates overwrite them, and a second run, also after Cancel, must
/// start from the same catch matrix as the first.
class KeptGamma
{
public:
    explicit KeptGamma(ModelState& m) : m_model(m), m_nu(m.GammaNu), m_beta(m.GammaBeta) {}
    ~KeptGamma()
    {
        m_model.GammaNu = m_nu;
        m_model.GammaBeta = m_beta;
    }
    KeptGamma(const KeptGamma&) = delete;
    KeptGamma& operator=(const KeptGamma&) = delete;

private:
    ModelState& m_model;
    double m_nu, m_beta;
};
} // namespace

void MethodCommon::CalcBootStraps()
{
    const KeptGamma keptGamma(m);
    m.HomeNu = m.GammaNu;
    m.NumBootStraps = Settings().NumBootStraps;
    m.IsBSDone = false;
    m_boot = clsBootStrap();
    TheRun().random.Randomize();
    CopyFinalToWorkEsts();
    CalcPopTraj();
    if (m.FitOp == fit_op::kLog) {
        Traced("_CalcLnBootStraps", [this] { LnBootStraps(); });
    } else if (m.FitOp == fit_op::kGamma) {
        Traced("_CalcGammaCatchMatrix", [this] { m_gammaCatch.Compute(m, Source("_CalcGammaCatchMatrix")); });
        Traced("_CalcGammaBootStraps", [this] { GammaBootStraps(); });
    } else {
        Traced("_CalcLSQBootStraps", [this] { LSQBootStraps(); });
    }
    SortBootstraps();
    m.IsBSDone = true;
}

void MethodCommon::SortBootstraps()
{
    const auto filled = std::count(m.BSFilled.begin(), m.BSFilled.end(), true);
    MeterScope meter(TheRun().meter, TheRun().globals.SortingBootstraps, static_cast<int>(filled));
    int sorted = 0;
    for (int parameter = 1; parameter <= bs_param::kCount; ++parameter) {
        if (!m.BSFilled(parameter))
            continue;
        m_boot.SortBS(parameter);
        meter.Done(++sorted, Source("_SortBootstraps"));
    }
}

bool MethodCommon::BuildModelGraphs()
{
    Traced("_BuildModelGraphs", [this] {
        WriteCPUESeries(m, [this](int i) { return ExpectedMeanPop(i); });
        AddModelGraphs(m);
        AddYieldGraph();
        TheRun().window.YieldToEvents();
    });
    return true;
}

void MethodCommon::CalcBootStrapHistos(float low, float high)
{
    SortBootstraps();
    Traced("_CalcBootStrapHistos", [&] { AddBootStrapHistos(m, m_boot, low, high); });
}

FitDetails MethodCommon::Details() const
{
    FitDetails details;
    details.initEsts = InitEstimateValues();
    details.var = FinalVar();
    details.objective = m.objective;
    details.atBorder = m.atBorder;
    details.notArrivedAt = m.notArrivedAt;
    details.evaluations = m.evaluations;
    const auto periods = static_cast<std::size_t>(m.NAPoints());
    const auto fitted = m.FittedVec.All().first(periods);
    const auto resid = m.ResidVec.All().first(periods);
    details.fitted.assign(fitted.begin(), fitted.end());
    details.resid.assign(resid.begin(), resid.end());
    details.fittedExists = m.FitOp != fit_op::kGamma;
    return details;
}

double MethodCommon::INelMead_MinFunc(std::span<const double> x)
{
    m.CatchUnexpected = m.ProfileFailed = false;
    try {
        double value = Objective(x);
        if (m.ProfileFailed)
            value = OnceMoreFromHome(x, value);
        return std::isnan(value) || m.CatchUnexpected ? FailedEvaluation() : value;
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
        return FailedEvaluation();
    }
}

double MethodCommon::SurfaceValue(std::span<const double> x)
{
    if (models::IsProduction(m.WhichMeth) || !fit_op::IsLeastSquares(m.FitOp))
        return Objective(x);
    RunTrajectoryAt(x);
    if (m.PopUnderflow)
        return static_cast<double>(kPenalty);
    return WeightedSumSq(m, RegressionWeights());
}

// An evaluation starts its profile where the last one ended. From far out, where a search looks around, no
// bracket of 20 steps reaches home again: without this one excursion would strand every evaluation after it.
double MethodCommon::OnceMoreFromHome(std::span<const double> x, double failed)
{
    const double nu = m.GammaNu;
    if (nu == m.HomeNu || !(m.HomeNu > 0.0))
        return failed;
    m.GammaNu = m.HomeNu;
    const double value = Objective(x);
    if (m.ProfileFailed)
        m.GammaNu = nu;
    return value;
}

void MethodCommon::SetUpFinal(VELT_NelMead& minimiser, std::int16_t parameters)
{
    minimiser.Create(*this, parameters);
    minimiser.MaxIts(Settings().intMaxIts);
    minimiser.FTOL(Settings().sngFTOL);
    minimiser.XTOL(Settings().sngXTOL);
    minimiser.ConvergeOn(Settings().ConvergeOn);
    if (m.FitOp == fit_op::kGamma)
        minimiser.VisibleRise(kVisibleLogLikelihood);
}

void MethodCommon::SetUpBootStrap(VELT_NelMead& minimiser, std::int16_t parameters)
{
    SetUpFinal(minimiser, parameters);
    minimiser.ConvergeOn(Settings().BootStrapConvergeOn);
    minimiser.HowCarefully(VELT_NelMead::Care::Replicate);
}

void MethodCommon::KeepReport(double minValue, std::int32_t evaluations, bool atBorder)
{
    m.atBorder = atBorder;
    m.objective = minValue;
    m.evaluations = evaluations;
    TheRun().globals.settings.LastEvaluations = evaluations;
}

void MethodCommon::RaiseNotConverged(const std::string& text, const std::string& source)
{
    m.Excuse = excuse::kNotConverged;
    throw ProgramError(errors::kMinimisationFailed, text, source);
}

double MethodCommon::StartSumSq(double q) const
{
    double sum = 0.0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.InFit(i))
            continue;
        const double r = m.CatchVector(i) - q * m.EffMidPop(i);
        sum += r * r;
    }
    return sum;
}

bool MethodCommon::DoubleUntilItSurvives(const std::function<void()>& doubleStart)
{
    constexpr int kMostDoublings = 99;
    int doublings = 0;
    for (; m.PopUnderflow && doublings < kMostDoublings; ++doublings)
        doubleStart();
    return doublings < kMostDoublings;
}

bool MethodCommon::StartFromRegression(CatchRegression& regression, double& first, double& q,
                                       const std::function<void(double, double)>& run,
                                       const std::function<void()>& afterFirstRun)
{
    const auto fail = [this](std::int32_t why) {
        m.Excuse = why;
        return false;
    };
    if (!regression.Solve(m))
        return fail(excuse::kNoStart);
    q = -regression.Coefficient(2);
    first = checked::Div(regression.Coefficient(1), q);
    const double byRegression = first;
    m.replacedStart.reset();
    run(first, q);
    afterFirstRun();
    m.LsqSumSq = StartSumSq(q);
    if (first < 0.0) {
        if (fit_op::IsLeastSquares(m.FitOp))
            return fail(excuse::kPopulationUnderflow);
        first = static_cast<double>(m.TotCatchSum);
        m.StartEstKind = 3;
        m.replacedStart = byRegression;
    }
    double start = first; // a box for starting values must not stand at 99 doublings that did not help
    run(start, q);
    const bool survives = DoubleUntilItSurvives([&] {
        start *= 2.0;
        m.StartEstKind = 3;
        m.replacedStart = byRegression;
        run(start, q);
    });
    if (!survives)
        return fail(excuse::kNoStart);
    first = start;
    if (q < 0.0)
        q = LnFitComputeQ(m);
    return true;
}

void MethodCommon::FillPositionsFromStartOfPeriod()
{
    FillGammaPositions(
        m, [this](int i) { return m.Effort(i) * m.GammaNu * m.Nt(i); },
        [this](int i) { return m.CatchVector(i) > m.Effort(i) * m.QValue * m.Nt(i) ? 1.0F : 0.0F; });
}

bool MethodCommon::AskStartingValue(const std::string& prompt, double suggestion,
                                    const std::function<bool(double)>& survives)
{
    const std::string title = LoadResString(1601);
    for (;;) {
        const auto reply = TheRun().user.InputBox(prompt, title, number_text::Plain(suggestion));
        if (!reply || reply->empty())
            return false;
        const auto value = number_text::ParseTyped(*reply);
        if (!value) {
            TheRun().user.Show({.text = LoadResString(1924)});
            return false;
        }
        if (survives(*value))
            return true;
        TheRun().user.Show({.text = LoadResString(1923)});
    }
}
