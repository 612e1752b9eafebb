// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsProduction.h"

#include "core/ProductionBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

TEST_F(Production, ANewModelIsASchaeferModelOfWeightsWithTheContourViewOn)
{
    EXPECT_EQ(model.WhichMeth(), 5);
    EXPECT_TRUE(model.PlotEvaluations());
    EXPECT_FALSE(model.UsingNos());
    EXPECT_EQ(model.InitDep(), 1.0F);
    EXPECT_EQ(model.Z(), 1.0F);
    EXPECT_EQ(model.LAG(), 0);
    EXPECT_EQ(model.Excuse(), 0);
    EXPECT_EQ(model.Contours().ContEvals, 20);
    EXPECT_EQ(model.MethTitle(), "PRODUCTION MODEL");
}

TEST_F(Production, CatchesAreWeightsAlsoWhereThereAreNumbers)
{
    data = TableBuilder()
               .Effort({1, 1, 1})
               .CatchNums({7, 8, 9})
               .TotalNums({70, 80, 90})
               .CatchWt({1, 2, 3})
               .TotalWt({10, 20, 30})
               .Build(run);
    Prepare(models::kSchaefer);
    EXPECT_FALSE(model.UsingNos());
    EXPECT_EQ(model.CatchVector(2), 2.0F);
    EXPECT_EQ(model.ObsTCatchRef(2), 20.0F);
    EXPECT_EQ(model.CatchRef(2), 20.0F);
}

TEST_F(Production, BootstrapsFillKQRAndTheTwoYields)
{
    const bool filled[] = {true, true, true, false, false, false, true, true};
    for (int parameter = 1; parameter <= 8; ++parameter)
        EXPECT_EQ(model.BSFilled(parameter), filled[parameter - 1]) << parameter;
}

TEST_F(Production, TheShapeIsKeptAsA32BitFloat)
{
    model.Z(0.1F);
    EXPECT_EQ(model.Z(), 0.1F);
}

// K = 1000, R = 0.4, 100 out of each period. Schaefer, no lag:
//   G(1000) = 0                          N2 = 1000 - 100 = 900
//   G(900) = 0.4 * 900 * 0.1 = 36        N3 = 900 + 36 - 100 = 836
//   G(836) = 0.4 * 836 * 0.164 = 54.8416 N4 = 790.8416
//   G(790.8416) = 0.4 * 790.8416 * 0.2091584 = 66.1645 N5 = 757.0061
TEST_F(Production, ASchaeferTrajectoryWorkedByHand)
{
    HundredAPeriod(models::kSchaefer);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 836.0, 790.8416, 757.0061});
    EXPECT_FALSE(model.PopUnderflow());
}

// Fox: G(900) = 0.4 * 900 * ln(1000/900) = 360 * 0.10536052 = 37.929786       N3 = 837.929786
//      G(837.929786) = 335.171914 * ln(1000/837.929786) = 335.171914 * 0.17682096 = 59.265420
//                                                                            N4 = 797.195206
TEST_F(Production, AFoxTrajectoryWorkedByHand)
{
    HundredAPeriod(models::kFox);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 837.929786, 797.195206});
}

// Pella-Tomlinson, Z = 2: G(900) = 0.4 * 900 * (1 - 0.81) = 68.4              N3 = 868.4
//      G(868.4) = 347.36 * (1 - 0.75411856) = 85.409377                     N4 = 853.809377
TEST_F(Production, APellaTomlinsonTrajectoryWorkedByHand)
{
    HundredAPeriod(models::kPellaTomlinson, 0, 2.0F);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 868.4, 853.809377});
}

// The growth of period p is that of the biomass at p - 1, and that of the start up to p = 2:
//   N3 = 900 + G(1000) - 100 = 800, N4 = 800 + G(900) - 100 = 736, N5 = 736 + G(800) - 100 = 700
TEST_F(Production, WithALagOf1TheGrowthComesFromThePeriodBefore)
{
    HundredAPeriod(models::kSchaefer, 1);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 800.0, 736.0, 700.0});
}

// N4 = 800 + G(1000) - 100 = 700, N5 = 700 + G(900) - 100 = 636
TEST_F(Production, WithALagOf2TheStartServesForThreePeriods)
{
    HundredAPeriod(models::kSchaefer, 2);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 800.0, 700.0, 636.0});
}

