// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ReadWholeFile.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

namespace
{
void AnySize(std::uintmax_t) {}

std::uint32_t NumberOf(const std::string& path)
{
    try {
        ReadWholeFile(path, AnySize);
    } catch (const VeltError& error) {
        return error.number;
    }
    return 0;
}
} // namespace

TEST(ReadWholeFile, GivesEveryByte)
{
    EXPECT_EQ(ReadWholeFile(VELT_TEST_SAMPLES "/import/good_rows_dropped.txt", AnySize).size(), 48U);
    EXPECT_TRUE(ReadWholeFile(VELT_TEST_SAMPLES "/import/bad_empty.txt", AnySize).empty());
}

TEST(ReadWholeFile, AMissingFileAFolderAndADeviceHaveTheirFileErrors)
{
    EXPECT_EQ(NumberOf(VELT_TEST_SAMPLES "/import/nowhere.txt"), 76U);
    EXPECT_EQ(NumberOf(""), 76U);
    EXPECT_EQ(NumberOf(VELT_TEST_SAMPLES), 75U);
#ifndef _WIN32
    EXPECT_EQ(NumberOf("/dev/zero"), 75U);
#endif
}

TEST(ReadWholeFile, TheSizeIsCheckedBeforeAnythingIsRead)
{
    const auto refuse = [](std::uintmax_t size) { throw VeltError{7, std::to_string(size), ""}; };
    try {
        ReadWholeFile(VELT_TEST_SAMPLES "/import/good_rows_dropped.txt", refuse);
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, 7U);
        EXPECT_EQ(error.description, "48");
    }
}
