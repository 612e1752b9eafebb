// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/SurfaceRemarks.h"

#include "models/clsProduction.h"
#include "models/clsRecruitINdex.h"
#include "models/clsSingleCohort.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
using Values = std::vector<double>;
using surface_remarks::Said;

bool Says(const Said& said, const std::string& text)
{
    return said && said->text.find(text) != std::string::npos;
}

TableBuilder Fishery()
{
    return TableBuilder()
        .From(1970)
        .Effort({100, 160, 220, 280, 340, 300, 200, 60, 40, 50, 120, 180})
        .Yield({560, 810, 985, 1100, 1160, 905, 590, 190, 135, 178, 430, 610});
}

/// The sum of squares of a closed cohort without natural mortality, one unit of effort a period, q in closed
/// form: C = q (N - C / 2) with N what is left of N1.
double SumOfSquares(double n1, const Values& catches)
{
    double cross = 0.0;
    double square = 0.0;
    double total = 0.0;
    for (const double c : catches) {
        const double x = n1 - total - c / 2.0;
        cross += c * x;
        square += x * x;
        total += c;
    }
    double sum = 0.0;
    for (const double c : catches)
        sum += c * c;
    return sum - cross * cross / square;
}

Said UnboundedOf(const Values& catches)
{
    ModelBench<clsSingleCohort> bench(TableBuilder().Effort(Values(catches.size(), 1.0)).Catch(catches));
    const double n1 = bench.Fit(fit_op::kLeastSquares, 0.0).at(0);
    // What the rule should find, by the formula above: 8 ln(S(10 N1) / S(N1)).
    const double ratio = 8.0 * std::log(SumOfSquares(10.0 * n1, catches) / SumOfSquares(n1, catches));
    EXPECT_NEAR(ratio, catches.front() < 115.0 ? 4.118 : 3.780, 0.01);
    FitSurface surface = bench.model.Surface();
    return surface_remarks::StockUnbounded(ReadFit(bench.model, bench.data), surface);
}

/// A fit of the fishery, as it stands before the remarks are asked for.
struct FittedFishery : ModelBench<clsProduction> {
    explicit FittedFishery(std::int32_t fitOp = fit_op::kLeastSquares,
                           std::int32_t whichMeth = models::kSchaefer)
        : ModelBench<clsProduction>(Fishery())
    {
        model.WhichMeth(whichMeth);
        model.PlotEvaluations(false);
        EXPECT_FALSE(Fit(fitOp, 0.0).empty());
    }
    Said Edges()
    {
        const FitSurface surface = model.Surface();
        return surface_remarks::AtBound(ReadFit(model, data), surface);
    }
    /// As if another start had come to this objective and not arrived.
    Said BesideOneThatCameTo(double objective)
    {
        model.m.notArrivedAt = objective;
        const FitSurface surface = model.Surface();
        return surface_remarks::BetterFitKnown(ReadFit(model, data), surface, data);
    }
    /// As if the fit had this growth and time lag.
    Said Swings(double r, std::int16_t lag)
    {
        model.LAG(lag);
        FitReading fit = ReadFit(model, data);
        fit.second = r;
        FitSurface surface = model.Surface();
        return surface_remarks::Oscillating(fit, surface);
    }
    /// As if starting values had been typed, which led to this objective.
    Said BetterThan(double objective)
    {
        model.SetStartingEsts(true);
        model.m.objective = objective;
        const FitSurface surface = model.Surface();
        return surface_remarks::BetterFitKnown(ReadFit(model, data), surface, data);
    }
};
} // namespace

// Catches of N1 = 1000 and q = 0.1 with a fixed scatter of 36 % and of 34 %: ten times the stock has a ratio
// of likelihoods of 3.78 and of 4.12, to either side of 3.84.
TEST(StockUnbounded, IsSaidWhereTenTimesTheStockCannotBeToldApart)
{
    const Said said = UnboundedOf({115.8, 52.0, 86.4, 93.4, 47.7, 53.6, 74.8, 33.7});
    EXPECT_TRUE(Says(said, "falls by 3.78"));
    EXPECT_TRUE(Says(said, "no upper limit to N1. Read N1 and Final Population as \"at least\""));
    EXPECT_FALSE(UnboundedOf({114.7, 53.9, 85.9, 92.1, 48.6, 53.8, 73.6, 34.4}));
}

