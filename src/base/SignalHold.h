// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Work that a request to end the program (SIGHUP, SIGINT, SIGTERM) may not cut in two, because it leaves
/// something on the disk until it is done: the request waits until the last hold is gone and then takes its
/// ordinary effect. Does nothing in a program that did not call ObeyHolds. SIGKILL cannot be held.
class SignalHold
{
public:
    SignalHold();
    ~SignalHold();
    SignalHold(const SignalHold&) = delete;
    SignalHold& operator=(const SignalHold&) = delete;

    /// For `main`, before there is another thread. Outside of holds the requests end the program at once, as
    /// without it; one that the parent had the program ignore (nohup) stays ignored.
    static void ObeyHolds();
};
