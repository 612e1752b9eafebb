// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/VELT_Solver.h"
#include "models/ModelState.h"

#include <string>
#include <vector>

/// Under the gamma model the catch of period i has shape nu X(i) and rate beta: its mean is (nu / beta) X(i).
/// For one trajectory nu is the root of a score equation, beta follows, and the likelihood is a number.

/// The score of nu: the sum over the periods toggled in of X(i) (ln(nu X(i)) - digamma(nu X(i)) +
/// ThetaVec(i)), every term and the running sum as 32-bit floats.
float ThetaFunc(const ModelState& m, float nu);

/// The search for the root of a score, as an engine sees it.
class ThetaRoot : public ISolver
{
public:
    explicit ThetaRoot(const ModelState& m) : m_model(m) {}
    void ISolver_Fn(float x, float& y) override { y = ThetaFunc(m_model, x); }

private:
    const ModelState& m_model;
};

struct GammaProfile {
    float value = 0.0F;  ///< negative log likelihood, or 1e10 when no root was bracketed
    bool failed = false; ///< no root was bracketed within 20 steps
};

/// Profiles nu and beta out at the current trajectory, starting from the current GammaNu; leaves both in `m`.
GammaProfile GammaMinimisation(ModelState& m);

/// Moment start: beta = q S / `sumSq`, nu = catch beta / S, with S the sum of X(i).
/// \throws VeltError 11 when the starting fit is perfect
void GammaMomentStart(ModelState& m, double q, double sumSq);

/// Fills ResidVec for the periods Included: the position P(shape(i), C(i) beta) of each catch in its own
/// distribution for those toggled in, and `outside(i)` for the others.
void FillGammaPositions(ModelState& m, const std::function<double(int)>& shape,
                        const std::function<float(int)>& outside);

/// Catches of period i (column) that stand where the catch of period j (row) stands in its own distribution.
class GammaCatchMatrix
{
public:
    /// Solves all pairs of periods toggled in, with a progress meter; other entries are 0.
    /// \throws VeltError 2263 with `source` when the user cancels
    void Compute(const ModelState& m, const std::string& source);
    float At(int j, int i) const; ///< \throws VeltError 9

private:
    int m_size = 0;
    std::vector<float> m_catch;
};
