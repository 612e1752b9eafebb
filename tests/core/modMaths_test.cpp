// SPDX-License-Identifier: GPL-3.0-or-later
// Expected values: computed with 60 decimal digits outside the program (Python's decimal module; ln Gamma and
// digamma from Stirling's series with exact Bernoulli numbers after a shift to x >= 60, the incomplete gamma
// function from its power series, erfc from its Taylor series).
#include "models/modMaths.h"

#include "base/VeltError.h"
#include "models/modGSer.h"
#include "models/modGammLn.h"
#include "models/modGcf.h"
#include "support/FailureOf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace
{

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string SourceRaisedBy(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const VeltError& error) {
        return error.source;
    }
    return "nothing raised";
}

// The series and the fraction stop at 3e-7 of the result; the Lanczos series adds 2e-10 of ln Gamma in the
// exponent.
constexpr double kIncompleteGamma = 4e-7;

TEST(GammLn, AgreesWithTheLogarithmOfGammaToTheAccuracyOfTheSeries)
{
    const double cases[][2] = {{0.25, 1.2880225246980774},  {0.5, 0.57236494292470009},
                               {1.5, -0.12078223763524522}, {5.0, 3.1780538303479456},
                               {10.25, 13.368023671476046}, {30.0, 71.257038967168009},
                               {171.5, 709.14316303092824}, {1000.0, 5905.2204232091812}};
    for (const auto& [x, expected] : cases)
        EXPECT_NEAR(modGammLn::GammLn(x), expected, 2e-10 * std::fmax(1.0, expected)) << x;
}

TEST(GammLn, IsZeroAtOneAndTwoToWithinTheAccuracyOfTheSeries)
{
    EXPECT_NEAR(modGammLn::GammLn(1.0), 0.0, 2e-10);
    EXPECT_NEAR(modGammLn::GammLn(2.0), 0.0, 2e-10);
}

TEST(GammLn, FailsOutsideItsDomainAlsoBetweenThePoles)
{
    for (const double x : {0.0, -0.5, -1.0, -1.5, -1e300, kNaN})
        EXPECT_EQ(FailureOf([x] { modGammLn::GammLn(x); }), 5U) << x;
    EXPECT_EQ(FailureOf([] { modGammLn::GammLn(1e308); }), 6U);
}

TEST(GSer, GivesTheLowerTailAndTheLogarithmOfGamma)
{
    double gln = 0.0;
    EXPECT_NEAR(modGSer::GSer(3.0, 2.5, gln), 0.45618688411667048, kIncompleteGamma);
    EXPECT_NEAR(gln, std::log(2.0), 2e-10); // Gamma(3) = 2
}

TEST(GSer, IsZeroAtZeroAndFailsBelowUnderItsOwnName)
{
    double gln = 0.0;
    EXPECT_EQ(modGSer::GSer(3.0, 0.0, gln), 0.0);
    EXPECT_EQ(SourceRaisedBy([&] { modGSer::GSer(3.0, -1e-9, gln); }), "GSER");
}

TEST(GSer, FailsUnderItsOwnNameWhenAHundredTermsDoNotSettleIt)
{
    // The terms grow as long as a + n < x: 100 of them do not reach the top at x = 500.
    double gln = 0.0;
    EXPECT_EQ(SourceRaisedBy([&] { modGSer::GSer(2.0, 500.0, gln); }), "GSER");
}

TEST(GSer, HasNoGuardAgainstSmallExponentsDeliberately)
{
    // P(2, x) = x^2 / 2 for small x: 5e-121, an exponent of -276.
    double gln = 0.0;
    EXPECT_NEAR(modGSer::GSer(2.0, 1e-60, gln) / 5e-121, 1.0, kIncompleteGamma);
}

TEST(Gcf, GivesTheUpperTail)
{
    double gln = 0.0;
    EXPECT_NEAR(modGcf::Gcf(10.0, 25.0, gln) / 0.00022147663824878358, 1.0, kIncompleteGamma);
}

