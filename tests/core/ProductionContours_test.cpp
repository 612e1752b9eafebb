// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ProductionBench.h"
#include "core/RecordedPlot.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace
{
/// The contour view of a production model.
class ProductionContours : public ::testing::Test, public ProductionBench
{
protected:
    void Started(std::int32_t fitOp, const std::function<void(ContourRange&)>& choose)
    {
        const std::vector<float> effort = ContrastedEffort();
        std::vector<float> catches = KnownStock{.K = 5000.0, .Q = 0.0012, .R = 0.45}.Catches(effort);
        const float pattern[] = {1.05F, 0.96F, 1.02F, 0.95F, 1.03F, 0.99F};
        for (std::size_t t = 0; t < catches.size(); ++t)
            catches[t] *= pattern[t % 6];
        Table(effort, catches);
        Prepare(models::kSchaefer, fitOp);
        ASSERT_TRUE(model.CalcInitEstimates());
        user.onContourRange = [choose](ContourRange& range) {
            choose(range);
            return true;
        };
        ASSERT_TRUE(model.SetContourRanges());
        model.PlotEvaluations(true);
        window.nextPlot = std::make_unique<RecordedPlot>(record);
    }

    PlotRecord record;
};

void Wide(ContourRange& range)
{
    range.Param1Lo = 4000.0;
    range.Param1Hi = 8000.0;
    range.Param2Lo = 0.2;
    range.Param2Hi = 0.6;
    range.ContEvals = 5;
}
} // namespace

TEST_F(ProductionContours, TheSurfaceHoldsTheObjectiveOfTheErrorModel)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kWeightedLeastSquares}) {
        Started(fitOp, Wide);
        ASSERT_TRUE(model.PlotInitContours());
        ASSERT_TRUE(record.surface);
        const double x = record.surface->x[3];
        const double y = record.surface->y[2];
        EXPECT_DOUBLE_EQ(x, 7000.0);
        const double expected =
            fitOp == fit_op::kLog
                ? static_cast<double>(model.MinLogFunction(static_cast<float>(x), static_cast<float>(y)))
                : model.MinLSQFunction(x, y);
        EXPECT_FLOAT_EQ(static_cast<float>(record.surface->z[3][2]), static_cast<float>(expected));
        EXPECT_EQ(record.surface->title, "Minimisation");
        EXPECT_EQ(record.surface->xName, "K");
        EXPECT_EQ(record.surface->yName, "r");
    }
}

namespace
{
/// Keeps the gamma shape that each evaluation starts from.
class WatchedProduction : public clsProduction
{
public:
    std::vector<double> shapes;

protected:
    double Objective(std::span<const double> x) override
    {
        shapes.push_back(m.GammaNu);
        return clsProduction::Objective(x);
    }
};
} // namespace

TEST_F(ProductionContours, EachCellStartsFromTheSameGammaShape)
{
    Started(fit_op::kGamma, Wide);
    WatchedProduction watched;
    watched.Create(data);
    watched.SetColumnRefs();
    watched.FitOp(fit_op::kGamma);
    watched.CalcDiscCatches();
    ASSERT_TRUE(watched.CalcInitEstimates());
    ASSERT_TRUE(watched.SetContourRanges());
    ASSERT_TRUE(watched.PlotInitContours());
    ASSERT_EQ(watched.shapes.size(), 25U);
    EXPECT_GT(watched.shapes[0], 0.0);
    EXPECT_EQ(watched.shapes, std::vector<double>(25, watched.shapes[0]));
}

TEST_F(ProductionContours, WithoutAValidCellTheFailureNamesTheProcedureAlone)
{
    Started(fit_op::kLeastSquares, [](ContourRange& range) {
        range.Param1Lo = 1.0;
        range.Param1Hi = 2.0; // too small a stock anywhere
        range.ContEvals = 2;
    });
    try {
        model.PlotInitContours();
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, 0x800408D6U);
        EXPECT_EQ(error.source, "_IMethod_PlotInitContours");
    }
}

TEST_F(ProductionContours, ACancelNamesClassAndProcedure)
{
    Started(fit_op::kLeastSquares, Wide);
    meter.looks = 0;
    meter.cancelAfter = 2;
    try {
        model.PlotInitContours();
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_TRUE(error.IsUserCancel());
        EXPECT_EQ(error.source, "clsProduction_IMethod_PlotInitContours");
    }
}

TEST_F(ProductionContours, AnIndexOfMinusOneMakesEveryCellOfTheWeightedSurfaceInvalid)
{
    Started(fit_op::kWeightedLeastSquares, Wide);
    data.ColPresent(columns::VarAbundIndex, true); // the index itself is missing, so every weight is -1
    try {
        model.PlotInitContours();
        FAIL();
    } catch (const VeltError& error) {
        EXPECT_EQ(error.number, 0x800408D6U);
    }
}

TEST_F(ProductionContours, WithoutARangeNothingIsDrawnAndNothingFails)
{
    for (const std::int32_t fitOp :
         {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma, fit_op::kWeightedLeastSquares}) {
        Started(fitOp, [](ContourRange& range) { range.Param1Hi = range.Param1Lo; });
        EXPECT_FALSE(model.PlotInitContours());
        EXPECT_FALSE(record.surface);
        EXPECT_TRUE(meter.titles.empty());
        Started(fitOp, [](ContourRange& range) { range.Param2Lo = range.Param2Hi; });
        EXPECT_FALSE(model.PlotInitContours());
        Started(fitOp, Wide);
        EXPECT_TRUE(model.PlotInitContours());
        EXPECT_TRUE(record.surface);
        record = PlotRecord();
        meter.titles.clear();
    }
}

TEST_F(ProductionContours, ThePathStartsAtTheInitialEstimatesAndEndsAtTheEstimate)
{
    Started(fit_op::kLeastSquares, Wide);
    const std::vector<NamedValue> start = model.Details().initEsts;
    ASSERT_TRUE(model.PlotInitContours());
    EXPECT_TRUE(record.steps.empty());
    model.CalcFinalEstimates();
    ASSERT_FALSE(record.steps.empty());
    EXPECT_EQ(record.steps.front().fromX, start[0].value);
    EXPECT_EQ(record.steps.front().fromY, start[2].value);
    for (std::size_t i = 1; i < record.steps.size(); ++i)
        ASSERT_EQ(record.steps[i].fromX, record.steps[i - 1].toX); // in one piece, over all three starts
    EXPECT_EQ(record.marks.back().x, model.FinalEsts()[0]);
}

TEST_F(ProductionContours, AWindowClosedInMidFitLetsTheFitGoOnAndEndTheSame)
{
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        Started(fitOp, Wide);
        model.PlotEvaluations(false);
        model.CalcFinalEstimates();
        const std::vector<double> unwatched = model.FinalEsts();

        record = PlotRecord();
        record.closedAfter = 40;
        Started(fitOp, Wide);
        ASSERT_TRUE(model.PlotInitContours());
        model.CalcFinalEstimates();
        EXPECT_EQ(record.steps.size(), 40U);
        EXPECT_FALSE(model.PlotEvaluations());
        EXPECT_EQ(model.FinalEsts(), unwatched);
    }
}