TEST(StockUnbounded, IsAskedOfCatchesInAnyUnits)
{
    Values bounded{114.7, 53.9, 85.9, 92.1, 48.6, 53.8, 73.6, 34.4};
    for (double& catches : bounded)
        catches *= 0x1p33;
    ModelBench<clsSingleCohort> bench(TableBuilder().Effort(Values(bounded.size(), 1.0)).Catch(bounded));
    const double n1 = bench.Fit(fit_op::kLeastSquares, 0.0).at(0);
    ASSERT_GT(SumOfSquares(n1, bounded), 1e20);
    FitSurface surface = bench.model.Surface();
    EXPECT_NEAR(surface.RatioOfLikelihoods(surface.Refitted(0, 10.0 * n1)), 4.118, 0.01);
    EXPECT_NEAR(surface.AtEstimate(), SumOfSquares(n1, bounded), 1e-5 * SumOfSquares(n1, bounded));
}

// The same catches as an index under a much larger total catch in 8 years: an index with so much scatter
// follows from a stock of any size.
TEST(StockUnbounded, NamesWhatStandsOnTheStockOfAProductionModelUnlessTheUserHoldsIt)
{
    ModelBench<clsProduction> bench(TableBuilder()
                                        .Effort(Values(8, 1.0))
                                        .CatchWt({115.8, 52.0, 86.4, 93.4, 47.7, 53.6, 74.8, 33.7})
                                        .TotalWt({300, 280, 310, 290, 305, 295, 300, 290}));
    bench.model.PlotEvaluations(false);
    bench.Fit(fit_op::kLeastSquares, 0.0);
    {
        FitSurface surface = bench.model.Surface();
        const Said said = surface_remarks::StockUnbounded(ReadFit(bench.model, bench.data), surface);
        EXPECT_TRUE(Says(said, "Read K, M.S.Y. and Final Biomass as \"at least\""));
    }
    bench.user.onStartVals = [](StartVals& starts) { return starts.Fixed1 = true; };
    bench.model.InputStartingEsts();
    FitSurface held = bench.model.Surface();
    ASSERT_TRUE(held.Searched().held[0]);
    EXPECT_FALSE(surface_remarks::StockUnbounded(ReadFit(bench.model, bench.data), held));
}

TEST(StockUnbounded, IsNotSaidOfAFitThatHolds)
{
    FittedFishery bench;
    FitSurface surface = bench.model.Surface();
    EXPECT_FALSE(surface_remarks::StockUnbounded(ReadFit(bench.model, bench.data), surface));
}

// Yields of 10, 20, 30, 40 with efforts of 1, 2, 3, 4: a total of 100 and a mean catch rate of 10, so that
// the millionths of the usual sizes are 1e-4 for K, 10 / 100 / 1e6 = 1e-7 for q and 1e-6 for r.
TEST(AtBound, IsSaidBelowAMillionthOfTheUsualSize)
{
    ModelBench<clsProduction> bench(TableBuilder().Effort({1, 2, 3, 4}).Yield({10, 20, 30, 40}));
    const FitSurface surface = bench.model.Surface();
    FitReading fit{.method = bench.model, .data = bench.data, .model = models::kSchaefer};
    const auto set = [&fit](double stock, double q, double r) {
        fit.stock = stock;
        fit.q = q;
        fit.second = r;
    };
    set(1.1e-4, 1.1e-7, 1.1e-6);
    EXPECT_FALSE(surface_remarks::AtBound(fit, surface));
    set(0.9e-4, 1.0, 1.0);
    EXPECT_TRUE(Says(surface_remarks::AtBound(fit, surface), "K (9E-05) lies at the edge"));
    set(1.0, 0.9e-7, 1.0);
    EXPECT_TRUE(Says(surface_remarks::AtBound(fit, surface), "q (9E-08) lies"));
    set(1.0, 1.0, 0.9e-6);
    EXPECT_TRUE(Says(surface_remarks::AtBound(fit, surface), "r (9E-07) lies"));
    set(1.0, 1.0, 0.0);
    EXPECT_TRUE(Says(surface_remarks::AtBound(fit, surface), "r (0) lies"));
}

TEST(AtBound, IsSaidFromADecadeBelowTheEndOfTheSearchOn)
{
    ModelBench<clsProduction> bench(TableBuilder().Effort({1, 2, 3, 4}).Yield({10, 20, 30, 40}));
    const FitSurface surface = bench.model.Surface();
    FitReading fit{.method = bench.model,
                   .data = bench.data,
                   .model = models::kSchaefer,
                   .stock = 9.9e18,
                   .q = 1,
                   .second = 1};
    EXPECT_FALSE(surface_remarks::AtBound(fit, surface));
    fit.stock = 1e19;
    fit.q = 0.0;
    EXPECT_TRUE(Says(surface_remarks::AtBound(fit, surface), "K (1E+19) and q (0) lie at the edge"));
}

