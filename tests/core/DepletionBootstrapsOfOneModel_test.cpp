// SPDX-License-Identifier: GPL-3.0-or-later
// Bootstraps of a depletion model that differ from one to the other, and the steps that they share.
#include "core/DepletionStocks.h"
#include "fit/clsMethManager.h"
#include "models/Bootstraps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <tuple>
#include <vector>

using namespace depletion;

// A response that grows with the catch before has a slope without meaning.
TEST(DepletionBootstrapsOfOneModel, AMeaninglessSlopeOfTheClosedCohortStaysAsTwoSentinels)
{
    Fitted<clsSingleCohort> bench(fit_op::kLeastSquares, 2);
    bench.model.m.ResidVec.Fill(0.0F);
    for (int i = 1; i <= 12; ++i)
        bench.model.m.FittedVec(i) = static_cast<float>(i * i * bench.model.m.Effort(i));

    bench.model.CalcBootStraps();

    EXPECT_EQ(bench.model.BootStrap(bs_param::kQ, 1), 0.0F);
    EXPECT_EQ(bench.model.BootStrap(bs_param::kN1, 1), 1e20F);
    EXPECT_EQ(bench.model.SortedBootStrap(bs_param::kN1, 2), 1e20F);
}

TEST(DepletionBootstrapsOfOneModel, AMeaninglessSlopeOfConstantRecruitmentStaysAsThreeSentinels)
{
    Fitted<clsConstRecruit> bench(fit_op::kLeastSquares, 2);
    bench.model.m.ResidVec.Fill(0.0F);
    for (int i = 1; i <= 12; ++i)
        bench.model.m.FittedVec(i) = static_cast<float>(i * i * bench.model.m.Effort(i));

    bench.model.CalcBootStraps();

    EXPECT_EQ(bench.model.BootStrap(bs_param::kK, 1), 1e20F);
    EXPECT_EQ(bench.model.BootStrap(bs_param::kQ, 1), 0.0F);
    EXPECT_EQ(bench.model.BootStrap(bs_param::kRYield, 1), 0.0F);
}

TEST(DepletionBootstrapsOfOneModel, AMeaninglessReplicateOfTheRecruitmentIndexIsDrawnAgain)
{
    Fitted<clsRecruitINdex> bench(fit_op::kLeastSquares, 2);
    bench.model.m.ResidVec.Fill(0.0F);
    for (int i = 1; i <= 12; ++i)
        bench.model.m.FittedVec(i) = static_cast<float>(i * i * bench.model.m.Effort(i));
    bench.meter.cancelAfter = 10;

    EXPECT_EQ(FailureOf([&] { bench.model.CalcBootStraps(); }), kProgramErrorBase + errors::kUserCancelled);

    EXPECT_EQ(bench.model.m_boot.Length(bs_param::kQ), 0);
    EXPECT_TRUE(bench.user.messages.empty());
}

// exp(M/2) (1 - exp(-M)) (K - N at the end of the replicate's own trajectory).
TEST(DepletionBootstrapsOfOneModel, TheReplacementYieldOfAReplicateBelongsToItsOwnTrajectory)
{
    for (const std::int32_t fitOp : kErrorModels) {
        Fitted<clsConstRecruit> bench(fitOp, 3);
        bench.model.CalcBootStraps();
        for (int n = 1; n <= 3; ++n) {
            const double k = bench.model.BootStrap(bs_param::kK, n);
            bench.model.CopyBStrapsToWorkEsts(static_cast<std::int16_t>(n));
            EXPECT_EQ(bench.model.Work().K, k);
            bench.model.CalcPopTraj();
            const double yield = std::exp(0.1) * (1.0 - std::exp(-0.2)) * (k - bench.model.Nt(13));
            EXPECT_NEAR(bench.model.BootStrap(bs_param::kRYield, n) / yield, 1.0, 1e-5) << fitOp;
        }
    }
}

TEST(DepletionBootstrapsOfOneModel, ReplicatesGoBackIntoTheWorkingEstimates)
{
    Fitted<clsRecruitINdex> index(fit_op::kLeastSquares, 2);
    index.model.CalcBootStraps();
    index.model.CopyBStrapsToWorkEsts(2);
    EXPECT_EQ(index.model.Work().N1, static_cast<double>(index.model.BootStrap(4, 2)));
    EXPECT_EQ(index.model.Work().Q, static_cast<double>(index.model.BootStrap(2, 2)));
    EXPECT_EQ(index.model.Work().Lambda, static_cast<double>(index.model.BootStrap(5, 2)));
    index.model.CopyQANDFinalToWorkEsts(); // leaves Lambda as it was
    EXPECT_EQ(index.model.Work().N1, index.estimates.at(0));
    EXPECT_EQ(index.model.Work().Lambda, static_cast<double>(index.model.BootStrap(5, 2)));

    Fitted<clsSingleCohort> closed(fit_op::kLeastSquares, 2);
    closed.model.CalcBootStraps();
    closed.model.CopyBStrapsToWorkEsts(1);
    EXPECT_EQ(closed.model.Work().N1, static_cast<double>(closed.model.BootStrap(4, 1)));
    EXPECT_EQ(closed.model.Work().Q, static_cast<double>(closed.model.BootStrap(2, 1)));
}

