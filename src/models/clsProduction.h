// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/OriginRegress.h"
#include "models/ContourGrid.h"
#include "models/MethodCommon.h"

#include <string>

/// Surplus production: a biomass grows by a function of its own size and loses the catch. One class serves
/// Fox (1970), Schaefer (1954) and Pella and Tomlinson (1969), told apart by WhichMeth 4, 5, 6. All catches
/// are weights; natural mortality plays no part. K and R are searched together; Q has a closed form.
class clsProduction : public MethodCommon
{
public:
    struct Estimates {
        double K = 0.0; ///< carrying capacity
        double Q = 0.0; ///< catchability per unit of effort
        double R = 0.0; ///< intrinsic growth rate per period
        double Var = 0.0;
    };

    clsProduction();

    std::string MethTitle() const override { return "PRODUCTION MODEL"; }
    std::vector<double> FinalEsts() override;
    void CalcPopTraj() override;
    void CalcMinPop() override;
    bool InputStartingEsts() override;
    bool SetContourRanges() override { return m_contours.AskRanges(TheRun().user); }
    bool PlotInitContours() override;
    void CopyFinalToWorkEsts() override { WorkEsts = FinalEstimates; }
    void CopyQANDFinalToWorkEsts() override;
    void CopyBStrapsToWorkEsts(std::int16_t n) override;
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

    const Estimates& Work() const { return WorkEsts; }
    void Work(const Estimates& estimates) { WorkEsts = estimates; }
    void Final(const Estimates& estimates) { FinalEstimates = estimates; }
    float MinPop() const { return m.MinPop; }
    float MidPop(int i) const { return m.MidPop(i); }
    double EffMidPop(int i) const { return m.EffMidPop(i); }
    bool PopUnderflow() const { return m.PopUnderflow; }
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
    void LnBootStraps() override;
    void GammaBootStraps() override;
    double Objective(std::span<const double> x) override;
    double FailedEvaluation() const override;
    double ExpectedMeanPop(int i) const override;
    void AddYieldGraph() override;
    std::vector<NamedValue> InitEstimateValues() const override;
    double FinalVar() const override { return FinalEstimates.Var; }
    SearchedParameters Searched() const override
    {
        return {.count = 2, .estimate = {FinalEstimates.K, FinalEstimates.R}, .held = {Fixed1, Fixed2}};
    }
    WorkingEstimates Working() const override { return {WorkEsts.K, WorkEsts.Q, WorkEsts.R, WorkEsts.Var}; }
    void Working(const WorkingEstimates& w) override
    {
        WorkEsts = {.K = w[0], .Q = w[1], .R = w[2], .Var = w[3]};
    }
    std::optional<Start> SurfaceStart(std::size_t number) override;

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
    template <typename Growth>
    void FollowBy(const Growth& growth, bool withMean);
    float Production(float N, const Estimates& ests) const;
    void FillWeights();
    void MomentStart();
    BestFit Search(const Scheme& scheme);
    void RunStart(int number, const Scheme& scheme, BestFit& best, std::string& whyNot);
    double GridValue(double K, double R);
    bool Refit(VELT_NelMead& minimiser, double secondR);
    void StoreReplicate(int b, bool keepR);
    void SetContourBounds();

    Estimates WorkEsts;
    Estimates InitEsts;
    Estimates FinalEstimates;
    static constexpr double RStarts[] = {0.1, 0.5, 1.0}; ///< values of R from which a search starts
    bool Fixed1 = false;
    bool Fixed2 = false;
    float m_z = 1.0F;
    OriginRegress m_line;
    Array1<double, clsVeltData::kRows> WeightVec, m_lineX, m_lineY;
    double m_startNu = 0.0; ///< moment start, restored by every bootstrap replicate
    double m_startBeta = 0.0;
    ContourGrid m_contours;
};
