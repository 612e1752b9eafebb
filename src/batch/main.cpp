// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/SignalHold.h"
#include "batch/RunBatch.h"

#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace
{
/// A program that is started with a closed standard output would give its number to the next file opened, and
/// print the report into that. In its place stands something that refuses what is written.
void FillClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0)
            ::open("/dev/null", O_RDONLY); // takes the lowest free number, which is this one
}
} // namespace

int main(int argc, char** argv)
{
    FillClosedStreams();
    SignalHold::ObeyHolds();
    std::signal(SIGXFSZ, SIG_IGN); // a limit of file sizes is told as the failure that it is
    return RunBatch({argv + 1, argv + argc}, std::cout, std::cerr);
}
