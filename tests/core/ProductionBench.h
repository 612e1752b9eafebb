// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"
#include "models/clsProduction.h"
#include "support/ScriptedUser.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

/// A data set of efforts and catches in weight, and a production model on it.
struct ProductionBench : Bench {
    clsVeltData data{run};
    clsProduction model;

    static constexpr int kFirstYear = 1970;

    /// Periods from 1970. The total catch is the catch unless it is given.
    void Table(const std::vector<float>& effort, const std::vector<float>& catchWt,
               const std::vector<float>& total = {})
    {
        const auto values = [](const std::vector<float>& v) {
            return TableBuilder::Values(v.begin(), v.end());
        };
        data = TableBuilder()
                   .From(kFirstYear)
                   .Effort(values(effort))
                   .CatchWt(values(catchWt))
                   .TotalWt(values(total.empty() ? catchWt : total))
                   .Build(run);
    }

    /// The order in which the fit manager prepares a model.
    void Prepare(std::int32_t whichMeth, std::int32_t fitOp = fit_op::kLeastSquares, std::int16_t lag = 0,
                 float z = 1.0F, float initDep = 1.0F)
    {
        model.Create(data);
        model.WhichMeth(whichMeth);
        model.SetColumnRefs();
        model.FitOp(fitOp);
        model.LAG(lag);
        model.Z(z);
        model.InitDep(initDep);
        model.PlotEvaluations(false);
        model.CalcDiscCatches();
    }

    /// Starts and fits.
    void Fit()
    {
        model.CalcInitEstimates();
        model.CalcFinalEstimates();
    }

    /// The trajectory of these estimates.
    void Follow(double k, double q, double r)
    {
        model.Work({.K = k, .Q = q, .R = r});
        model.CalcPopTraj();
    }
};

/// A stock of known parameters, reckoned apart from the program: what it would yield to a series of efforts.
struct KnownStock {
    std::int32_t whichMeth = models::kSchaefer;
    double K = 0.0;
    double Q = 0.0;
    double R = 0.0;
    double Z = 1.0;
    int lag = 0;
    double initDep = 1.0;

    double Growth(double n) const
    {
        if (whichMeth == models::kFox)
            return R * n * std::log(K / n);
        return R * n * (1.0 - std::pow(n / K, whichMeth == models::kSchaefer ? 1.0 : Z));
    }

    /// Catches in which catch = Q effort mean biomass, the mean being that of both ends of the period:
    /// N' = N + G - Q E (N + N') / 2, solved for N'.
    std::vector<float> Catches(const std::vector<float>& effort) const
    {
        std::vector<double> n{initDep * K};
        std::vector<float> catches;
        for (std::size_t p = 0; p < effort.size(); ++p) {
            const double half = Q * static_cast<double>(effort[p]) / 2.0;
            const double g = Growth(Lagged(n, p));
            n.push_back((n[p] * (1.0 - half) + g) / (1.0 + half));
            catches.push_back(static_cast<float>(half * (n[p] + n[p + 1])));
        }
        return catches;
    }

    /// Whether these removals leave a biomass at the end.
    bool Survives(const std::vector<float>& removals) const
    {
        std::vector<double> n{initDep * K};
        for (std::size_t p = 0; p < removals.size(); ++p) {
            n.push_back(n[p] + Growth(Lagged(n, p)) - static_cast<double>(removals[p]));
            if (n.back() < 0.0)
                return false;
        }
        return true;
    }

    /// The smallest K that survives, by bisection to nine digits.
    double SmallestK(const std::vector<float>& removals) const
    {
        KnownStock stock = *this;
        double lo = 0.0;
        double hi = 1e9;
        while (hi - lo > 1e-9 * hi) {
            stock.K = (lo + hi) / 2.0;
            (stock.Survives(removals) ? hi : lo) = stock.K;
        }
        return hi;
    }

private:
    double Lagged(const std::vector<double>& n, std::size_t p) const
    {
        const auto at = static_cast<std::ptrdiff_t>(p) - lag;
        return n[at > 0 ? static_cast<std::size_t>(at) : 0];
    }
};

/// Effort that climbs for ten periods, nearly stops for eight and comes back: the biomass goes down and
/// recovers, which tells K from R. 24 periods.
inline std::vector<float> ContrastedEffort()
{
    std::vector<float> effort;
    for (int t = 0; t < 24; ++t)
        effort.push_back(static_cast<float>(t < 10 ? 100 + 60 * t : t < 18 ? 30 + t : 250));
    return effort;
}

/// The tests of the production models.
class Production : public ::testing::Test, public ProductionBench
{
protected:
    /// 100 tons out of each of four periods.
    void HundredAPeriod(std::int32_t whichMeth, std::int16_t lag = 0, float z = 1.0F, float initDep = 1.0F)
    {
        Table({1.0F, 1.0F, 1.0F, 1.0F}, {100.0F, 100.0F, 100.0F, 100.0F});
        Prepare(whichMeth, fit_op::kLeastSquares, lag, z, initDep);
    }

    /// Biomass at the start of periods 1, 2, ...
    void ExpectBiomass(const std::vector<double>& expected)
    {
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR(model.Nt(static_cast<std::int16_t>(i + 1)), expected[i], 2e-4) << "period " << i + 1;
    }
};

inline const std::vector<std::int32_t> kProductionModels{models::kFox, models::kSchaefer,
                                                         models::kPellaTomlinson};
