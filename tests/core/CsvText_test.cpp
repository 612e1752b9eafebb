// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/CsvText.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
using Headings = std::vector<std::string>;
using Values = std::vector<double>;

std::span<const std::uint8_t> BytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

AsciiText Read(const std::string& text, const std::string& path = "ling.csv")
{
    return ReadCsvText(BytesOf(text), path);
}

struct Refused {
    std::uint32_t number = 0; ///< without the program's base
    std::string place;
    std::size_t line = 0;
};

Refused RefusalOf(const std::function<void()>& reading)
{
    try {
        reading();
    } catch (const ImportError& error) {
        return {error.number - kProgramErrorBase, error.place, error.line};
    }
    return {};
}

Refused RefusalOf(const std::string& text)
{
    return RefusalOf([&] { Read(text); });
}
} // namespace

TEST(CsvText, TheFirstLineHoldsTheHeadingsAndTheFileNameDescribesTheTable)
{
    const AsciiText table = Read("Year,\"Boats, days\"\n1990,0.5\n1991,12.25\n", "/home/ann/Ling 2.csv");

    EXPECT_EQ(table.description, "Ling 2.csv");
    EXPECT_EQ(table.headings, (Headings{"Year", "Boats, days"}));
    EXPECT_EQ(table.columns[0], (Values{1990, 1991}));
    EXPECT_EQ(table.columns[1], (Values{0.5, 12.25}));
    EXPECT_EQ(table.lines, (std::vector<std::size_t>{2, 3}));
    EXPECT_EQ(table.decimals, (std::vector{0, 2}));
}

TEST(CsvText, MissingCellsAreMinusOneAndTheFirstOfAColumnIsRemembered)
{
    const AsciiText table = Read("Year,Boats,Fish\n1990,5,1\n1991,,2\n1992,NA,3\n");

    EXPECT_EQ(table.columns[1], (Values{5, -1, -1}));
    ASSERT_EQ(table.missing.size(), 3U);
    EXPECT_EQ(table.missing[0], 0U);
    EXPECT_EQ(table.missing[1], 3U); // the line of the file
    EXPECT_EQ(table.missing[2], 0U);
}

TEST(CsvText, ColumnsWithoutASingleNumberAreLeftOut)
{
    const AsciiText table = Read("Stock,Year,Remarks,Fish,,\nling,1990,,5,,\nling,1991,storm,6,,\n");

    EXPECT_EQ(table.headings, (Headings{"Year", "Fish"}));
    EXPECT_EQ(table.columns[1], (Values{5, 6}));
}

TEST(CsvText, ACellThatIsNoNumberIsNamedWithItsLineAndColumn)
{
    const Refused refused = RefusalOf("Year,Fish\n1990,5\n1991,\"1\n2O\"\n");
    EXPECT_EQ(refused.number, 2257U);
    EXPECT_EQ(refused.place, "Line 3, column \"Fish\": \"1\\n2O\" is not a number.");
    EXPECT_EQ(refused.line, 3U);
}

TEST(CsvText, WhatTheReaderRefusesKeepsItsLineAndItsNumber)
{
    EXPECT_EQ(RefusalOf("Year,Fish\n1990,5\n1991\n").number, 2256U);
    EXPECT_EQ(RefusalOf("Year,Fish\n1990,5\n1991\n").line, 3U);
    EXPECT_EQ(RefusalOf("Year;Fish\n1990;5\n").number, 2256U);
    EXPECT_EQ(RefusalOf("").number, 2256U);
    EXPECT_EQ(RefusalOf("Year,Fish\n").number, 2257U);
    EXPECT_EQ(RefusalOf("Year,Fish\n1990,\"5\n").number, 2257U);
}

TEST(CsvText, ATableOfWordsAloneAndAFileTooLargeAreRefused)
{
    EXPECT_EQ(RefusalOf("Stock,Area\nling,north\n").place, "Line 2: none of the columns holds a number.");
    EXPECT_EQ(RefusalOf(std::string(kMaxTextBytes + 1, '1')).number, 2257U);
}

TEST(CsvText, HeadingsAndFileNamesOfTheCodePageBecomeUtf8)
{
    const AsciiText table = Read("Jahr,F\xE4nge\n1990,5\n", "/data/D\xF6rsch.csv");
    EXPECT_EQ(table.headings.back(), "F\xC3\xA4nge");
    EXPECT_EQ(table.description, "D\xC3\xB6rsch.csv");
}

TEST(CsvText, OnlyTheColumnsInUseAreLookedAtAndATimeMayNotBeMissing)
{
    const std::string text = "Stock,Year,Fish\nling,1990,NA\nling,,6\n";
    CsvReader reader(text);
    const AsciiText table = TakeColumns(reader, {2});
    EXPECT_EQ(table.headings, Headings{"Fish"});
    EXPECT_EQ(table.columns.front(), (Values{-1, 6}));

    CsvReader again(text);
    const Refused refused = RefusalOf([&] { TakeColumns(again, {1, 2}, 1); });
    EXPECT_EQ(refused.place, "Line 3, column \"Year\": \"\" is not a number.");
}
