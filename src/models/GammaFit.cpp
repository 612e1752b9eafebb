// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/GammaFit.h"

#include "base/Checked.h"
#include "base/MeterScope.h"
#include "models/modGammLn.h"
#include "models/modMaths.h"

#include <cmath>

using checked::Div;
using checked::Ln;
using checked::ToFloat;

float ThetaFunc(const ModelState& m, float nu)
{
    const int periods = m.NAPoints();
    const auto toggledIn = m.data->ToggledIn().All();
    const auto expected = m.EffMidPop.All();
    const auto theta = m.ThetaVec.All();
    float sum = 0.0F;
    for (std::size_t i = 0; i < static_cast<std::size_t>(periods); ++i) {
        if (!toggledIn[i])
            continue;
        const double x = expected[i];
        const float term = ToFloat(x * (modMaths::LnMinusDigamma(nu * x) + theta[i]));
        sum = ToFloat(static_cast<double>(sum) + term);
    }
    return sum;
}

namespace
{
constexpr int kBracketSteps = 20;
constexpr float kNoProfile = 1e10F;

struct NuBracket {
    double lo = 0.0;
    double hi = 0.0;
    bool found = false;
};

/// The score falls with nu: walk up from a positive score and down from a negative one, by factors of 3.
NuBracket BracketNu(const ModelState& m, double start)
{
    const bool upwards = ThetaFunc(m, ToFloat(start)) >= 0.0F;
    NuBracket bracket{start, start, false};
    for (int step = 0; step < kBracketSteps && !bracket.found; ++step) {
        if (upwards) {
            bracket.lo = bracket.hi;
            bracket.hi *= 3.0;
            bracket.found = ThetaFunc(m, ToFloat(bracket.hi)) <= 0.0F;
        } else {
            bracket.hi = bracket.lo;
            bracket.lo /= 3.0;
            bracket.found = ThetaFunc(m, ToFloat(bracket.lo)) >= 0.0F;
        }
    }
    return bracket;
}

double LogLikelihood(const ModelState& m)
{
    double l = Ln(m.GammaBeta) * m.GammaNu * m.EffMidPopSum - m.CatchSum * m.GammaBeta;
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.ToggledIn(i))
            continue;
        const double shape = m.EffMidPop(i) * m.GammaNu;
        l -= modGammLn::GammLn(shape);
        if (m.CatchVector(i) > 0.0F)
            l += (shape - 1.0) * std::log(static_cast<double>(m.CatchVector(i)));
    }
    return l;
}
} // namespace

GammaProfile GammaMinimisation(ModelState& m)
{
    m.GammaBeta = Div(m.EffMidPopSum * m.GammaNu, m.CatchSum);
    const NuBracket bracket = BracketNu(m, m.GammaNu);
    m.ProfileFailed = !bracket.found;
    if (m.ProfileFailed)
        return {kNoProfile, true};
    VELT_Solver solver;
    solver.Init();
    solver.Tolerance(bracket.lo / 100000.0);
    ThetaRoot score(m);
    m.GammaNu = static_cast<double>(solver.Solve(score, ToFloat(bracket.lo), ToFloat(bracket.hi)));
    m.GammaBeta = Div(m.GammaNu * m.EffMidPopSum, m.CatchSum);
    return {ToFloat(-LogLikelihood(m)), false};
}

void GammaMomentStart(ModelState& m, double q, double sumSq)
{
    m.GammaBeta = Div(q * m.EffMidPopSum, sumSq);
    m.GammaNu = m.HomeNu = Div(m.CatchSum * m.GammaBeta, m.EffMidPopSum);
}

void FillGammaPositions(ModelState& m, const std::function<double(int)>& shape,
                        const std::function<float(int)>& outside)
{
    for (int i = 1; i <= m.NAPoints(); ++i) {
        if (!m.Included(i))
            continue;
        m.ResidVec(i) =
            m.ToggledIn(i) ? ToFloat(modMaths::GammaP(shape(i), m.CatchVector(i) * m.GammaBeta)) : outside(i);
    }
}

namespace
{
/// Zero where the catch x of period i stands at `position` in its distribution.
class CatchPosition : public ISolver
{
public:
    CatchPosition(double position, double shape, double rate)
        : m_position(position), m_shape(shape), m_rate(rate)
    {
    }
    void ISolver_Fn(float x, float& y) override
    {
        y = ToFloat(m_position - modMaths::GammaP(m_shape, x * m_rate));
    }

private:
    double m_position, m_shape, m_rate;
};

float CatchAtPosition(const ModelState& m, int j, int i)
{
    constexpr double kStartShare = 0.001; // of the mean catch of period i
    const double shape = m.EffMidPop(i) * m.GammaNu;
    CatchPosition function(m.ResidVec(j), shape, m.GammaBeta);
    VELT_Solver solver;
    solver.Init();
    solver.Bracket(function, ToFloat(Div(kStartShare * shape, m.GammaBeta)), 10.0F);
    return solver.Solve(function, solver.Lower(), solver.Upper());
}
} // namespace

void GammaCatchMatrix::Compute(const ModelState& m, const std::string& source)
{
    m_size = m.NAPoints();
    m_catch.assign(static_cast<std::size_t>(m_size) * static_cast<std::size_t>(m_size), 0.0F);
    MeterScope meter(m.run->meter, m.run->globals.ComputingGammaCatchMatrix, m_size);
    std::size_t at = 0;
    for (int j = 1; j <= m_size; ++j) {
        for (int i = 1; i <= m_size; ++i, ++at) {
            if (m.ToggledIn(j) && m.ToggledIn(i))
                m_catch[at] = CatchAtPosition(m, j, i);
        }
        meter.Done(j, source);
    }
}

float GammaCatchMatrix::At(int j, int i) const
{
    if (j < 1 || j > m_size || i < 1 || i > m_size)
        RaiseSubscript();
    return m_catch[static_cast<std::size_t>(j - 1) * static_cast<std::size_t>(m_size) +
                   static_cast<std::size_t>(i - 1)];
}
