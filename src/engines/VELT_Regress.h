// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Weighted linear least squares through the origin by Householder QR with column pivoting for the rank
/// (Businger and Golub 1965): minimises the sum of w(i) (y(i) - b1 x1(i) - b2 x2(i) - ...)^2.
class VELT_Regress
{
public:
    /// \param columns number of regressors, at least 1. \param points number of observations.
    /// \throws VeltError 5 for less than one column or a negative number of points
    void Create(std::int16_t columns, std::int16_t points);
    /// `points` values; once for each regressor, in order.
    /// \throws VeltError 9 for another number of values or one column too many; so do the next two
    void AddColumn(std::span<const double> x);
    void Response(std::span<const double> y);
    void Weights(std::span<const double> w); ///< each at least 0; not called: all 1
    /// Solves. Never raises for bad numbers: Succeeded says whether a solution exists.
    void Solve();
    /// False when there are fewer points than columns, the columns are dependent to working precision, or a
    /// number is infinite, not a number, or a weight negative.
    bool Succeeded() const { return m_succeeded; }
    double Coefficient(std::int32_t column) const; ///< from 1; 0 without a solution. \throws VeltError 9

    /// Solves again for another response with the factorisation kept, for bootstraps: same result as a new
    /// object with these columns and weights.
    void SolveAgain(std::span<const double> y);

private:
    void TakeResponse(std::span<const double> y);
    bool Factorise();
    bool ScaleColumns();
    void PivotTo(std::size_t k);
    void Reflect(std::size_t k, double norm);
    bool BackSubstitute();
    double TailNorm2(std::size_t column, std::size_t from) const;
    std::span<double> QrColumn(std::size_t column);
    std::span<const double> QrColumn(std::size_t column) const;

    std::size_t m_columns = 0, m_points = 0, m_columnsGiven = 0;
    std::vector<double> m_x;         // the columns as given, one after the other
    std::vector<double> m_rootW;     // square roots of the weights
    std::vector<double> m_y, m_work; // the response; the same weighted and reflected
    std::vector<double> m_qr;        // reflectors on and below the diagonal, R above it
    std::vector<double> m_diagonal;  // of R
    std::vector<double> m_scale;     // b(j) = solution of the scaled column * scale(j)
    std::vector<double> m_b;
    std::vector<std::size_t> m_pivot;
    bool m_responseGiven = false, m_weightsValid = true, m_factorised = false, m_succeeded = false;
};
