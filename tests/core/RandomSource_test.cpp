// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/RandomSource.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace
{

// The upper 53 bits of the first numbers of the published generator. They were computed apart from this
// program, in Python's integers, from the published description; the state 1, 2, 3, 4 begins with 41943041,
// 58720359, 3588806011781223.
TEST(RandomSource, FollowsThePublishedSequenceFromTheState1234)
{
    RandomSource source;
    for (const std::uint64_t word : {41943041ULL, 58720359ULL, 3588806011781223ULL, 3591011842654386ULL,
                                     9228616714210784205ULL, 9973669472204895162ULL})
        EXPECT_EQ(source.Next(), static_cast<double>(word >> 11) / 9007199254740992.0);
}

TEST(RandomSource, SpreadsASeedAsPublished)
{
    RandomSource source(1234567);
    for (const std::uint64_t upperBits : {213425690749621ULL, 3968340339836159ULL, 8851889813974390ULL,
                                          124387988190197ULL, 2934980257850802ULL})
        EXPECT_EQ(source.Next(), static_cast<double>(upperBits) / 9007199254740992.0);
}

TEST(RandomSource, TheSameSeedGivesTheSameSequenceAlsoAfterRandomize)
{
    RandomSource one(7), two(7), other(8);
    const double first = one.Next();
    EXPECT_EQ(two.Next(), first);
    EXPECT_NE(other.Next(), first);
    one.Next();
    one.Randomize();
    EXPECT_EQ(one.Next(), first);
}

TEST(RandomSource, WithoutASeedRandomizeTakesTheClock)
{
    RandomSource fresh, randomized;
    randomized.Randomize();
    EXPECT_NE(fresh.Next(), randomized.Next()); // equal once in 2^53 runs
}

TEST(RandomSource, StaysOnTheHalfOpenUnitIntervalAndFillsItEvenly)
{
    RandomSource source(1);
    int tenths[10] = {};
    for (int i = 0; i < 100000; ++i) {
        const double u = source.Next();
        ASSERT_GE(u, 0.0);
        ASSERT_LT(u, 1.0);
        ++tenths[static_cast<int>(u * 10.0)];
    }
    for (const int count : tenths)
        EXPECT_NEAR(count, 10000, 475); // five binomial deviations of 95
}

} // namespace
