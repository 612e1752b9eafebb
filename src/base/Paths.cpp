// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Paths.h"

#include "base/RaisedErrors.h"

#include <filesystem>
#include <string_view>

namespace
{
#ifdef _WIN32
bool IsFullPath(std::string_view path)
{
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (path.size() >= 3 && isLetter(path[0]) && path.substr(1, 2) == ":\\")
        return true;
    if (path.substr(0, 2) != "\\\\")
        return false;
    const auto share = path.find('\\', 2);
    return share != std::string_view::npos && share > 2 && share + 1 < path.size() && path[share + 1] != '\\';
}
#else
bool IsFullPath(std::string_view path)
{
    return !path.empty() && path.front() == '/';
}
#endif

/// `path` taken apart by the system's rules; empty stays empty.
std::filesystem::path Accepted(const std::string& path)
{
    if (!path.empty() && !IsFullPath(path))
        RaiseWindowsError(kBadPathname);
    return std::filesystem::path(path);
}
} // namespace

std::string GetFullPath(const std::string& path)
{
    return Accepted(path).lexically_normal().string();
}

std::string GetBaseName(const std::string& path)
{
    return Accepted(path).stem().string();
}

std::string GetFileName(const std::string& path)
{
    return Accepted(path).filename().string();
}

std::string GetFileExt(const std::string& path)
{
    return Accepted(path).extension().string();
}