TEST(Gcf, IsExactlyZeroBelowAnExponentOfMinusHundred)
{
    // Q(2, x) = (1 + x) exp(-x); the exponent -x + 2 ln x passes -100 between 109 (-99.6) and 110 (-100.6).
    double gln = 0.0;
    EXPECT_NEAR(modGcf::Gcf(2.0, 109.0, gln) / (110.0 * std::exp(-109.0)), 1.0, kIncompleteGamma);
    EXPECT_EQ(modGcf::Gcf(2.0, 110.0, gln), 0.0);
}

TEST(Gcf, FailsUnderItsOwnNameWhenAHundredRoundsDoNotSettleIt)
{
    double gln = 0.0;
    EXPECT_EQ(SourceRaisedBy([&] { modGcf::Gcf(0.5, 1e-5, gln); }), "GCF");
}

TEST(GammaQ, AgreesOnBothSidesOfTheChangeFromSeriesToFraction)
{
    const double cases[][3] = {{0.5, 0.25, 0.47950012218695346},     {3.0, 3.9375, 0.24740494925304917},
                               {3.0, 4.0, 0.23810330555354434},      {3.0, 4.0625, 0.22908782041607202},
                               {10.0, 10.9375, 0.34733183988248093}, {10.0, 11.0, 0.34051064246566105}};
    for (const auto& [a, x, expected] : cases)
        EXPECT_NEAR(modMaths::GammaQ(a, x), expected, kIncompleteGamma) << a << ' ' << x;
}

TEST(GammaQ, UsesTheFractionFromAPlusOneOn)
{
    double gln = 0.0;
    EXPECT_EQ(modMaths::GammaQ(3.0, 4.0), modGcf::Gcf(3.0, 4.0, gln));
    const double below = std::nextafter(4.0, 0.0);
    EXPECT_EQ(modMaths::GammaQ(3.0, below), 1.0 - modGSer::GSer(3.0, below, gln));
}

TEST(GammaQ, AtTwoHundredUsesTheSeriesOrTheFraction)
{
    // The normal approximation would be off by 5e-6 here.
    EXPECT_NEAR(modMaths::GammaQ(200.0, 180.0), 0.92514196501584042, kIncompleteGamma);
    EXPECT_NEAR(modMaths::GammaQ(200.0, 200.5), 0.47651823997210951, kIncompleteGamma);
    EXPECT_NEAR(modMaths::GammaQ(200.0, 230.0), 0.020331143328836235, kIncompleteGamma);
}

TEST(GammaQ, AboveTwoHundredUsesTheNormalApproximation)
{
    // Wilson and Hilferty's formula with 0.7071 and the Chebyshev fit, in 60 digits; the true values differ
    // by 5e-6, 1e-6 and 5e-6.
    EXPECT_NEAR(modMaths::GammaQ(200.5, 180.0), 0.93010271708523166, 1e-13);
    EXPECT_NEAR(modMaths::GammaQ(200.5, 200.5), 0.49060950343837912, 1e-13);
    EXPECT_NEAR(modMaths::GammaQ(200.5, 230.0), 0.022093134766003575, 1e-13);
    EXPECT_NEAR(modMaths::GammaQ(1000.0, 950.0), 0.94494425719071921, 1e-13);
}

TEST(GammaQ, FailsForNegativeOrMissingArguments)
{
    EXPECT_EQ(SourceRaisedBy([] { modMaths::GammaQ(3.0, -1.0); }), "GSER");
    EXPECT_EQ(FailureOf([] { modMaths::GammaQ(300.0, -1.0); }), 5U);
    EXPECT_EQ(FailureOf([] { modMaths::GammaQ(-1.0, 1.0); }), 5U);
    EXPECT_EQ(FailureOf([] { modMaths::GammaQ(kNaN, 1.0); }), 5U);
    EXPECT_EQ(FailureOf([] { modMaths::GammaQ(3.0, kNaN); }), 5U);
    EXPECT_NE(FailureOf([] { modMaths::GammaQ(3.0, kInfinity); }), 0U);
}

TEST(GammaP, IsZeroAtZero)
{
    for (const double a : {0.001, 1.0, 200.0})
        EXPECT_EQ(modMaths::GammaP(a, 0.0), 0.0) << a;
}

