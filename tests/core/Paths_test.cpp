// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Paths.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
VeltError ErrorOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const VeltError& error) {
        return error;
    }
    return {0, "nothing raised", ""};
}
} // namespace

#ifndef _WIN32
TEST(Paths, AFullPathIsTakenApart)
{
    EXPECT_EQ(GetFullPath("/data/north/../ling.vl3"), "/data/ling.vl3");
    EXPECT_EQ(GetBaseName("/data/ling.1986.vl3"), "ling.1986");
    EXPECT_EQ(GetFileName("/data/ling.vl3"), "ling.vl3");
    EXPECT_EQ(GetFileExt("/data/ling.vl3"), ".vl3");
    EXPECT_EQ(GetFileExt("/data.d/ling"), "");
    EXPECT_EQ(GetBaseName("/data.d/ling"), "ling");
}
#endif

TEST(Paths, AnEmptyPathGivesAnEmptyResult)
{
    EXPECT_EQ(GetFullPath(""), "");
    EXPECT_EQ(GetBaseName(""), "");
    EXPECT_EQ(GetFileName(""), "");
    EXPECT_EQ(GetFileExt(""), "");
}

TEST(Paths, APathThatIsNotAbsoluteRaisesSystemError161)
{
    for (const char* path : {"ling.vl3", "./ling.vl3", "c:ling.vl3"}) {
        const VeltError error = ErrorOf([path] { GetFileName(path); });
        EXPECT_EQ(error.number, 161U + 0x80047148U) << path;
        EXPECT_EQ(error.source, "VELT 3.0.Windows");
        EXPECT_FALSE(error.description.empty());
    }
}