TEST_F(Production, ALagBeyondTheSeriesLeavesOnlyTheGrowthOfTheStart)
{
    HundredAPeriod(models::kSchaefer, 10);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 800.0, 700.0, 600.0});
}

// At half of K the Schaefer growth is 0.4 * 500 * 0.5 = 100, just what is caught.
TEST_F(Production, TheInitialProportionSetsTheStartAndTheSustainableYieldKeepsItThere)
{
    HundredAPeriod(models::kSchaefer, 0, 1.0F, 0.5F);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({500.0, 500.0, 500.0, 500.0, 500.0});
}

TEST_F(Production, NaturalMortalityPlaysNoPart)
{
    HundredAPeriod(models::kSchaefer);
    model.Mort(0.9F);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 900.0, 836.0});
}

TEST_F(Production, ANegativeKGivesATrajectoryOfZerosWithTheFlagSetAndNoGammaWorkVector)
{
    Table({1.0F, 1.0F, 1.0F}, {100.0F, 100.0F, 100.0F});
    Prepare(models::kSchaefer, fit_op::kGamma);
    // No X(i) has been reckoned yet: the work vector would divide by zero if it were filled.
    EXPECT_NO_THROW(Follow(-1.0, 0.001, 0.4));
    EXPECT_TRUE(model.PopUnderflow());
    ExpectBiomass({0.0, 0.0, 0.0, 0.0});
}

TEST_F(Production, ABiomassOfExactlyZeroIsNoUnderflow)
{
    Table({1.0F, 1.0F, 1.0F}, {1000.0F, 0.0F, 0.0F});
    Prepare(models::kSchaefer);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 0.0, 0.0, 0.0});
    EXPECT_FALSE(model.PopUnderflow());
}

TEST_F(Production, AfterAnUnderflowTheBiomassStaysZero)
{
    Table({1.0F, 1.0F, 1.0F}, {1001.0F, 0.0F, 0.0F});
    Prepare(models::kSchaefer);
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({1000.0, 0.0, 0.0, 0.0});
    EXPECT_TRUE(model.PopUnderflow());
}

TEST_F(Production, ANegativeBiomassGrowsByNothingAndIsAnUnderflow)
{
    HundredAPeriod(models::kFox, 0, 1.0F, -0.5F); // whose logarithm no growth may ask for
    Follow(1000.0, 0.0, 0.4);
    ExpectBiomass({-500.0, 0.0, 0.0, 0.0});
    EXPECT_TRUE(model.PopUnderflow());
}

TEST_F(Production, AnInitialProportionOf0GivesNoStartAndUnderFoxALogarithmOfZero)
{
    HundredAPeriod(models::kSchaefer, 0, 1.0F, 0.0F);
    Follow(1000.0, 0.0, 0.4);
    EXPECT_EQ(model.Nt(1), 0.0F);
    EXPECT_TRUE(model.PopUnderflow());

    model.WhichMeth(models::kFox);
    EXPECT_EQ(FailureOf([this] { Follow(1000.0, 0.0, 0.4); }), errors::kInvalidArgument);
}

// q E = 0.1, N1 = 1000, T = 50. The effort alone: Nn = 1000 * 1.9 / 2.1 = 904.7619, mean 952.38095.
// The recorded catch: N2 = 950, X = 100 * (1000 + 950) / 2 = 97500.
TEST_F(Production, TheMeanForAProjectedCatchAndTheMeanOfTheFitAreDifferentMeans)
{
    Table({100.0F, 100.0F, 100.0F}, {50.0F, 50.0F, 50.0F});
    Prepare(models::kSchaefer);
    Follow(1000.0, 0.001, 0.4);
    EXPECT_NEAR(model.MidPop(1), 952.38095, 1e-4);
    EXPECT_NEAR(model.EffMidPop(1), 97500.0, 1e-2);
}

