// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/GammaFit.h"

#include "models/modMaths.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
constexpr double kEuler = 0.5772156649; // ln(1) - digamma(1)

/// Four periods with a scatter that a gamma distribution of a few units of shape could give.
struct Scattered : StateBench {
    explicit Scattered(double nu) : StateBench({2.0, 3.0, 1.5, 2.5}, {14.0, 33.0, 21.0, 16.0})
    {
        m.FitOp = fit_op::kGamma;
        m.GammaNu = nu;
        CalcThetaVecOf(m);
    }

    /// The textbook density, with lgamma of the C++ library, for any shape and rate.
    double MinusLogLikelihood(double nu, double beta) const
    {
        double sum = 0.0;
        for (int i = 1; i <= 4; ++i) {
            const double a = nu * m.EffMidPop(i);
            const double c = static_cast<double>(m.CatchVector(i));
            sum -= a * std::log(beta) - std::lgamma(a) + (a - 1.0) * std::log(c) - beta * c;
        }
        return sum;
    }
    double MeanRatio() const { return m.EffMidPopSum / static_cast<double>(m.CatchSum); }
};

/// Shapes of 1: the distribution is exponential and its inverse is known.
struct Exponential : StateBench {
    Exponential() : StateBench({4.0, 4.0, 4.0}, {1.0, 2.0, 3.0})
    {
        m.FitOp = fit_op::kGamma;
        m.GammaNu = 0.25;
        m.GammaBeta = 0.5;
        m.ResidVec(1) = 0.25F;
        m.ResidVec(2) = 0.5F;
        m.ResidVec(3) = 0.9F;
    }
};
} // namespace

TEST(GammaFit, TheScoreIsZeroWhereThetaCancelsTheDigammaTerm)
{
    StateBench bench({0.5}, {1.0});
    bench.m.ThetaVec(1) = static_cast<float>(-kEuler);

    EXPECT_NEAR(ThetaFunc(bench.m, 2.0F), 0.0, 1e-7); // shape 2 * 0.5 = 1; a float of theta
    EXPECT_GT(ThetaFunc(bench.m, 1.0F), 0.0F);
    EXPECT_LT(ThetaFunc(bench.m, 3.0F), 0.0F);
}

TEST(GammaFit, PeriodsToggledOutDoNotScore)
{
    StateBench bench({0.5, 0.5}, {1.0, 1.0});
    bench.m.ThetaVec(1) = static_cast<float>(-kEuler);
    bench.data.ToggledIn(2, false);

    EXPECT_NEAR(ThetaFunc(bench.m, 2.0F), 0.0, 1e-7);
}

TEST(GammaFit, TheProfileIsTheLikelihoodAtItsMaximumOverNu)
{
    Scattered bench(1.0);

    const GammaProfile profile = GammaMinimisation(bench.m);

    ASSERT_FALSE(profile.failed);
    const double nu = bench.m.GammaNu;
    EXPECT_NEAR(bench.m.GammaBeta, nu * bench.MeanRatio(), 1e-9 * bench.m.GammaBeta);
    // A float near 12 has half a unit of 5e-7; the library's lgamma agrees with ours to 1e-10.
    EXPECT_NEAR(profile.value, bench.MinusLogLikelihood(nu, bench.m.GammaBeta), 1e-6);
    for (const double factor : {0.97, 1.03})
        EXPECT_GT(bench.MinusLogLikelihood(nu * factor, nu * factor * bench.MeanRatio()),
                  bench.MinusLogLikelihood(nu, bench.m.GammaBeta));
}

TEST(GammaFit, StartsFarBelowAndAboveFindTheSameShape)
{
    Scattered near(1.0);
    GammaMinimisation(near.m);
    for (const double start : {1e-8, 1e-3, 1e3, 1e8}) {
        Scattered bench(start);
        ASSERT_FALSE(GammaMinimisation(bench.m).failed) << start;
        EXPECT_NEAR(bench.m.GammaNu / near.m.GammaNu, 1.0, 2e-5)
            << start; // tolerance 1e-5 of the bracket's end
    }
}

