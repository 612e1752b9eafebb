// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/OriginRegress.h"

#include "base/Checked.h"

void OriginRegress::Create(std::int16_t points)
{
    *this = OriginRegress();
    m_points = points;
}

void OriginRegress::Solve()
{
    const std::size_t points = m_points > 0 ? static_cast<std::size_t>(m_points) : 0;
    if (m_x.size() != points || m_y.size() != points || m_w.size() != points)
        RaiseSubscript();
    double sumXX = 0.0, sumXY = 0.0;
    for (std::size_t i = 0; i < points; ++i) {
        if (m_w[i] == 0.0) // out, whatever stands in its cells
            continue;
        if (m_w[i] < 0.0)
            RaiseInvalidArgument();
        sumXX += m_w[i] * m_x[i] * m_x[i];
        sumXY += m_w[i] * m_x[i] * m_y[i];
    }
    const double slope = checked::Div(checked::Finite(sumXY), checked::Finite(sumXX));
    double sumSq = 0.0; // from the residuals: the difference of two sums would cancel on a good fit
    for (std::size_t i = 0; i < points; ++i) {
        const double residual = m_y[i] - slope * m_x[i];
        if (m_w[i] != 0.0)
            sumSq += m_w[i] * residual * residual;
    }
    m_sumSq = checked::Finite(sumSq);
    m_slope = slope;
}