// A total of 60 and an index that sums to 6: recruits that replace the catch are Lambda = 10, a millionth
// 1e-5.
TEST(AtBound, MeasuresLambdaByTheRecruitsThatWouldReplaceTheCatch)
{
    ModelBench<clsRecruitINdex> bench(
        TableBuilder().Effort({1, 1, 1}).Catch({10, 20, 30}).Recruits({1, 2, 3}));
    const FitSurface surface = bench.model.Surface();
    FitReading fit{.method = bench.model,
                   .data = bench.data,
                   .model = models::kRecruitmentIndex,
                   .stock = 100,
                   .q = 1,
                   .second = 1.1e-5};
    EXPECT_FALSE(surface_remarks::AtBound(fit, surface));
    fit.second = 0.9e-5;
    EXPECT_TRUE(Says(surface_remarks::AtBound(fit, surface), "Lambda (9E-06)"));
}

TEST(AtBound, AValueThatTheUserHoldsThereIsNoEdgeOfASearch)
{
    FittedFishery bench;
    bench.user.onStartVals = [](StartVals& starts) { return starts.Fixed2 = true; };
    bench.model.InputStartingEsts();
    const FitSurface surface = bench.model.Surface();
    FitReading fit = ReadFit(bench.model, bench.data);
    fit.second = 0.0;
    EXPECT_FALSE(surface_remarks::AtBound(fit, surface));
}

// The stock lies far from any edge of its own; the search alone knows that it could go no further.
TEST(AtBound, IsSaidWhereTheSearchEndedOnTheBorderOfTheStocksThatSurvive)
{
    FittedFishery bench;
    EXPECT_FALSE(bench.Edges());
    bench.model.m.atBorder = true;
    const std::string k = remark_text::Short(bench.model.FinalEsts().at(0));
    EXPECT_TRUE(Says(bench.Edges(), "K (" + k + ", beside values without a likelihood) lies at the edge"));
    bench.user.onStartVals = [](StartVals& starts) { return starts.Fixed1 = true; };
    bench.model.InputStartingEsts();
    EXPECT_FALSE(bench.Edges()) << "a stock that the user holds was not searched";
}

// Four weeks of 270, 240, 200 and 320 fish, the last with ten times the effort: the catch rates fall so fast
// that they point at a stock of 1000, less than the 1030 that were caught. The gamma objective stops there.
TEST(AtBound, IsSaidOfAGammaFitThatPointsAtLessThanWasCaught)
{
    ModelBench<clsSingleCohort> bench(TableBuilder().Effort({30, 40, 50, 300}).Catch({270, 240, 200, 320}));
    const Values fit = bench.Fit(fit_op::kGamma, 0.0);
    ASSERT_FALSE(fit.empty());
    EXPECT_GT(fit.at(0), 1030.0);
    EXPECT_LT(fit.at(0), 1030.0 / 0.99 * 1.0001); // the smallest start that survives is known to a per cent
    EXPECT_TRUE(bench.model.Details().atBorder);
    FitSurface surface = bench.model.Surface();
    EXPECT_TRUE(Says(surface_remarks::AtBound(ReadFit(bench.model, bench.data), surface),
                     "beside values without a likelihood) lies at the edge"));
}

TEST(Oscillating, IsSaidAboveTwoAndNamesTheBestSteadyFit)
{
    FittedFishery bench; // a stock of r about 0.4
    FitSurface surface = bench.model.Surface();
    FitReading fit = ReadFit(bench.model, bench.data);
    const double k = fit.stock;
    const double r = fit.second;
    fit.second = 2.0;
    EXPECT_FALSE(surface_remarks::Oscillating(fit, surface));
    fit.second = 2.001;
    const Said said = surface_remarks::Oscillating(fit, surface);
    EXPECT_TRUE(Says(said, "r is 2.001: above 2"));
    // The search below 2 comes back to the fit itself; of its four digits the last may differ.
    const auto steady = surface.BestBelow(2.0);
    ASSERT_TRUE(steady.has_value());
    EXPECT_NEAR(steady->x[0], k, 1e-3 * k);
    EXPECT_NEAR(steady->x[1], r, 1e-3 * r);
    EXPECT_TRUE(Says(said, "K = " + remark_text::Short(steady->x[0]) +
                               " and r = " + remark_text::Short(steady->x[1]) + " at an objective of"));
}

