// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/CatchRegression.h"
#include "models/MethodCommon.h"

#include <functional>
#include <string>

/// What the three depletion models share beyond MethodCommon: their catches are numbers, and their dynamics
/// can be rearranged into a regression through the origin. It solves least squares and starts the searches of
/// the other two error models.
class DepletionMethod : public MethodCommon
{
protected:
    using MethodCommon::MethodCommon;

    /// Fills the rows of the regression from the data set.
    virtual void BuildRegression() = 0;
    /// Keeps the refitted regression as replicate b. \return false to draw the replicate again
    virtual bool KeepRegression(int b) = 0;
    // The objectives at the searched parameters; a model with one of them ignores the second.
    virtual float MinLogFunction(float first, float second) = 0;
    virtual float MinGammaFunction(float first, float second) = 0;
    /// Stock of period i behind the positions of the gamma model: at the start of the period, not its mean.
    /// Deliberate: the recruitment index model differs here.
    virtual float StockOfPositions(int i) const { return m.Nt(i); }
    /// Runs at the trajectory of the regression's own estimates.
    virtual void AtRegressionStart() {}
    /// Where the search of a gamma fit starts: the first parameter cut to 32 bits.
    virtual Estimates GammaSearchStart() const;
    virtual std::string SearchSource(const std::string& procedure) const { return Source("_" + procedure); }

    bool InitEstimates() override;
    void LSQFinalEstimates() override;
    void LnFinalEstimates() override;
    void GammaFinalEstimates() override;
    void LSQBootStraps() override;
    void DrawLogCatch() override;
    project_file::TaggedArray StoredWeights() const override;
    project_file::TaggedArray StoredTimes() const override;
    void PrepareReloaded() override;
    double Objective(std::span<const double> x) override;
    double SurfaceValue(std::span<const double> x) override;

    /// Rows of the Included periods. \param weighted by the inverse of the variance of the index
    /// \param regressors of period i, asked for every period in order, since sums over periods go on through
    /// those that are not Included
    void FillRegression(bool weighted, const std::function<CatchRegression::Regressors(int i)>& regressors);
    bool AsksForWeights() const { return m.FitOp == fit_op::kWeightedLeastSquares; }
    /// Solves the regression into InitEsts and follows their trajectory. \return whether it has a solution
    bool SolveRegression();
    /// b2 = -q, and the other coefficients are the searched parameters times q.
    void TakeCoefficients(Estimates& estimates) const;
    /// Minimises from `start`; what it found is in FinalEsts, the last evaluation in WorkEsts and the
    /// trajectory.
    void Search(const Estimates& start, const std::string& procedure);
    /// q, its variance and the residuals of a log fit, on the trajectory of WorkEsts.
    void FinishLogFit();

    CatchRegression m_regression{static_cast<int>(m.Searched()) + 1};

private:
    struct RegressionStart {
        Estimates estimates;
        bool repaired = false; ///< the regression's own would not have survived the catches
        std::int32_t excuse = excuse::kNone;
    };
    RegressionStart StartFromRegression();
};
