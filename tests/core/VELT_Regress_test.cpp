// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_Regress.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{

using Column = std::vector<double>;

VELT_Regress Regression(const std::vector<Column>& columns, const Column& y, const Column& weights = {})
{
    VELT_Regress regression;
    regression.Create(static_cast<std::int16_t>(columns.size()), static_cast<std::int16_t>(y.size()));
    for (const Column& column : columns)
        regression.AddColumn(column);
    regression.Response(y);
    if (!weights.empty())
        regression.Weights(weights);
    regression.Solve();
    return regression;
}

const std::vector<Column> kThree{{1, 2, 3, 4, 5, 6}, {2, 1, 5, 3, 8, 4}, {1, 0, 2, 7, 1, 3}};
const Column kResponse{3, 4, 9, 11, 12, 10};
const Column kWeights{1, 2, 1, 3, 1, 2};

// NoInt1 of the Statistical Reference Datasets (National Institute of Standards and Technology): x = 60 ...
// 70, y = 130 ... 140, certified slope 2.07438016528926.
TEST(VELT_Regress, GivesTheCertifiedSlopeThroughTheOrigin)
{
    Column x, y;
    for (int i = 0; i <= 10; ++i) {
        x.push_back(60 + i);
        y.push_back(130 + i);
    }
    const VELT_Regress regression = Regression({x}, y);
    ASSERT_TRUE(regression.Succeeded());
    EXPECT_NEAR(regression.Coefficient(1), 2.07438016528926, 5e-15);
}

// The normal equations solved in exact fractions: 51326, 55056 and 41340 over 60911.
TEST(VELT_Regress, SolvesThreeWeightedColumns)
{
    const VELT_Regress regression = Regression(kThree, kResponse, kWeights);
    ASSERT_TRUE(regression.Succeeded());
    EXPECT_NEAR(regression.Coefficient(1), 51326.0 / 60911.0, 1e-14);
    EXPECT_NEAR(regression.Coefficient(2), 55056.0 / 60911.0, 1e-14);
    EXPECT_NEAR(regression.Coefficient(3), 41340.0 / 60911.0, 1e-14);
}

TEST(VELT_Regress, GivesBackTheCoefficientsOfAnExactResponseWhateverTheUnitsOfTheColumns)
{
    std::vector<Column> columns = kThree;
    for (double& x : columns[1])
        x *= 1e200;
    for (double& x : columns[2])
        x *= 1e-200;
    Column y(6);
    for (std::size_t i = 0; i < 6; ++i)
        y[i] = 3.0 * columns[0][i] - 2e-200 * columns[1][i] + 5e200 * columns[2][i];
    const VELT_Regress regression = Regression(columns, y);
    ASSERT_TRUE(regression.Succeeded());
    EXPECT_NEAR(regression.Coefficient(1), 3.0, 1e-13);
    EXPECT_NEAR(regression.Coefficient(2) * 1e200, -2.0, 1e-13);
    EXPECT_NEAR(regression.Coefficient(3) * 1e-200, 5.0, 1e-13);
}

TEST(VELT_Regress, AWeightOfZeroTakesAPointOut)
{
    Column y = kResponse;
    y[2] = 1e6;
    const VELT_Regress with = Regression(kThree, y, {1, 2, 0, 3, 1, 2});
    std::vector<Column> fewer = kThree;
    for (Column& column : fewer)
        column.erase(column.begin() + 2);
    y.erase(y.begin() + 2);
    const VELT_Regress without = Regression(fewer, y, {1, 2, 3, 1, 2});
    ASSERT_TRUE(with.Succeeded());
    for (int j = 1; j <= 3; ++j)
        EXPECT_NEAR(with.Coefficient(j), without.Coefficient(j), 1e-12);
}

TEST(VELT_Regress, DoesNotSucceedWhereTheNormalEquationsAreSingular)
{
    std::vector<Column> columns = kThree;
    for (std::size_t i = 0; i < 6; ++i)
        columns[2][i] = 0.1 * columns[0][i] - 0.7 * columns[1][i];
    const VELT_Regress dependent = Regression(columns, kResponse, kWeights);
    EXPECT_FALSE(dependent.Succeeded());
    EXPECT_EQ(dependent.Coefficient(1), 0.0);
    columns[2].assign(6, 0.0);
    EXPECT_FALSE(Regression(columns, kResponse).Succeeded()) << "a column of zeros";
    EXPECT_FALSE(Regression({kThree[0], kThree[1]}, kResponse, {0, 0, 1, 0, 0, 0}).Succeeded())
        << "one point left";
}

