// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsVeltData.h"

#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

namespace
{
using namespace columns;

class ColumnConversions : public testing::Test
{
protected:
    void Put(int column, std::initializer_list<float> values)
    {
        data.ColPresent(column, true);
        int row = 1;
        for (const float value : values)
            data.DB(column, row++, value);
    }
    void Expect(int column, std::initializer_list<float> values)
    {
        EXPECT_TRUE(data.ColPresent(column)) << "column " << column;
        int row = 1;
        for (const float value : values)
            EXPECT_EQ(data.DB(column, row++), value) << "column " << column << ", row " << row - 1;
    }
    std::uint32_t Failure()
    {
        try {
            data.DoColumnConversions();
        } catch (const VeltError& error) {
            sentence = error.description;
            return error.number;
        }
        return 0;
    }

    Bench bench;
    clsVeltData data{bench.run};
    std::string sentence;
};
} // namespace

TEST_F(ColumnConversions, AnIndexIsACatchTakenWithOneUnitOfEffort)
{
    Put(AbundIndex, {2.5F, -1.0F, 0.0F});
    data.DoColumnConversions();
    Expect(CatchWt, {2.5F, -1.0F, 0.0F});
    Expect(Effort, {1.0F, -1.0F, 1.0F});
    EXPECT_EQ(data.NNtPoints(), 2);
}

TEST_F(ColumnConversions, AbundIndexPresentOverwritesAnEffortTypedInAtEachRun)
{
    Put(AbundIndex, {2.5F, -1.0F});
    Put(Effort, {7.0F, 8.0F});
    Put(CatchWt, {70.0F, 80.0F});
    data.DoColumnConversions();
    Expect(Effort, {1.0F, -1.0F});
    Expect(CatchWt, {2.5F, -1.0F});
    data.Effort(1, 9.0F);
    data.DoColumnConversions();
    Expect(Effort, {1.0F, -1.0F});
}

TEST_F(ColumnConversions, TotCatchNumsWithoutMeanWtIsCopiedIntoCatchNumsWhereEffortExists)
{
    Put(TotCatchNums, {10.0F, 20.0F, -1.0F});
    Put(Effort, {3.0F, -1.0F, 0.0F});
    data.DoColumnConversions();
    Expect(CatchNums, {10.0F, -1.0F, -1.0F});
    EXPECT_FALSE(data.ColPresent(CatchWt));
}

TEST_F(ColumnConversions, TotCatchNumsWithoutEffortIsNotCopied)
{
    Put(TotCatchNums, {10.0F});
    data.DoColumnConversions();
    EXPECT_FALSE(data.ColPresent(CatchNums));
}

// 12 / 1.5 = 8; deliberate: two missing values give -1 / -1 = 1, also in the rows behind the data.
TEST_F(ColumnConversions, CatchInNumbersFromWeightMakes1OfTwoMissingValues)
{
    Put(CatchWt, {12.0F, -1.0F, 6.0F});
    Put(MeanWt, {1.5F, -1.0F, -1.0F});
    Put(Effort, {2.0F, 2.0F, 2.0F});
    data.DoColumnConversions();
    Expect(CatchNums, {8.0F, 1.0F, -6.0F, 1.0F});
    EXPECT_EQ(data.CatchNums(200), 1.0F);
}

// 1 / 3 in 32 bits, not 64.
TEST_F(ColumnConversions, QuotientsAreRoundedTo32Bits)
{
    Put(CatchWt, {1.0F});
    Put(MeanWt, {3.0F});
    Put(Effort, {1.0F});
    data.DoColumnConversions();
    EXPECT_EQ(data.CatchNums(1), 1.0F / 3.0F);
}

TEST_F(ColumnConversions, AMeanWeightOfZeroIsADivisionByZeroAndChangesNothing)
{
    Put(AbundIndex, {5.0F, 6.0F});
    Put(MeanWt, {2.0F, 0.0F});
    data.NNtPoints(77);

    EXPECT_EQ(Failure(), 11U);

    EXPECT_EQ(sentence, "Division by zero: Catch Nums of row 2 cannot be derived.");
    EXPECT_FALSE(data.ColPresent(CatchWt)); // the step before the failing one is undone too
    EXPECT_EQ(data.Effort(1), -1.0F);
    EXPECT_EQ(data.NNtPoints(), 77);
    EXPECT_TRUE(data.ToggledIn(3));
}

TEST_F(ColumnConversions, AQuotientBeyondTheLargestFloatOverflows)
{
    Put(CatchWt, {3e38F});
    Put(MeanWt, {0.5F});
    Put(Effort, {1.0F});
    EXPECT_EQ(Failure(), 6U);
}

TEST_F(ColumnConversions, CatchInWeightIsTheTotalWhenNothingBetterIsThere)
{
    Put(TotCatchWt, {30.0F, -1.0F});
    data.DoColumnConversions();
    Expect(CatchWt, {30.0F, -1.0F, -1.0F});
    EXPECT_FALSE(data.ColPresent(MeanWt));
}

// 2 * 5 = 10; without a look at missing values: 2 * -1 = -2, and -1 * -1 = 1 behind the data.
TEST_F(ColumnConversions, CatchInWeightFromNumbersTakesTheProductInEveryRow)
{
    Put(CatchNums, {5.0F, -1.0F});
    Put(MeanWt, {2.0F, 2.0F});
    data.DoColumnConversions();
    Expect(CatchWt, {10.0F, -2.0F, 1.0F});
}

