// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/CatchRegression.h"

#include "base/Checked.h"
#include "models/Bootstraps.h"

#include <vector>

using checked::Div;
using checked::Sqrt;
using checked::ToFloat;

void CatchRegression::Row(int i, const Regressors& x, double y, double w)
{
    for (std::size_t c = 0; c < m_x.size(); ++c)
        m_x[c](i) = x[c];
    m_y(i) = y;
    m_w(i) = w;
}

bool CatchRegression::Solve(const ModelState& m)
{
    const auto inFit = [&m](const Array1<double, clsVeltData::kRows>& series) {
        std::vector<double> chosen;
        for (int i = 1; i <= m.NAPoints(); ++i) {
            if (m.InFit(i))
                chosen.push_back(series(i));
        }
        return chosen;
    };
    m_response = inFit(m_y);
    m_regress.Create(static_cast<std::int16_t>(m_columns), static_cast<std::int16_t>(m_response.size()));
    for (int c = 0; c < m_columns; ++c)
        m_regress.AddColumn(inFit(m_x[static_cast<std::size_t>(c)]));
    m_regress.Response(m_response);
    m_regress.Weights(inFit(m_w));
    m_regress.Solve();
    return m_regress.Succeeded();
}

void CatchRegression::FillResiduals(ModelState& m) const
{
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.Included(i))
            continue;
        double fitted = 0.0;
        for (int c = 0; c < m_columns; ++c)
            fitted += m_regress.Coefficient(c + 1) * m_x[static_cast<std::size_t>(c)](i);
        m.FittedVec(i) = ToFloat(fitted);
        m.ResidVec(i) = ToFloat(Sqrt(m_w(i)) * (m_y(i) - m.FittedVec(i)));
    }
}

void CatchRegression::SolveResampled(const ModelState& m)
{
    std::size_t n = 0;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.InFit(i))
            continue;
        const int drawn = GetValidPtNo(m);
        m_response[n++] = Div(static_cast<double>(m.ResidVec(drawn)) + m.FittedVec(i), Sqrt(m_w(i)));
    }
    m_regress.SolveAgain(m_response);
}
