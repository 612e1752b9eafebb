// SPDX-License-Identifier: GPL-3.0-or-later
// Bootstraps of the three depletion models: what each replicate stores, how a run ends, how it repeats.
#include "core/DepletionStocks.h"
#include "models/Bootstraps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <map>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
using namespace depletion;

/// Every stored value by parameter and replicate.
using Table = std::map<std::pair<int, int>, float>;

template <typename Model>
Table Drawn(const ModelBench<Model>& bench)
{
    Table table;
    for (int parameter = 1; parameter <= 8; ++parameter) {
        for (int n = 1; n <= bench.model.m_boot.Length(parameter); ++n)
            table[{parameter, n}] = bench.model.BootStrap(parameter, n);
    }
    return table;
}

/// The estimates that a replicate stores, in the order of the model's report.
template <typename Model>
std::vector<std::pair<int, double>> Stored(const std::vector<double>& fit)
{
    if constexpr (std::is_same_v<Model, clsSingleCohort>)
        return {{bs_param::kN1, fit.at(0)}, {bs_param::kQ, fit.at(1)}};
    else if constexpr (std::is_same_v<Model, clsConstRecruit>)
        return {{bs_param::kK, fit.at(0)}, {bs_param::kQ, fit.at(1)}, {bs_param::kRYield, fit.at(2)}};
    else
        return {{bs_param::kN1, fit.at(0)}, {bs_param::kQ, fit.at(1)}, {bs_param::kLambda, fit.at(2)}};
}

template <typename Model>
class DepletionBootstraps : public testing::Test
{
};
TYPED_TEST_SUITE(DepletionBootstraps, ThreeModels);
} // namespace

// Least squares: fitted values are floats, 6e-8 each, through a regression of condition 1e3. Log: the catches
// are those of the fit, the optimum is found again within the roughness of the objective.
TYPED_TEST(DepletionBootstraps, WithoutResidualsEveryReplicateEqualsTheFit)
{
    for (const auto& [fitOp, tolerance] :
         {std::pair{fit_op::kLeastSquares, 1e-4}, std::pair{fit_op::kLog, 4e-2}}) {
        Fitted<TypeParam> bench(fitOp, 5);
        bench.model.m.ResidVec.Fill(0.0F);

        bench.model.CalcBootStraps();

        for (const auto& [parameter, value] : Stored<TypeParam>(bench.estimates)) {
            for (int n = 1; n <= 5; ++n) {
                EXPECT_NEAR(bench.model.BootStrap(parameter, n) / value, 1.0, tolerance)
                    << fitOp << parameter;
                EXPECT_EQ(bench.model.BootStrap(parameter, n), bench.model.BootStrap(parameter, 1));
            }
        }
    }
}

TYPED_TEST(DepletionBootstraps, EachModelFillsItsOwnParametersAndNoOthers)
{
    for (const std::int32_t fitOp : kErrorModels) {
        Fitted<TypeParam> bench(fitOp, 3);
        bench.model.CalcBootStraps();
        for (int parameter = 1; parameter <= 8; ++parameter)
            EXPECT_EQ(bench.model.m_boot.Length(parameter), bench.model.BSFilled(parameter) ? 3 : 0)
                << parameter;
        EXPECT_TRUE(bench.model.IsBSDone());
    }
}

TYPED_TEST(DepletionBootstraps, TheSameSeedGivesTheSameReplicatesToTheBit)
{
    for (const std::int32_t fitOp : kErrorModels) {
        Fitted<TypeParam> one(fitOp, 8);
        Fitted<TypeParam> two(fitOp, 8);
        one.model.CalcBootStraps();
        two.model.CalcBootStraps();
        EXPECT_EQ(Drawn(one), Drawn(two)) << fitOp;
        EXPECT_NE(one.model.BootStrap(bs_param::kQ, 1), one.model.BootStrap(bs_param::kQ, 2)) << fitOp;
    }
}

// A second run used to start from the shape and rate that the last gamma replicate had left.
TYPED_TEST(DepletionBootstraps, ASecondRunOnTheSameFitRepeatsTheFirst)
{
    for (const std::int32_t fitOp : kErrorModels) {
        Fitted<TypeParam> bench(fitOp, 4);
        bench.model.CalcBootStraps();
        const Table first = Drawn(bench);
        bench.model.CalcBootStraps();
        EXPECT_EQ(Drawn(bench), first) << fitOp;
        EXPECT_EQ(bench.model.FinalEsts(), bench.estimates) << fitOp;
    }
}

