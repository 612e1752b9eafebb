// SPDX-License-Identifier: GPL-3.0-or-later
// The regression and the searches of constant recruitment.
#include "core/ConstRecruitBench.h"
#include "core/LimitOfSearch.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

namespace
{
using namespace const_recruit;

void Chooses(Bench& bench, std::int32_t fitOp)
{
    bench.user.ChoosesFit(bench.run.globals.ModelTitles(models::kConstantRecruitment), fitOp);
}
} // namespace

// With an initial proportion of 1 the first regressor is E exp(M/2). With catches of the fleet that are E
// times something and a total catch of nothing at all it would be alone; here both are solved by hand.
TEST(clsConstRecruit, FromTheUnexploitedStockTheFirstRegressorIsEffortTimesExpHalfM)
{
    const std::vector<double> effort{2, 3, 4}, fleet{31, 40, 47}, total{10, 20, 30};
    ConstBench bench(TableBuilder().Effort(effort).CatchNums(fleet).TotalNums(total));

    const auto fit = bench.Fit(fit_op::kLeastSquares, kLn4);

    // s = 10, 22.5, 35.625; x1 = 2 E; x2 = E (s - T / 2) = 10, 37.5, 82.5.
    const std::array<double, 3> x1{4, 6, 8}, x2{10, 37.5, 82.5};
    double a = 0, b = 0, c = 0, d = 0, e = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        a += x1[i] * x1[i];
        b += x1[i] * x2[i];
        c += x2[i] * x2[i];
        d += x1[i] * fleet[i];
        e += x2[i] * fleet[i];
    }
    const double b1 = (d * c - e * b) / (a * c - b * b);
    const double b2 = (a * e - b * d) / (a * c - b * b);
    EXPECT_NEAR(fit.at(1), -b2, 1e-6); // M and s are floats
    EXPECT_NEAR(fit.at(0), b1 / -b2, 1e-3);
    EXPECT_NEAR(bench.model.m.FittedVec(2), b1 * 6 + b2 * 37.5, 1e-4);
}

TEST(clsConstRecruit, DataWithoutNoiseGiveBackTheTrueParameters)
{
    for (const double initDep : {1.0, 0.6}) {
        const SimulatedStock truth = Truth(initDep);
        for (const auto& [fitOp, tolerance] :
             {std::pair{fit_op::kLeastSquares, 1e-3}, std::pair{fit_op::kGamma, 1e-3},
              std::pair{fit_op::kLog, 1e-4}}) {
            ConstBench bench(Simulated(0.0, initDep));
            const auto fit = bench.Fit(fitOp, truth.mort, initDep);
            ASSERT_EQ(fit.size(), 4U) << fitOp;
            EXPECT_NEAR(fit[0] / 8000.0, 1.0, tolerance) << fitOp;
            EXPECT_NEAR(fit[1] / truth.q, 1.0, tolerance) << fitOp;
            EXPECT_GT(bench.model.RSqr(), 0.999F) << fitOp;
        }
    }
}

// Deliberate, the reverse of the other models: weights apply when the variance column is absent, and its
// cells then hold -1, with which no weighted regression has a solution. With the column the weights are 1.
TEST(clsConstRecruit, TheWeightTestIsReversed)
{
    ConstBench plain(Simulated(0.1));
    ConstBench present(Simulated(0.1).Variance({1, 9, 1, 9, 1, 9, 1, 9, 1, 9, 1, 9}));
    EXPECT_EQ(present.Fit(fit_op::kWeightedLeastSquares, 0.2), plain.Fit(fit_op::kLeastSquares, 0.2));

    ConstBench absent(Simulated(0.1));
    EXPECT_FALSE(absent.Start(fit_op::kWeightedLeastSquares, 0.2));
    EXPECT_EQ(absent.model.Excuse(), excuse::kNoStart);

    absent.data.VarAbundIndex(1, 0.0F);
    EXPECT_EQ(FailureOf([&] { absent.Start(fit_op::kWeightedLeastSquares, 0.2); }), errors::kDivisionByZero);
}

