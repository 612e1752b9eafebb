// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/DataRemarks.h"

#include "fit/RankCorrelation.h"
#include "models/clsConstRecruit.h"
#include "models/clsProduction.h"
#include "models/clsSingleCohort.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <array>

namespace
{
using Values = std::vector<double>;
using data_remarks::Said;

bool Says(const Said& said, const std::string& text)
{
    return said && said->text.find(text) != std::string::npos;
}

/// A model on a table, and a reading of it whose estimates a test sets as it likes.
template <typename Model>
struct Looked : ModelBench<Model> {
    explicit Looked(const TableBuilder& table, std::int32_t whichMeth = 0) : ModelBench<Model>(table)
    {
        if (whichMeth != 0)
            this->model.WhichMeth(whichMeth);
        fit.model = this->model.WhichMeth();
    }
    FitReading fit{.method = this->model, .data = this->data};
};

/// Yields taken with one unit of effort each, so that they are the catch rates.
Looked<clsProduction> Rates(const Values& yields)
{
    return Looked<clsProduction>(TableBuilder().Effort(Values(yields.size(), 1.0)).Yield(yields));
}

Looked<clsSingleCohort> Cohort(const Values& catches)
{
    return Looked<clsSingleCohort>(TableBuilder().Effort(Values(catches.size(), 1.0)).Catch(catches));
}
} // namespace

// Without ties rho = 1 - 6 sum(d^2) / (n (n^2 - 1)): for 3, 1, 2 the d are 2, -1, -1, so 1 - 36 / 24 = -0.5.
TEST(RankCorrelation, OfThreeValues)
{
    EXPECT_NEAR(RankCorrelationWithOrder(std::array{30.0, 10.0, 20.0}), -0.5, 1e-12);
}

// 1, 2, 2, 3 have the ranks 1, 2.5, 2.5, 4: cross 4.5, squares 5 and 4.5, so 4.5 / sqrt(22.5) = 0.948683.
TEST(RankCorrelation, EqualValuesShareTheMeanOfTheirRanks)
{
    EXPECT_NEAR(RankCorrelationWithOrder(std::array{1.0, 2.0, 2.0, 3.0}), 0.948683, 1e-6);
}

TEST(RankCorrelation, IsZeroWhereNothingVariesAndWhereThereIsNothing)
{
    EXPECT_EQ(RankCorrelationWithOrder(std::array{5.0, 5.0, 5.0}), 0.0);
    EXPECT_EQ(RankCorrelationWithOrder({}), 0.0);
    EXPECT_EQ(RankCorrelationWithOrder(std::array{5.0}), 0.0);
}

// Six values with one pair out of order: 1 - 6 * 2 / 210 = 0.943; with two pairs 1 - 6 * 4 / 210 = 0.886.
// Five with one pair: 1 - 6 * 2 / 120 = 0.9, which is not beyond 0.9.
TEST(OneWayTrip, IsSaidOfACatchRateThatOnlyRisesOrOnlyFalls)
{
    EXPECT_TRUE(Says(data_remarks::OneWayTrip(Rates({1, 2, 3, 4, 6, 5}).fit), "only rises"));
    EXPECT_TRUE(Says(data_remarks::OneWayTrip(Rates({1, 2, 3, 4, 6, 5}).fit), "is 0.94."));
    EXPECT_TRUE(Says(data_remarks::OneWayTrip(Rates({6, 5, 4, 3, 1, 2}).fit), "only falls"));
    EXPECT_TRUE(Says(data_remarks::OneWayTrip(Rates({6, 5, 4, 3, 1, 2}).fit), "is -0.94."));
    EXPECT_FALSE(data_remarks::OneWayTrip(Rates({2, 1, 3, 4, 6, 5}).fit));
    EXPECT_FALSE(data_remarks::OneWayTrip(Rates({1, 2, 3, 5, 4}).fit));
}

