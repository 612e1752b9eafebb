// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ImportBoxes.h"

#include "base/StringTable.h"

#include <utility>

Message ImportBox(std::string text, Buttons buttons)
{
    return {.text = std::move(text), .buttons = buttons, .title = LoadResString(1302)};
}

bool GoesOnWithoutDescription(Run& run)
{
    const Message question =
        ImportBox("The File contains no file description, do you wish to continue?", Buttons::YesNoCancel);
    return run.reporter.Show(question) == Answer::Yes;
}

bool RetryAfterFileError(Run& run, const FileError& error, const std::string& path)
{
    const std::string place = path + (error.reason.empty() ? "" : "\n" + error.reason);
    return FileErrors(error.number, run.reporter, place) == FileErrorDecision::Retry;
}
