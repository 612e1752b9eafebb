// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/FitSurface.h"

#include "base/modVeltGlobals.h"
#include "models/ModelState.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kUpperLimit = 1e20; // of a final search
constexpr double kSecondPoint = 4.0 / 3.0;

// A ratio of likelihoods is wanted to a hundredth, and n times the relative error of the objective is its
// error.
constexpr float kRatioFTOL = 1e-4F;
constexpr float kRatioXTOL = 1e-2F;
// A fit that is told to the user is searched as any other.
constexpr float kFitFTOL = 1e-7F;
constexpr float kFitXTOL = 1e-4F;
constexpr std::int16_t kMostSteps = 500;

// A search that stops this close below its limit ran into it.
constexpr double kInsideLimit = 0.999;
} // namespace

FitSurface::FitSurface(ISurfaceModel& model)
    : m_model(model), m_kept(std::make_unique<ModelState>(model.State())),
      m_unit(model.State().objectiveUnit), m_searched(model.Searched())
{
    model.State().PlotEvaluations = false; // the path of the search is drawn already
    for (int i = 1; i <= m_kept->NAPoints(); ++i)
        m_periods += m_kept->ToggledIn(i) ? 1 : 0;
}

FitSurface::~FitSurface()
{
    m_model.State() = *m_kept;
}

double FitSurface::At(std::span<const double> x)
{
    // The shape is searched from where it starts; the same point must give the same value whatever was asked
    // before.
    m_model.State().GammaNu = m_kept->GammaNu;
    m_model.State().GammaBeta = m_kept->GammaBeta;
    try {
        const double value = m_model.SurfaceValue(x);
        return InItsOwnUnit(value);
    } catch (const VeltError& error) {
        if (!error.IsNumeric())
            throw;
        return kInfinite;
    }
}

double FitSurface::InItsOwnUnit(double value) const
{
    return value < VELT_NelMead::kPenalty ? value * m_unit : kInfinite;
}

double FitSurface::AtEstimate()
{
    if (!m_atEstimate)
        m_atEstimate = At(std::span(m_searched.estimate).first(m_searched.count));
    return *m_atEstimate;
}

double FitSurface::INelMead_MinFunc(std::span<const double> x)
{
    return std::min(At(x) / m_unit, VELT_NelMead::kPenalty); // its sign for "outside"
}

void FitSurface::SetUp(float ftol, float xtol, std::int32_t convergeOn)
{
    m_minimiser.Create(*this, static_cast<std::int16_t>(m_searched.count));
    m_minimiser.FTOL(ftol);
    m_minimiser.XTOL(xtol);
    m_minimiser.MaxIts(kMostSteps);
    m_minimiser.ConvergeOn(convergeOn);
}

double FitSurface::Refitted(std::size_t held, double value)
{
    std::array<double, 2> x = m_searched.estimate;
    x.at(held) = value;
    const std::size_t other = 1 - held;
    if (m_searched.count == 1 || m_searched.held.at(other))
        return At(std::span(x).first(m_searched.count));
    SetUp(kRatioFTOL, kRatioXTOL, modVeltGlobals::kConvergeOnEither);
    for (std::size_t i = 0; i < m_searched.count; ++i)
        m_minimiser.SetParameter(static_cast<std::int16_t>(i + 1), x.at(i),
                                 i == held ? x.at(i) : x.at(i) * kSecondPoint, 0.0,
                                 std::max(kUpperLimit, x.at(i)));
    m_minimiser.Minimise();
    return InItsOwnUnit(m_minimiser.MinValue()); // also of a search that used up its steps
}

std::optional<FitSurface::Point> FitSurface::BestBelow(double limit)
{
    std::optional<Point> best;
    for (std::size_t number = 0;; ++number) {
        const auto start = m_model.SurfaceStart(number);
        if (!start)
            return best;
        const double first = m_searched.held[0] ? m_searched.estimate[0] : (*start)[0];
        const double second = std::min((*start)[1], limit / 2.0);
        SetUp(kFitFTOL, kFitXTOL, modVeltGlobals::kConvergeOnBoth);
        m_minimiser.SetParameter(1, first, m_searched.held[0] ? first : first * kSecondPoint, 0.0,
                                 std::max(kUpperLimit, first));
        m_minimiser.SetParameter(2, second, (second + limit) / 2.0, 0.0, limit);
        m_minimiser.Minimise();
        const Point found{{m_minimiser.Estimate(1), m_minimiser.Estimate(2)},
                          InItsOwnUnit(m_minimiser.MinValue())};
        if (m_minimiser.Converged() && found.x[1] < kInsideLimit * limit &&
            (!best || found.objective < best->objective))
            best = found;
    }
}

double FitSurface::RatioOfLikelihoods(double objective)
{
    const double best = AtEstimate();
    if (!(objective < kInfinite))
        return kInfinite;
    if (m_kept->FitOp == fit_op::kGamma)
        return 2.0 * (objective - best);
    if (!(objective > best))
        return objective > 0.0 ? m_periods * std::log(objective / best) : 0.0;
    return best > 0.0 ? m_periods * std::log(objective / best) : kInfinite; // nothing equals a perfect fit
}
