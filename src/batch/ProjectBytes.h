// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// All bytes of the project at `path`. \throws BatchFailure BadData when it cannot be read or is no project
/// of this version
std::string ProjectBytes(const std::string& path);

/// \throws BatchFailure BadData with the file's name and the reason
[[noreturn]] void RefuseFile(const std::string& path, const std::string& why);