TEST(DepletionBootstrapsOfOneModel, WithOnePeriodToggledInEveryDrawIsThatPeriod)
{
    StateBench bench({1, 1, 1, 1}, {1, 1, 1, 1});
    for (const int out : {1, 2, 4})
        bench.data.ToggledIn(out, false);

    for (int k = 0; k < 100; ++k)
        EXPECT_EQ(GetValidPtNo(bench.m), 3);

    bench.data.ToggledIn(3, false);
    EXPECT_EQ(FailureOf([&] { GetValidPtNo(bench.m); }), errors::kInvalidArgument); // and no endless loop
}

// 4000 draws of 3 periods: 1333 each, with a deviation of 30; five deviations.
TEST(DepletionBootstrapsOfOneModel, PeriodsInTheFitHaveTheSameChanceAndTheOthersNone)
{
    StateBench bench({1, 1, 1, 1}, {1, 1, 1, 1});
    bench.data.ToggledIn(2, false);
    std::map<int, int> drawn;

    for (int k = 0; k < 4000; ++k)
        ++drawn[GetValidPtNo(bench.m)];

    EXPECT_EQ(drawn.size(), 3U);
    EXPECT_EQ(drawn.count(2), 0U);
    for (const int i : {1, 3, 4})
        EXPECT_NEAR(drawn[i], 4000.0 / 3.0, 150.0);
}

// Deliberate: two models give every period a new catch, the recruitment index model those in the fit.
TEST(DepletionBootstrapsOfOneModel, ALognormalResamplingMayOrMayNotTouchPeriodsOutOfTheFit)
{
    for (const Resample which : {Resample::EveryPeriod, Resample::ToggledIn}) {
        StateBench bench({1, 1}, {7, 7});
        bench.data.ToggledIn(2, false);
        bench.m.ResidVec(1) = 0.5F;
        bench.m.ResidVec(2) = 9.0F;
        bench.m.FittedVec.Fill(1.0F);

        ResampleLogCatch(bench.m, which);

        EXPECT_NEAR(bench.m.CatchVector(1), std::exp(1.5), 1e-6);
        EXPECT_NEAR(bench.m.CatchVector(2), which == Resample::EveryPeriod ? std::exp(1.5) : 7.0, 1e-6);
    }
}

TEST(DepletionBootstrapsOfOneModel, AGammaResamplingGivesPeriodsOutOfTheFitTheZeroOfTheMatrix)
{
    Fitted<clsSingleCohort> bench(fit_op::kGamma, 1, DataFor<clsSingleCohort>(0.05).ToggleOut(4));
    bench.model.CalcBootStraps();

    EXPECT_EQ(bench.model.CatchVector(4), 0.0F);
    EXPECT_GT(bench.model.CatchVector(5), 0.0F);
}

TEST(DepletionBootstrapsOfOneModel, MoreThanTenPercentOfFailuresAreWorthAWarning)
{
    StateBench bench({1}, {1});
    bench.m.NumBootStraps = 9;
    WarnOfFailures(bench.m, 1); // exactly 10 %
    EXPECT_TRUE(bench.user.messages.empty());

    bench.m.NumBootStraps = 8;
    WarnOfFailures(bench.m, 1); // 11.1 %
    ASSERT_EQ(bench.user.messages.size(), 1U);
    EXPECT_EQ(
        bench.user.messages[0].text,
        "Warning!  11% of the bootstrap fits failed to converge or they produced invalid estimates.  The "
        "estimated confidence intervals are likely to be unreliable. ");
    EXPECT_EQ(bench.user.messages[0].title, "VELT 3.0");
    EXPECT_EQ(bench.user.messages[0].icon, Icon::Exclamation);
}

