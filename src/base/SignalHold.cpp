// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/SignalHold.h"

#include <atomic>
#include <csignal>

namespace
{
// A handler may touch nothing else; it can run on any thread, so blocking a signal on one would not do.
static_assert(std::atomic<int>::is_always_lock_free);
std::atomic<int> holds{0};
std::atomic<int> waiting{0}; ///< the signal that came while a hold stood; 0 for none

void EndBy(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void OnSignal(int signal)
{
    waiting = signal; // before the look at the holds, so that the last one to go sees it
    if (holds == 0)
        EndBy(signal);
}
} // namespace

SignalHold::SignalHold()
{
    ++holds;
}

SignalHold::~SignalHold()
{
    if (--holds == 0 && waiting != 0)
        EndBy(waiting);
}

void SignalHold::ObeyHolds()
{
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction action {
        };
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = OnSignal;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}
