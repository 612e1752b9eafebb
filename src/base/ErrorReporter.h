// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Ports.h"
#include "base/VeltError.h"

#include <string>

/// Tells the user of a failure that reached a command. It never ends the program and never raises.
class ErrorReporter
{
public:
    explicit ErrorReporter(IUser& user) : m_user(user) {}

    /// Shows `error`'s description with its source, or with `source` when the error names none, and behind
    /// them in a paragraph of its own what the user may do about it. A cancel by the user is the normal end
    /// of long work and is swallowed.
    void HandleError(const VeltError& error, const std::string& source, const std::string& hint = {});

    Answer Show(const Message& message) { return m_user.Show(message); }

private:
    IUser& m_user;
};
