// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/FailureHints.h"

#include "models/clsConstRecruit.h"
#include "models/clsProduction.h"
#include "models/clsRecruitINdex.h"
#include "models/clsSingleCohort.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

namespace
{
using Values = std::vector<double>;

const VeltError kInvalid{errors::kInvalidArgument, "Invalid procedure call or argument", ""};
const VeltError kOverflow{errors::kOverflow, "Overflow", ""};
const VeltError kSubscript{errors::kSubscript, "Subscript out of range", ""};
const VeltError kDivision{errors::kDivisionByZero, "Division by zero", ""};

TableBuilder Table(const Values& catches)
{
    return TableBuilder().Effort(Values(catches.size(), 1.0)).Catch(catches);
}

/// What is said of `error` on a table, under an error model.
template <typename Model>
std::string Hint(const VeltError& error, const TableBuilder& table, std::int32_t fitOp)
{
    ModelBench<Model> bench(table);
    bench.model.FitOp(fitOp);
    bench.model.InitDep(0.0F);
    return HintOn(error, bench.data, &bench.model);
}

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}
} // namespace

TEST(FailureHints, ASubscriptIsExplainedWhereTheTableOrTheLagIsTheCause)
{
    EXPECT_EQ(Hint<clsSingleCohort>(kSubscript, Table(Values(200, 5.0)), fit_op::kLog),
              "The table has 200 periods and at most 199 can be fitted. Take a row out of the table.");
    ModelBench<clsProduction> bench(TableBuilder().Effort({1, 1, 1}).Yield({5, 6, 7}));
    bench.model.LAG(4);
    EXPECT_EQ(HintOn(kSubscript, bench.data, &bench.model),
              "The time lag is longer than the 3 periods of the table. Choose a shorter one.");
    bench.model.LAG(3);
    EXPECT_EQ(HintOn(kSubscript, bench.data, &bench.model), "");
}

TEST(FailureHints, ALogFitNamesThePeriodsWithoutACatch)
{
    const VeltError search = ProgramError(errors::kMinimisationFailed, "Minimisation Failed.", "");
    for (const VeltError& error : {kInvalid, kDivision, search})
        EXPECT_TRUE(
            Has(Hint<clsSingleCohort>(error, Table({5, 0, 7}), fit_op::kLog), "2002 has none above 0"));
}

TEST(FailureHints, NothingIsSaidOfZerosWhereTheTableHasNone)
{
    EXPECT_FALSE(Has(Hint<clsSingleCohort>(kDivision, Table({5, 6, 7}), fit_op::kLog), "zero"));
    EXPECT_TRUE(Hint<clsSingleCohort>(kDivision, Table({5, 6, 7}), fit_op::kLog).empty());
    EXPECT_TRUE(Has(Hint<clsSingleCohort>(kDivision, Table({5, 0, 7}), fit_op::kGamma),
                    "Look for zeros in the table: the catch of 2002 is not above 0."));
}

TEST(FailureHints, AVarianceOfZeroIsNamedOnlyWhereItIsAWeight)
{
    auto table = Table({5, 6, 7}).Variance({1, 0, 2});
    EXPECT_TRUE(Has(Hint<clsSingleCohort>(kDivision, table, fit_op::kWeightedLeastSquares), "look at 2002."));
    EXPECT_FALSE(Has(Hint<clsSingleCohort>(kDivision, table, fit_op::kLeastSquares), "variance"));
}

TEST(FailureHints, ADivisionWithoutAnyZeroInTheTableHasItsCauseInTheModel)
{
    const TableBuilder table = Table({5, 6, 7}).Recruits({1, 1, 1});
    EXPECT_TRUE(
        Has(Hint<clsRecruitINdex>(kDivision, table, fit_op::kLeastSquares), "does not survive the catches"));
    EXPECT_TRUE(Has(Hint<clsRecruitINdex>(kDivision, table, fit_op::kGamma), "needs some scatter"));
}

TEST(FailureHints, AnInvalidArgumentNamesTheInitialProportionOnlyWhereThereIsOneOfNothing)
{
    EXPECT_TRUE(Has(Hint<clsConstRecruit>(kInvalid, Table({5, 6, 7}), fit_op::kLeastSquares),
                    "The initial proportion must be above 0."));
    EXPECT_FALSE(Has(Hint<clsSingleCohort>(kInvalid, Table({5, 6, 7}), fit_op::kLeastSquares), "proportion"));
    ModelBench<clsConstRecruit> whole(Table({5, 6, 7}));
    EXPECT_FALSE(Has(HintOn(kInvalid, whole.data, &whole.model), "proportion")); // 1 at first
}

TEST(FailureHints, AnOverflowSpeaksOfUnits)
{
    EXPECT_TRUE(Has(Hint<clsProduction>(kOverflow, TableBuilder().Effort({1, 1}).Yield({5, 6}), fit_op::kLog),
                    "Give the data in larger units"));
}

TEST(FailureHints, ACancelAndAFailureOfUnknownCauseHaveNone)
{
    EXPECT_EQ(Hint<clsSingleCohort>(UserCancelled("x"), Table({5, 0, 7}), fit_op::kLog), "");
    EXPECT_EQ(Hint<clsSingleCohort>(ProgramError(errors::kMinimisationFailed, "Minimisation Failed.", ""),
                                    Table({5, 6, 7}), fit_op::kLog),
              "");
    ModelBench<clsSingleCohort> bench(Table({5, 0, 7}));
    EXPECT_EQ(HintOn(kDivision, bench.data, nullptr), "");
}
