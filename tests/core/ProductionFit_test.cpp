// SPDX-License-Identifier: GPL-3.0-or-later
// The three searches of the production models.
#include "core/ProductionFits.h"
#include "models/modMaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

using production_fits::kStocks;
using ProductionFit = production_fits::KnownStocks;

TEST_F(ProductionFit, NoiseFreeCatchesGiveKRAndQBackUnderLeastSquares)
{
    for (const KnownStock& stock : kStocks) {
        SCOPED_TRACE(stock.whichMeth);
        TakeFrom(stock);
        Prepared(stock, fit_op::kLeastSquares);
        Fit();
        ExpectBack(stock, 1e-3); // ten times the tolerance of the parameters
    }
}

// Of exact catches the objective is 0 but for the floats that they are stored in: the tolerance of the
// search.
TEST_F(ProductionFit, NoiseFreeCatchesGiveKRAndQBackUnderTheLogModel)
{
    for (const KnownStock& stock : kStocks) {
        SCOPED_TRACE(stock.whichMeth);
        TakeFrom(stock);
        Prepared(stock, fit_op::kLog);
        Fit();
        ExpectBack(stock, 1e-4);
    }
}

// On exact data the likelihood has no maximum: the shape grows until the score resolves the residuals no
// more. The score needs e^2 / 2 of a relative residual e, and the 32-bit sum of catches shifts it by some
// 1e-7, so that is at e of about 4e-4; along the ridge of K and R so small a misfit allows a few thousandths.
TEST_F(ProductionFit, NoiseFreeCatchesGiveKRAndQBackUnderTheGammaModel)
{
    for (const KnownStock& stock : kStocks) {
        SCOPED_TRACE(stock.whichMeth);
        TakeFrom(stock);
        Prepared(stock, fit_op::kGamma);
        Fit();
        ExpectBack(stock, 3e-3);
        double sumSq = 0.0;
        for (int t = 1; t <= data.NAPoints(); ++t)
            sumSq += std::pow(model.Q() * model.EffMidPop(t) / data.CatchWt(t) - 1.0, 2.0);
        EXPECT_LT(std::sqrt(sumSq / data.NAPoints()), 1e-3);
    }
}

TEST_F(ProductionFit, TheFitIsReportedWithItsObjectiveAndEvaluations)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    Fit();
    const FitDetails details = model.Details();
    ASSERT_TRUE(details.objective);
    EXPECT_GT(*details.objective, 0.0);
    EXPECT_EQ(details.var, *details.objective); // under least squares the dispersion is the sum of squares
    EXPECT_GT(details.evaluations, 0);
    EXPECT_EQ(run.globals.settings.LastEvaluations, details.evaluations);
}

// With catches of 1e12 the sums of squares pass 1e20, which means "outside the domain" to a search. Units are
// changed by a power of two, which rounds nothing but the size of the first step along K.
TEST_F(ProductionFit, TheUnitsOfTheCatchDoNotDecideWhetherLeastSquaresArrives)
{
    constexpr double kUnits = 0x1p30;
    std::vector<std::vector<double>> estimates;
    std::vector<double> objectives;
    std::vector<double> lowest;
    for (const double units : {1.0, kUnits}) {
        KnownStock stock = kStocks[1];
        stock.K *= units;
        TakeFrom(stock, 0.1);
        Prepared(stock, fit_op::kLeastSquares);
        model.CalcInitEstimates();
        user.onContourRange = [&](ContourRange& range) {
            range.Param1Lo = 4000.0 * units;
            range.Param1Hi = 8000.0 * units;
            range.Param2Lo = 0.3;
            range.Param2Hi = 0.6;
            range.ContEvals = 5;
            return true;
        };
        window.nextPlot = std::make_unique<RecordedPlot>(m_record);
        model.PlotEvaluations(true);
        ASSERT_TRUE(model.SetContourRanges() && model.PlotInitContours());
        lowest.push_back(m_record.surface->zMin);
        ASSERT_FALSE(FailureOfFit());
        estimates.push_back(model.FinalEsts());
        objectives.push_back(*model.Details().objective);
        EXPECT_EQ(model.Details().var, objectives.back());
        EXPECT_LT(objectives.back(), m_record.surface->zMin); // the grid is coarse, and in the same units
    }
    EXPECT_GT(objectives[1], 1e21);
    EXPECT_NEAR(estimates[1][0] / kUnits, estimates[0][0], 1e-3 * estimates[0][0]);
    EXPECT_NEAR(estimates[1][1], estimates[0][1], 1e-3 * estimates[0][1]);
    EXPECT_NEAR(estimates[1][2], estimates[0][2], 1e-3 * estimates[0][2]);
    EXPECT_NEAR(objectives[1] / (kUnits * kUnits), objectives[0], 1e-5 * objectives[0]);
    EXPECT_NEAR(lowest[1] / (kUnits * kUnits), lowest[0], 1e-5 * lowest[0]);
}

