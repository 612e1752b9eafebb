// SPDX-License-Identifier: GPL-3.0-or-later
// Production models on catches of stocks that are known.
#pragma once

#include "core/ProductionBench.h"
#include "core/RecordedPlot.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace production_fits
{
class KnownStocks : public ::testing::Test, public ProductionBench
{
protected:
    /// The catches that a known stock yields, with a deviation of `share` of each, up and down in turn.
    void TakeFrom(const KnownStock& stock, double share = 0.0)
    {
        const std::vector<float> effort = ContrastedEffort();
        std::vector<float> catches = stock.Catches(effort);
        const double pattern[] = {1.0, -0.7, 0.3, -1.0, 0.5, -0.1};
        for (std::size_t t = 0; t < catches.size(); ++t)
            catches[t] *= static_cast<float>(1.0 + share * pattern[t % 6]);
        Table(effort, catches);
    }

    void Prepared(const KnownStock& stock, std::int32_t fitOp)
    {
        Prepare(stock.whichMeth, fitOp, static_cast<std::int16_t>(stock.lag), static_cast<float>(stock.Z));
    }

    void ExpectBack(const KnownStock& stock, double share)
    {
        const std::vector<double> values = model.FinalEsts();
        EXPECT_NEAR(values[0], stock.K, share * stock.K);
        EXPECT_NEAR(values[1], stock.Q, share * stock.Q);
        EXPECT_NEAR(values[2], stock.R, share * stock.R);
    }

    /// The user types these starts and holds what is told.
    void Type(double k, double r, bool fixed1 = false, bool fixed2 = false)
    {
        user.onStartVals = [=](StartVals& starts) {
            starts.param1 = k;
            starts.param2 = r;
            starts.Fixed1 = fixed1;
            starts.Fixed2 = fixed2;
            return true;
        };
        model.InputStartingEsts();
    }

    std::optional<VeltError> FailureOfFit()
    {
        try {
            model.CalcFinalEstimates();
        } catch (const VeltError& error) {
            return error;
        }
        return std::nullopt;
    }

    /// Opens the contour view on a grid of four cells, some of which are valid.
    PlotRecord& Watch()
    {
        user.onContourRange = [](ContourRange& range) {
            range.Param1Hi = 20000.0;
            range.ContEvals = 2;
            return true;
        };
        window.nextPlot = std::make_unique<RecordedPlot>(m_record);
        model.PlotEvaluations(true);
        EXPECT_TRUE(model.SetContourRanges());
        EXPECT_TRUE(model.PlotInitContours());
        return m_record;
    }

    int StartsMarked() const
    {
        int starts = 0;
        for (const PlotRecord::Point& mark : m_record.marks)
            starts += mark.kind != ContourMark::Final ? 1 : 0;
        return starts;
    }

    PlotRecord m_record;
};

inline const KnownStock kStocks[] = {
    {.whichMeth = models::kFox, .K = 5000.0, .Q = 0.0012, .R = 0.3},
    {.whichMeth = models::kSchaefer, .K = 5000.0, .Q = 0.0012, .R = 0.45},
    {.whichMeth = models::kPellaTomlinson, .K = 5000.0, .Q = 0.0009, .R = 0.35, .Z = 2.0, .lag = 1},
};
} // namespace production_fits
