// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsProjScenario.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace
{
std::uint32_t NumberOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}
} // namespace

TEST(ProjScenario, ANewOneIsAnEffortOfZeroWithoutTitleOrTrajectory)
{
    const clsProjScenario scenario;
    EXPECT_EQ(scenario.VecType(), 0);
    EXPECT_EQ(scenario.Title(), "");
    for (int i = 1; i <= 201; ++i) {
        ASSERT_EQ(scenario.Vector(i), 0);
        ASSERT_EQ(scenario.PopTraj(i), 0.0F);
    }
}

TEST(ProjScenario, AValueEnteredAs12Point75IsRoundedTo13) // deliberate
{
    clsProjScenario scenario;
    scenario.Vector(1, 12.75);
    EXPECT_EQ(scenario.Vector(1), 13);
}

TEST(ProjScenario, AHalfGoesToTheEvenNeighbour)
{
    clsProjScenario scenario;
    for (const auto& [typed, kept] :
         {std::pair{0.5, 0}, {1.5, 2}, {2.5, 2}, {3.5, 4}, {-0.5, 0}, {-1.5, -2}, {-2.5, -2}}) {
        scenario.Vector(7, typed);
        EXPECT_EQ(scenario.Vector(7), kept) << typed;
    }
}

TEST(ProjScenario, ValuesUpToTheEndsOf32BitsAreKeptAndOnesBeyondChangeNothing)
{
    clsProjScenario scenario;
    scenario.Vector(1, 2147483647.0);
    EXPECT_EQ(scenario.Vector(1), std::numeric_limits<std::int32_t>::max());
    scenario.Vector(2, -2147483648.0);
    EXPECT_EQ(scenario.Vector(2), std::numeric_limits<std::int32_t>::min());
    for (const double beyond : {2147483648.0, -2147483649.0, std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(NumberOf([&] { scenario.Vector(1, beyond); }), 6U) << beyond;
    EXPECT_EQ(scenario.Vector(1), std::numeric_limits<std::int32_t>::max());
}

TEST(ProjScenario, AnIndexOutside1To201RaisesSubscriptOutOfRange)
{
    clsProjScenario scenario;
    for (const int i : {0, 202, -1}) {
        EXPECT_EQ(NumberOf([&] { scenario.Vector(i); }), 9U);
        EXPECT_EQ(NumberOf([&] { scenario.Vector(i, 1.0); }), 9U);
        EXPECT_EQ(NumberOf([&] { scenario.PopTraj(i); }), 9U);
        EXPECT_EQ(NumberOf([&] { scenario.PopTraj(i, 1.0F); }), 9U);
    }
}

TEST(ProjScenario, TheLastPointIs201)
{
    clsProjScenario scenario;
    scenario.Vector(201, 8.0);
    scenario.PopTraj(201, 0.25F);
    EXPECT_EQ(scenario.Vector(201), 8);
    EXPECT_EQ(scenario.PopTraj(201), 0.25F);
    EXPECT_EQ(scenario.Vector(200), 0);
    EXPECT_EQ(scenario.PopTraj(200), 0.0F);
}

TEST(ProjScenario, TitleAndKindOfValuesAreKeptAsGiven)
{
    clsProjScenario scenario;
    scenario.Title("Half the effort of the year before last");
    scenario.VecType(vec_type::kTotCatchNums);
    EXPECT_EQ(scenario.Title(), "Half the effort of the year before last");
    EXPECT_EQ(scenario.VecType(), 2);
}
