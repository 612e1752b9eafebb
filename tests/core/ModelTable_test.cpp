// SPDX-License-Identifier: GPL-3.0-or-later
#include "models/ModelTable.h"

#include "base/StringTable.h"
#include "base/VeltError.h"
#include "models/IMethod.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace model_table;

TEST(ModelTable, EachRowStandsAtItsNumberUnderItsTitle)
{
    const char* titles[] = {"NO RECRUITMENT        ", "RECRUITMENT INDEX     ", "CONSTANT RECRUITMENT  ",
                            "PROD. MODEL(FOX)      ", "PROD. MODEL(SCHAEFER)",  "PROD. MODEL(PELLA TOM)"};
    ASSERT_EQ(All().size(), 6U);
    for (std::int32_t number = 1; number <= 6; ++number) {
        EXPECT_EQ(Of(number).number, number);
        EXPECT_EQ(LoadResString(Of(number).titleId), titles[number - 1]);
    }
}

TEST(ModelTable, ThereIsNoModelZeroAndNoSeventh)
{
    for (const std::int32_t number : {0, 7, -1})
        EXPECT_THROW(Of(number), VeltError) << number;
}

TEST(ModelTable, QuantitiesHaveTheNamesOfTheReport)
{
    const std::pair<Quantity, const char*> names[] = {{Quantity::N1, "N1"},
                                                      {Quantity::K, "K"},
                                                      {Quantity::Q, "q"},
                                                      {Quantity::Lambda, "Lambda"},
                                                      {Quantity::R, "r"},
                                                      {Quantity::MSY, "M.S.Y."},
                                                      {Quantity::RYield, "R. Yield"},
                                                      {Quantity::FinalPopulation, "Final Population"},
                                                      {Quantity::FinalBiomass, "Final Biomass"}};
    for (const auto& [quantity, name] : names)
        EXPECT_EQ(LoadResString(InfoOf(quantity).captionId), name);
    const std::pair<Input, const char*> inputs[] = {{Input::Mort, "Nat. Mortality"},
                                                    {Input::InitDep, "Init. Proportion"},
                                                    {Input::Lag, "Time Lag"},
                                                    {Input::Z, "Z Shape"}};
    for (const auto& [input, name] : inputs)
        EXPECT_EQ(LoadResString(CaptionIdOf(input)), name);
}

// A model marks as filled by bootstraps what the report shows limits of, and answers as many estimates as it
// shows.
TEST(ModelTable, AModelFillsTheLimitsOfItsRow)
{
    for (const Model& model : All()) {
        const std::unique_ptr<IMethod> method = NewMethod(model.number);
        for (int parameter = 1; parameter <= bs_param::kCount; ++parameter) {
            const bool shown = std::any_of(model.limits.begin(), model.limits.end(), [parameter](Quantity q) {
                return InfoOf(q).bsParam == parameter;
            });
            EXPECT_EQ(method->BSFilled(parameter), shown) << model.word << ' ' << parameter;
        }
    }
}
