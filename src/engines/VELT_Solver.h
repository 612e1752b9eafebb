// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The function whose root VELT_Solver finds.
class ISolver
{
public:
    virtual ~ISolver() = default;
    virtual void ISolver_Fn(float x, float& y) = 0;
};

/// One-dimensional root finder: a bracketing search and Brent's method (Brent 1973), both guaranteed to end.
/// What the callback throws passes through; a function value that is not a number raises 5.
class VELT_Solver
{
public:
    void Init(); ///< resets bounds and tolerance
    /// Wanted width of the interval around the root, in the units of x; 0 or below: 1e-6 of the root. Either
    /// way the search ends when no float is left between the ends.
    void Tolerance(double value) { m_tolerance = value; }
    float Lower() const { return m_lower; } ///< bounds found by Bracket, Lower < Upper
    float Upper() const { return m_upper; }

    /// Finds x in [lower, upper] with Fn(x) = 0. Where Fn has no change of sign it gives the end with the
    /// smaller |Fn|: callers bracket first. \throws VeltError 5 when an end is infinite or not a number
    float Solve(ISolver& callback, float lower, float upper);

    /// Widens from `start` (above 0) upwards and downwards by `factor` until the sign of Fn changes; a value
    /// of exactly 0 counts as a change. \throws VeltError 6 when the float range ends first, 5 when start is
    /// not above 0 or factor not above 1
    void Bracket(ISolver& callback, float start, float factor);

private:
    struct Point {
        float x = 0.0F;
        float y = 0.0F;
    };
    static Point Evaluate(ISolver& callback, float x);
    bool StepOutwards(ISolver& callback, Point& edge, float next);
    Point BrentSearch(ISolver& callback, Point a, Point b) const;
    double HalfWidth(float root) const;

    double m_tolerance = 0.0; // 0: the default, relative to the root
    float m_lower = 0.0F;
    float m_upper = 0.0F;
};