// Period 2 lies beyond the data: N2 = 950, G = 0.4 * 950 * 0.05 = 19, Nn = (950 * 1.9 + 38) / 2.1 =
// 877.619048, mean 913.809524, T(2) = 0.1 * 913.809524 = 91.380952, N3 = 19 + 950 - 91.380952 = 877.619048.
TEST_F(Production, BeyondTheDataTheEffortMakesTheCatchWhenAsked)
{
    Table({100.0F, 100.0F, 100.0F}, {50.0F, 7.0F, 7.0F});
    Prepare(models::kSchaefer);
    data.OrigNAPoints(1);
    Follow(1000.0, 0.001, 0.4);
    EXPECT_EQ(model.ObsTCatchRef(2), 7.0F);

    model.DIYTCatch(true);
    Follow(1000.0, 0.001, 0.4);
    EXPECT_EQ(model.ObsTCatchRef(1), 50.0F);
    EXPECT_NEAR(model.ObsTCatchRef(2), 91.380952, 1e-4);
    ExpectBiomass({1000.0, 950.0, 877.619048});
}

TEST_F(Production, APeriodToggledOutKeepsItsXAndItsCatchStillLeavesTheStock)
{
    HundredAPeriod(models::kSchaefer);
    data.ToggledIn(2, false);
    Follow(1000.0, 0.0, 0.4);
    EXPECT_EQ(model.EffMidPop(2), 0.0);
    EXPECT_NEAR(model.EffMidPop(1), 950.0, 1e-3);
    ExpectBiomass({1000.0, 900.0, 836.0, 790.8416});
}

TEST_F(Production, ProductionOfNothingIsNothingExceptUnderFoxWhereItHasNoValue)
{
    model.Work({.K = 1000.0, .R = 0.4});
    for (const std::int32_t whichMeth : kProductionModels) {
        model.WhichMeth(whichMeth);
        EXPECT_EQ(model.ProductionFunction(-1.0F), 0.0F);
        EXPECT_EQ(model.ProductionFunction(1000.0F), 0.0F);
    }
    for (const std::int32_t whichMeth : {models::kSchaefer, models::kPellaTomlinson}) {
        model.WhichMeth(whichMeth);
        EXPECT_EQ(model.ProductionFunction(0.0F), 0.0F);
    }
    model.WhichMeth(models::kFox);
    EXPECT_EQ(FailureOf([this] { model.ProductionFunction(0.0F); }), errors::kInvalidArgument);
}

// 0.4 * -100 * (1 + 0.1) = -44
TEST_F(Production, TheYieldOfABiomassReadsTheFinalEstimatesAndDoesNotTestTheSign)
{
    model.Work({.K = 1.0, .R = 9.0});
    model.Final({.K = 1000.0, .R = 0.4});
    EXPECT_FLOAT_EQ(model.YieldOfBiomass(500.0F), 100.0F);
    EXPECT_FLOAT_EQ(model.YieldOfBiomass(-100.0F), -44.0F);
}

TEST_F(Production, AModelNumberOutside4To6ProducesNothing)
{
    model.Work({.K = 1000.0, .R = 0.4});
    model.Final({.K = 1000.0, .R = 0.4});
    model.WhichMeth(7);
    EXPECT_EQ(model.ProductionFunction(500.0F), 0.0F);
    EXPECT_EQ(model.YieldOfBiomass(500.0F), 0.0F);
    EXPECT_EQ(model.MSYOf({.K = 1000.0, .R = 0.4}), 0.0F);
}

// Fox 400 / e = 147.151776; Schaefer 400 / 4 = 100; Pella-Tomlinson at Z = 1 the same.
TEST_F(Production, TheMaximumSustainableYieldOfEachModel)
{
    const Estimates record{.K = 1000.0, .R = 0.4};
    const double expected[] = {147.151776, 100.0, 100.0};
    for (std::size_t i = 0; i < kProductionModels.size(); ++i) {
        model.WhichMeth(kProductionModels[i]);
        EXPECT_NEAR(model.MSYOf(record), expected[i], 2e-5); // half a unit of a float at 147 is 8e-6
    }
}

// Z = 2: m = 3^(-1/2) = 0.57735, 400 m (1 - m) = 97.6068, while the production function peaks at
// 400 m (1 - m^2) = 153.9601. Deliberate.
TEST_F(Production, ThePellaTomlinsonYieldDiffersFromThePeakOfItsProductionFunctionUnlessZIs1)
{
    const Estimates record{.K = 1000.0, .R = 0.4};
    model.WhichMeth(models::kPellaTomlinson);
    model.Z(2.0F);
    EXPECT_NEAR(model.MSYOf(record), 97.6068, 1e-4);
    model.Work(record);
    EXPECT_NEAR(model.ProductionFunction(577.35027F), 153.9601, 1e-3);
}

