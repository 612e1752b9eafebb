// SPDX-License-Identifier: GPL-3.0-or-later
#include "engines/VariantSorter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{

TEST(VariantSorter, SortsAscending)
{
    std::vector<float> values{3.0F, -1.0F, 1e20F, 0.0F, 3.0F, -2.5F};
    VariantSorter().Sort(values);
    EXPECT_EQ(values, (std::vector<float>{-2.5F, -1.0F, 0.0F, 3.0F, 3.0F, 1e20F}));
}

TEST(VariantSorter, PutsNotANumberToTheEnd)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    std::vector<float> values{nan, 2.0F, infinity, nan, -infinity, 1.0F};
    VariantSorter().Sort(values);
    EXPECT_EQ(std::vector<float>(values.begin(), values.begin() + 4),
              (std::vector<float>{-infinity, 1.0F, 2.0F, infinity}));
    EXPECT_TRUE(std::isnan(values[4]) && std::isnan(values[5]));
}

TEST(VariantSorter, LeavesNothingAndOneAsTheyAre)
{
    std::vector<float> nothing;
    VariantSorter().Sort(nothing);
    EXPECT_TRUE(nothing.empty());
    std::vector<float> one{4.0F};
    VariantSorter().Sort(one);
    EXPECT_EQ(one, std::vector<float>{4.0F});
}

} // namespace
