// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ErrorReporter.h"

#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

TEST(VeltError, AFailureOfTheProgramCarriesTheBase)
{
    const VeltError error = ProgramError(2263, "User Cancelled.", "clsX_Do");

    EXPECT_EQ(error.number, 0x800408D7U); // 0x80040000 + 2263
    EXPECT_TRUE(error.IsUserCancel());
    EXPECT_FALSE(error.IsNumeric());
    EXPECT_STREQ(error.what(), "User Cancelled.");
}

TEST(VeltError, OnlyArithmeticFailuresAreNumeric)
{
    for (const std::uint32_t number : {5U, 6U, 11U})
        EXPECT_TRUE((VeltError{number, "", ""}.IsNumeric())) << number;
    for (const std::uint32_t number : {0U, 9U, 2263U, kProgramErrorBase + 6U})
        EXPECT_FALSE((VeltError{number, "", ""}.IsNumeric())) << number;
}

TEST(VeltError, ARuntimeFailureThatIsNoCancelIsNotTakenForOne)
{
    EXPECT_FALSE((VeltError{2263, "User Cancelled.", ""}.IsUserCancel())); // the base is missing
}

TEST(ErrorReporter, ShowsDescriptionAndSource)
{
    ScriptedUser user;
    ErrorReporter reporter(user);

    reporter.HandleError(ProgramError(2264, "Log Failed.", "fit manager"), "frmVelt3_mnuLog");

    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_TRUE(user.Saw("Log Failed."));
    EXPECT_TRUE(user.Saw("fit manager"));
    EXPECT_FALSE(user.Saw("frmVelt3_mnuLog"));
    EXPECT_EQ(user.messages[0].title, "VELT 3.0");
}

TEST(ErrorReporter, AFailureWithoutASourceIsShownWithTheCallersOwn)
{
    ScriptedUser user;
    ErrorReporter(user).HandleError(VeltError{11, "Division by zero", ""}, "frmVelt3_mnuEditMode");
    EXPECT_TRUE(user.Saw("frmVelt3_mnuEditMode"));
}

TEST(ErrorReporter, AHintStandsBehindTheWordsOfTheFailureInAParagraphOfItsOwn)
{
    ScriptedUser user;
    ErrorReporter(user).HandleError(VeltError{11, "Division by zero", ""}, "frmVelt3", "Look at the table.");
    EXPECT_EQ(user.messages.at(0).text, "Division by zero\n\n(frmVelt3)\n\nLook at the table.");
}

TEST(ErrorReporter, ACancelByTheUserIsSwallowedWithoutAMessage)
{
    ScriptedUser user;
    ErrorReporter(user).HandleError(UserCancelled("clsSingleCohort_CalcLSQBootStraps"), "frmVelt3");
    EXPECT_TRUE(user.messages.empty());
}
