// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_NelMead.h"

#include "base/VeltError.h"
#include "core/MinimiserBench.h"
#include "engines/RandomSource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace
{
using namespace minimiser_bench;

TEST(VELT_NelMead, ReachingMaxItsIsNoConvergenceAndNoFailure)
{
    Fit fit(Rosenbrock);
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}}, 3, 10);
    EXPECT_FALSE(fit.minimiser.Converged());
    EXPECT_LT(fit.minimiser.MinValue(), 24.2); // the start
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}}, 3, 0);
    EXPECT_FALSE(fit.minimiser.Converged());
}

TEST(VELT_NelMead, WithoutSettingsTheProgramsDefaultsHold)
{
    const auto search = [](bool set) {
        Fit fit(FloatBowl2);
        fit.minimiser.Create(fit, 2);
        if (set) {
            fit.minimiser.FTOL(1e-7F);
            fit.minimiser.XTOL(1e-4F);
            fit.minimiser.MaxIts(500);
            fit.minimiser.ConvergeOn(3);
            fit.minimiser.HowCarefully(Care::Final);
        }
        fit.minimiser.SetParameter(1, 1500, 2000, 0, kHuge);
        fit.minimiser.SetParameter(2, 0.3, 0.4, 0, kHuge);
        fit.minimiser.Minimise();
        return fit.minimiser.NumEvaluations();
    };

    EXPECT_EQ(search(false), search(true));
}

/// A search without settings of the surface 1 + curvature u^2 from its bottom, with that first step.
double LastSizeWithoutSettings(double curvature, double step)
{
    Recorded fit([curvature](const RecordedSurface::Point& u) { return 1.0 + curvature * u[0] * u[0]; });
    fit.minimiser.Create(fit, 1);
    fit.minimiser.SetParameter(1, 1.0, std::exp(step), 0.0, kHuge);
    fit.minimiser.Minimise();
    return fit.LastSize();
}

// Every step halves the distance d of the two points. 1 + u^2 has a spread of d^2, far below 1e-7 when the
// distance meets 1e-4; 1 + 100 u^2 one of 100 d^2, which meets 1e-7 at a distance of 3.2e-5.
TEST(VELT_NelMead, WithoutSettingsTheTolerancesAreTheProgramsDefaults)
{
    EXPECT_NEAR(LastSizeWithoutSettings(1.0, 1.5e-4 * 1024.0), 0.75e-4, 1e-9);
    for (const auto& [spread, end] : {std::pair{1.5e-7, 0.25 * 1.5e-7}, {0.7e-7, 0.7e-7}})
        EXPECT_NEAR(LastSizeWithoutSettings(100.0, std::sqrt(spread / 100.0) * 1024.0),
                    std::sqrt(end / 100.0), 1e-9);
}

// Six parameters in a row of valleys are not done after 501 steps.
TEST(VELT_NelMead, WithoutSettingsASearchEndsAfterFiveHundredSteps)
{
    const auto evaluations = [](std::int16_t maxIts) {
        Fit fit([](Point x) {
            double sum = 0.0;
            for (std::size_t i = 0; i + 1 < x.size(); ++i)
                sum += Rosenbrock(x.subspan(i, 2));
            return sum;
        });
        fit.minimiser.Create(fit, 6);
        if (maxIts > 0)
            fit.minimiser.MaxIts(maxIts);
        for (std::int16_t i = 1; i <= 6; ++i)
            fit.minimiser.SetParameter(i, -1.2, -1.6, -10.0, 10.0);
        fit.minimiser.Minimise();
        EXPECT_EQ(fit.minimiser.HowItEnded(), End::StepsUsed);
        return fit.minimiser.NumEvaluations();
    };

    EXPECT_EQ(evaluations(0), evaluations(500));
    EXPECT_LT(evaluations(499), evaluations(500));
    EXPECT_LT(evaluations(500), evaluations(501));
}

TEST(VELT_NelMead, BeforeTheSearchNothingHasConverged)
{
    Fit fit(FloatBowl);
    fit.minimiser.Create(fit, 1);
    EXPECT_EQ(fit.minimiser.HowItEnded(), End::NotRun);
    EXPECT_FALSE(fit.minimiser.Converged());
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
}

TEST(VELT_NelMead, ASearchThatAFailureOfTheCallbackEndedHasNotRun)
{
    Fit fit(FloatBowl);
    fit.From({{700, 933}});
    ASSERT_TRUE(fit.minimiser.Converged());

    fit.surface = [](Point) -> double { RaiseOverflow(); };

    EXPECT_THROW(fit.minimiser.Minimise(), VeltError);
    EXPECT_EQ(fit.minimiser.HowItEnded(), End::NotRun);
    EXPECT_FALSE(fit.minimiser.Converged());
}

// The message for the user must never say "succeeded on" twice beside "failed to converge".
TEST(VELT_NelMead, ATestThatTheSecondLookDeniesIsReportedAsFailed)
{
    int turn = 0; // two points always look equal and every third is better: ragged at every scale
    for (const std::int32_t convergeOn : {3, 0}) {
        Recorded fit([&turn](const RecordedSurface::Point&) { return turn++ % 7 == 0 ? 1.3 : 1.0; });
        fit.From({{1.0, 2.0}}, Care::Final, convergeOn);
        ASSERT_FALSE(fit.minimiser.Converged());
        EXPECT_EQ(fit.minimiser.HowItEnded(), End::NoMinimum);
        EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
        EXPECT_EQ(fit.minimiser.ConvergedOnParameter(),
                  convergeOn == 3); // with either test the other one ended it
    }
}

