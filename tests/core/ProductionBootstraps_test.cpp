// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ProductionBench.h"
#include "models/modMaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace
{
const KnownStock kStock{.K = 5000.0, .Q = 0.0012, .R = 0.45};

class ProductionBootstraps : public ::testing::Test, public ProductionBench
{
protected:
    void Fitted(std::int32_t fitOp, std::int32_t replicates)
    {
        const std::vector<float> effort = ContrastedEffort();
        std::vector<float> catches = kStock.Catches(effort);
        const float pattern[] = {1.05F, 0.96F, 1.02F, 0.95F, 1.03F, 0.99F};
        for (std::size_t t = 0; t < catches.size(); ++t)
            catches[t] *= pattern[t % 6];
        Table(effort, catches);
        run.globals.settings.NumBootStraps = replicates;
        Prepare(models::kSchaefer, fitOp);
        data.ToggledIn(4, false);
        Fit();
    }

    /// The period that the run draws next; the source starts anew with every run.
    int Draw()
    {
        for (;;) {
            const int t = static_cast<int>(m_draws.Next() * data.NAPoints()) + 1;
            if (data.ToggledIn(t))
                return t;
        }
    }

    std::optional<VeltError> FailureOfRun()
    {
        try {
            model.CalcBootStraps();
        } catch (const VeltError& error) {
            return error;
        }
        return std::nullopt;
    }

    std::vector<float> Replicates(int parameter) const
    {
        std::vector<float> values;
        for (int b = 1; b <= model.NumBootStraps(); ++b)
            values.push_back(model.BootStrap(parameter, b));
        return values;
    }

    RandomSource m_draws{20261121};
};
} // namespace

TEST_F(ProductionBootstraps, ALeastSquaresCatchIsTheFittedValuePlusADrawnResidual)
{
    Fitted(fit_op::kLeastSquares, 1);
    const FitDetails fit = model.Details();
    m_draws.Randomize();
    model.CalcBootStraps();
    for (std::int16_t t = 1; t <= 24; ++t) {
        if (!data.ToggledIn(t)) {
            EXPECT_EQ(model.CatchVector(t), data.CatchWt(t));
            continue;
        }
        const float drawn = fit.resid[static_cast<std::size_t>(Draw()) - 1];
        EXPECT_FLOAT_EQ(model.CatchVector(t), drawn + fit.fitted[static_cast<std::size_t>(t) - 1]);
    }
}

// Unlike in the depletion models the fitted value is not divided. Deliberate. A weighted fit never arrives,
// so the residuals are those of an unweighted one.
TEST_F(ProductionBootstraps, TheResidualAloneIsDividedByTheRootOfTheWeight)
{
    Fitted(fit_op::kLeastSquares, 1);
    const FitDetails fit = model.Details();
    for (int t = 1; t <= 24; ++t)
        data.AbundIndex(t, static_cast<float>(t)); // weight 1/t, so the residual is multiplied by root t
    data.ColPresent(columns::VarAbundIndex, true);
    model.FitOp(fit_op::kWeightedLeastSquares);
    meter.cancelAfter = 0;
    m_draws.Randomize();
    ASSERT_TRUE(FailureOfRun());
    for (std::int16_t t = 1; t <= 24; ++t) {
        if (!data.ToggledIn(t))
            continue;
        const float drawn = fit.resid[static_cast<std::size_t>(Draw()) - 1];
        const float fitted = fit.fitted[static_cast<std::size_t>(t) - 1];
        EXPECT_NEAR(model.CatchVector(t), drawn * std::sqrt(static_cast<float>(t)) + fitted, 1e-4F * fitted);
    }
}

TEST_F(ProductionBootstraps, ALogCatchIsTheExponentialOfResidualAndFittedValue)
{
    Fitted(fit_op::kLog, 1);
    const FitDetails fit = model.Details();
    m_draws.Randomize();
    model.CalcBootStraps();
    for (std::int16_t t = 1; t <= 24; ++t) {
        if (!data.ToggledIn(t)) {
            EXPECT_EQ(model.CatchVector(t), data.CatchWt(t));
            continue;
        }
        const float drawn = fit.resid[static_cast<std::size_t>(Draw()) - 1];
        const float expected = std::exp(drawn + fit.fitted[static_cast<std::size_t>(t) - 1]);
        EXPECT_NEAR(model.CatchVector(t), expected, 1e-5F * expected);
    }
}

TEST_F(ProductionBootstraps, AGammaCatchStandsWhereADrawnPeriodStands)
{
    Fitted(fit_op::kGamma, 1);
    const FitDetails fit = model.Details();
    const double beta = 1.0 / fit.var;
    std::vector<double> shapes;
    for (int t = 1; t <= 24; ++t)
        shapes.push_back(model.EffMidPop(t) * model.Q() * beta);
    m_draws.Randomize();
    model.CalcBootStraps();
    for (std::int16_t t = 1; t <= 24; ++t) {
        const float position = fit.resid[static_cast<std::size_t>(Draw()) - 1];
        if (!data.ToggledIn(t))
            EXPECT_EQ(model.CatchVector(t), 0.0F);
        else // what the default tolerance of the root search leaves
            EXPECT_NEAR(
                modMaths::GammaP(shapes[static_cast<std::size_t>(t) - 1], model.CatchVector(t) * beta),
                position, 1e-3);
    }
}

