// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "base/VeltError.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace
{

constexpr double kCoordinateFloor = 1e-6; // of the unit: no coordinate but a logarithm counts as smaller
constexpr double kVisibleShare = 1e-4; // of the value: a difference that the rounding to 32 bits cannot feign
constexpr double kRoundingDecides = 0.1; // of XTOL: in a smaller simplex rounding spreads the values
constexpr double kOnePoint = 0x1p-24;    // 32-bit arguments nearer than that are one point, with one value
constexpr double kCoarseFTOL = 100.0;  // of a replicate, whose end the parabolas finish, and of a second look
constexpr double kSlopeSimplex = 0.02; // size of the simplex that goes on from a slope
constexpr double kFreshSimplex = 0.3;  // and of the fresh one that confirms a minimum
constexpr double kStarSimplex = 0.5;   // of the radius of the star that found its place
constexpr double kStars[] = {0.1, 0.3, 0.9, 2.7}; // radii of the last look, in units
constexpr int kDecades = 30;                      // looked through from a flat place
constexpr double kWidestClose = 0.1;              // the first of the close stars around a start
constexpr int kClose = 5;                         // of them, each a tenth of the one before
constexpr int kDoublings = 24;                    // of the start, that is how far the others go
} // namespace

void VELT_NelMead::Create(INelMead& callback, std::int16_t parameters)
{
    if (parameters < 1)
        RaiseInvalidArgument();
    m_space.Create(callback, static_cast<std::size_t>(parameters));
    FTOL(1e-7F);
    XTOL(1e-4F);
    m_maxIts = 500;
    m_eitherTest = false;
    m_care = Care::Final;
    m_visibleRise = 0.0;
    m_end = End::NotRun;
}

void VELT_NelMead::SetParameter(std::int16_t number, double start, double second, double lower, double upper)
{
    if (number < 1 || static_cast<std::size_t>(number) > m_space.Size())
        RaiseSubscript();
    if (std::isnan(start) || std::isnan(second) || std::isnan(lower) || std::isnan(upper))
        RaiseInvalidArgument();
    m_space.SetParameter(static_cast<std::size_t>(number) - 1, start, second, lower, upper);
}

double VELT_NelMead::Estimate(std::int16_t number) const
{
    if (number < 1 || static_cast<std::size_t>(number) > m_space.Size())
        RaiseSubscript();
    return m_space.LastPoint()[static_cast<std::size_t>(number) - 1];
}

bool VELT_NelMead::ConvergedOnFunction() const
{
    return (m_end == End::Converged || m_end == End::StepsUsed) && FunctionTest();
}

bool VELT_NelMead::ConvergedOnParameter() const
{
    return m_end != End::NotRun && m_end != End::OutsideDomain && ParameterTest();
}

void VELT_NelMead::Minimise()
{
    m_end = End::NotRun;
    m_space.Prepare();
    const std::size_t n = m_space.Free();
    for (Point* point : {&m_centroid, &m_trial, &m_kept})
        point->assign(n, 0.0);
    m_test.Create(n, m_care == Care::Final);
    m_steps = 0;
    m_atBorder = false;
    m_spread = m_size = 0.0;
    m_coarse = m_care == Care::Replicate;
    BuildFirstSimplex();
    m_end = n > 0 ? Search() : End::Converged;
    if (!m_space.BestIsLast())
        m_space.bestValue = m_space.Evaluate(m_space.best);
    if (m_space.bestValue >= kPenalty)
        m_end = End::OutsideDomain;
}

void VELT_NelMead::BuildFirstSimplex()
{
    const std::size_t n = m_space.Free();
    m_vertices.assign(n + 1, m_space.best);
    m_values.assign(n + 1, 0.0);
    for (std::size_t v = 0; n > 0 && v <= n; ++v) {
        if (v > 0)
            m_vertices[v][v - 1] = m_space.SecondCoordinate(v - 1);
        m_values[v] = m_space.Evaluate(m_vertices[v]);
    }
}

// The best point and one step of this size along each free parameter.
void VELT_NelMead::BuildSimplexAtBest(double size)
{
    const Point centre = m_space.best;
    m_vertices[0] = centre;
    m_values[0] = m_space.bestValue;
    for (std::size_t f = 0; f < m_space.Free(); ++f) {
        Point& vertex = m_vertices[f + 1];
        vertex = centre;
        vertex[f] = m_space.Within(f, centre[f] + size);
        if (std::fabs(vertex[f] - centre[f]) < 0.5 * std::fabs(size)) // cut off by a limit
            vertex[f] = m_space.Within(f, centre[f] - size);
        m_values[f + 1] = m_space.Evaluate(vertex);
    }
}

