// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/VELT_NelMead.h"

#include <array>
#include <memory>
#include <optional>
#include <span>

struct ModelState;

/// The parameters that a model searches, at its estimates: N1 or K, and behind it Lambda or R.
struct SearchedParameters {
    std::size_t count = 1;
    std::array<double, 2> estimate{};
    std::array<bool, 2> held{}; ///< the user holds it at the estimate
};

/// What a surface asks of the model that it belongs to.
class ISurfaceModel
{
public:
    using Start = std::array<double, 2>;

    virtual ~ISurfaceModel() = default;
    virtual ModelState& State() = 0;
    virtual SearchedParameters Searched() const = 0;
    /// The objective at the searched parameters `x`, counted in State().objectiveUnit; 1e20 or more is
    /// outside the domain. \throws VeltError 5, 6, 11 where the arithmetic fails
    virtual double SurfaceValue(std::span<const double> x) = 0;
    /// Starting points of the model's own search, `number` from 0; none behind the last.
    virtual std::optional<Start> SurfaceStart(std::size_t number) = 0;
};

/// The objective around a fit that stands, for questions about the fit. While it lives the model evaluates
/// other points and draws nothing; at its end, also after a failure, the model is to the bit as it was. It
/// changes no estimate, no data set and no setting, and knows no biology.
///
/// Asked right after the fit: replicates overwrite the catches that the objective compares with.
class FitSurface : private INelMead
{
public:
    struct Point {
        std::array<double, 2> x{};
        double objective = 0.0;
    };

    /// `model` must hold a fit, and outlive the surface.
    explicit FitSurface(ISurfaceModel& model);
    ~FitSurface() override;
    FitSurface(const FitSurface&) = delete;
    FitSurface& operator=(const FitSurface&) = delete;

    const SearchedParameters& Searched() const { return m_searched; }
    int Periods() const { return m_periods; } ///< periods in the fit

    /// The objective at the searched parameters, with q (and the shape of the gamma model) in closed form.
    /// Infinite where an evaluation fails or lies outside the domain. Under the least squares of a regression
    /// it is the weighted sum of squares along the trajectory.
    double At(std::span<const double> x);
    double AtEstimate();

    /// The lowest objective with parameter `held` (from 0) at `value` and the others minimised from the
    /// values of the estimate, those that the user holds excepted.
    double Refitted(std::size_t held, double value);

    /// The best fit whose second parameter stays inside (0, limit), searched from the model's own starts.
    /// Nothing when no search arrives, or only on the limit itself.
    std::optional<Point> BestBelow(double limit);

    /// How much an `objective` is less likely than the estimate's, as twice the difference of the log
    /// likelihoods: n ln(f / f0) under least squares and log, where the variance is concentrated out, and
    /// 2 (f - f0) under gamma. Infinite for an infinite objective.
    double RatioOfLikelihoods(double objective);

private:
    double INelMead_MinFunc(std::span<const double> x) override;
    double InItsOwnUnit(double value) const;
    void SetUp(float ftol, float xtol, std::int32_t convergeOn);

    ISurfaceModel& m_model;
    std::unique_ptr<ModelState> m_kept;
    double m_unit; ///< of the values that the model gives
    SearchedParameters m_searched;
    int m_periods = 0;
    std::optional<double> m_atEstimate;
    VELT_NelMead m_minimiser;
};
