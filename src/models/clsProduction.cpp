// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsProduction.h"

#include "base/Checked.h"
#include "graphs/ModelGraph.h"
#include "models/LognormalFit.h"
#include "models/Trajectory.h"

#include <algorithm>
#include <cmath>
#include <memory>

using checked::Div;
using checked::Ln;
using checked::Pow;
using checked::Sqrt;
using checked::ToFloat;

clsProduction::clsProduction() : MethodCommon("clsProduction", models::kSchaefer)
{
    m.InitDep = 1.0F;
    m.PlotEvaluations = true; // unlike the other models this one starts with the view on
}

void clsProduction::Create(clsVeltData& data)
{
    MethodCommon::Create(data);
    m_contours.range.Param1Name = TheRun().globals.K;
    m_contours.range.Param2Name = TheRun().globals.R;
}

namespace
{
// The production functions with what does not change between periods taken out: each in 64 bits, its result
// the 32-bit float that the biomass is kept in.

/// Fox (1970): r N ln(K / N)
struct FoxGrowth {
    explicit FoxGrowth(const Estimates& ests) : r(ests.R), lnK(Ln(ests.K)) {}
    float operator()(float biomass) const
    {
        const double n = static_cast<double>(biomass);
        return ToFloat(r * n * (lnK - Ln(n)));
    }
    double r, lnK;
};

/// Schaefer (1954): r N (1 - N / K)
struct SchaeferGrowth {
    explicit SchaeferGrowth(const Estimates& ests) : r(ests.R), rOverK(ests.R / ests.K) {}
    float operator()(float biomass) const
    {
        const double n = static_cast<double>(biomass);
        return ToFloat(n * (r - rOverK * n));
    }
    double r, rOverK;
};

/// Pella and Tomlinson (1969): r N (1 - (N / K)^z)
struct PellaGrowth {
    PellaGrowth(const Estimates& ests, float z) : r(ests.R), k(ests.K), shape(static_cast<double>(z)) {}
    float operator()(float biomass) const
    {
        const double n = static_cast<double>(biomass);
        return ToFloat(r * n * (1.0 - Pow(n / k, shape)));
    }
    double r, k, shape;
};

/// Calls `use` with the production function of that model; a number that is none of the three has no growth.
template <typename Use>
auto WithGrowth(std::int32_t whichMeth, const Estimates& ests, float z, Use use)
{
    switch (whichMeth) {
    case models::kFox:
        return use(FoxGrowth(ests));
    case models::kSchaefer:
        return use(SchaeferGrowth(ests));
    case models::kPellaTomlinson:
        return use(PellaGrowth(ests, z));
    default:
        return use([](float) { return 0.0F; });
    }
}
} // namespace

float clsProduction::Production(float N, const Estimates& ests) const
{
    return WithGrowth(m.WhichMeth, ests, m_z, [N](const auto& growth) { return growth(N); });
}

float clsProduction::ProductionFunction(float N) const
{
    return N < 0.0F ? 0.0F : Production(N, m.WorkEsts);
}

float clsProduction::YieldOfBiomass(const float& N) const
{
    return Production(N, m.FinalEsts);
}

float clsProduction::MSYOf(const Estimates& record) const
{
    switch (m.WhichMeth) {
    case models::kFox:
        return ToFloat(record.R * record.K * std::exp(-1.0));
    case models::kSchaefer:
        return ToFloat(record.R * record.K / 4.0);
    case models::kPellaTomlinson: {
        const double z = static_cast<double>(m_z);
        const double share = std::exp(Div(-1.0, z) * Ln(z + 1.0));
        return ToFloat(record.R * record.K * share * (1.0 - share));
    }
    default:
        return 0.0F;
    }
}

double clsProduction::Derived(model_table::Quantity quantity, const Estimates& of) const
{
    using enum model_table::Quantity;
    if (quantity == MSY)
        return static_cast<double>(MSYOf(of));
    if (quantity == RYield)
        return static_cast<double>(ProductionFunction(m.Nt(m.NDPoints() - m.LAG)));
    return MethodCommon::Derived(quantity, of);
}

void clsProduction::CalcPopTraj()
{
    Follow(MeanStock::Computed);
}

void clsProduction::Follow(MeanStock meanStock)
{
    if (m.WorkEsts.K < 0.0) {
        m.PopUnderflow = true;
        m.EffMidPopSum = 0.0;
        std::fill_n(m.Nt.All().begin(), m.LastState(), 0.0F);
        return;
    }
    const bool withMean = meanStock == MeanStock::Computed || m.DIYTCatch;
    WithGrowth(m.WhichMeth, m.WorkEsts, m_z,
               [this, withMean](const auto& growth) { FollowBy(growth, withMean); });
    CalcThetaVecOf(m); // does nothing after an underflow
}

