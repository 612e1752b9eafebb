// SPDX-License-Identifier: GPL-3.0-or-later
// The log and gamma fits of the recruitment-index model.
#include "core/RecruitIndexBench.h"
#include "fit/clsMethManager.h"
#include "models/clsSingleCohort.h"
#include "models/modMaths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>
#include <vector>

using namespace recruit_index;

// Under gamma the catches get 1e-4 of noise, which moves the parameters by less: see the next test.
TEST(clsRecruitINdex, DataWithoutNoiseGiveBackTheTrueParameters)
{
    const SimulatedStock truth = Truth();
    for (const auto& [fitOp, tolerance] : {std::pair{fit_op::kLeastSquares, 1e-3},
                                           std::pair{fit_op::kGamma, 1e-3}, std::pair{fit_op::kLog, 1e-4}}) {
        IndexBench bench(Simulated(fitOp == fit_op::kGamma ? 1e-4 : 0.0));
        const auto fit = bench.Fit(fitOp, truth.mort);
        ASSERT_EQ(fit.size(), 4U) << fitOp;
        EXPECT_NEAR(fit[0] / truth.n1, 1.0, tolerance) << fitOp;
        EXPECT_NEAR(fit[1] / truth.q, 1.0, tolerance) << fitOp;
        EXPECT_NEAR(fit[2] / truth.lambda, 1.0, tolerance) << fitOp;
        EXPECT_GT(bench.model.RSqr(), 0.999F) << fitOp;
    }
}

// A perfect regression makes the start of the shape 1e9 and more, but the search starts from another Lambda,
// where the shape is small and out of reach of the profile: every value around is the profile's 1e10.
TEST(clsRecruitINdex, AGammaFitOfPerfectDataFailsHonestlyFromItsOwnStart)
{
    IndexBench bench(Simulated());
    ASSERT_TRUE(bench.Start(fit_op::kGamma, 0.2));

    try {
        bench.Finish();
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, kProgramErrorBase + errors::kMinimisationFailed);
        EXPECT_EQ(error.description,
                  "Minimisation failed on function.\nMinimisation succeeded on parameter.");
    }
    EXPECT_EQ(bench.model.Excuse(), excuse::kNotConverged);
}

TEST(clsRecruitINdex, AFixedParameterStaysAtItsStartingValue)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        IndexBench bench(Simulated(0.1));
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        bench.user.onStartVals = [](StartVals& starts) {
            starts.param1 = 7000.0;
            starts.Fixed1 = true;
            return true;
        };
        ASSERT_TRUE(bench.model.InputStartingEsts());
        const auto fit = bench.Finish();
        EXPECT_EQ(fit.at(0), 7000.0);
        EXPECT_NE(fit.at(2), bench.model.Details().initEsts.at(2).value);
    }
}

TEST(clsRecruitINdex, OutsideTheDomainTheLogObjectiveIsOnePenalty)
{
    IndexBench bench(Simulated(0.1));
    ASSERT_TRUE(bench.Start(fit_op::kLog, 0.2));
    for (const auto& [n1, lambda] : {std::pair{1.1e20, 1.0}, std::pair{0.0, 1500.0}, std::pair{-1.0, 1500.0},
                                     std::pair{6000.0, 0.0}, std::pair{6000.0, -1.0}, std::pair{1.0, 1.0}}) {
        const auto penalty = static_cast<float>(bench.model.Objective(std::array{n1, lambda}));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(penalty), 0x60AD78ECU) << n1 << " " << lambda;
    }
    EXPECT_LT(bench.model.Objective(std::array{6000.0, 1500.0}), 1.0);
}

TEST(clsRecruitINdex, TheGammaObjectiveHasTheFarPenaltyAndThatOfAnUnderflow)
{
    IndexBench bench(Simulated(0.1));
    ASSERT_TRUE(bench.Start(fit_op::kGamma, 0.2));
    const auto far = static_cast<float>(bench.model.Objective(std::array{1.1e20, 1.0}));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(far), 0x7F7FC99EU);
    EXPECT_EQ(bench.model.Objective(std::array{1.0, 1.0}), static_cast<double>(1e20F));
}

