// SPDX-License-Identifier: GPL-3.0-or-later
// Every case of tests/samples/expected: fits of made-up stocks whose accepted ranges come from an independent
// computation. Each value is a range that holds every answer with an objective within rounding of the
// optimum.
#include "batch/BatchJob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

using Json = nlohmann::json;

namespace
{
std::vector<std::string> CaseNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Sample("expected")))
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> Words(const std::string& line)
{
    std::istringstream in(line);
    return {std::istream_iterator<std::string>(in), {}};
}

/// The label of row 1 in the case's time column.
int FirstTime(const Json& expected)
{
    std::ifstream in(Sample("expected/" + expected["data"].get<std::string>()));
    std::string line;
    std::getline(in, line);
    std::getline(in, line);
    const std::vector<std::string> headings = Words(line);
    std::getline(in, line);
    const auto column =
        std::find(headings.begin(), headings.end(), expected["time_column"]) - headings.begin();
    return std::stoi(Words(line).at(static_cast<std::size_t>(column)));
}

std::vector<std::string> CommandLineOf(const Json& expected)
{
    std::string columns, excluded;
    for (const auto& [heading, title] : expected["columns"].items())
        columns += (columns.empty() ? "" : ",") + heading + "=" + title.get<std::string>();
    for (const Json& row : expected["excluded_rows"])
        excluded += (excluded.empty() ? "" : ",") + std::to_string(FirstTime(expected) + row.get<int>() - 1);
    const Json& inputs = expected["inputs"];
    std::vector<std::string> words{"fit",
                                   "--data",
                                   Sample("expected/" + expected["data"].get<std::string>()),
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

void ExpectNamedInRange(const std::string& group, const Json& ours, const Json& expected)
{
    for (const auto& [name, range] : expected.items())
        ExpectInRange(group + "." + name, ours.value(name, Json()), range);
}

void ExpectSeriesInRange(const Json& ours, const Json& expected)
{
    for (const auto& [name, rows] : expected.items())
        for (const auto& [row, range] : rows.items()) {
            const std::size_t index = std::stoul(row) - 1;
            ASSERT_LT(index, ours.size()) << name << " has no row " << row;
            ExpectInRange(name + "(" + row + ")", ours[index].value(name, Json()), range);
        }
}

void ExpectFailure(const BatchJob& job, const Json& expected)
{
    ASSERT_EQ(job.status, 4) << job.err;
    const Json ours = job.Json();
    EXPECT_EQ(ours["Status"], "failed");
    EXPECT_EQ(ours["Excuse"], expected.value("Excuse", 3)) << job.err; // 3: the search did not arrive
    EXPECT_FALSE(ours["Message"].get<std::string>().empty());
}

void ExpectFit(const Json& ours, const Json& expected)
{
    if (expected.contains("objective")) {
        ASSERT_TRUE(ours["Objective"].is_number()) << "Objective is missing";
        EXPECT_LE(ours["Objective"].get<double>(), expected["objective"]["accept_up_to"].get<double>());
        if (expected["objective"]["kind"] != "interior")
            return; // the optimum lies at an edge or at infinity: only its height can be compared
    }
    ExpectNamedInRange("InitEsts", ours["InitEsts"], expected["InitEsts"]);
    ExpectNamedInRange("Estimates", ours["Estimates"], expected["Estimates"]);
    EXPECT_EQ(ours["Estimates"].size(), expected["Estimates"].size());
    ExpectInRange("Var", ours["Var"], expected["Var"]);
    ExpectInRange("RSqr", ours["RSqr"], expected["RSqr"]);
    ExpectSeriesInRange(ours["Series"], expected["Series"]);
}
} // namespace

class Acceptance : public testing::TestWithParam<std::string>
{
};

TEST_P(Acceptance, LiesInTheAcceptedRanges)
{
    std::ifstream file(Sample("expected/" + GetParam() + ".json"));
    const Json expected = Json::parse(file);

    const BatchJob job = RunJob(CommandLineOf(expected));

    if (expected["status"] != "ok") {
        ExpectFailure(job, expected);
        return;
    }
    ASSERT_EQ(job.status, 0) << job.err;
    ExpectFit(job.Json(), expected);
}

INSTANTIATE_TEST_SUITE_P(Case, Acceptance, testing::ValuesIn(CaseNames()),
                         [](const auto& info) { return info.param; });

TEST(AcceptanceCases, AreAllThere)
{
    EXPECT_GE(CaseNames().size(), 84U); // an empty directory must not pass
}
