// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/VELT_Regress.h"
#include "models/ModelState.h"

#include <array>
#include <span>

/// The linear form of a depletion model: the catch of a period is b1 x1 + b2 x2 (+ b3 x3) through the origin.
/// A model fills the rows of its Included periods; the regression runs over those that are also toggled in.
class CatchRegression
{
public:
    static constexpr int kMaxColumns = 3;
    using Regressors = std::array<double, kMaxColumns>; ///< unused ones 0

    explicit CatchRegression(int columns) : m_columns(columns) {}

    /// Row of period i. \param x regressors \param y catch \param w weight
    void Row(int i, const Regressors& x, double y, double w);

    /// Solves over the periods in the fit. \return whether a solution exists
    bool Solve(const ModelState& m);
    double Coefficient(int column) const { return m_regress.Coefficient(column); }
    std::span<const double> Weights() const { return m_w.All(); } ///< of the periods whose rows were given

    double SecondRegressor(int i) const { return m_x[1](i); }

    /// FittedVec and ResidVec (times the root of the weight) of the Included periods, from the coefficients.
    void FillResiduals(ModelState& m) const;

    /// Solves again for a resampled catch: the residual of a period drawn at random is added to each fitted
    /// value and the whole sum is divided by the root of the weight, although residuals are weighted
    /// already. Deliberate; with weights of 1 it has no effect.
    void SolveResampled(const ModelState& m);

private:
    int m_columns;
    std::array<Array1<double, clsVeltData::kRows>, kMaxColumns> m_x;
    Array1<double, clsVeltData::kRows> m_y;
    Array1<double, clsVeltData::kRows> m_w;
    std::vector<double> m_response; ///< reused by every replicate
    VELT_Regress m_regress;
};