TYPED_TEST(DepletionBootstraps, CancelInAnyLoopLeavesTheFitAnsweringAndReadyForAnotherRun)
{
    for (const std::int32_t fitOp : kErrorModels) {
        Fitted<TypeParam> reference(fitOp, 2);
        reference.model.CalcBootStraps();
        const int looks = reference.meter.looks; // matrix, replicates and sorting
        for (int after = 0; after < looks; ++after) {
            Fitted<TypeParam> bench(fitOp, 2);
            bench.meter.cancelAfter = after;
            try {
                bench.model.CalcBootStraps();
                ADD_FAILURE() << "not cancelled after " << after;
            } catch (const VeltError& error) {
                EXPECT_TRUE(error.IsUserCancel());
                EXPECT_EQ(error.description, "User Cancelled.");
            }
            EXPECT_FALSE(bench.model.IsBSDone());
            EXPECT_EQ(bench.model.FinalEsts(), bench.estimates);
            bench.meter.cancelAfter.reset();
            bench.model.CalcBootStraps();
            EXPECT_TRUE(bench.model.IsBSDone());
            EXPECT_EQ(Drawn(bench), Drawn(reference)) << fitOp << " " << after;
        }
    }
}

TYPED_TEST(DepletionBootstraps, TheSourceOfACancelNamesTheLoop)
{
    for (const auto& [fitOp, source] :
         {std::pair{fit_op::kLeastSquares, "_CalcLSQBootStraps"},
          std::pair{fit_op::kLog, "_CalcLnBootStraps"}, std::pair{fit_op::kGamma, "_CalcGammaCatchMatrix"}}) {
        Fitted<TypeParam> bench(fitOp, 2);
        bench.meter.cancelAfter = 0;
        try {
            bench.model.CalcBootStraps();
            ADD_FAILURE();
        } catch (const VeltError& error) {
            EXPECT_TRUE(error.source.ends_with(source)) << error.source;
            EXPECT_TRUE(error.source.starts_with("cls")) << error.source;
        }
    }
}

TYPED_TEST(DepletionBootstraps, OneReplicateGivesEqualSortedAndUnsortedStorage)
{
    for (const std::int32_t fitOp : kErrorModels) {
        Fitted<TypeParam> bench(fitOp, 1);
        bench.model.CalcBootStraps();
        for (const auto& [at, value] : Drawn(bench))
            EXPECT_EQ(bench.model.SortedBootStrap(at.first, 1), value);
        EXPECT_EQ(bench.model.BootStrap(bs_param::kQ, 2), 0.0F);
    }
}

TYPED_TEST(DepletionBootstraps, AThousandReplicatesAreSortedAndSpreadAroundTheFit)
{
    Fitted<TypeParam> bench(fit_op::kLeastSquares, 1000);

    bench.model.CalcBootStraps();

    EXPECT_EQ(bench.model.m_boot.Length(bs_param::kQ), 1000);
    for (int n = 2; n <= 1000; ++n)
        ASSERT_LE(bench.model.SortedBootStrap(bs_param::kQ, n - 1),
                  bench.model.SortedBootStrap(bs_param::kQ, n));
    EXPECT_LT(bench.model.SortedBootStrap(bs_param::kQ, 25), bench.estimates.at(1));
    EXPECT_GT(bench.model.SortedBootStrap(bs_param::kQ, 975), bench.estimates.at(1));
    EXPECT_EQ(bench.meter.titles.at(0), "Calculating Bootstraps...");
    EXPECT_EQ(bench.meter.titles.at(1), "Sorting Bootstraps...");
}

TYPED_TEST(DepletionBootstraps, AReplicateThatNeverConvergesEndsOnlyByCancel)
{
    Fitted<TypeParam> bench(fit_op::kLog, 2);
    bench.run.globals.settings.intMaxIts = 0;
    bench.meter.cancelAfter = 30;

    EXPECT_EQ(FailureOf([&] { bench.model.CalcBootStraps(); }), kProgramErrorBase + errors::kUserCancelled);

    EXPECT_EQ(bench.meter.looks, 31);
    EXPECT_EQ(bench.model.m_boot.Length(bs_param::kQ), 0);
    EXPECT_FALSE(bench.model.IsBSDone());
}

// Deliberate: the whole of the resampled value is divided by the root of the weight. With a variance of 4
// throughout and no residuals the response is doubled, and so is q; the population stays.
TYPED_TEST(DepletionBootstraps, AWeightedReplicateDividesTheWholeSumByTheRootOfTheWeight)
{
    if constexpr (std::is_same_v<TypeParam, clsConstRecruit>) {
        SUCCEED() << "its weights apply only without a variance column, and then there is no fit";
    } else {
        Fitted<TypeParam> bench(fit_op::kWeightedLeastSquares, 2,
                                DataFor<TypeParam>(0.05).Variance(std::vector<double>(12, 4.0)));
        bench.model.m.ResidVec.Fill(0.0F);

        bench.model.CalcBootStraps();

        EXPECT_NEAR(bench.model.BootStrap(bs_param::kQ, 1) / (2.0 * bench.estimates.at(1)), 1.0, 1e-4);
        EXPECT_NEAR(bench.model.BootStrap(bs_param::kN1, 1) / bench.estimates.at(0), 1.0, 1e-4);
    }
}

