// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/ExpectedCase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

using Json = nlohmann::json;

namespace
{
std::vector<std::string> Words(const std::string& line)
{
    std::istringstream in(line);
    return {std::istream_iterator<std::string>(in), {}};
}

/// The label of row 1 in the case's time column.
int FirstTime(const Json& expected, const std::string& folder)
{
    std::ifstream in(Sample(folder + "/" + expected["data"].get<std::string>()));
    std::string line;
    std::getline(in, line);
    std::getline(in, line);
    const std::vector<std::string> headings = Words(line);
    std::getline(in, line);
    const auto column =
        std::find(headings.begin(), headings.end(), expected["time_column"]) - headings.begin();
    return std::stoi(Words(line).at(static_cast<std::size_t>(column)));
}
} // namespace

std::vector<std::string> CaseNames(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Sample(folder)))
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> CommandLineOf(const Json& expected, const std::string& folder)
{
    std::string columns, excluded;
    for (const auto& [heading, title] : expected["columns"].items())
        columns += (columns.empty() ? "" : ",") + heading + "=" + title.get<std::string>();
    for (const Json& row : expected["excluded_rows"])
        excluded +=
            (excluded.empty() ? "" : ",") + std::to_string(FirstTime(expected, folder) + row.get<int>() - 1);
    const Json& inputs = expected["inputs"];
    std::vector<std::string> words{"fit",
                                   "--data",
                                   Sample(folder + "/" + expected["data"].get<std::string>()),
                                   "--time-column",
                                   expected["time_column"],
                                   "--columns",
                                   columns,
                                   "--model",
                                   expected["model"],
                                   "--error",
                                   expected["error"],
                                   "--m",
                                   inputs["M"].dump(),
                                   "--init-proportion",
                                   inputs["InitialProportion"].dump(),
                                   "--lag",
                                   inputs["LAG"].dump(),
                                   "--z",
                                   inputs["Z"].dump(),
                                   "--format",
                                   "json"};
    if (!excluded.empty())
        words.insert(words.end(), {"--exclude", excluded});
    return words;
}

void ExpectInRange(const std::string& quantity, const Json& ours, const Json& range)
{
    ASSERT_TRUE(ours.is_number()) << quantity << " is missing";
    EXPECT_GE(ours.get<double>(), range[0].get<double>()) << quantity;
    EXPECT_LE(ours.get<double>(), range[1].get<double>()) << quantity;
}
