// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "core/MinimiserBench.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{
using namespace minimiser_bench;

TEST(VELT_NelMead, RetreatsFromAHalfPlaneOfPenalties)
{
    for (const double penalty : {kHuge, kHigherPenalty}) {
        Fit inside([penalty](Point x) { return x[0] < 900.0 ? penalty : FloatBowl2(x); });
        inside.From({{1500, 2000}, {0.3, 0.4}});
        EXPECT_TRUE(inside.minimiser.Converged());
        EXPECT_LE(inside.minimiser.MinValue(), 100.0 + 1.6e-5);
    }
}

TEST(VELT_NelMead, FindsAnOptimumAtTheEdgeOfThePenalties)
{
    Fit one([](Point x) { return x[0] < 1000.0 ? kHuge : AsFloat(100.0 + x[0] / 1000.0); });
    one.From({{1500, 2000}});
    EXPECT_TRUE(one.minimiser.Converged());
    EXPECT_NEAR(one.minimiser.Estimate(1), 1000.0, 0.1); // XTOL
    Fit two([](Point x) {
        return x[0] < 1000.0 ? kHuge : AsFloat(100.0 + x[0] / 1000.0 + std::pow(x[1] / 0.4 - 1.0, 2));
    });
    two.From({{1500, 2000}, {0.3, 0.4}});
    EXPECT_TRUE(two.minimiser.Converged());
    EXPECT_NEAR(two.minimiser.MinValue(), 101.0, 1e-4);
}

TEST(VELT_NelMead, SearchesOutwardFromAStartOnThePenalty)
{
    for (const double start : {15.0, 3e6}) {
        Fit fit([](Point x) { return x[0] < 500.0 || x[0] > 50000.0 ? kHigherPenalty : FloatBowl(x); });
        fit.From({{start, start * 4.0 / 3.0}});
        EXPECT_TRUE(fit.minimiser.Converged()) << start;
        EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
    }
    Fit alongOne([](Point x) { return x[1] < 0.1 || x[0] > 5000.0 ? kHuge : FloatBowl2(x); });
    alongOne.From({{1500, 2000}, {0.001, 0.0013}});
    EXPECT_TRUE(alongOne.minimiser.Converged());
    EXPECT_LE(alongOne.minimiser.MinValue(), 100.0 + 1.6e-5);
}

