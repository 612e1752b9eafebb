// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// Path routines on full paths in the system's own form. An empty path gives an empty text; a path that is
/// not absolute raises system error 161 with the source "VELT 3.0.Windows".
std::string GetFullPath(const std::string& path);
std::string GetBaseName(const std::string& path); ///< name without extension
std::string GetFileName(const std::string& path); ///< name with extension
std::string GetFileExt(const std::string& path);  ///< extension with its dot
