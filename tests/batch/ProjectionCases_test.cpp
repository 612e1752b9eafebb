// SPDX-License-Identifier: GPL-3.0-or-later
// Every case of tests/samples/projections: fits run forward under scenarios, with accepted ranges of an
// independent computation: every accepted fit projected.
#include "batch/ExpectedCase.h"

#include <gtest/gtest.h>

#include <fstream>

using Json = nlohmann::json;

class ProjectionCases : public testing::TestWithParam<std::string>
{
};

TEST_P(ProjectionCases, LieInTheAcceptedRanges)
{
    std::ifstream file(Sample("projections/" + GetParam() + ".json"));
    const Json expected = Json::parse(file);
    std::vector<std::string> words = CommandLineOf(expected, "projections");
    words.insert(words.end(),
                 {"--scenarios", Sample("projections/" + expected["scenarios"].get<std::string>())});
    const BatchJob job = RunJob(words);
    if (expected["model"] == "recruitment-index") { // which has no projections
        EXPECT_EQ(job.status, 2);
        return;
    }
    ASSERT_EQ(job.status, 0) << job.err;
    const Json ours = job.Json()["Projections"];
    ASSERT_EQ(ours.size(), expected["Projections"].size());
    for (std::size_t p = 0; p < ours.size(); ++p) {
        const Json& theirs = expected["Projections"][p];
        EXPECT_EQ(ours[p]["Scenario"], theirs["Scenario"]);
        EXPECT_EQ(ours[p].value("Units", ""), theirs.value("Units", ours[p].value("Units", "")));
        ASSERT_EQ(ours[p]["Series"].size(), theirs["Series"].size()) << ours[p]["Scenario"];
        for (std::size_t i = 0; i < ours[p]["Series"].size(); ++i) {
            const Json& point = ours[p]["Series"][i];
            EXPECT_EQ(point["Time"], theirs["Series"][i]["Time"]);
            ExpectInRange(theirs["Scenario"].get<std::string>() + " " + point["Time"].dump(),
                          point["Population"], theirs["Series"][i]["Population"]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Case, ProjectionCases, testing::ValuesIn(CaseNames("projections")),
                         [](const auto& test) { return test.param; });