// The second column leaves 5e-15 of itself, and under a weight of 0.64 only 4e-15, less than the 4.44e-15 of
// ten units of rounding for each of two points.
TEST(VELT_Regress, AProblemThatBecomesSingularDoesNotSucceedOnWhatTheOneBeforeLeft)
{
    VELT_Regress kept = Regression({{0.5, 0.0}, {0.5, 5.0e-15}}, {1.0, 1.0}, {1.0, 1.0});
    ASSERT_TRUE(kept.Succeeded());
    kept.Weights(Column{1.0, 0.64});
    kept.Solve();
    EXPECT_FALSE(kept.Succeeded());
    EXPECT_EQ(kept.Coefficient(1), 0.0);
    EXPECT_EQ(kept.Coefficient(2), 0.0);
}

TEST(VELT_Regress, StillSolvesColumnsThatDifferInTheTenthDigit)
{
    std::vector<Column> columns{kThree[0], kThree[0]};
    columns[1][3] += 4e-9;
    EXPECT_TRUE(Regression(columns, kResponse).Succeeded());
}

// The columns (1/2, 0) and (1/2, t) leave t when the first is taken out of the second. Two points make ten
// times two units of rounding, 4.44e-15, the least that is no rounding.
TEST(VELT_Regress, AColumnIsDependentUpToTenUnitsOfRoundingAPoint)
{
    EXPECT_FALSE(Regression({{0.5, 0.0}, {0.5, 4.0e-15}}, {1.0, 1.0}).Succeeded());
    EXPECT_TRUE(Regression({{0.5, 0.0}, {0.5, 5.0e-15}}, {1.0, 1.0}).Succeeded());
}

// Weights of 4 would take the largest response out of the range of the doubles, weights of 1/4 the smallest.
TEST(VELT_Regress, WithoutWeightsEveryPointHasTheWeightOne)
{
    for (const double y : {0.8e308, std::numeric_limits<double>::denorm_min()}) {
        const VELT_Regress regression = Regression({{1.0}}, {y});
        EXPECT_TRUE(regression.Succeeded());
        EXPECT_EQ(regression.Coefficient(1), y);
    }
}

TEST(VELT_Regress, DoesNotSucceedWithFewerPointsThanColumns)
{
    EXPECT_FALSE(Regression({{1}, {2}}, {3}).Succeeded());
    EXPECT_FALSE(Regression({{}, {}}, {}).Succeeded());
    EXPECT_TRUE(Regression({{1, 2}, {2, 1}}, {3, 3}).Succeeded()) << "as many as columns";
}

TEST(VELT_Regress, DoesNotSucceedOnNumbersThatAreNone)
{
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        std::vector<Column> columns = kThree;
        columns[1][2] = bad;
        EXPECT_FALSE(Regression(columns, kResponse).Succeeded());
        Column y = kResponse;
        y[5] = bad;
        EXPECT_FALSE(Regression(kThree, y).Succeeded());
        EXPECT_FALSE(Regression(kThree, kResponse, {1, 1, bad, 1, 1, 1}).Succeeded());
    }
    EXPECT_FALSE(Regression(kThree, kResponse, {1, 1, -1, 1, 1, 1}).Succeeded());
}

TEST(VELT_Regress, SolveAgainIsTheSameToTheBitAsANewObject)
{
    VELT_Regress kept = Regression(kThree, kResponse, kWeights);
    Column y = kResponse;
    for (int replicate = 0; replicate < 50; ++replicate) {
        for (double& value : y)
            value = value * 0.9 + 0.37 * replicate;
        kept.SolveAgain(y);
        const VELT_Regress fresh = Regression(kThree, y, kWeights);
        ASSERT_TRUE(kept.Succeeded());
        for (int j = 1; j <= 3; ++j)
            EXPECT_EQ(kept.Coefficient(j), fresh.Coefficient(j));
    }
}

TEST(VELT_Regress, ABadReplicateDoesNotSpoilTheNext)
{
    VELT_Regress kept = Regression(kThree, kResponse, kWeights);
    const double before = kept.Coefficient(2);
    kept.SolveAgain(Column(6, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(kept.Succeeded());
    kept.SolveAgain(kResponse);
    EXPECT_TRUE(kept.Succeeded());
    EXPECT_EQ(kept.Coefficient(2), before);
}

TEST(VELT_Regress, RefusesVectorsOfTheWrongLengthAndColumnsThatDoNotExist)
{
    VELT_Regress regression;
    EXPECT_THROW(regression.Create(0, 3), VeltError);
    regression.Create(1, 3);
    EXPECT_THROW(regression.AddColumn(Column{1, 2}), VeltError);
    EXPECT_THROW(regression.Response(Column{1, 2}), VeltError);
    EXPECT_THROW(regression.Weights(Column{1, 2}), VeltError);
    regression.AddColumn(Column{1, 2, 3});
    EXPECT_THROW(regression.AddColumn(Column{1, 2, 3}), VeltError);
    EXPECT_THROW(regression.Coefficient(0), VeltError);
    EXPECT_THROW(regression.Coefficient(2), VeltError);
    regression.Solve();
    EXPECT_FALSE(regression.Succeeded()) << "no response yet";
}

} // namespace
