// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engines/VELT_NelMead.h"
#include "files/ProjectRecords.h"
#include "models/Bootstraps.h"
#include "models/ContourGrid.h"
#include "models/FuturePeriods.h"
#include "models/GammaFit.h"
#include "models/IMethod.h"
#include "models/ModelState.h"
#include "models/clsBootStrap.h"

#include <array>
#include <memory>
#include <span>
#include <string>

/// "Minimisation succeeded on function." and the same for the parameter, on two lines.
/// \param someValue  some evaluation was inside the domain; where none was, the function test means nothing
/// and is told as failed
std::string ConvergenceText(const VELT_NelMead& minimiser, bool someValue,
                            const modVeltGlobals::Globals& globals);

/// Where a search starts, the second points of its simplex, and its upper limits; the lower ones are 0. Only
/// the searched parameters are read; one that is held stays at its start.
struct SearchRange {
    Estimates start;
    Estimates second;
    std::array<double, 2> upper{};
};

/// The part of a model that has no biology in it: the properties over the shared state, the order of a
/// bootstrap run, the set-up of a search, and the way a failure gets its source. What a model computes stands
/// in its own class.
class MethodCommon : public IMethod, public INelMead, public ISurfaceModel
{
public:
    float BootStrap(std::int32_t parameter, std::int32_t n) const override;
    float SortedBootStrap(std::int32_t parameter, std::int32_t n) const override;
    bool BSFilled(int parameter) const override { return m.BSFilled(parameter); }
    std::int32_t Excuse() const override { return m.Excuse; }
    bool IsBSDone() const override { return m.IsBSDone; }
    bool MethDefined() const override { return m.MethDefined; }
    float Nt(std::int16_t i) const override { return m.Nt(i); }
    double Q() const override { return m.QValue; }
    float RSqr() const override { return m.RSqr; }
    bool UsingNos() const override { return m.UsingNosFlag; }
    float CatchRef(std::int16_t i) const override { return m.CatchRef(i); }
    void CatchRef(std::int16_t i, float value) override { m.CatchRef(i) = value; }
    float CatchVector(std::int16_t i) const override { return m.CatchVector(i); }
    void CatchVector(std::int16_t i, float value) override { m.CatchVector(i) = value; }
    bool DIYTCatch() const override { return m.DIYTCatch; }
    void DIYTCatch(bool on) override { m.DIYTCatch = on; }
    std::int32_t FitOp() const override { return m.FitOp; }
    void FitOp(std::int32_t value) override { m.FitOp = value; }
    float InitDep() const override { return m.InitDep; }
    void InitDep(float value) override { m.InitDep = value; }
    std::int16_t LAG() const override { return m.LAG; }
    void LAG(std::int16_t value) override { m.LAG = value; }
    float Mort() const override { return m.Mort; }
    void Mort(float value) override { m.Mort = value; }
    std::int32_t NumBootStraps() const override { return m.NumBootStraps; }
    void NumBootStraps(std::int32_t value) override { m.NumBootStraps = value; }
    float ObsTCatchRef(std::int16_t i) const override { return m.ObsTCatchRef(i); }
    void ObsTCatchRef(std::int16_t i, float value) override { m.ObsTCatchRef(i) = value; }
    float ObsCatchRef(std::int16_t i) const override { return m.ObsCatchRef(i); }
    void ObsCatchRef(std::int16_t i, float value) override { m.ObsCatchRef(i) = value; }
    bool PlotEvaluations() const override { return m.PlotEvaluations; }
    void PlotEvaluations(bool on) override { m.PlotEvaluations = on; }
    bool SetStartingEsts() const override { return m.SetStartingEsts; }
    void SetStartingEsts(bool on) override { m.SetStartingEsts = on; }
    std::int32_t WhichMeth() const override { return m.WhichMeth; }
    void WhichMeth(std::int32_t value) override;
    float Z() const override { return 0.0F; } ///< only a production model and the recruitment index keep one
    void Z(float) override {}

    std::vector<double> FinalEsts() override;
    void CopyFinalToWorkEsts() override { m.WorkEsts = m.FinalEsts; }
    /// Leaves a Lambda of the working estimates as it was. Deliberate.
    void CopyQANDFinalToWorkEsts() override;
    void CopyBStrapsToWorkEsts(std::int16_t n) override;

