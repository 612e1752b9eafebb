// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/MethodCommon.h"

#include "base/MeterScope.h"
#include "base/StringTable.h"
#include "models/ModelGraphs.h"

#include <algorithm>
#include <utility>

using model_table::Quantity;

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
    m.objectiveUnit = 1.0;
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

std::vector<double> MethodCommon::FinalEsts()
{
    CopyFinalToWorkEsts();
    CalcPopTraj();
    std::vector<double> values;
    for (const Quantity quantity : m.Table().estimates)
        values.push_back(ValueOf(quantity, m.FinalEsts));
    return values;
}

double MethodCommon::ValueOf(Quantity quantity, const Estimates& of) const
{
    return model_table::IsDerived(quantity) ? Derived(quantity, of) : of[quantity];
}

double MethodCommon::Derived(Quantity quantity, const Estimates&) const
{
    if (quantity != Quantity::FinalPopulation && quantity != Quantity::FinalBiomass)
        RaiseInvalidArgument();
    return static_cast<double>(m.Nt(m.NDPoints()));
}

void MethodCommon::CopyQANDFinalToWorkEsts()
{
    for (const Quantity quantity : m.Table().searched)
        if (quantity != Quantity::Lambda)
            m.WorkEsts[quantity] = m.FinalEsts[quantity];
    m.WorkEsts.Q = m.QValue = m.FinalEsts.Q;
}

void MethodCommon::CopyBStrapsToWorkEsts(std::int16_t n)
{
    for (const Quantity quantity : m.Table().estimates)
        if (!model_table::IsDerived(quantity))
            m.WorkEsts[quantity] = static_cast<double>(BootStrap(model_table::InfoOf(quantity).bsParam, n));
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
    for (const Quantity quantity : m.Table().estimates)
        if (!model_table::IsDerived(quantity))
            details.initEsts.push_back(
                {std::string(model_table::InfoOf(quantity).key), m.InitEsts[quantity]});
    details.var = m.FinalEsts.Var;
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
