// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/DepletionMethod.h"

/// Recruitment index: a stock of N1 animals receives Lambda recruits per unit of the recruitment index R at
/// the start of every period; natural mortality M, per period, and the total catch T act as in the closed
/// cohort (Pope 1972):
///
///     N(1)   = N1
///     N(t+1) = exp(-M) (N(t) + Lambda R(t)) - exp(-M/2) T(t)     stock at the start of a period, numbers
///     B(t)   = exp(-M/2) (N(t) + Lambda R(t)) - T(t) / 2         mean stock of the period
///     C(t)   = q E(t) B(t)                                       expected catch, E effort
///
/// N1 and Lambda are searched together, so a fit can be watched on its likelihood surface. Rearranged,
/// C(t) = q N1 x1(t) - q x2(t) + q Lambda x3(t) with S(t) = T(t) + exp(-M) S(t-1) and the same sum of R:
///
///     x1 = E exp(-M (t - 1/2)),  x2 = E S - E T / 2,  x3 = E exp(-M/2) sum of R
class clsRecruitINdex : public DepletionMethod
{
public:
    clsRecruitINdex();

    std::string MethTitle() const override { return "RECRUITMENT INDEX MODEL"; }
    void CalcPopTraj() override;
    void CalcMinPop() override;
    /// Kept as a whole number of 16 bits; no calculation of this model reads it.
    float Z() const override { return static_cast<float>(m_z); }
    void Z(float value) override;

protected:
    bool InitEstimates() override;
    void BuildRegression() override;
    float MinLogFunction(float n1, float lambda) override;
    float MinGammaFunction(float n1, float lambda) override;
    void TakeMoments() override;
    Estimates GammaSearchStart() const override { return m.InitEsts; }
    float StockOfPositions(int i) const override { return m.MidPop(i); }
    std::string SearchSource(const std::string& procedure) const override { return "RIM - " + procedure; }
    void DrawLogCatch() override;
    void DrawGammaCatch() override;
    bool KeepRegression(int b) override;
    bool KeepRefit(int b) override;
    void AfterReplicates(int drawnAgain) override;
    double ExpectedMeanPop(int i) const override;
    project_file::TaggedNumber StoredZ() const override;
    void TakeStoredZ(const project_file::TaggedNumber& z) override;
    ContourWords WordsOfContours() const override { return {"Contour Plot", "RIM - PlotInitContours"}; }

private:
    double MeanIndex() const; ///< over all periods, included or not
    bool DoubleStart();
    void SetContourBounds();

    std::int16_t m_z = 1;
};