TEST(OneWayTrip, LooksAtTheCatchPerEffortAndOnlyAtThePeriodsInTheFit)
{
    const Values same(6, 10.0);
    EXPECT_TRUE(data_remarks::OneWayTrip(
        Looked<clsProduction>(TableBuilder().Effort({1, 2, 3, 4, 5, 6}).Yield(same)).fit));
    EXPECT_FALSE(data_remarks::OneWayTrip(Rates(same).fit));
    const Values falls{9, 8, 7, 100, 6, 5, 200};
    EXPECT_FALSE(data_remarks::OneWayTrip(Rates(falls).fit));
    EXPECT_TRUE(data_remarks::OneWayTrip(
        Looked<clsProduction>(TableBuilder().Effort(Values(7, 1.0)).Yield(falls).ToggleOut(4).ToggleOut(7))
            .fit));
}

TEST(OneWayTrip, IsWhatADepletionModelLivesOn)
{
    EXPECT_FALSE(data_remarks::OneWayTrip(Cohort({9, 8, 7, 6, 5, 4}).fit));
}

TEST(WorseThanMean, IsSaidOfAnRSquaredBelowNothing)
{
    auto reading = Rates({3, 2, 1});
    reading.model.m.RSqr = -0.001F;
    EXPECT_TRUE(Says(data_remarks::WorseThanMean(reading.fit), "R squared is -0.001"));
    reading.model.m.RSqr = -0.00025F; // which three decimals would make a nothing
    EXPECT_TRUE(Says(data_remarks::WorseThanMean(reading.fit), "R squared is -0.00025"));
    reading.model.m.RSqr = 0.0F;
    EXPECT_FALSE(data_remarks::WorseThanMean(reading.fit));
}

// The regression of 10, 1, 1 gives 11.72, less than the 12 that were caught; see the test of the surface.
TEST(StartRepaired, NamesWhatTheRegressionGaveAndWhatIsShownInItsPlace)
{
    auto doubled = Cohort({10, 1, 1});
    ASSERT_FALSE(doubled.Fit(fit_op::kLeastSquares, 0.0).empty());
    const Said said = data_remarks::StartRepaired(ReadFit(doubled.model, doubled.data));
    EXPECT_TRUE(Says(said, "The regression gave N1 = 11.72"));
    EXPECT_TRUE(Says(said, "shown, 23.44,"));

    auto survives = Cohort({10, 9, 8});
    ASSERT_FALSE(survives.Fit(fit_op::kLeastSquares, 0.0).empty());
    EXPECT_FALSE(data_remarks::StartRepaired(ReadFit(survives.model, survives.data)));
}

TEST(StartRepaired, IsNotSaidOfASearchThatOnlyStartedThere)
{
    auto reading = Cohort({10, 1, 1});
    ASSERT_TRUE(reading.Start(fit_op::kLog, 0.0));
    ASSERT_TRUE(reading.model.ReplacedStart().has_value());
    reading.fit.fitOp = fit_op::kLog;
    EXPECT_FALSE(data_remarks::StartRepaired(reading.fit));
}

TEST(StockGone, IsSaidBelowAHundredthOfTheStart)
{
    auto reading = Cohort({10, 9, 8});
    reading.fit.firstStock = 1000.0;
    reading.fit.finalStock = 10.0;
    EXPECT_FALSE(data_remarks::StockGone(reading.fit));
    reading.fit.finalStock = 9.99;
    EXPECT_TRUE(Says(data_remarks::StockGone(reading.fit), "ends at 0.999 % of where it began"));
    reading.fit.finalStock = 0.0;
    EXPECT_TRUE(Says(data_remarks::StockGone(reading.fit), "ends at 0:"));
    EXPECT_TRUE(Says(data_remarks::StockGone(reading.fit), "units of the catch, and M."));

    auto biomass = Rates({3, 2, 1}); // natural mortality plays no part there
    biomass.fit.firstStock = 1000.0;
    EXPECT_TRUE(Says(data_remarks::StockGone(biomass.fit), "units of the catch."));
}

TEST(FewPeriods, IsSaidWithFewerThanFiveToSpare)
{
    EXPECT_FALSE(data_remarks::FewPeriods(7, 2));
    EXPECT_TRUE(Says(data_remarks::FewPeriods(6, 2), "6 periods are in the fit and 2 parameters"));
    EXPECT_TRUE(Says(data_remarks::FewPeriods(6, 2), "4 to spare"));
    EXPECT_FALSE(data_remarks::FewPeriods(8, 3));
    EXPECT_TRUE(data_remarks::FewPeriods(7, 3));
}