// 2 sin(pi / (4 L + 2)): sin 30 degrees is a half, and 2 sin 18 degrees is (sqrt(5) - 1) / 2 = 0.618034.
TEST(Oscillating, ATimeLagLowersTheLimitToOneAndToTheGoldenSection)
{
    FittedFishery bench;
    EXPECT_FALSE(bench.Swings(0.999, 1));
    EXPECT_TRUE(Says(bench.Swings(1.001, 1), "r is 1.001: above 1 at this time lag the biomass overshoots"));
    EXPECT_FALSE(bench.Swings(0.6180, 2));
    EXPECT_TRUE(Says(bench.Swings(0.6181, 2), "above 0.618 at this time lag"));
    EXPECT_FALSE(Says(bench.Swings(2.1, 0), "lag"));
}

// With Z = 4 the limit of r is a half.
TEST(Oscillating, MultipliesGrowthWithTheShapeOfPellaAndTomlinson)
{
    FittedFishery bench(fit_op::kLeastSquares, models::kPellaTomlinson);
    FitSurface surface = bench.model.Surface();
    FitReading fit = ReadFit(bench.model, bench.data);
    bench.model.Z(4.0F);
    fit.second = 0.5;
    EXPECT_FALSE(surface_remarks::Oscillating(fit, surface));
    fit.second = 0.6;
    EXPECT_TRUE(Says(surface_remarks::Oscillating(fit, surface), "r times Z is 2.4: above 2"));
    fit.model = models::kSchaefer; // which has no shape
    EXPECT_FALSE(surface_remarks::Oscillating(fit, surface));
}

TEST(Oscillating, SearchesNoOtherGrowthThanTheOneThatTheUserHolds)
{
    FittedFishery bench;
    bench.user.onStartVals = [](StartVals& starts) { return starts.Fixed2 = true; };
    bench.model.InputStartingEsts();
    FitSurface surface = bench.model.Surface();
    FitReading fit = ReadFit(bench.model, bench.data);
    fit.second = 2.5;
    const Said said = surface_remarks::Oscillating(fit, surface);
    EXPECT_TRUE(Says(said, "such dynamics fit noise."));
    EXPECT_FALSE(Says(said, "The best fit"));
}

TEST(BetterFitKnown, IsSaidWhereTheOwnStartsAreBetterByMoreThanAPerCent)
{
    FittedFishery bench;
    const double own = bench.model.Details().objective.value();
    EXPECT_FALSE(bench.BetterThan(own));
    EXPECT_FALSE(bench.BetterThan(own / 0.991));
    const Said said = bench.BetterThan(own / 0.989);
    EXPECT_TRUE(Says(said, "led to an objective of " + remark_text::Short(own / 0.989)));
    EXPECT_TRUE(Says(said, "own starts it is " + remark_text::Short(own) + ", with K = "));
}

TEST(BetterFitKnown, UnderGammaATenthOfALogUnitCounts)
{
    FittedFishery bench(fit_op::kGamma);
    const double own = bench.model.Details().objective.value();
    EXPECT_FALSE(bench.BetterThan(own + 0.09));
    EXPECT_TRUE(bench.BetterThan(own + 0.11));
}

TEST(BetterFitKnown, IsSaidOfAStartThatDidNotArriveAndCameFurtherByMoreThanAPerCent)
{
    FittedFishery bench;
    const double own = bench.model.Details().objective.value();
    EXPECT_FALSE(bench.BesideOneThatCameTo(0.991 * own));
    const Said said = bench.BesideOneThatCameTo(0.989 * own);
    EXPECT_TRUE(Says(said, "came to an objective of " + remark_text::Short(0.989 * own) +
                               " and did not arrive; the fit shown, with " + remark_text::Short(own)));
    EXPECT_TRUE(Says(said, "Raise the iterations"));
}

TEST(BetterFitKnown, OfAStartThatDidNotArriveATenthOfALogUnitCountsUnderGamma)
{
    FittedFishery bench(fit_op::kGamma);
    const double own = bench.model.Details().objective.value();
    EXPECT_FALSE(bench.BesideOneThatCameTo(own - 0.09));
    EXPECT_TRUE(bench.BesideOneThatCameTo(own - 0.11));
}

