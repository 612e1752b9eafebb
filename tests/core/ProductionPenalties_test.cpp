// SPDX-License-Identifier: GPL-3.0-or-later
// What the searches of the production models turn away.
#include "core/ProductionFits.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using production_fits::kStocks;
using ProductionFit = production_fits::KnownStocks;

TEST_F(ProductionFit, AGrowthRateOfExactly0IsAPenalty)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    // So large a stock survives without growing, so it is the rate alone that is turned away.
    EXPECT_EQ(model.MinLSQFunction(60000.0, 0.0), static_cast<double>(1e20F));
    EXPECT_EQ(model.MinLogFunction(60000.0F, 0.0F), 3.4E+38F);
    EXPECT_EQ(model.MinGammaFunction(60000.0F, 0.0F), 1e20F);
    EXPECT_FALSE(model.PopUnderflow());
}

TEST_F(ProductionFit, AnUnderflowIsAPenalty)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    EXPECT_EQ(model.MinLSQFunction(10.0, 0.4), static_cast<double>(1e20F));
    EXPECT_EQ(model.MinLogFunction(10.0F, 0.4F), 3.4E+38F);
    EXPECT_EQ(model.MinGammaFunction(10.0F, 0.4F), 1e20F);
}

TEST_F(ProductionFit, ACapacityBeyond1e20IsFarOutAndComputesNoTrajectory)
{
    TakeFrom(kStocks[1], 0.02);
    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    const float before = model.Nt(10);
    EXPECT_EQ(model.MinLSQFunction(1.1e20, 0.4), static_cast<double>(3.4E+38F));
    EXPECT_EQ(model.MinLogFunction(1.1e20F, 0.4F), 3.4E+38F);
    EXPECT_EQ(model.MinGammaFunction(1.1e20F, 0.4F), 3.4E+38F);
    EXPECT_EQ(model.Nt(10), before);
}

// The two objectives in 32 bits compare with the limit as a float, which is a little more than 1e20; the one
// in 64 bits with 1e20 itself. The limit is inside: its trajectory runs. The 32-bit limit used to be outside.
TEST_F(ProductionFit, TheLimitItselfIsInsideAndTheNextValueIsNot)
{
    TakeFrom(kStocks[1], 0.02);
    const double far = static_cast<double>(3.4E+38F);
    const float next = std::nextafter(1e20F, 1e30F);
    Prepared(kStocks[1], fit_op::kLog);
    ASSERT_TRUE(model.CalcInitEstimates());
    const float before = model.Nt(1);
    EXPECT_EQ(model.MinLogFunction(next, 0.4F), 3.4E+38F);
    EXPECT_EQ(model.Nt(1), before); // no trajectory was run
    EXPECT_LT(model.MinLogFunction(1e20F, 0.4F), 1e10F);
    EXPECT_EQ(model.Nt(1), 1e20F);

    Prepared(kStocks[1], fit_op::kGamma);
    ASSERT_TRUE(model.CalcInitEstimates());
    EXPECT_EQ(model.MinGammaFunction(next, 0.4F), 3.4E+38F);
    EXPECT_EQ(model.Nt(1), before);
    EXPECT_LE(model.INelMead_MinFunc(std::array{static_cast<double>(1e20F), 0.4}), 1e20F);
    EXPECT_EQ(model.Nt(1), 1e20F);

    Prepared(kStocks[1], fit_op::kLeastSquares);
    ASSERT_TRUE(model.CalcInitEstimates());
    ASSERT_FALSE(FailureOfFit()); // fills the weights
    const float fitted = model.Nt(1);
    EXPECT_EQ(model.MinLSQFunction(std::nextafter(1e20, 1e30), 0.4), far);
    EXPECT_EQ(model.MinLSQFunction(static_cast<double>(1e20F), 0.4), far);
    EXPECT_EQ(model.Nt(1), fitted);
    EXPECT_LT(model.MinLSQFunction(1e20, 0.4), 1e20);
    EXPECT_EQ(model.Nt(1), 1e20F);
}

TEST_F(ProductionFit, AFailedEvaluationCountsAsThePenaltyOfItsScheme)
{
    TakeFrom(kStocks[0], 0.02);
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Prepared(kStocks[0], fitOp);
        const double expected = static_cast<double>(fitOp == fit_op::kLog ? 3.4E+38F : 1e20F);
        EXPECT_EQ(model.INelMead_MinFunc(std::array{0.0, 0.4}), expected); // Fox: ln 0
    }
}
