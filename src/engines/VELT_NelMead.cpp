// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "base/VeltError.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace
{

constexpr double kWorst = 3.4e38; // stands for a value that is infinite or not a number
constexpr double kReach = 1e300;  // limits beyond this are none; differences of points must not overflow

constexpr double kParameterFloor =
    1e-6; // of the start: below this share a parameter counts as 0 in the tests
constexpr double kFunctionFloor = 1e-16; // of the first value
constexpr double kOnePoint = 1e-9; // relative size below which no 32-bit argument can tell vertices apart

// A fresh simplex is as large as the first one, within these shares of the point.
constexpr double kLeastFresh = 0.05;
constexpr double kMostFresh = 0.5;
constexpr double kFreshFloor = 0.01; // of the start: a parameter at 0 still gets a fresh step

constexpr int kStepsBetweenLeaps = 8;
constexpr double kFarTravel = 0.05;   // in logarithms
constexpr double kLongestLeap = 64.0; // multiples of the travel

constexpr double kProbe = 0.03;         // share of the point
constexpr int kScalings = 24;           // doublings and halvings from a start on the penalty
constexpr double kRoughnessStep = 1e-5; // relative: many 32-bit neighbours apart, yet no visible curvature
constexpr int kRoughnessPoints = 8;
constexpr double kRecords = 4.0;       // deviations by which the noise alone can improve on a point
constexpr double kRoughShare = 1e-4;   // of the value: roughness from here on can hide the minimum
constexpr double kFloatUnit = 0x1p-23; // two neighbouring 32-bit values near 1

double AwayFromZero(double x, double floor)
{
    return std::max(std::fabs(x), floor);
}

double ScaleOf(double start, double second)
{
    const double scale = std::max(std::fabs(start), std::fabs(second));
    return scale > 0.0 ? scale : 1.0;
}

// What the shares of fresh steps and probes refer to: the parameter, or the start where the parameter counts
// as 0.
double StepSize(double x, double scale)
{
    return std::fabs(x) > kParameterFloor * scale ? std::fabs(x) : kFreshFloor * scale;
}

double FreshShare(double start, double second)
{
    const double share = start == 0.0 ? kMostFresh : std::fabs((second - start) / start);
    return std::clamp(share, kLeastFresh, kMostFresh);
}

// Standard deviation of the noise from the differences of order `order` (More and Wild 2011): noise of
// deviation s gives differences of variance s^2 (2 order)! / (order!)^2.
double DeviationFromDifferences(std::span<const double> differences, double varianceFactor)
{
    double sum = 0.0;
    for (const double d : differences)
        sum += d * d;
    return std::sqrt(sum / static_cast<double>(differences.size()) / varianceFactor);
}

} // namespace

void VELT_NelMead::Create(INelMead& callback, std::int16_t parameters)
{
    if (parameters < 1)
        RaiseInvalidArgument();
    const auto n = static_cast<std::size_t>(parameters);
    m_callback = &callback;
    m_parameters.assign(n, Parameter());
    m_freshSteps.assign(n, 0.0);
    m_vertices.assign((n + 1) * n, 0.0);
    m_values.assign(n + 1, 0.0);
    for (auto* point : {&m_centroid, &m_trial, &m_centre, &m_anchor, &m_ratio, &m_best})
        point->assign(n, 0.0);
    m_free.clear();
    m_free.reserve(n);
    const VELT_NelMead fresh;
    m_ftol = fresh.m_ftol;
    m_xtol = fresh.m_xtol;
    m_maxIts = fresh.m_maxIts;
    m_convergeOn = fresh.m_convergeOn;
    m_evaluations = m_steps = 0;
    m_minValue = 0.0;
    m_convergedOnFunction = m_convergedOnParameter = m_converged = false;
}

void VELT_NelMead::SetParameter(std::int16_t number, double start, double second, double lower, double upper)
{
    if (number < 1 || static_cast<std::size_t>(number) > m_parameters.size())
        RaiseSubscript();
    if (std::isnan(start) || std::isnan(second) || std::isnan(lower) || std::isnan(upper))
        RaiseInvalidArgument();
    m_parameters[static_cast<std::size_t>(number) - 1] = {start, second, std::max(lower, -kReach),
                                                          std::min(upper, kReach)};
}

double VELT_NelMead::Estimate(std::int16_t number) const
{
    if (number < 1 || static_cast<std::size_t>(number) > m_best.size())
        RaiseSubscript();
    return m_best[static_cast<std::size_t>(number) - 1];
}