    void CalcThetaVec() override { CalcThetaVecOf(m); }
    void CalcDiscCatches() override;
    void SetColumnRefs() override;
    void SetRSquared() override;
    bool CalcInitEstimates() override;
    void CalcCPUEVectors() override;
    bool CalcFinalEstimates() override;
    void CalcBootStraps() override;
    bool SetContourRanges() override;
    bool PlotInitContours() override;
    bool InputStartingEsts() override;
    bool BuildModelGraphs() override;
    void CalcBootStrapHistos(float low, float high) override;
    void Create(clsVeltData& data) override;
    project_file::Body SaveAsVELT3() const override;
    void OpenAsVELT3(const project_file::Body& body) override;
    FitDetails Details() const override;
    FitSurface Surface() override { return FitSurface(*this); }
    std::unique_ptr<FuturePeriods> Lengthen(int periods) override
    {
        return std::make_unique<FuturePeriods>(m, periods);
    }
    std::optional<double> ReplacedStart() const override { return m.replacedStart; }
    int ReplicatesDrawnAgain() const override { return m.replicatesDrawnAgain; }

    /// The estimates that the trajectory reads.
    const Estimates& Work() const { return m.WorkEsts; }
    void Work(const Estimates& estimates) { m.WorkEsts = estimates; }
    float MinPop() const { return m.MinPop; }
    bool PopUnderflow() const { return m.PopUnderflow; }
    float MidPop(int i) const { return m.MidPop(i); }
    double EffMidPop(int i) const { return m.EffMidPop(i); }
    double EffMidPopSum() const { return m.EffMidPopSum; }

    double INelMead_MinFunc(std::span<const double> x) final;

protected:
    /// A value that says "outside the domain" to the minimiser, and one further out.
    static constexpr float kPenalty = 1e20F;
    static constexpr float kFarPenalty = 3.4E+38F;
    /// Second point of a start simplex, as a multiple of the start.
    static constexpr double kSecondPoint = 1.3333333333333333;
    static constexpr double kUpperLimit = 1e20;
    /// A difference of log likelihoods that the rounding of the gamma objective to 32 bits cannot feign: the
    /// likelihood itself has no size, so a share of it would mean nothing.
    static constexpr double kVisibleLogLikelihood = 0.01;
    /// Compared as 32-bit floats: the limit itself, which is a little more than 1e20 as a float, is inside.
    static constexpr bool BeyondLimit(float x) { return x > static_cast<float>(kUpperLimit); }

    MethodCommon(std::string className, std::int32_t whichMeth);

    // What a model computes; failures get their source from the operation that calls them.
    virtual bool InitEstimates() = 0;
    virtual void LSQFinalEstimates() = 0;
    virtual void LnFinalEstimates() = 0;
    virtual void GammaFinalEstimates() = 0;
    virtual void LSQBootStraps() = 0;
    /// The objective of the current FitOp; may fail numerically.
    virtual double Objective(std::span<const double> x) = 0;
    /// What a numeric failure inside an evaluation counts as.
    virtual double FailedEvaluation() const { return static_cast<double>(kPenalty); }
    /// Mean population of period i behind the expected catch rate.
    virtual double ExpectedMeanPop(int i) const = 0;
    /// A quantity that follows from estimates and the current trajectory. The base knows the final stock.
    virtual double Derived(model_table::Quantity quantity, const Estimates& of) const;
    /// The class's further graph, if it has one.
    virtual void AddYieldGraph() {}

    /// Shape and rate of the gamma model from the moments of the starting estimates' trajectory.
    virtual void TakeMoments();

    // A replicate by refitting: a new catch is drawn, the search starts from the fit, and what it found is
    // kept or drawn again.
    virtual void DrawLogCatch() = 0;
    virtual void DrawGammaCatch();
    virtual SearchRange RefitRange() const { return RangeFrom(m.FinalEsts); }
    /// The searched parameters of WorkEsts are what the refit found; the trajectory is that of its last
    /// evaluation. \return false to draw the replicate again
    virtual bool KeepRefit(int b);
    virtual void AfterReplicates(int /*drawnAgain*/) {}

    // The likelihood surface of a model with two searched parameters.
    struct ContourWords {
        std::string title, emptySource;
    };
    virtual ContourWords WordsOfContours() const { return {}; }
    virtual void PrepareContours();
    virtual double GridValue(double first, double second);

