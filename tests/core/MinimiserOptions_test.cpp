// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/MinimiserOptions.h"

#include <gtest/gtest.h>

namespace
{
constexpr const char* kPositive = "Value must be numeric and > 0 ";
constexpr const char* kBootstraps = "Value must be in the range 0 < NumBootstraps <=1000 ";

template <typename T>
std::string SentenceOf(const Reading<T>& reading)
{
    return std::get<std::string>(reading);
}
} // namespace

TEST(MinimiserOptions, TheDefaultsAreTheProgramsAndEachFieldCanDepartFromThem)
{
    MinimiserOptions options;
    EXPECT_EQ(options.intMaxIts, 500);
    EXPECT_EQ(options.BS, 500);
    EXPECT_EQ(options.sngFTOL, 1e-07F);
    EXPECT_EQ(options.sngXTOL, 0.0001F);
    EXPECT_EQ(options.ConvergeOn, 3);
    EXPECT_FALSE(DiffersFromDefaults(options));

    EXPECT_TRUE(DiffersFromDefaults({.ConvergeOn = 0}));
    EXPECT_TRUE(DiffersFromDefaults({.BS = 501}));
    EXPECT_TRUE(DiffersFromDefaults({.sngFTOL = 2e-07F}));
    EXPECT_TRUE(DiffersFromDefaults({.sngXTOL = 2e-04F}));
    EXPECT_TRUE(DiffersFromDefaults({.intMaxIts = 499}));
}

TEST(MinimiserOptions, AThousandBootstrapsAreAcceptedOneMoreOrNoneIsRefused)
{
    EXPECT_EQ(std::get<std::int16_t>(ReadBootstraps("1000")), 1000);
    EXPECT_EQ(std::get<std::int16_t>(ReadBootstraps("1")), 1);
    for (const char* typed : {"1001", "1000.4", "0", "0.4", "-1", "many"}) // 0.4 would be stored as 0
        EXPECT_EQ(SentenceOf(ReadBootstraps(typed)), kBootstraps) << typed;
}

TEST(MinimiserOptions, AnEntryOfTwelvePointSevenForAWholeNumberIsStoredRounded)
{
    EXPECT_EQ(std::get<std::int16_t>(ReadMaxIterations("12.7")), 13);
    EXPECT_EQ(std::get<std::int16_t>(ReadBootstraps("12.7")), 13);
}

TEST(MinimiserOptions, IterationsAreAboveNothingAndFitSixteenBits)
{
    EXPECT_EQ(std::get<std::int16_t>(ReadMaxIterations("32767")), 32767);
    for (const char* typed : {"0", "-5", "32768", "", "1e"})
        EXPECT_EQ(SentenceOf(ReadMaxIterations(typed)), kPositive) << typed;
}

TEST(MinimiserOptions, ATolerancePassesWhenTheFloatThatIsStoredIsAboveNothing)
{
    EXPECT_EQ(std::get<float>(ReadTolerance("1E-07")), 1e-07F);
    for (const char* typed : {"0", "-1E-07", "1E-60", "1E+39", "small"})
        EXPECT_EQ(SentenceOf(ReadTolerance(typed)), kPositive) << typed;
}
