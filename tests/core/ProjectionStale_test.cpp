// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ProjectionStale.h"

#include <gtest/gtest.h>

namespace
{
std::string TextOf(const std::vector<EffortProjection>& projections)
{
    const auto remark = ProjectionStale(projections);
    if (!remark)
        return {};
    EXPECT_EQ(remark->code, "ProjectionStale");
    return remark->text;
}

/// 729 fish without natural mortality, q 0.001: a period of 200 units of effort leaves 0.9 / 1.1 of them.
EffortProjection Projection(std::vector<float> effort, std::vector<float> population)
{
    return {.title = "A",
            .q = 0.001,
            .mort = 0.0F,
            .firstTime = 4,
            .effort = std::move(effort),
            .population = std::move(population)};
}
} // namespace

TEST(ProjectionStale, SaysWhatEachPeriodsOwnCatchWouldLeave)
{
    const std::string text = TextOf({Projection({200, 200}, {729, 730, 730})}); // 596.45 and 488.01
    EXPECT_NE(text.find("\"A\": 730 in 5, not 596.5; 730 in 6, not 488."), std::string::npos) << text;
}

TEST(ProjectionStale, AnEffortOf0MeetsTheMarkOfTheEmptyCellAndThatIsSaid)
{
    const std::string text = TextOf({Projection({0, 0}, {729, 730, 730})});
    EXPECT_NE(text.find("\"A\": 730 in 5, not 729"), std::string::npos) << text;
}

TEST(ProjectionStale, IsQuietWhereNoNumberIsMoved)
{
    EXPECT_EQ(TextOf({Projection({0, 0}, {729, 729, 729})}), "");
    EXPECT_EQ(TextOf({Projection({200}, {729, 596.4546F})}), "");
    EXPECT_EQ(TextOf({}), "");
}

TEST(ProjectionStale, NaturalMortalityActsBeforeAndBehindTheCatch)
{
    EffortProjection projection = Projection({200}, {1000, 800});
    projection.mort = 0.2F; // 1000 (exp(-0.2) - 0.2 exp(-0.2) / 1.1) = 669.9
    EXPECT_NE(TextOf({projection}).find("800 in 5, not 669.9"), std::string::npos) << TextOf({projection});
}

TEST(ProjectionStale, NamesThreePeriodsAndThreeScenariosAndCountsTheRest)
{
    std::vector<EffortProjection> all(5, Projection({200, 200, 200, 200}, {729, 730, 730, 730, 730}));
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i].title = std::string(1, static_cast<char>('A' + i));
    const std::string text = TextOf(all);
    EXPECT_NE(text.find("\"C\": 730 in 5"), std::string::npos) << text;
    EXPECT_EQ(text.find("\"D\""), std::string::npos) << text;
    EXPECT_EQ(text.find(" in 8"), std::string::npos) << text;
    EXPECT_NE(text.find("The same holds for 2 more."), std::string::npos) << text;
}
