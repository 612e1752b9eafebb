// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/DepletionMethod.h"

/// No recruitment: a closed cohort of N1 animals loses animals to natural mortality M, per period, and to the
/// recorded total catch T, taken in the middle of each period (Pope 1972):
///
///     N(1)   = N1
///     N(t+1) = exp(-M) N(t) - exp(-M/2) T(t)          stock at the start of a period, numbers
///     B(t)   = exp(-M/2) N(t) - T(t) / 2              mean stock of the period
///     C(t)   = q E(t) B(t)                            expected catch, E effort
///
/// N1 is searched. Rearranged, C(t) = q N1 x1(t) - q x2(t) with S(t) = T(t) + exp(-M) S(t-1):
///
///     x1 = E exp(-M (t - 1/2)),  x2 = E S - E T / 2   with M = 0 as Leslie and Davis 1939
class clsSingleCohort : public DepletionMethod
{
public:
    clsSingleCohort();

    std::string MethTitle() const override { return "NO RECRUITMENT MODEL"; }
    void CalcPopTraj() override;
    void CalcMinPop() override;

protected:
    void BuildRegression() override;
    float MinLogFunction(float n1, float) override;
    float MinGammaFunction(float n1, float) override;
    SearchRange RefitRange() const override;
    bool KeepRegression(int b) override;
    double ExpectedMeanPop(int i) const override;
};
