// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsConstRecruit.h"

#include "fit/clsMethManager.h"
#include "models/clsSingleCohort.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace
{
using ConstBench = ModelBench<clsConstRecruit>;

const double kLn4 = std::log(4.0); // exp(M) = 4, exp(-M) = 1/4, exp(-M/2) = 1/2, recruits 3 K

TableBuilder Table(const std::vector<double>& effort, const std::vector<double>& catches)
{
    return TableBuilder().Effort(effort).Catch(catches);
}

TableBuilder ThreePeriods()
{
    return Table({2, 3, 4}, {10, 20, 30});
}

/// A stock of K = 8000 with M = 0.2, at `initDep` K at the start.
SimulatedStock Truth(double initDep)
{
    SimulatedStock stock;
    stock.n1 = initDep * 8000.0;
    stock.recruits = 8000.0 * (std::exp(stock.mort) - 1.0);
    return stock;
}

TableBuilder Simulated(double scatter = 0.0, double initDep = 1.0)
{
    const SimulatedStock stock = Truth(initDep);
    return Table(stock.effort, stock.Catches(scatter));
}

void Walk(ConstBench& bench, double k, double mort, double initDep = 1.0, double q = 0.1)
{
    bench.model.Mort(static_cast<float>(mort));
    bench.model.InitDep(static_cast<float>(initDep));
    bench.model.Work({.K = k, .Q = q});
    bench.model.CalcPopTraj();
}

void Chooses(Bench& bench, std::int32_t fitOp)
{
    bench.user.ChoosesFit(bench.run.globals.ModelTitles(models::kConstantRecruitment), fitOp);
}
} // namespace

TEST(clsConstRecruit, ANewModelHasItsOwnDefaults)
{
    ConstBench bench(ThreePeriods());
    bench.model.LAG(3);
    bench.model.Z(2.0F);
    bench.model.WhichMeth(4);

    EXPECT_EQ(bench.model.WhichMeth(), 3);
    EXPECT_EQ(bench.model.InitDep(), 1.0F);
    EXPECT_EQ(bench.model.Mort(), 0.2F);
    EXPECT_EQ(bench.model.LAG(), 0); // kept nowhere
    EXPECT_EQ(bench.model.Z(), 0.0F);
    EXPECT_EQ(bench.model.m.StartEstKind, 2);
    EXPECT_EQ(bench.model.m.StartEstKind2, 3);
    EXPECT_EQ(bench.model.Excuse(), 0);
    EXPECT_EQ(bench.model.MethTitle(), "Constant Recruitment");
    for (int parameter = 1; parameter <= 8; ++parameter)
        EXPECT_EQ(bench.model.BSFilled(parameter), parameter == 1 || parameter == 2 || parameter == 8)
            << parameter;
}

TEST(clsConstRecruit, ItHasNoContoursToShow)
{
    ConstBench bench(ThreePeriods());
    EXPECT_FALSE(bench.model.SetContourRanges());
    EXPECT_FALSE(bench.model.PlotInitContours());
    EXPECT_TRUE(bench.user.asked.empty());
}

TEST(clsConstRecruit, FromTheUnexploitedStockWithoutCatchesTheStockStaysAtK)
{
    ConstBench bench(Table(std::vector<double>(199, 1.0), std::vector<double>(199, 0.0)));
    Walk(bench, 1000.0, 0.2);

    for (std::int16_t i = 1; i <= 200; ++i)
        EXPECT_NEAR(bench.model.Nt(i), 1000.0, 1e-3) << i; // floats near 1000, M and its exponential rounded
    EXPECT_FALSE(bench.model.PopUnderflow());
}

// K = 1000, M = ln 4, half of it at the start: r = 3000. N: 500, (3500)/4 - 5 = 870, 3870/4 - 10 = 957.5,
// 3957.5/4 - 15 = 974.375. B: 1750 - 5, 1935 - 10, 1978.75 - 15.
TEST(clsConstRecruit, RecruitsJoinBeforeTheMortalityOfThePeriod)
{
    ConstBench bench(ThreePeriods());
    Walk(bench, 1000.0, kLn4, 0.5);

    EXPECT_EQ(bench.model.Nt(1), 500.0F);
    EXPECT_NEAR(bench.model.Nt(2), 870.0, 5e-4);
    EXPECT_NEAR(bench.model.Nt(3), 957.5, 5e-4);
    EXPECT_NEAR(bench.model.Nt(4), 974.375, 5e-4);
    EXPECT_NEAR(bench.model.m.MidPop(1), 1745.0, 1e-3);
    EXPECT_NEAR(bench.model.m.MidPop(3), 1963.75, 1e-3);
    EXPECT_NEAR(bench.model.m.EffMidPopSum, 2 * 1745.0 + 3 * 1925.0 + 4 * 1963.75, 1e-2);
}