// The limit as a float is a little more than 1e20, and is inside itself: its trajectory runs.
TEST(clsRecruitINdex, TheLimitItselfIsInsideAndTheNextFloatIsNot)
{
    const double limit = static_cast<double>(1e20F);
    const double next = static_cast<double>(std::nextafter(1e20F, 1e30F));
    for (const auto& [fitOp, outside] :
         {std::pair{fit_op::kLog, 1e20F}, std::pair{fit_op::kGamma, 3.4E+38F}}) {
        IndexBench bench(Simulated(0.1));
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const float before = bench.model.Nt(1);
        EXPECT_EQ(bench.model.Objective(std::array{next, 1500.0}), static_cast<double>(outside));
        EXPECT_EQ(bench.model.Nt(1), before);                                      // no trajectory was run
        EXPECT_LE(bench.model.INelMead_MinFunc(std::array{limit, 1500.0}), limit); // the penalty is the limit
        EXPECT_EQ(bench.model.Nt(1), 1e20F);
    }
}

// Deliberate: the profile's own 1e10 comes through here; the closed cohort turns it into the penalty.
TEST(clsRecruitINdex, AFailedGammaProfileComesAsItIs)
{
    IndexBench bench(Simulated(0.1));
    ASSERT_TRUE(bench.Start(fit_op::kGamma, 0.2));
    bench.model.m.GammaNu = 1e-30;
    EXPECT_EQ(bench.model.Objective(std::array{6000.0, 1500.0}), static_cast<double>(1e10F));
    EXPECT_FALSE(bench.model.m.MinOK);

    ModelBench<clsSingleCohort> closed(Simulated(0.1));
    ASSERT_TRUE(closed.Start(fit_op::kGamma, 0.0));
    closed.model.m.GammaNu = 1e-30;
    EXPECT_EQ(closed.model.Objective(std::array{50000.0}), static_cast<double>(1e20F));
}

// Catches of zero count as expected in the score, and what is left of it has no root: every profile fails and
// the shape stays at its start. Deliberate: q beta here, and the catch over the sum of X times beta
// elsewhere.
TEST(clsRecruitINdex, TheMomentStartOfTheShapeDiffersFromTheOtherModels)
{
    const SimulatedStock truth = Truth();
    std::vector<double> fleet = truth.Catches();
    fleet[2] = fleet[6] = fleet[9] = 0.0;
    const TableBuilder table =
        TableBuilder().Effort(truth.effort).CatchNums(fleet).TotalNums(truth.Catches()).Recruits(truth.index);

    IndexBench bench(table);
    bench.Start(fit_op::kGamma, 0.2);
    bench.user.onStartVals = [](StartVals& starts) {
        starts.param1 = 6000.0;
        starts.param2 = 1500.0;
        return true;
    };
    ASSERT_TRUE(bench.model.InputStartingEsts());
    EXPECT_NE(FailureOf([&] { bench.Finish(); }), 0U);
    const double q = bench.model.Details().initEsts.at(1).value;
    bench.model.Work({.N1 = 6000.0, .Q = q, .Lambda = 1500.0});
    bench.model.CalcPopTraj();
    EXPECT_DOUBLE_EQ(bench.model.m.GammaNu, q * (bench.model.EffMidPopSum() * q / bench.model.m.LsqSumSq));

    ModelBench<clsSingleCohort> closed(table);
    closed.Start(fit_op::kGamma, 0.0);
    closed.user.inputs = {"30000"};
    ASSERT_TRUE(closed.model.InputStartingEsts());
    const double sum = closed.model.m.EffMidPopSum;
    EXPECT_NE(FailureOf([&] { closed.Finish(); }), 0U);
    const double closedQ = closed.model.Details().initEsts.at(1).value;
    EXPECT_DOUBLE_EQ(closed.model.m.GammaNu,
                     closed.model.m.CatchSum * (closedQ * sum / closed.model.m.LsqSumSq) / sum);
}

