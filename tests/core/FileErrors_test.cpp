// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileErrors.h"

#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <tuple>
#include <utility>
#include <vector>

TEST(FileErrors, EachFileErrorHasItsTextAndButtons)
{
    const std::vector<std::tuple<std::uint32_t, std::string, Buttons>> table{
        {52, "That file number or name is illegal", Buttons::OkCancel},
        {54, "Can't open your file for that type of access", Buttons::RetryCancel},
        {55, "This file is already open.", Buttons::RetryCancel},
        {57, "Internal disk error.", Buttons::RetryCancel},
        {61, "Disk is full. Continue?", Buttons::YesNoCancel},
        {62,
         "This file has a nonstandard end-of-file marker, or an attempt was made to read beyond the "
         "end-of-file marker.",
         Buttons::RetryCancel},
        {64, "That filename is illegal.", Buttons::OkCancel},
        {68, "That device appears unavailable.", Buttons::RetryCancel},
        {71, "Insert a disk in the drive and make sure door is closed", Buttons::RetryCancel},
        {75, "That path or filename cannot be accessed.", Buttons::RetryCancel},
        {76, "That path doesn't exist.", Buttons::RetryCancel},
    };
    for (const auto& [number, text, buttons] : table) {
        ScriptedUser user;
        ErrorReporter reporter(user);
        user.answers = {Answer::Cancel};
        EXPECT_EQ(FileErrors(number, reporter), FileErrorDecision::GiveUp) << number;
        ASSERT_EQ(user.messages.size(), 1U);
        EXPECT_EQ(user.messages[0].text, text);
        EXPECT_EQ(user.messages[0].buttons, buttons) << number;
        EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
        EXPECT_EQ(user.messages[0].title, "File Error");
    }
}

TEST(FileErrors, DiskIsFullAnsweredYesOrNoRetriesTheWrite)
{
    ScriptedUser user;
    ErrorReporter reporter(user);
    user.answers = {Answer::Yes, Answer::No, Answer::Cancel};
    EXPECT_EQ(FileErrors(61, reporter), FileErrorDecision::Retry);
    EXPECT_EQ(FileErrors(61, reporter), FileErrorDecision::Retry); // deliberate: No has no meaning of its own
    EXPECT_EQ(FileErrors(61, reporter), FileErrorDecision::GiveUp);
}

TEST(FileErrors, OkAndRetryTryAgain)
{
    ScriptedUser user;
    ErrorReporter reporter(user);
    user.answers = {Answer::Ok, Answer::Retry};
    EXPECT_EQ(FileErrors(64, reporter), FileErrorDecision::Retry);
    EXPECT_EQ(FileErrors(76, reporter, "/data/none.txt"), FileErrorDecision::Retry);
    EXPECT_EQ(user.messages[1].text, "That path doesn't exist.\n/data/none.txt");
}

// "Disk is full. Continue?" used to try again for ever when its box was answered by something it does not
// offer.
TEST(FileErrors, AnAnswerThatTheBoxDoesNotOfferGivesUp)
{
    const std::vector<std::pair<std::uint32_t, std::vector<Answer>>> notOffered{
        {52, {Answer::Yes, Answer::No, Answer::Retry}}, // OK and Cancel
        {57, {Answer::Ok, Answer::Yes, Answer::No}},    // Retry and Cancel
        {61, {Answer::Ok, Answer::Retry}},              // Yes, No and Cancel
    };
    for (const auto& [number, answers] : notOffered) {
        for (const Answer answer : answers) {
            ScriptedUser user;
            ErrorReporter reporter(user);
            user.answers = {answer};
            EXPECT_EQ(FileErrors(number, reporter), FileErrorDecision::GiveUp)
                << number << " answered " << static_cast<int>(answer);
        }
    }
}

TEST(FileErrors, AnUnknownFileErrorShowsTheDefaultMessageAndGivesUp)
{
    for (const std::uint32_t number : {0U, 9U, 53U, 77U}) {
        ScriptedUser user;
        ErrorReporter reporter(user);
        EXPECT_EQ(FileErrors(number, reporter), FileErrorDecision::Unknown) << number;
        EXPECT_EQ(user.messages.at(0).text,
                  "Default Error Message: An internal unidentified error has occured.");
        EXPECT_EQ(user.messages.at(0).buttons, Buttons::Ok);
    }
}

TEST(FileErrors, TheSystemsCodesBecomeFileErrors)
{
    EXPECT_EQ(FileErrorOf(ENOENT), 76U);
    EXPECT_EQ(FileErrorOf(EACCES), 75U);
    EXPECT_EQ(FileErrorOf(EISDIR), 75U);
    EXPECT_EQ(FileErrorOf(ENOSPC), 61U);
    EXPECT_EQ(FileErrorOf(ENXIO), 68U);
    EXPECT_EQ(FileErrorOf(EIO), 57U);
    EXPECT_EQ(FileErrorOf(EINVAL), 0U);
}