TEST(GammaP, IsTheRestOfTheUpperTail)
{
    EXPECT_NEAR(modMaths::GammaP(3.0, 2.5), 0.45618688411667048, kIncompleteGamma);
    EXPECT_NEAR(modMaths::GammaP(150.0, 100.0), 1.8842104660386700e-06, 1e-12);
}

TEST(ErfComp, IsTheTenTermFit)
{
    // The fit itself in 60 digits; it is within 1.2e-7 of the true function, of which 0.15729920705 is the
    // value at 1.
    const double cases[][2] = {{0.0, 1.00000003000000045}, {0.5, 0.4795000922767573},
                               {1.0, 0.15729921223999328}, {2.0, 0.0046777349893340418},
                               {-0.5, 1.5204999077232427}, {-2.0, 1.9953222650106660}};
    for (const auto& [x, expected] : cases)
        EXPECT_NEAR(modMaths::ErfComp(x), expected, 4e-16 * 8) << x; // a few roundings of a number near 1
    EXPECT_NEAR(modMaths::ErfComp(1.0), 0.15729920705028513, 1.2e-7 * 0.1573);
}

TEST(ErfComp, IsTwoBelowMinusNineAndZeroAboveNine)
{
    EXPECT_EQ(modMaths::ErfComp(-9.5), 2.0);
    EXPECT_EQ(modMaths::ErfComp(9.5), 0.0);
    EXPECT_NEAR(modMaths::ErfComp(9.0) / 4.1370321426351600e-37, 1.0,
                1e-13); // the fit still holds at the border
    EXPECT_EQ(modMaths::ErfComp(std::nextafter(9.0, 10.0)), 0.0);
    EXPECT_EQ(modMaths::ErfComp(-9.0), 2.0);
    EXPECT_EQ(FailureOf([] { modMaths::ErfComp(kNaN); }), 5U);
}

TEST(NormalP, TakesTheRootOfOneHalfAsFourDigitsDeliberately)
{
    // With the full root it would be 0.97500210.
    EXPECT_NEAR(modMaths::NormalP(1.96), 0.9750010085311393, 1e-15);
    EXPECT_EQ(modMaths::NormalP(-20.0), 0.0);
    EXPECT_EQ(modMaths::NormalP(20.0), 1.0);
}

TEST(Digamma, AgreesToTheAccuracyOfTheAlgorithm)
{
    // The first term left out of the asymptotic series is 1 / (240 x^8): 1.5e-10 at x = 8.5.
    const double cases[][2] = {
        {0.5, -1.9635100260214235},   {1.0, -0.57721566490153286},  {3.25, 1.0169909110681790},
        {8.4375, 2.0722578770641623}, {8.5, 2.0800908175794201},    {8.5625, 2.0878629573815584},
        {40.0, 3.6763273740348431},   {1000.0, 6.9072551956488121}, {0.00002, -50000.577182766767}};
    for (const auto& [x, expected] : cases)
        EXPECT_NEAR(modMaths::Digamma(x), expected, 1.6e-10) << x;
}

TEST(Digamma, IsThePoleAloneBelowAHundredThousandth)
{
    EXPECT_NEAR(modMaths::Digamma(0.000005), -200000.5772156649, 1e-10);
    EXPECT_NEAR(modMaths::Digamma(std::nextafter(0.00001, 0.0)), -100000.5772156649, 1e-9);
    // At the border itself the recursion: higher by pi^2 / 6 x = 1.6e-5.
    EXPECT_NEAR(modMaths::Digamma(0.00001), -100000.5771992156, 1e-9);
    EXPECT_EQ(FailureOf([] { modMaths::Digamma(0.0); }), 11U);
    EXPECT_EQ(FailureOf([] { modMaths::Digamma(kNaN); }), 5U);
}

