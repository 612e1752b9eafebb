// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_Regress.h"

#include "base/VeltError.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace
{

double Dot(std::span<const double> a, std::span<const double> b)
{
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

// Applies I - v v' / c, the reflector `v` with its divisor, to `target`.
void ApplyReflector(std::span<const double> v, double divisor, std::span<double> target)
{
    const double factor = Dot(v, target) / divisor;
    for (std::size_t i = 0; i < v.size(); ++i)
        target[i] -= factor * v[i];
}

} // namespace

void VELT_Regress::Create(std::int16_t columns, std::int16_t points)
{
    if (columns < 1 || points < 0)
        RaiseInvalidArgument();
    m_columns = static_cast<std::size_t>(columns);
    m_points = static_cast<std::size_t>(points);
    m_columnsGiven = 0;
    m_x.assign(m_columns * m_points, 0.0);
    m_qr.assign(m_columns * m_points, 0.0);
    m_rootW.assign(m_points, 1.0);
    m_y.assign(m_points, 0.0);
    m_work.assign(m_points, 0.0);
    m_diagonal.assign(m_columns, 0.0);
    m_scale.resize(m_columns);
    m_b.assign(m_columns, 0.0);
    m_pivot.resize(m_columns);
    m_responseGiven = m_factorised = m_succeeded = false;
    m_weightsValid = true;
}

void VELT_Regress::AddColumn(std::span<const double> x)
{
    if (x.size() != m_points || m_columnsGiven == m_columns)
        RaiseSubscript();
    std::copy(x.begin(), x.end(), m_x.begin() + static_cast<std::ptrdiff_t>(m_columnsGiven * m_points));
    ++m_columnsGiven;
    m_factorised = m_succeeded = false;
}

void VELT_Regress::Response(std::span<const double> y)
{
    TakeResponse(y);
    m_succeeded = false;
}

void VELT_Regress::TakeResponse(std::span<const double> y)
{
    if (y.size() != m_points)
        RaiseSubscript();
    std::copy(y.begin(), y.end(), m_y.begin());
    m_responseGiven = true;
}

void VELT_Regress::Weights(std::span<const double> w)
{
    if (w.size() != m_points)
        RaiseSubscript();
    m_weightsValid = true;
    for (std::size_t i = 0; i < m_points; ++i) {
        m_weightsValid = m_weightsValid && w[i] >= 0.0;
        m_rootW[i] = w[i] >= 0.0 ? std::sqrt(w[i]) : 0.0;
    }
    m_factorised = m_succeeded = false;
}

void VELT_Regress::Solve()
{
    m_factorised = m_columnsGiven == m_columns && m_weightsValid && m_points >= m_columns && Factorise();
    m_succeeded = m_factorised && m_responseGiven && BackSubstitute();
    if (!m_succeeded)
        std::fill(m_b.begin(), m_b.end(), 0.0);
}

void VELT_Regress::SolveAgain(std::span<const double> y)
{
    TakeResponse(y);
    m_succeeded = m_factorised && BackSubstitute();
    if (!m_succeeded)
        std::fill(m_b.begin(), m_b.end(), 0.0);
}

double VELT_Regress::Coefficient(std::int32_t column) const
{
    if (column < 1 || static_cast<std::size_t>(column) > m_b.size())
        RaiseSubscript();
    return m_b[static_cast<std::size_t>(column) - 1];
}

std::span<double> VELT_Regress::QrColumn(std::size_t column)
{
    return std::span(m_qr).subspan(column * m_points, m_points);
}

std::span<const double> VELT_Regress::QrColumn(std::size_t column) const
{
    return std::span(m_qr).subspan(column * m_points, m_points);
}

// Every column gets the largest entry between 1/2 and 1: no square leaves the range, and the rank test does
// not depend on the units of the regressors. Powers of two, so that scaling rounds nothing.
bool VELT_Regress::ScaleColumns()
{
    for (std::size_t j = 0; j < m_columns; ++j) {
        double largest = 0.0;
        const std::span<double> column = QrColumn(j);
        for (std::size_t i = 0; i < m_points; ++i) {
            column[i] = m_x[j * m_points + i] * m_rootW[i];
            if (!std::isfinite(column[i]))
                return false;
            largest = std::max(largest, std::fabs(column[i]));
        }
        if (largest == 0.0)
            return false;
        int exponent = 0;
        std::frexp(largest, &exponent);
        m_scale[j] = std::ldexp(1.0, -exponent);
        for (double& entry : column)
            entry = std::ldexp(entry, -exponent);
    }
    return true;
}

double VELT_Regress::TailNorm2(std::size_t column, std::size_t from) const
{
    const auto tail = QrColumn(column).subspan(from);
    return Dot(tail, tail);
}

void VELT_Regress::PivotTo(std::size_t k)
{
    std::size_t best = k;
    double largest = 0.0;
    for (std::size_t j = k; j < m_columns; ++j) {
        const double norm2 = TailNorm2(j, k);
        if (norm2 > largest) {
            largest = norm2;
            best = j;
        }
    }
    if (best == k)
        return;
    std::swap_ranges(QrColumn(k).begin(), QrColumn(k).end(), QrColumn(best).begin());
    std::swap(m_pivot[k], m_pivot[best]);
    std::swap(m_scale[k], m_scale[best]);
}

void VELT_Regress::Reflect(std::size_t k, double norm)
{
    const std::span<double> v = QrColumn(k).subspan(k);
    m_diagonal[k] = v[0] > 0.0 ? -norm : norm;
    const double divisor = -m_diagonal[k] * (v[0] - m_diagonal[k]);
    v[0] -= m_diagonal[k];
    for (std::size_t j = k + 1; j < m_columns; ++j)
        ApplyReflector(v, divisor, QrColumn(j).subspan(k));
}

bool VELT_Regress::Factorise()
{
    if (!ScaleColumns())
        return false;
    std::iota(m_pivot.begin(), m_pivot.end(), std::size_t{0});
    // Rounding leaves a dependent column with some eps per point; ten times that is still dependence.
    const double dependent = 10.0 * static_cast<double>(m_points) * std::numeric_limits<double>::epsilon();
    for (std::size_t k = 0; k < m_columns; ++k) {
        PivotTo(k);
        const double norm = std::sqrt(TailNorm2(k, k));
        if (!(norm > dependent))
            return false;
        Reflect(k, norm);
    }
    return true;
}

bool VELT_Regress::BackSubstitute()
{
    for (std::size_t i = 0; i < m_points; ++i)
        m_work[i] = m_y[i] * m_rootW[i];
    for (std::size_t k = 0; k < m_columns; ++k) {
        const auto v = QrColumn(k).subspan(k);
        ApplyReflector(v, -m_diagonal[k] * v[0], std::span(m_work).subspan(k));
    }
    bool finite = std::all_of(m_work.begin(), m_work.end(), [](double y) { return std::isfinite(y); });
    for (std::size_t k = m_columns; k-- > 0;) {
        double sum = m_work[k];
        for (std::size_t j = k + 1; j < m_columns; ++j)
            sum -= m_qr[j * m_points + k] * m_work[j];
        m_work[k] = sum / m_diagonal[k];
        m_b[m_pivot[k]] = m_work[k] * m_scale[k];
        finite = finite && std::isfinite(m_b[m_pivot[k]]);
    }
    return finite;
}
