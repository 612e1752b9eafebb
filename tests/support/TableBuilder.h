// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"
#include "models/IMethod.h"
#include "models/ModelState.h"
#include "support/FailureOf.h"
#include "support/ScriptedUser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// A small language for data sets: `TableBuilder().Effort({1, 2}).Catch({5, 8}).ToggleOut(2).Build(run)`.
/// A vector gives rows 1, 2, ...; later rows stay empty (-1). What is given is marked present, all rows with
/// an effort above 0 are Included, and the points are counted as a fit would count them.
class TableBuilder
{
public:
    using Values = std::vector<double>;

    TableBuilder& Effort(const Values& v) { return Column(columns::Effort, v); }
    /// Catch in numbers taken with the effort, and the same as total catch.
    TableBuilder& Catch(const Values& v) { return CatchNums(v).TotalNums(v); }
    TableBuilder& CatchNums(const Values& v) { return Column(columns::CatchNums, v); }
    TableBuilder& TotalNums(const Values& v) { return Column(columns::TotCatchNums, v); }
    /// Catch in weight taken with the effort, and the same as total catch.
    TableBuilder& Yield(const Values& v) { return CatchWt(v).TotalWt(v); }
    TableBuilder& CatchWt(const Values& v) { return Column(columns::CatchWt, v); }
    TableBuilder& TotalWt(const Values& v) { return Column(columns::TotCatchWt, v); }
    TableBuilder& MeanWt(const Values& v) { return Column(columns::MeanWt, v); }
    TableBuilder& AbundIndex(const Values& v) { return Column(columns::AbundIndex, v); }
    TableBuilder& Variance(const Values& v) { return Column(columns::VarAbundIndex, v); }
    TableBuilder& Recruits(const Values& v) { return Column(columns::RecruitIndex, v); }
    TableBuilder& From(std::int32_t firstLabel)
    {
        m_first = firstLabel;
        return *this;
    }
    TableBuilder& ToggleOut(int row)
    {
        m_out.push_back(row);
        return *this;
    }
    TableBuilder& OnlyToggledIn(int row)
    {
        m_only = row;
        return *this;
    }

    clsVeltData Build(Run& run) const
    {
        clsVeltData data(run);
        std::size_t rows = 0;
        for (const auto& [column, values] : m_columns) {
            data.ColPresent(column, true);
            for (std::size_t r = 0; r < values.size(); ++r)
                data.DB(column, static_cast<int>(r) + 1, static_cast<float>(values[r]));
            rows = std::max(rows, values.size());
        }
        data.MinTimeP(m_first);
        data.MaxTimeP(m_first + static_cast<int>(rows) - 1);
        data.TimeInts(static_cast<int>(rows));
        data.OrigNAPoints(static_cast<int>(rows));
        Select(data);
        return data;
    }

private:
    TableBuilder& Column(int column, const Values& values)
    {
        m_columns.emplace_back(column, values);
        return *this;
    }
    void Select(clsVeltData& data) const
    {
        const bool weights = data.ColPresent(columns::TotCatchWt) && !data.ColPresent(columns::TotCatchNums);
        const auto& total = weights ? data.TotCatchWt() : data.TotCatchNums();
        int periods = 0;
        int inFit = 0;
        for (int r = 1; r <= clsVeltData::kRows; ++r) {
            data.Included(r, data.Effort(r) > 0.0F);
            data.ToggledIn(r, data.Included(r) && (m_only == 0 || m_only == r));
            for (const int out : m_out)
                data.ToggledIn(r, data.ToggledIn(r) && r != out);
            periods += total(r) != clsVeltData::kMissing ? 1 : 0;
            inFit += data.ToggledIn(r) ? 1 : 0;
        }
        data.NAPoints(periods);
        data.NDPoints(periods + 1);
        data.NNtPoints(inFit);
    }

    std::vector<std::pair<int, Values>> m_columns;
    std::vector<int> m_out;
    int m_only = 0;
    std::int32_t m_first = 2001;
};

/// A model whose shared state a test may look at.
template <typename Model>
class Opened : public Model
{
public:
    using Model::DoubleUntilItSurvives;
    using Model::m;
    using Model::m_boot;
    using Model::m_gammaCatch;
    using Model::Objective;
    using Model::Searched;
};

/// One model on one data set, with all the ports.
template <typename Model>
struct ModelBench : Bench {
    explicit ModelBench(const TableBuilder& table) : data(table.Build(run))
    {
        model.Create(data);
        model.SetColumnRefs();
    }

    /// Sets the inputs and looks for a start.
    bool Start(std::int32_t fitOp, double mort, double initDep = 1.0)
    {
        model.FitOp(fitOp);
        model.Mort(static_cast<float>(mort));
        model.InitDep(static_cast<float>(initDep));
        model.CalcDiscCatches();
        return model.CalcInitEstimates();
    }

    /// The whole fit. \return the report values, or nothing when there is no start
    std::vector<double> Fit(std::int32_t fitOp, double mort, double initDep = 1.0)
    {
        if (!Start(fitOp, mort, initDep))
            return {};
        return Finish();
    }
    std::vector<double> Finish()
    {
        model.CalcFinalEstimates();
        model.CalcCPUEVectors();
        model.SetRSquared();
        return model.FinalEsts();
    }

    clsVeltData data;
    Opened<Model> model;
};

/// A shared state without a model, for the functions that need no more: X(i) and C(i) of periods in the fit.
struct StateBench : Bench {
    StateBench(const std::vector<double>& expected, const TableBuilder::Values& catches)
        : data(TableBuilder().Effort(TableBuilder::Values(catches.size(), 1.0)).Catch(catches).Build(run))
    {
        m.data = &data;
        m.run = &run;
        for (std::size_t i = 0; i < catches.size(); ++i) {
            const auto row = static_cast<std::ptrdiff_t>(i) + 1;
            m.CatchVector(row) = static_cast<float>(catches[i]);
            m.EffMidPop(row) = expected[i];
            m.EffMidPopSum += expected[i];
            m.CatchSum += m.CatchVector(row);
        }
    }

    clsVeltData data;
    ModelState m;
};
