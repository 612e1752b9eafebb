// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/Bytes.h"

#include "support/ByteStrings.h"

#include <gtest/gtest.h>

#include <bit>
#include <functional>
#include <limits>

namespace
{
using namespace byte_strings;

/// What the refusal of `read` says; "" when it is none.
std::string Refusal(const std::function<void()>& read)
{
    try {
        read();
    } catch (const RecordError& error) {
        return error.description;
    }
    return "";
}
} // namespace

// 1.0 in 32 bits is 3F800000, -2.5 in 64 bits is C004000000000000.
TEST(BoundedReader, TakesNumbersWithTheLowestByteFirst)
{
    const std::string bytes = Raw({0x34, 0x12, 0x78, 0x56, 0x34, 0x92, 0, 0, 0x80, 0x3F, //
                                   0, 0, 0, 0, 0, 0, 0x04, 0xC0});
    BoundedReader in(bytes);
    EXPECT_EQ(in.I16("a"), 0x1234);
    EXPECT_EQ(in.I32("b"), -1842063752); // 0x92345678 - 2^32
    EXPECT_EQ(in.F32("c"), 1.0F);
    EXPECT_EQ(in.F64("d"), -2.5);
    EXPECT_EQ(in.Left(), 0U);
}

TEST(BoundedReader, NumbersBelowZeroKeepTheirSign)
{
    const std::string bytes = Raw({0xFF, 0xFF, 0, 0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0x80});
    BoundedReader in(bytes);
    EXPECT_EQ(in.I16("a"), -1);
    EXPECT_EQ(in.I16("b"), -32768);
    EXPECT_EQ(in.I32("c"), -1);
    EXPECT_EQ(in.I32("d"), std::numeric_limits<std::int32_t>::min());
}

TEST(BoundedReader, AByteHasNoSign)
{
    const std::string bytes = Raw({0, 0x80, 0xFF});
    BoundedReader in(bytes);
    EXPECT_EQ(in.U8("a"), 0);
    EXPECT_EQ(in.U8("b"), 128);
    EXPECT_EQ(in.U8("c"), 255);
    EXPECT_THROW(in.U8("d"), RecordError);
}

TEST(BoundedReader, ReadsAnyNonzero16BitNumberAsTrue)
{
    const std::string bytes = Raw({0xFF, 0xFF, 1, 0, 0, 1, 0, 0x80, 0, 0});
    BoundedReader in(bytes);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(in.Boolean("flag")) << i;
    EXPECT_FALSE(in.Boolean("flag"));
}

TEST(BoundedReader, KeepsTheBitsOfWhatIsNoNumber)
{
    const std::string bytes = Raw({1, 0, 0xA0, 0x7F, 0, 0, 0x80, 0xFF, 7, 0, 0, 0, 0, 0, 0xF8, 0xFF});
    BoundedReader in(bytes);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(in.F32("signalling")), 0x7FA00001U);
    EXPECT_EQ(in.F32("infinite"), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(std::bit_cast<std::uint64_t>(in.F64("quiet")), 0xFFF8000000000007U);
}

TEST(BoundedReader, NeverReadsZerosBehindTheEnd)
{
    for (const std::size_t size : {0U, 1U}) {
        const std::string bytes = Zeros(size);
        BoundedReader in(bytes);
        EXPECT_EQ(Refusal([&] { in.I16("Deleted"); }),
                  "ReadObj Failure.\nByte 1 of the file: the file ends within \"Deleted\".");
        EXPECT_EQ(in.Left(), size); // nothing was taken
    }
    const std::string seven = Zeros(7);
    EXPECT_NE(Refusal([&] { BoundedReader(seven).F64("x"); }), "");
    EXPECT_NE(Refusal([&] { BoundedReader(seven).Text(8, "x"); }), "");
    EXPECT_NE(Refusal([&] { BoundedReader(seven).Bytes(std::string::npos, "x"); }), "");
    const std::string three = Zeros(3);
    EXPECT_NE(Refusal([&] { BoundedReader(three).I32("x"); }), "");
    EXPECT_NE(Refusal([&] { BoundedReader(three).F32("x"); }), "");
}

TEST(BoundedReader, AFailureIsNumber2253OfTheProgram)
{
    try {
        BoundedReader("").I16("x");
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, 0x80040000U + 2253U);
        EXPECT_EQ(error.source, "ReadObj");
    }
}

