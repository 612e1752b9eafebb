// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/LimitRemarks.h"

#include "models/clsConstRecruit.h"
#include "models/clsRecruitINdex.h"
#include "models/clsSingleCohort.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

namespace
{
using limit_remarks::Said;
using Limits = std::vector<ParameterLimits>;

bool Says(const Said& said, const std::string& text)
{
    return said && said->text.find(text) != std::string::npos;
}

template <typename Model>
std::optional<double> PositionOf(std::int32_t fitOp)
{
    ModelBench<Model> bench(
        TableBuilder().Effort({1, 1, 1}).Catch({5, 6, 7}).Recruits({1, 1, 1}).ToggleOut(3));
    bench.model.FitOp(fitOp);
    bench.model.m.ResidVec(1) = 0.2F;
    bench.model.m.ResidVec(2) = 0.4F;
    bench.model.m.ResidVec(3) = 1.0F;
    return limit_remarks::ShiftedMeanPosition(bench.model, bench.data);
}
} // namespace

// Periods in the fit stand at 0.2 and 0.4, a mean of 0.3.
TEST(LimitsShifted, TheMeanPositionIsThatOfThePeriodsInTheFit)
{
    EXPECT_NEAR(PositionOf<clsSingleCohort>(fit_op::kGamma).value(), 0.3, 1e-7); // of 32-bit positions
    EXPECT_NEAR(PositionOf<clsConstRecruit>(fit_op::kGamma).value(), 0.3, 1e-7);
}

TEST(LimitsShifted, OtherModelsAndErrorModelsHaveNoPositionToTell)
{
    EXPECT_FALSE(PositionOf<clsRecruitINdex>(fit_op::kGamma));
    EXPECT_FALSE(PositionOf<clsSingleCohort>(fit_op::kLog));
    EXPECT_FALSE(PositionOf<clsConstRecruit>(fit_op::kLeastSquares));
}

TEST(LimitsShifted, TellsHowFarThePositionsLieFromTheMiddle)
{
    const Limits inside{{"N1", 100.0, 90.0F, 110.0F}};
    EXPECT_TRUE(Says(limit_remarks::LimitsShifted(0.3, inside),
                     "position of 0.30 in their distributions, 0.20 below"));
    EXPECT_TRUE(Says(limit_remarks::LimitsShifted(0.62, inside), "0.12 above the 0.5"));
    EXPECT_TRUE(Says(limit_remarks::LimitsShifted(0.3, inside), "Do not use the limits."));
    EXPECT_FALSE(limit_remarks::LimitsShifted({}, inside));
}

TEST(LimitsShifted, TellsHowOftenTheLimitsOfTheSchemeHeldTheTruth)
{
    const limit_remarks::MeasuredLimits measured{150, 0.7, "K", 80, 35};
    const Limits inside{{"K", 100.0, 90.0F, 110.0F}};
    EXPECT_TRUE(Says(limit_remarks::LimitsShifted(0.62, inside, measured),
                     "0.12 above the 0.5 of a fit. In 150 simulated data sets with a mean position of 0.70, "
                     "90 % limits of K held the truth in 80 % and those of q in 35 %. Do not use"));
    EXPECT_FALSE(limit_remarks::LimitsShifted({}, inside, measured)) << "no positions, no shift";
    EXPECT_FALSE(
        Says(limit_remarks::LimitsShifted({}, Limits{{"K", 100.0, 50.0F, 99.0F}}, measured), "simulated"));
}

// The models whose positions stand at the start of a period, and no others.
TEST(LimitsShifted, WasMeasuredForTheTwoModelsThatAreShifted)
{
    for (const std::int32_t model :
         {models::kNoRecruitment, models::kRecruitmentIndex, models::kConstantRecruitment, models::kFox,
          models::kSchaefer, models::kPellaTomlinson}) {
        const bool shifted = model == models::kNoRecruitment || model == models::kConstantRecruitment;
        EXPECT_EQ(limit_remarks::MeasuredUnderGamma(model).has_value(), shifted) << model;
    }
}

// A refit finds a parameter to 1e-4, so an estimate counts as outside from a thousandth on: 99.9 and 100.1.
TEST(LimitsShifted, NamesTheEstimatesOutsideTheirOwnLimits)
{
    EXPECT_TRUE(
        Says(limit_remarks::LimitsShifted({}, Limits{{"K", 100.0, 100.2F, 150.0F}, {"q", 1.0, 0.5F, 0.8F}}),
             "K and q lie outside their own limits"));
    EXPECT_TRUE(
        Says(limit_remarks::LimitsShifted({}, Limits{{"K", 100.0, 50.0F, 99.8F}}), "K lies outside its"));
    EXPECT_FALSE(limit_remarks::LimitsShifted({}, Limits{{"K", 100.0, 100.05F, 150.0F}}));
    EXPECT_FALSE(limit_remarks::LimitsShifted({}, Limits{{"K", 100.0, 50.0F, 99.95F}}));
    EXPECT_FALSE(limit_remarks::LimitsShifted({}, Limits{{"K", 100.0, 150.0F, 50.0F}})) << "levels swapped";
}

TEST(LimitsWide, IsSaidFromTenTimesAndFromATenthOfTheEstimateOn)
{
    EXPECT_TRUE(Says(limit_remarks::LimitsWide(Limits{{"K", 100.0, 90.0F, 1000.0F}}), "limits of K reach"));
    EXPECT_TRUE(limit_remarks::LimitsWide(Limits{{"K", 100.0, 10.0F, 110.0F}}));
    EXPECT_TRUE(limit_remarks::LimitsWide(Limits{{"K", 100.0, -5.0F, 110.0F}}));
    EXPECT_TRUE(limit_remarks::LimitsWide(Limits{{"K", 100.0, 1000.0F, 90.0F}})) << "levels swapped";
    EXPECT_FALSE(limit_remarks::LimitsWide(Limits{{"K", 100.0, 10.1F, 999.0F}}));
    EXPECT_FALSE(limit_remarks::LimitsWide(Limits{{"R. Yield", -5.0, -90.0F, 80.0F}}));
    EXPECT_TRUE(
        Says(limit_remarks::LimitsWide(Limits{{"K", 1.0, 0.5F, 20.0F}, {"q", 1.0, 0.01F, 1.5F}}), "K and q"));
}

// 5 of 100 refits are 5 %, 6 of 100 are more.
TEST(ReplicatesFailed, IsSaidAboveFivePerCentOfTheRefits)
{
    EXPECT_FALSE(limit_remarks::ReplicatesFailed(5, 95));
    EXPECT_TRUE(Says(limit_remarks::ReplicatesFailed(6, 94), "6 of 100 refits (6 %)"));
    EXPECT_FALSE(limit_remarks::ReplicatesFailed(0, 500));
    EXPECT_FALSE(limit_remarks::ReplicatesFailed(0, 0));
}
