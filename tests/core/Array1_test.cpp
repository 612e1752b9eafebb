// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Array1.h"

#include <gtest/gtest.h>

TEST(Array1, CountsFromOneToItsSize)
{
    Array1<float, 3> series;
    series(1) = 10.0F;
    series(3) = 30.0F;

    EXPECT_EQ(series(1), 10.0F);
    EXPECT_EQ(series(2), 0.0F);
    EXPECT_EQ(series.All()[2], 30.0F);
    EXPECT_EQ(series.Size(), 3);
}

TEST(Array1, AnIndexOutsideRaisesSubscriptOutOfRange)
{
    const Array1<int, 200> series(7);

    EXPECT_EQ(series(200), 7);
    for (const std::ptrdiff_t outside : {std::ptrdiff_t{0}, std::ptrdiff_t{-1}, std::ptrdiff_t{201}}) {
        try {
            series(outside);
            FAIL() << outside;
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, 9U);
            EXPECT_EQ(error.description, "Subscript out of range");
        }
    }
}

TEST(Array1, ComparesByItsItems)
{
    Array1<int, 2> a(1);
    const Array1<int, 2> b(1);
    EXPECT_EQ(a, b);
    a(2) = 2;
    EXPECT_NE(a, b);
    a.Fill(1);
    EXPECT_EQ(a, b);
}
