// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// All bytes of the file at `path`. `checkSize` sees the size before anything is allocated and refuses by
/// raising. \throws FileError when the path is missing, cannot be read or is no ordinary file
std::vector<std::uint8_t> ReadWholeFile(const std::string& path,
                                        const std::function<void(std::uintmax_t)>& checkSize);