// P(E nu B, C beta): the mean of the period here, its start in the other two models. Deliberate.
TEST(clsRecruitINdex, GammaPositionsUseTheMeanStockOfThePeriod)
{
    const SimulatedStock truth = Truth();
    std::vector<double> fleet = truth.Catches(0.1);
    fleet[2] *= 3.0;
    fleet[6] *= 0.3;
    IndexBench bench(TableBuilder()
                         .Effort(truth.effort)
                         .CatchNums(fleet)
                         .TotalNums(truth.Catches())
                         .Recruits(truth.index)
                         .ToggleOut(3)
                         .ToggleOut(7));

    ASSERT_FALSE(bench.Fit(fit_op::kGamma, 0.2).empty());

    const ModelState& m = bench.model.m;
    EXPECT_EQ(m.ResidVec(3), 1.0F);
    EXPECT_EQ(m.ResidVec(7), 0.0F);
    for (const int i : {1, 2, 5, 12}) {
        const double shape = m.Effort(i) * m.GammaNu * m.MidPop(i);
        EXPECT_EQ(m.ResidVec(i), static_cast<float>(modMaths::GammaP(shape, m.CatchVector(i) * m.GammaBeta)))
            << i;
    }
}

TEST(clsRecruitINdex, AZeroCatchFailsTheLogFitHonestlyAndAFurtherFitWorks)
{
    const SimulatedStock truth = Truth();
    std::vector<double> catches = truth.Catches(0.05);
    catches[5] = 0.0;
    Bench bench;
    clsVeltData data =
        TableBuilder().Effort(truth.effort).Catch(catches).Recruits(truth.index).Build(bench.run);
    clsMethManager manager(bench.run);
    manager.Create(data);
    Chooses(bench, fit_op::kLog);

    manager.FitNewModel(false);
    EXPECT_EQ(manager.LastExcuse(), excuse::kNotConverged);
    EXPECT_TRUE(bench.user.Saw("RIM - CalcLnFinalEstimates"));
    EXPECT_FALSE(manager.MethDefined());

    data.ToggledIn(6, false);
    Chooses(bench, fit_op::kLeastSquares);
    manager.FitNewModel(false);
    EXPECT_TRUE(manager.MethDefined());
    EXPECT_GT(manager.Lambda(), 500.0F);
}

// Three decades around the optimum in both parameters. What arrives elsewhere must be a minimum of its own:
// nothing around it is lower by more than the roughness. The endless stock that no fishery depletes is one.
TEST(clsRecruitINdex, TwentyStartsArriveAtTheOptimumAtAnotherMinimumOrFailHonestly)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        IndexBench best(Simulated(0.1));
        const auto optimum = best.Fit(fitOp, 0.2);
        const double value = *best.model.Details().objective;
        int same = 0;
        for (int k = 0; k < 20; ++k) {
            IndexBench bench(Simulated(0.1));
            bench.Start(fitOp, 0.2);
            bench.user.onStartVals = [&](StartVals& starts) {
                starts.param1 = optimum.at(0) * std::pow(10.0, -1.5 + 3.0 * k / 19.0);
                starts.param2 = optimum.at(2) * std::pow(10.0, -1.5 + 3.0 * (7 * k % 20) / 19.0);
                return true;
            };
            ASSERT_TRUE(bench.model.InputStartingEsts());
            std::vector<double> fit;
            try {
                fit = bench.Finish();
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
            for (const double factor : {0.5, 0.95, 1.05, 2.0}) {
                const double lowest = reached - 2e-5 * std::max(1.0, std::fabs(reached));
                EXPECT_GT(bench.model.INelMead_MinFunc(std::array{fit[0] * factor, fit[2]}), lowest)
                    << fitOp << k;
                EXPECT_GT(bench.model.INelMead_MinFunc(std::array{fit[0], fit[2] * factor}), lowest)
                    << fitOp << k;
            }
        }
        EXPECT_GE(same, 10) << fitOp;
    }
}
