// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/NumberFormat.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <limits>

TEST(NumberFormat, TheDefaultFormatShowsTwelvePointSixAsThirteen)
{
    EXPECT_EQ(FormatNumber(12.6F, "0"), "13");
}

TEST(NumberFormat, TheMissingValueFollowsTheFormatLikeAnyNumber)
{
    EXPECT_EQ(FormatNumber(-1.0F, "0"), "-1");
    EXPECT_EQ(FormatNumber(-1.0F, "0.00"), "-1.00");
    EXPECT_EQ(FormatNumber(-1.0F, "#,0.0"), "-1.0");
    EXPECT_EQ(FormatNumber(-1.0F, "0.00E+"), "-1.00E+00");
}

TEST(NumberFormat, FixedKeepsAsManyDecimalsAsTheFormatHasZeros)
{
    EXPECT_EQ(FormatNumber(1234.5F, "0.00"), "1234.50");
    EXPECT_EQ(FormatNumber(0.0009765625F, "0.0000000000"), "0.0009765625"); // 2 to the power -10, exact
    EXPECT_EQ(FormatNumber(2.5F, "0"), "2");                                // a half goes to the even digit
}

TEST(NumberFormat, StandardSetsThousandsApart)
{
    EXPECT_EQ(FormatNumber(0.0F, "#,0"), "0");
    EXPECT_EQ(FormatNumber(999.0F, "#,0"), "999");
    EXPECT_EQ(FormatNumber(1000.0F, "#,0"), "1,000");
    EXPECT_EQ(FormatNumber(-123456.0F, "#,0"), "-123,456");
    EXPECT_EQ(FormatNumber(-1234567.0F, "#,0.0"), "-1,234,567.0");
}

TEST(NumberFormat, ScientificCarriesASignedExponent)
{
    EXPECT_EQ(FormatNumber(1234.5F, "0.00E+"), "1.23E+03"); // 1.2345
    EXPECT_EQ(FormatNumber(1.0e-7F, "0E+"), "1E-07");
    EXPECT_EQ(FormatNumber(0.0F, "0.0E+"), "0.0E+00");
}

TEST(NumberFormat, AValueThatRoundsToNothingHasNoSign)
{
    EXPECT_EQ(FormatNumber(-0.3F, "0"), "0");
    EXPECT_EQ(FormatNumber(-0.0F, "0.00E+"), "0.00E+00");
    EXPECT_EQ(FormatNumber(-0.003F, "0.00E+"), "-3.00E-03"); // nothing is lost here
}

TEST(NumberFormat, ATextThatIsNoFormatShowsTheNumberInFull)
{
    for (const char* format : {"", "0.", "#", "General", "0.0x", "#,0.00E+", "00"})
        EXPECT_EQ(FormatNumber(12.625F, format), "12.625") << format;
    EXPECT_EQ(FormatNumber(std::numeric_limits<float>::infinity(), "#,0"), "inf");
    EXPECT_EQ(FormatNumber(std::numeric_limits<float>::quiet_NaN(), "0.0E+"), "nan");
}

TEST(NumberFormat, TheLargestFloatIsWrittenOut)
{
    EXPECT_EQ(FormatNumber(std::numeric_limits<float>::max(), "0"),
              "340282346638528859811704183484516925440");
}

TEST(NumberFormat, AFixedFormatHasItsDecimalsUpToSix)
{
    EXPECT_EQ(FixedFormat(-2), "0");
    EXPECT_EQ(FixedFormat(0), "0");
    EXPECT_EQ(FixedFormat(2), "0.00");
    EXPECT_EQ(FixedFormat(6), "0.000000");
    EXPECT_EQ(FixedFormat(7), "0.000000");
}

TEST(NumberFormatText, IsBuiltFromCategoryAndDecimalPlaces)
{
    EXPECT_EQ(FormatText(NumberCategory::Fixed, 0), "0");
    EXPECT_EQ(FormatText(NumberCategory::Fixed, 2), "0.00");
    EXPECT_EQ(FormatText(NumberCategory::Standard, 0), "#,0");
    EXPECT_EQ(FormatText(NumberCategory::Standard, 1), "#,0.0");
    EXPECT_EQ(FormatText(NumberCategory::Scientific, 0), "0E+");
    EXPECT_EQ(FormatText(NumberCategory::Scientific, 3), "0.000E+"); // it ends there
    EXPECT_EQ(FormatText(NumberCategory::Standard, 15).size(), 19U); // within a column's 20 characters
}

TEST(NumberFormatText, WithoutAChoiceItIsNone)
{
    const auto failure = [](NumberCategory category, int decimals) -> std::uint32_t {
        try {
            (void)FormatText(category, decimals);
        } catch (const VeltError& error) {
            EXPECT_EQ(error.description, "Invalid Number Format");
            EXPECT_EQ(error.source, "_frmNumberFormat");
            return error.number;
        }
        return 0;
    };
    EXPECT_EQ(failure(NumberCategory::None, 2), 0x80040000U + 2352U);
    EXPECT_EQ(failure(NumberCategory::Fixed, -1), 0x80040000U + 2352U);
    EXPECT_EQ(failure(NumberCategory::Fixed, 16), 0x80040000U + 2352U);
}

TEST(NumberFormatText, IsTakenApartIntoCategoryAndDecimalPlaces)
{
    const auto is = [](std::string_view format, NumberCategory category, int decimals) {
        const NumberFormatChoice choice = ChoiceOf(format);
        EXPECT_EQ(choice.category, category) << format;
        EXPECT_EQ(choice.decPlaces, decimals) << format;
    };
    is("0", NumberCategory::Fixed, 0);
    is("0.00", NumberCategory::Fixed, 2);
    is("#,0", NumberCategory::Standard, 0);
    is("#,0.000", NumberCategory::Standard, 3);
    is("0E+", NumberCategory::Scientific, 0);
    is("0.00E+", NumberCategory::Scientific, 2);
    is("0.00E+00", NumberCategory::Scientific, 2); // the E ends them, whatever follows
    is("#,0.0E+", NumberCategory::Scientific, 1);  // E comes first
    is("", NumberCategory::Fixed, 0);
    is("0.", NumberCategory::Fixed, 0);
    is("General", NumberCategory::Fixed, 0);
    is("0.00000000000000000000", NumberCategory::Fixed, 15);
}

TEST(NumberFormatText, EveryChoiceComesBackFromItsText)
{
    for (const auto category : {NumberCategory::Fixed, NumberCategory::Standard, NumberCategory::Scientific})
        for (int decimals = 0; decimals <= kMostDecPlaces; ++decimals) {
            const NumberFormatChoice choice = ChoiceOf(FormatText(category, decimals));
            EXPECT_EQ(choice.category, category);
            EXPECT_EQ(choice.decPlaces, decimals);
        }
}

TEST(NumberFormatText, AMissingValueFollowsTheFormatLikeAnyNumber)
{
    EXPECT_EQ(FormatNumber(-1.0F, "0.00"), "-1.00");
    EXPECT_EQ(FormatNumber(-1.0F, "0.0E+"), "-1.0E+00");
    EXPECT_EQ(FormatNumber(12.6F, "0"), "13");
}
