// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/SearchSpace.h"

#include <cstddef>
#include <span>
#include <vector>

/// Whether the best point of a search is a minimum of a surface whose values are rounded, judged from steps
/// so long that the surface rises visibly, never from derivatives. It looks along each axis and, where all of
/// them show a bowl, along the diagonals, on both sides and at half the step. Steps of equal rise along the
/// axes make the diagonals conjugate, so that the vertices of the parabolas along both are the minimum of a
/// quadratic surface of two parameters.
class MinimumTest
{
public:
    /// What the surface looks like around the point; of the axes the last in this order counts, of the
    /// diagonals the first that is no bowl.
    enum class Shape {
        Bowl,   ///< a parabola in every direction
        Edge,   ///< rises on every side, but as no parabola does: a cusp
        Border, ///< the domain ends nearer than the surface rises; along a slanted border it may still fall
        Flat,   ///< no visible rise within half a unit of a coordinate in some direction
        Ragged, ///< rises and falls with the step, or a bowl whose bottom runs on: no minimum that means
                ///< anything
        Slope,  ///< something beside the point is lower by a quarter of a visible rise
    };

    /// Of a visible rise: what is lower by that is better.
    static constexpr double kQuarter = 0.25;

    /// For searches with that many free parameters. \param thorough  judge several axes too, and not only
    /// take their steps for the diagonals from them: refits of nearly the same data need no second opinion
    void Create(std::size_t dimensions, bool thorough);

    /// Examines the best point of `space` and on a bowl of one or two parameters moves it to the vertices of
    /// the parabolas, their skew taken out by the half steps (Richardson 1911), not to the deepest dent that
    /// rounding left in it: the answer must not hang on the way that led here. A thorough test takes the
    /// parabolas anew there, until it stands within a tenth of a step of their vertex. On a slope the best
    /// point is the lower one that was met; otherwise it stays. \param visible the smallest rise that
    /// rounding cannot feign
    Shape Settle(SearchSpace& space, double visible);

private:
    /// A direction with its step, and the values on both sides of the point at the step and at half of it.
    struct Line {
        std::vector<double> step;
        double length = 0.0; ///< of the step: its largest component
        double up = 0.0, down = 0.0, halfUp = 0.0, halfDown = 0.0;
    };

    Shape Examine();
    double ValueAt(const Line& line, double steps);
    void MeasureStep(Line& line);
    static void Scale(Line& line, double factor);
    double Rise(const Line& line) const { return 0.5 * (line.up + line.down) - m_value; }
    double HalfRise(const Line& line) const { return 0.5 * (line.halfUp + line.halfDown) - m_value; }
    bool SlopeSeen() const { return m_space->bestValue < m_value - kQuarter * m_visible; }
    Shape FindVisibleStep(Line& line);
    Shape Look(Line& line);
    Shape LookAlongDiagonals(std::size_t i, std::size_t j);
    void AddVertex(const Line& line);

    SearchSpace* m_space = nullptr;
    SearchSpace::Point m_point; ///< that is examined, its value and the rise that counts
    double m_value = 0.0;
    double m_visible = 0.0;
    bool m_thorough = true;
    int m_rounds = 1; ///< of parabolas; one is taken for what it is
    std::vector<Line> m_axes;
    Line m_diagonal;
    std::vector<double> m_vertex; ///< from the point to the vertex of the parabolas
    double m_distance = 0.0;      ///< largest part of it along a line, in steps
};
