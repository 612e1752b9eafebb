// SPDX-License-Identifier: GPL-3.0-or-later
// Arithmetic that fails at the operation that fails: overflow raises 6, a logarithm or root outside its
// domain 5, a division by zero 11. Expressions are evaluated in 64 bits and rounded where a 32-bit value is
// stored; ToFloat is that place.
#pragma once

#include "base/VeltError.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace checked
{

/// `x` rounded to 32 bits. \throws VeltError 6 when it does not fit, 5 when it is not a number.
inline float ToFloat(double x)
{
    constexpr double kLargest = std::numeric_limits<float>::max();
    if (std::fabs(x) <= kLargest) [[likely]]
        return static_cast<float>(x);
    if (std::isnan(x))
        RaiseInvalidArgument();
    // The last half unit above the largest float still rounds down to it.
    if (std::fabs(x) < 3.4028235677973366e38)
        return std::copysign(std::numeric_limits<float>::max(), x > 0 ? 1.0F : -1.0F);
    RaiseOverflow();
}

/// `x` itself. \throws VeltError 6 when it is infinite, 5 when it is not a number.
inline double Finite(double x)
{
    if (std::isfinite(x)) [[likely]]
        return x;
    if (std::isnan(x))
        RaiseInvalidArgument();
    RaiseOverflow();
}

/// a / b. \throws VeltError 11 when b is 0, 6 on overflow.
inline double Div(double a, double b)
{
    if (b == 0.0) [[unlikely]]
        RaiseDivisionByZero();
    return Finite(a / b);
}

/// Natural logarithm. \throws VeltError 5 when x is not above 0.
inline double Ln(double x)
{
    if (!(x > 0.0)) [[unlikely]]
        RaiseInvalidArgument();
    return std::log(x);
}

/// e to the power x. \throws VeltError 6 on overflow.
inline double Exp(double x)
{
    return Finite(std::exp(x));
}

/// Square root. \throws VeltError 5 when x is below 0.
inline double Sqrt(double x)
{
    if (!(x >= 0.0)) [[unlikely]]
        RaiseInvalidArgument();
    return std::sqrt(x);
}

/// a to the power b. \throws VeltError 5 outside the domain, 6 on overflow.
inline double Pow(double a, double b)
{
    if (a < 0.0 && b != std::floor(b))
        RaiseInvalidArgument();
    if (a == 0.0 && b < 0.0)
        RaiseInvalidArgument();
    return Finite(std::pow(a, b));
}

/// `x` rounded to a whole number of 16 bits, ties to even. \throws VeltError 6 when it does not fit.
std::int16_t ToInt16(double x);

/// `x` rounded to a whole number of 32 bits, ties to even. \throws VeltError 6 when it does not fit.
std::int32_t ToInt32(double x);

} // namespace checked
