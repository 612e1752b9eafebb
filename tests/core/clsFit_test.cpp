// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/clsFit.h"

#include "data/Moment.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
std::tm Local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    std::tm local{};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    return local;
}
} // namespace

TEST(Fit, ANewOneHasANameOf50BlanksAndNothingElse)
{
    const clsFit fit;
    EXPECT_EQ(fit.FitName(), std::string(50, ' '));
    EXPECT_FALSE(fit.Deleted());
    EXPECT_EQ(fit.Start(), 0);
    EXPECT_EQ(fit.TheEnd(), 0);
    EXPECT_EQ(fit.TheDate(), 0.0);
    EXPECT_EQ(fit.TheTime(), 0.0);
    EXPECT_EQ(fit.MethType(), 0);
    EXPECT_EQ(fit.FitOp(), 0);
}

TEST(Fit, AShortNameIsFilledWithBlanksTo50)
{
    clsFit fit;
    fit.FitName("Ling");
    EXPECT_EQ(fit.FitName(), "Ling" + std::string(46, ' '));
}

TEST(Fit, ANameOf51CharactersIsStoredCutAt50)
{
    clsFit fit;
    fit.FitName(std::string(50, 'a') + "b");
    EXPECT_EQ(fit.FitName(), std::string(50, 'a'));
}

TEST(Fit, AnAccentedLetterCountsAsOneOfThe50)
{
    clsFit fit;
    fit.FitName("\u00e9t\u00e9"); // three characters, five bytes
    EXPECT_EQ(fit.FitName(), "\u00e9t\u00e9" + std::string(47, ' '));
}

TEST(Fit, ANameKeepsBlanksInFront)
{
    clsFit fit;
    fit.FitName(" Ling");
    EXPECT_EQ(fit.FitName(), " Ling" + std::string(45, ' '));
}

TEST(Fit, CreateTakesTheNameAndSplitsTheMomentIntoDayAndTime)
{
    clsFit fit;
    fit.Create("Ling", 36526.75);
    EXPECT_EQ(fit.FitName(), "Ling" + std::string(46, ' '));
    EXPECT_EQ(fit.TheDate(), 36526.0);
    EXPECT_EQ(fit.TheTime(), 0.75);
    EXPECT_FALSE(fit.Deleted());
}

TEST(Fit, CreateLeavesTheOtherFieldsAsTheyAre)
{
    clsFit fit;
    fit.Start(913);
    fit.TheEnd(2048);
    fit.MethType(5);
    fit.FitOp(3);
    fit.Create("Ling", 1.0);
    EXPECT_EQ(fit.Start(), 913);
    EXPECT_EQ(fit.TheEnd(), 2048);
    EXPECT_EQ(fit.MethType(), 5);
    EXPECT_EQ(fit.FitOp(), 3);
}

TEST(Fit, DateAndTimeCanBeSetApartAsAReaderDoes)
{
    clsFit fit;
    fit.TheDate(40000.0);
    fit.TheTime(0.25);
    EXPECT_EQ(fit.TheDate(), 40000.0);
    EXPECT_EQ(fit.TheTime(), 0.25);
}

// From 1899-12-30: 1 day to the 31st, 2 to 1900-01-01. 1900 to 1969 are 70 years with the 17 leap days of
// 1904 to 1968, so 1970-01-01 is 2 + 70 * 365 + 17 = 25569. 1970 to 1999 are 30 years with the 7 leap days of
// 1972 to 1996, so 2000-01-01 is 25569 + 30 * 365 + 7 = 36526; 2000-03-01 is 31 + 29 days later, 36586.
TEST(Moment, DaysCountFromThe30thOfDecember1899)
{
    EXPECT_EQ(DaysOf(Local(1899, 12, 30)), 0.0);
    EXPECT_EQ(DaysOf(Local(1900, 1, 1)), 2.0);
    EXPECT_EQ(DaysOf(Local(1970, 1, 1)), 25569.0);
    EXPECT_EQ(DaysOf(Local(2000, 1, 1)), 36526.0);
    EXPECT_EQ(DaysOf(Local(2000, 3, 1)), 36586.0);
}

TEST(Moment, TheTimeOfDayIsTheFraction)
{
    EXPECT_EQ(DaysOf(Local(2000, 1, 1, 18)), 36526.75);
    // 23:59:59 is one second of 86400 before the next day.
    EXPECT_NEAR(DaysOf(Local(2000, 1, 1, 23, 59, 59)), 36527.0 - 1.0 / 86400.0, 1e-9);
}

TEST(Moment, ALeapSecondIsTheFirstOfTheNextMinute)
{
    EXPECT_EQ(DaysOf(Local(2016, 12, 31, 23, 59, 60)), DaysOf(Local(2017, 1, 1)));
}

TEST(Moment, TheClockIsReadInLocalTimeToTheSecond)
{
    const auto now = [] {
        const std::time_t seconds = std::time(nullptr);
        return DaysOf(*std::localtime(&seconds));
    };
    const double before = now();
    const double asked = LocalNow();
    const double after = now();
    EXPECT_LE(before, asked);
    EXPECT_LE(asked, after);
    EXPECT_NEAR(asked * 86400.0, std::round(asked * 86400.0), 1e-3);
}
