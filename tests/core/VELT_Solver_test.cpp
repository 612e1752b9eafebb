// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VELT_Solver.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

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