void VELT_NelMead::Minimise()
{
    Prepare();
    if (m_free.empty()) {
        m_convergedOnFunction = m_convergedOnParameter = true;
        m_converged = true;
    } else {
        BuildStartSimplex();
        // A simplex of penalties, or of one and the same value, shows no direction.
        const auto [low, high] = std::minmax_element(m_values.begin(), m_values.begin() + Vertices());
        if (*low >= kPenalty || *low == *high)
            LookFurtherAfield(std::min(*low, kPenalty));
        if (m_minValue < kPenalty)
            SearchToTheEnd();
    }
    const double value = Evaluate(m_best);
    m_minValue = value;
    m_converged = m_converged && value < kPenalty;
}

void VELT_NelMead::Prepare()
{
    m_evaluations = m_steps = 0;
    m_convergedOnFunction = m_convergedOnParameter = m_converged = false;
    m_minValue = std::numeric_limits<double>::infinity();
    m_firstValue = 0.0;
    m_orientation = 1.0;
    m_free.clear();
    for (std::size_t i = 0; i < m_parameters.size(); ++i) {
        const Parameter& p = m_parameters[i];
        m_best[i] = m_trial[i] = Clamped(i, p.start);
        m_freshSteps[i] = FreshShare(p.start, p.second);
        if (p.start != p.second && p.lower < p.upper)
            m_free.push_back(i);
    }
    // Held coordinates are set here once: the search moves the free ones only.
    for (std::size_t v = 0; v <= m_parameters.size(); ++v)
        std::copy(m_best.begin(), m_best.end(), Vertex(v).begin());
}

double VELT_NelMead::Evaluate(std::span<const double> x)
{
    ++m_evaluations;
    double value = m_callback->INelMead_MinFunc(x);
    if (std::isnan(value))
        value = kWorst;
    value = std::clamp(value, -kWorst, kWorst);
    if (value < m_minValue) {
        m_minValue = value;
        if (x.data() != m_best.data())
            std::copy(x.begin(), x.end(), m_best.begin());
    }
    if (m_firstValue == 0.0 && value < kPenalty)
        m_firstValue = std::fabs(value);
    return value;
}

double VELT_NelMead::Clamped(std::size_t parameter, double x) const
{
    const Parameter& p = m_parameters[parameter];
    return std::min(std::max(x, p.lower), p.upper);
}

std::span<double> VELT_NelMead::Vertex(std::size_t v)
{
    return std::span(m_vertices).subspan(v * m_parameters.size(), m_parameters.size());
}

void VELT_NelMead::BuildStartSimplex()
{
    for (std::size_t v = 0; v <= m_free.size(); ++v) {
        const std::span<double> vertex = Vertex(v);
        if (v > 0) {
            const std::size_t i = m_free[v - 1];
            const Parameter& p = m_parameters[i];
            const double step = p.second - p.start;
            const double from = vertex[i];
            vertex[i] = Clamped(i, p.second);
            if (vertex[i] == from)
                vertex[i] = Clamped(i, from - step);
        }
        m_values[v] = Evaluate(vertex);
    }
}

// The best point and one step along each free parameter, towards `orientation`.
void VELT_NelMead::BuildSimplexAtBest(double shareOfStep, double orientation)
{
    std::copy(m_best.begin(), m_best.end(), m_centre.begin());
    for (std::size_t v = 0; v <= m_free.size(); ++v)
        std::copy(m_centre.begin(), m_centre.end(), Vertex(v).begin());
    m_values[0] = m_minValue;
    for (std::size_t v = 1; v <= m_free.size(); ++v) {
        const std::size_t i = m_free[v - 1];
        const Parameter& p = m_parameters[i];
        const double size = StepSize(m_centre[i], ScaleOf(p.start, p.second));
        const double step = orientation * shareOfStep * m_freshSteps[i] * size;
        const std::span<double> vertex = Vertex(v);
        vertex[i] = Clamped(i, m_centre[i] + step);
        if (std::fabs(vertex[i] - m_centre[i]) < 0.5 * std::fabs(step)) // cut off by a limit
            vertex[i] = Clamped(i, m_centre[i] - step);
        m_values[v] = Evaluate(vertex);
    }
}

