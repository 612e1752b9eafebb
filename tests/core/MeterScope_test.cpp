// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/MeterScope.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace
{
/// A meter that writes down all that happens to it.
class WrittenMeter : public IProgressMeter
{
public:
    std::vector<std::string> events;
    bool cancelled = false;

    void Start(const std::string& title, int maximum) override
    {
        events.push_back("start " + title + " of " + std::to_string(maximum));
    }
    void Value(int value) override { events.push_back("value " + std::to_string(value)); }
    bool Cancelled() override { return cancelled; }
    void Finish() override { events.emplace_back("finish"); }
};

using Events = std::vector<std::string>;
} // namespace

TEST(MeterScope, TheMeterStandsFromTheFirstStepToTheEndOfTheWork)
{
    WrittenMeter meter;
    {
        MeterScope scope(meter, "Sorting", 3);
        EXPECT_EQ(meter.events, (Events{"start Sorting of 3"}));
        scope.Done(1, "clsSorter_Sort");
        scope.Done(2, "clsSorter_Sort");
        EXPECT_EQ(meter.events, (Events{"start Sorting of 3", "value 1", "value 2"}));
    }
    EXPECT_EQ(meter.events, (Events{"start Sorting of 3", "value 1", "value 2", "finish"}));
}

TEST(MeterScope, TheMeterGoesAwayAlsoWhenTheWorkFails)
{
    WrittenMeter meter;
    try {
        const MeterScope scope(meter, "Sorting", 3);
        throw std::runtime_error("work");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(meter.events, (Events{"start Sorting of 3", "finish"}));
    }
}

TEST(MeterScope, ACancelEndsTheWorkUnderTheNameOfItsOperationAndTheStepIsNotShown)
{
    WrittenMeter meter;
    meter.cancelled = true;
    try {
        MeterScope scope(meter, "Sorting", 3);
        scope.Done(1, "clsSorter_Sort");
        FAIL() << "the work went on";
    } catch (const VeltError& error) {
        EXPECT_TRUE(error.IsUserCancel());
        EXPECT_EQ(error.source, "clsSorter_Sort");
    }
    EXPECT_EQ(meter.events, (Events{"start Sorting of 3", "finish"}));
}
