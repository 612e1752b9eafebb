// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/modGSer.h"

#include "base/Checked.h"
#include "models/modGammLn.h"

namespace
{
constexpr int kMostTerms = 100;
constexpr double kTolerance = 3E-07;

[[noreturn]] void RaiseFromSeries()
{
    throw VeltError(errors::kInvalidArgument, "Invalid procedure call or argument", "GSER");
}
} // namespace

namespace modGSer
{

double GSer(double a, double x, double& gln)
{
    gln = modGammLn::GammLn(a);
    if (x <= 0.0) {
        if (x < 0.0)
            RaiseFromSeries();
        return 0.0;
    }
    double ap = a;
    double sum = 1.0 / a;
    double del = sum;
    for (int n = 1; n <= kMostTerms; ++n) {
        ap += 1.0;
        del *= x / ap;
        sum += del;
        if (std::fabs(del) < std::fabs(sum) * kTolerance)
            return checked::Finite(sum * checked::Exp(-x + a * std::log(x) - gln));
    }
    RaiseFromSeries();
}

} // namespace modGSer