TEST_F(ProductionBootstraps, EachReplicateKeepsKQRAndTheTwoYields)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        SCOPED_TRACE(fitOp);
        Fitted(fitOp, 8);
        model.CalcBootStraps();
        EXPECT_TRUE(model.IsBSDone());
        EXPECT_EQ(model.NumBootStraps(), 8);
        for (int b = 1; b <= 8; ++b) {
            const float k = model.BootStrap(bs_param::kK, b);
            const float r = model.BootStrap(bs_param::kR, b);
            EXPECT_NEAR(k, 5000.0F, 2500.0F); // 5 % noise
            EXPECT_NEAR(r, 0.45F, 0.25F);
            EXPECT_NEAR(model.BootStrap(bs_param::kQ, b), 0.0012F, 0.0006F);
            EXPECT_NEAR(model.BootStrap(bs_param::kMSY, b), r * k / 4.0F, 1e-3F);
            // The growth of the last biomass, at the record of the catches: reckoned again from K and R.
            Follow(k, 0.0, r);
            const float last = model.Nt(25);
            EXPECT_NEAR(model.BootStrap(bs_param::kRYield, b), r * last * (1.0F - last / k), 0.05F);
            EXPECT_EQ(model.BootStrap(bs_param::kN1, b), 0.0F);
        }
        for (const int parameter : {1, 2, 3, 7, 8}) {
            std::vector<float> values = Replicates(parameter);
            std::sort(values.begin(), values.end());
            for (int n = 1; n <= 8; ++n)
                EXPECT_EQ(model.SortedBootStrap(parameter, n), values[static_cast<std::size_t>(n) - 1]);
        }
    }
}

// 25 states and a lag of 2: the yield is the growth of the biomass of period 23 on the replicate's own
// trajectory, reckoned again here: N' = N + G(N two periods before, at the beginning the first) - C.
TEST_F(ProductionBootstraps, TheReplacementYieldOfAReplicateIsTheGrowthOfItsLaggedBiomass)
{
    const KnownStock lagged{.K = 5000.0, .Q = 0.0012, .R = 0.45, .lag = 2};
    const std::vector<float> effort = ContrastedEffort();
    std::vector<float> catches = lagged.Catches(effort);
    const float pattern[] = {1.05F, 0.96F, 1.02F, 0.95F, 1.03F, 0.99F};
    for (std::size_t t = 0; t < catches.size(); ++t)
        catches[t] *= pattern[t % 6];
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        SCOPED_TRACE(fitOp);
        Table(effort, catches);
        run.globals.settings.NumBootStraps = 4;
        Prepare(models::kSchaefer, fitOp, 2);
        Fit();
        model.CalcBootStraps();
        for (int b = 1; b <= 4; ++b) {
            const double k = model.BootStrap(bs_param::kK, b);
            const double r = model.BootStrap(bs_param::kR, b);
            const auto growth = [k, r](double n) { return r * n * (1.0 - n / k); };
            std::vector<double> n{k};
            for (std::size_t p = 0; p < catches.size(); ++p)
                n.push_back(n[p] + growth(n[p < 2 ? 0 : p - 2]) - static_cast<double>(catches[p]));
            ASSERT_GT(std::fabs(growth(n[22]) - growth(n[24])), 1.0);
            ASSERT_GT(std::fabs(growth(n[22]) - growth(n[23])), 1.0);
            EXPECT_NEAR(model.BootStrap(bs_param::kRYield, b), growth(n[22]), 0.05); // 24 float steps
        }
    }
}

TEST_F(ProductionBootstraps, ASeededRunRepeatsToTheBit)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Fitted(fitOp, 4);
        model.CalcBootStraps();
        const std::vector<float> first = Replicates(bs_param::kK);
        model.CalcBootStraps();
        EXPECT_EQ(Replicates(bs_param::kK), first) << fitOp;
    }
}

// A cancelled gamma run used to leave the shape and rate of its last replicate behind.
TEST_F(ProductionBootstraps, ARunAfterACancelledOneStartsFromTheFitAgain)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Fitted(fitOp, 4);
        const double q = model.Q();
        model.CalcBootStraps();
        const std::vector<float> whole = Replicates(bs_param::kK);
        meter.looks = 0;
        meter.cancelAfter = fitOp == fit_op::kGamma ? 26 : 2; // the catch matrix looks 24 times
        ASSERT_TRUE(FailureOfRun());
        EXPECT_FALSE(model.IsBSDone());
        EXPECT_EQ(model.Q(), q);
        meter.cancelAfter.reset();
        model.CalcBootStraps();
        EXPECT_EQ(Replicates(bs_param::kK), whole) << fitOp;
    }
}