namespace
{
/// Solves the normal equations of a weighted regression through the origin by elimination.
std::vector<long double> Regressed(const std::vector<std::vector<double>>& rows, const std::vector<double>& y,
                                   const std::vector<double>& w)
{
    const std::size_t n = rows.front().size();
    std::vector<std::vector<long double>> a(n, std::vector<long double>(n + 1, 0.0L));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t r = 0; r < n; ++r) {
            for (std::size_t c = 0; c < n; ++c)
                a[r][c] += static_cast<long double>(w[i]) * rows[i][r] * rows[i][c];
            a[r][n] += static_cast<long double>(w[i]) * rows[i][r] * y[i];
        }
    }
    for (std::size_t p = 0; p < n; ++p) {
        for (std::size_t r = 0; r < n; ++r) {
            const long double factor = r == p ? 0.0L : a[r][p] / a[p][p];
            for (std::size_t c = p; c <= n; ++c)
                a[r][c] -= factor * a[p][c];
        }
    }
    std::vector<long double> b;
    for (std::size_t p = 0; p < n; ++p)
        b.push_back(a[p][n] / a[p][p]);
    return b;
}

/// The regressors of a period, from the dynamics: what a unit of q N1 (or q K), of q and of q Lambda adds to
/// its catch; M is 0.2. \param catches and \param recruits sums so far, discounted
template <typename Model>
std::vector<double> Regressors(int i, double effort, double total, double catches, double recruits)
{
    const double x2 = effort * (catches - total / 2.0);
    if constexpr (std::is_same_v<Model, clsConstRecruit>)
        return {effort * std::exp(0.1), x2};
    else if constexpr (std::is_same_v<Model, clsRecruitINdex>)
        return {effort * std::exp(-0.2 * (i - 0.5)), x2, effort * recruits * std::exp(-0.1)};
    else
        return {effort * std::exp(-0.2 * (i - 0.5)), x2};
}
} // namespace

// Deliberate: residual and fitted value are both divided by the root of the weight, although the residual is
// weighted already. The replicate is reckoned again from the same draws. The sums of catches are floats, and
// the regressions have a condition of up to 1e4.
TYPED_TEST(DepletionBootstraps, AWeightedReplicateIsTheRegressionOnResidualPlusFittedValueOverTheRoot)
{
    const std::vector<double> variance{4, 1, 9, 2, 1, 6, 3, 1, 5, 2, 8, 1};
    ModelBench<TypeParam> bench(DataFor<TypeParam>(0.05).Variance(variance));
    // Constant recruitment weighs where the column is absent, the reverse of the others. Deliberate.
    bench.data.ColPresent(columns::VarAbundIndex, !std::is_same_v<TypeParam, clsConstRecruit>);
    bench.run.globals.settings.NumBootStraps = 1;
    ASSERT_FALSE(bench.Fit(fit_op::kWeightedLeastSquares, 0.2).empty());
    const FitDetails fit = bench.model.Details();
    bench.model.CalcBootStraps();

    RandomSource draws{20261121};
    draws.Randomize();
    std::vector<std::vector<double>> rows;
    std::vector<double> y, w;
    double catches = 0.0, recruits = 0.0;
    for (int i = 1; i <= 12; ++i) {
        const auto at = static_cast<std::size_t>(i) - 1;
        const double total = bench.data.TotCatchNums(i);
        catches = std::exp(-0.2) * catches + total;
        recruits = std::exp(-0.2) * recruits + bench.data.RecruitIndex(i);
        rows.push_back(Regressors<TypeParam>(i, bench.data.Effort(i), total, catches, recruits));
        w.push_back(1.0 / variance[at]);
        const auto drawn = static_cast<std::size_t>(draws.Next() * 12);
        y.push_back((fit.resid[drawn] + fit.fitted[at]) * std::sqrt(variance[at]));
    }
    const std::vector<long double> b = Regressed(rows, y, w);
    const auto q = static_cast<double>(-b[1]);
    const int first = std::is_same_v<TypeParam, clsConstRecruit> ? bs_param::kK : bs_param::kN1;
    ASSERT_GT(q, 0.0);
    EXPECT_NEAR(bench.model.BootStrap(bs_param::kQ, 1) / q, 1.0, 1e-3);
    EXPECT_NEAR(bench.model.BootStrap(first, 1) / static_cast<double>(b[0] / -b[1]), 1.0, 1e-3);
    if constexpr (std::is_same_v<TypeParam, clsRecruitINdex>) {
        const auto lambda = static_cast<double>(b[2] / -b[1]);
        EXPECT_NEAR(bench.model.BootStrap(bs_param::kLambda, 1) / lambda, 1.0, 1e-3);
    }
}

TYPED_TEST(DepletionBootstraps, APeriodToggledOutKeepsItsResidualToItself)
{
    Fitted<TypeParam> bench(fit_op::kLeastSquares, 20, DataFor<TypeParam>(0.0).ToggleOut(4));
    bench.model.m.ResidVec.Fill(0.0F);
    bench.model.m.ResidVec(4) = 1e6F;

    bench.model.CalcBootStraps();

    for (int n = 1; n <= 20; ++n)
        EXPECT_NEAR(bench.model.BootStrap(bs_param::kQ, n) / bench.estimates.at(1), 1.0, 1e-4) << n;
}
