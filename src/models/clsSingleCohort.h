// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/CatchRegression.h"
#include "models/MethodCommon.h"

/// No recruitment: one closed cohort of N1 animals loses animals to natural mortality and to the recorded
/// total catch, taken in the middle of each period (Pope 1972); the catch is q E(i) times the mean population
/// of the period.
class clsSingleCohort : public MethodCommon
{
public:
    struct Estimates {
        double N1 = 0.0; ///< population at the start of period 1
        double Q = 0.0;  ///< catchability per unit of effort
        double Var = 0.0;
    };

    clsSingleCohort();

    std::string MethTitle() const override { return "NO RECRUITMENT MODEL"; }
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
    SearchedParameters Searched() const override { return {.count = 1, .estimate = {FinalEstimates.N1}}; }
    WorkingEstimates Working() const override { return {WorkEsts.N1, WorkEsts.Q, 0.0, WorkEsts.Var}; }
    void Working(const WorkingEstimates& w) override { WorkEsts = {.N1 = w[0], .Q = w[1], .Var = w[3]}; }
    void RunTrajectoryAt(std::span<const double> x) override
    {
        WorkEsts.N1 = x[0];
        CalcPopTraj();
    }
    std::span<const double> RegressionWeights() const override { return m_regression.Weights(); }

private:
    void BuildRegression();
    float MinLogFunction(float x);
    float MinGammaFunction(float x);
    /// Minimises over N1 from `start`; leaves the estimate in WorkEsts.N1.
    void Search(double start, const char* procedure);

    Estimates WorkEsts;
    Estimates InitEsts;
    Estimates FinalEstimates;
    CatchRegression m_regression{2};
    VELT_NelMead m_bootMinimiser; ///< one for all replicates of a run
};
