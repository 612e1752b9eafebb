// SPDX-License-Identifier: GPL-3.0-or-later
// The starts of the production models: solved for and typed.
#include "core/ProductionBench.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

TEST_F(Production, TheStartIsTheSmallestKThatSurvivesToOnePercent)
{
    const std::vector<float> catches{30.0F, 80.0F, 120.0F, 150.0F, 90.0F, 60.0F, 110.0F, 40.0F};
    for (const std::int32_t whichMeth : kProductionModels) {
        for (const double r : {0.05, 0.1, 0.5, 1.0}) {
            Table(std::vector<float>(catches.size(), 10.0F), catches);
            Prepare(whichMeth, fit_op::kLeastSquares, 1, 2.0F);
            Estimates record{.K = 10.0, .R = r};
            ASSERT_TRUE(model.SolveStartK(record));
            const double smallest =
                KnownStock{.whichMeth = whichMeth, .R = r, .Z = 2.0, .lag = 1}.SmallestK(catches);
            EXPECT_GE(record.K, smallest * (1.0 - 1e-5)); // floats in the trajectory
            EXPECT_LE(record.K * 0.99, smallest * (1.0 + 1e-5));
            EXPECT_EQ(record.R, r);
        }
    }
}

TEST_F(Production, TheCatchabilityOfTheStartIsTheGeometricMean)
{
    Table({10.0F, 20.0F, 40.0F}, {50.0F, 70.0F, 90.0F});
    Prepare(models::kSchaefer);
    data.ToggledIn(3, false);
    Estimates record{.K = 1000.0, .R = 0.3};
    ASSERT_TRUE(model.SolveStartK(record));
    EXPECT_NEAR(record.Q, std::sqrt(50.0 / model.EffMidPop(1) * 70.0 / model.EffMidPop(2)), 1e-9 * record.Q);
}

TEST_F(Production, NinetyNineDoublingsThatDoNotHelpLeaveTheRecordAsItWas)
{
    HundredAPeriod(models::kSchaefer, 0, 1.0F, 0.0F); // without a start no K survives
    Estimates record{.K = 3.0, .Q = 4.0, .R = 0.5, .Var = 6.0};
    EXPECT_FALSE(model.SolveStartK(record));
    EXPECT_EQ(record.K, 3.0);
    EXPECT_EQ(record.Q, 4.0);
    EXPECT_EQ(record.R, 0.5);
    EXPECT_EQ(record.Var, 6.0);
}

TEST_F(Production, TheNinetyEighthDoublingCanHelpAndTheNinetyNinthCannot)
{
    HundredAPeriod(models::kSchaefer);
    const double smallest = KnownStock{.R = 0.5}.SmallestK({100.0F, 100.0F, 100.0F, 100.0F});
    Estimates helped{.K = std::ldexp(1.5 * smallest, -98), .R = 0.5};
    EXPECT_TRUE(model.SolveStartK(helped));
    EXPECT_NEAR(helped.K, smallest, 0.0101 * smallest);

    const double before = std::ldexp(1.5 * smallest, -99);
    Estimates late{.K = before, .R = 0.5};
    EXPECT_FALSE(model.SolveStartK(late));
    EXPECT_EQ(late.K, before);
}

TEST_F(Production, StartingEstimatesHoldTheSmallestKForASlowGrowth)
{
    const std::vector<float> catches{30.0F, 80.0F, 120.0F, 150.0F, 90.0F, 60.0F, 110.0F, 40.0F};
    Table(std::vector<float>(catches.size(), 10.0F), catches);
    Prepare(models::kSchaefer);
    ASSERT_TRUE(model.CalcInitEstimates());
    const std::vector<NamedValue> start = model.Details().initEsts;
    ASSERT_EQ(start.size(), 3U);
    EXPECT_EQ(start[0].name, "K");
    EXPECT_EQ(start[2].value, 0.1);
    const double smallest = KnownStock{.R = 0.1}.SmallestK(catches);
    EXPECT_GE(start[0].value, smallest * (1.0 - 1e-5));
    EXPECT_LE(start[0].value * 0.99, smallest * (1.0 + 1e-5));
    EXPECT_EQ(start[1].name, "Q");
    EXPECT_GT(start[1].value, 0.0);
    EXPECT_LE(static_cast<double>(model.MinPop()), start[0].value);
    EXPECT_GE(static_cast<double>(model.MinPop()), smallest * (1.0 - 1e-5));
}

