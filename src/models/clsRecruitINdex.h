// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/CatchRegression.h"
#include "models/ContourGrid.h"
#include "models/MethodCommon.h"

/// Recruitment index: a stock of N1 animals receives Lambda recruits per unit of the recruitment index at the
/// start of every period; natural mortality and the catch act as in the closed cohort (Pope 1972). N1 and
/// Lambda are searched together, so a fit can be watched on its likelihood surface.
class clsRecruitINdex : public MethodCommon
{
public:
    struct Estimates {
        double N1 = 0.0;
        double Q = 0.0;
        double Lambda = 0.0; ///< recruits per unit of the index
        double Var = 0.0;
    };

    clsRecruitINdex();

    std::string MethTitle() const override { return "RECRUITMENT INDEX MODEL"; }
    std::vector<double> FinalEsts() override;
    void CalcPopTraj() override;
    void CalcMinPop() override;
    bool InputStartingEsts() override;
    bool SetContourRanges() override { return m_contours.AskRanges(TheRun().user); }
    bool PlotInitContours() override;
    void CopyFinalToWorkEsts() override { WorkEsts = FinalEstimates; }
    /// Leaves Lambda of the working estimates as it was.
    void CopyQANDFinalToWorkEsts() override;
    void CopyBStrapsToWorkEsts(std::int16_t n) override;
    /// Kept as a whole number of 16 bits; no calculation of this model reads it.
    float Z() const override { return static_cast<float>(m_z); }
    void Z(float value) override;

    const Estimates& Work() const { return WorkEsts; }
    void Work(const Estimates& estimates) { WorkEsts = estimates; }
    float MinPop() const { return m.MinPop; }
    bool PopUnderflow() const { return m.PopUnderflow; }
    double EffMidPop(int i) const { return m.EffMidPop(i); }
    double EffMidPopSum() const { return m.EffMidPopSum; }

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
    SearchedParameters Searched() const override
    {
        return {.count = 2, .estimate = {FinalEstimates.N1, FinalEstimates.Lambda}, .held = {Fixed1, Fixed2}};
    }
    WorkingEstimates Working() const override
    {
        return {WorkEsts.N1, WorkEsts.Q, WorkEsts.Lambda, WorkEsts.Var};
    }
    void Working(const WorkingEstimates& w) override
    {
        WorkEsts = {.N1 = w[0], .Q = w[1], .Lambda = w[2], .Var = w[3]};
    }
    void RunTrajectoryAt(std::span<const double> x) override
    {
        WorkEsts.N1 = x[0];
        WorkEsts.Lambda = x[1];
        CalcPopTraj();
    }
    std::span<const double> RegressionWeights() const override { return m_regression.Weights(); }

private:
    /// Limits of both parameters in a search, and whether Fixed1 and Fixed2 hold them.
    void SetParameters(VELT_NelMead& minimiser, const Estimates& start) const;
    void BuildRegression();
    void RepairStart();
    double MeanIndex() const; ///< over all periods, included or not
    void MomentStart();
    float MinLogFunction(float n1, float lambda);
    float MinGammaFunction(float n1, float lambda);
    void Search(const char* source);
    bool StoreReplicate(int b, double n1, double q, double lambda);

    Estimates WorkEsts;
    Estimates InitEsts;
    Estimates FinalEstimates;
    CatchRegression m_regression{3};
    ContourGrid m_contours;
    bool Fixed1 = false;
    bool Fixed2 = false;
    std::int16_t m_z = 1;
};