TEST(BetterFitKnown, IsNotSaidWithoutTypedStartsNorWhereSomethingIsHeld)
{
    FittedFishery bench;
    bench.model.m.objective = 1e9;
    {
        const FitSurface surface = bench.model.Surface();
        EXPECT_FALSE(surface_remarks::BetterFitKnown(ReadFit(bench.model, bench.data), surface, bench.data));
    }
    EXPECT_TRUE(bench.BetterThan(1e9));
    bench.user.onStartVals = [](StartVals& starts) { return starts.Fixed2 = true; };
    bench.model.InputStartingEsts();
    EXPECT_FALSE(bench.BetterThan(1e9));
}

// K = 1000, r = 2.3, q = 0.001 from a half of K on, the catch q E (B(t) + B(t+1)) / 2: the stock swings
// around K with a growth that no steady one imitates.
TEST(BetterFitKnown, NamesNoFitThatSwings)
{
    constexpr double kQ = 0.001;
    const Values effort{50, 60, 40, 80, 55, 70, 45, 65, 50, 75, 60, 40};
    Values caught;
    double b = 500.0;
    for (const double e : effort) {
        const double grown = b + 2.3 * b * (1.0 - b / 1000.0);
        const double next = (grown - kQ * e * b / 2.0) / (1.0 + kQ * e / 2.0);
        caught.push_back(grown - next);
        b = next;
    }
    ModelBench<clsProduction> bench(TableBuilder().Effort(effort).Yield(caught));
    bench.model.PlotEvaluations(false);
    ASSERT_GT(bench.Fit(fit_op::kLeastSquares, 0.0, 0.5).at(2), 2.0);
    bench.model.SetStartingEsts(true);
    bench.model.m.objective = 1e9; // which the own starts undercut by far
    FitSurface surface = bench.model.Surface();
    const FitReading fit = ReadFit(bench.model, bench.data);
    EXPECT_FALSE(surface_remarks::BetterFitKnown(fit, surface, bench.data));
    EXPECT_TRUE(Says(surface_remarks::Oscillating(fit, surface), "above 2 the biomass overshoots K"));
}

// The same with K = 1000, r = 1.2 and growth that answers to the biomass of the period before: without the
// lag such a stock would be steady.
TEST(BetterFitKnown, NamesNoFitThatSwingsAtItsTimeLag)
{
    constexpr double kQ = 0.001;
    const Values effort{50, 60, 40, 80, 55, 70, 45, 65, 50, 75, 60, 40};
    Values caught;
    double before = 500.0;
    double b = 500.0;
    for (const double e : effort) {
        const double grown = b + 1.2 * before * (1.0 - before / 1000.0);
        const double next = (grown - kQ * e * b / 2.0) / (1.0 + kQ * e / 2.0);
        caught.push_back(grown - next);
        before = b;
        b = next;
    }
    ModelBench<clsProduction> bench(TableBuilder().Effort(effort).Yield(caught));
    bench.model.PlotEvaluations(false);
    bench.model.LAG(1);
    ASSERT_NEAR(bench.Fit(fit_op::kLeastSquares, 0.0, 0.5).at(2), 1.2, 0.01);
    bench.model.SetStartingEsts(true);
    bench.model.m.objective = 1e9; // which the own starts undercut by far
    const FitSurface surface = bench.model.Surface();
    EXPECT_FALSE(surface_remarks::BetterFitKnown(ReadFit(bench.model, bench.data), surface, bench.data));
}

TEST(BetterFitKnown, SaysNothingWhereTheOwnStartsFail)
{
    FittedFishery bench(fit_op::kLog);
    bench.data.CatchWt(5, 0.0F); // which has no logarithm any more
    EXPECT_FALSE(bench.BetterThan(1e9));
}

TEST(BetterFitKnown, LeavesTheSelectionAndTheSettingsAsTheyWere)
{
    FittedFishery bench;
    bench.data.NNtPoints(7); // as a toggle on a graph leaves it
    bench.data.ToggledIn(3, false);
    bench.data.Effort(6, 0.0F); // a new look at the columns would exclude this one
    bench.run.globals.settings.LastEvaluations = 4321;
    const clsVeltData::Flags included = bench.data.Included();
    bench.BetterThan(1e9);
    EXPECT_EQ(bench.data.NNtPoints(), 7);
    EXPECT_FALSE(bench.data.ToggledIn(3));
    EXPECT_TRUE(bench.data.ToggledIn(6));
    EXPECT_EQ(bench.data.Included(), included);
    EXPECT_EQ(bench.run.globals.settings.LastEvaluations, 4321);
    EXPECT_TRUE(bench.window.graphs.empty());
    EXPECT_TRUE(bench.user.messages.empty());
}