VELT_NelMead::End VELT_NelMead::Search()
{
    // A simplex of penalties, or of one and the same value, shows no direction.
    const auto [low, high] = std::minmax_element(m_values.begin(), m_values.end());
    if ((*low >= kPenalty || *low == *high) && !LookOutward() && *low >= kPenalty)
        return End::OutsideDomain;
    for (;; ++m_steps) { // a simplex built anew counts as a step, so that there is an end on every surface
        if (!Walk())
            return End::StepsUsed;
        if (m_steps > m_maxIts) // built anew after the last step, it met the tests at once
            return End::NoMinimum;
        const MinimumTest::Shape shape = m_test.Settle(m_space, Visible());
        if (shape == MinimumTest::Shape::Ragged)
            return End::NoMinimum;
        m_atBorder = shape == MinimumTest::Shape::Border;
        if (shape == MinimumTest::Shape::Slope)
            BuildSimplexAtBest(kSlopeSimplex);
        else if (!SomethingIsBetter(shape == MinimumTest::Shape::Flat))
            return End::Converged;
    }
}

// The simplex until the rule in force is met. \return false when the steps were used up before
bool VELT_NelMead::Walk()
{
    for (;; ++m_steps) {
        RankVertices();
        m_spread = Spread();
        m_size = Size();
        if (RuleMet())
            return true;
        if (m_steps >= m_maxIts)
            return false;
        Step();
    }
}

bool VELT_NelMead::FunctionTest() const
{
    return m_spread <= (m_coarse ? kCoarseFTOL * m_ftol : m_ftol) ||
           (m_size <= kRoundingDecides * m_xtol && m_spread <= kVisibleShare) || m_size <= kOnePoint;
}

bool VELT_NelMead::ParameterTest() const
{
    return m_size <= m_xtol;
}

bool VELT_NelMead::RuleMet() const
{
    return m_eitherTest ? FunctionTest() || ParameterTest() : FunctionTest() && ParameterTest();
}

double VELT_NelMead::Spread() const
{
    const double high = m_values[m_high];
    const double low = m_values[m_low];
    if (high >= kPenalty)
        return kPenalty;
    return high == low ? 0.0 : (high - low) / (0.5 * (std::fabs(high) + std::fabs(low)));
}

// Largest distance of a vertex from the best one along a parameter, as a share of that parameter.
double VELT_NelMead::Size() const
{
    double largest = 0.0;
    for (std::size_t f = 0; f < m_space.Free(); ++f) {
        const double low = m_vertices[m_low][f];
        const bool logarithm = m_space.FreeParameter(f).logarithm;
        const double size = logarithm ? 1.0 : std::max(std::fabs(low), kCoordinateFloor);
        for (const Point& vertex : m_vertices)
            largest = std::max(largest, std::fabs(vertex[f] - low) / size);
    }
    return largest;
}

void VELT_NelMead::RankVertices()
{
    m_low = m_high = 0;
    for (std::size_t v = 1; v < m_values.size(); ++v) {
        if (m_values[v] < m_values[m_low])
            m_low = v;
        if (m_values[v] >= m_values[m_high])
            m_high = v;
    }
    m_nextHigh = m_low;
    for (std::size_t v = 0; v < m_values.size(); ++v)
        if (v != m_high && m_values[v] > m_values[m_nextHigh])
            m_nextHigh = v;
}

void VELT_NelMead::Step()
{
    if (m_values[m_high] == m_values[m_low]) { // a plateau shows no direction
        ShrinkToBest();
        return;
    }
    for (std::size_t f = 0; f < m_space.Free(); ++f) {
        double sum = 0.0;
        for (std::size_t v = 0; v < m_vertices.size(); ++v)
            sum += v == m_high ? 0.0 : m_vertices[v][f] / static_cast<double>(m_space.Free());
        m_centroid[f] = sum;
    }
    const double reflected = TryAlong(1.0);
    if (reflected < m_values[m_low]) {
        m_kept = m_trial;
        const double expanded = TryAlong(2.0);
        if (expanded >= reflected)
            m_trial = m_kept;
        ReplaceWorst(std::min(expanded, reflected));
    } else if (reflected < m_values[m_nextHigh]) {
        ReplaceWorst(reflected);
    } else {
        Contract(reflected);
    }
}

