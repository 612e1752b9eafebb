// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/RaisedErrors.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <system_error>

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

TEST(RaisedErrors, ASystemFailureCarriesTheSystemsOwnWords)
{
    const VeltError error = ErrorOf([] { RaiseIfFailed(ENOENT); });
    EXPECT_EQ(error.number, 0x80047148U + static_cast<std::uint32_t>(ENOENT));
    EXPECT_EQ(error.description, std::system_category().message(ENOENT));
    EXPECT_EQ(error.source, "VELT 3.0.Windows");
    EXPECT_NO_THROW(RaiseIfFailed(0));
}

TEST(RaisedErrors, ANumberBelow1001IsRaisedBare)
{
    const VeltError error = ErrorOf([] { RaiseError(1000); });
    EXPECT_EQ(error.number, 1000U);
    EXPECT_EQ(error.description, "");
    EXPECT_EQ(error.source, "VELT 3.0.VBError");
}

TEST(RaisedErrors, ANumberFrom1001TakesItsWordsFromTheStringTable)
{
    const VeltError error = ErrorOf([] { RaiseError(1898); });
    EXPECT_EQ(error.number, 1898U);
    EXPECT_EQ(error.description, "M.S.Y.");
    EXPECT_EQ(error.source, "VELT 3.0.N1"); // text 1890

    EXPECT_EQ(ErrorOf([] { RaiseError(13001); }).number, 13001U); // also without words
}
