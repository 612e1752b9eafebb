// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ResultNames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <string_view>

namespace
{
bool IsIn(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsTable(const std::string& name)
{
    return IsIn(FitTableNames(), name) || IsIn(BootstrapTableNames(), name) ||
           IsIn(ProjectionTableNames(), name) || IsIn(ContourTableNames(), name);
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// At least two digits, a hyphen, small letters, digits and hyphens, and one of two endings.
bool IsPictureName(std::string_view name)
{
    if (!name.ends_with(".png") && !name.ends_with(".svg"))
        return false;
    name.remove_suffix(4);
    const auto words = std::find_if_not(name.begin(), name.end(), IsDigit);
    return words - name.begin() >= 2 && words != name.end() && *words == '-' &&
           std::all_of(words, name.end(),
                       [](char c) { return IsDigit(c) || (c >= 'a' && c <= 'z') || c == '-'; });
}

bool NamesThisProgram(const std::filesystem::path& picture)
{
    std::array<char, 4096> bytes{};
    std::ifstream file(picture, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    return std::string_view(bytes.data(), static_cast<std::size_t>(file.gcount())).find("VELT 3.0") !=
           std::string_view::npos;
}

bool IsResultName(const std::string& name)
{
    return IsTable(name) || IsPictureName(name);
}
} // namespace

const std::vector<std::string>& FitTableNames()
{
    static const std::vector<std::string> names{"estimates.csv", "series.csv"};
    return names;
}

const std::vector<std::string>& BootstrapTableNames()
{
    static const std::vector<std::string> names{"intervals.csv", "replicates.csv"};
    return names;
}

const std::vector<std::string>& ProjectionTableNames()
{
    static const std::vector<std::string> names{"projections.csv"};
    return names;
}

const std::vector<std::string>& ContourTableNames()
{
    static const std::vector<std::string> names{"contours.csv", "contour_path.csv"};
    return names;
}

ResultNames AllResults()
{
    return {IsResultName, [](const std::filesystem::path& file) {
                const std::string name = file.filename().string();
                return IsTable(name) || (IsPictureName(name) && NamesThisProgram(file));
            }};
}

ResultNames ContourResults()
{
    return {[](const std::string& name) { return IsIn(ContourTableNames(), name); },
            [](const std::filesystem::path& file) {
                return IsIn(ContourTableNames(), file.filename().string());
            }};
}
