// SPDX-License-Identifier: GPL-3.0-or-later
// What runs thousands of times in a fit must not ask for memory: every request of this program is counted.
#include "core/CountedMemory.h"
#include "models/MethodCommon.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace
{
struct Case {
    std::int32_t model;
    std::int32_t fitOp;
};

class NoAllocation : public ::testing::TestWithParam<Case>
{
protected:
    NoAllocation()
    {
        std::vector<double> effort, catches, index;
        double stock = 10000.0;
        for (int t = 1; t <= 20; ++t) {
            effort.push_back(300.0 + 150.0 * std::sin(0.9 * t));
            index.push_back(2.0 + std::cos(1.3 * t));
            catches.push_back(3e-4 * effort.back() * stock * (1.0 + 0.05 * std::sin(7.0 * t)));
            stock +=
                (GetParam().model == models::kRecruitmentIndex ? 200.0 * index.back() : 0.0) - catches.back();
        }
        m_data = std::make_unique<clsVeltData>(
            TableBuilder().Effort(effort).Catch(catches).Yield(catches).Recruits(index).Build(m_bench.run));
        m_method = NewMethod(GetParam().model);
        m_method->Create(*m_data);
        m_method->WhichMeth(GetParam().model);
        m_method->SetColumnRefs();
        m_method->FitOp(GetParam().fitOp);
        m_method->Z(1.5F);
        m_method->InitDep(1.0F);
        m_method->Mort(0.0F);
        m_method->PlotEvaluations(false);
        m_method->CalcDiscCatches();
        EXPECT_TRUE(m_method->CalcInitEstimates());
        m_method->CalcFinalEstimates();
    }

    Bench m_bench;
    std::unique_ptr<clsVeltData> m_data;
    std::unique_ptr<IMethod> m_method;
};

TEST_P(NoAllocation, ATrajectoryAsksForNoMemory)
{
    const long before = RequestsForMemory();
    for (int n = 0; n < 100; ++n)
        m_method->CalcPopTraj();
    EXPECT_EQ(RequestsForMemory(), before);
}

TEST_P(NoAllocation, AnEvaluationOfTheObjectiveAsksForNoMemory)
{
    auto& objective = dynamic_cast<MethodCommon&>(*m_method);
    const std::vector<double> final = m_method->FinalEsts();
    const bool depletion = !models::IsProduction(GetParam().model);
    std::array<double, 2> x{final[0], final[2]}; // the second is unused, Lambda or R
    if (depletion && GetParam().model != models::kRecruitmentIndex)
        x[1] = 0.0;
    const long before = RequestsForMemory();
    double sum = 0.0;
    for (int n = 0; n < 100; ++n) {
        x[0] *= 1.0001;
        sum += objective.INelMead_MinFunc(x);
    }
    EXPECT_EQ(RequestsForMemory(), before);
    EXPECT_LT(sum, 1e20); // the evaluations were inside the domain
}

std::vector<Case> AllCases()
{
    std::vector<Case> cases;
    for (std::int32_t model = 1; model <= models::kCount; ++model) {
        cases.push_back({model, fit_op::kLog});
        cases.push_back({model, fit_op::kGamma});
        if (models::IsProduction(model))
            cases.push_back({model, fit_op::kLeastSquares});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(EveryModel, NoAllocation, ::testing::ValuesIn(AllCases()), [](const auto& info) {
    return "Model" + std::to_string(info.param.model) + "Error" + std::to_string(info.param.fitOp);
});
} // namespace
