// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/MethodCommon.h"

#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

namespace
{
/// A search that arrives at the floor of its bowl, or on the one value of a plateau.
struct Arrived : INelMead {
    explicit Arrived(double curvature) : m_curvature(curvature)
    {
        minimiser.Create(*this, 1);
        minimiser.SetParameter(1, 2.0, 3.0, 0.1, 10.0);
        minimiser.Minimise();
        EXPECT_TRUE(minimiser.Converged());
    }
    double INelMead_MinFunc(std::span<const double> x) override
    {
        return 1e10 + m_curvature * (x[0] - 1.0) * (x[0] - 1.0);
    }

    VELT_NelMead minimiser;

private:
    double m_curvature;
};

std::string TextOf(const Arrived& search, bool someValue)
{
    Bench bench;
    modVeltGlobals::CacheStrings(bench.run.globals);
    return ConvergenceText(search.minimiser, someValue, bench.run.globals);
}
} // namespace

TEST(ConvergenceText, TellsBothTestsOfASearchThatMetTheDomain)
{
    EXPECT_EQ(TextOf(Arrived(1e10), true),
              "Minimisation succeeded on function.\nMinimisation succeeded on parameter.");
}

// Values that agree because none of them is one of the model's mean nothing.
TEST(ConvergenceText, WithoutAValueInsideTheDomainTheFunctionIsToldAsFailed)
{
    EXPECT_EQ(TextOf(Arrived(0.0), false),
              "Minimisation failed on function.\nMinimisation succeeded on parameter.");
}
