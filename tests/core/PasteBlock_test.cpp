// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/PasteBlock.h"

#include <gtest/gtest.h>

namespace
{
using Rows = std::vector<std::vector<std::string>>;
}

TEST(PasteBlock, TabsPartCellsAndAnyLineEndPartsRows)
{
    const Rows two{{"1", "2"}, {"3", "4"}};
    EXPECT_EQ(ReadPasteBlock("1\t2\r\n3\t4\r\n").rows, two);
    EXPECT_EQ(ReadPasteBlock("1\t2\n3\t4").rows, two);
    EXPECT_EQ(ReadPasteBlock("1\t2\r3\t4\r").rows, two);
}

TEST(PasteBlock, TheLastLineEndIsNoticedAndMakesNoRow)
{
    EXPECT_TRUE(ReadPasteBlock("1\n").endsInLineEnd);
    EXPECT_FALSE(ReadPasteBlock("1").endsInLineEnd);
    EXPECT_EQ(ReadPasteBlock("1\n").rows.size(), 1U);
    EXPECT_EQ(ReadPasteBlock("1\n\n").rows, (Rows{{"1"}, {""}}));
}

TEST(PasteBlock, EmptyCellsAreCells)
{
    EXPECT_EQ(ReadPasteBlock("\t").rows, (Rows{{"", ""}}));
    EXPECT_EQ(ReadPasteBlock("1\t\t3\n").rows, (Rows{{"1", "", "3"}}));
    EXPECT_TRUE(ReadPasteBlock("").rows.empty());
}

TEST(PasteBlock, ACellInQuotesIsWhatStandsBetweenThem)
{
    EXPECT_EQ(ReadPasteBlock("\"1\"\t\"a\tb\"\n").rows, (Rows{{"1", "a\tb"}}));
    EXPECT_EQ(ReadPasteBlock("\"two\nlines\"\t3\n").rows, (Rows{{"two\nlines", "3"}}));
    EXPECT_EQ(ReadPasteBlock("\"say \"\"a\"\"\"\n").rows, (Rows{{"say \"a\""}}));
    EXPECT_EQ(ReadPasteBlock("\"1\"2\n").rows, (Rows{{"1\"2"}})); // and so no number
    EXPECT_EQ(ReadPasteBlock("\"1\" \t2\n").rows, (Rows{{"1 ", "2"}}));
    EXPECT_EQ(ReadPasteBlock("\"never closed\n1\n").rows, (Rows{{"never closed\n1\n"}}));
    EXPECT_EQ(ReadPasteBlock("5\"\n").rows, (Rows{{"5\""}})); // inches, not a quote
}

TEST(PasteBlock, OneValueHasNeitherATabNorASecondLineEnd)
{
    EXPECT_TRUE(ReadPasteBlock("1\r\n").IsOneValue());
    EXPECT_TRUE(ReadPasteBlock("").IsOneValue());
    EXPECT_FALSE(ReadPasteBlock("1\t").IsOneValue());
    EXPECT_FALSE(ReadPasteBlock("1\r\n\r\n").IsOneValue());
}

TEST(PasteBlock, WhatLiesFarBeyondAnyTableIsNotRead)
{
    for (const char* cell : {"\t", "\n", "1\r", "1\t"}) {
        std::string text;
        while (text.size() < 10'000'000)
            text += cell;
        const PasteBlock block = ReadPasteBlock(text);
        std::size_t cells = 0;
        for (const auto& row : block.rows)
            cells += row.size();
        EXPECT_GE(cells, 200U * 15U);
        EXPECT_LE(cells, 100'001U);
        EXPECT_FALSE(block.IsOneValue());
    }
}