TEST(clsConstRecruit, TheCatchIsReloadedSoThatReplicatesOfAnEarlierRunCannotRemain)
{
    ConstBench bench(Simulated(0.1));
    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.2);
    bench.model.CatchVector(3, 1.0F);

    EXPECT_EQ(bench.Fit(fit_op::kLeastSquares, 0.2), fit);
    EXPECT_EQ(bench.model.CatchVector(3), bench.data.CatchNums(3));
}

// Deliberate: the call before the sign of K is looked at is made for nothing, its failure too.
TEST(clsConstRecruit, AZeroCatchDoesNotEndALeastSquaresFit)
{
    const SimulatedStock truth = Truth(1.0);
    std::vector<double> catches = truth.Catches(0.1);
    catches[5] = 0.0;
    ConstBench bench(Table(truth.effort, catches));

    EXPECT_EQ(bench.Fit(fit_op::kLeastSquares, 0.2).size(), 4U);
}

TEST(clsConstRecruit, ANegativeKEndsLeastSquaresButOnlyMovesTheStartOfTheOthers)
{
    const TableBuilder rising = Table({1, 1, 1, 1}, {10, 20, 30, 40});
    ConstBench leastSquares(rising);
    EXPECT_FALSE(leastSquares.Start(fit_op::kLeastSquares, 0.0));
    EXPECT_EQ(leastSquares.model.Excuse(), excuse::kPopulationUnderflow);

    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ConstBench other(rising);
        EXPECT_TRUE(other.Start(fitOp, 0.0));
        EXPECT_EQ(other.model.Details().initEsts.at(0).value,
                  200.0); // the total of 100 leaves nothing, doubled
        EXPECT_EQ(other.model.m.StartEstKind, 3);
    }
}

// A period out of the fit takes 1e35 fish, which no 99 doublings reach. The doublings used to stay in the
// start.
TEST(clsConstRecruit, DoublingsThatFailLeaveTheStartThatTheRegressionGave)
{
    const SimulatedStock truth = Truth(1.0);
    std::vector<double> effort = truth.effort;
    std::vector<double> fleet = truth.Catches(0.1);
    ConstBench without(Table(effort, fleet));
    ASSERT_TRUE(without.Start(fit_op::kLeastSquares, 0.2));
    const std::vector<NamedValue> expected = without.model.Details().initEsts;
    effort.push_back(1);
    fleet.push_back(1);
    std::vector<double> total = fleet;
    total.back() = 1e35;
    const TableBuilder table = TableBuilder().Effort(effort).CatchNums(fleet).TotalNums(total).ToggleOut(13);
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        ConstBench bench(table);
        EXPECT_FALSE(bench.Start(fitOp, 0.2));
        EXPECT_EQ(bench.model.Excuse(), excuse::kNoStart);
        EXPECT_EQ(bench.model.Details().initEsts.at(0).value, expected.at(0).value);
        EXPECT_EQ(bench.model.Details().initEsts.at(1).value, expected.at(1).value);
    }
}

TEST(clsConstRecruit, BeyondTheLimitTheObjectiveIsThePenaltyOfExactlyTheseBits)
{
    limit_of_search::ExpectThePenaltyBeyond<clsConstRecruit>(Simulated(0.1));
}

TEST(clsConstRecruit, TheLimitItselfIsInsideAndTheNextFloatIsNot)
{
    limit_of_search::ExpectTheLimitInside<clsConstRecruit>(Simulated(0.1));
}

TEST(clsConstRecruit, AnUnderflowIsAPenaltyUnderLogUnlikeInTheClosedCohort)
{
    ConstBench bench(Simulated(0.1));
    ASSERT_TRUE(bench.Start(fit_op::kLog, 0.2));

    const auto penalty = static_cast<float>(bench.model.Objective(std::array{0.9 * bench.model.MinPop()}));

    EXPECT_TRUE(bench.model.PopUnderflow());
    EXPECT_EQ(std::bit_cast<std::uint32_t>(penalty), 0x60AD78ECU);
}

