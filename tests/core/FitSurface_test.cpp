// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/FitSurface.h"

#include "core/FittedModels.h"
#include "models/Bootstraps.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace
{
constexpr double kInfinite = std::numeric_limits<double>::infinity();

/// Asks everything there is to ask.
void AskAll(IMethod& method)
{
    FitSurface surface = method.Surface();
    surface.AtEstimate();
    surface.Refitted(0, 10.0 * surface.Searched().estimate[0]);
    surface.BestBelow(2.0);
    method.FinalEsts();
}

/// Asks, and fails in the middle as a mistake would.
void AskAndFail(IMethod& method)
{
    FitSurface surface = method.Surface();
    surface.Refitted(0, 3.0 * surface.Searched().estimate[0]);
    RaiseSubscript();
}
} // namespace

TEST(FitSurface, LeavesEveryModelUnderEveryErrorModelToTheBitAsItWas)
{
    ForEveryFit([](auto& bench) {
        const Everything before(bench);
        const auto searched = bench.model.Searched();

        AskAll(bench.model);
        EXPECT_TRUE(Everything(bench) == before);
        EXPECT_EQ(FailureOf([&] { AskAndFail(bench.model); }), errors::kSubscript);
        EXPECT_TRUE(Everything(bench) == before);

        EXPECT_EQ(bench.model.Searched().estimate, searched.estimate);
    });
}

// Without natural mortality N1 = 100 loses 10: the mean populations are 100 - 5 = 95 and 90 - 4 = 86. The
// best q is (95 * 10 + 86 * 8) / (95^2 + 86^2) = 1638 / 16421, and what remains is
//     10^2 + 8^2 - 1638^2 / 16421 = 164 - 163.391024 = 0.608976
TEST(FitSurface, OfARegressionIsTheSumOfSquaresWithQInClosedForm)
{
    Fitted<clsSingleCohort> bench(TableBuilder().Effort({1, 1}).Catch({10, 8}), models::kNoRecruitment,
                                  fit_op::kLeastSquares, 0.0);
    FitSurface surface = bench.model.Surface();
    EXPECT_NEAR(surface.Searched().estimate[0], 50.0, 1e-3); // 10 = q 45 and 8 = q 36 with q = 2/9
    EXPECT_NEAR(surface.At(std::array{100.0}), 0.608976, 1e-6);
    EXPECT_NEAR(surface.AtEstimate(), 0.0, 1e-6);
}

// The same catches with variances 1 and 4, so weights 1 and 1/4: q = (950 + 688/4) / (9025 + 7396/4)
// = 1122 / 10874, and 100 + 64/4 - 1122^2 / 10874 = 116 - 115.770094 = 0.229906
TEST(FitSurface, OfAWeightedRegressionWeighsAsTheFitDoes)
{
    Fitted<clsSingleCohort> bench(TableBuilder().Effort({1, 1}).Catch({10, 8}).Variance({1, 4}),
                                  models::kNoRecruitment, fit_op::kWeightedLeastSquares, 0.0);
    FitSurface surface = bench.model.Surface();
    EXPECT_NEAR(surface.At(std::array{100.0}), 0.229906, 1e-6);
}

TEST(FitSurface, OfASearchedFitIsItsObjective)
{
    Fitted<clsProduction> bench(models::kSchaefer, fit_op::kLeastSquares);
    const double objective = bench.model.Details().objective.value();
    FitSurface surface = bench.model.Surface();
    EXPECT_DOUBLE_EQ(surface.AtEstimate(), objective);
    EXPECT_GT(surface.At(std::array{surface.Searched().estimate[0] * 2.0, surface.Searched().estimate[1]}),
              objective);
}

TEST(FitSurface, IsInfiniteWhereTheStockDoesNotSurvive)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kGamma}) {
        Fitted<clsSingleCohort> bench(models::kNoRecruitment, fitOp);
        FitSurface surface = bench.model.Surface();
        EXPECT_EQ(surface.At(std::array{1.0}), kInfinite); // the catches sum to some thousands
        EXPECT_EQ(surface.RatioOfLikelihoods(surface.At(std::array{1.0})), kInfinite);
    }
    Fitted<clsProduction> bench(models::kFox, fit_op::kLog);
    FitSurface surface = bench.model.Surface();
    EXPECT_EQ(surface.At(std::array{10.0, 0.1}), kInfinite);
    EXPECT_EQ(surface.At(std::array{1e21, 0.1}), kInfinite);
}

// n ln(f / f0) with f = e f0 is n, twelve periods less the one toggled out; 2 (f - f0) with f = f0 + 1 is 2.
TEST(FitSurface, RatioOfLikelihoodsCountsThePeriodsInTheFit)
{
    Fitted<clsProduction> squares(TableFor(models::kSchaefer).ToggleOut(4), models::kSchaefer,
                                  fit_op::kLeastSquares);
    FitSurface surface = squares.model.Surface();
    EXPECT_EQ(surface.Periods(), 11);
    EXPECT_NEAR(surface.RatioOfLikelihoods(std::exp(1.0) * surface.AtEstimate()), 11.0, 1e-9);
    EXPECT_EQ(surface.RatioOfLikelihoods(surface.AtEstimate()), 0.0);
    EXPECT_EQ(surface.RatioOfLikelihoods(kInfinite), kInfinite);

    Fitted<clsProduction> gamma(models::kSchaefer, fit_op::kGamma);
    FitSurface second = gamma.model.Surface();
    EXPECT_NEAR(second.RatioOfLikelihoods(second.AtEstimate() + 1.0), 2.0, 1e-9);
}

