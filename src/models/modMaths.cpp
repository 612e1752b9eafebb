// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/modMaths.h"

#include "base/Checked.h"
#include "models/modGSer.h"
#include "models/modGcf.h"

namespace
{

constexpr double kLargestSeriesShape = 200.0; // above it the normal approximation

double WilsonHilfertyTail(double a, double x)
{
    const double variance = 0.1111111111111111 / a;
    const double z = (checked::Pow(x / a, 1.0 / 3.0) - 1.0 + variance) / std::sqrt(variance);
    return 1.0 - modMaths::NormalP(z);
}

} // namespace

namespace modMaths
{

double GammaQ(double a, double x)
{
    if (a > kLargestSeriesShape)
        return WilsonHilfertyTail(a, x);
    double gln = 0.0;
    if (x < a + 1.0)
        return 1.0 - modGSer::GSer(a, x, gln);
    return modGcf::Gcf(a, x, gln);
}

double GammaP(double a, double x)
{
    return 1.0 - GammaQ(a, x);
}

double NormalP(double z)
{
    return 1.0 - ErfComp(0.7071 * z) / 2.0;
}

double ErfComp(double x)
{
    if (x < -9.0)
        return 2.0;
    if (x > 9.0)
        return 0.0;
    const double y = std::fabs(x);
    const double t = 1.0 / (1.0 + 0.5 * y);
    const double fit =
        -y * y - 1.26551223 +
        t * (1.00002368 +
             t * (0.37409196 +
                  t * (0.09678418 + t * (-0.18628806 +
                                         t * (0.27886807 + t * (-1.13520398 +
                                                                t * (1.48851587 + t * (-0.82215223 +
                                                                                       t * 0.17087277))))))));
    const double ans = checked::Finite(t * std::exp(fit));
    return x >= 0.0 ? ans : 2.0 - ans;
}

double Digamma(double x)
{
    if (x < 0.00001)
        return checked::Finite(-0.5772156649 - checked::Div(1.0, x));
    double r = 0.0;
    while (x < kAsymptotic) {
        r -= 1.0 / x;
        x += 1.0;
    }
    return checked::Finite(r + std::log(x) - AsymLnMinusDigamma(x));
}

std::int16_t Magnitude(double x)
{
    std::int16_t count = 0;
    if (x < 1.0) {
        while (x < 1.0) {
            x *= 10.0;
            --count;
        }
    } else {
        while (x > 9.0) {
            x /= 10.0;
            ++count;
        }
    }
    return count;
}

double MinOf(double a, double b)
{
    return a < b ? a : b;
}

double MaxOf(double a, double b)
{
    return a > b ? a : b;
}

double Square(double x)
{
    return checked::Finite(x * x);
}

double Power(double a, double b)
{
    return checked::Pow(a, b);
}

} // namespace modMaths