// 20 steps by 3 are 3.5e9.
TEST(GammaFit, AShapeOutOfReachOfTwentyStepsGivesTenToTheTenAndSaysSo)
{
    for (const double start : {1e-12, 1e14}) {
        Scattered bench(start);
        const GammaProfile profile = GammaMinimisation(bench.m);
        EXPECT_TRUE(profile.failed) << start;
        EXPECT_EQ(profile.value, 1e10F) << start;
        EXPECT_EQ(bench.m.GammaNu, start);
    }
}

TEST(GammaFit, AZeroCatchHasAThetaOfZeroAndNoLogarithm)
{
    StateBench bench({2.0, 3.0, 0.1}, {2.0, 30.0, 0.0});
    bench.m.FitOp = fit_op::kGamma;
    bench.m.GammaNu = 1.0;
    bench.m.ThetaVec(3) = 7.0F;
    CalcThetaVecOf(bench.m);
    EXPECT_EQ(bench.m.ThetaVec(3), 0.0F);

    const GammaProfile profile = GammaMinimisation(bench.m);

    ASSERT_FALSE(profile.failed);
    const double nu = bench.m.GammaNu;
    const double beta = bench.m.GammaBeta;
    double expected = 32.0 * beta;
    for (const auto& [x, c] : {std::pair{2.0, 2.0}, std::pair{3.0, 30.0}})
        expected -= nu * x * std::log(beta) - std::lgamma(nu * x) + (nu * x - 1.0) * std::log(c);
    expected -= nu * 0.1 * std::log(beta) - std::lgamma(nu * 0.1);
    EXPECT_NEAR(profile.value, expected, 2e-6);
}

// C / (qbar X) with qbar = 84 / 9: ln(14 * 9 / (84 * 2)) = ln 0.75.
TEST(GammaFit, ThetaIsTheLogOfObservedOverExpectedCatch)
{
    const Scattered bench(1.0);

    EXPECT_NEAR(bench.m.ThetaVec(1), std::log(0.75), 3e-8); // half a unit of a float near 0.3
}

TEST(GammaFit, ThetaIsKeptOnlyUnderTheGammaModelAndWithoutUnderflow)
{
    for (const bool gamma : {false, true}) {
        StateBench bench({2.0}, {14.0});
        bench.m.FitOp = gamma ? fit_op::kGamma : fit_op::kLog;
        bench.m.PopUnderflow = gamma;
        bench.m.ThetaVec(1) = 7.0F;
        CalcThetaVecOf(bench.m);
        EXPECT_EQ(bench.m.ThetaVec(1), 7.0F);
    }
}

TEST(GammaFit, TheMomentStartComesFromTheResidualSumOfSquares)
{
    StateBench bench({2.0, 3.0}, {6.0, 9.0});

    GammaMomentStart(bench.m, 3.0, 5.0);

    EXPECT_DOUBLE_EQ(bench.m.GammaBeta, 3.0); // 3 * 5 / 5
    EXPECT_DOUBLE_EQ(bench.m.GammaNu, 9.0);   // 15 * 3 / 5
}

TEST(GammaFit, APerfectRegressionMakesTheMomentStartDivideByZero)
{
    StateBench bench({2.0}, {6.0});

    EXPECT_EQ(FailureOf([&] { GammaMomentStart(bench.m, 3.0, 0.0); }), errors::kDivisionByZero);
}