// The start scaled up and down, jointly and along each parameter, until a value lies below the limit: first
// close by, since a start may stand on a spike too narrow for its own first step, then ever further away.
void VELT_NelMead::LookFurtherAfield(double limit)
{
    const auto found = [&](double factor) {
        for (std::size_t only = 0; only <= m_free.size() && (only == 0 || m_free.size() > 1); ++only) {
            if (TryScaled(factor, only) < limit || TryScaled(1.0 / factor, only) < limit)
                return true;
        }
        return false;
    };
    constexpr std::array kCloseBy{1.1, 1.01, 1.001, 1.0001, 1.00001};
    bool helped = std::any_of(kCloseBy.begin(), kCloseBy.end(), found);
    for (int k = 1; k <= kScalings && !helped; ++k)
        helped = found(std::ldexp(1.0, k));
    if (helped)
        BuildSimplexAtBest(1.0, 1.0);
}

// `onlyFree` from 1 scales that free parameter alone, 0 all of them.
double VELT_NelMead::TryScaled(double factor, std::size_t onlyFree)
{
    for (std::size_t f = 0; f < m_free.size(); ++f) {
        const std::size_t i = m_free[f];
        const Parameter& p = m_parameters[i];
        const double base = p.start != 0.0 ? p.start : p.second;
        const bool scaled = onlyFree == 0 || onlyFree == f + 1;
        m_trial[i] = Clamped(i, scaled ? base * factor : p.start);
    }
    return Evaluate(m_trial);
}

void VELT_NelMead::SearchToTheEnd()
{
    for (;;) {
        if (Run(Purpose::Search, 0.0, 0.0) == RunEnd::StepsUsed)
            return;
        const bool onFunction = m_convergedOnFunction, onParameter = m_convergedOnParameter;
        const Verdict verdict = m_convergeOn == 0 ? ConfirmShortly() : ConfirmFully();
        if (verdict == Verdict::Minimum) {
            m_convergedOnFunction = onFunction;
            m_convergedOnParameter = onParameter;
            m_converged = true;
            return;
        }
        if (verdict == Verdict::NoMinimum)
            m_steps = m_maxIts; // no search can arrive on such a surface
        if (m_steps >= m_maxIts) {
            UpdateTests();
            return;
        }
    }
}

// A confirming run ends early: as soon as it improves on `reference`, or when all that is left to it lies
// within `threshold`.
VELT_NelMead::RunEnd VELT_NelMead::Run(Purpose purpose, double reference, double threshold)
{
    const double endSize = 0.2 * RelativeSize();
    if (purpose == Purpose::Search)
        m_roughness = -1.0;
    std::copy(m_best.begin(), m_best.end(), m_anchor.begin());
    for (;;) {
        RankVertices();
        MergeCollapsed();
        UpdateTests();
        if (purpose == Purpose::Confirm) {
            if (m_minValue < reference - threshold)
                return RunEnd::Improved;
            if (m_convergedOnParameter || (RelativeSize() < endSize && ContractedWithin(threshold)))
                return RunEnd::NothingBetter;
        } else if (RuleMet()) {
            return RunEnd::TestsMet;
        } else if (m_convergedOnParameter && m_roughness < 0.0) {
            m_roughness = Roughness(); // no search can bring the values nearer together than that
            continue;
        }
        if (m_steps >= m_maxIts)
            return RunEnd::StepsUsed;
        Step();
        ++m_steps;
        if (m_free.size() > 1 && m_steps % kStepsBetweenLeaps == 0)
            LeapAlongValley(kFarTravel);
    }
}

void VELT_NelMead::RankVertices()
{
    const std::size_t count = m_free.size() + 1;
    m_low = m_high = 0;
    for (std::size_t v = 1; v < count; ++v) {
        if (m_values[v] < m_values[m_low])
            m_low = v;
        if (m_values[v] >= m_values[m_high])
            m_high = v;
    }
    m_nextHigh = m_low;
    for (std::size_t v = 0; v < count; ++v)
        if (v != m_high && m_values[v] > m_values[m_nextHigh])
            m_nextHigh = v;
}