TEST_F(Production, PellaTomlinsonWithZ1EqualsSchaeferToTheBit)
{
    std::mt19937 draw(1);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<float> catches(15);
    for (int set = 0; set < 1000; ++set) {
        for (float& c : catches)
            c = static_cast<float>(100.0 * unit(draw));
        Table(std::vector<float>(catches.size(), 10.0F), catches);
        Prepare(models::kSchaefer, fit_op::kLeastSquares, static_cast<std::int16_t>(set % 4), 1.0F,
                static_cast<float>(unit(draw)));
        const Estimates record{
            .K = 200.0 + 2000.0 * unit(draw), .Q = 0.01 * unit(draw), .R = 1.5 * unit(draw)};
        model.Work(record);
        model.CalcPopTraj();
        std::vector<float> schaefer;
        for (std::int16_t t = 1; t <= 16; ++t)
            schaefer.push_back(model.Nt(t));
        const float growth = model.ProductionFunction(catches[0]);
        const float yield = model.MSYOf(record);

        model.WhichMeth(models::kPellaTomlinson);
        model.CalcPopTraj();
        for (std::int16_t t = 1; t <= 16; ++t)
            ASSERT_EQ(model.Nt(t), schaefer[static_cast<std::size_t>(t) - 1]) << "set " << set;
        ASSERT_EQ(model.ProductionFunction(catches[0]), growth);
        ASSERT_NEAR(model.MSYOf(record), yield, 2e-7 * yield); // exp(-ln 2) need not be a half to the bit
    }
}

// Without a lag the next biomass N + G(N) - T rises with N as long as 1 + G'(N) >= 0 up to K: for R <= 1
// under Fox and Schaefer, for R Z <= 1 under Pella-Tomlinson. Outside it more catch may well leave more
// biomass.
TEST_F(Production, MoreCatchNeverGivesMoreBiomassWhereTheStepIsMonotone)
{
    std::mt19937 draw(2);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const int periods = 12;
    for (int set = 0; set < 1000; ++set) {
        const double z = 0.2 + 2.0 * unit(draw);
        const std::int32_t whichMeth = kProductionModels[static_cast<std::size_t>(set) % 3];
        const double limit = whichMeth == models::kPellaTomlinson ? std::min(1.0, 1.0 / z) : 1.0;
        const Estimates record{.K = 500.0 + 1000.0 * unit(draw), .Q = 0.001, .R = 0.95 * limit * unit(draw)};
        std::vector<float> less;
        std::vector<float> more;
        for (int t = 0; t < periods; ++t) {
            less.push_back(static_cast<float>(60.0 * unit(draw)));
            more.push_back(less.back() + static_cast<float>(unit(draw) < 0.3 ? 40.0 * unit(draw) : 0.0));
        }
        const float initDep = 0.3F + 0.7F * static_cast<float>(unit(draw));
        const auto trajectory = [&](const std::vector<float>& catches) {
            Table(std::vector<float>(catches.size(), 10.0F), catches);
            Prepare(whichMeth, fit_op::kLeastSquares, 0, static_cast<float>(z), initDep);
            model.Work(record);
            model.CalcPopTraj();
            std::vector<float> n;
            for (std::int16_t t = 1; t <= periods + 1; ++t)
                n.push_back(model.Nt(t));
            return n;
        };
        const std::vector<float> a = trajectory(less);
        const std::vector<float> b = trajectory(more);
        const float rounding = static_cast<float>(record.K) * 1e-6F; // of 13 stored floats
        for (std::size_t t = 0; t < a.size(); ++t)
            ASSERT_LE(b[t], a[t] + rounding) << "set " << set << " period " << t + 1;
    }
}