// From the start a doubling leads to the lower penalty, which is as little a value as the higher one: the
// domain begins five doublings further out, beyond what the last look around that place sees.
TEST(VELT_NelMead, APenaltyLowerThanThatOfTheStartIsNotTakenForTheDomain)
{
    Fit fit([](Point x) { return x[0] < 15.0 ? kHigherPenalty : x[0] < 400.0 ? kHuge : FloatBowl(x); });
    fit.From({{10.0, 9.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
}

// 32-bit penalties are a little more than 1e20.
TEST(VELT_NelMead, AValueBelowThePenaltyIsOneAndThePenaltyIsNone)
{
    for (const double value : {0.9e20, 1e20, static_cast<double>(1e20F)}) {
        Fit fit([value](Point) { return value; });
        fit.From({{15, 20}});
        EXPECT_EQ(fit.minimiser.Converged(), value < 1e20) << value;
    }
}

TEST(VELT_NelMead, PenaltiesAloneAreNoConvergence)
{
    for (const double penalty : {kHuge, kHigherPenalty})
        for (const std::int32_t convergeOn : {3, 0}) {
            Fit fit([penalty](Point) { return penalty; });
            fit.From({{15, 20}, {0.3, 0.4}}, convergeOn);
            EXPECT_FALSE(fit.minimiser.Converged());
            EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
            EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
            EXPECT_EQ(fit.minimiser.HowItEnded(), VELT_NelMead::End::OutsideDomain);
            EXPECT_EQ(fit.asked, 3 + (5 + 24) * 8 + 1); // simplex, stars, the last evaluation
        }
}

// The second point is better than the start by the lower of two penalties. From 20 the sixth doubling meets
// the domain at 1280, and the other vertex of the simplex that is built there lies outside again.
TEST(VELT_NelMead, ANarrowDomainFarAwayIsFoundFromTwoKindsOfPenalty)
{
    Fit fit([](Point x) {
        if (x[0] < 15.0)
            return kHigherPenalty;
        const double away = x[0] / 1300.0 - 1.0;
        return x[0] < 1200.0 || x[0] > 1400.0 ? kHuge : AsFloat(1.0 + away * away);
    });
    fit.From({{10, 20}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1300.0,
                1.0); // a float near 1 tells 1 + 6e-8 from 1, so 0.3 from 1300
}

// A likelihood of data without noise: valid only close by, and the start itself is a hole in the middle of
// it.
TEST(VELT_NelMead, FindsASpikeTooNarrowForTheFirstStep)
{
    Fit fit([](Point x) {
        const double away = std::fabs(x[0] - 1000.0);
        return away < 1e-6 || away > 20.0 ? kHuge : AsFloat(10.0 * std::log(away));
    });
    fit.From({{1000, 1333}});
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 1.0); // a thousandth
}

TEST(VELT_NelMead, ACallbackThatAnswersNotANumberOrInfinityIsTreatedAsAPenalty)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double bad : {kNaN, kInfinity}) {
        Fit fit([bad](Point x) { return x[0] > 1200.0 ? bad : FloatBowl(x); });
        fit.From({{1100, 1400}});
        EXPECT_TRUE(fit.minimiser.Converged());
        EXPECT_NEAR(fit.minimiser.Estimate(1), 1000.0, 0.9);
    }
}

TEST(VELT_NelMead, AStartOnThePenaltyIsLookedAroundCloseByAndThenTwentyFourDoublingsFar)
{
    Recorded fit([](const RecordedSurface::Point&) { return kHuge; });
    fit.From({{1.0, 2.0}});

    std::vector<double> distances;
    for (std::size_t i = 2; i + 1 < fit.asked.size(); i += 2) {
        distances.push_back(fit.asked[i][0]);
        EXPECT_NEAR(fit.asked[i + 1][0], -fit.asked[i][0], 1e-9);
    }
    ASSERT_EQ(distances.size(), 5U + 24U);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_NEAR(distances[i], std::pow(10.0, -1.0 - static_cast<double>(i)), 1e-12);
    for (std::size_t i = 1; i <= 24; ++i)
        EXPECT_NEAR(distances[4 + i], static_cast<double>(i) * std::log(2.0), 1e-9);
}

TEST(VELT_NelMead, AroundWhatAStarFoundASimplexOfHalfItsRadiusGoesOn)
{
    // Valid from half a decade above the start on: found at the doubling of 1.386, four times the start.
    Recorded fit(
        [](const RecordedSurface::Point& u) { return u[0] < 1.15 ? kHuge : 1.0 + std::pow(u[0] - 3.0, 2); });
    fit.From({{1.0, 0.9}});

    const double found = 2.0 * std::log(2.0);
    std::size_t at = 0;
    while (std::fabs(fit.asked[at][0] - found) > 1e-9)
        ++at;
    EXPECT_NEAR(fit.asked[at + 2][0], found + 0.5 * found, 1e-9); // behind the star's other side
}

// The bowl's floor at 1000 lies outside a domain that begins at 1200, and inside one that begins at 500.
TEST(VELT_NelMead, TellsAMinimumOnTheBorderOfTheDomainFromOneInside)
{
    double border = 1200.0;
    Fit fit([&border](Point x) { return x[0] < border ? kHuge : FloatBowl(x); });
    fit.From({{1500.0, 2000.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_NEAR(fit.minimiser.Estimate(1), 1200.0, 0.12); // XTOL
    EXPECT_TRUE(fit.minimiser.AtBorder());

    border = 500.0;
    fit.From({{1500.0, 2000.0}});
    EXPECT_TRUE(fit.minimiser.Converged());
    EXPECT_FALSE(fit.minimiser.AtBorder());

    border = 1200.0;
    fit.From({{1500.0, 2000.0}}, 3, 2); // two steps do not get there
    EXPECT_FALSE(fit.minimiser.Converged());
    EXPECT_FALSE(fit.minimiser.AtBorder());
}
} // namespace