TEST(BoundedReader, TrimsTextAtBothEndsButNotAtAZeroByte)
{
    const std::string bytes = "  Ling" + Raw({0}) + "86  ";
    EXPECT_EQ(BoundedReader(bytes).Text(11, "Title"), "Ling" + Zeros(1) + "86");
    EXPECT_EQ(BoundedReader("    ").Text(4, "Title"), "");
    EXPECT_EQ(BoundedReader("\tA\t ").Text(4, "Title"), "\tA\t"); // blanks alone are trimmed
    EXPECT_EQ(BoundedReader("\xE9t\xE9 ").Text(4, "Title"), "\u00E9t\u00E9");
}

TEST(BoundedReader, GoesToAnyPositionWithinTheFileOrRightBehindIt)
{
    BoundedReader in("abc");
    in.Seek(3, "x");
    EXPECT_EQ(in.Bytes(1, "x"), "c");
    in.Seek(4, "x");
    EXPECT_EQ(in.Left(), 0U);
    in.Seek(1, "x");
    EXPECT_EQ(in.Position(), 1U);
    EXPECT_EQ(in.Left(), 3U);
}

TEST(BoundedReader, APositionOutsideTheFileIsRefused)
{
    BoundedReader in("abc");
    for (const std::int64_t outside :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{5}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(Refusal([&] { in.Seek(outside, "Start"); }),
                  "ReadObj Failure.\nByte 1 of the file: \"Start\" points outside the file.")
            << outside;
}

TEST(BoundedReader, APartOfAFileCountsItsBytesAsTheFileDoes)
{
    BoundedReader part("abcd", 100);
    EXPECT_EQ(part.Position(), 100U);
    part.Seek(103, "x");
    EXPECT_EQ(part.Bytes(1, "x"), "d");
    EXPECT_EQ(Refusal([&] { part.I16("LAG"); }),
              "ReadObj Failure.\nByte 104 of the file: the file ends within \"LAG\".");
    EXPECT_NE(Refusal([&] { part.Seek(99, "x"); }), "");
    EXPECT_NE(Refusal([&] { part.Seek(105, "x"); }), "");
}

// Ten bytes follow the count: five items of two bytes, or three of three.
TEST(BoundedReader, ACountThatTheRestOfTheFileCannotHoldIsRefused)
{
    const auto refusal = [](std::int64_t count, std::size_t leastBytes) {
        const std::string bytes = I32(count) + Zeros(10);
        return Refusal([&] { BoundedReader(bytes).Count(leastBytes, "fits"); });
    };
    EXPECT_EQ(refusal(0, 2), "");
    EXPECT_EQ(refusal(5, 2), "");
    EXPECT_EQ(refusal(6, 2), "ReadObj Failure.\nByte 5 of the file: \"fits\" asks for 6 items.");
    EXPECT_EQ(refusal(3, 3), "");
    EXPECT_NE(refusal(4, 3), "");
    EXPECT_NE(refusal(-1, 2), "");
    EXPECT_NE(refusal(std::numeric_limits<std::int32_t>::max(), 2), "");
    EXPECT_NE(refusal(std::numeric_limits<std::int32_t>::min(), 2), "");
}

TEST(ByteWriter, PutsTheLowestByteFirst)
{
    ByteWriter out;
    out.I16(0x1234);
    out.I32(-1842063752);
    out.F32(1.0F);
    out.F64(-2.5);
    EXPECT_EQ(out.Position(), 19U);
    EXPECT_EQ(out.Take(), Raw({0x34, 0x12, 0x78, 0x56, 0x34, 0x92, 0, 0, 0x80, 0x3F, //
                               0, 0, 0, 0, 0, 0, 0x04, 0xC0}));
}

TEST(ByteWriter, WritesTrueAsAllBitsSet)
{
    ByteWriter out;
    out.Boolean(true);
    out.Boolean(false);
    EXPECT_EQ(out.Written(), Raw({0xFF, 0xFF, 0, 0}));
}

TEST(ByteWriter, FillsTextWithBlanksOrCutsIt)
{
    ByteWriter out;
    out.Text("Ling", 6);
    out.Text("Ling 1986", 4);
    out.Text("", 2);
    EXPECT_EQ(out.Written(), "Ling  Ling  ");
}

TEST(ByteWriter, CountsCharactersAndNotTheirBytesInMemory)
{
    ByteWriter out;
    out.Text("\u00E9t\u00E9\u20AC", 3);
    EXPECT_EQ(out.Written(), "\xE9t\xE9");
}

TEST(ByteWriter, WritesAQuestionMarkForACharacterThatTheCodePageLacks)
{
    ByteWriter out;
    out.Text("\u0141\u00F3d\u017A \U0001F41F", 8); // the first is no letter of Western European languages
    out.Text("a\xFFz", 4);                         // no UTF-8
    EXPECT_EQ(out.Written(), "?\xF3"
                             "d? ?  a?z ");
}
