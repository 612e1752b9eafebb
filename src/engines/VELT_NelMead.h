// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/INelMead.h"
#include "engines/MinimumTest.h"
#include "engines/SearchSpace.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Bounded simplex minimiser (Nelder and Mead 1965), in the coordinates of SearchSpace, that looks again
/// before it says "converged". It does not search for the global minimum.
///
/// Order of use: Create, then SetParameter for each parameter and the settings in any order, Minimise,
/// then the answers. Create makes it as new, so that one object serves many fits.
class VELT_NelMead
{
public:
    /// At and above this an objective value means "outside the domain".
    static constexpr double kPenalty = SearchSpace::kPenalty;

    /// How a search ended.
    enum class End {
        NotRun,
        Converged,     ///< see Converged
        OutsideDomain, ///< no point with a value below kPenalty was found, near the start or far from it
        StepsUsed,     ///< MaxIts simplex steps were not enough
        NoMinimum,     ///< the tests were met where the surface is ragged, or by one of ever better points
    };
    /// How closely a search looks around before it says "converged".
    enum class Care {
        Final,    ///< of a fit: also far from the minimum, and once more with a fresh simplex
        Replicate ///< of one of many refits of nearly the same data: around the minimum only
    };

    /// First call; forgets everything of an earlier fit, the settings too. `callback` must outlive
    /// the fit. \throws VeltError 5 when parameters is below 1
    void Create(INelMead& callback, std::int16_t parameters);

    /// Parameter `number` (from 1): its start, the second point of the start simplex along it, its limits.
    /// Equal points hold the parameter at that value. \throws VeltError 9 for a number that does not exist, 5
    /// when one of the four is not a number
    void SetParameter(std::int16_t number, double start, double second, double lower, double upper);

    /// Function test: highest - lowest value of the simplex <= tolerance * (|highest| + |lowest|) / 2. A
    /// replicate's search takes 100 times that, as the parabolas finish it. In a simplex smaller than a tenth
    /// of the parameter test's, where rounding decides, 1e-4 takes the tolerance's place; one that arguments
    /// of 32 bits cannot tell from a point (2^-24) meets the test with any values.
    void FTOL(float tolerance) { m_ftol = static_cast<double>(tolerance); }
    /// Parameter test: for each parameter |vertex - best vertex| <= tolerance * |best vertex| (in its
    /// logarithm: |difference| <= tolerance; otherwise |best vertex| counts as a millionth of the start's
    /// size at least).
    void XTOL(float tolerance) { m_xtol = static_cast<double>(tolerance); }
    void MaxIts(std::int16_t steps) { m_maxIts = steps; } ///< limit on simplex steps over the whole search
    void ConvergeOn(std::int32_t rule) { m_eitherTest = rule == 0; } ///< 0 either test, else (3) both
    void HowCarefully(Care care) { m_care = care; }                  ///< Final unless it is set
    /// From which difference on two values of the objective differ visibly, whatever its rounding does; 0, as
    /// it is unless set, stands for 1e-4 of the value.
    void VisibleRise(double rise) { m_visibleRise = rise; }

    /// Runs the search. It ends with one evaluation at its best point, so whatever the callback keeps from
    /// its last evaluation belongs to the estimate. Reaching MaxIts is no failure: Converged is then false.
    void Minimise();

    /// The function test was met, and nothing that was seen afterwards denied it.
    bool ConvergedOnFunction() const;
    /// The parameter test was met.
    bool ConvergedOnParameter() const;
    /// The rule in force was met at a point with a value below kPenalty that is a minimum as far as one can
    /// see: from steps that show a visible rise the surface is a bowl around it, an edge or flat
    /// (MinimumTest), and in the search of a fit neither points up to a factor of 15 away nor, of several
    /// parameters and as far as MaxIts reaches, a fresh simplex are visibly better.
    bool Converged() const { return m_end == End::Converged; }
    End HowItEnded() const { return m_end; }
    /// The minimum lies where the domain ends: there one cannot see that it is one. Along a border that runs
    /// aslant between the parameters better points may stand that no look around meets.
    bool AtBorder() const { return m_end == End::Converged && m_atBorder; }
    std::int32_t NumEvaluations() const { return m_space.Evaluations(); }
    double MinValue() const { return m_space.bestValue; } ///< function value at the best point
    double Estimate(std::int16_t number) const;           ///< \throws VeltError 9

private:
    using Point = SearchSpace::Point;

    void BuildFirstSimplex();
    void BuildSimplexAtBest(double size);
    End Search();

    bool Walk();
    void RankVertices();
    void Step();
    void Contract(double reflected);
    void ShrinkToBest();
    double TryAlong(double factor);
    void ReplaceWorst(double value);
    double Spread() const;
    double Size() const;
    bool FunctionTest() const;
    bool ParameterTest() const;
    bool RuleMet() const;

    double Visible() const;
    bool StarIsBetter(double radius, double threshold);
    bool LookOutward();
    bool SomethingIsBetter(bool flat);

    SearchSpace m_space;
    MinimumTest m_test;
    std::vector<Point> m_vertices;
    std::vector<double> m_values;                      ///< of the vertices
    std::size_t m_low = 0, m_high = 0, m_nextHigh = 0; ///< vertices: best, worst, next worst value
    Point m_centroid, m_trial, m_kept;
    double m_spread = 0.0, m_size = 0.0; ///< of the last simplex, as the two tests see it
    double m_ftol = 0.0, m_xtol = 0.0, m_visibleRise = 0.0;
    std::int16_t m_maxIts = 0;
    bool m_eitherTest = false;
    Care m_care = Care::Final;
    bool m_coarse = false; ///< the function test allows kCoarseFTOL times the tolerance
    std::int32_t m_steps = 0;
    bool m_atBorder = false;
    End m_end = End::NotRun;
};
