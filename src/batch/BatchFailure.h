// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fit/Remark.h"

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <vector>

/// What the shell sees when velt-batch ends.
enum class ExitStatus : int {
    Done = 0,
    BadUsage = 2,  ///< the command line asks for something that does not exist
    BadData = 3,   ///< the table cannot be read, or lacks what the model needs
    FitFailed = 4, ///< the arithmetic or the search ended without a fit
};

/// Ends a batch job: the sentence for the terminal and the status for the shell.
struct BatchFailure : std::exception {
    BatchFailure(ExitStatus status, std::string message, std::int32_t excuse = 0,
                 std::vector<Remark> remarks = {})
        : status(status), message(std::move(message)), excuse(excuse), remarks(std::move(remarks))
    {
    }
    const char* what() const noexcept override { return message.c_str(); }

    ExitStatus status;
    std::string message;
    std::int32_t excuse;         ///< a model's Excuse; 0 when the failure is not a model's
    std::vector<Remark> remarks; ///< where the cause is known
};
