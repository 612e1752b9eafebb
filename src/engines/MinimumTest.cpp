// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/MinimumTest.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kFirstStep = 1e-3;    // of a unit
constexpr double kLongestStep = 0.5;   // of a unit: what does not rise up to here is flat
constexpr double kShortestStep = 1e-5; // of a unit: 32-bit arguments make shorter steps uneven
constexpr double kFarAbove = 16.0;     // visible rises, from which on a step is shortened
constexpr double kWanted = 2.0;        // visible rises, aimed at when a step is scaled
constexpr double kMostScaling = 10.0;  // of a step at once
constexpr int kCoarser = 3;            // times that a step which shows no parabola is lengthened
constexpr double kCoarserBy = 3.0;
// Half the step shows a quarter of a parabola's rise; a straight line shows a half, a fourth power a
// sixteenth.
constexpr double kLeastQuarter = 1.0 / 12.0;
constexpr double kMostQuarter = 1.0 / 2.4;
constexpr double kNear = 0.1; // steps from the vertex
constexpr int kRounds = 4;    // of parabolas, each at the vertex of the one before
} // namespace

void MinimumTest::Create(std::size_t dimensions, bool thorough)
{
    m_thorough = thorough || dimensions == 1;
    m_rounds = thorough ? kRounds : 1;
    m_axes.resize(dimensions);
    for (Line& axis : m_axes)
        axis.step.assign(dimensions, 0.0);
    m_diagonal.step.assign(dimensions, 0.0);
    m_vertex.assign(dimensions, 0.0);
}

MinimumTest::Shape MinimumTest::Settle(SearchSpace& space, double visible)
{
    m_space = &space;
    m_visible = visible;
    for (int round = 0; round < m_rounds; ++round) {
        m_point = space.best;
        m_value = space.bestValue;
        const Shape shape = Examine();
        if (shape == Shape::Slope)
            return shape;
        space.best = m_point;
        space.bestValue = m_value;
        if (shape != Shape::Bowl)
            return shape;
        const double lowest = space.EvaluateBeside(m_point, m_vertex, 1.0);
        if (lowest < m_value + kQuarter * visible) {
            space.best = space.At();
            space.bestValue = lowest;
        }
        if (m_distance <= kNear || space.best == m_point) // there, or held back by a limit
            return shape;
    }
    if (m_rounds == 1)
        return Shape::Bowl;
    return Shape::Ragged; // a bowl whose bottom runs on: the bend of a valley, not its lowest place
}

MinimumTest::Shape MinimumTest::Examine()
{
    std::fill(m_vertex.begin(), m_vertex.end(), 0.0);
    m_distance = 0.0;
    Shape worst = Shape::Bowl;
    for (std::size_t i = 0; i < m_axes.size() && worst != Shape::Slope; ++i) {
        Line& axis = m_axes[i];
        axis.step[i] = axis.length = kFirstStep;
        worst = std::max(worst, m_thorough ? Look(axis) : FindVisibleStep(axis));
    }
    for (std::size_t i = 0; i < m_axes.size() && worst == Shape::Bowl; ++i)
        for (std::size_t j = i + 1; j < m_axes.size() && worst == Shape::Bowl; ++j)
            worst = LookAlongDiagonals(i, j);
    if (m_axes.size() == 1 && worst == Shape::Bowl)
        AddVertex(m_axes.front());
    return worst;
}

double MinimumTest::ValueAt(const Line& line, double steps)
{
    return m_space->EvaluateBeside(m_point, line.step, steps);
}

void MinimumTest::MeasureStep(Line& line)
{
    line.up = ValueAt(line, 1.0);
    line.down = ValueAt(line, -1.0);
}

void MinimumTest::Scale(Line& line, double factor)
{
    const double length = std::clamp(factor * line.length, kShortestStep, kLongestStep);
    for (double& s : line.step)
        s *= length / line.length;
    line.length = length;
}

// Finds a step whose rise is visible but not far above that. Bowl says that there is one.
MinimumTest::Shape MinimumTest::FindVisibleStep(Line& line)
{
    bool borderSeen = false;
    bool lengthened = false; // a step is never shortened after that, so the loop ends on any surface
    for (;;) {
        MeasureStep(line);
        const double rise = Rise(line);
        const bool visible = rise >= m_visible && rise > 0.0; // a value of 0 makes the threshold 0
        if (SlopeSeen())
            return Shape::Slope;
        if (std::max(line.up, line.down) >= SearchSpace::kPenalty) {
            borderSeen = true;
            if (line.length <= kShortestStep)
                return Shape::Border;
            Scale(line, 1.0 / kMostScaling);
        } else if (!visible) {
            if (borderSeen)
                return Shape::Border;
            if (line.length >= kLongestStep)
                return Shape::Flat;
            lengthened = true;
            Scale(line,
                  rise > 0.0 ? std::min(std::sqrt(kWanted * m_visible / rise), kMostScaling) : kMostScaling);
        } else if (rise > kFarAbove * m_visible && !lengthened && line.length > kShortestStep) {
            Scale(line, std::sqrt(kWanted * m_visible / rise));
        } else {
            return Shape::Bowl;
        }
    }
}

MinimumTest::Shape MinimumTest::Look(Line& line)
{
    const Shape found = FindVisibleStep(line);
    if (found != Shape::Bowl)
        return found;
    bool steady = true;
    for (int coarser = 0;; ++coarser) {
        line.halfUp = ValueAt(line, 0.5);
        line.halfDown = ValueAt(line, -0.5);
        if (SlopeSeen())
            return Shape::Slope;
        const double quarter = HalfRise(line) / Rise(line);
        // A coarser step may have led into a dip, whose depths stand in the same proportion.
        if (Rise(line) >= m_visible && quarter > kLeastQuarter && quarter < kMostQuarter)
            return Shape::Bowl;
        steady = steady && line.halfUp <= line.up && line.halfDown <= line.down;
        if (coarser == kCoarser || line.length >= kLongestStep)
            return steady ? Shape::Edge : Shape::Ragged;
        Scale(line, kCoarserBy);
        MeasureStep(line);
    }
}

// In units of steps of equal rise the curvatures along both axes are the same, so the diagonals are
// conjugate.
MinimumTest::Shape MinimumTest::LookAlongDiagonals(std::size_t i, std::size_t j)
{
    const double equal = std::min(Rise(m_axes[i]), Rise(m_axes[j]));
    const auto equalStep = [&](std::size_t k) {
        return m_axes[k].length * std::sqrt(equal / Rise(m_axes[k]));
    };
    for (const double side : {1.0, -1.0}) {
        Line& diagonal = m_diagonal;
        std::fill(diagonal.step.begin(), diagonal.step.end(), 0.0);
        diagonal.step[i] = equalStep(i);
        diagonal.step[j] = side * equalStep(j);
        diagonal.length = std::max(equalStep(i), equalStep(j));
        const Shape shape = Look(diagonal);
        if (shape != Shape::Bowl)
            return shape;
        if (m_axes.size() == 2)
            AddVertex(diagonal);
    }
    return Shape::Bowl;
}

void MinimumTest::AddVertex(const Line& line)
{
    const double whole = (line.down - line.up) / (4.0 * Rise(line));
    const double half = 0.5 * (line.halfDown - line.halfUp) / (4.0 * HalfRise(line));
    const double steps = (4.0 * half - whole) / 3.0;
    for (std::size_t i = 0; i < m_vertex.size(); ++i)
        m_vertex[i] += steps * line.step[i];
    m_distance = std::max(m_distance, std::fabs(steps));
}