// With catches near the smallest float, 1.4e-45, hundredths round to nothing and halves to the even
// neighbour; the search for the smallest K used to halve for ever.
TEST_F(Production, CatchesNearTheSmallestFloatEndTheSearchForAStart)
{
    const float smallest = std::numeric_limits<float>::denorm_min();
    Table(std::vector<float>(4, 1.0F), std::vector<float>(4, smallest));
    Prepare(models::kSchaefer);
    Estimates record{.K = static_cast<double>(8.0F * smallest), .R = 0.1};
    ASSERT_TRUE(model.SolveStartK(record));
    EXPECT_GE(record.K, static_cast<double>(4.0F * smallest)); // four catches of 1.4e-45, and no growth left
    EXPECT_LE(record.K, static_cast<double>(8.0F * smallest));
}

// Without catches everything survives, down to nothing: 2^128 is halved 277 times to the smallest float and
// once more. A stock of nothing has no growth, 0 / 0.
TEST_F(Production, WithoutCatchesTheSmallestKIsNothingAndThatHasNoGrowth)
{
    Table({1.0F, 1.0F, 1.0F}, {0.0F, 0.0F, 0.0F});
    Prepare(models::kSchaefer);
    Estimates record{.K = static_cast<double>(std::numeric_limits<float>::max()), .R = 0.0};
    EXPECT_EQ(FailureOf([&] { model.SolveStartK(record); }), errors::kInvalidArgument);
    EXPECT_EQ(model.Work().K, 0.0);
}

// The sum of catches is 680; both smallest K lie between 100 and 1000.
TEST_F(Production, TheContourRangesAreTheDecadesAroundAFastAndASlowStock)
{
    const std::vector<float> catches{30.0F, 80.0F, 120.0F, 150.0F, 90.0F, 60.0F, 110.0F, 40.0F};
    ASSERT_GT(KnownStock{.R = 1.5}.SmallestK(catches), 100.0);
    ASSERT_LT(KnownStock{.R = 0.05}.SmallestK(catches), 900.0);
    Table(std::vector<float>(catches.size(), 10.0F), catches);
    Prepare(models::kSchaefer);
    ASSERT_TRUE(model.CalcInitEstimates());
    EXPECT_DOUBLE_EQ(model.Contours().Param1Lo, 100.0);
    EXPECT_DOUBLE_EQ(model.Contours().Param1Hi, 1000.0);
    EXPECT_EQ(model.Contours().Param2Lo, 0.05);
    EXPECT_EQ(model.Contours().Param2Hi, 1.5);
    EXPECT_EQ(model.Contours().Param1Name, "K");
    EXPECT_EQ(model.Contours().Param2Name, "r");
}

TEST_F(Production, NoUsableStartIsToldByTheExcuse)
{
    HundredAPeriod(models::kSchaefer, 0, 1.0F, 0.0F);
    EXPECT_FALSE(model.CalcInitEstimates());
    EXPECT_EQ(model.Excuse(), excuse::kNoStart);
    EXPECT_EQ(model.Details().initEsts.at(0).value, 400.0); // the total catch, and not 99 doublings of it
    EXPECT_EQ(model.Details().initEsts.at(2).value, 0.1);
}

TEST_F(Production, TypedStartsAreKeptOnOkAndForgottenOnCancel)
{
    HundredAPeriod(models::kSchaefer);
    ASSERT_TRUE(model.CalcInitEstimates());
    const double k = model.Details().initEsts[0].value;
    user.onStartVals = [&](StartVals& starts) {
        EXPECT_EQ(starts.Param1Name, "K");
        EXPECT_EQ(starts.Param2Name, "r");
        EXPECT_EQ(starts.param1, k);
        EXPECT_EQ(starts.param2, 0.1);
        EXPECT_FALSE(starts.Fixed1);
        EXPECT_FALSE(starts.Fixed2);
        starts.param1 = 4321.0;
        starts.param2 = 0.7;
        starts.Fixed2 = true;
        return false;
    };
    EXPECT_FALSE(model.InputStartingEsts());
    EXPECT_EQ(model.Details().initEsts[0].value, k);

    const auto type = user.onStartVals;
    user.onStartVals = [&](StartVals& starts) {
        type(starts);
        return true;
    };
    EXPECT_TRUE(model.InputStartingEsts());
    EXPECT_EQ(model.Details().initEsts[0].value, 4321.0);
    EXPECT_EQ(model.Details().initEsts[2].value, 0.7);
    user.onStartVals = [](StartVals& starts) {
        EXPECT_TRUE(starts.Fixed2);
        EXPECT_FALSE(starts.Fixed1);
        return true;
    };
    EXPECT_TRUE(model.InputStartingEsts());
}