void VELT_NelMead::Step()
{
    if (m_values[m_high] == m_values[m_low]) { // a plateau shows no direction
        ShrinkToBest();
        return;
    }
    for (const std::size_t i : m_free) {
        double sum = 0.0;
        for (std::size_t v = 0; v <= m_free.size(); ++v)
            sum += v == m_high ? 0.0 : Vertex(v)[i] / static_cast<double>(m_free.size());
        m_centroid[i] = sum;
    }
    const double reflected = TryAlong(1.0);
    if (reflected < m_values[m_low]) {
        std::copy(m_trial.begin(), m_trial.end(), m_centre.begin());
        const double expanded = TryAlong(2.0);
        if (expanded >= reflected)
            std::copy(m_centre.begin(), m_centre.end(), m_trial.begin());
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
    if (contracted < toBeat || (contracted == toBeat && m_free.size() == 1))
        ReplaceWorst(contracted);
    else
        ShrinkToBest();
}

void VELT_NelMead::ShrinkToBest()
{
    const std::span<const double> low = Vertex(m_low);
    for (std::size_t v = 0; v <= m_free.size(); ++v) {
        if (v == m_low)
            continue;
        const std::span<double> vertex = Vertex(v);
        for (const std::size_t i : m_free)
            vertex[i] = 0.5 * (vertex[i] + low[i]);
        m_values[v] = Evaluate(vertex);
    }
}

// Follows a valley that bends as x1 x2 = constant does: it is straight in the logarithms. When the best point
// has travelled far since the last look, the same ratios are applied again, and twice and four times, while
// that helps; then the whole simplex moves by what was reached, so that it keeps its shape.
void VELT_NelMead::LeapAlongValley(double leastTravel)
{
    bool far = false;
    std::copy(m_best.begin(), m_best.end(), m_centre.begin());
    for (const std::size_t i : m_free) {
        const double ratio = m_anchor[i] == 0.0 ? 1.0 : m_centre[i] / m_anchor[i];
        m_ratio[i] = ratio > 0.0 ? std::clamp(ratio, 1e-3, 1e3) : 1.0; // 1e3^64 is still a number
        far = far || std::fabs(std::log(m_ratio[i])) > leastTravel;
    }
    std::copy(m_best.begin(), m_best.end(), m_anchor.begin());
    double reached = 0.0;
    for (double exponent = 1.0; far && exponent <= kLongestLeap; exponent *= 2.0) {
        const double before = m_minValue;
        for (const std::size_t i : m_free)
            m_trial[i] = Clamped(i, m_centre[i] * std::pow(m_ratio[i], exponent));
        if (!(Evaluate(m_trial) < before))
            break;
        reached = exponent;
    }
    if (reached == 0.0)
        return;
    for (std::size_t v = 0; v <= m_free.size(); ++v) {
        const std::span<double> vertex = Vertex(v);
        for (const std::size_t i : m_free)
            vertex[i] = Clamped(i, vertex[i] * std::pow(m_ratio[i], reached));
        m_values[v] = Evaluate(vertex);
    }
    std::copy(m_best.begin(), m_best.end(), m_anchor.begin());
}

double VELT_NelMead::TryAlong(double factor)
{
    const std::span<const double> high = Vertex(m_high);
    for (const std::size_t i : m_free)
        m_trial[i] = Clamped(i, m_centroid[i] + factor * (m_centroid[i] - high[i]));
    return Evaluate(m_trial);
}

void VELT_NelMead::ReplaceWorst(double value)
{
    std::copy(m_trial.begin(), m_trial.end(), Vertex(m_high).begin());
    m_values[m_high] = value;
}

// What is left of a simplex too small for its callback to see is one point, and one point has one value.
void VELT_NelMead::MergeCollapsed()
{
    if (RelativeSize() > kOnePoint || m_values[m_low] >= kPenalty)
        return;
    const std::span<const double> low = Vertex(m_low);
    const double value = m_values[m_low];
    for (std::size_t v = 0; v <= m_free.size(); ++v) {
        std::copy(low.begin(), low.end(), Vertex(v).begin());
        m_values[v] = value;
    }
}

void VELT_NelMead::UpdateTests()
{
    const double spread = m_values[m_high] - m_values[m_low];
    const double size = 0.5 * (std::fabs(m_values[m_high]) + std::fabs(m_values[m_low]));
    const double tolerance = m_ftol * (size + kFunctionFloor * m_firstValue);
    m_convergedOnParameter = m_values[m_low] < kPenalty && RelativeSize() <= m_xtol;
    m_convergedOnFunction =
        m_values[m_high] < kPenalty && spread <= std::max(tolerance, kRecords * m_roughness);
}

// Largest distance of a vertex from the best one along a parameter, as a share of that parameter.
double VELT_NelMead::RelativeSize() const
{
    const std::size_t n = m_parameters.size();
    double largest = 0.0;
    for (const std::size_t i : m_free) {
        const double low = m_vertices[m_low * n + i];
        const Parameter& p = m_parameters[i];
        const double size = AwayFromZero(low, kParameterFloor * ScaleOf(p.start, p.second));
        for (std::size_t v = 0; v <= m_free.size(); ++v)
            largest = std::max(largest, std::fabs(m_vertices[v * n + i] - low) / size);
    }
    return largest;
}

bool VELT_NelMead::RuleMet() const
{
    return m_convergeOn == 0 ? m_convergedOnFunction || m_convergedOnParameter
                             : m_convergedOnFunction && m_convergedOnParameter;
}

bool VELT_NelMead::ContractedWithin(double threshold) const
{
    return m_values[m_high] < kPenalty && m_values[m_high] - m_values[m_low] <= threshold;
}

// A fresh simplex of the first one's size, turned the other way, and probes on both sides. On "search on" the
// simplex stands ready for the search to go on.
VELT_NelMead::Verdict VELT_NelMead::ConfirmFully()
{
    double threshold = Threshold();
    if (kRecords * m_roughness > kRoughShare * std::fabs(m_minValue)) {
        const double before = m_minValue;
        const rough_surface::Shape shape = LookThroughRoughness();
        if (shape == rough_surface::Shape::Bowl)
            return Verdict::Minimum;
        // A cusp is ragged too, but nothing beside it is better.
        if (shape == rough_surface::Shape::Ragged && m_minValue < before - m_ftol * std::fabs(before))
            return Verdict::NoMinimum;
    }
    // The points of one parameter are reflected to and fro anyway.
    if (m_free.size() > 1 && (ProbeImproves(kMostFresh, threshold) || ProbeImproves(kProbe, threshold)))
        return Verdict::SearchOn;
    const double reference = m_minValue;
    m_orientation = -m_orientation;
    BuildSimplexAtBest(1.0, m_orientation);
    RankVertices();
    const RunEnd end = Run(Purpose::Confirm, reference, threshold);
    return end == RunEnd::NothingBetter ? Verdict::Minimum : Verdict::SearchOn;
}

// For replicates: the middle of the simplex, which unmasks equal values on both sides of a valley, and a
// probe on both sides along every free parameter.
VELT_NelMead::Verdict VELT_NelMead::ConfirmShortly()
{
    double threshold = -1.0; // measured only when something looks better
    const double reference = m_minValue;
    for (const std::size_t i : m_free) {
        double sum = 0.0;
        for (std::size_t v = 0; v <= m_free.size(); ++v)
            sum += Vertex(v)[i] / static_cast<double>(m_free.size() + 1);
        m_trial[i] = Clamped(i, sum);
    }
    std::copy(m_best.begin(), m_best.end(), m_anchor.begin());
    const double middle = Evaluate(m_trial);
    if (middle < reference && TakeImprovement(reference, threshold))
        return Verdict::SearchOn;
    return ProbeImproves(kProbe, threshold) ? Verdict::SearchOn : Verdict::Minimum;
}

// A search ends in some dent of a rough surface, or in a narrow valley whose floor the dents hide. Parabolas
// through values that stand out of the roughness show where the minimum lies; as soon as the best point
// differs from it by roughness alone, the answer is that minimum and not the deepest dent met on the way, so
// that it does not hang on the start.
rough_surface::Shape VELT_NelMead::LookThroughRoughness()
{
    using rough_surface::Shape;
    constexpr int kRounds = 4;
    const auto positive = [this](std::size_t i) { return m_best[i] > 0.0; };
    if (m_free.size() > 2 || !std::all_of(m_free.begin(), m_free.end(), positive))
        return Shape::Flat;
    for (int round = 0; round < kRounds; ++round) {
        const double before = m_minValue;
        std::copy(m_best.begin(), m_best.end(), m_anchor.begin());
        const auto [shape, level, minimum] = rough_surface::FindMinimum(
            static_cast<int>(m_free.size()), before, m_roughness, kPenalty, [this](double u1, double u2) {
                DisplaceFromAnchor(u1, u2);
                return Evaluate(m_trial);
            });
        if (shape != Shape::Bowl)
            return shape;
        if (m_minValue < before - kRecords * m_roughness)
            continue;
        if (minimum.value < level + kRecords * m_roughness) {
            DisplaceFromAnchor(minimum.u1, minimum.u2);
            std::copy(m_trial.begin(), m_trial.end(), m_best.begin());
            m_minValue = minimum.value;
        }
        return Shape::Bowl;
    }
    return Shape::Flat;
}

// The trial point becomes the anchor moved by these logarithms of its free parameters.
void VELT_NelMead::DisplaceFromAnchor(double u1, double u2)
{
    std::copy(m_anchor.begin(), m_anchor.end(), m_trial.begin());
    const std::array u{u1, u2};
    for (std::size_t f = 0; f < m_free.size(); ++f)
        m_trial[m_free[f]] = Clamped(m_free[f], m_anchor[m_free[f]] * std::exp(u[f]));
}

bool VELT_NelMead::ProbeImproves(double shareOfPoint, double& threshold)
{
    std::copy(m_best.begin(), m_best.end(), m_anchor.begin());
    for (std::size_t f = 0; f < m_free.size(); ++f) {
        for (const double direction : {1.0, -1.0}) {
            if (ProbeAlong(f, f, direction * shareOfPoint, 0.0, threshold))
                return true;
            for (std::size_t g = f + 1; g < m_free.size(); ++g) // valleys seldom run along an axis
                for (const double across : {1.0, -1.0})
                    if (ProbeAlong(f, g, direction * shareOfPoint, across * shareOfPoint, threshold))
                        return true;
        }
    }
    return false;
}

// One probe from the anchor: free parameter `f` moved by `share`, and `g`, when it is another, by `shareOfG`.
bool VELT_NelMead::ProbeAlong(std::size_t f, std::size_t g, double share, double shareOfG, double& threshold)
{
    const auto moved = [this](std::size_t i, double shareOfPoint) {
        const Parameter& p = m_parameters[i];
        const double size = StepSize(m_anchor[i], ScaleOf(p.start, p.second));
        // Downwards by the reciprocal: x1 x2 stays the same when one goes up and the other down.
        const double move = shareOfPoint > 0.0 ? shareOfPoint : shareOfPoint / (1.0 - shareOfPoint);
        return Clamped(i, m_anchor[i] + move * size);
    };
    const double reference = m_minValue;
    std::copy(m_anchor.begin(), m_anchor.end(), m_trial.begin());
    m_trial[m_free[f]] = moved(m_free[f], share);
    if (g != f)
        m_trial[m_free[g]] = moved(m_free[g], shareOfG);
    if (m_trial == m_anchor)
        return false;
    return Evaluate(m_trial) < reference && TakeImprovement(reference, threshold);
}

// When the best point improves on `reference` by more than the threshold, the search goes on from there.
bool VELT_NelMead::TakeImprovement(double reference, double& threshold)
{
    const double improved = m_minValue;
    if (threshold < 0.0)
        threshold = Threshold();
    if (improved >= reference - threshold)
        return false;
    BuildSimplexAtBest(0.2, m_orientation);
    LeapAlongValley(0.0);
    return true;
}

// What an improvement has to exceed: the tolerance, and what the roughness of the surface can feign.
double VELT_NelMead::Threshold()
{
    if (m_roughness < 0.0)
        m_roughness = Roughness();
    return std::max(
        {m_ftol * std::fabs(m_minValue), kFloatUnit * std::fabs(m_minValue), kRecords * m_roughness});
}

double VELT_NelMead::Roughness()
{
    std::copy(m_best.begin(), m_best.end(), m_centroid.begin());
    const double up = RoughnessAlong(kRoughnessStep);
    return up >= 0.0 ? up : std::max(0.0, RoughnessAlong(-kRoughnessStep));
}

// From values at tiny equal steps of all free parameters jointly; below 0 when the points leave the domain.
double VELT_NelMead::RoughnessAlong(double step)
{
    std::array<double, kRoughnessPoints> table{};
    for (int k = 0; k < kRoughnessPoints; ++k) {
        std::copy(m_centroid.begin(), m_centroid.end(), m_trial.begin());
        for (const std::size_t i : m_free)
            m_trial[i] = Clamped(i, m_centroid[i] * (1.0 + step * (k + 1)));
        table[static_cast<std::size_t>(k)] = Evaluate(m_trial);
        if (table[static_cast<std::size_t>(k)] >= kPenalty)
            return -1.0;
    }
    double roughness = 0.0;
    for (std::size_t order = 1; order <= 4; ++order) {
        const std::size_t left = table.size() - order;
        for (std::size_t i = 0; i < left; ++i)
            table[i] = table[i + 1] - table[i];
        if (order >= 3) // slope and curvature are gone from here on
            roughness = std::max(
                roughness, DeviationFromDifferences(std::span(table).first(left), order == 3 ? 20.0 : 70.0));
    }
    return roughness;
}
