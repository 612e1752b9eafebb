// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/modGcf.h"

#include "base/Checked.h"
#include "models/modGammLn.h"

namespace
{
constexpr int kMostRounds = 100;
constexpr double kTolerance = 3E-07;
constexpr double kSmallestExponent = -100.0;
} // namespace

namespace modGcf
{

double Gcf(double a, double x, double& gln)
{
    gln = modGammLn::GammLn(a);
    double gold = 0.0, a0 = 1.0, a1 = x, b0 = 0.0, b1 = 1.0, fac = 1.0;
    for (int n = 1; n <= kMostRounds; ++n) {
        const double ana = n - a;
        a0 = (a1 + a0 * ana) * fac;
        b0 = (b1 + b0 * ana) * fac;
        const double anf = n * fac;
        a1 = checked::Finite(x * a0 + anf * a1);
        b1 = checked::Finite(x * b0 + anf * b1);
        if (a1 == 0.0)
            continue;
        fac = 1.0 / a1;
        const double g = b1 * fac;
        if (std::fabs(checked::Div(g - gold, g)) < kTolerance) {
            const double exponent = -x + a * checked::Ln(x) - gln;
            return exponent < kSmallestExponent ? 0.0 : checked::Finite(checked::Exp(exponent) * g);
        }
        gold = g;
    }
    throw VeltError(errors::kInvalidArgument, "Invalid procedure call or argument", "GCF");
}

} // namespace modGcf
