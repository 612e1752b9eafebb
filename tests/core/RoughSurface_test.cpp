// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/RoughSurface.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>

namespace
{
using rough_surface::FindMinimum;
using rough_surface::Shape;

constexpr double kPenalty = 1e20;
constexpr double kNoise = 8e-6;

/// A number from -1 to 1 that hangs on every bit of its arguments (the mixer of splitmix64).
double Hash(double a, double b)
{
    std::uint64_t x = std::bit_cast<std::uint64_t>(a) * 31 + std::bit_cast<std::uint64_t>(b);
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return static_cast<double>((x ^ (x >> 31)) >> 11) * 0x1p-52 - 1.0;
}

/// A valley 0.0001 wide and 0.02 long that bends away from the straight line; its lowest place is at (0.02,
/// s) with s on the floor.
double FloorOf(double u1)
{
    return -1.7 * u1 + 0.6 * u1 * u1;
}

double BentValley(double u1, double u2)
{
    const double across = u2 - FloorOf(u1);
    return 0.002 + 5e3 * across * across + 0.3 * (u1 - 0.02) * (u1 - 0.02) + kNoise * Hash(u1, u2);
}

TEST(RoughSurface, FollowsABentValleyToItsLowestPlace)
{
    const auto [shape, level, minimum] = FindMinimum(2, BentValley(0.0, 0.0), kNoise, kPenalty, BentValley);

    ASSERT_EQ(shape, Shape::Bowl);
    EXPECT_NEAR(level, 0.002 + 0.3 * 0.02 * 0.02,
                kNoise); // of the valley's side at the point, noise averaged
    // A parabola whose ends rise by 25 deviations places its minimum to a twelfth of its half width, 0.03.
    EXPECT_NEAR(minimum.u1, 0.02, 0.0025);
    EXPECT_NEAR(minimum.u2, FloorOf(minimum.u1), 5e-5); // 5e3 (5e-5)^2 is the noise
}

TEST(RoughSurface, FindsTheMinimumOfOneParameterBehindTheNoise)
{
    const auto parabola = [](double u, double) {
        return 1.0 + 2.0 * (u - 0.004) * (u - 0.004) + kNoise * Hash(u, 0);
    };

    const auto [shape, level, minimum] = FindMinimum(1, parabola(0.0, 0.0), kNoise, kPenalty, parabola);

    ASSERT_EQ(shape, Shape::Bowl);
    EXPECT_NEAR(level, 1.0 + 2.0 * 0.004 * 0.004, kNoise);
    EXPECT_NEAR(minimum.u1, 0.004, 0.001); // half width sqrt(25 kNoise / 2) = 0.01, a tenth of it
}

TEST(RoughSurface, ASurfaceOfNoiseAloneIsFlat)
{
    const auto noise = [](double u1, double u2) { return 1.0 + kNoise * Hash(u1, u2); };

    EXPECT_EQ(FindMinimum(1, 1.0, kNoise, kPenalty, noise).shape, Shape::Flat);
    EXPECT_EQ(FindMinimum(2, 1.0, kNoise, kPenalty, noise).shape, Shape::Flat);
}

TEST(RoughSurface, NothingIsKnownBesideAPenalty)
{
    const auto edge = [](double u1, double u2) { return u1 < -1e-12 ? kPenalty : 1.0 + u1 * u1 + u2 * u2; };

    EXPECT_EQ(FindMinimum(2, 1.0, kNoise, kPenalty, edge).shape, Shape::Flat);
    EXPECT_EQ(FindMinimum(1, 1.0, kNoise, kPenalty, edge).shape, Shape::Flat);
}

TEST(RoughSurface, ASurfaceThatRisesWithoutAnyParabolaIsRagged)
{
    // Jumps of 0.3 everywhere but at the point itself: they do not shrink with the step.
    const auto ragged = [](double u1, double u2) {
        return u1 == 0.0 && u2 == 0.0 ? 1.0 : 1.0 + 0.3 * std::fabs(Hash(u1, u2));
    };

    EXPECT_EQ(FindMinimum(2, 1.0, kNoise, kPenalty, ragged).shape, Shape::Ragged);
}
} // namespace
