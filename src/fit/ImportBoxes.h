// SPDX-License-Identifier: GPL-3.0-or-later
// The boxes that imports of any kind show.
#pragma once

#include "base/FileErrors.h"
#include "base/Run.h"

#include <string>

/// A box under the title "Import Error".
Message ImportBox(std::string text, Buttons buttons);

/// Asks whether a file without description is imported all the same.
bool GoesOnWithoutDescription(Run& run);

/// Tells the user that the system refused the file at `path`. \return whether to try again
bool RetryAfterFileError(Run& run, const FileError& error, const std::string& path);
