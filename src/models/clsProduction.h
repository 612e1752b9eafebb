// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/OriginRegress.h"
#include "models/MethodCommon.h"

#include <string>

/// Surplus production: a biomass grows by a function g of its own size, `LAG` periods ago, and loses the
/// total catch T, both in weight; natural mortality plays no part. One class serves three models, told apart
/// by WhichMeth 4, 5, 6:
///
///     N(1)   = InitDep K                              biomass at the start of a period
///     N(t+1) = N(t) + g(N(t - LAG)) - T(t)
///     C(t)   = q E(t) (N(t) + N(t+1)) / 2             expected catch, E effort
///
///     Fox 1970                      g(N) = r N ln(K / N)
///     Schaefer 1954                 g(N) = r N (1 - N / K)
///     Pella and Tomlinson 1969      g(N) = r N (1 - (N / K)^Z)
///
/// K and r, per period, are searched together; q has a closed form.
class clsProduction : public MethodCommon
{
public:
    clsProduction();

    std::string MethTitle() const override { return "PRODUCTION MODEL"; }
    void CalcPopTraj() override;
    void CalcMinPop() override;
    float Z() const override { return m_z; }
    void Z(float value) override { m_z = value; }
    void Create(clsVeltData& data) override;

    /// Surplus production of biomass N for the working estimates; 0 for a negative N.
    /// \throws VeltError 5 for N = 0 under Fox
    float ProductionFunction(float N) const;

    /// The same for the final estimates, without the test for a negative biomass.
    float YieldOfBiomass(const float& N) const;

    /// Maximum sustainable yield: Fox R K / e, Schaefer R K / 4, Pella-Tomlinson R K m (1 - m) with m the
    /// share of K at which the yield peaks. The second factor is 1 - m for every Z, which agrees with the
    /// production function at Z = 1 only. Deliberate.
    float MSYOf(const Estimates& record) const;

    /// The smallest K, to 1 %, that keeps the biomass of `record.R` above zero, and the Q that goes with it.
    /// \return false, with the record unchanged, when 99 doublings of K do not help
    bool SolveStartK(Estimates& record);

    void Final(const Estimates& estimates) { m.FinalEsts = estimates; }
    const ContourRange& Contours() const { return m_contours.range; }

    /// The three objectives, as the minimiser and the contour grid call them.
    double MinLSQFunction(double K, double R);
    float MinLogFunction(float K, float R);
    float MinGammaFunction(float K, float R);

protected:
    bool InitEstimates() override;
    void LSQFinalEstimates() override;
    void LnFinalEstimates() override;
    void GammaFinalEstimates() override;
    void LSQBootStraps() override;
    void DrawLogCatch() override;
    void DrawGammaCatch() override;
    SearchRange RefitRange() const override;
    bool KeepRefit(int b) override;
    void TakeMoments() override;
    ContourWords WordsOfContours() const override;
    void PrepareContours() override;
    double GridValue(double K, double R) override;
    double Objective(std::span<const double> x) override;
    double FailedEvaluation() const override;
    double ExpectedMeanPop(int i) const override;
    void AddYieldGraph() override;
    double Derived(model_table::Quantity quantity, const Estimates& of) const override;
    std::optional<Start> SurfaceStart(std::size_t number) override;
    project_file::TaggedNumber StoredZ() const override;
    void TakeStoredZ(const project_file::TaggedNumber& z) override;
    project_file::TaggedArray StoredWeights() const override;
    project_file::TaggedArray StoredTimes() const override;
    void PrepareReloaded() override;

private:
    /// What differs between the searches of the three error models.
    struct Scheme {
        double upperK = 0.0;
        double upperR = 0.0;
        const char* procedure = "";
    };
    struct BestFit {
        Estimates estimates;
        double value = static_cast<double>(kFarPenalty);
        double nu = 0.0;
        double beta = 0.0;
        std::int32_t evaluations = 0;
        double notArrivedAt = kFarPenalty; ///< lowest value of a start whose search did not arrive
        bool atBorder = false;
        bool found = false;
    };

    /// Whether a trajectory also works out MidPop, the mean stock by effort that only a projected catch
    /// reads: an evaluation of a search leaves it out.
    enum class MeanStock { Computed, LeftOut };

    void Follow(MeanStock meanStock);
    /// Follows the trajectory of K and R. \return whether both are inside the domain of an objective
    bool SurvivesAt(double K, double R);
    template <typename Growth>
    void FollowBy(const Growth& growth, bool withMean);
    float Production(float N, const Estimates& ests) const;
    void FillWeights();
    BestFit Search(const Scheme& scheme);
    void RunStart(int number, const Scheme& scheme, BestFit& best, std::string& whyNot);
    SearchRange RangeOfStart(const Estimates& start, const Scheme& scheme) const;
    void DrawLSQCatch();
    void SetContourBounds();

    static constexpr double RStarts[] = {0.1, 0.5, 1.0}; ///< values of R from which a search starts
    float m_z = 1.0F;
    OriginRegress m_line;
    Array1<double, clsVeltData::kRows> WeightVec, m_lineX, m_lineY;
    double m_startNu = 0.0; ///< moment start, restored by every bootstrap replicate
};
