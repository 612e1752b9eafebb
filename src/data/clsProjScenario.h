// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Array1.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

/// What `Vector` of a scenario holds (`VecType`).
namespace vec_type
{
inline constexpr std::int32_t kEffort = 0;
inline constexpr std::int32_t kTotCatchWt = 1;
inline constexpr std::int32_t kTotCatchNums = 2;
} // namespace vec_type

/// What happens in each future period of a projection, and the population that the last projection gave. It
/// does not project.
///
/// Index i is row i of the data set; one outside 1 to 201 raises 9.
class clsProjScenario
{
public:
    static constexpr int kPoints = 201;
    /// Periods of the data and future ones together: the state behind the last has the 200th place of a
    /// series.
    static constexpr int kMostPeriods = 199;
    static constexpr std::size_t kTitleWidth =
        30; ///< characters by which titles differ, and that a save keeps

    std::int32_t VecType() const { return m_vecType; }
    void VecType(std::int32_t type) { m_vecType = type; }

    /// Numbers for models that count fish, biomass for the production models.
    float PopTraj(int i) const { return m_popTraj(i); }
    void PopTraj(int i, float population) { m_popTraj(i) = population; }
    /// Keeps the trajectory that a projection gave: `population` of period 1 first. \throws VeltError 9 for
    /// more than 201
    void CalcPopTraj(std::span<const float> population);

    std::int32_t Vector(int i) const { return m_vector(i); }
    /// Kept as a whole number, ties to even: 12.75 becomes 13, and that is what is projected. Deliberate.
    /// \throws VeltError 6 when it does not fit 32 bits; the element is then as it was.
    void Vector(int i, double value);

    /// Whether element i stands as a 16-bit number in the project file, as one does that was never set.
    bool IsShort(int i) const { return m_short(i); }
    /// An element as the project file has it. \throws VeltError 6 as above
    void Stored(int i, double value, bool isShort);

    const std::string& Title() const { return m_title; }
    void Title(std::string title) { m_title = std::move(title); }

private:
    std::int32_t m_vecType = vec_type::kEffort;
    Array1<float, kPoints> m_popTraj;
    Array1<std::int32_t, kPoints> m_vector;
    Array1<bool, kPoints> m_short{true};
    std::string m_title;
};
