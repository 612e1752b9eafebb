// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/NewDataSet.h"

#include "data/clsVeltData.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

namespace
{
const std::string kIllegal = "Illegal Range Specified for Time Period";

bool IsPeriod(const char* typed)
{
    return std::holds_alternative<std::int32_t>(ReadTimePeriod(typed));
}
} // namespace

TEST(NewDataSet, ATimePeriodIsAWholeNumberAboveZero)
{
    EXPECT_EQ(ReadTimePeriod("1990"), Reading<std::int32_t>(1990));
    EXPECT_EQ(ReadTimePeriod("1"), Reading<std::int32_t>(1));
    EXPECT_EQ(ReadTimePeriod("2147483647"), Reading<std::int32_t>(2147483647));
    for (const char* typed : {"", "0", "-1", "1.5", "abc", "1 9", "2147483648", "1e300", "nan"}) {
        EXPECT_FALSE(IsPeriod(typed)) << typed;
        EXPECT_EQ(std::get<std::string>(ReadTimePeriod(typed)), "Time Period must be a positive integer");
    }
}

TEST(NewDataSet, MinAndMaxOfOneGiveATableOfOneRow)
{
    EXPECT_FALSE(RefusalOfRange("1", "1"));
    Bench bench;
    clsVeltData data(bench.run);
    Begin(data, {.FileDescription = "Ling", .MinTimeP = 1, .MaxTimeP = 1, .columns = {4, 7}});
    EXPECT_EQ(data.TimeInts(), 1);
    EXPECT_EQ(data.ShownRows(), 1);
    EXPECT_EQ(data.DSDesc(), "Ling");
    EXPECT_EQ(data.NAPoints(), 1);
    EXPECT_EQ(data.OrigNAPoints(), 1);
    EXPECT_TRUE(data.ColPresent(4) && data.ColPresent(7) && !data.ColPresent(1));
    EXPECT_EQ(data.DB(4, 1), -1.0F);
    EXPECT_TRUE(data.IsDirty());
}

TEST(NewDataSet, TheLimitsAreComparedAsTextsSoThat5To10And99To100AreRefused) // deliberate
{
    EXPECT_EQ(RefusalOfRange("5", "10"), kIllegal);
    EXPECT_EQ(RefusalOfRange("99", "100"), kIllegal);
    EXPECT_FALSE(RefusalOfRange("1", "10"));
    EXPECT_FALSE(RefusalOfRange("1990", "1999"));
}

TEST(NewDataSet, ADifferenceOf200PassesAndMakes201PeriodsFor200Rows) // deliberate
{
    EXPECT_FALSE(RefusalOfRange("1", "201"));
    EXPECT_EQ(RefusalOfRange("1", "202"), kIllegal);
    Bench bench;
    clsVeltData data(bench.run);
    Begin(data, {.FileDescription = "", .MinTimeP = 1, .MaxTimeP = 201, .columns = {4}});
    EXPECT_EQ(data.TimeInts(), 201);
    EXPECT_EQ(data.ShownRows(), 200);
    EXPECT_EQ(data.NAPoints(), 200);
}

TEST(NewDataSet, ARangeThatRunsBackwardsIsRefusedAlsoWhereItsTextsDoNot)
{
    EXPECT_EQ(RefusalOfRange("100", "99"), kIllegal); // "100" sorts before "99"
    EXPECT_EQ(RefusalOfRange("1000", "9"), kIllegal);
    EXPECT_EQ(RefusalOfRange("2000", "1999"), kIllegal);
}

TEST(NewDataSet, BlanksAroundALimitDoNotCount)
{
    EXPECT_FALSE(RefusalOfRange(" 1990", "1999 "));
}
