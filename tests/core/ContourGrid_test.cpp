// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ContourGrid.h"

#include "core/ProductionBench.h"
#include "core/RecordedPlot.h"
#include "models/clsRecruitINdex.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <vector>

namespace
{
constexpr double kInvalid = 1e20;

/// A grid over 1 to 3 by 10 to 30 and an objective of the test's own.
class Grid : public ::testing::Test, public Bench
{
protected:
    Grid()
    {
        state.run = &run;
        state.PlotEvaluations = true;
        grid.range = {.Param1Name = "K",
                      .Param2Name = "r",
                      .Param1Lo = 1.0,
                      .Param1Hi = 3.0,
                      .Param2Lo = 10.0,
                      .Param2Hi = 30.0,
                      .ContEvals = 3};
        window.nextPlot = std::make_unique<RecordedPlot>(record);
    }

    void Draw(const std::function<double(double, double)>& objective)
    {
        grid.Draw(state, objective, "Minimisation", "empty", "cancelled");
    }

    std::optional<VeltError> FailureOf(const std::function<double(double, double)>& objective)
    {
        try {
            Draw(objective);
        } catch (const VeltError& error) {
            return error;
        }
        return std::nullopt;
    }

    ModelState state;
    ContourGrid grid;
    PlotRecord record;
};
} // namespace

TEST_F(Grid, CellsStandAtEvenStepsBetweenTheBounds)
{
    Draw([](double x, double y) { return 100.0 * x + y; });
    ASSERT_TRUE(record.surface);
    EXPECT_EQ(record.surface->x, (std::vector<double>{1.0, 2.0, 3.0}));
    EXPECT_EQ(record.surface->y, (std::vector<double>{10.0, 20.0, 30.0}));
    EXPECT_EQ(record.surface->z[0], (std::vector<double>{110.0, 120.0, 130.0}));
    EXPECT_EQ(record.surface->z[2], (std::vector<double>{310.0, 320.0, 330.0}));
    EXPECT_EQ(record.surface->zMin, 110.0);
    EXPECT_EQ(record.surface->zMax, 330.0);
    EXPECT_EQ(record.surface->levels, 20);
    EXPECT_EQ(record.surface->title, "Minimisation");
    EXPECT_EQ(record.surface->zName, "Negative Likelihood Function");
    EXPECT_EQ(record.surface->xName, "K");
    EXPECT_EQ(record.surface->yName, "r");
}

// The cells keep 64 bits, so that a flat neighbourhood of the minimum has no steps; only the range and the
// plateau are floats. The cells used to be floats.
TEST_F(Grid, CellsKeep64BitsAndTheRangeAndThePlateauAreFloats)
{
    grid.range.ContEvals = 2;
    const auto value = [](double x, double y) { return 0.1 + 1e-12 * x + 1e-13 * y; };
    Draw([&](double x, double y) { return x == 3.0 && y == 30.0 ? kInvalid : value(x, y); });
    EXPECT_EQ(record.surface->z[0][0], value(1.0, 10.0));
    EXPECT_EQ(record.surface->z[0][1], value(1.0, 30.0));
    EXPECT_EQ(record.surface->z[1][0], value(3.0, 10.0));
    EXPECT_EQ(record.surface->zMin, static_cast<double>(0.1F));
    EXPECT_EQ(record.surface->zMax, static_cast<double>(0.1F));
    EXPECT_EQ(record.surface->z[1][1], static_cast<double>(0.1F)); // 0.1F + (0.1F - 0.1F) / 9
}

TEST_F(Grid, AGridOfOneCellStandsAtTheTwoLowBounds)
{
    grid.range.ContEvals = 1;
    Draw([](double x, double y) { return x + y; });
    EXPECT_EQ(record.surface->x, std::vector<double>{1.0});
    EXPECT_EQ(record.surface->y, std::vector<double>{10.0});
    EXPECT_EQ(record.surface->z[0], std::vector<double>{11.0});
    EXPECT_EQ(record.surface->plateau, 11.0);
}

// Valid values 4 and 13: the plateau is 13 + (13 - 4) / 9 = 14.
TEST_F(Grid, InvalidCellsShowAsAPlateauANinthOfTheRangeAboveTheSurface)
{
    Draw(
        [](double x, double y) { return y > 10.0 ? kInvalid : (x == 1.0 ? 4.0 : (x == 2.0 ? 13.0 : 1e21)); });
    EXPECT_EQ(record.surface->plateau, 14.0);
    EXPECT_EQ(record.surface->z[0], (std::vector<double>{4.0, 14.0, 14.0}));
    EXPECT_EQ(record.surface->z[1], (std::vector<double>{13.0, 14.0, 14.0}));
    EXPECT_EQ(record.surface->z[2], (std::vector<double>{14.0, 14.0, 14.0}));
}

TEST_F(Grid, WithOneValidCellThePlateauIsItsValue)
{
    Draw([](double x, double y) { return x == 2.0 && y == 20.0 ? 7.0 : kInvalid; });
    EXPECT_EQ(record.surface->zMin, 7.0);
    EXPECT_EQ(record.surface->zMax, 7.0);
    EXPECT_EQ(record.surface->plateau, 7.0);
    EXPECT_EQ(record.surface->z[0][0], 7.0);
}

