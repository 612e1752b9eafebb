// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/clsConstRecruit.h"
#include "models/clsProduction.h"
#include "models/clsRecruitINdex.h"
#include "models/clsSingleCohort.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>

/// Catches of a stock that receives recruits, or none, with a fixed scatter.
inline TableBuilder DepletionTable(double q, double lambda, double recruits)
{
    constexpr double kScatter = 0.05;
    SimulatedStock stock;
    stock.q = q;
    stock.lambda = lambda;
    stock.recruits = recruits;
    return TableBuilder().Effort(stock.effort).Catch(stock.Catches(kScatter)).Recruits(stock.index);
}

/// A table that model `whichMeth` fits well: enough depletion to measure the stock, and a stock that is left.
inline TableBuilder TableFor(std::int32_t whichMeth)
{
    if (whichMeth == models::kNoRecruitment)
        return DepletionTable(0.001, 0.0, 0.0);
    if (whichMeth == models::kRecruitmentIndex)
        return DepletionTable(0.004, 300.0, 0.0);
    if (whichMeth == models::kConstantRecruitment)
        return DepletionTable(0.002, 0.0, 10000.0 * (std::exp(0.2) - 1.0));
    return TableBuilder()
        .From(1970)
        .Effort({100, 160, 220, 280, 340, 300, 200, 60, 40, 50, 120, 180})
        .Yield({560, 810, 985, 1100, 1160, 905, 590, 190, 135, 178, 430, 610});
}

/// A fit of `whichMeth` as the manager makes it.
template <typename Model>
struct Fitted : ModelBench<Model> {
    Fitted(std::int32_t whichMeth, std::int32_t fitOp) : Fitted(TableFor(whichMeth), whichMeth, fitOp) {}
    Fitted(const TableBuilder& table, std::int32_t whichMeth, std::int32_t fitOp, double mort = 0.2)
        : ModelBench<Model>(table)
    {
        this->model.WhichMeth(whichMeth);
        EXPECT_FALSE(this->Fit(fitOp, mort).empty());
    }
};

/// Everything that a question could disturb.
template <typename Model>
struct Everything {
    explicit Everything(Fitted<Model>& bench)
        : state(bench.model.m), settings(bench.run.globals.settings.LastEvaluations),
          naPoints(bench.data.NAPoints()), nntPoints(bench.data.NNtPoints()), ndPoints(bench.data.NDPoints()),
          included(bench.data.Included()), toggledIn(bench.data.ToggledIn()), dirty(bench.data.IsDirty()),
          graphs(bench.window.graphs.size())
    {
        for (int column = columns::kFirst; column <= columns::kLast; ++column)
            table(column) = bench.data.Column(column);
    }
    bool operator==(const Everything&) const = default;

    ModelState state;
    Array1<clsVeltData::Series, columns::kLast> table;
    std::int32_t settings, naPoints, nntPoints, ndPoints;
    clsVeltData::Flags included, toggledIn;
    bool dirty;
    std::size_t graphs;
};

/// Calls `check(bench)` with a fit of every model under every error model that it can be fitted with.
template <typename Check>
void ForEveryFit(const Check& check)
{
    const auto one = [&check](auto bench, std::int32_t whichMeth, std::int32_t fitOp) {
        SCOPED_TRACE("model " + std::to_string(whichMeth) + ", error model " + std::to_string(fitOp));
        bench->model.PlotEvaluations(true);
        check(*bench);
    };
    for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog, fit_op::kGamma}) {
        one(std::make_unique<Fitted<clsSingleCohort>>(models::kNoRecruitment, fitOp), models::kNoRecruitment,
            fitOp);
        one(std::make_unique<Fitted<clsRecruitINdex>>(models::kRecruitmentIndex, fitOp),
            models::kRecruitmentIndex, fitOp);
        one(std::make_unique<Fitted<clsConstRecruit>>(models::kConstantRecruitment, fitOp),
            models::kConstantRecruitment, fitOp);
        for (const std::int32_t whichMeth : {models::kFox, models::kSchaefer, models::kPellaTomlinson})
            one(std::make_unique<Fitted<clsProduction>>(whichMeth, fitOp), whichMeth, fitOp);
    }
}