// Rows 2001 to 2005; 2002 is empty, so four periods are counted and the fifth row is not among them.
TEST(GapInCatch, NamesTheGapAndTheRowsThatFallOutForIt)
{
    auto reading = Cohort({10, -1, 8, 7, 6});
    const Said said = data_remarks::GapInCatch(reading.fit);
    EXPECT_TRUE(Says(said, "2002 has no total catch"));
    EXPECT_TRUE(Says(said, "2005 plays no part"));

    auto two = Cohort({-1, 10, -1, 8, 7, 6});
    EXPECT_TRUE(Says(data_remarks::GapInCatch(two.fit), "2001 and 2003 have no total catch"));
    EXPECT_TRUE(Says(data_remarks::GapInCatch(two.fit), "2005 and 2006 play no part"));
}

TEST(GapInCatch, RowsBehindTheSeriesAreNoGap)
{
    EXPECT_FALSE(data_remarks::GapInCatch(Cohort({10, 9, 8, -1, -1}).fit));
    EXPECT_FALSE(data_remarks::GapInCatch(Cohort({10, 9, 8}).fit));
    EXPECT_FALSE(data_remarks::GapInCatch(Cohort({10, 0, 8}).fit)); // a catch of nothing is a catch
}

TEST(IndexUnused, NamesTheColumnThatWouldBringTheIndexIn)
{
    const TableBuilder table = TableBuilder().Effort({1, 1, 1}).AbundIndex({0.5, 0.4, 0.3});
    auto total = table;
    const Looked<clsSingleCohort> asTotal(total.Catch({10, 9, 8}));
    EXPECT_TRUE(Says(data_remarks::IndexUnused(asTotal.fit), "A column \"Mean Wt\" would turn"));
    auto own = table;
    const Looked<clsSingleCohort> asTyped(own.CatchNums({7, 6, 5}).TotalNums({10, 9, 8}));
    EXPECT_TRUE(Says(data_remarks::IndexUnused(asTyped.fit), "give it as \"Catch Nums\""));
}

TEST(IndexUnused, IsNotSaidOfAnIndexThatIsFitted)
{
    const TableBuilder table =
        TableBuilder().Effort({1, 1, 1}).AbundIndex({0.5, 0.4, 0.3}).TotalNums({10, 9, 8});
    auto asItStands = table;
    EXPECT_FALSE(
        data_remarks::IndexUnused(Looked<clsSingleCohort>(asItStands.CatchNums({0.5, 0.4, 0.3})).fit));
    auto byWeight = table; // 0.5 of a weight of 2 are 0.25 animals
    EXPECT_FALSE(data_remarks::IndexUnused(
        Looked<clsSingleCohort>(byWeight.MeanWt({2, 2, 2}).CatchNums({0.25, 0.2, 0.15})).fit));
    EXPECT_FALSE(data_remarks::IndexUnused(Cohort({10, 9, 8}).fit));
    EXPECT_FALSE(data_remarks::IndexUnused(
        Looked<clsProduction>(TableBuilder().Effort({1, 1, 1}).AbundIndex({5, 4, 3}).Yield({10, 9, 8})).fit));
}

// r = 0.5, K = 1000, Z = 2: the yield r B (1 - (B / K)^2) is highest at B = K / sqrt(3) = 577.35, where it is
// 0.5 * 577.35 * 2 / 3 = 192.45; M.S.Y. is told as r K s (1 - s) with s = 0.57735, which is 122.008.
TEST(PellaYield, NamesTheTopOfTheYieldCurveWhereMsyIsAnotherNumber)
{
    auto reading = Rates({3, 2, 1});
    reading.model.WhichMeth(models::kPellaTomlinson);
    reading.model.Z(2.0F);
    reading.fit.model = models::kPellaTomlinson;
    reading.fit.stock = 1000.0;
    reading.fit.second = 0.5;
    reading.fit.msy = static_cast<double>(reading.model.MSYOf({.K = 1000.0, .R = 0.5}));
    EXPECT_TRUE(Says(data_remarks::PellaYield(reading.fit), "M.S.Y. is 122, "));
    EXPECT_TRUE(Says(data_remarks::PellaYield(reading.fit), "yield curve is 192.5."));

    reading.fit.msy = 192.45 * 0.991; // a per cent is the limit
    EXPECT_FALSE(data_remarks::PellaYield(reading.fit));
    reading.fit.msy = 192.45 * 1.011;
    EXPECT_TRUE(data_remarks::PellaYield(reading.fit));
}

