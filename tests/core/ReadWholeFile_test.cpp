// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ReadWholeFile.h"

#include "base/FileErrors.h"
#include "support/NoHandlesLeft.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

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

TEST(ReadWholeFile, WhatTheFileErrorsDoNotListIsUnidentifiedWithTheSystemsOwnWords)
{
    const std::string loop = testing::TempDir() + "velt_loop";
    std::filesystem::remove(loop);
    std::filesystem::create_symlink(loop, loop);
    const auto refusal = [](const std::string& path) {
        try {
            ReadWholeFile(path, AnySize);
        } catch (const FileError& error) {
            return error;
        }
        return FileError(0, "read");
    };

    const FileError links = refusal(loop);
    std::filesystem::remove(loop);
    EXPECT_EQ(links.number, 0U);
    EXPECT_EQ(links.description, "Default Error Message: An internal unidentified error has occured.");
    EXPECT_EQ(links.reason, "(" + std::system_category().message(ELOOP) + ")");

    const NoHandlesLeft none;
    const FileError handles = refusal(VELT_TEST_SAMPLES "/import/good_rows_dropped.txt");
    EXPECT_EQ(handles.number, 0U);
    EXPECT_EQ(handles.reason, "(" + std::system_category().message(EMFILE) + ")");
    EXPECT_EQ(refusal(VELT_TEST_SAMPLES "/import/nowhere.txt").reason, ""); // its own words say it all
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