TEST_F(ColumnConversions, CatchInNumbersWithMeanWeightIsPreferredToTheTotalWeight)
{
    Put(TotCatchWt, {100.0F});
    Put(CatchNums, {5.0F});
    Put(MeanWt, {2.0F});
    data.DoColumnConversions();
    Expect(CatchWt, {10.0F});
    Expect(TotCatchNums, {50.0F}); // 100 / 2
}

// Without effort the first rule for CatchNums is passed over; the later one looks at missing values.
TEST_F(ColumnConversions, NumbersOfACatchInWeightWithoutEffortLeaveMissingValuesMissing)
{
    Put(CatchWt, {12.0F, -1.0F, 6.0F});
    Put(MeanWt, {1.5F, 2.0F, -1.0F});
    data.DoColumnConversions();
    Expect(CatchNums, {8.0F, -1.0F, -1.0F, -1.0F});
}

// Deliberate: 1.5 * CatchNums 4 = 6 although the total in numbers is 10.
TEST_F(ColumnConversions, TotalCatchInWeightIsMadeOfCatchNums)
{
    Put(TotCatchNums, {10.0F, -1.0F});
    Put(CatchNums, {4.0F, 5.0F});
    Put(MeanWt, {1.5F, 1.5F});
    data.DoColumnConversions();
    Expect(TotCatchWt, {6.0F, -1.0F});
}

// Here CatchNums is absent and cannot be derived (no effort, no weight), so it holds -1 in every row.
TEST_F(ColumnConversions, TotalCatchInWeightTakesCatchNumsAsItStandsEvenWhenAbsent)
{
    Put(TotCatchNums, {10.0F});
    Put(MeanWt, {1.5F});
    data.DoColumnConversions();
    Expect(TotCatchWt, {-1.5F, -1.0F});
    EXPECT_FALSE(data.ColPresent(CatchNums));
}

TEST_F(ColumnConversions, TotalCatchInNumbersIsTheWeightOverTheMeanWeight)
{
    Put(TotCatchWt, {30.0F, -1.0F, 8.0F});
    Put(MeanWt, {1.5F, 2.0F, 4.0F});
    data.DoColumnConversions();
    Expect(TotCatchNums, {20.0F, -1.0F, 2.0F});
    Expect(CatchWt, {30.0F, -1.0F, 8.0F});   // no catch in numbers yet: the total stands in
    Expect(CatchNums, {20.0F, -1.0F, 2.0F}); // 30 / 1.5, 8 / 4
}

TEST_F(ColumnConversions, WithoutMeanWeightTheTotalsAreLeftAlone)
{
    Put(TotCatchWt, {30.0F});
    Put(Effort, {2.0F});
    data.DoColumnConversions();
    EXPECT_FALSE(data.ColPresent(TotCatchNums));
    EXPECT_FALSE(data.ColPresent(CatchNums));
}

TEST_F(ColumnConversions, AnEffortOf0IsIncluded)
{
    Put(Effort, {0.0F, 5.0F, -1.0F, -2.0F});
    data.DoColumnConversions();
    EXPECT_TRUE(data.Included(1));
    EXPECT_TRUE(data.Included(2));
    EXPECT_FALSE(data.Included(3));
    EXPECT_FALSE(data.Included(4));
    EXPECT_EQ(data.NNtPoints(), 2);
}

TEST_F(ColumnConversions, AnEffortThatIsNoNumberOrInfiniteIsNotIncluded)
{
    Put(Effort, {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 1.0F});
    data.DoColumnConversions();
    EXPECT_FALSE(data.Included(1));
    EXPECT_FALSE(data.Included(2));
    EXPECT_TRUE(data.Included(3));
}

TEST_F(ColumnConversions, RowsBeyondTheDataAreNeverIncludedAndLoseToggledInAtTheFirstConversion)
{
    Put(Effort, {1.0F, 1.0F});
    data.TimeInts(2);
    ASSERT_TRUE(data.ToggledIn(3));
    data.DoColumnConversions();
    for (int row = 3; row <= 200; ++row) {
        EXPECT_FALSE(data.Included(row));
        EXPECT_FALSE(data.ToggledIn(row));
    }
}

TEST_F(ColumnConversions, ARowTheUserToggledOutStaysOut)
{
    Put(Effort, {1.0F, 1.0F});
    data.ToggledIn(1, false);
    data.DoColumnConversions();
    EXPECT_TRUE(data.Included(1));
    EXPECT_FALSE(data.ToggledIn(1));
    EXPECT_EQ(data.NNtPoints(), 1);
}

TEST_F(ColumnConversions, ASecondRunChangesNothingAndDerivedColumnsAreKeptWhenTheirSourcesChange)
{
    Put(CatchWt, {12.0F});
    Put(MeanWt, {1.5F});
    Put(Effort, {2.0F});
    data.DoColumnConversions();
    data.CatchWt(1, 99.0F);
    data.DoColumnConversions();
    EXPECT_EQ(data.CatchNums(1), 8.0F); // still 12 / 1.5
    EXPECT_EQ(data.CatchWt(1), 99.0F);
}

TEST_F(ColumnConversions, DoNotMarkTheDataSetAsChanged)
{
    data.ColPresent(AbundIndex, true);
    data.AbundIndex(1, 3.0F);
    data.DoColumnConversions();
    EXPECT_TRUE(data.ColPresent(CatchWt));
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(ColumnConversions, OnlyAnIndexAndATotalCatchServeAModel)
{
    Put(TotCatchWt, {100.0F, 90.0F});
    Put(AbundIndex, {2.0F, 1.5F});
    data.DoColumnConversions();
    EXPECT_TRUE(data.CheckRqCols(std::vector{TotCatchWt, CatchWt, Effort}));
    Expect(CatchWt, {2.0F, 1.5F});
}