TEST(LnMinusDigamma, AgreesOnBothSidesOfTheAsymptoticSeries)
{
    const double cases[][2] = {{0.5, 1.2703628454614782},    {1.0, 0.57721566490153286},
                               {3.25, 0.16166408527346709},  {8.4375, 0.060428179134485874},
                               {8.5, 0.059975345916850649},  {8.5625, 0.059529246206785292},
                               {40.0, 0.012552080079093177}, {1000.0, 0.00050008333332500000}};
    for (const auto& [x, expected] : cases)
        EXPECT_NEAR(modMaths::LnMinusDigamma(x), expected, 1.6e-10) << x;
}

TEST(LnMinusDigamma, IsTheSeriesItselfFromEightAndAHalfOn)
{
    EXPECT_EQ(modMaths::LnMinusDigamma(8.5), modMaths::AsymLnMinusDigamma(8.5));
    const double below = std::nextafter(8.5, 0.0);
    EXPECT_EQ(modMaths::LnMinusDigamma(below), std::log(below) - modMaths::Digamma(below));
}

TEST(LnMinusDigamma, FailsAtZeroAndBelow)
{
    EXPECT_EQ(FailureOf([] { modMaths::LnMinusDigamma(0.0); }), 5U);
    EXPECT_EQ(FailureOf([] { modMaths::LnMinusDigamma(-1.0); }), 5U);
    EXPECT_EQ(FailureOf([] { modMaths::AsymLnMinusDigamma(0.0); }), 11U);
    EXPECT_EQ(FailureOf([] { modMaths::AsymLnMinusDigamma(1e-200); }), 6U);
}

TEST(AsymLnMinusDigamma, IsTheSeriesOfFourTerms)
{
    // x = 2: 0.25 + 0.25 (1/12 - 0.25 (1/120 - 0.25 / 252)) = 0.25 + 0.25 * 0.0814980159 = 0.270374504
    EXPECT_NEAR(modMaths::AsymLnMinusDigamma(2.0), 0.27037450396825397, 1e-15);
}

TEST(Magnitude, CountsPowersOfTen)
{
    EXPECT_EQ(modMaths::Magnitude(1.0), 0);
    EXPECT_EQ(modMaths::Magnitude(9.0), 0);
    EXPECT_EQ(modMaths::Magnitude(90.0), 1);
    EXPECT_EQ(modMaths::Magnitude(1234.0), 3);
    EXPECT_EQ(modMaths::Magnitude(0.5), -1);
    EXPECT_EQ(modMaths::Magnitude(0.02), -2);
    EXPECT_EQ(modMaths::Magnitude(3e300), 300);
}

TEST(Magnitude, TestsAgainstNineDeliberately)
{
    EXPECT_EQ(modMaths::Magnitude(9.5), 1);
    EXPECT_EQ(modMaths::Magnitude(95.0), 2);
    EXPECT_EQ(modMaths::Magnitude(std::nextafter(9.0, 10.0)), 1);
}

TEST(SmallFunctions, MinOfAndMaxOfAndOnATieMaxOfReturnsTheSecond)
{
    EXPECT_EQ(modMaths::MinOf(1.0, 2.0), 1.0);
    EXPECT_EQ(modMaths::MinOf(2.0, 1.0), 1.0);
    EXPECT_EQ(modMaths::MaxOf(1.0, 2.0), 2.0);
    EXPECT_EQ(modMaths::MaxOf(2.0, 1.0), 2.0);
    EXPECT_TRUE(std::signbit(modMaths::MaxOf(0.0, -0.0))); // equal, and told apart by the sign
    EXPECT_FALSE(std::signbit(modMaths::MaxOf(-0.0, 0.0)));
}

TEST(SmallFunctions, SquareAndPowerFailOnOverflowAndOutsideTheDomain)
{
    EXPECT_EQ(modMaths::Square(-3.0), 9.0);
    EXPECT_EQ(FailureOf([] { modMaths::Square(1e200); }), 6U);
    EXPECT_EQ(modMaths::Power(2.0, 10.0), 1024.0);
    EXPECT_EQ(FailureOf([] { modMaths::Power(-2.0, 0.5); }), 5U);
    EXPECT_EQ(FailureOf([] { modMaths::Power(10.0, 400.0); }), 6U);
}

} // namespace