// The best of least squares is the closed-form slope of C on X at the trajectory of the estimates.
TEST_F(ProductionFit, FittedValuesAndResidualsOfLeastSquaresStandOnTheFinalTrajectory)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    data.ToggledIn(5, false);
    Fit();
    const FitDetails details = model.Details();
    double xx = 0.0;
    double xy = 0.0;
    double sumSq = 0.0;
    for (int t = 1; t <= data.NAPoints(); ++t) {
        const auto i = static_cast<std::size_t>(t) - 1;
        const double c = data.CatchWt(t);
        EXPECT_NEAR(details.fitted[i], model.EffMidPop(t) * model.Q(), 1e-4);
        if (t == 5) {
            EXPECT_EQ(details.resid[i], 0.0F); // the weight of a period toggled out is 0
            continue;
        }
        EXPECT_NEAR(details.resid[i], c - details.fitted[i], 1e-3);
        xx += model.EffMidPop(t) * model.EffMidPop(t);
        xy += model.EffMidPop(t) * c;
        sumSq += static_cast<double>(details.resid[i]) * details.resid[i];
    }
    EXPECT_NEAR(model.Q(), xy / xx, 1e-6 * model.Q());
    EXPECT_NEAR(*details.objective, sumSq, 1e-3 * sumSq);
}

TEST_F(ProductionFit, FittedValuesAndResidualsOfTheLogModelAreLogarithms)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLog);
    Fit();
    const FitDetails details = model.Details();
    double sum = 0.0;
    double sumSq = 0.0;
    for (std::int16_t t = 1; t <= data.NAPoints(); ++t) {
        const auto i = static_cast<std::size_t>(t) - 1;
        const double mean =
            (static_cast<double>(model.Nt(t)) + model.Nt(static_cast<std::int16_t>(t + 1))) / 2.0;
        EXPECT_NEAR(details.fitted[i], std::log(model.Q() * data.Effort(t) * mean), 1e-5);
        EXPECT_NEAR(details.resid[i], std::log(data.CatchWt(t)) - details.fitted[i], 1e-5);
        sum += details.resid[i];
        sumSq += static_cast<double>(details.resid[i]) * details.resid[i];
    }
    EXPECT_NEAR(sum, 0.0, 1e-4); // q is the geometric mean
    // The variance: l is about -7, so the float sum of 24 of them carries 1e-5 of rounding into the mean, and
    // 7 times that into the difference.
    EXPECT_NEAR(details.var, sumSq / 24.0, 1e-4);
}