// K = 4: r = 12. N: 4, 16/4 - 5 < 0 is 0, 12/4 - 5 < 0 with T = 10 twice, then T = 0: 12/4 = 3 again.
TEST(clsConstRecruit, AfterAnUnderflowTheStockGrowsAgainButTheUnderflowStays)
{
    ConstBench bench(Table({1, 1, 1}, {10, 10, 0}));
    Walk(bench, 4.0, kLn4);

    EXPECT_EQ(bench.model.Nt(2), 0.0F);
    EXPECT_EQ(bench.model.Nt(3), 0.0F);
    EXPECT_NEAR(bench.model.Nt(4), 3.0, 1e-5);
    EXPECT_TRUE(bench.model.PopUnderflow());
}

// r = 300, N: 0, 300/4 - 0.5 = 74.5.
TEST(clsConstRecruit, AnInitialProportionOfZeroStartsEmptyWithoutUnderflow)
{
    ConstBench bench(Table({1, 1}, {1, 1}));
    Walk(bench, 100.0, kLn4, 0.0);

    EXPECT_EQ(bench.model.Nt(1), 0.0F);
    EXPECT_NEAR(bench.model.Nt(2), 74.5, 1e-4);
    EXPECT_FALSE(bench.model.PopUnderflow());
    Walk(bench, 0.1, kLn4, 0.0); // 0.3/4 - 0.5 < 0
    EXPECT_TRUE(bench.model.PopUnderflow());
}

TEST(clsConstRecruit, ANegativeStockIsAnUnderflowFromTheFirstPeriod)
{
    ConstBench bench(Table({1}, {0}));
    Walk(bench, -10.0, 0.0);

    EXPECT_EQ(bench.model.Nt(1), 0.0F);
    EXPECT_TRUE(bench.model.PopUnderflow());
}

TEST(clsConstRecruit, WithoutMortalityItIsTheClosedModelOfTheStartingProportion)
{
    const SimulatedStock stock;
    const TableBuilder table = Table(stock.effort, stock.Catches(0.1));
    ConstBench recruited(table);
    ModelBench<clsSingleCohort> closed(table);

    Walk(recruited, 40000.0, 0.0, 0.5);
    closed.model.Work({.N1 = 20000.0, .Q = 0.1});
    closed.model.CalcPopTraj();
    for (std::int16_t i = 1; i <= 13; ++i)
        EXPECT_EQ(recruited.model.Nt(i), closed.model.Nt(i)) << i;

    const auto k = recruited.Fit(fit_op::kLeastSquares, 0.0, 0.5);
    const auto n1 = closed.Fit(fit_op::kLeastSquares, 0.0);
    EXPECT_NEAR(0.5 * k.at(0) / n1.at(0), 1.0, 1e-12);
    EXPECT_NEAR(k.at(1) / n1.at(1), 1.0, 1e-12);
    EXPECT_EQ(k.at(2), 0.0); // no mortality, nothing to replace
}

// Deliberate, unlike the closed cohort: the catch is made from the stock of the same period and lands there.
// q E / (1 + q E / 2) = 1 / 1.5, M = 0: N(3) = 70, T(3) = 70 / 1.5, N(4) = 70 - T(3).
TEST(clsConstRecruit, AProjectedCatchUsesTheStockOfItsOwnPeriod)
{
    ConstBench bench(Table({10, 10, 10}, {10, 20, 30}));
    bench.data.OrigNAPoints(2);
    bench.model.DIYTCatch(true);
    Walk(bench, 100.0, 0.0);

    EXPECT_NEAR(bench.model.ObsTCatchRef(3), 46.66667, 1e-5);
    EXPECT_NEAR(bench.model.Nt(4), 23.33333, 1e-5);
}

