// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/DepletionMethod.h"

/// Constant recruitment: recruits replace each period what natural mortality M, per period, takes from the
/// unexploited stock K, so that without fishing the population stays at K. At the start of the data it is
/// `InitDep` K. The total catch T leaves in the middle of each period (Pope 1972):
///
///     N(1)   = InitDep K,  r = K (exp(M) - 1)               numbers; r recruits a period
///     N(t+1) = exp(-M) (N(t) + r) - exp(-M/2) T(t)          stock at the start of a period
///     B(t)   = exp(-M/2) (N(t) + r) - T(t) / 2              mean stock of the period
///     C(t)   = q E(t) B(t)                                  expected catch, E effort
///
/// K is searched. Rearranged, C(t) = q K x1(t) - q x2(t) with S(t) = T(t) + exp(-M) S(t-1):
///
///     x1 = E exp(M/2) (1 - (1 - InitDep) exp(-M t)),  x2 = E S - E T / 2
class clsConstRecruit : public DepletionMethod
{
public:
    clsConstRecruit();

    std::string MethTitle() const override { return "Constant Recruitment"; }
    void CalcPopTraj() override;
    void CalcMinPop() override;

    // This model keeps no time lag.
    std::int16_t LAG() const override { return 0; }
    void LAG(std::int16_t) override {}
    void Create(clsVeltData& data) override;

protected:
    void BuildRegression() override;
    void AtRegressionStart() override;
    float MinLogFunction(float k, float) override;
    float MinGammaFunction(float k, float) override;
    void LnFinalEstimates() override;
    bool KeepRegression(int b) override;
    bool KeepRefit(int b) override;
    double ExpectedMeanPop(int i) const override;
    /// The replacement yield is the catch that keeps the stock where it ends:
    /// Y = exp(M/2) (1 - exp(-M)) (K - N behind the last period), cut to 32 bits.
    double Derived(model_table::Quantity quantity, const Estimates& of) const override;

private:
    double Recruits(double k) const; ///< each period's, K (exp(M) - 1)
    void StoreAtCutStock(int b);
};
