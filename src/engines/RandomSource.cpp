// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/RandomSource.h"

#include <bit>
#include <chrono>

RandomSource::RandomSource(std::uint64_t seed) : m_fixedSeed(seed)
{
    Seed(seed);
}

void RandomSource::Randomize()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    Seed(m_fixedSeed.value_or(
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count())));
}

double RandomSource::Next()
{
    std::uint64_t(&s)[4] = m_state;
    const std::uint64_t result = std::rotl(s[0] + s[3], 23) + s[0];
    const std::uint64_t shifted = s[1] << 17;
    s[2] ^= s[0];
    s[3] ^= s[1];
    s[1] ^= s[2];
    s[0] ^= s[3];
    s[2] ^= shifted;
    s[3] = std::rotl(s[3], 45);
    // The upper 53 bits, as many as a double keeps: every value on [0, 1) is exact.
    return static_cast<double>(result >> 11) * 0x1p-53;
}

// splitmix64 (Steele, Lea and Flood 2014) spreads a small seed over the whole state.
void RandomSource::Seed(std::uint64_t seed)
{
    for (std::uint64_t& word : m_state) {
        seed += 0x9e3779b97f4a7c15U;
        std::uint64_t z = seed;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
        word = z ^ (z >> 31);
    }
}
