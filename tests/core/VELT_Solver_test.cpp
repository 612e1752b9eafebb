// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_Solver.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace
{

constexpr float kLargest = std::numeric_limits<float>::max();

struct Function : ISolver {
    explicit Function(std::function<double(double)> f) : f(std::move(f)) {}
    void ISolver_Fn(float x, float& y) override
    {
        ++evaluations;
        y = static_cast<float>(f(static_cast<double>(x)));
    }
    std::function<double(double)> f;
    int evaluations = 0;
};

/// Answers from a list, the last one for ever, and keeps what it was asked.
struct Answers : ISolver {
    explicit Answers(std::vector<float> list) : values(std::move(list)) {}
    void ISolver_Fn(float x, float& y) override
    {
        y = asked.size() < values.size() ? values[asked.size()] : values.back();
        asked.push_back(x);
    }
    std::vector<float> values, asked;
};

/// Where the root is looked for fourth, after both ends and the secant, when the first three values are
/// these.
float FourthAsked(float lower, float upper, const std::vector<float>& values)
{
    Answers answers(values);
    VELT_Solver solver;
    solver.Init();
    solver.Solve(answers, lower, upper);
    return answers.asked.at(3);
}

std::uint32_t NumberRaisedByBracket(std::function<double(double)> f, float start, float factor)
{
    Function function(std::move(f));
    VELT_Solver solver;
    solver.Init();
    try {
        solver.Bracket(function, start, factor);
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}

TEST(VELT_Solver, FindsARootToTheDefaultToleranceInFewEvaluations)
{
    Function function([](double x) { return std::exp(x) - 5.0; });
    VELT_Solver solver;
    solver.Init();
    const float root = solver.Solve(function, 1.0F, 10.0F);
    EXPECT_NEAR(root, std::log(5.0), 1e-6 * std::log(5.0));
    EXPECT_LE(function.evaluations, 14);
}

TEST(VELT_Solver, KeepsTheToleranceOfTheCaller)
{
    Function coarse([](double x) { return x * x * x - 2.0; });
    Function fine([](double x) { return x * x * x - 2.0; });
    VELT_Solver solver;
    solver.Init();
    solver.Tolerance(0.1);
    EXPECT_NEAR(solver.Solve(coarse, 0.0F, 10.0F), std::cbrt(2.0), 0.1);
    solver.Init(); // back to the default
    EXPECT_NEAR(solver.Solve(fine, 0.0F, 10.0F), std::cbrt(2.0), 1.5e-6);
    EXPECT_LT(coarse.evaluations, fine.evaluations);
}

TEST(VELT_Solver, EndsAtNeighbouringFloatsWhenTheToleranceIsBeyondThem)
{
    // A step has no root: what is left is the pair of floats around it.
    Function step([](double x) { return x < 3.3 ? -1.0 : 1e-3; });
    VELT_Solver solver;
    solver.Init();
    solver.Tolerance(1e-30);
    const float root = solver.Solve(step, 1e-30F, 1e30F);
    EXPECT_NEAR(root, 3.3, 3e-7);
    EXPECT_LE(step.evaluations, 100);
}

TEST(VELT_Solver, EndsOnEverySignChangeThatIsHardForInterpolation)
{
    const std::function<double(double)> hard[] = {
        [](double x) { return std::pow(x - 0.7, 9.0); }, [](double x) { return x < 0.7 ? -1e30 : 1e-30; },
        [](double x) { return std::copysign(std::sqrt(std::fabs(x - 0.7)), x - 0.7); },
        [](double x) { return 1.0 / (x - 0.7001234); }, // a pole
        [](double x) { return std::sin(1e7 * x) + (x > 0.7 ? 2.0 : -2.0); }};
    for (const auto& f : hard) {
        Function function(f);
        VELT_Solver solver;
        solver.Init();
        EXPECT_NEAR(solver.Solve(function, -1000.0F, 4000.0F), 0.7,
                    0.15); // the ninth power is flat around its root
        EXPECT_LE(function.evaluations, 100);
    }
}

// Near 1 the floats are u = 2^-23 apart. A relative width of 1e-6 and the roundings of both ends, u together,
// are 9.39 u: neighbours nine floats apart are close enough, ten are not.
TEST(VELT_Solver, ByDefaultAMillionthOfTheRootAndTheRoundingOfItsFloatsIsCloseEnough)
{
    for (const auto& [floats, evaluations] : {std::pair{9.0, 2}, {10.0, 3}}) {
        Function function([](double x) { return x > 1.0 ? 1.0 : -1.0; });
        VELT_Solver solver;
        solver.Init();
        solver.Solve(function, 1.0F, static_cast<float>(1.0 + floats * 0x1p-23));
        EXPECT_EQ(function.evaluations, evaluations) << floats;
    }
}

TEST(VELT_Solver, TheToleranceIsTheWidthThatIsCloseEnough)
{
    for (const auto& [width, evaluations] : {std::pair{0.09F, 2}, {0.11F, 3}}) {
        Function function([](double x) { return x > 1.0 ? 1.0 : -1.0; });
        VELT_Solver solver;
        solver.Init();
        solver.Tolerance(0.1);
        solver.Solve(function, 1.0F, 1.0F + width);
        EXPECT_EQ(function.evaluations, evaluations) << width;
    }
}

// The secant from (11, 7) through (1, -3) meets zero at 4.
TEST(VELT_Solver, AStraightLineIsSolvedByOneSecant)
{
    Answers line({-3.0F, 7.0F, 0.0F});
    VELT_Solver solver;
    solver.Init();
    EXPECT_EQ(solver.Solve(line, 1.0F, 11.0F), 4.0F);
    EXPECT_EQ(line.asked, (std::vector<float>{1.0F, 11.0F, 4.0F}));
}

// x = y^2 + 3 y + 8 at y = -5/4, 1, then on the secant at 12 - 11/4, where y = sqrt(3.5) - 1.5. The parabola
// through the three meets y = 0 at 8.
TEST(VELT_Solver, AParabolaLyingOnItsSideIsSolvedByOneInverseInterpolation)
{
    Function sideways([](double x) { return std::sqrt(x - 5.75) - 1.5; });
    Answers answers({-1.25F, 1.0F, static_cast<float>(sideways.f(9.25))});
    VELT_Solver solver;
    solver.Init();
    solver.Solve(answers, 5.8125F, 12.0F);
    EXPECT_EQ(answers.asked.at(2), 9.25F);
    EXPECT_NEAR(answers.asked.at(3), 8.0, 2e-6); // the roundings of y and of x
}

// Brent's two conditions on a step, each with one that keeps it and one that does not; then the middle is
// asked for. Values -9 at 0 and 1 at 10 give the secant 9. The root x of the parabola through these and (9,
// y) is (81 - 9 y (y + 9)) / ((1 - y) (y + 9)): 10.44 / 1.96 for y = 0.8, a step of 3.7; 3.393 for y = 0.86,
// one of 5.6, more than half of the step before the last one, 10.
TEST(VELT_Solver, AStepIsAtMostHalfOfTheOneBeforeTheLast)
{
    EXPECT_NEAR(FourthAsked(0.0F, 10.0F, {-9.0F, 1.0F, 0.8F}), 10.44 / 1.96, 1e-5);
    EXPECT_EQ(FourthAsked(0.0F, 10.0F, {-9.0F, 1.0F, 0.86F}), 4.5F);
}

// Values -5/4 at 0 and 1 at 18 give the secant 10. The root x of the parabola through these and (10, y) is
// (12.5 - 12.5 y - 10 y^2) / ((1 - y) (y + 1.25)): 30/7 for y = 1/2, a step of 5.7; 70/37 for y = 0.6, one
// of 8.1, more than three quarters of the 10 that are left.
TEST(VELT_Solver, AStepIsAtMostThreeQuartersOfTheInterval)
{
    EXPECT_NEAR(FourthAsked(0.0F, 18.0F, {-1.25F, 1.0F, 0.5F}), 30.0 / 7.0, 1e-5);
    EXPECT_EQ(FourthAsked(0.0F, 18.0F, {-1.25F, 1.0F, 0.6F}), 5.0F);
}

// Equal values on both sides leave no interpolation: sixty halvings from 1e30 come down to 8.7e11, and then
// the floats between that and the lower end are halved by count.
TEST(VELT_Solver, AfterSixtyStepsTheFloatsAreHalvedByCount)
{
    std::vector<float> asked;
    Function step([&asked](double x) {
        asked.push_back(static_cast<float>(x));
        return x < 3.3 ? -1.0 : 1.0;
    });
    VELT_Solver solver;
    solver.Init();
    solver.Solve(step, 1e-30F, 1e30F);

    for (int halvings = 1; halvings <= 60; ++halvings)
        EXPECT_NEAR(asked.at(1U + static_cast<std::size_t>(halvings)) / std::ldexp(1e30, -halvings), 1.0,
                    1e-5);
    EXPECT_LT(asked.at(62), 1.0);
}

// Among the smallest numbers neighbours are further apart than any share of the root.
TEST(VELT_Solver, NoFloatIsLeftOutBetweenTheSmallestOnes)
{
    constexpr float kSmallest = std::numeric_limits<float>::denorm_min();
    Function step([](double x) { return x < 4.5 * static_cast<double>(kSmallest) ? -1.0 : 1.0; });
    VELT_Solver solver;
    solver.Init();
    EXPECT_EQ(solver.Solve(step, 4.0F * kSmallest, 6.0F * kSmallest), 5.0F * kSmallest);
    EXPECT_EQ(step.evaluations, 3);
}

TEST(VELT_Solver, AnExactZeroEndsTheSearchAtOnce)
{
    Function function([](double x) { return x - 2.0; });
    VELT_Solver solver;
    solver.Init();
    EXPECT_EQ(solver.Solve(function, 2.0F, 10.0F), 2.0F);
    EXPECT_EQ(solver.Solve(function, 1.0F, 2.0F), 2.0F);
}

TEST(VELT_Solver, TakesTheEndsInEitherOrder)
{
    Function function([](double x) { return 4.0 - x; });
    VELT_Solver solver;
    solver.Init();
    EXPECT_NEAR(solver.Solve(function, 10.0F, 1.0F), 4.0, 4e-6);
}

TEST(VELT_Solver, WithoutAChangeOfSignGivesTheBetterEnd)
{
    Function function([](double x) { return 1.0 + x * x; });
    VELT_Solver solver;
    solver.Init();
    EXPECT_EQ(solver.Solve(function, 1.0F, 2.0F), 1.0F);
    EXPECT_EQ(solver.Solve(function, -3.0F, 2.0F), 2.0F);
}

TEST(VELT_Solver, LetsAFailureOfTheCallbackPass)
{
    Function function([](double x) -> double {
        if (x > 1.5)
            RaiseOverflow();
        return x - 1.2;
    });
    VELT_Solver solver;
    solver.Init();
    EXPECT_THROW(solver.Solve(function, 1.0F, 2.0F), VeltError);
    EXPECT_THROW(solver.Bracket(function, 1.0F, 10.0F), VeltError);
}

TEST(VELT_Solver, FailsOnAValueThatIsNotANumber)
{
    Function function([](double) { return std::numeric_limits<double>::quiet_NaN(); });
    VELT_Solver solver;
    solver.Init();
    EXPECT_THROW(solver.Solve(function, 1.0F, 2.0F), VeltError);
    EXPECT_EQ(NumberRaisedByBracket(function.f, 1.0F, 10.0F), 5U);
}

TEST(VELT_Solver, BracketWidensUpwardsAndDownwards)
{
    for (const double root : {1e-7, 0.02, 1.5, 4e6, 1e30}) {
        Function function([root](double x) { return std::log(x / root); });
        VELT_Solver solver;
        solver.Init();
        solver.Bracket(function, 1.0F, 10.0F);
        EXPECT_LE(solver.Lower(), root * (1.0 + 1e-6));
        EXPECT_GE(solver.Upper(), root * (1.0 - 1e-6));
        EXPECT_LT(solver.Lower(), solver.Upper());
        EXPECT_NEAR(solver.Upper() / solver.Lower(), 10.0, 1e-4);
    }
}

TEST(VELT_Solver, BracketTakesAValueOfExactlyZeroForAChangeOfSign)
{
    // What a distribution function does far out: it is exactly 1, and never beyond.
    Function saturated([](double x) { return 1.0 - std::fmin(1.0, x / 300.0); });
    VELT_Solver solver;
    solver.Init();
    solver.Bracket(saturated, 1.0F, 10.0F);
    EXPECT_EQ(solver.Lower(), 100.0F);
    EXPECT_EQ(solver.Upper(), 1000.0F);
    EXPECT_EQ(solver.Solve(saturated, solver.Lower(), solver.Upper()), 1000.0F);
    Function atStart([](double x) { return x - 1.0; });
    solver.Bracket(atStart, 1.0F, 10.0F);
    EXPECT_EQ(solver.Solve(atStart, solver.Lower(), solver.Upper()), 1.0F);
    EXPECT_LT(solver.Lower(), solver.Upper());
}

TEST(VELT_Solver, BracketEndsAtTheLimitsOfTheFloatRangeWithOverflow)
{
    EXPECT_EQ(NumberRaisedByBracket([](double) { return 1.0; }, 1.0F, 10.0F), 6U);
    EXPECT_EQ(NumberRaisedByBracket([](double) { return -1.0; }, kLargest, 1e30F), 6U);
    EXPECT_EQ(
        NumberRaisedByBracket([](double) { return -1.0; }, std::numeric_limits<float>::denorm_min(), 2.0F),
        6U);
    // The largest float itself is still tried.
    EXPECT_EQ(NumberRaisedByBracket([](double x) { return x < 3.4e38 ? -1.0 : 1.0; }, 1.0F, 10.0F), 0U);
}

TEST(VELT_Solver, BracketRefusesAStartOrFactorThatCannotWiden)
{
    const auto f = [](double x) { return x - 3.0; };
    EXPECT_EQ(NumberRaisedByBracket(f, 0.0F, 10.0F), 5U);
    EXPECT_EQ(NumberRaisedByBracket(f, -1.0F, 10.0F), 5U);
    EXPECT_EQ(NumberRaisedByBracket(f, 1.0F, 1.0F), 5U);
    EXPECT_EQ(NumberRaisedByBracket(f, std::numeric_limits<float>::quiet_NaN(), 10.0F), 5U);
}

} // namespace
