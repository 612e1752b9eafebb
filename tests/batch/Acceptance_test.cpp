// SPDX-License-Identifier: GPL-3.0-or-later
// Every case of tests/samples/expected: fits of made-up stocks whose accepted ranges come from an independent
// computation. Each value is a range that holds every answer with an objective within rounding of the
// optimum.
#include "batch/ExpectedCase.h"

#include <gtest/gtest.h>

#include <fstream>

using Json = nlohmann::json;

namespace
{
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

    const BatchJob job = RunJob(CommandLineOf(expected, "expected"));

    if (expected["status"] != "ok") {
        ExpectFailure(job, expected);
        return;
    }
    ASSERT_EQ(job.status, 0) << job.err;
    ExpectFit(job.Json(), expected);
}

INSTANTIATE_TEST_SUITE_P(Case, Acceptance, testing::ValuesIn(CaseNames("expected")),
                         [](const auto& info) { return info.param; });

TEST(AcceptanceCases, AreAllThere)
{
    EXPECT_GE(CaseNames("expected").size(), 84U); // an empty directory must not pass
}