TEST_F(ProductionFit, GammaResidualsArePositionsAndZeroForAPeriodToggledOut)
{
    TakeFrom(kStocks[1], 0.05);
    for (const float share : {0.5F, 2.0F}) { // its catch below and above its expectation
        Prepared(kStocks[1], fit_op::kGamma);
        data.ToggledIn(5, false);
        model.CatchVector(5, share * data.CatchWt(5));
        Fit();
        const FitDetails details = model.Details();
        const double beta = 1.0 / details.var;
        const double nu = model.Q() * beta;
        for (int t = 1; t <= data.NAPoints(); ++t) {
            const float position = details.resid[static_cast<std::size_t>(t) - 1];
            if (t == 5)
                EXPECT_EQ(position, 0.0F);
            else
                EXPECT_NEAR(position, modMaths::GammaP(model.EffMidPop(t) * nu, data.CatchWt(t) * beta),
                            1e-5);
        }
        EXPECT_FALSE(details.fittedExists);
    }
}

TEST_F(ProductionFit, WithTypedStartsOnlyOneStartRunsFromThem)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    model.SetStartingEsts(true);
    Type(6000.0, 0.4);
    const PlotRecord& plot = Watch();
    model.CalcFinalEstimates();
    ASSERT_EQ(StartsMarked(), 1);
    EXPECT_EQ(plot.marks.front().x, 6000.0);
    EXPECT_EQ(plot.marks.front().y, 0.4);
}

TEST_F(ProductionFit, WithoutTypedStartsThreeStartsRunFromThreeGrowthRates)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    const PlotRecord& plot = Watch();
    model.CalcFinalEstimates();
    ASSERT_EQ(plot.marks.size(), 4U);
    const double rates[] = {0.1, 0.5, 1.0};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(plot.marks[i].y, rates[i]);
        EXPECT_EQ(static_cast<int>(plot.marks[i].kind), static_cast<int>(i) + 1);
    }
    EXPECT_GT(plot.marks[0].x, plot.marks[2].x); // a slower stock must be larger
    EXPECT_EQ(plot.marks[3].kind, ContourMark::Final);
    EXPECT_EQ(plot.marks[3].x, model.FinalEsts()[0]);
    EXPECT_EQ(plot.marks[3].y, model.FinalEsts()[2]);
}

// The growth rate of the first start refits K, and the held rate wins over it in the search.
TEST_F(ProductionFit, WithTheGrowthRateHeldOneStartRunsAndTheHeldRateWins)
{
    TakeFrom(kStocks[1], 0.02);
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Prepared(kStocks[1], fitOp);
        ASSERT_TRUE(model.CalcInitEstimates());
        Type(6000.0, 0.37, false, true);
        model.SetStartingEsts(false);
        m_record = PlotRecord();
        Watch();
        model.CalcFinalEstimates();
        EXPECT_EQ(StartsMarked(), 1);
        EXPECT_EQ(m_record.marks.front().y, 0.1);
        EXPECT_EQ(model.FinalEsts()[2], 0.37);
        EXPECT_NE(model.FinalEsts()[0], 6000.0);
    }
}

TEST_F(ProductionFit, AHeldCapacityStaysWhatWasTyped)
{
    TakeFrom(kStocks[1], 0.02);
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Prepared(kStocks[1], fitOp);
        ASSERT_TRUE(model.CalcInitEstimates());
        model.SetStartingEsts(true);
        Type(5500.0, 0.37, true, false);
        model.CalcFinalEstimates();
        EXPECT_EQ(model.FinalEsts()[0], 5500.0);
        EXPECT_NE(model.FinalEsts()[2], 0.37);
    }
}

TEST_F(ProductionFit, WhereEveryEvaluationUnderflowsTheFitEndsWithExcuse3)
{
    const std::pair<std::int32_t, std::string> schemes[] = {
        {fit_op::kLeastSquares, "clsProduction_CalcLSQFinalEstimates"},
        {fit_op::kLog, "clsProduction_CalcLnFinalEstimates"},
    };
    TakeFrom(kStocks[1]);
    for (const auto& [fitOp, source] : schemes) {
        Prepare(models::kSchaefer, fitOp, 0, 1.0F, 0.0F); // an empty sea
        EXPECT_FALSE(model.CalcInitEstimates());
        model.SetStartingEsts(true);
        Type(6000.0, 0.4);
        const std::optional<VeltError> failure = FailureOfFit();
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->number, kProgramErrorBase + errors::kMinimisationFailed);
        EXPECT_EQ(failure->source, source);
        EXPECT_TRUE(failure->description.starts_with("Minimisation "));
        EXPECT_NE(failure->description.find(" on function.\nMinimisation "), std::string::npos);
        EXPECT_TRUE(failure->description.ends_with(" on parameter."));
        EXPECT_EQ(model.Excuse(), excuse::kNotConverged);
    }
}

