// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/clsVeltData.h"
#include "fit/clsMethManager.h"
#include "support/ScriptedUser.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

/// A model on simulated data of `periods` periods with ten per cent of lognormal noise, ready to be fitted:
/// the state after the input dialog.
struct BenchModel {
    BenchModel(int whichMeth, int fitOp, int periods, int lag = 0);

    Bench bench;
    clsVeltData data{bench.run};
    std::unique_ptr<IMethod> method;

    /// Starting estimates and fit, as the manager runs them.
    void Fit();
};

/// A text of `rows` periods with five columns, as the import reads it.
std::string ImportText(int rows);