TEST(FitSurface, RefittedFindsTheLowestValueAlongTheParameterThatIsNotHeld)
{
    Fitted<clsProduction> bench(models::kSchaefer, fit_op::kLeastSquares);
    FitSurface surface = bench.model.Surface();
    const auto [k, r] = surface.Searched().estimate;
    double lowest = kInfinite; // of a grid, 1 % of r apart
    for (double share = 0.01; share < 3.0; share += 0.01)
        lowest = std::min(lowest, surface.At(std::array{1.5 * k, share * r}));
    const double refitted = surface.Refitted(0, 1.5 * k);
    EXPECT_LE(refitted, lowest);
    EXPECT_NEAR(refitted, lowest, 0.01 * lowest); // the grid misses the bottom by half a step
    EXPECT_LT(refitted, surface.At(std::array{1.5 * k, r}));
}

TEST(FitSurface, RefittedLeavesAParameterThatTheUserHoldsWhereItIs)
{
    ModelBench<clsProduction> bench(TableFor(models::kSchaefer));
    ASSERT_TRUE(bench.Start(fit_op::kLeastSquares, 0.0));
    bench.user.onStartVals = [](StartVals& starts) { return starts.Fixed2 = true; };
    bench.model.SetStartingEsts(true);
    bench.model.InputStartingEsts();
    bench.Finish();
    FitSurface surface = bench.model.Surface();
    EXPECT_FALSE(surface.Searched().held[0]);
    EXPECT_TRUE(surface.Searched().held[1]);
    const auto [k, r] = surface.Searched().estimate;
    EXPECT_EQ(surface.Refitted(0, 2.0 * k), surface.At(std::array{2.0 * k, r}));
}

TEST(FitSurface, BestBelowIsTheFitItselfWhereItsGrowthLiesBelow)
{
    Fitted<clsProduction> bench(models::kSchaefer, fit_op::kLeastSquares);
    FitSurface surface = bench.model.Surface();
    const auto found = surface.BestBelow(2.0);
    ASSERT_TRUE(found.has_value());
    EXPECT_NEAR(found->objective, surface.AtEstimate(), 1e-4 * surface.AtEstimate()); // tolerance of a search
    EXPECT_NEAR(found->x[1], surface.Searched().estimate[1], 0.01 * found->x[1]);
}

TEST(FitSurface, BestBelowIsNothingWhereTheSearchEndsOnTheLimit)
{
    Fitted<clsProduction> bench(models::kSchaefer, fit_op::kLeastSquares);
    FitSurface surface = bench.model.Surface();
    EXPECT_FALSE(surface.BestBelow(surface.Searched().estimate[1] / 2.0).has_value());
}

TEST(FitSurface, AModelWithoutStartsOfItsOwnHasNoBestBelow)
{
    Fitted<clsRecruitINdex> bench(models::kRecruitmentIndex, fit_op::kLog);
    EXPECT_FALSE(bench.model.Surface().BestBelow(2.0).has_value());
}

// M = 0, an effort of 1 and catches of 10, 1, 1: the regression of 10, 1, 1 on 5, 10.5, 11.5 has the slope
// -36 / 24.5, so N1 = 9 + 4 * 24.5 / 36 = 11.722222, less than the 12 that were caught. Doubled once it
// survives.
TEST(FitSurface, ReplacedStartIsWhatTheRegressionGave)
{
    Fitted<clsSingleCohort> plain(models::kNoRecruitment, fit_op::kLeastSquares);
    EXPECT_FALSE(plain.model.ReplacedStart().has_value());

    Fitted<clsSingleCohort> doubled(TableBuilder().Effort({1, 1, 1}).Catch({10, 1, 1}),
                                    models::kNoRecruitment, fit_op::kLeastSquares, 0.0);
    ASSERT_TRUE(doubled.model.ReplacedStart().has_value());
    EXPECT_NEAR(*doubled.model.ReplacedStart(), 11.722222, 1e-6);
    EXPECT_NEAR(doubled.model.FinalEsts()[0], 23.444444, 1e-6);
}

// Six refits, of which the second and the fourth have to be drawn again.
TEST(FitSurface, ReplicatesDrawnAgainAreCounted)
{
    Fitted<clsSingleCohort> bench(models::kNoRecruitment, fit_op::kLeastSquares);
    bench.model.NumBootStraps(4);
    int draws = 0;
    RunReplicates(bench.model.m, "", [&draws](int) { return ++draws % 2 == 1 || draws > 4; });
    EXPECT_EQ(bench.model.ReplicatesDrawnAgain(), 2);
}