template <typename Growth>
void clsProduction::FollowBy(const Growth& growth, bool withMean)
{
    Trajectory t(m);
    const auto lag = static_cast<std::size_t>(std::max<std::int16_t>(m.LAG, 0));
    const double q = m.WorkEsts.Q;
    t.stock[0] = ToFloat(m.InitDep * m.WorkEsts.K);
    float biomass = t.stock[0];
    for (std::size_t p = 0; p < t.periods; ++p) {
        // The growth is the same in both uses: nothing that it reads changes between them.
        const float from = lag == 0 ? biomass : t.stock[p > lag ? p - lag : 0];
        // Below 0 only by the initial proportion of a fit that was read from a file.
        const double grown = from < 0.0F ? 0.0 : static_cast<double>(growth(from));
        if (withMean) { // what the effort alone would leave, by the trapezium; only a projected catch reads
                        // it
            const double qE = q * t.effort[p];
            const double byEffort = Div(biomass * (2.0 - qE) + 2.0 * grown, 2.0 + qE);
            t.meanStock[p] = ToFloat((byEffort + biomass) / 2.0);
            if (t.Projected(p))
                t.totalCatch[p] = ToFloat(qE * t.meanStock[p]);
        }
        const float next = ToFloat(grown + (static_cast<double>(biomass) - t.totalCatch[p]));
        if (next < 0.0F) { // exactly 0 is no underflow here, unlike in the depletion models
            m.PopUnderflow = true;
            std::fill_n(t.stock.begin() + static_cast<std::ptrdiff_t>(p) + 1, t.periods - p, 0.0F);
            return;
        }
        t.ExpectCatch(p, (static_cast<double>(next) + biomass) / 2.0);
        t.stock[p + 1] = biomass = next;
    }
}

void clsProduction::CalcMinPop()
{
    SearchMinPop(0);
}

bool clsProduction::SolveStartK(Estimates& record)
{
    m.WorkEsts = record;
    CalcPopTraj();
    const bool survives = DoubleUntilItSurvives([this] {
        m.WorkEsts.K *= 2.0;
        CalcPopTraj();
    });
    if (!survives)
        return false;
    float hi = ToFloat(m.WorkEsts.K); // the bisection is in 32 bits throughout
    float lo = 0.0F;
    for (int round = 0; round < kMostHalvings<float> && 0.01F * hi < hi - lo; ++round) {
        const float middle = (hi + lo) / 2.0F;
        m.WorkEsts.K = static_cast<double>(middle);
        CalcPopTraj();
        (m.PopUnderflow ? lo : hi) = middle;
    }
    m.WorkEsts.K = static_cast<double>(hi);
    CalcPopTraj();
    m.WorkEsts.Q = LnFitComputeQ(m);
    record = m.WorkEsts;
    return true;
}

double clsProduction::ExpectedMeanPop(int i) const
{
    return (static_cast<double>(m.Nt(i)) + m.Nt(i + 1)) / 2.0;
}

void clsProduction::SetContourBounds()
{
    constexpr double kFastGrowth = 1.5;
    constexpr double kSlowGrowth = 0.05;
    ContourRange& range = m_contours.range;
    Estimates fast = m.InitEsts;
    fast.R = kFastGrowth;
    SolveStartK(fast);
    Estimates slow = m.InitEsts;
    slow.R = kSlowGrowth;
    SolveStartK(slow);
    range.Param1Lo = ContourGrid::DecadeAround(fast.K).first;
    range.Param1Hi = ContourGrid::DecadeAround(slow.K).second;
    if (range.Param1Hi < range.Param1Lo)
        std::swap(range.Param1Lo, range.Param1Hi);
    range.Param2Lo = kSlowGrowth;
    range.Param2Hi = kFastGrowth;
}

bool clsProduction::InitEstimates()
{
    for (int t = 1; t <= m.NAPoints(); ++t)
        m.CatchVector(t) = m.data->CatchWt(t);
    SumDiscountedCatches(m);
    m.InitEsts.R = 0.1;
    m.InitEsts.K = static_cast<double>(m.TotCatchSum);
    if (!SolveStartK(m.InitEsts)) {
        m.Excuse = excuse::kNoStart;
        return false;
    }
    m.WorkEsts = m.InitEsts;
    CalcPopTraj();
    m.WorkEsts.Q = LnFitComputeQ(m);
    m.InitEsts = m.WorkEsts;
    CalcMinPop();
    SetContourBounds();
    m.WorkEsts = m.InitEsts;
    CalcPopTraj();
    m.LsqSumSq = StartSumSq(m.InitEsts.Q);
    return true;
}

void clsProduction::AddYieldGraph()
{
    constexpr int kPoints = 51;
    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < kPoints; ++i) {
        x.push_back(i * m.FinalEsts.K / (kPoints - 1));
        const float biomass = ToFloat(x.back());
        // Under Fox the logarithm has no value at zero biomass; the curve starts at 0.
        y.push_back(biomass > 0.0F ? std::max(0.0, static_cast<double>(YieldOfBiomass(biomass))) : 0.0);
    }
    auto graph = std::make_shared<ModelGraph>();
    graph->Create(kPoints);
    graph->Title("Equilibrium Yield Curve");
    graph->XTitle("Biomass");
    graph->YTitle("Yield");
    graph->XMeasure({.column = columns::PopWt});
    graph->YMeasure({.column = columns::TotCatchWt});
    graph->Type(GraphType::Line);
    graph->WithToggs(false);
    graph->XData(x);
    graph->YData(y);
    TheRun().window.AddModelGraph(std::move(graph));
}
