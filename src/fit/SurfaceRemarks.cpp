// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/SurfaceRemarks.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

namespace surface_remarks
{
using number_text::Fixed;
using remark_text::Listed;
using remark_text::Short;

namespace
{
/// 95 % point of chi squared with one degree of freedom: two fits that differ by less in twice the log
/// likelihood cannot be told apart by the data.
constexpr double kNoDifference = 3.84;

/// A stock so much larger that no use of the estimate survives it. On fits that hold the ratio of likelihoods
/// is then 9 and more, on a stock without an upper limit 0.
constexpr double kTimesTheStock = 10.0;

/// The search ends at 1e20; a decade below it the estimate is on its way there.
constexpr double kUpperEdge = 1e19;

/// Below a millionth of its usual size a parameter plays no part in 32-bit arithmetic.
constexpr double kLowerEdge = 1e-6;

/// From r = 2 on the equilibrium of a discrete logistic is unstable (May 1976); with B K^-z in place of
/// B / K from r z = 2 on, and in the logarithm of Fox from r = 2 on. Where production lags behind by L
/// periods it is so from 2 sin(pi / (4 L + 2)) on (Levin and May 1976): 1 for a lag of 1, 0.618 for 2.
double SteadyLimit(std::int16_t lag)
{
    return 2.0 * std::sin(std::numbers::pi / (4.0 * lag + 2.0));
}

/// A difference that a tolerance of a search cannot make.
constexpr double kBetterShare = 0.99; // of the objective
constexpr double kBetterLogs = 0.1;   // log units under gamma

double ShapeOf(const FitReading& fit)
{
    return fit.model == models::kPellaTomlinson ? static_cast<double>(fit.method.Z()) : 1.0;
}

/// What stands on the stock and so has no upper limit either.
std::string StandOnStock(const FitReading& fit)
{
    const modVeltGlobals::Globals& texts = fit.data.TheRun().globals;
    if (fit.IsProduction())
        return Listed({fit.StockName(), texts.MSY, texts.FinalBiomass});
    if (fit.model == models::kConstantRecruitment)
        return Listed({fit.StockName(), texts.ReplacementYield, texts.FinalPopulation});
    return Listed({fit.StockName(), texts.FinalPopulation});
}
} // namespace

Said StockUnbounded(const FitReading& fit, FitSurface& surface)
{
    if (surface.Searched().held[0]) // a stock that the user holds is none of the data's
        return {};
    const double objective = surface.Refitted(0, kTimesTheStock * surface.Searched().estimate[0]);
    const double ratio = surface.RatioOfLikelihoods(objective);
    if (!(ratio < kNoDifference))
        return {};
    return Remark{"StockUnbounded",
                  fit.StockName() +
                      " ten times as large fits the data about as well (twice the log likelihood "
                      "falls by " +
                      Fixed(std::max(ratio, 0.0), 2) +
                      ", and it takes 3.84 to tell two fits apart): the data set no upper limit to " +
                      fit.StockName() + ". Read " + StandOnStock(fit) + " as \"at least\"."};
}

namespace
{
/// Sizes from the data's own units, at which a parameter means something ordinary.
/// N1, K:   the total catch of all periods, which a stock must be able to yield.
/// q:       the mean catch rate over that same catch: a stock as large as the total catch.
/// Lambda:  the total catch over the sum of the recruitment index: recruits that replace the catch.
/// r:       1, a stock that doubles within a period; it has no unit but the period.
struct UsualSizes {
    double stock, q, second;
};

UsualSizes UsualSizesOf(const FitReading& fit)
{
    const double total = fit.TotalCatchSum();
    double caught = 0.0;
    double effort = 0.0;
    double recruits = 0.0;
    for (int t = 1; t <= fit.Periods(); ++t) {
        recruits += static_cast<double>(fit.data.RecruitIndex(t));
        if (!fit.InFit(t))
            continue;
        caught += static_cast<double>(fit.Catch(t));
        effort += static_cast<double>(fit.data.Effort(t));
    }
    return {total, caught / effort / total, fit.IsProduction() ? 1.0 : total / recruits};
}

bool AtEdge(double estimate, double usual)
{
    return !(estimate > 0.0) || estimate >= kUpperEdge || estimate < kLowerEdge * usual;
}
} // namespace

Said AtBound(const FitReading& fit, const FitSurface& surface)
{
    const UsualSizes usual = UsualSizesOf(fit);
    const auto& held = surface.Searched().held;
    std::vector<std::string> edges;
    const auto look = [&edges](const std::string& name, double estimate, double size) {
        if (AtEdge(estimate, size))
            edges.push_back(name + " (" + Short(estimate) + ")");
    };
    if (!held[0] && fit.method.Details().atBorder)
        edges.push_back(fit.StockName() + " (" + Short(fit.stock) + ", beside values without a likelihood)");
    else if (!held[0])
        look(fit.StockName(), fit.stock, usual.stock);
    look(fit.data.TheRun().globals.Q, fit.q, usual.q);
    if (fit.HasSecond() && !held[1])
        look(fit.SecondName(), fit.second, usual.second);
    if (edges.empty())
        return {};
    return Remark{"AtBound",
                  Listed(edges) + (edges.size() == 1 ? " lies" : " lie") +
                      " at the edge of what is possible: the search ran into it and found no fit in the "
                      "ordinary sense. Do not use the estimates."};
}

Said Oscillating(const FitReading& fit, FitSurface& surface)
{
    const double shape = ShapeOf(fit);
    const double limit = SteadyLimit(fit.method.LAG());
    if (!fit.IsProduction() || !(fit.second * shape > limit))
        return {};
    const std::string r = fit.SecondName();
    std::string text =
        shape == 1.0 ? r + " is " + Short(fit.second) : r + " times Z is " + Short(fit.second * shape);
    text += ": above " + Short(limit) + (fit.method.LAG() > 0 ? " at this time lag" : "") +
            " the biomass overshoots K and swings from period to period, and such dynamics fit noise.";
    if (surface.Searched().held[1])
        return Remark{"Oscillating", text};
    if (const auto steady = surface.BestBelow(limit / shape))
        text += " The best fit with steady dynamics has " + fit.StockName() + " = " + Short(steady->x[0]) +
                " and " + r + " = " + Short(steady->x[1]) + " at an objective of " +
                Short(steady->objective) + " in place of " + Short(surface.AtEstimate()) +
                "; start from there to see it.";
    return Remark{"Oscillating", text};
}

namespace
{
/// What a fit by another model object leaves in the data set and in the settings, put back at the end.
class KeptSelection
{
public:
    explicit KeptSelection(clsVeltData& data)
        : m_data(data), m_table(data.Table()), m_evaluations(data.TheRun().globals.settings.LastEvaluations)
    {
    }
    ~KeptSelection()
    {
        m_data.Table(std::move(m_table));
        m_data.TheRun().globals.settings.LastEvaluations = m_evaluations;
    }
    KeptSelection(const KeptSelection&) = delete;
    KeptSelection& operator=(const KeptSelection&) = delete;

private:
    clsVeltData& m_data;
    DataTable m_table;
    std::int32_t m_evaluations;
};

/// A model like the one that was fitted, with its inputs but none of its starts. Null when its own starts
/// lead nowhere.
std::unique_ptr<IMethod> FittedFromOwnStarts(const IMethod& like, clsVeltData& data)
{
    std::unique_ptr<IMethod> own = NewMethod(like.WhichMeth());
    own->Create(data);
    own->WhichMeth(like.WhichMeth());
    own->SetColumnRefs();
    own->FitOp(like.FitOp());
    own->Z(like.Z());
    own->LAG(like.LAG());
    own->InitDep(like.InitDep());
    own->Mort(like.Mort());
    own->SetStartingEsts(false);
    own->PlotEvaluations(false);
    own->CalcDiscCatches();
    try {
        if (!own->CalcInitEstimates() || !own->CalcFinalEstimates())
            return nullptr;
    } catch (const VeltError&) { // a search that does not arrive has nothing to show
        return nullptr;
    }
    return own;
}

bool IsBetter(std::int32_t fitOp, double objective, double than)
{
    return fitOp == fit_op::kGamma ? objective < than - kBetterLogs : objective < kBetterShare * than;
}
} // namespace

Said BetterFitKnown(const FitReading& fit, const FitSurface& surface, clsVeltData& data)
{
    const auto& held = surface.Searched().held;
    const FitDetails details = fit.method.Details();
    const auto& objective = details.objective;
    if (objective && details.notArrivedAt && IsBetter(fit.fitOp, *details.notArrivedAt, *objective))
        return Remark{"BetterFitKnown",
                      "A search from another start came to an objective of " + Short(*details.notArrivedAt) +
                          " and did not arrive; the fit shown, with " + Short(*objective) +
                          ", is the best of those that did. Raise the iterations (Settings) and fit again."};
    if (!fit.method.SetStartingEsts() || held[0] || held[1] || !objective)
        return {};
    const KeptSelection kept(data);
    const std::unique_ptr<IMethod> own = FittedFromOwnStarts(fit.method, data);
    if (!own)
        return {};
    const double ownObjective = own->Details().objective.value_or(*objective);
    const FitReading better = ReadFit(*own, data);
    const bool steady =
        !fit.IsProduction() || better.second * ShapeOf(better) < SteadyLimit(fit.method.LAG());
    if (!steady || !IsBetter(fit.fitOp, ownObjective, *objective))
        return {};
    std::vector<std::string> estimates{fit.StockName() + " = " + Short(better.stock),
                                       data.TheRun().globals.Q + " = " + Short(better.q)};
    if (fit.HasSecond())
        estimates.push_back(fit.SecondName() + " = " + Short(better.second));
    return Remark{"BetterFitKnown", "The starting values that were given led to an objective of " +
                                        Short(*objective) + "; from the program's own starts it is " +
                                        Short(ownObjective) + ", with " + Listed(estimates) +
                                        ". Fit again without starting values."};
}
} // namespace surface_remarks
