// SPDX-License-Identifier: GPL-3.0-or-later
// What the fits of the three depletion models have in common.
#include "core/DepletionStocks.h"
#include "models/clsRecruitINdex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace
{
using namespace depletion;

template <typename Model>
class DepletionFits : public testing::Test
{
};
TYPED_TEST_SUITE(DepletionFits, ThreeModels);
} // namespace

// A regression minimises nothing: what the details say must not be left over from the search before it.
TYPED_TEST(DepletionFits, ARegressionAfterASearchOnOneObjectIsThatOfANewObject)
{
    for (const std::int32_t searched : {fit_op::kLog, fit_op::kGamma}) {
        ModelBench<TypeParam> fresh(DataFor<TypeParam>());
        const std::vector<double> expected = fresh.Fit(fit_op::kLeastSquares, 0.2);
        ASSERT_FALSE(expected.empty());
        ModelBench<TypeParam> used(DataFor<TypeParam>());
        ASSERT_FALSE(used.Fit(searched, 0.2).empty());
        ASSERT_TRUE(used.model.Details().objective);
        ASSERT_GT(used.model.Details().evaluations, 0);

        EXPECT_EQ(used.Fit(fit_op::kLeastSquares, 0.2), expected);
        const FitDetails details = used.model.Details();
        EXPECT_FALSE(details.objective);
        EXPECT_EQ(details.evaluations, 0);
        EXPECT_EQ(details.var, fresh.model.Details().var);
        EXPECT_EQ(details.fitted, fresh.model.Details().fitted);
        EXPECT_EQ(details.resid, fresh.model.Details().resid);
        EXPECT_TRUE(details.fittedExists);
    }
}

// The minimiser works on values of the precision of a float, and on parameters cut to floats.
TYPED_TEST(DepletionFits, AnObjectiveTakesAndAnswersFloats)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ModelBench<TypeParam> bench(DataFor<TypeParam>());
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        std::vector<double> exact, cut;
        for (const NamedValue& start : bench.model.Details().initEsts) {
            if (start.name == "Q")
                continue; // not searched
            exact.push_back(std::nextafter(static_cast<double>(static_cast<float>(1.1 * start.value)), 1e30));
            cut.push_back(static_cast<float>(exact.back()));
            ASSERT_NE(exact.back(), cut.back());
        }
        bench.model.m.GammaNu = 1.0;
        const double value = bench.model.INelMead_MinFunc(exact);
        EXPECT_LT(std::fabs(value), 1e10);
        EXPECT_EQ(value, static_cast<double>(static_cast<float>(value)));
        const double nu = bench.model.m.GammaNu;
        bench.model.m.GammaNu = 1.0; // the same shape to start from
        EXPECT_EQ(bench.model.INelMead_MinFunc(cut), value);
        EXPECT_EQ(bench.model.m.GammaNu, nu);
        EXPECT_EQ(bench.model.Nt(1), static_cast<float>(cut.at(0)));
    }
}

// A profile starts where the last one ended, and 20 steps of 3 bridge nine decades and a half. An evaluation
// there and back used to leave every later one failing: bootstraps whose replicates looked around far out
// were drawn again for ever.
TYPED_TEST(DepletionFits, AnExcursionOfFourteenDecadesDoesNotStrandTheGammaProfile)
{
    ModelBench<TypeParam> bench(DataFor<TypeParam>());
    const std::vector<double> estimates = bench.Fit(fit_op::kGamma, 0.2);
    ASSERT_FALSE(estimates.empty());
    const bool two = std::is_same_v<TypeParam, clsRecruitINdex>;
    std::vector<double> home{estimates.at(0)};
    if (two)
        home.push_back(estimates.at(2));
    const double value = bench.model.INelMead_MinFunc(home);
    ASSERT_LT(value, 1e10);

    for (const double farOut : {1e5, 1e10, 1e14}) { // by steps that 20 brackets can follow
        std::vector<double> away = home;
        for (double& x : away)
            x *= farOut;
        EXPECT_LT(bench.model.INelMead_MinFunc(away), 1e10) << farOut;
    }

    EXPECT_NEAR(bench.model.INelMead_MinFunc(home), value, 1e-5 * std::fabs(value)); // a float, nu to 1e-5
}
