// SPDX-License-Identifier: GPL-3.0-or-later
// What the depletion models of one searched stock have in common at the end of its range.
#pragma once

#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace limit_of_search
{
/// The objective beyond 1e20 is 3.4e38 to the bit, under both error models that search.
template <typename Model>
void ExpectThePenaltyBeyond(const TableBuilder& table)
{
    ModelBench<Model> bench(table);
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const auto far = static_cast<float>(bench.model.Objective(std::array{1.1e20}));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(far), 0x7F7FC99EU);
    }
}

/// The limit as a float is a little more than 1e20, and is inside itself: its trajectory runs, and that of
/// the next float does not.
template <typename Model>
void ExpectTheLimitInside(const TableBuilder& table)
{
    const double limit = static_cast<double>(1e20F);
    const double next = static_cast<double>(std::nextafter(1e20F, 1e30F));
    ASSERT_GT(limit, 1e20);
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        ModelBench<Model> bench(table);
        ASSERT_TRUE(bench.Start(fitOp, 0.2));
        const float before = bench.model.Nt(1);
        EXPECT_EQ(bench.model.Objective(std::array{next}), static_cast<double>(3.4E+38F));
        EXPECT_EQ(bench.model.Nt(1), before);                              // no trajectory was run
        EXPECT_LE(bench.model.INelMead_MinFunc(std::array{limit}), limit); // the penalty is the limit
        EXPECT_EQ(bench.model.Nt(1), 1e20F);
    }
}
} // namespace limit_of_search