// 100 - u falls by 0.02 from one simplex to the next, which meets a parameter test of 0.05 without a
// step: only their number, 10 and the first, can end the search before the limit at u = 46. Each takes at
// most ten evaluations.
TEST(VELT_NelMead, MaxItsEndsASearchThatGoesFromSlopeToSlopeToo)
{
    Recorded fit([](const RecordedSurface::Point& u) { return 100.0 - u[0]; });
    fit.minimiser.Create(fit, 1);
    fit.minimiser.XTOL(0.05F);
    fit.minimiser.ConvergeOn(0);
    fit.minimiser.MaxIts(10);
    fit.minimiser.SetParameter(1, 1.0, 1.02, 0.0, kHuge);
    fit.minimiser.Minimise();

    EXPECT_EQ(fit.minimiser.HowItEnded(), End::NoMinimum);
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_LE(fit.minimiser.NumEvaluations(), 11 * 10);
}

/// Answers that no surface gives: noise, the same every third time, ever lower, ever higher, without bottom.
/// A search that asks a hundred thousand times, two hundred for each step that it is given, has no end.
struct Unruly : INelMead {
    Unruly(int kind, RandomSource& source) : kind(kind), random(source) {}

    double INelMead_MinFunc(Point x) override
    {
        if (++asked > 100000)
            RaiseOverflow();
        for (const double xi : x)
            finite = finite && std::isfinite(xi);
        constexpr double kAnswers[] = {0.0,     -1.0,           1.0,       1.0001, 0.99975, kHuge,
                                       -3.4e38, kHigherPenalty, -INFINITY, NAN};
        switch (kind) {
        case 0:
            return kAnswers[static_cast<std::size_t>(random.Next() * std::size(kAnswers))];
        case 1:
            return kAnswers[static_cast<std::size_t>(asked % 3) * 2];
        case 2:
            return 100.0 - asked;
        case 3:
            return 100.0 + asked;
        default:
            return -1e-3 * std::pow(std::log(std::fabs(x[0]) + 1e-30), 2);
        }
    }

    int kind;
    RandomSource& random;
    int asked = 0;
    bool finite = true;
};

// Ever lower answers under wide tolerances used to keep a search for ever.
TEST(VELT_NelMead, EndsOnAnyAnswersUnderAnySettingsAndNeverAsksForWhatIsNoNumber)
{
    RandomSource random(1);
    const auto oneOf = [&random](std::initializer_list<double> list) {
        return list.begin()[static_cast<std::size_t>(random.Next() * static_cast<double>(list.size()))];
    };
    for (int search = 0; search < 5000; ++search) {
        Unruly answers(search % 5, random);
        VELT_NelMead minimiser;
        const auto parameters = static_cast<std::int16_t>(1 + search % 3);
        minimiser.Create(answers, parameters);
        minimiser.MaxIts(static_cast<std::int16_t>(oneOf({-1, 0, 1, 10, 500})));
        minimiser.XTOL(static_cast<float>(oneOf({1e-4, 0.05, 0.0, 1e30, NAN, -1.0})));
        minimiser.FTOL(static_cast<float>(oneOf({1e-7, 1.0, 0.0, 1e30, NAN, -1.0})));
        minimiser.ConvergeOn(static_cast<std::int32_t>(oneOf({0, 3})));
        minimiser.HowCarefully(oneOf({0, 1}) > 0.0 ? Care::Final : Care::Replicate);
        minimiser.VisibleRise(oneOf({0.0, 0.01, 1e-300, 1e300, INFINITY, NAN, -1.0}));
        for (std::int16_t i = 1; i <= parameters; ++i)
            minimiser.SetParameter(i, oneOf({1.0, 0.0, -1.0, 1e-310, 3e8, INFINITY}),
                                   oneOf({4.0 / 3.0, 2.0, 0.0, 1e300}), oneOf({0.0, 1e-300, -5.0, -INFINITY}),
                                   oneOf({1e20, 5.0, 1.0000001, INFINITY}));

        ASSERT_NO_THROW(minimiser.Minimise()) << search;
        EXPECT_TRUE(answers.finite) << search;
        EXPECT_FALSE(!minimiser.Converged() && minimiser.ConvergedOnFunction() &&
                     minimiser.ConvergedOnParameter())
            << search;
    }
}

TEST(VELT_NelMead, StepsThatWereUsedUpSayWhichTestsWereMet)
{
    Fit fit(Rosenbrock);
    fit.From({{-1.2, -1.6, -10, 10}, {1.0, 1.33, -10, 10}}, 3, 10);
    EXPECT_EQ(fit.minimiser.HowItEnded(), End::StepsUsed);
    EXPECT_FALSE(fit.minimiser.ConvergedOnFunction());
    EXPECT_FALSE(fit.minimiser.ConvergedOnParameter());
}
} // namespace
