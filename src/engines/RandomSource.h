// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"

#include <cstdint>
#include <optional>

/// Uniform numbers on [0, 1) from a generator whose sequence is the same on every system (xoshiro256++,
/// Blackman and Vigna 2019, seeded by splitmix64). Given a seed, Randomize starts the same sequence again
/// each time; without one it takes the clock.
class RandomSource : public IRandomSource
{
public:
    RandomSource() = default;
    explicit RandomSource(std::uint64_t seed);
    void Randomize() override;
    double Next() override;

private:
    void Seed(std::uint64_t seed);
    std::optional<std::uint64_t> m_fixedSeed;
    std::uint64_t m_state[4] = {1, 2, 3, 4};
};
