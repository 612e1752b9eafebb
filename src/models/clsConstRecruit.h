// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/CatchRegression.h"
#include "models/MethodCommon.h"

/// Constant recruitment: recruits replace each period what natural mortality takes from the unexploited stock
/// K, so that without fishing the population stays at K; at the start of the data it is InitDep K. The catch
/// leaves in the middle of each period (Pope 1972).
class clsConstRecruit : public MethodCommon
{
public:
    struct Estimates {
        double K = 0.0; ///< unexploited stock
        double Q = 0.0; ///< catchability per unit of effort
        double Var = 0.0;
    };

    clsConstRecruit();

    std::string MethTitle() const override { return "Constant Recruitment"; }
    std::vector<double> FinalEsts() override;
    void CalcPopTraj() override;
    void CalcMinPop() override;
    bool InputStartingEsts() override;
    void CopyFinalToWorkEsts() override { WorkEsts = FinalEstimates; }
    void CopyQANDFinalToWorkEsts() override;
    void CopyBStrapsToWorkEsts(std::int16_t n) override;

    /// The estimates that the trajectory reads.
    const Estimates& Work() const { return WorkEsts; }
    void Work(const Estimates& estimates) { WorkEsts = estimates; }
    float MinPop() const { return m.MinPop; }
    bool PopUnderflow() const { return m.PopUnderflow; }

    // This model keeps no time lag.
    std::int16_t LAG() const override { return 0; }
    void LAG(std::int16_t) override {}
    void Create(clsVeltData& data) override;

protected:
    bool InitEstimates() override;
    void LSQFinalEstimates() override;
    void LnFinalEstimates() override;
    void GammaFinalEstimates() override;
    void LSQBootStraps() override;
    void LnBootStraps() override;
    void GammaBootStraps() override;
    double Objective(std::span<const double> x) override;
    double ExpectedMeanPop(int i) const override;
    std::vector<NamedValue> InitEstimateValues() const override;
    double FinalVar() const override { return FinalEstimates.Var; }
    SearchedParameters Searched() const override { return {.count = 1, .estimate = {FinalEstimates.K}}; }
    WorkingEstimates Working() const override { return {WorkEsts.K, WorkEsts.Q, 0.0, WorkEsts.Var}; }
    void Working(const WorkingEstimates& w) override { WorkEsts = {.K = w[0], .Q = w[1], .Var = w[3]}; }
    void RunTrajectoryAt(std::span<const double> x) override
    {
        WorkEsts.K = x[0];
        CalcPopTraj();
    }
    std::span<const double> RegressionWeights() const override { return m_regression.Weights(); }

private:
    void BuildRegression();
    float MinLogFunction(float x);
    float MinGammaFunction(float x);
    /// Minimises over K from `start`; leaves the estimate in FinalEstimates.K.
    void Search(double start, const char* procedure);
    /// Catch that keeps the stock where it ends: Y = exp(M/2) (1 - exp(-M)) (K - N at the end).
    float ReplacementYield(double k) const;
    double Recruits(double k) const; ///< each period's, K (exp(M) - 1)
    void StoreReplicate(int b, double k, double q);

    Estimates WorkEsts;
    Estimates InitEsts;
    Estimates FinalEstimates;
    CatchRegression m_regression{2};
};