TEST(clsConstRecruit, LogAndGammaFitsStandAtTheirOwnOptimum)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ConstBench bench(Simulated(0.1));
        const auto fit = bench.Fit(fitOp, 0.2);
        ASSERT_EQ(fit.size(), 4U);
        const ModelState& m = bench.model.m;
        EXPECT_EQ(bench.model.Q(), fit[1]);
        if (fitOp == fit_op::kLog) {
            double sum = 0.0;
            for (int i = 1; i <= 12; ++i)
                sum += m.ResidVec(i);
            EXPECT_NEAR(sum, 0.0, 1e-5); // 12 floats of 5e-7
        } else {
            EXPECT_EQ(fit[1], m.GammaNu / m.GammaBeta);
            EXPECT_EQ(bench.model.Details().var, 1.0 / m.GammaBeta);
        }
    }
}

namespace
{
/// Keeps where its objective was asked for.
struct Watched : clsConstRecruit {
    std::vector<double> seen;

protected:
    double Objective(std::span<const double> x) override
    {
        seen.push_back(x[0]);
        return clsConstRecruit::Objective(x);
    }
};
} // namespace

// A search in logarithms gives a point back within a few units of 64 bits, 1e-12; the 32-bit start lies
// further from the 64-bit one than that. The log search starts from the 64 bits.
TEST(clsConstRecruit, TheGammaSearchStartsFromTheStartRoundedToAFloat)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ModelBench<Watched> bench(Simulated(0.1));
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const double k = bench.model.Details().initEsts.at(0).value;
        const double rounded = static_cast<float>(k);
        ASSERT_GT(std::fabs(rounded / k - 1.0), 1e-9);
        bench.model.seen.clear();
        bench.Finish();
        EXPECT_NEAR(bench.model.seen.at(0) / (fitOp == fit_op::kGamma ? rounded : k), 1.0, 1e-12) << fitOp;
    }
}

TEST(clsConstRecruit, AZeroCatchFailsTheLogFitHonestlyAndAFurtherFitWorks)
{
    const SimulatedStock truth = Truth(1.0);
    std::vector<double> catches = truth.Catches(0.1);
    catches[5] = 0.0;
    Bench bench;
    clsVeltData data = Table(truth.effort, catches).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLog);

    manager.FitNewModel(false);
    EXPECT_EQ(manager.LastExcuse(), excuse::kNotConverged);
    EXPECT_TRUE(bench.user.Saw("clsConstRecruit_CalcLnFinalEstimates"));
    EXPECT_FALSE(manager.MethDefined());

    Chooses(bench, fit_op::kLeastSquares);
    manager.FitNewModel(false);
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_GT(manager.K(), 1000.0F);
}

// Three decades around the optimum. What arrives elsewhere must be a minimum of its own.
TEST(clsConstRecruit, TwentyStartsArriveAtTheOptimumAtAnotherMinimumOrFailHonestly)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ConstBench best(Simulated(0.1));
        const double optimum = best.Fit(fitOp, 0.2).at(0);
        const double value = *best.model.Details().objective;
        int same = 0;
        for (int k = 0; k < 20; ++k) {
            ConstBench bench(Simulated(0.1));
            bench.Start(fitOp, 0.2);
            bench.user.inputs = {std::to_string(optimum * std::pow(10.0, -1.5 + 3.0 * k / 19.0))};
            if (!bench.model.InputStartingEsts())
                continue; // underflows: the user is told, and cancels
            try {
                bench.Finish();
            } catch (const VeltError& error) {
                EXPECT_EQ(error.number, kProgramErrorBase + errors::kMinimisationFailed) << error.description;
                EXPECT_EQ(bench.model.Excuse(), excuse::kNotConverged);
                continue;
            }
            const double reached = *bench.model.Details().objective;
            if (std::fabs(reached - value) < 2e-5 * std::max(1.0, std::fabs(value))) {
                ++same;
                continue;
            }
            const double at = bench.model.FinalEsts().at(0);
            for (const double factor : {0.97, 1.03})
                EXPECT_GT(bench.model.INelMead_MinFunc(std::array{at * factor}), reached)
                    << fitOp << " " << k;
        }
        EXPECT_GE(same, 8) << fitOp; // of the ten starts above the optimum, which all survive
    }
}