// Weighted least squares has no objective: the minimiser sees zeros. Deliberate.
TEST_F(ProductionFit, WeightedLeastSquaresEndsWithExcuse3)
{
    TakeFrom(kStocks[1], 0.02);
    for (int t = 1; t <= 24; ++t) {
        data.VarAbundIndex(t, 1.0F);
        data.AbundIndex(t, 1.0F);
    }
    data.ColPresent(columns::VarAbundIndex, true);
    Prepared(kStocks[1], fit_op::kWeightedLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    const std::optional<VeltError> failure = FailureOfFit();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, kProgramErrorBase + errors::kMinimisationFailed);
    EXPECT_EQ(failure->source, "clsProduction_CalcLSQFinalEstimates");
    // All values agree, but none is a value of the model's.
    EXPECT_EQ(failure->description, "Minimisation failed on function.\nMinimisation succeeded on parameter.");
    EXPECT_EQ(model.Excuse(), excuse::kNotConverged);
    EXPECT_EQ(model.INelMead_MinFunc(std::array{6000.0, 0.4}), 0.0);
}

TEST_F(ProductionFit, WeightedLeastSquaresFailsAlsoBehindAFitThatArrived)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    ASSERT_FALSE(FailureOfFit());
    model.FitOp(fit_op::kWeightedLeastSquares);
    ASSERT_TRUE(FailureOfFit()); // what that one found inside the domain is no evaluation of this one
    EXPECT_EQ(model.Excuse(), excuse::kNotConverged);
}

// The presence asked for is that of the variance column, the value read is the index itself. Deliberate.
TEST_F(ProductionFit, TheWeightIsReadFromTheIndexColumn)
{
    Table({10.0F, 20.0F, 30.0F}, {50.0F, 90.0F, 160.0F});
    const float index[] = {2.0F, 4.0F, 8.0F};
    for (int t = 1; t <= 3; ++t) {
        data.AbundIndex(t, index[t - 1]);
        data.VarAbundIndex(t, 0.125F);
    }
    for (const bool present : {true, false}) {
        data.ColPresent(columns::VarAbundIndex, present);
        Prepare(models::kSchaefer, fit_op::kWeightedLeastSquares);
        ASSERT_TRUE(model.CalcInitEstimates());
        Watch(); // fills the weights
        const double value = model.MinLSQFunction(2000.0, 0.5);
        double xx = 0.0;
        double xy = 0.0;
        double yy = 0.0;
        for (int t = 1; t <= 3; ++t) {
            const double w = present ? 1.0 / index[t - 1] : 1.0;
            const double x = model.EffMidPop(t);
            const double y = data.CatchWt(t);
            xx += w * x * x;
            xy += w * x * y;
            yy += w * y * y;
        }
        EXPECT_NEAR(value, yy - xy * xy / xx, 1e-9 * yy);
    }
}

TEST_F(ProductionFit, TheLogFitReloadsTheCatchesOfTheDataSet)
{
    TakeFrom(kStocks[1]);
    Prepared(kStocks[1], fit_op::kLog);
    ASSERT_TRUE(model.CalcInitEstimates());
    for (std::int16_t t = 1; t <= 24; ++t)
        model.CatchVector(t, 1.0F);
    model.CalcFinalEstimates();
    EXPECT_EQ(model.CatchVector(7), data.CatchWt(7));
}
