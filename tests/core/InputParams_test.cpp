// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/InputParams.h"

#include <gtest/gtest.h>

namespace
{
InputParams Of(std::int32_t whichMeth, std::int32_t fitOp, bool hasVariances = true)
{
    InputParams params;
    params.WhichMeth = whichMeth;
    params.FitOp = fitOp;
    params.hasVariances = hasVariances;
    return params;
}

template <typename T>
std::string SentenceOf(const Reading<T>& reading)
{
    return std::get<std::string>(reading);
}
} // namespace

TEST(InputParams, OnlyADepletionModelUnderLeastSquaresIsARegression)
{
    for (std::int32_t model = 1; model <= 6; ++model) {
        for (std::int32_t fitOp = 1; fitOp <= 4; ++fitOp)
            EXPECT_EQ(UsesRegression(fitOp, model), model <= 3 && (fitOp == 1 || fitOp == 4))
                << model << " " << fitOp;
    }
}

// The table of fields by model, read off line by line.
TEST(InputParams, EachModelShowsTheFieldsItUses)
{
    struct Line {
        std::int32_t model;
        bool mort, initProp, lag, z, viewMin;
    };
    const Line lines[] = {{1, true, false, false, false, false}, {2, true, false, false, false, true},
                          {3, true, true, false, false, false},  {4, false, true, true, false, true},
                          {5, false, true, true, false, true},   {6, false, true, true, true, true}};
    for (const Line& line : lines) {
        const InputFields fields = FieldsOf(Of(line.model, 2));
        EXPECT_EQ(fields.mort, line.mort) << line.model;
        EXPECT_EQ(fields.initProp, line.initProp) << line.model;
        EXPECT_EQ(fields.lag, line.lag) << line.model;
        EXPECT_EQ(fields.z, line.z) << line.model;
        EXPECT_EQ(fields.viewMinShown, line.viewMin) << line.model;
    }
}

TEST(InputParams, WeightedLeastSquaresStaysDisabledWithoutVariancesWhateverTheErrorModelSays)
{
    for (std::int32_t fitOp = 1; fitOp <= 4; ++fitOp) {
        EXPECT_FALSE(FieldsOf(Of(1, fitOp, false)).weightedEnabled);
        EXPECT_TRUE(FieldsOf(Of(1, fitOp, true)).weightedEnabled);
    }
}

TEST(InputParams, ChoosingLeastSquaresOnModelFourKeepsTheManualStartAvailable)
{
    const InputFields production = FieldsOf(Of(4, 1));
    EXPECT_TRUE(production.setManEnabled);
    EXPECT_TRUE(production.viewMinEnabled);

    const InputFields regression = FieldsOf(Of(2, 1));
    EXPECT_FALSE(regression.setManEnabled);
    EXPECT_FALSE(regression.viewMinEnabled);
}

TEST(InputParams, TheViewOfTheMinimisationStaysAwayWhereTheModelHasNone)
{
    for (std::int32_t model : {1, 3}) {
        for (std::int32_t fitOp : {2, 3}) {
            EXPECT_FALSE(FieldsOf(Of(model, fitOp)).viewMinEnabled);
            EXPECT_TRUE(FieldsOf(Of(model, fitOp)).setManEnabled);
        }
    }
}

TEST(InputParams, AnInitialProportionLiesFromNothingToOne)
{
    EXPECT_EQ(std::get<float>(ReadInitialProportion("0")), 0.0F);
    EXPECT_EQ(std::get<float>(ReadInitialProportion("1")), 1.0F);
    EXPECT_EQ(std::get<float>(ReadInitialProportion(" .25 ")), 0.25F);
    // the last but one would be 1 as a 32-bit float, and is still more than 1
    for (const char* typed : {"-0.01", "1.01", "1.000000000001", "all"})
        EXPECT_EQ(SentenceOf(ReadInitialProportion(typed)),
                  "Initial Proportion must lie in the range 0 <= I.P <= 1")
            << typed;
}

TEST(InputParams, NaturalMortalityIsAtLeastNothing)
{
    EXPECT_EQ(std::get<float>(ReadNaturalMortality("0")), 0.0F);
    EXPECT_EQ(std::get<float>(ReadNaturalMortality("0.2")), 0.2F);
    for (const char* typed : {"-0.2", "0,2", "", "1E+39"}) // the last does not fit a 32-bit float
        EXPECT_EQ(SentenceOf(ReadNaturalMortality(typed)), "Natural Mortality must be >= 0") << typed;
}

TEST(InputParams, TheShapeIsAboveNothing)
{
    EXPECT_EQ(std::get<float>(ReadZShape("1E-07")), 1e-07F);
    for (const char* typed : {"0", "-1", "1E-60", "z"}) // 1E-60 would be stored as 0
        EXPECT_EQ(SentenceOf(ReadZShape(typed)), "Z shape parameter must be > 0") << typed;
}

TEST(InputParams, ATimeLagOfTwoPointSevenIsStoredAsThree)
{
    EXPECT_EQ(std::get<std::int16_t>(ReadTimeLag("2.7")), 3);
    EXPECT_EQ(std::get<std::int16_t>(ReadTimeLag("2.5")), 2); // ties to even
    EXPECT_EQ(std::get<std::int16_t>(ReadTimeLag("0")), 0);
    EXPECT_EQ(std::get<std::int16_t>(ReadTimeLag("32767")), 32767);
    for (const char* typed : {"-1", "-0.3", "32768", "1E+30", "two"})
        EXPECT_EQ(SentenceOf(ReadTimeLag(typed)), "Time Lag must be >=0 ") << typed;
}
