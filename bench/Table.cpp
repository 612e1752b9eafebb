// SPDX-License-Identifier: GPL-3.0-or-later
#include "Table.h"

#include "engines/RandomSource.h"

#include <cmath>
#include <numbers>

namespace
{
/// One lognormal factor of the given coefficient of variation (Box and Muller 1958).
double Noise(RandomSource& random, double cv)
{
    const double u = 1.0 - random.Next();
    const double v = random.Next();
    return std::exp(cv * std::sqrt(-2.0 * std::log(u)) * std::cos(2.0 * std::numbers::pi * v));
}

void Fill(clsVeltData& data, int t, double effort, double catchTaken, bool numbers)
{
    data.Effort(t, static_cast<float>(effort));
    if (numbers) {
        data.CatchNums(t, static_cast<float>(catchTaken));
        data.TotCatchNums(t, static_cast<float>(catchTaken));
    } else {
        data.CatchWt(t, static_cast<float>(catchTaken));
        data.TotCatchWt(t, static_cast<float>(catchTaken));
    }
}

/// A closed cohort dies out in a long series unless its mortality is small.
double MortalityFor(int whichMeth, int periods)
{
    return whichMeth == models::kNoRecruitment ? 2.0 / periods : 0.2;
}

void SimulateDepletion(clsVeltData& data, int whichMeth, int periods)
{
    RandomSource random(7);
    const double m = MortalityFor(whichMeth, periods);
    const double q = 2e-4;
    double n = 100000.0;
    const double k = 100000.0;
    for (int t = 1; t <= periods; ++t) {
        const double effort = 200.0 + 150.0 * std::sin(0.7 * t);
        double recruits = 0.0;
        if (whichMeth == models::kConstantRecruitment)
            recruits = k * (std::exp(m) - 1.0);
        if (whichMeth == models::kRecruitmentIndex) {
            const double index = 50.0 + 30.0 * std::cos(1.3 * t);
            data.RecruitIndex(t, static_cast<float>(index));
            recruits = 400.0 * index;
        }
        // Without recruits the stock must last for all periods: less effort on a long series.
        const double scale = whichMeth == models::kNoRecruitment ? 40.0 / periods : 1.0;
        const double mean = (n + recruits) * std::exp(-m / 2.0);
        const double caught = q * scale * effort * mean / (1.0 + q * scale * effort / 2.0);
        Fill(data, t, scale * effort, caught * Noise(random, 0.1), true);
        data.TotCatchNums(t, static_cast<float>(caught));
        n = std::max(1.0, (n + recruits) * std::exp(-m) - std::exp(-m / 2.0) * caught);
    }
}

void SimulateProduction(clsVeltData& data, int periods)
{
    RandomSource random(11);
    const double r = 0.4;
    const double k = 10000.0;
    const double q = 2e-4;
    double b = k;
    for (int t = 1; t <= periods; ++t) {
        const double effort = 1000.0 + 800.0 * std::sin(0.35 * t);
        const double grown = b + r * b * (1.0 - b / k);
        const double next = (grown - q * effort * b / 2.0) / (1.0 + q * effort / 2.0);
        Fill(data, t, effort, (grown - next) * Noise(random, 0.1), false);
        data.TotCatchWt(t, static_cast<float>(grown - next));
        b = next;
    }
}
} // namespace

BenchModel::BenchModel(int whichMeth, int fitOp, int periods, int lag)
{
    data.MinTimeP(1);
    data.MaxTimeP(periods);
    data.TimeInts(periods);
    data.OrigNAPoints(periods);
    if (models::IsProduction(whichMeth))
        SimulateProduction(data, periods);
    else
        SimulateDepletion(data, whichMeth, periods);
    method = NewMethod(whichMeth);
    method->Create(data);
    method->WhichMeth(whichMeth);
    method->SetColumnRefs();
    method->FitOp(fitOp);
    method->Z(1.0F);
    method->LAG(static_cast<std::int16_t>(lag));
    method->InitDep(1.0F);
    method->Mort(static_cast<float>(MortalityFor(whichMeth, periods)));
    method->PlotEvaluations(false);
    method->CalcDiscCatches();
}

void BenchModel::Fit()
{
    if (!method->CalcInitEstimates())
        throw VeltError{0, "no start", "bench"};
    method->CalcFinalEstimates();
}

std::string ImportText(int rows)
{
    std::string text = "A table for the import\nYear Effort Catch Total Index\n";
    for (int row = 1; row <= rows; ++row)
        text += std::to_string(1800 + row) + " 123." + std::to_string(row) + " 4567.25 4890.5 0." +
                std::to_string(1000 + row) + "\n";
    return text;
}