TEST_F(ProductionBootstraps, ACancelRaisesUserCancelledAndLeastSquaresCarriesTheNameOfTheLogRoutine)
{
    struct Case {
        std::int32_t fitOp;
        int looks;
        std::string source;
    };
    const Case cases[] = {{fit_op::kLeastSquares, 1, "clsProduction_CalcLnBootStraps"}, // deliberate
                          {fit_op::kLog, 1, "clsProduction_CalcLnBootStraps"},
                          {fit_op::kGamma, 1, "clsProduction_CalcGammaCatchMatrix"},
                          {fit_op::kGamma, 25, "clsProduction_CalcGammaBootStraps"},
                          {fit_op::kLog, 5, "clsProduction_SortBootstraps"}};
    for (const Case& each : cases) {
        meter.cancelAfter.reset();
        Fitted(each.fitOp, 4);
        meter.looks = 0;
        meter.cancelAfter = each.looks;
        const std::optional<VeltError> failure = FailureOfRun();
        ASSERT_TRUE(failure) << each.source;
        EXPECT_TRUE(failure->IsUserCancel());
        EXPECT_EQ(failure->description, "User Cancelled.");
        EXPECT_EQ(failure->source, each.source);
        EXPECT_FALSE(model.IsBSDone());
    }
}

TEST_F(ProductionBootstraps, ReplicatesThatNeverConvergeAreDrawnAgainWithoutAWordUntilCancel)
{
    Fitted(fit_op::kLeastSquares, 3);
    run.globals.settings.intMaxIts = 1;
    meter.looks = 0;
    meter.cancelAfter = 40; // far more than three replicates
    const std::optional<VeltError> failure = FailureOfRun();
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->IsUserCancel());
    EXPECT_EQ(meter.value, 1);
    EXPECT_TRUE(user.messages.empty());
    EXPECT_EQ(model.BootStrap(bs_param::kK, 1), 0.0F);
}

TEST_F(ProductionBootstraps, AHeldParameterIsTheSameInEveryReplicate)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Fitted(fitOp, 4);
        model.SetStartingEsts(true);
        user.onStartVals = [](StartVals& starts) {
            starts.param1 = 5200.0;
            starts.param2 = 0.4;
            starts.Fixed1 = true;
            return true;
        };
        ASSERT_TRUE(model.InputStartingEsts());
        model.CalcFinalEstimates();
        model.CalcBootStraps();
        EXPECT_EQ(Replicates(bs_param::kK), std::vector<float>(4, 5200.0F));
    }
}

// Catches below zero make the slope, and so q, negative. Such a replicate stays, with q = 0, the K of 3.4E+38
// and the r it found. Deliberate. Under the log model and the gamma model q cannot be negative.
TEST_F(ProductionBootstraps, ANegativeCatchabilityStaysInTheSampleUnderLeastSquaresWithItsGrowthRate)
{
    Table({10.0F, 20.0F, 30.0F, 20.0F, 25.0F}, {-50.0F, -90.0F, -160.0F, -95.0F, -120.0F},
          {50.0F, 90.0F, 160.0F, 95.0F, 120.0F});
    run.globals.settings.NumBootStraps = 3;
    Prepare(models::kSchaefer);
    model.SetStartingEsts(true);
    user.onStartVals = [](StartVals& starts) {
        starts = {.Param1Name = "K", .Param2Name = "r", .param1 = 5000.0, .param2 = 0.25, .Fixed2 = true};
        return true;
    };
    ASSERT_TRUE(model.InputStartingEsts());
    model.CalcFinalEstimates();
    ASSERT_LT(model.Q(), 0.0);
    model.CalcBootStraps();
    for (int b = 1; b <= 3; ++b) {
        EXPECT_EQ(model.BootStrap(bs_param::kQ, b), 0.0F);
        EXPECT_EQ(model.BootStrap(bs_param::kK, b), 3.4E+38F);
        EXPECT_EQ(model.BootStrap(bs_param::kR, b), 0.25F);
        EXPECT_FLOAT_EQ(model.BootStrap(bs_param::kMSY, b), 0.25F * 3.4E+38F / 4.0F);
    }
}

TEST_F(ProductionBootstraps, WhatTheMeterShows)
{
    Fitted(fit_op::kGamma, 4);
    meter.titles.clear();
    model.CalcBootStraps();
    EXPECT_EQ(meter.titles, (std::vector<std::string>{"Computing Gamma Catch Matrix...",
                                                      "Calculating Bootstraps...", "Sorting Bootstraps..."}));
    EXPECT_EQ(meter.maximum, 5);
    EXPECT_EQ(meter.value, 5);
}

TEST_F(ProductionBootstraps, AReplicateCanBeCopiedToTheWorkingEstimates)
{
    Fitted(fit_op::kLeastSquares, 2);
    model.CalcBootStraps();
    model.CopyBStrapsToWorkEsts(2);
    EXPECT_EQ(model.Work().K, static_cast<double>(model.BootStrap(bs_param::kK, 2)));
    EXPECT_EQ(model.Work().Q, static_cast<double>(model.BootStrap(bs_param::kQ, 2)));
    EXPECT_EQ(model.Work().R, static_cast<double>(model.BootStrap(bs_param::kR, 2)));
}
