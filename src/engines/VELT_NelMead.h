// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/RoughSurface.h"
#include <cstddef>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The function that VELT_NelMead minimises.
class INelMead
{
public:
    virtual ~INelMead() = default;
    /// The value at `x` (parameter 1 first). It is often a widened 32-bit float, so plateaus are normal; a
    /// value of 1e20 or above says "outside the domain". Never not-a-number.
    virtual double INelMead_MinFunc(std::span<const double> x) = 0;
};

/// Bounded Nelder-Mead simplex minimiser (Nelder and Mead 1965) that looks again before it says "converged".
/// It does not search for the global minimum.
///
/// Order of use: Create, then SetParameter for each parameter and the four settings in any order, Minimise,
/// then the answers. Create makes it as new, so that one object serves many fits.
class VELT_NelMead
{
public:
    /// At and above this an objective value means "outside the domain".
    static constexpr double kPenalty = 1e20;

    /// First call; forgets everything of an earlier fit but the settings' defaults. `callback` must outlive
    /// the fit. \throws VeltError 5 when parameters is below 1
    void Create(INelMead& callback, std::int16_t parameters);

    /// Parameter `number` (from 1): its start, the second point of the start simplex along it, its limits.
    /// Equal points hold the parameter at that value. \throws VeltError 9 for a number that does not exist, 5
    /// when one of the four is not a number
    void SetParameter(std::int16_t number, double start, double second, double lower, double upper);

    void FTOL(float tolerance) { m_ftol = tolerance; }    ///< see ConvergedOnFunction
    void XTOL(float tolerance) { m_xtol = tolerance; }    ///< see ConvergedOnParameter
    void MaxIts(std::int16_t steps) { m_maxIts = steps; } ///< limit on simplex steps over the whole search
    void ConvergeOn(std::int32_t rule) { m_convergeOn = rule; } ///< 3 both tests, 0 either

    /// Runs the search. It ends with one evaluation at its best point, so whatever the callback keeps from
    /// its last evaluation belongs to the estimate. Reaching MaxIts is no failure: Converged is then false.
    void Minimise();

    /// The simplex's values spread less than FTOL * their size (plus a tiny floor), or no more than the
    /// measured roughness of the surface alone lets them.
    bool ConvergedOnFunction() const { return m_convergedOnFunction; }
    /// Each parameter spreads less than XTOL * the point (plus a tiny floor).
    bool ConvergedOnParameter() const { return m_convergedOnParameter; }
    /// The rule in force was met, at a point with a value below kPenalty that a fresh simplex around it could
    /// not improve on beyond the roughness of the surface. False where the surface is no bowl
    /// at any scale and better points turn up wherever one looks, as under chaotic dynamics.
    bool Converged() const { return m_converged; }
    std::int32_t NumEvaluations() const { return m_evaluations; }
    double MinValue() const { return m_minValue; } ///< function value at the best point
    double Estimate(std::int16_t number) const;    ///< \throws VeltError 9

private:
    struct Parameter {
        double start = 0.0, second = 0.0, lower = 0.0, upper = 0.0;
    };
    enum class Purpose { Search, Confirm };
    /// What a second look at a point says: it is a minimum; there is something better; the surface is so
    /// ragged there that no point can be called a minimum.
    enum class Verdict { Minimum, SearchOn, NoMinimum };
    enum class RunEnd { TestsMet, NothingBetter, Improved, StepsUsed };

    void Prepare();
    double Evaluate(std::span<const double> x);
    double Clamped(std::size_t parameter, double x) const;
    std::span<double> Vertex(std::size_t v);

    void BuildStartSimplex();
    void BuildSimplexAtBest(double shareOfStep, double orientation);
    void LookFurtherAfield(double limit);
    double TryScaled(double factor, std::size_t onlyFree);
    std::ptrdiff_t Vertices() const { return static_cast<std::ptrdiff_t>(m_free.size()) + 1; }
    void SearchToTheEnd();

    RunEnd Run(Purpose purpose, double reference, double threshold);
    void Step();
    void RankVertices();
    void Contract(double reflected);
    void ShrinkToBest();
    void LeapAlongValley(double leastTravel);
    double TryAlong(double factor);
    void ReplaceWorst(double value);
    void MergeCollapsed();
    void UpdateTests();
    bool RuleMet() const;
    bool ContractedWithin(double threshold) const;
    double RelativeSize() const;

    Verdict ConfirmFully();
    rough_surface::Shape LookThroughRoughness();
    void DisplaceFromAnchor(double u1, double u2);
    Verdict ConfirmShortly();
    bool ProbeImproves(double shareOfPoint, double& threshold);
    bool ProbeAlong(std::size_t f, std::size_t g, double share, double shareOfG, double& threshold);
    bool TakeImprovement(double reference, double& threshold);
    double Threshold();
    double Roughness();
    double RoughnessAlong(double step);

    INelMead* m_callback = nullptr;
    std::vector<Parameter> m_parameters;
    std::vector<std::size_t> m_free;  // the parameters that are searched, from 0
    std::vector<double> m_freshSteps; // size of a fresh simplex along each parameter, as a share of the point
    std::vector<double> m_vertices;   // free + 1 points, one after the other
    std::vector<double> m_values;     // of the vertices
    std::vector<double> m_centroid, m_trial, m_centre, m_anchor, m_ratio, m_best;
    std::size_t m_low = 0, m_high = 0,
                m_nextHigh = 0; // vertices with the best, the worst and the next worst value
    float m_ftol = 1e-7F, m_xtol = 1e-4F;
    std::int16_t m_maxIts = 500;
    std::int32_t m_convergeOn = 3;
    std::int32_t m_evaluations = 0;
    std::int32_t m_steps = 0;
    double m_roughness = -1.0; // of the surface near the end of this run; below 0: not measured yet
    double m_firstValue = 0.0; // size of the first valid value, for the floor of the function test
    double m_minValue = 0.0;
    double m_orientation = 1.0;
    bool m_convergedOnFunction = false, m_convergedOnParameter = false, m_converged = false;
};
