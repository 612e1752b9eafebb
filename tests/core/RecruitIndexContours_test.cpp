// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RecordedPlot.h"
#include "core/RecruitIndexBench.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace
{
/// The contour view of the recruitment index model.
struct IndexContours : ModelBench<clsRecruitINdex> {
    IndexContours() : ModelBench(recruit_index::Simulated(0.1))
    {
        window.nextPlot = std::make_unique<RecordedPlot>(record);
    }

    /// Starts, and shows the range dialog with three points along each axis.
    void Started(std::int32_t fitOp, double n1Lo, double n1Hi, double lambdaLo, double lambdaHi)
    {
        ASSERT_TRUE(Start(fitOp, 0.2));
        user.onContourRange = [=](ContourRange& range) {
            EXPECT_EQ(range.Param1Name, "N1");
            EXPECT_EQ(range.Param2Name, "Lambda");
            range.Param1Lo = n1Lo;
            range.Param1Hi = n1Hi;
            range.Param2Lo = lambdaLo;
            range.Param2Hi = lambdaHi;
            range.ContEvals = 3;
            return true;
        };
        ASSERT_TRUE(model.SetContourRanges());
        model.PlotEvaluations(true);
    }

    std::optional<VeltError> Failure()
    {
        try {
            model.PlotInitContours();
        } catch (const VeltError& error) {
            return error;
        }
        return std::nullopt;
    }

    PlotRecord record;
};
} // namespace

TEST(RecruitIndexContours, TheSurfaceHoldsTheObjectiveOfTheErrorModelOverN1AndLambda)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        IndexContours bench;
        bench.Started(fitOp, 6000.0, 8000.0, 1500.0, 2500.0);
        ASSERT_TRUE(bench.model.PlotInitContours());
        ASSERT_TRUE(bench.record.surface);
        const ContourSurface& surface = *bench.record.surface;
        EXPECT_EQ(surface.x, (std::vector<double>{6000.0, 7000.0, 8000.0}));
        EXPECT_EQ(surface.y, (std::vector<double>{1500.0, 2000.0, 2500.0}));
        EXPECT_EQ(surface.title, "Contour Plot");
        EXPECT_EQ(surface.xName, "N1");
        EXPECT_EQ(surface.yName, "Lambda");
        EXPECT_TRUE(bench.record.marks.empty() && bench.record.steps.empty());
        bench.model.PlotEvaluations(false);
        // A gamma profile ends at its maximum whatever shape it starts from, to the 1e-5 of its root search.
        const double expected = bench.model.INelMead_MinFunc(std::array{7000.0, 2500.0});
        ASSERT_LT(expected, 1e20);
        EXPECT_NEAR(surface.z[1][2] / expected, 1.0, fitOp == fit_op::kLog ? 0.0 : 1e-6);
        EXPECT_NE(surface.z[1][2], surface.z[2][1]);
    }
}

TEST(RecruitIndexContours, ARegressionHasNoSurfaceToShow)
{
    IndexContours bench;
    bench.Started(fit_op::kLeastSquares, 6000.0, 8000.0, 1500.0, 2500.0);
    EXPECT_TRUE(bench.model.PlotInitContours());
    EXPECT_FALSE(bench.record.surface);
    EXPECT_TRUE(bench.meter.titles.empty());
}

TEST(RecruitIndexContours, WithoutARangeNothingIsDrawnAndNothingFails)
{
    for (const std::int32_t fitOp : {fit_op::kLog, fit_op::kGamma}) {
        IndexContours bench;
        bench.Started(fitOp, 0.0, 0.0, 0.0, 0.0);
        EXPECT_FALSE(bench.model.PlotInitContours());
        bench.Started(fitOp, 6000.0, 8000.0, 1500.0, 1500.0);
        EXPECT_FALSE(bench.model.PlotInitContours());
        EXPECT_FALSE(bench.record.surface);
        EXPECT_TRUE(bench.meter.titles.empty());
    }
}

TEST(RecruitIndexContours, WithoutAValidCellOrByCancelTheFailureNamesItsPlace)
{
    IndexContours empty;
    empty.Started(fit_op::kLog, 1.0, 2.0, 0.1, 0.2);
    const auto failed = empty.Failure();
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->number, kProgramErrorBase + errors::kContoursFailed);
    EXPECT_EQ(failed->description, "Failed to Plot Minimisation Contours.");
    EXPECT_EQ(failed->source, "RIM - PlotInitContours");

    IndexContours cancelled;
    cancelled.Started(fit_op::kLog, 6000.0, 8000.0, 1500.0, 2500.0);
    cancelled.meter.cancelAfter = 1;
    const auto stopped = cancelled.Failure();
    ASSERT_TRUE(stopped);
    EXPECT_TRUE(stopped->IsUserCancel());
    EXPECT_EQ(stopped->source, "clsRecruitIndex_IMethod_PlotInitContours");
}

TEST(RecruitIndexContours, ThePathRunsFromTheStartToTheEstimate)
{
    IndexContours bench;
    bench.Started(fit_op::kLog, 6000.0, 8000.0, 1500.0, 2500.0);
    ASSERT_TRUE(bench.model.PlotInitContours());
    const auto start = bench.model.Details().initEsts;
    const auto fit = bench.Finish();
    ASSERT_EQ(bench.record.marks.size(), 2U);
    EXPECT_EQ(bench.record.marks.front().kind, ContourMark::Start1);
    EXPECT_EQ(bench.record.marks.front().x, start.at(0).value);
    EXPECT_EQ(bench.record.marks.front().y, start.at(2).value);
    EXPECT_EQ(bench.record.marks.back().kind, ContourMark::Final);
    EXPECT_EQ(bench.record.marks.back().x, fit.at(0));
    EXPECT_EQ(bench.record.marks.back().y, fit.at(2));
    ASSERT_FALSE(bench.record.steps.empty());
    EXPECT_EQ(bench.record.steps.front().fromX, start.at(0).value);
    EXPECT_EQ(bench.record.steps.front().fromY, start.at(2).value);
}