// Residuals ten times as large as they were: many replicates have a negative parameter.
TEST(DepletionBootstrapsOfOneModel, OnlyTheRecruitmentIndexWarnsOfItsFailures)
{
    Fitted<clsRecruitINdex> bench(fit_op::kLeastSquares, 50, DataFor<clsRecruitINdex>(0.1));
    for (int i = 1; i <= 12; ++i)
        bench.model.m.ResidVec(i) *= 10.0F;

    bench.model.CalcBootStraps();

    EXPECT_TRUE(bench.user.Saw("% of the bootstrap fits failed to converge"));
    EXPECT_EQ(bench.model.m_boot.Length(bs_param::kLambda), 50);
    for (int n = 1; n <= 50; ++n) {
        for (const int parameter : {bs_param::kQ, bs_param::kN1, bs_param::kLambda})
            EXPECT_GE(bench.model.BootStrap(parameter, n), 0.0F);
    }

    Fitted<clsSingleCohort> closed(fit_op::kLeastSquares, 50, DataFor<clsSingleCohort>(0.1));
    for (int i = 1; i <= 12; ++i)
        closed.model.m.ResidVec(i) *= 30.0F;
    closed.model.CalcBootStraps();
    EXPECT_TRUE(closed.user.messages.empty());
}

namespace
{
/// A fitted manager with `replicates` bootstraps.
struct Managed : Bench {
    explicit Managed(int replicates) : data(DataFor<clsSingleCohort>(0.05).Build(run)), manager(run)
    {
        manager.Create(data);
        user.Picks(run.globals.ModelTitles(models::kNoRecruitment));
        user.onInputParams = [](InputParams&) { return true; };
        manager.FitNewModel(false);
        run.globals.settings.NumBootStraps = replicates;
    }
    clsVeltData data;
    clsMethManager manager;
};
} // namespace

// 0.125 and 0.875 are exact: of 20 replicates 2.5 and 17.5, ties to even: 2 and 18; of 3: 0.375 and 2.625,
// 0 and 3, and a position of 0 is the first.
TEST(DepletionBootstrapsOfOneModel, ConfidenceLimitsAreTheReplicatesAtTheNearestPositions)
{
    for (const auto& [replicates, low, high] :
         {std::tuple{20, 2, 18}, std::tuple{3, 1, 3}, std::tuple{1, 1, 1}}) {
        Managed bench(replicates);
        bench.manager.GenerateBootStraps();
        ASSERT_TRUE(bench.manager.IsBSDone());
        bench.manager.CILow(0.125F);
        bench.manager.CIHigh(0.875F);

        const IMethod& method = *bench.manager.Method();
        EXPECT_EQ(bench.manager.LowerCILimit(2), method.SortedBootStrap(2, low)) << replicates;
        EXPECT_EQ(bench.manager.UpperCILimit(2), method.SortedBootStrap(2, high)) << replicates;
        EXPECT_GT(bench.manager.LowerCILimit(2), 0.0F);
    }
}

TEST(DepletionBootstrapsOfOneModel, ACancelledRunIsSwallowedSilentlyByTheCommand)
{
    Managed bench(20);
    bench.meter.cancelAfter = 5;

    bench.manager.GenerateBootStraps();

    EXPECT_TRUE(bench.user.messages.empty());
    EXPECT_FALSE(bench.manager.IsBSDone());
    EXPECT_TRUE(bench.manager.MethDefined());
    EXPECT_FALSE(bench.window.hourglass);
    EXPECT_GT(bench.manager.Method()->BootStrap(2, 6), 0.0F); // the replicates so far stay
    EXPECT_EQ(bench.manager.Method()->BootStrap(2, 7), 0.0F);
}

// Six periods that take nearly the whole stock. The total catch leaves the stock in every replicate as it
// did, so that no population below the sum of T(i) exp(M (i - 1/2)) can be meant, and q is that of a catch.
TEST(DepletionBootstrapsOfOneModel, ReplicatesOfAHeavilyFishedStockSurviveTheCatchThatWasTaken)
{
    SimulatedStock stock;
    stock.q = 0.005;
    stock.effort.resize(6);
    const std::vector<double> catches = stock.Catches(0.05);
    double taken = 0.0;
    for (int i = 1; i <= 6; ++i)
        taken += catches[static_cast<std::size_t>(i) - 1] * std::exp(0.2 * (i - 0.5));
    ASSERT_GT(taken, 0.9 * stock.n1);
    Fitted<clsSingleCohort> bench(fit_op::kLog, 200, TableBuilder().Effort(stock.effort).Catch(catches));
    EXPECT_GT(bench.estimates.at(0), taken * (1.0 - 1e-5)); // floats in the trajectory

    bench.model.CalcBootStraps();

    for (int n = 1; n <= 200; ++n) {
        EXPECT_GT(bench.model.BootStrap(bs_param::kQ, n), 0.0F) << n;
        EXPECT_GT(bench.model.BootStrap(bs_param::kN1, n), taken * (1.0 - 1e-5)) << n;
    }
}
