// SPDX-License-Identifier: GPL-3.0-or-later
// The remarks of a whole fit, and where they are kept.
#include "fit/Remarks.h"

#include "core/FittedModels.h"
#include "fit/ParameterReport.h"
#include "fit/clsMethManager.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{
using Codes = std::vector<std::string>;

Codes CodesOf(const std::vector<Remark>& remarks)
{
    Codes codes;
    for (const Remark& remark : remarks)
        codes.push_back(remark.code);
    return codes;
}

class Session : public ::testing::Test, public Bench
{
protected:
    Session()
    {
        user.onInputParams = [this](InputParams& params) {
            if (change)
                change(params);
            return true;
        };
    }
    void Fit(const TableBuilder& table, const std::string& model,
             std::function<void(InputParams&)> inputs = {})
    {
        data = table.Build(run);
        manager.Create(data);
        user.Picks(model);
        change = std::move(inputs);
        manager.FitNewModel(false);
    }
    static std::function<void(InputParams&)> Under(std::int32_t fitOp)
    {
        return [fitOp](InputParams& params) { params.FitOp = fitOp; };
    }

    /// Six periods are 4 to spare beside N1 and q.
    static TableBuilder SixPeriods()
    {
        return TableBuilder().Effort({10, 12, 9, 11, 13, 10}).Catch({169, 124, 66, 51, 42, 20});
    }

    clsVeltData data{run};
    clsMethManager manager{run};
    std::function<void(InputParams&)> change;
};
} // namespace

TEST(Remarks, LeaveEveryModelUnderEveryErrorModelToTheBitAsItWas)
{
    ForEveryFit([](auto& bench) {
        bench.model.SetStartingEsts(true); // so that the own starts are tried too
        const Everything before(bench);
        RemarksOfFit(bench.model, bench.data);
        EXPECT_TRUE(Everything(bench) == before);
        EXPECT_TRUE(bench.user.messages.empty());
    });
}

// Twelve periods of a stock with some scatter, a growth of its own and contrast in the effort.
TEST(Remarks, AFitThatHoldsHasNone)
{
    ForEveryFit([](auto& bench) {
        bench.model.SetRSquared();
        EXPECT_EQ(CodesOf(RemarksOfFit(bench.model, bench.data)), Codes{});
    });
}

TEST_F(Session, ARemarkStandsInTheReportAndGoesWithTheFit)
{
    Fit(SixPeriods(), "NO RECRUITMENT");
    ASSERT_TRUE(manager.MethDefined());
    EXPECT_EQ(CodesOf(manager.Remarks()), Codes{"FewPeriods"});
    const ParameterReport report = ParameterReport::Of(manager);
    ASSERT_EQ(report.remarks.size(), 1U);
    EXPECT_EQ(report.remarks[0], "1. " + manager.Remarks()[0].text);
    EXPECT_NE(report.AsText().find("\nRemarks\n  1. 6 periods are in the fit"), std::string::npos);

    manager.Reset();
    EXPECT_TRUE(manager.Remarks().empty());
}

// The index falls by 10 a period: one way, and 3 to spare beside K, r and q.
TEST_F(Session, SeveralRemarksComeInTheOrderOfTheirWeight)
{
    Fit(TableBuilder().Effort({1, 1, 1, 1, 1, 1}).Yield({60, 52, 38, 30, 21, 9}), "PROD. MODEL(SCHAEFER)");
    ASSERT_TRUE(manager.MethDefined());
    const Codes codes = CodesOf(manager.Remarks());
    const auto at = [&codes](const char* code) {
        return std::find(codes.begin(), codes.end(), code) - codes.begin();
    };
    EXPECT_LT(at("OneWayTrip"), at("FewPeriods"));
    EXPECT_LT(at("FewPeriods"), static_cast<std::ptrdiff_t>(codes.size()));
}

TEST_F(Session, AHeldParameterIsNoneThatTheDataHaveToDetermine)
{
    const TableBuilder seven =
        TableBuilder().Effort({100, 160, 220, 280, 60, 40, 180}).Yield({560, 810, 985, 1100, 190, 145, 700});
    const auto few = [this] {
        const Codes codes = CodesOf(manager.Remarks());
        return std::count(codes.begin(), codes.end(), "FewPeriods");
    };
    Fit(seven, "PROD. MODEL(SCHAEFER)");
    ASSERT_TRUE(manager.MethDefined());
    EXPECT_EQ(few(), 1); // 7 - 3
    user.onStartVals = [](StartVals& starts) { return starts.Fixed2 = true; };
    Fit(seven, "PROD. MODEL(SCHAEFER)", [](InputParams& params) { params.SetStartingEstimates = true; });
    ASSERT_TRUE(manager.MethDefined());
    EXPECT_EQ(few(), 0); // 7 - 2
}

TEST_F(Session, BootstrapsAddWhatThereIsToSayAboutTheLimits)
{
    Fit(SixPeriods(), "NO RECRUITMENT", Under(fit_op::kGamma));
    ASSERT_TRUE(manager.MethDefined());
    const std::vector<Remark> ofFit = manager.Remarks();
    manager.NumBootStraps(20);
    manager.GenerateBootStraps();
    ASSERT_TRUE(manager.IsBSDone());
    const std::vector<Remark> all = manager.Remarks();
    ASSERT_GT(all.size(), ofFit.size());
    EXPECT_TRUE(
        std::equal(ofFit.begin(), ofFit.end(), all.begin())); // the replicates' catches are none of the fit's
    EXPECT_EQ(all[ofFit.size()].code, "LimitsShifted");

    Fit(SixPeriods(), "NO RECRUITMENT");
    EXPECT_EQ(CodesOf(manager.Remarks()), Codes{"FewPeriods"});
}

TEST_F(Session, AFailedLogFitNamesThePeriodWithoutACatchBehindTheWordsOfTheFailure)
{
    Fit(TableBuilder().Effort({10, 12, 9, 11, 13, 10}).Catch({169, 124, 66, 0, 42, 20}), "NO RECRUITMENT",
        Under(fit_op::kLog));
    ASSERT_FALSE(manager.MethDefined());
    ASSERT_EQ(CodesOf(manager.Remarks()), Codes{"ZeroCatch"});
    ASSERT_FALSE(user.messages.empty());
    const std::string said = user.messages.back().text;
    EXPECT_EQ(said.rfind("Minimisation", 0), 0U) << said;
    EXPECT_TRUE(said.ends_with("\n\n" + manager.Remarks()[0].text)) << said;

    Fit(SixPeriods(), "NO RECRUITMENT");
    EXPECT_EQ(CodesOf(manager.Remarks()), Codes{"FewPeriods"});
}