    // What of a stored fit differs by class. Arrays have one element a period.
    virtual project_file::TaggedNumber StoredZ() const { return m_stored.Z; }
    virtual void TakeStoredZ(const project_file::TaggedNumber&) {}
    virtual project_file::TaggedArray StoredWeights() const = 0;
    virtual project_file::TaggedArray StoredTimes() const = 0;
    /// Works out what a fit leaves behind and a project does not store.
    virtual void PrepareReloaded() = 0;
    project_file::TaggedArray TimeLabels(const std::function<bool(int i)>& has) const;

    // The surface around a fit.
    ModelState& State() override { return m; }
    SearchedParameters Searched() const override;
    double SurfaceValue(std::span<const double> x) override { return Objective(x); }
    std::optional<Start> SurfaceStart(std::size_t) override { return std::nullopt; }

    /// Follows the trajectory of the starting estimates and takes shape and rate from it.
    void MomentStart();
    /// Takes the searched parameters, the first one first, into the working estimates, and follows the
    /// trajectory.
    void FollowAt(std::span<const double> x);
    void TakeSearched(Estimates& estimates, const VELT_NelMead& found) const;
    void MarkOnSurface(ContourMark kind, const Estimates& at);
    /// The smallest first parameter that survives, the others as the start has them; the trajectory is that
    /// of the start then. \param maxRounds 0 for no limit but that of the numbers
    void SearchMinPop(int maxRounds);
    /// Runs refits of the catches that `draw` makes.
    void RefitReplicates(const char* procedure, const std::function<void()>& draw);
    /// Catchability of a refit, from its last evaluation.
    double RefittedQ() const;
    /// Keeps the working estimates, and what is derived from them at the current trajectory, as replicate b.
    void StoreReplicate(int b);

    Run& TheRun() const { return *m.run; }
    const modVeltGlobals::Settings& Settings() const { return m.run->globals.settings; }
    std::string Source(const std::string& procedure) const { return m_className + procedure; }

    /// The start simplex that reaches a third beyond `start`.
    SearchRange RangeFrom(const Estimates& start) const;
    /// A minimiser on this model with the settings of a final fit, or of a bootstrap fit.
    void SetUpFinal(VELT_NelMead& minimiser, const SearchRange& range);
    void SetUpBootStrap(VELT_NelMead& minimiser, const SearchRange& range);
    /// Keeps the objective, in the unit of the search, and the count of evaluations of a search that arrived.
    void KeepReport(double minValue, std::int32_t evaluations, bool atBorder);
    [[noreturn]] void RaiseNotConverged(const std::string& text, const std::string& source);

    /// Sum over the periods in the fit of (C(i) - q X(i))^2, at the current trajectory.
    double StartSumSq(double q) const;

    /// Runs `doubleStart` (which doubles the start and runs its trajectory) while the trajectory underflows.
    /// The counter ends it, not the flag: 98 doublings can help, the 99th cannot. \return whether it survives
    bool DoubleUntilItSurvives(const std::function<void()>& doubleStart) const;

    /// Runs `work`; a failure that names no source gets this class and `procedure`.
    template <typename Work>
    auto Traced(const char* procedure, Work work) -> decltype(work())
    {
        try {
            return work();
        } catch (VeltError& error) {
            if (error.source.empty())
                error.source = Source(procedure);
            throw;
        }
    }

    ModelState m;
    clsBootStrap m_boot;
    GammaCatchMatrix m_gammaCatch;
    ContourGrid m_contours; ///< of two searched parameters

private:
    void LnBootStraps();
    void GammaBootStraps();
    bool AskStartingValue();
    bool AskStartVals();
    double ValueOf(model_table::Quantity quantity, const Estimates& of) const;
    void SortBootstraps();
    double OnceMoreFromHome(std::span<const double> x, double failed);
    void TakeReplicates(const project_file::BootStrapRecord& replicates);

    /// What a stored fit holds and no calculation reads; a fit that is logged once more keeps it.
    struct StoredRest {
        project_file::TaggedNumber Z;
        std::int32_t unnamed12 = 0;
        std::int16_t unnamed15 = 0;
        std::int32_t unnamed26 = 0;
        std::optional<project_file::TaggedArray> weights, times;
    };

    std::string m_className;
    StoredRest m_stored;
};