TEST(PellaYield, IsNotSaidAtAShapeOfOneNorOfTheOtherModels)
{
    auto reading = Rates({3, 2, 1});
    reading.model.WhichMeth(models::kPellaTomlinson);
    reading.fit.model = models::kPellaTomlinson;
    reading.fit.stock = 1000.0;
    reading.fit.second = 0.5;
    reading.fit.msy = static_cast<double>(reading.model.MSYOf({.K = 1000.0, .R = 0.5}));
    EXPECT_NEAR(reading.fit.msy, 125.0, 1e-4); // r K / 4
    EXPECT_FALSE(data_remarks::PellaYield(reading.fit));
    reading.fit.model = models::kSchaefer;
    reading.fit.msy = 1.0;
    EXPECT_FALSE(data_remarks::PellaYield(reading.fit));
}

TEST(ZeroCatch, NamesThePeriodsOfALogFitThatHaveNoLogarithm)
{
    auto reading = Cohort({5, 0, 7, 0});
    reading.model.FitOp(fit_op::kLog);
    const Said said = data_remarks::ZeroCatch(reading.model, reading.data);
    EXPECT_TRUE(Says(said, "logarithm of every catch, and periods 2002 and 2004 have none above 0"));
    EXPECT_TRUE(Says(said, "Exclude these periods by leaving their effort empty"));

    reading.model.FitOp(fit_op::kLeastSquares);
    EXPECT_FALSE(data_remarks::ZeroCatch(reading.model, reading.data));
    // A period toggled out gets its residual too, and ends the fit all the same; one without effort does not.
    Looked<clsSingleCohort> out(TableBuilder().Effort({1, 1, 1}).Catch({5, 0, 7}).ToggleOut(2));
    out.model.FitOp(fit_op::kLog);
    EXPECT_TRUE(data_remarks::ZeroCatch(out.model, out.data));
    Looked<clsSingleCohort> excluded(TableBuilder().Effort({1, -1, 1}).Catch({5, 0, 7}));
    excluded.model.FitOp(fit_op::kLog);
    EXPECT_FALSE(data_remarks::ZeroCatch(excluded.model, excluded.data));
    Looked<clsProduction> index(
        TableBuilder().Effort({1, 1, 1}).AbundIndex({5, 0, 7}).CatchWt({5, 0, 7}).TotalWt({9, 9, 9}));
    index.model.FitOp(fit_op::kLog);
    EXPECT_TRUE(Says(data_remarks::ZeroCatch(index.model, index.data),
                     "every index, and period 2002 has none above 0"));
}

TEST(RemarkText, ShortNumbersHaveFourDigitsAndLongListsEnd)
{
    EXPECT_EQ(remark_text::Short(1077.5713), "1078");
    EXPECT_EQ(remark_text::Short(0.0152507), "0.01525");
    EXPECT_EQ(remark_text::Short(329193.94), "329200");
    EXPECT_EQ(remark_text::Short(0.0), "0");
    auto reading = Cohort({1, 2, 3});
    EXPECT_EQ(remark_text::Labels({1, 2, 3}, reading.data), "2001, 2002 and 2003");
    EXPECT_EQ(remark_text::Labels({1, 2, 3, 4, 5, 6, 7, 8}, reading.data),
              "2001, 2002, 2003, 2004, 2005, 2006, 2007 and 2008");
    EXPECT_EQ(remark_text::Labels({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, reading.data),
              "2001, 2002, 2003, 2004, 2005, 2006, 2007, 2008 and 2 more");
}