TEST_F(Grid, WithoutAValidCellTheContoursFail)
{
    const std::optional<VeltError> failure = FailureOf([](double, double) { return kInvalid; });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, 0x800408D6U);
    EXPECT_EQ(failure->description, "Failed to Plot Minimisation Contours.");
    EXPECT_EQ(failure->source, "empty");
    EXPECT_FALSE(record.surface);
}

TEST_F(Grid, TheMeterMovesWithEachColumnAndItsCancelEndsTheGrid)
{
    Draw([](double x, double y) { return x + y; });
    EXPECT_EQ(meter.titles, std::vector<std::string>{"Drawing Contours..."});
    EXPECT_EQ(meter.maximum, 3);
    EXPECT_EQ(meter.value, 3);

    meter.looks = 0;
    meter.cancelAfter = 1;
    const std::optional<VeltError> failure = FailureOf([](double x, double y) { return x + y; });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, 0x800408D7U);
    EXPECT_EQ(failure->description, "User Cancelled.");
    EXPECT_EQ(failure->source, "cancelled");
    EXPECT_EQ(meter.value, 1);
}

TEST_F(Grid, EvaluationsOfTheGridArePlottedNowhereAndThePathIsOnAfterwards)
{
    Draw([this](double x, double y) {
        EXPECT_FALSE(state.PlotEvaluations);
        grid.PlotStep(state, x, y);
        return x + y;
    });
    EXPECT_TRUE(record.steps.empty());
    EXPECT_TRUE(state.PlotEvaluations);
}

TEST_F(Grid, ThePathGoesFromPointToPoint)
{
    Draw([](double x, double y) { return x + y; });
    grid.StartPath(1.0, 2.0);
    grid.PlotStep(state, 3.0, 4.0);
    grid.PlotStep(state, 5.0, 6.0);
    ASSERT_EQ(record.steps.size(), 2U);
    EXPECT_EQ(record.steps[0].fromX, 1.0);
    EXPECT_EQ(record.steps[0].fromY, 2.0);
    EXPECT_EQ(record.steps[0].toX, 3.0);
    EXPECT_EQ(record.steps[1].fromX, 3.0);
    EXPECT_EQ(record.steps[1].toY, 6.0);
}

// Steps 1 to 29, then 50 and 100: 31 of the first 100.
TEST_F(Grid, EventsGetTheirTurnAtTheFirstStepsAndThenAtEveryFiftieth)
{
    Draw([](double x, double y) { return x + y; });
    window.yields.clear();
    for (int i = 0; i < 100; ++i)
        grid.PlotStep(state, 1.0, 1.0);
    EXPECT_EQ(window.yields.size(), 31U);
}

TEST_F(Grid, AClosedWindowSwitchesThePathOff)
{
    record.closedAfter = 2;
    Draw([](double x, double y) { return x + y; });
    for (int i = 0; i < 5; ++i)
        grid.PlotStep(state, 1.0, 1.0);
    EXPECT_EQ(record.steps.size(), 2U);
    EXPECT_FALSE(state.PlotEvaluations);
    grid.Mark(state, ContourMark::Final, 1.0, 1.0);
    EXPECT_TRUE(record.marks.empty());
}

TEST_F(Grid, TheRangesAreKeptOnOkAndForgottenOnCancel)
{
    user.onContourRange = [](ContourRange& range) {
        range.Param1Hi = 99.0;
        range.ContEvals = 7;
        return false;
    };
    EXPECT_FALSE(grid.AskRanges(user));
    EXPECT_EQ(grid.range.Param1Hi, 3.0);
    EXPECT_EQ(grid.range.ContEvals, 3);
    user.onContourRange = [](ContourRange& range) {
        range.Param1Hi = 99.0;
        range.ContEvals = 7;
        return true;
    };
    EXPECT_TRUE(grid.AskRanges(user));
    EXPECT_EQ(grid.range.Param1Hi, 99.0);
    EXPECT_EQ(grid.range.ContEvals, 7);
}

// The power of ten below and the one above; zero has none.
TEST_F(Grid, TheDecadeAroundAnEstimate)
{
    EXPECT_EQ(ContourGrid::DecadeAround(456.0), (std::pair<double, double>(100.0, 1000.0)));
    EXPECT_EQ(ContourGrid::DecadeAround(0.0), (std::pair<double, double>(0.0, 1.0)));
}

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

namespace
{
/// The contour view of the recruitment index model.
struct IndexContours : ModelBench<clsRecruitINdex> {
    IndexContours() : ModelBench(Table()) { window.nextPlot = std::make_unique<RecordedPlot>(record); }

    static TableBuilder Table()
    {
        SimulatedStock stock;
        stock.n1 = 6000.0;
        stock.lambda = 1500.0;
        stock.q = 0.008;
        return TableBuilder().Effort(stock.effort).Catch(stock.Catches(0.1)).Recruits(stock.index);
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