// N as in the Schaefer trajectory above: MSY 100, growth of N5 = 757.0061: 0.4 * 757.0061 * 0.2429939
// = 73.5792.
TEST_F(Production, TheReportValuesAreKQRTheTwoYieldsAndTheLastBiomass)
{
    HundredAPeriod(models::kSchaefer);
    model.Final({.K = 1000.0, .Q = 0.002, .R = 0.4});
    const std::vector<double> values = model.FinalEsts();
    ASSERT_EQ(values.size(), 6U);
    EXPECT_EQ(values[0], 1000.0);
    EXPECT_EQ(values[1], 0.002);
    EXPECT_EQ(values[2], 0.4);
    EXPECT_NEAR(values[3], 100.0, 1e-5);
    EXPECT_NEAR(values[4], 73.5792, 1e-4);
    EXPECT_NEAR(values[5], 757.0061, 1e-4);
}

// With a lag of 1: N = 1000, 900, 800, 736, 700; the replacement yield is that of N4: 0.4 * 736 * 0.264
// = 77.7216.
TEST_F(Production, TheReplacementYieldIsThatOfTheLaggedBiomass)
{
    HundredAPeriod(models::kSchaefer, 1);
    model.Final({.K = 1000.0, .R = 0.4});
    EXPECT_NEAR(model.FinalEsts().at(4), 77.7216, 1e-4);
}

TEST_F(Production, AReplacementYieldFromBeforeTheSeriesHasNoPeriod)
{
    HundredAPeriod(models::kSchaefer, 5); // five states, so a lag of 5 points before the first
    model.Final({.K = 1000.0, .R = 0.4});
    EXPECT_EQ(FailureOf([this] { model.FinalEsts(); }), errors::kSubscript);
}

// N1 = 1000, N2 = 900: 0.001 * 950 = 0.95 a unit of effort; with effort 2 the expected catch is 1.9.
TEST_F(Production, TheExpectedSeriesAreThoseOfTheMeanOfBothEnds)
{
    Table({2.0F, 4.0F, 0.0F}, {100.0F, 100.0F, 100.0F});
    Prepare(models::kSchaefer);
    model.Final({.K = 1000.0, .Q = 0.001, .R = 0.4});
    model.CopyQANDFinalToWorkEsts();
    model.CalcPopTraj();
    EXPECT_EQ(model.Q(), 0.001);
    model.CalcCPUEVectors();
    EXPECT_NEAR(data.ExpCPUE(1), 0.95, 1e-6);
    EXPECT_NEAR(data.ExpCatchWt(1), 1.9, 1e-6);
    EXPECT_NEAR(data.ObsCPUE(1), 50.0, 1e-5);
    EXPECT_NEAR(data.ObsCPUE(2), 25.0, 1e-5);
    EXPECT_EQ(data.ExpCPUE(3), clsVeltData::kMissing); // no effort, so not Included
    EXPECT_NEAR(data.PopWt(4), 790.8416, 1e-3);
    for (const int column : {columns::ExpCPUE, columns::ObsCPUE, columns::ExpCatchWt, columns::PopWt})
        EXPECT_TRUE(data.ColPresent(column)) << column;
    EXPECT_FALSE(data.ColPresent(columns::PopNums));
    EXPECT_FALSE(data.ColPresent(columns::ExpCatchNums));
}

TEST_F(Production, AnExpectedCatchRateThatIsNotAboveZeroIsReplaced)
{
    HundredAPeriod(models::kSchaefer);
    model.Final({.K = 1000.0, .Q = -0.001, .R = 0.4});
    model.CopyQANDFinalToWorkEsts();
    model.CalcPopTraj();
    model.CalcCPUEVectors();
    EXPECT_EQ(data.ExpCPUE(1), 0.0001F);
    EXPECT_EQ(data.ExpCatchWt(1), 0.0001F);
}

TEST_F(Production, AMeanWeightColumnAddsPopulationNumbers)
{
    HundredAPeriod(models::kSchaefer);
    data.ColPresent(columns::MeanWt, true);
    for (int t = 1; t <= 4; ++t)
        data.MeanWt(t, 2.0F);
    Follow(1000.0, 0.0, 0.4);
    model.CalcCPUEVectors();
    EXPECT_TRUE(data.ColPresent(columns::PopNums));
    EXPECT_NEAR(data.PopNums(2), 450.0, 1e-3);
    EXPECT_EQ(data.MeanWt(5), 2.0F); // the period behind the last takes its weight
    EXPECT_NEAR(data.PopNums(5), 757.0061 / 2.0, 1e-3);
}