// A tie is no success: with ties accepted the simplex would become flat along one direction while keeping its
// length along another. One parameter has one direction, and the shrunken point would be the same.
void VELT_NelMead::Contract(double reflected)
{
    const double contracted = TryAlong(reflected < m_values[m_high] ? 0.5 : -0.5);
    const double toBeat = std::min(reflected, m_values[m_high]);
    if (contracted < toBeat || (contracted == toBeat && m_space.Free() == 1))
        ReplaceWorst(contracted);
    else
        ShrinkToBest();
}

void VELT_NelMead::ShrinkToBest()
{
    for (std::size_t v = 0; v < m_vertices.size(); ++v) {
        if (v == m_low)
            continue;
        for (std::size_t f = 0; f < m_space.Free(); ++f)
            m_vertices[v][f] = 0.5 * (m_vertices[v][f] + m_vertices[m_low][f]);
        m_values[v] = m_space.Evaluate(m_vertices[v]);
    }
}

double VELT_NelMead::TryAlong(double factor)
{
    for (std::size_t f = 0; f < m_space.Free(); ++f)
        m_trial[f] = m_space.Within(f, m_centroid[f] + factor * (m_centroid[f] - m_vertices[m_high][f]));
    return m_space.Evaluate(m_trial);
}

void VELT_NelMead::ReplaceWorst(double value)
{
    m_vertices[m_high] = m_trial;
    m_values[m_high] = value;
}

double VELT_NelMead::Visible() const
{
    return m_visibleRise > 0.0 ? m_visibleRise : kVisibleShare * std::fabs(m_space.bestValue);
}

// Points at one distance from the best one, along the axes and the diagonals. Where one of them is better by
// more than the threshold, a simplex stands around the best of them.
bool VELT_NelMead::StarIsBetter(double radius, double threshold)
{
    const Point centre = m_space.best;
    const double before = m_space.bestValue;
    for (std::size_t f = 0; f < m_space.Free(); ++f) {
        for (const double along : {radius, -radius}) {
            std::fill(m_centroid.begin(), m_centroid.end(), 0.0);
            m_centroid[f] = along;
            m_space.EvaluateBeside(centre, m_centroid, 1.0);
            for (std::size_t g = f + 1; g < m_space.Free(); ++g) {
                for (const double across : {radius, -radius}) {
                    m_centroid[g] = across;
                    m_space.EvaluateBeside(centre, m_centroid, 1.0);
                }
                m_centroid[g] = 0.0;
            }
        }
    }
    if (m_space.bestValue < std::min(before, kPenalty) - threshold) { // one penalty is as good as another
        BuildSimplexAtBest(kStarSimplex * radius);
        return true;
    }
    m_space.best = centre;
    m_space.bestValue = before;
    return false;
}

// From a start that shows no direction: first close by, since it may stand on a spike too narrow for its own
// first step, then ever further away. \return whether something lower was found
bool VELT_NelMead::LookOutward()
{
    double radius = kWidestClose;
    for (int i = 0; i < kClose; ++i, radius *= 0.1)
        if (StarIsBetter(radius, 0.0))
            return true;
    for (int i = 1; i <= kDoublings; ++i)
        if (StarIsBetter(std::numbers::ln2 * i, 0.0))
            return true;
    return false;
}

// The last look before "converged". \return whether something is visibly better; a simplex stands there then
bool VELT_NelMead::SomethingIsBetter(bool flat)
{
    const double quarter = MinimumTest::kQuarter * Visible();
    for (int decade = 1; flat && decade <= kDecades; ++decade)
        if (StarIsBetter(std::numbers::ln10 * decade, quarter))
            return true;
    if (m_care == Care::Replicate)
        return false;
    for (const double radius : kStars)
        if (StarIsBetter(radius, quarter))
            return true;
    if (m_space.Free() == 1) // its two points go to and fro over the minimum anyway
        return false;
    const Point best = m_space.best;
    const double before = m_space.bestValue;
    BuildSimplexAtBest(-kFreshSimplex);
    const double spread = m_spread;
    const double size = m_size;
    m_coarse = true;
    Walk();
    m_coarse = false;
    m_spread = spread; // the tests are those of the search, not of its second look
    m_size = size;
    if (m_space.bestValue < before - quarter)
        return true;
    m_space.best = best;
    m_space.bestValue = before;
    return false;
}