// exp(M/2) (1 - exp(-M)) (K - N) = 2 * 3/4 * (1000 - N(4)).
TEST(clsConstRecruit, TheReplacementYieldKeepsTheStockWhereItEnds)
{
    ConstBench bench(Simulated(0.05));
    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.2);

    ASSERT_EQ(fit.size(), 4U);
    const double yield = std::exp(0.1) * (1.0 - std::exp(-0.2)) * (fit[0] - fit[3]);
    EXPECT_NEAR(fit[2], yield, 1e-4); // a float near 500, and M as a float
    // Taken every period it leaves the stock as it is: (r + N) exp(-M) - exp(-M/2) Y = N.
    const double next = (fit[0] * (std::exp(0.2) - 1.0) + fit[3]) * std::exp(-0.2) - std::exp(-0.1) * fit[2];
    EXPECT_NEAR(next, fit[3], 1e-3);
}

TEST(clsConstRecruit, TwoHundredFilledPeriodsEndWithTheArrayBoundError)
{
    ConstBench bench(Table(std::vector<double>(200, 1.0), std::vector<double>(200, 1.0)));

    EXPECT_EQ(FailureOf([&] { bench.model.CalcPopTraj(); }), errors::kSubscript);
}

TEST(clsConstRecruit, MinPopHasNoLimitOfRounds)
{
    ConstBench bench(Table({2, 3, 4}, {0, 0, 0}));
    bench.user.inputs = {"1024"};
    bench.model.Mort(0.0F);
    ASSERT_TRUE(bench.model.InputStartingEsts());
    EXPECT_EQ(bench.user.asked.at(0), "input box: Carrying Capacity (K) ");

    bench.model.CalcMinPop(); // everything survives down to the smallest float

    EXPECT_LT(bench.model.MinPop(), 1e-40F);
}

// Half of the smallest number is 0, a hundredth too: without a limit of rounds this used to go on for ever.
TEST(clsConstRecruit, TheBisectionWithoutALimitOfRoundsEndsAtTheSmallestNumber)
{
    const double smallest = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(SmallestSurvivingStart(smallest, 0, [](double k) { return k > 0.0; }), smallest);

    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(SmallestSurvivingStart(largest, 0, [](double k) { return k > 0.0; }), smallest);
    EXPECT_EQ(SmallestSurvivingStart(largest, 0, [](double) { return true; }), 0.0);
}

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
    ConstBench bench(Simulated(0.1));
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const auto far = static_cast<float>(bench.model.Objective(std::array{1.1e20}));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(far), 0x7F7FC99EU);
    }
}

// The limit as a float is a little more than 1e20, and is inside itself: its trajectory runs.
TEST(clsConstRecruit, TheLimitItselfIsInsideAndTheNextFloatIsNot)
{
    const double limit = static_cast<double>(1e20F);
    const double next = static_cast<double>(std::nextafter(1e20F, 1e30F));
    ASSERT_GT(limit, 1e20);
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ConstBench bench(Simulated(0.1));
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const float before = bench.model.Nt(1);
        EXPECT_EQ(bench.model.Objective(std::array{next}), static_cast<double>(3.4E+38F));
        EXPECT_EQ(bench.model.Nt(1), before);                              // no trajectory was run
        EXPECT_LE(bench.model.INelMead_MinFunc(std::array{limit}), limit); // the penalty is the limit
        EXPECT_EQ(bench.model.Nt(1), 1e20F);
    }
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

// B = (r + N) exp(-M/2) - T / 2 with the recruits of the fit.
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

TEST(clsConstRecruit, TheExpectedRateIsQTimesTheMeanStockWithRecruits)
{
    ConstBench bench(Simulated(0.05));
    const auto fit = bench.Fit(fit_op::kLeastSquares, 0.2);

    for (int i = 1; i <= 12; ++i) {
        const double recruits = fit.at(0) * (std::exp(0.2) - 1.0);
        const double mean = (recruits + bench.model.Nt(static_cast<std::int16_t>(i))) * std::exp(-0.1) -
                            bench.data.TotCatchNums(i) / 2.0;
        EXPECT_NEAR(bench.data.ExpCPUE(i) / (fit[1] * mean), 1.0, 1e-6) << i;
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
