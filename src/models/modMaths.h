// SPDX-License-Identifier: GPL-3.0-or-later
// Special functions and small numeric functions of the models. The classical algorithms are kept in exactly
// this form, with these constants: bootstrap results depend on where each method takes over.
#pragma once

#include "base/Checked.h"

#include <cstdint>

namespace modMaths
{

double GammaQ(double a, double x); ///< upper tail Q(a, x); Wilson-Hilferty 1931 above a = 200
double GammaP(double a, double x); ///< 1 - GammaQ(a, x)
double NormalP(double z);          ///< standard normal distribution function, with root 1/2 taken as 0.7071
double ErfComp(double x);          ///< complementary error function, ten-term Chebyshev fit
double Digamma(double x);          ///< algorithm AS 103 (Bernardo 1976)

inline constexpr double kAsymptotic = 8.5; ///< from here on the asymptotic series of digamma

// In sight of the compiler, since a root search for the gamma shape asks for little else.

/// Asymptotic series of ln(x) - digamma(x). \throws VeltError 11 for 0
inline double AsymLnMinusDigamma(double x)
{
    const double reciprocal = checked::Div(1.0, x);
    const double y = reciprocal * reciprocal;
    return checked::Finite(0.5 * reciprocal + y * (1.0 / 12.0 - y * (1.0 / 120.0 - y * (1.0 / 252.0))));
}

/// ln(x) - digamma(x)
inline double LnMinusDigamma(double x)
{
    return x < kAsymptotic ? checked::Ln(x) - Digamma(x) : AsymLnMinusDigamma(x);
}

/// Decimal exponent of x > 0. Deliberate: the upper branch tests against 9, so 9.5 gives 1. Does not end for
/// x = 0 or below; callers must not pass those.
std::int16_t Magnitude(double x);

double MinOf(double a, double b);
double MaxOf(double a, double b); ///< on a tie b
double Square(double x);
double Power(double a, double b); ///< \throws VeltError 5, 6 outside the domain

} // namespace modMaths
