// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/SignalHold.h"

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
constexpr int kReached = 42;

/// How a child that obeys holds ends when it does `work` and then leaves with kReached.
int StatusOf(const std::function<void()>& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        SignalHold::ObeyHolds();
        work();
        ::_exit(kReached);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

bool EndedBy(int signal, int status)
{
    return WIFSIGNALED(status) && WTERMSIG(status) == signal;
}
} // namespace

TEST(SignalHold, WithoutAHoldARequestEndsTheProgramAtOnce)
{
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        EXPECT_TRUE(EndedBy(signal, StatusOf([signal] { ::raise(signal); }))) << signal;
}

// The child leaves inside the hold: it was alive then.
TEST(SignalHold, WhileAHoldStandsTheProgramGoesOn)
{
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        const int status = StatusOf([signal] {
            const SignalHold hold;
            ::raise(signal);
            ::_exit(kReached);
        });
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == kReached) << signal;
    }
}

TEST(SignalHold, ARequestThatCameDuringAHoldEndsTheProgramBehindTheLastOne)
{
    int outcome[2];
    ASSERT_EQ(::pipe(outcome), 0);
    const int status = StatusOf([&] {
        {
            const SignalHold outer;
            {
                const SignalHold inner;
                ::raise(SIGTERM);
            }
            if (::write(outcome[1], "1", 1) != 1) // still alive between the two ends
                ::_exit(1);
        }
        if (::write(outcome[1], "2", 1) != 1)
            ::_exit(1);
    });
    ::close(outcome[1]);
    char seen[3] = {};
    const ssize_t count = ::read(outcome[0], seen, 2);
    ::close(outcome[0]);

    EXPECT_TRUE(EndedBy(SIGTERM, status)) << status;
    EXPECT_EQ(count, 1);
    EXPECT_STREQ(seen, "1");
}

// nohup, and a shell that starts a job in the background, have signals ignored.
TEST(SignalHold, ASignalThatWasIgnoredStaysIgnored)
{
    const auto former = ::signal(SIGHUP, SIG_IGN);
    const int status = StatusOf([] { ::raise(SIGHUP); });
    ::signal(SIGHUP, former);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == kReached);
}
