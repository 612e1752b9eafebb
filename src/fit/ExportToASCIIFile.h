// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/WholeFile.h"

#include <string>

class clsVeltData;

/// Exports the table of `data` as a text file, as the person at the desk meets it: told when it stands, asked
/// whether to try again when the system refuses. What stood under the name stays until the new file is whole.
/// \return whether it was exported \throws VeltError 5 as TextOf
bool ExportToASCIIFile(const clsVeltData& data, const std::string& path,
                       const FileCalls& calls = SystemFileCalls());
