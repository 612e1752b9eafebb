// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/clsBootStrap.h"

#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

TEST(clsBootStrap, ValuesAreKeptInTheOrderDrawnAndInAscendingOrder)
{
    clsBootStrap boot;
    boot.BS(2, 1, 3.0F);
    boot.BS(2, 2, -1.0F);
    boot.BS(2, 3, 2.0F);

    boot.SortBS(2);

    EXPECT_EQ(boot.BS(2, 1), 3.0F);
    EXPECT_EQ(boot.BS(2, 3), 2.0F);
    EXPECT_EQ(boot.SortedBS(2, 1), -1.0F);
    EXPECT_EQ(boot.SortedBS(2, 2), 2.0F);
    EXPECT_EQ(boot.SortedBS(2, 3), 3.0F);
    EXPECT_EQ(boot.SortedBS(2, 4), std::nullopt);
}

TEST(clsBootStrap, WithOneReplicateSortedAndUnsortedStorageAreEqual)
{
    clsBootStrap boot;
    boot.BS(4, 1, 7.5F);
    boot.SortBS(4);

    EXPECT_EQ(boot.SortedBS(4, 1), boot.BS(4, 1));
    EXPECT_EQ(boot.Length(4), 1);
}

TEST(clsBootStrap, TheFirstEmptyElementEndsAColumn)
{
    clsBootStrap boot;
    boot.BS(1, 1, 2.0F);
    boot.BS(1, 2, 1.0F);
    boot.BS(1, 4, 0.0F);

    boot.SortBS(1);

    EXPECT_EQ(boot.Length(1), 2);
    EXPECT_EQ(boot.SortedBS(1, 1), 1.0F);
    EXPECT_EQ(boot.SortedBS(1, 3), std::nullopt);
    EXPECT_EQ(boot.Length(2), 0);
}

TEST(clsBootStrap, AThousandReplicatesFitAndSentinelsSortToTheEnd)
{
    const auto boot = std::make_unique<clsBootStrap>();
    for (int n = 1; n <= 1000; ++n)
        boot->BS(4, n, n == 1 ? 1e20F : static_cast<float>(1001 - n));

    boot->SortBS(4);

    EXPECT_EQ(boot->Length(4), 1000);
    EXPECT_EQ(boot->SortedBS(4, 1), 1.0F);
    EXPECT_EQ(boot->SortedBS(4, 999), 999.0F);
    EXPECT_EQ(boot->SortedBS(4, 1000), 1e20F);
}

TEST(clsBootStrap, WhatIsNoNumberGoesToTheEnd)
{
    clsBootStrap boot;
    boot.BS(2, 1, std::numeric_limits<float>::quiet_NaN());
    boot.BS(2, 2, std::numeric_limits<float>::infinity());
    boot.BS(2, 3, 1.0F);

    boot.SortBS(2);

    EXPECT_EQ(boot.SortedBS(2, 1), 1.0F);
    EXPECT_TRUE(std::isnan(*boot.SortedBS(2, 3)));
}

TEST(clsBootStrap, AnIndexOutsideRaisesNine)
{
    clsBootStrap boot;
    for (const int parameter : {0, 9})
        EXPECT_EQ(FailureOf([&] { boot.BS(parameter, 1, 1.0F); }), errors::kSubscript) << parameter;
    for (const int replicate : {0, 1001})
        EXPECT_EQ(FailureOf([&] { boot.SortedBS(2, replicate); }), errors::kSubscript) << replicate;
}