// P(1, x) = 1 - exp(-x): a catch of 2 at rate ln(2) / 2 stands in the middle.
TEST(GammaFit, PositionsAreProbabilitiesInTheFitAndOneOrZeroOutsideIt)
{
    StateBench bench({1.0, 1.0, 1.0}, {2.0, 2.0, 2.0});
    bench.m.GammaBeta = std::log(2.0) / 2.0;
    bench.data.ToggledIn(2, false);
    bench.data.Included(3, false);
    bench.m.ResidVec(3) = 7.0F;

    FillGammaPositions(
        bench.m, [](int) { return 1.0; }, [](int i) { return i == 2 ? 1.0F : 0.0F; });

    EXPECT_NEAR(bench.m.ResidVec(1), 0.5, 1e-7);
    EXPECT_EQ(bench.m.ResidVec(2), 1.0F);
    EXPECT_EQ(bench.m.ResidVec(3), 7.0F);
}

// Wilson and Hilferty: z = ((x/a)^(1/3) - 1 + 1/(9a)) 3 sqrt(a). At x = a = 200 that is sqrt(1/1800).
TEST(GammaFit, AboveAShapeOfTwoHundredThePositionComesFromTheNormalApproximation)
{
    StateBench bench({1.0, 1.0}, {200.0, 200.0});
    bench.m.GammaBeta = 1.0;

    FillGammaPositions(
        bench.m, [](int i) { return i == 1 ? 200.0 : std::nextafter(200.0, 201.0); },
        [](int) { return 0.0F; });

    const double z = std::sqrt(1.0 / 1800.0);
    EXPECT_NEAR(bench.m.ResidVec(2), 1.0 - 0.5 * std::erfc(0.7071 * z), 3e-7); // erfc is good to 1.2e-7
    EXPECT_NE(bench.m.ResidVec(1), bench.m.ResidVec(2));
    EXPECT_NEAR(bench.m.ResidVec(1), bench.m.ResidVec(2), 1e-4);
}

// Exponential: the catch at position p is -ln(1 - p) / rate. The solver's own width is 1e-6 of the root, the
// function a float near 0.5.
TEST(GammaFit, TheMatrixHoldsTheCatchOfAPeriodAtThePositionOfAnother)
{
    Exponential bench;
    GammaCatchMatrix matrix;

    matrix.Compute(bench.m, "source");

    const double positions[] = {0.25, 0.5, 0.9};
    for (int j = 1; j <= 3; ++j) {
        for (int i = 1; i <= 3; ++i)
            EXPECT_NEAR(matrix.At(j, i) / (-std::log(1.0 - positions[j - 1]) / 0.5), 1.0, 3e-6) << j << i;
    }
    EXPECT_EQ(bench.meter.titles.at(0), "Computing Gamma Catch Matrix...");
    EXPECT_EQ(bench.meter.maximum, 3);
    EXPECT_EQ(bench.meter.value, 3);
}

TEST(GammaFit, TheMatrixIsZeroForPeriodsOutOfTheFitAndKnowsItsSize)
{
    Exponential bench;
    bench.data.ToggledIn(2, false);
    GammaCatchMatrix matrix;

    matrix.Compute(bench.m, "source");

    EXPECT_EQ(matrix.At(2, 1), 0.0F);
    EXPECT_EQ(matrix.At(1, 2), 0.0F);
    EXPECT_GT(matrix.At(1, 3), 0.0F);
    for (const auto& [j, i] : {std::pair{0, 1}, std::pair{1, 0}, std::pair{4, 1}, std::pair{1, 4}})
        EXPECT_EQ(FailureOf([&] { matrix.At(j, i); }), errors::kSubscript);
}

TEST(GammaFit, CancelStopsTheMatrixWithTheSourceOfTheOperation)
{
    Exponential bench;
    bench.meter.cancelAfter = 1;
    GammaCatchMatrix matrix;

    try {
        matrix.Compute(bench.m, "where");
        FAIL() << "not cancelled";
    } catch (const VeltError& error) {
        EXPECT_TRUE(error.IsUserCancel());
        EXPECT_EQ(error.description, "User Cancelled.");
        EXPECT_EQ(error.source, "where");
    }
    EXPECT_EQ(bench.meter.value, 1);
}
